#include "NyToastMessagingLinux.h"

#include "NyToastMessage.h"

#include <NyDBusBridgeLinux.h>
#include <NyLinuxDesktop.h>

#include <QDebug>
#include <QList>
#include <QMap>
#include <QStringList>
#include <QUrl>
#include <QVariant>

namespace
{
constexpr int TIMEOUT_NEVER_MS = 0;
constexpr int TIMEOUT_OF_THE_SERVER_MS = -1;
}

NyToastMessagingLinux::NyToastMessagingLinux(QObject *parent)
    : NyToastMessagingQt(parent)
{
    NyDBusBridgeLinux::connectToActionInvoked(this, "1onActionInvoked(uint, QString)");
}

NyToastMessagingLinux::~NyToastMessagingLinux() = default;

void NyToastMessagingLinux::sendToastMessage(const NyToastMessage &message)
{
    QList<QString> actions;
    if (message.showLaunchButtons()) {
        actions << QStringLiteral("show:%1").arg(message.id()) << tr("Jetzt ansehen");
        actions << QStringLiteral("reschedule:%1").arg(message.id()) << tr("Später ansehen");
    }
    QString body = message.description();
    if (message.imageUrl().isValid() && NyLinuxDesktop().supportsHTMLNotifications())
        body.append(QStringLiteral("<br><center><img src=\"%1\" ></center>").arg(message.imageUrl().toString()));
    const int timeoutMs = message.showLaunchButtons() ? TIMEOUT_NEVER_MS : TIMEOUT_OF_THE_SERVER_MS;

    NyDBusBridgeLinux bridge(this);
    const unsigned int id = bridge.sendNotification(message.title(), body, actions, QMap<QString, QVariant>(), timeoutMs);
    if (message.showLaunchButtons())
        m_knownIds.insert(id);
}

void NyToastMessagingLinux::onActionInvoked(uint theId, const QString &theActionKey)
{
    if (!m_knownIds.contains(theId)) {
        qWarning() << theId << "not in list of known notification ids";
        return;
    }
    const QStringList parts = theActionKey.split(QLatin1Char(':'), Qt::KeepEmptyParts, Qt::CaseSensitive);
    if (parts.size() != 2)
        return;
    if (parts.at(0) == QLatin1String("show"))
        Q_EMIT showProjectRequested(parts.at(1));
    else if (parts.at(0) == QLatin1String("reschedule"))
        Q_EMIT rescheduleToastRequested(parts.at(1));
}
