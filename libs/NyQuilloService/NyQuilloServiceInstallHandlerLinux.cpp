#include "NyQuilloServiceInstallHandlerLinux.h"

#include <NyFileHandler.h>
#include <NyKeyAccount.h>
#include <NyVersionConfig.h>

#include <QDir>
#include <QFile>

namespace
{
const QString AUTOSTART_FILENAME = QStringLiteral("velmora.dorn.quillo.desktop");
}

NyQuilloServiceInstallHandlerLinux::~NyQuilloServiceInstallHandlerLinux() = default;

void NyQuilloServiceInstallHandlerLinux::install()
{
    setAutoStartService(createAutoStartFile());
}

void NyQuilloServiceInstallHandlerLinux::uninstall()
{
    QFile::remove(autoStartFileInfo().absoluteFilePath());
    setAutoStartService(false);
    cancelRunningService();
}

bool NyQuilloServiceInstallHandlerLinux::isInstalled() const
{
    return autoStartFileInfo().exists();
}

QString NyQuilloServiceInstallHandlerLinux::executablePath() const
{
    return QCoreApplication::applicationFilePath();
}

QString NyQuilloServiceInstallHandlerLinux::configPath() const
{
    return QDir::homePath() + QLatin1Char('/') + QStringLiteral(".config");
}

QString NyQuilloServiceInstallHandlerLinux::autoStartPath() const
{
    return configPath() + QLatin1Char('/') + QStringLiteral("autostart");
}

QFileInfo NyQuilloServiceInstallHandlerLinux::autoStartFileInfo() const
{
    return QFileInfo(QDir(autoStartPath()), AUTOSTART_FILENAME);
}

bool NyQuilloServiceInstallHandlerLinux::createAutoStartFile() const
{
    const QString icon
        = QStringLiteral("dorn-%1-%2").arg(NyKeyAccount::instance().keyAccountId().id()).arg(NyVersionConfig::instance().versionString());
    // One arg call for each value, in this order: the names are not replaced in one go.
    const QString text = QStringLiteral("[Desktop Entry]\nExec=\"%1\"\nIcon=%2\nName=%3\nType=Application\n"
                                        "X-GNOME-Autostart-enabled=true\nX-GNOME-Autostart-Delay=0\n")
                             .arg(executablePath())
                             .arg(icon)
                             .arg(tr("VELMORA Hintergrunddienst"));
    const QFileInfo file = autoStartFileInfo();
    if (!QDir(QString()).mkpath(file.dir().absolutePath()))
        return false;
    return NyFileHandler::writeBinaryFile(file, text.toUtf8());
}
