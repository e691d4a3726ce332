#include <NyIdleWatcher.h>
#include <NyIdleWatcherDefault.h>

#include <QSignalSpy>
#include <QTest>

class tst_NyIdleWatcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAlwaysIdle();
    void ownsItsStrategy();
};

void tst_NyIdleWatcher::isAlwaysIdle()
{
    const NyIdleWatcher watcher(nullptr);
    QVERIFY(watcher.isIdle());
    const NyIdleWatcherDefault strategy(nullptr);
    QVERIFY(strategy.isIdle());
}

void tst_NyIdleWatcher::ownsItsStrategy()
{
    auto *watcher = new NyIdleWatcher(this);
    const QList<NyIdleWatcherDefault *> strategies = watcher->findChildren<NyIdleWatcherDefault *>();
    QCOMPARE(strategies.size(), 1);
    QSignalSpy destroyed(strategies.first(), &QObject::destroyed);
    delete watcher;
    QCOMPARE(destroyed.size(), 1);
}

QTEST_GUILESS_MAIN(tst_NyIdleWatcher)
#include "tst_NyIdleWatcher.moc"
