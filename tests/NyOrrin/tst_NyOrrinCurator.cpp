#include <NyOrrinCurator.h>

#include <limits>

#include <QTest>

#include <NyOrrinHome.h>
#include <OrrinImageStatistics.h>

#include "OrrinAlbum.h"
#include "ScenePainter.h"

class tst_NyOrrinCurator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settersChangeTheirBuilder();
    void coordinates_data();
    void coordinates();
    void orderOfTime();
    void nearDuplicates_data();
    void nearDuplicates();
    void bestOfABurst_data();
    void bestOfABurst();
    void longBurst();
    void unusable_data();
    void unusable();
    void oddTimes();
    void home();

private:
    static NyOrrinVisionedMediaItem shot(const char *name, long long timestamp, const orrin::Descriptors &seen,
        const NyOrrinMediaItemBuilder &builder = NyOrrinMediaItemBuilder());
    static QString names(const std::vector<NyOrrinCuratedMediaItem> &items);
};

NyOrrinVisionedMediaItem tst_NyOrrinCurator::shot(
    const char *name, long long timestamp, const orrin::Descriptors &seen, const NyOrrinMediaItemBuilder &builder)
{
    NyOrrinMediaItemBuilder own = builder;
    own.setId(QString::fromLatin1(name)).setTimestamp(timestamp);
    NyOrrinVisionDescriptorsBuilder descriptors;
    descriptors.setDescriptors(seen);
    return {own.build(), descriptors.build()};
}

QString tst_NyOrrinCurator::names(const std::vector<NyOrrinCuratedMediaItem> &items)
{
    QString result;
    for (const NyOrrinCuratedMediaItem &item : items)
        result += item.item().id();
    return result;
}

void tst_NyOrrinCurator::settersChangeTheirBuilder()
{
    NyOrrinMediaItemBuilder builder;
    NyOrrinMediaItemBuilder &chained = builder.setId(QStringLiteral("file:///a/b.jpg"))
                                           .setTimestamp(1234567890123)
                                           .setWidth(400)
                                           .setHeight(300)
                                           .setRating(4)
                                           .setFavorite(true)
                                           .setDigitalZoomRatio(1.5);
    chained.setCoordinate(48.5, 11.5);
    const NyOrrinMediaItem item = builder.build();
    QCOMPARE(item.id(), QStringLiteral("file:///a/b.jpg"));
    QCOMPARE(item.timestamp(), 1234567890123LL);
    QCOMPARE(item.widthPx(), 400);
    QCOMPARE(item.heightPx(), 300);
    QCOMPARE(item.rating(), 4);
    QVERIFY(item.isFavorite());
    QCOMPARE(item.digitalZoomRatio(), 1.5);
    QVERIFY(item.coordinate().has_value());
    QCOMPARE(item.coordinate()->latitude, 48.5);
    QCOMPARE(item.coordinate()->longitude, 11.5);
    QVERIFY(!NyOrrinMediaItemBuilder().build().coordinate());
    QVERIFY(!NyOrrinVisionDescriptorsBuilder().build().isValid());
}

void tst_NyOrrinCurator::coordinates_data()
{
    QTest::addColumn<double>("latitude");
    QTest::addColumn<double>("longitude");
    QTest::addColumn<bool>("isKept");
    const double none = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("pole") << 90.0 << 0.0 << true;
    QTest::newRow("beyond the pole") << 90.1 << 0.0 << false;
    QTest::newRow("west") << -33.0 << -179.9 << true;
    QTest::newRow("no number") << none << 1.0 << false;
    QTest::newRow("no second number") << 1.0 << none << false;
    QTest::newRow("infinite") << 1.0 << std::numeric_limits<double>::infinity() << false;
}

void tst_NyOrrinCurator::coordinates()
{
    QFETCH(double, latitude);
    QFETCH(double, longitude);
    QFETCH(bool, isKept);
    QCOMPARE(NyOrrinMediaItemBuilder().setCoordinate(latitude, longitude).build().coordinate().has_value(), isKept);
}

void tst_NyOrrinCurator::orderOfTime()
{
    const auto items = NyOrrinCurator().curate({shot("x", 0, OrrinAlbum::goodShot(9)), shot("c", 9000000, OrrinAlbum::goodShot(2)),
        shot("a", -5000000, OrrinAlbum::goodShot(0)), shot("y", 0, OrrinAlbum::goodShot(9)), shot("b", 4000000, OrrinAlbum::goodShot(1))});
    QCOMPARE(names(items), QStringLiteral("abcxy"));
    QVERIFY(NyOrrinCurator().curate({}).empty());
}

void tst_NyOrrinCurator::nearDuplicates_data()
{
    QTest::addColumn<long long>("apart");
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("kept");
    QTest::newRow("equal") << 0LL << 0 << 1;
    QTest::newRow("at both limits") << 300000LL << 8 << 1;
    QTest::newRow("too far apart") << 300001LL << 8 << 2;
    QTest::newRow("too different") << 300000LL << 9 << 2;
}

void tst_NyOrrinCurator::nearDuplicates()
{
    QFETCH(long long, apart);
    QFETCH(int, bits);
    QFETCH(int, kept);
    const orrin::Descriptors first = OrrinAlbum::goodShot(0);
    orrin::Descriptors second = first;
    second.hash ^= (std::uint64_t{1} << bits) - 1;
    std::vector<NyOrrinVisionedMediaItem> shots{shot("a", 1000, first), shot("b", 1000 + apart, second)};
    if (apart > 0)
        std::swap(shots[0], shots[1]);
    const auto items = NyOrrinCurator().curate(shots);
    QCOMPARE(int(items.size()), kept);
    // Of equals the earlier one stays.
    QCOMPARE(items[0].item().id(), QStringLiteral("a"));
}

void tst_NyOrrinCurator::bestOfABurst_data()
{
    QTest::addColumn<int>("rating");
    QTest::addColumn<bool>("favorite");
    QTest::addColumn<float>("sharpness");
    QTest::addColumn<double>("zoom");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("expected");
    QTest::newRow("alike") << 0 << false << 20.0F << 0.0 << 400 << QStringLiteral("a");
    QTest::newRow("rated") << 3 << false << 5.0F << 0.0 << 400 << QStringLiteral("b");
    QTest::newRow("rejected") << -1 << true << 90.0F << 0.0 << 400 << QStringLiteral("b");
    QTest::newRow("rejected, no favourite") << -1 << false << 90.0F << 0.0 << 400 << QStringLiteral("a");
    QTest::newRow("sharper") << 0 << false << 21.0F << 1.0 << 400 << QStringLiteral("b");
    QTest::newRow("sharper by zoom") << 0 << false << 21.0F << 2.0 << 400 << QStringLiteral("a");
    QTest::newRow("larger") << 0 << false << 20.0F << 0.0 << 401 << QStringLiteral("b");
}

void tst_NyOrrinCurator::bestOfABurst()
{
    QFETCH(int, rating);
    QFETCH(bool, favorite);
    QFETCH(float, sharpness);
    QFETCH(double, zoom);
    QFETCH(int, width);
    QFETCH(QString, expected);
    orrin::Descriptors second = OrrinAlbum::goodShot(0);
    second.sharpness = sharpness;
    NyOrrinMediaItemBuilder first;
    first.setWidth(400).setHeight(300);
    NyOrrinMediaItemBuilder other = first;
    other.setRating(rating).setFavorite(favorite).setDigitalZoomRatio(zoom).setWidth(width);
    const auto items = NyOrrinCurator().curate({shot("a", 1000, OrrinAlbum::goodShot(0), first), shot("b", 2000, second, other)});
    QCOMPARE(names(items), expected);
}

void tst_NyOrrinCurator::longBurst()
{
    std::vector<NyOrrinVisionedMediaItem> burst;
    for (int i = 0; i < 300; ++i) {
        orrin::Descriptors seen = OrrinAlbum::goodShot(i % 2);
        seen.sharpness = i == 150 || i == 151 ? 30.0F : 20.0F;
        burst.push_back(shot(i == 150 ? "x" : i == 151 ? "y" : "-", 1000 + i * 1000, seen));
    }
    QCOMPARE(names(NyOrrinCurator().curate(burst)), QStringLiteral("xy"));
}

void tst_NyOrrinCurator::unusable_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<bool>("isKept");
    using Paint = ScenePainter;
    const auto row = [](const char *name, const QImage &picture, bool isKept) { QTest::newRow(name) << picture << isKept; };
    for (const char *scene :
        {"beach", "snow", "fireworks", "tree", "city", "forest", "people", "party", "garden", "fog", "sunset", "night"})
        row(scene, Paint::paint(QLatin1String(scene), 3), true);
    row("dark forest", Paint::darkened(Paint::paint(QStringLiteral("forest"), 3), 0.25), true);
    row("dark party", Paint::darkened(Paint::paint(QStringLiteral("party"), 3), 0.25), true);
    row("bleached beach", Paint::darkened(Paint::paint(QStringLiteral("beach"), 3), 1.6), true);
    row("slightly shaken", Paint::shaken(Paint::paint(QStringLiteral("city"), 3), 5), true);
    row("black", Paint::even(Qt::black, 0), false);
    row("lens cap", Paint::even(QColor(6, 5, 7), 2), false);
    row("lens cap at high sensitivity", Paint::even(QColor(10, 8, 12), 5), false);
    row("pocket", Paint::pocket(), false);
    row("finger", Paint::finger(), false);
    row("white", Paint::even(Qt::white, 0), false);
    row("white with noise", Paint::even(QColor(250, 250, 250), 2), false);
    row("bare wall", Paint::even(QColor(200, 190, 180), 1), false);
    row("shaken over a fifth of the picture", Paint::shaken(Paint::paint(QStringLiteral("people"), 3), 45), false);
    row("out of focus", Paint::blurred(Paint::paint(QStringLiteral("garden"), 3), 35), false);
}

void tst_NyOrrinCurator::unusable()
{
    QFETCH(QImage, picture);
    QFETCH(bool, isKept);
    const QImage pixels = picture.convertToFormat(QImage::Format_RGB888);
    orrin::Descriptors seen = orrin::ImageStatistics::describe(
        {pixels.constBits(), pixels.width(), pixels.height(), static_cast<std::ptrdiff_t>(pixels.bytesPerLine())});
    const QByteArray values = QStringLiteral("detail %1 crispness %2 contrast %3 exposure %4")
                                  .arg(seen.detail)
                                  .arg(seen.crispness)
                                  .arg(seen.contrast)
                                  .arg(seen.exposure)
                                  .toUtf8();
    QVERIFY2(NyOrrinCurator().curate({shot("a", 1000, seen)}).size() == (isKept ? 1U : 0U), values.constData());
    // Nothing is known of a picture that nobody looked at.
    seen.isValid = false;
    QCOMPARE(NyOrrinCurator().curate({shot("a", 1000, seen), shot("b", 1000, seen)}).size(), std::size_t{2});
}

void tst_NyOrrinCurator::oddTimes()
{
    const long long most = std::numeric_limits<long long>::max();
    const NyOrrinCurator curator;
    const auto items = curator.curate({shot("/Zoo/a.jpg", most, OrrinAlbum::goodShot(0)),
        shot("/Zoo/b.jpg", -most, OrrinAlbum::goodShot(0)), shot("/Zoo/c.jpg", 1, OrrinAlbum::goodShot(0))});
    QCOMPARE(items.size(), std::size_t{3});
    QCOMPARE(curator.getOccasion(items).size(), std::size_t{1});
    // Twice the earliest of all: a burst.
    QCOMPARE(curator.curate({shot("a", -most, OrrinAlbum::goodShot(0)), shot("b", -most, OrrinAlbum::goodShot(0))}).size(), std::size_t{1});
}

void tst_NyOrrinCurator::home()
{
    NyOrrinHome home;
    const NyOrrinMediaItem::Coordinate munich{48.14, 11.58};
    const QDate begin(2024, 1, 1);
    QVERIFY(!home.place());
    for (int day = 0; day < 14; ++day)
        home.add({39.57, 2.65}, begin.addDays(day).toJulianDay());
    // Two weeks at one place are a journey.
    QVERIFY(!home.place());
    for (int day = 0; day < 9; ++day)
        home.add(munich, begin.addDays(day * 10).toJulianDay());
    QVERIFY(!home.place());
    home.add(munich, begin.addDays(90).toJulianDay());
    QVERIFY(home.place().has_value());
    QVERIFY(std::abs(home.place()->latitude - munich.latitude) < 0.01);
    QVERIFY(std::abs(home.place()->longitude - munich.longitude) < 0.01);
}

QTEST_GUILESS_MAIN(tst_NyOrrinCurator)
#include "tst_NyOrrinCurator.moc"
