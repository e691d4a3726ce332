#include "DemoPictureWriter.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <mutex>
#include <vector>

#include <exiv2/exiv2.hpp>

#include <QBuffer>
#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QSaveFile>

#include "DemoAlbum.h"
#include "DemoCanvas.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int JPEG_QUALITY = 80;

bool isDark(DemoScene scene)
{
    return scene == DemoScene::CityNight || scene == DemoScene::Fireworks || scene == DemoScene::Stars
        || scene == DemoScene::ChristmasMarket || scene == DemoScene::ChristmasTree;
}

/** Noise of the sensor and the lens's darker corners, in place. */
void addCameraFlaws(QImage &image, bool dark, quint64 seed)
{
    DemoRandom random(seed ^ 0xca3e2aULL);
    std::vector<int> noise(4096);
    const double deviation = dark ? 3.2 : 2.4;
    for (int &value : noise) {
        double sum = 0.0;
        for (int part = 0; part < 6; ++part)
            sum += random.uniform(-1.0, 1.0);
        value = int(std::lround(sum * deviation / std::sqrt(2.0)));
    }
    const double strength = random.uniform(0.1, 0.26);
    const double centerX = image.width() / 2.0;
    const double centerY = image.height() / 2.0;
    const double farthest = centerX * centerX + centerY * centerY;
    quint32 state = quint32(seed * 2654435761U) | 1U;
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        const double dy = (y - centerY) * (y - centerY);
        for (int x = 0; x < image.width(); ++x) {
            state ^= state << 13;
            state ^= state >> 17;
            state ^= state << 5;
            const double distance = ((x - centerX) * (x - centerX) + dy) / farthest;
            const int factor = int(1024.0 * (1.0 - strength * distance * distance));
            const int grain = noise[state & 4095U];
            const auto channel = [factor, grain](int value) { return std::clamp(((value * factor) >> 10) + grain, 0, 255); };
            const QRgb pixel = line[x];
            line[x] = qRgb(channel(qRed(pixel)), channel(qGreen(pixel)), channel(qBlue(pixel)));
        }
    }
}

std::string degrees(double value)
{
    value = std::abs(value);
    const int whole = int(value);
    const double minutes = (value - whole) * 60.0;
    const int wholeMinutes = int(minutes);
    const int seconds = int(std::lround((minutes - wholeMinutes) * 60.0 * 100.0));
    return std::to_string(whole) + "/1 " + std::to_string(wholeMinutes) + "/1 " + std::to_string(seconds) + "/100";
}

Exiv2::ExifData exifOf(const DemoPicture &picture, QSize stored)
{
    Exiv2::ExifData exif;
    const std::string time = picture.captureTime.toString(u"yyyy:MM:dd HH:mm:ss"_s).toStdString();
    exif["Exif.Image.Make"] = "Demo";
    exif["Exif.Image.Model"] = picture.cameraModel.toStdString();
    exif["Exif.Image.Orientation"] = uint16_t(picture.cameraTurned ? 6 : 1);
    exif["Exif.Image.DateTime"] = time;
    exif["Exif.Photo.DateTimeOriginal"] = time;
    exif["Exif.Photo.DateTimeDigitized"] = time;
    exif["Exif.Photo.PixelXDimension"] = uint32_t(stored.width());
    exif["Exif.Photo.PixelYDimension"] = uint32_t(stored.height());
    if (!picture.utcOffset.isEmpty())
        exif["Exif.Photo.OffsetTimeOriginal"] = picture.utcOffset.toStdString();
    if (picture.place) {
        exif["Exif.GPSInfo.GPSVersionID"] = "2 3 0 0";
        exif["Exif.GPSInfo.GPSLatitudeRef"] = picture.place->latitude < 0.0 ? "S" : "N";
        exif["Exif.GPSInfo.GPSLatitude"] = degrees(picture.place->latitude);
        exif["Exif.GPSInfo.GPSLongitudeRef"] = picture.place->longitude < 0.0 ? "W" : "E";
        exif["Exif.GPSInfo.GPSLongitude"] = degrees(picture.place->longitude);
    }
    return exif;
}

QByteArray withExif(const QByteArray &jpeg, const Exiv2::ExifData &exif)
{
    // The writer of exiv2 shares the tables of its XMP part between threads.
    static std::mutex mutex;
    const std::scoped_lock lock(mutex);
    auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte *>(jpeg.constData()), size_t(jpeg.size()));
    image->setExifData(exif);
    image->writeMetadata();
    Exiv2::BasicIo &io = image->io();
    io.seek(0, Exiv2::BasicIo::beg);
    const Exiv2::DataBuf data = io.read(long(io.size()));
    return QByteArray(reinterpret_cast<const char *>(data.pData_), data.size_);
}
}

QString writeDemoPicture(const DemoPicture &picture, const QString &folder)
{
    const QFileInfo target(QDir(folder).filePath(picture.relativePath));
    if (target.exists())
        return QString();
    if (!QDir().mkpath(target.absolutePath()))
        return u"cannot make the folder %1"_s.arg(target.absolutePath());

    QImage image(picture.sizePx, QImage::Format_RGB32);
    if (image.isNull())
        return u"not enough memory for %1"_s.arg(target.absoluteFilePath());
    image.fill(Qt::black);
    {
        DemoCanvas canvas(image, picture.seed);
        paintScene(picture.scene, canvas);
    }
    // A camera held upright stores the picture on its side and notes that it has to be turned clockwise.
    if (picture.cameraTurned)
        image = image.transformed(QTransform().rotate(-90));
    addCameraFlaws(image, isDark(picture.scene), picture.seed);

    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    if (!image.save(&buffer, "JPG", JPEG_QUALITY))
        return u"cannot encode %1"_s.arg(target.absoluteFilePath());
    try {
        jpeg = withExif(jpeg, exifOf(picture, image.size()));
    } catch (const std::exception &error) {
        return u"cannot add EXIF to %1: %2"_s.arg(target.absoluteFilePath(), QString::fromLocal8Bit(error.what()));
    }

    QSaveFile file(target.absoluteFilePath());
    if (!file.open(QIODevice::WriteOnly))
        return u"cannot write %1: %2"_s.arg(target.absoluteFilePath(), file.errorString());
    if (file.write(jpeg) != jpeg.size() || !file.flush() || file.error() != QFileDevice::NoError) {
        const QString reason = file.errorString();
        file.cancelWriting();
        return u"cannot write %1: %2"_s.arg(target.absoluteFilePath(), reason);
    }
    if (!file.commit())
        return u"cannot write %1: %2"_s.arg(target.absoluteFilePath(), file.errorString());
    return QString();
}
