#include "NyOccasionInfo.h"

NyOccasionInfo::NyOccasionInfo(const QString &keyword, const QString &source, double probability)
    : m_keyword(keyword)
    , m_source(source)
    , m_probability(probability)
{
}

NyOccasionInfo::~NyOccasionInfo() = default;

QString NyOccasionInfo::description() const
{
    // Assembled without arg(): a keyword with a place marker in it would be filled in as well.
    return m_keyword + QStringLiteral(" (") + m_source + QStringLiteral(", ") + QString::number(m_probability, 'f', 2) + QLatin1Char(')');
}

bool NyOccasionInfo::operator==(const NyOccasionInfo &other) const
{
    return m_keyword == other.m_keyword && m_source == other.m_source && m_probability == other.m_probability;
}
