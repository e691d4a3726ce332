#pragma once

#include "NyToastMessagingInterface.h"

/**
 * Shows notifications in small windows of the program's own, and is the base of the desktop's backend. Main thread.
 *
 * A window stays until one of its buttons is pressed. All windows answer with the id of the newest notification.
 */
class NYQUILLOSERVICE_EXPORT NyToastMessagingQt : public NyToastMessagingInterface
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyToastMessagingQt)

public:
    explicit NyToastMessagingQt(QObject *parent);
    ~NyToastMessagingQt() override;

    void sendToastMessage(const NyToastMessage &message) override;

private Q_SLOTS:
    void onShowClicked();
    void onRescheduleClicked();

private:
    QString m_id;
};
