#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include "NyFotoAnalyser.h"
#include "PaintedPictures.h"

using namespace Qt::Literals::StringLiterals;

class tst_NyFotoAnalyser : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void usualPhoto();
    void turnedPhotoIsUpright();
    void withoutMetaDataTheFileTellsTheTime();
    void aClockThatCannotBeRightIsNotBelieved_data();
    void aClockThatCannotBeRightIsNotBelieved();
    void aStampIsTiny();
    void unreadable_data();
    void unreadable();
    void poorPhotos();
    void screenshots_data();
    void screenshots();
    void flatPictureOfScreenSize();

private:
    QTemporaryDir m_dir;
};

void tst_NyFotoAnalyser::usualPhoto()
{
    const QString path = m_dir.filePath(u"Toskana 100%/ä \"1\"\n.jpg"_s);
    PaintedPictures::MetaData metaData;
    metaData.captureTime = QDateTime(QDate(2024, 7, 12), QTime(23, 59, 58));
    metaData.rating = 4;
    QVERIFY(PaintedPictures::write(path, PaintedPictures::painted(QSize(640, 480), 1), metaData));
    const NyFotoFacts facts = NyFotoAnalyser::analyse(NyFoto(QFileInfo(path)));
    QVERIFY(facts.flaw == NyFotoFacts::Flaw::None);
    QCOMPARE(facts.url.toLocalFile(), path);
    QCOMPARE(facts.sizePx, QSize(640, 480));
    QCOMPARE(facts.captureTime.date(), QDate(2024, 7, 12));
    QCOMPARE(facts.captureTime.time(), QTime(23, 59, 58));
    QCOMPARE(facts.rating, 4);
    QVERIFY(facts.strength() > 1);
}

void tst_NyFotoAnalyser::turnedPhotoIsUpright()
{
    const QImage upright = PaintedPictures::painted(QSize(480, 640), 2);
    const QString turned = m_dir.filePath(u"turned.jpg"_s);
    const QString straight = m_dir.filePath(u"straight.jpg"_s);
    PaintedPictures::MetaData metaData;
    metaData.orientation = 6;
    QVERIFY(PaintedPictures::write(turned, upright.transformed(QTransform().rotate(-90)), metaData));
    QVERIFY(PaintedPictures::write(straight, upright));
    const NyFotoFacts facts = NyFotoAnalyser::analyse(NyFoto(QFileInfo(turned)));
    QCOMPARE(facts.sizePx, QSize(480, 640));
    const quint64 difference = facts.differenceHash ^ NyFotoAnalyser::analyse(NyFoto(QFileInfo(straight))).differenceHash;
    QVERIFY(qPopulationCount(difference) <= 4);
}

void tst_NyFotoAnalyser::withoutMetaDataTheFileTellsTheTime()
{
    const QString path = m_dir.filePath(u"bare.jpg"_s);
    const QDateTime before = QDateTime::currentDateTime().addSecs(-2);
    QVERIFY(PaintedPictures::painted(QSize(320, 240), 3).save(path, "JPEG"));
    const NyFotoFacts facts = NyFotoAnalyser::analyse(NyFoto(QFileInfo(path)));
    QVERIFY(facts.captureTime >= before);
    QVERIFY(facts.captureTime <= QDateTime::currentDateTime().addSecs(2));
}

void tst_NyFotoAnalyser::aClockThatCannotBeRightIsNotBelieved_data()
{
    QTest::addColumn<QDateTime>("clock");
    QTest::addColumn<bool>("isBelieved");
    const QDateTime now = QDateTime::currentDateTime();
    QTest::newRow("reset") << QDateTime(QDate(1970, 1, 1), QTime(0, 3)) << false;
    QTest::newRow("next week") << now.addDays(7) << false;
    QTest::newRow("next century") << now.addYears(80) << false;
    QTest::newRow("tomorrow, elsewhere") << now.addSecs(14 * 3600) << true;
    QTest::newRow("a scan of an old picture") << QDateTime(QDate(1970, 1, 2), QTime(0, 3)) << true;
    QTest::newRow("usual") << QDateTime(QDate(2024, 7, 12), QTime(12, 0)) << true;
}

void tst_NyFotoAnalyser::aClockThatCannotBeRightIsNotBelieved()
{
    QFETCH(QDateTime, clock);
    PaintedPictures::MetaData metaData;
    metaData.captureTime = clock;
    const QString path = m_dir.filePath(u"clock.jpg"_s);
    QVERIFY(PaintedPictures::write(path, PaintedPictures::painted(QSize(320, 240), 3), metaData));
    const QDate date = NyFotoAnalyser::analyse(NyFoto(QFileInfo(path))).captureTime.date();
    QFETCH(bool, isBelieved);
    QCOMPARE(date, isBelieved ? clock.date() : QFileInfo(path).lastModified().date());
}

void tst_NyFotoAnalyser::aStampIsTiny()
{
    const auto flawOf = [&](const QSize &size) {
        const QString path = m_dir.filePath(u"stamp.jpg"_s);
        return PaintedPictures::write(path, PaintedPictures::painted(size, 4)) ? NyFotoAnalyser::analyse(NyFoto(QFileInfo(path))).flaw
                                                                               : NyFotoFacts::Flaw::Unreadable;
    };
    QVERIFY(flawOf(QSize(160, 120)) == NyFotoFacts::Flaw::Tiny);
    QVERIFY(flawOf(QSize(75, 100)) == NyFotoFacts::Flaw::Tiny);
    QVERIFY(flawOf(QSize(240, 180)) == NyFotoFacts::Flaw::None);
}

void tst_NyFotoAnalyser::unreadable_data()
{
    QTest::addColumn<QByteArray>("content");
    const QString good = m_dir.filePath(u"good.jpg"_s);
    QVERIFY(PaintedPictures::write(good, PaintedPictures::painted(QSize(640, 480), 4)));
    QFile file(good);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("header only") << bytes.first(200);
    QTest::newRow("half") << bytes.first(bytes.size() / 2);
}

void tst_NyFotoAnalyser::unreadable()
{
    QFETCH(QByteArray, content);
    const QString path = m_dir.filePath(u"broken.jpg"_s);
    QFile::remove(path);
    if (!content.isEmpty()) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
    }
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"broken\\.jpg"_s));
    const NyFotoFacts facts = NyFotoAnalyser::analyse(NyFoto(QFileInfo(path)));
    QVERIFY(facts.flaw == NyFotoFacts::Flaw::Unreadable);
    QCOMPARE(facts.url.toLocalFile(), path);
}

void tst_NyFotoAnalyser::poorPhotos()
{
    using Flaw = NyFotoFacts::Flaw;
    const auto flawOf = [&](const QImage &image, int rating = 0) {
        PaintedPictures::MetaData metaData;
        metaData.rating = rating;
        const QString path = m_dir.filePath(u"poor.jpg"_s);
        return PaintedPictures::write(path, image, metaData) ? NyFotoAnalyser::analyse(NyFoto(QFileInfo(path))).flaw : Flaw::Unreadable;
    };
    const QImage image = PaintedPictures::painted(QSize(640, 480), 5);
    QImage black = image;
    black.fill(Qt::black);
    QVERIFY(flawOf(black) == Flaw::Blank);
    QVERIFY(flawOf(image.scaled(16, 12)) == Flaw::Blank);
    QVERIFY(flawOf(image.scaled(24, 18, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                       .scaled(640, 480, Qt::IgnoreAspectRatio, Qt::SmoothTransformation))
        == Flaw::Blurred);
    QVERIFY(flawOf(image, -1) == Flaw::Rejected);
    QVERIFY(flawOf(image, 1) == Flaw::None);
    QVERIFY(NyFotoAnalyser::analyse(NyFoto(QUrl(u"photokit:/1234"_s))).flaw == Flaw::Unreadable);
}

void tst_NyFotoAnalyser::screenshots_data()
{
    QTest::addColumn<bool>("isScreenshot");
    const auto row = [](const QString &path, bool isScreenshot) { QTest::newRow(qPrintable(path)) << isScreenshot; };
    row(u"/p/Screenshot_20240712-101112.png"_s, true);
    row(u"/p/Screenshot 2024-07-12 at 10.11.12.jpg"_s, true);
    row(u"/p/Bildschirmfoto vom 2024-07-12 10-11-12.png"_s, true);
    row(u"/p/Capture d’écran 2024.png"_s, true);
    row(u"/p/Schermata 2024-07-12.png"_s, true);
    row(u"/p/Schermafbeelding 2024-07-12.png"_s, true);
    row(u"/p/Captura de pantalla 2024.png"_s, true);
    row(u"/p/Screenshots/IMG_1.jpg"_s, true);
    row(u"/p/Screenshots of Rome/IMG_1.jpg"_s, false);
    row(u"/p/IMG_1.jpg"_s, false);
    row(u"/p/Meine Screenshots sortiert.jpg"_s, false);
    row(u"/p/Schermataler See.jpg"_s, false);
    row(u"/p/screenshotting.jpg"_s, false);
}

void tst_NyFotoAnalyser::screenshots()
{
    const QString path = QString::fromUtf8(QTest::currentDataTag());
    QTEST(NyFotoAnalyser::isScreenshot(path, QSize(4000, 3000), false, 0.1), "isScreenshot");
    QTEST(NyFotoAnalyser::isScreenshot(path.normalized(QString::NormalizationForm_D), QSize(4000, 3000), false, 0.1), "isScreenshot");
}

void tst_NyFotoAnalyser::flatPictureOfScreenSize()
{
    const QString path = u"/p/a.png"_s;
    QVERIFY(NyFotoAnalyser::isScreenshot(path, QSize(1920, 1080), false, 0.8));
    QVERIFY(NyFotoAnalyser::isScreenshot(path, QSize(1170, 2532), false, 0.8));
    QVERIFY(!NyFotoAnalyser::isScreenshot(path, QSize(1920, 1080), true, 0.8));
    QVERIFY(!NyFotoAnalyser::isScreenshot(path, QSize(1920, 1080), false, 0.2));
    QVERIFY(!NyFotoAnalyser::isScreenshot(path, QSize(1921, 1080), false, 0.8));
}

QTEST_GUILESS_MAIN(tst_NyFotoAnalyser)
#include "tst_NyFotoAnalyser.moc"
