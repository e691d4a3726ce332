#include "NyQuilloDornRunner.h"

#include <NyInstallationSettings.h>
#include <NyLogMessageHandler.h>
#include <NyLogger.h>
#include <NyPlatformIndependent.h>
#include <NyProgramConfig.h>

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QFileInfo>

NyQuilloDornRunner::NyQuilloDornRunner()
{
    initProcess();
}

NyQuilloDornRunner::~NyQuilloDornRunner() = default;

namespace
{
void logLaunch(const QStringList &arguments, const QString &executable)
{
    qDebug() << "QUILLO_SERVICE: Launching the installed main application.";
    qDebug() << "QUILLO_SERVICE: arguments" << arguments;
    qDebug() << "QUILLO_SERVICE: application executable" << executable;
}
}

void NyQuilloDornRunner::startAsService(const QStringList &arguments)
{
    NyLogger::instance().logQuilloService(QStringLiteral("startAsService VALUES:%1").arg(arguments.join(QLatin1Char(';'))));
    logLaunch(arguments, processFilePath());
    setArguments(arguments);
    start();
    NyLogMessageHandler::instance().flushLogFile();
}

void NyQuilloDornRunner::startAsIndependentProgram(const QStringList &arguments)
{
    NyLogger::instance().logQuilloService(QStringLiteral("startAsIndependentProgram VALUES:%1").arg(arguments.join(QLatin1Char(';'))));
    logLaunch(arguments, processFilePath());
    const bool started = NyPlatformIndependent::instance().runProgram(processFilePath(), arguments, QString());
    qDebug() << "QUILLO_SERVICE: runProgram returned" << (started ? "true" : "false");
    NyLogMessageHandler::instance().flushLogFile();
}

QString NyQuilloDornRunner::processFilePath() const
{
    return processFilePathWinLinux();
}

QString NyQuilloDornRunner::processFilePathWinLinux() const
{
    const QString name = NyProgramConfig::instance().programName(NyProgramID::MainProgram);
    const QString path = QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
    if (QFile::exists(path))
        return path;
    qDebug() << "Resorting to Fallback Location for client";
    return NyInstallationSettings::instance().executablePath(NyProgramID::MainProgram);
}

QString NyQuilloDornRunner::processFilePathMac() const
{
    return QFileInfo(QCoreApplication::applicationDirPath()).canonicalPath() + QStringLiteral("/Helpers/QuilloBuilder");
}

void NyQuilloDornRunner::parseProcessMessage(const QString &) { }
