#include <QTest>

#include <cmath>

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <NyFotoAccess.h>
#include <NyFotoCacheManager.h>

#include "TestPictures.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr NyBackgroundJobPriority Priority = NyBackgroundJobPriority::Analysis;

class Cancelled : public NyBackgroundTask
{
public:
    bool isCancelled() const override { return true; }
};

class GoesOn : public NyBackgroundTask
{
public:
    bool isCancelled() const override { return false; }
};

}

class tst_NyFotoAccess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void agreedValues();
    void videos_data();
    void videos();
    void sizes();
    void ratings();
    void times();
    void timesWithoutMetaData();
    void metaData();
    void positions();
    void drawables();
    void drawableOptions();
    void cancelledTask();
    void changedFileIsReadAgain();
    void timesPutBackAreNoticed();
    void readAgainBypassesTheCache();
    void sidecars();
    void fileSystemWithoutBirthTimes();
    void unreadableFotos();
    void noLocalFile();
    void samplesWithPositions();
    void samplesWithOrientations();

private:
    NyFoto picture(const QString &name, const TestPictures::Fields &fields = {}, int orientation = 1) const
    {
        const QString path = m_folder.filePath(name);
        QFile::remove(path);
        if (!TestPictures::writeJpeg(path, QSize(320, 200), orientation, fields))
            return NyFoto();
        return NyFoto(QFileInfo(path));
    }

    static NyDrawable drawable(const NyFoto &foto, NyCachingOption option = NyCachingOption::CacheAndLoad,
        NyFotoCacheResultHint *hint = nullptr, NyBackgroundTask *task = nullptr)
    {
        return NyFotoAccess::drawable(foto, QSize(224, 224), Priority, option, hint, task);
    }

    const QTemporaryDir m_folder;
};

void tst_NyFotoAccess::initTestCase()
{
    qputenv("TZ", "Europe/Berlin");
    tzset();
}

void tst_NyFotoAccess::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    NyFotoCacheManager::instance().clearCache();
}

void tst_NyFotoAccess::agreedValues()
{
    QCOMPARE(int(NyBackgroundJobPriority::Analysis), 4);
    QCOMPARE(int(NyCachingOption::CacheAndLoad), 13);
    QCOMPARE(int(NyCachingOption::LookIntoCache) | int(NyCachingOption::StoreInCache) | int(NyCachingOption::LoadIfMissing), 13);
    QCOMPARE(int(NyPictureTakenOption::MetaDataOrFileTime), 1);
}

void tst_NyFotoAccess::videos_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("expected");
    QTest::newRow("film") << u"/a/IMG_0001.MOV"_s << true;
    QTest::newRow("mp4") << u"/a/b.mp4"_s << true;
    QTest::newRow("stream") << u"/a/00001.mts"_s << true;
    QTest::newRow("photo") << u"/a/b.jpg"_s << false;
    QTest::newRow("film's picture") << u"/a/b.mp4.jpg"_s << false;
    QTest::newRow("folder named like a film") << u"/a.mp4/b"_s << false;
    QTest::newRow("no extension") << u"/a/mp4"_s << false;
}

void tst_NyFotoAccess::videos()
{
    QFETCH(QString, path);
    QFETCH(bool, expected);
    QCOMPARE(NyFotoAccess::isVideo(NyFoto(QFileInfo(path))), expected);
    QCOMPARE(NyFotoAccess::isVideo(NyFoto()), false);
}

void tst_NyFotoAccess::sizes()
{
    QCOMPARE(NyFotoAccess::preferredSize(picture(u"plain.jpg"_s), Priority, false), QSize(320, 200));
    QCOMPARE(NyFotoAccess::preferredSize(picture(u"turned.jpg"_s, {}, 6), Priority, false), QSize(320, 200));
    // A film's frame size is nobody's question here.
    const QString film = m_folder.filePath(u"film.mp4"_s);
    QVERIFY(QFile::copy(m_folder.filePath(u"plain.jpg"_s), film));
    QVERIFY(NyFotoAccess::preferredSize(NyFoto(QFileInfo(film)), Priority, false).isEmpty());
    QVERIFY(drawable(NyFoto(QFileInfo(film))).isNull());
}

void tst_NyFotoAccess::ratings()
{
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(picture(u"none.jpg"_s), Priority, false), 0);
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(picture(u"four.jpg"_s, {{"Xmp.xmp.Rating", "4"}}), Priority, false), 4);
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(picture(u"rejected.jpg"_s, {{"Xmp.xmp.Rating", "-1"}}), Priority, false), -1);
    QCOMPARE(
        NyFotoAccess::adobeOrVelmoraRating(picture(u"own.jpg"_s, {{"Xmp.xmp.Rating", "4"}, {"Xmp.velmora.Rating", "2"}}), Priority, false),
        2);
}

void tst_NyFotoAccess::times()
{
    const NyFoto local
        = picture(u"local.jpg"_s, {{"Exif.Photo.DateTimeOriginal", "2024:07:14 18:30:05"}, {"Exif.Photo.SubSecTimeOriginal", "5"}});
    QCOMPARE(NyFotoAccess::captureTime(local), QDateTime(QDate(2024, 7, 14), QTime(18, 30, 5, 500)));
    // 18:30:05 in Berlin's summer is 16:30:05 UTC.
    for (const NyPictureTakenOption option : {NyPictureTakenOption::MetaDataOnly, NyPictureTakenOption::MetaDataOrFileTime})
        QCOMPARE(NyFotoAccess::pictureTakenEpoch(local, Priority, false, option), 1720974605);
    const NyFoto tokyo
        = picture(u"tokyo.jpg"_s, {{"Exif.Photo.DateTimeOriginal", "2024:07:14 00:10:00"}, {"Exif.Photo.OffsetTimeOriginal", "+09:00"}});
    QCOMPARE(NyFotoAccess::captureTime(tokyo).date(), QDate(2024, 7, 14));
    QCOMPARE(NyFotoAccess::captureTime(tokyo).time(), QTime(0, 10));
    QCOMPARE(NyFotoAccess::captureTime(tokyo).offsetFromUtc(), 32400);
    QCOMPARE(NyFotoAccess::pictureTakenEpoch(tokyo, Priority, false, NyPictureTakenOption::MetaDataOrFileTime), 1720883400);
    const NyFoto xmp = picture(u"xmp.jpg"_s, {{"Xmp.photoshop.DateCreated", "2020-02-29T23:59:59"}});
    QCOMPARE(NyFotoAccess::captureTime(xmp), QDateTime(QDate(2020, 2, 29), QTime(23, 59, 59)));
}

void tst_NyFotoAccess::timesWithoutMetaData()
{
    const NyFoto foto = picture(u"bare.jpg"_s, {{"Exif.Photo.DateTimeOriginal", "0000:00:00 00:00:00"}});
    const QDateTime birth = foto.localFileInfo().fileTime(QFileDevice::FileBirthTime);
    if (!birth.isValid())
        QSKIP("the file system keeps no birth times");
    QCOMPARE(NyFotoAccess::captureTime(foto), birth);
    QCOMPARE(NyFotoAccess::pictureTakenEpoch(foto, Priority, false, NyPictureTakenOption::MetaDataOrFileTime), birth.toSecsSinceEpoch());
    QCOMPARE(NyFotoAccess::pictureTakenEpoch(foto, Priority, false, NyPictureTakenOption::MetaDataOnly), 0);
}

void tst_NyFotoAccess::metaData()
{
    const NyFotoMetaData data = NyFotoAccess::metaData(picture(u"data.jpg"_s,
                                                           {{"Exif.Photo.DigitalZoomRatio", "2/1"}, {"Exif.Image.Make", "Kamerawerk"},
                                                               {"Exif.Photo.ISOSpeedRatings", "400"}, {"Xmp.dc.subject", "Urlaub"}}),
        Priority, false);
    QVERIFY(data.isValid());
    QCOMPARE(data.digitalZoomRatio(), 2.0);
    QCOMPARE(data.cameraMake(), u"Kamerawerk"_s);
    QCOMPARE(data.isoSpeed(), 400);
    QCOMPARE(data.keywords(), QStringList{u"Urlaub"_s});
    QVERIFY(!data.captureTime().isValid());
    QVERIFY(!NyFotoMetaData().isValid());
    QCOMPARE(NyFotoMetaData().digitalZoomRatio(), 1.0);
    QVERIFY(!NyFotoMetaData().geoPosition().isValid());
}

void tst_NyFotoAccess::positions()
{
    QVERIFY(!NyFotoAccess::geoPosition(picture(u"nowhere.jpg"_s), Priority, false).isValid());
    const NyGeoPosition position
        = NyFotoAccess::geoPosition(picture(u"somewhere.jpg"_s,
                                        {{"Exif.GPSInfo.GPSLatitude", "33/1 30/1 0/1"}, {"Exif.GPSInfo.GPSLatitudeRef", "S"},
                                            {"Exif.GPSInfo.GPSLongitude", "70/1 15/1 0/1"}, {"Exif.GPSInfo.GPSLongitudeRef", "W"}}),
            Priority, false);
    QVERIFY(position.isValid());
    QCOMPARE(position.latitude().decimalDegrees(), -33.5);
    QCOMPARE(position.longitude().decimalDegrees(), -70.25);
    QVERIFY(position.latitude().isInValidRange());
    const NyGeoPosition outOfRange
        = NyFotoAccess::geoPosition(picture(u"far.jpg"_s,
                                        {{"Exif.GPSInfo.GPSLatitude", "151/1 0/1 0/1"}, {"Exif.GPSInfo.GPSLatitudeRef", "N"},
                                            {"Exif.GPSInfo.GPSLongitude", "10/1 0/1 0/1"}, {"Exif.GPSInfo.GPSLongitudeRef", "E"}}),
            Priority, false);
    QVERIFY(outOfRange.isValid());
    QVERIFY(!outOfRange.latitude().isInValidRange());
}

void tst_NyFotoAccess::drawables()
{
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const NyDrawable one = drawable(picture(u"turned.jpg"_s, {}, orientation));
        QVERIFY(!one.isNull());
        QCOMPARE(one.image().size(), QSize(224, 140));
        QCOMPARE(TestPictures::cornerLetters(one.image()), u"rgbw"_s);
        NyFotoCacheManager::instance().clearCache();
    }
    QVERIFY(
        NyFotoAccess::drawable(picture(u"box.jpg"_s), QSize(0, 224), Priority, NyCachingOption::CacheAndLoad, nullptr, nullptr).isNull());
}

void tst_NyFotoAccess::drawableOptions()
{
    const NyFoto foto = picture(u"cached.jpg"_s);
    NyFotoCacheResultHint hint = NyFotoCacheResultHint::Failed;
    QVERIFY(drawable(foto, NyCachingOption::LookIntoCache, &hint).isNull());
    QCOMPARE(hint, NyFotoCacheResultHint::NotLoaded);
    QVERIFY(!drawable(foto, NyCachingOption::LoadIfMissing, &hint).isNull());
    QCOMPARE(hint, NyFotoCacheResultHint::Loaded);
    QCOMPARE(NyFotoCacheManager::instance().usedBytes(), 0);
    QVERIFY(!drawable(foto, NyCachingOption::CacheAndLoad, &hint).isNull());
    QCOMPARE(hint, NyFotoCacheResultHint::Loaded);
    QCOMPARE(NyFotoCacheManager::instance().usedBytes(), 224 * 140 * 4);
    QVERIFY(!drawable(foto, NyCachingOption::LookIntoCache, &hint).isNull());
    QCOMPARE(hint, NyFotoCacheResultHint::FromCache);
    QVERIFY(!drawable(foto, NyCachingOption::LoadIfMissing, &hint).isNull());
    QCOMPARE(hint, NyFotoCacheResultHint::Loaded);
    QVERIFY(drawable(foto, NyCachingOption::None, &hint).isNull());
    QCOMPARE(hint, NyFotoCacheResultHint::NotLoaded);
    // Another box is another drawable.
    QVERIFY(NyFotoAccess::drawable(foto, QSize(100, 100), Priority, NyCachingOption::LookIntoCache, nullptr, nullptr).isNull());
    NyFotoCacheManager::instance().clearCache();
    QVERIFY(drawable(foto, NyCachingOption::LookIntoCache).isNull());
}

void tst_NyFotoAccess::cancelledTask()
{
    const NyFoto foto = picture(u"cancelled.jpg"_s);
    Cancelled cancelled;
    GoesOn goesOn;
    NyFotoCacheResultHint hint = NyFotoCacheResultHint::Failed;
    QVERIFY(drawable(foto, NyCachingOption::CacheAndLoad, &hint, &cancelled).isNull());
    QCOMPARE(hint, NyFotoCacheResultHint::NotLoaded);
    QVERIFY(!drawable(foto, NyCachingOption::CacheAndLoad, &hint, &goesOn).isNull());
    // What is there already costs nothing.
    QVERIFY(!drawable(foto, NyCachingOption::CacheAndLoad, &hint, &cancelled).isNull());
    QCOMPARE(hint, NyFotoCacheResultHint::FromCache);
}

void tst_NyFotoAccess::changedFileIsReadAgain()
{
    const NyFoto foto = picture(u"changed.jpg"_s, {{"Xmp.xmp.Rating", "1"}});
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 1);
    QCOMPARE(NyFotoAccess::preferredSize(foto, Priority, false), QSize(320, 200));
    QVERIFY(!drawable(foto).isNull());
    QFile::remove(foto.location());
    QVERIFY(TestPictures::writeJpeg(
        foto.location(), QSize(100, 100), 1, {{"Xmp.xmp.Rating", "5"}, {"Xmp.dc.subject", "so that the size differs"}}));
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 5);
    QCOMPARE(NyFotoAccess::preferredSize(foto, Priority, false), QSize(100, 100));
    QCOMPARE(drawable(foto).image().size(), QSize(100, 100));
    QCOMPARE(NyFotoCacheManager::instance().usedBytes(), 100 * 100 * 4);
}

void tst_NyFotoAccess::timesPutBackAreNoticed()
{
    const NyFoto foto = picture(u"back.jpg"_s, {{"Xmp.xmp.Rating", "1"}});
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 1);
    // As programs do that change the rating in place: the same size and the same modification time.
    const QDateTime time = foto.localFileInfo().lastModified();
    QByteArray bytes = TestPictures::readBytes(foto.location());
    const qsizetype at = bytes.indexOf("Rating=\"1\"");
    QVERIFY(at > 0);
    bytes[at + 8] = '4';
    const NyFotoFileStamp before = NyFotoFileStamp::ofFile(foto.location());
    // Until the file system's clock has moved on.
    QTRY_VERIFY(TestPictures::writeBytes(foto.location(), bytes) && [&] {
        QFile file(foto.location());
        return file.open(QIODevice::ReadWrite) && file.setFileTime(time, QFileDevice::FileModificationTime);
    }() && NyFotoFileStamp::ofFile(foto.location()) != before);
    QCOMPARE(NyFotoFileStamp::ofFile(foto.location()).modifiedMs, before.modifiedMs);
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 4);
}

void tst_NyFotoAccess::readAgainBypassesTheCache()
{
    const NyFoto foto = picture(u"again.jpg"_s, {{"Xmp.xmp.Rating", "1"}});
    // What the cache has need not be what the file says.
    NyImageMetaData other;
    other.rating = 3;
    NyFotoCacheManager &cache = NyFotoCacheManager::instance();
    cache.insertMetaData(foto.location(), NyFotoFileStamp::ofFileAndSidecars(foto.location()), other);
    cache.insertSize(foto.location(), NyFotoFileStamp::ofFileAndSidecars(foto.location()), QSize(1, 2));
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 3);
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, true), 1);
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 1);
    QCOMPARE(NyFotoAccess::preferredSize(foto, Priority, false), QSize(1, 2));
    QCOMPARE(NyFotoAccess::preferredSize(foto, Priority, true), QSize(320, 200));
    QCOMPARE(NyFotoAccess::preferredSize(foto, Priority, false), QSize(320, 200));
}

void tst_NyFotoAccess::sidecars()
{
    const NyFoto foto = picture(u"beside.jpg"_s, {{"Xmp.xmp.Rating", "1"}});
    const auto write = [](const QString &path, const QByteArray &rating) {
        return TestPictures::writeBytes(path,
            "<x:xmpmeta xmlns:x='adobe:ns:meta/'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'>"
            "<rdf:Description rdf:about='' xmlns:xmp='http://ns.adobe.com/xap/1.0/' xmp:Rating='"
                + rating + "'/></rdf:RDF></x:xmpmeta>");
    };
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 1);
    // The photo itself stays as it is while its sidecars come, change and go.
    const QString shared = m_folder.filePath(u"beside.xmp"_s);
    const QString own = foto.location() + u".xmp"_s;
    QVERIFY(write(shared, "2"));
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 2);
    QVERIFY(write(shared, "-1"));
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), -1);
    QVERIFY(write(own, "5"));
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 5);
    QVERIFY(QFile::remove(shared));
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 5);
    QVERIFY(QFile::remove(own));
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 1);
    // A broken one costs one line, not one for each question.
    QVERIFY(TestPictures::writeBytes(own, "no XMP"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read the sidecar \"%1\""_s.arg(QRegularExpression::escape(own))));
    QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 1);
    QVERIFY(!NyFotoAccess::geoPosition(foto, Priority, false).isValid());
    QCOMPARE(NyFotoAccess::metaData(foto, Priority, false).digitalZoomRatio(), 1.0);
}

void tst_NyFotoAccess::fileSystemWithoutBirthTimes()
{
    const NyFoto foto(QFileInfo(u"/proc/self/status"_s));
    const QFileInfo info = foto.localFileInfo();
    if (info.fileTime(QFileDevice::FileBirthTime).isValid())
        QSKIP("this kernel knows birth times even there");
    const QDateTime modified = info.fileTime(QFileDevice::FileModificationTime);
    QVERIFY(modified.isValid());
    QCOMPARE(NyFotoAccess::captureTime(foto), modified);
    QCOMPARE(NyFotoAccess::pictureTakenEpoch(foto, Priority, false, NyPictureTakenOption::MetaDataOrFileTime), modified.toSecsSinceEpoch());
    QCOMPARE(NyFotoAccess::pictureTakenEpoch(foto, Priority, false, NyPictureTakenOption::MetaDataOnly), 0);
}

void tst_NyFotoAccess::unreadableFotos()
{
    const QString broken = m_folder.filePath(u"broken.jpg"_s);
    QVERIFY(TestPictures::writeBytes(broken, "Dies ist kein Bild."));
    for (const QString &path : {broken, m_folder.filePath(u"missing.jpg"_s)}) {
        const NyFoto foto{QFileInfo(path)};
        const QRegularExpression line(u"cannot read the picture \"%1\""_s.arg(QRegularExpression::escape(path)));
        QTest::ignoreMessage(QtWarningMsg, line);
        QVERIFY(NyFotoAccess::preferredSize(foto, Priority, false).isEmpty());
        QTest::ignoreMessage(QtWarningMsg, line);
        NyFotoCacheResultHint hint = NyFotoCacheResultHint::Loaded;
        QVERIFY(drawable(foto, NyCachingOption::CacheAndLoad, &hint).isNull());
        QCOMPARE(hint, NyFotoCacheResultHint::Failed);
        QVERIFY(!NyFotoAccess::metaData(foto, Priority, false).isValid());
        QCOMPARE(NyFotoAccess::adobeOrVelmoraRating(foto, Priority, false), 0);
        QVERIFY(!NyFotoAccess::geoPosition(foto, Priority, false).isValid());
    }
    const NyFoto missing(QFileInfo(m_folder.filePath(u"missing.jpg"_s)));
    QVERIFY(!NyFotoAccess::captureTime(missing).isValid());
    QCOMPARE(NyFotoAccess::pictureTakenEpoch(missing, Priority, false, NyPictureTakenOption::MetaDataOrFileTime), 0);
}

void tst_NyFotoAccess::noLocalFile()
{
    for (const NyFoto &foto : {NyFoto(), NyFoto(QUrl(u"https://example.org/a.jpg"_s)), NyFoto(QUrl(u"photokit:asset/1"_s))}) {
        QVERIFY(NyFotoAccess::preferredSize(foto, Priority, false).isEmpty());
        QVERIFY(drawable(foto).isNull());
        QVERIFY(!NyFotoAccess::metaData(foto, Priority, false).isValid());
        QVERIFY(!NyFotoAccess::captureTime(foto).isValid());
    }
}

void tst_NyFotoAccess::samplesWithPositions()
{
    const QString folder = TestPictures::sampleFolder();
    if (folder.isEmpty())
        QSKIP("NY_PHOTO_SAMPLES names no folder of photographs");
    int count = 0;
    QDirIterator files(folder + u"/jpg/gps"_s, {u"*.jpg"_s}, QDir::Files);
    while (files.hasNext()) {
        const QString path = files.next();
        const NyGeoPosition position = NyFotoAccess::geoPosition(NyFoto(QFileInfo(path)), Priority, false);
        QVERIFY2(position.isValid() && position.latitude().isInValidRange(), qPrintable(path));
        // They were all taken in and around Arezzo.
        const NyGeoPosition arezzo(NyLatitude(43.463), NyLongitude(11.882));
        QVERIFY2(position.distanceTo(arezzo) < 20000.0, qPrintable(path));
        ++count;
    }
    QVERIFY(count > 0);
}

void tst_NyFotoAccess::samplesWithOrientations()
{
    const QString folder = TestPictures::sampleFolder();
    if (folder.isEmpty())
        QSKIP("NY_PHOTO_SAMPLES names no folder of photographs");
    int count = 0;
    for (const QString &kind : {u"landscape"_s, u"portrait"_s}) {
        // All eight show the same scene; the first is stored upright.
        const QString pattern = folder + u"/jpg/orientation/%1_%2.jpg"_s;
        const QImage upright
            = drawable(NyFoto(QFileInfo(pattern.arg(kind).arg(1)))).image().scaled(16, 16, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QVERIFY(!upright.isNull());
        for (int orientation = 2; orientation <= 8; ++orientation) {
            const NyDrawable one = drawable(NyFoto(QFileInfo(pattern.arg(kind).arg(orientation))));
            QCOMPARE(one.image().width() > one.image().height(), kind == u"landscape");
            const QImage small = one.image().scaled(16, 16, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            int difference = 0;
            for (int y = 0; y < 16; ++y) {
                for (int x = 0; x < 16; ++x)
                    difference += std::abs(qGray(small.pixel(x, y)) - qGray(upright.pixel(x, y)));
            }
            QVERIFY2(difference / 256 < 25, qPrintable(u"%1 %2: %3"_s.arg(kind).arg(orientation).arg(difference / 256)));
            ++count;
        }
    }
    QCOMPARE(count, 14);
}

QTEST_GUILESS_MAIN(tst_NyFotoAccess)
#include "tst_NyFotoAccess.moc"
