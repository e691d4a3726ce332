#include "NyMessageBar.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QToolButton>

#include <NyGUIWidgetsConfig.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr int IconSide = 20;
constexpr double Radius = 6;

}

NyMessageBar::NyMessageBar(QWidget *parent)
    : QFrame(parent)
    , m_icon(new QLabel(this))
    , m_text(new QLabel(this))
    , m_close(new QToolButton(this))
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 8, 8, 8);
    layout->setSpacing(10);
    layout->addWidget(m_icon, 0, Qt::AlignTop);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_close, 0, Qt::AlignTop);
    m_text->setObjectName(u"error"_s);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
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
