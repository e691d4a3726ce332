#include "NyInstallationSettings.h"

#include <cerrno>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QThread>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "NyChildProcess.h"
#include "NyDirectoryConfig.h"
#include "NyPlatformIndependent.h"
#include "NySettingsLock.h"

namespace
{

constexpr int LongestUninstallMs = 3000;
constexpr int LongestInstallMs = 5000;
constexpr int InstallPollMs = 20;

bool isExecutableFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

bool hasEnded(qint64 processId)
{
    // One that ended and that nobody has collected still has its id.
    const int handle = int(::syscall(SYS_pidfd_open, pid_t(processId), 0));
    if (handle < 0)
        return errno == ESRCH;
    pollfd ended{handle, POLLIN, 0};
    const bool result = ::poll(&ended, 1, 0) > 0;
    ::close(handle);
    return result;
}

/** The service that runs; it takes its lock, and writes its id, when it has installed. */
qint64 runningService()
{
    QFile file(NyDirectoryConfig::instance().serviceLockFile());
    return file.open(QIODevice::ReadOnly) ? file.read(32).trimmed().toLongLong() : 0;
}

} // namespace

NyInstallationSettings::NyInstallationSettings()
    : m_autoStartService(false, false, QStringLiteral("autoStartService"), false)
    , m_mainProgramPath(QString(), QString(), QStringLiteral("mainProgramPath"), false)
    , m_quilloServicePath(QString(), QString(), QStringLiteral("quilloServicePath"), false)
{
    m_uninstallTimer.setSingleShot(true);
    m_uninstallTimer.setInterval(LongestUninstallMs);
    connect(&m_uninstallTimer, &QTimer::timeout, this, [this] { endUninstalling(Outcome::StillRunning); });
    m_installTimer.setInterval(InstallPollMs);
    connect(&m_installTimer, &QTimer::timeout, this, &NyInstallationSettings::lookForInstallation);
}

NyInstallationSettings::~NyInstallationSettings() = default;

bool NyInstallationSettings::autoStartService() const
{
    if (m_installTimer.isActive())
        return false;
    load(m_autoStartService);
    return m_autoStartService.value();
}

void NyInstallationSettings::setAutoStartService(bool value, bool alreadyInEffect)
{
    if (m_uninstalling && !m_uninstalling->waitForFinished(LongestUninstallMs))
        endUninstalling(Outcome::StillRunning);
    m_installTimer.stop();
    const NySettingsLock lock;
    load(m_autoStartService);
    m_autoStartService.setValue(value);
    save(m_autoStartService);
    m_applyPending = !alreadyInEffect;
}

void NyInstallationSettings::applyAutoStartServiceSetting()
{
    if (!m_applyPending || isApplying())
        return;
    const QString program = executablePath(NyProgramID::QuilloService);
    if (!isExecutableFile(program)) {
        qWarning() << "no executable program:" << program;
        Q_EMIT autoStartServiceSettingApplied(Outcome::ProgramMissing);
    } else if (autoStartService()) {
        install(program);
    } else if (isInstalling()) {
        awaitInstallation(program);
    } else {
        uninstall(program);
    }
}

bool NyInstallationSettings::isApplying() const
{
    return m_installTimer.isActive() || !m_uninstalling.isNull();
}

void NyInstallationSettings::install(const QString &program)
{
    m_installing = 0;
    m_applyPending = !NyPlatformIndependent::instance().runProgram(
        program, {QStringLiteral("--serviceMode"), QStringLiteral("i")}, QString(), &m_installing);
    Q_EMIT autoStartServiceSettingApplied(m_applyPending ? Outcome::ProgramFailed : Outcome::Applied);
}

bool NyInstallationSettings::isInstalling() const
{
    return m_installing != 0 && runningService() != m_installing && !hasEnded(m_installing);
}

void NyInstallationSettings::awaitInstallation(const QString &program)
{
    m_applyPending = false;
    m_uninstaller = program;
    m_patience.setRemainingTime(LongestInstallMs);
    // The wish must not get lost when the program ends meanwhile; nobody sees any more then that it waits.
    connect(
        QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &NyInstallationSettings::endInstallation, Qt::UniqueConnection);
    m_installTimer.start();
}

void NyInstallationSettings::lookForInstallation()
{
    if (isInstalling()) {
        if (!m_patience.hasExpired())
            return;
        qWarning() << "program does not come to install:" << m_installing;
    }
    m_installing = 0;
    // Among what the installation has done is to store that it is on.
    setAutoStartService(false, true);
    uninstall(m_uninstaller);
}

void NyInstallationSettings::endInstallation()
{
    while (m_installTimer.isActive()) {
        lookForInstallation();
        QThread::msleep(InstallPollMs);
    }
}

void NyInstallationSettings::uninstall(const QString &program)
{
    m_applyPending = false;
    m_uninstalling = new QProcess;
    QProcess *process = m_uninstalling;
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    NyChildProcess::prepare(*process, NyChildProcess::Lifetime::Independent);
    connect(process, &QProcess::finished, process, &QObject::deleteLater);
    connect(process, &QProcess::finished, this, [this, process](int exitCode, QProcess::ExitStatus status) {
        if (process != m_uninstalling)
            return;
        const bool done = status == QProcess::NormalExit && exitCode == 0;
        if (!done)
            qWarning() << "program failed:" << process->program() << process->arguments() << exitCode;
        endUninstalling(done ? Outcome::Applied : Outcome::ProgramFailed);
    });
    connect(process, &QProcess::errorOccurred, this, [this, process](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart || process != m_uninstalling)
            return;
        qWarning() << "program could not be started:" << process->program() << process->errorString();
        process->deleteLater();
        endUninstalling(Outcome::ProgramFailed);
    });
    m_uninstallTimer.start();
    process->start(program, {QStringLiteral("--serviceMode"), QStringLiteral("u")});
}

void NyInstallationSettings::endUninstalling(Outcome outcome)
{
    m_uninstallTimer.stop();
    if (outcome == Outcome::StillRunning)
        qWarning() << "program still runs:" << m_uninstalling->program() << m_uninstalling->arguments();
    if (outcome == Outcome::ProgramFailed)
        m_applyPending = true;
    m_uninstalling.clear();
    Q_EMIT autoStartServiceSettingApplied(outcome);
}

QString NyInstallationSettings::executablePath(NyProgramID programID) const
{
    NyConfigItem<QString> &configured = programID == NyProgramID::MainProgram ? m_mainProgramPath : m_quilloServicePath;
    load(configured);
    if (isExecutableFile(configured.value()))
        return QFileInfo(configured.value()).absoluteFilePath();

    const NyProgramConfig &programs = NyProgramConfig::instance();
    const QString besides = QCoreApplication::applicationDirPath() + QLatin1Char('/') + programs.programName(programID);
    if (isExecutableFile(besides))
        return besides;
    const QString inSearchPath = QStandardPaths::findExecutable(programs.commandName(programID));
    return inSearchPath.isEmpty() ? besides : inSearchPath;
}
