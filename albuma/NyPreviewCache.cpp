#include "NyPreviewCache.h"

#include <algorithm>

#include <QThread>

#include <NyImageLoader.h>

#include "NyProposal.h"

namespace
{

/** Costs are counted in KiB. Some hundred cards, or as many as are seen at once on the largest screens. */
constexpr qsizetype MaximumCost = 128 * 1024;

}

NyPreviewCache::NyPreviewCache(QObject *parent)
    : QObject(parent)
    , m_entries(MaximumCost)
{
    m_pool.setMaxThreadCount(std::clamp(QThread::idealThreadCount() - 1, 1, 4));
}

NyPreviewCache::~NyPreviewCache()
{
    m_pool.clear();
    m_pool.waitForDone();
}

NyPreviewCache::Preview NyPreviewCache::preview(const NyProposal &proposal, const QSize &boxPx)
{
    if (proposal.previewStampMs < 0 || boxPx.isEmpty())
        return {};
    const Entry *entry = m_entries.object(proposal.previewFile);
    if (entry && entry->stampMs == proposal.previewStampMs && entry->boxPx == boxPx)
        return {entry->image.isNull() ? State::None : State::Ready, entry->image};
    const QImage old = entry ? entry->image : QImage();
    if (!m_loading.contains(proposal.previewFile)) {
        erase_if(m_waiting, [&proposal](const Request &request) { return request.path == proposal.previewFile; });
        m_waiting.append({proposal.previewFile, proposal.previewStampMs, boxPx});
        if (m_waiting.size() > LongestQueue)
            m_waiting.removeFirst();
        startNext();
    }
    return {old.isNull() ? State::Loading : State::Ready, old};
}

void NyPreviewCache::startNext()
{
    while (!m_waiting.isEmpty() && m_loading.size() < m_pool.maxThreadCount()) {
        const Request request = m_waiting.takeLast();
        m_loading.insert(request.path);
        m_pool.start([this, request] {
            const QImage image = NyImageLoader::instance().loadScaled(request.path, request.boxPx);
            // The destructor waits for this thread, and what is queued for a dead object is dropped.
            QMetaObject::invokeMethod(
                this, [this, request, image] { store(request, image); }, Qt::QueuedConnection);
        });
    }
}

void NyPreviewCache::store(const Request &request, const QImage &image)
{
    m_loading.remove(request.path);
    const qsizetype cost = std::clamp<qsizetype>(image.sizeInBytes() / 1024, 1, MaximumCost);
    m_entries.insert(request.path, new Entry{request.stampMs, request.boxPx, image}, cost);
    startNext();
    Q_EMIT changed();
}
