#pragma once

#include <QtCore/QString>

#include "NyFolderName.h"
#include "nyquilloeventclassifier_export.h"

/**
 * Reads dates and titles out of folder names.
 *
 * Words are matched whole and without regard to case, and names are brought to composed form first. Two-digit years 00 to 49 belong to
 * this century, later ones to the last. Of two readings of a date by numbers the one with the day first counts, unless only the other one
 * is a date. Stateless; any thread.
 */
class NYQUILLOEVENTCLASSIFIER_EXPORT NyFolderNameParser
{
public:
    static constexpr int MinimumYear = 1840;
    static constexpr int MaximumYear = 2099;

    static NyFolderName parse(const QString &name);
};
