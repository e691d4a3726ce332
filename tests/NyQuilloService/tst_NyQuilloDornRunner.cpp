#include "FakeMainProgram.h"
#include "TestSupport.h"

#include <NyInstallationSettings.h>
#include <NyProgramConfig.h>
#include <NyQuilloDornRunner.h>

#include <QTest>

using namespace TestSupport;

class tst_NyQuilloDornRunner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void programBesideTheService();
    void programElsewhere();
    void supervisedStart();
    void outputHasNoEffect();
    void independentStart();
    void independentStartWithoutArguments();
    void missingProgram();
    void secondStartIsNotRefused();
    void pathOnTheOtherPlatform();
};

void tst_NyQuilloDornRunner::init()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    QFile::remove(dataFolder() + QStringLiteral("/log/quilloservice-events.log"));
}

void tst_NyQuilloDornRunner::programBesideTheService()
{
    const FakeMainProgram program;
    const LogRecorder log;
    QCOMPARE(NyQuilloDornRunner().processFilePath(), program.path());
    QVERIFY(log.containing(QStringLiteral("Fallback")).isEmpty());
}

void tst_NyQuilloDornRunner::programElsewhere()
{
    const LogRecorder log;
    const QString path = NyQuilloDornRunner().processFilePath();
    QVERIFY(log.has(QStringLiteral("debug: Resorting to Fallback Location for client")));
    QCOMPARE(path, NyInstallationSettings::instance().executablePath(NyProgramID::MainProgram));
}

void tst_NyQuilloDornRunner::supervisedStart()
{
    const FakeMainProgram program;
    program.closeGate();
    const LogRecorder log;
    NyQuilloDornRunner runner;
    QVERIFY(!runner.isRunning());
    const QStringList arguments{QStringLiteral("--programmode"), QStringLiteral("b"), QStringLiteral("--x"), QStringLiteral("a b;c")};
    runner.startAsService(arguments);
    QVERIFY(runner.isRunning());
    QCOMPARE(runner.arguments(), arguments);
    QTRY_COMPARE(program.starts(), QList<QStringList>{arguments});
    QVERIFY(runner.isRunning());
    program.openGate();
    QTRY_VERIFY(!runner.isRunning());
    QCOMPARE(eventLog(), QStringList{QStringLiteral("startAsService VALUES:--programmode;b;--x;a b;c")});

    const QStringList lines = log.all();
    const qsizetype first = lines.indexOf(QStringLiteral("debug: QUILLO_SERVICE: Launching the installed main application."));
    QVERIFY(first >= 0);
    QVERIFY(lines.at(first + 1).startsWith(QStringLiteral("debug: QUILLO_SERVICE: arguments")));
    QCOMPARE(lines.at(first + 2), QStringLiteral("debug: QUILLO_SERVICE: application executable \"%1\"").arg(program.path()));
}

void tst_NyQuilloDornRunner::outputHasNoEffect()
{
    const FakeMainProgram program;
    const LogRecorder log;
    NyQuilloDornRunner runner;
    runner.startAsService({});
    QTRY_VERIFY(!runner.isRunning());
    QVERIFY(log.containing(QStringLiteral("noise on standard output")).isEmpty());
}

void tst_NyQuilloDornRunner::independentStart()
{
    const FakeMainProgram program;
    program.closeGate();
    const LogRecorder log;
    NyQuilloDornRunner runner;
    const QStringList arguments{QStringLiteral("--suppressLoadWarnings"), QStringLiteral("/tmp/a b.nqp")};
    runner.startAsIndependentProgram(arguments);
    QTRY_COMPARE(program.starts(), QList<QStringList>{arguments});
    QVERIFY(!runner.isRunning());
    QVERIFY(log.has(QStringLiteral("debug: QUILLO_SERVICE: runProgram returned true")));
    QCOMPARE(eventLog(), QStringList{QStringLiteral("startAsIndependentProgram VALUES:--suppressLoadWarnings;/tmp/a b.nqp")});
}

void tst_NyQuilloDornRunner::independentStartWithoutArguments()
{
    const FakeMainProgram program;
    NyQuilloDornRunner runner;
    runner.startAsIndependentProgram({});
    QTRY_COMPARE(program.starts(), QList<QStringList>{QStringList()});
    QCOMPARE(eventLog(), QStringList{QStringLiteral("startAsIndependentProgram VALUES:")});
}

void tst_NyQuilloDornRunner::missingProgram()
{
    const LogRecorder log;
    NyQuilloDornRunner runner;
    runner.startAsIndependentProgram({});
    QVERIFY(log.has(QStringLiteral("debug: QUILLO_SERVICE: runProgram returned false")));
    QCOMPARE(log.all().count(QStringLiteral("debug: Resorting to Fallback Location for client")), 2);
    runner.startAsService({});
    QTRY_VERIFY(!runner.isRunning());
    QVERIFY(!log.containing(QStringLiteral("warning: ")).isEmpty());
}

void tst_NyQuilloDornRunner::secondStartIsNotRefused()
{
    const FakeMainProgram program;
    program.closeGate();
    NyQuilloDornRunner runner;
    runner.startAsService({QStringLiteral("1")});
    QTRY_COMPARE(program.starts().size(), 1);
    runner.startAsService({QStringLiteral("2")});
    QTRY_COMPARE(program.starts().size(), 2);
    QVERIFY(runner.isRunning());
    program.openGate();
    QTRY_VERIFY(!runner.isRunning());
}

void tst_NyQuilloDornRunner::pathOnTheOtherPlatform()
{
    const QString expected = QFileInfo(QCoreApplication::applicationDirPath()).canonicalPath() + QStringLiteral("/Helpers/QuilloBuilder");
    QCOMPARE(NyQuilloDornRunner().processFilePathMac(), expected);
}

QTEST_GUILESS_MAIN(tst_NyQuilloDornRunner)
#include "tst_NyQuilloDornRunner.moc"
