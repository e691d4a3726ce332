#include "NyEventFileGrouping.h"

#include <QtCore/QString>

#include "NyFolderPrefixIndex.h"

NyEventFileGrouping::FilesOfEvents NyEventFileGrouping::filesOfEvents(
    const QList<QFileInfo> &files, const NyEventFolderClassificationResultList &folders)
{
    QList<QString> folderPaths;
    folderPaths.reserve(folders.size());
    for (const NyEventFolderClassificationResult &folder : folders)
        folderPaths.append(folder.directoryPath());
    const NyFolderPrefixIndex index(folderPaths);

    // Not reserved: the order of iteration, which decides between folders with equally many files, depends on how the hash grew.
    FilesOfEvents filesOfEvents;
    for (const QFileInfo &file : files) {
        for (const int position : index.positionsOfPrefixes(file.absoluteFilePath()))
            filesOfEvents.insert(folders.at(position), file);
    }
    return filesOfEvents;
}
