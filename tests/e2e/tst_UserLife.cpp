#include "DesktopUser.h"
#include "ServiceUnderTest.h"
#include "TestSupport.h"

#include <NyInstallationSettings.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceController.h>
#include <NyRunningServiceLock.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QImage>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace TestSupport;

/**
 * The whole life of a user with both programs, by clicks on a display with window manager, tray and notifications: from the switch in
 * the settings to the proposal on the start screen, and until everything is switched off again. Pictures of all steps are kept.
 */
class tst_UserLife : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void fromSwitchingOnToSwitchingOff();
    void cleanup();

private:
    using Thing = DesktopUser::Thing;

    static QString entryPath() { return QDir::homePath() + QStringLiteral("/.config/autostart/velmora.dorn.quillo.desktop"); }
    static int notifications(const QString &kind)
    {
        QProcess process;
        process.start(QStringLiteral("dunstctl"), {QStringLiteral("count"), kind});
        return process.waitForFinished(5000) ? process.readAllStandardOutput().trimmed().toInt() : -1;
    }
    static DesktopUser::Condition listItem(const QString &part)
    {
        return [part](const Thing &thing) { return thing.role == QStringLiteral("list item") && thing.name.contains(part); };
    }
    static DesktopUser::Condition text(const QString &part)
    {
        return [part](const Thing &thing) { return thing.name.contains(part); };
    }
    static DesktopUser::Condition checked(const QString &name)
    {
        return [name](const Thing &thing) { return thing.isChecked && thing.name == name; };
    }
    /** Whether the tray shows the service's icon: its red among the lowest lines of the screen. */
    bool isIconInTray() const;
    bool openSettings();
    bool isServiceGone() const;

    QTemporaryDir m_folder;
    std::unique_ptr<DesktopUser> m_user;
    std::unique_ptr<ServiceUnderTest> m_machine;
    std::unique_ptr<QProcess> m_mainProgram;
};

void tst_UserLife::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    QVERIFY(!qEnvironmentVariableIsEmpty("DISPLAY"));
}

void tst_UserLife::init()
{
    m_user = std::make_unique<DesktopUser>(QStringLiteral(NY_SCREENSHOT_DIR));
    QVERIFY(m_user->sitDown());
    const QString dunstrc = m_folder.filePath(QStringLiteral("dunstrc"));
    QVERIFY(writeFile(dunstrc, "[global]\n    markup = full\n    width = 400\n    font = DejaVu Sans 10\n    idle_threshold = 0\n"));
    QVERIFY(m_user->startPart(QStringLiteral("dunst"), {QStringLiteral("-conf"), dunstrc}));
    QVERIFY(m_user->startPart(
        QStringLiteral("trayer"), {QStringLiteral("--edge"), QStringLiteral("bottom"), QStringLiteral("--height"), QStringLiteral("24")}));
    QTRY_VERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(QStringLiteral("org.freedesktop.Notifications")));
    // The tray takes its edge of the screen before windows are placed.
    QTRY_VERIFY(DesktopUser::showsWindow(QStringLiteral("trayer")));

    // A machine with pictures, and a user who has never started any of this.
    m_machine = std::make_unique<ServiceUnderTest>();
    m_machine->addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    m_machine->addPictures(QStringLiteral("../Andere Fotos/2026-08-01 Sommerfest"), 7);
    m_machine->writeConfiguration(ServiceUnderTest::quickSections());
    m_mainProgram = std::make_unique<QProcess>();
    m_mainProgram->setProcessChannelMode(QProcess::ForwardedChannels);
    m_mainProgram->start(m_machine->binary(QStringLiteral("VELMORA ALBUMA")), QStringList());
    QVERIFY(m_mainProgram->waitForStarted());
}

void tst_UserLife::cleanup()
{
    // A service that the main program started is nobody's child.
    if (!isServiceGone())
        NyQuilloServiceController::quitRunningService();
    QTRY_VERIFY_WITH_TIMEOUT(isServiceGone(), 30000);
    if (m_mainProgram->state() != QProcess::NotRunning) {
        m_mainProgram->terminate();
        QVERIFY(m_mainProgram->waitForFinished(30000));
    }
    m_mainProgram.reset();
    m_machine.reset();
    m_user.reset();
}

bool tst_UserLife::isIconInTray() const
{
    const QImage screen(m_user->screen());
    for (int y = screen.height() - 24; y < screen.height(); ++y) {
        for (int x = 0; x < screen.width(); ++x) {
            if (screen.pixelColor(x, y) == QColor(0xc3, 0x0c, 0x15))
                return true;
        }
    }
    return false;
}

bool tst_UserLife::isServiceGone() const
{
    return NyRunningServiceLock().acquire(0);
}

bool tst_UserLife::openSettings()
{
    return m_user->click(QStringLiteral("menu item"), QStringLiteral("Datei"))
        && m_user->click(QStringLiteral("menu item"), QStringLiteral("Einstellungen …"));
}

void tst_UserLife::fromSwitchingOnToSwitchingOff()
{
    const QString mainSwitch = QStringLiteral("Ja, ich möchte automatische Produktvorschläge erhalten.");
    const QString notify = QStringLiteral("Bei neuen Produktvorschlägen benachrichtigen.");
    const QString checkBox = QStringLiteral("check box");
    const QString button = QStringLiteral("push button");
    const QString ok = QStringLiteral("OK");

    QVERIFY(m_user->waitFor(text(QStringLiteral("Automatische Produktvorschläge sind ausgeschaltet"))));
    m_user->look(QStringLiteral("first-start"));

    // Switched on.
    QVERIFY(openSettings());
    QVERIFY(m_user->click(checkBox, mainSwitch));
    QVERIFY(m_user->waitFor(checked(mainSwitch)));
    m_user->look(QStringLiteral("settings-on"));
    QVERIFY(m_user->click(button, ok));
    QVERIFY(m_user->waitUntilGone(checkBox, mainSwitch));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(entryPath()), 90000);
    QTRY_VERIFY_WITH_TIMEOUT(isIconInTray(), 90000);
    m_user->look(QStringLiteral("tray-icon"));

    // The proposal is made, told and shown.
    QTRY_COMPARE_WITH_TIMEOUT(notifications(QStringLiteral("displayed")), 1, 90000);
    QVERIFY(m_user->waitFor(listItem(QStringLiteral("Hochzeit"))));
    QVERIFY(m_user->waitFor(text(QStringLiteral("1 neu"))));
    m_user->look(QStringLiteral("proposal"));
    const std::optional<Thing> item = m_user->find(listItem(QStringLiteral("Hochzeit")));
    QVERIFY2(item->name.startsWith(QStringLiteral("Neu: ")), qPrintable(item->name));
    // Its preview is a picture, not an empty box.
    QTRY_VERIFY_WITH_TIMEOUT(m_user->coloursAt(item->place) > 500, 30000);

    // Opened, looked at, closed; the start screen comes back where it was.
    const std::optional<Thing> former = m_user->find(button, QStringLiteral("Buch öffnen"));
    QVERIFY(former);
    QVERIFY(m_user->doubleClickOn(listItem(QStringLiteral("Hochzeit"))));
    QVERIFY(m_user->waitFor(button, QStringLiteral("Weiter  ›")));
    m_user->look(QStringLiteral("book"));
    QVERIFY(m_user->click(button, QStringLiteral("Weiter  ›")));
    m_user->look(QStringLiteral("book-spread"));
    QVERIFY(m_user->click(QStringLiteral("menu item"), QStringLiteral("Datei")));
    QVERIFY(m_user->click(QStringLiteral("menu item"), QStringLiteral("Zu den Vorschlägen")));
    QVERIFY(m_user->waitFor(listItem(QStringLiteral("Hochzeit"))));
    QVERIFY(m_user->waitUntilGone(text(QStringLiteral("1 neu"))));
    m_user->look(QStringLiteral("read"));
    QVERIFY(m_user->waitFor([&](const Thing &thing) { return thing.name == former->name && thing.place == former->place; }));

    // Deleted, after a question.
    const QString proposal = m_machine->proposals().value(0);
    QVERIFY(!proposal.isEmpty());
    QVERIFY(m_user->clickOn(listItem(QStringLiteral("Hochzeit"))));
    QVERIFY(m_user->click(button, QStringLiteral("Vorschlag löschen")));
    QVERIFY(m_user->waitFor(text(QStringLiteral("wirklich löschen?"))));
    m_user->look(QStringLiteral("question"));
    QVERIFY(QFile::exists(m_machine->proposalFolder() + QLatin1Char('/') + proposal));
    QVERIFY(m_user->click(button, QStringLiteral("Ja")));
    QVERIFY(m_user->waitUntilGone(listItem(QStringLiteral("Hochzeit"))));
    QCOMPARE(QDir(m_machine->proposalFolder()).entryList({proposal + QLatin1Char('*')}, QDir::Files), QStringList());
    m_user->look(QStringLiteral("deleted"));

    // Other pictures, and no more notifications.
    QProcess::execute(QStringLiteral("dunstctl"), {QStringLiteral("close-all")});
    QTRY_COMPARE(notifications(QStringLiteral("displayed")), 0);
    const int toldSoFar = notifications(QStringLiteral("history"));
    const QString otherFolder = QDir::homePath() + QStringLiteral("/Andere Fotos");
    QVERIFY(openSettings());
    QVERIFY(m_user->click(checkBox, notify));
    QVERIFY(m_user->write(QStringLiteral("Ordner mit Ihren Fotos"), otherFolder));
    QVERIFY(m_user->waitUntilGone(checked(notify)));
    m_user->look(QStringLiteral("settings-changed"));
    QVERIFY(m_user->click(button, ok));
    QVERIFY(m_user->waitUntilGone(checkBox, mainSwitch));
    QTRY_VERIFY(!QFile::exists(NyQuilloServiceController::markerFilePathForPicturesHome()));
    QTRY_COMPARE_WITH_TIMEOUT(m_machine->eventLog().count(QStringLiteral("showCreationResults")), 2, 90000);
    QVERIFY(m_user->waitFor(listItem(QStringLiteral("Sommerfest"))));
    m_user->look(QStringLiteral("second-proposal"));
    const QString change = QStringLiteral("QUILLO_SERVICE: observing path changed from  \"%1\" to \"%2\"");
    QVERIFY(m_machine->log().contains(change.arg(m_machine->picturesHome(), otherFolder)));

    // Switched off.
    QVERIFY(openSettings());
    QVERIFY(m_user->click(checkBox, mainSwitch));
    QVERIFY(m_user->waitUntilGone(checked(mainSwitch)));
    m_user->look(QStringLiteral("settings-off"));
    QVERIFY(m_user->click(button, ok));
    QVERIFY(m_user->waitUntilGone(checkBox, mainSwitch));
    QTRY_VERIFY_WITH_TIMEOUT(isServiceGone(), 90000);
    QVERIFY(!QFile::exists(entryPath()));
    QVERIFY(!NyInstallationSettings().autoStartService());
    QTRY_VERIFY_WITH_TIMEOUT(!isIconInTray(), 90000);
    // The service has done all that it would do: nothing was told about the second proposal.
    QCOMPARE(notifications(QStringLiteral("displayed")), 0);
    QCOMPARE(notifications(QStringLiteral("waiting")), 0);
    QCOMPARE(notifications(QStringLiteral("history")), toldSoFar);
    m_user->look(QStringLiteral("off"));

    QVERIFY(m_user->click(QStringLiteral("menu item"), QStringLiteral("Datei")));
    QVERIFY(m_user->click(QStringLiteral("menu item"), QStringLiteral("Beenden")));
    QVERIFY(m_mainProgram->waitForFinished(30000));
    QCOMPARE(m_mainProgram->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_mainProgram->exitCode(), 0);
}

QTEST_GUILESS_MAIN(tst_UserLife)
#include "tst_UserLife.moc"
