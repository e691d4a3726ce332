#pragma once

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

/**
 * The texts of an enumeration's values, for reading them from configuration files and writing them.
 *
 * Filled once by a NyEnumWrapper, then only read, from any thread. E must hold any combination of its values: give it a
 * fixed underlying type.
 */
template <class E>
class Q_DECL_EXPORT NyEnumToStringTable
{
public:
    /**
     * Adds a text. Decoding ignores case, and the last value inserted for a text counts; encoding keeps the spelling,
     * and the first text inserted for a value counts.
     */
    void insert(const QString &name, E value)
    {
        m_values.insert(name.toLower(), value);
        if (!m_names.contains(value))
            m_names.insert(value, name);
    }

    /** All values named in the comma-separated text, combined by OR. Unknown parts, empty ones too, give the default value. */
    E decodeCSV(const QString &text) const
    {
        int result = 0;
        const QStringList parts = text.split(QLatin1Char(','), Qt::KeepEmptyParts, Qt::CaseSensitive);
        for (const QString &part : parts) {
            const int found = static_cast<int>(m_values.value(part.trimmed().toLower(), static_cast<E>(NotFound)));
            result |= found == NotFound ? static_cast<int>(m_defaultValue) : found;
        }
        return static_cast<E>(result);
    }

    /** The text of exactly this value, else the default text. */
    QString encode(E value) const { return m_names.value(value, m_defaultName); }

    /** One text for each single bit of the value, lowest bit first. Empty for values below 1. */
    QList<QString> encodeAsList(E value) const
    {
        QList<QString> names;
        const int bits = static_cast<int>(value);
        if (bits < 1)
            return names;
        QList<E> singleBits;
        for (int shift = 0; shift < 31; ++shift) {
            if (bits & (1 << shift))
                singleBits.append(static_cast<E>(1 << shift));
        }
        for (const E bit : singleBits)
            names.append(encode(bit));
        return names;
    }

    /** The texts of encodeAsList() joined by ", ", or the default text when there are none. */
    QString encodeCSV(E value) const
    {
        const QList<QString> names = encodeAsList(value);
        return names.isEmpty() ? m_defaultName : names.join(QStringLiteral(", "));
    }

private:
    // No enumeration of the family has this value, so it tells a miss from every hit.
    static constexpr int NotFound = -260570;

    QHash<QString, E> m_values;
    QHash<E, QString> m_names;
    QString m_defaultName;
    E m_defaultValue = static_cast<E>(0);
};
