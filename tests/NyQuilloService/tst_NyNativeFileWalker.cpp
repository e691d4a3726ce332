#include "NyNativeFileWalker.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>

#include "FileSystemDoubles.h"
#include "FileSystemTrees.h"
#include "PlainScan.h"
#include "TestSupport.h"

namespace
{
/** Takes all log lines, so that trees full of faults do not drown the test's own output. */
class SilentLog
{
public:
    SilentLog()
    {
        lines().clear();
        previous() = qInstallMessageHandler(&SilentLog::take);
    }
    ~SilentLog() { qInstallMessageHandler(previous()); }
    Q_DISABLE_COPY_MOVE(SilentLog)

    QStringList all() const { return lines(); }

private:
    static void take(QtMsgType, const QMessageLogContext &, const QString &message) { lines().append(message); }
    static QStringList &lines()
    {
        static QStringList taken;
        return taken;
    }
    static QtMessageHandler &previous()
    {
        static QtMessageHandler handler = nullptr;
        return handler;
    }
};

struct Found
{
    QStringList paths;
    QList<qint64> birthTimes;
    int countAfter = 0;
    bool hasSubfolders = false;
    QStringList log;
};

const QStringList PhotoFilters{QStringLiteral("*.jpg"), QStringLiteral("*.jpeg"), QStringLiteral("*.png"), QStringLiteral("*.ps")};

QList<qint64> birthTimes(const QFileInfoList &files)
{
    QList<qint64> times;
    for (const QFileInfo &file : files)
        times.append(file.fileTime(QFileDevice::FileBirthTime).toMSecsSinceEpoch());
    return times;
}

QStringList filePaths(const QFileInfoList &files)
{
    QStringList paths;
    for (const QFileInfo &file : files)
        paths.append(file.filePath());
    return paths;
}

Found walk(const QString &path, const NyDateRange &range, const QStringList &filters = PhotoFilters)
{
    const NyFileNameFilter filter(filters);
    const NyBirthTimeWindow window(range);
    QSet<QString> reported;
    NyNativeFileWalker walker(filter, window, &reported);
    const SilentLog log;
    walker.walk(path);
    const QList<QFileInfo> files = walker.takeFiles();
    return {filePaths(files), birthTimes(files), walker.countAfterWindow(), walker.hasSubfolders(), log.all()};
}

Found scanPlainly(const QString &path, const NyDateRange &range, const QStringList &filters = PhotoFilters)
{
    const PlainScan::Result result = PlainScan::scan(path, filters, range);
    return {filePaths(result.files), birthTimes(result.files), result.countAfterRange, result.hasSubfolders, {}};
}

NyDateRange today()
{
    // A day more to both sides: midnight may come while the test runs.
    return NyDateRange(QDate::currentDate().addDays(-1), QDate::currentDate().addDays(1));
}

NyDateRange longAgo()
{
    return NyDateRange(QDate(2001, 1, 1), QDate(2001, 12, 31));
}

NyDateRange farAhead()
{
    return NyDateRange(QDate(2101, 1, 1), QDate(2101, 12, 31));
}

#define COMPARE_WITH_PLAIN(...)                                                                                                            \
    do {                                                                                                                                   \
        const Found plain = scanPlainly(__VA_ARGS__);                                                                                      \
        const Found fast = walk(__VA_ARGS__);                                                                                              \
        QCOMPARE(fast.paths, plain.paths);                                                                                                 \
        QCOMPARE(fast.birthTimes, plain.birthTimes);                                                                                       \
        QCOMPARE(fast.countAfter, plain.countAfter);                                                                                       \
        QCOMPARE(fast.hasSubfolders, plain.hasSubfolders);                                                                                 \
    } while (false)
}

using Build = void (*)(TreeBuilder &);
Q_DECLARE_METATYPE(Build)

/** What Qt's own listings find in the same trees is the measure. */
class tst_NyNativeFileWalker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void agreesWithQt_data();
    void agreesWithQt();
    void agreesWithQtOnRandomTrees_data();
    void agreesWithQtOnRandomTrees();
    void agreesWithQtOnTreesOfLinks_data();
    void agreesWithQtOnTreesOfLinks();
    void agreesWithQtOnOddRoots_data();
    void agreesWithQtOnOddRoots();
    void agreesWithQtBeyondThePathLimit();
    void agreesWithQtOnUnreadableFolders();
    void agreesWithQtWithoutBirthTimes();
    void sortsByBirthTimeThenPath();
    void followsOneLinkUpwardsToTheLimit();
    void followsTwoLinksUpwardsOnlyOnce_data();
    void followsTwoLinksUpwardsOnlyOnce();
    void boundsTheWaysOverLinks();
    void reportsUndecodableNamesOnce();
    void reportsUnreadableFoldersOnce();
    void knowsWhichPathsItCanWalk();
    void startsNothingOnAMissingFolder();

private:
    QString newFolder();

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_NyNativeFileWalker::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_NyNativeFileWalker::cleanup()
{
    // QTemporaryDir leaves behind what it cannot name.
    std::filesystem::remove_all(m_folder->path().toStdString());
}

QString tst_NyNativeFileWalker::newFolder()
{
    return m_folder->path() + QStringLiteral("/Bilder");
}

void tst_NyNativeFileWalker::agreesWithQt_data()
{
    QTest::addColumn<Build>("build");
    QTest::addColumn<int>("expectedFiles");
    const auto row = [](const char *name, int expectedFiles, Build build) { QTest::newRow(name) << build << expectedFiles; };
    row("empty", 0, [](TreeBuilder &) {});
    row("files and folders", 4, [](TreeBuilder &tree) {
        tree.file("b.jpg");
        tree.file("A.jpg");
        tree.file("note.txt");
        tree.file("2024/Juni/c.jpeg");
        tree.file("2024/d.png");
        tree.folder("2024/leer");
    });
    row("extensions in every case", 6, [](TreeBuilder &tree) {
        tree.file("a.JPG");
        tree.file("b.JpEg");
        tree.file("c.p\u017f");
        tree.file("d.P\u017f");
        tree.file("e.jpg.jpg");
        tree.file("f.jpg.txt");
        tree.file("jpg");
        tree.file("g.jpg");
        tree.file("h.jpg ");
        tree.file("i.xjpg");
    });
    row("hidden entries", 1, [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.file(".b.jpg");
        tree.file(".jpg");
        tree.file("..jpg");
        tree.file("...jpg");
        tree.file(".hidden/c.jpg");
        tree.link(".link.jpg", "a.jpg");
        tree.link(".folderlink", ".");
    });
    row("ignorable folders", 4, [](TreeBuilder &tree) {
        tree.file("Screenshots/a.jpg");
        tree.file("@eaDir/a.jpg/b.jpg");
        tree.file("lost+found/a.jpg");
        tree.file("#recycle/sub/a.jpg");
        tree.file("marked/.nomedia");
        tree.file("marked/a.jpg");
        tree.file("marked/sub/b.jpg");
        tree.file("memories/a.jpg");
        tree.file("memories/z/b.jpg");
        tree.file("memories/.nomemories");
        tree.folder("folder marker/.nomedia");
        tree.file("folder marker/kept.jpg");
        tree.file("other case/.NoMedia");
        tree.file("other case/kept.jpg");
        tree.file("linked marker/a.jpg");
        tree.file("marker target");
        tree.link("linked marker/.nomedia", "../marker target");
        tree.file("broken marker/kept.jpg");
        tree.link("broken marker/.nomedia", "nowhere");
        tree.file("similar name/.nomedia.txt");
        tree.file("similar name/kept.jpg");
    });
    row("only an ignorable subfolder", 1, [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.file("@eaDir/b.jpg");
    });
    row("root with a marker", 0, [](TreeBuilder &tree) {
        tree.file(".nomedia");
        tree.file("a.jpg");
        tree.file("sub/a.jpg");
        tree.link("null.jpg", "/dev/null");
    });
    row("links to files", 5, [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.file("notes.txt");
        tree.link("b.jpg", "a.jpg");
        tree.link("c.jpg", "b.jpg");
        tree.link("text as photo.jpg", "notes.txt");
        tree.link("photo as text.txt", "a.jpg");
        tree.link("sub/up.jpg", "../a.jpg");
    });
    row("broken links", 0, [](TreeBuilder &tree) {
        tree.link("a.jpg", "nowhere.jpg");
        tree.link("self.jpg", "self.jpg");
        tree.link("one.jpg", "two.jpg");
        tree.link("two.jpg", "one.jpg");
        tree.link("folder", "nowhere/");
        tree.link("not a folder", "a.jpg/b");
    });
    row("links to folders", 8, [](TreeBuilder &tree) {
        tree.file("real/a.jpg");
        tree.file("real/deeper/b.jpg");
        tree.link("link", "real");
        tree.link("link to link", "link");
        tree.link("photos.jpg", "real/deeper/..");
        tree.file("other.jpg/.nomedia");
    });
    row("link to an ignorable folder", 1, [](TreeBuilder &tree) {
        tree.file("Screenshots/a.jpg");
        tree.file("marked/.nomedia");
        tree.file("marked/b.jpg");
        tree.link("shots", "Screenshots");
        tree.link("marked too", "marked");
        tree.file("c/d.jpg");
        tree.link("Screenshots2", "c");
        tree.link("Thumbnails", "c");
        tree.mode("c", 0755);
        ::unlink(tree.path("Screenshots2").c_str());
        ::unlink(tree.path("shots").c_str());
    });
    row("special files", 0, [](TreeBuilder &tree) {
        tree.pipe("pipe.jpg");
        tree.socket("socket.jpg");
        tree.folder("folder.jpg");
    });
    row("link to a device only", 0, [](TreeBuilder &tree) { tree.link("null", "/dev/null"); });
    row("links to special files", 2, [](TreeBuilder &tree) {
        tree.pipe("pipe");
        tree.socket("socket");
        tree.link("a.jpg", "pipe");
        tree.link("b.jpg", "socket");
        tree.link("c", "pipe");
    });
    row("odd names", 16, [](TreeBuilder &tree) {
        for (const char *name : {"a b.jpg", " .jpg", "new\nline.jpg", "tab\t.jpg", "colon:a.jpg", "C:.jpg", "\"quoted\".jpg", "'.jpg",
                 "%1.jpg", "&amp;.jpg", "\\.jpg", "*.jpg", "?.jpg", "[a].jpg"})
            tree.file(name);
        tree.file("new\nline: \"%1\" & *\\/odd.jpg");
        tree.file("-rf/-.jpg");
    });
    row("names beyond ASCII", 8, [](TreeBuilder &tree) {
        tree.file("caf\u00e9.jpg");
        tree.file("cafe\u0301.jpg");
        tree.file("caf\u00e9/a.jpg");
        tree.file("cafe\u0301/a.jpg");
        tree.file("\U0001f600\U0001f1e9\U0001f1ea.jpg");
        tree.file("\u5e74/\u6708.jpg");
        tree.file("\u202edlrow.jpg");
        tree.file("\uffff\ufffd.jpg");
    });
    row("names that are not UTF-8", 3, [](TreeBuilder &tree) {
        tree.file("caf\xe9.jpg");
        tree.file("good.jpg");
        tree.file("bad \xff/lost.jpg");
        tree.file("good/overlong \xc0\xaf.jpg");
        tree.file("good/surrogate \xed\xa0\x80.jpg");
        tree.file("good/cut \xe2\x82");
        tree.file("good/kept.jpg");
        tree.link("link \xfe.jpg", "good.jpg");
        tree.link("good link.jpg", "caf\xe9.jpg");
    });
    row("link into a folder that is not UTF-8", 2, [](TreeBuilder &tree) {
        tree.file("bad \xff/a.jpg");
        tree.file("bad \xff/sub/b.jpg");
        tree.link("good", "bad \xff");
    });
    row("long names", 2, [](TreeBuilder &tree) {
        tree.file(std::string(251, 'x') + ".jpg");
        tree.file(std::string(255, 'd') + "/" + std::string(251, 'y') + ".jpg");
    });
    row("deep tree", 1, [](TreeBuilder &tree) {
        std::string path;
        for (int i = 0; i < 300; ++i)
            path += "d/";
        tree.file(path + "a.jpg");
    });
    row("many files", 3000, [](TreeBuilder &tree) {
        for (int i = 0; i < 3000; ++i)
            tree.file("a name that fills the reading buffer more than once " + std::to_string(i) + ".jpg");
    });
}

void tst_NyNativeFileWalker::agreesWithQt()
{
    QFETCH(Build, build);
    QFETCH(int, expectedFiles);
    TreeBuilder tree(newFolder());
    build(tree);

    QCOMPARE(walk(newFolder(), today()).paths.size(), expectedFiles);
    for (const NyDateRange &range : {today(), longAgo(), farAhead(), NyDateRange(), NyDateRange(QDate(), QDate::currentDate())})
        COMPARE_WITH_PLAIN(newFolder(), range);
    COMPARE_WITH_PLAIN(newFolder(), today(), {});
    COMPARE_WITH_PLAIN(newFolder(), today(), {QStringLiteral("*")});
    COMPARE_WITH_PLAIN(newFolder(), today(), {QStringLiteral("*a*.j?g"), QStringLiteral("[!x]*.PS")});

    const Found before = walk(newFolder(), today());
    FileSystemDoubles::untypedEntries = 0;
    const FileSystemDoubles::Switch untyped(FileSystemDoubles::noEntryTypes);
    const Found found = walk(newFolder(), today());
    QVERIFY(FileSystemDoubles::untypedEntries > 0);
    QCOMPARE(found.paths, before.paths);
    QCOMPARE(found.hasSubfolders, before.hasSubfolders);
}

void tst_NyNativeFileWalker::agreesWithQtOnRandomTrees_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 40; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_NyNativeFileWalker::agreesWithQtOnRandomTrees()
{
    QFETCH(quint32, seed);
    const FileSystemDoubles::Switch controlledTimes(FileSystemDoubles::birthIsModification);
    QRandomGenerator random(seed);
    TreeBuilder tree(newFolder());
    std::vector<std::string> folders{""};
    std::vector<std::string> files;
    static const char *const names[]
        = {"a", "B", "caf\u00e9", "cafe\u0301", "x y", "new\nline", ":", ".h", "@eaDir", "bad\xff", "\U0001f600", "%1"};
    static const char *const endings[] = {".jpg", ".JPG", ".jpeg", ".p\u017f", ".txt", "", ".png", ".jpg~"};
    const qint64 start = QDate(2024, 6, 1).startOfDay().toMSecsSinceEpoch();
    int number = 0;
    const auto newName = [&] {
        const std::string base = names[random.bounded(int(std::size(names)))];
        const std::string parent = folders[std::size_t(random.bounded(int(folders.size())))];
        // One in three names is used as it is, and may be there already.
        const std::string unique = random.bounded(3) == 0 ? base : base + std::to_string(++number);
        return parent.empty() ? unique : parent + '/' + unique;
    };
    for (int i = 0; i < 120; ++i) {
        std::string name = newName();
        const int kind = random.bounded(10);
        if (kind < 3) {
            struct stat status;
            if (::lstat(tree.path(name).c_str(), &status) == 0)
                continue;
            tree.folder(name);
            folders.push_back(name);
        } else if (kind == 9) {
            name += endings[random.bounded(int(std::size(endings)))];
            struct stat status;
            if (files.empty() || ::lstat(tree.path(name).c_str(), &status) == 0)
                continue;
            tree.link(name, tree.path(files[std::size_t(random.bounded(int(files.size())))]));
        } else {
            name += endings[random.bounded(int(std::size(endings)))];
            struct stat status;
            if (::lstat(tree.path(name).c_str(), &status) == 0)
                continue;
            // Whole hours of a few days, so that times are often the same and often lie at the ends of a range.
            tree.file(name, start + random.bounded(24 * 6) * 3600000LL - random.bounded(2));
            files.push_back(name);
        }
        if (random.bounded(60) == 0)
            tree.file((folders.back().empty() ? std::string() : folders.back() + '/') + ".nomedia");
    }
    COMPARE_WITH_PLAIN(newFolder(), NyDateRange(QDate(2024, 6, 2), QDate(2024, 6, 4)));
    COMPARE_WITH_PLAIN(newFolder(), NyDateRange(QDate(2024, 5, 1), QDate(2024, 6, 30)));
    COMPARE_WITH_PLAIN(newFolder(), NyDateRange(QDate(2024, 6, 6), QDate(2024, 6, 2)));
    COMPARE_WITH_PLAIN(newFolder(), NyDateRange(QDate(2024, 6, 3), QDate(2024, 6, 3)), {});
}

void tst_NyNativeFileWalker::agreesWithQtOnTreesOfLinks_data()
{
    QTest::addColumn<Build>("build");
    const auto row = [](const char *name, Build build) { QTest::newRow(name) << build; };
    row("to its own folder", [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.file("sub/b.jpg");
        tree.link("again", ".");
    });
    row("to the folder above", [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.file("sub/b.jpg");
        tree.link("sub/up", "..");
        tree.file("sub/deeper/c.jpg");
    });
    row("to the root by its absolute path", [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.file("x/y/z/b.jpg");
        tree.link("x/y/z/root", tree.path(""));
    });
    row("by way of another link", [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.link(".hidden way", "..");
        tree.link("sub/up", "../.hidden way/Bilder");
        tree.file("sub/b.jpg");
    });
    row("above the root", [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.link("sub/far", "../..");
    });
    row("a long name, so that the path ends first", [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.file("photo with a long name, too long for the last round " + std::string(150, 'x') + ".jpg");
        tree.link(std::string(250, 'l'), ".");
    });
    row("named as a photo", [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.link("folder.jpg", ".");
    });
    row("with links to files", [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.link("b.jpg", "a.jpg");
        tree.link("again", ".");
    });
    row("ignorable", [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.link("Screenshots", ".");
        tree.link(".hidden", ".");
    });
    row("to neighbours that are no loops", [](TreeBuilder &tree) {
        tree.file("a/1.jpg");
        tree.file("b/2.jpg");
        tree.link("a/to b", "../b");
        tree.link("c/to a", "../a");
        tree.link("c/to b", "../b");
    });
}

void tst_NyNativeFileWalker::agreesWithQtOnTreesOfLinks()
{
    QFETCH(Build, build);
    TreeBuilder tree(newFolder());
    build(tree);
    QVERIFY(!walk(newFolder(), today()).paths.isEmpty());
    COMPARE_WITH_PLAIN(newFolder(), today());
    COMPARE_WITH_PLAIN(newFolder(), longAgo());
}

void tst_NyNativeFileWalker::agreesWithQtOnOddRoots_data()
{
    QTest::addColumn<QString>("root");
    QTest::newRow("separator at the end") << m_folder->path() + QStringLiteral("/Bilder/");
    QTest::newRow("two separators at the end") << QStringLiteral("Bilder//");
    QTest::newRow("relative") << QStringLiteral("Bilder");
    QTest::newRow("relative, dot") << QStringLiteral(".");
    QTest::newRow("relative, upwards") << QStringLiteral("Bilder/2024/..");
    QTest::newRow("relative, with a dot") << QStringLiteral("./Bilder");
    QTest::newRow("a link") << QStringLiteral("link");
    QTest::newRow("upwards from a link") << QStringLiteral("link to 2024/../2024");
    QTest::newRow("hidden") << QStringLiteral(".hidden");
    QTest::newRow("missing") << QStringLiteral("nowhere");
    QTest::newRow("a file") << QStringLiteral("Bilder/a.jpg");
}

void tst_NyNativeFileWalker::agreesWithQtOnOddRoots()
{
    QFETCH(QString, root);
    TreeBuilder tree(m_folder->path());
    tree.file("Bilder/a.jpg");
    tree.file("Bilder/2024/b.jpg");
    tree.file("Bilder/2024/Juni/c.jpg");
    tree.link("Bilder/linked", "2024");
    tree.link("link", "Bilder");
    tree.link("link to 2024", "Bilder/2024");
    tree.file("2024/outside.jpg");
    tree.file("2024/sub/outside.jpg");
    tree.file(".hidden/d.jpg");
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    const QStringList roots{root, m_folder->path() + QLatin1Char('/') + root, m_folder->path() + QStringLiteral("//") + root};
    for (const QString &path : roots) {
        // As the finder does: QDir drops one separator at the end.
        const QString given = QDir(path).path();
        const Found expected = scanPlainly(path, today());
        const Found found = walk(given, today());
        if (found.paths != expected.paths || found.hasSubfolders != expected.hasSubfolders)
            qWarning() << path << found.paths << expected.paths;
        QCOMPARE(found.paths, expected.paths);
        QCOMPARE(found.hasSubfolders, expected.hasSubfolders);
    }
    QVERIFY(QDir::setCurrent(before));
}

void tst_NyNativeFileWalker::agreesWithQtBeyondThePathLimit()
{
    TreeBuilder tree(newFolder());
    const int before = ::open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    QCOMPARE(::chdir(tree.path("").c_str()), 0);
    const std::string name(200, 'd');
    for (int level = 0; level < 25; ++level) {
        QCOMPARE(::mkdir(name.c_str(), 0755), 0);
        QCOMPARE(::chdir(name.c_str()), 0);
        for (const std::string &file : {std::string("a.jpg"), std::string(100, 'f') + ".jpg"})
            ::close(::open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    }
    QCOMPARE(::fchdir(before), 0);
    ::close(before);
    COMPARE_WITH_PLAIN(newFolder(), today());
    const qsizetype found = walk(newFolder(), today()).paths.size();
    QVERIFY(found >= 36 && found < 42);
}

void tst_NyNativeFileWalker::agreesWithQtOnUnreadableFolders()
{
    TreeBuilder tree(newFolder());
    tree.file("a.jpg");
    tree.file("closed/b.jpg");
    tree.file("closed/sub/c.jpg");
    tree.file("no listing/d.jpg");
    tree.file("no search/e.jpg");
    tree.file("no search/sub/f.jpg");
    tree.file("no search marked/g.jpg");
    tree.file("no search marked/.nomedia");
    tree.file("unreadable file.jpg");
    tree.link("into closed.jpg", "closed/b.jpg");
    tree.link("into closed", "closed/sub");
    tree.link("z/into no listing.jpg", "../no listing/d.jpg");
    tree.mode("closed", 0000);
    tree.mode("no listing", 0311);
    tree.mode("no search", 0644);
    tree.mode("no search marked", 0644);
    tree.mode("unreadable file.jpg", 0000);
    {
        const WithoutRootPowers mortal;
        const Found found = walk(newFolder(), today());
        QCOMPARE(found.paths.size(), 3);
        COMPARE_WITH_PLAIN(newFolder(), today());
        COMPARE_WITH_PLAIN(newFolder(), longAgo());
    }
    for (const char *name : {"closed", "no listing", "no search", "no search marked"})
        tree.mode(name, 0755);
}

void tst_NyNativeFileWalker::agreesWithQtWithoutBirthTimes()
{
    TreeBuilder tree(newFolder());
    tree.file("a.jpg");
    tree.file("sub/b.jpg");
    const FileSystemDoubles::Switch timeless(FileSystemDoubles::noBirthTimes);
    for (const NyDateRange &range : {today(), longAgo(), NyDateRange()}) {
        const Found found = walk(newFolder(), range);
        QVERIFY(found.paths.isEmpty());
        QCOMPARE(found.countAfter, 0);
        COMPARE_WITH_PLAIN(newFolder(), range);
    }
}

void tst_NyNativeFileWalker::sortsByBirthTimeThenPath()
{
    const FileSystemDoubles::Switch controlledTimes(FileSystemDoubles::birthIsModification);
    const qint64 noon = QDateTime(QDate(2024, 6, 3), QTime(12, 0)).toMSecsSinceEpoch();
    TreeBuilder tree(newFolder());
    tree.file("z/first.jpg", noon - 1);
    tree.file("b/same.jpg", noon);
    tree.file("a/same.jpg", noon);
    tree.file("c.jpg", noon);
    tree.file("a/last.jpg", noon + 1);
    tree.file("too old.jpg", noon - 86400000);
    tree.file("too young.jpg", noon + 86400000);
    const Found found = walk(newFolder(), NyDateRange(QDate(2024, 6, 3), QDate(2024, 6, 3)));
    QStringList expected;
    for (const char *name : {"z/first.jpg", "a/same.jpg", "b/same.jpg", "c.jpg", "a/last.jpg"})
        expected.append(newFolder() + QLatin1Char('/') + QLatin1StringView(name));
    QCOMPARE(found.paths, expected);
    QCOMPARE(found.countAfter, 1);
}

void tst_NyNativeFileWalker::followsOneLinkUpwardsToTheLimit()
{
    TreeBuilder tree(newFolder());
    tree.file("a.jpg");
    tree.file("sub/b.jpg");
    tree.link("sub/up", "..");
    // The system follows forty links in a path.
    QCOMPARE(walk(newFolder(), today()).paths.size(), 2 * 41);
}

void tst_NyNativeFileWalker::followsTwoLinksUpwardsOnlyOnce_data()
{
    QTest::addColumn<Build>("build");
    QTest::addColumn<int>("expectedFiles");
    const auto row = [](const char *name, int expectedFiles, Build build) { QTest::newRow(name) << build << expectedFiles; };
    row("both to their own folder", 41, [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.link("one", ".");
        tree.link("two", ".");
    });
    row("in neighbouring folders", 3 * 41, [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.file("x/b.jpg");
        tree.file("y/c.jpg");
        tree.link("x/up", "..");
        tree.link("y/up", "..");
    });
    row("one below the other", 3 * 41, [](TreeBuilder &tree) {
        tree.file("a.jpg");
        tree.file("x/b.jpg");
        tree.file("x/y/c.jpg");
        tree.link("x/up", "..");
        tree.link("x/y/up", "../..");
    });
    row("to each other", 5, [](TreeBuilder &tree) {
        tree.file("x/a.jpg");
        tree.file("y/b.jpg");
        tree.link("x/to y", "../y");
        tree.link("y/to x", "../x");
    });
    row("twenty", 41, [](TreeBuilder &tree) {
        tree.file("a.jpg");
        for (int i = 0; i < 20; ++i)
            tree.link("link" + std::to_string(i), ".");
    });
}

void tst_NyNativeFileWalker::followsTwoLinksUpwardsOnlyOnce()
{
    QFETCH(Build, build);
    QFETCH(int, expectedFiles);
    TreeBuilder tree(newFolder());
    build(tree);
    QElapsedTimer timer;
    timer.start();
    const Found found = walk(newFolder(), today());
    QVERIFY(timer.elapsed() < 10000);
    QCOMPARE(found.paths.size(), expectedFiles);
    QVERIFY(!found.log.filter(QStringLiteral("a second link to a folder above itself is not followed")).isEmpty());
    // No photo is lost: each is found at its own place.
    QSet<QString> canonical;
    for (const QString &path : found.paths)
        canonical.insert(QFileInfo(path).canonicalFilePath());
    for (const QString &path : std::as_const(canonical))
        QVERIFY2(found.paths.contains(path), qPrintable(path));
}

void tst_NyNativeFileWalker::boundsTheWaysOverLinks()
{
    // Each folder leads to the next by two links: without a bound the last would be entered 2^20 times.
    TreeBuilder tree(newFolder());
    constexpr int levels = 20;
    for (int level = 0; level < levels; ++level) {
        const std::string folder = "level" + std::to_string(level);
        tree.file(folder + "/a.jpg");
        if (level + 1 < levels) {
            tree.link(folder + "/one", "../level" + std::to_string(level + 1));
            tree.link(folder + "/two", "../level" + std::to_string(level + 1));
        }
    }
    const Found found = walk(newFolder(), today());
    QVERIFY(found.paths.size() > levels);
    QVERIFY(found.paths.size() <= levels * (1 + NyNativeFileWalker::MaximumVisitsBehindLinks));
    for (int level = 0; level < levels; ++level)
        QVERIFY(found.paths.contains(newFolder() + QStringLiteral("/level%1/a.jpg").arg(level)));
    QVERIFY(!found.log.filter(QStringLiteral("links lead here in too many ways")).isEmpty());
}

void tst_NyNativeFileWalker::reportsUndecodableNamesOnce()
{
    TreeBuilder tree(newFolder());
    tree.file("caf\xe9 \\ \"1\".jpg");
    tree.file("caf\xe9.txt");
    tree.file("good/fine.jpg");
    const NyFileNameFilter filter(PhotoFilters);
    const NyBirthTimeWindow window(today());
    QSet<QString> reported;
    TestSupport::LogRecorder log;
    for (int scan = 0; scan < 2; ++scan) {
        NyNativeFileWalker walker(filter, window, &reported);
        walker.walk(newFolder());
        QCOMPARE(walker.takeFiles().size(), 1);
    }
    const QStringList lines = log.all();
    QCOMPARE(lines.size(), 1);
    QVERIFY(
        lines.first().startsWith(QStringLiteral("warning: QUILLO_SERVICE: names that are not valid UTF-8 left out of the scan: 1 in ")));
    QVERIFY(lines.first().contains(newFolder()));
    QVERIFY(lines.first().contains(QStringLiteral("caf\\\\xe9 \\\\x5c")));
}

void tst_NyNativeFileWalker::reportsUnreadableFoldersOnce()
{
    TreeBuilder tree(newFolder());
    tree.file("closed/a.jpg");
    tree.file("b.jpg");
    tree.mode("closed", 0000);
    const NyFileNameFilter filter(PhotoFilters);
    const NyBirthTimeWindow window(today());
    QSet<QString> reported;
    TestSupport::LogRecorder log;
    {
        const WithoutRootPowers mortal;
        for (int scan = 0; scan < 2; ++scan) {
            NyNativeFileWalker walker(filter, window, &reported);
            walker.walk(newFolder());
            QCOMPARE(walker.takeFiles().size(), 1);
        }
    }
    tree.mode("closed", 0755);
    const QString line = QStringLiteral("warning: QUILLO_SERVICE: folder left out of the scan: \"%1/closed\" \"Permission denied\"");
    QCOMPARE(log.all(), QStringList{line.arg(newFolder())});
}

void tst_NyNativeFileWalker::knowsWhichPathsItCanWalk()
{
    for (const char *path : {"/", "/home", "/with:colon", ".", "relative", "..", "rel/with space"})
        QVERIFY2(NyNativeFileWalker::canWalk(QLatin1StringView(path)), path);
    for (const char *path : {"", "photokit:", "photokitfs:/x", ":/resource", "qrc:/x", "assets:/x", "odd:name"})
        QVERIFY2(!NyNativeFileWalker::canWalk(QLatin1StringView(path)), path);
    QVERIFY(!NyNativeFileWalker::canWalk(QStringLiteral("/a") + QChar(u'\0')));
}

void tst_NyNativeFileWalker::startsNothingOnAMissingFolder()
{
    const Found found = walk(newFolder(), today());
    QVERIFY(found.paths.isEmpty());
    QVERIFY(!found.hasSubfolders);
    QCOMPARE(found.log,
        QStringList{QStringLiteral("QUILLO_SERVICE: folder left out of the scan: \"%1\" \"No such file or directory\"").arg(newFolder())});
}

QTEST_GUILESS_MAIN(tst_NyNativeFileWalker)
#include "tst_NyNativeFileWalker.moc"
