#pragma once

#include <QtCore/QString>

#include "NyConfigItem.h"
#include "NySettings.h"
#include "NySingleton.h"
#include "nyfoto_export.h"

/** The user's settings about photos, shared by all programs of the family. Lives on the main thread. */
class NYFOTO_EXPORT NyFotoSettings : public NySettings, public NySingleton<NyFotoSettings>
{
    Q_OBJECT

public:
    NyFotoSettings();
    ~NyFotoSettings() override;

    /** The folder of the user's pictures, as text; the desktop's pictures folder unless the user chose another. */
    QString picturesHome() const;
    /** The same as an absolute, clean path. A location in another scheme comes back as it is. */
    QString picturesHomePath() const;
    /** Changes the value in memory; saveSettings() keeps it. */
    void setPicturesHome(const QString &folder);

    void loadSettings();
    void saveSettings();

private:
    NyConfigItem<QString> m_picturesHome;
};
