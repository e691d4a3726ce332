#pragma once

#include <NyEventFolderClassificationResultList.h>

#include <QtCore/QFileInfo>
#include <QtCore/QList>
#include <QtCore/QMultiHash>

#include "nyquilloservice_export.h"

/** Sorts files into the classified folders that they lie in. Stateless; may be called from any thread. */
class NYQUILLOSERVICE_EXPORT NyEventFileGrouping
{
public:
    using FilesOfEvents = QMultiHash<NyEventFolderClassificationResult, QFileInfo>;

    /**
     * For each file in turn, and for each folder in turn whose absolute path the file's absolute path begins with, enters the file
     * under that folder. The beginning is that of the bare text, with regard to case.
     */
    static FilesOfEvents filesOfEvents(const QList<QFileInfo> &files, const NyEventFolderClassificationResultList &folders);
};
