#include "ServerProcess.h"

#include <NyDBusBridgeLinux.h>
#include <NyLinuxDesktop.h>

#include <QDBusArgument>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

/** The bridge against servers that others wrote, and the tests' own program. */
class tst_NotificationServers : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void onActionInvoked(uint theId, const QString &theActionKey)
    {
        m_answers.append(u"%1 %2"_s.arg(QString::number(theId), theActionKey));
    }

private Q_SLOTS:
    void initTestCase();
    void init();
    void dunstShowsAndAnswers();
    void dunstIsRestarted();
    void dunstHangs();
    void dbusmock();
    void ownServerInPlainWords();
    void ownServerNeedsTheName();
    void ownServerRefusesBadOptions();

private:
    static uint offer(const QString &title = u"VELMORA ALBUMA"_s)
    {
        return NyDBusBridgeLinux(nullptr).sendNotification(title,
            u"Ihr neuer, persönlicher Vorschlag für ein VELMORA ALBUMA wurde erstellt."_s,
            {u"show:a.nqp"_s, u"Jetzt ansehen"_s, u"reschedule:a.nqp"_s, u"Später ansehen"_s}, {}, 0);
    }
    bool startDunst(ServerProcess &dunst) const { return dunst.start(u"dunst"_s, {u"-conf"_s, m_dunstrc}); }
    static int displayedByDunst()
    {
        QDBusInterface control(u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s, u"org.dunstproject.cmd0"_s);
        return control.property("displayedLength").toInt();
    }
    /** Opens dunst's menu of actions by a click on its window; the menu program of the configuration chooses. */
    static bool clickOnDunst();

    QString m_dunstrc;
    QStringList m_answers;
};

void tst_NotificationServers::initTestCase()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_dunstrc = QDir::tempPath() + u"/dunstrc"_s;
    const QString menu = QDir::tempPath() + u"/menu"_s;
    QFile menuFile(menu);
    QVERIFY(menuFile.open(QIODevice::WriteOnly));
    menuFile.write("#!/bin/sh\ngrep 'Jetzt ansehen' | head -n 1\n");
    menuFile.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    menuFile.close();
    QFile configuration(m_dunstrc);
    QVERIFY(configuration.open(QIODevice::WriteOnly));
    configuration.write(
        "[global]\n  follow = none\n  width = 400\n  offset = 20x20\n  idle_threshold = 0\n  mouse_left_click = context\n  dmenu = "
        + QFile::encodeName(menu) + "\n");
    configuration.close();
    QVERIFY(NyDBusBridgeLinux::connectToActionInvoked(this, "1onActionInvoked(uint, QString)"));
}

void tst_NotificationServers::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_answers.clear();
    QVERIFY(!ServerProcess::hasName());
}

bool tst_NotificationServers::clickOnDunst()
{
    const auto run = [](const QStringList &arguments) {
        QProcess xdotool;
        xdotool.start(u"xdotool"_s, arguments);
        xdotool.waitForFinished();
        return QString::fromUtf8(xdotool.readAllStandardOutput()).trimmed();
    };
    const QString windows = run({u"search"_s, u"--onlyvisible"_s, u"--class"_s, u"Dunst"_s});
    if (windows.isEmpty())
        return false;
    run({u"mousemove"_s, u"--window"_s, windows.split(u'\n').last(), u"60"_s, u"20"_s, u"click"_s, u"1"_s});
    return true;
}

void tst_NotificationServers::dunstShowsAndAnswers()
{
    ServerProcess dunst;
    QVERIFY2(startDunst(dunst), qPrintable(dunst.output()));
    // It knows markup and no pictures in the text.
    QVERIFY(!NyLinuxDesktop().supportsHTMLNotifications());
    const uint id = offer();
    QVERIFY(id != 0);
    QTRY_COMPARE(displayedByDunst(), 1);
    QVERIFY(QTest::qWaitFor(clickOnDunst));
    QTRY_COMPARE(m_answers, QStringList{u"%1 show:a.nqp"_s.arg(id)});
}

void tst_NotificationServers::dunstIsRestarted()
{
    {
        ServerProcess dunst;
        QVERIFY2(startDunst(dunst), qPrintable(dunst.output()));
        QVERIFY(offer() != 0);
    }
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"\"org\\.freedesktop\\.Notifications\" is not there"_s));
    QCOMPARE(offer(), 0U);
    ServerProcess dunst;
    QVERIFY2(startDunst(dunst), qPrintable(dunst.output()));
    const uint id = offer();
    QVERIFY(id != 0);
    QTRY_COMPARE(displayedByDunst(), 1);
    QVERIFY(QTest::qWaitFor(clickOnDunst));
    QTRY_COMPARE(m_answers, QStringList{u"%1 show:a.nqp"_s.arg(id)});
}

void tst_NotificationServers::dunstHangs()
{
    ServerProcess dunst;
    QVERIFY2(startDunst(dunst), qPrintable(dunst.output()));
    dunst.suspend();
    QElapsedTimer timer;
    timer.start();
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(u"^the capabilities of \"org\\.freedesktop\\.Notifications\" are not known: "_s));
    QVERIFY(!NyLinuxDesktop().supportsHTMLNotifications());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^the notification \"VELMORA ALBUMA\" may be missing: "_s));
    QCOMPARE(offer(), 0U);
    // Both questions together.
    QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
    dunst.resume();
    QTRY_VERIFY(displayedByDunst() >= 1);
    QVERIFY(offer(u"danach"_s) != 0);
}

void tst_NotificationServers::dbusmock()
{
    ServerProcess mock;
    QVERIFY2(mock.start(u"/usr/bin/python3"_s,
                 {u"-m"_s, u"dbusmock"_s, u"--session"_s, u"--template"_s, u"notification_daemon"_s, u"-p"_s,
                     u"{\"capabilities\":\"body actions body-markup body-images\"}"_s}),
        qPrintable(mock.output()));
    QVERIFY(NyLinuxDesktop().supportsHTMLNotifications());
    const uint id = offer();
    QVERIFY(id != 0);

    QDBusInterface control(u"org.freedesktop.Notifications"_s, u"/org/freedesktop/Notifications"_s, u"org.freedesktop.DBus.Mock"_s);
    // a(tav): time and arguments of each call.
    const QDBusMessage calls = control.call(u"GetMethodCalls"_s, u"Notify"_s);
    QCOMPARE(calls.type(), QDBusMessage::ReplyMessage);
    const auto list = calls.arguments().first().value<QDBusArgument>();
    QVariantList arguments;
    int count = 0;
    list.beginArray();
    while (!list.atEnd()) {
        qulonglong time = 0;
        list.beginStructure();
        list >> time >> arguments;
        list.endStructure();
        ++count;
    }
    list.endArray();
    QCOMPARE(count, 1);
    QCOMPARE(arguments.size(), 8);
    QCOMPARE(arguments.at(0).toString(), u"VELMORA ALBUMA"_s);
    QCOMPARE(arguments.at(1).toUInt(), 0U);
    QCOMPARE(arguments.at(3).toString(), u"VELMORA ALBUMA"_s);
    QCOMPARE(arguments.at(7).toInt(), 0);

    control.call(u"EmitSignal"_s, u"org.freedesktop.Notifications"_s, u"ActionInvoked"_s, u"us"_s,
        QVariantList{QVariant::fromValue(id), u"reschedule:a.nqp"_s});
    QTRY_COMPARE(m_answers, QStringList{u"%1 reschedule:a.nqp"_s.arg(id)});
}

void tst_NotificationServers::ownServerInPlainWords()
{
    ServerProcess server;
    QVERIFY2(server.start(QStringLiteral(NY_NOTIFICATION_SERVER), {u"--press-after"_s, u"10"_s, u"--press"_s, u"Später ansehen"_s}),
        qPrintable(server.output()));
    QVERIFY(NyLinuxDesktop().supportsHTMLNotifications());
    NyDBusBridgeLinux bridge(nullptr);
    QCOMPARE(bridge.sendNotification(u"Auskunft"_s, u"ohne Knöpfe"_s, {}, {}, -1), 1U);
    QCOMPARE(bridge.sendNotification(u"VELMORA ALBUMA"_s, u"Anna &amp; Tom<br><center><img src=\"file:///tmp/a b/ü.png\" ></center>"_s,
                 {u"show:a.nqp"_s, u"Jetzt ansehen"_s, u"reschedule:a.nqp"_s, u"Später ansehen"_s}, {}, 0),
        2U);
    QTRY_COMPARE(m_answers, QStringList{u"2 reschedule:a.nqp"_s});
    server.end();
    QCOMPARE(server.exitCode(), 0);
    QCOMPARE(server.output(),
        u"Waiting for notifications\n"
        "Notification 1 from \"VELMORA ALBUMA\"\n"
        "    title:   Auskunft\n"
        "    text:    ohne Knöpfe\n"
        "    buttons: none\n"
        "Notification 2 from \"VELMORA ALBUMA\"\n"
        "    title:   VELMORA ALBUMA\n"
        "    text:    Anna & Tom\n"
        "    picture: /tmp/a b/ü.png\n"
        "    buttons: [Jetzt ansehen] [Später ansehen]\n"
        "    stays:   until it is answered\n"
        "Pressing [Später ansehen] of notification 2\n"_s);
}

void tst_NotificationServers::ownServerNeedsTheName()
{
    ServerProcess first;
    QVERIFY2(first.start(QStringLiteral(NY_NOTIFICATION_SERVER), {}), qPrintable(first.output()));
    QProcess second;
    second.start(QStringLiteral(NY_NOTIFICATION_SERVER), {});
    QVERIFY(second.waitForFinished());
    QCOMPARE(second.exitCode(), 1);
    QVERIFY(second.readAllStandardError().contains("another notification server"));
}

void tst_NotificationServers::ownServerRefusesBadOptions()
{
    for (const QString &number : {u"soon"_s, u"-1"_s, QString()}) {
        QProcess server;
        server.start(QStringLiteral(NY_NOTIFICATION_SERVER), {u"--press-after="_s + number});
        QVERIFY(server.waitForFinished());
        QCOMPARE(server.exitCode(), 1);
        QVERIFY(server.readAllStandardError().contains("--press-after"));
    }
}

QTEST_MAIN(tst_NotificationServers)
#include "tst_NotificationServers.moc"
