#include "MockNotificationServer.h"
#include "TestSupport.h"

#include <NyToastMessage.h>
#include <NyToastMessagingLinux.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

using namespace Qt::Literals::StringLiterals;

class tst_NyToastMessagingLinux : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_server.reset(); }
    void buttons();
    void noButtons();
    void hostileId_data();
    void hostileId();
    void body_data();
    void body();
    void capabilitiesAreAskedAgain();
    void answers_data();
    void answers();
    void answersToNotificationsWithoutButtons();
    void answersOfOtherPrograms();
    void answersTwice();
    void olderNotificationsStillAnswer();
    void restartedServer();
    void noServer();
    void hangingServer();
    void noWindow();

private:
    static NyToastMessage offer(const QString &id = u"a.nqp"_s, const QFileInfo &image = QFileInfo())
    {
        return NyToastMessage(u"VELMORA ALBUMA"_s, u"Ihr neuer Vorschlag"_s, image, id, true);
    }
    MockNotificationServer::Notification sent() const { return m_server->notifications().last(); }

    std::unique_ptr<MockNotificationServer> m_server;
};

void tst_NyToastMessagingLinux::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    m_server = std::make_unique<MockNotificationServer>();
    QVERIFY(m_server->start());
}

void tst_NyToastMessagingLinux::buttons()
{
    m_server->setNextId(77);
    NyToastMessagingLinux messaging(this);
    QCOMPARE(messaging.parent(), this);
    QSignalSpy shown(&messaging, &NyToastMessagingInterface::showProjectRequested);
    messaging.sendToastMessage(offer(u"Produktvorschlag_2024-01-01.nqp"_s));
    QCOMPARE(m_server->notifications().size(), 1);
    QCOMPARE(sent().title, u"VELMORA ALBUMA"_s);
    QCOMPARE(sent().body, u"Ihr neuer Vorschlag"_s);
    QCOMPARE(sent().actions,
        (QStringList{u"show:Produktvorschlag_2024-01-01.nqp"_s, u"Jetzt ansehen"_s, u"reschedule:Produktvorschlag_2024-01-01.nqp"_s,
            u"Später ansehen"_s}));
    QVERIFY(sent().hints.isEmpty());
    QCOMPARE(sent().timeoutMs, 0);
    // The id is known.
    m_server->invokeAction(77, u"show:x"_s);
    QVERIFY(shown.wait());
}

void tst_NyToastMessagingLinux::noButtons()
{
    NyToastMessagingLinux messaging(nullptr);
    messaging.sendToastMessage(NyToastMessage(u"Titel\n1.2"_s, u"Text"_s, QFileInfo(), QString(), false));
    QCOMPARE(sent().title, u"Titel\n1.2"_s);
    QVERIFY(sent().actions.isEmpty());
    QVERIFY(sent().hints.isEmpty());
    QCOMPARE(sent().timeoutMs, -1);
}

void tst_NyToastMessagingLinux::hostileId_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("empty") << QString();
    QTest::newRow("percent signs") << u"100%1 %2.nqp"_s;
    QTest::newRow("markup") << u"Anna & <b>Tom</b> \"1\".nqp"_s;
    QTest::newRow("decomposed and emoji") << u"Mu\u0308nchen \U0001F389.nqp"_s;
}

void tst_NyToastMessagingLinux::hostileId()
{
    QFETCH(QString, id);
    NyToastMessagingLinux messaging(nullptr);
    QSignalSpy rescheduled(&messaging, &NyToastMessagingInterface::rescheduleToastRequested);
    messaging.sendToastMessage(offer(id));
    QCOMPARE(sent().actions.at(0), u"show:"_s + id);
    QCOMPARE(sent().actions.at(2), u"reschedule:"_s + id);
    m_server->invokeAction(sent().id, sent().actions.at(2));
    QVERIFY(rescheduled.wait());
    QCOMPARE(rescheduled.first().first().toString(), id);
}

void tst_NyToastMessagingLinux::body_data()
{
    QTest::addColumn<QStringList>("capabilities");
    QTest::addColumn<QString>("image");
    QTest::addColumn<bool>("hasButtons");
    QTest::addColumn<QString>("expected");
    const QStringList html{u"body"_s, u"body-markup"_s, u"body-images"_s};
    const QStringList plain{u"body"_s};
    QTest::newRow("image") << html << u"/tmp/a.png"_s << true << u"Anna & Tom < 3<br><center><img src=\"file:///tmp/a.png\" ></center>"_s;
    QTest::newRow("image, no buttons") << html << u"/tmp/a.png"_s << false
                                       << u"Anna & Tom < 3<br><center><img src=\"file:///tmp/a.png\" ></center>"_s;
    QTest::newRow("blanks, signs of markup, umlaut, percent sign")
        << html << u"/tmp/a b&<ü>%1.png"_s << true
        << u"Anna & Tom < 3<br><center><img src=\"file:///tmp/a b&%3Cü%3E%251.png\" ></center>"_s;
    QTest::newRow("no image") << html << QString() << true << u"Anna & Tom < 3"_s;
    QTest::newRow("server without HTML") << plain << u"/tmp/a.png"_s << true << u"Anna & Tom < 3"_s;
    QTest::newRow("server without pictures in the text")
        << QStringList{u"body"_s, u"body-markup"_s} << u"/tmp/a.png"_s << true << u"Anna & Tom < 3"_s;
    QTest::newRow("neither") << plain << QString() << true << u"Anna & Tom < 3"_s;
}

void tst_NyToastMessagingLinux::body()
{
    QFETCH(QStringList, capabilities);
    QFETCH(QString, image);
    QFETCH(bool, hasButtons);
    m_server->setCapabilities(capabilities);
    NyToastMessagingLinux messaging(nullptr);
    messaging.sendToastMessage(
        NyToastMessage(u"T"_s, u"Anna & Tom < 3"_s, image.isEmpty() ? QFileInfo() : QFileInfo(image), u"a.nqp"_s, hasButtons));
    QTEST(sent().body, "expected");
    QVERIFY(sent().hints.isEmpty());
}

void tst_NyToastMessagingLinux::capabilitiesAreAskedAgain()
{
    NyToastMessagingLinux messaging(nullptr);
    const QFileInfo image(u"/tmp/a.png"_s);
    messaging.sendToastMessage(offer(u"a.nqp"_s, image));
    QVERIFY(sent().body.contains(u"<img"_s));
    m_server->stop();
    m_server->setCapabilities({u"body"_s});
    QVERIFY(m_server->start());
    messaging.sendToastMessage(offer(u"a.nqp"_s, image));
    QCOMPARE(sent().body, u"Ihr neuer Vorschlag"_s);
}

void tst_NyToastMessagingLinux::answers_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QStringList>("rescheduled");
    const QStringList none;
    QTest::newRow("show") << u"show:a.nqp"_s << QStringList{u"a.nqp"_s} << none;
    QTest::newRow("reschedule") << u"reschedule:a.nqp"_s << none << QStringList{u"a.nqp"_s};
    QTest::newRow("empty id") << u"show:"_s << QStringList{QString()} << none;
    QTest::newRow("no colon") << u"show"_s << none << none;
    QTest::newRow("equals sign") << u"show=a.nqp"_s << none << none;
    QTest::newRow("three parts") << u"show:a:b.nqp"_s << none << none;
    QTest::newRow("empty third part") << u"show:a:"_s << none << none;
    QTest::newRow("other verb") << u"delete:a.nqp"_s << none << none;
    QTest::newRow("default action") << u"default"_s << none << none;
    QTest::newRow("capital") << u"Show:a.nqp"_s << none << none;
    QTest::newRow("verb and more") << u"showing:a.nqp"_s << none << none;
    QTest::newRow("nothing before the colon") << u":a.nqp"_s << none << none;
    QTest::newRow("empty") << QString() << none << none;
}

void tst_NyToastMessagingLinux::answers()
{
    QFETCH(QString, key);
    QFETCH(QStringList, shown);
    QFETCH(QStringList, rescheduled);
    NyToastMessagingLinux messaging(nullptr);
    QSignalSpy showSpy(&messaging, &NyToastMessagingInterface::showProjectRequested);
    QSignalSpy rescheduleSpy(&messaging, &NyToastMessagingInterface::rescheduleToastRequested);
    messaging.sendToastMessage(offer());
    const TestSupport::LogRecorder log;
    m_server->invokeAction(sent().id, key);
    // Answers come in order.
    m_server->invokeAction(sent().id, u"show:sentinel"_s);
    QTRY_VERIFY(!showSpy.isEmpty() && showSpy.last().first().toString() == u"sentinel"_s);
    QStringList actualShown;
    for (const QVariantList &call : showSpy)
        actualShown.append(call.first().toString());
    QCOMPARE(actualShown, shown + QStringList{u"sentinel"_s});
    QStringList actualRescheduled;
    for (const QVariantList &call : rescheduleSpy)
        actualRescheduled.append(call.first().toString());
    QCOMPARE(actualRescheduled, rescheduled);
    QCOMPARE(log.all(), QStringList());
}

void tst_NyToastMessagingLinux::answersToNotificationsWithoutButtons()
{
    m_server->setNextId(5);
    NyToastMessagingLinux messaging(nullptr);
    QSignalSpy showSpy(&messaging, &NyToastMessagingInterface::showProjectRequested);
    messaging.sendToastMessage(NyToastMessage(u"T"_s, u"D"_s, QFileInfo(), u"a.nqp"_s, false));
    const TestSupport::LogRecorder log;
    QTest::ignoreMessage(QtWarningMsg, "5 not in list of known notification ids");
    m_server->invokeAction(5, u"show:a.nqp"_s);
    QTRY_VERIFY(log.has(u"warning: 5 not in list of known notification ids"_s));
    QCOMPARE(showSpy.size(), 0);
}

void tst_NyToastMessagingLinux::answersOfOtherPrograms()
{
    m_server->setNextId(5);
    NyToastMessagingLinux messaging(nullptr);
    QSignalSpy showSpy(&messaging, &NyToastMessagingInterface::showProjectRequested);
    QSignalSpy rescheduleSpy(&messaging, &NyToastMessagingInterface::rescheduleToastRequested);
    messaging.sendToastMessage(offer());
    const TestSupport::LogRecorder log;
    for (const QString &key : {u"show:a.nqp"_s, u"reschedule:a.nqp"_s, u"default"_s, u"a:b:c"_s}) {
        QTest::ignoreMessage(QtWarningMsg, "4294967295 not in list of known notification ids");
        m_server->invokeAction(4294967295U, key);
    }
    m_server->invokeAction(5, u"show:sentinel"_s);
    QVERIFY(showSpy.wait());
    QCOMPARE(log.containing(u"not in list"_s).size(), 4);
    QCOMPARE(showSpy, (QList<QVariantList>{{u"sentinel"_s}}));
    QCOMPARE(rescheduleSpy.size(), 0);
}

void tst_NyToastMessagingLinux::answersTwice()
{
    NyToastMessagingLinux messaging(nullptr);
    QSignalSpy showSpy(&messaging, &NyToastMessagingInterface::showProjectRequested);
    messaging.sendToastMessage(offer());
    m_server->invokeAction(sent().id, u"show:a.nqp"_s);
    m_server->close(sent().id, MockNotificationServer::Dismissed);
    m_server->invokeAction(sent().id, u"show:a.nqp"_s);
    QTRY_COMPARE(showSpy.size(), 2);
}

void tst_NyToastMessagingLinux::olderNotificationsStillAnswer()
{
    NyToastMessagingLinux messaging(nullptr);
    QSignalSpy showSpy(&messaging, &NyToastMessagingInterface::showProjectRequested);
    messaging.sendToastMessage(offer(u"alt.nqp"_s));
    const uint old = sent().id;
    messaging.sendToastMessage(offer(u"neu.nqp"_s));
    QVERIFY(sent().id != old);
    m_server->invokeAction(old, u"show:alt.nqp"_s);
    m_server->invokeAction(sent().id, u"show:neu.nqp"_s);
    QTRY_COMPARE(showSpy, (QList<QVariantList>{{u"alt.nqp"_s}, {u"neu.nqp"_s}}));
}

void tst_NyToastMessagingLinux::restartedServer()
{
    NyToastMessagingLinux messaging(nullptr);
    QSignalSpy showSpy(&messaging, &NyToastMessagingInterface::showProjectRequested);
    messaging.sendToastMessage(offer());
    m_server->stop();
    m_server->setNextId(40);
    QVERIFY(m_server->start());
    messaging.sendToastMessage(offer());
    QCOMPARE(sent().id, 40U);
    m_server->invokeAction(40, u"show:a.nqp"_s);
    QVERIFY(showSpy.wait());
}

void tst_NyToastMessagingLinux::noServer()
{
    m_server->stop();
    QElapsedTimer timer;
    timer.start();
    NyToastMessagingLinux messaging(nullptr);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"\"org\\.freedesktop\\.Notifications\" is not there"_s));
    messaging.sendToastMessage(offer());
    messaging.sendToastMessage(offer());
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(m_server->start());
    messaging.sendToastMessage(offer());
    QCOMPARE(m_server->notifications().size(), 1);
}

void tst_NyToastMessagingLinux::hangingServer()
{
    m_server->setAnswering(false);
    NyToastMessagingLinux messaging(nullptr);
    QElapsedTimer timer;
    timer.start();
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(u"^the capabilities of "_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^the notification \"VELMORA ALBUMA\" may be missing: "_s));
    messaging.sendToastMessage(offer(u"a.nqp"_s, QFileInfo(u"/tmp/a.png"_s)));
    // Both waits together, and some time for a busy machine.
    QVERIFY2(timer.elapsed() < 3000, qPrintable(QString::number(timer.elapsed())));
}

void tst_NyToastMessagingLinux::noWindow()
{
    m_server->stop();
    NyToastMessagingLinux messaging(nullptr);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"is not there"_s));
    messaging.sendToastMessage(offer());
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

QTEST_MAIN(tst_NyToastMessagingLinux)
#include "tst_NyToastMessagingLinux.moc"
