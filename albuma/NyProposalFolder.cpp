#include "NyProposalFolder.h"

#include <chrono>

#include <sys/stat.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtConcurrent/QtConcurrentRun>

#include <NyQuilloServiceSettings.h>

namespace
{

using namespace std::chrono_literals;

/** A book comes as three files, one after the other. */
constexpr auto Debounce = 300ms;
constexpr auto Poll = 5s;
// A file that is written in place does not change its folder, so its end is not reported.
constexpr auto FirstSettle = 1s;
constexpr auto LastSettle = 32s;

QString nearestExistingParent(const QString &path)
{
    QFileInfo parent(QFileInfo(path).absolutePath());
    while (!parent.isDir() && !parent.isRoot())
        parent = QFileInfo(parent.absolutePath());
    return parent.absoluteFilePath();
}

}

NyProposalFolder::NyProposalFolder(RequestSource source, QObject *parent)
    : QObject(parent)
    , m_folder(QDir::cleanPath(NyQuilloServiceSettings::instance().bookProposalFileFolder()))
    , m_source(std::move(source))
{
    m_debounce.setSingleShot(true);
    m_debounce.setInterval(Debounce);
    m_settle.setSingleShot(true);
    m_settle.setInterval(FirstSettle);
    m_poll.setInterval(Poll);
    connect(&m_debounce, &QTimer::timeout, this, &NyProposalFolder::refresh);
    connect(&m_settle, &QTimer::timeout, this, &NyProposalFolder::refresh);
    connect(&m_poll, &QTimer::timeout, this, &NyProposalFolder::lookAgain);
    connect(&m_fileSystemWatcher, &QFileSystemWatcher::directoryChanged, this, &NyProposalFolder::handleChange);
    connect(&m_watcher, &QFutureWatcher<NyProposalListing>::finished, this, &NyProposalFolder::finish);
}

NyProposalFolder::~NyProposalFolder()
{
    // What is listed by now concerns nobody; the thread ends with the program at the latest.
    m_watcher.disconnect(this);
}

void NyProposalFolder::refresh()
{
    if (isBusy())
        m_isOutdated = true;
    else
        start();
}

void NyProposalFolder::start()
{
    m_isListing = true;
    m_isOutdated = false;
    m_debounce.stop();
    // First, so that a change during the listing is reported.
    watch();
    m_request = m_source();
    m_watcher.setFuture(QtConcurrent::run(&NyProposalLister::list, m_request));
    Q_EMIT started();
}

void NyProposalFolder::finish()
{
    if (m_request != m_source()) {
        start();
        return;
    }
    const NyProposalListing listing = m_watcher.result();
    m_isListing = false;
    if (m_isOutdated)
        start();
    if (!listing.isUnsettled) {
        m_settle.setInterval(FirstSettle);
        m_settle.stop();
    } else if (m_settle.intervalAsDuration() < LastSettle) {
        m_settle.setInterval(m_settle.intervalAsDuration() * 2);
        m_settle.start();
    }
    Q_EMIT listed(listing);
}

NyProposalFolder::Snapshot NyProposalFolder::look() const
{
    struct stat status = {};
    if (::stat(QFile::encodeName(m_folder).constData(), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino, qint64(status.st_ctim.tv_sec) * 1000000000 + status.st_ctim.tv_nsec};
}

void NyProposalFolder::watch()
{
    const Snapshot now = look();
    // The watch goes with a folder that is renamed.
    if (!now.isSameFolder(m_snapshot) && m_fileSystemWatcher.directories().contains(m_folder))
        m_fileSystemWatcher.removePath(m_folder);
    m_snapshot = now;
    QStringList wanted{nearestExistingParent(m_folder)};
    if (now.node != 0)
        wanted.append(m_folder);
    const QStringList watched = m_fileSystemWatcher.directories();
    for (const QString &path : watched) {
        if (!wanted.contains(path))
            m_fileSystemWatcher.removePath(path);
    }
    bool isWatched = true;
    for (const QString &path : std::as_const(wanted)) {
        if (!watched.contains(path) && !m_fileSystemWatcher.addPath(path))
            isWatched = false;
    }
    // A folder that is not there may come where nobody watches: with a drive, at its place or behind a link.
    if (isWatched && now.node != 0)
        m_poll.stop();
    else
        m_poll.start();
}

void NyProposalFolder::handleChange(const QString &path)
{
    // In the folders above much happens that is not about this one.
    if (path != m_folder && look().isSameFolder(m_snapshot) && nearestExistingParent(m_folder) == path)
        return;
    m_settle.stop();
    m_settle.setInterval(FirstSettle);
    // Not started anew by each change: many in a row must not keep the list waiting.
    if (!m_debounce.isActive())
        m_debounce.start();
}

void NyProposalFolder::lookAgain()
{
    if (look() != m_snapshot)
        refresh();
}
