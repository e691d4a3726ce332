#include "NyLinuxDesktop.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDebug>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace
{
// Together with the time-out for sending, a server that hangs holds up the main thread for two seconds at most.
constexpr int TIMEOUT_MS = 500;

const QString SERVICE = u"org.freedesktop.Notifications"_s;

struct KnownServer
{
    /** Unique bus name; never used twice in the life of a bus. */
    QString owner;
    bool rendersHTML = false;
};

KnownServer &knownServer()
{
    static KnownServer server;
    return server;
}

/** Empty when there is no server, also when one would be started on demand. */
QString ownerOf(const QDBusConnection &bus, const QString &service)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetNameOwner"_s);
    call << service;
    const QDBusReply<QString> owner = bus.call(call, QDBus::Block, TIMEOUT_MS);
    return owner.isValid() ? owner.value() : QString();
}
}

NyLinuxDesktop::NyLinuxDesktop() = default;

NyLinuxDesktop::~NyLinuxDesktop() = default;

bool NyLinuxDesktop::supportsHTMLNotifications() const
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    KnownServer &known = knownServer();
    if (!known.owner.isEmpty() && ownerOf(bus, SERVICE) == known.owner)
        return known.rendersHTML;

    known = {};
    // This also starts a server that the desktop starts on demand.
    const QDBusMessage answer
        = bus.call(QDBusMessage::createMethodCall(SERVICE, u"/org/freedesktop/Notifications"_s, SERVICE, u"GetCapabilities"_s),
            QDBus::Block, TIMEOUT_MS);
    const QDBusReply<QStringList> capabilities = answer;
    if (!capabilities.isValid()) {
        qDebug() << "the capabilities of" << SERVICE << "are not known:" << capabilities.error().message();
        return false;
    }
    known.owner = answer.service();
    known.rendersHTML = capabilities.value().contains("body-markup"_L1) && capabilities.value().contains("body-images"_L1);
    return known.rendersHTML;
}
