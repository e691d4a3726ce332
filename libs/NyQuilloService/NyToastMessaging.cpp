#include "NyToastMessaging.h"

#include "NyQuilloServiceSettings.h"
#include "NyToastMessagingLinux.h"

NyToastMessaging::NyToastMessaging()
    : NyToastMessagingInterface(nullptr)
    , m_backend(createInterface(this))
{
    connect(m_backend, &NyToastMessagingInterface::showProjectRequested, this, &NyToastMessagingInterface::showProjectRequested);
    connect(m_backend, &NyToastMessagingInterface::rescheduleToastRequested, this, &NyToastMessagingInterface::rescheduleToastRequested);
}

NyToastMessaging::~NyToastMessaging() = default;

void NyToastMessaging::sendToastMessage(const NyToastMessage &message)
{
    if (!NySingleton<NyQuilloServiceSettings>::instance().allowToastMessages())
        return;
    m_backend->sendToastMessage(message);
}

void NyToastMessaging::uninstallToastMessaging()
{
    m_backend->uninstallToastMessaging();
}

NyToastMessagingInterface *NyToastMessaging::createInterface(QObject *parent) const
{
    return new NyToastMessagingLinux(parent);
}
