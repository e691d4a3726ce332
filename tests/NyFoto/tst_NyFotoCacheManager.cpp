#include <QTest>

#include <cstdlib>
#include <memory>
#include <vector>

#include <unistd.h>

#include <QFile>
#include <QThread>

#include <NyFotoCacheManager.h>

using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr NyFotoFileStamp Stamp{1000, 5};
const QSize Box(10, 10);

QImage image(int side = 10)
{
    QImage result(side, side, QImage::Format_RGB32);
    result.fill(Qt::red);
    return result;
}

}

class tst_NyFotoCacheManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsDrawables();
    void noticesChanges();
    void limitInBytes();
    void usedLongestAgoGoesFirst();
    void tooLargeDrawable();
    void smallerLimit();
    void replacing();
    void clearing();
    void clearingGivesMemoryBack();
    void metaDataAndSizes();
    void metaDataLimit();
    void threads();
};

void tst_NyFotoCacheManager::keepsDrawables()
{
    NyFotoCacheManager cache;
    QVERIFY(cache.drawable(u"/a"_s, Stamp, Box).isNull());
    cache.insertDrawable(u"/a"_s, Stamp, Box, image());
    QCOMPARE(cache.drawable(u"/a"_s, Stamp, Box), image());
    QVERIFY(cache.drawable(u"/b"_s, Stamp, Box).isNull());
    QVERIFY(cache.drawable(u"/a"_s, Stamp, QSize(10, 11)).isNull());
    QCOMPARE(cache.usedBytes(), 400);
    // A size and a name that run into one another.
    cache.insertDrawable(u"1 /a"_s, Stamp, QSize(1, 1), image(2));
    QVERIFY(cache.drawable(u" /a"_s, Stamp, QSize(1, 11)).isNull());
}

void tst_NyFotoCacheManager::noticesChanges()
{
    NyFotoCacheManager cache;
    cache.insertDrawable(u"/a"_s, Stamp, Box, image());
    QVERIFY(cache.drawable(u"/a"_s, {1000, 6}, Box).isNull());
    // The stale one is gone for good.
    QCOMPARE(cache.usedBytes(), 0);
    cache.insertDrawable(u"/a"_s, Stamp, Box, image());
    QVERIFY(cache.drawable(u"/a"_s, {1001, 5}, Box).isNull());
}

void tst_NyFotoCacheManager::limitInBytes()
{
    NyFotoCacheManager cache;
    QCOMPARE(cache.maximumBytes(), NyFotoCacheManager::DefaultMaximumBytes);
    cache.setMaximumBytes(1000);
    for (int i = 0; i < 10; ++i) {
        cache.insertDrawable(QString::number(i), Stamp, Box, image());
        QVERIFY(cache.usedBytes() <= 1000);
    }
    QCOMPARE(cache.usedBytes(), 800);
    QVERIFY(cache.drawable(u"7"_s, Stamp, Box).isNull());
    QVERIFY(!cache.drawable(u"8"_s, Stamp, Box).isNull());
    QVERIFY(!cache.drawable(u"9"_s, Stamp, Box).isNull());
}

void tst_NyFotoCacheManager::usedLongestAgoGoesFirst()
{
    NyFotoCacheManager cache;
    cache.setMaximumBytes(800);
    cache.insertDrawable(u"a"_s, Stamp, Box, image());
    cache.insertDrawable(u"b"_s, Stamp, Box, image());
    QVERIFY(!cache.drawable(u"a"_s, Stamp, Box).isNull());
    cache.insertDrawable(u"c"_s, Stamp, Box, image());
    QVERIFY(!cache.drawable(u"a"_s, Stamp, Box).isNull());
    QVERIFY(cache.drawable(u"b"_s, Stamp, Box).isNull());
}

void tst_NyFotoCacheManager::tooLargeDrawable()
{
    NyFotoCacheManager cache;
    cache.setMaximumBytes(800);
    cache.insertDrawable(u"a"_s, Stamp, Box, image());
    cache.insertDrawable(u"large"_s, Stamp, Box, image(20));
    QVERIFY(cache.drawable(u"large"_s, Stamp, Box).isNull());
    QVERIFY(!cache.drawable(u"a"_s, Stamp, Box).isNull());
    cache.insertDrawable(u"null"_s, Stamp, Box, QImage());
    QCOMPARE(cache.usedBytes(), 400);
}

void tst_NyFotoCacheManager::smallerLimit()
{
    NyFotoCacheManager cache;
    cache.insertDrawable(u"a"_s, Stamp, Box, image());
    cache.insertDrawable(u"b"_s, Stamp, Box, image());
    cache.setMaximumBytes(799);
    QCOMPARE(cache.usedBytes(), 400);
    cache.setMaximumBytes(-1);
    QCOMPARE(cache.maximumBytes(), 0);
    QCOMPARE(cache.usedBytes(), 0);
    cache.insertDrawable(u"c"_s, Stamp, Box, image());
    QCOMPARE(cache.usedBytes(), 0);
}

void tst_NyFotoCacheManager::replacing()
{
    NyFotoCacheManager cache;
    cache.insertDrawable(u"a"_s, Stamp, Box, image());
    cache.insertDrawable(u"a"_s, Stamp, Box, image(5));
    QCOMPARE(cache.usedBytes(), 100);
    QCOMPARE(cache.drawable(u"a"_s, Stamp, Box), image(5));
}

void tst_NyFotoCacheManager::clearing()
{
    NyFotoCacheManager cache;
    cache.insertDrawable(u"a"_s, Stamp, Box, image());
    cache.insertMetaData(u"a"_s, Stamp, NyImageMetaData());
    cache.insertSize(u"a"_s, Stamp, QSize(3, 4));
    cache.clearCache();
    QCOMPARE(cache.usedBytes(), 0);
    QVERIFY(cache.drawable(u"a"_s, Stamp, Box).isNull());
    QVERIFY(!cache.metaData(u"a"_s, Stamp));
    QVERIFY(!cache.size(u"a"_s, Stamp));
    cache.insertDrawable(u"a"_s, Stamp, Box, image());
    QCOMPARE(cache.usedBytes(), 400);
}

void tst_NyFotoCacheManager::clearingGivesMemoryBack()
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(__GLIBC__)
    QSKIP("the allocator of this build keeps what is freed");
#else
    const auto residentKiB = [] {
        QFile file(u"/proc/self/statm"_s);
        return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE) / 1024 : 0;
    };
    // From here on images come from the heap and not from mappings of their own, as in a program that has decoded large pictures.
    std::free(std::malloc(16 * 1024 * 1024));
    NyFotoCacheManager cache;
    std::vector<std::unique_ptr<QByteArray>> others;
    for (int i = 0; i < 150; ++i) {
        cache.insertDrawable(QString::number(i), Stamp, Box, image(224));
        // What else the program keeps lies between them.
        others.push_back(std::make_unique<QByteArray>(1000, 'x'));
    }
    const qint64 full = residentKiB();
    QVERIFY(cache.usedBytes() > 29'000'000);
    cache.clearCache();
    QVERIFY2(full - residentKiB() > 20'000, qPrintable(u"%1 KiB before, %2 after"_s.arg(full).arg(residentKiB())));
#endif
}

void tst_NyFotoCacheManager::metaDataAndSizes()
{
    NyFotoCacheManager cache;
    NyImageMetaData data;
    data.title = u"Am See"_s;
    cache.insertMetaData(u"a"_s, Stamp, data);
    QCOMPARE(cache.metaData(u"a"_s, Stamp)->title, u"Am See"_s);
    QVERIFY(!cache.size(u"a"_s, Stamp));
    cache.insertSize(u"a"_s, Stamp, QSize());
    QVERIFY(cache.size(u"a"_s, Stamp));
    QCOMPARE(cache.size(u"a"_s, Stamp).value(), QSize());
    QCOMPARE(cache.metaData(u"a"_s, Stamp)->title, u"Am See"_s);
    // What belongs to the old content goes together.
    cache.insertSize(u"a"_s, {1, 1}, QSize(3, 4));
    QCOMPARE(cache.size(u"a"_s, {1, 1}).value(), QSize(3, 4));
    QVERIFY(!cache.metaData(u"a"_s, {1, 1}));
    QVERIFY(!cache.metaData(u"a"_s, Stamp));
}

void tst_NyFotoCacheManager::metaDataLimit()
{
    NyFotoCacheManager cache;
    for (int i = 0; i <= NyFotoCacheManager::MaximumMetaDataCount; ++i) {
        cache.insertSize(QString::number(i), Stamp, QSize(i, i));
        // Asked for again and again, so it stays.
        QVERIFY(cache.size(u"0"_s, Stamp));
    }
    QVERIFY(!cache.size(u"1"_s, Stamp));
    QVERIFY(cache.size(u"2"_s, Stamp));
    QVERIFY(cache.size(QString::number(NyFotoCacheManager::MaximumMetaDataCount), Stamp));
}

void tst_NyFotoCacheManager::threads()
{
    NyFotoCacheManager cache;
    cache.setMaximumBytes(4000);
    std::atomic<int> failures{0};
    std::vector<std::unique_ptr<QThread>> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back(QThread::create([&cache, &failures, thread] {
            for (int i = 0; i < 500; ++i) {
                const QString name = QString::number((i * 7 + thread) % 23);
                cache.insertDrawable(name, Stamp, Box, image());
                const QImage back = cache.drawable(name, Stamp, Box);
                if (!back.isNull() && back != image())
                    ++failures;
                cache.insertSize(name, Stamp, Box);
                if (i % 100 == 99)
                    cache.clearCache();
            }
        }));
        threads.back()->start();
    }
    for (const auto &thread : threads)
        QVERIFY(thread->wait());
    QCOMPARE(failures.load(), 0);
    QVERIFY(cache.usedBytes() <= 4000 && cache.usedBytes() % 400 == 0);
}

QTEST_GUILESS_MAIN(tst_NyFotoCacheManager)
#include "tst_NyFotoCacheManager.moc"
