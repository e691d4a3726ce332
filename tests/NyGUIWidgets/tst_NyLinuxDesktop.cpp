#include "MockNotificationServer.h"

#include <NyLinuxDesktop.h>

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_NyLinuxDesktop : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void capabilities_data();
    void capabilities();
    void askedOncePerServer();
    void askedAgainWhenTheServerChanges();
    void noServer();
    void hangingServer();

private:
    static bool ask() { return NyLinuxDesktop().supportsHTMLNotifications(); }
    static void ignoreUnknown()
    {
        QTest::ignoreMessage(
            QtDebugMsg, QRegularExpression(u"^the capabilities of \"org\\.freedesktop\\.Notifications\" are not known: "_s));
    }
};

void tst_NyLinuxDesktop::capabilities_data()
{
    QTest::addColumn<QStringList>("capabilities");
    QTest::addColumn<bool>("expected");
    QTest::newRow("none") << QStringList() << false;
    QTest::newRow("markup and images") << QStringList{u"body-markup"_s, u"body-images"_s} << true;
    QTest::newRow("other order, among others") << QStringList{u"actions"_s, u"body-images"_s, u"body"_s, u"body-markup"_s} << true;
    QTest::newRow("markup only") << QStringList{u"body"_s, u"body-markup"_s, u"icon-static"_s} << false;
    QTest::newRow("images only") << QStringList{u"body"_s, u"body-images"_s} << false;
    QTest::newRow("names that only begin alike") << QStringList{u"body-markup-2"_s, u"body-images-2"_s} << false;
    QTest::newRow("capitals") << QStringList{u"Body-Markup"_s, u"Body-Images"_s} << false;
}

void tst_NyLinuxDesktop::capabilities()
{
    QFETCH(QStringList, capabilities);
    QFETCH(bool, expected);
    MockNotificationServer server;
    server.setCapabilities(capabilities);
    QVERIFY(server.start());
    QCOMPARE(ask(), expected);
    QCOMPARE(ask(), expected);
}

void tst_NyLinuxDesktop::askedOncePerServer()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    for (int i = 0; i < 5; ++i)
        QVERIFY(ask());
    QCOMPARE(server.capabilityQueries(), 1);
}

void tst_NyLinuxDesktop::askedAgainWhenTheServerChanges()
{
    MockNotificationServer server;
    QVERIFY(server.start());
    QVERIFY(ask());
    server.stop();
    server.setCapabilities({u"body"_s});
    QVERIFY(server.start());
    QVERIFY(!ask());
    server.stop();
    ignoreUnknown();
    QVERIFY(!ask());
    server.setCapabilities({u"body-markup"_s, u"body-images"_s});
    QVERIFY(server.start());
    QVERIFY(ask());
    QCOMPARE(server.capabilityQueries(), 3);
}

void tst_NyLinuxDesktop::noServer()
{
    QElapsedTimer timer;
    timer.start();
    ignoreUnknown();
    QVERIFY(!ask());
    QVERIFY2(timer.elapsed() < 400, qPrintable(QString::number(timer.elapsed())));
}

void tst_NyLinuxDesktop::hangingServer()
{
    MockNotificationServer server;
    server.setAnswering(false);
    QVERIFY(server.start());
    QElapsedTimer timer;
    timer.start();
    ignoreUnknown();
    QVERIFY(!ask());
    QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
    // Silence is no answer to keep.
    server.setAnswering(true);
    QVERIFY(ask());
    // What is known needs no answer.
    server.setAnswering(false);
    QVERIFY(ask());
}

QTEST_GUILESS_MAIN(tst_NyLinuxDesktop)
#include "tst_NyLinuxDesktop.moc"
