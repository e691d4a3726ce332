#include "MockNotificationServer.h"
#include "MockStatusNotifierHost.h"
#include "TestSupport.h"

#include <NySystemTrayService.h>
#include <NyToastMessage.h>

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QMenu>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

/** The icon on a desktop whose panel takes icons over the bus and comes later than the service. */
class tst_TrayOnHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void iconComesWithTheHost();

private:
    /** Calls the item as the panel does: from another process, while this one serves its bus connections. */
    static QString call(const QString &item, const QString &method, const QStringList &arguments)
    {
        QProcess gdbus;
        QSignalSpy finished(&gdbus, &QProcess::finished);
        gdbus.start(u"gdbus"_s,
            QStringList{
                u"call"_s, u"--session"_s, u"-d"_s, item, u"-o"_s, u"/StatusNotifierItem"_s, u"--timeout"_s, u"5"_s, u"-m"_s, method}
                + arguments);
        finished.wait(10000);
        return QString::fromUtf8(gdbus.readAll()).trimmed();
    }
    static QString property(const QString &item, const QString &name)
    {
        return call(item, u"org.freedesktop.DBus.Properties.Get"_s, {u"org.kde.StatusNotifierItem"_s, name});
    }
};

void tst_TrayOnHost::iconComesWithTheHost()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QTest::ignoreMessage(QtInfoMsg, "the desktop has no tray yet; the icon waits for one");
    auto *tray = new NySystemTrayService;
    tray->show();
    // The menu keeps what it is told meanwhile, and a balloon is not a crash.
    tray->setShowLastProposalActionEnabled(true);
    QTest::ignoreMessage(QtInfoMsg, "the desktop has no tray that could show the message \"T\"");
    tray->showSystemTrayMessage(NyToastMessage(u"T"_s, u"D"_s, QFileInfo(), QString(), false));

    MockStatusNotifierHost host;
    QVERIFY(host.start());
    host.registerHost();
    QTRY_COMPARE(host.items().size(), 1);

    const QString item = host.items().first();
    QCOMPARE(property(item, u"Status"_s), u"(<'Active'>,)"_s);
    QVERIFY2(property(item, u"ToolTip"_s).contains(u"'VELMORA ALBUMA'"_s), qPrintable(property(item, u"ToolTip"_s)));
    QVERIFY(property(item, u"IconPixmap"_s).size() > 1000);

    // A plain click, as the panel sends it.
    QMenu *menu = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets())
        menu = menu ? menu : qobject_cast<QMenu *>(widget);
    QVERIFY(menu);
    QSignalSpy aboutToShow(menu, &QMenu::aboutToShow);
    connect(menu, &QMenu::aboutToShow, menu, [menu] { QMetaObject::invokeMethod(menu, &QMenu::close, Qt::QueuedConnection); });
    call(item, u"org.kde.StatusNotifierItem.Activate"_s, {u"10"_s, u"10"_s});
    QTRY_COMPARE(aboutToShow.size(), 1);
    QTRY_VERIFY(!menu->isVisible());

    // Balloons go to the notification server.
    MockNotificationServer server;
    QVERIFY(server.start());
    QSignalSpy quit(tray, &NySystemTrayService::quitRequested);
    tray->showSystemTrayMessage(NyToastMessage(u"Angebot"_s, u"Text"_s, QFileInfo(), u"a.nqp"_s, true));
    QTRY_COMPARE(server.notifications().size(), 1);
    QCOMPARE(server.notifications().last().title, u"Angebot"_s);
    QCOMPARE(server.notifications().last().body, u"Text"_s);
    QCOMPARE(server.notifications().last().timeoutMs, 86400000);
    tray->showSystemTrayMessage(NyToastMessage(u"Auskunft"_s, u"Text"_s, QFileInfo(), QString(), false));
    QTRY_COMPARE(server.notifications().size(), 2);
    QCOMPARE(server.notifications().last().timeoutMs, 10000);

    // Leaving the tray takes the icon off the bus.
    tray->hide();
    QTRY_VERIFY(!QDBusConnection::sessionBus().interface()->isServiceRegistered(item));
    tray->show();
    QTRY_COMPARE(host.items().size(), 2);
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    tst_TrayOnHost test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_TrayOnHost.moc"
