#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtCore/QList>
#include <QtCore/QString>

#include "NyEventFolderClassificationResult.h"
#include "nyquilloeventclassifier_export.h"

/**
 * Writes classified folders as one HTML page for people: folders by kind with their photos, dates, occasions and a few small pictures.
 *
 * The page needs no other file, no network and no script, follows the reader's light or dark setting, and can be printed. What comes
 * from file names is escaped, and what would not show or would turn the text around is made visible. Any thread.
 */
class NYQUILLOEVENTCLASSIFIER_EXPORT NyClassificationResultsRendererHTML
{
    Q_DECLARE_TR_FUNCTIONS(NyClassificationResultsRendererHTML)

public:
    /** At most so many pictures stand beside a folder, and so many on the page. */
    static constexpr int MostThumbnailsOfFolder = 3;
    static constexpr int MostThumbnails = 200;

    /**
     * @param startDirectoryLength how many characters of each folder's path name the directory that was searched; they are left out of
     * the paths on the page. A number that does not end at a separator leaves the path whole.
     * @param fileExtensionFilters wildcard patterns such as "*.jpg"; what matches counts as a photo.
     */
    NyClassificationResultsRendererHTML(
        const QList<NyEventFolderClassificationResult> &results, int startDirectoryLength, const QList<QString> &fileExtensionFilters);
    NyClassificationResultsRendererHTML(const NyClassificationResultsRendererHTML &) = default;
    NyClassificationResultsRendererHTML &operator=(const NyClassificationResultsRendererHTML &) = default;
    virtual ~NyClassificationResultsRendererHTML();

    /**
     * Writes the page, whole or not at all. The title comes from a file name of the form "classification.<kind>.all.html" or
     * "classification.<kind>.ofInterest.html"; other names get a general one.
     *
     * Reads the folders, and those below them, to count their photos; decodes pictures. Blocks meanwhile. Folders that are gone or
     * cannot be read are shown as such.
     *
     * @return false, after one warning that names the file, when it cannot be written; false too when the program ends meanwhile.
     */
    bool renderToFile(const QFileInfo &target) const;

private:
    QList<NyEventFolderClassificationResult> m_results;
    int m_startDirectoryLength;
    QList<QString> m_fileExtensionFilters;
};
