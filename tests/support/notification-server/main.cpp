#include "MockNotificationServer.h"
#include "NotificationPrinter.h"

#include <NyUnixSignalNotifier.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTimer>

#include <csignal>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace
{
void print(const QString &text)
{
    std::fputs(text.toUtf8().constData(), stdout);
    std::fflush(stdout);
}
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"A notification server without a screen: takes the place of the desktop's on the session bus and "
                                     "prints every notification in plain words. Ends on SIGTERM and SIGINT."_s);
    parser.addHelpOption();
    const QCommandLineOption pressAfter(
        u"press-after"_s, u"Press a button of every notification that has one, this long after it came."_s, u"ms"_s);
    const QCommandLineOption press(
        u"press"_s, u"The button to press, by its label or its action key; the first one otherwise."_s, u"button"_s);
    const QCommandLineOption capabilities(
        u"capabilities"_s, u"What the server says it can do, separated by commas."_s, u"list"_s, u"body,actions,body-markup,body-images"_s);
    parser.addOptions({pressAfter, press, capabilities});
    parser.process(application);

    bool isNumber = true;
    const int pressAfterMs = parser.isSet(pressAfter) ? parser.value(pressAfter).toInt(&isNumber) : -1;
    if (!isNumber || (parser.isSet(pressAfter) && pressAfterMs < 0)) {
        std::fprintf(stderr, "notification-server: --press-after needs a number of milliseconds, not \"%s\"\n",
            qPrintable(parser.value(pressAfter)));
        return 1;
    }

    MockNotificationServer server;
    server.setCapabilities(parser.value(capabilities).split(u',', Qt::SkipEmptyParts));
    QObject::connect(
        &server, &MockNotificationServer::notified, &application, [&](const MockNotificationServer::Notification &notification) {
            print(NotificationPrinter::description(notification));
            const QString key = NotificationPrinter::actionKey(notification, parser.value(press));
            if (pressAfterMs < 0 || key.isEmpty())
                return;
            QTimer::singleShot(pressAfterMs, &application, [&server, notification, key] {
                print(
                    u"Pressing [%1] of notification %2\n"_s.arg(NotificationPrinter::actionLabel(notification, key)).arg(notification.id));
                server.invokeAction(notification.id, key);
                server.close(notification.id, MockNotificationServer::Dismissed);
            });
        });

    if (!server.start()) {
        std::fprintf(stderr, "notification-server: there is no session bus, or another notification server has the name\n");
        return 1;
    }
    print(u"Waiting for notifications\n"_s);

    const NyUnixSignalNotifier notifier({SIGTERM, SIGINT});
    QObject::connect(&notifier, &NyUnixSignalNotifier::received, &application, &QCoreApplication::quit);
    return application.exec();
}
