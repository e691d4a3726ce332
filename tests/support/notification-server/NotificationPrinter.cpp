#include "NotificationPrinter.h"

#include <QRegularExpression>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

QString NotificationPrinter::plainBody(const QString &body)
{
    QString text = body;
    text.replace(QRegularExpression(u"<br\\s*/?>"_s), u"\n"_s);
    text.remove(QRegularExpression(u"</?(?:b|i|u|a|img|center)(?:\\s[^>]*)?/?>"_s));
    text.replace(u"&lt;"_s, u"<"_s).replace(u"&gt;"_s, u">"_s).replace(u"&quot;"_s, u"\""_s).replace(u"&amp;"_s, u"&"_s);
    return text.trimmed();
}

QStringList NotificationPrinter::pictures(const QString &body)
{
    static const QRegularExpression IMAGE(u"<img\\s[^>]*src=\"([^\"]*)\""_s);
    QStringList found;
    for (auto it = IMAGE.globalMatch(body); it.hasNext();) {
        const QUrl url(it.next().captured(1));
        found.append(url.isLocalFile() ? url.toLocalFile() : url.toString());
    }
    return found;
}

QString NotificationPrinter::actionKey(const MockNotificationServer::Notification &notification, const QString &wanted)
{
    for (qsizetype i = 0; i + 1 < notification.actions.size(); i += 2) {
        if (wanted.isEmpty() || notification.actions.at(i) == wanted || notification.actions.at(i + 1) == wanted)
            return notification.actions.at(i);
    }
    return {};
}

QString NotificationPrinter::actionLabel(const MockNotificationServer::Notification &notification, const QString &actionKey)
{
    for (qsizetype i = 0; i + 1 < notification.actions.size(); i += 2) {
        if (notification.actions.at(i) == actionKey)
            return notification.actions.at(i + 1);
    }
    return {};
}

QString NotificationPrinter::description(const MockNotificationServer::Notification &notification)
{
    QString text = u"Notification %1 from \"%2\"\n"_s.arg(QString::number(notification.id), notification.appName);
    const auto addLine = [&text](const QString &label, const QString &value) {
        QString indented = value;
        indented.replace(u'\n', u"\n             "_s);
        text += u"    %1 %2\n"_s.arg(label, -8).arg(indented);
    };
    addLine(u"title:"_s, notification.title);
    addLine(u"text:"_s, plainBody(notification.body));
    for (const QString &picture : pictures(notification.body))
        addLine(u"picture:"_s, picture);
    QStringList labels;
    for (qsizetype i = 0; i + 1 < notification.actions.size(); i += 2)
        labels.append(u"[%1]"_s.arg(notification.actions.at(i + 1)));
    addLine(u"buttons:"_s, labels.isEmpty() ? u"none"_s : labels.join(u' '));
    if (notification.timeoutMs == 0)
        addLine(u"stays:"_s, u"until it is answered"_s);
    else if (notification.timeoutMs > 0)
        addLine(u"stays:"_s, u"%1 s"_s.arg(notification.timeoutMs / 1000.0));
    return text;
}
