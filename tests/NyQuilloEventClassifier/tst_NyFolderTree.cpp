#include <QStandardPaths>
#include <QTest>
#include <QThread>

#include <atomic>

#include <NyFolderTree.h>

#include "PictureTree.h"
#include "TestSupport.h"
#include "WithoutRootPowers.h"

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace
{

const QStringList Filters{u"*.jpg"_s, u"*.jpeg"_s, u"*.heic"_s};

QStringList relativePaths(const PictureTree &pictures, const NyFolderTree &tree)
{
    QStringList paths;
    for (const NyFolderTree::Folder &folder : tree.folders())
        paths.append(folder.path == pictures.root() ? u"."_s : folder.path.mid(pictures.root().size() + 1));
    paths.sort();
    return paths;
}

QStringList inOrder(const NyFolderTree &tree, int index = 0)
{
    QStringList names{tree.folders().at(index).name};
    for (const int child : tree.folders().at(index).children)
        names += inOrder(tree, child);
    return names;
}

} // namespace

class tst_NyFolderTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void foldersStandInTheOrderOfTheirNames()
    {
        PictureTree pictures;
        for (const char16_t *name : {u"b/2", u"b/1", u"a", u"c/x/y", u"B", u"ä", u"10", u"9"})
            pictures.addFolder(QString::fromUtf16(name));
        const NyFolderTree tree(pictures.root(), Filters);
        QCOMPARE(inOrder(tree),
            (QStringList{u"pictures"_s, u"10"_s, u"9"_s, u"B"_s, u"a"_s, u"b"_s, u"1"_s, u"2"_s, u"c"_s, u"x"_s, u"y"_s, u"ä"_s}));
        for (int index = 1; index < tree.folders().size(); ++index)
            QVERIFY(tree.folders().at(index).parent < index);
    }
    void picturesAreKnownByTheirEndings()
    {
        PictureTree pictures;
        for (const char16_t *name : {u"yes1/a.jpg", u"yes2/A.JPG", u"yes3/x.y.Jpeg", u"yes4/ü.heic", u"no1/jpg", u"no2/a.jpg.txt",
                 u"no3/.a.jpg", u"no4/a.jpgx", u"no5/a.", u"no6/a.ſpg", u"no7/a.jpg /b", u"no8/averyveryverylong.endingthatnobodyhas"})
            pictures.addFile(QString::fromUtf16(name));
        pictures.addFolder(u"no9/a.jpg"_s);
        const NyFolderTree tree(pictures.root(), Filters);
        for (const NyFolderTree::Folder &folder : tree.folders()) {
            if (folder.name.startsWith(u"yes"_s) || folder.name.startsWith(u"no"_s))
                QVERIFY2(folder.hasOwnPictures == folder.name.startsWith(u"yes"_s), qPrintable(folder.name));
        }
        QVERIFY(tree.folders().constFirst().hasPicturesBelow);
        QVERIFY(!tree.folders().constFirst().hasOwnPictures);
    }
    void aLinkToAPictureIsAPicture()
    {
        PictureTree pictures;
        pictures.addFile(u"real/a.jpg"_s);
        pictures.addFolder(u"linked"_s);
        pictures.addFolder(u"broken"_s);
        QVERIFY(QFile::link(pictures.path(u"real/a.jpg"_s), pictures.path(u"linked/b.jpg"_s)));
        QVERIFY(QFile::link(pictures.path(u"nowhere"_s), pictures.path(u"broken/b.jpg"_s)));
        const NyFolderTree tree(pictures.root(), Filters);
        for (const NyFolderTree::Folder &folder : tree.folders()) {
            if (folder.parent == 0)
                QCOMPARE(folder.hasOwnPictures, folder.name != u"broken"_s);
        }
    }
    void projectFilesAreNoticed()
    {
        PictureTree pictures;
        pictures.addFile(u"a/book.nqp"_s);
        pictures.addFile(u"b/book.NQPX"_s);
        pictures.addFile(u"c/book.nqp.bak"_s);
        const NyFolderTree tree(pictures.root(), Filters);
        for (const NyFolderTree::Folder &folder : tree.folders()) {
            if (folder.parent == 0)
                QCOMPARE(folder.hasProjectFiles, folder.name != u"c"_s);
        }
    }
    void ignorableFoldersAreNotEntered()
    {
        PictureTree pictures;
        for (const char16_t *name : {u"yes/a.jpg", u".hidden/a.jpg", u"@eaDir/a.jpg", u"#recycle/a.jpg", u"Screenshots/a.jpg",
                 u"Bildschirmfotos/deep/a.jpg", u"__MACOSX/a.jpg", u"marked/a.jpg", u"marked/below/b.jpg", u"marked/.nomedia",
                 u"memories/.nomemories", u"memories/a.jpg", u"yes/.other"})
            pictures.addFile(QString::fromUtf16(name));
        // A folder of that name is no marker, a link to a file is one.
        pictures.addFolder(u"notmarked/.nomedia"_s);
        pictures.addFile(u"notmarked/a.jpg"_s);
        pictures.addFile(u"linkmarked/a.jpg"_s);
        QVERIFY(QFile::link(pictures.path(u"yes/a.jpg"_s), pictures.path(u"linkmarked/.nomedia"_s)));
        const NyFolderTree tree(pictures.root(), Filters);
        QCOMPARE(relativePaths(pictures, tree), (QStringList{u"."_s, u"notmarked"_s, u"yes"_s}));
    }
    void theFamilysOwnDataAreLeftOut()
    {
        const QString own = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/VELMORA"_s;
        QVERIFY(QDir().mkpath(own + u"/proposals"_s));
        const NyFolderTree tree(QFileInfo(own).path(), Filters);
        QVERIFY(!tree.folders().isEmpty());
        for (const NyFolderTree::Folder &folder : tree.folders())
            QVERIFY2(!folder.path.contains(u"VELMORA"_s), qPrintable(folder.path));
    }
    void anIgnorableStartFolderGivesNothing()
    {
        PictureTree pictures(u".pictures"_s);
        pictures.addFile(u"a/a.jpg"_s);
        QVERIFY(NyFolderTree(pictures.root(), Filters).folders().isEmpty());
    }

    void linksAreFollowedOnce()
    {
        PictureTree pictures;
        PictureTree elsewhere(u"elsewhere"_s);
        elsewhere.addFile(u"deep/a.jpg"_s);
        pictures.addFile(u"real/a.jpg"_s);
        QVERIFY(QFile::link(elsewhere.root(), pictures.path(u"a outside"_s)));
        QVERIFY(QFile::link(elsewhere.root(), pictures.path(u"b outside too"_s)));
        QVERIFY(QFile::link(pictures.path(u"real"_s), pictures.path(u"a link before the real folder"_s)));
        const NyFolderTree tree(pictures.root(), Filters);
        QCOMPARE(relativePaths(pictures, tree), (QStringList{u"."_s, u"a outside"_s, u"a outside/deep"_s, u"real"_s}));
        QCOMPARE(inOrder(tree), (QStringList{u"pictures"_s, u"a outside"_s, u"deep"_s, u"real"_s}));
    }
    void loopsEnd()
    {
        PictureTree pictures;
        pictures.addFile(u"a/a.jpg"_s);
        pictures.addFile(u"b/b.jpg"_s);
        QVERIFY(QFile::link(pictures.root(), pictures.path(u"a/up"_s)));
        QVERIFY(QFile::link(u"."_s, pictures.path(u"b/self"_s)));
        QVERIFY(QFile::link(u"../b"_s, pictures.path(u"a/to b"_s)));
        QVERIFY(QFile::link(u"../a"_s, pictures.path(u"b/to a"_s)));
        QVERIFY(QFile::link(u"circle2"_s, pictures.path(u"circle1"_s)));
        QVERIFY(QFile::link(u"circle1"_s, pictures.path(u"circle2"_s)));
        const NyFolderTree tree(pictures.root(), Filters);
        QCOMPARE(relativePaths(pictures, tree), (QStringList{u"."_s, u"a"_s, u"b"_s}));
    }
    void mutualLinksOfOutsideFoldersEnd()
    {
        PictureTree pictures;
        PictureTree elsewhere(u"elsewhere"_s);
        elsewhere.addFile(u"x/a.jpg"_s);
        elsewhere.addFile(u"y/b.jpg"_s);
        QVERIFY(QFile::link(elsewhere.path(u"y"_s), elsewhere.path(u"x/to y"_s)));
        QVERIFY(QFile::link(elsewhere.path(u"x"_s), elsewhere.path(u"y/to x"_s)));
        QVERIFY(QFile::link(elsewhere.path(u"x"_s), pictures.path(u"in"_s)));
        const NyFolderTree tree(pictures.root(), Filters);
        QCOMPARE(relativePaths(pictures, tree), (QStringList{u"."_s, u"in"_s, u"in/to y"_s}));
    }
    void theStartFolderMayBeALink()
    {
        PictureTree pictures;
        PictureTree elsewhere(u"elsewhere"_s);
        elsewhere.addFile(u"deep/a.jpg"_s);
        QVERIFY(QFile::link(elsewhere.root(), pictures.path(u"start"_s)));
        const NyFolderTree tree(pictures.path(u"start"_s), Filters);
        QCOMPARE(tree.folders().size(), 2);
        QCOMPARE(tree.folders().at(1).path, pictures.path(u"start/deep"_s));
    }

    void unreadableFoldersAreReportedAndLeftOut()
    {
        PictureTree pictures;
        pictures.addFile(u"closed/below/a.jpg"_s);
        pictures.addFile(u"open/a.jpg"_s);
        QVERIFY(::chmod(QFile::encodeName(pictures.path(u"closed"_s)).constData(), 0) == 0);
        TestSupport::LogRecorder log;
        {
            const WithoutRootPowers unprivileged;
            for (int round = 0; round < 2; ++round)
                QCOMPARE(relativePaths(pictures, NyFolderTree(pictures.root(), Filters)), (QStringList{u"."_s, u"open"_s}));
        }
        QVERIFY(::chmod(QFile::encodeName(pictures.path(u"closed"_s)).constData(), 0700) == 0);
        // Twice walked, once reported.
        QCOMPARE(log.containing(u"warning: "_s),
            QStringList{u"warning: Folder cannot be classified: "_s + pictures.path(u"closed"_s) + u": Permission denied"_s});
        QCOMPARE(NyFolderTree(pictures.root(), Filters).folders().size(), 4);
    }
    void aMissingStartFolderIsReported()
    {
        PictureTree pictures;
        TestSupport::LogRecorder log;
        const NyFolderTree tree(pictures.path(u"not there %1"_s), Filters);
        QVERIFY(tree.folders().isEmpty());
        QVERIFY(log.has(u"warning: Folder cannot be classified: "_s + pictures.path(u"not there %1"_s) + u": No such file or directory"_s));
    }
    void foldersMayComeAndGoMeanwhile()
    {
        PictureTree pictures;
        pictures.addFile(u"stays/below/a.jpg"_s);
        std::atomic_bool stop = false;
        std::atomic_int rounds = 0;
        const std::unique_ptr<QThread> vandal(QThread::create([&pictures, &stop, &rounds]() {
            while (!stop) {
                for (const char16_t *name : {u"a", u"b/c/d", u"z"})
                    QDir().mkpath(pictures.path(QString::fromUtf16(name)));
                for (const char16_t *name : {u"a", u"b", u"z"})
                    QDir(pictures.path(QString::fromUtf16(name))).removeRecursively();
                ++rounds;
            }
        }));
        vandal->start();
        TestSupport::LogRecorder log;
        bool complete = true;
        for (int walk = 0; walk < 300 || rounds < 20; ++walk) {
            const QStringList paths = relativePaths(pictures, NyFolderTree(pictures.root(), Filters));
            complete = complete && paths.contains(u"stays/below"_s);
        }
        stop = true;
        vandal->wait();
        QVERIFY(complete);
        QCOMPARE(log.containing(u"warning: "_s), QStringList());
    }

    void invalidNamesStopNothing()
    {
        PictureTree pictures;
        pictures.addFile(u"good/a.jpg"_s);
        pictures.addFolder(u"only bad"_s);
        const QByteArray root = QFile::encodeName(pictures.root());
        QVERIFY(::mkdir((root + "/bad\xff\xfe name").constData(), 0700) == 0);
        QVERIFY(::mkdir((root + "/good/latin\xfc").constData(), 0700) == 0);
        FILE *file = std::fopen((root + "/only bad/\xe4.jpg").constData(), "w");
        QVERIFY(file);
        std::fclose(file);
        TestSupport::LogRecorder log;
        const NyFolderTree tree(pictures.root(), Filters);
        QCOMPARE(relativePaths(pictures, tree), (QStringList{u"."_s, u"good"_s, u"only bad"_s}));
        for (const NyFolderTree::Folder &folder : tree.folders()) {
            if (folder.name == u"only bad"_s)
                QVERIFY(!folder.hasOwnPictures);
        }
        QStringList warnings = log.containing(u"warning: "_s);
        warnings.sort();
        QCOMPARE(warnings,
            (QStringList{u"warning: Folder name is not valid UTF-8, it is left out: "_s + pictures.root() + u"/bad%FF%FE name"_s,
                u"warning: Folder name is not valid UTF-8, it is left out: "_s + pictures.root() + u"/good/latin%FC"_s}));
    }
    void strangeNamesAreKept()
    {
        PictureTree pictures;
        const QStringList names{u" "_s, u"%1"_s, u"a\nb"_s, u"a:b"_s, u"\"&'<>"_s, u"ä"_s, u"a\u0308"_s, u"\U0001F384"_s, u"a\\b"_s,
            u"*?[x]"_s, QString(80, QChar(0x4e00))};
        for (const QString &name : names)
            pictures.addFile(name + u"/a.jpg"_s);
        const NyFolderTree tree(pictures.root(), Filters);
        QCOMPARE(tree.folders().size(), names.size() + 1);
        for (const NyFolderTree::Folder &folder : tree.folders()) {
            QVERIFY(folder.parent < 0 || names.contains(folder.name));
            QVERIFY(QFileInfo(folder.path).isDir());
            QVERIFY(folder.hasPicturesBelow);
        }
    }
    void deepTreesAreWalked()
    {
        PictureTree pictures;
        QString path = u"d"_s;
        for (int depth = 1; depth < 500; ++depth)
            path += u"/d"_s;
        pictures.addFile(path + u"/a.jpg"_s);
        const NyFolderTree tree(pictures.root(), Filters);
        QCOMPARE(tree.folders().size(), 501);
        QVERIFY(tree.folders().constFirst().hasPicturesBelow);
        QVERIFY(tree.folders().constLast().hasOwnPictures);
    }

    void severalStartsMakeOneTree()
    {
        PictureTree pictures;
        for (const char16_t *name : {u"a/1.jpg", u"a/2.JPG", u"a/.3.jpg", u"a/x/4.jpg", u"b/5.txt", u"c/6.jpg", u"d/7.heic"})
            pictures.addFile(QString::fromUtf16(name));
        // What a link in the first leads to belongs to the start folder that it lies in.
        QVERIFY(QFile::link(pictures.path(u"c"_s), pictures.path(u"a/link"_s)));
        QVERIFY(QFile::link(pictures.path(u"d"_s), pictures.path(u"a/other"_s)));
        const NyFolderTree tree(
            {pictures.path(u"a"_s), pictures.path(u"b"_s), pictures.path(u"c"_s)}, Filters, NyFolderTree::Pictures::Count);
        QCOMPARE(relativePaths(pictures, tree), (QStringList{u"a"_s, u"a/other"_s, u"a/x"_s, u"b"_s, u"c"_s}));
        int all = 0;
        for (const NyFolderTree::Folder &folder : tree.folders()) {
            all += folder.ownPictures;
            QCOMPARE(folder.hasOwnPictures, folder.ownPictures > 0);
            QCOMPARE(folder.parent < 0, !folder.path.contains(u"/a/"_s));
            if (folder.name == u"a"_s)
                QCOMPARE(folder.ownPictures, 2);
        }
        QCOMPARE(all, 5);
        const NyFolderTree uncounted(pictures.path(u"a"_s), Filters);
        for (const NyFolderTree::Folder &folder : uncounted.folders())
            QCOMPARE(folder.ownPictures, 0);
        QVERIFY(NyFolderTree(QStringList(), Filters, NyFolderTree::Pictures::Count).folders().isEmpty());
    }

    void picturesAreSampledEvenly()
    {
        PictureTree pictures;
        for (const char16_t *name :
            {u"b.jpg", u"a.JPG", u"c.txt", u".d.jpg", u"e.heic", u"below/1.jpg", u"below/2.jpg", u"below/3.jpg", u"below/4.jpg"})
            pictures.addFile(QString::fromUtf16(name));
        const NyFolderTree tree(pictures.root(), Filters);
        const QStringList own{pictures.path(u"a.JPG"_s), pictures.path(u"b.jpg"_s), pictures.path(u"e.heic"_s)};
        QCOMPARE(tree.samplePictures({0}, 100), own);
        QCOMPARE(tree.samplePictures({0}, 3), own);
        QCOMPARE(tree.samplePictures({0}, 2), (QStringList{own.at(0), own.at(2)}));
        QCOMPARE(tree.samplePictures({0}, 1), QStringList{own.at(0)});
        QCOMPARE(tree.samplePictures({0}, 0), QStringList());
        QCOMPARE(tree.samplePictures({}, 5), QStringList());
        QCOMPARE(tree.samplePictures({0, 1}, 4),
            (QStringList{own.at(0), own.at(2), pictures.path(u"below/2.jpg"_s), pictures.path(u"below/4.jpg"_s)}));
        QVERIFY(QDir(pictures.root()).removeRecursively());
        QCOMPARE(tree.samplePictures({0, 1}, 4), QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_NyFolderTree)
#include "tst_NyFolderTree.moc"
