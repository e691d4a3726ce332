#include "NySettingsLock.h"

#include "NySettingsStore.h"

NySettingsLock::NySettingsLock()
{
    const NySettingsStore::Hold hold = NySettingsStore::instance().lock();
    m_entered = hold.entered;
    m_locked = hold.locked;
}

NySettingsLock::~NySettingsLock()
{
    NySettingsStore::instance().unlock({m_entered, m_locked});
}
