#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QFileInfo>

#include "nycore_export.h"

/** Writing and deleting files. Stateless, any thread. */
class NYCORE_EXPORT NyFileHandler
{
public:
    /**
     * Creates or replaces the file with the bytes, whole or not at all: after false, with a warning, the old file is as it was.
     * A link is followed. Missing folders are not created. After false @p reason, if given, holds the system's words.
     */
    static bool writeBinaryFile(const QFileInfo &file, const QByteArray &content, QString *reason = nullptr);

    /** Deletes the files, with a warning for each that cannot be. Folders stay. True if none of the files is left. */
    static bool deleteFiles(const QFileInfoList &files);
};
