#pragma once

#include <utility>

#include <QtCore/QtGlobal>

/**
 * A range between two values, both inclusive. A default-constructed T stands for an end that is not known and must
 * compare as less than every other value.
 */
template <class T>
class Q_DECL_EXPORT NyRange
{
public:
    NyRange() = default;
    NyRange(T from, T to)
        : m_from(std::move(from))
        , m_to(std::move(to))
    {
    }
    NyRange(const NyRange &) = default;
    NyRange(NyRange &&) = default;
    NyRange &operator=(const NyRange &) = default;
    NyRange &operator=(NyRange &&) = default;
    virtual ~NyRange() = default;

    T from() const { return m_from; }
    T to() const { return m_to; }
    void setFrom(const T &from) { m_from = from; }
    void setTo(const T &to) { m_to = to; }

    virtual bool contains(const T &value) const { return !(value < m_from) && !(m_to < value); }

    /** Widens the range so that it reaches the value. A range with an end but no start never gains a start. */
    void expandTo(const T &value)
    {
        const T unknown{};
        if (m_from == unknown && m_to == unknown) {
            m_from = value;
            m_to = value;
        } else if (m_to < value) {
            m_to = value;
        } else if (m_from != unknown && value < m_from) {
            m_from = value;
        }
    }

    bool operator==(const NyRange &other) const { return m_from == other.m_from && m_to == other.m_to; }

private:
    T m_from{};
    T m_to{};
};
