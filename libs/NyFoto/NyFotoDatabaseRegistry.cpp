#include "NyFotoDatabaseRegistry.h"

#include <QtCore/QDir>

#include "NyFotoSettings.h"

namespace
{

QString relativeTo(const QString &path, const QString &folder)
{
    if (folder.isEmpty() || folder == u"/" || !path.startsWith(folder + u'/'))
        return {};
    return path.sliced(folder.size() + 1);
}

}

NyFotoDatabaseRegistry::NyFotoDatabaseRegistry() = default;

NyFotoDatabaseRegistry::~NyFotoDatabaseRegistry() = default;

QString NyFotoDatabaseRegistry::humanReadable(const QUrl &url) const
{
    if (!url.isLocalFile())
        return url.toDisplayString(QUrl::PrettyDecoded);
    const QString path = QDir::cleanPath(url.toLocalFile());
    for (const QString &folder : {NyFotoSettings::instance().picturesHomePath(), QDir::cleanPath(QDir::homePath())}) {
        const QString relative = relativeTo(path, folder);
        if (!relative.isEmpty())
            return QDir::toNativeSeparators(relative);
    }
    return QDir::toNativeSeparators(path);
}
