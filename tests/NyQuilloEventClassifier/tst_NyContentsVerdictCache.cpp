#include "PictureTree.h"

#include <NyContentsVerdictCache.h>
#include <NyQuilloEventClassifier.h>

#include <QFile>
#include <QTest>

#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>

using Cache = NyContentsVerdictCache;
using Kind = NyEventFolderTypeEnum;

/** What loose folders' pictures said is asked of them once, until the folders change. */
class tst_NyContentsVerdictCache : public QObject
{
    Q_OBJECT

private:
    /** Makes a folder look as if it had last changed that many seconds ago. */
    static void age(const QString &path, time_t seconds)
    {
        const struct timespec times[2] = {{::time(nullptr) - seconds, 0}, {::time(nullptr) - seconds, 0}};
        QCOMPARE(::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0), 0);
    }
    static Kind kindOfCameraFolder(const PictureTree &tree)
    {
        const QFileInfo start(tree.root());
        const auto folders = NyQuilloEventClassifier(start).eventFolderTypes(start, NyEventFolderClassificationResult());
        for (const NyEventFolderClassificationResult &folder : folders) {
            if (folder.directory().fileName() == QStringLiteral("100CANON"))
                return folder.classification().value();
        }
        return Kind::Unknown;
    }

private Q_SLOTS:
    void keysFollowTheFolders()
    {
        PictureTree tree;
        tree.addFolder(QStringLiteral("a"));
        tree.addFolder(QStringLiteral("b"));
        const QString a = tree.path(QStringLiteral("a"));
        const QString b = tree.path(QStringLiteral("b"));
        // Changed a moment ago: another change could leave no trace.
        QCOMPARE(Cache::key({a}), QByteArray());
        age(a, 60);
        age(b, 60);
        const QByteArray key = Cache::key({a});
        QVERIFY(!key.isEmpty());
        QCOMPARE(Cache::key({a}), key);
        QVERIFY(Cache::key({b}) != key);
        QVERIFY(Cache::key({a, b}) != key);
        QVERIFY(Cache::key({a, b}) != Cache::key({b, a}));
        age(a, 50);
        QVERIFY(Cache::key({a}) != key);
        QCOMPARE(Cache::key({a, tree.path(QStringLiteral("gone"))}), QByteArray());
        age(b, -60);
        QCOMPARE(Cache::key({b}), QByteArray());
    }
    void keepsVerdictsWithinALimit()
    {
        Cache cache;
        QVERIFY(!cache.find("one"));
        cache.insert("one", {Kind::Event, false});
        cache.insert("two", {Kind::Unknown, true});
        cache.insert(QByteArray(), {Kind::Year, false});
        QVERIFY(cache.find("one")->kind == Kind::Event);
        QVERIFY(!cache.find("one")->isUndecided);
        QVERIFY(cache.find("two")->isUndecided);
        QVERIFY(!cache.find(QByteArray()));
        for (int i = 0; i < 5000; ++i)
            cache.insert(QByteArray::number(i), {Kind::Year, false});
        QVERIFY(!cache.find("one"));
        QVERIFY(cache.find("4999")->kind == Kind::Year);
    }
    void theClassifierAsksAgainWhenAFolderChanged()
    {
        PictureTree tree;
        const QString folder = tree.path(QStringLiteral("100CANON"));
        tree.addPicture(QStringLiteral("100CANON/1.jpg"), QDateTime(QDate(2024, 5, 1), QTime(10, 0)));
        tree.addPicture(QStringLiteral("100CANON/2.jpg"), QDateTime(QDate(2024, 5, 3), QTime(10, 0)));
        age(folder, 60);
        QVERIFY(kindOfCameraFolder(tree) == Kind::Event);
        // Rewritten in place, which leaves the folder's time alone: not looked at.
        tree.addPicture(QStringLiteral("100CANON/2.jpg"), QDateTime(QDate(2024, 8, 3), QTime(10, 0)));
        QVERIFY(kindOfCameraFolder(tree) == Kind::Event);
        tree.addPicture(QStringLiteral("100CANON/3.jpg"), QDateTime(QDate(2024, 5, 2), QTime(10, 0)));
        QVERIFY(kindOfCameraFolder(tree) == Kind::Year);
        age(folder, 30);
        QVERIFY(kindOfCameraFolder(tree) == Kind::Year);
    }
};

QTEST_GUILESS_MAIN(tst_NyContentsVerdictCache)
#include "tst_NyContentsVerdictCache.moc"
