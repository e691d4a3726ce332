#include "NyFileNameFilter.h"

#include <algorithm>

#include <QtCore/QString>

namespace
{

constexpr int MaximumPackedExtension = 8;

/** Gives a name's characters from its end, folded, as long as they are ASCII or fold to ASCII. */
class BackwardReader
{
public:
    static constexpr unsigned char NotAscii = 0xff;

    explicit BackwardReader(QByteArrayView name)
        : m_begin(reinterpret_cast<const unsigned char *>(name.data()))
        , m_position(m_begin + name.size())
    {
    }

    bool atEnd() const { return m_position == m_begin; }

    unsigned char next()
    {
        const unsigned char last = *--m_position;
        if (last < 0x80)
            return last >= 'A' && last <= 'Z' ? static_cast<unsigned char>(last + ('a' - 'A')) : last;
        // U+017F, the long s, and U+212A, the Kelvin sign, are the only characters that fold to ASCII.
        if (last == 0xbf && m_position - m_begin >= 1 && m_position[-1] == 0xc5) {
            m_position -= 1;
            return 's';
        }
        if (last == 0xaa && m_position - m_begin >= 2 && m_position[-1] == 0x84 && m_position[-2] == 0xe2) {
            m_position -= 2;
            return 'k';
        }
        return NotAscii;
    }

private:
    const unsigned char *m_begin;
    const unsigned char *m_position;
};

/** The packed ending behind the last dot; 0 when there is no dot or the ending does not fit or is not ASCII. */
quint64 packedExtension(QByteArrayView name)
{
    BackwardReader reader(name);
    quint64 packed = 0;
    for (int shift = 0; !reader.atEnd(); shift += 8) {
        const unsigned char character = reader.next();
        if (character == '.')
            return packed;
        if (character == BackwardReader::NotAscii || shift == 8 * MaximumPackedExtension)
            return 0;
        packed |= quint64(character) << shift;
    }
    return 0;
}

bool endsWithFolded(QByteArrayView name, const std::string &suffix)
{
    BackwardReader reader(name);
    for (auto expected = suffix.crbegin(); expected != suffix.crend(); ++expected) {
        if (reader.atEnd() || reader.next() != static_cast<unsigned char>(*expected))
            return false;
    }
    return true;
}

/** Whether the pattern is one star and plain ASCII text behind it. */
bool isSuffixPattern(const QString &pattern)
{
    if (pattern.size() < 2 || pattern.front() != u'*')
        return false;
    return std::all_of(pattern.cbegin() + 1, pattern.cend(),
        [](QChar c) { return c > u' ' && c < QChar(0x7f) && c != u'*' && c != u'?' && c != u'[' && c != u']' && c != u'\\' && c != u'/'; });
}

} // namespace

NyFileNameFilter::NyFileNameFilter(const QStringList &patterns)
    : m_matchesEverything(patterns.isEmpty() || patterns.contains(QStringLiteral("*")))
{
    for (const QString &pattern : patterns) {
        if (!isSuffixPattern(pattern)) {
            m_expressions.push_back(QRegularExpression::fromWildcard(pattern, Qt::CaseInsensitive));
            m_expressions.back().optimize();
            continue;
        }
        const QByteArray suffix = pattern.sliced(1).toLower().toLatin1();
        const bool isPlainExtension
            = suffix.front() == '.' && suffix.size() > 1 && suffix.size() <= MaximumPackedExtension + 1 && suffix.count('.') == 1;
        if (isPlainExtension)
            m_extensions.push_back(packedExtension(suffix));
        else
            m_suffixes.push_back(suffix.toStdString());
    }
    std::sort(m_extensions.begin(), m_extensions.end());
}

bool NyFileNameFilter::matches(QByteArrayView utf8Name) const
{
    if (m_matchesEverything)
        return true;
    if (!m_extensions.empty()) {
        const quint64 extension = packedExtension(utf8Name);
        if (extension && std::binary_search(m_extensions.cbegin(), m_extensions.cend(), extension))
            return true;
    }
    for (const std::string &suffix : m_suffixes) {
        if (endsWithFolded(utf8Name, suffix))
            return true;
    }
    if (m_expressions.empty())
        return false;
    const QString name = QString::fromUtf8(utf8Name);
    return std::any_of(m_expressions.cbegin(), m_expressions.cend(),
        [&name](const QRegularExpression &expression) { return expression.match(name).hasMatch(); });
}
