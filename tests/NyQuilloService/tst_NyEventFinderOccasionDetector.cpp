#include "NyEventFinderOccasionDetector.h"

#include <algorithm>

#include <NyFotoBuilder.h>
#include <NyFotoList.h>
#include <NyOrrinMediaItemBuilder.h>
#include <NyOrrinOccasion.h>
#include <NyOrrinVisionedMediaItem.h>
#include <NyQuilloServiceSettings.h>
#include <NyVisionMemory.h>

#include <QElapsedTimer>
#include <QLocale>
#include <QTemporaryDir>
#include <QTest>

#include "TestPictures.h"
#include "TestSupport.h"

using TestSupport::LogRecorder;

namespace
{
NyFoto foto(const QString &path)
{
    return NyFoto(QFileInfo(path));
}

QString folderOfProposals()
{
    return QDir::cleanPath(NySingleton<NyQuilloServiceSettings>::instance().bookProposalFileFolder());
}

QString logFile()
{
    return folderOfProposals() + QStringLiteral("/classification.lastEvent.txt");
}

QString backupFile()
{
    return logFile() + QString::number(QDate::currentDate().weekNumber()) + QStringLiteral(".bak");
}

QString longText(const QDateTime &time)
{
    return QLocale().toString(time, QLocale::LongFormat);
}

/** The text file with its two times and the elapsed milliseconds replaced, so that the rest can be compared to the letter. */
QString withoutTimes(QString text)
{
    text.replace(QRegularExpression(QStringLiteral("Date and Time of Logging: .*\n")), QStringLiteral("Date and Time of Logging: T\n"));
    text.replace(QRegularExpression(QStringLiteral("Elapsed \\(ms\\):\\d+\n")), QStringLiteral("Elapsed (ms):N\n"));
    return text;
}
}

class tst_NyEventFinderOccasionDetector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void validFoto_data();
    void validFoto();
    void doesNotTryToLoadWhatHasNoSize();
    void mediaItem();
    void mediaItemOfAPictureWithoutMetaData();
    void leavesOutAPositionOutOfRange();
    void visionDescriptor();
    void keepsWhatIsKnownOfAVanishedFoto();
    void comparesByProbability();
    void convertsAnOccasion();
    void detects();
    void detectsNothingInAnEmptyFolder();
    void countsVideosAndDropsThem();
    void dropsBrokenFotos();
    void looksAtAFotoOnce();
    void looksAgainAtAChangedFoto();
    void writesTheLog();
    void writesTheLogOfNothing();
    void keepsTheFirstBackupOfAWeek();
    void survivesAMissingFolder();
    void replacesNothingItCannotWrite();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_NyEventFinderOccasionDetector::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    QDir(folderOfProposals()).removeRecursively();
    QVERIFY(QDir().mkpath(folderOfProposals()));
    static const QByteArrayList withBrokenFiles{
        "validFoto", "doesNotTryToLoadWhatHasNoSize", "keepsWhatIsKnownOfAVanishedFoto", "dropsBrokenFotos", "looksAgainAtAChangedFoto"};
    if (!withBrokenFiles.contains(QTest::currentTestFunction()))
        QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!image understanding)")));
}

void tst_NyEventFinderOccasionDetector::validFoto_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isValid");
    const QByteArray jpeg = TestPictures::jpegBytes(TestPictures::corners(QSize(300, 200)));
    QTest::newRow("picture") << QStringLiteral("a.jpg") << jpeg << true;
    QTest::newRow("picture with another ending") << QStringLiteral("a.png") << jpeg << true;
    QTest::newRow("video") << QStringLiteral("a.mp4") << jpeg << false;
    QTest::newRow("text") << QStringLiteral("a.jpg") << QByteArray("no picture at all") << false;
    QTest::newRow("empty") << QStringLiteral("a.jpg") << QByteArray() << false;
    QTest::newRow("header alone") << QStringLiteral("a.jpg") << jpeg.left(400) << false;
}

void tst_NyEventFinderOccasionDetector::validFoto()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(bool, isValid);
    QVERIFY(TestSupport::writeFile(path(name), content));
    QCOMPARE(NyEventFinderOccasionDetector::isValidFoto(foto(path(name))), isValid);
    QVERIFY(!NyEventFinderOccasionDetector::isValidFoto(foto(path(QStringLiteral("missing.jpg")))));
    QVERIFY(!NyEventFinderOccasionDetector::isValidFoto(NyFoto()));
}

void tst_NyEventFinderOccasionDetector::doesNotTryToLoadWhatHasNoSize()
{
    // A bitmap of 0 by 100 px. Reading the size gives one line; loading would give another.
    QByteArray bitmap = QByteArray::fromHex(
        "424d3a000000000000003600000028000000000000006400000001001800000000000400000000000000000000000000000000000000");
    bitmap.append(8, '\0');
    QVERIFY(TestSupport::writeFile(path(QStringLiteral("narrow.bmp")), bitmap));
    const LogRecorder log;
    QVERIFY(!NyEventFinderOccasionDetector::isValidFoto(foto(path(QStringLiteral("narrow.bmp")))));
    QCOMPARE(log.containing(QStringLiteral("narrow.bmp")).size(), 1);
}

void tst_NyEventFinderOccasionDetector::mediaItem()
{
    const QString file = path(QStringLiteral("Föto 100% & mehr.jpg"));
    QVERIFY(TestPictures::writeJpeg(file, QSize(300, 200), 6,
        {{"Exif.Photo.DateTimeOriginal", "2024:07:14 18:30:05"}, {"Exif.Photo.OffsetTimeOriginal", "+02:00"}, {"Xmp.xmp.Rating", "4"},
            {"Exif.Photo.DigitalZoomRatio", "5/2"}, {"Exif.GPSInfo.GPSLatitude", "33/1 30/1 0/1"}, {"Exif.GPSInfo.GPSLatitudeRef", "S"},
            {"Exif.GPSInfo.GPSLongitude", "190/1 0/1 0/1"}, {"Exif.GPSInfo.GPSLongitudeRef", "E"}}));
    const NyOrrinMediaItem item = NyEventFinderOccasionDetector::createMediaItemBuilder(foto(file)).build();
    QCOMPARE(item.id(), foto(file).url().toDisplayString());
    QCOMPARE(item.timestamp(), QDateTime(QDate(2024, 7, 14), QTime(16, 30, 5), Qt::UTC).toMSecsSinceEpoch());
    QCOMPARE(QSize(item.widthPx(), item.heightPx()), QSize(300, 200));
    QCOMPARE(item.rating(), 4);
    QVERIFY(!item.isFavorite());
    QCOMPARE(item.digitalZoomRatio(), 2.5);
    QVERIFY(item.coordinate());
    QCOMPARE(item.coordinate()->latitude, -33.5);
    QCOMPARE(item.coordinate()->longitude, -170.0);
}

void tst_NyEventFinderOccasionDetector::mediaItemOfAPictureWithoutMetaData()
{
    const QString file = path(QStringLiteral("plain.png"));
    QVERIFY(TestPictures::corners(QSize(40, 30)).save(file));
    const NyOrrinMediaItem item = NyEventFinderOccasionDetector::createMediaItemBuilder(foto(file)).build();
    const QDateTime birth = QFileInfo(file).fileTime(QFileDevice::FileBirthTime);
    QCOMPARE(item.timestamp(), birth.isValid() ? birth.toSecsSinceEpoch() * 1000 : 0);
    QCOMPARE(item.rating(), 0);
    QCOMPARE(item.digitalZoomRatio(), 1.0);
    QVERIFY(!item.coordinate());
}

void tst_NyEventFinderOccasionDetector::leavesOutAPositionOutOfRange()
{
    const QString file = path(QStringLiteral("a.jpg"));
    QVERIFY(TestPictures::writeJpeg(file, QSize(300, 200), 1,
        {{"Exif.GPSInfo.GPSLatitude", "151/1 0/1 0/1"}, {"Exif.GPSInfo.GPSLatitudeRef", "N"}, {"Exif.GPSInfo.GPSLongitude", "10/1 0/1 0/1"},
            {"Exif.GPSInfo.GPSLongitudeRef", "E"}, {"Xmp.xmp.Rating", "2"}}));
    const NyOrrinMediaItem item = NyEventFinderOccasionDetector::createMediaItemBuilder(foto(file)).build();
    QVERIFY(!item.coordinate());
    QCOMPARE(item.rating(), 2);
    QCOMPARE(item.widthPx(), 300);
}

void tst_NyEventFinderOccasionDetector::visionDescriptor()
{
    const QString file = path(QStringLiteral("a.jpg"));
    QVERIFY(TestPictures::writeJpeg(file, QSize(300, 200)));
    const NyOrrinVisionedMediaItem item = NyEventFinderOccasionDetector::createVisionDescriptor(foto(file));
    QCOMPARE(item.item().id(), foto(file).url().toDisplayString());
    QVERIFY(item.descriptors().isValid());
    // Upright, red is top left and green is top right.
    const std::array<float, 27> &colours = item.descriptors().descriptors().colorSignature;
    QVERIFY(colours[0] > colours[1] + 0.3F);
    QVERIFY(colours[7] > colours[6] + 0.3F);
}

void tst_NyEventFinderOccasionDetector::keepsWhatIsKnownOfAVanishedFoto()
{
    const NyFoto gone = foto(path(QStringLiteral("gone.jpg")));
    const NyOrrinVisionedMediaItem item = NyEventFinderOccasionDetector::createVisionDescriptor(gone);
    QCOMPARE(item.item().id(), gone.url().toDisplayString());
    QVERIFY(!item.descriptors().isValid());
}

void tst_NyEventFinderOccasionDetector::comparesByProbability()
{
    const NyOrrinOccasion likely("beach", "vision", 0.9F);
    const NyOrrinOccasion lessLikely("city", "title", 0.7F);
    QVERIFY(NyEventFinderOccasionDetector::compareOccasions(likely, lessLikely));
    QVERIFY(!NyEventFinderOccasionDetector::compareOccasions(lessLikely, likely));
    QVERIFY(!NyEventFinderOccasionDetector::compareOccasions(likely, likely));
    std::vector<NyOrrinOccasion> occasions{lessLikely, likely};
    std::sort(occasions.begin(), occasions.end(), NyEventFinderOccasionDetector::compareOccasions);
    QCOMPARE(occasions.front().getKeyword(), std::string("beach"));
}

void tst_NyEventFinderOccasionDetector::convertsAnOccasion()
{
    const NyOccasionInfo info = NyEventFinderOccasionDetector::createOccasionInfo(NyOrrinOccasion("caf\u00e9", "vision", 0.7F));
    QCOMPARE(info.keyword(), QStringLiteral("caf\u00e9"));
    QCOMPARE(info.source(), QStringLiteral("vision"));
    QCOMPARE(info.probability(), double(0.7F));
}

void tst_NyEventFinderOccasionDetector::detects()
{
    const QString folder = path(QStringLiteral("2024-12-24 Weihnachten in Wien"));
    for (int i = 0; i < 6; ++i)
        QVERIFY(TestSupport::writePhoto(folder + QStringLiteral("/%1.jpg").arg(i), i));
    const NyFotoList fotos = NyFotoBuilder::instance().fotosFromUrl(QUrl::fromLocalFile(folder));
    QCOMPARE(fotos.size(), 6);
    NyEventFinderOccasionDetector detector;
    const LogRecorder log;
    const NyOccasionInfoList occasions = detector.detectOccasion(fotos);
    QVERIFY(!occasions.isEmpty());
    QCOMPARE(occasions.first().keyword(), QStringLiteral("christmas"));
    QCOMPARE(occasions.first().source(), QStringLiteral("title"));
    QVERIFY(std::is_sorted(occasions.begin(), occasions.end(),
        [](const NyOccasionInfo &a, const NyOccasionInfo &b) { return a.probability() > b.probability(); }));
    QCOMPARE(log.containing(QStringLiteral("ms elapsed for #photos: 6")).size(), 1);
}

void tst_NyEventFinderOccasionDetector::detectsNothingInAnEmptyFolder()
{
    NyEventFinderOccasionDetector detector;
    const LogRecorder log;
    QVERIFY(detector.detectOccasion(NyFotoList()).isEmpty());
    QCOMPARE(log.containing(QStringLiteral("ms elapsed for #photos: 0")).size(), 1);
    QVERIFY(TestSupport::readFile(logFile()).contains("Detecting occasion of 0 photos \n"));
}

void tst_NyEventFinderOccasionDetector::countsVideosAndDropsThem()
{
    const QString folder = path(QStringLiteral("2024-12-24 Weihnachten"));
    for (const QString &name : {QStringLiteral("a.mp4"), QStringLiteral("b.MOV"), QStringLiteral("c.avi")})
        QVERIFY(TestSupport::writeFile(folder + QLatin1Char('/') + name, "video"));
    const NyFotoList fotos{
        foto(folder + QStringLiteral("/a.mp4")), foto(folder + QStringLiteral("/b.MOV")), foto(folder + QStringLiteral("/c.avi"))};
    NyEventFinderOccasionDetector detector;
    const LogRecorder log;
    QVERIFY(detector.detectOccasion(fotos).isEmpty());
    QCOMPARE(log.containing(QStringLiteral("ms elapsed for #photos: 3")).size(), 1);
}

void tst_NyEventFinderOccasionDetector::dropsBrokenFotos()
{
    const QString folder = path(QStringLiteral("2024-05-11 Hochzeit Anna & Tom"));
    for (int i = 0; i < 4; ++i)
        QVERIFY(TestSupport::writePhoto(folder + QStringLiteral("/%1.jpg").arg(i), i));
    QVERIFY(TestSupport::writeFile(folder + QStringLiteral("/broken.jpg"), "no picture"));
    const NyFotoList fotos = NyFotoBuilder::instance().fotosFromUrl(QUrl::fromLocalFile(folder));
    QCOMPARE(fotos.size(), 5);
    NyEventFinderOccasionDetector detector;
    const LogRecorder log;
    QCOMPARE(detector.detectOccasion(fotos).value(0).keyword(), QStringLiteral("wedding"));
    QVERIFY(!log.containing(QStringLiteral("broken.jpg")).isEmpty());
    QCOMPARE(log.containing(QStringLiteral("ms elapsed for #photos: 5")).size(), 1);
    // The line about it is not repeated at every search.
    const qsizetype lines = log.containing(QStringLiteral("broken.jpg")).size();
    QCOMPARE(detector.detectOccasion(fotos).value(0).keyword(), QStringLiteral("wedding"));
    QCOMPARE(log.containing(QStringLiteral("broken.jpg")).size(), lines);
}

void tst_NyEventFinderOccasionDetector::looksAtAFotoOnce()
{
    const QString file = path(QStringLiteral("2024-05-11 Hochzeit/a.jpg"));
    QVERIFY(TestSupport::writePhoto(file, 1));
    NyEventFinderOccasionDetector detector;
    QCOMPARE(detector.detectOccasion({foto(file)}).value(0).keyword(), QStringLiteral("wedding"));

    // What is remembered of this file now comes from elsewhere; asking the file again would tell of the wedding.
    const NyOrrinMediaItem elsewhere
        = NyOrrinMediaItemBuilder().setId(QStringLiteral("file:///Bilder/2024-12-24 Weihnachten/a.jpg")).build();
    const NyVisionMemory::Content content = NyVisionMemory::contentOf(foto(file));
    NyVisionMemory &memory = NySingleton<NyVisionMemory>::instance();
    const std::optional<NyOrrinVisionedMediaItem> seen = memory.item(content);
    QVERIFY(seen);
    memory.remember(content, NyOrrinVisionedMediaItem(elsewhere, seen->descriptors()));
    QCOMPARE(detector.detectOccasion({foto(file)}).value(0).keyword(), QStringLiteral("christmas"));
}

void tst_NyEventFinderOccasionDetector::looksAgainAtAChangedFoto()
{
    const QString file = path(QStringLiteral("2024-05-11 Hochzeit/a.jpg"));
    QVERIFY(TestSupport::writePhoto(file, 1));
    NyEventFinderOccasionDetector detector;
    QVERIFY(!detector.detectOccasion({foto(file)}).isEmpty());
    QVERIFY(TestSupport::writeFile(file, "rubbish"));
    QVERIFY(detector.detectOccasion({foto(file)}).isEmpty());
    QVERIFY(TestSupport::writePhoto(file, 2));
    QVERIFY(!detector.detectOccasion({foto(file)}).isEmpty());
}

void tst_NyEventFinderOccasionDetector::writesTheLog()
{
    const NyFotoList fotos{foto(QStringLiteral("/Bilder/a b.jpg")), foto(QStringLiteral("/Bilder/ü%.jpg")),
        foto(QStringLiteral("/Bilder/Zeile\nund\r\u2028Zeile.jpg"))};
    NyEventFinderOccasionDetector detector;
    QCOMPARE(detector.outputFileInfo().absoluteFilePath(), logFile());
    const QDateTime before = QDateTime::currentDateTime();
    const LogRecorder log;
    detector.writeFotoListToFile(fotos);
    QVERIFY(log.has(QStringLiteral("debug: Writing last Event occasion detection information to \"%1\"").arg(logFile())));
    QElapsedTimer timer;
    timer.start();
    QList<QString> descriptions{QStringLiteral("wedding (title, 0.95)"), QStringLiteral("beach (vision, 0.60)")};
    detector.writeDetectionResultsToFile(timer, descriptions);
    const QDateTime after = QDateTime::currentDateTime();

    const QString text = QString::fromUtf8(TestSupport::readFile(logFile()));
    QCOMPARE(withoutTimes(text),
        QStringLiteral("Start Date and Time of Logging: T\n"
                       "Detecting occasion of 3 photos \n"
                       "=== Begin List of Fotos === \n"
                       "file:///Bilder/a%20b.jpg\n"
                       "file:///Bilder/%C3%BC%25.jpg\n"
                       "file:///Bilder/Zeile%0Aund%0D%E2%80%A8Zeile.jpg\n"
                       "=== End List of Fotos === \n"
                       "\n"
                       "=== Begin Final Results ===\n"
                       "\n"
                       "Time Elapsed (ms):N\n"
                       "Results: \n"
                       "  wedding (title, 0.95)\n"
                       "  beach (vision, 0.60)\n"
                       "=== End Final Results ===\n"
                       "End Date and Time of Logging: T\n"));
    const auto hasTime
        = [&](const QString &prefix) { return text.contains(prefix + longText(before)) || text.contains(prefix + longText(after)); };
    QVERIFY2(hasTime(QStringLiteral("Start Date and Time of Logging: ")), qPrintable(text));
    QVERIFY2(hasTime(QStringLiteral("End Date and Time of Logging: ")), qPrintable(text));
    QVERIFY(!QFile::exists(backupFile()));
}

void tst_NyEventFinderOccasionDetector::writesTheLogOfNothing()
{
    NyEventFinderOccasionDetector detector;
    detector.detectOccasion(NyFotoList());
    QCOMPARE(withoutTimes(QString::fromUtf8(TestSupport::readFile(logFile()))),
        QStringLiteral("Start Date and Time of Logging: T\n"
                       "Detecting occasion of 0 photos \n"
                       "=== Begin List of Fotos === \n"
                       "\n"
                       "=== End List of Fotos === \n"
                       "\n"
                       "=== Begin Final Results ===\n"
                       "\n"
                       "Time Elapsed (ms):N\n"
                       "Results: \n"
                       "  \n"
                       "=== End Final Results ===\n"
                       "End Date and Time of Logging: T\n"));
}

void tst_NyEventFinderOccasionDetector::keepsTheFirstBackupOfAWeek()
{
    // All within one week, unless Sunday's midnight comes in between.
    const QString backup = backupFile();
    NyEventFinderOccasionDetector detector;
    detector.writeFotoListToFile({foto(QStringLiteral("/first.jpg"))});
    QVERIFY(!QFile::exists(backup));
    detector.writeFotoListToFile({foto(QStringLiteral("/second.jpg"))});
    if (backup != backupFile())
        QSKIP("a new week has begun");
    QVERIFY(TestSupport::readFile(backup).contains("first.jpg"));
    detector.writeFotoListToFile({foto(QStringLiteral("/third.jpg"))});
    QVERIFY(TestSupport::readFile(backup).contains("first.jpg"));
    QVERIFY(TestSupport::readFile(logFile()).contains("third.jpg"));
    QCOMPARE(QDir(folderOfProposals()).entryList({QStringLiteral("*.bak")}, QDir::Files).size(), 1);
}

void tst_NyEventFinderOccasionDetector::survivesAMissingFolder()
{
    QVERIFY(QDir(folderOfProposals()).removeRecursively());
    const QString file = path(QStringLiteral("2024-05-11 Hochzeit/a.jpg"));
    QVERIFY(TestSupport::writePhoto(file, 1));
    NyEventFinderOccasionDetector detector;
    const LogRecorder log;
    QCOMPARE(detector.detectOccasion({foto(file)}).value(0).keyword(), QStringLiteral("wedding"));
    QVERIFY(log.containing(QStringLiteral("Writing last Event")).isEmpty());
    QVERIFY(!QFile::exists(logFile()));
}

void tst_NyEventFinderOccasionDetector::replacesNothingItCannotWrite()
{
    // A folder in the file's place can be opened by nobody.
    QVERIFY(QDir().mkpath(logFile()));
    NyEventFinderOccasionDetector detector;
    const LogRecorder log;
    QVERIFY(detector.detectOccasion(NyFotoList()).isEmpty());
    QVERIFY(log.containing(QStringLiteral("Writing last Event")).isEmpty());
    QVERIFY(QFileInfo(logFile()).isDir());
}

QTEST_GUILESS_MAIN(tst_NyEventFinderOccasionDetector)
#include "tst_NyEventFinderOccasionDetector.moc"
