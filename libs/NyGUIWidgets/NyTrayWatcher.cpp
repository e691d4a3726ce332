#include "NyTrayWatcher.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QDebug>
#include <QGuiApplication>
#include <QTimer>
#include <QtGui/qguiapplication_platform.h>

#include <xcb/xcb.h>

#include <cstdlib>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int TIMEOUT_MS = 500;

const QString WATCHER = u"org.kde.StatusNotifierWatcher"_s;
const QString WATCHER_PATH = u"/StatusNotifierWatcher"_s;

QDBusMessage hostQuestion()
{
    QDBusMessage call = QDBusMessage::createMethodCall(WATCHER, WATCHER_PATH, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    call << WATCHER << u"IsStatusNotifierHostRegistered"_s;
    call.setAutoStartService(false);
    return call;
}
}

/** The tray of the X server: the owner of a selection, by the freedesktop system tray protocol. */
class NyTrayWatcher::X11
{
public:
    explicit X11(xcb_connection_t *connection)
        : m_connection(connection)
    {
        int screen = 0;
        char *host = nullptr;
        int display = 0;
        if (xcb_parse_display(nullptr, &host, &display, &screen))
            std::free(host);
        m_selection = atom("_NET_SYSTEM_TRAY_S" + QByteArray::number(screen));
        m_manager = atom("MANAGER");
    }

    bool hasTray() const
    {
        const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner(
            xcb_get_selection_owner_reply(m_connection, xcb_get_selection_owner(m_connection, m_selection), nullptr), &std::free);
        return owner && owner->owner != XCB_NONE;
    }

    /** Whether the event tells that a tray took its place. */
    bool isArrival(const xcb_generic_event_t *event) const
    {
        if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
            return false;
        const auto *message = reinterpret_cast<const xcb_client_message_event_t *>(event);
        return message->format == 32 && message->type == m_manager && message->data.data32[1] == m_selection;
    }

private:
    xcb_atom_t atom(const QByteArray &name) const
    {
        const auto cookie = xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(name.size()), name.constData());
        const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(m_connection, cookie, nullptr), &std::free);
        return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }

    xcb_connection_t *m_connection;
    xcb_atom_t m_selection;
    xcb_atom_t m_manager;
};

NyTrayWatcher::NyTrayWatcher(QObject *parent)
    : QObject(parent)
{
    // Other platforms have this interface, too, without a connection.
    if (auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr; x11 && x11->connection())
        m_x11 = std::make_unique<X11>(x11->connection());
    QDBusConnection bus = QDBusConnection::sessionBus();
    const bool canHaveHost = bus.isConnected() && (m_x11 || QGuiApplication::platformName().startsWith("wayland"_L1));
    // Without a bus Qt takes the X server's tray, also a late one.
    if (!canHaveHost) {
        m_isTrayThere = true;
        return;
    }
    bus.connect(QString(), WATCHER_PATH, WATCHER, u"StatusNotifierHostRegistered"_s, this, SLOT(askHost()));
    auto *nameWatcher = new QDBusServiceWatcher(WATCHER, bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(nameWatcher, &QDBusServiceWatcher::serviceRegistered, this, &NyTrayWatcher::askHost);
    if (m_x11)
        QCoreApplication::instance()->installNativeEventFilter(this);

    m_isTrayThere = hasHost() || (m_x11 && m_x11->hasTray());
    if (!m_isTrayThere)
        qInfo() << "the desktop has no tray yet; the icon waits for one";
}

NyTrayWatcher::~NyTrayWatcher() = default;

bool NyTrayWatcher::hasHost()
{
    const QDBusReply<QDBusVariant> answer = QDBusConnection::sessionBus().call(hostQuestion(), QDBus::Block, TIMEOUT_MS);
    return answer.isValid() && answer.value().variant().toBool();
}

void NyTrayWatcher::askHost()
{
    if (m_isTrayThere)
        return;
    auto *watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(hostQuestion()), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> answer = *watcher;
        if (answer.isValid() && answer.value().variant().toBool())
            setTrayThere();
    });
}

bool NyTrayWatcher::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    // The icon is made from the event loop: Qt has to take note of the tray first.
    if (!m_isTrayThere && m_x11 && eventType == "xcb_generic_event_t"
        && m_x11->isArrival(static_cast<const xcb_generic_event_t *>(message)))
        QTimer::singleShot(0, this, &NyTrayWatcher::setTrayThere);
    return false;
}

void NyTrayWatcher::setTrayThere()
{
    if (m_isTrayThere)
        return;
    m_isTrayThere = true;
    QCoreApplication::instance()->removeNativeEventFilter(this);
    Q_EMIT trayAppeared();
}
