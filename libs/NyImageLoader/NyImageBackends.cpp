#include "NyImageBackends.h"

#include <dlfcn.h>

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLibrary>

#include "NyHeifBackend.h"
#include "NyImageMetaDataBackend.h"

namespace
{

const char OwnSymbol = 0;

QString pluginPath(const QString &name)
{
    Dl_info info{};
    if (!::dladdr(&OwnSymbol, &info) || !info.dli_fname)
        return {};
    return QFileInfo(QFile::decodeName(info.dli_fname)).absolutePath() + QStringLiteral("/lib") + name + QStringLiteral(".so");
}

template <class Backend, class Function>
const Backend *load(const QString &name, const char *symbol)
{
    QLibrary library(pluginPath(name));
    library.setLoadHints(QLibrary::PreventUnloadHint);
    const auto function = reinterpret_cast<Function>(library.resolve(symbol));
    if (!function) {
        qWarning() << "NyImageLoader: a plug-in cannot be loaded:" << library.errorString();
        return nullptr;
    }
    return function();
}

const QString HeifPlugin = QStringLiteral("NyImageLoaderHeif");
const QString MetaDataPlugin = QStringLiteral("NyImageLoaderMetaData");

}

const NyHeifBackend *NyImageBackends::heif()
{
    static const NyHeifBackend *const backend
        = load<NyHeifBackend, NyHeifBackendFunction>(HeifPlugin, "nyHeifBackend" NY_IMAGE_BACKEND_SUFFIX);
    return backend;
}

const NyImageMetaDataBackend *NyImageBackends::metaData()
{
    static const NyImageMetaDataBackend *const backend
        = load<NyImageMetaDataBackend, NyImageMetaDataBackendFunction>(MetaDataPlugin, "nyImageMetaDataBackend" NY_IMAGE_BACKEND_SUFFIX);
    return backend;
}

bool NyImageBackends::hasHeif()
{
    return QFileInfo::exists(pluginPath(HeifPlugin));
}

bool NyImageBackends::hasMetaData()
{
    return QFileInfo::exists(pluginPath(MetaDataPlugin));
}
