#include "NyFirstEqualFileRemover.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include "FileSystemTrees.h"

namespace
{
/** The same, plainly: what the fast form is compared with. */
void removePlainly(QList<QFileInfo> &files, const QList<QFileInfo> &unwanted)
{
    for (const QFileInfo &file : unwanted) {
        for (qsizetype i = 0; i < files.size(); ++i) {
            if (files.at(i) == file) {
                files.removeAt(i);
                break;
            }
        }
    }
}

QList<QFileInfo> infos(const QStringList &paths)
{
    // Fresh objects each time: QFileInfo remembers what it has seen of a file.
    QList<QFileInfo> files;
    for (const QString &path : paths)
        files.append(QFileInfo(path));
    return files;
}

QStringList remainingPaths(const QList<QFileInfo> &files)
{
    QStringList paths;
    for (const QFileInfo &file : files)
        paths.append(file.filePath());
    return paths;
}
}

class tst_NyFirstEqualFileRemover : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void removesFirstEqual_data();
    void removesFirstEqual();
    void respectsPermissions();
    void leavesEqualObjectsOfNothing();
    void agreesWithPlainLoop_data();
    void agreesWithPlainLoop();
    void keepsTheOrder();

private:
    QStringList absolute(const QStringList &names) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_before;
};

void tst_NyFirstEqualFileRemover::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    TreeBuilder tree(m_folder->path());
    for (const char *name : {"a/1.jpg", "a/2.jpg", "a/3.jpg", "a/4.jpg", "a/5.jpg", "b/1.jpg", "A/1.jpg", "a/1.JPG", "b/caf\u00e9.jpg",
             "b/cafe\u0301.jpg", "b/new\nline.jpg", "b/col:on.jpg", "c/deep/er/1.jpg"})
        tree.file(name);
    tree.link("a/link to 1.jpg", "1.jpg");
    tree.link("a/link to link.jpg", "link to 1.jpg");
    tree.link("a/link out.jpg", "../b/1.jpg");
    tree.link("a/broken.jpg", "nowhere.jpg");
    tree.link("a/loop.jpg", "loop.jpg");
    tree.link("linked a", "a");
    tree.link("b/up", "..");
    QCOMPARE(::link(tree.path("a/2.jpg").c_str(), tree.path("a/hard link to 2.jpg").c_str()), 0);
    m_before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder->path()));
}

void tst_NyFirstEqualFileRemover::cleanup()
{
    QVERIFY(QDir::setCurrent(m_before));
}

QStringList tst_NyFirstEqualFileRemover::absolute(const QStringList &names) const
{
    QStringList paths;
    for (const QString &name : names) {
        // A name that begins with "=" is given to QFileInfo as it is.
        paths.append(name.startsWith(QLatin1Char('=')) ? name.sliced(1) : m_folder->path() + QLatin1Char('/') + name);
    }
    return paths;
}

void tst_NyFirstEqualFileRemover::removesFirstEqual_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QStringList>("unwanted");
    QTest::addColumn<QStringList>("remaining");
    const auto list = [](const char *names) { return names[0] ? QString::fromUtf8(names).split(QLatin1Char(',')) : QStringList(); };
    const auto row = [&list](const char *name, const char *files, const char *unwanted, const char *remaining) {
        QTest::newRow(name) << list(files) << list(unwanted) << list(remaining);
    };
    row("nothing", "", "", "");
    row("no files", "", "a/1.jpg", "");
    row("nothing unwanted", "a/1.jpg", "", "a/1.jpg");
    row("one", "a/1.jpg,a/2.jpg,a/3.jpg", "a/2.jpg", "a/1.jpg,a/3.jpg");
    row("all", "a/1.jpg,a/2.jpg", "a/2.jpg,a/1.jpg", "");
    row("not there", "a/1.jpg", "a/2.jpg", "a/1.jpg");
    row("twice there, once unwanted", "a/1.jpg,a/2.jpg,a/1.jpg", "a/1.jpg", "a/2.jpg,a/1.jpg");
    row("twice there, twice unwanted", "a/1.jpg,a/2.jpg,a/1.jpg", "a/1.jpg,a/1.jpg", "a/2.jpg");
    row("once there, twice unwanted", "a/1.jpg,a/2.jpg", "a/1.jpg,a/1.jpg", "a/2.jpg");
    row("link before its target", "a/link to 1.jpg,a/1.jpg", "a/1.jpg", "a/1.jpg");
    row("link behind its target", "a/1.jpg,a/link to 1.jpg", "a/link to 1.jpg", "a/link to 1.jpg");
    row("link to link", "a/2.jpg,a/link to link.jpg", "a/1.jpg", "a/2.jpg");
    row("link into another folder", "a/link out.jpg,a/1.jpg", "b/1.jpg", "a/1.jpg");
    row("links in a large folder", "a/1.jpg,a/2.jpg,a/3.jpg,a/4.jpg,a/5.jpg,a/link out.jpg,a/link to link.jpg", "b/1.jpg,a/1.jpg,a/1.jpg",
        "a/2.jpg,a/3.jpg,a/4.jpg,a/5.jpg");
    row("by way of a linked folder", "linked a/1.jpg,a/1.jpg,linked a/2.jpg", "a/1.jpg,a/2.jpg", "a/1.jpg");
    row("linked folder unwanted", "a/1.jpg,a/2.jpg", "linked a/2.jpg", "a/1.jpg");
    row("by way of a link upwards", "b/up/b/up/a/1.jpg", "a/1.jpg", "");
    row("hard links are two files", "a/hard link to 2.jpg", "a/2.jpg", "a/hard link to 2.jpg");
    row("case", "A/1.jpg,a/1.JPG", "a/1.jpg", "A/1.jpg,a/1.JPG");
    row("both unicode forms", "b/cafe\u0301.jpg,b/caf\u00e9.jpg", "b/caf\u00e9.jpg", "b/cafe\u0301.jpg");
    row("newline and colon", "b/new\nline.jpg,b/col:on.jpg,a/1.jpg", "b/col:on.jpg,b/new\nline.jpg", "a/1.jpg");
    row("unclean paths", "a/../a/./1.jpg,b//1.jpg,a/2.jpg", "a/1.jpg,b/1.jpg,linked a/../a/2.jpg", "");
    row("relative paths", "=a/1.jpg,a/1.jpg,=./a/2.jpg", "a/1.jpg,a/2.jpg", "a/1.jpg");
    row("relative without a folder", "=a", "a", "");
    row("folders", "a/,b/,a/.,b/..", "a,b", "a/.,b/..");
    row("gone files equal by path", "a/gone.jpg,a/1.jpg", "a/gone.jpg", "a/1.jpg");
    row("gone files equal each other", "a/gone.jpg,a/1.jpg,b/lost.jpg", "c/never.jpg", "a/1.jpg,b/lost.jpg");
    row("gone and there", "a/gone.jpg,a/broken.jpg,a/1.jpg,a/2.jpg,a/3.jpg,a/4.jpg", "c/never.jpg,a/2.jpg,c/never too.jpg",
        "a/1.jpg,a/3.jpg,a/4.jpg");
    row("broken links are gone", "a/broken.jpg", "b/lost.jpg", "");
    row("a link to itself is not gone", "a/loop.jpg,a/broken.jpg", "b/lost.jpg", "a/loop.jpg");
    row("a link to itself by path", "a/broken.jpg,a/loop.jpg", "a/loop.jpg", "a/broken.jpg");
    row("below a file", "a/1.jpg/x.jpg", "b/lost.jpg", "");
    row("an empty path equals nothing", "=,a/1.jpg", "=", "=,a/1.jpg");
    row("empty path beside gone files", "=,a/gone.jpg", "b/lost.jpg", "=");
    row("resources", "=:/no/such.jpg,a/gone.jpg,=:/no/other.jpg", "=:/no/other.jpg", "=:/no/such.jpg,a/gone.jpg");
    row("a resource is no file", "=:/no/such.jpg", "a/gone.jpg", "=:/no/such.jpg");
    row("a gone file is no resource", "a/gone.jpg", "=:/no/such.jpg", "a/gone.jpg");
    row("unknown scheme", "=photokit:x.jpg,a/1.jpg", "=photokit:x.jpg", "a/1.jpg");
    row("an unknown scheme is a gone file", "=photokit:x.jpg,a/gone.jpg", "b/lost.jpg", "a/gone.jpg");
}

void tst_NyFirstEqualFileRemover::removesFirstEqual()
{
    QFETCH(QStringList, files);
    QFETCH(QStringList, unwanted);
    QFETCH(QStringList, remaining);
    QList<QFileInfo> plain = infos(absolute(files));
    removePlainly(plain, infos(absolute(unwanted)));
    QCOMPARE(remainingPaths(plain), absolute(remaining));

    QList<QFileInfo> fast = infos(absolute(files));
    NyFirstEqualFileRemover::removeFrom(fast, infos(absolute(unwanted)));
    QCOMPARE(remainingPaths(fast), absolute(remaining));
}

void tst_NyFirstEqualFileRemover::respectsPermissions()
{
    TreeBuilder tree(m_folder->path());
    tree.mode("a", 0644);
    tree.mode("b", 0311);
    const QStringList files = absolute({QStringLiteral("linked a/1.jpg"), QStringLiteral("a/1.jpg"), QStringLiteral("a/2.jpg"),
        QStringLiteral("a/3.jpg"), QStringLiteral("a/link to 1.jpg"), QStringLiteral("b/up/b/1.jpg"), QStringLiteral("b/1.jpg"),
        QStringLiteral("b/new\nline.jpg"), QStringLiteral("b/col:on.jpg"), QStringLiteral("b/caf\u00e9.jpg")});
    const QStringList unwanted = absolute(
        {QStringLiteral("a/1.jpg"), QStringLiteral("b/1.jpg"), QStringLiteral("a/../a/3.jpg"), QStringLiteral("b/../b/col:on.jpg")});
    {
        const WithoutRootPowers mortal;
        QList<QFileInfo> plain = infos(files);
        removePlainly(plain, infos(unwanted));
        QList<QFileInfo> fast = infos(files);
        NyFirstEqualFileRemover::removeFrom(fast, infos(unwanted));
        QCOMPARE(remainingPaths(fast), remainingPaths(plain));
        QVERIFY(plain.size() > files.size() - unwanted.size());
        QVERIFY(plain.size() < files.size());
    }
    tree.mode("a", 0755);
    tree.mode("b", 0755);
}

void tst_NyFirstEqualFileRemover::leavesEqualObjectsOfNothing()
{
    const QFileInfo nothing;
    QList<QFileInfo> files{QFileInfo(), nothing};
    NyFirstEqualFileRemover::removeFrom(files, {nothing});
    QList<QFileInfo> plain{QFileInfo(), nothing};
    removePlainly(plain, {nothing});
    QCOMPARE(files.size(), plain.size());
}

void tst_NyFirstEqualFileRemover::agreesWithPlainLoop_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 30; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_NyFirstEqualFileRemover::agreesWithPlainLoop()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    QStringList names{
        QStringLiteral("a/1.jpg"),
        QStringLiteral("a/2.jpg"),
        QStringLiteral("a/3.jpg"),
        QStringLiteral("a/4.jpg"),
        QStringLiteral("a/link to 1.jpg"),
        QStringLiteral("a/link to link.jpg"),
        QStringLiteral("a/link out.jpg"),
        QStringLiteral("b/1.jpg"),
        QStringLiteral("b/caf\u00e9.jpg"),
        QStringLiteral("b/cafe\u0301.jpg"),
        QStringLiteral("linked a/1.jpg"),
        QStringLiteral("linked a/2.jpg"),
        QStringLiteral("linked a/link out.jpg"),
        QStringLiteral("b/up/a/3.jpg"),
        QStringLiteral("a/1.JPG"),
        QStringLiteral("A/1.jpg"),
        QStringLiteral("=a/1.jpg"),
        QStringLiteral("=./b/1.jpg"),
        QStringLiteral("a/../a/4.jpg"),
        QStringLiteral("c/deep/er/1.jpg"),
        QStringLiteral("a/loop.jpg"),
        QStringLiteral("a/hard link to 2.jpg"),
    };
    // Half of the rounds know files that are gone.
    if (seed % 2 == 0)
        names += {QStringLiteral("a/broken.jpg"), QStringLiteral("a/gone.jpg"), QStringLiteral("x/gone.jpg"),
            QStringLiteral("=:/no/such.jpg"), QStringLiteral("=")};
    const auto choose = [&](int count) {
        QStringList chosen;
        for (int i = 0; i < count; ++i)
            chosen.append(names.at(random.bounded(int(names.size()))));
        return absolute(chosen);
    };
    for (int round = 0; round < 10; ++round) {
        const QStringList files = choose(random.bounded(60));
        const QStringList unwanted = choose(random.bounded(30));
        QList<QFileInfo> plain = infos(files);
        removePlainly(plain, infos(unwanted));
        QList<QFileInfo> fast = infos(files);
        NyFirstEqualFileRemover::removeFrom(fast, infos(unwanted));
        QCOMPARE(remainingPaths(fast), remainingPaths(plain));
    }
}

void tst_NyFirstEqualFileRemover::keepsTheOrder()
{
    QStringList paths;
    for (int i = 0; i < 1000; ++i)
        paths.append(QStringLiteral("/nowhere/%1.jpg").arg((i * 7919) % 1000));
    QList<QFileInfo> files = infos(paths);
    const QList<QFileInfo> untouched = files;
    const QString target = m_folder->path() + QStringLiteral("/a/1.jpg");
    files.insert(500, QFileInfo(target));
    NyFirstEqualFileRemover::removeFrom(files, {QFileInfo(target)});
    QCOMPARE(remainingPaths(files), paths);
    QCOMPARE(remainingPaths(untouched), paths);
}

QTEST_GUILESS_MAIN(tst_NyFirstEqualFileRemover)
#include "tst_NyFirstEqualFileRemover.moc"
