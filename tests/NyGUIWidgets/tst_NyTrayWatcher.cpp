#include "MockStatusNotifierHost.h"

#include <NyTrayWatcher.h>

#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

/** On an X server of the test's own. */
class tst_NyTrayWatcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }
    void hostIsThere();
    void hostComesToTheWatcher();
    void watcherComesWithItsHost();
    void watcherWithoutHostIsNoTray();
    void trayOfTheXServerIsThere();
    void trayOfTheXServerComesLater();

private:
    static void ignoreWaiting() { QTest::ignoreMessage(QtInfoMsg, "the desktop has no tray yet; the icon waits for one"); }
    static bool startTrayer(QProcess *trayer)
    {
        trayer->start(u"trayer"_s, {u"--edge"_s, u"bottom"_s});
        return trayer->waitForStarted();
    }
    static void endTrayer(QProcess *trayer)
    {
        trayer->terminate();
        trayer->waitForFinished();
    }
};

void tst_NyTrayWatcher::hostIsThere()
{
    MockStatusNotifierHost host;
    QVERIFY(host.start());
    host.registerHost();
    NyTrayWatcher watcher;
    QVERIFY(watcher.isTrayThere());
    QSignalSpy appeared(&watcher, &NyTrayWatcher::trayAppeared);
    host.registerHost();
    host.stop();
    QVERIFY(host.start());
    host.registerHost();
    // Nothing more is to be told; a second watcher sees the same host.
    QVERIFY(NyTrayWatcher().isTrayThere());
    QCOMPARE(appeared.size(), 0);
    QVERIFY(watcher.isTrayThere());
}

void tst_NyTrayWatcher::hostComesToTheWatcher()
{
    MockStatusNotifierHost host;
    QVERIFY(host.start());
    ignoreWaiting();
    NyTrayWatcher watcher;
    QVERIFY(!watcher.isTrayThere());
    QSignalSpy appeared(&watcher, &NyTrayWatcher::trayAppeared);
    host.registerHost();
    QVERIFY(appeared.wait());
    QVERIFY(watcher.isTrayThere());
    // The second one is heard by another watcher, too.
    host.stop();
    QVERIFY(host.start());
    ignoreWaiting();
    NyTrayWatcher other;
    QSignalSpy otherAppeared(&other, &NyTrayWatcher::trayAppeared);
    host.registerHost();
    QVERIFY(otherAppeared.wait());
    QCOMPARE(appeared.size(), 1);
}

void tst_NyTrayWatcher::watcherComesWithItsHost()
{
    ignoreWaiting();
    NyTrayWatcher watcher;
    QVERIFY(!watcher.isTrayThere());
    QSignalSpy appeared(&watcher, &NyTrayWatcher::trayAppeared);
    MockStatusNotifierHost host;
    QVERIFY(host.start());
    host.registerHost();
    QVERIFY(appeared.wait());
    QVERIFY(watcher.isTrayThere());
}

void tst_NyTrayWatcher::watcherWithoutHostIsNoTray()
{
    ignoreWaiting();
    NyTrayWatcher watcher;
    QSignalSpy appeared(&watcher, &NyTrayWatcher::trayAppeared);
    MockStatusNotifierHost host;
    QVERIFY(host.start());
    QVERIFY(!appeared.wait(200));
    QVERIFY(!watcher.isTrayThere());
}

void tst_NyTrayWatcher::trayOfTheXServerIsThere()
{
    QProcess trayer;
    QVERIFY(startTrayer(&trayer));
    const auto isSeen = [] {
        const NyTrayWatcher watcher;
        return watcher.isTrayThere();
    };
    QVERIFY(QTest::qWaitFor(isSeen, 10000));
    endTrayer(&trayer);
}

void tst_NyTrayWatcher::trayOfTheXServerComesLater()
{
    ignoreWaiting();
    NyTrayWatcher watcher;
    QVERIFY(!watcher.isTrayThere());
    QSignalSpy appeared(&watcher, &NyTrayWatcher::trayAppeared);
    QProcess trayer;
    QVERIFY(startTrayer(&trayer));
    QVERIFY(appeared.wait(10000));
    QVERIFY(watcher.isTrayThere());
    QCOMPARE(appeared.size(), 1);
    endTrayer(&trayer);
}

QTEST_MAIN(tst_NyTrayWatcher)
#include "tst_NyTrayWatcher.moc"
