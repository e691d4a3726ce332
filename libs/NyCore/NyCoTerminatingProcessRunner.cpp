#include "NyCoTerminatingProcessRunner.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QDebug>
#include <QtCore/QFileInfo>
#include <QtCore/QTimer>

#include "NyChildProcess.h"

namespace
{

constexpr int PatienceMs = 3000;
constexpr qsizetype LongestLine = 16 * 1024;
constexpr qsizetype LargestErrorOutput = 64 * 1024;

} // namespace

NyCoTerminatingProcessRunner::NyCoTerminatingProcessRunner(QObject *parent)
    : QObject(parent)
{
}

NyCoTerminatingProcessRunner::~NyCoTerminatingProcessRunner()
{
    const QList<QProcess *> processes = findChildren<QProcess *>(Qt::FindDirectChildrenOnly);
    for (QProcess *process : processes) {
        process->disconnect();
        process->terminate();
    }
    const QDeadlineTimer deadline(PatienceMs);
    for (QProcess *process : processes) {
        if (!process->waitForFinished(static_cast<int>(deadline.remainingTime())) && process->state() != QProcess::NotRunning) {
            process->kill();
            process->waitForFinished(PatienceMs);
        }
    }
}

bool NyCoTerminatingProcessRunner::isRunning() const
{
    return m_process && m_process->state() != QProcess::NotRunning;
}

bool NyCoTerminatingProcessRunner::waitForFinished(int timeoutMs) const
{
    return !isRunning() || m_process->waitForFinished(timeoutMs) || !isRunning();
}

QStringList NyCoTerminatingProcessRunner::arguments()
{
    return m_arguments;
}

void NyCoTerminatingProcessRunner::setArguments(const QStringList &arguments)
{
    m_arguments = arguments;
}

void NyCoTerminatingProcessRunner::logEntryStart() const
{
    log(QStringLiteral("starting process: ") + processFilePath());
}

void NyCoTerminatingProcessRunner::log(const QString &text) const
{
    qDebug().noquote() << text;
}

void NyCoTerminatingProcessRunner::logStartSucceeded() const
{
    log(QStringLiteral("process runs: ") + m_process->program() + QStringLiteral(", id ") + QString::number(m_process->processId()));
}

void NyCoTerminatingProcessRunner::logStartFailed() const
{
    qWarning().noquote() << "process could not be started:" << processFilePath();
}

void NyCoTerminatingProcessRunner::setCancelFlag(bool cancel)
{
    m_cancelled = cancel;
    if (cancel)
        onCancelled();
}

void NyCoTerminatingProcessRunner::onProcessStarting() { }

void NyCoTerminatingProcessRunner::onProcessRunning()
{
    logStartSucceeded();
}

void NyCoTerminatingProcessRunner::onProcessNotRunning() { }

void NyCoTerminatingProcessRunner::onCancelled()
{
    if (!isRunning())
        return;
    QProcess *process = m_process;
    const qint64 id = process->processId();
    log(QStringLiteral("ending process: ") + process->program());
    process->terminate();
    QTimer::singleShot(PatienceMs, process, [process, id] {
        // The object may have started another child by now.
        if (process->state() != QProcess::NotRunning && process->processId() == id)
            process->kill();
    });
}

void NyCoTerminatingProcessRunner::onStateChange(QProcess::ProcessState state)
{
    switch (state) {
    case QProcess::Starting:
        onProcessStarting();
        break;
    case QProcess::Running:
        onProcessRunning();
        break;
    case QProcess::NotRunning:
        onProcessNotRunning();
        break;
    }
}

void NyCoTerminatingProcessRunner::onFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    onReadyReadStandardOutput();
    handOverLine(LineEnd::Missing);
    onReadyReadStandardError();
    if (exitStatus == QProcess::CrashExit && !m_cancelled)
        qWarning().noquote() << "process crashed:" << m_process->program();
    else
        log(QStringLiteral("process ended: ") + m_process->program() + QStringLiteral(", exit code ") + QString::number(exitCode));
}

void NyCoTerminatingProcessRunner::onReadyReadStandardOutput()
{
    const QByteArray output = m_process->readAllStandardOutput();
    qsizetype start = 0;
    while (start < output.size()) {
        const qsizetype lineEnd = output.indexOf('\n', start);
        const qsizetype pieceEnd = lineEnd < 0 ? output.size() : lineEnd;
        const qsizetype room = LongestLine - m_outputLine.size();
        m_outputLine.append(output.constData() + start, qMin(room, pieceEnd - start));
        if (lineEnd < 0)
            return;
        handOverLine(LineEnd::Seen);
        start = lineEnd + 1;
    }
}

void NyCoTerminatingProcessRunner::onErrorOccurred(QProcess::ProcessError error)
{
    if (error == QProcess::FailedToStart)
        logStartFailed();
}

void NyCoTerminatingProcessRunner::onReadyReadStandardError()
{
    const QByteArray output = m_process->readAllStandardError();
    if (output.isEmpty() || m_errorOutputLogged >= LargestErrorOutput)
        return;
    m_errorOutputLogged += output.size();
    log(QString::fromLocal8Bit(output.first(qMin(output.size(), LargestErrorOutput))).trimmed());
    if (m_errorOutputLogged >= LargestErrorOutput)
        log(QStringLiteral("more error output is dropped: ") + m_process->program());
}

void NyCoTerminatingProcessRunner::handOverLine(LineEnd lineEnd)
{
    if (m_outputLine.isEmpty() && lineEnd == LineEnd::Missing)
        return;
    const QString line = QString::fromLocal8Bit(m_outputLine);
    m_outputLine.clear();
    parseProcessMessage(line);
}

void NyCoTerminatingProcessRunner::initProcess()
{
    m_process = new QProcess(this);
    m_process->setStandardInputFile(QProcess::nullDevice());
    NyChildProcess::prepare(*m_process, NyChildProcess::Lifetime::EndsWithThisProcess);
    connect(m_process, &QProcess::stateChanged, this, &NyCoTerminatingProcessRunner::onStateChange);
    connect(m_process, &QProcess::finished, this, &NyCoTerminatingProcessRunner::onFinished);
    connect(m_process, &QProcess::readyReadStandardOutput, this, &NyCoTerminatingProcessRunner::onReadyReadStandardOutput);
    connect(m_process, &QProcess::readyReadStandardError, this, &NyCoTerminatingProcessRunner::onReadyReadStandardError);
    connect(m_process, &QProcess::errorOccurred, this, &NyCoTerminatingProcessRunner::onErrorOccurred);
}

void NyCoTerminatingProcessRunner::start()
{
    logEntryStart();
    const QFileInfo program(processFilePath());
    // Each start of a program that is not there leaks a descriptor in QProcess.
    if (!program.isFile() || !program.isExecutable()) {
        logStartFailed();
        return;
    }
    if (isRunning()) {
        releaseProcess();
        initProcess();
    }
    m_outputLine.clear();
    m_errorOutputLogged = 0;
    m_cancelled = false;
    m_process->start(program.absoluteFilePath(), m_arguments, QIODevice::ReadOnly);
}

/** Lets the present child run on by itself: its output is dropped and its object goes when it ends. */
void NyCoTerminatingProcessRunner::releaseProcess()
{
    QProcess *released = m_process;
    m_process = nullptr;
    released->disconnect(this);
    released->closeReadChannel(QProcess::StandardOutput);
    released->closeReadChannel(QProcess::StandardError);
    connect(released, &QProcess::finished, released, &QObject::deleteLater);
    log(QStringLiteral("process runs on beside a new one: ") + released->program());
}
