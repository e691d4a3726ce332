#pragma once

#include "nymodelbase_export.h"

#include <QRectF>
#include <QSize>
#include <QUrl>

/** A photo on a page: which picture, where, and which part of it. */
struct NYMODELBASE_EXPORT NyPlacedFoto
{
    QUrl url;
    /** Millimetres from the page's upper left corner. */
    QRectF rectMm;
    /** The part shown, as fractions of width and height of the upright, turned picture; the whole by default. */
    QRectF crop = QRectF(0, 0, 1, 1);
    /** Clockwise quarter turns in degrees, on top of what the file's own orientation says: 0, 90, 180 or 270. */
    int rotationDegrees = 0;
    /** Upright size in pixels when the photo was placed; empty if unknown. */
    QSize sizePx;

    /** Pixels of what is shown, cut and turned; empty if the pixel size is unknown. */
    QSizeF shownSizePx() const;
    /** Pixels per inch at the printed size, the smaller of both directions; 0 if the pixel size is unknown. */
    double printedDpi() const;
    /** Width by height of what is shown; 0 if the pixel size is unknown. */
    double shownAspectRatio() const;

    friend NYMODELBASE_EXPORT bool operator==(const NyPlacedFoto &a, const NyPlacedFoto &b);
};
