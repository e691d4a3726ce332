#include "NyEventFileGrouping.h"

#include <QRandomGenerator>
#include <QTest>

namespace
{
using Grouping = NyEventFileGrouping::FilesOfEvents;

NyEventFolderClassificationResult classified(const QString &path, int kind = 16)
{
    return NyEventFolderClassificationResult(QFileInfo(path), NyEventFolderType(kind));
}

/** The plain loops, as the grouping is told. */
Grouping groupPlainly(const QList<QFileInfo> &files, const NyEventFolderClassificationResultList &folders)
{
    Grouping grouping;
    for (const QFileInfo &file : files) {
        for (const NyEventFolderClassificationResult &folder : folders) {
            if (file.absoluteFilePath().startsWith(folder.directory().absoluteFilePath(), Qt::CaseSensitive))
                grouping.insert(folder, file);
        }
    }
    return grouping;
}

/** Everything that can be told of a hash by iterating over it. */
QStringList inOrder(const Grouping &grouping)
{
    QStringList lines;
    for (auto entry = grouping.cbegin(); entry != grouping.cend(); ++entry) {
        lines.append(QStringLiteral("%1 (%2): %3")
                         .arg(entry.key().directory().filePath())
                         .arg(int(entry.key().classification().value()))
                         .arg(entry.value().filePath()));
    }
    return lines;
}

QStringList filesOf(const Grouping &grouping, const NyEventFolderClassificationResult &folder)
{
    QStringList paths;
    const QList<QFileInfo> files = grouping.values(folder);
    for (const QFileInfo &file : files)
        paths.append(file.filePath());
    return paths;
}
}

class tst_NyEventFileGrouping : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void groupsByPrefix();
    void lastFileComesFirst();
    void keepsTheKeysOccasions();
    void nothingAtAll();
    void agreesWithPlainLoops_data();
    void agreesWithPlainLoops();
    void agreesWithPlainLoopsWhenLarge();
};

void tst_NyEventFileGrouping::groupsByPrefix()
{
    const NyEventFolderClassificationResult outer = classified(QStringLiteral("/p/trip"));
    const NyEventFolderClassificationResult inner = classified(QStringLiteral("/p/trip/day 1"));
    const NyEventFolderClassificationResult neighbour = classified(QStringLiteral("/p/trip2"));
    const NyEventFolderClassificationResult otherCase = classified(QStringLiteral("/p/Trip"));
    const QList<QFileInfo> files{QFileInfo(QStringLiteral("/p/trip/a.jpg")), QFileInfo(QStringLiteral("/p/trip/day 1/b.jpg")),
        QFileInfo(QStringLiteral("/p/trip2/c.jpg")), QFileInfo(QStringLiteral("/p/TRIP/d.jpg")), QFileInfo(QStringLiteral("/q/e.jpg"))};
    const Grouping grouping
        = NyEventFileGrouping::filesOfEvents(files, NyEventFolderClassificationResultList({inner, outer, neighbour, otherCase}));
    QCOMPARE(filesOf(grouping, outer),
        QStringList({QStringLiteral("/p/trip2/c.jpg"), QStringLiteral("/p/trip/day 1/b.jpg"), QStringLiteral("/p/trip/a.jpg")}));
    QCOMPARE(filesOf(grouping, inner), QStringList{QStringLiteral("/p/trip/day 1/b.jpg")});
    QCOMPARE(filesOf(grouping, neighbour), QStringList{QStringLiteral("/p/trip2/c.jpg")});
    QVERIFY(!grouping.contains(otherCase));
    QCOMPARE(grouping.size(), 5);
}

void tst_NyEventFileGrouping::lastFileComesFirst()
{
    const NyEventFolderClassificationResult folder = classified(QStringLiteral("/p"));
    const Grouping grouping = NyEventFileGrouping::filesOfEvents(
        {QFileInfo(QStringLiteral("/p/1.jpg")), QFileInfo(QStringLiteral("/p/2.jpg")), QFileInfo(QStringLiteral("/p/1.jpg"))},
        NyEventFolderClassificationResultList({folder}));
    QCOMPARE(filesOf(grouping, folder), QStringList({QStringLiteral("/p/1.jpg"), QStringLiteral("/p/2.jpg"), QStringLiteral("/p/1.jpg")}));
}

void tst_NyEventFileGrouping::keepsTheKeysOccasions()
{
    NyEventFolderClassificationResult folder = classified(QStringLiteral("/p"));
    folder.setOccasionInformation(NyOccasionInfoList({NyOccasionInfo(QStringLiteral("wedding"), QStringLiteral("title"), 0.5)}));
    const Grouping grouping
        = NyEventFileGrouping::filesOfEvents({QFileInfo(QStringLiteral("/p/1.jpg"))}, NyEventFolderClassificationResultList({folder}));
    QCOMPARE(grouping.size(), 1);
    QCOMPARE(grouping.keys().constFirst().occasionInformation().occasions(), QStringList{QStringLiteral("wedding")});
}

void tst_NyEventFileGrouping::nothingAtAll()
{
    QVERIFY(NyEventFileGrouping::filesOfEvents({}, NyEventFolderClassificationResultList()).isEmpty());
    QVERIFY(NyEventFileGrouping::filesOfEvents({QFileInfo(QStringLiteral("/p/1.jpg"))}, NyEventFolderClassificationResultList()).isEmpty());
    QVERIFY(NyEventFileGrouping::filesOfEvents({}, NyEventFolderClassificationResultList({classified(QStringLiteral("/p"))})).isEmpty());
    // A folder without a path is a prefix of everything.
    QCOMPARE(NyEventFileGrouping::filesOfEvents(
                 {QFileInfo(QStringLiteral("/p/1.jpg"))}, NyEventFolderClassificationResultList({NyEventFolderClassificationResult()}))
                 .size(),
        1);
}

void tst_NyEventFileGrouping::agreesWithPlainLoops_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 30; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_NyEventFileGrouping::agreesWithPlainLoops()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    static const QString parts[]
        = {QStringLiteral("a"), QStringLiteral("ab"), QStringLiteral("A"), QStringLiteral("caf\u00e9"), QStringLiteral("cafe\u0301"),
            QStringLiteral("a b"), QStringLiteral("a\n"), QStringLiteral("2024"), QStringLiteral("2024-06"), QStringLiteral("..")};
    const auto randomPath = [&random](int deepest) {
        QString path = random.bounded(8) == 0 ? QStringLiteral("relative") : QString();
        for (int depth = 1 + random.bounded(deepest); depth > 0; --depth)
            path += QLatin1Char('/') + parts[random.bounded(int(std::size(parts)))];
        return path;
    };
    NyEventFolderClassificationResultList folders;
    for (int i = random.bounded(200); i > 0; --i) {
        NyEventFolderClassificationResult folder = classified(randomPath(3), 16 << random.bounded(2));
        if (random.bounded(20) == 0)
            folder = NyEventFolderClassificationResult();
        folders.append(folder);
        // The same folder may stand in the list again.
        if (random.bounded(10) == 0)
            folders.append(folder);
    }
    QList<QFileInfo> files;
    for (int i = random.bounded(400); i > 0; --i)
        files.append(QFileInfo(randomPath(5) + QStringLiteral(".jpg")));

    const Grouping fast = NyEventFileGrouping::filesOfEvents(files, folders);
    const Grouping plain = groupPlainly(files, folders);
    QCOMPARE(inOrder(fast), inOrder(plain));
    QVERIFY(fast == plain);
    QCOMPARE(fast.capacity(), plain.capacity());
}

void tst_NyEventFileGrouping::agreesWithPlainLoopsWhenLarge()
{
    QRandomGenerator random(1);
    NyEventFolderClassificationResultList folders;
    QList<QFileInfo> files;
    for (int i = 0; i < 300; ++i)
        folders.append(classified(QStringLiteral("/p/%1/event %2").arg(i % 7).arg(i)));
    for (int i = 0; i < 3000; ++i) {
        const int folder = random.bounded(300);
        files.append(QFileInfo(QStringLiteral("/p/%1/event %2/%3.jpg").arg(folder % 7).arg(folder).arg(i)));
    }
    // Short numbers are prefixes of long ones, so many files count more than once.
    const Grouping fast = NyEventFileGrouping::filesOfEvents(files, folders);
    QVERIFY(fast.size() > files.size());
    QCOMPARE(inOrder(fast), inOrder(groupPlainly(files, folders)));
}

QTEST_GUILESS_MAIN(tst_NyEventFileGrouping)
#include "tst_NyEventFileGrouping.moc"
