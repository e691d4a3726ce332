#pragma once

#include <optional>
#include <utility>

#include <QtCore/QString>

/** One persisted value: its key, its default, whether each program has its own, and what is in memory now. Kept in the store by NySettings.
 */
template <class T>
class NyConfigItem
{
public:
    /** @p programScope: each program keeps a value of its own; otherwise all programs share one. */
    NyConfigItem(T value, T defaultValue, QString key, bool programScope)
        : m_value(std::move(value))
        , m_defaultValue(std::move(defaultValue))
        , m_key(std::move(key))
        , m_programScope(programScope)
    {
    }

    const T &value() const { return m_value; }
    void setValue(const T &value)
    {
        m_value = value;
        m_assigned = true;
    }
    const T &defaultValue() const { return m_defaultValue; }
    void setDefaultValue(const T &value) { m_defaultValue = value; }
    const QString &key() const { return m_key; }
    bool isProgramScope() const { return m_programScope; }

private:
    friend class NySettings;

    /** Whether this process gave the item another value than the one it last read or wrote. */
    bool isChanged() const { return m_stored ? !(m_value == *m_stored) : m_assigned; }
    void setStored(const T &value)
    {
        m_value = value;
        m_stored = value;
    }

    T m_value;
    T m_defaultValue;
    QString m_key;
    bool m_programScope;
    std::optional<T> m_stored;
    bool m_assigned = false;
};
