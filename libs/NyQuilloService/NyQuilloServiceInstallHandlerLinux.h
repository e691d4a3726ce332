#pragma once

#include "NyQuilloServiceInstallHandlerInterface.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QString>

/** Owns the XDG autostart entry of the service in the user's home, wherever the environment says that configuration lies. */
class NYQUILLOSERVICE_EXPORT NyQuilloServiceInstallHandlerLinux : public NyQuilloServiceInstallHandlerInterface
{
    Q_DECLARE_TR_FUNCTIONS(NyQuilloServiceInstallHandlerLinux)

public:
    ~NyQuilloServiceInstallHandlerLinux() override;

    /** Writes the entry for the executable that is running; autostart is on afterwards exactly if that worked. */
    void install() override;
    /** Removes the entry, turns autostart off and tells a running service to end. */
    void uninstall() override;
    /** Whether the entry exists; its content is not examined. */
    bool isInstalled() const override;

    QString executablePath() const;
    QString configPath() const;
    QString autoStartPath() const;
    QFileInfo autoStartFileInfo() const;
    /** Writes the entry, with the folders that it needs; false if that failed. */
    bool createAutoStartFile() const;
};
