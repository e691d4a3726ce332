#include <QRandomGenerator>
#include <QSet>
#include <QTest>

#include "NyFotoSelection.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

/** Alternating halves keep the hashes of different numbers more than 8 bits apart. */
quint64 distinctHash(int number)
{
    QRandomGenerator random(quint32(number) * 2654435761U + 1);
    return random.generate64();
}

NyFotoFacts photo(int number, const QDateTime &time, double sharpness = 0.8)
{
    NyFotoFacts facts;
    facts.url = QUrl(u"file:///p/%1.jpg"_s.arg(number, 4, 10, QLatin1Char('0')));
    facts.captureTime = time;
    facts.sizePx = QSize(4000, 3000);
    facts.flaw = NyFotoFacts::Flaw::None;
    facts.sharpness = sharpness;
    facts.exposure = 0.5;
    facts.differenceHash = distinctHash(number);
    return facts;
}

QDateTime at(int day, int hour, int minute = 0, int second = 0)
{
    return QDateTime(QDate(2024, 7, day), QTime(hour, minute, second));
}

QStringList names(const NyFotoSelection::Result &result)
{
    QStringList list;
    for (const NyFotoFacts &facts : result.photos)
        list.append(facts.url.fileName());
    return list;
}

}

class tst_NyFotoSelection : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void nothing();
    void isChronological();
    void leavesOutFlawedPhotos();
    void keepsTheBestOfABlurredDay();
    void nearDuplicateLimits_data();
    void nearDuplicateLimits();
    void bestOfEveryMomentFirst();
    void neverAnEmptyDay();
    void nearDuplicateAcrossMidnightKeepsItsDay();
    void wallClockDecidesNotUtc();
    void doesNotDependOnInputOrder();
};

void tst_NyFotoSelection::nothing()
{
    const NyFotoSelection::Result result = NyFotoSelection::select({}, 10);
    QVERIFY(result.photos.isEmpty());
    QVERIFY(NyFotoSelection::select({NyFotoFacts()}, 10).photos.isEmpty());
}

void tst_NyFotoSelection::isChronological()
{
    const NyFotoSelection::Result result
        = NyFotoSelection::select({photo(1, at(3, 10)), photo(2, at(1, 10)), photo(3, at(2, 10)), photo(4, at(1, 9))}, 10);
    QCOMPARE(names(result), QStringList({u"0004.jpg"_s, u"0002.jpg"_s, u"0003.jpg"_s, u"0001.jpg"_s}));
}

void tst_NyFotoSelection::leavesOutFlawedPhotos()
{
    QList<NyFotoFacts> photos;
    for (int i = 0; i < 5; ++i)
        photos.append(photo(i, at(1, 10 + i)));
    photos[0].flaw = NyFotoFacts::Flaw::Unreadable;
    photos[1].flaw = NyFotoFacts::Flaw::Screenshot;
    photos[2].flaw = NyFotoFacts::Flaw::Blank;
    photos[3].flaw = NyFotoFacts::Flaw::Blurred;
    const NyFotoSelection::Result result = NyFotoSelection::select(photos, 10);
    QCOMPARE(names(result), QStringList({u"0004.jpg"_s}));
    QCOMPARE(result.unreadable, 1);
    QCOMPARE(result.screenshots, 1);
    QCOMPARE(result.unusable, 2);
}

void tst_NyFotoSelection::keepsTheBestOfABlurredDay()
{
    QList<NyFotoFacts> photos{photo(1, at(1, 10)), photo(2, at(2, 10), 0.1), photo(3, at(2, 11), 0.2), photo(4, at(3, 10))};
    photos[1].flaw = NyFotoFacts::Flaw::Tiny;
    photos[2].flaw = NyFotoFacts::Flaw::Blurred;
    const NyFotoSelection::Result result = NyFotoSelection::select(photos, 10);
    QCOMPARE(names(result), QStringList({u"0001.jpg"_s, u"0003.jpg"_s, u"0004.jpg"_s}));
    QCOMPARE(result.unusable, 1);
}

void tst_NyFotoSelection::nearDuplicateLimits_data()
{
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("kept");
    QTest::newRow("same") << 0 << 0 << 1;
    QTest::newRow("at both limits") << 300 << 8 << 1;
    QTest::newRow("one second more") << 301 << 8 << 2;
    QTest::newRow("one bit more") << 300 << 9 << 2;
    QTest::newRow("same picture, later") << 3600 << 0 << 2;
}

void tst_NyFotoSelection::nearDuplicateLimits()
{
    QFETCH(int, seconds);
    QFETCH(int, bits);
    NyFotoFacts weak = photo(1, at(1, 10), 0.3);
    NyFotoFacts strong = photo(2, at(1, 10).addSecs(seconds), 0.9);
    strong.differenceHash = weak.differenceHash ^ ((Q_UINT64_C(1) << bits) - 1);
    const NyFotoSelection::Result result = NyFotoSelection::select({weak, strong}, 10);
    QTEST(int(result.photos.size()), "kept");
    QCOMPARE(result.nearDuplicates, 2 - int(result.photos.size()));
    QCOMPARE(result.photos.last().url, strong.url);
}

void tst_NyFotoSelection::bestOfEveryMomentFirst()
{
    // Two moments; every shot of the first is stronger than any of the second.
    QList<NyFotoFacts> photos;
    for (int i = 0; i < 5; ++i)
        photos.append(photo(i, at(1, 10, 0, i * 10), 0.9 - i * 0.01));
    for (int i = 5; i < 8; ++i)
        photos.append(photo(i, at(1, 10, 10, i * 5), 0.3 + i * 0.01));
    QCOMPARE(names(NyFotoSelection::select(photos, 2)), QStringList({u"0000.jpg"_s, u"0007.jpg"_s}));
    QCOMPARE(names(NyFotoSelection::select(photos, 3)), QStringList({u"0000.jpg"_s, u"0001.jpg"_s, u"0007.jpg"_s}));
    const NyFotoSelection::Result result = NyFotoSelection::select(photos, 4);
    QCOMPARE(names(result), QStringList({u"0000.jpg"_s, u"0001.jpg"_s, u"0006.jpg"_s, u"0007.jpg"_s}));
    QCOMPARE(result.surplus, 4);
}

void tst_NyFotoSelection::neverAnEmptyDay()
{
    QList<NyFotoFacts> photos;
    for (int i = 0; i < 20; ++i)
        photos.append(photo(i, at(1, 8 + i / 2, (i % 2) * 30), 0.9));
    for (int day = 2; day <= 6; ++day)
        photos.append(photo(100 + day, at(day, 12), 0.1));
    for (const int limit : {0, 3, 6, 10}) {
        const NyFotoSelection::Result result = NyFotoSelection::select(photos, limit);
        QSet<QDate> days;
        for (const NyFotoFacts &facts : result.photos)
            days.insert(facts.captureTime.date());
        QCOMPARE(days.size(), 6);
        QCOMPARE(result.photos.size(), std::max(6, limit));
    }
}

void tst_NyFotoSelection::nearDuplicateAcrossMidnightKeepsItsDay()
{
    NyFotoFacts before = photo(1, QDateTime(QDate(2024, 7, 1), QTime(23, 59, 30)), 0.9);
    NyFotoFacts after = photo(2, QDateTime(QDate(2024, 7, 2), QTime(0, 0, 30)), 0.5);
    after.differenceHash = before.differenceHash;
    const NyFotoSelection::Result result = NyFotoSelection::select({before, after}, 10);
    QCOMPARE(result.photos.size(), 2);
    QCOMPARE(result.nearDuplicates, 0);
}

void tst_NyFotoSelection::wallClockDecidesNotUtc()
{
    // 18:00 in Tokyo lies before 12:00 in Berlin as a moment, and after it on the clocks of the photos.
    const NyFotoFacts berlin = photo(1, QDateTime(QDate(2024, 7, 1), QTime(12, 0), Qt::OffsetFromUTC, 7200));
    const NyFotoFacts tokyo = photo(2, QDateTime(QDate(2024, 7, 1), QTime(18, 0), Qt::OffsetFromUTC, 32400));
    QVERIFY(tokyo.captureTime < berlin.captureTime);
    QCOMPARE(names(NyFotoSelection::select({tokyo, berlin}, 10)), QStringList({u"0001.jpg"_s, u"0002.jpg"_s}));
}

void tst_NyFotoSelection::doesNotDependOnInputOrder()
{
    QRandomGenerator random(7);
    QList<NyFotoFacts> photos;
    for (int i = 0; i < 120; ++i) {
        photos.append(photo(i, at(1 + i % 4, 10, random.bounded(60), random.bounded(60)), random.bounded(5) * 0.2));
        photos.last().differenceHash = distinctHash(i / 3);
    }
    const QStringList expected = names(NyFotoSelection::select(photos, 40));
    QCOMPARE(expected.size(), 40);
    for (int round = 0; round < 5; ++round) {
        std::shuffle(photos.begin(), photos.end(), random);
        QCOMPARE(names(NyFotoSelection::select(photos, 40)), expected);
    }
}

QTEST_GUILESS_MAIN(tst_NyFotoSelection)
#include "tst_NyFotoSelection.moc"
