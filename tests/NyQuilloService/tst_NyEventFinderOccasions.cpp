#include "NyEventFinder.h"

#include <memory>
#include <utility>

#include <NyFotoCacheManager.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include "TestSupport.h"

namespace
{
NyRecentFileResult scanOf(const QString &root, const QStringList &paths)
{
    QList<QFileInfo> files;
    for (const QString &path : paths)
        files.append(QFileInfo(path));
    NyRecentFileResult scan(files, NyDateRange(QDate::currentDate().addDays(-1), QDate::currentDate().addDays(1)), 0, {}, {});
    scan.setStartDirectory(root);
    return scan;
}

// Of a child that ends within its search, as it does when somebody quits the service: the application goes at this line of the log.
QCoreApplication *applicationOfChild = nullptr;
QString lastLine;
QtMessageHandler recorder = nullptr;

void endAtTheLastLine(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    recorder(type, context, text);
    if (!lastLine.isEmpty() && text.contains(lastLine))
        delete std::exchange(applicationOfChild, nullptr);
}

/** In a process of its own, because the configuration is read once: prints the result's occasions and all log lines. */
int runChild(const QString &root, const QStringList &paths)
{
    const TestSupport::LogRecorder log;
    lastLine = qEnvironmentVariable("NY_TEST_LAST_LINE");
    recorder = qInstallMessageHandler(&endAtTheLastLine);
    NyEventFinder finder(scanOf(root, paths));
    const NyRecentFileResult result = finder.findEvent();
    const QJsonObject report{{QStringLiteral("folder"), result.classification().directory().fileName()},
        {QStringLiteral("count"), result.count()},
        {QStringLiteral("occasions"), QJsonArray::fromStringList(result.classification().occasionInformation().occasions())},
        {QStringLiteral("log"), QJsonArray::fromStringList(log.all())}};
    std::printf("%s\n", QJsonDocument(report).toJson(QJsonDocument::Compact).constData());
    delete std::exchange(applicationOfChild, nullptr);
    return 0;
}
}

/** For which folders occasions are detected, where they end up, and what is written about it. */
class tst_NyEventFinderOccasions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void modes_data();
    void modes();
    void detectsAgainForTheYear();
    void detectsForNothing();
    void enrichesAList();
    void enrichesAnEntryWithoutAFolder();
    void writesReports_data();
    void writesReports();
    void writesAReportOfNothing();
    void goesOnWithoutAReport();
    void detectsInAllFotosOfTheFolder();
    void leavesReportsWhenTheProgramEnds_data();
    void leavesReportsWhenTheProgramEnds();

private:
    void add(const QString &folder, int count);
    /** Runs the search with these sections in the configuration; the program ends at a line of the log with @p lastLine in it. */
    void search(const QByteArray &sections, const QString &lastLine = QString());
    QStringList logged(const QString &part) const;
    QString proposalFile(const QString &name) const { return m_folder->filePath(QStringLiteral("data/VELMORA/proposals/") + name); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_root;
    QStringList m_paths;
    QString m_chosen;
    QStringList m_occasions;
    QStringList m_log;
};

void tst_NyEventFinderOccasions::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_root = m_folder->path() + QStringLiteral("/Bilder");
    QVERIFY(QDir().mkpath(m_root));
    QVERIFY(QDir().mkpath(proposalFile(QString())));
    m_paths.clear();
    QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!image understanding)")));
}

void tst_NyEventFinderOccasions::add(const QString &folder, int count)
{
    for (int i = 0; i < count; ++i) {
        m_paths.append(QStringLiteral("%1/%2/IMG_%3.jpg").arg(m_root, folder).arg(m_paths.size()));
        QVERIFY(TestSupport::writePhoto(m_paths.last(), int(m_paths.size())));
    }
}

void tst_NyEventFinderOccasions::search(const QByteArray &sections, const QString &lastLine)
{
    QVERIFY(TestSupport::writeFile(m_folder->filePath(QStringLiteral("config/VELMORA/quilloservice.xml")),
        "<?xml version=\"1.0\"?><quilloservice><recentFiles minimumPhotos=\"2\"/>" + sections + "</quilloservice>"));
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_folder->filePath(QStringLiteral("config")));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), m_folder->filePath(QStringLiteral("data")));
    environment.insert(QStringLiteral("NY_TEST_LAST_LINE"), lastLine);
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), QStringList{QStringLiteral("--find-event"), m_root} + m_paths);
    QVERIFY(child.waitForFinished(30000));
    QCOMPARE(child.exitCode(), 0);
    const QJsonObject report = QJsonDocument::fromJson(child.readAllStandardOutput()).object();
    m_chosen = report.value(QLatin1String("folder")).toString();
    m_occasions = report.value(QLatin1String("occasions")).toVariant().toStringList();
    m_log = report.value(QLatin1String("log")).toVariant().toStringList();
    QVERIFY(!m_log.isEmpty());
}

QStringList tst_NyEventFinderOccasions::logged(const QString &part) const
{
    return m_log.filter(part);
}

void tst_NyEventFinderOccasions::modes_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QList<int>>("photosOfDetections");
    QTest::addColumn<int>("lists");
    QTest::addColumn<QStringList>("occasions");
    const QStringList wedding{QStringLiteral("wedding")};
    const auto row = [](const char *mode, const QList<int> &photos, int lists, const QStringList &occasions) {
        QTest::newRow(mode) << QByteArray(mode) << photos << lists << occasions;
    };
    // The events in the order of their paths: 3 photos of Easter that are not recent, 6 of the wedding, 4 of Christmas.
    row("none", {}, 0, {});
    row("selectedEvent", {6}, 0, wedding);
    row("eventOfInterest", {6, 4}, 1, {});
    row("eventAll", {3, 6, 4}, 1, wedding);
    row("eventAll,selectedEvent", {3, 6, 4, 6}, 1, wedding);
    row("eventAll,eventOfInterest", {3, 6, 4, 6, 4}, 2, wedding);
}

void tst_NyEventFinderOccasions::modes()
{
    QFETCH(QByteArray, mode);
    QFETCH(QList<int>, photosOfDetections);
    QFETCH(int, lists);
    QFETCH(QStringList, occasions);
    add(QStringLiteral("2024/2024-03-30 Ostern"), 3);
    const QStringList old = m_paths;
    add(QStringLiteral("2024/2024-05-11 Hochzeit"), 6);
    add(QStringLiteral("2024/2024-12-24 Weihnachten"), 4);
    m_paths = m_paths.sliced(old.size());
    search("<eventFinder detectOccasions=\"" + mode + "\"/>");
    QCOMPARE(m_chosen, QStringLiteral("2024-05-11 Hochzeit"));
    QCOMPARE(m_occasions, occasions);

    QList<int> photos;
    const QStringList lines = logged(QStringLiteral("ms elapsed for #photos: "));
    for (const QString &line : lines)
        photos.append(line.section(QLatin1Char(' '), -1).toInt());
    // The folders of interest come in the order of a hash.
    std::sort(photos.begin(), photos.end());
    std::sort(photosOfDetections.begin(), photosOfDetections.end());
    QCOMPARE(photos, photosOfDetections);
    QCOMPARE(logged(QStringLiteral("debug: renderClassificationListRequest suggested ")).size(), lists);
    QCOMPARE(QFile::exists(proposalFile(QStringLiteral("classification.lastEvent.txt"))), !photosOfDetections.isEmpty());
    QVERIFY(logged(QStringLiteral("Chosen: ")).value(0).contains(QStringLiteral("wedding")) == !occasions.isEmpty());
    QVERIFY(QDir(proposalFile(QString())).entryList({QStringLiteral("*.html")}).isEmpty());
    QVERIFY(logged(QStringLiteral("renderClassificationListRequest (")).isEmpty());
}

void tst_NyEventFinderOccasions::detectsAgainForTheYear()
{
    add(QStringLiteral("2024/2024-05-11 Hochzeit"), 2);
    search("<eventFinder detectOccasions=\"selectedEvent\"/>");
    QCOMPARE(m_chosen, QStringLiteral("2024"));
    QCOMPARE(logged(QStringLiteral("ms elapsed for #photos: 2")).size(), 2);
}

void tst_NyEventFinderOccasions::detectsForNothing()
{
    search("<eventFinder detectOccasions=\"selectedEvent\"/>");
    QCOMPARE(m_chosen, QString());
    QCOMPARE(m_occasions, QStringList());
    QCOMPARE(logged(QStringLiteral("ms elapsed for #photos: 0")).size(), 2);
    QVERIFY(TestSupport::readFile(proposalFile(QStringLiteral("classification.lastEvent.txt"))).contains("of 0 photos \n"));
}

void tst_NyEventFinderOccasions::enrichesAList()
{
    NyEventFolderClassificationResultList list;
    const QStringList names{QStringLiteral("Hochzeit"), QStringLiteral("Nichts"), QStringLiteral("Weihnachten 2023")};
    for (const QString &name : names) {
        add(name, 5);
        list.append(NyEventFolderClassificationResult(
            QFileInfo(m_root + QLatin1Char('/') + name), NyEventFolderType(NyEventFolderTypeEnum::Event)));
    }
    add(QStringLiteral("Ostern"), 2);
    NyEventFinder finder(scanOf(m_root, m_paths));
    const NyFotoCacheManager &cache = NySingleton<NyFotoCacheManager>::instance();
    finder.enrichedWithOccassionInformation(
        NyEventFolderClassificationResult(QFileInfo(m_root + QStringLiteral("/Ostern")), NyEventFolderType(NyEventFolderTypeEnum::Event)));
    // One entry leaves the photos in the cache, a list does not.
    QVERIFY(cache.usedBytes() > 0);
    const TestSupport::LogRecorder log;
    const NyEventFolderClassificationResultList enriched = finder.enrichedWithOccassionInformation(list);
    QCOMPARE(cache.usedBytes(), 0);
    QCOMPARE(enriched.size(), 3);
    for (int i = 0; i < 3; ++i)
        QVERIFY(enriched.at(i) == list.at(i));
    QCOMPARE(enriched.at(0).occasionInformation().occasions(), QStringList{QStringLiteral("wedding")});
    QVERIFY(enriched.at(1).occasionInformation().isEmpty());
    QCOMPARE(enriched.at(2).occasionInformation().occasions().value(0), QStringLiteral("christmas"));
    QVERIFY(list.at(0).occasionInformation().isEmpty());

    const QStringList times = log.containing(QStringLiteral("debug: OccassionDetection time (ms) elapsed:  "));
    QCOMPARE(times.size(), 3);
    qint64 former = 0;
    for (const QString &line : times) {
        const qint64 elapsed = line.section(QLatin1Char(' '), -1).toLongLong();
        QVERIFY(elapsed >= former);
        former = elapsed;
    }
    QString last;
    QDebug(&last) << "debug: renderClassificationListRequest suggested " << 3 << QThread::currentThreadId();
    QCOMPARE(log.all().last(), last.trimmed());
}

void tst_NyEventFinderOccasions::enrichesAnEntryWithoutAFolder()
{
    NyEventFinder finder(scanOf(m_root, {}));
    const TestSupport::LogRecorder log;
    const NyEventFolderClassificationResult enriched = finder.enrichedWithOccassionInformation(NyEventFolderClassificationResult());
    QVERIFY(enriched == NyEventFolderClassificationResult());
    QVERIFY(enriched.occasionInformation().isEmpty());
    QCOMPARE(log.containing(QStringLiteral("ms elapsed for #photos: 0")).size(), 1);
}

void tst_NyEventFinderOccasions::writesReports_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QStringList>("withOccasions");
    const QString all = QStringLiteral("classification.event.all.html");
    const QString ofInterest = QStringLiteral("classification.event.ofInterest.html");
    QTest::newRow("none") << QByteArray("none") << QStringList();
    QTest::newRow("selectedEvent") << QByteArray("selectedEvent") << QStringList();
    QTest::newRow("eventOfInterest") << QByteArray("eventOfInterest") << QStringList{ofInterest};
    QTest::newRow("eventAll") << QByteArray("eventAll") << QStringList{all, ofInterest};
}

void tst_NyEventFinderOccasions::writesReports()
{
    QFETCH(QByteArray, mode);
    QFETCH(QStringList, withOccasions);
    add(QStringLiteral("2024-05-11 Hochzeit & <Feier>"), 6);
    add(QStringLiteral("2024-08-01 Picknick"), 3);
    const QStringList recent = m_paths;
    add(QStringLiteral("2024-03-01 Besuch"), 3);
    m_paths = recent;
    search("<debug printClassification=\"true\"/><eventFinder detectOccasions=\"" + mode + "\"/>");
    const QStringList names{QStringLiteral("classification.event.all.html"), QStringLiteral("classification.event.ofInterest.html")};
    QCOMPARE(QDir(proposalFile(QString())).entryList({QStringLiteral("*.html")}, QDir::Files, QDir::Name), names);
    QStringList found;
    for (const QString &name : names) {
        const QByteArray page = TestSupport::readFile(proposalFile(name));
        QVERIFY(page.contains("Hochzeit &amp; &lt;Feier&gt;"));
        QCOMPARE(page.contains("Besuch"), name.contains(QStringLiteral(".all.")));
        // The folder's name has no such percentage, an occasion's probability has.
        if (page.contains("<meter") || page.contains("\u00a0%") || page.contains(" %"))
            found.append(name);
        QVERIFY(!page.contains(">" + m_root.toUtf8() + "/2024"));
    }
    QCOMPARE(found, withOccasions);
    QCOMPARE(logged(QStringLiteral("renderClassificationListRequest (")),
        (QStringList{
            QStringLiteral("info: renderClassificationListRequest ( \"event.all\" 3 ) written to \"%1\"").arg(proposalFile(names.at(0))),
            QStringLiteral("info: renderClassificationListRequest ( \"event.ofInterest\" 2 ) written to \"%1\"")
                .arg(proposalFile(names.at(1)))}));
    QCOMPARE(logged(QStringLiteral("debug: renderClassificationListRequest file was actually created:  true")).size(), 2);
}

void tst_NyEventFinderOccasions::writesAReportOfNothing()
{
    search("<debug printClassification=\"true\"/>");
    QCOMPARE(QDir(proposalFile(QString())).entryList({QStringLiteral("*.html")}, QDir::Files, QDir::Name),
        (QStringList{QStringLiteral("classification.event.all.html"), QStringLiteral("classification.event.ofInterest.html"),
            QStringLiteral("classification.year.all.html"), QStringLiteral("classification.year.ofInterest.html")}));
    QCOMPARE(logged(QStringLiteral("\"year.ofInterest\" 0 ) written to")).size(), 1);
    QVERIFY(!QFile::exists(proposalFile(QStringLiteral("classification.lastEvent.txt"))));
}

void tst_NyEventFinderOccasions::goesOnWithoutAReport()
{
    add(QStringLiteral("2024-05-11 Hochzeit"), 6);
    for (const QString &name : {QStringLiteral("classification.event.all.html"), QStringLiteral("classification.event.ofInterest.html")})
        QVERIFY(QDir().mkpath(proposalFile(name) + QStringLiteral("/in the way")));
    search("<debug printClassification=\"true\"/>");
    QCOMPARE(m_chosen, QStringLiteral("2024-05-11 Hochzeit"));
    QCOMPARE(logged(QStringLiteral("warning: ")).filter(QStringLiteral(".html")).size(), 2);
    QCOMPARE(logged(QStringLiteral("renderClassificationListRequest (")).size(), 2);
}

void tst_NyEventFinderOccasions::detectsInAllFotosOfTheFolder()
{
    add(QStringLiteral("2024-05-11 Hochzeit"), 3);
    const QStringList recent = m_paths;
    add(QStringLiteral("2024-05-11 Hochzeit"), 5);
    add(QStringLiteral("2024-05-11 Hochzeit/RAW"), 2);
    m_paths = recent;
    search("<eventFinder detectOccasions=\"selectedEvent\"/>");
    QCOMPARE(m_chosen, QStringLiteral("2024-05-11 Hochzeit"));
    QCOMPARE(logged(QStringLiteral("ms elapsed for #photos: 10")).size(), 1);
}

void tst_NyEventFinderOccasions::leavesReportsWhenTheProgramEnds_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QString>("lastLine");
    QTest::addColumn<int>("detections");
    QTest::addColumn<int>("reports");
    QTest::newRow("before a photo") << QByteArray("eventAll") << QStringLiteral("Writing last Event") << 0 << 0;
    QTest::newRow("after a folder") << QByteArray("eventAll") << QStringLiteral("OccassionDetection time") << 1 << 0;
    // The warning about a picture that cannot be read.
    QTest::newRow("within a report") << QByteArray("none") << QStringLiteral("broken.jpg") << 0 << 1;
}

void tst_NyEventFinderOccasions::leavesReportsWhenTheProgramEnds()
{
    QFETCH(QByteArray, mode);
    QFETCH(QString, lastLine);
    QFETCH(int, detections);
    QFETCH(int, reports);
    add(QStringLiteral("2024/2024-05-11 Hochzeit"), 4);
    add(QStringLiteral("2024/2024-12-24 Weihnachten"), 3);
    QVERIFY(TestSupport::writeFile(m_root + QStringLiteral("/2024/2024-12-24 Weihnachten/broken.jpg"), "no picture"));
    const QStringList names{QStringLiteral("classification.event.all.html"), QStringLiteral("classification.event.ofInterest.html")};
    for (const QString &name : names)
        QVERIFY(TestSupport::writeFile(proposalFile(name), "whole report"));
    search("<debug printClassification=\"true\"/><eventFinder detectOccasions=\"" + mode + "\"/>", lastLine);
    QVERIFY(!logged(lastLine).isEmpty());
    QCOMPARE(logged(QStringLiteral("ms elapsed for #photos: ")).size(), detections);
    QCOMPARE(logged(QStringLiteral("renderClassificationListRequest (")).size(), reports);
    for (const QString &name : names)
        QCOMPARE(TestSupport::readFile(proposalFile(name)), QByteArray("whole report"));
    QCOMPARE(QDir(proposalFile(QString())).entryList({QStringLiteral("*.html")}, QDir::Files, QDir::Name), names);
}

int main(int argc, char **argv)
{
    auto application = std::make_unique<QCoreApplication>(argc, argv);
    const QStringList arguments = application->arguments();
    if (arguments.size() > 2 && arguments.at(1) == u"--find-event") {
        applicationOfChild = application.release();
        return runChild(arguments.at(2), arguments.sliced(3));
    }
    tst_NyEventFinderOccasions test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_NyEventFinderOccasions.moc"
