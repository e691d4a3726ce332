#include "NyDBusBridgeLinux.h"

#include "NyGUIWidgetsConfig.h"

#include <NyDirectoryConfig.h>
#include <NyFileHandler.h>
#include <NyProgramConfig.h>

#include <QBuffer>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <QPointer>
#include <QStandardPaths>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

namespace
{
constexpr int TIMEOUT_MS = 1400;
constexpr int ICON_SIZE_PX = 128;

const QString SERVICE = u"org.freedesktop.Notifications"_s;
const QString PATH = u"/org/freedesktop/Notifications"_s;

/** Whether the present absence of the server, or of the bus, is in the log already. */
bool &absenceIsReported()
{
    static bool reported = false;
    return reported;
}

void reportAbsence(const QString &reason)
{
    if (absenceIsReported())
        return;
    absenceIsReported() = true;
    qWarning() << "notifications are not shown for the time being:" << SERVICE << "is not there:" << reason;
}

/** Errors by which the bus says that nobody has the name and nobody could be started to take it. */
bool isAbsence(const QDBusError &error)
{
    return error.type() == QDBusError::ServiceUnknown || error.name() == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1
        || error.name().startsWith("org.freedesktop.DBus.Error.Spawn."_L1);
}

/** Writes the built-in icon to a file that the server, another process, can read; its path, empty on failure. */
QString iconFileInCache()
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return {};
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/VELMORA"_L1;
    const QFileInfo file(folder + "/ico_albuma.png"_L1);
    static bool isWritten = false;
    if (isWritten && file.exists())
        return file.absoluteFilePath();
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!NyGUIWidgetsConfig::instance().loadIconById(u"ico_albuma"_s).pixmap(ICON_SIZE_PX, ICON_SIZE_PX).save(&buffer, "PNG")
        || !QDir().mkpath(folder) || !NyFileHandler::writeBinaryFile(file, png)) {
        qWarning() << "notifications have no icon: it cannot be written to" << file.absoluteFilePath();
        return {};
    }
    isWritten = true;
    return file.absoluteFilePath();
}

/** A name of the icon theme, or the address of a file: what the notification interface takes as an icon. */
QString notificationIcon()
{
    const QString themed = NyProgramConfig::instance().commandName(NyProgramID::MainProgram);
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()) && QIcon::hasThemeIcon(themed))
        return themed;
    QString path = NyDirectoryConfig::resourceFile(u"icons/ico_albuma.svg"_s);
    if (path.isEmpty() || path.startsWith(u':'))
        path = iconFileInCache();
    return path.isEmpty() ? QString() : QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded);
}

/** Tells the log when the connection is lost; Qt never makes it anew. */
class BusLossReporter : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

public Q_SLOTS:
    void connectionLost() { reportAbsence(u"the connection to the session bus was lost"_s); }
};
}

NyDBusBridgeLinux::NyDBusBridgeLinux(QObject *parent)
    : QObject(parent)
{
}

NyDBusBridgeLinux::~NyDBusBridgeLinux() = default;

uint NyDBusBridgeLinux::sendNotification(
    const QString &title, const QString &body, const QList<QString> &actions, const QMap<QString, QVariant> &hints, int timeoutMs)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        reportAbsence(u"there is no session bus"_s);
        return 0;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(SERVICE, PATH, SERVICE, u"Notify"_s);
    call << NyProgramConfig::instance().programName(NyProgramID::MainProgram) << 0U << notificationIcon() << title << body
         << QStringList(actions) << QVariant(hints) << timeoutMs;
    const QDBusReply<uint> id = bus.call(call, QDBus::Block, TIMEOUT_MS);
    if (id.isValid()) {
        absenceIsReported() = false;
        return id.value();
    }
    const QDBusError error = id.error();
    if (isAbsence(error) || !bus.isConnected())
        reportAbsence(error.message());
    else
        qWarning() << "the notification" << title << "may be missing:" << SERVICE << "gave no answer:" << error.name() << error.message();
    return 0;
}

bool NyDBusBridgeLinux::connectToActionInvoked(QObject *receiver, const char *slot)
{
    if (!receiver || !slot || slot[0] != '0' + QSLOT_CODE) {
        qWarning() << "answers to notifications are not received: no receiver, or a slot without its leading digit:" << slot;
        return false;
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qWarning() << "answers to notifications are not received: there is no session bus:" << bus.lastError().message();
        return false;
    }
    static QPointer<BusLossReporter> reporter;
    if (!reporter) {
        reporter = new BusLossReporter(QCoreApplication::instance());
        bus.connect(QString(), u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s, u"Disconnected"_s, reporter.data(),
            SLOT(connectionLost()));
    }
    const QByteArray normalized = slot[0] + QMetaObject::normalizedSignature(slot + 1);
    // From any sender: when a server starts in the same moment, Qt can take a stale owner for the name's, and would then
    // pass nothing on for good.
    if (bus.connect(QString(), PATH, SERVICE, u"ActionInvoked"_s, receiver, normalized.constData()))
        return true;
    qWarning() << "answers to notifications are not received:" << receiver << "has no slot" << normalized.constData() + 1;
    return false;
}

#include "NyDBusBridgeLinux.moc"
