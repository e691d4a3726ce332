#pragma once

#include <functional>

#include <QtCore/QMutex>
#include <QtCore/QString>

class QSqlDatabase;
class QSqlError;
class QSqlQuery;

/**
 * The SQLite file behind NyFotoListRegistry: opens, checks and, when it is damaged, replaces it, and runs transactions on it.
 *
 * Each thread has a connection of its own, closed at the thread's end. One more stays open and unused: without it the end of the last
 * thread would remove the write-ahead log, and the next one would make it again. Thread-safe.
 *
 * Schema version 1:
 *   list(id, kind, name, revision): one row for each list that is not empty; revision is a new random number after each change.
 *   photo(list, ord, url): its photos in the order of ord, whose values have gaps (NyFotoListDifference).
 */
class NyFotoListDatabase
{
public:
    static constexpr int SchemaVersion = 1;

    /** The work inside a transaction. False, with the error set, undoes it. It may run a second time, on a new database. */
    using Work = std::function<bool(QSqlDatabase &database, QSqlError &error)>;

    explicit NyFotoListDatabase(const QString &path);
    ~NyFotoListDatabase();
    Q_DISABLE_COPY_MOVE(NyFotoListDatabase)

    const QString &path() const { return m_path; }

    /** Both are false after a warning that names @p purpose and the file. */
    bool read(const char *purpose, const Work &work);
    bool write(const char *purpose, const Work &work);

    /** Runs a prepared query; false with the error set. */
    static bool run(QSqlQuery &query, QSqlError &error);
    static bool run(QSqlDatabase &database, const QString &statement, QSqlError &error);

private:
    enum class Opening { Open, Refused, Failed };
    /** Which file a name stands for at the moment. */
    struct FileIdentity
    {
        quint64 device = 0;
        quint64 inode = 0;
        bool operator==(const FileIdentity &) const = default;
        bool exists() const { return inode != 0; }
    };
    struct Connection;
    struct ThreadConnections;

    static ThreadConnections &threadConnections();
    FileIdentity currentIdentity() const;
    bool transact(const char *purpose, bool writing, const Work &work);
    bool readWithoutLog(const Work &work, const QSqlError &reason);
    Opening openForThread(QString &connectionName, QSqlError &error);
    Opening openConnection(const QString &connectionName, QSqlError &error);
    bool prepareSchema(QSqlDatabase &database, QSqlError &error, bool &refused);
    bool checkIntegrity(QSqlDatabase &database, QSqlError &error);
    void closeForThread();
    bool setAside(const FileIdentity &damaged, const QString &reason);

    const QString m_path;
    const quint64 m_id;
    QMutex m_openMutex;
    FileIdentity m_checked;
    FileIdentity m_refused;
    FileIdentity m_kept;
    QString m_keeperName;
};
