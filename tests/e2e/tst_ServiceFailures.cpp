#include "MockNotificationServer.h"
#include "ServiceUnderTest.h"
#include "TestSupport.h"

#include <NyFotoList.h>
#include <NyFotoListRegistry.h>
#include <NyProgramConfig.h>

#include <QElapsedTimer>
#include <QScopeGuard>
#include <QTest>

#include <cstdio>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace TestSupport;

/** What goes wrong around the service: it says so, loses nothing and goes on. */
class tst_ServiceFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void brokenConfiguration();
    void brokenSettings();
    void brokenPhotoLists();
    void missingBuilder();
    void crashingBuilder();
    void builderWithoutResult();
    void proposalFolderRemoved();
    void proposalFolderReplacedWhileTheBuilderRuns();
    void serviceEndsWhileTheBuilderRuns();
    void noBus();
    void noNotificationServer();
    void serverThatComesBack();
    void hostileNames();
    void unreadableAndVanishingFolders();
    void linkLoops();
    void brokenPictures();
    void missingPicturesHome();
    void fullDisk();

private:
    static bool offered(ServiceUnderTest &service) { return service.eventLog().contains(QStringLiteral("showCreationResults")); }
    static QString scanned(int count) { return QStringLiteral("QUILLO_SERVICE: found recent unused Files %1").arg(count); }
    static void putMainProgram(const QString &folder, const QByteArray &script)
    {
        const QString path = folder + QStringLiteral("/VELMORA ALBUMA");
        QVERIFY(writeFile(path, script));
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
};

#define VERIFY_LOGGED(text) QTRY_VERIFY2_WITH_TIMEOUT(service.log().contains(text), qPrintable(service.log()), 90000)

void tst_ServiceFailures::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
}

void tst_ServiceFailures::brokenConfiguration()
{
    ServiceUnderTest service;
    QVERIFY(writeFile(configFolder() + QStringLiteral("/quilloservice.xml"), "<a>\n <b c='1'>\n</a>\n"));
    service.allowAutostart();
    service.start();
    QTRY_VERIFY(!service.eventLog().isEmpty());
    QVERIFY(service.isRunning());
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);
    const QByteArray output = service.output();
    QVERIFY2(output.contains("quilloservice.xml"), output.constData());
}

void tst_ServiceFailures::brokenSettings()
{
    ServiceUnderTest service;
    QVERIFY(writeFile(configFolder() + QStringLiteral("/settings.ini"), QByteArray(4096, '\0')));
    service.start({QStringLiteral("--serviceMode"), QStringLiteral("i")});
    QTRY_VERIFY(!service.eventLog().isEmpty());
    QVERIFY(service.isRunning());
    QTRY_VERIFY(QFile::exists(configFolder() + QStringLiteral("/settings.ini.broken")));
    QCOMPARE(readFile(configFolder() + QStringLiteral("/settings.ini.broken")), QByteArray(4096, '\0'));
    QTRY_VERIFY(service.output().contains("settings.ini"));
    // The defaults hold, and what is stored from now on is kept.
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);
    QCOMPARE(service.run({QStringLiteral("--serviceMode"), QStringLiteral("s")}), 1);
}

void tst_ServiceFailures::brokenPhotoLists()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.writeConfiguration(ServiceUnderTest::quickSections());
    service.allowAutostart();
    QVERIFY(writeFile(dataFolder() + QStringLiteral("/photolists.sqlite"), QByteArray(8192, 'x')));
    service.start();
    QTRY_COMPARE_WITH_TIMEOUT(server.notifications().size(), 1, 90000);
    QVERIFY(service.log().contains(QStringLiteral("photolists.sqlite")));
    const QFileInfoList aside = QDir(dataFolder()).entryInfoList({QStringLiteral("photolists.sqlite.broken*")}, QDir::Files);
    QCOMPARE(aside.size(), 1);
    QCOMPARE(readFile(aside.first().absoluteFilePath()), QByteArray(8192, 'x'));
}

void tst_ServiceFailures::missingBuilder()
{
    ServiceUnderTest service;
    service.useOwnProgramFolder();
    service.environment().insert(QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin"));
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    VERIFY_LOGGED(QStringLiteral("Resorting to Fallback Location for client"));
    QTRY_VERIFY_WITH_TIMEOUT(service.eventLog().filter(QStringLiteral("startAsService")).size() >= 2, 90000);
    QVERIFY(service.log().contains(QStringLiteral("VELMORA ALBUMA")));
    QVERIFY(service.isRunning());
    QVERIFY(!offered(service));
    QCOMPARE(service.proposals(), QStringList());
    // A failed build uses up no photos.
    QVERIFY(NyFotoListRegistry::instance().fotosUsedForBookProposals().toUrlStringList().isEmpty());
}

void tst_ServiceFailures::crashingBuilder()
{
    ServiceUnderTest service;
    putMainProgram(service.useOwnProgramFolder(), "#!/bin/sh\nkill -SEGV $$\n");
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    QTRY_VERIFY_WITH_TIMEOUT(service.eventLog().filter(QStringLiteral("startAsService")).size() >= 2, 90000);
    QVERIFY(service.isRunning());
    QVERIFY(!offered(service));
    QVERIFY(NyFotoListRegistry::instance().fotosUsedForBookProposals().toUrlStringList().isEmpty());
}

void tst_ServiceFailures::builderWithoutResult()
{
    ServiceUnderTest service;
    const QString folder = service.useOwnProgramFolder();
    // Leaves something beside the proposal: the folder changes, but the project file does not come.
    putMainProgram(
        folder, "#!/bin/sh\nwhile [ $# -gt 0 ]; do [ \"$1\" = --proposalTargetPath ] && echo x > \"$2.json\"; shift; done\nexit 3\n");
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    VERIFY_LOGGED(QStringLiteral("QUILLO_SERVICE: proposal file does not exist at:"));
    QVERIFY(service.isRunning());
    QVERIFY(!offered(service));
}

void tst_ServiceFailures::proposalFolderRemoved()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    QTRY_VERIFY(!service.eventLog().isEmpty());
    QVERIFY(QDir(service.proposalFolder()).removeRecursively());
    QTRY_VERIFY_WITH_TIMEOUT(offered(service), 90000);
    QCOMPARE(service.proposals().size(), 1);
}

void tst_ServiceFailures::proposalFolderReplacedWhileTheBuilderRuns()
{
    ServiceUnderTest service;
    // The watched folder goes elsewhere, and the book comes into another one of the same name.
    putMainProgram(service.useOwnProgramFolder(),
        "#!/bin/sh\nwhile [ $# -gt 0 ]; do [ \"$1\" = --proposalTargetPath ] && book=$2; shift; done\n"
        "folder=$(dirname \"$book\")\n[ -e \"$folder.away\" ] || { mv \"$folder\" \"$folder.away\"; mkdir \"$folder\"; }\n"
        "echo book > \"$book~\"; mv \"$book~\" \"$book\"\n");
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    QTRY_VERIFY_WITH_TIMEOUT(offered(service), 90000);
    // It was not built again and again.
    QCOMPARE(service.proposals().size(), 1);
    QCOMPARE(service.eventLog().filter(QStringLiteral("startAsService")).size(), 1);
    QVERIFY(service.log().contains(QStringLiteral("QUILLO_SERVICE: the change of the proposal folder was not reported")));
}

void tst_ServiceFailures::serviceEndsWhileTheBuilderRuns()
{
    ServiceUnderTest service;
    const QString folder = service.useOwnProgramFolder();
    const QString idFile = QDir::homePath() + QStringLiteral("/builder.pid");
    QFile::remove(idFile);
    putMainProgram(
        folder, "#!/bin/sh\necho $$ > \"$HOME/builder.pid~\"; mv \"$HOME/builder.pid~\" \"$HOME/builder.pid\"\nexec sleep 600\n");
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(idFile), 90000);
    const QString builder = QStringLiteral("/proc/") + QString::fromLatin1(readFile(idFile).trimmed());
    QVERIFY(QFile::exists(builder));
    // A recommendation meanwhile is dropped.
    VERIFY_LOGGED(QStringLiteral("QUILLO_SERVICE: QuilloDornRunner still running "));
    QCOMPARE(service.eventLog().filter(QStringLiteral("startAsService")).size(), 1);
    QVERIFY(writeFile(service.markerFolder() + QStringLiteral("/terminateQuilloService.txt"), ""));
    QCOMPARE(service.waitForEnd(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(builder) || readFile(builder + QStringLiteral("/stat")).contains(") Z "), 5000);
}

void tst_ServiceFailures::noBus()
{
    ServiceUnderTest service;
    service.environment().insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent/bus"));
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    QTRY_VERIFY_WITH_TIMEOUT(offered(service), 90000);
    QCOMPARE(service.proposals().size(), 1);
    QVERIFY(service.isRunning());
    QTRY_VERIFY(service.log().contains(QStringLiteral("warning")));
}

void tst_ServiceFailures::noNotificationServer()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    QTRY_VERIFY_WITH_TIMEOUT(offered(service), 90000);
    VERIFY_LOGGED(QStringLiteral("org.freedesktop.Notifications"));
    QVERIFY(service.isRunning());
    QCOMPARE(service.proposals().size(), 1);
}

void tst_ServiceFailures::serverThatComesBack()
{
    auto server = std::make_unique<MockNotificationServer>();
    QVERIFY(server->start());
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    QTRY_COMPARE_WITH_TIMEOUT(server->notifications().size(), 1, 90000);
    server.reset();
    server = std::make_unique<MockNotificationServer>();
    // The one that comes now shows no pictures in a text.
    server->setCapabilities({QStringLiteral("body"), QStringLiteral("actions")});
    QVERIFY(server->start());
    service.addPictures(QStringLiteral("2026-08-01 Sommerfest"), 7);
    QTRY_COMPARE_WITH_TIMEOUT(server->notifications().size(), 1, 90000);
    QCOMPARE(
        server->notifications().first().body, QStringLiteral("Ihr neuer, persönlicher Vorschlag für ein VELMORA ALBUMA wurde erstellt."));
}

void tst_ServiceFailures::hostileNames()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 \"Tom & Jule\": 100%1 'schön'\nzweite Zeile 🎉"), 7);
    service.addPictures(QStringLiteral("Mu\u0308nchen"), 2);
    service.addPictures(QStringLiteral("M\u00fcnchen"), 2);
    // Not UTF-8.
    const QByteArray latin1 = QFile::encodeName(service.picturesHome()) + "/M\xfcnchen";
    QCOMPARE(::mkdir(latin1.constData(), 0700), 0);
    QVERIFY(
        QFile::copy(QDir(service.picturesHome() + QStringLiteral("/M\u00fcnchen")).entryInfoList(QDir::Files).first().absoluteFilePath(),
            QDir::homePath() + QStringLiteral("/one.jpg")));
    QCOMPARE(::rename(QFile::encodeName(QDir::homePath() + QStringLiteral("/one.jpg")).constData(), (latin1 + "/\xff.jpg").constData()), 0);
    service.startQuick();
    QTRY_COMPARE_WITH_TIMEOUT(server.notifications().size(), 1, 90000);
    const QStringList used = NyFotoListRegistry::instance().getFotosForBookProposal().toUrlStringList();
    QCOMPARE(used.size(), 7);
    for (const QFileInfo &file : NyFotoListRegistry::instance().getFotosForBookProposal().toLocalFileInfoList())
        QVERIFY2(file.exists(), qPrintable(file.filePath()));
}

void tst_ServiceFailures::unreadableAndVanishingFolders()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.addPictures(QStringLiteral("2026-05-05 Geheim"), 3);
    service.addPictures(QStringLiteral("2026-06-06 Bald weg"), 3);
    const QString secret = service.picturesHome() + QStringLiteral("/2026-05-05 Geheim");
    QVERIFY(QFile::setPermissions(secret, QFile::Permissions()));
    service.startQuick();
    // Folders come and go while it scans every second.
    QElapsedTimer timer;
    timer.start();
    while (server.notifications().isEmpty() && timer.elapsed() < 90000) {
        service.addPictures(QStringLiteral("2026-06-06 Bald weg/innen"), 1);
        QDir(service.picturesHome() + QStringLiteral("/2026-06-06 Bald weg")).removeRecursively();
        QTest::qWait(20);
    }
    QCOMPARE(server.notifications().size(), 1);
    QVERIFY(service.isRunning());
    QVERIFY(QFile::setPermissions(secret, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void tst_ServiceFailures::linkLoops()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    const QString wedding = service.picturesHome() + QStringLiteral("/2026-07-11 Hochzeit");
    QVERIFY(QFile::link(service.picturesHome(), wedding + QStringLiteral("/up")));
    QVERIFY(QFile::link(wedding, wedding + QStringLiteral("/self")));
    QVERIFY(QFile::link(service.picturesHome() + QStringLiteral("/nowhere"), service.picturesHome() + QStringLiteral("/broken")));
    service.startQuick();
    QTRY_COMPARE_WITH_TIMEOUT(server.notifications().size(), 1, 90000);
}

void tst_ServiceFailures::brokenPictures()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    const QString wedding = service.picturesHome() + QStringLiteral("/2026-07-11 Hochzeit/");
    const QByteArray good = readFile(QDir(wedding).entryInfoList(QDir::Files).first().absoluteFilePath());
    QVERIFY(writeFile(wedding + QStringLiteral("empty.jpg"), ""));
    QVERIFY(writeFile(wedding + QStringLiteral("cut.jpg"), good.left(200)));
    QVERIFY(writeFile(wedding + QStringLiteral("text.jpg"), "this is no picture"));
    QVERIFY(writeFile(wedding + QStringLiteral("mislabelled.heic"), good));
    service.startQuick();
    QTRY_COMPARE_WITH_TIMEOUT(server.notifications().size(), 1, 90000);
    QCOMPARE(service.proposals().size(), 1);
}

void tst_ServiceFailures::missingPicturesHome()
{
    ServiceUnderTest service;
    QVERIFY(QDir(service.picturesHome()).removeRecursively());
    service.startQuick();
    VERIFY_LOGGED(scanned(0));
    // It is noticed as soon as it is there.
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    QTRY_VERIFY_WITH_TIMEOUT(offered(service), 90000);
}

void tst_ServiceFailures::fullDisk()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.writeConfiguration(ServiceUnderTest::quickSections());
    service.allowAutostart();
    const QByteArray folder = QFile::encodeName(dataFolder());
    if (::mount("tmpfs", folder.constData(), "tmpfs", 0, "size=512k") != 0)
        QSKIP("Mounting a small disk is not allowed here");
    const auto unmount = qScopeGuard([&] { ::umount2(folder.constData(), MNT_DETACH); });
    QDir().mkpath(service.proposalFolder());
    QFile filler(dataFolder() + QStringLiteral("/filler"));
    QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(4096, 'f')) == 4096) { }
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(service.output().contains("recommended fotos selected"), 90000);
    QTest::qWait(3000);
    QVERIFY(service.isRunning());
    QCOMPARE(service.proposals(), QStringList());
    // With room again, the proposal comes.
    QVERIFY(filler.remove());
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);
    ::umount2(folder.constData(), MNT_DETACH);
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(offered(service), 90000);
    QCOMPARE(service.proposals().size(), 1);
}

QTEST_MAIN(tst_ServiceFailures)
#include "tst_ServiceFailures.moc"
