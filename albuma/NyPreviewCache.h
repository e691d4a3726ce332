#pragma once

#include <QCache>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSet>
#include <QSize>
#include <QString>
#include <QThreadPool>

struct NyProposal;

/**
 * The proposals' previews in the size of their cards, decoded and scaled on worker threads and kept up to a limit of memory.
 *
 * What was asked for last comes first, and only as much waits as fits on a screen: after a quick scroll through thousands the
 * cards that are seen do not wait for those that were passed. Lives on the GUI thread; preview() never waits.
 */
class NyPreviewCache : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyPreviewCache)
public:
    enum class State { Ready, Loading, None };
    struct Preview
    {
        State state = State::None;
        /** No larger than the box; of another size while the wanted one is being loaded. */
        QImage image;
    };

    /** Requests beyond this are dropped, the oldest first. */
    static constexpr qsizetype LongestQueue = 64;

    explicit NyPreviewCache(QObject *parent = nullptr);
    ~NyPreviewCache() override;

    /** The preview in a box of px. One that is not here yet is loaded, and changed() follows. */
    Preview preview(const NyProposal &proposal, const QSize &boxPx);

    bool isIdle() const { return m_loading.isEmpty() && m_waiting.isEmpty(); }

Q_SIGNALS:
    void changed();

private:
    struct Request
    {
        QString path;
        qint64 stampMs = -1;
        QSize boxPx;
    };
    struct Entry
    {
        qint64 stampMs = -1;
        QSize boxPx;
        QImage image;
    };

    void startNext();
    void store(const Request &request, const QImage &image);

    QCache<QString, Entry> m_entries;
    QList<Request> m_waiting;
    QSet<QString> m_loading;
    QThreadPool m_pool;
};
