#pragma once

#include "nyquilloservice_export.h"

#include <NyPreferencesBox.h>

class NyFotoStartDirSelectionBox;
class NyQuilloServiceSettings;
class QCheckBox;

/**
 * The page of the main program's settings window on which the user switches the service on or off, allows notifications and
 * picks the folder with the photos. Keeps no state beyond its controls. Main thread.
 */
class NYQUILLOSERVICE_EXPORT NyPreferencesQuilloServiceInstallation : public NyPreferencesBox
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyPreferencesQuilloServiceInstallation)

public:
    explicit NyPreferencesQuilloServiceInstallation(QWidget *parent);
    ~NyPreferencesQuilloServiceInstallation() override;

    /** Tells a running service first whether to go on, then stores what the controls say and makes it take effect. */
    void writeToConfig() override;
    void readFromConfig() override;

    NyQuilloServiceSettings &quilloServiceSettings() const;

private:
    QCheckBox *m_autoStartCheckBox;
    QCheckBox *m_allowToastsCheckBox;
    NyFotoStartDirSelectionBox *m_photoFolderBox;
};
