#pragma once

#include <QHash>
#include <QObject>
#include <QSet>
#include <QThreadPool>
#include <QUrl>

#include "NyBookRenderer.h"

/**
 * Pictures for the screen, decoded on worker threads and kept up to a limit of memory, the least recently used leaving first.
 *
 * A picture is kept in sizes far apart from each other, so that neither zooming in nor going back has to wait or to scale a large
 * picture for each painting. Lives on the GUI thread; picture() never waits.
 */
class NyFotoImageCache : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyFotoImageCache)
public:
    enum class Urgency { Prefetch, Visible };

    static constexpr qsizetype DefaultMaximumBytes = qsizetype(384) * 1024 * 1024;

    /** The newest picture is kept, however large it is. */
    explicit NyFotoImageCache(qsizetype maximumBytes = DefaultMaximumBytes, QObject *parent = nullptr);
    ~NyFotoImageCache() override;

    /**
     * The picture, upright, in about the size of the box or as large as the file has it. One that is not here yet is loaded, and
     * changed() follows; until then another size is given if there is one. One much too large is made smaller in the same way.
     */
    NyBookRenderer::Picture picture(const QUrl &url, const QSize &boxPx, Urgency urgency);

    /** Pictures that are still to be loaded. */
    qsizetype pendingCount() const { return m_pending.size(); }
    /** What the pictures take. */
    qsizetype usedBytes() const { return m_usedBytes; }
    qsizetype maximumBytes() const { return m_maximumBytes; }

Q_SIGNALS:
    /** A picture has come or has turned out to be missing. */
    void changed();

private:
    struct Version
    {
        QSize boxPx;
        /** Null if the file cannot be read. */
        QImage image;
        quint64 lastUse = 0;
        /** The file has no more pixels. */
        bool isWhole = false;
    };

    void load(const QUrl &url, const QSize &boxPx, const QImage &larger, Urgency urgency);
    void store(const QUrl &url, const Version &version);
    void makeRoom(const QUrl &kept);

    qsizetype m_maximumBytes;
    qsizetype m_usedBytes = 0;
    quint64 m_uses = 0;
    /** From small to large. */
    QHash<QUrl, QList<Version>> m_versions;
    QSet<QUrl> m_pending;
    QThreadPool m_pool;
};
