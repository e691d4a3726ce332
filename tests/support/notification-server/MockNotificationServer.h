#pragma once

#include <memory>

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/**
 * A notification server on the session bus that shows nothing and records what it was sent.
 *
 * It answers on a thread and a bus connection of its own, so a test may send to it from the thread that it lives on, and a
 * second object may take its place after stop(). All operations are thread-safe.
 */
class MockNotificationServer : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MockNotificationServer)

public:
    /** One call of Notify, and the id that it was answered with. */
    struct Notification
    {
        uint id = 0;
        QString appName;
        uint replacesId = 0;
        QString icon;
        QString title;
        QString body;
        /** Key, label, key, label … */
        QStringList actions;
        QVariantMap hints;
        /** 0: never expires, -1: left to the server. */
        int timeoutMs = 0;
    };

    /** Why a notification closed, as NotificationClosed tells it. */
    enum CloseReason : uint { Expired = 1, Dismissed = 2, ClosedByCall = 3 };

    /** Renders pictures in bodies unless setCapabilities() says otherwise. */
    explicit MockNotificationServer(QObject *parent = nullptr);
    ~MockNotificationServer() override;

    /** Takes the well-known name; false when there is no bus or another server has the name. */
    bool start();
    /** Gives the name back and leaves the bus. Records stay. */
    void stop();

    void setCapabilities(const QStringList &capabilities);
    /** The id of the next notification; they are counted from 1 otherwise. */
    void setNextId(uint id);
    /** When off, calls are recorded and never answered, like those to a stopped process. */
    void setAnswering(bool answering);

    QList<Notification> notifications() const;
    int capabilityQueries() const;

    /** Tells everybody that a button of that notification was pressed, whether or not it exists. */
    void invokeAction(uint id, const QString &actionKey);
    void close(uint id, CloseReason reason);

Q_SIGNALS:
    void notified(const MockNotificationServer::Notification &notification);

private:
    class Private;
    std::unique_ptr<Private> d;
};
