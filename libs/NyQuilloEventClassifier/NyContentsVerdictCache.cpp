#include "NyContentsVerdictCache.h"

#include <ctime>

#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>
#include <QtCore/QMutexLocker>

#include <sys/stat.h>

namespace
{

constexpr qsizetype MostVerdicts = 4096;
/** Coarser than the clock of any file system in use; FAT counts in steps of two seconds. */
constexpr time_t SettlingSeconds = 3;

template <typename Number>
QByteArrayView bytes(const Number &number)
{
    return QByteArrayView(reinterpret_cast<const char *>(&number), sizeof number);
}

}

NyContentsVerdictCache &NyContentsVerdictCache::instance()
{
    static NyContentsVerdictCache *const cache = new NyContentsVerdictCache;
    return *cache;
}

QByteArray NyContentsVerdictCache::key(const QStringList &folderPaths)
{
    const time_t now = ::time(nullptr);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const QString &path : folderPaths) {
        struct stat status = {};
        const QByteArray name = QFile::encodeName(path);
        if (::stat(name.constData(), &status) != 0 || status.st_mtim.tv_sec > now - SettlingSeconds)
            return QByteArray();
        hash.addData(QByteArrayView(name.constData(), name.size() + 1));
        hash.addData(bytes(status.st_dev));
        hash.addData(bytes(status.st_ino));
        hash.addData(bytes(status.st_mtim.tv_sec));
        hash.addData(bytes(status.st_mtim.tv_nsec));
    }
    return hash.result();
}

std::optional<NyContentsVerdictCache::Verdict> NyContentsVerdictCache::find(const QByteArray &key) const
{
    const QMutexLocker locker(&m_mutex);
    const auto verdict = m_verdicts.constFind(key);
    if (verdict == m_verdicts.cend())
        return std::nullopt;
    return *verdict;
}

void NyContentsVerdictCache::insert(const QByteArray &key, Verdict verdict)
{
    if (key.isEmpty())
        return;
    const QMutexLocker locker(&m_mutex);
    // Verdicts on folders as they once were are never asked for again; beginning anew costs one scan.
    if (m_verdicts.size() >= MostVerdicts)
        m_verdicts.clear();
    m_verdicts.insert(key, verdict);
}
