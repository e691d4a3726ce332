#include "NyVersionConfig.h"

#include "NyBuildVersion.h"

NyVersionConfig::NyVersionConfig() = default;

NyVersionConfig::~NyVersionConfig() = default;

QString NyVersionConfig::clientVersion() const
{
    return QStringLiteral(NY_BUILD_VERSION);
}

QString NyVersionConfig::versionString() const
{
    return QStringLiteral(NY_BUILD_VERSION NY_BUILD_VERSION_SUFFIX);
}

QString NyVersionConfig::gitCommitStringShort() const
{
    return QStringLiteral(NY_BUILD_COMMIT);
}
