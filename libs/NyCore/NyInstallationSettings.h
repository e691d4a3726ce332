#pragma once

#include <QtCore/QDeadlineTimer>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtCore/QTimer>

#include "NyConfigItem.h"
#include "NyProgramConfig.h"
#include "NySettings.h"
#include "NySingleton.h"
#include "nycore_export.h"

class QProcess;

/** What the user decided about the installation: whether the service starts with the session, and where programs lie. Main thread. */
class NYCORE_EXPORT NyInstallationSettings : public NySettings, public NySingleton<NyInstallationSettings>
{
    Q_OBJECT

public:
    /** What became of a wish that was to take effect. */
    enum class Outcome {
        /** The service's executable was started to install, or has uninstalled. */
        Applied,
        ProgramMissing,
        /** It could not be started, crashed or ended with another code than 0. */
        ProgramFailed,
        /** It takes longer than 3 s to uninstall and is left to itself. */
        StillRunning,
    };
    Q_ENUM(Outcome)

    NyInstallationSettings();
    ~NyInstallationSettings() override;

    /**
     * Read from the store on each call, since several programs write it. Off unless the user switched it on, and while switching off
     * waits for an installation, whatever that one stores.
     */
    bool autoStartService() const;

    /**
     * Stores the wish. @p alreadyInEffect: the caller has put the autostart entry in order itself, so nothing is left to apply.
     * Waits first, 3 s at most, until an uninstallation that is under way has ended, since it would undo the wish; one that still
     * waits for an installation is dropped.
     */
    void setAutoStartService(bool value, bool alreadyInEffect);

    /**
     * Makes a wish that is not in effect yet take effect, by running the service's executable: to install it starts detached and
     * stays as the running service; to uninstall it runs beside this program, once a service that this object has started to install
     * has done so, since that would undo the wish; after 5 s in any case. Does nothing when no wish is pending.
     * autoStartServiceSettingApplied() tells how it went, to install before this returns; a failure is also a warning and
     * leaves the wish pending.
     */
    void applyAutoStartServiceSetting();

    /** Whether an uninstallation is under way or waits for an installation, so that its outcome is still to come. */
    bool isApplying() const;

    /**
     * The program's executable: the stored path ("mainProgramPath", "quilloServicePath") if there is such a file, else beside
     * the running program, else in the search path. When it is nowhere, the place beside the running program.
     */
    QString executablePath(NyProgramID programID) const;

Q_SIGNALS:
    void autoStartServiceSettingApplied(NyInstallationSettings::Outcome outcome);

private:
    void install(const QString &program);
    void uninstall(const QString &program);
    void endUninstalling(Outcome outcome);
    bool isInstalling() const;
    void awaitInstallation(const QString &program);
    void lookForInstallation();
    void endInstallation();

    mutable NyConfigItem<bool> m_autoStartService;
    mutable NyConfigItem<QString> m_mainProgramPath;
    mutable NyConfigItem<QString> m_quilloServicePath;
    bool m_applyPending = false;
    /** The process that was started last to install; 0 when it is known to have come through. */
    qint64 m_installing = 0;
    /** Active while switching off waits for m_installing. */
    QTimer m_installTimer;
    QDeadlineTimer m_patience;
    /** The executable that is called after that. */
    QString m_uninstaller;
    // Has no owner: to delete it would kill the program.
    QPointer<QProcess> m_uninstalling;
    QTimer m_uninstallTimer;
};
