#include "MockStatusNotifierHost.h"

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
const QString NAME = u"org.kde.StatusNotifierWatcher"_s;
const QString PATH = u"/StatusNotifierWatcher"_s;
}

/** The object on the bus; lives on the host's thread. */
class StatusNotifierWatcherOnBus : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)

public:
    bool hasHost() const { return m_hasHost; }
    QStringList items() const
    {
        const QMutexLocker locker(&m_mutex);
        return m_items;
    }
    int protocolVersion() const { return 0; }
    void setHasHost()
    {
        m_hasHost = true;
        Q_EMIT StatusNotifierHostRegistered();
    }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &serviceOrPath)
    {
        const QString item = serviceOrPath.startsWith(u'/') ? message().service() : serviceOrPath;
        {
            const QMutexLocker locker(&m_mutex);
            m_items.append(item);
        }
        Q_EMIT StatusNotifierItemRegistered(item);
    }
    void RegisterStatusNotifierHost(const QString &) { setHasHost(); }

Q_SIGNALS:
    void StatusNotifierItemRegistered(const QString &item);
    void StatusNotifierItemUnregistered(const QString &item);
    void StatusNotifierHostRegistered();

private:
    mutable QMutex m_mutex;
    QStringList m_items;
    std::atomic<bool> m_hasHost = false;
};

class MockStatusNotifierHost::Private
{
public:
    QThread thread;
    std::unique_ptr<StatusNotifierWatcherOnBus> object;
    QString connectionName;
};

MockStatusNotifierHost::MockStatusNotifierHost(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    d->thread.setObjectName(u"tray host"_s);
}

MockStatusNotifierHost::~MockStatusNotifierHost()
{
    stop();
}

bool MockStatusNotifierHost::start()
{
    if (d->object)
        return true;
    static std::atomic<int> count = 0;
    d->connectionName = u"tray host %1"_s.arg(++count);
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, d->connectionName);
    d->object = std::make_unique<StatusNotifierWatcherOnBus>();
    d->object->moveToThread(&d->thread);
    d->thread.start();
    bool isRegistered = false;
    // Qt attaches the object's signals on the registering thread.
    QMetaObject::invokeMethod(
        d->object.get(),
        [&isRegistered, bus, object = d->object.get()]() mutable {
            isRegistered = bus.isConnected()
                && bus.registerObject(PATH, object,
                    QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals | QDBusConnection::ExportAllProperties)
                && bus.registerService(NAME);
        },
        Qt::BlockingQueuedConnection);
    if (!isRegistered)
        stop();
    return isRegistered;
}

void MockStatusNotifierHost::stop()
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

void MockStatusNotifierHost::registerHost()
{
    if (StatusNotifierWatcherOnBus *object = d->object.get())
        QMetaObject::invokeMethod(
            object, [object] { object->setHasHost(); }, Qt::BlockingQueuedConnection);
}

QStringList MockStatusNotifierHost::items() const
{
    return d->object ? d->object->items() : QStringList();
}

#include "MockStatusNotifierHost.moc"
