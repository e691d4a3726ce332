#pragma once

#include <QtCore/QString>

#include "NyConfigItem.h"
#include "NyProgramConfig.h"
#include "NySettings.h"
#include "NySingleton.h"
#include "nycore_export.h"

/** What the user decided about the installation: whether the service starts with the session, and where programs lie. Main thread. */
class NYCORE_EXPORT NyInstallationSettings : public NySettings, public NySingleton<NyInstallationSettings>
{
    Q_OBJECT

public:
    NyInstallationSettings();
    ~NyInstallationSettings() override;

    /** Read from the store on each call, since several programs write it. Off unless the user switched it on. */
    bool autoStartService() const;

    /** Stores the wish. @p alreadyInEffect: the caller has put the autostart entry in order itself, so nothing is left to apply. */
    void setAutoStartService(bool value, bool alreadyInEffect);

    /**
     * Makes a wish that is not in effect yet take effect, by running the service's executable: to install it starts detached and
     * stays as the running service; to uninstall it is waited for, at most 3 s, and left to itself after that. Does
     * nothing when no wish is pending; a failed start is a warning and leaves the wish pending.
     */
    void applyAutoStartServiceSetting();

    /**
     * The program's executable: the stored path ("mainProgramPath", "quilloServicePath") if there is such a file, else beside
     * the running program, else in the search path. When it is nowhere, the place beside the running program.
     */
    QString executablePath(NyProgramID programID) const;

private:
    mutable NyConfigItem<bool> m_autoStartService;
    mutable NyConfigItem<QString> m_mainProgramPath;
    mutable NyConfigItem<QString> m_quilloServicePath;
    bool m_applyPending = false;
};
