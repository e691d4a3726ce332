#include "NySpreadView.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <QApplication>
#include <QContextMenuEvent>
#include <QDragEnterEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyleHints>
#include <QToolTip>
#include <QWheelEvent>

#include "NyPageLayout.h"
#include "NySpreadViewAccessible.h"
#include "NyWindowParts.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr double BORDER = 28;
constexpr int SHADOW_RINGS = 8;
constexpr std::array ZOOM_STEPS{1.0, 1.25, 1.5, 2.0, 2.5, 3.0, 4.0, 5.0, 6.0, 8.0};
/** A wheel's notch, in the units of its events. */
constexpr int NOTCH = 120;
constexpr double NOTCHES_TO_DOUBLE = 3;
/** Nobody can tell this from the whole spread. */
constexpr double SMALLEST_ZOOM_IN = 1.01;
/** Shares of the picture memory: what is seen, and each of the spreads beside it. */
constexpr double SEEN_SHARE = 0.5;
constexpr double PREFETCH_SHARE = 0.125;
constexpr int BYTES_PER_PIXEL = 4;

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

/** What the book lies on. */
QColor deskColor(const QPalette &palette)
{
    return palette.color(QPalette::Window).darker(isDark(palette) ? 135 : 106);
}

void paintShadow(QPainter &painter, const QRectF &rect, const QRegion &exposed)
{
    painter.save();
    // Nothing below the paper is seen.
    painter.setClipRegion(exposed - QRegion(rect.toAlignedRect().adjusted(2, 2, -2, -2)));
    for (int ring = SHADOW_RINGS; ring > 0; --ring)
        painter.fillRect(rect.adjusted(-ring, -ring * 0.4, ring, ring * 1.5), QColor(0, 0, 0, 8));
    painter.restore();
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
    : QAbstractScrollArea(parent)
    , m_project(project)
    , m_style(style)
{
    NySpreadViewAccessible::install();
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    setAcceptDrops(true);
    setAccessibleName(project.title.simplified());
    setAccessibleDescription(spreadDescription());
    connect(&m_images, &NyFotoImageCache::changed, viewport(), qOverload<>(&QWidget::update));
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

// ---- What is shown ----

void NySpreadView::setProject(const NyBookProject &project)
{
    const QList<NyBookPlace> placesBefore = places();
    const QStringList namesBefore = photoNames();
    const int spreadBefore = m_spread;
    const std::optional<NyBookPlace> selectedBefore = m_selected;
    m_project = project;
    m_dropTarget.reset();
    m_spread = std::min(m_spread, spreadCount() - 1);
    if (m_selected && !m_project.photo(*m_selected))
        m_selected.reset();
    if (m_spread != spreadBefore || places() != placesBefore || photoNames() != namesBefore)
        NySpreadViewAccessible::photosChanged(this);
    setAccessibleName(m_project.title.simplified());
    setAccessibleDescription(spreadDescription());
    // The pages may have another shape.
    place({std::nullopt, m_middleShare});
    viewport()->update();
    if (m_spread != spreadBefore)
        Q_EMIT spreadChanged(m_spread);
    if (m_selected != selectedBefore)
        Q_EMIT selectionChanged();
}

void NySpreadView::setSpread(int spread)
{
    const int bounded = std::clamp(spread, 0, spreadCount() - 1);
    if (bounded != m_spread)
        present(bounded, std::nullopt);
}

void NySpreadView::setSelected(std::optional<NyBookPlace> place)
{
    if (!place || !m_project.photo(*place)) {
        present(m_spread, std::nullopt);
        return;
    }
    present(NySpreadGeometry::spreadOf(*place), place);
    ensureVisible(*place);
}

void NySpreadView::present(int spread, std::optional<NyBookPlace> selected)
{
    const bool isOtherSpread = spread != m_spread;
    const std::optional<NyBookPlace> selectedBefore = m_selected;
    if (!isOtherSpread && selected == selectedBefore)
        return;
    m_spread = spread;
    m_selected = selected;
    viewport()->update();
    if (isOtherSpread) {
        m_press.reset();
        m_dropTarget.reset();
        NySpreadViewAccessible::photosChanged(this);
        setAccessibleDescription(spreadDescription());
        place({std::nullopt, m_middleShare});
        Q_EMIT spreadChanged(m_spread);
    }
    if (selected != selectedBefore) {
        NySpreadViewAccessible::selectionChanged(this, selectedBefore);
        Q_EMIT selectionChanged();
    }
}

QList<NyBookPlace> NySpreadView::places() const
{
    return geometry().places();
}

QRectF NySpreadView::photoRect(NyBookPlace place) const
{
    return geometry().photoRect(place);
}

std::optional<NyBookPlace> NySpreadView::photoAt(const QPointF &point) const
{
    return geometry().photoAt(point);
}

QString NySpreadView::photoName(NyBookPlace place) const
{
    const NyPlacedFoto *foto = m_project.photo(place);
    return foto ? foto->url.fileName().simplified() : QString();
}

QString NySpreadView::photoDescription(NyBookPlace place) const
{
    const QList<NyBookPlace> all = places();
    const qsizetype index = all.indexOf(place);
    if (index < 0)
        return photoName(place);
    return tr("%1, Foto %2 von %3").arg(photoName(place), QString::number(index + 1), QString::number(all.size()));
}

QStringList NySpreadView::photoNames() const
{
    QStringList names;
    const QList<NyBookPlace> all = places();
    for (const NyBookPlace &place : all)
        names.append(photoName(place));
    return names;
}

// ---- Geometry ----

double NySpreadView::unitsPerMm(int spread, double zoom) const
{
    // Scroll bars take nothing from the size that fits, else it would depend on itself.
    const QSizeF size = QWidget::size();
    const QSizeF room(std::max(1.0, size.width() - 2 * BORDER), std::max(1.0, size.height() - 2 * BORDER));
    const QSizeF paperMm = NySpreadGeometry::sizeMm(m_project, spread);
    return std::min(room.width() / paperMm.width(), room.height() / paperMm.height()) * zoom;
}

QSizeF NySpreadView::spreadSize() const
{
    return NySpreadGeometry::sizeMm(m_project, m_spread) * unitsPerMm(m_spread, m_zoom);
}

QPointF NySpreadView::spreadTopLeft() const
{
    const QSizeF size = spreadSize();
    const auto along
        = [](double length, int room, const QScrollBar *bar) { return bar->maximum() > 0 ? BORDER - bar->value() : (room - length) / 2; };
    return {
        along(size.width(), viewport()->width(), horizontalScrollBar()), along(size.height(), viewport()->height(), verticalScrollBar())};
}

NySpreadGeometry NySpreadView::geometry() const
{
    return {m_project, m_spread, spreadTopLeft(), unitsPerMm(m_spread, m_zoom)};
}

QPointF NySpreadView::shareAt(const QPointF &point) const
{
    const QPointF offset = point - spreadTopLeft();
    const QSizeF size = spreadSize();
    return {offset.x() / size.width(), offset.y() / size.height()};
}

QPointF NySpreadView::middle() const
{
    return QRectF(viewport()->rect()).center();
}

QPoint NySpreadView::scrollPosition() const
{
    return {horizontalScrollBar()->value(), verticalScrollBar()->value()};
}

void NySpreadView::setScrollPosition(const QPointF &position)
{
    const auto bounded = [](double value, const QScrollBar *bar) { return int(std::lround(std::clamp<double>(value, 0, bar->maximum()))); };
    horizontalScrollBar()->setValue(bounded(position.x(), horizontalScrollBar()));
    verticalScrollBar()->setValue(bounded(position.y(), verticalScrollBar()));
}

void NySpreadView::updateScrollBars()
{
    const QSizeF size = spreadSize();
    const auto update = [this](QScrollBar *bar, double length, int room) {
        const int hidden = isZoomedIn() ? std::max(0, int(std::ceil(length + 2 * BORDER - room))) : 0;
        bar->setRange(0, hidden);
        bar->setPageStep(room);
        bar->setSingleStep(std::max(8, room / 20));
        return hidden > 0 ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff;
    };
    // By the policy a bar comes and goes at once; by its range only later, when the zoomed point would move away.
    setHorizontalScrollBarPolicy(update(horizontalScrollBar(), size.width(), viewport()->width()));
    setVerticalScrollBarPolicy(update(verticalScrollBar(), size.height(), viewport()->height()));
}

void NySpreadView::place(const Anchor &anchor)
{
    const QScopedValueRollback guard(m_isPlacing, true);
    // A scroll bar that comes or goes changes the room in the other direction, where that may bring another.
    for (int pass = 0; pass < 3; ++pass)
        updateScrollBars();
    const QSizeF size = spreadSize();
    const QPointF topLeft = anchor.point.value_or(middle()) - QPointF(anchor.share.x() * size.width(), anchor.share.y() * size.height());
    setScrollPosition(QPointF(BORDER, BORDER) - topLeft);
}

void NySpreadView::ensureVisible(NyBookPlace place)
{
    const QRectF rect = photoRect(place);
    if (!isZoomedIn() || rect.isEmpty())
        return;
    constexpr double margin = 12;
    const auto moved = [](double from, double to, double room) {
        if (to - from > room)
            return (from + to - room) / 2;
        return from < 0 ? from : std::max(0.0, to - room);
    };
    const QPointF by(moved(rect.left() - margin, rect.right() + margin, viewport()->width()),
        moved(rect.top() - margin, rect.bottom() + margin, viewport()->height()));
    setScrollPosition(scrollPosition() + by);
}

// ---- Zoom ----

std::optional<QPointF> NySpreadView::zoomPoint() const
{
    const QRectF seen = m_selected ? photoRect(*m_selected) & QRectF(viewport()->rect()) : QRectF();
    return seen.isEmpty() ? std::nullopt : std::optional(seen.center());
}

void NySpreadView::setZoom(double zoom)
{
    zoomAround(zoom, zoomPoint());
}

void NySpreadView::zoomIn()
{
    const auto next = std::find_if(ZOOM_STEPS.begin(), ZOOM_STEPS.end(), [this](double step) { return step > m_zoom * 1.01; });
    setZoom(next == ZOOM_STEPS.end() ? MaximumZoom : *next);
}

void NySpreadView::zoomOut()
{
    const auto next = std::find_if(ZOOM_STEPS.rbegin(), ZOOM_STEPS.rend(), [this](double step) { return step < m_zoom * 0.99; });
    setZoom(next == ZOOM_STEPS.rend() ? MinimumZoom : *next);
}

void NySpreadView::zoomAround(double zoom, std::optional<QPointF> point)
{
    if (std::isnan(zoom))
        return;
    const double bounded = zoom < SMALLEST_ZOOM_IN ? MinimumZoom : std::min(zoom, MaximumZoom);
    if (bounded == m_zoom)
        return;
    const auto isThere = [this](const Anchor &anchor) {
        const QSizeF size = spreadSize();
        const QPointF now = spreadTopLeft() + QPointF(anchor.share.x() * size.width(), anchor.share.y() * size.height());
        return (now - *anchor.point).manhattanLength() <= 1;
    };
    if (!point)
        m_zoomAnchor.reset();
    else if (!m_zoomAnchor || m_zoomAnchor->point != point || !isThere(*m_zoomAnchor))
        m_zoomAnchor = Anchor{point, shareAt(*point)};
    m_zoom = bounded;
    m_wheelDelta = 0;
    m_scrollRest = QPointF();
    place(m_zoomAnchor.value_or(Anchor{std::nullopt, m_middleShare}));
    if (point || !isZoomedIn())
        m_middleShare = shareAt(middle());
    viewport()->update();
    Q_EMIT zoomChanged(m_zoom);
}

void NySpreadView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    if (!m_isPlacing)
        place({std::nullopt, m_middleShare});
}

void NySpreadView::scrollContentsBy(int dx, int dy)
{
    if (!m_isPlacing)
        m_middleShare = shareAt(middle());
    // What stays is only moved, but for the frame, which does not scroll, and for moves by parts of a pixel.
    const double ratio = devicePixelRatioF();
    if (m_isPlacing || isFocusFrameShown() || ratio != std::floor(ratio))
        viewport()->update();
    else
        viewport()->scroll(dx, dy);
}

// ---- Painting ----

NyBookRenderer NySpreadView::renderer()
{
    return {m_style, [this](const QUrl &url, const QSize &boxPx) {
                const QSize affordablePx = (QSizeF(boxPx) * m_pictureShare).toSize().expandedTo(QSize(1, 1));
                return m_images.picture(url, affordablePx, NyFotoImageCache::Urgency::Visible);
            }};
}

/** How much of the wanted width and height all photos can have that are in @p seen, so that they fit into this share of memory. */
double NySpreadView::pictureShare(const NySpreadGeometry &spread, const QRectF &seen, double memoryShare) const
{
    double bytes = 0;
    for (const NySpreadGeometry::Page &page : spread.pages()) {
        for (int i = 0; page.page && i < page.page->photos.size(); ++i) {
            const NyPlacedFoto &foto = page.page->photos.at(i);
            if (!spread.photoRect({page.index, i}).intersects(seen))
                continue;
            const QSizeF boxPx = NyBookRenderer::boxPx(foto, foto.rectMm.size() * spread.unitsPerMm(), devicePixelRatioF());
            bytes += boxPx.width() * boxPx.height() * BYTES_PER_PIXEL;
        }
    }
    const double affordable = double(m_images.maximumBytes()) * memoryShare;
    return bytes > affordable ? std::sqrt(affordable / bytes) : 1;
}

void NySpreadView::paintEvent(QPaintEvent *event)
{
    QPainter painter(viewport());
    // The renderer goes by the clip, and what was not exposed would be painted for nothing.
    painter.setClipRegion(event->region());
    painter.fillRect(event->rect(), deskColor(palette()));
    const double ratio = devicePixelRatioF();
    const NySpreadGeometry spread = geometry();
    m_pictureShare = pictureShare(spread, QRectF(viewport()->rect()), SEEN_SHARE);
    paintShadow(painter, spread.rect(), event->region());
    const NyBookRenderer pageRenderer = renderer();
    const QSizeF pageMm = NySpreadGeometry::sizeMm(m_project, 0);
    const NyBookPage empty;
    // Where pages meet within a pixel, the desk would shine through.
    if (spread.pages().size() == 2)
        painter.fillRect(spread.rect(), m_style.pageBackground);
    for (const NySpreadGeometry::Page &page : spread.pages())
        pageRenderer.paint(painter, page.page ? *page.page : empty, page.kind, pageMm, page.rect, ratio);
    if (spread.pages().size() == 2)
        paintFold(painter, spread.pages().at(0).rect, spread.pages().at(1).rect);
    if (isDark(palette())) {
        // A shadow does not set dark paper off from a dark desk.
        painter.setPen(QColor(255, 255, 255, 40));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(spread.rect().adjusted(-0.5, -0.5, 0.5, 0.5));
    }
    paintSelection(painter, spread);
    prefetch(m_spread + 1);
    prefetch(m_spread - 1);
}

void NySpreadView::paintSelection(QPainter &painter, const NySpreadGeometry &spread) const
{
    const QColor highlight = palette().color(QPalette::Highlight);
    painter.setBrush(Qt::NoBrush);
    const auto frame = [&](const QRectF &rect, const QColor &color, double width) {
        QPen pen(color, width);
        pen.setJoinStyle(Qt::MiterJoin);
        painter.setPen(pen);
        painter.drawRect(rect);
    };
    const std::optional<NyBookPlace> framed = m_dropTarget ? m_dropTarget : m_selected;
    if (framed) {
        const QRectF rect = spread.photoRect(*framed);
        if (rect.isEmpty())
            return;
        if (m_dropTarget) {
            QColor veil = highlight;
            veil.setAlpha(110);
            painter.fillRect(rect, veil);
        }
        painter.setRenderHint(QPainter::Antialiasing);
        // Between two white lines the colour is told from any photo, whatever it shows at its edge.
        frame(rect, QColor(255, 255, 255, 220), 7);
        frame(rect, highlight, 4);
    } else if (isFocusFrameShown()) {
        frame(QRectF(viewport()->rect()).adjusted(2, 2, -2, -2), highlight, 2);
    }
}

void NySpreadView::prefetch(int spread)
{
    const NySpreadGeometry pages(m_project, spread, QPointF(), spread < 0 ? 1 : unitsPerMm(spread, MinimumZoom));
    const double share = pictureShare(pages, pages.rect(), PREFETCH_SHARE);
    for (const NySpreadGeometry::Page &page : pages.pages()) {
        if (!page.page)
            continue;
        for (const NyPlacedFoto &foto : page.page->photos) {
            const QSize boxPx = NyBookRenderer::boxPx(foto, foto.rectMm.size() * pages.unitsPerMm() * share, devicePixelRatioF());
            m_images.picture(foto.url, boxPx, NyFotoImageCache::Urgency::Prefetch);
        }
    }
}

// ---- Pointer ----

bool NySpreadView::viewportEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::ToolTip: {
        const auto *help = static_cast<QHelpEvent *>(event);
        showToolTip(help->pos(), help->globalPos());
        return true;
    }
    case QEvent::NativeGesture: {
        const auto *gesture = static_cast<QNativeGestureEvent *>(event);
        if (gesture->gestureType() != Qt::ZoomNativeGesture)
            break;
        zoomAround(m_zoom * (1 + gesture->value()), gesture->position());
        event->accept();
        return true;
    }
    default:
        break;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void NySpreadView::showToolTip(const QPoint &point, const QPoint &globalPos)
{
    const NySpreadGeometry spread = geometry();
    const std::optional<NyBookPlace> place = spread.photoAt(point);
    const NyPlacedFoto *foto = place ? m_project.photo(*place) : nullptr;
    if (!foto) {
        QToolTip::hideText();
        return;
    }
    QString text = u"<p style='white-space:pre'>"_s + photoName(*place).toHtmlEscaped();
    if (const double dpi = foto->printedDpi(); dpi > 0 && dpi < NyPageLayout::RecommendedDpi)
        text += u"<br>"_s
            + tr("Gedruckt hätte es hier nur %1 dpi; empfohlen sind mindestens %2.")
                  .arg(QString::number(int(dpi)), QString::number(int(NyPageLayout::RecommendedDpi)))
                  .toHtmlEscaped();
    QToolTip::showText(globalPos, text, viewport(), spread.photoRect(*place).toAlignedRect());
}

void NySpreadView::wheelEvent(QWheelEvent *event)
{
    event->accept();
    const QPoint delta = event->angleDelta();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        zoomAround(m_zoom * std::exp2(delta.y() / (NOTCH * NOTCHES_TO_DOUBLE)), event->position());
        return;
    }
    if (isZoomedIn()) {
        const bool isSideways = event->modifiers().testFlag(Qt::ShiftModifier) && delta.x() == 0;
        const QPointF notches = QPointF(isSideways ? QPoint(delta.y(), 0) : delta) / NOTCH * QApplication::wheelScrollLines();
        m_scrollRest -= QPointF(notches.x() * horizontalScrollBar()->singleStep(), notches.y() * verticalScrollBar()->singleStep());
        const QPoint whole = m_scrollRest.toPoint();
        m_scrollRest -= whole;
        setScrollPosition(scrollPosition() + whole);
        return;
    }
    // Fine-grained wheels send many small steps; one spread a notch.
    m_wheelDelta += delta.y();
    for (; m_wheelDelta >= NOTCH; m_wheelDelta -= NOTCH)
        showPrevious();
    for (; m_wheelDelta <= -NOTCH; m_wheelDelta += NOTCH)
        showNext();
}

/** Whoever clicks quickly on one place of the paper turns page after page, whatever comes to lie under the pointer. */
bool NySpreadView::goesOnTurning(const QMouseEvent &event) const
{
    const QStyleHints *hints = QGuiApplication::styleHints();
    return m_lastTurn && !isZoomedIn() && !m_selected && event.timestamp() >= m_lastTurn->timestampMs
        && event.timestamp() - m_lastTurn->timestampMs <= quint64(hints->mouseDoubleClickInterval())
        && (event.position() - m_lastTurn->point).manhattanLength() < hints->startDragDistance();
}

void NySpreadView::mousePressEvent(QMouseEvent *event)
{
    if (m_isKeyboardFocus) {
        m_isKeyboardFocus = false;
        viewport()->update();
    }
    const bool isFirstButton = event->buttons() == event->button();
    if (!isFirstButton || (event->button() != Qt::LeftButton && event->button() != Qt::MiddleButton)) {
        event->ignore();
        return;
    }
    Press press{event->button(), event->position(), scrollPosition()};
    if (event->button() == Qt::LeftButton)
        press.purpose = goesOnTurning(*event) ? Press::Purpose::TurnOn : Press::Purpose::Click;
    m_press = press;
}

void NySpreadView::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || goesOnTurning(*event)) {
        mousePressEvent(event);
        return;
    }
    // What the first click did is enough, unless something is there that can be opened.
    m_press = Press{event->button(), event->position(), scrollPosition()};
    const NySpreadGeometry spread = geometry();
    if (const std::optional<NyBookPlace> place = spread.photoAt(event->position())) {
        present(m_spread, place);
        Q_EMIT photoActivated(*place);
    } else if (spread.areTitleWordsAt(event->position(), renderer())) {
        Q_EMIT wordsActivated();
    }
}

void NySpreadView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_press)
        return;
    // A dialog may have got the release.
    if (!event->buttons().testFlag(m_press->button)) {
        m_press.reset();
        viewport()->unsetCursor();
        return;
    }
    const QPointF way = event->position() - m_press->point;
    if (!m_press->isDrag && way.manhattanLength() < QGuiApplication::styleHints()->startDragDistance())
        return;
    m_press->isDrag = true;
    if (isZoomedIn()) {
        viewport()->setCursor(Qt::ClosedHandCursor);
        setScrollPosition(m_press->scroll - way);
    }
}

void NySpreadView::mouseReleaseEvent(QMouseEvent *event)
{
    if (!m_press || event->button() != m_press->button) {
        event->ignore();
        return;
    }
    const Press press = *m_press;
    m_press.reset();
    viewport()->unsetCursor();
    if (!press.isDrag)
        click(press, event->timestamp());
}

void NySpreadView::click(const Press &press, quint64 timestampMs)
{
    switch (press.purpose) {
    case Press::Purpose::Nothing:
        return;
    case Press::Purpose::TurnOn:
        turnAt(press.point, timestampMs);
        return;
    case Press::Purpose::Click:
        break;
    }
    const NySpreadGeometry spread = geometry();
    const std::optional<NyBookPlace> place = spread.photoAt(press.point);
    if (place || m_selected)
        present(m_spread, place);
    else if (!isZoomedIn() && !spread.areTitleWordsAt(press.point, renderer()))
        turnAt(press.point, timestampMs);
}

void NySpreadView::turnAt(const QPointF &point, quint64 timestampMs)
{
    m_lastTurn = Turn{point, timestampMs};
    if (point.x() < viewport()->width() / 2.0)
        showPrevious();
    else
        showNext();
}

void NySpreadView::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isPointer = event->reason() != QContextMenuEvent::Keyboard;
    const std::optional<NyBookPlace> place = isPointer ? photoAt(event->pos()) : m_selected;
    if (!place) {
        event->ignore();
        return;
    }
    event->accept();
    if (!isPointer) {
        requestContextMenu(*place);
        return;
    }
    m_press.reset();
    present(m_spread, place);
    Q_EMIT contextMenuRequested(*place, event->globalPos());
}

void NySpreadView::setDropTarget(std::optional<NyBookPlace> place)
{
    if (place == m_dropTarget)
        return;
    m_dropTarget = place;
    viewport()->update();
}

void NySpreadView::dragEnterEvent(QDragEnterEvent *event)
{
    // What is no picture goes on to the window.
    event->ignore();
    if (!NyWindowParts::draggedPhoto(event->mimeData()).isEmpty())
        NyWindowParts::acceptWithoutMoving(event);
}

void NySpreadView::dragMoveEvent(QDragMoveEvent *event)
{
    event->ignore();
    const std::optional<NyBookPlace> place = photoAt(event->position());
    setDropTarget(place && NyWindowParts::acceptWithoutMoving(event) ? place : std::nullopt);
}

void NySpreadView::dragLeaveEvent(QDragLeaveEvent *)
{
    setDropTarget(std::nullopt);
}

void NySpreadView::dropEvent(QDropEvent *event)
{
    event->ignore();
    setDropTarget(std::nullopt);
    const QString path = NyWindowParts::draggedPhoto(event->mimeData());
    const std::optional<NyBookPlace> place = photoAt(event->position());
    if (path.isEmpty() || !place || !NyWindowParts::acceptWithoutMoving(event))
        return;
    setSelected(place);
    Q_EMIT photoDropped(*place, path);
}

void NySpreadView::requestContextMenu(NyBookPlace place)
{
    setSelected(place);
    if (m_selected != place)
        return;
    const QRectF seen = photoRect(place) & QRectF(viewport()->rect());
    Q_EMIT contextMenuRequested(place, viewport()->mapToGlobal(seen.isEmpty() ? middle() : seen.center()).toPoint());
}

// ---- Keyboard ----

void NySpreadView::keyPressEvent(QKeyEvent *event)
{
    const bool isShifted = event->modifiers() == Qt::ShiftModifier;
    const auto scroll = [this](int columns, int rows) {
        const QPoint steps(columns * horizontalScrollBar()->singleStep(), rows * verticalScrollBar()->singleStep());
        setScrollPosition(scrollPosition() + steps);
        return isZoomedIn();
    };
    bool isHandled = false;
    switch (event->key()) {
    case Qt::Key_Escape:
        isHandled = m_selected.has_value();
        if (isHandled) {
            m_isKeyboardFocus = true;
            present(m_spread, std::nullopt);
        }
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        isHandled = m_selected && !(event->modifiers() & ~Qt::KeypadModifier);
        if (isHandled && !event->isAutoRepeat())
            Q_EMIT photoActivated(*m_selected);
        break;
    case Qt::Key_F10:
        isHandled = isShifted && m_selected;
        if (isHandled)
            requestContextMenu(*m_selected);
        break;
    // No shortcut of the window: there it would take the key from every button that has the keyboard.
    case Qt::Key_Space:
        isHandled = isShifted || event->modifiers() == Qt::NoModifier;
        if (isHandled)
            setSpread(m_spread + (isShifted ? -1 : 1));
        break;
    // The arrows alone turn pages.
    case Qt::Key_Left:
        isHandled = isShifted && scroll(-1, 0);
        break;
    case Qt::Key_Right:
        isHandled = isShifted && scroll(1, 0);
        break;
    case Qt::Key_Up:
        isHandled = isShifted && scroll(0, -1);
        break;
    case Qt::Key_Down:
        isHandled = isShifted && scroll(0, 1);
        break;
    default:
        break;
    }
    event->setAccepted(isHandled);
}

void NySpreadView::focusInEvent(QFocusEvent *event)
{
    switch (event->reason()) {
    case Qt::BacktabFocusReason:
        m_isKeyboardFocus = true;
        // Backwards the way begins at its other end.
        if (const QList<NyBookPlace> all = places(); !m_selected && !all.isEmpty())
            setSelected(all.last());
        break;
    case Qt::TabFocusReason:
    case Qt::ShortcutFocusReason:
        m_isKeyboardFocus = true;
        break;
    case Qt::ActiveWindowFocusReason:
    case Qt::PopupFocusReason:
        break;
    default:
        m_isKeyboardFocus = false;
        break;
    }
    viewport()->update();
    QAbstractScrollArea::focusInEvent(event);
}

bool NySpreadView::focusNextPrevChild(bool next)
{
    const QList<NyBookPlace> all = places();
    const qsizetype current = m_selected ? all.indexOf(*m_selected) : -1;
    const qsizetype wanted = next ? current + 1 : current - 1;
    if (wanted >= all.size() || (!next && !m_selected))
        return QAbstractScrollArea::focusNextPrevChild(next);
    m_isKeyboardFocus = true;
    // Before the first photo comes the view itself.
    setSelected(wanted >= 0 ? std::optional(all.at(wanted)) : std::nullopt);
    return true;
}
