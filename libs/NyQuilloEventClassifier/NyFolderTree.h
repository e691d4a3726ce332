#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include "nyquilloeventclassifier_export.h"

/**
 * The folders of a picture collection as one walk finds them: a listing of each folder and no look at files.
 *
 * Hidden and ignorable folders are not entered. Links to folders are, but no folder is entered twice: real folders come first, then links
 * in the order of their paths, and the start folder counts as entered. A folder that cannot be read gives a warning, the first time in a
 * process, and counts as empty. Names that are not valid UTF-8 are left out, with a warning too where they name folders.
 */
class NYQUILLOEVENTCLASSIFIER_EXPORT NyFolderTree
{
public:
    struct Folder
    {
        QString name;
        QString path; ///< absolute
        int parent = -1;
        QList<int> children; ///< indexes, sorted by name
        bool hasOwnPictures = false;
        bool hasPicturesBelow = false; ///< in itself or in a folder below
        bool hasProjectFiles = false;
        int ownPictures = 0; ///< how many lie directly in it; 0 unless they were to be counted
    };

    enum class Pictures {
        Find, ///< whether there are any
        Count,
    };

    NyFolderTree() = default;
    /** Walks at once, on the caller's thread. @p pictureFilters are wildcard patterns such as "*.jpg", matched without regard to case. */
    NyFolderTree(const QString &startPath, const QStringList &pictureFilters);
    /** Several start folders, of which none lies in another, in one tree: what is reached from two of them belongs to one. */
    NyFolderTree(const QStringList &startPaths, const QStringList &pictureFilters, Pictures pictures);

    /** The start folder first, each folder before those in it. A start folder that is ignorable or cannot be read has no entry. */
    const QList<Folder> &folders() const { return m_folders; }

    /**
     * The absolute paths of the pictures directly in the given folders, folder by folder and sorted by name; when there are more than
     * @p maximum, so many of them at even distances, the first and the last among them. Reads the folders again.
     */
    QStringList samplePictures(const QList<int> &folders, int maximum) const;

private:
    class Walker;

    QList<Folder> m_folders;
    QList<QByteArray> m_suffixes;
};
