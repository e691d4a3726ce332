#pragma once

#include <QDateTime>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/**
 * The real service in the private surroundings of a test: its pictures, configuration, process, logs and proposals.
 *
 * Pictures lie below HOME/Pictures. Every object begins with surroundings without a trace of an earlier one, and ends its
 * service and what that started.
 */
class ServiceUnderTest
{
public:
    ServiceUnderTest();
    ~ServiceUnderTest();
    Q_DISABLE_COPY_MOVE(ServiceUnderTest)

    /** Paints `count` sharp pictures, all of them different, into a folder below the pictures home. */
    void addPictures(const QString &folder, int count);
    QString picturesHome() const;

    /** Debugging features on, a first scan after five seconds and a second one each second, proposals from five photos on. */
    static QByteArray quickSections(const QByteArray &more = QByteArray());
    void writeConfiguration(const QByteArray &sections);
    /** Allows the service to start in its normal mode, as the preferences would. */
    void allowAutostart();

    QProcessEnvironment &environment() { return m_environment; }
    /** Runs with a wall clock that begins at `moment` (local) and goes on at its normal pace. */
    void pretendItIs(const QDateTime &moment);
    /** Runs with all clocks, those of timers too, faster by this factor. */
    void quickenTime(int factor);
    static bool hasFakeTime();

    /** Runs a copy of the service from a folder that holds no main program unless the test puts one there; its path. */
    QString useOwnProgramFolder();
    /** Runs the programs of this folder instead of the built ones, with nothing but their own word on where libraries lie. */
    void useProgramsIn(const QString &folder) { m_programFolder = folder; }

    void start(const QStringList &arguments = QStringList());
    /** Starts a service that is allowed to, with quickSections(). */
    void startQuick(const QByteArray &moreSections = QByteArray());
    /** Starts, waits for the end and returns the exit code; -1000 if it does not end in time, -1001 if it crashed. */
    int run(const QStringList &arguments = QStringList(), int timeoutMs = 15000);
    bool isRunning() const { return m_process.state() == QProcess::Running; }
    qint64 processId() const { return m_process.processId(); }
    /** Waits for the end; the exit code, or -1000 and -1001 as run() has them. */
    int waitForEnd(int timeoutMs = 15000);
    void terminate() { m_process.terminate(); }
    QByteArray output();

    /** Diagnostic log of the service. */
    QString log() const;
    QStringList eventLog() const;
    /** Names of the project files in the proposal folder, sorted. */
    QStringList proposals() const;
    QString proposalFolder() const;
    QString markerFolder() const;
    QString binary(const QString &name) const;

    /** Command lines of the running processes whose executable is the main program's, apart from builders. */
    static QList<QStringList> runningMainPrograms();
    static void endMainPrograms();

private:
    QProcess m_process;
    QProcessEnvironment m_environment;
    QByteArray m_output;
    QString m_programFolder;
    int m_seed = 0;
};
