#pragma once

#include <vector>

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringView>

#include "nyquilloservice_export.h"

/**
 * Answers quickly which of many folder paths are prefixes of a file's path.
 *
 * Prefixes of the text, that is: without a separator behind them, so that /p/summer is one of /p/summer2/a.jpg, and with regard to case.
 * Immutable after construction.
 */
class NYQUILLOSERVICE_EXPORT NyFolderPrefixIndex
{
public:
    explicit NyFolderPrefixIndex(const QList<QString> &folderPaths);

    /** The positions in the list given to the constructor, ascending; a path that stands there twice gives both. */
    const std::vector<int> &positionsOfPrefixes(QStringView filePath) const;

private:
    struct Entry
    {
        QString path;
        // The next shorter entry that is a prefix of this one; -1 when there is none.
        int nextShorter = -1;
        // Of this path and of all entries that are prefixes of it.
        std::vector<int> positions;
    };

    std::vector<Entry> m_entries; // sorted by path, each path once
    std::vector<int> m_none;
};
