#include <QTest>

#include <cmath>

#include <sys/stat.h>

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <NyImageMetaDataReader.h>

#include "TestPictures.h"

using namespace Qt::Literals::StringLiterals;
using TestPictures::Fields;

class tst_NyImageMetaDataReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void plainPicture();
    void sizesAndOrientation();
    void captureTimes();
    void captureTimesElsewhere();
    void positions_data();
    void positions();
    void ratings_data();
    void ratings();
    void digitalZoom_data();
    void digitalZoom();
    void exposure();
    void texts();
    void keywords();
    void heifAndRaw();
    void notPictures();
    void damagedExif();
    void readsHeadersOnly();
    void manyThreads();
    void samples();

private:
    NyImageMetaData read(const Fields &fields) const
    {
        const QString path = m_folder.filePath(u"fields.jpg"_s);
        if (!TestPictures::writeJpeg(path, QSize(40, 30), 1, fields))
            return {};
        return NyImageMetaDataReader::read(path);
    }

    const QTemporaryDir m_folder;
};

void tst_NyImageMetaDataReader::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
}

void tst_NyImageMetaDataReader::plainPicture()
{
    const NyImageMetaData data = read({});
    QVERIFY(data.isRead);
    QCOMPARE(data.storedSizePx, QSize(40, 30));
    QCOMPARE(data.orientation, 1);
    QVERIFY(data.captureTimes.isEmpty());
    QVERIFY(std::isnan(data.latitude) && std::isnan(data.longitude));
    QVERIFY(!data.rating && !data.ownRating);
    QCOMPARE(data.digitalZoomRatio, 1.0);
    QVERIFY(data.keywords.isEmpty() && data.title.isEmpty() && data.cameraMake.isEmpty());
}

void tst_NyImageMetaDataReader::sizesAndOrientation()
{
    const QString path = m_folder.filePath(u"turned.jpg"_s);
    QVERIFY(TestPictures::writeJpeg(path, QSize(40, 30), 6));
    QCOMPARE(NyImageMetaDataReader::read(path).storedSizePx, QSize(30, 40));
    QCOMPARE(NyImageMetaDataReader::read(path).orientation, 6);
    for (const char *nonsense : {"0", "9", "65535"})
        QCOMPARE(read({{"Exif.Image.Orientation", nonsense}}).orientation, 1);
}

void tst_NyImageMetaDataReader::captureTimes()
{
    const NyImageMetaData data = read({{"Exif.Photo.DateTimeOriginal", "2024:07:14 18:30:05"}, {"Exif.Photo.SubSecTimeOriginal", "25"},
        {"Exif.Photo.OffsetTimeOriginal", "+02:00"}, {"Exif.Photo.DateTimeDigitized", "2024:07:14 18:30:06"},
        {"Exif.Image.DateTime", "2024:08:01 10:00:00"}, {"Xmp.xmp.CreateDate", "2024-07-14T18:30:07+02:00"}});
    QCOMPARE(data.captureTimes.size(), 4);
    QCOMPARE(data.captureTimes[0].dateTime, u"2024:07:14 18:30:05"_s);
    QCOMPARE(data.captureTimes[0].subSeconds, u"25"_s);
    QCOMPARE(data.captureTimes[0].offset, u"+02:00"_s);
    QCOMPARE(data.captureTimes[1].dateTime, u"2024:07:14 18:30:06"_s);
    QCOMPARE(data.captureTimes[2].dateTime, u"2024-07-14T18:30:07+02:00"_s);
    QCOMPARE(data.captureTimes[3].dateTime, u"2024:08:01 10:00:00"_s);
}

void tst_NyImageMetaDataReader::captureTimesElsewhere()
{
    QCOMPARE(read({{"Xmp.exif.DateTimeOriginal", "2023-01-02T03:04:05"}}).captureTimes.at(0).dateTime, u"2023-01-02T03:04:05"_s);
    QCOMPARE(read({{"Xmp.photoshop.DateCreated", "2023-01-02"}}).captureTimes.at(0).dateTime, u"2023-01-02"_s);
    const NyImageMetaData iptc
        = read({{"Iptc.Application2.DateCreated", "2022-03-04"}, {"Iptc.Application2.TimeCreated", "11:12:13+01:00"}});
    QCOMPARE(iptc.captureTimes.at(0).dateTime, u"2022-03-04T11:12:13+01:00"_s);
}

void tst_NyImageMetaDataReader::positions_data()
{
    QTest::addColumn<Fields>("fields");
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    const double none = std::numeric_limits<double>::quiet_NaN();
    const auto gps = [](const char *latitude, const char *latitudeRef, const char *longitude, const char *longitudeRef) {
        return Fields{{"Exif.GPSInfo.GPSLatitude", latitude}, {"Exif.GPSInfo.GPSLatitudeRef", latitudeRef},
            {"Exif.GPSInfo.GPSLongitude", longitude}, {"Exif.GPSInfo.GPSLongitudeRef", longitudeRef}};
    };
    QTest::newRow("north east") << gps("43/1 28/1 281400000/100000000", "N", "11/1 53/1 645599999/100000000", "E") << 43.467448333333
                                << 11.885126666639;
    QTest::newRow("south west") << gps("33/1 30/1 0/1", "S", "70/1 15/1 0/1", "W") << -33.5 << -70.25;
    QTest::newRow("fraction in the minutes") << gps("48/1 4815/100 0/0", "N", "11/1 3450/100 0/0", "E") << 48.8025 << 11.575;
    QTest::newRow("fraction in the degrees") << gps("488025/10000 0/1 0/1", "N", "11575/1000 0/1 0/1", "E") << 48.8025 << 11.575;
    QTest::newRow("latitude out of range") << gps("151/1 12/1 0/1", "N", "11/1 0/1 0/1", "E") << 151.2 << 11.0;
    QTest::newRow("exactly nowhere") << gps("0/1 0/1 0/1", "N", "0/1 0/1 0/1", "E") << none << none;
    QTest::newRow("on the equator") << gps("0/1 0/1 0/1", "N", "32/1 30/1 0/1", "E") << 0.0 << 32.5;
    QTest::newRow("degrees divided by zero") << gps("0/0 0/0 0/0", "N", "0/0 0/0 0/0", "E") << none << none;
    QTest::newRow("latitude alone") << Fields{{"Exif.GPSInfo.GPSLatitude", "43/1 28/1 0/1"}, {"Exif.GPSInfo.GPSLatitudeRef", "N"}} << none
                                    << none;
    Fields noFix = gps("43/1 28/1 0/1", "N", "11/1 53/1 0/1", "E");
    noFix.emplace("Exif.GPSInfo.GPSStatus", "V");
    QTest::newRow("no fix") << noFix << none << none;
    QTest::newRow("XMP, minutes") << Fields{{"Xmp.exif.GPSLatitude", "48,48.15N"}, {"Xmp.exif.GPSLongitude", "11,34.5W"}} << 48.8025
                                  << -11.575;
    QTest::newRow("XMP, seconds") << Fields{{"Xmp.exif.GPSLatitude", "33,30,18S"}, {"Xmp.exif.GPSLongitude", "70,15,0E"}} << -33.505
                                  << 70.25;
    QTest::newRow("XMP, nonsense") << Fields{{"Xmp.exif.GPSLatitude", "north"}, {"Xmp.exif.GPSLongitude", "70,15,0E"}} << none << none;
}

void tst_NyImageMetaDataReader::positions()
{
    QFETCH(Fields, fields);
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    const NyImageMetaData data = read(fields);
    QVERIFY(data.isRead);
    QCOMPARE(std::isnan(data.latitude), std::isnan(latitude));
    QCOMPARE(std::isnan(data.longitude), std::isnan(longitude));
    if (!std::isnan(latitude)) {
        QVERIFY2(std::abs(data.latitude - latitude) < 1e-9, qPrintable(QString::number(data.latitude, 'f', 12)));
        QVERIFY2(std::abs(data.longitude - longitude) < 1e-9, qPrintable(QString::number(data.longitude, 'f', 12)));
    }
}

void tst_NyImageMetaDataReader::ratings_data()
{
    QTest::addColumn<Fields>("fields");
    QTest::addColumn<int>("rating");
    QTest::addColumn<int>("ownRating");
    // -9 stands for none.
    QTest::newRow("none") << Fields{} << -9 << -9;
    QTest::newRow("XMP") << Fields{{"Xmp.xmp.Rating", "4"}} << 4 << -9;
    QTest::newRow("XMP, fraction") << Fields{{"Xmp.xmp.Rating", "3.0"}} << 3 << -9;
    QTest::newRow("XMP, zero") << Fields{{"Xmp.xmp.Rating", "0"}} << 0 << -9;
    QTest::newRow("XMP, rejected") << Fields{{"Xmp.xmp.Rating", "-1"}} << -1 << -9;
    QTest::newRow("XMP, out of range") << Fields{{"Xmp.xmp.Rating", "17"}} << -9 << -9;
    QTest::newRow("XMP, no number") << Fields{{"Xmp.xmp.Rating", "good"}} << -9 << -9;
    QTest::newRow("EXIF") << Fields{{"Exif.Image.Rating", "2"}} << 2 << -9;
    QTest::newRow("XMP goes before EXIF") << Fields{{"Exif.Image.Rating", "2"}, {"Xmp.xmp.Rating", "5"}} << 5 << -9;
    QTest::newRow("percent, four stars") << Fields{{"Xmp.MicrosoftPhoto.Rating", "75"}} << 4 << -9;
    QTest::newRow("percent, one star") << Fields{{"Xmp.MicrosoftPhoto.Rating", "1"}} << 1 << -9;
    QTest::newRow("percent, five stars") << Fields{{"Xmp.MicrosoftPhoto.Rating", "99"}} << 5 << -9;
    QTest::newRow("percent, none") << Fields{{"Xmp.MicrosoftPhoto.Rating", "0"}} << 0 << -9;
    QTest::newRow("own beside others") << Fields{{"Xmp.velmora.Rating", "5"}, {"Xmp.xmp.Rating", "1"}} << 1 << 5;
}

void tst_NyImageMetaDataReader::ratings()
{
    QFETCH(Fields, fields);
    QFETCH(int, rating);
    QFETCH(int, ownRating);
    const NyImageMetaData data = read(fields);
    QCOMPARE(data.rating.value_or(-9), rating);
    QCOMPARE(data.ownRating.value_or(-9), ownRating);
}

void tst_NyImageMetaDataReader::digitalZoom_data()
{
    QTest::addColumn<std::string>("value");
    QTest::addColumn<double>("expected");
    QTest::newRow("two and a half") << std::string("25/10") << 2.5;
    QTest::newRow("one") << std::string("100/100") << 1.0;
    QTest::newRow("not used") << std::string("0/100") << 1.0;
    QTest::newRow("divided by zero") << std::string("3/0") << 1.0;
}

void tst_NyImageMetaDataReader::digitalZoom()
{
    QFETCH(std::string, value);
    QFETCH(double, expected);
    QCOMPARE(read({{"Exif.Photo.DigitalZoomRatio", value}}).digitalZoomRatio, expected);
}

void tst_NyImageMetaDataReader::exposure()
{
    const NyImageMetaData data = read({{"Exif.Photo.ExposureTime", "1/250"}, {"Exif.Photo.FNumber", "28/10"},
        {"Exif.Photo.FocalLength", "50/1"}, {"Exif.Photo.ISOSpeedRatings", "400"}});
    QCOMPARE(data.exposureTimeS, 0.004);
    QCOMPARE(data.fNumber, 2.8);
    QCOMPARE(data.focalLengthMm, 50.0);
    QCOMPARE(data.isoSpeed, 400);
}

void tst_NyImageMetaDataReader::texts()
{
    const NyImageMetaData data = read({{"Exif.Image.Make", "Kamerawerk  "}, {"Exif.Image.Model", "K 1"},
        {"Exif.Image.Software", "Ver.1.00 "}, {"Exif.Image.ImageDescription", "M\xc3\xbcnchen"},
        {"Exif.Photo.UserComment", "charset=Ascii Screenshot"}, {"Xmp.dc.title", "lang=\"x-default\" Am See"}});
    QCOMPARE(data.cameraMake, u"Kamerawerk"_s);
    QCOMPARE(data.cameraModel, u"K 1"_s);
    QCOMPARE(data.software, u"Ver.1.00"_s);
    QCOMPARE(data.description, u"M\u00fcnchen"_s);
    QCOMPARE(data.userComment, u"Screenshot"_s);
    QCOMPARE(data.title, u"Am See"_s);
    QCOMPARE(read({{"Exif.Image.ImageDescription", "M\xfcnchen"}}).description, u"M\u00fcnchen"_s);
    const NyImageMetaData xmp
        = read({{"Exif.Image.ImageDescription", "OLYMPUS DIGITAL CAMERA"}, {"Xmp.dc.description", "lang=\"de-DE\" Der Steg"}});
    QCOMPARE(xmp.description, u"Der Steg"_s);
    QCOMPARE(read({{"Iptc.Application2.ObjectName", "Titel"}}).title, u"Titel"_s);
}

void tst_NyImageMetaDataReader::keywords()
{
    QCOMPARE(read({{"Xmp.dc.subject", "Urlaub"}}).keywords, QStringList{u"Urlaub"_s});
    QCOMPARE(read({{"Iptc.Application2.Keywords", "Oma"}}).keywords, QStringList{u"Oma"_s});
    QCOMPARE(read({{"Xmp.dc.subject", "Oma"}, {"Iptc.Application2.Keywords", "Oma"}}).keywords, QStringList{u"Oma"_s});
}

void tst_NyImageMetaDataReader::heifAndRaw()
{
    const QString raw = m_folder.filePath(u"a.nef"_s);
    QVERIFY(TestPictures::writeBytes(
        raw, TestPictures::rawFile(QSize(640, 480), 8, TestPictures::jpegBytes(TestPictures::corners(QSize(32, 24))))));
    QCOMPARE(NyImageMetaDataReader::read(raw).orientation, 8);
    QCOMPARE(NyImageMetaDataReader::read(raw).storedSizePx, QSize(640, 480));
    if (TestPictures::canWriteHeif(false)) {
        const QString heic = m_folder.filePath(u"a.heic"_s);
        QVERIFY(TestPictures::writeTurnedHeif(heic, QSize(64, 64), 1, 6));
        QVERIFY(NyImageMetaDataReader::read(heic).isRead);
        QCOMPARE(NyImageMetaDataReader::read(heic).orientation, 6);
    }
}

void tst_NyImageMetaDataReader::notPictures()
{
    const auto reads = [this](const QString &name, const QByteArray &bytes) {
        const QString path = m_folder.filePath(name);
        return TestPictures::writeBytes(path, bytes) && NyImageMetaDataReader::read(path).isRead;
    };
    QVERIFY(!reads(u"empty.jpg"_s, QByteArray()));
    QVERIFY(!reads(u"text.jpg"_s, "Dies ist kein Bild."));
    QVERIFY(!reads(u"noise.heic"_s,
        QByteArray("\0\0\0\x18"
                   "ftypheic\0\0\0\0mif1heic",
            24)
            + QByteArray(500, '\xee')));
    QVERIFY(!NyImageMetaDataReader::read(m_folder.path()).isRead);
    QVERIFY(!NyImageMetaDataReader::read(m_folder.filePath(u"missing.jpg"_s)).isRead);
    const QString pipe = m_folder.filePath(u"pipe.jpg"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QVERIFY(!NyImageMetaDataReader::read(pipe).isRead);
}

void tst_NyImageMetaDataReader::damagedExif()
{
    const QString path = m_folder.filePath(u"damaged.jpg"_s);
    QVERIFY(TestPictures::writeJpeg(path, QSize(40, 30), 6,
        {{"Exif.Photo.DateTimeOriginal", "2024:07:14 18:30:05"}, {"Xmp.xmp.Rating", "3"}, {"Exif.GPSInfo.GPSLatitude", "43/1 28/1 0/1"},
            {"Exif.Photo.UserComment", "charset=Unicode Ein Text"}}));
    const QByteArray bytes = TestPictures::readBytes(path);
    // Whatever single byte of the header is wrong: no crash, no exception, and an orientation that exists.
    for (qsizetype i = 2; i < qMin<qsizetype>(bytes.size(), 700); ++i) {
        for (const char value : {char(0), char(0xff), char(0x7f)}) {
            QByteArray damaged = bytes;
            damaged[i] = value;
            QVERIFY(TestPictures::writeBytes(path, damaged));
            const NyImageMetaData data = NyImageMetaDataReader::read(path);
            QVERIFY(data.orientation >= 1 && data.orientation <= 8);
        }
    }
    for (qsizetype length = 0; length < qMin<qsizetype>(bytes.size(), 700); length += 7) {
        QVERIFY(TestPictures::writeBytes(path, bytes.first(length)));
        NyImageMetaDataReader::read(path);
    }
}

void tst_NyImageMetaDataReader::readsHeadersOnly()
{
    const QString path = m_folder.filePath(u"long.jpg"_s);
    QVERIFY(TestPictures::writeJpeg(path, QSize(40, 30), 1, {{"Exif.Photo.DateTimeOriginal", "2024:07:14 18:30:05"}}));
    QVERIFY(TestPictures::writeBytes(path, TestPictures::readBytes(path) + QByteArray(20'000'000, 'x')));
    const auto readSoFar = [] {
        const QList<QByteArray> lines = TestPictures::readBytes(u"/proc/self/io"_s).split('\n');
        return lines.constFirst().mid(7).toLongLong();
    };
    NyImageMetaDataReader::read(path);
    const qint64 before = readSoFar();
    QCOMPARE(NyImageMetaDataReader::read(path).captureTimes.size(), 1);
    QVERIFY2(readSoFar() - before < 200'000, qPrintable(QString::number(readSoFar() - before)));
}

void tst_NyImageMetaDataReader::manyThreads()
{
    const QString path = m_folder.filePath(u"threads.jpg"_s);
    QVERIFY(TestPictures::writeJpeg(path, QSize(40, 30), 6, {{"Xmp.xmp.Rating", "3"}, {"Xmp.dc.title", "lang=\"x-default\" Am See"}}));
    std::atomic<int> failures{0};
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back(QThread::create([&] {
            for (int round = 0; round < 50; ++round) {
                const NyImageMetaData data = NyImageMetaDataReader::read(path);
                if (data.rating != 3 || data.title != u"Am See" || data.orientation != 6)
                    ++failures;
            }
        }));
        threads.back()->start();
    }
    for (const auto &thread : threads)
        QVERIFY(thread->wait());
    QCOMPARE(failures.load(), 0);
}

void tst_NyImageMetaDataReader::samples()
{
    if (TestPictures::sampleFolder().isEmpty())
        QSKIP("NY_PHOTO_SAMPLES names no folder of photographs");
    int count = 0;
    int withTime = 0;
    QDirIterator files(TestPictures::sampleFolder(), {u"*.jpg"_s, u"*.heic"_s, u"*.heif"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        const NyImageMetaData data = NyImageMetaDataReader::read(path);
        QVERIFY2(data.isRead, qPrintable(path));
        ++count;
        withTime += data.captureTimes.isEmpty() ? 0 : 1;
    }
    QVERIFY(count > 0);
    QVERIFY(withTime * 2 > count);
}

QTEST_GUILESS_MAIN(tst_NyImageMetaDataReader)
#include "tst_NyImageMetaDataReader.moc"
