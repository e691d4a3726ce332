#include "TestPictures.h"

#include <cmath>
#include <cstring>
#include <exception>
#include <vector>

#include <exiv2/exiv2.hpp>
#include <libheif/heif.h>

#include <QBuffer>
#include <QFile>
#include <QTransform>

namespace TestPictures
{

QImage corners(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool left = x < size.width() / 2;
            const bool top = y < size.height() / 2;
            image.setPixel(x, y, top ? (left ? qRgb(255, 0, 0) : qRgb(0, 255, 0)) : (left ? qRgb(0, 0, 255) : qRgb(255, 255, 255)));
        }
    }
    return image;
}

QString cornerLetters(const QImage &image)
{
    if (image.width() < 4 || image.height() < 4)
        return QStringLiteral("????");
    const int x = image.width() / 4;
    const int y = image.height() / 4;
    QString letters;
    for (const QPoint &point : {QPoint(x, y), QPoint(image.width() - 1 - x, y), QPoint(x, image.height() - 1 - y),
             QPoint(image.width() - 1 - x, image.height() - 1 - y)}) {
        const QRgb color = image.pixel(point);
        const bool red = qRed(color) > 180;
        const bool green = qGreen(color) > 180;
        const bool blue = qBlue(color) > 180;
        const bool dark = qMin(qMin(qRed(color), qGreen(color)), qBlue(color)) < 90;
        if (red && green && blue)
            letters += u'w';
        else if (dark && red && !green && !blue)
            letters += u'r';
        else if (dark && green && !red && !blue)
            letters += u'g';
        else if (dark && blue && !red && !green)
            letters += u'b';
        else
            letters += u'?';
    }
    return letters;
}

QImage cornersStored(const QSize &uprightSize, int orientation)
{
    // The inverse of what makes the picture upright: which upright pixel a stored one shows (EXIF 2.32, tag 0x0112).
    const QImage upright = corners(uprightSize);
    const bool turned = orientation >= 5;
    QImage stored(turned ? uprightSize.transposed() : uprightSize, QImage::Format_RGB32);
    const int width = uprightSize.width();
    const int height = uprightSize.height();
    for (int row = 0; row < stored.height(); ++row) {
        for (int column = 0; column < stored.width(); ++column) {
            QPoint source;
            switch (orientation) {
            case 2:
                source = {width - 1 - column, row};
                break;
            case 3:
                source = {width - 1 - column, height - 1 - row};
                break;
            case 4:
                source = {column, height - 1 - row};
                break;
            case 5:
                source = {row, column};
                break;
            case 6:
                source = {width - 1 - row, column};
                break;
            case 7:
                source = {width - 1 - row, height - 1 - column};
                break;
            case 8:
                source = {row, height - 1 - column};
                break;
            default:
                source = {column, row};
                break;
            }
            stored.setPixel(column, row, upright.pixel(source));
        }
    }
    return stored;
}

bool addFields(const QString &path, const Fields &fields)
{
    try {
        const auto image = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
        image->readMetadata();
        for (const auto &[key, value] : fields) {
            if (key.starts_with("Exif."))
                image->exifData()[key] = value;
            else if (key.starts_with("Iptc."))
                image->iptcData()[key] = value;
            else
                image->xmpData()[key] = value;
        }
        image->writeMetadata();
        return true;
    } catch (const std::exception &exception) {
        qWarning("%s", exception.what());
        return false;
    }
}

bool writeJpeg(const QString &path, const QSize &uprightSize, int orientation, const Fields &fields)
{
    if (!cornersStored(uprightSize, orientation).save(path, "JPEG", 95))
        return false;
    Fields all = fields;
    if (orientation != 1)
        all["Exif.Image.Orientation"] = std::to_string(orientation);
    return all.empty() || addFields(path, all);
}

bool canWriteHeif(bool av1)
{
    return heif_have_encoder_for_format(av1 ? heif_compression_AV1 : heif_compression_HEVC);
}

namespace
{

struct HeifRequest
{
    int thumbnailPx = 0;
    bool av1 = false;
    int ownOrientation = 1;
    int exifOrientation = 0;
};

/** A TIFF header with one directory that holds the orientation alone. */
QByteArray exifBlock(int orientation)
{
    QByteArray block("II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0", 18);
    block.append(char(orientation)).append(QByteArray(7, '\0'));
    return block;
}

bool succeeded(const heif_error &error)
{
    return error.code == heif_error_Ok;
}

/** Null when libheif refuses. */
heif_image *heifImage(const QImage &pixels)
{
    const QImage picture = pixels.convertToFormat(QImage::Format_RGB888);
    heif_image *image = nullptr;
    if (!succeeded(heif_image_create(picture.width(), picture.height(), heif_colorspace_RGB, heif_chroma_interleaved_RGB, &image)))
        return nullptr;
    if (!succeeded(heif_image_add_plane(image, heif_channel_interleaved, picture.width(), picture.height(), 24))) {
        heif_image_release(image);
        return nullptr;
    }
    int stride = 0;
    uint8_t *plane = heif_image_get_plane(image, heif_channel_interleaved, &stride);
    for (int y = 0; y < picture.height(); ++y)
        std::memcpy(plane + std::ptrdiff_t(y) * stride, picture.constScanLine(y), std::size_t(picture.width()) * 3);
    return image;
}

bool encodeHeif(const QString &path, const QImage &pixels, const HeifRequest &request)
{
    heif_context *context = heif_context_alloc();
    heif_encoding_options *options = heif_encoding_options_alloc();
    heif_encoder *encoder = nullptr;
    heif_image_handle *handle = nullptr;
    heif_image_handle *thumbnail = nullptr;
    heif_image *image = heifImage(pixels);
    heif_image *mirrored = heifImage(pixels.mirrored(true, false));
    options->image_orientation = heif_orientation(request.ownOrientation);
    bool done = image && mirrored
        && succeeded(heif_context_get_encoder_for_format(context, request.av1 ? heif_compression_AV1 : heif_compression_HEVC, &encoder));
    if (done) {
        heif_encoder_set_lossy_quality(encoder, 90);
        done = succeeded(heif_context_encode_image(context, image, encoder, options, &handle));
    }
    if (done && request.thumbnailPx > 0)
        done = succeeded(heif_context_encode_thumbnail(context, mirrored, handle, encoder, options, request.thumbnailPx, &thumbnail));
    if (done && request.exifOrientation > 0) {
        const QByteArray exif = exifBlock(request.exifOrientation);
        done = succeeded(heif_context_add_exif_metadata(context, handle, exif.constData(), int(exif.size())));
    }
    done = done && succeeded(heif_context_write_to_file(context, QFile::encodeName(path).constData()));
    for (heif_image *one : {image, mirrored}) {
        if (one)
            heif_image_release(one);
    }
    if (thumbnail)
        heif_image_handle_release(thumbnail);
    if (handle)
        heif_image_handle_release(handle);
    if (encoder)
        heif_encoder_release(encoder);
    heif_encoding_options_free(options);
    heif_context_free(context);
    return done;
}

}

bool writeHeif(const QString &path, const QSize &size, int thumbnailPx, bool av1)
{
    return encodeHeif(path, corners(size), {thumbnailPx, av1, 1, 0});
}

bool writeTurnedHeif(const QString &path, const QSize &uprightSize, int ownOrientation, int exifOrientation)
{
    return encodeHeif(path, cornersStored(uprightSize, ownOrientation), {0, false, ownOrientation, exifOrientation});
}

QByteArray rawFile(const QSize &sensorSize, int orientation, const QByteArray &jpeg, const QByteArray &thumbnail)
{
    QByteArray bytes;
    const auto put16 = [&bytes](int value) { bytes.append(char(value & 0xff)).append(char(value >> 8 & 0xff)); };
    const auto put32 = [&put16](qint64 value) {
        put16(int(value & 0xffff));
        put16(int(value >> 16 & 0xffff));
    };
    // TIFF 6.0: header, a chain of directories; types 3 (SHORT) and 4 (LONG).
    struct Entry
    {
        int tag;
        int type;
        qint64 value;
    };
    const auto putDirectory = [&](const std::vector<Entry> &entries, qint64 next) {
        put16(int(entries.size()));
        for (const Entry &entry : entries) {
            put16(entry.tag);
            put16(entry.type);
            put32(1);
            put32(entry.value);
        }
        put32(next);
    };
    const qint64 second = 8 + 2 + 6 * 12 + 4;
    const qint64 dataOffset = second + (thumbnail.isEmpty() ? 0 : 2 + 3 * 12 + 4);
    bytes.append("II*").append('\0');
    put32(8);
    putDirectory({{0x0100, 4, sensorSize.width()}, {0x0101, 4, sensorSize.height()}, {0x0103, 3, 6}, {0x0112, 3, orientation},
                     {0x0201, 4, dataOffset}, {0x0202, 4, jpeg.size()}},
        thumbnail.isEmpty() ? 0 : second);
    if (!thumbnail.isEmpty())
        putDirectory({{0x0103, 3, 6}, {0x0201, 4, dataOffset + jpeg.size()}, {0x0202, 4, thumbnail.size()}}, 0);
    return bytes + jpeg + thumbnail;
}

QByteArray jpegBytes(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 95);
    return bytes;
}

bool writeBytes(const QString &path, const QByteArray &bytes)
{
    // A new file: cutting an old one back makes some file systems wait for the disk.
    QFile::remove(path);
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray readBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString sampleFolder()
{
    return qEnvironmentVariable("NY_PHOTO_SAMPLES");
}

}
