#include "NyFotoListDatabase.h"

#include <atomic>
#include <map>

#include <sys/stat.h>

#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLockFile>
#include <QtCore/QThread>
#include <QtCore/QThreadStorage>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

namespace
{

constexpr int BusyTimeoutMs = 5000;
/** "NyPL"; tells our files from those of others. */
constexpr int ApplicationId = 0x4e79504c;
// SQLite's primary result codes.
constexpr int CodeReadOnly = 8;
constexpr int CodeInputOutput = 10;
constexpr int CodeCorrupt = 11;
constexpr int CodeFull = 13;
constexpr int CodeCannotOpen = 14;
constexpr int CodeNotADatabase = 26;

quint64 nextDatabaseId()
{
    static std::atomic<quint64> last{0};
    return ++last;
}

/** 0 for an error that did not come from SQLite. */
int primaryCode(const QSqlError &error)
{
    return error.nativeErrorCode().toInt() & 0xff;
}

bool isDamage(const QSqlError &error)
{
    const int code = primaryCode(error);
    return code == CodeCorrupt || code == CodeNotADatabase;
}

QSqlError damage(const QString &text)
{
    return QSqlError(text, QString(), QSqlError::StatementError, QString::number(CodeCorrupt));
}

/** Both texts, of which one may be empty. */
QString textOf(const QSqlError &error)
{
    return error.text().trimmed();
}

}

/** A connection of one thread, to one file. */
struct NyFotoListDatabase::Connection
{
    Connection(QString connectionName, FileIdentity file)
        : name(std::move(connectionName))
        , identity(file)
    {
    }
    ~Connection() { QSqlDatabase::removeDatabase(name); }
    Q_DISABLE_COPY_MOVE(Connection)

    QString name;
    FileIdentity identity;
};

struct NyFotoListDatabase::ThreadConnections
{
    std::map<quint64, Connection> byDatabase;
};

NyFotoListDatabase::ThreadConnections &NyFotoListDatabase::threadConnections()
{
    static QThreadStorage<ThreadConnections *> storage;
    if (!storage.hasLocalData())
        storage.setLocalData(new ThreadConnections);
    return *storage.localData();
}

NyFotoListDatabase::NyFotoListDatabase(const QString &path)
    : m_path(path)
    , m_id(nextDatabaseId())
{
}

NyFotoListDatabase::~NyFotoListDatabase()
{
    closeForThread();
    if (!m_keeperName.isEmpty())
        QSqlDatabase::removeDatabase(m_keeperName);
}

bool NyFotoListDatabase::read(const char *purpose, const Work &work)
{
    return transact(purpose, false, work);
}

bool NyFotoListDatabase::write(const char *purpose, const Work &work)
{
    return transact(purpose, true, work);
}

bool NyFotoListDatabase::run(QSqlQuery &query, QSqlError &error)
{
    if (query.exec())
        return true;
    error = query.lastError();
    return false;
}

bool NyFotoListDatabase::run(QSqlDatabase &database, const QString &statement, QSqlError &error)
{
    QSqlQuery query(database);
    if (query.exec(statement))
        return true;
    error = query.lastError();
    return false;
}

NyFotoListDatabase::FileIdentity NyFotoListDatabase::currentIdentity() const
{
    struct stat status;
    if (::stat(QFile::encodeName(m_path).constData(), &status) != 0)
        return {};
    return {quint64(status.st_dev), quint64(status.st_ino)};
}

bool NyFotoListDatabase::transact(const char *purpose, bool writing, const Work &work)
{
    // The second round works on the new database after a damaged one was set aside.
    for (int round = 0; round < 2; ++round) {
        QSqlError error;
        QString connectionName;
        const Opening opening = openForThread(connectionName, error);
        if (opening == Opening::Refused)
            return false;
        // A damaged file is left behind by openForThread() only when it could not be set aside.
        if (opening == Opening::Failed) {
            if (!writing && readWithoutLog(work, error))
                return true;
            qWarning() << "NyFotoListRegistry: cannot open the database" << m_path << "to" << purpose << ":" << textOf(error);
            return false;
        }
        const FileIdentity identity = threadConnections().byDatabase.at(m_id).identity;
        bool done = false;
        {
            QSqlDatabase database = QSqlDatabase::database(connectionName, false);
            if (!writing) {
                done = work(database, error);
            } else if (run(database, QStringLiteral("BEGIN IMMEDIATE"), error)) {
                done = work(database, error) && run(database, QStringLiteral("COMMIT"), error);
                if (!done) {
                    // SQLite may have rolled back by itself, so an error here says nothing.
                    QSqlError ignored;
                    run(database, QStringLiteral("ROLLBACK"), ignored);
                }
            }
        }
        if (done)
            return true;
        if (isDamage(error) && round == 0) {
            closeForThread();
            if (setAside(identity, textOf(error)))
                continue;
        }
        qWarning() << "NyFotoListRegistry: cannot" << purpose << "in the database" << m_path << ":" << textOf(error);
        return false;
    }
    return false;
}

bool NyFotoListDatabase::readWithoutLog(const Work &work, const QSqlError &reason)
{
    // On a full or read-only disk SQLite cannot make the log and its index, which it wants for reading too. Without a log the file
    // alone is complete and can be read as it stands.
    const int code = primaryCode(reason);
    if (code != CodeReadOnly && code != CodeInputOutput && code != CodeFull && code != CodeCannotOpen)
        return false;
    if (!currentIdentity().exists() || QFileInfo(m_path + QStringLiteral("-wal")).size() > 0)
        return false;
    const QString connectionName
        = QStringLiteral("NyFotoListDatabase-%1-as-it-stands-%2").arg(m_id).arg(quintptr(QThread::currentThreadId()));
    bool done = false;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
        database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_OPEN_READONLY"));
        database.setDatabaseName(QUrl::fromLocalFile(m_path).toString(QUrl::FullyEncoded) + QStringLiteral("?immutable=1"));
        QSqlError error;
        if (database.open()) {
            QSqlQuery version(database);
            const bool isOurs
                = version.exec(QStringLiteral("PRAGMA user_version")) && version.next() && version.value(0).toInt() == SchemaVersion;
            version.finish();
            done = isOurs && work(database, error);
        }
    }
    QSqlDatabase::removeDatabase(connectionName);
    return done;
}

NyFotoListDatabase::Opening NyFotoListDatabase::openForThread(QString &connectionName, QSqlError &error)
{
    ThreadConnections &connections = threadConnections();
    const auto found = connections.byDatabase.find(m_id);
    if (found != connections.byDatabase.end()) {
        // Another process may have set the file aside, or somebody removed it.
        if (found->second.identity == currentIdentity()) {
            connectionName = found->second.name;
            return Opening::Open;
        }
        connections.byDatabase.erase(found);
    }

    const QMutexLocker locker(&m_openMutex);
    if (m_refused.exists() && m_refused == currentIdentity())
        return Opening::Refused;
    QDir().mkpath(QFileInfo(m_path).absolutePath());
    static std::atomic<quint64> lastConnection{0};
    for (int round = 0; round < 2; ++round) {
        connectionName = QStringLiteral("NyFotoListDatabase-%1").arg(++lastConnection);
        Opening opening = openConnection(connectionName, error);
        const FileIdentity identity = currentIdentity();
        if (opening == Opening::Open && identity.exists()) {
            connections.byDatabase.try_emplace(m_id, connectionName, identity);
            m_refused = {};
            if (m_kept != identity) {
                if (!m_keeperName.isEmpty())
                    QSqlDatabase::removeDatabase(m_keeperName);
                m_keeperName = QStringLiteral("NyFotoListDatabase-%1").arg(++lastConnection);
                QSqlError ignored;
                openConnection(m_keeperName, ignored);
                m_kept = identity;
            }
            return Opening::Open;
        }
        QSqlDatabase::removeDatabase(connectionName);
        if (opening == Opening::Refused) {
            m_refused = identity;
            return Opening::Refused;
        }
        if (round > 0 || !isDamage(error) || !setAside(identity, textOf(error)))
            return Opening::Failed;
    }
    return Opening::Failed;
}

NyFotoListDatabase::Opening NyFotoListDatabase::openConnection(const QString &connectionName, QSqlError &error)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
    database.setDatabaseName(m_path);
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(BusyTimeoutMs));
    if (!database.open()) {
        error = database.lastError();
        return Opening::Failed;
    }
    // NORMAL keeps the file sound in a power cut, at worst without the last changes. The log is cut back after a large change.
    static const QString settings[] = {
        QStringLiteral("PRAGMA synchronous = NORMAL"),
        QStringLiteral("PRAGMA journal_size_limit = 1048576"),
        QStringLiteral("PRAGMA cache_size = -1024"),
    };
    for (const QString &setting : settings) {
        if (!run(database, setting, error))
            return Opening::Failed;
    }
    bool refused = false;
    if (!prepareSchema(database, error, refused))
        return refused ? Opening::Refused : Opening::Failed;
    const FileIdentity identity = currentIdentity();
    if (m_checked != identity) {
        if (!checkIntegrity(database, error))
            return Opening::Failed;
        m_checked = identity;
    }
    return Opening::Open;
}

bool NyFotoListDatabase::prepareSchema(QSqlDatabase &database, QSqlError &error, bool &refused)
{
    const auto number = [&database, &error](const QString &statement, qint64 &value) {
        QSqlQuery query(database);
        if (!query.exec(statement) || !query.next()) {
            error = query.lastError();
            return false;
        }
        value = query.value(0).toLongLong();
        return true;
    };
    qint64 version = 0;
    const QString readVersion = QStringLiteral("PRAGMA user_version");
    if (!number(readVersion, version))
        return false;
    if (version > SchemaVersion) {
        qWarning() << "NyFotoListRegistry: the database" << m_path << "was written by a newer version (" << version
                   << "); it is left alone, and photo lists are not kept";
        refused = true;
        return false;
    }
    if (version == SchemaVersion)
        return true;

    // The change to write-ahead logging does not wait for other connections, so only one process may make a new file.
    QLockFile lock(m_path + QStringLiteral(".lock"));
    lock.tryLock(BusyTimeoutMs);
    if (!number(readVersion, version))
        return false;
    if (version == SchemaVersion)
        return true;
    qint64 foreignTables = 0;
    if (!number(QStringLiteral("SELECT count(*) FROM sqlite_master"), foreignTables))
        return false;
    if (foreignTables > 0) {
        error = damage(QStringLiteral("it is a database of another kind"));
        return false;
    }
    static const QString statements[] = {
        QStringLiteral("PRAGMA journal_mode = WAL"),
        QStringLiteral("BEGIN IMMEDIATE"),
        QStringLiteral("CREATE TABLE list (id INTEGER PRIMARY KEY, kind INTEGER NOT NULL, name TEXT NOT NULL, "
                       "revision INTEGER NOT NULL, UNIQUE (kind, name))"),
        QStringLiteral("CREATE TABLE photo (list INTEGER NOT NULL, ord INTEGER NOT NULL, url TEXT NOT NULL, "
                       "PRIMARY KEY (list, ord)) WITHOUT ROWID"),
        QStringLiteral("PRAGMA application_id = %1").arg(ApplicationId),
        QStringLiteral("PRAGMA user_version = %1").arg(SchemaVersion),
        QStringLiteral("COMMIT"),
    };
    for (const QString &statement : statements) {
        if (!run(database, statement, error))
            return false;
    }
    return true;
}

bool NyFotoListDatabase::checkIntegrity(QSqlDatabase &database, QSqlError &error)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("PRAGMA quick_check(1)")) || !query.next()) {
        error = query.lastError();
        return false;
    }
    const QString answer = query.value(0).toString();
    if (answer == u"ok")
        return true;
    error = damage(answer);
    return false;
}

void NyFotoListDatabase::closeForThread()
{
    threadConnections().byDatabase.erase(m_id);
}

bool NyFotoListDatabase::setAside(const FileIdentity &damaged, const QString &reason)
{
    QLockFile lock(m_path + QStringLiteral(".lock"));
    if (!lock.tryLock(BusyTimeoutMs))
        return false;
    // Another process or thread was faster.
    if (currentIdentity() != damaged)
        return true;
    const QString base = m_path + QStringLiteral(".broken-") + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString target = base;
    for (int number = 2; QFileInfo::exists(target); ++number)
        target = base + QStringLiteral("-%1").arg(number);
    // Connections that other threads still have go on with the renamed file and notice at their next use; SQLite does not touch
    // the log of a file that was moved away.
    if (!QFile::rename(m_path, target)) {
        qWarning() << "NyFotoListRegistry: the damaged database" << m_path << "cannot be set aside as" << target;
        return false;
    }
    for (const QString &companion : {QStringLiteral("-wal"), QStringLiteral("-shm")}) {
        if (QFileInfo::exists(m_path + companion))
            QFile::rename(m_path + companion, target + companion);
    }
    qWarning() << "NyFotoListRegistry: the database" << m_path << "is damaged (" << reason << ") and was set aside as" << target
               << "; a new one is begun";
    return true;
}
