#pragma once

#include <cstddef>

#include <QtCore/QString>

#include "nyfoto_export.h"

/** Identifies the content of a file as far as its size and times tell. */
struct NYFOTO_EXPORT NyFotoFileStamp
{
    qint64 size = -1;
    qint64 modifiedMs = 0;
    qint64 changedMs = 0; /**< also moves when a program puts the modification time back */
    std::size_t sidecars = 0; /**< of the sizes and times of the picture's sidecars; 0 when they do not matter or there are none */

    /** Of a file that is not there, a default value. */
    static NyFotoFileStamp ofFile(const QString &path);
    /** Also tells when a file changes from which the picture's metadata come. */
    static NyFotoFileStamp ofFileAndSidecars(const QString &path);

    friend bool operator==(const NyFotoFileStamp &, const NyFotoFileStamp &) = default;
};
