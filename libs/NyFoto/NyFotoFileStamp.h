#pragma once

#include <QtCore/QtGlobal>

/** Identifies the content of a file as far as its size and modification time tell. */
struct NyFotoFileStamp
{
    qint64 size = -1;
    qint64 modifiedMs = 0;

    friend bool operator==(const NyFotoFileStamp &, const NyFotoFileStamp &) = default;
};
