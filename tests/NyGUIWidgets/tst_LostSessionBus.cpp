#include "MockNotificationServer.h"
#include "TestSupport.h"

#include <NyDBusBridgeLinux.h>
#include <NyLinuxDesktop.h>

#include <QApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

/** A session bus that goes away while the process runs. */
class tst_LostSessionBus : public QObject
{
    Q_OBJECT

public:
    explicit tst_LostSessionBus(QProcess *bus)
        : m_bus(bus)
    {
    }

public Q_SLOTS:
    void onActionInvoked(uint, const QString &) { ++m_answers; }

private Q_SLOTS:
    void lossIsReportedAndTheWorkGoesOn();

private:
    QProcess *m_bus;
    int m_answers = 0;
};

void tst_LostSessionBus::lossIsReportedAndTheWorkGoesOn()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QVERIFY(QDBusConnection::sessionBus().isConnected());
    MockNotificationServer server;
    QVERIFY(server.start());
    QVERIFY(NyDBusBridgeLinux::connectToActionInvoked(this, "1onActionInvoked(uint, QString)"));
    QVERIFY(NyLinuxDesktop().supportsHTMLNotifications());
    QCOMPARE(NyDBusBridgeLinux(nullptr).sendNotification(u"T"_s, u"B"_s, {}, {}, 0), 1U);
    server.invokeAction(1, u"show:a"_s);
    QTRY_COMPARE(m_answers, 1);

    const TestSupport::LogRecorder log;
    QTest::ignoreMessage(QtWarningMsg,
        "notifications are not shown for the time being: \"org.freedesktop.Notifications\" is not there: "
        "\"the connection to the session bus was lost\"");
    m_bus->kill();
    QVERIFY(m_bus->waitForFinished());
    QTRY_VERIFY(!log.containing(u"was lost"_s).isEmpty());
    QElapsedTimer timer;
    timer.start();
    QTRY_VERIFY(!NyLinuxDesktop().supportsHTMLNotifications());
    // Already reported.
    QCOMPARE(NyDBusBridgeLinux(nullptr).sendNotification(u"T"_s, u"B"_s, {}, {}, 0), 0U);
    QCOMPARE(NyDBusBridgeLinux(nullptr).sendNotification(u"T"_s, u"B"_s, {}, {}, 0), 0U);
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
}

int main(int argc, char *argv[])
{
    QProcess bus;
    bus.start(u"dbus-daemon"_s, {u"--nofork"_s, u"--print-address=1"_s, u"--config-file=" NY_BUS_CONFIG ""_s});
    if (!bus.waitForStarted() || !bus.waitForReadyRead())
        qFatal("dbus-daemon does not start");
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.readLine().trimmed());
    QApplication application(argc, argv);
    tst_LostSessionBus test(&bus);
    const int result = QTest::qExec(&test, argc, argv);
    bus.kill();
    bus.waitForFinished();
    return result;
}

#include "tst_LostSessionBus.moc"
