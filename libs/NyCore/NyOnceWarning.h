#pragma once

#include <QtCore/QString>

#include "nycore_export.h"

/** Warnings about what a program meets again and again, such as a folder that none of its searches can read. */
class NYCORE_EXPORT NyOnceWarning
{
public:
    /** So many different texts are told in a process; the next one is told to be the last. */
    static constexpr qsizetype MostTexts = 1000;

    /** Logs the text as a warning, but only the first time in this process. Thread-safe. */
    static void warn(const QString &text);
};
