#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "NyFotoImageCache.h"
#include "PaintedPictures.h"

using namespace Qt::Literals::StringLiterals;
using Picture = NyBookRenderer::Picture;

class tst_NyFotoImageCache : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void loadsOnceAndLarger();
    void keepsTheSmallSizeBesideTheLargeOne();
    void makesMuchSmallerPicturesOutOfLargeOnes();
    void asksForNoMoreThanTheFileHas();
    void differentSizesOfOnePhotoComeToRest();
    void keepsToItsMemory();
    void keepsThePictureOfAFileThatVanished();
    void aMissingFileIsAskedForOnce();

private:
    QUrl photo(const QString &name) const { return QUrl::fromLocalFile(m_dir.filePath(name)); }
    static Picture ask(NyFotoImageCache &cache, const QUrl &url, const QSize &boxPx)
    {
        return cache.picture(url, boxPx, NyFotoImageCache::Urgency::Visible);
    }
    /** Asks until what was asked for is there. */
    static Picture wait(NyFotoImageCache &cache, const QUrl &url, const QSize &boxPx);

    QTemporaryDir m_dir;
};

void tst_NyFotoImageCache::initTestCase()
{
    for (const QString &name : {u"a.jpg"_s, u"b.jpg"_s, u"c.jpg"_s})
        QVERIFY(PaintedPictures::write(m_dir.filePath(name), PaintedPictures::painted(QSize(1600, 1200), name.at(0).unicode())));
}

Picture tst_NyFotoImageCache::wait(NyFotoImageCache &cache, const QUrl &url, const QSize &boxPx)
{
    ask(cache, url, boxPx);
    [&] { QTRY_COMPARE(cache.pendingCount(), 0); }();
    return ask(cache, url, boxPx);
}

void tst_NyFotoImageCache::loadsOnceAndLarger()
{
    NyFotoImageCache cache;
    const QSignalSpy changes(&cache, &NyFotoImageCache::changed);
    const QUrl url = photo(u"a.jpg"_s);
    QVERIFY(ask(cache, url, QSize(200, 150)).state == Picture::State::Loading);
    QVERIFY(ask(cache, url, QSize(200, 150)).state == Picture::State::Loading);
    QTRY_COMPARE(changes.count(), 1);
    QCOMPARE(ask(cache, url, QSize(200, 150)).image.size(), QSize(200, 150));
    QCOMPARE(ask(cache, url, QSize(100, 75)).image.size(), QSize(200, 150));
    QCOMPARE(cache.pendingCount(), 0);
    // The small version stands in until the large one has come.
    const Picture interim = ask(cache, url, QSize(400, 300));
    QCOMPARE(interim.image.size(), QSize(200, 150));
    QVERIFY(interim.isInterim);
    QTRY_COMPARE(changes.count(), 2);
    QCOMPARE(ask(cache, url, QSize(400, 300)).image.size(), QSize(400, 300));
    QVERIFY(!ask(cache, url, QSize(400, 300)).isInterim);
    QCOMPARE(changes.count(), 2);
}

void tst_NyFotoImageCache::keepsTheSmallSizeBesideTheLargeOne()
{
    NyFotoImageCache cache;
    const QUrl url = photo(u"a.jpg"_s);
    wait(cache, url, QSize(160, 120));
    QCOMPARE(wait(cache, url, QSize(1280, 960)).image.size(), QSize(1280, 960));
    QCOMPARE(ask(cache, url, QSize(160, 120)).image.size(), QSize(160, 120));
    QCOMPARE(cache.pendingCount(), 0);
}

void tst_NyFotoImageCache::makesMuchSmallerPicturesOutOfLargeOnes()
{
    NyFotoImageCache cache;
    QVERIFY(QFile::copy(m_dir.filePath(u"b.jpg"_s), m_dir.filePath(u"gone.jpg"_s)));
    const QUrl url = photo(u"gone.jpg"_s);
    wait(cache, url, QSize(1280, 960));
    // Not from the file again.
    QVERIFY(QFile::remove(m_dir.filePath(u"gone.jpg"_s)));
    const Picture interim = ask(cache, url, QSize(320, 240));
    QCOMPARE(interim.image.size(), QSize(1280, 960));
    QVERIFY(interim.isInterim);
    QTRY_COMPARE(cache.pendingCount(), 0);
    QCOMPARE(ask(cache, url, QSize(320, 240)).image.size(), QSize(320, 240));
}

void tst_NyFotoImageCache::asksForNoMoreThanTheFileHas()
{
    NyFotoImageCache cache;
    const QSignalSpy changes(&cache, &NyFotoImageCache::changed);
    const QUrl url = photo(u"a.jpg"_s);
    QCOMPARE(wait(cache, url, QSize(4000, 3000)).image.size(), QSize(1600, 1200));
    const Picture same = ask(cache, url, QSize(20000, 15000));
    QCOMPARE(same.image.size(), QSize(1600, 1200));
    QVERIFY(!same.isInterim);
    QCOMPARE(cache.pendingCount(), 0);
    QCOMPARE(changes.count(), 1);
}

void tst_NyFotoImageCache::differentSizesOfOnePhotoComeToRest()
{
    NyFotoImageCache cache;
    const QUrl url = photo(u"a.jpg"_s);
    const QList<QSize> boxes{{1600, 1200}, {40, 30}, {640, 480}, {200, 150}, {12, 9}, {1000, 750}};
    // As a spread does that shows the photo in all these sizes and is painted whenever a picture has come.
    const QSignalSpy changes(&cache, &NyFotoImageCache::changed);
    const auto paint = [&] {
        for (const QSize &box : boxes)
            ask(cache, url, box);
        return cache.pendingCount() == 0;
    };
    QTRY_VERIFY(paint());
    const qsizetype loads = changes.count();
    QVERIFY2(loads <= boxes.size(), qPrintable(QString::number(loads)));
    for (const QSize &box : boxes)
        QVERIFY(!ask(cache, url, box).isInterim);
}

void tst_NyFotoImageCache::keepsToItsMemory()
{
    constexpr qsizetype twoPictures = 2 * 800 * 600 * 4;
    NyFotoImageCache cache(twoPictures);
    const QSize box(800, 600);
    wait(cache, photo(u"a.jpg"_s), box);
    wait(cache, photo(u"b.jpg"_s), box);
    QCOMPARE(cache.usedBytes(), twoPictures);
    ask(cache, photo(u"a.jpg"_s), box);
    wait(cache, photo(u"c.jpg"_s), box);
    QCOMPARE(cache.usedBytes(), twoPictures);
    // The one that was not used for the longest time has left.
    QVERIFY(ask(cache, photo(u"a.jpg"_s), box).state == Picture::State::Ready);
    QVERIFY(ask(cache, photo(u"c.jpg"_s), box).state == Picture::State::Ready);
    QVERIFY(ask(cache, photo(u"b.jpg"_s), box).state == Picture::State::Loading);
    QTRY_COMPARE(cache.pendingCount(), 0);
    // One that is too large by itself is shown all the same.
    QCOMPARE(wait(cache, photo(u"b.jpg"_s), QSize(1600, 1200)).image.size(), QSize(1600, 1200));
    QCOMPARE(cache.usedBytes(), 2 * twoPictures);
}

void tst_NyFotoImageCache::keepsThePictureOfAFileThatVanished()
{
    NyFotoImageCache cache;
    QVERIFY(QFile::copy(m_dir.filePath(u"c.jpg"_s), m_dir.filePath(u"vanishes.jpg"_s)));
    const QUrl url = photo(u"vanishes.jpg"_s);
    wait(cache, url, QSize(200, 150));
    QVERIFY(QFile::remove(m_dir.filePath(u"vanishes.jpg"_s)));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"vanishes\\.jpg"_s));
    const Picture picture = wait(cache, url, QSize(800, 600));
    QVERIFY(picture.state == Picture::State::Ready);
    QCOMPARE(picture.image.size(), QSize(200, 150));
    QCOMPARE(cache.pendingCount(), 0);
}

void tst_NyFotoImageCache::aMissingFileIsAskedForOnce()
{
    NyFotoImageCache cache;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"never\\.jpg"_s));
    QVERIFY(wait(cache, photo(u"never.jpg"_s), QSize(200, 150)).state == Picture::State::Missing);
    QVERIFY(ask(cache, photo(u"never.jpg"_s), QSize(2000, 1500)).state == Picture::State::Missing);
    QCOMPARE(cache.pendingCount(), 0);
}

QTEST_MAIN(tst_NyFotoImageCache)
#include "tst_NyFotoImageCache.moc"
