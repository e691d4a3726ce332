#include "NyBookWordsEdit.h"

#include <QAction>
#include <QLineEdit>
#include <QPainter>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <NyText.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

/** Longer words fit no cover. */
constexpr int LONGEST_WORDS = 200;

/** A line edit that is only text until somebody comes to it. */
class QuietLineEdit : public QLineEdit
{
public:
    explicit QuietLineEdit(QWidget *parent)
        : QLineEdit(parent)
    {
        setAttribute(Qt::WA_Hover);
        setAlignment(Qt::AlignHCenter);
        setMaxLength(LONGEST_WORDS);
        // A file dropped here would leave its path in the title.
        setAcceptDrops(false);
    }

protected:
    void paintEvent(QPaintEvent *event) override
    {
        if (hasFocus() || underMouse()) {
            QLineEdit::paintEvent(event);
            return;
        }
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::WindowText));
        painter.drawText(rect(), Qt::AlignCenter, fontMetrics().elidedText(text(), Qt::ElideRight, width()));
    }
};

}

NyBookWordsEdit::NyBookWordsEdit(QWidget *parent)
    : QWidget(parent)
    , m_title(createLine(u"title"_s, tr("Titel")))
    , m_subtitle(createLine(u"subtitle"_s, tr("Untertitel")))
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_title);
    layout->addWidget(m_subtitle);
    QFont font = m_title->font();
    font.setPointSizeF(font.pointSizeF() * 1.5);
    font.setBold(true);
    m_title->setFont(font);
}

NyBookWordsEdit::~NyBookWordsEdit()
{
    // A line that loses the keyboard by being destroyed has nothing to tell any more.
    m_title->disconnect(this);
    m_subtitle->disconnect(this);
}

QLineEdit *NyBookWordsEdit::createLine(const QString &name, const QString &description)
{
    auto *line = new QuietLineEdit(this);
    line->setObjectName(name);
    line->setAccessibleName(description);
    line->setPlaceholderText(description);
    connect(line, &QLineEdit::editingFinished, this, &NyBookWordsEdit::takeOver);
    connect(line, &QLineEdit::returnPressed, this, &NyBookWordsEdit::left);
    auto *escape = new QAction(line);
    escape->setShortcut(Qt::Key_Escape);
    escape->setShortcutContext(Qt::WidgetShortcut);
    line->addAction(escape);
    connect(escape, &QAction::triggered, this, [this] {
        restore();
        Q_EMIT left();
    });
    return line;
}

void NyBookWordsEdit::setWords(const QString &title, const QString &subtitle)
{
    if (title == m_bookTitle && subtitle == m_bookSubtitle)
        return;
    m_bookTitle = title;
    m_bookSubtitle = subtitle;
    restore();
}

void NyBookWordsEdit::restore()
{
    const QSignalBlocker titleBlocker(m_title);
    const QSignalBlocker subtitleBlocker(m_subtitle);
    m_shownTitle = show(m_title, m_bookTitle);
    m_shownSubtitle = show(m_subtitle, m_bookSubtitle);
}

QString NyBookWordsEdit::show(QLineEdit *line, const QString &words)
{
    // The line's end may be a blank between two words.
    const QString text = NyText::beginning(words.simplified(), line->maxLength()).trimmed();
    // Whoever saves in the middle of a word goes on typing where the cursor is.
    if (!line->hasFocus() || line->text().simplified() != text) {
        line->setText(text);
        line->setCursorPosition(0);
    }
    return text;
}

void NyBookWordsEdit::editTitle()
{
    m_title->setFocus(Qt::ShortcutFocusReason);
    m_title->selectAll();
}

void NyBookWordsEdit::finishEditing()
{
    takeOver();
}

void NyBookWordsEdit::takeOver()
{
    const QString title = m_title->text().simplified();
    const QString subtitle = m_subtitle->text().simplified();
    if (title.isEmpty() || (title == m_shownTitle && subtitle == m_shownSubtitle)) {
        restore();
        return;
    }
    // A line shows no breaks and only so many letters; words that were not touched keep theirs.
    Q_EMIT edited(title == m_shownTitle ? m_bookTitle : title, subtitle == m_shownSubtitle ? m_bookSubtitle : subtitle);
    // The book may have refused the words.
    restore();
}
