#pragma once

#include <NyDateRange.h>
#include <NyEventFolderClassificationResult.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include "nyquilloservice_export.h"

/**
 * The photos of one scan, or of one event chosen from it, with what the later steps need to know of them.
 *
 * A value: copies are independent and may be handed from thread to thread. Nothing keeps the fields in step with each other when
 * one of them changes.
 */
class NYQUILLOSERVICE_EXPORT NyRecentFileResult
{
public:
    NyRecentFileResult();
    NyRecentFileResult(const QList<QFileInfo> &files, const NyDateRange &relevantDateRange, int countAfterDateRange,
        const NyEventFolderClassificationResult &classification, const QList<QString> &suggestedStyleIds);
    NyRecentFileResult(const NyRecentFileResult &);
    NyRecentFileResult(NyRecentFileResult &&) noexcept;
    NyRecentFileResult &operator=(const NyRecentFileResult &);
    NyRecentFileResult &operator=(NyRecentFileResult &&) noexcept;
    virtual ~NyRecentFileResult();

    /** All *.jpg and *.jpeg of the folder itself, with every configured style and without a date range. */
    static NyRecentFileResult fromFolder(const QDir &folder);

    QList<QFileInfo> files() const { return m_files; }
    void setFiles(const QList<QFileInfo> &files) { m_files = files; }
    /** The days that were looked at, by birth time. */
    NyDateRange relevantDateRange() const { return m_relevantDateRange; }
    void setRelevantDateRange(const NyDateRange &range) { m_relevantDateRange = range; }
    /** How many files were too young for the range; they are not among files(). */
    int countAfterDateRange() const { return m_countAfterDateRange; }
    void setCountAfterDateRange(int count) { m_countAfterDateRange = count; }
    /** Absolute path of the folder where the scan began. */
    QString startDirectory() const { return m_startDirectory; }
    void setStartDirectory(const QString &path) { m_startDirectory = path; }
    QList<QString> recommendedStyleIds() const { return m_suggestedStyleIds; }
    void setSuggestedStyleIds(const QList<QString> &ids) { m_suggestedStyleIds = ids; }
    NyEventFolderClassificationResult classification() const { return m_classification; }

    int count() const { return int(m_files.size()); }
    bool isEmpty() const { return m_files.isEmpty(); }
    NyEventFolderType eventFolderType() const { return m_classification.classification(); }
    /** How many files each folder holds itself, by the folder's absolute path. */
    QMap<QString, int> filesPerDirCount() const;
    /** The canonical URLs of the first @p maximum files, of all when it is negative. Files that are gone have an empty URL. */
    QList<QUrl> photoUrls(int maximum) const;

    /** Oldest birth time first, by path where it is the same. */
    void sort();
    /** Adds the files and the count of the other, widens the range, and keeps the style ids that both have. Does not sort. */
    void merge(const NyRecentFileResult &other);
    /** Takes out the photos that earlier proposals used. Those born outside the relevant range are not looked for. */
    void excludePreviouslyUsedFotos();
    /** Appends the photos stored under the key. */
    void readFromFileRegistry(const QString &key);
    /** Stores the files, and nothing else, under the key. */
    void writeToFileRegistry(const QString &key) const;

private:
    QList<QFileInfo> m_files;
    NyDateRange m_relevantDateRange;
    int m_countAfterDateRange = 0;
    NyEventFolderClassificationResult m_classification;
    QString m_startDirectory;
    QList<QString> m_suggestedStyleIds;
};
