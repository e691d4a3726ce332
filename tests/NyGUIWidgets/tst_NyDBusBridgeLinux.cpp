#include "MockNotificationServer.h"

#include <NyDBusBridgeLinux.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

using namespace Qt::Literals::StringLiterals;

class Receiver : public QObject
{
    Q_OBJECT

public:
    QStringList answers() const { return m_answers; }

public Q_SLOTS:
    void onActionInvoked(uint theId, const QString &theActionKey)
    {
        m_answers.append(u"%1 %2"_s.arg(QString::number(theId), theActionKey));
    }

private:
    QStringList m_answers;
};

class tst_NyDBusBridgeLinux : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void sendsAllArguments();
    void iconCanBeReadByOthers();
    void iconIsWrittenAgain();
    void bodyIsSentUnchanged_data();
    void bodyIsSentUnchanged();
    void returnsTheServersId();
    void absentServerIsReportedOncePerAbsence();
    void restartedServer();
    void hangingServerIsLeftAlone();
    void receivesAnswers();
    void receivesAnswersOfServersThatComeLater();
    void receivesNothingElse();
    void destroyedReceiver();
    void unusableSlots_data();
    void unusableSlots();

private:
    static uint send(const QString &title = u"Titel"_s)
    {
        return NyDBusBridgeLinux(nullptr).sendNotification(title, u"Text"_s, {}, {}, -1);
    }
    static void ignoreAbsence()
    {
        QTest::ignoreMessage(QtWarningMsg,
            QRegularExpression(u"^notifications are not shown for the time being: \"org\\.freedesktop\\.Notifications\" is not there: "_s));
    }
};

void tst_NyDBusBridgeLinux::sendsAllArguments()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    NyDBusBridgeLinux bridge(this);
    QCOMPARE(bridge.parent(), this);
    const QStringList actions{u"show:a.nqp"_s, u"Jetzt ansehen"_s, u"reschedule:a.nqp"_s, u"Später ansehen"_s};
    const uint id = bridge.sendNotification(u"VELMORA ALBUMA 🎉"_s, u"Text"_s, actions, {{u"urgency"_s, QVariant::fromValue<uchar>(1)}}, 0);

    QCOMPARE(server.notifications().size(), 1);
    const MockNotificationServer::Notification sent = server.notifications().first();
    QCOMPARE(sent.appName, u"VELMORA ALBUMA"_s);
    QCOMPARE(sent.replacesId, 0U);
    QCOMPARE(sent.title, u"VELMORA ALBUMA 🎉"_s);
    QCOMPARE(sent.body, u"Text"_s);
    QCOMPARE(sent.actions, actions);
    QCOMPARE(sent.hints.size(), 1);
    QCOMPARE(sent.hints.value(u"urgency"_s).toInt(), 1);
    QCOMPARE(sent.timeoutMs, 0);
    QCOMPARE(id, sent.id);

    bridge.sendNotification(u"T"_s, u"B"_s, {}, {}, -1);
    QCOMPARE(server.notifications().size(), 2);
    QVERIFY(server.notifications().last().actions.isEmpty());
    QVERIFY(server.notifications().last().hints.isEmpty());
    QCOMPARE(server.notifications().last().timeoutMs, -1);
}

void tst_NyDBusBridgeLinux::iconCanBeReadByOthers()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    send();
    const QUrl icon(server.notifications().first().icon);
    QVERIFY2(icon.isLocalFile(), qPrintable(icon.toString()));
    const QImage image(icon.toLocalFile());
    QVERIFY2(image.width() >= 64 && image.width() == image.height(), qPrintable(icon.toString()));
}

void tst_NyDBusBridgeLinux::iconIsWrittenAgain()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    send();
    const QString path = QUrl(server.notifications().first().icon).toLocalFile();
    QVERIFY(QFile::remove(path));
    send();
    QCOMPARE(QUrl(server.notifications().last().icon).toLocalFile(), path);
    QVERIFY(!QImage(path).isNull());
}

void tst_NyDBusBridgeLinux::bodyIsSentUnchanged_data()
{
    QTest::addColumn<QString>("body");
    QTest::newRow("empty") << QString();
    QTest::newRow("markup") << u"Text<br><center><img src=\"file:///tmp/a&b %1.png\" ></center>"_s;
    QTest::newRow("signs of markup") << u"Anna & Tom < 3 \"Kinder\""_s;
    QTest::newRow("line breaks") << u"eins\nzwei\tdrei"_s;
    QTest::newRow("long") << QString(100000, u'ß');
}

void tst_NyDBusBridgeLinux::bodyIsSentUnchanged()
{
    QFETCH(QString, body);
    MockNotificationServer server;
    QVERIFY(server.start());
    QVERIFY(NyDBusBridgeLinux(nullptr).sendNotification(u"Titel"_s, body, {}, {}, -1) != 0);
    QCOMPARE(server.notifications().first().body, body);
}

void tst_NyDBusBridgeLinux::returnsTheServersId()
{
    MockNotificationServer server;
    server.setNextId(4294967295U);
    QVERIFY(server.start());
    QCOMPARE(send(), 4294967295U);
}

void tst_NyDBusBridgeLinux::absentServerIsReportedOncePerAbsence()
{
    for (int absence = 0; absence < 2; ++absence) {
        {
            MockNotificationServer server;
            QVERIFY(server.start());
            QVERIFY(send() != 0);
        }
        QElapsedTimer timer;
        timer.start();
        ignoreAbsence();
        QCOMPARE(send(), 0U);
        QCOMPARE(send(), 0U);
        QCOMPARE(send(), 0U);
        QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    }
    MockNotificationServer server;
    QVERIFY(server.start());
    QVERIFY(send() != 0);
}

void tst_NyDBusBridgeLinux::restartedServer()
{
    MockNotificationServer first;
    QVERIFY(first.start());
    QCOMPARE(send(u"eins"_s), 1U);
    first.stop();
    MockNotificationServer second;
    QVERIFY(second.start());
    QCOMPARE(send(u"zwei"_s), 1U);
    QCOMPARE(first.notifications().size(), 1);
    QCOMPARE(second.notifications().size(), 1);
    QCOMPARE(second.notifications().first().title, u"zwei"_s);
}

void tst_NyDBusBridgeLinux::hangingServerIsLeftAlone()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    server.setAnswering(false);
    QElapsedTimer timer;
    timer.start();
    QTest::ignoreMessage(QtWarningMsg,
        QRegularExpression(u"^the notification \"Titel\" may be missing: \"org\\.freedesktop\\.Notifications\" gave no answer: "_s));
    QCOMPARE(send(), 0U);
    const qint64 elapsedMs = timer.elapsed();
    QVERIFY2(elapsedMs >= 1000 && elapsedMs < 2500, qPrintable(QString::number(elapsedMs)));
    server.setAnswering(true);
    QCOMPARE(send(), 2U);
}

void tst_NyDBusBridgeLinux::receivesAnswers()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    Receiver receiver;
    QVERIFY(NyDBusBridgeLinux::connectToActionInvoked(&receiver, "1onActionInvoked(uint, QString)"));
    server.invokeAction(7, u"show:Jürgen & %1: 2024.nqp"_s);
    server.invokeAction(0, QString());
    QTRY_COMPARE(receiver.answers(), (QStringList{u"7 show:Jürgen & %1: 2024.nqp"_s, u"0 "_s}));
}

void tst_NyDBusBridgeLinux::receivesAnswersOfServersThatComeLater()
{
    Receiver receiver;
    QVERIFY(NyDBusBridgeLinux::connectToActionInvoked(&receiver, SLOT(onActionInvoked(uint, QString))));
    QStringList expected;
    for (uint run = 1; run <= 3; ++run) {
        MockNotificationServer server;
        QVERIFY(server.start());
        server.invokeAction(run, u"show:a"_s);
        expected.append(u"%1 show:a"_s.arg(run));
        QTRY_COMPARE(receiver.answers(), expected);
    }
}

void tst_NyDBusBridgeLinux::receivesNothingElse()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    Receiver receiver;
    QVERIFY(NyDBusBridgeLinux::connectToActionInvoked(&receiver, "1onActionInvoked(uint,QString)"));
    QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"another program"_s);
    const QString path = u"/org/freedesktop/Notifications"_s;
    const QString interface = u"org.freedesktop.Notifications"_s;
    for (QDBusMessage signal : {QDBusMessage::createSignal(path, interface, u"NotificationClosed"_s),
             QDBusMessage::createSignal(u"/other"_s, interface, u"ActionInvoked"_s),
             QDBusMessage::createSignal(path, u"org.example.Notifications"_s, u"ActionInvoked"_s)}) {
        signal << 1U << u"show:other"_s;
        QVERIFY(other.send(signal));
    }
    // Other parameters than an answer has.
    QVERIFY(other.send(QDBusMessage::createSignal(path, interface, u"ActionInvoked"_s) << u"show:other"_s << 1U));
    // The bus has passed the signals on before it answers.
    other.call(QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/"_s, u"org.freedesktop.DBus"_s, u"GetId"_s));
    server.invokeAction(1, u"show:real"_s);
    QTRY_COMPARE(receiver.answers(), QStringList{u"1 show:real"_s});
    QDBusConnection::disconnectFromBus(u"another program"_s);
}

void tst_NyDBusBridgeLinux::destroyedReceiver()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    Receiver witness;
    {
        Receiver receiver;
        QVERIFY(NyDBusBridgeLinux::connectToActionInvoked(&receiver, "1onActionInvoked(uint, QString)"));
        QVERIFY(NyDBusBridgeLinux::connectToActionInvoked(&witness, "1onActionInvoked(uint, QString)"));
    }
    server.invokeAction(1, u"show:a"_s);
    QTRY_COMPARE(witness.answers().size(), 1);
}

void tst_NyDBusBridgeLinux::unusableSlots_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<bool>("hasReceiver");
    QTest::newRow("without the digit") << QByteArray("onActionInvoked(uint, QString)") << true;
    QTest::newRow("empty") << QByteArray("") << true;
    QTest::newRow("null") << QByteArray() << true;
    QTest::newRow("no such slot") << QByteArray("1onActionInvoke(uint, QString)") << true;
    QTest::newRow("other parameters") << QByteArray("1onActionInvoked(QString, uint)") << true;
    QTest::newRow("no receiver") << QByteArray("1onActionInvoked(uint, QString)") << false;
}

void tst_NyDBusBridgeLinux::unusableSlots()
{
    QFETCH(QByteArray, slot);
    QFETCH(bool, hasReceiver);
    Receiver receiver;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^answers to notifications are not received: "_s));
    QVERIFY(!NyDBusBridgeLinux::connectToActionInvoked(hasReceiver ? &receiver : nullptr, slot.isNull() ? nullptr : slot.constData()));
}

QTEST_MAIN(tst_NyDBusBridgeLinux)
#include "tst_NyDBusBridgeLinux.moc"
