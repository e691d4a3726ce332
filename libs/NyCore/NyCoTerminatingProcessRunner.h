#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QProcess>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include "nycore_export.h"

/**
 * Runs one program as a supervised child that does not outlive this process, however this process ends.
 *
 * Lives on one thread with an event loop; start it on the main thread, because the child also ends with the thread that
 * started it. A derived class calls initProcess() in its constructor.
 */
class NYCORE_EXPORT NyCoTerminatingProcessRunner : public QObject
{
    Q_OBJECT

public:
    explicit NyCoTerminatingProcessRunner(QObject *parent = nullptr);
    /** Ends the child: asks it to, and kills it after 3 s. */
    ~NyCoTerminatingProcessRunner() override;

    /** True from the start of the process until it has ended. */
    virtual bool isRunning() const;
    /** Blocks until the child has ended; false after @p timeoutMs milliseconds. Without a limit if negative, true if nothing runs. */
    virtual bool waitForFinished(int timeoutMs) const;
    virtual QStringList arguments();
    /** The arguments of the next start. */
    virtual void setArguments(const QStringList &arguments);
    virtual QString processFilePath() const = 0;
    virtual void logEntryStart() const;
    virtual void log(const QString &text) const;
    virtual void logStartSucceeded() const;
    virtual void logStartFailed() const;
    /** One line of the child's standard output, without its end. A line is cut after 16 KiB. */
    virtual void parseProcessMessage(const QString &message) = 0;
    /** true asks the running child to end, and kills it when it has not after 3 s. */
    virtual void setCancelFlag(bool cancel);
    virtual void onProcessStarting();
    virtual void onProcessRunning();
    virtual void onProcessNotRunning();
    virtual void onCancelled();
    virtual void onStateChange(QProcess::ProcessState state);
    virtual void onFinished(int exitCode, QProcess::ExitStatus exitStatus);
    virtual void onReadyReadStandardOutput();

    bool isCancelled() const { return m_cancelled; }

    /**
     * Starts the program, asynchronously. A child that still runs is no longer supervised then, but runs on and ends with this
     * process. A program that is no executable file ends in logStartFailed() with nothing changed.
     */
    void start();

protected:
    void initProcess();

private:
    Q_DISABLE_COPY_MOVE(NyCoTerminatingProcessRunner)

    void onErrorOccurred(QProcess::ProcessError error);
    void onReadyReadStandardError();
    void releaseProcess();
    enum class LineEnd { Seen, Missing };
    void handOverLine(LineEnd lineEnd);

    QProcess *m_process = nullptr;
    QStringList m_arguments;
    QByteArray m_outputLine;
    qsizetype m_errorOutputLogged = 0;
    bool m_cancelled = false;
};
