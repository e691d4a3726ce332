#include <QTest>

#include <cmath>

#include <sys/stat.h>

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QScopeGuard>
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
    void offsetOfTheLatestChange();
    void captureTimesElsewhere();
    void positions_data();
    void positions();
    void ratings_data();
    void ratings();
    void sidecars_data();
    void sidecars();
    void sidecarOfAnotherPicture();
    void sidecarFields();
    void brokenSidecars_data();
    void brokenSidecars();
    void damagedSidecar();
    void nestedXmp();
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

    /** A packet with these attributes and elements. */
    static QByteArray xmp(const QByteArray &attributes, const QByteArray &elements = {})
    {
        return "<?xpacket begin='\xef\xbb\xbf' id='W5M0MpCehiHzreSzNTczkc9d'?>\n<x:xmpmeta xmlns:x='adobe:ns:meta/'>\n"
               "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description rdf:about=''"
               " xmlns:xmp='http://ns.adobe.com/xap/1.0/' xmlns:photoshop='http://ns.adobe.com/photoshop/1.0/'"
               " xmlns:exif='http://ns.adobe.com/exif/1.0/' xmlns:dc='http://purl.org/dc/elements/1.1/'"
               " xmlns:tiff='http://ns.adobe.com/tiff/1.0/' xmlns:velmora='urn:velmora:photo:1.0/' "
            + attributes + ">" + elements + "</rdf:Description></rdf:RDF></x:xmpmeta>\n<?xpacket end='w'?>";
    }

    /** A folder for one picture and its sidecars. */
    QString freshFolder()
    {
        const QString path = m_folder.filePath(u"beside%1"_s.arg(++m_folders));
        QDir().mkpath(path);
        return path;
    }

    const QTemporaryDir m_folder;
    int m_folders = 0;
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

void tst_NyImageMetaDataReader::offsetOfTheLatestChange()
{
    // The shot and the latest change are the same moment, so the offset of the one is that of the other.
    const Fields same{{"Exif.Photo.DateTimeOriginal", "2024:07:14 18:30:05"}, {"Exif.Image.DateTime", "2024:07:14 18:30:05"},
        {"Exif.Photo.OffsetTime", "+09:00"}};
    QCOMPARE(read(same).captureTimes.at(0).offset, u"+09:00"_s);
    Fields edited = same;
    edited["Exif.Image.DateTime"] = "2024:07:15 08:00:00";
    QCOMPARE(read(edited).captureTimes.at(0).offset, QString());
    Fields both = same;
    both["Exif.Photo.OffsetTimeOriginal"] = "+02:00";
    QCOMPARE(read(both).captureTimes.at(0).offset, u"+02:00"_s);
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
    Fields xmpOnly = noFix;
    xmpOnly.emplace("Xmp.exif.GPSLatitude", "48,48.15N");
    xmpOnly.emplace("Xmp.exif.GPSLongitude", "11,34.5E");
    QTest::newRow("no fix, whose copy in XMP says nothing of that") << xmpOnly << none << none;
    Fields noSides = gps("43/1 28/1 0/1", "N", "11/1 53/1 0/1", "E");
    noSides.erase("Exif.GPSInfo.GPSLatitudeRef");
    QTest::newRow("no north or south") << noSides << none << none;
    noSides.emplace("Xmp.exif.GPSLatitude", "43,28.0S");
    noSides.emplace("Xmp.exif.GPSLongitude", "11,53.0E");
    QTest::newRow("no north or south, but XMP knows") << noSides << -43.466666666667 << 11.883333333333;
    QTest::newRow("side is nonsense") << gps("43/1 28/1 0/1", "?", "11/1 53/1 0/1", "E") << none << none;
    QTest::newRow("sides spelled out") << gps("43/1 30/1 0/1", "South", "11/1 30/1 0/1", "west") << -43.5 << -11.5;
    QTest::newRow("degrees alone") << gps("43/1", "N", "11/1", "E") << 43.0 << 11.0;
    QTest::newRow("minutes divided by zero") << gps("43/1 28/0 30/0", "N", "11/1 53/0 0/0", "E") << 43.0 << 11.0;
    QTest::newRow("longitude out of range") << gps("43/1 0/1 0/1", "N", "191/1 0/1 0/1", "E") << 43.0 << 191.0;
    QTest::newRow("XMP without a fix") << Fields{{"Xmp.exif.GPSLatitude", "48,48.15N"}, {"Xmp.exif.GPSLongitude", "11,34.5W"},
        {"Xmp.exif.GPSStatus", "V"}} << none
                                       << none;
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

void tst_NyImageMetaDataReader::sidecars_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("rating");
    // The picture itself has two stars; the sidecars have three, four, five, one in this order.
    QTest::newRow("none") << QStringList{} << 2;
    QTest::newRow("behind the whole name") << QStringList{u"a b.jpg.xmp"_s} << 3;
    QTest::newRow("in capitals") << QStringList{u"a b.jpg.XMP"_s} << 3;
    QTest::newRow("instead of the extension") << QStringList{u"a b.xmp"_s} << 3;
    QTest::newRow("instead of the extension, in capitals") << QStringList{u"a b.XMP"_s} << 3;
    QTest::newRow("the whole name goes first") << QStringList{u"a b.jpg.xmp"_s, u"a b.xmp"_s} << 3;
    QTest::newRow("the order on the disk does not matter") << QStringList{u"a b.xmp"_s, u"a b.jpg.xmp"_s} << 4;
    QTest::newRow("of a picture with another name") << QStringList{u"a.xmp"_s, u"a b.jpeg.xmp"_s, u"a b.jpg.xmp.bak"_s, u".xmp"_s} << 2;
}

void tst_NyImageMetaDataReader::sidecars()
{
    QFETCH(QStringList, names);
    QFETCH(int, rating);
    const QString folder = freshFolder();
    const QString path = folder + u"/a b.jpg"_s;
    QVERIFY(TestPictures::writeJpeg(path, QSize(40, 30), 1, {{"Xmp.xmp.Rating", "2"}, {"Exif.Image.Rating", "2"}}));
    const char *const stars[] = {"3", "4", "5", "1"};
    for (qsizetype i = 0; i < names.size(); ++i)
        QVERIFY(TestPictures::writeBytes(folder + u'/' + names[i], xmp("xmp:Rating='" + QByteArray(stars[i]) + "'")));
    const NyImageMetaData data = NyImageMetaDataReader::read(path);
    QVERIFY(data.isRead);
    QCOMPARE(data.rating.value_or(-9), rating);
}

void tst_NyImageMetaDataReader::sidecarOfAnotherPicture()
{
    // A camera wrote one shot twice; the shared sidecar says whose it is.
    const QString folder = freshFolder();
    const QString jpeg = folder + u"/IMG_1.JPG"_s;
    const QString raw = folder + u"/IMG_1.NEF"_s;
    QVERIFY(TestPictures::writeJpeg(jpeg, QSize(40, 30)));
    QVERIFY(TestPictures::writeBytes(
        raw, TestPictures::rawFile(QSize(640, 480), 1, TestPictures::jpegBytes(TestPictures::corners(QSize(32, 24))))));
    QVERIFY(TestPictures::writeBytes(folder + u"/IMG_1.xmp"_s, xmp("xmp:Rating='5' photoshop:SidecarForExtension='nef'")));
    QCOMPARE(NyImageMetaDataReader::read(raw).rating.value_or(-9), 5);
    QCOMPARE(NyImageMetaDataReader::read(jpeg).rating.value_or(-9), -9);
    // One that does not say is for both.
    QVERIFY(TestPictures::writeBytes(folder + u"/IMG_1.xmp"_s, xmp("xmp:Rating='4'")));
    QCOMPARE(NyImageMetaDataReader::read(raw).rating.value_or(-9), 4);
    QCOMPARE(NyImageMetaDataReader::read(jpeg).rating.value_or(-9), 4);
}

void tst_NyImageMetaDataReader::sidecarFields()
{
    const QString folder = freshFolder();
    const QString path = folder + u"/a.jpg"_s;
    QVERIFY(TestPictures::writeJpeg(path, QSize(40, 30), 6,
        {{"Exif.Photo.DateTimeOriginal", "2024:07:14 18:30:05"}, {"Xmp.xmp.CreateDate", "2024-07-14T18:30:06"},
            {"Exif.GPSInfo.GPSLatitude", "43/1 0/1 0/1"}, {"Exif.GPSInfo.GPSLatitudeRef", "N"},
            {"Exif.GPSInfo.GPSLongitude", "11/1 0/1 0/1"}, {"Exif.GPSInfo.GPSLongitudeRef", "E"}, {"Exif.Image.Make", "Kamerawerk"},
            {"Exif.Photo.DigitalZoomRatio", "2/1"}, {"Xmp.velmora.Rating", "1"}, {"Xmp.dc.title", "lang=\"x-default\" alt"},
            {"Xmp.dc.subject", "Oma"}}));
    const QString sidecar = path + u".xmp"_s;
    QVERIFY(TestPictures::writeBytes(sidecar,
        xmp("velmora:Rating='4' xmp:Rating='3' exif:GPSLatitude='33,30.0S' exif:GPSLongitude='70,15.0W'"
            " exif:DateTimeOriginal='2020-01-01T00:00:00' tiff:Orientation='3'",
            "<dc:title><rdf:Alt><rdf:li xml:lang='x-default'>neu</rdf:li></rdf:Alt></dc:title>"
            "<dc:subject><rdf:Bag><rdf:li>Urlaub</rdf:li><rdf:li>Oma</rdf:li></rdf:Bag></dc:subject>")));
    const NyImageMetaData data = NyImageMetaDataReader::read(path);
    QCOMPARE(data.ownRating.value_or(-9), 4);
    QCOMPARE(data.rating.value_or(-9), 3);
    QCOMPARE(data.latitude, -33.5);
    QCOMPARE(data.longitude, -70.25);
    QCOMPARE(data.title, u"neu"_s);
    QCOMPARE(data.keywords, (QStringList{u"Urlaub"_s, u"Oma"_s}));
    // The camera's own word for the time, then XMP.
    QCOMPARE(data.captureTimes.at(0).dateTime, u"2024:07:14 18:30:05"_s);
    QCOMPARE(data.captureTimes.at(1).dateTime, u"2020-01-01T00:00:00"_s);
    QCOMPARE(data.captureTimes.at(2).dateTime, u"2024-07-14T18:30:06"_s);
    // How the pixels lie is the file's own affair, and what the sidecar does not name stays.
    QCOMPARE(data.orientation, 6);
    QCOMPARE(data.cameraMake, u"Kamerawerk"_s);
    QCOMPARE(data.digitalZoomRatio, 2.0);
    // A position without meaning does not hide the picture's.
    QVERIFY(TestPictures::writeBytes(sidecar, xmp("exif:GPSLatitude='0,0.0N' exif:GPSLongitude='0,0.0E' xmp:Rating='77'")));
    QCOMPARE(NyImageMetaDataReader::read(path).latitude, 43.0);
    QCOMPARE(NyImageMetaDataReader::read(path).ownRating.value_or(-9), 1);
    QVERIFY(!NyImageMetaDataReader::read(path).rating);
}

void tst_NyImageMetaDataReader::brokenSidecars_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    QTest::newRow("empty") << QByteArray("") << u"it is empty"_s;
    QTest::newRow("text") << QByteArray("three stars\n") << u"it is no XMP"_s;
    QTest::newRow("cut short") << xmp("xmp:Rating='4'").first(400) << u"it is no XMP"_s;
    QTest::newRow("zeros") << QByteArray(1000, '\0') << u"it is no XMP"_s;
    QTest::newRow("noise") << QByteArray("<?xpacket\xff\xfe\x01<<<>>>&&&") << u"it is no XMP"_s;
    QTest::newRow("too large") << xmp("xmp:Rating='4'") + QByteArray(4 * 1024 * 1024, ' ') << u"it is too large"_s;
    QByteArray entities = "<!DOCTYPE x [<!ENTITY a '0123456789'>";
    for (char name = 'b'; name < 'k'; ++name)
        entities += QByteArray("<!ENTITY ") + name + " '" + (QByteArray("&") + char(name - 1) + ";").repeated(10) + "'>";
    QTest::newRow("entities without end") << entities + "]>" + xmp("", "<dc:source>&j;</dc:source>") << u"it is no XMP"_s;
}

void tst_NyImageMetaDataReader::brokenSidecars()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    const QString folder = freshFolder();
    const QString path = folder + u"/a.jpg"_s;
    QVERIFY(TestPictures::writeJpeg(path, QSize(40, 30), 1, {{"Xmp.xmp.Rating", "2"}}));
    QVERIFY(TestPictures::writeBytes(path + u".xmp"_s, bytes));
    QTest::ignoreMessage(QtWarningMsg, qPrintable(u"NyImageLoader: cannot read the sidecar \"%1.xmp\" : \"%2\""_s.arg(path, reason)));
    const NyImageMetaData data = NyImageMetaDataReader::read(path);
    QVERIFY(data.isRead);
    QCOMPARE(data.rating.value_or(-9), 2);
    // The other one still counts.
    QVERIFY(TestPictures::writeBytes(folder + u"/a.xmp"_s, xmp("xmp:Rating='5'")));
    QTest::ignoreMessage(QtWarningMsg, qPrintable(u"NyImageLoader: cannot read the sidecar \"%1.xmp\" : \"%2\""_s.arg(path, reason)));
    QCOMPARE(NyImageMetaDataReader::read(path).rating.value_or(-9), 5);
}

void tst_NyImageMetaDataReader::damagedSidecar()
{
    const QString folder = freshFolder();
    const QString path = folder + u"/a.jpg"_s;
    QVERIFY(TestPictures::writeJpeg(path, QSize(40, 30)));
    // A folder or a pipe of that name is no sidecar, and is not waited for.
    QVERIFY(QDir().mkpath(path + u".XMP"_s));
    QCOMPARE(::mkfifo(QFile::encodeName(folder + u"/a.xmp"_s).constData(), 0600), 0);
    QVERIFY(NyImageMetaDataReader::read(path).isRead);
    const QByteArray bytes = xmp("xmp:Rating='4' exif:GPSLatitude='33,30.0S'");
    // Which of them are still XMP, only a parser knows.
    static int otherLines = 0;
    otherLines = 0;
    const QtMessageHandler previous = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &line) {
        if (!line.startsWith(u"NyImageLoader: cannot read the sidecar"))
            ++otherLines;
    });
    const auto restore = qScopeGuard([previous] { qInstallMessageHandler(previous); });
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        QByteArray damaged = bytes;
        damaged[i] = '<';
        QVERIFY(TestPictures::writeBytes(path + u".xmp"_s, damaged));
        const NyImageMetaData data = NyImageMetaDataReader::read(path);
        QVERIFY(data.isRead);
        QVERIFY(!data.rating || *data.rating == 4);
    }
    QCOMPARE(otherLines, 0);
}

void tst_NyImageMetaDataReader::nestedXmp()
{
    // Far deeper than any program writes: neither stack nor patience may end.
    const QString folder = freshFolder();
    const QString path = folder + u"/a.png"_s;
    QVERIFY(TestPictures::corners(QSize(40, 30)).save(path, "PNG"));
    for (const int depth : {20, 2000, 100'000}) {
        const QByteArray elements = "<dc:source>" + QByteArray("<rdf:Bag><rdf:li>").repeated(depth)
            + QByteArray("</rdf:li></rdf:Bag>").repeated(depth) + "</dc:source>";
        QVERIFY(TestPictures::writeBytes(path + u".xmp"_s, xmp("xmp:Rating='4'", elements)));
        if (depth > 1000)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read the sidecar .*it is no XMP"_s));
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(NyImageMetaDataReader::read(path).rating.value_or(-9), depth > 1000 ? -9 : 4);
        QVERIFY(timer.elapsed() < 30'000);
    }
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
