#pragma once

#include <QCache>
#include <QObject>
#include <QSet>
#include <QThreadPool>

#include "NyBookRenderer.h"

/**
 * Pictures for the screen, decoded on worker threads and kept up to a limit of memory.
 *
 * Lives on the GUI thread; picture() never waits.
 */
class NyFotoImageCache : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyFotoImageCache)
public:
    enum class Urgency { Prefetch, Visible };

    explicit NyFotoImageCache(QObject *parent = nullptr);
    ~NyFotoImageCache() override;

    /**
     * The picture, upright, in about the size of the box. One that is not here yet is loaded, and changed() follows; until then a
     * smaller version is given if there is one.
     */
    NyBookRenderer::Picture picture(const QUrl &url, const QSize &boxPx, Urgency urgency);

    /** Pictures that are still to be loaded. */
    qsizetype pendingCount() const { return m_pending.size(); }

Q_SIGNALS:
    /** A picture has come or has turned out to be missing. */
    void changed();

private:
    struct Entry
    {
        QSize boxPx;
        NyBookRenderer::Picture picture;
    };

    void load(const QUrl &url, const QSize &boxPx, Urgency urgency);
    void store(const QUrl &url, const QSize &boxPx, const QImage &image);

    QCache<QUrl, Entry> m_entries;
    QSet<QUrl> m_pending;
    QThreadPool m_pool;
};
