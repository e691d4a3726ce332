#include <QTest>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <NyDirectoryConfig.h>

#include "NyOwnFolder.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

void touch(const QString &path)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).absolutePath()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

/** What a walker finds out that has the folder's name and its entries at hand. */
bool isIgnorableForWalker(const NyDirectoryConfig &config, const QString &path)
{
    if (NyDirectoryConfig::isIgnorableFolderName(QFileInfo(path).fileName()) || config.isOwnDataFolder(path))
        return true;
    const QFileInfoList entries = QDir(path).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        if (NyDirectoryConfig::isIgnoreMarkerName(entry.fileName()) && entry.isFile())
            return true;
    }
    return false;
}

} // namespace

class tst_NyDirectoryConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }
    void places();
    void ignorableNames_data();
    void ignorableNames();
    void bothNormalForms();
    void markers_data();
    void markers();
    void onlyTheLastNameCounts();
    void ownData();
    void systemFolders_data();
    void systemFolders();
    void separatorsAtTheEnd();
    void resourceLookupOrder();
    void resourceNames_data();
    void resourceNames();
};

void tst_NyDirectoryConfig::places()
{
    const NyDirectoryConfig config;
    const QString home = QDir::homePath();
    QCOMPARE(config.settingsFile(), home + u"/.config/VELMORA/settings.ini"_s);
    QCOMPARE(config.photoListDatabase(), home + u"/.local/share/VELMORA/photolists.sqlite"_s);
    QCOMPARE(config.logFolder(), home + u"/.local/share/VELMORA/log"_s);
    QCOMPARE(config.modelsFolder(), home + u"/.local/share/VELMORA/models"_s);
    // Callers put a file's name directly behind it.
    QCOMPARE(config.bookProposalFolder().absoluteFilePath(), home + u"/.local/share/VELMORA/proposals/"_s);
    QVERIFY(!config.bookProposalFolder().exists());
}

void tst_NyDirectoryConfig::ignorableNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("ignorable");

    const QStringList ignorable{
        u".hidden"_s,
        u"..data"_s,
        u".Trash-1000"_s,
        u".thumbnails"_s,
        u"$RECYCLE.BIN"_s,
        u"$Recycle.Bin"_s,
        u"RECYCLER"_s,
        u"Trash"_s,
        u"Papierkorb"_s,
        u"Corbeille"_s,
        u"#recycle"_s,
        u"@Recycle"_s,
        u"@eaDir"_s,
        u"@EADIR"_s,
        u"__MACOSX"_s,
        u"lost+found"_s,
        u"System Volume Information"_s,
        u"Thumbnails"_s,
        u"thumbs"_s,
        u"Cache"_s,
        u"My Catalogue Previews.lrdata"_s,
        // Screenshots.
        u"Screenshots"_s,
        u"screenshot"_s,
        u"SCREENSHOTS"_s,
        u"Bildschirmfotos"_s,
        u"Bildschirmfoto"_s,
        u"Captures d'\u00e9cran"_s,
        u"Captures d\u2019\u00e9cran"_s,
        u"capture d'\u00e9cran"_s,
        u"CAPTURES D'\u00c9CRAN"_s,
        u"Schermafbeeldingen"_s,
        u"Schermafdrukken"_s,
        u"Schermate"_s,
        u"Istantanee schermo"_s,
        u"Capturas de pantalla"_s,
        u"Zrzuty ekranu"_s,
        u"Zrzut ekranu"_s,
        u"Sk\u00e4rmbilder"_s,
        u"Sk\u00e4rmdumpar"_s,
        u"SK\u00c4RMBILDER"_s,
    };
    const QStringList kept{
        u""_s,
        u"2024"_s,
        u"Urlaub"_s,
        u"hidden."_s,
        u"a.hidden"_s,
        u"Trashed hotel"_s,
        u"My Trash"_s,
        u"Papierkorbfabrik"_s,
        u"eaDir"_s,
        u"recycle"_s,
        u"__MACOSX2"_s,
        u"lost and found"_s,
        u"lost+found "_s,
        u"Thumbelina"_s,
        u"Caching"_s,
        u"lrdata"_s,
        u"nomedia"_s,
        u"Screenshots 2024"_s,
        u"Screenshotters"_s,
        u"Meine Bildschirmfotos"_s,
        u"Captures"_s,
        u"Captures d'ecran"_s,
        u"Capturas"_s,
        u"Sk\u00e4rm"_s,
        u"Skarmbilder"_s,
        u"Schermate2"_s,
        u"DCIM"_s,
        u"100CANON"_s,
        u"VELMORA"_s,
        u"Preview"_s,
        u"\u0301"_s,
    };
    for (const QString &name : ignorable)
        QTest::newRow(qPrintable(u"ignorable "_s + name)) << name << true;
    for (const QString &name : kept)
        QTest::newRow(qPrintable(u"kept "_s + name)) << name << false;
}

void tst_NyDirectoryConfig::ignorableNames()
{
    QFETCH(QString, name);
    QFETCH(bool, ignorable);
    QCOMPARE(NyDirectoryConfig::isIgnorableFolderName(name), ignorable);
    if (name.isEmpty())
        return;
    QTemporaryDir folder;
    const QString path = folder.filePath(name);
    const NyDirectoryConfig config;
    QVERIFY(QDir().mkdir(path));
    QCOMPARE(config.isIgnorableFolder(path, false), ignorable);
    QCOMPARE(isIgnorableForWalker(config, path), ignorable);
}

void tst_NyDirectoryConfig::bothNormalForms()
{
    for (const QString &name : {u"Captures d'\u00e9cran"_s, u"Sk\u00e4rmbilder"_s, u"Sk\u00e4rmklipp"_s}) {
        const QString decomposed = name.normalized(QString::NormalizationForm_D);
        QVERIFY(decomposed != name);
        QVERIFY(NyDirectoryConfig::isIgnorableFolderName(name));
        QVERIFY(NyDirectoryConfig::isIgnorableFolderName(decomposed));
        QVERIFY(NyDirectoryConfig::isIgnorableFolderName(decomposed.toUpper()));
    }
}

void tst_NyDirectoryConfig::markers_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("ignorable");

    QTest::newRow("nothing") << QString() << QString() << false;
    QTest::newRow("nomedia") << u".nomedia"_s << u"file"_s << true;
    QTest::newRow("nomemories") << u".nomemories"_s << u"file"_s << true;
    QTest::newRow("folder nomedia") << u".nomedia"_s << u"folder"_s << false;
    QTest::newRow("folder nomemories") << u".nomemories"_s << u"folder"_s << false;
    QTest::newRow("link to a file") << u".nomedia"_s << u"link to file"_s << true;
    QTest::newRow("link to a folder") << u".nomedia"_s << u"link to folder"_s << false;
    QTest::newRow("link to nothing") << u".nomedia"_s << u"link to nothing"_s << false;
    QTest::newRow("without the dot") << u"nomedia"_s << u"file"_s << false;
    QTest::newRow("longer") << u".nomedia.txt"_s << u"file"_s << false;
    QTest::newRow("one level below") << u"below/.nomedia"_s << u"file"_s << false;
}

void tst_NyDirectoryConfig::markers()
{
    QFETCH(QString, entry);
    QFETCH(QString, kind);
    QFETCH(bool, ignorable);
    QTemporaryDir root;
    const QString folder = root.filePath(u"pictures"_s);
    const QString path = folder + u'/' + entry;
    QVERIFY(QDir().mkpath(folder));
    if (kind == u"file") {
        touch(path);
    } else if (kind == u"folder") {
        QVERIFY(QDir().mkpath(path));
    } else if (!kind.isEmpty()) {
        const QString target = root.filePath(u"target"_s);
        if (kind == u"link to file")
            touch(target);
        else if (kind == u"link to folder")
            QVERIFY(QDir().mkpath(target));
        QVERIFY(QFile::link(target, path));
    }
    const NyDirectoryConfig config;
    QCOMPARE(config.isIgnorableFolder(folder, false), ignorable);
    QCOMPARE(NyDirectoryConfig::hasIgnoreMarker(folder), ignorable);
    QCOMPARE(isIgnorableForWalker(config, folder), ignorable);
}

void tst_NyDirectoryConfig::onlyTheLastNameCounts()
{
    const NyDirectoryConfig config;
    QVERIFY(!config.isIgnorableFolder(u"/home/tom/.hidden/Pictures"_s, false));
    QVERIFY(!config.isIgnorableFolder(u"/home/tom/Screenshots/2024"_s, false));
    QVERIFY(config.isIgnorableFolder(u"/home/tom/2024/Screenshots"_s, false));
    QVERIFY(config.isIgnorableFolder(u"/home/tom/Pictures/.hidden"_s, false));
    QVERIFY(!config.isIgnorableFolder(u"/"_s, false));
    QVERIFY(!config.isIgnorableFolder(u"/nowhere/at/all"_s, false));
}

void tst_NyDirectoryConfig::ownData()
{
    const NyDirectoryConfig config;
    const QString data = QDir::homePath() + u"/.local/share/VELMORA"_s;
    for (const QString &own : {data, data + u"/proposals"_s, data + u"/proposals/"_s, QDir::homePath() + u"/.config/VELMORA"_s,
             QDir::homePath() + u"/.cache/VELMORA/thumbnails of photos"_s, QDir::tempPath() + u"/VELMORA"_s}) {
        QVERIFY2(config.isIgnorableFolder(own, false), qPrintable(own));
        QVERIFY2(config.isOwnDataFolder(own), qPrintable(own));
    }
    // Neighbours and namesakes are the user's.
    for (const QString &other : {data + u"2"_s, data + u" backup"_s, QDir::homePath() + u"/.local/share"_s,
             QDir::homePath() + u"/Pictures/VELMORA"_s, QDir::homePath() + u"/Pictures"_s}) {
        QVERIFY2(!config.isIgnorableFolder(other, false), qPrintable(other));
        QVERIFY2(!config.isOwnDataFolder(other), qPrintable(other));
    }
    QCOMPARE(config.ownDataFolders().size(), 4);
}

void tst_NyDirectoryConfig::systemFolders_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("system");

    QTest::newRow("proc") << u"/proc"_s << true;
    QTest::newRow("below proc") << u"/proc/self"_s << true;
    QTest::newRow("usr") << u"/usr/share/pixmaps"_s << true;
    QTest::newRow("sibling of proc") << u"/process"_s << false;
    QTest::newRow("home") << u"/home/tom/Pictures"_s << false;
    QTest::newRow("root") << u"/"_s << false;
    QTest::newRow("removable medium") << u"/run/media/tom/CARD"_s << false;
    QTest::newRow("medium") << u"/media/tom/CARD"_s << false;
    QTest::newRow("namesake") << u"/home/tom/usr"_s << false;
}

void tst_NyDirectoryConfig::systemFolders()
{
    QFETCH(QString, path);
    const NyDirectoryConfig config;
    QTEST(config.isIgnorableFolder(path, true), "system");
    QVERIFY(!config.isIgnorableFolder(path, false));
}

void tst_NyDirectoryConfig::separatorsAtTheEnd()
{
    const NyDirectoryConfig config;
    QVERIFY(config.isIgnorableFolder(u"/home/tom/Screenshots/"_s, false));
    QVERIFY(config.isIgnorableFolder(u"/home/tom/.hidden//"_s, false));
    QVERIFY(!config.isIgnorableFolder(u"/home/tom/Pictures/"_s, false));
    QVERIFY(!config.isIgnorableFolder(u""_s, false));
}

void tst_NyDirectoryConfig::resourceLookupOrder()
{
    const QString name = u"installation.xml"_s;
    // Nothing but what is built in.
    QCOMPARE(NyDirectoryConfig::resourceFile(name), u":/velmora/installation.xml"_s);

    const QString inInstallation = QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../share/VELMORA/"_s + name);
    QVERIFY2(!QFile::exists(inInstallation), qPrintable(inInstallation));
    touch(inInstallation);
    const QString found = NyDirectoryConfig::resourceFile(name);
    QVERIFY(QFile::remove(inInstallation));
    QCOMPARE(found, inInstallation);

    const QString ofTheSystem = qEnvironmentVariable("XDG_CONFIG_DIRS") + u"/VELMORA/"_s + name;
    touch(ofTheSystem);
    QCOMPARE(NyDirectoryConfig::resourceFile(name), ofTheSystem);

    const QString ofTheUser = QDir::homePath() + u"/.config/VELMORA/"_s + name;
    touch(ofTheUser);
    QCOMPARE(NyDirectoryConfig::resourceFile(name), ofTheUser);

    // A folder of that name is no file.
    QVERIFY(QFile::remove(ofTheUser));
    QVERIFY(QDir().mkpath(ofTheUser));
    QCOMPARE(NyDirectoryConfig::resourceFile(name), ofTheSystem);
    QVERIFY(QDir().rmdir(ofTheUser));
    QVERIFY(QFile::remove(ofTheSystem));
}

void tst_NyDirectoryConfig::resourceNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("found");

    const QString config = QDir::homePath() + u"/.config/"_s;
    touch(config + u"VELMORA/sub folder/designs 100%.xml"_s);
    touch(config + u"outside.xml"_s);
    QTest::newRow("sub folder") << u"sub folder/designs 100%.xml"_s << true;
    QTest::newRow("not there") << u"nothing.xml"_s << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("folder") << u"sub folder"_s << false;
    QTest::newRow("itself") << u"."_s << false;
    QTest::newRow("outside") << u"../outside.xml"_s << false;
    QTest::newRow("outside, hidden in the middle") << u"sub folder/../../outside.xml"_s << false;
    QTest::newRow("above") << u".."_s << false;
    QTest::newRow("absolute") << u"/etc/passwd"_s << false;
}

void tst_NyDirectoryConfig::resourceNames()
{
    QFETCH(QString, name);
    QTEST(!NyDirectoryConfig::resourceFile(name).isEmpty(), "found");
}

int main(int argc, char **argv)
{
    runFromFolderOfItsOwn(argv);
    QCoreApplication application(argc, argv);
    tst_NyDirectoryConfig test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NyDirectoryConfig.moc"
