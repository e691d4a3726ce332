#include "NySpreadView.h"

#include <algorithm>

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

namespace
{

constexpr double BORDER = 28;
constexpr int SHADOW_RINGS = 8;

void paintShadow(QPainter &painter, const QRectF &rect)
{
    for (int ring = SHADOW_RINGS; ring > 0; --ring)
        painter.fillRect(rect.adjusted(-ring, -ring * 0.4, ring, ring * 1.5), QColor(0, 0, 0, 8));
}

/** The fold between two pages: each darkens a little towards it. */
void paintFold(QPainter &painter, const QRectF &left, const QRectF &right)
{
    const double width = left.width() * 0.045;
    QLinearGradient gradient(left.right() - width, 0, right.left() + width, 0);
    gradient.setColorAt(0, QColor(0, 0, 0, 0));
    gradient.setColorAt(0.5, QColor(0, 0, 0, 34));
    gradient.setColorAt(1, QColor(0, 0, 0, 0));
    painter.fillRect(QRectF(left.right() - width, left.top(), 2 * width, left.height()), gradient);
}

}

NySpreadView::NySpreadView(const NyBookProject &project, const NyDesignStyle &style, QWidget *parent)
    : QWidget(parent)
    , m_project(project)
    , m_style(style)
{
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(project.title);
    connect(&m_images, &NyFotoImageCache::changed, this, qOverload<>(&QWidget::update));
}

QSize NySpreadView::sizeHint() const
{
    return {1120, 500};
}

QSize NySpreadView::minimumSizeHint() const
{
    return {320, 160};
}

QString NySpreadView::spreadDescription() const
{
    if (m_spread == 0)
        return tr("Titel");
    const qsizetype first = 2 * m_spread - 1;
    const qsizetype count = m_project.pages.size();
    if (first == count)
        return tr("Seite %1 von %2").arg(first).arg(count);
    return tr("Seiten %1 und %2 von %3").arg(first).arg(first + 1).arg(count);
}

void NySpreadView::setSpread(int spread)
{
    const int bounded = std::clamp(spread, 0, spreadCount() - 1);
    if (bounded == m_spread)
        return;
    m_spread = bounded;
    setAccessibleDescription(spreadDescription());
    update();
    Q_EMIT spreadChanged(m_spread);
}

QList<NySpreadView::PlacedPage> NySpreadView::pagesOf(int spread) const
{
    if (spread < 0 || spread >= spreadCount())
        return {};
    const int columns = spread == 0 ? 1 : 2;
    const QSizeF pageMm = m_project.pageSizeMm;
    const QSizeF room(std::max(1.0, width() - 2 * BORDER), std::max(1.0, height() - 2 * BORDER));
    const QSizeF whole = QSizeF(columns * pageMm.width(), pageMm.height()).scaled(room, Qt::KeepAspectRatio);
    const QSizeF one(whole.width() / columns, whole.height());
    const QPointF origin((width() - whole.width()) / 2, (height() - whole.height()) / 2);
    if (spread == 0)
        return {{&m_project.cover, NyBookRenderer::PageKind::Cover, QRectF(origin, one)}};
    QList<PlacedPage> pages;
    for (int column = 0; column < 2; ++column) {
        const qsizetype index = 2 * (spread - 1) + column;
        pages.append({index < m_project.pages.size() ? &m_project.pages.at(index) : nullptr, NyBookRenderer::PageKind::Inner,
            QRectF(origin + QPointF(column * one.width(), 0), one)});
    }
    return pages;
}

void NySpreadView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0xe4, 0xe4, 0xe2));
    const double ratio = devicePixelRatioF();
    const NyBookRenderer renderer(
        m_style, [this](const QUrl &url, const QSize &boxPx) { return m_images.picture(url, boxPx, NyFotoImageCache::Urgency::Visible); });
    const QList<PlacedPage> pages = pagesOf(m_spread);
    QRectF whole;
    for (const PlacedPage &placed : pages)
        whole |= placed.rect;
    paintShadow(painter, whole);
    const NyBookPage empty;
    for (const PlacedPage &placed : pages)
        renderer.paint(painter, placed.page ? *placed.page : empty, placed.kind, m_project.pageSizeMm, placed.rect, ratio);
    if (pages.size() == 2)
        paintFold(painter, pages.at(0).rect, pages.at(1).rect);
    prefetch(m_spread + 1);
    prefetch(m_spread - 1);
}

void NySpreadView::prefetch(int spread)
{
    const QList<PlacedPage> pages = pagesOf(spread);
    for (const PlacedPage &placed : pages) {
        if (!placed.page)
            continue;
        const double unitsPerMm = placed.rect.width() / m_project.pageSizeMm.width();
        for (const NyPlacedFoto &foto : placed.page->photos) {
            const QSize boxPx = NyBookRenderer::boxPx(foto, foto.rectMm.size() * unitsPerMm, devicePixelRatioF());
            m_images.picture(foto.url, boxPx, NyFotoImageCache::Urgency::Prefetch);
        }
    }
}

void NySpreadView::wheelEvent(QWheelEvent *event)
{
    // Fine-grained wheels send many small steps; one spread a notch.
    constexpr int notch = 120;
    m_wheelDelta += event->angleDelta().y();
    for (; m_wheelDelta >= notch; m_wheelDelta -= notch)
        showPrevious();
    for (; m_wheelDelta <= -notch; m_wheelDelta += notch)
        showNext();
    event->accept();
}

void NySpreadView::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    if (event->position().x() < width() / 2.0)
        showPrevious();
    else
        showNext();
}
