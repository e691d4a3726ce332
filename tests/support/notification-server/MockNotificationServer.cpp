#include "MockNotificationServer.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QMutex>
#include <QMutexLocker>
#include <QThread>

#include <atomic>

using namespace Qt::Literals::StringLiterals;

namespace
{
const QString NAME = u"org.freedesktop.Notifications"_s;
const QString PATH = u"/org/freedesktop/Notifications"_s;
}

/** What both threads use, guarded by the mutex. */
struct ServerState
{
    mutable QMutex mutex;
    QStringList capabilities{u"body"_s, u"actions"_s, u"body-markup"_s, u"body-images"_s};
    QList<MockNotificationServer::Notification> notifications;
    int capabilityQueries = 0;
    uint nextId = 1;
    bool answering = true;
};

/** The object on the bus; lives on the server's thread. */
class NotificationsOnBus : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    NotificationsOnBus(ServerState *state, MockNotificationServer *server)
        : m_state(state)
        , m_server(server)
    {
    }

public Q_SLOTS:
    uint Notify(const QString &appName, uint replacesId, const QString &icon, const QString &title, const QString &body,
        const QStringList &actions, const QVariantMap &hints, int timeoutMs)
    {
        MockNotificationServer::Notification notification{0, appName, replacesId, icon, title, body, actions, hints, timeoutMs};
        {
            const QMutexLocker locker(&m_state->mutex);
            notification.id = replacesId != 0 ? replacesId : m_state->nextId++;
            m_state->notifications.append(notification);
            setDelayedReply(!m_state->answering);
        }
        Q_EMIT m_server->notified(notification);
        return notification.id;
    }

    QStringList GetCapabilities()
    {
        const QMutexLocker locker(&m_state->mutex);
        ++m_state->capabilityQueries;
        setDelayedReply(!m_state->answering);
        return m_state->capabilities;
    }

    void CloseNotification(uint id) { Q_EMIT NotificationClosed(id, MockNotificationServer::ClosedByCall); }

    QString GetServerInformation(QString &vendor, QString &version, QString &specificationVersion)
    {
        vendor = u"VELMORA"_s;
        version = u"1"_s;
        specificationVersion = u"1.2"_s;
        return u"notification-server"_s;
    }

Q_SIGNALS:
    void ActionInvoked(uint id, const QString &actionKey);
    void NotificationClosed(uint id, uint reason);

private:
    ServerState *m_state;
    MockNotificationServer *m_server;
};

class MockNotificationServer::Private
{
public:
    ServerState state;
    QThread thread;
    std::unique_ptr<NotificationsOnBus> object;
    QString connectionName;
};

MockNotificationServer::MockNotificationServer(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    qRegisterMetaType<Notification>();
    d->thread.setObjectName(u"notification server"_s);
}

MockNotificationServer::~MockNotificationServer()
{
    stop();
}

bool MockNotificationServer::start()
{
    if (d->object)
        return true;
    static std::atomic<int> count = 0;
    d->connectionName = u"notification server %1"_s.arg(++count);
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, d->connectionName);
    d->object = std::make_unique<NotificationsOnBus>(&d->state, this);
    d->object->moveToThread(&d->thread);
    d->thread.start();
    bool isRegistered = false;
    // Qt attaches the object's signals on the registering thread.
    QMetaObject::invokeMethod(
        d->object.get(),
        [&isRegistered, bus, object = d->object.get()]() mutable {
            isRegistered = bus.isConnected()
                && bus.registerObject(PATH, object, QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals)
                && bus.registerService(NAME);
        },
        Qt::BlockingQueuedConnection);
    if (!isRegistered)
        stop();
    return isRegistered;
}

void MockNotificationServer::stop()
{
    if (!d->object)
        return;
    QMetaObject::invokeMethod(
        d->object.get(),
        [this] {
            QDBusConnection bus(d->connectionName);
            bus.unregisterService(NAME);
            bus.unregisterObject(PATH);
            d->object.reset();
        },
        Qt::BlockingQueuedConnection);
    QDBusConnection::disconnectFromBus(d->connectionName);
    d->thread.quit();
    d->thread.wait();
}

void MockNotificationServer::setCapabilities(const QStringList &capabilities)
{
    const QMutexLocker locker(&d->state.mutex);
    d->state.capabilities = capabilities;
}

void MockNotificationServer::setNextId(uint id)
{
    const QMutexLocker locker(&d->state.mutex);
    d->state.nextId = id;
}

void MockNotificationServer::setAnswering(bool answering)
{
    const QMutexLocker locker(&d->state.mutex);
    d->state.answering = answering;
}

QList<MockNotificationServer::Notification> MockNotificationServer::notifications() const
{
    const QMutexLocker locker(&d->state.mutex);
    return d->state.notifications;
}

int MockNotificationServer::capabilityQueries() const
{
    const QMutexLocker locker(&d->state.mutex);
    return d->state.capabilityQueries;
}

void MockNotificationServer::invokeAction(uint id, const QString &actionKey)
{
    if (NotificationsOnBus *object = d->object.get())
        QMetaObject::invokeMethod(
            object, [object, id, actionKey] { Q_EMIT object->ActionInvoked(id, actionKey); }, Qt::QueuedConnection);
}

void MockNotificationServer::close(uint id, CloseReason reason)
{
    if (NotificationsOnBus *object = d->object.get())
        QMetaObject::invokeMethod(
            object, [object, id, reason] { Q_EMIT object->NotificationClosed(id, reason); }, Qt::QueuedConnection);
}

#include "MockNotificationServer.moc"
