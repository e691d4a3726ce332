#include "NyIdleWatcherDefault.h"

NyIdleWatcherDefault::NyIdleWatcherDefault(QObject *parent)
    : NyIdleWatcherInterface(parent)
{
}

bool NyIdleWatcherDefault::isIdle() const
{
    return true;
}
