#include "NyFotoImageCache.h"

#include <algorithm>
#include <limits>

#include <QThread>

#include <NyFoto.h>
#include <NyImageLoader.h>

namespace
{

/** A picture that was loaded for a box at least this much of the wanted one is good enough. */
constexpr double GOOD_ENOUGH = 0.85;
/** One that is larger than so many times the wanted box costs too much to be painted. */
constexpr double TOO_LARGE = 2;

bool isGoodEnough(const QSize &loadedFor, const QSize &wanted)
{
    return loadedFor.width() >= wanted.width() * GOOD_ENOUGH && loadedFor.height() >= wanted.height() * GOOD_ENOUGH;
}

bool isTooLarge(const QSize &size, const QSize &wanted)
{
    return size.width() > wanted.width() * TOO_LARGE || size.height() > wanted.height() * TOO_LARGE;
}

}

NyFotoImageCache::NyFotoImageCache(qsizetype maximumBytes, QObject *parent)
    : QObject(parent)
    , m_maximumBytes(maximumBytes)
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
    const auto found = m_versions.find(url);
    if (found == m_versions.end()) {
        load(url, boxPx, QImage(), urgency);
        return {State::Loading, QImage()};
    }
    QList<Version> &versions = *found;
    const auto isEnough = [&](const Version &version) { return version.isWhole || isGoodEnough(version.boxPx, boxPx); };
    auto best = std::find_if(versions.begin(), versions.end(), isEnough);
    const bool isThere = best != versions.end();
    if (!isThere)
        best = std::prev(versions.end());
    best->lastUse = ++m_uses;
    if (best->image.isNull())
        return {State::Missing, QImage()};
    if (isThere && !isTooLarge(best->image.size(), boxPx))
        return {State::Ready, best->image};
    const QImage image = best->image;
    load(url, boxPx, isThere ? image : QImage(), urgency);
    return {State::Ready, image, true};
}

void NyFotoImageCache::load(const QUrl &url, const QSize &boxPx, const QImage &larger, Urgency urgency)
{
    if (m_pending.contains(url))
        return;
    m_pending.insert(url);
    const auto work = [this, url, boxPx, larger] {
        Version version;
        version.boxPx = boxPx;
        if (!larger.isNull()) {
            version.image = larger.scaled(
                larger.size().scaled(boxPx, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        } else if (const NyFoto foto(url); foto.isLocalFile()) {
            version.image = NyImageLoader::instance().loadScaled(foto.location(), boxPx);
        }
        version.isWhole = version.image.width() < boxPx.width() && version.image.height() < boxPx.height();
        // The destructor waits for this thread, and what is queued for a dead object is dropped.
        QMetaObject::invokeMethod(
            this, [this, url, version] { store(url, version); }, Qt::QueuedConnection);
    };
    m_pool.start(work, urgency == Urgency::Visible ? 1 : 0);
}

void NyFotoImageCache::store(const QUrl &url, const Version &version)
{
    m_pending.remove(url);
    QList<Version> &versions = m_versions[url];
    // A file that has gone since is still shown as it was.
    if (!version.image.isNull() || versions.isEmpty()) {
        // Sizes that the new one serves as well go, but for the smallest, in which the whole spread is shown.
        for (qsizetype i = versions.size() - 1; i >= 0; --i) {
            const QSize servedPx = versions.at(i).boxPx;
            const bool isServed = (version.isWhole || isGoodEnough(version.boxPx, servedPx)) && !isTooLarge(version.image.size(), servedPx);
            if (isServed && (i > 0 || servedPx == version.boxPx)) {
                m_usedBytes -= versions.at(i).image.sizeInBytes();
                versions.remove(i);
            }
        }
        const auto isSmaller = [](const Version &one, const Version &other) { return one.boxPx.width() < other.boxPx.width(); };
        m_usedBytes += version.image.sizeInBytes();
        versions.insert(std::upper_bound(versions.begin(), versions.end(), version, isSmaller), version)->lastUse = ++m_uses;
    } else {
        // Nothing larger will come, so that it is not asked for again and again.
        versions.last().isWhole = true;
    }
    makeRoom(url);
    Q_EMIT changed();
}

void NyFotoImageCache::makeRoom(const QUrl &kept)
{
    while (m_usedBytes > m_maximumBytes) {
        auto oldest = m_versions.end();
        qsizetype oldestIndex = 0;
        quint64 oldestUse = std::numeric_limits<quint64>::max();
        for (auto it = m_versions.begin(); it != m_versions.end(); ++it) {
            for (qsizetype i = 0; i < it->size(); ++i) {
                const Version &version = it->at(i);
                const bool isNewest = it.key() == kept && version.lastUse == m_uses;
                if (!isNewest && !version.image.isNull() && version.lastUse < oldestUse) {
                    oldest = it;
                    oldestIndex = i;
                    oldestUse = version.lastUse;
                }
            }
        }
        if (oldest == m_versions.end())
            return;
        m_usedBytes -= oldest->at(oldestIndex).image.sizeInBytes();
        oldest->remove(oldestIndex);
        if (oldest->isEmpty())
            m_versions.erase(oldest);
    }
}
