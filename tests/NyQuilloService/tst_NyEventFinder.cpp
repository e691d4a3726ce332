#include "NyEventFinder.h"

#include <NyFotoList.h>
#include <NyFotoListRegistry.h>
#include <NyGeneralSettings.h>
#include <NyLogger.h>
#include <NyQuilloServiceConfig.h>

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "FileSystemTrees.h"
#include "TestSupport.h"

namespace
{
const NyEventFolderType EventKind(16);
const NyEventFolderType YearKind(2);

NyDateRange today()
{
    // A day more to both sides: midnight may come while the test runs.
    return NyDateRange(QDate::currentDate().addDays(-1), QDate::currentDate().addDays(1));
}

QString quoted(const QString &text)
{
    QString line;
    QDebug(&line).nospace() << text;
    return line;
}

QStringList names(const QList<QFileInfo> &files)
{
    QStringList list;
    for (const QFileInfo &file : files)
        list.append(file.fileName());
    return list;
}

/** In a process of its own, because the configuration is read once: prints the chosen folder, its count, and the last line. */
int runChild(const QString &root, const QStringList &paths)
{
    QList<QFileInfo> files;
    for (const QString &path : paths)
        files.append(QFileInfo(path));
    NyRecentFileResult scan(files, today(), 0, {}, {});
    scan.setStartDirectory(root);
    const TestSupport::LogRecorder log;
    NyEventFinder finder(scan);
    const NyRecentFileResult result = finder.findEvent();
    std::printf("%s|%d|%s\n", qPrintable(result.classification().directory().fileName()), result.count(),
        qPrintable(log.containing(QStringLiteral("Final Classic Result")).join(QLatin1Char('\n'))));
    return 0;
}
}

class tst_NyEventFinder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void choosesTheFolderWithMostFiles();
    void choosesOneOfEqualFolders();
    void countsNestedFoldersForTheOuterOne();
    void countsANeighbourWhoseNameBeginsAlike();
    void respectsCase();
    void findsNothingWithoutAFolderOfTheKind();
    void logsTheChoice();
    void returnsTheScansRange();
    void leavesOutUsedFotos();
    void logsStatistics();
    void logsTheSearchInOrder();
    void takesTheYearAtTheMinimum_data();
    void takesTheYearAtTheMinimum();
    void takesAnEmptyYear();
    void findsNothingInNothing();
    void modesDecide_data();
    void modesDecide();

private:
    void add(const QString &folder, int count);
    NyRecentFileResult scan() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_root;
    QStringList m_paths;
};

void tst_NyEventFinder::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_root = m_folder->path() + QStringLiteral("/Bilder");
    m_paths.clear();
    NySingleton<NyFotoListRegistry>::instance().clearFotoUsedForBookProposals();
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

void tst_NyEventFinder::add(const QString &folder, int count)
{
    TreeBuilder tree(m_root);
    for (int i = 0; i < count; ++i) {
        const QString name = QStringLiteral("%1/IMG_%2.jpg").arg(folder).arg(m_paths.size(), 5, 10, QLatin1Char('0'));
        tree.file(name.toStdString());
        m_paths.append(m_root + QLatin1Char('/') + name);
    }
}

NyRecentFileResult tst_NyEventFinder::scan() const
{
    QList<QFileInfo> files;
    for (const QString &path : m_paths)
        files.append(QFileInfo(path));
    NyRecentFileResult result(files, today(), 3, {}, {QStringLiteral("of the scan")});
    result.setStartDirectory(m_root);
    return result;
}

void tst_NyEventFinder::choosesTheFolderWithMostFiles()
{
    add(QStringLiteral("2024/Rom"), 9);
    add(QStringLiteral("2024/Paris"), 10);
    add(QStringLiteral("2024/Wien"), 8);
    add(QStringLiteral("2024/07"), 20);
    NyEventFinder finder(scan());
    finder.initEventFolderClassificationList();
    const NyRecentFileResult result = finder.findFittingEvent(scan(), EventKind);
    QCOMPARE(result.classification().directory().filePath(), m_root + QStringLiteral("/2024/Paris"));
    QVERIFY(result.eventFolderType() == NyEventFolderTypeEnum::Event);
    QCOMPARE(result.count(), 10);
    // Last in the scan comes first.
    QStringList expected;
    for (int i = 18; i >= 9; --i)
        expected.append(QStringLiteral("IMG_%1.jpg").arg(i, 5, 10, QLatin1Char('0')));
    QCOMPARE(names(result.files()), expected);
}

void tst_NyEventFinder::choosesOneOfEqualFolders()
{
    add(QStringLiteral("2024/Rom"), 10);
    add(QStringLiteral("2024/Paris"), 10);
    NyEventFinder finder(scan());
    finder.initEventFolderClassificationList();
    const NyRecentFileResult result = finder.findFittingEvent(scan(), EventKind);
    QCOMPARE(result.count(), 10);
    const QString chosen = result.classification().directory().filePath();
    QVERIFY(chosen.endsWith(QStringLiteral("/Rom")) || chosen.endsWith(QStringLiteral("/Paris")));
    for (const QFileInfo &file : result.files())
        QCOMPARE(file.path(), chosen);
}

void tst_NyEventFinder::countsNestedFoldersForTheOuterOne()
{
    // Below a year, years stay years.
    add(QStringLiteral("2024"), 3);
    add(QStringLiteral("2024/2024"), 5);
    NyEventFinder finder(scan());
    finder.initEventFolderClassificationList();
    const NyRecentFileResult result = finder.findFittingEvent(scan(), YearKind);
    QCOMPARE(result.classification().directory().filePath(), m_root + QStringLiteral("/2024"));
    QCOMPARE(result.count(), 8);
}

void tst_NyEventFinder::countsANeighbourWhoseNameBeginsAlike()
{
    add(QStringLiteral("2024/Rom"), 4);
    add(QStringLiteral("2024/Rom und Umgebung"), 5);
    add(QStringLiteral("2024/Paris"), 6);
    NyEventFinder finder(scan());
    finder.initEventFolderClassificationList();
    const NyRecentFileResult result = finder.findFittingEvent(scan(), EventKind);
    QCOMPARE(result.classification().directory().filePath(), m_root + QStringLiteral("/2024/Rom"));
    QCOMPARE(result.count(), 9);
}

void tst_NyEventFinder::respectsCase()
{
    add(QStringLiteral("2024/Rom"), 2);
    NyEventFinder finder(scan());
    finder.initEventFolderClassificationList();
    NyRecentFileResult files = scan();
    files.setFiles({QFileInfo(m_root + QStringLiteral("/2024/ROM/a.jpg")), QFileInfo(m_root + QStringLiteral("/2024/rom/b.jpg"))});
    QVERIFY(finder.findFittingEvent(files, EventKind).isEmpty());
}

void tst_NyEventFinder::findsNothingWithoutAFolderOfTheKind()
{
    add(QStringLiteral("2024"), 5);
    NyEventFinder finder(scan());
    finder.initEventFolderClassificationList();
    const TestSupport::LogRecorder log;
    const NyRecentFileResult result = finder.findFittingEvent(scan(), EventKind);
    QVERIFY(result.isEmpty());
    QVERIFY(result.classification() == NyEventFolderClassificationResult());
    QCOMPARE(result.relevantDateRange().from(), today().from());
    QCOMPARE(log.all(),
        QStringList({QStringLiteral("debug: \n %1").arg(quoted(QString())), QStringLiteral("info: Chosen:  QFileInfo() \"\" 0 \"\"")}));
}

void tst_NyEventFinder::logsTheChoice()
{
    add(QStringLiteral("2024/Rom"), 3);
    NyEventFinder finder(scan());
    finder.initEventFolderClassificationList();
    const TestSupport::LogRecorder log;
    finder.findFittingEvent(scan(), EventKind);
    const QStringList lines = log.all();
    QCOMPARE(lines.size(), 5);
    QCOMPARE(lines.at(0), QStringLiteral("debug: \n ") + quoted(QStringLiteral("event %1/2024/Rom\n").arg(m_root)));
    // One line for each visit of the folder, of which there is one for each file.
    for (int i = 1; i <= 3; ++i)
        QCOMPARE(lines.at(i), QStringLiteral("debug: \"event\" 3"));
    QCOMPARE(lines.at(4), QStringLiteral("info: Chosen:  QFileInfo(%1/2024/Rom) \"event\" 3 \"\"").arg(m_root));
}

void tst_NyEventFinder::returnsTheScansRange()
{
    add(QStringLiteral("2024/Rom"), 3);
    NyEventFinder finder(scan());
    finder.initEventFolderClassificationList();
    const NyRecentFileResult result = finder.findFittingEvent(scan(), EventKind);
    QCOMPARE(result.relevantDateRange().from(), today().from());
    QCOMPARE(result.relevantDateRange().to(), today().to());
    QCOMPARE(result.countAfterDateRange(), 0);
    QCOMPARE(result.startDirectory(), QString());
    QCOMPARE(result.recommendedStyleIds(), NySingleton<NyQuilloServiceConfig>::instance().designStyleIds());
}

void tst_NyEventFinder::leavesOutUsedFotos()
{
    add(QStringLiteral("2024/Rom"), 60);
    add(QStringLiteral("2024/Paris"), 58);
    const QList<QFileInfo> used = scan().files().first(3);
    NySingleton<NyFotoListRegistry>::instance().addFotosUsedForBookProposals(NyFotoList(used));
    NyEventFinder finder(scan());
    const NyRecentFileResult result = finder.findEvent();
    QCOMPARE(result.classification().directory().fileName(), QStringLiteral("Paris"));
    QCOMPARE(result.count(), 58);
}

void tst_NyEventFinder::logsStatistics()
{
    add(QStringLiteral("2024/07/15"), 1);
    add(QStringLiteral("2023/Rom"), 1);
    add(QStringLiteral("2023/Paris"), 1);
    add(QStringLiteral("Renovierung"), 1);
    add(QStringLiteral("WhatsApp Images"), 1);
    NyEventFinder finder(scan());
    {
        const TestSupport::LogRecorder log;
        finder.logEventFolderTypeStatistics();
        QCOMPARE(
            log.all(), QStringList{QStringLiteral("info: \"Counted 0 events, 0 years, 0 months, 0 days, 0 projects and 0 unknowns\"")});
    }
    const TestSupport::LogRecorder log;
    finder.initEventFolderClassificationList();
    const QStringList lines = log.containing(QStringLiteral("Counted"));
    QCOMPARE(lines.size(), 1);
    static const QRegularExpression form(
        QStringLiteral("^info: \"Counted (\\d+) events, (\\d+) years, (\\d+) months, (\\d+) days, (\\d+) projects and (\\d+) unknowns\"$"));
    const QRegularExpressionMatch counts = form.match(lines.first());
    QVERIFY2(counts.hasMatch(), qPrintable(lines.first()));
    QCOMPARE(counts.captured(1), QStringLiteral("2"));
    QCOMPARE(counts.captured(2), QStringLiteral("2"));
    QCOMPARE(counts.captured(3), QStringLiteral("1"));
    QCOMPARE(counts.captured(4), QStringLiteral("1"));
    QCOMPARE(counts.captured(5), QStringLiteral("1"));
    int total = 0;
    for (int i = 1; i <= 6; ++i)
        total += counts.captured(i).toInt();
    NySingleton<NyLogger>::instance().closeFile();
    const QByteArray records = TestSupport::readFile(NySingleton<NyGeneralSettings>::instance().eventLogFile().filePath());
    const QString record
        = QStringLiteral("\tlogEventFolderTypeStatistics EVENTS:2 YEARS:2 MONTHS:1 DAYS:1 PROJECTS:1 UNKNOWNS:%1 TOTAL:%2\n")
              .arg(counts.captured(6))
              .arg(total);
    QVERIFY2(QString::fromUtf8(records).endsWith(record), records.constData());
}

void tst_NyEventFinder::logsTheSearchInOrder()
{
    add(QStringLiteral("2024/Rom"), 2);
    NyEventFinder finder(scan());
    const TestSupport::LogRecorder log;
    const NyRecentFileResult result = finder.findEvent();
    QCOMPARE(result.count(), 2);
    const QString tree = m_root + QStringLiteral("/2024");
    QCOMPARE(log.all(),
        QStringList({QStringLiteral("debug: 0 photos to be excluded from 2"), QStringLiteral("debug: 2 remaining"),
            QStringLiteral("debug: %1 found 2").arg(quoted(today().dateDescription(QDate::currentDate()))),
            QStringLiteral("info: \"Counted 1 events, 1 years, 0 months, 0 days, 0 projects and 0 unknowns\""),
            QStringLiteral("debug: \n ") + quoted(QStringLiteral("event %1/Rom\n").arg(tree)), QStringLiteral("debug: \"event\" 2"),
            QStringLiteral("debug: \"event\" 2"), QStringLiteral("info: Chosen:  QFileInfo(%1/Rom) \"event\" 2 \"\"").arg(tree),
            QStringLiteral("debug: \n ") + quoted(QStringLiteral("year %1\n").arg(tree)), QStringLiteral("debug: \"year\" 2"),
            QStringLiteral("debug: \"year\" 2"), QStringLiteral("info: Chosen:  QFileInfo(%1) \"year\" 2 \"\"").arg(tree),
            QStringLiteral("info: Final Classic Result \"year\" 2 ; takeYear =  true ; takeAll =  false")}));
}

void tst_NyEventFinder::takesTheYearAtTheMinimum_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<int>("found");
    const int minimum = NySingleton<NyQuilloServiceConfig>::instance().minimumPhotos();
    QTest::newRow("one less") << minimum - 1 << QStringLiteral("2024") << minimum;
    QTest::newRow("the minimum") << minimum << QStringLiteral("2024") << minimum + 1;
    QTest::newRow("one more") << minimum + 1 << QStringLiteral("Rom") << minimum + 1;
}

void tst_NyEventFinder::takesTheYearAtTheMinimum()
{
    QFETCH(int, count);
    QFETCH(QString, folder);
    QFETCH(int, found);
    add(QStringLiteral("2024/Rom"), count);
    add(QStringLiteral("2024"), 1);
    NyEventFinder finder(scan());
    const TestSupport::LogRecorder log;
    const NyRecentFileResult result = finder.findEvent();
    QCOMPARE(result.classification().directory().fileName(), folder);
    QCOMPARE(result.count(), found);
    const bool tookYear = folder == u"2024";
    QVERIFY(log.has(QStringLiteral("info: Final Classic Result \"%1\" %2 ; takeYear =  %3 ; takeAll =  false")
                        .arg(tookYear ? QStringLiteral("year") : QStringLiteral("event"))
                        .arg(found)
                        .arg(tookYear ? QStringLiteral("true") : QStringLiteral("false"))));
    QCOMPARE(log.containing(QStringLiteral("Chosen: ")).size(), tookYear ? 2 : 1);
}

void tst_NyEventFinder::takesAnEmptyYear()
{
    add(QStringLiteral("Rom"), 10);
    NyEventFinder finder(scan());
    const TestSupport::LogRecorder log;
    const NyRecentFileResult result = finder.findEvent();
    QVERIFY(result.isEmpty());
    QVERIFY(result.classification() == NyEventFolderClassificationResult());
    QVERIFY(!log.containing(QStringLiteral("Rom) \"event\" 10")).isEmpty());
    QVERIFY(log.has(QStringLiteral("info: Final Classic Result \"\" 0 ; takeYear =  true ; takeAll =  false")));
}

void tst_NyEventFinder::findsNothingInNothing()
{
    TreeBuilder tree(m_root);
    NyEventFinder finder(scan());
    const TestSupport::LogRecorder log;
    const NyRecentFileResult result = finder.findEvent();
    QVERIFY(result.isEmpty());
    QCOMPARE(result.relevantDateRange().from(), today().from());
    QCOMPARE(log.containing(QStringLiteral("Chosen: ")).size(), 2);
    QVERIFY(log.has(QStringLiteral("info: \"Counted 0 events, 0 years, 0 months, 0 days, 0 projects and 0 unknowns\"")));
}

void tst_NyEventFinder::modesDecide_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<int>("folders");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<bool>("takesYear");
    const auto row = [](const char *name, const char *mode, int folders, int minimum, bool takesYear) {
        QTest::newRow(name) << QByteArray(mode) << folders << minimum << takesYear;
    };
    row("classic, one folder", "classic", 1, 5, false);
    row("classic, at the minimum", "classic", 3, 12, true);
    row("no mode", "", 1, 5, false);
    row("combined, one folder", "combined", 1, 5, true);
    row("combined, two folders", "combined", 2, 5, true);
    row("combined, three folders", "combined", 3, 5, false);
    row("combined, three folders at the minimum", "combined", 3, 12, true);
    row("recognizerOnly, one folder", "recognizerOnly", 1, 5, false);
    row("recognizerOnly, at the minimum", "recognizerOnly", 3, 12, true);
    row("recognizerFallbackOnly, one folder", "recognizerFallbackOnly", 1, 5, false);
    row("expandEvent, one folder", "expandEvent", 1, 5, false);
    row("expandEvent, one below the minimum", "expandEvent", 1, 13, true);
    row("expandEvent, one above the minimum", "expandEvent", 1, 11, false);
}

void tst_NyEventFinder::modesDecide()
{
    QFETCH(QByteArray, mode);
    QFETCH(int, folders);
    QFETCH(int, minimum);
    QFETCH(bool, takesYear);
    for (int i = 0; i < folders; ++i)
        add(QStringLiteral("2024/Rom/") + QStringLiteral("Tag %1").arg(i + 1), 12 / folders);
    add(QStringLiteral("2024"), 1);

    const QString configHome = m_folder->path() + QStringLiteral("/config");
    QVERIFY(TestSupport::writeFile(configHome + QStringLiteral("/VELMORA/quilloservice.xml"),
        "<?xml version=\"1.0\"?><quilloservice><recentFiles minimumPhotos=\"" + QByteArray::number(minimum)
            + "\"/><eventFinder eventFinderMode=\"" + mode + "\"/></quilloservice>"));
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), configHome);
    environment.insert(QStringLiteral("XDG_DATA_HOME"), m_folder->path() + QStringLiteral("/data"));
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), QStringList{QStringLiteral("--find-event"), m_root} + m_paths);
    QVERIFY(child.waitForFinished(20000));
    QCOMPARE(child.exitCode(), 0);
    const QStringList parts = QString::fromUtf8(child.readAllStandardOutput()).trimmed().split(QLatin1Char('|'));
    QCOMPARE(parts.size(), 3);
    QCOMPARE(parts.at(0), takesYear ? QStringLiteral("2024") : QStringLiteral("Rom"));
    QCOMPARE(parts.at(1).toInt(), takesYear ? 13 : 12);
    QVERIFY2(parts.at(2).contains(takesYear ? QStringLiteral("takeYear =  true") : QStringLiteral("takeYear =  false")),
        qPrintable(parts.at(2)));
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() > 2 && arguments.at(1) == u"--find-event")
        return runChild(arguments.at(2), arguments.sliced(3));
    tst_NyEventFinder test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_NyEventFinder.moc"
