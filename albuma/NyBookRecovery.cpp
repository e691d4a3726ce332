#include "NyBookRecovery.h"

#include <utility>

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QtConcurrent/QtConcurrentRun>

#include <NyBookProjectFile.h>
#include <NyDirectoryConfig.h>
#include <NyFileHandler.h>

#include "NyBookDocument.h"

using namespace Qt::Literals::StringLiterals;

/** The file of one book's edits. */
class NyBookRecovery::Store
{
public:
    explicit Store(const QString &bookPath)
        : m_file(fileOf(bookPath))
    {
    }

    Found search()
    {
        if (!acquire())
            return {};
        removeOldFiles();
        const QFileInfo file(m_file);
        if (!file.exists())
            return {};
        NyBookProjectFile::Result result = NyBookProjectFile::load(file);
        if (!result.project) {
            // Out of the way of the next edits.
            const bool isMoved = QFile::rename(m_file, m_file + u".broken"_s);
            qWarning().noquote() << "unsaved edits of a book cannot be read" << (isMoved ? "and are set aside:" : ":") << result.error;
        }
        return {std::move(result.project), file.lastModified()};
    }

    void write(const NyBookProject &project)
    {
        if (acquire())
            NyFileHandler::writeBinaryFile(QFileInfo(m_file), NyBookProjectFile::toJson(project));
    }

    void remove()
    {
        if (m_lock && m_lock->isLocked() && QFileInfo::exists(m_file))
            NyFileHandler::deleteFiles({QFileInfo(m_file)});
    }

private:
    bool acquire()
    {
        if (m_lock && m_lock->isLocked())
            return true;
        const QString folder = QFileInfo(m_file).absolutePath();
        if (!QDir().mkpath(folder)) {
            report(folder);
            return false;
        }
        m_lock = std::make_unique<QLockFile>(m_file + u".lock"_s);
        // Held for as long as the book is open; a process that is gone holds it no more.
        m_lock->setStaleLockTime(0);
        if (m_lock->tryLock(0))
            return true;
        if (m_lock->error() != QLockFile::LockFailedError)
            report(m_lock->fileName());
        return false;
    }

    void report(const QString &path)
    {
        if (!std::exchange(m_isReported, true))
            qWarning().noquote() << "unsaved edits would not survive a crash, cannot write" << path;
    }

    void removeOldFiles() const
    {
        const QDateTime oldest = QDateTime::currentDateTime().addDays(-LongestDays);
        const QFileInfoList files = QDir(QFileInfo(m_file).absolutePath()).entryInfoList(QDir::Files | QDir::Hidden);
        for (const QFileInfo &file : files) {
            // Whoever opens the book has come back for its edits.
            if (file.lastModified() < oldest && file.absoluteFilePath() != m_file) {
                qDebug().noquote() << "removing unsaved edits that nobody came back for:" << file.absoluteFilePath();
                QFile::remove(file.absoluteFilePath());
            }
        }
    }

    QString m_file;
    std::unique_ptr<QLockFile> m_lock;
    bool m_isReported = false;
};

NyBookRecovery::NyBookRecovery(NyBookDocument &document, QObject *parent)
    : QObject(parent)
    , m_document(document)
    , m_store(std::make_shared<Store>(document.path()))
    , m_path(document.path())
{
    // One after the other, in their order.
    m_pool.setMaxThreadCount(1);
    m_timer.setSingleShot(true);
    m_timer.setInterval(Delay);
    connect(&m_timer, &QTimer::timeout, this, &NyBookRecovery::write);
    connect(&m_document, &NyBookDocument::changed, this, [this] {
        m_isDiscarded = false;
        update();
    });
    connect(&m_document, &NyBookDocument::modifiedChanged, this, &NyBookRecovery::update);
    connect(&m_document, &NyBookDocument::saved, this, &NyBookRecovery::update);
    connect(&m_search, &QFutureWatcher<Found>::finished, this, &NyBookRecovery::handleFound);
    m_search.setFuture(QtConcurrent::run(&m_pool, [store = m_store] { return store->search(); }));
}

NyBookRecovery::~NyBookRecovery()
{
    m_document.disconnect(this);
    m_search.disconnect(this);
    // What was left behind and has not been restored yet stays as it is.
    const bool isWaiting = m_isSearching && m_search.result().project;
    if (!isWaiting && (!m_document.isModified() || m_isDiscarded))
        remove();
    else if (!isWaiting && (m_isSearching || m_timer.isActive()))
        write();
    m_pool.waitForDone();
}

QString NyBookRecovery::fileOf(const QString &bookPath)
{
    const QByteArray hash = QCryptographicHash::hash(bookPath.toUtf8(), QCryptographicHash::Sha1).toHex();
    return NyDirectoryConfig::instance().recoveryFolder() + u'/' + QString::fromLatin1(hash) + u".nqp"_s;
}

template <class Job>
void NyBookRecovery::enqueue(Job job)
{
    m_pool.start([store = m_store, job] { job(*store); });
}

void NyBookRecovery::handleFound()
{
    m_isSearching = false;
    const Found found = m_search.result();
    // Another book may lie there by now, after a deletion, under the same name.
    const bool isSameBook = found.project && found.project->creationDateEpoch == m_document.project().creationDateEpoch;
    if (found.project && !isSameBook)
        qWarning().noquote() << "unsaved edits are of another book than" << m_path << "and are dropped:" << found.project->title;
    if (isSameBook && *found.project != m_document.project()) {
        m_document.restore(*found.project);
        Q_EMIT restored(found.lastEdit);
    }
    update();
}

void NyBookRecovery::update()
{
    if (m_isSearching)
        return;
    if (m_path != m_document.path()) {
        // Saved elsewhere, so the edits are there and the book here is as it was.
        remove();
        m_path = m_document.path();
        m_store = std::make_shared<Store>(m_path);
    }
    if (!m_document.isModified() || m_isDiscarded) {
        m_timer.stop();
        remove();
    } else if (!m_timer.isActive()) {
        m_timer.start();
    }
}

void NyBookRecovery::write()
{
    m_timer.stop();
    enqueue([project = m_document.project()](Store &store) { store.write(project); });
}

void NyBookRecovery::remove()
{
    enqueue([](Store &store) { store.remove(); });
}

void NyBookRecovery::discard()
{
    m_isDiscarded = true;
    update();
}
