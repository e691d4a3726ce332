#pragma once

#include <QRectF>
#include <QSizeF>

/** Where things lie in the books that this program composes: mm from the upper left corner of a page. Pure functions. */
class NyBookGeometry
{
public:
    /** Photos nearer to the paper's edge than this might be cut. */
    static constexpr double MarginMm = 12;
    /** Between two photos, and between a day heading and the photos below it. */
    static constexpr double GapMm = 4;
    /** Height that a day heading takes from the top of a page's area, the gap below it included. */
    static constexpr double HeadingMm = 11;

    /** Where the photos and headings of an inner page lie; empty for a page too small for its margins. */
    static QRectF pageArea(const QSizeF &pageMm);
    static QRectF headingRect(const QSizeF &pageMm);

    /** Where the cover's photo lies, as large as its shape and its pixels allow. */
    static QRectF coverPhotoArea(const QSizeF &pageMm);
    static QRectF coverTitleRect(const QSizeF &pageMm);
    static QRectF coverSubtitleRect(const QSizeF &pageMm);
};
