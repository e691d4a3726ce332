#include "ServiceUnderTest.h"
#include "TestSupport.h"

#include <NyInstallationSettings.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceController.h>
#include <NyQuilloServiceSettings.h>

#include <QElapsedTimer>
#include <QTest>

#include <csignal>

using namespace TestSupport;

/** The modes of a run, the gate, and how a running service is ended. */
class tst_ServiceModes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aServiceThatIsNotAllowedEndsAtOnce();
    void windowlessRunsNeedNoDisplay_data();
    void windowlessRunsNeedNoDisplay();
    void textsComeAlone_data();
    void textsComeAlone();
    void install();
    void uninstall_data();
    void uninstall();
    void uninstallEndsARunningService();
    void reset();
    void autostartQuery();
    void firstCollection_data();
    void firstCollection();
    void normalRunWithoutDisplay();
    void normalRunDespiteWindowlessWords_data();
    void normalRunDespiteWindowlessWords();
    void brokenDisplay();
    void signals_data();
    void signals();
    void terminationFile();
    void terminationFileFromBeforeTheStart();
    void terminationFileInInstallMode();
    void toastActivationEndsByTerminationFile();
    void unknownOption();
    void aSecondServiceEnds_data();
    void aSecondServiceEnds();
    void toastActivationRunsBesideTheService();
    void aKilledServiceIsReplaced();
    void switchedOffAndOnAtOnce();
    void withoutALockFile();

private:
    static QString entryPath() { return QDir::homePath() + QStringLiteral("/.config/autostart/velmora.dorn.quillo.desktop"); }
    static QStringList mode(const QString &letter) { return {QStringLiteral("--serviceMode"), letter}; }
    static bool autostart() { return NyInstallationSettings::instance().autoStartService(); }
    static bool isUp(const ServiceUnderTest &service)
    {
        return !service.eventLog().filter(QStringLiteral("runService VALUES:")).isEmpty() && service.isRunning();
    }
    static bool isRunningNormally(ServiceUnderTest &service) { return isUp(service) && service.output().contains("observing path"); }
};

void tst_ServiceModes::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
}

void tst_ServiceModes::aServiceThatIsNotAllowedEndsAtOnce()
{
    ServiceUnderTest service;
    QCOMPARE(service.run(), 0);
    QVERIFY(service.output().contains("Running not allowed by settings!"));
    QCOMPARE(service.eventLog(), QStringList());
    QCOMPARE(service.run(mode(QStringLiteral("n"))), 0);
    QCOMPARE(service.eventLog(), QStringList());
}

void tst_ServiceModes::windowlessRunsNeedNoDisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("output");
    QTest::newRow("--help") << QStringList{QStringLiteral("--help")} << QByteArray("--serviceMode");
    QTest::newRow("-h") << QStringList{QStringLiteral("-h")} << QByteArray("ToastActivated");
    QTest::newRow("--version") << QStringList{QStringLiteral("--version")} << QByteArray("quilloservice");
    QTest::newRow("uninstall") << mode(QStringLiteral("u")) << QByteArray();
    QTest::newRow("reset") << mode(QStringLiteral("Z")) << QByteArray();
    QTest::newRow("query") << QStringList{QStringLiteral("--serviceMode=s")} << QByteArray();
    QTest::newRow("gate") << QStringList() << QByteArray("Running not allowed by settings!");
}

void tst_ServiceModes::windowlessRunsNeedNoDisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, output);
    ServiceUnderTest service;
    service.environment().remove(QStringLiteral("QT_QPA_PLATFORM"));
    QCOMPARE(service.run(arguments), 0);
    QVERIFY2(service.output().contains(output), service.output().constData());
}

void tst_ServiceModes::textsComeAlone_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QByteArray>("begin");
    QTest::newRow("help") << QStringLiteral("--help") << QByteArray("Usage: ");
    QTest::newRow("version") << QStringLiteral("--version") << QByteArray("quilloservice ");
}

void tst_ServiceModes::textsComeAlone()
{
    QFETCH(QString, option);
    QFETCH(QByteArray, begin);
    ServiceUnderTest service;
    // Without a bus, a service that starts would say so; the first folder that one makes is the marker folder.
    service.environment().insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent/bus"));
    QVERIFY(QDir(service.markerFolder()).removeRecursively());
    QCOMPARE(service.run({option}), 0);
    QVERIFY2(service.output().startsWith(begin), service.output().constData());
    QVERIFY2(!service.output().contains("Launching"), service.output().constData());
    QVERIFY2(!service.output().contains("session bus"), service.output().constData());
    QVERIFY(!QFile::exists(service.markerFolder()));
}

void tst_ServiceModes::install()
{
    ServiceUnderTest service;
    service.start(mode(QStringLiteral("i")));
    QTRY_VERIFY_WITH_TIMEOUT(isUp(service), 30000);
    QTRY_VERIFY(QFile::exists(entryPath()));
    QVERIFY(readFile(entryPath()).contains("Exec=\"" + QFile::encodeName(service.binary(QStringLiteral("quilloservice"))) + "\"\n"));
    QTRY_VERIFY(autostart());
    // The setting is stored before it is recorded.
    QTRY_COMPARE(service.eventLog(),
        (QStringList{QStringLiteral("runService VALUES:--serviceMode;i"), QStringLiteral("setAutoStartService VALUE:1 SOURCE:service")}));
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);
    // Allowed from now on.
    service.start();
    QTRY_COMPARE(service.eventLog().last(), QStringLiteral("runService VALUES:"));
    QVERIFY(service.isRunning());
}

void tst_ServiceModes::uninstall_data()
{
    QTest::addColumn<bool>("isOn");
    QTest::newRow("while autostart is on") << true;
    QTest::newRow("while autostart is off already") << false;
}

void tst_ServiceModes::uninstall()
{
    QFETCH(bool, isOn);
    ServiceUnderTest service;
    if (isOn)
        service.allowAutostart();
    QCOMPARE(autostart(), isOn);
    QVERIFY(writeFile(entryPath(), "[Desktop Entry]\n"));
    QDir().mkpath(service.markerFolder());
    QCOMPARE(service.run(mode(QStringLiteral("u"))), 0);
    QVERIFY(!QFile::exists(entryPath()));
    QVERIFY(!autostart());
    QVERIFY(QFile::exists(NyQuilloServiceController::terminationFilePath()));
    QCOMPARE(service.eventLog(),
        (QStringList{QStringLiteral("runService VALUES:--serviceMode;u"), QStringLiteral("setAutoStartService VALUE:0 SOURCE:service")}));
}

void tst_ServiceModes::uninstallEndsARunningService()
{
    ServiceUnderTest running;
    running.start(mode(QStringLiteral("i")));
    QTRY_VERIFY_WITH_TIMEOUT(isUp(running), 30000);
    QProcess other;
    other.start(running.binary(QStringLiteral("quilloservice")), mode(QStringLiteral("u")));
    QVERIFY(other.waitForFinished(30000));
    QCOMPARE(other.exitCode(), 0);
    QCOMPARE(running.waitForEnd(), 0);
    QVERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
    QVERIFY(!running.eventLog().contains(QStringLiteral("quit")));
}

void tst_ServiceModes::reset()
{
    ServiceUnderTest service;
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    {
        NyQuilloServiceSettings settings;
        settings.increaseProductSuggestionCount();
        settings.setLastProductSuggestionDate(QDateTime::currentDateTime());
        settings.setNextToastRepeat(QDate(2026, 12, 24));
    }
    QCOMPARE(service.run(mode(QStringLiteral("z"))), 0);
    NyQuilloServiceSettings settings;
    settings.loadSettings();
    QCOMPARE(settings.productSuggestionCount(), 0);
    QVERIFY(settings.lastProductSuggestionDate() < QDateTime::currentDateTime().addDays(-364));
    QCOMPARE(settings.nextToastRepeat(), QDate(2026, 12, 24));
    QCOMPARE(service.eventLog(), QStringList{QStringLiteral("runService VALUES:--serviceMode;z")});
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
}

void tst_ServiceModes::autostartQuery()
{
    ServiceUnderTest service;
    QCOMPARE(service.run(mode(QStringLiteral("s"))), 0);
    service.allowAutostart();
    QCOMPARE(service.run(mode(QStringLiteral("s"))), 1);
    QVERIFY(!QFile::exists(entryPath()));
}

void tst_ServiceModes::firstCollection_data()
{
    QTest::addColumn<QByteArray>("sections");
    QTest::addColumn<int>("factor");
    QTest::addColumn<int>("waitS");
    QTest::newRow("after ten minutes") << QByteArray() << 60 << 600;
    QTest::newRow("after five seconds with debugging features") << QByteArray("<debug enabled='true'/>") << 1 << 5;
}

void tst_ServiceModes::firstCollection()
{
    QFETCH(QByteArray, sections);
    QFETCH(int, factor);
    QFETCH(int, waitS);
    if (!ServiceUnderTest::hasFakeTime())
        QSKIP("libfaketime is not installed");
    ServiceUnderTest service;
    service.writeConfiguration(sections);
    service.allowAutostart();
    if (factor > 1)
        service.quickenTime(factor);
    QElapsedTimer sinceStart;
    sinceStart.start();
    service.start();
    const QByteArray line = "QUILLO_SERVICE: starting first check for recent files";
    QTRY_VERIFY_WITH_TIMEOUT(service.output().contains(line), 1000 * waitS / factor + 10000);
    // A coarse timer keeps to its time within 5 %.
    QVERIFY2(sinceStart.elapsed() >= 950 * waitS / factor, qPrintable(QString::number(sinceStart.elapsed())));
}

void tst_ServiceModes::normalRunWithoutDisplay()
{
    ServiceUnderTest service;
    service.allowAutostart();
    service.environment().remove(QStringLiteral("QT_QPA_PLATFORM"));
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(isUp(service), 30000);
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);
}

void tst_ServiceModes::normalRunDespiteWindowlessWords_data()
{
    QTest::addColumn<QStringList>("arguments");
    const auto row = [](const char *arguments) { QTest::newRow(arguments) << QString::fromLatin1(arguments).split(QLatin1Char(' ')); };
    row("help");
    row("--serviceMode h");
    row("--serviceMode --help");
    row("-- --help");
    row("--serviceMode i -- --serviceMode u");
    row("--serviceMode u --serviceMode i");
    row("--serviceMode=z --serviceMode=n");
    row("--serviceMode u --ToastActivated");
}

void tst_ServiceModes::normalRunDespiteWindowlessWords()
{
    QFETCH(QStringList, arguments);
    ServiceUnderTest service;
    service.allowAutostart();
    service.environment().remove(QStringLiteral("QT_QPA_PLATFORM"));
    service.start(arguments);
    QTRY_VERIFY_WITH_TIMEOUT(isUp(service), 30000);
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);
}

void tst_ServiceModes::brokenDisplay()
{
    ServiceUnderTest service;
    service.allowAutostart();
    service.environment().remove(QStringLiteral("QT_QPA_PLATFORM"));
    service.environment().insert(QStringLiteral("DISPLAY"), QStringLiteral(":4711"));
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(isUp(service), 30000);
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);
}

void tst_ServiceModes::signals_data()
{
    QTest::addColumn<int>("signalNumber");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void tst_ServiceModes::signals()
{
    QFETCH(int, signalNumber);
    ServiceUnderTest service;
    service.allowAutostart();
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(isUp(service), 30000);
    QCOMPARE(::kill(static_cast<pid_t>(service.processId()), signalNumber), 0);
    QCOMPARE(service.waitForEnd(), 0);
    QCOMPARE(service.eventLog().last(), QStringLiteral("quit"));
    QVERIFY(service.log().contains(QStringLiteral("QUILLO_SERVICE: Good Bye.")));
}

void tst_ServiceModes::terminationFile()
{
    ServiceUnderTest service;
    service.allowAutostart();
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(isUp(service), 30000);
    NyQuilloServiceController::quitRunningService();
    QCOMPARE(service.waitForEnd(), 0);
    QVERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
    QCOMPARE(service.eventLog().last(), QStringLiteral("watchFileChanged"));
    // What was logged before the abrupt end is in the file.
    QVERIFY(service.log().contains(QStringLiteral("removing")));
}

void tst_ServiceModes::terminationFileFromBeforeTheStart()
{
    ServiceUnderTest service;
    service.allowAutostart();
    QDir().mkpath(service.markerFolder());
    NyQuilloServiceController::quitRunningService();
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(isUp(service), 30000);
    QVERIFY(QFile::exists(NyQuilloServiceController::terminationFilePath()));
    // Any change in the folder makes it look.
    QVERIFY(writeFile(service.markerFolder() + QStringLiteral("/something"), "x"));
    QCOMPARE(service.waitForEnd(), 0);
    QVERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
}

void tst_ServiceModes::terminationFileInInstallMode()
{
    ServiceUnderTest service;
    service.start(mode(QStringLiteral("i")));
    QTRY_VERIFY_WITH_TIMEOUT(isUp(service), 30000);
    // Installing lasts only until the run is a normal one.
    NyQuilloServiceController::quitRunningService();
    QCOMPARE(service.waitForEnd(), 0);
}

void tst_ServiceModes::toastActivationEndsByTerminationFile()
{
    ServiceUnderTest service;
    service.start({QStringLiteral("--ToastActivated")});
    QTRY_VERIFY_WITH_TIMEOUT(isUp(service), 30000);
    NyQuilloServiceController::handlePicturesHomeChange();
    QTRY_VERIFY(!QFile::exists(NyQuilloServiceController::markerFilePathForPicturesHome()));
    QVERIFY(service.isRunning());
    NyQuilloServiceController::quitRunningService();
    QCOMPARE(service.waitForEnd(), 0);
}

void tst_ServiceModes::unknownOption()
{
    ServiceUnderTest service;
    QCOMPARE(service.run({QStringLiteral("--weird")}), 1);
    QVERIFY(service.output().contains("weird"));
    QCOMPARE(service.eventLog(), QStringList());
}

void tst_ServiceModes::aSecondServiceEnds_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("entryIsMade");
    QTest::newRow("normal") << QStringList() << false;
    QTest::newRow("normal by letter") << mode(QStringLiteral("n")) << false;
    QTest::newRow("install") << mode(QStringLiteral("i")) << true;
}

void tst_ServiceModes::aSecondServiceEnds()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, entryIsMade);
    ServiceUnderTest service;
    service.allowAutostart();
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(isRunningNormally(service), 30000);
    QProcess second;
    second.setProcessChannelMode(QProcess::MergedChannels);
    second.start(service.binary(QStringLiteral("quilloservice")), arguments);
    QVERIFY(second.waitForFinished(15000));
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.exitCode(), 0);
    const QByteArray output = second.readAll();
    const QByteArray line
        = "another service of this user is running already, this one ends. Process: " + QByteArray::number(service.processId());
    QVERIFY2(output.contains(line), output.constData());
    QVERIFY2(!output.contains("observing path"), output.constData());
    QCOMPARE(QFile::exists(entryPath()), entryIsMade);
    QVERIFY(autostart());
    // The first one goes on, and still hears what it is told.
    QVERIFY(service.isRunning());
    QVERIFY(!service.eventLog().contains(QStringLiteral("quit")));
    NyQuilloServiceController::quitRunningService();
    QCOMPARE(service.waitForEnd(), 0);
}

void tst_ServiceModes::toastActivationRunsBesideTheService()
{
    ServiceUnderTest service;
    service.allowAutostart();
    service.start({QStringLiteral("--ToastActivated")});
    QTRY_VERIFY_WITH_TIMEOUT(isUp(service), 30000);
    QProcess normal;
    normal.setProcessChannelMode(QProcess::MergedChannels);
    normal.start(service.binary(QStringLiteral("quilloservice")), QStringList());
    QByteArray output;
    QTRY_VERIFY_WITH_TIMEOUT((output += normal.readAll()).contains("observing path"), 30000);
    QProcess another;
    another.start(service.binary(QStringLiteral("quilloservice")), {QStringLiteral("--ToastActivated")});
    QTRY_COMPARE_WITH_TIMEOUT(service.eventLog().filter(QStringLiteral("runService VALUES:--ToastActivated")).size(), 2, 30000);
    QVERIFY(service.isRunning());
    for (QProcess *process : {&normal, &another}) {
        QCOMPARE(process->state(), QProcess::Running);
        process->terminate();
        QVERIFY(process->waitForFinished(30000));
    }
}

void tst_ServiceModes::aKilledServiceIsReplaced()
{
    ServiceUnderTest service;
    service.allowAutostart();
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(isRunningNormally(service), 30000);
    QTRY_COMPARE_WITH_TIMEOUT(service.output().count("observing path: "), 1, 30000);
    QCOMPARE(::kill(static_cast<pid_t>(service.processId()), SIGKILL), 0);
    QCOMPARE(service.waitForEnd(), -1001);
    service.start();
    QTRY_COMPARE_WITH_TIMEOUT(service.output().count("observing path: "), 2, 30000);
    QVERIFY(!service.output().contains("another service"));
    QVERIFY(service.isRunning());
}

void tst_ServiceModes::switchedOffAndOnAtOnce()
{
    ServiceUnderTest service;
    service.allowAutostart();
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(isRunningNormally(service), 30000);
    // The first one ends only when it gets to run again, after the second one has come.
    QCOMPARE(::kill(static_cast<pid_t>(service.processId()), SIGSTOP), 0);
    NyQuilloServiceController::quitRunningService();
    QProcess second;
    second.setProcessChannelMode(QProcess::MergedChannels);
    second.start(service.binary(QStringLiteral("quilloservice")), mode(QStringLiteral("i")));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(entryPath()), 30000);
    QCOMPARE(::kill(static_cast<pid_t>(service.processId()), SIGCONT), 0);
    QCOMPARE(service.waitForEnd(), 0);
    QByteArray output;
    QTRY_VERIFY_WITH_TIMEOUT((output += second.readAll()).contains("observing path"), 30000);
    second.terminate();
    QVERIFY(second.waitForFinished(30000));
    QCOMPARE(second.exitCode(), 0);
}

void tst_ServiceModes::withoutALockFile()
{
    ServiceUnderTest service;
    service.allowAutostart();
    QVERIFY(QDir().mkpath(dataFolder() + QStringLiteral("/quilloservice.lock")));
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(isRunningNormally(service), 30000);
    QVERIFY2(service.output().contains("another service would not be noticed, cannot open:"), service.output().constData());
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);
}

QTEST_GUILESS_MAIN(tst_ServiceModes)
#include "tst_ServiceModes.moc"
