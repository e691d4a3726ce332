#include "NyMessageBar.h"

#include <algorithm>
#include <cmath>

#include <QAccessible>
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QTextLayout>
#include <QToolButton>

#include <NyGUIWidgetsConfig.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr int IconSide = 20;
constexpr double Radius = 6;
/** What is longer is told whole by the tool tip. */
constexpr int LongestLines = 8;
constexpr int NarrowestLetters = 12;

/** A label that breaks a path where its words have to be broken, so that no path makes the window wider. */
class MessageText : public QLabel
{
public:
    explicit MessageText(QWidget *parent)
        : QLabel(parent)
    {
        setTextFormat(Qt::PlainText);
        setWordWrap(true);
        setContextMenuPolicy(Qt::ActionsContextMenu);
        auto *copy = new QAction(NyMessageBar::tr("&Kopieren"), this);
        addAction(copy);
        connect(copy, &QAction::triggered, this, [this] { QGuiApplication::clipboard()->setText(text()); });
    }

    QSize sizeHint() const override
    {
        const QStringList lines = text().split(u'\n');
        int width = 0;
        for (const QString &line : lines)
            width = std::max(width, fontMetrics().horizontalAdvance(line));
        return {width, heightForWidth(width)};
    }
    QSize minimumSizeHint() const override { return {fontMetrics().averageCharWidth() * NarrowestLetters, fontMetrics().height()}; }
    int heightForWidth(int width) const override
    {
        QTextLayout layout;
        const double height = layOut(layout, width);
        return int(std::ceil(height));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QTextLayout layout;
        const double height = layOut(layout, width());
        QPainter painter(this);
        painter.setPen(palette().color(foregroundRole()));
        layout.draw(&painter, QPointF(0, (this->height() - height) / 2));
    }

private:
    double layOut(QTextLayout &layout, int width) const
    {
        QString wrapped = text();
        wrapped.replace(u'\n', QChar::LineSeparator);
        layout.setText(wrapped);
        layout.setFont(font());
        QTextOption option(Qt::AlignLeading);
        option.setTextDirection(layoutDirection());
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        double height = 0;
        layout.beginLayout();
        for (int count = 0; count < LongestLines; ++count) {
            QTextLine line = layout.createLine();
            if (!line.isValid())
                break;
            line.setLineWidth(std::max(1, width));
            line.setPosition(QPointF(0, height));
            height += line.height();
        }
        layout.endLayout();
        return height;
    }
};

}

NyMessageBar::NyMessageBar(QWidget *parent)
    : QFrame(parent)
    , m_icon(new QLabel(this))
    , m_text(new MessageText(this))
    , m_close(new QToolButton(this))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 8, 8, 8);
    layout->setSpacing(10);
    layout->addWidget(m_icon, 0, Qt::AlignTop);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_close, 0, Qt::AlignTop);
    m_text->setObjectName(u"error"_s);
    m_close->setAutoRaise(true);
    m_close->setIcon(NyGUIWidgetsConfig::instance().loadIconById(u"ico_button_close_bright"_s));
    m_close->setIconSize(QSize(14, 14));
    m_close->setToolTip(tr("Meldung schließen"));
    m_close->setAccessibleName(tr("Meldung schließen"));
    m_close->setFocusPolicy(Qt::TabFocus);
    connect(m_close, &QToolButton::clicked, this, [this] { setMessage(m_kind, QString()); });
    hide();
}

NyMessageBar::~NyMessageBar() = default;

void NyMessageBar::setMessage(Kind kind, const QString &text)
{
    m_kind = kind;
    m_text->setText(text);
    // Rich text, so that it is wrapped, of what is no markup.
    m_text->setToolTip(text.isEmpty() ? QString() : u"<p>"_s + text.toHtmlEscaped().replace(u'\n', u"<br>"_s) + u"</p>"_s);
    const bool isError = kind == Kind::Error;
    const QIcon icon = NyGUIWidgetsConfig::instance().loadIconById(isError ? u"ico_warning"_s : u"ico_info"_s);
    m_icon->setPixmap(icon.pixmap(QSize(IconSide, IconSide), devicePixelRatioF()));
    setAccessibleName(isError ? tr("Fehlermeldung") : tr("Hinweis"));
    setAccessibleDescription(text);
    setVisible(!text.isEmpty());
    update();
    if (!text.isEmpty()) {
        QAccessibleEvent event(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    }
}

void NyMessageBar::paintEvent(QPaintEvent *)
{
    // Tints that let the palette's text be read on them, be it light or dark.
    QColor tint = m_kind == Kind::Error ? QColor(0xc3, 0x0c, 0x15) : QColor(0x2f, 0x7f, 0xc1);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor frame = tint;
    frame.setAlpha(140);
    tint.setAlpha(36);
    painter.setPen(frame);
    painter.setBrush(tint);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Radius, Radius);
}

void NyMessageBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        setMessage(m_kind, QString());
    else
        QFrame::keyPressEvent(event);
}
