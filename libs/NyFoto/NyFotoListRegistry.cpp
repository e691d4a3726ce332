#include "NyFotoListRegistry.h"

#include <map>
#include <set>
#include <utility>
#include <vector>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QHashFunctions>
#include <QtCore/QMutex>
#include <QtCore/QRandomGenerator>
#include <QtCore/QVariant>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

#include "NyDirectoryConfig.h"
#include "NyFotoListDatabase.h"
#include "NyFotoListDifference.h"

namespace
{

enum class ListKind : int {
    Named = 0,
    ForBookProposal = 1,
    UsedForBookProposals = 2,
};

struct ListName
{
    ListKind kind;
    QString name;

    friend bool operator<(const ListName &left, const ListName &right)
    {
        return left.kind != right.kind ? left.kind < right.kind : left.name < right.name;
    }
};

/** A null text would be stored as NULL. */
QString notNull(const QString &text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

ListName namedList(const QString &key)
{
    return {ListKind::Named, notNull(key)};
}

const ListName ProposalList{ListKind::ForBookProposal, QStringLiteral("")};
const ListName UsedList{ListKind::UsedForBookProposals, QStringLiteral("")};

/** A stored list without its texts: 16 bytes a photo. */
struct StoredRows
{
    qint64 id = 0; ///< 0: there is no such list
    qint64 revision = 0; ///< as stored together with these rows
    std::vector<quint64> digests;
    std::vector<qint64> orders;
};

/** Differs from process to process, so nobody can prepare names whose digests are equal. */
quint64 digestOf(const NyFoto &foto)
{
    static const std::size_t seed = std::size_t(QRandomGenerator::system()->generate64());
    const QString &location = foto.location();
    return quint64(qHashBits(location.constData(), std::size_t(location.size()) * sizeof(QChar), seed));
}

std::vector<quint64> digestsOf(const NyFotoList &list)
{
    std::vector<quint64> digests;
    digests.reserve(std::size_t(list.size()));
    for (const NyFoto &foto : list)
        digests.push_back(digestOf(foto));
    return digests;
}

qint64 newRevision()
{
    return qint64(QRandomGenerator::system()->generate64() >> 1) | 1;
}

bool readHead(QSqlDatabase &database, const ListName &name, StoredRows &rows, QSqlError &error)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.prepare(QStringLiteral("SELECT id, revision FROM list WHERE kind = ? AND name = ?"))) {
        error = query.lastError();
        return false;
    }
    query.addBindValue(int(name.kind));
    query.addBindValue(name.name);
    if (!NyFotoListDatabase::run(query, error))
        return false;
    if (query.next()) {
        rows.id = query.value(0).toLongLong();
        rows.revision = query.value(1).toLongLong();
    } else {
        rows.id = 0;
        rows.revision = 0;
    }
    return true;
}

bool readRows(QSqlDatabase &database, StoredRows &rows, QSqlError &error)
{
    rows.digests.clear();
    rows.orders.clear();
    if (rows.id == 0)
        return true;
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.prepare(QStringLiteral("SELECT ord, url FROM photo WHERE list = ? ORDER BY ord"))) {
        error = query.lastError();
        return false;
    }
    query.addBindValue(rows.id);
    if (!NyFotoListDatabase::run(query, error))
        return false;
    while (query.next()) {
        rows.orders.push_back(query.value(0).toLongLong());
        rows.digests.push_back(digestOf(NyFoto::fromUrlString(query.value(1).toString())));
    }
    // A damaged page ends the rows like their end does.
    error = query.lastError();
    return error.type() == QSqlError::NoError;
}

bool removeList(QSqlDatabase &database, qint64 id, QSqlError &error)
{
    for (const QString &statement : {QStringLiteral("DELETE FROM photo WHERE list = ?"), QStringLiteral("DELETE FROM list WHERE id = ?")}) {
        QSqlQuery query(database);
        if (!query.prepare(statement)) {
            error = query.lastError();
            return false;
        }
        query.addBindValue(id);
        if (!NyFotoListDatabase::run(query, error))
            return false;
    }
    return true;
}

/** Gives the list a new revision; makes it first when its id is 0. */
bool writeHead(QSqlDatabase &database, const ListName &name, StoredRows &rows, QSqlError &error)
{
    QSqlQuery query(database);
    const bool isNew = rows.id == 0;
    const qint64 revision = newRevision();
    if (!query.prepare(isNew ? QStringLiteral("INSERT INTO list (revision, kind, name) VALUES (?, ?, ?)")
                             : QStringLiteral("UPDATE list SET revision = ? WHERE id = ?"))) {
        error = query.lastError();
        return false;
    }
    query.addBindValue(revision);
    if (isNew) {
        query.addBindValue(int(name.kind));
        query.addBindValue(name.name);
    } else {
        query.addBindValue(rows.id);
    }
    if (!NyFotoListDatabase::run(query, error))
        return false;
    if (isNew)
        rows.id = query.lastInsertId().toLongLong();
    rows.revision = revision;
    return true;
}

/** Inserts the photos whose row is -1 in @p kept. */
bool insertRows(QSqlDatabase &database, qint64 id, const NyFotoList &list, const std::vector<qint32> &kept,
    const std::vector<qint64> &orders, QSqlError &error)
{
    QSqlQuery query(database);
    if (!query.prepare(QStringLiteral("INSERT INTO photo (list, ord, url) VALUES (?, ?, ?)"))) {
        error = query.lastError();
        return false;
    }
    query.bindValue(0, id);
    for (std::size_t i = 0; i < kept.size(); ++i) {
        if (kept[i] >= 0)
            continue;
        const NyFoto &foto = list[qsizetype(i)];
        if (!foto.location().isValidUtf16())
            qWarning() << "NyFotoListRegistry: the name of a photo is no valid text and cannot be kept exactly:" << foto.location();
        query.bindValue(1, orders[i]);
        query.bindValue(2, notNull(foto.urlString()));
        if (!NyFotoListDatabase::run(query, error))
            return false;
    }
    return true;
}

bool deleteRows(QSqlDatabase &database, const StoredRows &stored, const std::vector<qint32> &kept, QSqlError &error)
{
    std::size_t keptCount = 0;
    for (const qint32 row : kept)
        keptCount += row >= 0 ? 1 : 0;
    if (keptCount == stored.digests.size())
        return true;
    QSqlQuery query(database);
    const bool all = keptCount == 0;
    if (!query.prepare(
            all ? QStringLiteral("DELETE FROM photo WHERE list = ?") : QStringLiteral("DELETE FROM photo WHERE list = ? AND ord = ?"))) {
        error = query.lastError();
        return false;
    }
    query.bindValue(0, stored.id);
    if (all)
        return NyFotoListDatabase::run(query, error);
    // Both sequences rise, so one pass finds the rows that no new row keeps.
    std::size_t next = 0;
    for (std::size_t row = 0; row < stored.digests.size(); ++row) {
        while (next < kept.size() && kept[next] < qint32(row))
            ++next;
        if (next < kept.size() && kept[next] == qint32(row))
            continue;
        query.bindValue(1, stored.orders[row]);
        if (!NyFotoListDatabase::run(query, error))
            return false;
    }
    return true;
}

void flushAtEnd()
{
    NyFotoListRegistry::instance().flush();
}

}

struct NyFotoListRegistry::Data
{
    explicit Data(const QString &path)
        : database(path)
    {
    }

    void replace(const ListName &name, const NyFotoList &list);
    void append(const ListName &name, const NyFotoList &list);
    void remove(const ListName &name);
    NyFotoList read(const ListName &name);
    /** Carries out the clearings that wait, except that of @p spared. */
    void settle(const QString *spared = nullptr);

    NyFotoListDatabase database;
    QMutex writeMutex; ///< held for a whole replacement; guards stored
    std::map<ListName, StoredRows> stored;
    QMutex waitingMutex;
    std::set<QString> waiting;
};

void NyFotoListRegistry::Data::replace(const ListName &name, const NyFotoList &list)
{
    const QMutexLocker locker(&writeMutex);
    if (list.isEmpty()) {
        remove(name);
        stored.erase(name);
        return;
    }
    std::vector<quint64> digests = digestsOf(list);
    StoredRows current;
    if (const auto known = stored.find(name); known != stored.end())
        current = std::move(known->second);
    stored.erase(name);

    const auto refresh = [&name, &current](QSqlDatabase &connection, QSqlError &error) {
        StoredRows head;
        if (!readHead(connection, name, head, error))
            return false;
        if (head.id != 0 && head.id == current.id && head.revision == current.revision)
            return true;
        current = std::move(head);
        return readRows(connection, current, error);
    };
    // Without a transaction for writing, an unchanged list does not even take a lock.
    if (!database.read("read a photo list", refresh))
        return;
    if (current.id != 0 && current.digests == digests) {
        stored.insert_or_assign(name, std::move(current));
        return;
    }

    const bool written = database.write("store a photo list", [&](QSqlDatabase &connection, QSqlError &error) {
        if (!refresh(connection, error))
            return false;
        std::vector<qint32> kept = NyFotoListDifference::keptRows(current.digests, digests);
        std::vector<qint64> orders = NyFotoListDifference::orders(kept, current.orders);
        if (orders.empty()) {
            kept.assign(digests.size(), -1);
            orders = NyFotoListDifference::freshOrders(digests.size());
        }
        StoredRows next;
        next.id = current.id;
        if (!deleteRows(connection, current, kept, error) || !writeHead(connection, name, next, error)
            || !insertRows(connection, next.id, list, kept, orders, error))
            return false;
        next.digests = digests;
        next.orders = std::move(orders);
        stored.insert_or_assign(name, std::move(next));
        return true;
    });
    if (!written)
        stored.erase(name);
}

void NyFotoListRegistry::Data::append(const ListName &name, const NyFotoList &list)
{
    if (list.isEmpty())
        return;
    database.write("add to a photo list", [&](QSqlDatabase &connection, QSqlError &error) {
        StoredRows head;
        if (!readHead(connection, name, head, error) || !writeHead(connection, name, head, error))
            return false;
        QSqlQuery last(connection);
        if (!last.prepare(QStringLiteral("SELECT max(ord) FROM photo WHERE list = ?"))) {
            error = last.lastError();
            return false;
        }
        last.addBindValue(head.id);
        if (!NyFotoListDatabase::run(last, error))
            return false;
        const bool hasLast = last.next() && !last.value(0).isNull();
        const qint64 first = hasLast ? last.value(0).toLongLong() + NyFotoListDifference::OrderStep : 0;
        last.finish();
        std::vector<qint64> orders = NyFotoListDifference::freshOrders(std::size_t(list.size()));
        for (qint64 &order : orders)
            order += first;
        return insertRows(connection, head.id, list, std::vector<qint32>(std::size_t(list.size()), -1), orders, error);
    });
}

void NyFotoListRegistry::Data::remove(const ListName &name)
{
    StoredRows head;
    const bool found = database.read(
        "read a photo list", [&](QSqlDatabase &connection, QSqlError &error) { return readHead(connection, name, head, error); });
    if (!found || head.id == 0)
        return;
    database.write("clear a photo list", [&](QSqlDatabase &connection, QSqlError &error) {
        return readHead(connection, name, head, error) && (head.id == 0 || removeList(connection, head.id, error));
    });
}

NyFotoList NyFotoListRegistry::Data::read(const ListName &name)
{
    NyFotoList list;
    const bool done = database.read("read a photo list", [&](QSqlDatabase &connection, QSqlError &error) {
        list.clear();
        QSqlQuery query(connection);
        query.setForwardOnly(true);
        if (!query.prepare(QStringLiteral("SELECT photo.url FROM list JOIN photo ON photo.list = list.id "
                                          "WHERE list.kind = ? AND list.name = ? ORDER BY photo.ord"))) {
            error = query.lastError();
            return false;
        }
        query.addBindValue(int(name.kind));
        query.addBindValue(name.name);
        if (!NyFotoListDatabase::run(query, error))
            return false;
        while (query.next())
            list.append(NyFoto::fromUrlString(query.value(0).toString()));
        error = query.lastError();
        return error.type() == QSqlError::NoError;
    });
    return done ? list : NyFotoList();
}

void NyFotoListRegistry::Data::settle(const QString *spared)
{
    std::set<QString> names;
    {
        const QMutexLocker locker(&waitingMutex);
        if (waiting.empty())
            return;
        names.swap(waiting);
    }
    if (spared)
        names.erase(*spared);
    for (const QString &name : names) {
        const QMutexLocker locker(&writeMutex);
        remove(namedList(name));
        stored.erase(namedList(name));
    }
}

NyFotoListRegistry::NyFotoListRegistry()
    : NyFotoListRegistry(NyDirectoryConfig::instance().photoListDatabase())
{
}

NyFotoListRegistry::NyFotoListRegistry(const QString &databasePath)
    : m_data(std::make_unique<Data>(databasePath))
{
}

NyFotoListRegistry::~NyFotoListRegistry()
{
    flush();
}

void NyFotoListRegistry::setupInstance()
{
    // The one instance is never destroyed.
    qAddPostRoutine(flushAtEnd);
}

void NyFotoListRegistry::add(const QString &key, const NyFotoList &list)
{
    m_data->settle(&key);
    m_data->replace(namedList(key), list);
}

NyFotoList NyFotoListRegistry::fotoList(const QString &key) const
{
    m_data->settle();
    return m_data->read(namedList(key));
}

void NyFotoListRegistry::clearEntry(const QString &key)
{
    m_data->settle(&key);
    const QMutexLocker locker(&m_data->waitingMutex);
    m_data->waiting.insert(key);
}

void NyFotoListRegistry::flush()
{
    m_data->settle();
}

void NyFotoListRegistry::setFotosForBookProposal(const NyFotoList &list)
{
    m_data->settle();
    m_data->replace(ProposalList, list);
}

NyFotoList NyFotoListRegistry::getFotosForBookProposal() const
{
    m_data->settle();
    return m_data->read(ProposalList);
}

void NyFotoListRegistry::addFotosUsedForBookProposals(const NyFotoList &list)
{
    m_data->settle();
    m_data->append(UsedList, list);
}

NyFotoList NyFotoListRegistry::fotosUsedForBookProposals() const
{
    m_data->settle();
    return m_data->read(UsedList);
}

void NyFotoListRegistry::clearFotoUsedForBookProposals()
{
    m_data->settle();
    m_data->remove(UsedList);
}
