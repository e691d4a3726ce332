#include "PaintedPictures.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QRandomGenerator>

#include <exiv2/exiv2.hpp>

QImage PaintedPictures::painted(const QSize &sizePx, quint32 seed)
{
    QRandomGenerator random(seed * 7919 + 17);
    const auto color = [&] { return QColor::fromHsv(random.bounded(360), random.bounded(60, 255), random.bounded(40, 255)); };
    QImage image(sizePx, QImage::Format_RGB32);
    image.fill(color());
    QPainter painter(&image);
    painter.setPen(Qt::NoPen);
    for (int i = 0; i < 40; ++i) {
        painter.setBrush(color());
        const QRect rect(random.bounded(sizePx.width()), random.bounded(sizePx.height()), 4 + random.bounded(sizePx.width() / 3 + 1),
            4 + random.bounded(sizePx.height() / 3 + 1));
        if (i % 2 == 0)
            painter.drawRect(rect);
        else
            painter.drawEllipse(rect);
    }
    return image;
}

bool PaintedPictures::write(const QString &path, const QImage &image, const MetaData &metaData)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath()) || !image.save(path, "JPEG", 85))
        return false;
    try {
        const auto file = Exiv2::ImageFactory::open(QFile::encodeName(path).toStdString());
        Exiv2::ExifData &exif = file->exifData();
        if (metaData.captureTime.isValid())
            exif["Exif.Photo.DateTimeOriginal"] = metaData.captureTime.toString(QStringLiteral("yyyy:MM:dd HH:mm:ss")).toStdString();
        if (metaData.orientation != 0)
            exif["Exif.Image.Orientation"] = uint16_t(metaData.orientation);
        if (!metaData.camera.isEmpty())
            exif["Exif.Image.Make"] = metaData.camera.toStdString();
        if (metaData.rating != 0)
            file->xmpData()["Xmp.xmp.Rating"] = std::to_string(metaData.rating);
        file->writeMetadata();
    } catch (const std::exception &) {
        return false;
    }
    return true;
}
