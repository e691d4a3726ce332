#pragma once

#include <QtCore/QDir>
#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QSet>
#include <QtCore/QString>

#include "NyRecentFileResult.h"
#include "nyquilloservice_export.h"

/**
 * Finds the photos below the observed folder that were born inside a range of days.
 *
 * Its operations may be called from any thread: the observed folder does not change under a scan, and setting it waits until a scan that is
 * under way has ended. Folders of the local file system are read natively, see NyNativeFileWalker for what is found there; all
 * other paths go through QDir.
 */
class NYQUILLOSERVICE_EXPORT NyRecentFileFinder
{
public:
    /** @p nameFilters are wildcard patterns as QDir takes them. */
    NyRecentFileFinder(const QString &observedDirectory, const QList<QString> &nameFilters);
    virtual ~NyRecentFileFinder();

    /** Takes effect with the next scan. A path of the scheme "photokit:" is observed as "photokitfs:". */
    void setObservedDirectory(const QString &path);

    /**
     * All matching files in the range, oldest first. Files without a known birth time are left out. Nothing limits the time this takes,
     * but it ends early when the application is closing down. What cannot be read is logged once and counts as empty.
     */
    NyRecentFileResult lastAddedFiles(const NyDateRange &range);

private:
    Q_DISABLE_COPY_MOVE(NyRecentFileFinder)

    NyRecentFileResult collectLastAddedFilesRecursively(const QDir &dir, const NyDateRange &range);
    NyRecentFileResult collectNatively(const QDir &dir, const NyDateRange &range);

    QDir m_observedDirectory;
    QList<QString> m_nameFilters;
    // Never freed: a scan on a pool's thread may outlive the finder at the end of the program.
    QMutex *m_mutex;
    // Folders with a fault that was logged: scans repeat twice a minute, their complaints should not.
    QSet<QString> m_reportedFolders;
};
