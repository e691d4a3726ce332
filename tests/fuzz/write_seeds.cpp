// Writes small pictures of every kind that the programs read, with metadata, into a folder. Usage: write_seeds FOLDER

#include <exiv2/exiv2.hpp>

#include <QCoreApplication>
#include <QDir>

#include "TestPictures.h"

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    if (!folder.mkpath(QStringLiteral(".")))
        return 1;
    Exiv2::XmpProperties::registerNs("urn:velmora:photo:1.0/", "velmora");
    const QSize size(48, 32);
    const TestPictures::Fields fields{{"Exif.Photo.DateTimeOriginal", "2024:07:14 18:30:05"}, {"Exif.Photo.OffsetTimeOriginal", "+02:00"},
        {"Exif.Photo.SubSecTimeOriginal", "25"}, {"Exif.Photo.DigitalZoomRatio", "5/2"}, {"Exif.Photo.UserComment", "charset=Ascii Am See"},
        {"Exif.GPSInfo.GPSLatitude", "33/1 30/1 0/1"}, {"Exif.GPSInfo.GPSLatitudeRef", "S"}, {"Exif.GPSInfo.GPSLongitude", "70/1 15/1 0/1"},
        {"Exif.GPSInfo.GPSLongitudeRef", "W"}, {"Iptc.Application2.DateCreated", "2024-07-14"}, {"Iptc.Application2.Keywords", "Oma"},
        {"Xmp.xmp.Rating", "4"}, {"Xmp.velmora.Rating", "5"}, {"Xmp.MicrosoftPhoto.Rating", "75"},
        {"Xmp.dc.title", "lang=\"x-default\" Am See"}, {"Xmp.dc.subject", "Urlaub"}, {"Xmp.exif.GPSLatitude", "48,48.15N"},
        {"Xmp.exif.GPSLongitude", "11,34.5E"}};
    bool done = true;
    for (const int orientation : {1, 5, 6})
        done = TestPictures::writeJpeg(folder.filePath(QStringLiteral("plain%1.jpg").arg(orientation)), size, orientation) && done;
    done = TestPictures::writeJpeg(folder.filePath(QStringLiteral("fields.jpg")), size, 8, fields) && done;
    for (const char *format : {"PNG", "TIFF", "WEBP", "BMP"}) {
        const QString name = folder.filePath(QString::fromLatin1(format).toLower());
        done = TestPictures::corners(size).save(name, format) && done;
        if (qstrcmp(format, "BMP") == 0)
            continue;
        const QString tagged = name + QStringLiteral("-fields");
        done = TestPictures::corners(size).save(tagged, format) && TestPictures::addFields(tagged, fields) && done;
    }
    for (const bool av1 : {false, true}) {
        if (TestPictures::canWriteHeif(av1))
            done = TestPictures::writeHeif(folder.filePath(av1 ? QStringLiteral("avif") : QStringLiteral("heic")), QSize(128, 64), 32, av1)
                && done;
    }
    if (TestPictures::canWriteHeif(false))
        done = TestPictures::writeTurnedHeif(folder.filePath(QStringLiteral("turned-heic")), QSize(64, 64), 6, 6) && done;
    done = TestPictures::writeBytes(folder.filePath(QStringLiteral("raw.nef")),
               TestPictures::rawFile(QSize(640, 480), 6, TestPictures::jpegBytes(TestPictures::corners(size))))
        && done;
    return done ? 0 : 1;
}
