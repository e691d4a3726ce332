#pragma once

#include <QList>
#include <QRectF>
#include <QSize>

/** What the layout must know of a photo. */
struct NyLayoutFoto
{
    /** Upright size in pixels; never empty. */
    QSize sizePx;
    /** A hero is given more room than its neighbours. */
    bool isHero = false;
};

/**
 * Arranges the photos of one page: rows and columns, nested, flush at their outer edges, in reading order except that a
 * page's only hero may change to one side.
 *
 * Every photo keeps its aspect ratio and is shown whole; none is printed with fewer than MinimumDpi pixels per inch.
 * Pure functions.
 */
class NyPageLayout
{
public:
    static constexpr double MinimumDpi = 150;
    static constexpr double RecommendedDpi = 200;
    static constexpr int MaximumPhotos = 6;

    struct Result
    {
        /** One rectangle in mm for each photo, in the photos' order. */
        QList<QRectF> rectsMm;
        /** Share of the area that is covered by photos, 0 to 1. */
        double coverage = 0;
        /** Length of the shortest side of all photos in mm. */
        double shortestSideMm = 0;
    };

    /**
     * @p photos holds 1 to MaximumPhotos entries; @p areaMm is where they may lie, @p gapMm the distance between two.
     * A single photo always finds its place. The result is empty if several are too different in shape to share the area,
     * for any other number of photos, and for an empty area.
     */
    static Result arrange(const QList<NyLayoutFoto> &photos, const QRectF &areaMm, double gapMm);

    /** The largest size in mm at which a picture of @p sizePx still has MinimumDpi. */
    static QSizeF largestPrintMm(const QSizeF &sizePx);

    /** Shrinks @p rectMm around its middle to the exact shape of a picture of @p sizePx and to what its pixels allow. */
    static QRectF fitted(const QRectF &rectMm, const QSizeF &sizePx);
};
