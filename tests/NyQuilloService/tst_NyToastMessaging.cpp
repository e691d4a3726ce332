#include "MockNotificationServer.h"
#include "TestSupport.h"

#include <NyProgramConfig.h>
#include <NyQuilloServiceSettings.h>
#include <NyToastMessage.h>
#include <NyToastMessaging.h>
#include <NyToastMessagingLinux.h>

#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_NyToastMessaging : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void ownsTheBackendOfThePlatform();
    void createInterface();
    void allowedMessagesAreShown();
    void unwantedMessagesAreNotShown_data();
    void unwantedMessagesAreNotShown();
    void answersPassThrough();
    void toastActivated_data();
    void toastActivated();
    void uninstall();
    void signalsInTheirOrder();
};

void tst_NyToastMessaging::ownsTheBackendOfThePlatform()
{
    auto *facade = new NyToastMessaging;
    QCOMPARE(facade->parent(), nullptr);
    const QList<NyToastMessagingInterface *> backends = facade->findChildren<NyToastMessagingInterface *>();
    QCOMPARE(backends.size(), 1);
    QVERIFY(qobject_cast<NyToastMessagingLinux *>(backends.first()));
    QSignalSpy destroyed(backends.first(), &QObject::destroyed);
    delete facade;
    QCOMPARE(destroyed.size(), 1);
}

void tst_NyToastMessaging::createInterface()
{
    const NyToastMessaging facade;
    QObject parent;
    NyToastMessagingInterface *backend = facade.createInterface(&parent);
    QCOMPARE(backend->metaObject()->className(), "NyToastMessagingLinux");
    QCOMPARE(backend->parent(), &parent);
}

void tst_NyToastMessaging::allowedMessagesAreShown()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    NyToastMessaging facade;
    facade.sendToastMessage(NyToastMessage(u"T"_s, u"D"_s, QFileInfo(), u"a.nqp"_s, true));
    facade.sendToastMessage(NyToastMessage(u"T2"_s, u"D2"_s, QFileInfo(), QString(), false));
    QCOMPARE(server.notifications().size(), 2);
}

void tst_NyToastMessaging::unwantedMessagesAreNotShown_data()
{
    QTest::addColumn<bool>("hasButtons");
    QTest::newRow("with buttons") << true;
    QTest::newRow("without buttons") << false;
}

void tst_NyToastMessaging::unwantedMessagesAreNotShown()
{
    QFETCH(bool, hasButtons);
    MockNotificationServer server;
    QVERIFY(server.start());
    NyToastMessaging facade;
    const NyToastMessage message(u"T"_s, u"D"_s, QFileInfo(u"/tmp/a.png"_s), u"a.nqp"_s, hasButtons);
    NyQuilloServiceSettings::instance().setAllowToastMessages(false);
    facade.sendToastMessage(message);
    QCOMPARE(server.notifications().size(), 0);
    // No backend was asked at all.
    QCOMPARE(server.capabilityQueries(), 0);
    NyQuilloServiceSettings::instance().setAllowToastMessages(true);
    facade.sendToastMessage(message);
    QCOMPARE(server.notifications().size(), 1);
}

void tst_NyToastMessaging::answersPassThrough()
{
    MockNotificationServer server;
    server.setNextId(12);
    QVERIFY(server.start());
    NyToastMessaging facade;
    QSignalSpy shown(&facade, &NyToastMessagingInterface::showProjectRequested);
    QSignalSpy rescheduled(&facade, &NyToastMessagingInterface::rescheduleToastRequested);
    facade.sendToastMessage(NyToastMessage(u"T"_s, u"D"_s, QFileInfo(), u"a.nqp"_s, true));
    server.invokeAction(12, u"show:a.nqp"_s);
    QVERIFY(shown.wait());
    QCOMPARE(shown, (QList<QVariantList>{{u"a.nqp"_s}}));
    QCOMPARE(rescheduled.size(), 0);
    server.invokeAction(12, u"reschedule:a.nqp"_s);
    QVERIFY(rescheduled.wait());
    QCOMPARE(rescheduled, (QList<QVariantList>{{u"a.nqp"_s}}));
    QCOMPARE(shown.size(), 1);
}

void tst_NyToastMessaging::toastActivated_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QStringList>("shown");
    QTest::addColumn<QStringList>("rescheduled");
    const QStringList none;
    QTest::newRow("show") << u"show=a.nqp"_s << QStringList{u"a.nqp"_s} << none;
    QTest::newRow("reschedule") << u"reschedule=a.nqp"_s << none << QStringList{u"a.nqp"_s};
    QTest::newRow("empty") << QString() << none << none;
    QTest::newRow("no sign") << u"show"_s << none << none;
    QTest::newRow("action key") << u"show:a.nqp"_s << none << none;
    QTest::newRow("empty id") << u"show="_s << QStringList{QString()} << none;
    QTest::newRow("empty id, reschedule") << u"reschedule="_s << none << QStringList{QString()};
    QTest::newRow("nothing before the sign") << u"=a.nqp"_s << none << none;
    QTest::newRow("only the sign") << u"="_s << none << none;
    QTest::newRow("capital") << u"Show=a.nqp"_s << none << none;
    QTest::newRow("capitals") << u"RESCHEDULE=a.nqp"_s << none << none;
    QTest::newRow("verb and more") << u"shows=a.nqp"_s << none << none;
    QTest::newRow("part of the verb") << u"sho=a.nqp"_s << none << none;
    QTest::newRow("blank before") << u" show=a.nqp"_s << none << none;
    QTest::newRow("other verb") << u"delete=a.nqp"_s << none << none;
    QTest::newRow("id is cut") << u"show=a=b.nqp"_s << QStringList{u"a"_s} << none;
    QTest::newRow("id begins with the sign") << u"reschedule==b"_s << none << QStringList{QString()};
    QTest::newRow("id with blanks and colons") << u"show=Anna & Tom: 1 %1.nqp"_s << QStringList{u"Anna & Tom: 1 %1.nqp"_s} << none;
}

void tst_NyToastMessaging::toastActivated()
{
    QFETCH(QString, arguments);
    QFETCH(QStringList, shown);
    QFETCH(QStringList, rescheduled);
    NyToastMessaging facade;
    auto *backend = facade.findChild<NyToastMessagingInterface *>();
    QSignalSpy backendShown(backend, &NyToastMessagingInterface::showProjectRequested);
    QSignalSpy backendRescheduled(backend, &NyToastMessagingInterface::rescheduleToastRequested);
    for (NyToastMessagingInterface *messaging : {static_cast<NyToastMessagingInterface *>(&facade), backend}) {
        QSignalSpy showSpy(messaging, &NyToastMessagingInterface::showProjectRequested);
        QSignalSpy rescheduleSpy(messaging, &NyToastMessagingInterface::rescheduleToastRequested);
        messaging->toastActivated(arguments);
        QStringList actualShown;
        for (const QVariantList &call : showSpy)
            actualShown.append(call.first().toString());
        QStringList actualRescheduled;
        for (const QVariantList &call : rescheduleSpy)
            actualRescheduled.append(call.first().toString());
        QCOMPARE(actualShown, shown);
        QCOMPARE(actualRescheduled, rescheduled);
        // The facade answers by itself.
        if (messaging == &facade) {
            QCOMPARE(backendShown.size(), 0);
            QCOMPARE(backendRescheduled.size(), 0);
        }
    }
}

void tst_NyToastMessaging::uninstall()
{
    NyQuilloServiceSettings::instance().setAllowToastMessages(false);
    NyToastMessaging facade;
    const TestSupport::LogRecorder log;
    facade.uninstallToastMessaging();
    QCOMPARE(log.all(), QStringList{u"info: Uninstall Requested"_s});
    NyQuilloServiceSettings::instance().setAllowToastMessages(true);
}

void tst_NyToastMessaging::signalsInTheirOrder()
{
    const QMetaObject &meta = NyToastMessagingInterface::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Signal);
        methods.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    QCOMPARE(methods, (QStringList{u"showProjectRequested(QString)"_s, u"rescheduleToastRequested(QString)"_s}));
}

QTEST_MAIN(tst_NyToastMessaging)
#include "tst_NyToastMessaging.moc"
