#include "NyBookGeometry.h"

namespace
{

constexpr double COVER_SIDE_MM = 18;
constexpr double COVER_TOP_MM = 17;
constexpr double COVER_PHOTO_MM = 134;

}

QRectF NyBookGeometry::pageArea(const QSizeF &pageMm)
{
    return QRectF(QPointF(0, 0), pageMm).adjusted(MarginMm, MarginMm, -MarginMm, -MarginMm);
}

QRectF NyBookGeometry::headingRect(const QSizeF &pageMm)
{
    const QRectF area = pageArea(pageMm);
    return {area.topLeft(), QSizeF(area.width(), HeadingMm - GapMm)};
}

QRectF NyBookGeometry::coverPhotoArea(const QSizeF &pageMm)
{
    return {COVER_SIDE_MM, COVER_TOP_MM, pageMm.width() - 2 * COVER_SIDE_MM, COVER_PHOTO_MM};
}

QRectF NyBookGeometry::coverTitleRect(const QSizeF &pageMm)
{
    const QRectF photo = coverPhotoArea(pageMm);
    return {photo.left(), photo.bottom() + 8, photo.width(), 24};
}

QRectF NyBookGeometry::coverSubtitleRect(const QSizeF &pageMm)
{
    const QRectF title = coverTitleRect(pageMm);
    return {title.left(), title.bottom() + 2, title.width(), 10};
}
