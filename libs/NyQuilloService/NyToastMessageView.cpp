#include "NyToastMessageView.h"

#include <QCursor>
#include <QEasingCurve>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPalette>
#include <QPen>
#include <QPropertyAnimation>
#include <QRegion>
#include <QScreen>
#include <QWindow>

namespace
{
constexpr int SCREEN_DISTANCE_PX = 15;
constexpr QPoint POSITION_WITHOUT_SCREEN(15, 15);
constexpr qreal CORNER_RADIUS_PX = 10.0;
constexpr qreal OUTLINE_WIDTH_PX = 1.1;
constexpr qreal PAINTED_INSET_PX = 2.0;
constexpr QRgb OUTLINE_COLOR = qRgb(0x44, 0x44, 0x44);
constexpr int FADE_IN_MS = 386;
}

NyToastMessageView::NyToastMessageView()
    : QWidget(nullptr, Qt::FramelessWindowHint | Qt::WindowSystemMenuHint)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_NativeWindow);
    setWindowOpacity(0.0);
}

NyToastMessageView::~NyToastMessageView() = default;

QPainterPath NyToastMessageView::roundedRect()
{
    QPainterPath path;
    path.addRoundedRect(QRectF(0, 0, width(), height()), CORNER_RADIUS_PX, CORNER_RADIUS_PX, Qt::AbsoluteSize);
    return path;
}

void NyToastMessageView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_dragPosition = event->globalPosition().toPoint() - frameGeometry().topLeft();
    event->accept();
}

void NyToastMessageView::mouseMoveEvent(QMouseEvent *event)
{
    if (!event->buttons().testFlag(Qt::LeftButton)) {
        event->ignore();
        return;
    }
    move(event->globalPosition().toPoint() - m_dragPosition);
    event->accept();
}

void NyToastMessageView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(OUTLINE_COLOR), OUTLINE_WIDTH_PX));
    painter.setBrush(palette().brush(palette().currentColorGroup(), QPalette::Window));
    const QRectF painted(PAINTED_INSET_PX, PAINTED_INSET_PX, width() - 2 * PAINTED_INSET_PX, height() - 2 * PAINTED_INSET_PX);
    painter.drawRoundedRect(painted, CORNER_RADIUS_PX, CORNER_RADIUS_PX, Qt::AbsoluteSize);
}

void NyToastMessageView::resizeEvent(QResizeEvent *)
{
    setMask(QRegion(roundedRect().toFillPolygon(QTransform()).toPolygon(), Qt::OddEvenFill));
}

void NyToastMessageView::showEvent(QShowEvent *)
{
    QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen) {
        move(POSITION_WITHOUT_SCREEN);
    } else {
        windowHandle()->setScreen(screen);
        const QRect area = screen->availableGeometry();
        const QSize before = size();
        const QPoint position(area.x() + area.width() - before.width() - SCREEN_DISTANCE_PX, area.top() + SCREEN_DISTANCE_PX);
        move(position);
        // Moving to a screen of another scale can change the size.
        if (size() != before)
            setGeometry(QRect(position, before));
    }

    // A window that is shown again has faded in already.
    if (windowOpacity() == 0.0) {
        auto *animation = new QPropertyAnimation(this, "windowOpacity", this);
        animation->setDuration(FADE_IN_MS);
        animation->setStartValue(0);
        animation->setEndValue(1);
        animation->setEasingCurve(QEasingCurve::InQuad);
        animation->start(QAbstractAnimation::DeleteWhenStopped);
    }
}
