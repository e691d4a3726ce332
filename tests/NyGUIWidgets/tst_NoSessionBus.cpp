#include <NyDBusBridgeLinux.h>
#include <NyLinuxDesktop.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

/** A process that never had a session bus. */
class tst_NoSessionBus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsShownAndNothingFails();
};

void tst_NoSessionBus::nothingIsShownAndNothingFails()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QElapsedTimer timer;
    timer.start();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^answers to notifications are not received: there is no session bus"_s));
    QVERIFY(!NyDBusBridgeLinux::connectToActionInvoked(this, "1deleteLater()"));
    QVERIFY(!NyLinuxDesktop().supportsHTMLNotifications());
    QTest::ignoreMessage(QtWarningMsg,
        "notifications are not shown for the time being: \"org.freedesktop.Notifications\" is not there: "
        "\"there is no session bus\"");
    QCOMPARE(NyDBusBridgeLinux(nullptr).sendNotification(u"T"_s, u"B"_s, {}, {}, 0), 0U);
    QCOMPARE(NyDBusBridgeLinux(nullptr).sendNotification(u"T"_s, u"B"_s, {}, {}, 0), 0U);
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
}

int main(int argc, char *argv[])
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    QApplication application(argc, argv);
    tst_NoSessionBus test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NoSessionBus.moc"
