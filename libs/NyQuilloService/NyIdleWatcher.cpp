#include "NyIdleWatcher.h"

#include "NyIdleWatcherDefault.h"

NyIdleWatcher::NyIdleWatcher(QObject *parent)
    : NyIdleWatcherInterface(parent)
    , m_strategy(new NyIdleWatcherDefault(this))
{
}

bool NyIdleWatcher::isIdle() const
{
    return m_strategy->isIdle();
}
