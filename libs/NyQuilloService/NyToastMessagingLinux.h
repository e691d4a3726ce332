#pragma once

#include "NyToastMessagingQt.h"

#include <QSet>

/**
 * Shows notifications through the desktop's notification server and takes the presses on their buttons. Main thread.
 *
 * Only answers to notifications that this process sent count; those can be given more than once.
 */
class NYQUILLOSERVICE_EXPORT NyToastMessagingLinux : public NyToastMessagingQt
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyToastMessagingLinux)

public:
    explicit NyToastMessagingLinux(QObject *parent);
    ~NyToastMessagingLinux() override;

    void sendToastMessage(const NyToastMessage &message) override;

private Q_SLOTS:
    void onActionInvoked(uint theId, const QString &theActionKey);

private:
    /** Of all notifications with buttons so far; ids stay, because old notifications may still be on the screen. */
    QSet<unsigned int> m_knownIds;
};
