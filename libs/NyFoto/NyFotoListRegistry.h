#pragma once

#include <memory>

#include <QtCore/QString>

#include "NyFotoList.h"
#include "NySingleton.h"
#include "nyfoto_export.h"

/**
 * The user's stored photo lists, shared by all programs of the family: lists under names, the photos for the proposal in progress, and
 * the photos that proposals have used so far. Order and duplicates are kept; an empty list and none are the same.
 *
 * The lists lie in an SQLite database. Every operation is one transaction, and every read sees what any process stored before. A list
 * that is stored already is not written again, and of a changed one only the differences are.
 * No operation reports a failure to its caller: a warning names the database, reads give an empty list, and what was stored stays. A
 * damaged database is set aside under a name that ends in ".broken-<time>" and a new one begun; one of a newer version is left alone and
 * not used. Thread-safe, with one connection a thread, closed at the thread's end.
 */
class NYFOTO_EXPORT NyFotoListRegistry : public NySingleton<NyFotoListRegistry>
{
public:
    /** On NyDirectoryConfig::photoListDatabase(). */
    NyFotoListRegistry();
    /** On another database file; its folder is created when needed. */
    explicit NyFotoListRegistry(const QString &databasePath);
    /** Carries out a clearEntry() that waits. */
    ~NyFotoListRegistry() override;

    /** Stores the list under the key, in place of the one that is there. */
    void add(const QString &key, const NyFotoList &list);
    NyFotoList fotoList(const QString &key) const;

    /**
     * Empties the entry. The work waits for the next operation: an add() of the same key compares with what is still stored and writes the
     * differences alone; every other operation of this object, flush(), its destructor and the end of the application carry the clearing
     * out first. Until then other processes see the old list. A process that is killed in between leaves it.
     */
    void clearEntry(const QString &key);
    /** Carries out what waits. */
    void flush();

    void setFotosForBookProposal(const NyFotoList &list);
    NyFotoList getFotosForBookProposal() const;

    /** Appends to the record. */
    void addFotosUsedForBookProposals(const NyFotoList &list);
    NyFotoList fotosUsedForBookProposals() const;
    void clearFotoUsedForBookProposals();

protected:
    void setupInstance() override;

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};
