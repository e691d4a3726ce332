#pragma once

#include "nyquilloservice_export.h"

#include <QObject>
#include <QString>

class NyToastMessage;

/** What shows notifications and brings the user's answer back. Main thread. */
class NYQUILLOSERVICE_EXPORT NyToastMessagingInterface : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyToastMessagingInterface)

public:
    explicit NyToastMessagingInterface(QObject *parent);
    ~NyToastMessagingInterface() override;

    /** Shows one notification. */
    virtual void sendToastMessage(const NyToastMessage &message) = 0;

    /**
     * Takes an answer that a platform brings by starting the program again: "show=" or "reschedule=" and the project id.
     * Anything else is ignored; an id ends at its first "=".
     */
    virtual void toastActivated(const QString &arguments);

    /** Called when the program is removed; there is nothing to undo unless a backend says so. */
    virtual void uninstallToastMessaging();

Q_SIGNALS:
    /** The user wants to see the proposal now. */
    void showProjectRequested(const QString &theId);
    /** The user wants to be asked again later. */
    void rescheduleToastRequested(const QString &theId);
};
