#pragma once

#include <optional>

#include <QByteArray>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QTransform>

/**
 * A photo in the form in which it goes into a print file: a JPEG without metadata. Plain value. Any thread.
 *
 * The file's own JPEG is taken as it is, when print files can hold it and it is not larger than needed; its orientation then lies in
 * toUpright. Everything else is decoded to the pixels that are needed, in the sRGB colour space, and coded anew.
 */
struct NyPrintPhoto
{
    /** What a book needs of a photo, over all places where it shows it. */
    struct Need
    {
        /** Pixels that the whole upright picture should have; what is at most SizeTolerance larger counts as needed. */
        QSize uprightPx;
        /** The part shown, as fractions of the upright picture. */
        QRectF part = QRectF(0, 0, 1, 1);
    };

    /** Coding anew costs quality, so it has to save more than this: 300 dpi are wanted, up to 330 dpi are kept. */
    static constexpr double SizeTolerance = 1.1;
    /** When less than this share of the picture is shown, the rest is cut away. */
    static constexpr double SmallestWholeShare = 0.5;
    /** Quality of what is coded anew, as libjpeg counts. */
    static constexpr int JpegQuality = 92;

    QByteArray jpeg;
    /** Whether the JPEG's picture is the file's own. */
    bool isOriginal = false;
    QSize sizePx;
    /** 1, grey, or 3. */
    int componentCount = 3;
    /** Empty when it is sRGB, or grey. */
    QByteArray iccProfile;
    /** One byte of opacity a pixel, compressed with zlib; empty for a picture without transparency. */
    QByteArray opacity;
    /** From the JPEG's square of one by one, y downwards, into the square of the whole upright picture. */
    QTransform toUpright;

    /** @p uprightPx: the file's size in px. Nothing, and a warning that names the file, when it cannot be read or is damaged. */
    static std::optional<NyPrintPhoto> load(const QString &path, const QSize &uprightPx, const Need &need);
};
