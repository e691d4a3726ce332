#pragma once

#include <QtCore/QString>

#include "NyImageMetaData.h"
#include "nyimageloader_export.h"

/** Reads the metadata of picture files. Stateless, any thread. */
class NYIMAGELOADER_EXPORT NyImageMetaDataReader
{
public:
    /**
     * Reads headers only, never the picture itself. A file that is missing, no regular file, or no picture gives a value that is
     * not read, and a debug line naming it.
     */
    static NyImageMetaData read(const QString &path);
};
