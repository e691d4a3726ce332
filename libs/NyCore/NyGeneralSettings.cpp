#include "NyGeneralSettings.h"

#include <QtCore/QDir>

#include "NyDirectoryConfig.h"
#include "NyProgramConfig.h"

namespace
{

QFileInfo logFileNamed(const QString &ending)
{
    const NyProgramConfig &program = NyProgramConfig::instance();
    const QDir folder(NyDirectoryConfig::instance().logFolder());
    return QFileInfo(folder.filePath(program.commandName(program.programID()) + ending));
}

} // namespace

NyGeneralSettings::NyGeneralSettings() = default;

NyGeneralSettings::~NyGeneralSettings() = default;

QFileInfo NyGeneralSettings::logFile() const
{
    return logFileNamed(QStringLiteral(".log"));
}

QFileInfo NyGeneralSettings::eventLogFile() const
{
    return logFileNamed(QStringLiteral("-events.log"));
}
