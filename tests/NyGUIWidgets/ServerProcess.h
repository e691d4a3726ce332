#pragma once

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QProcess>
#include <QStringList>
#include <QTest>

#include <csignal>

/** A notification server in a process of its own; ended with the object. */
class ServerProcess
{
public:
    ~ServerProcess() { end(); }

    /** Waits until the server has the name on the bus. */
    bool start(const QString &program, const QStringList &arguments)
    {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(program, arguments);
        return m_process.waitForStarted() && QTest::qWaitFor([this] { return hasName() || !isRunning(); }, 20000) && hasName();
    }
    void end()
    {
        if (!isRunning())
            return;
        ::kill(static_cast<pid_t>(m_process.processId()), SIGCONT);
        m_process.terminate();
        if (!m_process.waitForFinished(3000)) {
            m_process.kill();
            m_process.waitForFinished();
        }
        (void)QTest::qWaitFor([] { return !hasName(); }, 5000);
    }
    void suspend() { ::kill(static_cast<pid_t>(m_process.processId()), SIGSTOP); }
    void resume() { ::kill(static_cast<pid_t>(m_process.processId()), SIGCONT); }
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    int exitCode() const { return m_process.exitCode(); }
    QString output()
    {
        m_output += m_process.readAll();
        return QString::fromUtf8(m_output);
    }

    static bool hasName()
    {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(QStringLiteral("org.freedesktop.Notifications"));
    }

private:
    QProcess m_process;
    QByteArray m_output;
};
