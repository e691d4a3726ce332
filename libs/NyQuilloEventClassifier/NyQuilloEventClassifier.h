#pragma once

#include <QtCore/QFileInfo>
#include <QtCore/QList>

#include "NyEventFolderClassificationResult.h"
#include "nyquilloeventclassifier_export.h"

/**
 * Tells what the folders of a picture collection are: years, months, days, events, long-running projects, or none of these.
 *
 * Names decide first, then a folder's place in the tree, then what lies inside it. Has no state but the start folder, and may be used on
 * any thread.
 */
class NYQUILLOEVENTCLASSIFIER_EXPORT NyQuilloEventClassifier
{
public:
    /** @param startFolder the root of the collection: it bounds what counts as a folder's place in the tree. */
    explicit NyQuilloEventClassifier(const QFileInfo &startFolder);
    NyQuilloEventClassifier(const NyQuilloEventClassifier &) = default;
    NyQuilloEventClassifier &operator=(const NyQuilloEventClassifier &) = default;
    virtual ~NyQuilloEventClassifier();

    /**
     * Classifies @p folder and all folders below it that hold a picture somewhere below them.
     *
     * One entry a folder, a folder before those in it, neighbours sorted by name. Ignorable folders and all below them are left
     * out. Links to folders are followed, but no folder is entered twice, and a folder's own place comes before links to it.
     *
     * The root of the collection is there to be sorted and gets an entry only when pictures lie in it directly. Then it counts as a
     * camera folder, whatever its name is: loose pictures of a few days are an event, those of a year a year.
     * It stays unknown as soon as there are folders of their own meaning below it, because it would take in theirs.
     *
     * @param folder the start folder or one below it; the folders between count by their names. Any other folder is taken for a root.
     * @param defaultResult the verdict on folders about which no rule says anything: they get its kind and its occasions. Its
     * directory is not looked at.
     *
     * Folders that cannot be read give a warning and no entries. Names that are not valid UTF-8 cannot be passed on
     * and are left out. Blocks while it reads the disk.
     */
    QList<NyEventFolderClassificationResult> eventFolderTypes(
        const QFileInfo &folder, const NyEventFolderClassificationResult &defaultResult);

private:
    QFileInfo m_startFolder;
};
