#include "NyKeyAccountId.h"

NyKeyAccountId::NyKeyAccountId(int id, bool testClient)
    : m_id(id)
    , m_testClient(testClient)
{
}

QString NyKeyAccountId::toString() const
{
    return QString::number(m_id);
}
