#pragma once

#include <QtCore/QFileInfo>
#include <QtCore/QString>

#include "NyEventFolderType.h"
#include "NyOccasionInfoList.h"
#include "nyquilloeventclassifier_export.h"

/**
 * One classified folder: where it is, what it is, and the occasions found for it.
 *
 * Cheap to copy, to compare and to hash: the folder's absolute path is worked out once.
 */
class NYQUILLOEVENTCLASSIFIER_EXPORT NyEventFolderClassificationResult
{
public:
    NyEventFolderClassificationResult();
    NyEventFolderClassificationResult(const QFileInfo &directory, const NyEventFolderType &classification);
    NyEventFolderClassificationResult(const NyEventFolderClassificationResult &) = default;
    NyEventFolderClassificationResult(NyEventFolderClassificationResult &&) = default;
    NyEventFolderClassificationResult &operator=(const NyEventFolderClassificationResult &) = default;
    NyEventFolderClassificationResult &operator=(NyEventFolderClassificationResult &&) = default;
    virtual ~NyEventFolderClassificationResult();

    QFileInfo directory() const { return m_directory; }
    /** The same as directory().absoluteFilePath(), without the cost. Empty for a default-constructed result. */
    const QString &directoryPath() const { return m_directoryPath; }
    NyEventFolderType classification() const { return m_classification; }
    NyOccasionInfoList occasionInformation() const { return m_occasionInformation; }
    void setOccasionInformation(const NyOccasionInfoList &occasions);

    /** Adds the kinds of the argument to the classification; the directory and the occasions stay. */
    void expandTo(const NyEventFolderType &classification);

    /** Same path and same classification. Occasions do not count: they are found later, for a folder that is the same still. */
    bool operator==(const NyEventFolderClassificationResult &other) const;
    bool operator!=(const NyEventFolderClassificationResult &other) const { return !(*this == other); }

private:
    QFileInfo m_directory;
    NyEventFolderType m_classification;
    NyOccasionInfoList m_occasionInformation;
    QString m_directoryPath;
};

/**
 * The hash of the directory's path. It takes no seed on purpose: Qt's hashes then put their own onto it by XOR, and keep the order
 * of iteration that goes with that.
 */
NYQUILLOEVENTCLASSIFIER_EXPORT size_t qHash(const NyEventFolderClassificationResult &result) noexcept;
