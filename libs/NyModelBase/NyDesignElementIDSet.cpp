#include "NyDesignElementIDSet.h"

NyDesignElementIDSet::NyDesignElementIDSet(std::initializer_list<NyDesignElementID> ids)
{
    for (const NyDesignElementID &id : ids)
        insert(id);
}

bool NyDesignElementIDSet::insert(const NyDesignElementID &id)
{
    if (!id.isValid() || m_ids.contains(id))
        return false;
    m_ids.append(id);
    return true;
}

QStringList NyDesignElementIDSet::toStringList(bool sorted) const
{
    QStringList texts;
    texts.reserve(m_ids.size());
    for (const NyDesignElementID &id : m_ids)
        texts.append(id.toString());
    if (sorted)
        texts.sort(Qt::CaseSensitive);
    return texts;
}
