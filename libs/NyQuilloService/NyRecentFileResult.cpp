#include "NyRecentFileResult.h"

#include <algorithm>
#include <limits>
#include <vector>

#include <NyFoto.h>
#include <NyFotoList.h>
#include <NyFotoListRegistry.h>

#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QSet>

#include "NyFirstEqualFileRemover.h"
#include "NyQuilloServiceConfig.h"

NyRecentFileResult::NyRecentFileResult() = default;

NyRecentFileResult::NyRecentFileResult(const QList<QFileInfo> &files, const NyDateRange &relevantDateRange, int countAfterDateRange,
    const NyEventFolderClassificationResult &classification, const QList<QString> &suggestedStyleIds)
    : m_files(files)
    , m_relevantDateRange(relevantDateRange)
    , m_countAfterDateRange(countAfterDateRange)
    , m_classification(classification)
    , m_suggestedStyleIds(suggestedStyleIds)
{
}

NyRecentFileResult::NyRecentFileResult(const NyRecentFileResult &) = default;
NyRecentFileResult::NyRecentFileResult(NyRecentFileResult &&) noexcept = default;
NyRecentFileResult &NyRecentFileResult::operator=(const NyRecentFileResult &) = default;
NyRecentFileResult &NyRecentFileResult::operator=(NyRecentFileResult &&) noexcept = default;
NyRecentFileResult::~NyRecentFileResult() = default;

NyRecentFileResult NyRecentFileResult::fromFolder(const QDir &folder)
{
    const QStringList nameFilters{QStringLiteral("*.jpg"), QStringLiteral("*.jpeg")};
    return NyRecentFileResult(folder.entryInfoList(nameFilters, QDir::NoFilter, QDir::NoSort), NyDateRange(), 0,
        NyEventFolderClassificationResult(), NySingleton<NyQuilloServiceConfig>::instance().designStyleIds());
}

QMap<QString, int> NyRecentFileResult::filesPerDirCount() const
{
    QMap<QString, int> counts;
    for (const QFileInfo &file : m_files)
        ++counts[file.dir().absolutePath()];
    return counts;
}

QList<QUrl> NyRecentFileResult::photoUrls(int maximum) const
{
    QList<QUrl> urls;
    const QList<QFileInfo> files = m_files.mid(0, maximum);
    urls.reserve(files.size());
    for (const QFileInfo &file : files) {
        const QString path = file.canonicalFilePath();
        if (path.startsWith(QStringLiteral("photokit:"), Qt::CaseSensitive))
            urls.append(QUrl(path, QUrl::TolerantMode));
        else
            urls.append(QUrl::fromLocalFile(path));
    }
    return urls;
}

void NyRecentFileResult::sort()
{
    struct Key
    {
        qint64 birthTimeMs;
        qsizetype index;
        QString path;
    };
    std::vector<Key> keys;
    keys.reserve(std::size_t(m_files.size()));
    for (const QFileInfo &file : std::as_const(m_files)) {
        // Asked for once a file: each time costs a look at the system's time zone. Unknown times sort before all others, as
        // invalid dates do.
        const QDateTime birthTime = file.fileTime(QFileDevice::FileBirthTime);
        const qint64 birthTimeMs = birthTime.isValid() ? birthTime.toMSecsSinceEpoch() : std::numeric_limits<qint64>::min();
        keys.push_back({birthTimeMs, qsizetype(keys.size()), file.filePath()});
    }
    std::sort(keys.begin(), keys.end(), [](const Key &left, const Key &right) {
        if (left.birthTimeMs != right.birthTimeMs)
            return left.birthTimeMs < right.birthTimeMs;
        return left.path < right.path;
    });
    QList<QFileInfo> sorted;
    sorted.reserve(m_files.size());
    for (const Key &key : keys)
        sorted.append(m_files.at(key.index));
    m_files = sorted;
}

void NyRecentFileResult::merge(const NyRecentFileResult &other)
{
    m_files.append(other.m_files);
    m_countAfterDateRange += other.m_countAfterDateRange;
    m_relevantDateRange.expandTo(other.m_relevantDateRange.from());
    m_relevantDateRange.expandTo(other.m_relevantDateRange.to());
    m_classification.expandTo(other.eventFolderType());
    QSet<QString> ids(m_suggestedStyleIds.cbegin(), m_suggestedStyleIds.cend());
    ids.intersect(QSet<QString>(other.m_suggestedStyleIds.cbegin(), other.m_suggestedStyleIds.cend()));
    m_suggestedStyleIds = ids.values();
}

void NyRecentFileResult::excludePreviouslyUsedFotos()
{
    const QList<QFileInfo> usedFiles = NySingleton<NyFotoListRegistry>::instance().fotosUsedForBookProposals().toLocalFileInfoList();
    qDebug() << usedFiles.size() << "photos to be excluded from" << m_files.size();
    QList<QFileInfo> unwanted;
    for (const QFileInfo &file : usedFiles) {
        const QDate birthDate = file.fileTime(QFileDevice::FileBirthTime).date();
        if (birthDate < m_relevantDateRange.from() || birthDate > m_relevantDateRange.to())
            continue;
        unwanted.append(file);
    }
    NyFirstEqualFileRemover::removeFrom(m_files, unwanted);
    qDebug() << m_files.size() << "remaining";
}

void NyRecentFileResult::readFromFileRegistry(const QString &key)
{
    const NyFotoList fotos = NySingleton<NyFotoListRegistry>::instance().fotoList(key);
    for (const NyFoto &foto : fotos)
        m_files.append(foto.localFileInfo());
}

void NyRecentFileResult::writeToFileRegistry(const QString &key) const
{
    NySingleton<NyFotoListRegistry>::instance().add(key, NyFotoList(m_files));
}
