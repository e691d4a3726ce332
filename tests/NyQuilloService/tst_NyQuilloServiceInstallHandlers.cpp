#include "TestSupport.h"

#include <NyInstallationSettings.h>
#include <NyKeyAccount.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceController.h>
#include <NyQuilloServiceInstallHandler.h>
#include <NyQuilloServiceInstallHandlerDefault.h>
#include <NyQuilloServiceInstallHandlerLinux.h>
#include <NyVersionConfig.h>

#include <QTest>

using namespace TestSupport;

class tst_NyQuilloServiceInstallHandlers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void paths();
    void installWritesTheEntry();
    void installTwice();
    void installMakesTheFolders();
    void installReplacesAnOldEntry();
    void failedInstallTurnsAutostartOff();
    void uninstall();
    void uninstallOfNothing();
    void defaultHandlerOnlyWarns();

private:
    QString m_entry;
};

void tst_NyQuilloServiceInstallHandlers::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    m_entry = QDir::homePath() + QStringLiteral("/.config/autostart/velmora.dorn.quillo.desktop");
}

void tst_NyQuilloServiceInstallHandlers::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    QDir(QDir::homePath() + QStringLiteral("/.config")).removeRecursively();
    QFile::remove(dataFolder() + QStringLiteral("/log/quilloservice-events.log"));
    NyQuilloServiceController::markerDir().mkpath(QStringLiteral("."));
    NyQuilloServiceController::unquitRunningService();
}

void tst_NyQuilloServiceInstallHandlers::paths()
{
    // The place of the entry is fixed: another place for configuration does not move it.
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(QDir::homePath() + QStringLiteral("/elsewhere")));
    const NyQuilloServiceInstallHandlerLinux handler;
    QCOMPARE(handler.configPath(), QDir::homePath() + QStringLiteral("/.config"));
    QCOMPARE(handler.autoStartPath(), QDir::homePath() + QStringLiteral("/.config/autostart"));
    QCOMPARE(handler.autoStartFileInfo().absoluteFilePath(), m_entry);
    QCOMPARE(handler.executablePath(), QCoreApplication::applicationFilePath());
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(QDir::homePath() + QStringLiteral("/.config")));
}

void tst_NyQuilloServiceInstallHandlers::installWritesTheEntry()
{
    NyQuilloServiceInstallHandler handler;
    QVERIFY(!handler.isInstalled());
    handler.install();
    QVERIFY(handler.isInstalled());
    const QString expected = QStringLiteral("[Desktop Entry]\nExec=\"") + QCoreApplication::applicationFilePath()
        + QStringLiteral("\"\nIcon=dorn-") + QString::number(NyKeyAccount::instance().keyAccountId().id()) + QStringLiteral("-")
        + NyVersionConfig::instance().versionString()
        + QStringLiteral("\nName=VELMORA Hintergrunddienst\nType=Application\nX-GNOME-Autostart-enabled=true\nX-GNOME-Autostart-Delay=0\n");
    QCOMPARE(QString::fromUtf8(readFile(m_entry)), expected);
    QVERIFY(NyInstallationSettings::instance().autoStartService());
    QCOMPARE(eventLog(), QStringList{QStringLiteral("setAutoStartService VALUE:1 SOURCE:service")});
}

void tst_NyQuilloServiceInstallHandlers::installTwice()
{
    NyQuilloServiceInstallHandler().install();
    const QByteArray first = readFile(m_entry);
    NyQuilloServiceInstallHandler().install();
    QCOMPARE(readFile(m_entry), first);
    QCOMPARE(QFileInfo(m_entry).dir().entryList(QDir::Files).size(), 1);
}

void tst_NyQuilloServiceInstallHandlers::installMakesTheFolders()
{
    QVERIFY(!QFileInfo::exists(QDir::homePath() + QStringLiteral("/.config")));
    QVERIFY(NyQuilloServiceInstallHandlerLinux().createAutoStartFile());
    QVERIFY(QFileInfo::exists(m_entry));
}

void tst_NyQuilloServiceInstallHandlers::installReplacesAnOldEntry()
{
    QVERIFY(writeFile(m_entry, "[Desktop Entry]\nExec=\"/old/place\"\nIcon=dorn-1-0.0.1\n" + QByteArray(500, '#')));
    NyQuilloServiceInstallHandler().install();
    const QByteArray entry = readFile(m_entry);
    QVERIFY(entry.contains(QFile::encodeName(QCoreApplication::applicationFilePath())));
    QVERIFY(!entry.contains("/old/place"));
    QVERIFY(!entry.contains("#"));
}

void tst_NyQuilloServiceInstallHandlers::failedInstallTurnsAutostartOff()
{
    NyInstallationSettings::instance().setAutoStartService(true, true);
    // A folder in the place of the entry cannot be replaced by a file.
    QVERIFY(QDir().mkpath(m_entry + QStringLiteral("/taken")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("velmora\\.dorn\\.quillo\\.desktop")));
    NyQuilloServiceInstallHandler().install();
    QVERIFY(!NyInstallationSettings::instance().autoStartService());
    QCOMPARE(eventLog(), QStringList{QStringLiteral("setAutoStartService VALUE:0 SOURCE:service")});
}

void tst_NyQuilloServiceInstallHandlers::uninstall()
{
    NyQuilloServiceInstallHandler handler;
    handler.install();
    handler.uninstall();
    QVERIFY(!handler.isInstalled());
    QVERIFY(!QFile::exists(m_entry));
    QVERIFY(!NyInstallationSettings::instance().autoStartService());
    QVERIFY(QFile::exists(NyQuilloServiceController::terminationFilePath()));
    QCOMPARE(eventLog().last(), QStringLiteral("setAutoStartService VALUE:0 SOURCE:service"));
}

void tst_NyQuilloServiceInstallHandlers::uninstallOfNothing()
{
    NyQuilloServiceInstallHandler().uninstall();
    QVERIFY(!NyInstallationSettings::instance().autoStartService());
    QCOMPARE(eventLog(), QStringList{QStringLiteral("setAutoStartService VALUE:0 SOURCE:service")});
    QVERIFY(QFile::exists(NyQuilloServiceController::terminationFilePath()));
}

void tst_NyQuilloServiceInstallHandlers::defaultHandlerOnlyWarns()
{
    NyQuilloServiceInstallHandlerDefault handler;
    QTest::ignoreMessage(QtWarningMsg, "NyQuilloServiceInstallHandlerInterface::install not implemented on this platform.");
    handler.install();
    QVERIFY(!handler.isInstalled());
    QTest::ignoreMessage(QtWarningMsg, "NyQuilloServiceInstallHandlerInterface::uninstall not implemented on this platform.");
    handler.uninstall();
    QVERIFY(!handler.isInstalled());
    QCOMPARE(eventLog(), QStringList());
    QVERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
}

QTEST_GUILESS_MAIN(tst_NyQuilloServiceInstallHandlers)
#include "tst_NyQuilloServiceInstallHandlers.moc"
