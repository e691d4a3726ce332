#include <QTest>

#include <QThreadPool>

#include <NyOnceWarning.h>

#include "TestSupport.h"

using namespace Qt::Literals::StringLiterals;

class tst_NyOnceWarning : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachTextOnce();
    void fromManyThreads();
    void endsWithANotice();
};

void tst_NyOnceWarning::eachTextOnce()
{
    const TestSupport::LogRecorder log;
    NyOnceWarning::warn(u"a folder \"50%1\": closed"_s);
    NyOnceWarning::warn(u"another folder"_s);
    NyOnceWarning::warn(u"a folder \"50%1\": closed"_s);
    QCOMPARE(log.all(), (QStringList{u"warning: a folder \"50%1\": closed"_s, u"warning: another folder"_s}));
}

void tst_NyOnceWarning::fromManyThreads()
{
    const TestSupport::LogRecorder log;
    QThreadPool pool;
    pool.setMaxThreadCount(8);
    for (int i = 0; i < 64; ++i)
        pool.start([i] { NyOnceWarning::warn(u"thread %1"_s.arg(i % 4)); });
    QVERIFY(pool.waitForDone(10000));
    QStringList lines = log.all();
    lines.sort();
    QCOMPARE(lines, (QStringList{u"warning: thread 0"_s, u"warning: thread 1"_s, u"warning: thread 2"_s, u"warning: thread 3"_s}));
}

void tst_NyOnceWarning::endsWithANotice()
{
    const TestSupport::LogRecorder log;
    for (int i = 0; i < 2 * NyOnceWarning::MostTexts; ++i)
        NyOnceWarning::warn(QString::number(i));
    const QStringList lines = log.all();
    QVERIFY(lines.size() <= NyOnceWarning::MostTexts + 2);
    QVERIFY(lines.size() > NyOnceWarning::MostTexts / 2);
    // Nothing is kept back without a word.
    QCOMPARE(lines.last(), u"warning: further warnings of what cannot be read are not logged in this run"_s);
    QCOMPARE(log.containing(u"further warnings"_s).size(), 1);
}

QTEST_GUILESS_MAIN(tst_NyOnceWarning)
#include "tst_NyOnceWarning.moc"
