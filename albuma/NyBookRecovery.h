#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include <QDateTime>
#include <QFutureWatcher>
#include <QObject>
#include <QThreadPool>
#include <QTimer>

#include <NyBookProject.h>

class NyBookDocument;

/**
 * Keeps the unsaved edits of an open book in a file of their own, from which they come back when the program has ended without saving
 * them: after a crash, a power cut, a session that did not wait.
 *
 * Edits that an earlier process left behind become the document's first undo step, unless another book, with another date of creation,
 * lies in the book's place now. Only one process at a time keeps a book's edits. A file that cannot be written costs a warning and the
 * protection, nothing else. GUI thread; all work on the disk happens on another.
 */
class NyBookRecovery : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyBookRecovery)
public:
    /** So much time passes at most between an edit and its way to the disk. */
    static constexpr std::chrono::milliseconds Delay{500};
    /** Edits of other books that nobody has come back for in so many days are deleted. */
    static constexpr int LongestDays = 180;

    /** Looks for edits left behind at once. @p document must outlive this object. */
    explicit NyBookRecovery(NyBookDocument &document, QObject *parent = nullptr);
    /** Edits that were neither saved nor discarded stay for the next time. Waits for the disk. */
    ~NyBookRecovery() override;

    /** The user does without the edits made so far. */
    void discard();

    /** Where the edits of a book are kept, whether there are any or not. */
    static QString fileOf(const QString &bookPath);

Q_SIGNALS:
    /** Edits that were last written at that time are in the document again. */
    void restored(const QDateTime &lastEdit);

private:
    class Store;
    struct Found
    {
        std::optional<NyBookProject> project;
        QDateTime lastEdit;
    };

    void handleFound();
    void update();
    void write();
    void remove();
    template <class Job>
    void enqueue(Job job);

    NyBookDocument &m_document;
    /** Used by the pool's only thread. */
    std::shared_ptr<Store> m_store;
    QString m_path;
    QFutureWatcher<Found> m_search;
    QTimer m_timer;
    bool m_isSearching = true;
    bool m_isDiscarded = false;
    QThreadPool m_pool;
};
