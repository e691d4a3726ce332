#pragma once

#include <QtCore/QFileInfo>

#include "NySingleton.h"
#include "nycore_export.h"

/** Where the running program writes its logs. Stateless, so any thread may ask. */
class NYCORE_EXPORT NyGeneralSettings : public NySingleton<NyGeneralSettings>
{
public:
    NyGeneralSettings();
    ~NyGeneralSettings() override;

    /** The diagnostic log. */
    QFileInfo logFile() const;
    /** The usage records. */
    QFileInfo eventLogFile() const;
};
