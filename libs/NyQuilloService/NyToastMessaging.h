#pragma once

#include "NyToastMessagingInterface.h"

#include <NySingleton.h>

/**
 * The one place through which the service sends notifications and learns of the answers. Main thread.
 *
 * It keeps the user's preference for notifications and leaves the showing to the platform's backend, which it owns.
 */
class NYQUILLOSERVICE_EXPORT NyToastMessaging : public NyToastMessagingInterface, public NySingleton<NyToastMessaging>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyToastMessaging)

public:
    NyToastMessaging();
    ~NyToastMessaging() override;

    /** Shows nothing while the user does not want notifications. */
    void sendToastMessage(const NyToastMessage &message) override;
    void uninstallToastMessaging() override;

    /** A new backend of this platform. */
    NyToastMessagingInterface *createInterface(QObject *parent) const;

private:
    NyToastMessagingInterface *m_backend;
};
