#pragma once

#include "MockNotificationServer.h"

/** Notifications in plain words, as a person would be told of them. */
namespace NotificationPrinter
{
/** Several lines, each ended; pictures in the body are named by their paths. */
QString description(const MockNotificationServer::Notification &notification);
/** The body without markup, its pictures left out. */
QString plainBody(const QString &body);
/** The local paths of the pictures in the body, or their addresses when they are elsewhere. */
QStringList pictures(const QString &body);
/** The key of the button whose label or key is `wanted`, or of the first one for an empty `wanted`; empty when there is none. */
QString actionKey(const MockNotificationServer::Notification &notification, const QString &wanted);
/** The label of the button with that key. */
QString actionLabel(const MockNotificationServer::Notification &notification, const QString &actionKey);
}
