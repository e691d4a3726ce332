#include "NyRecentFileResult.h"

#include <NyFoto.h>
#include <NyFotoList.h>
#include <NyFotoListRegistry.h>
#include <NyQuilloServiceConfig.h>

#include <QDateTime>
#include <QRandomGenerator>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include "FileSystemDoubles.h"
#include "FileSystemTrees.h"
#include "TestSupport.h"

namespace
{
const QDate Day(2024, 6, 3);

qint64 noonOf(QDate day)
{
    return QDateTime(day, QTime(12, 0)).toMSecsSinceEpoch();
}

QStringList filePaths(const QList<QFileInfo> &files)
{
    QStringList paths;
    for (const QFileInfo &file : files)
        paths.append(file.filePath());
    return paths;
}

QSet<QString> setOf(const QStringList &ids)
{
    return QSet<QString>(ids.cbegin(), ids.cend());
}

NyFotoListRegistry &registry()
{
    return NySingleton<NyFotoListRegistry>::instance();
}
}

class tst_NyRecentFileResult : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void startsEmpty();
    void takesItsValues();
    void copiesAreIndependent();
    void crossesThreads();
    void sortsByBirthTime();
    void sortsFilesWithoutBirthTimeAsDatesCompare();
    void mergeAppendsAndCounts();
    void mergeExpandsTheRange_data();
    void mergeExpandsTheRange();
    void mergeExpandsTheClassification();
    void mergeKeepsCommonStyles_data();
    void mergeKeepsCommonStyles();
    void mergeOfADefaultResultClears();
    void excludesUsedFotos();
    void excludesOncePerUse();
    void excludesNothingOutsideTheRange();
    void excludesOnlyDatelessWithoutARange();
    void excludesGoneFilesWithoutAStart();
    void excludesAsThePlainLoopDoes_data();
    void excludesAsThePlainLoopDoes();
    void fromFolderTakesJpegsOnly();
    void fromFolderKeepsTheFoldersSettings();
    void fromFolderWithoutJpegs();
    void countsFilesOfFolders();
    void photoUrls_data();
    void photoUrls();
    void photoUrlsAreCanonical();
    void photoUrlsOfGoneFilesAreEmpty();
    void photoUrlsOfPhotoKit();
    void storesItsFiles();
    void readingAddsFiles();

private:
    QFileInfo at(const QString &name) const { return QFileInfo(m_folder->path() + QLatin1Char('/') + name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_NyRecentFileResult::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    registry().clearFotoUsedForBookProposals();
}

void tst_NyRecentFileResult::startsEmpty()
{
    NyRecentFileResult result;
    QVERIFY(result.files().isEmpty());
    QVERIFY(result.relevantDateRange().from().isNull());
    QVERIFY(result.relevantDateRange().to().isNull());
    QVERIFY(!result.relevantDateRange().isValid());
    QCOMPARE(result.countAfterDateRange(), 0);
    QVERIFY(result.classification() == NyEventFolderClassificationResult());
    QCOMPARE(int(result.eventFolderType().value()), 0);
    QCOMPARE(result.startDirectory(), QString());
    QVERIFY(result.recommendedStyleIds().isEmpty());
    QCOMPARE(result.count(), 0);
    QVERIFY(result.isEmpty());
    result.sort();
    result.merge(NyRecentFileResult());
    result.excludePreviouslyUsedFotos();
    QVERIFY(result.isEmpty());
    QVERIFY(result.photoUrls(10).isEmpty());
    QVERIFY(result.filesPerDirCount().isEmpty());
}

void tst_NyRecentFileResult::takesItsValues()
{
    const NyEventFolderClassificationResult event(QFileInfo(QStringLiteral("/p")), NyEventFolderType(16));
    NyRecentFileResult result({at(QStringLiteral("a.jpg")), at(QStringLiteral("b.jpg"))}, NyDateRange(Day, Day.addDays(2)), 7, event,
        {QStringLiteral("x"), QStringLiteral("y")});
    QCOMPARE(result.count(), 2);
    QVERIFY(!result.isEmpty());
    QCOMPARE(result.relevantDateRange().from(), Day);
    QCOMPARE(result.relevantDateRange().to(), Day.addDays(2));
    QCOMPARE(result.countAfterDateRange(), 7);
    QVERIFY(result.classification() == event);
    QCOMPARE(result.eventFolderType().value(), NyEventFolderTypeEnum::Event);
    QCOMPARE(result.recommendedStyleIds(), QStringList({QStringLiteral("x"), QStringLiteral("y")}));
    QCOMPARE(result.startDirectory(), QString());

    result.setFiles({});
    result.setRelevantDateRange(NyDateRange(Day, Day));
    result.setCountAfterDateRange(1);
    result.setStartDirectory(QStringLiteral("/start"));
    result.setSuggestedStyleIds({QStringLiteral("z")});
    QVERIFY(result.isEmpty());
    QCOMPARE(result.relevantDateRange().to(), Day);
    // Nothing keeps the fields in step.
    QCOMPARE(result.countAfterDateRange(), 1);
    QCOMPARE(result.startDirectory(), QStringLiteral("/start"));
    QCOMPARE(result.recommendedStyleIds(), QStringList{QStringLiteral("z")});
}

void tst_NyRecentFileResult::copiesAreIndependent()
{
    NyRecentFileResult original({at(QStringLiteral("a.jpg"))}, NyDateRange(Day, Day), 1, {}, {QStringLiteral("x")});
    original.setStartDirectory(QStringLiteral("/start"));
    NyRecentFileResult copy(original);
    copy.setFiles({});
    copy.setCountAfterDateRange(2);
    copy.setStartDirectory(QStringLiteral("/other"));
    QCOMPARE(original.count(), 1);
    QCOMPARE(original.countAfterDateRange(), 1);
    QCOMPARE(original.startDirectory(), QStringLiteral("/start"));
    copy = original;
    QCOMPARE(copy.count(), 1);
    const NyRecentFileResult moved(std::move(copy));
    QCOMPARE(moved.count(), 1);
    QCOMPARE(moved.startDirectory(), QStringLiteral("/start"));
    QCOMPARE(moved.recommendedStyleIds(), QStringList{QStringLiteral("x")});
}

void tst_NyRecentFileResult::crossesThreads()
{
    NyRecentFileResult result;
    const std::unique_ptr<QThread> worker(QThread::create([&result] {
        QList<QFileInfo> files;
        for (int i = 0; i < 1000; ++i)
            files.append(QFileInfo(QStringLiteral("/p/%1.jpg").arg(i)));
        result = NyRecentFileResult(files, NyDateRange(Day, Day), 3, {}, {QStringLiteral("x")});
    }));
    worker->start();
    QVERIFY(worker->wait());
    NyRecentFileResult copy = result;
    copy.merge(result);
    QCOMPARE(copy.count(), 2000);
    QCOMPARE(result.count(), 1000);
}

void tst_NyRecentFileResult::sortsByBirthTime()
{
    const FileSystemDoubles::Switch controlledTimes(FileSystemDoubles::birthIsModification);
    TreeBuilder tree(m_folder->path());
    QRandomGenerator random(7);
    QList<QFileInfo> files;
    for (int i = 0; i < 200; ++i) {
        const std::string name = std::to_string(i) + ".jpg";
        tree.file(name, noonOf(Day) + random.bounded(50));
        files.append(at(QString::fromStdString(name)));
    }
    NyRecentFileResult result;
    result.setFiles(files);
    result.sort();
    QCOMPARE(setOf(filePaths(result.files())), setOf(filePaths(files)));
    for (int i = 1; i < 200; ++i) {
        const QFileInfo before = result.files().at(i - 1);
        const QFileInfo behind = result.files().at(i);
        const QDateTime timeBefore = before.fileTime(QFileDevice::FileBirthTime);
        const QDateTime timeBehind = behind.fileTime(QFileDevice::FileBirthTime);
        QVERIFY(!(timeBehind < timeBefore));
        if (timeBefore == timeBehind)
            QVERIFY(before.filePath() < behind.filePath());
    }
}

void tst_NyRecentFileResult::sortsFilesWithoutBirthTimeAsDatesCompare()
{
    const FileSystemDoubles::Switch controlledTimes(FileSystemDoubles::birthIsModification);
    TreeBuilder tree(m_folder->path());
    tree.file("old.jpg", -noonOf(Day));
    tree.file("new.jpg", noonOf(Day));
    NyRecentFileResult result;
    result.setFiles({at(QStringLiteral("new.jpg")), at(QStringLiteral("gone.jpg")), at(QStringLiteral("old.jpg")),
        at(QStringLiteral("also gone.jpg"))});
    QList<QFileInfo> expected = result.files();
    std::sort(expected.begin(), expected.end(), [](const QFileInfo &left, const QFileInfo &right) {
        const QDateTime leftTime = left.fileTime(QFileDevice::FileBirthTime);
        const QDateTime rightTime = right.fileTime(QFileDevice::FileBirthTime);
        return leftTime < rightTime || (!(rightTime < leftTime) && left.filePath() < right.filePath());
    });
    result.sort();
    QCOMPARE(filePaths(result.files()), filePaths(expected));
}

void tst_NyRecentFileResult::mergeAppendsAndCounts()
{
    const QFileInfo a = at(QStringLiteral("a.jpg"));
    const QFileInfo b = at(QStringLiteral("b.jpg"));
    NyRecentFileResult result({b, a}, NyDateRange(Day, Day), 2, {}, {});
    result.setStartDirectory(QStringLiteral("/start"));
    NyRecentFileResult other({b, a, b}, NyDateRange(Day, Day), 3, {}, {});
    other.setStartDirectory(QStringLiteral("/other"));
    result.merge(other);
    QCOMPARE(filePaths(result.files()), filePaths({b, a, b, a, b}));
    QCOMPARE(result.countAfterDateRange(), 5);
    QCOMPARE(result.startDirectory(), QStringLiteral("/start"));
}

void tst_NyRecentFileResult::mergeExpandsTheRange_data()
{
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");
    QTest::addColumn<QDate>("otherFrom");
    QTest::addColumn<QDate>("otherTo");
    QTest::addColumn<QDate>("mergedFrom");
    QTest::addColumn<QDate>("mergedTo");
    const QDate none;
    const auto row = [](const char *name, QDate from, QDate to, QDate otherFrom, QDate otherTo, QDate mergedFrom, QDate mergedTo) {
        QTest::newRow(name) << from << to << otherFrom << otherTo << mergedFrom << mergedTo;
    };
    const auto day = [](int number) { return Day.addDays(number); };
    row("same", day(1), day(5), day(1), day(5), day(1), day(5));
    row("inside", day(1), day(5), day(2), day(4), day(1), day(5));
    row("around", day(2), day(4), day(1), day(5), day(1), day(5));
    row("before", day(5), day(6), day(1), day(2), day(1), day(6));
    row("behind", day(1), day(2), day(5), day(6), day(1), day(6));
    row("empty takes the first, then the second", none, none, day(1), day(5), day(1), day(5));
    row("a missing start is never gained", none, day(5), day(1), day(9), none, day(9));
    row("a missing start, inside", none, day(5), day(1), day(2), none, day(5));
    row("a null range clears the start", day(1), day(5), none, none, none, day(5));
    row("two empty ones", none, none, none, none, none, none);
    row("reversed", day(5), day(3), day(5), day(3), day(3), day(5));
}

void tst_NyRecentFileResult::mergeExpandsTheRange()
{
    QFETCH(QDate, from);
    QFETCH(QDate, to);
    QFETCH(QDate, otherFrom);
    QFETCH(QDate, otherTo);
    QFETCH(QDate, mergedFrom);
    QFETCH(QDate, mergedTo);
    NyRecentFileResult result;
    result.setRelevantDateRange(NyDateRange(from, to));
    NyRecentFileResult other;
    other.setRelevantDateRange(NyDateRange(otherFrom, otherTo));
    result.merge(other);
    QCOMPARE(result.relevantDateRange().from(), mergedFrom);
    QCOMPARE(result.relevantDateRange().to(), mergedTo);
}

void tst_NyRecentFileResult::mergeExpandsTheClassification()
{
    const NyEventFolderClassificationResult year(QFileInfo(QStringLiteral("/2024")), NyEventFolderType(2));
    const NyEventFolderClassificationResult event(QFileInfo(QStringLiteral("/2024/x")), NyEventFolderType(16));
    NyRecentFileResult result({}, {}, 0, year, {});
    result.merge(NyRecentFileResult());
    QCOMPARE(int(result.eventFolderType().value()), 2);
    result.merge(NyRecentFileResult({}, {}, 0, event, {}));
    QCOMPARE(int(result.eventFolderType().value()), 18);
    QCOMPARE(result.classification().directory().filePath(), QStringLiteral("/2024"));
}

void tst_NyRecentFileResult::mergeKeepsCommonStyles_data()
{
    QTest::addColumn<QStringList>("ids");
    QTest::addColumn<QStringList>("otherIds");
    QTest::addColumn<QStringList>("common");
    const QStringList abc{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    QTest::newRow("same") << abc << abc << abc;
    QTest::newRow("overlapping") << abc << QStringList{QStringLiteral("d"), QStringLiteral("c"), QStringLiteral("b")}
                                 << QStringList{QStringLiteral("b"), QStringLiteral("c")};
    QTest::newRow("apart") << abc << QStringList{QStringLiteral("A")} << QStringList();
    QTest::newRow("other without") << abc << QStringList() << QStringList();
    QTest::newRow("itself without") << QStringList() << abc << QStringList();
    QTest::newRow("twice in the list") << QStringList{QStringLiteral("a"), QStringLiteral("a")} << abc << QStringList{QStringLiteral("a")};
}

void tst_NyRecentFileResult::mergeKeepsCommonStyles()
{
    QFETCH(QStringList, ids);
    QFETCH(QStringList, otherIds);
    QFETCH(QStringList, common);
    NyRecentFileResult result;
    result.setSuggestedStyleIds(ids);
    NyRecentFileResult other;
    other.setSuggestedStyleIds(otherIds);
    result.merge(other);
    QStringList merged = result.recommendedStyleIds();
    merged.sort();
    QCOMPARE(merged, common);
}

void tst_NyRecentFileResult::mergeOfADefaultResultClears()
{
    NyRecentFileResult result({at(QStringLiteral("a.jpg"))}, NyDateRange(Day, Day.addDays(2)), 4, {}, {QStringLiteral("x")});
    result.merge(NyRecentFileResult());
    QVERIFY(result.relevantDateRange().from().isNull());
    QCOMPARE(result.relevantDateRange().to(), Day.addDays(2));
    QVERIFY(result.recommendedStyleIds().isEmpty());
    QCOMPARE(result.count(), 1);
    QCOMPARE(result.countAfterDateRange(), 4);
}

void tst_NyRecentFileResult::excludesUsedFotos()
{
    TreeBuilder tree(m_folder->path());
    for (const char *name : {"a.jpg", "b.jpg", "c.jpg"})
        tree.file(name);
    tree.link("link to c.jpg", "c.jpg");
    NyRecentFileResult result({at(QStringLiteral("a.jpg")), at(QStringLiteral("b.jpg")), at(QStringLiteral("link to c.jpg"))},
        NyDateRange(QDate::currentDate().addDays(-1), QDate::currentDate().addDays(1)), 5,
        NyEventFolderClassificationResult(QFileInfo(QStringLiteral("/x")), NyEventFolderType(16)), {QStringLiteral("x")});
    registry().addFotosUsedForBookProposals(
        NyFotoList(QList<QFileInfo>{at(QStringLiteral("c.jpg")), at(QStringLiteral("a.jpg")), at(QStringLiteral("gone.jpg"))}));
    const TestSupport::LogRecorder log;
    result.excludePreviouslyUsedFotos();
    QCOMPARE(filePaths(result.files()), filePaths({at(QStringLiteral("b.jpg"))}));
    QCOMPARE(log.all(), QStringList({QStringLiteral("debug: 3 photos to be excluded from 3"), QStringLiteral("debug: 1 remaining")}));
    QCOMPARE(result.countAfterDateRange(), 5);
    QVERIFY(result.relevantDateRange().isValid());
    QCOMPARE(int(result.eventFolderType().value()), 16);
    QCOMPARE(result.recommendedStyleIds(), QStringList{QStringLiteral("x")});
}

void tst_NyRecentFileResult::excludesOncePerUse()
{
    TreeBuilder tree(m_folder->path());
    tree.file("a.jpg");
    tree.file("b.jpg");
    const QFileInfo a = at(QStringLiteral("a.jpg"));
    const QFileInfo b = at(QStringLiteral("b.jpg"));
    const NyDateRange range(QDate::currentDate().addDays(-1), QDate::currentDate().addDays(1));
    registry().addFotosUsedForBookProposals(NyFotoList(QList<QFileInfo>{a, a}));

    NyRecentFileResult twice({a, b, a}, range, 0, {}, {});
    twice.excludePreviouslyUsedFotos();
    QCOMPARE(filePaths(twice.files()), filePaths({b}));

    NyRecentFileResult once({b, a}, range, 0, {}, {});
    once.excludePreviouslyUsedFotos();
    QCOMPARE(filePaths(once.files()), filePaths({b}));

    NyRecentFileResult thrice({a, b, a, a}, range, 0, {}, {});
    thrice.excludePreviouslyUsedFotos();
    QCOMPARE(filePaths(thrice.files()), filePaths({b, a}));
}

void tst_NyRecentFileResult::excludesNothingOutsideTheRange()
{
    const FileSystemDoubles::Switch controlledTimes(FileSystemDoubles::birthIsModification);
    TreeBuilder tree(m_folder->path());
    QList<QFileInfo> files;
    for (const int offset : {-2, -1, 0, 1, 2}) {
        const QString name = QStringLiteral("day %1.jpg").arg(offset);
        tree.file(name.toStdString(), noonOf(Day.addDays(offset)));
        files.append(at(name));
    }
    registry().addFotosUsedForBookProposals(NyFotoList(files));
    NyRecentFileResult result(files, NyDateRange(Day.addDays(-1), Day.addDays(1)), 0, {}, {});
    result.excludePreviouslyUsedFotos();
    QCOMPARE(filePaths(result.files()), filePaths({files.first(), files.last()}));
}

void tst_NyRecentFileResult::excludesOnlyDatelessWithoutARange()
{
    TreeBuilder tree(m_folder->path());
    tree.file("a.jpg");
    const QList<QFileInfo> files{at(QStringLiteral("a.jpg")), at(QStringLiteral("gone.jpg"))};
    registry().addFotosUsedForBookProposals(NyFotoList(files));
    NyRecentFileResult result(files, NyDateRange(), 0, {}, {});
    result.excludePreviouslyUsedFotos();
    QCOMPARE(filePaths(result.files()), filePaths({files.first()}));
}

void tst_NyRecentFileResult::excludesGoneFilesWithoutAStart()
{
    TreeBuilder tree(m_folder->path());
    tree.file("a.jpg");
    tree.file("b.jpg");
    const QList<QFileInfo> files{
        at(QStringLiteral("a.jpg")), at(QStringLiteral("gone.jpg")), at(QStringLiteral("b.jpg")), at(QStringLiteral("gone too.jpg"))};
    registry().addFotosUsedForBookProposals(NyFotoList(QList<QFileInfo>{at(QStringLiteral("never.jpg")), at(QStringLiteral("b.jpg"))}));
    NyRecentFileResult result(files, NyDateRange(QDate(), QDate::currentDate().addDays(1)), 0, {}, {});
    result.excludePreviouslyUsedFotos();
    // All files that are gone equal each other.
    QCOMPARE(filePaths(result.files()), filePaths({files.at(0), files.at(3)}));
    result.setRelevantDateRange(NyDateRange(QDate(2001, 1, 1), QDate::currentDate().addDays(1)));
    result.excludePreviouslyUsedFotos();
    QCOMPARE(result.count(), 2);
}

void tst_NyRecentFileResult::excludesAsThePlainLoopDoes_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 10; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_NyRecentFileResult::excludesAsThePlainLoopDoes()
{
    QFETCH(quint32, seed);
    const FileSystemDoubles::Switch controlledTimes(FileSystemDoubles::birthIsModification);
    QRandomGenerator random(seed);
    TreeBuilder tree(m_folder->path());
    QStringList names;
    for (int i = 0; i < 60; ++i) {
        const QString name
            = QStringLiteral("%1/caf%2 %3.jpg").arg(i % 3).arg(i % 2 ? QStringLiteral("\u00e9") : QStringLiteral("e\u0301")).arg(i / 2);
        if (i % 10 == 9)
            tree.link(name.toStdString(), tree.path(names.at(random.bounded(i)).toStdString()));
        else if (i % 11 != 10)
            tree.file(name.toStdString(), noonOf(Day.addDays(random.bounded(5) - 2)));
        names.append(name);
    }
    const auto choose = [&](int count) {
        QList<QFileInfo> files;
        for (int i = 0; i < count; ++i)
            files.append(at(names.at(random.bounded(int(names.size())))));
        return files;
    };
    const QList<NyDateRange> ranges{
        NyDateRange(Day.addDays(-1), Day.addDays(1)), NyDateRange(QDate(), Day), NyDateRange(), NyDateRange(Day, Day.addDays(-1))};
    for (const NyDateRange &range : ranges) {
        const QList<QFileInfo> files = choose(80);
        const QList<QFileInfo> used = choose(40);
        QList<QFileInfo> plain = files;
        for (const QFileInfo &file : used) {
            const QDate date = file.fileTime(QFileDevice::FileBirthTime).date();
            if (date < range.from() || date > range.to())
                continue;
            const qsizetype index = plain.indexOf(file);
            if (index >= 0)
                plain.removeAt(index);
        }
        registry().clearFotoUsedForBookProposals();
        registry().addFotosUsedForBookProposals(NyFotoList(used));
        NyRecentFileResult result(files, range, 0, {}, {});
        result.excludePreviouslyUsedFotos();
        QCOMPARE(filePaths(result.files()), filePaths(plain));
    }
}

void tst_NyRecentFileResult::fromFolderTakesJpegsOnly()
{
    TreeBuilder tree(m_folder->path());
    for (const char *name : {"a.jpg", "B.JPEG", "c.png", "d.heic", "e.jpg.txt", ".hidden.jpg", "sub/f.jpg"})
        tree.file(name);
    const NyRecentFileResult result = NyRecentFileResult::fromFolder(QDir(m_folder->path()));
    QCOMPARE(filePaths(result.files()), filePaths({at(QStringLiteral("a.jpg")), at(QStringLiteral("B.JPEG"))}));
    QVERIFY(!result.relevantDateRange().isValid());
    QCOMPARE(result.countAfterDateRange(), 0);
    QVERIFY(result.classification() == NyEventFolderClassificationResult());
    QCOMPARE(result.recommendedStyleIds(), NySingleton<NyQuilloServiceConfig>::instance().designStyleIds());
    QVERIFY(!result.recommendedStyleIds().isEmpty());
    QCOMPARE(result.startDirectory(), QString());
}

void tst_NyRecentFileResult::fromFolderKeepsTheFoldersSettings()
{
    TreeBuilder tree(m_folder->path());
    for (const char *name : {"a.jpg", "b.jpg", ".hidden.jpg"})
        tree.file(name);
    QDir folder(m_folder->path());
    folder.setSorting(QDir::Name | QDir::Reversed);
    folder.setFilter(QDir::Files | QDir::Hidden);
    QCOMPARE(filePaths(NyRecentFileResult::fromFolder(folder).files()),
        filePaths({at(QStringLiteral("b.jpg")), at(QStringLiteral("a.jpg")), at(QStringLiteral(".hidden.jpg"))}));
}

void tst_NyRecentFileResult::fromFolderWithoutJpegs()
{
    TreeBuilder tree(m_folder->path());
    tree.file("a.png");
    const NyRecentFileResult result = NyRecentFileResult::fromFolder(QDir(m_folder->path()));
    QVERIFY(result.isEmpty());
    QVERIFY(!result.recommendedStyleIds().isEmpty());
    QVERIFY(NyRecentFileResult::fromFolder(QDir(QStringLiteral("/no/such/folder"))).isEmpty());
}

void tst_NyRecentFileResult::countsFilesOfFolders()
{
    NyRecentFileResult result;
    result.setFiles({QFileInfo(QStringLiteral("/p/b/1.jpg")), QFileInfo(QStringLiteral("/p/a/1.jpg")),
        QFileInfo(QStringLiteral("/p/b/2.jpg")), QFileInfo(QStringLiteral("/p/b/1.jpg")), QFileInfo(QStringLiteral("/p/b/c/1.jpg"))});
    const QMap<QString, int> counts = result.filesPerDirCount();
    QCOMPARE(counts.keys(), QStringList({QStringLiteral("/p/a"), QStringLiteral("/p/b"), QStringLiteral("/p/b/c")}));
    QCOMPARE(counts.values(), QList<int>({1, 3, 1}));
}

void tst_NyRecentFileResult::photoUrls_data()
{
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("expected");
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("one less") << 2 << 2;
    QTest::newRow("as many") << 3 << 3;
    QTest::newRow("more") << 4 << 3;
    QTest::newRow("negative") << -1 << 3;
}

void tst_NyRecentFileResult::photoUrls()
{
    QFETCH(int, maximum);
    QFETCH(int, expected);
    TreeBuilder tree(m_folder->path());
    QList<QUrl> urls;
    NyRecentFileResult result;
    QList<QFileInfo> files;
    for (const char *name : {"b.jpg", "a #1 %20 \u00e9?.jpg", "c:d\n.jpg"}) {
        tree.file(name);
        files.append(at(QString::fromUtf8(name)));
        urls.append(QUrl::fromLocalFile(QFileInfo(files.last()).canonicalFilePath()));
    }
    result.setFiles(files);
    QCOMPARE(result.photoUrls(maximum), urls.first(expected));
}

void tst_NyRecentFileResult::photoUrlsAreCanonical()
{
    TreeBuilder tree(m_folder->path());
    tree.file("real/a.jpg");
    tree.link("linked", "real");
    NyRecentFileResult result;
    result.setFiles({at(QStringLiteral("linked/a.jpg")), at(QStringLiteral("real/../real/a.jpg"))});
    const QUrl url = QUrl::fromLocalFile(at(QStringLiteral("real/a.jpg")).canonicalFilePath());
    QCOMPARE(result.photoUrls(2), QList<QUrl>({url, url}));
}

void tst_NyRecentFileResult::photoUrlsOfGoneFilesAreEmpty()
{
    TreeBuilder tree(m_folder->path());
    tree.file("a.jpg");
    NyRecentFileResult result;
    result.setFiles({at(QStringLiteral("gone.jpg")), at(QStringLiteral("a.jpg"))});
    const QList<QUrl> urls = result.photoUrls(5);
    QCOMPARE(urls.size(), 2);
    QVERIFY(urls.first().isEmpty());
    QCOMPARE(urls.last(), QUrl::fromLocalFile(at(QStringLiteral("a.jpg")).canonicalFilePath()));
}

void tst_NyRecentFileResult::photoUrlsOfPhotoKit()
{
    // A link to itself has no canonical path, so Qt gives its path as it stands.
    TreeBuilder tree(m_folder->path());
    tree.link("photokit:album", "photokit:album");
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    const QFileInfo file(QStringLiteral("photokit:album"));
    QCOMPARE(file.canonicalFilePath(), QStringLiteral("photokit:album"));
    NyRecentFileResult result;
    result.setFiles({file});
    QCOMPARE(result.photoUrls(1), QList<QUrl>{QUrl(QStringLiteral("photokit:album"), QUrl::TolerantMode)});
    QVERIFY(QDir::setCurrent(before));
}

void tst_NyRecentFileResult::storesItsFiles()
{
    TreeBuilder tree(m_folder->path());
    QList<QFileInfo> files;
    for (const char *name : {"z.jpg", "a %1&\"\n.jpg", "e\u0301.jpg"}) {
        tree.file(name);
        files.append(at(QString::fromUtf8(name)));
    }
    files.append(files.first());
    NyRecentFileResult stored(files, NyDateRange(Day, Day), 3,
        NyEventFolderClassificationResult(QFileInfo(QStringLiteral("/x")), NyEventFolderType(16)), {QStringLiteral("x")});
    stored.writeToFileRegistry(QStringLiteral("key"));
    NyRecentFileResult read;
    read.readFromFileRegistry(QStringLiteral("key"));
    QCOMPARE(filePaths(read.files()), filePaths(files));
    QVERIFY(!read.relevantDateRange().isValid());
    QCOMPARE(read.countAfterDateRange(), 0);
    QVERIFY(read.recommendedStyleIds().isEmpty());
    QCOMPARE(int(read.eventFolderType().value()), 0);
    NyRecentFileResult other;
    other.readFromFileRegistry(QStringLiteral("other key"));
    QVERIFY(other.isEmpty());
}

void tst_NyRecentFileResult::readingAddsFiles()
{
    NyRecentFileResult stored;
    stored.setFiles({at(QStringLiteral("a.jpg")), at(QStringLiteral("b.jpg"))});
    stored.writeToFileRegistry(QStringLiteral("key"));
    NyRecentFileResult result;
    result.setFiles({at(QStringLiteral("first.jpg"))});
    result.readFromFileRegistry(QStringLiteral("key"));
    result.readFromFileRegistry(QStringLiteral("key"));
    QCOMPARE(filePaths(result.files()),
        filePaths({at(QStringLiteral("first.jpg")), at(QStringLiteral("a.jpg")), at(QStringLiteral("b.jpg")), at(QStringLiteral("a.jpg")),
            at(QStringLiteral("b.jpg"))}));
}

QTEST_GUILESS_MAIN(tst_NyRecentFileResult)
#include "tst_NyRecentFileResult.moc"
