#include "DemoAlbum.h"
#include "DemoCanvas.h"
#include "DemoPictureWriter.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QImageReader>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace
{
int difference(QRgb a, QRgb b)
{
    return std::abs(qRed(a) - qRed(b)) + std::abs(qGreen(a) - qGreen(b)) + std::abs(qBlue(a) - qBlue(b));
}
}

class tst_DemoAlbum : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void liesInThePast_data();
    void liesInThePast();
    void holdsABookFullOfPhotos();
    void writesAnUprightPicture();
    void keepsWhatIsThere();
    void reportsAFolderThatCannotBeMade();

private:
    static DemoPicture uprightPicture();
};

void tst_DemoAlbum::liesInThePast_data()
{
    QTest::addColumn<QDate>("today");
    QTest::newRow("in autumn") << QDate(2026, 11, 21);
    QTest::newRow("on the first day of the holiday") << QDate(2026, 7, 11);
    QTest::newRow("on the last day of the holiday") << QDate(2026, 7, 19);
    QTest::newRow("the day after the holiday") << QDate(2026, 7, 20);
    QTest::newRow("at Christmas") << QDate(2026, 12, 25);
    QTest::newRow("on New Year's Day") << QDate(2027, 1, 1);
    QTest::newRow("on a leap day") << QDate(2028, 2, 29);
}

void tst_DemoAlbum::liesInThePast()
{
    QFETCH(QDate, today);
    const QList<DemoPicture> album = demoAlbum(today);
    QVERIFY(!album.isEmpty());
    for (const DemoPicture &picture : album) {
        QVERIFY2(picture.captureTime.isValid(), qPrintable(picture.relativePath));
        QVERIFY2(picture.captureTime.date() < today, qPrintable(picture.relativePath));
        QVERIFY2(picture.captureTime.date() >= today.addDays(-376), qPrintable(picture.relativePath));
    }
}

void tst_DemoAlbum::holdsABookFullOfPhotos()
{
    const QList<DemoPicture> album = demoAlbum(QDate(2026, 11, 21));
    QSet<QString> paths;
    QSet<quint64> seeds;
    QHash<QString, int> photosInFolder;
    for (const DemoPicture &picture : album) {
        paths.insert(picture.relativePath);
        seeds.insert(picture.seed);
        ++photosInFolder[picture.relativePath.left(picture.relativePath.lastIndexOf(u'/'))];
    }
    QCOMPARE(paths.size(), album.size());
    QCOMPARE(seeds.size(), album.size());
    QVERIFY(photosInFolder.size() >= 4);
    // The service makes a book of an event only when it has more than 52 photos.
    QVERIFY(photosInFolder.value(u"2026/2026-07-11 Sommerurlaub an der Ostsee"_s) >= 60);
}

DemoPicture tst_DemoAlbum::uprightPicture()
{
    DemoPicture picture;
    picture.relativePath = u"2026/Ein Tag & mehr/DSC_1.JPG"_s;
    picture.scene = DemoScene::Lighthouse;
    picture.seed = 5;
    picture.sizePx = QSize(200, 300);
    picture.cameraTurned = true;
    picture.captureTime = QDateTime(QDate(2026, 7, 12), QTime(14, 3, 5));
    picture.utcOffset = u"+02:00"_s;
    picture.place = DemoPlace{54.1, -12.0};
    return picture;
}

void tst_DemoAlbum::writesAnUprightPicture()
{
    QTemporaryDir folder;
    const DemoPicture picture = uprightPicture();
    QCOMPARE(writeDemoPicture(picture, folder.path()), QString());

    QImageReader reader(folder.filePath(picture.relativePath));
    QCOMPARE(reader.size(), QSize(300, 200));
    QCOMPARE(reader.transformation(), QImageIOHandler::TransformationRotate90);
    reader.setAutoTransform(true);
    const QImage seen = reader.read();
    QCOMPARE(seen.size(), QSize(200, 300));
    QImage painted(200, 300, QImage::Format_RGB32);
    {
        DemoCanvas canvas(painted, picture.seed);
        paintScene(picture.scene, canvas);
    }
    // Noise and compression change a pixel a little; sky and ground are far apart.
    QVERIFY(difference(painted.pixel(100, 60), painted.pixel(100, 290)) > 90);
    QVERIFY(difference(painted.pixel(100, 60), seen.pixel(100, 60)) < 60);
    QVERIFY(difference(painted.pixel(100, 290), seen.pixel(100, 290)) < 60);

    QFile file(folder.filePath(picture.relativePath));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QVERIFY(bytes.contains("2026:07:12 14:03:05"));
    QVERIFY(bytes.contains("+02:00"));
}

void tst_DemoAlbum::keepsWhatIsThere()
{
    QTemporaryDir folder;
    const DemoPicture picture = uprightPicture();
    QVERIFY(QDir(folder.path()).mkpath(u"2026/Ein Tag & mehr"_s));
    QFile file(folder.filePath(picture.relativePath));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write("mine"), 4);
    file.close();
    QCOMPARE(writeDemoPicture(picture, folder.path()), QString());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), "mine");
}

void tst_DemoAlbum::reportsAFolderThatCannotBeMade()
{
    QTemporaryDir folder;
    QFile inTheWay(folder.filePath(u"2026"_s));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    QVERIFY(writeDemoPicture(uprightPicture(), folder.path()).contains(folder.path()));
}

QTEST_GUILESS_MAIN(tst_DemoAlbum)
#include "tst_DemoAlbum.moc"
