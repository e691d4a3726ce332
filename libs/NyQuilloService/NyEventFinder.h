#pragma once

#include <memory>

#include <NyEventFolderClassificationResultList.h>
#include <NyEventFolderType.h>

#include "NyEventFinderConfiguration.h"
#include "NyEventFinderOccasionDetector.h"
#include "NyRecentFileResult.h"
#include "nyquilloservice_export.h"

class QMutex;

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
     * folder whose path its own path begins with. Without such a folder the result has no files. For which folders occasions
     * are detected, and whether the reports are written, the configuration tells.
     */
    NyRecentFileResult findFittingEvent(const NyRecentFileResult &recentFiles, const NyEventFolderType &kind);
    /** The entry with the occasions that all photos in and below its folder show. */
    NyEventFolderClassificationResult enrichedWithOccassionInformation(NyEventFolderClassificationResult result);
    /** The entries in their order, each with its occasions; when the program ends meanwhile, those that are done. */
    NyEventFolderClassificationResultList enrichedWithOccassionInformation(const NyEventFolderClassificationResultList &list);
    /**
     * Writes the report "classification.NAME.html" to the proposal folder if the configuration asks for reports and the program does
     * not end. Thread-safe.
     */
    void renderClassificationList(const NyEventFolderClassificationResultList &list, const QString &name);

private:
    Q_DISABLE_COPY_MOVE(NyEventFinder)

    NyRecentFileResult m_recentFileResult;
    NyEventFolderClassificationResultList m_eventFolderClassificationList;
    NyEventFinderOccasionDetector m_occasionDetector;
    /** Held while a report is written. */
    const std::unique_ptr<QMutex> m_mutex;
};
