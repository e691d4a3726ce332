#pragma once

#include "NyToastMessagingInterface.h"

/**
 * Shows notifications in a plain modal dialog and takes no answer: for platforms that have nothing else. Main thread.
 */
class NYQUILLOSERVICE_EXPORT NyToastMessagingDefault : public NyToastMessagingInterface
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyToastMessagingDefault)

public:
    explicit NyToastMessagingDefault(QObject *parent);
    ~NyToastMessagingDefault() override;

    /** Returns when the user has closed the dialog; the event loop runs meanwhile. */
    void sendToastMessage(const NyToastMessage &message) override;
};
