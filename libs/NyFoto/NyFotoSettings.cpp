#include "NyFotoSettings.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>

#include "NySettingsLock.h"

namespace
{

QString defaultPicturesHome()
{
    return QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
}

}

NyFotoSettings::NyFotoSettings()
    : m_picturesHome(defaultPicturesHome(), defaultPicturesHome(), QStringLiteral("picturesHome"), false)
{
    // Others take the pictures home as their own default when they are made, before anybody loads anything.
    loadSettings();
}

NyFotoSettings::~NyFotoSettings() = default;

QString NyFotoSettings::picturesHome() const
{
    return m_picturesHome.value();
}

QString NyFotoSettings::picturesHomePath() const
{
    const QString folder = picturesHome();
    if (folder.isEmpty() || folder.startsWith(QStringLiteral("photokit:")))
        return folder;
    return QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
}

void NyFotoSettings::setPicturesHome(const QString &folder)
{
    if (folder != m_picturesHome.value())
        m_picturesHome.setValue(folder);
}

void NyFotoSettings::loadSettings()
{
    const NySettingsLock lock;
    load(m_picturesHome);
}

void NyFotoSettings::saveSettings()
{
    const NySettingsLock lock;
    save(m_picturesHome);
}
