#include "NyVisionMemory.h"

#include <utility>

#include <NyFoto.h>
#include <NyOrrinVisionedMediaItem.h>

#include <QtCore/QHash>
#include <QtCore/QMutex>

namespace
{

struct Entry
{
    NyFotoFileStamp stamp;
    /** Nothing for content that cannot be shown. */
    std::optional<NyOrrinVisionedMediaItem> item;
    qint64 bytes = 0;
};

/** About what an entry occupies, with the parts that lie elsewhere. */
qint64 bytesOf(const QString &location, const std::optional<NyOrrinVisionedMediaItem> &item)
{
    constexpr qint64 HashNodeBytes = 64;
    qint64 bytes = qint64(sizeof(Entry)) + HashNodeBytes + location.size() * qint64(sizeof(QChar));
    if (item) {
        const orrin::Descriptors &seen = item->descriptors().descriptors();
        bytes += item->item().id().size() * qint64(sizeof(QChar));
        bytes += qint64(seen.scenes.size() * sizeof(orrin::Scene) + seen.occasions.size() * sizeof(orrin::OccasionScore));
        bytes += qint64(seen.embedding.size() * sizeof(float));
    }
    return bytes;
}

/** The item without the names of all scenes but the first, which are most of its size and which no album is judged by. */
NyOrrinVisionedMediaItem withoutFurtherScenes(const NyOrrinVisionedMediaItem &item)
{
    orrin::Descriptors seen = item.descriptors().descriptors();
    if (seen.scenes.size() > 1) {
        seen.scenes.resize(1);
        seen.scenes.shrink_to_fit();
    }
    return {item.item(), NyOrrinVisionDescriptors(std::move(seen))};
}

} // namespace

/** Two generations: what is asked for moves to the young one, and when that is full it becomes the old one. */
class NyVisionMemory::Private
{
public:
    using Generation = QHash<QString, Entry>;

    const Entry *find(const Content &content)
    {
        const auto young = m_young.constFind(content.location);
        if (young != m_young.constEnd())
            return young->stamp == content.stamp ? &*young : nullptr;
        const auto old = m_old.constFind(content.location);
        if (old == m_old.constEnd() || old->stamp != content.stamp)
            return nullptr;
        return &insert(content.location, m_old.take(content.location));
    }

    const Entry &insert(const QString &location, Entry entry)
    {
        if (const auto stale = m_young.constFind(location); stale != m_young.constEnd()) {
            m_youngBytes -= stale->bytes;
            m_young.erase(stale);
        }
        if (m_youngBytes + entry.bytes > maximumBytes / 2 && !m_young.isEmpty()) {
            m_old = std::exchange(m_young, {});
            m_youngBytes = 0;
        }
        m_youngBytes += entry.bytes;
        return *m_young.insert(location, std::move(entry));
    }

    QMutex mutex;
    qint64 maximumBytes = 0;

private:
    Generation m_young;
    Generation m_old;
    qint64 m_youngBytes = 0;
};

NyVisionMemory::NyVisionMemory(qint64 maximumBytes)
    : d(std::make_unique<Private>())
{
    d->maximumBytes = maximumBytes;
}

NyVisionMemory::~NyVisionMemory() = default;

NyVisionMemory::Content NyVisionMemory::contentOf(const NyFoto &foto)
{
    return {foto.location(), foto.isLocalFile() ? NyFotoFileStamp::ofFileAndSidecars(foto.location()) : NyFotoFileStamp()};
}

std::optional<bool> NyVisionMemory::isValid(const Content &content)
{
    if (!content.isValid())
        return {};
    const QMutexLocker locker(&d->mutex);
    if (const Entry *known = d->find(content))
        return known->item.has_value();
    return {};
}

std::optional<NyOrrinVisionedMediaItem> NyVisionMemory::item(const Content &content)
{
    if (!content.isValid())
        return {};
    const QMutexLocker locker(&d->mutex);
    if (const Entry *known = d->find(content))
        return known->item;
    return {};
}

void NyVisionMemory::rememberInvalid(const Content &content)
{
    if (!content.isValid())
        return;
    const QMutexLocker locker(&d->mutex);
    d->insert(content.location, {content.stamp, {}, bytesOf(content.location, {})});
}

void NyVisionMemory::remember(const Content &content, const NyOrrinVisionedMediaItem &item)
{
    if (!content.isValid() || !item.descriptors().isValid())
        return;
    const std::optional<NyOrrinVisionedMediaItem> kept = withoutFurtherScenes(item);
    const QMutexLocker locker(&d->mutex);
    d->insert(content.location, {content.stamp, kept, bytesOf(content.location, kept)});
}
