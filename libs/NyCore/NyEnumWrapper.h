#pragma once

#include <atomic>

#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>

#include "NyEnumToStringTable.h"

/**
 * An enumeration value or a set of flags with texts.
 *
 * A derived class says only which texts there are, in fillTable(). The table is shared by all objects of one enumeration,
 * made on first use by whichever object asks first, and never freed.
 */
template <class E>
class Q_DECL_EXPORT NyEnumWrapper
{
public:
    explicit NyEnumWrapper(E value = static_cast<E>(0))
        : m_value(value)
    {
    }
    NyEnumWrapper(const NyEnumWrapper &) = default;
    NyEnumWrapper(NyEnumWrapper &&) = default;
    NyEnumWrapper &operator=(const NyEnumWrapper &) = default;
    NyEnumWrapper &operator=(NyEnumWrapper &&) = default;
    virtual ~NyEnumWrapper() = default;

    virtual bool operator<(const NyEnumWrapper &other) const { return number() < other.number(); }
    virtual bool operator<=(const NyEnumWrapper &other) const { return number() <= other.number(); }
    virtual bool operator>(const NyEnumWrapper &other) const { return number() > other.number(); }
    virtual bool operator==(const NyEnumWrapper &other) const { return m_value == other.m_value; }
    virtual bool operator==(E value) const { return m_value == value; }
    virtual bool operator!=(const NyEnumWrapper &other) const { return m_value != other.m_value; }
    virtual bool operator!=(E value) const { return m_value != value; }
    virtual NyEnumWrapper &operator|=(const NyEnumWrapper &other)
    {
        m_value = united(other.m_value);
        return *this;
    }
    virtual NyEnumWrapper &operator|=(E value)
    {
        m_value = united(value);
        return *this;
    }
    virtual NyEnumWrapper &operator&=(const NyEnumWrapper &other)
    {
        m_value = common(other.m_value);
        return *this;
    }
    virtual NyEnumWrapper &operator&=(E value)
    {
        m_value = common(value);
        return *this;
    }
    virtual E operator&(const NyEnumWrapper &other) const { return common(other.m_value); }
    virtual E operator|(const NyEnumWrapper &other) const { return united(other.m_value); }
    /** Clears the bits of the argument. */
    virtual void exclude(const NyEnumWrapper &other) { m_value = without(other.m_value); }
    virtual void exclude(E value) { m_value = without(value); }
    /** Adds the bits of the argument. */
    virtual void expandTo(const NyEnumWrapper &other) { expandTo(other.m_value); }
    virtual void expandTo(E value) { m_value = united(value); }
    /** Keeps only the bits of the argument. */
    virtual void reduceTo(E value) { m_value = common(value); }
    virtual E reducedTo(E value) const { return common(value); }
    /** False for the value 0, whatever 0 means in E. */
    virtual bool isValid() const { return number() != 0; }
    /** Inserts the texts of E. The order matters: see NyEnumToStringTable::insert(). */
    virtual void fillTable(NyEnumToStringTable<E> *table) const = 0;

    E value() const { return m_value; }

    /** The texts of E. Thread-safe. */
    const NyEnumToStringTable<E> *enumToStringTable() const
    {
        if (const NyEnumToStringTable<E> *known = s_table.load(std::memory_order_acquire))
            return known;
        static QMutex mutex;
        const QMutexLocker locker(&mutex);
        NyEnumToStringTable<E> *table = s_table.load(std::memory_order_relaxed);
        if (!table) {
            table = new NyEnumToStringTable<E>;
            fillTable(table);
            s_table.store(table, std::memory_order_release);
        }
        return table;
    }

    /** The text of the whole value, without splitting it into bits. */
    QString encode() const { return enumToStringTable()->encode(m_value); }

protected:
    void setValue(E value) { m_value = value; }

private:
    int number() const { return static_cast<int>(m_value); }
    E united(E value) const { return static_cast<E>(number() | static_cast<int>(value)); }
    E common(E value) const { return static_cast<E>(number() & static_cast<int>(value)); }
    E without(E value) const { return static_cast<E>(number() & ~static_cast<int>(value)); }

    static inline std::atomic<NyEnumToStringTable<E> *> s_table{nullptr};

    E m_value;
};
