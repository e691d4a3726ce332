#include "TestSupport.h"

#include <NyCommandLineOptionHandlerServiceMode.h>
#include <NyCommandLineOptionHandlerToastNotification.h>
#include <NyCommandLineParserQuilloService.h>
#include <NyGeneralSettings.h>
#include <NyLogMessageHandler.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceInitializer.h>
#include <NyQuilloServiceSettings.h>

#include <QProcess>
#include <QTest>

using namespace TestSupport;

class tst_NyCommandLineParserQuilloService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void letters_data();
    void letters();
    void handlersSetTheMode();
    void commandLine_data();
    void commandLine();
    void initializerLoadsSettingsAndLogsInTheServiceOnly();
};

void tst_NyCommandLineParserQuilloService::letters_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("expected");

    QTest::newRow("i") << QStringLiteral("i") << 1;
    QTest::newRow("word with i") << QStringLiteral("Install") << 1;
    QTest::newRow("u") << QStringLiteral("u") << 2;
    QTest::newRow("U") << QStringLiteral("U") << 2;
    QTest::newRow("z") << QStringLiteral("z") << 3;
    QTest::newRow("Zebra") << QStringLiteral("Zebra") << 3;
    QTest::newRow("s") << QStringLiteral("s") << 5;
    QTest::newRow("S") << QStringLiteral("S") << 5;
    QTest::newRow("n") << QStringLiteral("n") << 0;
    QTest::newRow("x") << QStringLiteral("x") << 0;
    QTest::newRow("letter above 255") << QStringLiteral("ı") << 0;
    QTest::newRow("capital that folds above 255") << QStringLiteral("Ī") << 0;
    QTest::newRow("same low byte as i") << QString(QChar(0x0169)) << 0;
    QTest::newRow("4") << QStringLiteral("4") << 0;
    QTest::newRow("blank") << QStringLiteral(" i") << 0;
}

void tst_NyCommandLineParserQuilloService::letters()
{
    QFETCH(QString, value);
    const NyCommandLineOptionHandlerServiceMode handler;
    QTEST(static_cast<int>(handler.mode(value)), "expected");
}

void tst_NyCommandLineParserQuilloService::handlersSetTheMode()
{
    NyQuilloServiceSettings &settings = NyQuilloServiceSettings::instance();
    NyCommandLineOptionHandlerServiceMode().optionUsed(QStringLiteral("u"));
    QCOMPARE(settings.serviceMode(), ServiceModeUninstall);
    NyCommandLineOptionHandlerToastNotification().optionUsed(QString());
    QCOMPARE(settings.serviceMode(), ServiceModeToastActivation);
    settings.setServiceMode(ServiceModeNormal);
}

void tst_NyCommandLineParserQuilloService::commandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output");

    const auto row = [](const char *name, const QStringList &arguments, const char *mode) {
        QTest::newRow(name) << arguments << 0 << QStringLiteral("mode %1").arg(QLatin1String(mode));
    };
    row("nothing", {}, "0");
    row("install", {QStringLiteral("--serviceMode"), QStringLiteral("i")}, "1");
    row("install with an equals sign", {QStringLiteral("--serviceMode=i")}, "1");
    row("capital U", {QStringLiteral("--serviceMode"), QStringLiteral("Uninstall")}, "2");
    row("capital Z", {QStringLiteral("--serviceMode"), QStringLiteral("Z")}, "3");
    row("capital S", {QStringLiteral("--serviceMode"), QStringLiteral("S")}, "5");
    row("x", {QStringLiteral("--serviceMode"), QStringLiteral("x")}, "0");
    row("empty value", {QStringLiteral("--serviceMode"), QString()}, "0");
    row("no value", {QStringLiteral("--serviceMode")}, "0");
    row("embedding", {QStringLiteral("--Embedding")}, "0");
    row("toast", {QStringLiteral("--ToastActivated")}, "4");
    row("toast, then mode", {QStringLiteral("--ToastActivated"), QStringLiteral("--serviceMode"), QStringLiteral("i")}, "1");
    row("mode, then toast", {QStringLiteral("--serviceMode"), QStringLiteral("i"), QStringLiteral("--ToastActivated")}, "4");
    QTest::newRow("help") << QStringList{QStringLiteral("--help")} << 0
                          << QStringLiteral("Switches the current Mode of the Service. n = normal; i = install; u = uninstall");
    QTest::newRow("unknown option") << QStringList{QStringLiteral("--unheardOf")} << 1 << QStringLiteral("unheardOf");
}

void tst_NyCommandLineParserQuilloService::commandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, output);
    // The parser reads the command line of its process, so it is tried in one of its own.
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("NY_TEST_PARSE"), QStringLiteral("1"));
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), arguments);
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    const QString text = QString::fromUtf8(process.readAll()).simplified();
    QVERIFY2(text.contains(output), qPrintable(text));
    QCOMPARE(process.exitCode(), exitCode);
}

void tst_NyCommandLineParserQuilloService::initializerLoadsSettingsAndLogsInTheServiceOnly()
{
    NyProgramConfig &program = NyProgramConfig::instance();
    program.setProgramID(NyProgramID::QuilloService);
    {
        NyQuilloServiceSettings other;
        other.increaseProductSuggestionCount();
        other.increaseProductSuggestionCount();
    }

    program.setProgramID(NyProgramID::MainProgram);
    NyQuilloServiceInitializer::me.setup(NyInitializerOption::MainWindow);
    qInfo() << "said in the main program";
    NyLogMessageHandler::instance().flushLogFile();
    QVERIFY(!QFile::exists(NyGeneralSettings::instance().logFile().absoluteFilePath()));

    program.setProgramID(NyProgramID::QuilloService);
    NyQuilloServiceSettings::instance().setServiceMode(ServiceModeReset);
    NyQuilloServiceInitializer::me.setup(NyInitializerOption::BackgroundService);
    QCOMPARE(NyQuilloServiceSettings::instance().productSuggestionCount(), 2);
    // Loading leaves the mode of the run alone.
    QCOMPARE(NyQuilloServiceSettings::instance().serviceMode(), ServiceModeReset);
    qInfo() << "said in the service";
    NyLogMessageHandler::instance().flushLogFile();
    const QByteArray log = readFile(NyGeneralSettings::instance().logFile().absoluteFilePath());
    QVERIFY(log.contains("said in the service"));
    QVERIFY(!log.contains("said in the main program"));
    NyLogMessageHandler::instance().setVerbose(false, QFileInfo());
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    if (qEnvironmentVariableIsSet("NY_TEST_PARSE")) {
        NyCommandLineParserQuilloService parser;
        parser.processCommandLine();
        fprintf(stdout, "mode %d\n", static_cast<int>(NyQuilloServiceSettings::instance().serviceMode()));
        return 0;
    }
    tst_NyCommandLineParserQuilloService test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NyCommandLineParserQuilloService.moc"
