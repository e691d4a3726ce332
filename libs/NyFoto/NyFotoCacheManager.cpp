#include "NyFotoCacheManager.h"

#include <list>
#include <utility>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <QtCore/QHash>
#include <QtCore/QMutex>

namespace
{

struct DrawableEntry
{
    QString key;
    NyFotoFileStamp stamp;
    QImage image;
};

struct FactsEntry
{
    QString location;
    NyFotoFileStamp stamp;
    std::optional<NyImageMetaData> metaData;
    std::optional<QSize> size;
};

QString drawableKey(const QString &location, const QSize &box)
{
    return QString::number(box.width()) + u'x' + QString::number(box.height()) + u' ' + location;
}

}

struct NyFotoCacheManager::Data
{
    mutable QMutex mutex;
    qint64 maximumBytes = DefaultMaximumBytes;
    qint64 usedBytes = 0;
    // In both lists what was used last stands in front.
    std::list<DrawableEntry> drawables;
    QHash<QString, std::list<DrawableEntry>::iterator> drawableByKey;
    std::list<FactsEntry> facts;
    QHash<QString, std::list<FactsEntry>::iterator> factsByLocation;

    void dropDrawable(std::list<DrawableEntry>::iterator entry)
    {
        usedBytes -= entry->image.sizeInBytes();
        drawableByKey.remove(entry->key);
        drawables.erase(entry);
    }

    void dropWhatExceeds()
    {
        while (usedBytes > maximumBytes && !drawables.empty())
            dropDrawable(std::prev(drawables.end()));
    }

    FactsEntry *factsOf(const QString &location, const NyFotoFileStamp &stamp)
    {
        const auto found = factsByLocation.constFind(location);
        if (found == factsByLocation.constEnd() || (*found)->stamp != stamp)
            return nullptr;
        facts.splice(facts.begin(), facts, *found);
        return &facts.front();
    }

    FactsEntry &makeFacts(const QString &location, const NyFotoFileStamp &stamp)
    {
        if (FactsEntry *known = factsOf(location, stamp))
            return *known;
        if (const auto stale = factsByLocation.find(location); stale != factsByLocation.end()) {
            facts.erase(*stale);
            factsByLocation.erase(stale);
        }
        facts.push_front({location, stamp, {}, {}});
        factsByLocation.insert(location, facts.begin());
        if (facts.size() > std::size_t(MaximumMetaDataCount)) {
            factsByLocation.remove(facts.back().location);
            facts.pop_back();
        }
        return facts.front();
    }
};

NyFotoCacheManager::NyFotoCacheManager()
    : m_data(std::make_unique<Data>())
{
}

NyFotoCacheManager::~NyFotoCacheManager() = default;

void NyFotoCacheManager::clearCache()
{
    {
        const QMutexLocker locker(&m_data->mutex);
        m_data->drawableByKey = {};
        m_data->drawables.clear();
        m_data->usedBytes = 0;
        m_data->factsByLocation = {};
        m_data->facts.clear();
    }
#ifdef __GLIBC__
    // Drawables are small enough to lie on the heap among other things, whose pages are kept otherwise.
    ::malloc_trim(0);
#endif
}

qint64 NyFotoCacheManager::maximumBytes() const
{
    const QMutexLocker locker(&m_data->mutex);
    return m_data->maximumBytes;
}

void NyFotoCacheManager::setMaximumBytes(qint64 bytes)
{
    const QMutexLocker locker(&m_data->mutex);
    m_data->maximumBytes = qMax(qint64(0), bytes);
    m_data->dropWhatExceeds();
}

qint64 NyFotoCacheManager::usedBytes() const
{
    const QMutexLocker locker(&m_data->mutex);
    return m_data->usedBytes;
}

QImage NyFotoCacheManager::drawable(const QString &location, const NyFotoFileStamp &stamp, const QSize &box)
{
    const QMutexLocker locker(&m_data->mutex);
    const auto found = m_data->drawableByKey.constFind(drawableKey(location, box));
    if (found == m_data->drawableByKey.constEnd())
        return {};
    const auto entry = *found;
    if (entry->stamp != stamp) {
        m_data->dropDrawable(entry);
        return {};
    }
    m_data->drawables.splice(m_data->drawables.begin(), m_data->drawables, entry);
    return entry->image;
}

void NyFotoCacheManager::insertDrawable(const QString &location, const NyFotoFileStamp &stamp, const QSize &box, const QImage &image)
{
    const QMutexLocker locker(&m_data->mutex);
    const QString key = drawableKey(location, box);
    if (const auto old = m_data->drawableByKey.constFind(key); old != m_data->drawableByKey.constEnd())
        m_data->dropDrawable(*old);
    // One that does not fit would only drive out all others first.
    if (image.isNull() || image.sizeInBytes() > m_data->maximumBytes)
        return;
    m_data->drawables.push_front({key, stamp, image});
    m_data->drawableByKey.insert(key, m_data->drawables.begin());
    m_data->usedBytes += image.sizeInBytes();
    m_data->dropWhatExceeds();
}

std::optional<NyImageMetaData> NyFotoCacheManager::metaData(const QString &location, const NyFotoFileStamp &stamp)
{
    const QMutexLocker locker(&m_data->mutex);
    const FactsEntry *facts = m_data->factsOf(location, stamp);
    return facts ? facts->metaData : std::nullopt;
}

void NyFotoCacheManager::insertMetaData(const QString &location, const NyFotoFileStamp &stamp, const NyImageMetaData &metaData)
{
    const QMutexLocker locker(&m_data->mutex);
    m_data->makeFacts(location, stamp).metaData = metaData;
}

std::optional<QSize> NyFotoCacheManager::size(const QString &location, const NyFotoFileStamp &stamp)
{
    const QMutexLocker locker(&m_data->mutex);
    const FactsEntry *facts = m_data->factsOf(location, stamp);
    return facts ? facts->size : std::nullopt;
}

void NyFotoCacheManager::insertSize(const QString &location, const NyFotoFileStamp &stamp, const QSize &size)
{
    const QMutexLocker locker(&m_data->mutex);
    m_data->makeFacts(location, stamp).size = size;
}
