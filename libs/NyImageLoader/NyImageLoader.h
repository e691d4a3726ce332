#pragma once

#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QImage>

#include "NyMediaFormatList.h"
#include "NySingleton.h"
#include "nyimageloader_export.h"

/**
 * Reads pictures: the formats of Qt's image plug-ins, HEIC and AVIF, and the previews inside raw files.
 *
 * What a file is, its content decides, not its name. A picture comes out upright (its orientation applied once) and in the sRGB
 * colour space, as Format_RGB32 or, with transparency, Format_ARGB32. Of an animation the first frame is taken. A file that cannot be
 * read, is damaged, cut short, or larger than MaximumPixels gives a null image or an empty size and one warning that names it.
 * Thread-safe.
 */
class NYIMAGELOADER_EXPORT NyImageLoader : public NySingleton<NyImageLoader>
{
public:
    /** A file that claims more pixels is not decoded: it is broken or a decompression bomb. */
    static constexpr qint64 MaximumPixels = 500'000'000;
    /** The limit for formats that must be decoded whole: 4 bytes a pixel have to fit into 1 GiB. */
    static constexpr qint64 MaximumPixelsDecodedWhole = 256'000'000;

    NyImageLoader();
    ~NyImageLoader() override;

    virtual NyMediaFormatList supportedMediaFormats() const;

    /**
     * The picture, no larger than @p box (px, upright) and with its proportions kept; it is never enlarged. Cheap for JPEG,
     * which is decoded at the reduced size. An empty box gives a null image without a word.
     */
    QImage loadScaled(const QString &path, const QSize &box) const;

    /** The picture in its full size. */
    QImage load(const QString &path) const;

    /** The size in px of the upright picture, from the file's header. */
    QSize orientedSize(const QString &path) const;

private:
    NyMediaFormatList m_formats;
};
