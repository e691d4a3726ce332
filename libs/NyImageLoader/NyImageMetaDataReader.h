#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include "NyImageMetaData.h"
#include "nyimageloader_export.h"

/** Reads the metadata of picture files. Stateless, any thread. */
class NYIMAGELOADER_EXPORT NyImageMetaDataReader
{
public:
    /** A larger sidecar is not read. */
    static constexpr qint64 MaximumSidecarBytes = 4 * 1024 * 1024;

    /**
     * Reads headers only, never the picture itself. The first of sidecarPaths() that is an XMP file of this picture goes before the
     * picture's own XMP, and its rating and position before all others: there photo managers and raw converters write what the user
     * decided. A sidecar that cannot be read is passed over with a warning that names it. A file that is missing, no regular file, or no
     * picture gives a value that is not read, and a debug line naming it.
     */
    static NyImageMetaData read(const QString &path);

    /** Where XMP files of the picture may lie, "photo.jpg.xmp" before "photo.xmp", which several pictures of one name share. */
    static QStringList sidecarPaths(const QString &path);
};
