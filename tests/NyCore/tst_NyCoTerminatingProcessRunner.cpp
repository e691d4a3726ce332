#include <QTest>

#include <csignal>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <NyCoTerminatingProcessRunner.h>
#include <NyPlatformIndependent.h>

#include <sys/resource.h>

using namespace Qt::Literals::StringLiterals;

namespace
{

/** Runs what the test says and writes down what the base tells it. */
class Runner : public NyCoTerminatingProcessRunner
{
    Q_OBJECT

public:
    explicit Runner(const QString &path = u"/bin/sh"_s)
        : m_path(path)
    {
        initProcess();
    }

    QString processFilePath() const override { return m_path; }
    void parseProcessMessage(const QString &message) override
    {
        m_messages.append(message);
        Q_EMIT said(message);
    }
    void logEntryStart() const override { m_calls.append(u"entry"_s); }
    void logStartSucceeded() const override
    {
        m_calls.append(u"succeeded"_s);
        m_id = m_calls.isEmpty() ? 0 : findChildren<QProcess *>().constLast()->processId();
    }
    void logStartFailed() const override
    {
        m_calls.append(u"failed"_s);
        NyCoTerminatingProcessRunner::logStartFailed();
    }
    void log(const QString &text) const override { m_logged.append(text); }
    void onProcessStarting() override { m_calls.append(u"starting"_s); }
    void onProcessRunning() override
    {
        m_calls.append(u"running"_s);
        NyCoTerminatingProcessRunner::onProcessRunning();
    }
    void onProcessNotRunning() override { m_calls.append(u"not running"_s); }
    void onCancelled() override
    {
        m_calls.append(u"cancelled"_s);
        NyCoTerminatingProcessRunner::onCancelled();
    }
    void onFinished(int exitCode, QProcess::ExitStatus exitStatus) override
    {
        NyCoTerminatingProcessRunner::onFinished(exitCode, exitStatus);
        m_calls.append(u"finished %1 %2"_s.arg(exitCode).arg(exitStatus));
        Q_EMIT ended();
    }

    void runShell(const QString &script)
    {
        setArguments({u"-c"_s, script});
        start();
    }
    bool waitForMessage(const QString &message)
    {
        return QTest::qWaitFor([this, &message] { return m_messages.contains(message); }, 10000);
    }

    QString m_path;
    QStringList m_messages;
    mutable QStringList m_calls;
    mutable QStringList m_logged;
    mutable qint64 m_id = 0;

Q_SIGNALS:
    void said(const QString &message);
    void ended();
};

bool isAlive(qint64 id)
{
    // A dead child that nobody waited for is not alive, though its number still exists.
    QFile status(u"/proc/%1/stat"_s.arg(id));
    if (!status.open(QIODevice::ReadOnly))
        return false;
    const QByteArray text = status.readAll();
    return text.mid(text.lastIndexOf(')') + 2, 1) != "Z";
}

bool ends(qint64 id)
{
    return QTest::qWaitFor([id] { return !isAlive(id); }, 10000);
}

qsizetype openDescriptors()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

/** A service in miniature: supervises a shell, tells its number, and waits to be ended. */
int runService(const QStringList &arguments)
{
    Runner runner;
    QObject::connect(&runner, &Runner::said, &runner, [](const QString &message) {
        std::fputs(message.toUtf8().append('\n').constData(), stdout);
        std::fflush(stdout);
    });
    if (arguments.value(0) == u"blocked") {
        // As a service does that reads its signals from a descriptor.
        sigset_t signalsToBlock;
        sigemptyset(&signalsToBlock);
        sigaddset(&signalsToBlock, SIGTERM);
        sigprocmask(SIG_BLOCK, &signalsToBlock, nullptr);
    }
    runner.runShell(u"echo $$; exec sleep 1000"_s);
    return QCoreApplication::exec();
}

} // namespace

class tst_NyCoTerminatingProcessRunner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void orderOfCalls();
    void runningFromStartToEnd();
    void exitCodeAndCrash();
    void missingProgram_data();
    void missingProgram();
    void programThatIsNone();
    void failedStartsKeepNoDescriptors();
    void argumentsReachTheProgram();

    void outputLineByLine();
    void lastLineWithoutEnd();
    void endlessLineIsCut();
    void floodOfOutputTakesNoMemory();
    void errorOutputIsLoggedUpToALimit();
    void inputIsEmpty();

    void cancelling();
    void cancellingAStubbornProgram();
    void cancellingNothing();
    void waitingForTheEnd();
    void secondStartBesideTheFirst();
    void endOfTheRunnerEndsAllChildren();
    void childDiesWithTheService_data();
    void childDiesWithTheService();

    void detachedProgram();
    void detachedProgramOutlivesItsStarter();
    void detachedProgramThatIsNone();
};

void tst_NyCoTerminatingProcessRunner::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
}

void tst_NyCoTerminatingProcessRunner::orderOfCalls()
{
    Runner runner;
    QSignalSpy ended(&runner, &Runner::ended);
    runner.runShell(u"exit 0"_s);
    QVERIFY(ended.wait());
    QCOMPARE(runner.m_calls, QStringList({u"entry"_s, u"starting"_s, u"running"_s, u"succeeded"_s, u"not running"_s, u"finished 0 0"_s}));
    // And once more with the same object.
    runner.m_calls.clear();
    runner.runShell(u"exit 3"_s);
    QVERIFY(ended.wait());
    QCOMPARE(runner.m_calls.constLast(), u"finished 3 0"_s);
}

void tst_NyCoTerminatingProcessRunner::runningFromStartToEnd()
{
    Runner runner;
    QVERIFY(!runner.isRunning());
    QSignalSpy ended(&runner, &Runner::ended);
    runner.runShell(u"exit 0"_s);
    QVERIFY(runner.isRunning());
    QVERIFY(ended.wait());
    QVERIFY(!runner.isRunning());
}

void tst_NyCoTerminatingProcessRunner::exitCodeAndCrash()
{
    Runner runner;
    QSignalSpy ended(&runner, &Runner::ended);
    runner.runShell(u"exit 42"_s);
    QVERIFY(ended.wait());
    QCOMPARE(runner.m_calls.constLast(), u"finished 42 0"_s);
    QVERIFY(runner.m_logged.constLast().endsWith(u"exit code 42"_s));
    QTest::ignoreMessage(QtWarningMsg, "process crashed: /bin/sh");
    runner.runShell(u"kill -SEGV $$"_s);
    QVERIFY(ended.wait());
    QVERIFY(runner.m_calls.constLast().endsWith(u" 1"_s));
    QVERIFY(!runner.isRunning());
}

void tst_NyCoTerminatingProcessRunner::missingProgram_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("not there") << u"/nowhere/VELMORA ALBUMA"_s;
    QTest::newRow("no file") << u"/usr"_s;
    QTest::newRow("not executable") << u"/etc/passwd"_s;
    QTest::newRow("empty") << QString();
}

void tst_NyCoTerminatingProcessRunner::missingProgram()
{
    QFETCH(QString, path);
    Runner runner(path);
    const QString warning = path.isEmpty() ? u"process could not be started: "_s : u"process could not be started: "_s + path;
    QTest::ignoreMessage(QtWarningMsg, warning.toUtf8().constData());
    runner.start();
    QCOMPARE(runner.m_calls, QStringList({u"entry"_s, u"failed"_s}));
    QVERIFY(!runner.isRunning());
    QVERIFY(runner.waitForFinished(0));
}

void tst_NyCoTerminatingProcessRunner::programThatIsNone()
{
    // Executable by its permissions, but nothing that the system can run.
    QTemporaryDir folder;
    QFile file(folder.filePath(u"VELMORA ALBUMA"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("\x7f"
               "ELF garbage");
    file.close();
    QVERIFY(file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
    Runner runner(file.fileName());
    QTest::ignoreMessage(QtWarningMsg, (u"process could not be started: "_s + file.fileName()).toUtf8().constData());
    runner.start();
    QVERIFY(QTest::qWaitFor([&runner] { return runner.m_calls.contains(u"failed"_s); }));
    QVERIFY(!runner.isRunning());
}

void tst_NyCoTerminatingProcessRunner::failedStartsKeepNoDescriptors()
{
    Runner runner(u"/nowhere"_s);
    const qsizetype before = openDescriptors();
    for (int i = 0; i < 20; ++i) {
        QTest::ignoreMessage(QtWarningMsg, "process could not be started: /nowhere");
        runner.start();
    }
    QCOMPARE(openDescriptors(), before);
}

void tst_NyCoTerminatingProcessRunner::argumentsReachTheProgram()
{
    Runner runner(u"/usr/bin/printf"_s);
    const QStringList hostile{u"a b"_s, u"\"quoted\""_s, u"\u00e4"_s, u"--option"_s, u"$HOME"_s, u"%1"_s, u";"_s};
    runner.setArguments(QStringList{u"%s\\n"_s} + hostile);
    QCOMPARE(runner.arguments().size(), hostile.size() + 1);
    QSignalSpy ended(&runner, &Runner::ended);
    runner.start();
    QVERIFY(ended.wait());
    QCOMPARE(runner.m_messages, hostile);
}

void tst_NyCoTerminatingProcessRunner::outputLineByLine()
{
    Runner runner;
    QSignalSpy ended(&runner, &Runner::ended);
    runner.runShell(u"printf 'one\\n\\nthr'; printf 'ee\\n'"_s);
    QVERIFY(ended.wait());
    QCOMPARE(runner.m_messages, QStringList({u"one"_s, u""_s, u"three"_s}));
}

void tst_NyCoTerminatingProcessRunner::lastLineWithoutEnd()
{
    Runner runner;
    QSignalSpy ended(&runner, &Runner::ended);
    runner.runShell(u"printf 'one\\ntwo'"_s);
    QVERIFY(ended.wait());
    QCOMPARE(runner.m_messages, QStringList({u"one"_s, u"two"_s}));
    // Nothing of it is left for the next start.
    runner.runShell(u"echo three"_s);
    QVERIFY(ended.wait());
    QCOMPARE(runner.m_messages.constLast(), u"three"_s);
}

void tst_NyCoTerminatingProcessRunner::endlessLineIsCut()
{
    Runner runner;
    QSignalSpy ended(&runner, &Runner::ended);
    runner.runShell(u"head -c 1000000 /dev/zero | tr '\\0' x; echo; echo after"_s);
    QVERIFY(ended.wait());
    QCOMPARE(runner.m_messages.size(), 2);
    QCOMPARE(runner.m_messages.constFirst(), QString(16 * 1024, u'x'));
    QCOMPARE(runner.m_messages.constLast(), u"after"_s);
}

void tst_NyCoTerminatingProcessRunner::floodOfOutputTakesNoMemory()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    QSKIP("the checker itself keeps freed memory");
#endif
    Runner runner;
    QSignalSpy ended(&runner, &Runner::ended);
    struct rusage before;
    struct rusage after;
    ::getrusage(RUSAGE_SELF, &before);
    // One line of 100 MB on each of the two channels.
    runner.runShell(u"head -c 100000000 /dev/zero | tr '\\0' x; head -c 100000000 /dev/zero | tr '\\0' y >&2"_s);
    QVERIFY(ended.wait(30000));
    ::getrusage(RUSAGE_SELF, &after);
    QVERIFY2(after.ru_maxrss - before.ru_maxrss < 20'000, QByteArray::number(qint64(after.ru_maxrss - before.ru_maxrss)).constData());
}

void tst_NyCoTerminatingProcessRunner::errorOutputIsLoggedUpToALimit()
{
    Runner runner;
    QSignalSpy ended(&runner, &Runner::ended);
    runner.runShell(u"echo trouble >&2"_s);
    QVERIFY(ended.wait());
    QVERIFY(runner.m_logged.contains(u"trouble"_s));
    QVERIFY(runner.m_messages.isEmpty());

    runner.m_logged.clear();
    runner.runShell(u"head -c 1000000 /dev/zero | tr '\\0' e >&2"_s);
    QVERIFY(ended.wait());
    qsizetype logged = 0;
    for (const QString &text : std::as_const(runner.m_logged))
        logged += text.count(u'e');
    QVERIFY2(logged >= 64 * 1024 && logged < 300 * 1024, QByteArray::number(logged).constData());
    QCOMPARE(runner.m_logged.filter(u"more error output is dropped"_s).size(), 1);
}

void tst_NyCoTerminatingProcessRunner::inputIsEmpty()
{
    Runner runner;
    QSignalSpy ended(&runner, &Runner::ended);
    runner.runShell(u"cat; echo done"_s);
    QVERIFY(ended.wait());
    QCOMPARE(runner.m_messages, QStringList{u"done"_s});
}

void tst_NyCoTerminatingProcessRunner::cancelling()
{
    Runner runner;
    QSignalSpy ended(&runner, &Runner::ended);
    runner.runShell(u"echo ready; exec sleep 1000"_s);
    QVERIFY(runner.waitForMessage(u"ready"_s));
    QVERIFY(!runner.isCancelled());
    runner.setCancelFlag(true);
    QVERIFY(runner.isCancelled());
    // No warning of a crash: this end was asked for.
    QVERIFY(ended.wait());
    QVERIFY(runner.m_calls.contains(u"cancelled"_s));
    QVERIFY(!runner.isRunning());
    runner.setCancelFlag(false);
    QVERIFY(!runner.isCancelled());
    QCOMPARE(runner.m_calls.count(u"cancelled"_s), 1);
    // The flag belongs to one run.
    runner.setCancelFlag(true);
    runner.runShell(u"exit 0"_s);
    QVERIFY(!runner.isCancelled());
    QVERIFY(ended.wait());
}

void tst_NyCoTerminatingProcessRunner::cancellingAStubbornProgram()
{
    Runner runner;
    QSignalSpy ended(&runner, &Runner::ended);
    runner.runShell(u"trap '' TERM; echo ready; while :; do sleep 0.1; done"_s);
    QVERIFY(runner.waitForMessage(u"ready"_s));
    QElapsedTimer time;
    time.start();
    runner.setCancelFlag(true);
    QVERIFY(ended.wait(10000));
    // The timer behind it is a coarse one.
    QVERIFY2(time.elapsed() >= 2800, QByteArray::number(time.elapsed()).constData());
    QVERIFY(!isAlive(runner.m_id));
}

void tst_NyCoTerminatingProcessRunner::cancellingNothing()
{
    Runner runner;
    runner.setCancelFlag(true);
    QCOMPARE(runner.m_calls, QStringList{u"cancelled"_s});
    QVERIFY(!runner.isRunning());
}

void tst_NyCoTerminatingProcessRunner::waitingForTheEnd()
{
    Runner runner;
    QVERIFY(runner.waitForFinished(0));
    runner.runShell(u"exec sleep 1000"_s);
    QVERIFY(!runner.waitForFinished(50));
    QVERIFY(runner.isRunning());
    runner.setCancelFlag(true);
    QVERIFY(runner.waitForFinished(10000));
    QVERIFY(!runner.isRunning());
}

void tst_NyCoTerminatingProcessRunner::secondStartBesideTheFirst()
{
    Runner runner;
    QSignalSpy ended(&runner, &Runner::ended);
    runner.runShell(u"echo first; while :; do echo more; sleep 0.05; done"_s);
    QVERIFY(runner.waitForMessage(u"first"_s));
    const qint64 first = runner.m_id;
    runner.runShell(u"echo second; exec sleep 1000"_s);
    QVERIFY(runner.waitForMessage(u"second"_s));
    const qint64 second = runner.m_id;
    QVERIFY(first != second);
    QVERIFY(isAlive(second));
    // Only the second is supervised, and what the first says is heard no more.
    runner.m_messages.clear();
    runner.setCancelFlag(true);
    QVERIFY(ended.wait());
    QVERIFY(!runner.isRunning());
    QVERIFY(runner.m_messages.isEmpty());
    QCOMPARE(ended.size(), 1);
}

void tst_NyCoTerminatingProcessRunner::endOfTheRunnerEndsAllChildren()
{
    qint64 first = 0;
    qint64 second = 0;
    {
        Runner runner;
        runner.runShell(u"echo first; exec sleep 1000"_s);
        QVERIFY(runner.waitForMessage(u"first"_s));
        first = runner.m_id;
        runner.runShell(u"echo second; exec sleep 1000"_s);
        QVERIFY(runner.waitForMessage(u"second"_s));
        second = runner.m_id;
        QVERIFY(isAlive(first));
        QVERIFY(isAlive(second));
    }
    QVERIFY(ends(first));
    QVERIFY(ends(second));
}

void tst_NyCoTerminatingProcessRunner::childDiesWithTheService_data()
{
    QTest::addColumn<QString>("signals_");
    QTest::addColumn<int>("signal");

    QTest::newRow("killed") << u"open"_s << SIGKILL;
    QTest::newRow("terminated") << u"open"_s << SIGTERM;
    QTest::newRow("crashed") << u"open"_s << SIGSEGV;
    QTest::newRow("killed, signals blocked") << u"blocked"_s << SIGKILL;
}

void tst_NyCoTerminatingProcessRunner::childDiesWithTheService()
{
    QFETCH(QString, signals_);
    QFETCH(int, signal);
    QProcess service;
    service.start(QCoreApplication::applicationFilePath(), {u"--child"_s, signals_});
    while (!service.canReadLine())
        QVERIFY(service.waitForReadyRead(10000));
    const qint64 child = service.readLine().trimmed().toLongLong();
    QVERIFY(child > 1);
    QVERIFY(isAlive(child));
    QCOMPARE(::kill(static_cast<pid_t>(service.processId()), signal), 0);
    QVERIFY(service.waitForFinished(10000));
    QVERIFY(ends(child));
}

void tst_NyCoTerminatingProcessRunner::detachedProgram()
{
    QTemporaryDir folder;
    const QString mark = folder.filePath(u"a mark"_s);
    QVERIFY(NyPlatformIndependent::instance().runProgram(
        u"/bin/sh"_s, {u"-c"_s, u"pwd > \"$0.tmp\" && mv \"$0.tmp\" \"$0\""_s, mark}, folder.path()));
    QVERIFY(QTest::qWaitFor([&mark] { return QFile::exists(mark); }));
    QFile file(mark);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(QFile::decodeName(file.readAll().trimmed()), folder.path());
}

void tst_NyCoTerminatingProcessRunner::detachedProgramOutlivesItsStarter()
{
    QProcess starter;
    starter.start(QCoreApplication::applicationFilePath(), {u"--child"_s, u"detach"_s});
    QVERIFY(starter.waitForFinished(10000));
    const qint64 child = starter.readAllStandardOutput().trimmed().toLongLong();
    QVERIFY(child > 1);
    QVERIFY(isAlive(child));
    // The signals that its starter blocked reach it.
    QCOMPARE(::kill(static_cast<pid_t>(child), SIGTERM), 0);
    QVERIFY(ends(child));
}

void tst_NyCoTerminatingProcessRunner::detachedProgramThatIsNone()
{
    const NyPlatformIndependent &platform = NyPlatformIndependent::instance();
    for (const QString &path : {u"/nowhere/program"_s, u"/usr"_s, u"/etc/passwd"_s, u""_s}) {
        QTest::ignoreMessage(QtWarningMsg, (u"no executable program: \""_s + path + u'"').toUtf8().constData());
        QVERIFY(!platform.runProgram(path, {}, QString()));
    }
    QVERIFY(!platform.remembersLastProposalElsewhere());
    QCOMPARE(&NyPlatformIndependent::instance(), &platform);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--child" && arguments.value(2) == u"detach") {
        QTemporaryDir folder;
        const QString mark = folder.filePath(u"id"_s);
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_BLOCK, &all, nullptr);
        if (!NyPlatformIndependent::instance().runProgram(
                u"/bin/sh"_s, {u"-c"_s, u"echo $$ > \"$0.tmp\" && mv \"$0.tmp\" \"$0\"; exec sleep 1000 >/dev/null"_s, mark}, QString()))
            return 1;
        while (!QFile::exists(mark))
            QTest::qWait(5);
        QFile file(mark);
        if (!file.open(QIODevice::ReadOnly))
            return 2;
        std::fputs(file.readAll().constData(), stdout);
        return 0;
    }
    if (arguments.value(1) == u"--child")
        return runService(arguments.sliced(2));
    tst_NyCoTerminatingProcessRunner test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NyCoTerminatingProcessRunner.moc"
