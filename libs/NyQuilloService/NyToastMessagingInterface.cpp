#include "NyToastMessagingInterface.h"

#include <QDebug>
#include <QStringList>

NyToastMessagingInterface::NyToastMessagingInterface(QObject *parent)
    : QObject(parent)
{
}

NyToastMessagingInterface::~NyToastMessagingInterface() = default;

void NyToastMessagingInterface::toastActivated(const QString &arguments)
{
    const QStringList parts = arguments.split(QLatin1Char('='), Qt::KeepEmptyParts, Qt::CaseSensitive);
    if (parts.size() < 2)
        return;
    if (parts.at(0) == QLatin1String("show"))
        Q_EMIT showProjectRequested(parts.at(1));
    else if (parts.at(0) == QLatin1String("reschedule"))
        Q_EMIT rescheduleToastRequested(parts.at(1));
}

void NyToastMessagingInterface::uninstallToastMessaging()
{
    qInfo() << "Uninstall Requested";
}
