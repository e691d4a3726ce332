#include "NyInstallationSettings.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QStringList>

#include "NyChildProcess.h"
#include "NyPlatformIndependent.h"
#include "NySettingsLock.h"

namespace
{

constexpr int LongestUninstallMs = 3000;

bool isExecutableFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

} // namespace

NyInstallationSettings::NyInstallationSettings()
    : m_autoStartService(false, false, QStringLiteral("autoStartService"), false)
    , m_mainProgramPath(QString(), QString(), QStringLiteral("mainProgramPath"), false)
    , m_quilloServicePath(QString(), QString(), QStringLiteral("quilloServicePath"), false)
{
}

NyInstallationSettings::~NyInstallationSettings() = default;

bool NyInstallationSettings::autoStartService() const
{
    load(m_autoStartService);
    return m_autoStartService.value();
}

void NyInstallationSettings::setAutoStartService(bool value, bool alreadyInEffect)
{
    const NySettingsLock lock;
    load(m_autoStartService);
    m_autoStartService.setValue(value);
    save(m_autoStartService);
    m_applyPending = !alreadyInEffect;
}

void NyInstallationSettings::applyAutoStartServiceSetting()
{
    if (!m_applyPending)
        return;
    const bool install = autoStartService();
    const QString program = executablePath(NyProgramID::QuilloService);
    const QStringList arguments{QStringLiteral("--serviceMode"), install ? QStringLiteral("i") : QStringLiteral("u")};
    if (install) {
        m_applyPending = !NyPlatformIndependent::instance().runProgram(program, arguments, QString());
        return;
    }
    if (!isExecutableFile(program)) {
        qWarning() << "no executable program:" << program;
        return;
    }
    // Waited for, so that an installation asked for right after it cannot be undone by it.
    auto *process = new QProcess;
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    NyChildProcess::prepare(*process, NyChildProcess::Lifetime::Independent);
    process->start(program, arguments);
    if (!process->waitForStarted(LongestUninstallMs)) {
        qWarning() << "program could not be started:" << program;
        delete process;
        return;
    }
    m_applyPending = false;
    if (process->waitForFinished(LongestUninstallMs)) {
        delete process;
        return;
    }
    qWarning() << "program still runs:" << program << arguments;
    // Deleting a running QProcess would kill the program.
    connect(process, &QProcess::finished, process, &QObject::deleteLater);
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
