#pragma once

#include <NyEventFolderClassificationResultList.h>
#include <NyEventFolderType.h>

#include "NyEventFinderConfiguration.h"
#include "NyRecentFileResult.h"
#include "nyquilloservice_export.h"

/**
 * Chooses from the recent files of one scan the one event that is worth a proposal.
 *
 * One object serves one search, on the thread that searches. Errors are not reported: what cannot be read is not found.
 */
class NYQUILLOSERVICE_EXPORT NyEventFinder
{
public:
    explicit NyEventFinder(const NyRecentFileResult &recentFileResult);
    virtual ~NyEventFinder();

    /**
     * The event with the most recent unused photos; when it is too thin, the year with the most. May be without files. To be called once.
     */
    NyRecentFileResult findEvent();

    NyEventFinderConfiguration config() const;
    /** Takes out the used photos and classifies all folders below the scan's start directory. */
    void initEventFolderClassificationList();
    /** Writes how many folders of each kind there are to both logs. */
    void logEventFolderTypeStatistics();
    /**
     * The folder of the kind that holds the most of the files, with those files, last in the list first. A file counts for every
     * folder whose path its own path begins with. Without such a folder the result has no files.
     */
    NyRecentFileResult findFittingEvent(const NyRecentFileResult &recentFiles, const NyEventFolderType &kind);

private:
    Q_DISABLE_COPY_MOVE(NyEventFinder)

    NyRecentFileResult m_recentFileResult;
    NyEventFolderClassificationResultList m_eventFolderClassificationList;
};
