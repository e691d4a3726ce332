#include "NyIdleWatcherInterface.h"

NyIdleWatcherInterface::NyIdleWatcherInterface(QObject *parent)
    : QObject(parent)
{
}

NyIdleWatcherInterface::~NyIdleWatcherInterface() = default;
