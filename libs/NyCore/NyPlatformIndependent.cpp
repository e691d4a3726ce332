#include "NyPlatformIndependent.h"

#include <malloc.h>

#include <QtCore/QDebug>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>

#include "NyChildProcess.h"

NyPlatformIndependent &NyPlatformIndependent::instance()
{
    static NyPlatformIndependent *const platform = new NyPlatformIndependent;
    return *platform;
}

NyPlatformIndependent::NyPlatformIndependent() = default;

NyPlatformIndependent::~NyPlatformIndependent() = default;

void NyPlatformIndependent::prepareProgram() { }

bool NyPlatformIndependent::runProgram(
    const QString &path, const QStringList &arguments, const QString &workingDirectory, qint64 *processId) const
{
    const QFileInfo program(path);
    if (!program.isFile() || !program.isExecutable()) {
        qWarning() << "no executable program:" << path;
        return false;
    }
    QProcess process;
    process.setProgram(program.absoluteFilePath());
    process.setArguments(arguments);
    process.setWorkingDirectory(workingDirectory);
    NyChildProcess::prepare(process, NyChildProcess::Lifetime::Independent);
    if (!process.startDetached(processId)) {
        qWarning() << "program could not be started:" << path;
        return false;
    }
    return true;
}

bool NyPlatformIndependent::remembersLastProposalElsewhere() const
{
    return false;
}

void NyPlatformIndependent::releaseUnusedMemory() const
{
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}
