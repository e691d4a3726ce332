#include "NyPrintPhoto.h"

#include <algorithm>

#include <QBuffer>
#include <QColorSpace>
#include <QDebug>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>

#include <NyImageLoader.h>

#include "NyJpegFile.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

/** A larger file is decoded by parts instead of being held whole. */
constexpr qint64 MAXIMUM_BYTES_KEPT = 256 * 1024 * 1024;
/** Small enough to be decoded fast; the whole of the coded data is read all the same. */
constexpr QSize TRIAL_PX(64, 64);

/** The file's own JPEG if print files can hold it. */
std::optional<NyJpegFile> ownJpeg(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || !NyJpegFile::isJpeg(file.peek(3)) || file.size() > MAXIMUM_BYTES_KEPT)
        return std::nullopt;
    QString reason;
    std::optional<NyJpegFile> jpeg = NyJpegFile::parse(file.readAll(), reason);
    if (!jpeg)
        qDebug() << "pdf:" << path << "is coded anew:" << reason;
    return jpeg;
}

/** From the stored picture's square of one by one to the upright one's, y downwards; as EXIF 2.32, tag 0x0112, has it. */
QTransform orientationOf(const QString &path)
{
    QImageReader reader(path, "jpeg");
    const QImageIOHandler::Transformations transformation = reader.transformation();
    QTransform turned;
    turned.translate(0.5, 0.5);
    // The last one named is the first to be done.
    if (transformation & QImageIOHandler::TransformationRotate90)
        turned.rotate(90);
    turned.scale(
        transformation & QImageIOHandler::TransformationMirror ? -1 : 1, transformation & QImageIOHandler::TransformationFlip ? -1 : 1);
    turned.translate(-0.5, -0.5);
    return turned;
}

NyPrintPhoto taken(const NyJpegFile &jpeg, const QTransform &toUpright)
{
    NyPrintPhoto photo;
    photo.jpeg = jpeg.picture();
    photo.isOriginal = true;
    photo.sizePx = jpeg.sizePx();
    photo.componentCount = jpeg.componentCount();
    photo.iccProfile = jpeg.iccProfile();
    photo.toUpright = toUpright;
    return photo;
}

/** The opacity of every pixel, row by row; empty when all are opaque. What cannot be seen becomes white, which codes best. */
QByteArray takeOpacity(QImage &image)
{
    if (!image.hasAlphaChannel())
        return {};
    QByteArray opacity(qsizetype(image.width()) * image.height(), Qt::Uninitialized);
    char *out = opacity.data();
    bool isOpaque = true;
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qAlpha(line[x]);
            isOpaque = isOpaque && alpha == 255;
            *out++ = char(alpha);
            line[x] = alpha == 0 ? 0xffffffff : line[x] | 0xff000000;
        }
    }
    image.reinterpretAsFormat(QImage::Format_RGB32);
    return isOpaque ? QByteArray() : opacity;
}

/** The picture and its components; nothing when there is no memory for it. */
std::optional<NyPrintPhoto> coded(QImage image)
{
    NyPrintPhoto photo;
    const QByteArray opacity = takeOpacity(image);
    if (!opacity.isEmpty()) {
        constexpr qsizetype sizeBeforeZlib = 4;
        photo.opacity = qCompress(opacity).sliced(sizeBeforeZlib);
    }
    // The profile is told by the print file, once for all photos.
    image.setColorSpace(QColorSpace());
    if (image.allGray())
        image.convertTo(QImage::Format_Grayscale8);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(NyPrintPhoto::JpegQuality);
    writer.setOptimizedWrite(true);
    QString reason;
    const std::optional<NyJpegFile> jpeg
        = writer.write(image) ? NyJpegFile::parse(bytes, reason) : (reason = writer.errorString(), std::nullopt);
    if (!jpeg) {
        qWarning() << "pdf: a picture of" << image.size() << "cannot be coded:" << reason;
        return std::nullopt;
    }
    photo.jpeg = jpeg->picture();
    photo.sizePx = jpeg->sizePx();
    photo.componentCount = jpeg->componentCount();
    return photo;
}

}

std::optional<NyPrintPhoto> NyPrintPhoto::load(const QString &path, const QSize &uprightPx, const Need &need)
{
    std::optional<NyJpegFile> jpeg = ownJpeg(path);
    QTransform orientation;
    if (jpeg) {
        orientation = orientationOf(path);
        const bool isTurned = qFuzzyIsNull(orientation.m11());
        // Otherwise the loader sees another picture in the file.
        if ((isTurned ? jpeg->sizePx().transposed() : jpeg->sizePx()) != uprightPx)
            jpeg.reset();
    }
    QSize wantedPx = uprightPx;
    if (uprightPx.width() > need.uprightPx.width() * SizeTolerance && uprightPx.height() > need.uprightPx.height() * SizeTolerance)
        wantedPx = uprightPx.scaled(need.uprightPx, Qt::KeepAspectRatioByExpanding).boundedTo(uprightPx);
    const bool isMostlyShown = need.part.width() * need.part.height() >= SmallestWholeShare;
    if (jpeg && wantedPx == uprightPx && isMostlyShown) {
        // The segments hold together; whether the data between them does, the decoder knows, and it warns.
        if (NyImageLoader::instance().loadScaled(path, TRIAL_PX).isNull())
            return std::nullopt;
        return taken(*jpeg, orientation);
    }

    QImage image = NyImageLoader::instance().loadScaled(path, wantedPx);
    if (image.isNull())
        return std::nullopt;
    QTransform toUpright;
    if (!isMostlyShown) {
        const QRectF shown(need.part.x() * image.width(), need.part.y() * image.height(), need.part.width() * image.width(),
            need.part.height() * image.height());
        const QRect kept = shown.toAlignedRect() & image.rect();
        if (kept.isEmpty())
            return std::nullopt;
        toUpright.translate(double(kept.x()) / image.width(), double(kept.y()) / image.height());
        toUpright.scale(double(kept.width()) / image.width(), double(kept.height()) / image.height());
        image = image.copy(kept);
    }
    std::optional<NyPrintPhoto> photo = coded(std::move(image));
    // A file that was squeezed hard would lose twice: in quality, and in bytes.
    if (jpeg && (!photo || photo->jpeg.size() >= jpeg->pictureBytes()))
        return taken(*jpeg, orientation);
    if (photo)
        photo->toUpright = toUpright;
    return photo;
}
