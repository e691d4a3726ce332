#include "TestSupport.h"

#include <NyDirectoryConfig.h>
#include <NyRunningServiceLock.h>

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace TestSupport;

class tst_NyRunningServiceLock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void theFirstGetsIt();
    void releasedWithTheObject();
    void heldByAnotherProcess();
    void waitsForOneThatEnds();
    void aDeadHolderIsNoHolder();
    void leftoversAreNoHolder_data();
    void leftoversAreNoHolder();
    void notPassedOnToChildren();
    void aFileThatCannotBeMade();

private:
    /** Starts a process that holds the lock; true when it does. */
    static bool startHolder(QProcess &process, const QByteArray &seconds);
};

void tst_NyRunningServiceLock::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    QVERIFY(QDir(dataFolder()).removeRecursively());
}

bool tst_NyRunningServiceLock::startHolder(QProcess &process, const QByteArray &seconds)
{
    QDir().mkpath(dataFolder());
    process.start(u"flock"_s,
        {u"--no-fork"_s, NyRunningServiceLock::filePath(), u"sh"_s, u"-c"_s, u"echo held; exec sleep "_s + QString::fromLatin1(seconds)});
    return process.waitForReadyRead(10000) && process.readAll() == "held\n";
}

void tst_NyRunningServiceLock::theFirstGetsIt()
{
    NyRunningServiceLock first;
    QCOMPARE(first.holder(), 0);
    QVERIFY(first.acquire(0));
    QCOMPARE(first.holder(), qint64(::getpid()));
    NyRunningServiceLock second;
    QVERIFY(!second.acquire(0));
    QCOMPARE(second.holder(), qint64(::getpid()));
    // Once more is no second time.
    QVERIFY(first.acquire(0));
    QVERIFY(!second.acquire(0));
    QCOMPARE(QFileInfo(NyRunningServiceLock::filePath()).absolutePath(), dataFolder());
}

void tst_NyRunningServiceLock::releasedWithTheObject()
{
    {
        NyRunningServiceLock first;
        QVERIFY(first.acquire(0));
    }
    NyRunningServiceLock second;
    QVERIFY(second.acquire(0));
    NyRunningServiceLock third;
    QVERIFY(!third.acquire(0));
}

void tst_NyRunningServiceLock::heldByAnotherProcess()
{
    QProcess holder;
    QVERIFY(startHolder(holder, "1000"));
    NyRunningServiceLock lock;
    QElapsedTimer time;
    time.start();
    QVERIFY(!lock.acquire(200));
    QVERIFY(time.elapsed() >= 200);
    holder.kill();
    QVERIFY(holder.waitForFinished());
}

void tst_NyRunningServiceLock::waitsForOneThatEnds()
{
    QProcess holder;
    QVERIFY(startHolder(holder, "0.3"));
    NyRunningServiceLock lock;
    QVERIFY(!lock.acquire(0));
    QVERIFY(lock.acquire(20000));
    QVERIFY(holder.waitForFinished());
}

void tst_NyRunningServiceLock::aDeadHolderIsNoHolder()
{
    QProcess holder;
    QVERIFY(startHolder(holder, "1000"));
    holder.kill();
    QVERIFY(holder.waitForFinished());
    NyRunningServiceLock lock;
    QVERIFY(lock.acquire(0));
}

void tst_NyRunningServiceLock::leftoversAreNoHolder_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("a living process that is no service") << QByteArray("1\n");
    QTest::newRow("longer than an id") << QByteArray(500, '7');
    QTest::newRow("no id") << QByteArray("x\0y", 3);
}

void tst_NyRunningServiceLock::leftoversAreNoHolder()
{
    QFETCH(QByteArray, content);
    QVERIFY(writeFile(NyRunningServiceLock::filePath(), content));
    NyRunningServiceLock lock;
    QVERIFY(lock.acquire(0));
    QCOMPARE(lock.holder(), qint64(::getpid()));
    QCOMPARE(readFile(NyRunningServiceLock::filePath()), QByteArray::number(qint64(::getpid())) + '\n');
}

void tst_NyRunningServiceLock::notPassedOnToChildren()
{
    QProcess child;
    {
        NyRunningServiceLock lock;
        QVERIFY(lock.acquire(0));
        child.start(u"sleep"_s, {u"1000"_s});
        QVERIFY(child.waitForStarted());
    }
    NyRunningServiceLock lock;
    QVERIFY(lock.acquire(0));
    QCOMPARE(child.state(), QProcess::Running);
    child.kill();
    QVERIFY(child.waitForFinished());
}

void tst_NyRunningServiceLock::aFileThatCannotBeMade()
{
    // A file where the folder should be.
    QVERIFY(writeFile(dataFolder(), "x"));
    const QRegularExpression warning(u"^QUILLO_SERVICE: another service would not be noticed, cannot open: "_s);
    NyRunningServiceLock lock;
    QTest::ignoreMessage(QtWarningMsg, warning);
    QVERIFY(lock.acquire(0));
    QCOMPARE(lock.holder(), 0);
    NyRunningServiceLock second;
    QTest::ignoreMessage(QtWarningMsg, warning);
    QVERIFY(second.acquire(0));
    QVERIFY(QFile::remove(dataFolder()));
}

QTEST_GUILESS_MAIN(tst_NyRunningServiceLock)
#include "tst_NyRunningServiceLock.moc"
