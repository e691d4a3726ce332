#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include "NyPreviewCache.h"
#include "NyProposal.h"

using namespace Qt::Literals::StringLiterals;
using State = NyPreviewCache::State;

class tst_NyPreviewCache : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void loadsOnceInTheSizeOfTheBox();
    void anotherSizeWhileTheOldOneStaysSeen();
    void aNewPreviewReplacesTheOldOne();
    void noneAndUnreadable();
    void whatWasAskedForLastComes();
    void canBeDestroyedWhileLoading();

private:
    NyProposal proposal(const QString &name, const QColor &color, qint64 stampMs = 1);

    QTemporaryDir m_dir;
};

NyProposal tst_NyPreviewCache::proposal(const QString &name, const QColor &color, qint64 stampMs)
{
    NyProposal result;
    result.previewFile = m_dir.filePath(name);
    result.previewStampMs = stampMs;
    QImage image(640, 480, QImage::Format_RGB32);
    image.fill(color);
    if (!image.save(result.previewFile, "PNG"))
        result.previewFile.clear();
    return result;
}

void tst_NyPreviewCache::loadsOnceInTheSizeOfTheBox()
{
    const NyProposal green = proposal(u"a.png"_s, Qt::green);
    NyPreviewCache cache;
    const QSignalSpy changed(&cache, &NyPreviewCache::changed);
    QCOMPARE(cache.preview(green, {200, 200}).state, State::Loading);
    QCOMPARE(cache.preview(green, {200, 200}).state, State::Loading);
    QTRY_VERIFY(cache.isIdle());
    QCOMPARE(changed.count(), 1);
    const NyPreviewCache::Preview preview = cache.preview(green, {200, 200});
    QCOMPARE(preview.state, State::Ready);
    QCOMPARE(preview.image.size(), QSize(200, 150));
    QCOMPARE(preview.image.pixelColor(10, 10), QColor(Qt::green));
    QVERIFY(cache.isIdle());
    QCOMPARE(cache.preview(green, {}).state, State::None);
}

void tst_NyPreviewCache::anotherSizeWhileTheOldOneStaysSeen()
{
    const NyProposal green = proposal(u"a.png"_s, Qt::green);
    NyPreviewCache cache;
    cache.preview(green, {100, 100});
    QTRY_VERIFY(cache.isIdle());
    const NyPreviewCache::Preview meanwhile = cache.preview(green, {200, 200});
    QCOMPARE(meanwhile.state, State::Ready);
    QCOMPARE(meanwhile.image.size(), QSize(100, 75));
    QTRY_VERIFY(cache.isIdle());
    QCOMPARE(cache.preview(green, {200, 200}).image.size(), QSize(200, 150));
}

void tst_NyPreviewCache::aNewPreviewReplacesTheOldOne()
{
    NyPreviewCache cache;
    cache.preview(proposal(u"a.png"_s, Qt::green, 1), {100, 100});
    QTRY_VERIFY(cache.isIdle());
    const NyProposal blue = proposal(u"a.png"_s, Qt::blue, 2);
    QCOMPARE(cache.preview(blue, {100, 100}).image.pixelColor(5, 5), QColor(Qt::green));
    QTRY_VERIFY(cache.isIdle());
    QCOMPARE(cache.preview(blue, {100, 100}).image.pixelColor(5, 5), QColor(Qt::blue));
}

void tst_NyPreviewCache::noneAndUnreadable()
{
    NyPreviewCache cache;
    QCOMPARE(cache.preview(NyProposal(), {100, 100}).state, State::None);
    QVERIFY(cache.isIdle());
    const NyProposal broken = proposal(u"kaputt.png"_s, Qt::green);
    QVERIFY(QFile::resize(broken.previewFile, 30));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"kaputt\\.png"_s));
    QCOMPARE(cache.preview(broken, {100, 100}).state, State::Loading);
    QTRY_VERIFY(cache.isIdle());
    // Not tried again at each paint: a second warning would fail this test.
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QCOMPARE(cache.preview(broken, {100, 100}).state, State::None);
    QVERIFY(cache.isIdle());
}

void tst_NyPreviewCache::whatWasAskedForLastComes()
{
    QList<NyProposal> proposals;
    for (int i = 0; i < 3 * NyPreviewCache::LongestQueue; ++i)
        proposals.append(proposal(u"%1.png"_s.arg(i), Qt::green));
    NyPreviewCache cache;
    const QSignalSpy changed(&cache, &NyPreviewCache::changed);
    // A quick scroll through all of them: nothing is stored before the event loop runs.
    for (const NyProposal &proposal : std::as_const(proposals))
        cache.preview(proposal, {40, 40});
    QTRY_VERIFY(cache.isIdle());
    QVERIFY2(changed.count() <= NyPreviewCache::LongestQueue + 4, qPrintable(QString::number(changed.count())));
    QCOMPARE(cache.preview(proposals.constLast(), {40, 40}).state, State::Ready);
    QCOMPARE(cache.preview(proposals.at(proposals.size() / 2), {40, 40}).state, State::Loading);
    QTRY_VERIFY(cache.isIdle());
    QCOMPARE(cache.preview(proposals.at(proposals.size() / 2), {40, 40}).state, State::Ready);
}

void tst_NyPreviewCache::canBeDestroyedWhileLoading()
{
    const NyProposal green = proposal(u"a.png"_s, Qt::green);
    auto cache = std::make_unique<NyPreviewCache>();
    QSignalSpy changed(cache.get(), &NyPreviewCache::changed);
    cache->preview(green, {300, 300});
    cache.reset();
    QCoreApplication::processEvents();
    QCOMPARE(changed.count(), 0);
}

QTEST_GUILESS_MAIN(tst_NyPreviewCache)
#include "tst_NyPreviewCache.moc"
