#pragma once

#include "NyDesignElementID.h"

#include <QList>
#include <QStringList>

/** Design element ids without repetition, in the order in which they were inserted. */
class NYMODELBASE_EXPORT NyDesignElementIDSet
{
public:
    using const_iterator = QList<NyDesignElementID>::const_iterator;

    NyDesignElementIDSet() = default;
    NyDesignElementIDSet(std::initializer_list<NyDesignElementID> ids);

    /** Appends @p id; false and no change if it is invalid or in the set already. */
    bool insert(const NyDesignElementID &id);
    bool contains(const NyDesignElementID &id) const { return m_ids.contains(id); }
    qsizetype count() const { return m_ids.count(); }
    bool isEmpty() const { return m_ids.isEmpty(); }

    const_iterator begin() const { return m_ids.cbegin(); }
    const_iterator end() const { return m_ids.cend(); }

    /** The ids as text: by code units if @p sorted, else in order of insertion. */
    QStringList toStringList(bool sorted) const;

    friend bool operator==(const NyDesignElementIDSet &a, const NyDesignElementIDSet &b) { return a.m_ids == b.m_ids; }

private:
    QList<NyDesignElementID> m_ids;
};
