#pragma once

#include "nyguiwidgets_export.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>

/**
 * Sends notifications to the desktop's notification server, org.freedesktop.Notifications on the session bus. Main thread.
 *
 * Objects carry no state; one may be made for each notification.
 */
class NYGUIWIDGETS_EXPORT NyDBusBridgeLinux : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyDBusBridgeLinux)

public:
    explicit NyDBusBridgeLinux(QObject *parent);
    ~NyDBusBridgeLinux() override;

    /**
     * Shows one notification of the main program, which replaces no other.
     *
     * `body` goes out as it stands: a caller that knows of a server with markup writes markup, and escapes what is none.
     * `actions` are pairs of key and label. `timeoutMs` 0 means never, -1 leaves it to the server. Returns the
     * server's id, which is not 0; or 0, with a warning, when there is no server (one warning for each absence), the bus is
     * lost (one warning), the server refuses, or it does not answer within 1.4 s. In the last case the notification
     * may still show up later.
     */
    uint sendNotification(
        const QString &title, const QString &body, const QList<QString> &actions, const QMap<QString, QVariant> &hints, int timeoutMs);

    /**
     * Calls a slot with the parameters (uint, QString) for every press on a button of any program's notification: id, key.
     *
     * `slot` is written as SLOT() makes it, with the leading digit; blanks do not matter. The connection outlives servers that
     * come and go, and ends with the receiver. False, with a warning, when there is no bus or no such slot.
     */
    static bool connectToActionInvoked(QObject *receiver, const char *slot);
};
