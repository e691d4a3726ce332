#pragma once

#include <QtCore/QString>

#include "NySingleton.h"
#include "nycore_export.h"

/** The version of this build. */
class NYCORE_EXPORT NyVersionConfig : public NySingleton<NyVersionConfig>
{
public:
    NyVersionConfig();
    ~NyVersionConfig() override;

    /** The release's number, as "1.2.3". */
    QString clientVersion() const;
    /** The version as people see it: the number, with the build's suffix behind it if it has one. */
    QString versionString() const;
    /** The first digits of the commit that was built; "unknown" for a build outside a repository. */
    QString gitCommitStringShort() const;
};
