#include "NyFotoImageCache.h"

#include <algorithm>

#include <QThread>

#include <NyFoto.h>
#include <NyImageLoader.h>

namespace
{

/** Costs are counted in KiB. */
constexpr qsizetype MAXIMUM_COST = 384 * 1024;
/** A picture that was loaded for a box at least this much of the wanted one is good enough. */
constexpr double GOOD_ENOUGH = 0.85;

bool isGoodEnough(const QSize &loadedFor, const QSize &wanted)
{
    return loadedFor.width() >= wanted.width() * GOOD_ENOUGH && loadedFor.height() >= wanted.height() * GOOD_ENOUGH;
}

}

NyFotoImageCache::NyFotoImageCache(QObject *parent)
    : QObject(parent)
    , m_entries(MAXIMUM_COST)
{
    m_pool.setMaxThreadCount(std::clamp(QThread::idealThreadCount() - 1, 1, 4));
}

NyFotoImageCache::~NyFotoImageCache()
{
    m_pool.clear();
    m_pool.waitForDone();
}

NyBookRenderer::Picture NyFotoImageCache::picture(const QUrl &url, const QSize &boxPx, Urgency urgency)
{
    using State = NyBookRenderer::Picture::State;
    const Entry *entry = m_entries.object(url);
    if (entry && (entry->picture.state == State::Missing || isGoodEnough(entry->boxPx, boxPx)))
        return entry->picture;
    // Copied before load(): storing may move entries out.
    const NyBookRenderer::Picture known = entry ? entry->picture : NyBookRenderer::Picture{State::Loading, QImage()};
    load(url, boxPx, urgency);
    return known;
}

void NyFotoImageCache::load(const QUrl &url, const QSize &boxPx, Urgency urgency)
{
    if (m_pending.contains(url))
        return;
    m_pending.insert(url);
    const auto work = [this, url, boxPx] {
        const NyFoto foto(url);
        const QImage image = foto.isLocalFile() ? NyImageLoader::instance().loadScaled(foto.location(), boxPx) : QImage();
        // The destructor waits for this thread, and what is queued for a dead object is dropped.
        QMetaObject::invokeMethod(
            this, [this, url, boxPx, image] { store(url, boxPx, image); }, Qt::QueuedConnection);
    };
    m_pool.start(work, urgency == Urgency::Visible ? 1 : 0);
}

void NyFotoImageCache::store(const QUrl &url, const QSize &boxPx, const QImage &image)
{
    using State = NyBookRenderer::Picture::State;
    m_pending.remove(url);
    const qsizetype cost = std::clamp<qsizetype>(image.sizeInBytes() / 1024, 1, MAXIMUM_COST);
    m_entries.insert(url, new Entry{boxPx, {image.isNull() ? State::Missing : State::Ready, image}}, cost);
    Q_EMIT changed();
}
