#pragma once

#include <functional>

#include <QFileSystemWatcher>
#include <QFutureWatcher>
#include <QObject>
#include <QTimer>

#include "NyProposalLister.h"

/**
 * Keeps up with the proposal folder: lists it in the background, again whenever it changes, and brings each listing.
 *
 * Changes that come together make one listing. The folder may disappear and come back. While it is away, and where the system
 * refuses to watch, it is looked for every few seconds. Lives on the GUI thread, on which no listing runs.
 */
class NyProposalFolder : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyProposalFolder)
public:
    /** Says on this thread what a listing is to be made with; one that was made with something else by its end is made again. */
    using RequestSource = std::function<NyProposalLister::Request()>;

    explicit NyProposalFolder(RequestSource source, QObject *parent = nullptr);
    ~NyProposalFolder() override;

    /** Lists now, or again as soon as the present listing is done. */
    void refresh();
    /** Until the listing has been reported, not only made. */
    bool isBusy() const { return m_isListing; }

Q_SIGNALS:
    void started();
    void listed(const NyProposalListing &listing);

private:
    /** What tells whether it is still the same folder, and in the same state. */
    struct Snapshot
    {
        quint64 device = 0;
        /** 0 if there is no folder. */
        quint64 node = 0;
        qint64 changedNs = 0;
        bool isSameFolder(const Snapshot &other) const { return device == other.device && node == other.node; }
        friend bool operator==(const Snapshot &, const Snapshot &) = default;
    };

    void start();
    void finish();
    void watch();
    void handleChange(const QString &path);
    void lookAgain();
    Snapshot look() const;

    QString m_folder;
    RequestSource m_source;
    NyProposalLister::Request m_request;
    QFutureWatcher<NyProposalListing> m_watcher;
    QFileSystemWatcher m_fileSystemWatcher;
    QTimer m_debounce;
    QTimer m_poll;
    QTimer m_settle;
    Snapshot m_snapshot;
    bool m_isListing = false;
    bool m_isOutdated = false;
};
