#include "NyDesignElementID.h"

#include <algorithm>

NyDesignElementID::NyDesignElementID(const QString &id)
    : m_id(id.trimmed())
{
}

bool NyDesignElementID::isValid() const
{
    return !m_id.isEmpty() && std::none_of(m_id.cbegin(), m_id.cend(), [](QChar c) { return c.isSpace() || c == QLatin1Char(','); });
}
