#include <QRandomGenerator>
#include <QTest>

#include "NyPageLayout.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

const QRectF AREA(12, 12, 256, 186);
constexpr double GAP = 4;
constexpr double SLACK = 1e-6;

/** Whether two rectangles keep their distance in at least one direction. */
bool areApart(const QRectF &a, const QRectF &b, double gap)
{
    return a.right() + gap <= b.left() + SLACK || b.right() + gap <= a.left() + SLACK || a.bottom() + gap <= b.top() + SLACK
        || b.bottom() + gap <= a.top() + SLACK;
}

QString describe(const QList<NyLayoutFoto> &photos)
{
    QStringList sizes;
    for (const NyLayoutFoto &foto : photos)
        sizes.append(u"%1x%2"_s.arg(foto.sizePx.width()).arg(foto.sizePx.height()));
    return sizes.join(u' ');
}

/** Empty if the page is as it must be, else what is wrong. */
QString fault(const QList<NyLayoutFoto> &photos, const NyPageLayout::Result &result, const QRectF &area)
{
    if (result.rectsMm.size() != photos.size())
        return u"%1 rectangles for "_s.arg(result.rectsMm.size()) + describe(photos);
    for (qsizetype i = 0; i < photos.size(); ++i) {
        const QRectF rect = result.rectsMm.at(i);
        const QSize size = photos.at(i).sizePx;
        if (rect.width() <= 0 || rect.height() <= 0)
            return u"no extent: "_s + describe(photos);
        if (!area.adjusted(-SLACK, -SLACK, SLACK, SLACK).contains(rect))
            return u"outside the area: "_s + describe(photos);
        const double expected = double(size.width()) / size.height();
        if (std::abs(rect.width() / rect.height() / expected - 1) > 0.005)
            return u"aspect ratio lost: "_s + describe(photos);
        if (size.width() / rect.width() * 25.4 < NyPageLayout::MinimumDpi - SLACK)
            return u"too few pixels per inch: "_s + describe(photos);
        for (qsizetype other = 0; other < i; ++other) {
            if (!areApart(rect, result.rectsMm.at(other), GAP))
                return u"too near to each other: "_s + describe(photos);
        }
    }
    return {};
}

}

class tst_NyPageLayout : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void keepsTheRules_data();
    void keepsTheRules();
    void keepsTheRulesForRandomPhotos();
    void oneLandscapePhotoFillsThePage();
    void lowResolutionPhotoStaysSmall();
    void heroIsLargest();
    void readingOrder();
    void refusesWhatItCannotArrange();
};

void tst_NyPageLayout::keepsTheRules_data()
{
    QTest::addColumn<QList<QSize>>("sizes");
    const QSize landscape(4032, 3024), portrait(3024, 4032), wide(10000, 1000), tall(1000, 10000), tiny(64, 48), dot(1, 1);
    QTest::newRow("one") << QList<QSize>{landscape};
    QTest::newRow("six landscape") << QList<QSize>(6, landscape);
    QTest::newRow("six portrait") << QList<QSize>(6, portrait);
    QTest::newRow("panorama 10:1") << QList<QSize>{wide};
    QTest::newRow("panorama 1:10") << QList<QSize>{tall};
    QTest::newRow("six panoramas 10:1") << QList<QSize>(6, wide);
    QTest::newRow("six panoramas 1:10") << QList<QSize>(6, tall);
    QTest::newRow("panoramas crossed") << QList<QSize>{wide, tall, wide, tall, wide, tall};
    QTest::newRow("panorama between photos") << QList<QSize>{landscape, wide, portrait};
    QTest::newRow("tall between photos") << QList<QSize>{landscape, tall, portrait};
    QTest::newRow("tiny") << QList<QSize>{tiny, landscape};
    QTest::newRow("one pixel") << QList<QSize>{dot};
    QTest::newRow("one pixel beside others") << QList<QSize>{dot, wide, tall, landscape, tiny, portrait};
    QTest::newRow("1000:1") << QList<QSize>{QSize(100000, 100)};
    QTest::newRow("1:1000") << QList<QSize>{QSize(100, 100000)};
}

void tst_NyPageLayout::keepsTheRules()
{
    QFETCH(QList<QSize>, sizes);
    QList<NyLayoutFoto> photos;
    for (const QSize &size : sizes)
        photos.append({size, false});
    QCOMPARE(fault(photos, NyPageLayout::arrange(photos, AREA, GAP), AREA), QString());
    photos.first().isHero = true;
    QCOMPARE(fault(photos, NyPageLayout::arrange(photos, AREA, GAP), AREA), QString());
}

void tst_NyPageLayout::keepsTheRulesForRandomPhotos()
{
    QRandomGenerator random(20240712);
    for (int round = 0; round < 400; ++round) {
        QList<NyLayoutFoto> photos;
        const int count = random.bounded(1, NyPageLayout::MaximumPhotos + 1);
        for (int i = 0; i < count; ++i) {
            const int width = random.bounded(40, 6000);
            const double ratio = std::pow(10.0, random.bounded(2.0) - 1.0);
            photos.append({QSize(width, std::max(1, int(width / ratio))), random.bounded(4) == 0});
        }
        const QRectF area(random.bounded(30.0), random.bounded(30.0), 100 + random.bounded(300.0), 100 + random.bounded(300.0));
        const NyPageLayout::Result result = NyPageLayout::arrange(photos, area, GAP);
        const QString wrong = fault(photos, result, area);
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
        QVERIFY(result.coverage > 0 && result.coverage <= 1 + SLACK);
    }
}

void tst_NyPageLayout::oneLandscapePhotoFillsThePage()
{
    const NyPageLayout::Result result = NyPageLayout::arrange({{QSize(2560, 1860), false}}, AREA, GAP);
    QVERIFY(std::abs(result.coverage - 1) < 0.001);
    QVERIFY(std::abs(result.rectsMm.first().width() - AREA.width()) < 0.01);
}

void tst_NyPageLayout::lowResolutionPhotoStaysSmall()
{
    const NyPageLayout::Result result = NyPageLayout::arrange({{QSize(600, 450), false}}, AREA, GAP);
    QVERIFY(std::abs(result.rectsMm.first().width() - 600 * 25.4 / 150) < 0.01);
    QVERIFY(std::abs(result.rectsMm.first().center().x() - AREA.center().x()) < 0.01);
}

void tst_NyPageLayout::heroIsLargest()
{
    const QSize size(4032, 3024);
    for (int hero = 0; hero < 3; ++hero) {
        QList<NyLayoutFoto> photos(3, {size, false});
        photos[hero].isHero = true;
        const NyPageLayout::Result result = NyPageLayout::arrange(photos, AREA, GAP);
        for (int i = 0; i < 3; ++i) {
            if (i != hero)
                QVERIFY2(result.rectsMm.at(hero).width() > 1.2 * result.rectsMm.at(i).width(),
                    qPrintable(u"%1: %2 %3"_s.arg(hero).arg(result.rectsMm.at(hero).width()).arg(result.rectsMm.at(i).width())));
        }
    }
}

void tst_NyPageLayout::readingOrder()
{
    const NyPageLayout::Result result = NyPageLayout::arrange(QList<NyLayoutFoto>(6, {QSize(4000, 3000), false}), AREA, GAP);
    for (int i = 1; i < 6; ++i) {
        const QRectF before = result.rectsMm.at(i - 1);
        const QRectF after = result.rectsMm.at(i);
        QVERIFY(after.left() > before.right() || after.top() > before.bottom());
    }
}

void tst_NyPageLayout::refusesWhatItCannotArrange()
{
    QVERIFY(NyPageLayout::arrange({}, AREA, GAP).rectsMm.isEmpty());
    QVERIFY(NyPageLayout::arrange(QList<NyLayoutFoto>(7, {QSize(4, 3), false}), AREA, GAP).rectsMm.isEmpty());
    QVERIFY(NyPageLayout::arrange({{QSize(4, 0), false}}, AREA, GAP).rectsMm.isEmpty());
    QVERIFY(NyPageLayout::arrange({{QSize(4, 3), false}}, QRectF(), GAP).rectsMm.isEmpty());
    const NyLayoutFoto flat{QSize(1000000, 1), false};
    const NyLayoutFoto thin{QSize(1, 1000000), false};
    QVERIFY(NyPageLayout::arrange({flat, thin, flat}, AREA, GAP).rectsMm.isEmpty());
}

QTEST_GUILESS_MAIN(tst_NyPageLayout)
#include "tst_NyPageLayout.moc"
