#pragma once

#include <QtCore/QFileInfo>
#include <QtCore/QString>

#include "nycore_export.h"

/** Finds names for new files. Stateless, any thread. */
class NYCORE_EXPORT NyUniqueFilenameMaker
{
public:
    /**
     * The given file if its name is free, else the first free one of "name<separator>2.ext", "name<separator>3.ext" and so
     * on. A name counts as taken, too, when only a companion is left over: the whole name with ".png" or ".json" behind
     * it. The name is not reserved.
     */
    static QFileInfo makeHumanCompatibleUniqueFileName(const QFileInfo &file, const QString &separator);
};
