#include "NyRecentFileFinder.h"

#include <NyDirectoryConfig.h>
#include <NyQuilloServiceConfig.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QProcess>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include "FileSystemDoubles.h"
#include "FileSystemTrees.h"
#include "TestSupport.h"

namespace
{
const QStringList PhotoFilters{QStringLiteral("*.jpg"), QStringLiteral("*.jpeg")};

NyDateRange today()
{
    // A day more to both sides: midnight may come while the test runs.
    return NyDateRange(QDate::currentDate().addDays(-1), QDate::currentDate().addDays(1));
}

QStringList filePaths(const QList<QFileInfo> &files)
{
    QStringList paths;
    for (const QFileInfo &file : files)
        paths.append(file.filePath());
    return paths;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

/** The scan as it is told, step for step, with results merged upwards. */
NyRecentFileResult collectPlainly(const QDir &dir, const QStringList &nameFilters, const NyDateRange &range)
{
    const QStringList styleIds = NySingleton<NyQuilloServiceConfig>::instance().designStyleIds();
    if (NySingleton<NyDirectoryConfig>::instance().isIgnorableFolder(dir.absolutePath(), false))
        return NyRecentFileResult({}, range, 0, NyEventFolderClassificationResult(), styleIds);
    QList<QFileInfo> files;
    int countAfterRange = 0;
    const QFileInfoList candidates = dir.entryInfoList(nameFilters, QDir::Files, QDir::NoSort);
    for (const QFileInfo &file : candidates) {
        const QDate date = file.fileTime(QFileDevice::FileBirthTime).date();
        if (range.contains(date))
            files.append(file);
        else if (date > range.to())
            ++countAfterRange;
    }
    NyRecentFileResult result(files, range, countAfterRange, NyEventFolderClassificationResult(), styleIds);
    const QFileInfoList subfolders = dir.entryInfoList({QStringLiteral("*")}, QDir::AllDirs | QDir::NoDotAndDotDot, QDir::NoSort);
    for (const QFileInfo &subfolder : subfolders)
        result.merge(collectPlainly(QDir(subfolder.absoluteFilePath()), nameFilters, range));
    result.sort();
    return result;
}

QString quoted(const QString &text)
{
    QString line;
    QDebug(&line).nospace() << text;
    return line;
}

// What the child process does that closes down during a scan.
QCoreApplication *applicationOfChild = nullptr;

void closeDownAtFirstWarning(QtMsgType type, const QMessageLogContext &, const QString &)
{
    if (type == QtWarningMsg && applicationOfChild) {
        delete applicationOfChild;
        applicationOfChild = nullptr;
    }
}

void print(const NyRecentFileResult &result)
{
    std::printf("files=%s\nfrom=%s\nto=%s\nafter=%d\nstyles=%d\nstart=%s\n", qPrintable(filePaths(result.files()).join(QLatin1Char('|'))),
        qPrintable(result.relevantDateRange().from().toString(Qt::ISODate)),
        qPrintable(result.relevantDateRange().to().toString(Qt::ISODate)), result.countAfterDateRange(),
        int(result.recommendedStyleIds().size()), qPrintable(result.startDirectory()));
}

int runChild(const QString &mode, const QString &root)
{
    if (mode == u"before")
        delete std::exchange(applicationOfChild, nullptr);
    else
        qInstallMessageHandler(&closeDownAtFirstWarning);
    NyRecentFileFinder finder(root, PhotoFilters);
    print(finder.lastAddedFiles(NyDateRange(QDate(2020, 1, 1), QDate(2100, 1, 1))));
    return QCoreApplication::closingDown() ? 0 : 1;
}
}

class tst_NyRecentFileFinder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void logsWhatItObserves();
    void logsAChangeOfTheFolder();
    void staysWithAnEqualFolder();
    void observesPhotoKitThroughItsFileSystem();
    void scansPhotoKitThroughQt();
    void findsPhotosOfTheRange();
    void bothEndsAreInside_data();
    void bothEndsAreInside();
    void countsPhotosAfterTheRange();
    void leavesOutIgnorableFolders();
    void leavesOutFilesWithoutBirthTime();
    void fillsTheResult();
    void agreesWithThePlainForm_data();
    void agreesWithThePlainForm();
    void missingFolder();
    void emptyPath();
    void logsFaultsOnce();
    void aScanKeepsItsFolder();
    void closingDownBeforeTheScan();
    void closingDownDuringTheScan();

private:
    QString root() const { return m_folder->path() + QStringLiteral("/Bilder"); }
    QStringList inChild(const QString &mode) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_NyRecentFileFinder::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_NyRecentFileFinder::logsWhatItObserves()
{
    const TestSupport::LogRecorder log;
    const NyRecentFileFinder finder(root(), PhotoFilters);
    const QStringList lines = log.all();
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(0),
        QStringLiteral("debug: QUILLO_SERVICE: observing path changed from  %1 to %2").arg(quoted(QDir::currentPath()), quoted(root())));
    QVERIFY(lines.at(1).startsWith(QStringLiteral("info: QUILLO_SERVICE: observing path: QDir( ") + quoted(root())));
}

void tst_NyRecentFileFinder::logsAChangeOfTheFolder()
{
    NyRecentFileFinder finder(root(), PhotoFilters);
    const TestSupport::LogRecorder log;
    const QString other = m_folder->path() + QStringLiteral("/Other");
    finder.setObservedDirectory(other);
    QCOMPARE(log.all(),
        QStringList{QStringLiteral("debug: QUILLO_SERVICE: observing path changed from  %1 to %2").arg(quoted(root()), quoted(other))});
}

void tst_NyRecentFileFinder::staysWithAnEqualFolder()
{
    TreeBuilder tree(root());
    tree.folder("sub");
    tree.link("linked", "sub");
    NyRecentFileFinder finder(root() + QStringLiteral("/sub"), PhotoFilters);
    const TestSupport::LogRecorder log;
    // QDir compares existing folders by their canonical paths.
    for (const char *same : {"/sub", "/sub/", "/linked", "/sub/../sub"})
        finder.setObservedDirectory(root() + QLatin1StringView(same));
    QVERIFY(log.all().isEmpty());
    QCOMPARE(finder.lastAddedFiles(today()).startDirectory(), root() + QStringLiteral("/sub"));
}

void tst_NyRecentFileFinder::observesPhotoKitThroughItsFileSystem()
{
    NyRecentFileFinder finder(root(), PhotoFilters);
    const TestSupport::LogRecorder log;
    finder.setObservedDirectory(QStringLiteral("photokit:album/photokit:part"));
    QCOMPARE(log.all(),
        QStringList{QStringLiteral("debug: QUILLO_SERVICE: observing path changed from  %1 to %2")
                        .arg(quoted(root()), quoted(QStringLiteral("photokitfs:album/photokitfs:part")))});
    finder.setObservedDirectory(QStringLiteral("photokit:album/photokit:part"));
    finder.setObservedDirectory(QStringLiteral("photokitfs:album/photokitfs:part"));
    QCOMPARE(log.all().size(), 1);
    // Only at the beginning and only in this case.
    finder.setObservedDirectory(QStringLiteral("/x/photokit:a"));
    finder.setObservedDirectory(QStringLiteral("PhotoKit:a"));
    QVERIFY(log.all().at(1).endsWith(quoted(QStringLiteral("/x/photokit:a"))));
    QVERIFY(log.all().at(2).endsWith(quoted(QStringLiteral("PhotoKit:a"))));
}

void tst_NyRecentFileFinder::scansPhotoKitThroughQt()
{
    TreeBuilder tree(root());
    for (const char *name : {"a.jpg", "b.txt", ".hidden.jpg", "sub/c.JPG", "sub/deeper/d.jpg", "Screenshots/e.jpg"})
        tree.file(name);
    QDir::setSearchPaths(QStringLiteral("photokitfs"), {root()});
    NyRecentFileFinder finder(QStringLiteral("photokit:"), PhotoFilters);
    const NyRecentFileResult result = finder.lastAddedFiles(today());
    const NyRecentFileResult plain = collectPlainly(QDir(QStringLiteral("photokitfs:")), PhotoFilters, today());
    QDir::setSearchPaths(QStringLiteral("photokitfs"), {});
    QCOMPARE(result.count(), 3);
    QCOMPARE(filePaths(result.files()), filePaths(plain.files()));
    QCOMPARE(sorted(result.recommendedStyleIds()), sorted(plain.recommendedStyleIds()));
    QCOMPARE(result.relevantDateRange().from(), today().from());
}

void tst_NyRecentFileFinder::findsPhotosOfTheRange()
{
    const FileSystemDoubles::Switch controlledTimes(FileSystemDoubles::birthIsModification);
    const QDate day(2024, 6, 3);
    const auto at = [](QDate date, QTime time) { return QDateTime(date, time).toMSecsSinceEpoch(); };
    TreeBuilder tree(root());
    tree.file("sub/second.jpg", at(day, {12, 0}));
    tree.file("first.jpg", at(day, {11, 0}));
    tree.file("last/deep/third.jpeg", at(day, {13, 0}));
    tree.file("no photo.txt", at(day, {12, 0}));
    tree.file("day before.jpg", at(day.addDays(-1), {23, 59, 59, 999}));
    tree.file("day after.jpg", at(day.addDays(1), {0, 0}));
    NyRecentFileFinder finder(root(), PhotoFilters);
    const TestSupport::LogRecorder log;
    const NyRecentFileResult result = finder.lastAddedFiles(NyDateRange(day, day));
    QCOMPARE(log.all(),
        QStringList{QStringLiteral("info: Checking  %1 for files from Timespan %2")
                        .arg(quoted(root()), quoted(NyDateRange(day, day).dateDescription(QDate::currentDate())))});
    QCOMPARE(filePaths(result.files()),
        QStringList({root() + QStringLiteral("/first.jpg"), root() + QStringLiteral("/sub/second.jpg"),
            root() + QStringLiteral("/last/deep/third.jpeg")}));
    QCOMPARE(result.countAfterDateRange(), 1);
}

void tst_NyRecentFileFinder::bothEndsAreInside_data()
{
    QTest::addColumn<int>("fromOffset");
    QTest::addColumn<int>("toOffset");
    QTest::addColumn<int>("kept");
    QTest::addColumn<int>("after");
    QTest::newRow("that day alone") << 0 << 0 << 1 << 0;
    QTest::newRow("its first day") << 0 << 5 << 1 << 0;
    QTest::newRow("its last day") << -5 << 0 << 1 << 0;
    QTest::newRow("ended the day before") << -5 << -1 << 0 << 1;
    QTest::newRow("begins the day after") << 1 << 5 << 0 << 0;
}

void tst_NyRecentFileFinder::bothEndsAreInside()
{
    QFETCH(int, fromOffset);
    QFETCH(int, toOffset);
    QFETCH(int, kept);
    QFETCH(int, after);
    TreeBuilder tree(root());
    tree.file("a.jpg");
    const QDate born = QFileInfo(root() + QStringLiteral("/a.jpg")).fileTime(QFileDevice::FileBirthTime).date();
    if (!born.isValid())
        QSKIP("the file system records no birth times");
    NyRecentFileFinder finder(root(), PhotoFilters);
    const NyRecentFileResult result = finder.lastAddedFiles(NyDateRange(born.addDays(fromOffset), born.addDays(toOffset)));
    QCOMPARE(result.count(), kept);
    QCOMPARE(result.countAfterDateRange(), after);
}

void tst_NyRecentFileFinder::countsPhotosAfterTheRange()
{
    TreeBuilder tree(root());
    for (const char *name : {"a.jpg", "sub/b.jpg", "sub/deeper/c.jpg", "sub/d.txt"})
        tree.file(name);
    NyRecentFileFinder finder(root(), PhotoFilters);
    const NyRecentFileResult result = finder.lastAddedFiles(NyDateRange(QDate(2001, 1, 1), QDate(2001, 12, 31)));
    QVERIFY(result.isEmpty());
    QCOMPARE(result.countAfterDateRange(), 3);
}

void tst_NyRecentFileFinder::leavesOutIgnorableFolders()
{
    TreeBuilder tree(root());
    for (const char *name : {"a.jpg", "@eaDir/b.jpg", "@eaDir/sub/c.jpg", "marked/d.jpg", "marked/sub/e.jpg", "marked/.nomedia"})
        tree.file(name);
    NyRecentFileFinder finder(root(), PhotoFilters);
    QCOMPARE(finder.lastAddedFiles(today()).count(), 1);
    QCOMPARE(finder.lastAddedFiles(NyDateRange(QDate(2001, 1, 1), QDate(2001, 12, 31))).countAfterDateRange(), 1);
    finder.setObservedDirectory(root() + QStringLiteral("/@eaDir"));
    const NyRecentFileResult result = finder.lastAddedFiles(today());
    QVERIFY(result.isEmpty());
    QCOMPARE(result.relevantDateRange().from(), today().from());
    QCOMPARE(result.recommendedStyleIds(), NySingleton<NyQuilloServiceConfig>::instance().designStyleIds());
    QCOMPARE(result.startDirectory(), root() + QStringLiteral("/@eaDir"));
}

void tst_NyRecentFileFinder::leavesOutFilesWithoutBirthTime()
{
    const FileSystemDoubles::Switch timeless(FileSystemDoubles::noBirthTimes);
    TreeBuilder tree(root());
    tree.file("a.jpg");
    NyRecentFileFinder finder(root(), PhotoFilters);
    for (const NyDateRange &range :
        {today(), NyDateRange(QDate(1960, 1, 1), QDate(1970, 1, 2)), NyDateRange(QDate(1901, 1, 1), QDate(1901, 1, 2))}) {
        const NyRecentFileResult result = finder.lastAddedFiles(range);
        QVERIFY(result.isEmpty());
        QCOMPARE(result.countAfterDateRange(), 0);
    }
}

void tst_NyRecentFileFinder::fillsTheResult()
{
    TreeBuilder tree(root());
    tree.file("a.jpg");
    NyRecentFileFinder finder(root(), PhotoFilters);
    const QStringList styleIds = NySingleton<NyQuilloServiceConfig>::instance().designStyleIds();
    QVERIFY(!styleIds.isEmpty());
    NyRecentFileResult result = finder.lastAddedFiles(today());
    // Without a subfolder the ids keep the configured order.
    QCOMPARE(result.recommendedStyleIds(), styleIds);
    QCOMPARE(result.startDirectory(), root());
    QCOMPARE(result.relevantDateRange().from(), today().from());
    QCOMPARE(result.relevantDateRange().to(), today().to());
    QVERIFY(result.classification() == NyEventFolderClassificationResult());

    tree.folder("sub");
    result = finder.lastAddedFiles(today());
    QCOMPARE(sorted(result.recommendedStyleIds()), sorted(styleIds));
    QCOMPARE(result.relevantDateRange().from(), today().from());
    QCOMPARE(result.relevantDateRange().to(), today().to());
    QVERIFY(result.classification() == NyEventFolderClassificationResult());
}

void tst_NyRecentFileFinder::agreesWithThePlainForm_data()
{
    QTest::addColumn<NyDateRange>("range");
    QTest::newRow("all") << today();
    QTest::newRow("none, all after") << NyDateRange(QDate(2001, 1, 1), QDate(2001, 12, 31));
    QTest::newRow("none, all before") << NyDateRange(QDate(2101, 1, 1), QDate(2101, 12, 31));
    QTest::newRow("reversed") << NyDateRange(QDate(2101, 1, 1), QDate(2001, 12, 31));
    QTest::newRow("no ends") << NyDateRange();
    QTest::newRow("no start") << NyDateRange(QDate(), QDate(2001, 12, 31));
    QTest::newRow("no end") << NyDateRange(QDate(2001, 12, 31), QDate());
}

void tst_NyRecentFileFinder::agreesWithThePlainForm()
{
    QFETCH(NyDateRange, range);
    TreeBuilder tree(root());
    for (const char *name : {"b.jpg", "A.JPG", "sub/caf\u00e9.jpg", "sub/cafe\u0301.jpg", "sub/new\nline/%1 & \"x\".jpg",
             "sub/.hidden/c.jpg", "@eaDir/d.jpg", "e.txt"})
        tree.file(name);
    tree.link("sub/link.jpg", "../b.jpg");
    tree.link("sub/up", "..");
    tree.link("broken.jpg", "nowhere");
    NyRecentFileFinder finder(root(), PhotoFilters);
    const NyRecentFileResult result = finder.lastAddedFiles(range);
    const NyRecentFileResult plain = collectPlainly(QDir(root()), PhotoFilters, range);
    QCOMPARE(filePaths(result.files()), filePaths(plain.files()));
    QCOMPARE(result.countAfterDateRange(), plain.countAfterDateRange());
    QCOMPARE(result.relevantDateRange().from(), plain.relevantDateRange().from());
    QCOMPARE(result.relevantDateRange().to(), plain.relevantDateRange().to());
    QCOMPARE(sorted(result.recommendedStyleIds()), sorted(plain.recommendedStyleIds()));
    QCOMPARE(int(result.eventFolderType().value()), int(plain.eventFolderType().value()));
}

void tst_NyRecentFileFinder::missingFolder()
{
    NyRecentFileFinder finder(root(), PhotoFilters);
    QTest::ignoreMessage(QtWarningMsg,
        qPrintable(QStringLiteral("QUILLO_SERVICE: folder left out of the scan: %1 \"No such file or directory\"").arg(quoted(root()))));
    const NyRecentFileResult result = finder.lastAddedFiles(today());
    QVERIFY(result.isEmpty());
    QCOMPARE(result.startDirectory(), root());
    QCOMPARE(result.recommendedStyleIds(), NySingleton<NyQuilloServiceConfig>::instance().designStyleIds());
    // A folder that comes later is found.
    TreeBuilder tree(root());
    tree.file("a.jpg");
    QCOMPARE(finder.lastAddedFiles(today()).count(), 1);
}

void tst_NyRecentFileFinder::emptyPath()
{
    TreeBuilder tree(root());
    tree.file("a.jpg");
    tree.file("sub/b.jpg");
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(root()));
    // An empty path equals the folder that the finder starts with: the present one.
    NyRecentFileFinder finder(QString(), PhotoFilters);
    const NyRecentFileResult result = finder.lastAddedFiles(today());
    const NyRecentFileResult plain = collectPlainly(QDir(QString()), PhotoFilters, today());
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(filePaths(result.files()), filePaths(plain.files()));
    QCOMPARE(result.count(), 2);
    QCOMPARE(result.startDirectory(), root());
}

void tst_NyRecentFileFinder::logsFaultsOnce()
{
    TreeBuilder tree(root());
    tree.file("caf\xe9.jpg");
    tree.file("closed/a.jpg");
    tree.file("b.jpg");
    tree.mode("closed", 0000);
    NyRecentFileFinder finder(root(), PhotoFilters);
    const TestSupport::LogRecorder log;
    {
        const WithoutRootPowers mortal;
        for (int scan = 0; scan < 3; ++scan)
            QCOMPARE(finder.lastAddedFiles(today()).count(), 1);
    }
    tree.mode("closed", 0755);
    QCOMPARE(log.containing(QStringLiteral("warning: ")).size(), 2);
    QCOMPARE(log.containing(QStringLiteral("not valid UTF-8")).size(), 1);
    QCOMPARE(log.containing(QStringLiteral("closed")).size(), 1);
    QCOMPARE(log.containing(QStringLiteral("Checking ")).size(), 3);
}

namespace
{
std::function<void(const QString &)> onMessage;

void callOnMessage(QtMsgType, const QMessageLogContext &, const QString &message)
{
    if (onMessage)
        onMessage(message);
}
}

void tst_NyRecentFileFinder::aScanKeepsItsFolder()
{
    TreeBuilder tree(root());
    tree.file("one/a.jpg");
    tree.file("two/b.jpg");
    tree.file("two/c.jpg");
    NyRecentFileFinder finder(root() + QStringLiteral("/one"), PhotoFilters);
    QSemaphore started;
    QSemaphore done;
    std::unique_ptr<QThread> changer(QThread::create([&] {
        started.release();
        finder.setObservedDirectory(root() + QStringLiteral("/two"));
        done.release();
    }));
    bool changedDuringScan = true;
    // The scan's first line is written while it holds the lock.
    onMessage = [&](const QString &message) {
        if (!message.startsWith(QStringLiteral("Checking ")) || changer->isRunning() || changer->isFinished())
            return;
        changer->start();
        started.acquire();
        changedDuringScan = done.tryAcquire(1, 100);
    };
    const QtMessageHandler before = qInstallMessageHandler(&callOnMessage);
    const NyRecentFileResult first = finder.lastAddedFiles(today());
    QVERIFY(changer->wait());
    qInstallMessageHandler(before);
    onMessage = nullptr;
    QVERIFY(!changedDuringScan);
    QCOMPARE(first.startDirectory(), root() + QStringLiteral("/one"));
    QCOMPARE(first.count(), 1);
    const NyRecentFileResult second = finder.lastAddedFiles(today());
    QCOMPARE(second.startDirectory(), root() + QStringLiteral("/two"));
    QCOMPARE(second.count(), 2);
}

QStringList tst_NyRecentFileFinder::inChild(const QString &mode) const
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--close-down"), mode, root()});
    if (!child.waitForFinished(20000) || child.exitStatus() != QProcess::NormalExit || child.exitCode() != 0)
        return {QStringLiteral("the child failed: ") + QString::fromUtf8(child.readAllStandardError())};
    return QString::fromUtf8(child.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void tst_NyRecentFileFinder::closingDownBeforeTheScan()
{
    TreeBuilder tree(root());
    tree.file("a.jpg");
    QCOMPARE(inChild(QStringLiteral("before")),
        QStringList({QStringLiteral("files="), QStringLiteral("from="), QStringLiteral("to="), QStringLiteral("after=0"),
            QStringLiteral("styles=0"), QStringLiteral("start=") + root()}));
}

void tst_NyRecentFileFinder::closingDownDuringTheScan()
{
    TreeBuilder tree(root());
    tree.file("a.jpg");
    tree.file("sub/caf\xe9.jpg");
    tree.file("sub/b.jpg");
    tree.file("sub/deeper/c.jpg");
    tree.file("sub 2/d.jpg");
    // The application goes when the undecodable name in the second folder is logged: what was found until then stays.
    const QStringList lines = inChild(QStringLiteral("during"));
    QCOMPARE(lines.size(), 6);
    QCOMPARE(sorted(lines.first().sliced(6).split(QLatin1Char('|'))),
        QStringList({root() + QStringLiteral("/a.jpg"), root() + QStringLiteral("/sub/b.jpg")}));
    QCOMPARE(lines.sliced(1),
        QStringList({QStringLiteral("from="), QStringLiteral("to=2100-01-01"), QStringLiteral("after=0"), QStringLiteral("styles=0"),
            QStringLiteral("start=") + root()}));
}

int main(int argc, char **argv)
{
    if (argc == 4 && qstrcmp(argv[1], "--close-down") == 0) {
        applicationOfChild = new QCoreApplication(argc, argv);
        return runChild(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3]));
    }
    QCoreApplication application(argc, argv);
    tst_NyRecentFileFinder test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_NyRecentFileFinder.moc"
