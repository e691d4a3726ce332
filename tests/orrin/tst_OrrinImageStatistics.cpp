#include <OrrinImageStatistics.h>

#include <cmath>

#include <QTest>

#include "OrrinTestModels.h"

class tst_OrrinImageStatistics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void invalidViews_data();
    void invalidViews();
    void evenColor_data();
    void evenColor();
    void tinyPictures();
    void exposureShares();
    void sharpnessFallsWithBlur();
    void oneSharpTileIsEnough();
    void detailNeedsTwoDirections();
    void crispnessTellsEdgesFromSlopes();
    void colorSignatureFollowsTheGrid();
    void hashReadsRisesToTheRight();
    void hashOfNearlyEqualPictures();
    void hashDistance();
    void rowsMayBePadded();

private:
    static OrrinTestPicture pattern(int shift);
};

OrrinTestPicture tst_OrrinImageStatistics::pattern(int shift)
{
    OrrinTestPicture picture(90, 80);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const auto value = static_cast<std::uint8_t>(std::clamp(((x / 10 * 37 + y / 10 * 59) % 200) + shift, 0, 255));
            picture.set(x, y, {value, value, value});
        }
    }
    return picture;
}

void tst_OrrinImageStatistics::invalidViews_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("bytesPerLine");
    QTest::addColumn<bool>("hasPixels");
    QTest::newRow("no pixels") << 2 << 2 << 6 << false;
    QTest::newRow("no width") << 0 << 2 << 6 << true;
    QTest::newRow("no height") << 2 << 0 << 6 << true;
    QTest::newRow("negative") << -2 << -2 << 6 << true;
    QTest::newRow("short line") << 2 << 2 << 5 << true;
}

void tst_OrrinImageStatistics::invalidViews()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, bytesPerLine);
    QFETCH(bool, hasPixels);
    const std::array<std::uint8_t, 12> pixels{};
    QVERIFY(!orrin::ImageStatistics::describe({hasPixels ? pixels.data() : nullptr, width, height, bytesPerLine}).isValid);
}

void tst_OrrinImageStatistics::evenColor_data()
{
    QTest::addColumn<int>("level");
    QTest::newRow("black") << 0;
    QTest::newRow("grey") << 128;
    QTest::newRow("white") << 255;
}

void tst_OrrinImageStatistics::evenColor()
{
    QFETCH(int, level);
    const auto value = static_cast<std::uint8_t>(level);
    const orrin::Descriptors result = orrin::ImageStatistics::describe(OrrinTestPicture(33, 17, {value, value, value}).view());
    QVERIFY(result.isValid);
    QCOMPARE(result.sharpness, 0.0F);
    QCOMPARE(result.contrast, 0.0F);
    QCOMPARE(result.detail, 0.0F);
    QCOMPARE(result.crispness, 1.0F);
    QVERIFY(std::abs(result.exposure - static_cast<float>(level) / 255.0F) < 0.005F);
    QCOMPARE(result.darkShare, level == 0 ? 1.0F : 0.0F);
    QCOMPARE(result.brightShare, level == 255 ? 1.0F : 0.0F);
    QCOMPARE(result.hash, std::uint64_t{0});
    for (const float number : result.colorSignature)
        QVERIFY(std::abs(number - static_cast<float>(level) / 255.0F) < 0.001F);
}

void tst_OrrinImageStatistics::tinyPictures()
{
    for (const int side : {1, 2, 3, 4}) {
        const orrin::Descriptors result = orrin::ImageStatistics::describe(OrrinTestPicture(side, 1, {255, 0, 0}).view());
        QVERIFY(result.isValid);
        QCOMPARE(result.colorSignature[0], 1.0F);
        QCOMPARE(result.colorSignature[24], 1.0F);
        QCOMPARE(result.colorSignature[25], 0.0F);
    }
}

void tst_OrrinImageStatistics::exposureShares()
{
    OrrinTestPicture picture(10, 10, {128, 128, 128});
    for (int x = 0; x < 10; ++x) {
        picture.set(x, 0, {9, 9, 9});
        picture.set(x, 1, {10, 10, 10});
        picture.set(x, 2, {246, 246, 246});
        picture.set(x, 3, {245, 245, 245});
    }
    const orrin::Descriptors result = orrin::ImageStatistics::describe(picture.view());
    QCOMPARE(result.darkShare, 0.1F);
    QCOMPARE(result.brightShare, 0.1F);
}

void tst_OrrinImageStatistics::sharpnessFallsWithBlur()
{
    const auto edge = [](int softness) {
        OrrinTestPicture picture(64, 64);
        for (int y = 0; y < 64; ++y) {
            for (int x = 0; x < 64; ++x) {
                const auto value = static_cast<std::uint8_t>(std::clamp(128 + (x - 24) * 128 / softness, 0, 255));
                picture.set(x, y, {value, value, value});
            }
        }
        return orrin::ImageStatistics::describe(picture.view()).sharpness;
    };
    QVERIFY2(edge(1) > 2 * edge(4), qPrintable(QString::number(edge(4))));
    QVERIFY(edge(4) > 2 * edge(16));
}

void tst_OrrinImageStatistics::oneSharpTileIsEnough()
{
    OrrinTestPicture picture(80, 80, {120, 120, 120});
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 20; ++x)
            picture.set(x, y, (x + y) % 2 ? std::array<std::uint8_t, 3>{255, 255, 255} : std::array<std::uint8_t, 3>{0, 0, 0});
    }
    QVERIFY(orrin::ImageStatistics::describe(picture.view()).sharpness > 500.0F);
}

void tst_OrrinImageStatistics::detailNeedsTwoDirections()
{
    const auto squares = [](int width, int height) {
        OrrinTestPicture picture(160, 160);
        for (int y = 0; y < 160; ++y) {
            for (int x = 0; x < 160; ++x) {
                const auto value = static_cast<std::uint8_t>((x / width + y / height) % 2 ? 200 : 100);
                picture.set(x, y, {value, value, value});
            }
        }
        return orrin::ImageStatistics::describe(picture.view());
    };
    QVERIFY(std::abs(squares(10, 10).contrast - 50.0F) < 0.1F);
    QVERIFY2(squares(10, 10).detail > 25.0F, qPrintable(QString::number(squares(10, 10).detail)));
    QCOMPARE(squares(10, 160).detail, 0.0F);
    QCOMPARE(squares(160, 10).detail, 0.0F);
}

void tst_OrrinImageStatistics::crispnessTellsEdgesFromSlopes()
{
    // A disc whose rim is so many pixels wide.
    const auto crispness = [](double rim) {
        OrrinTestPicture picture(224, 168);
        for (int y = 0; y < 168; ++y) {
            for (int x = 0; x < 224; ++x) {
                const double inside = (50.0 - std::hypot(x - 112.0, y - 84.0)) / rim + 0.5;
                const auto value = static_cast<std::uint8_t>(40.0 + 180.0 * std::clamp(inside, 0.0, 1.0));
                picture.set(x, y, {value, value, value});
            }
        }
        return orrin::ImageStatistics::describe(picture.view()).crispness;
    };
    QVERIFY2(crispness(1) > 0.45F, qPrintable(QString::number(crispness(1))));
    QVERIFY2(crispness(30) < 0.3F && crispness(30) > 0.2F, qPrintable(QString::number(crispness(30))));
}

void tst_OrrinImageStatistics::colorSignatureFollowsTheGrid()
{
    OrrinTestPicture picture(30, 30);
    for (int y = 0; y < 10; ++y) {
        for (int x = 20; x < 30; ++x)
            picture.set(x, y, {255, 0, 0});
    }
    for (int y = 20; y < 30; ++y) {
        for (int x = 0; x < 10; ++x)
            picture.set(x, y, {0, 0, 255});
    }
    const orrin::Descriptors result = orrin::ImageStatistics::describe(picture.view());
    for (std::size_t i = 0; i < result.colorSignature.size(); ++i)
        QCOMPARE(result.colorSignature[i], i == 2 * 3 || i == 6 * 3 + 2 ? 1.0F : 0.0F);
}

void tst_OrrinImageStatistics::hashReadsRisesToTheRight()
{
    OrrinTestPicture rising(90, 80);
    for (int y = 0; y < 80; ++y) {
        for (int x = 0; x < 90; ++x) {
            const auto value = static_cast<std::uint8_t>(y < 10 ? 255 - 2 * x : 2 * x);
            rising.set(x, y, {value, value, value});
        }
    }
    QCOMPARE(orrin::ImageStatistics::describe(rising.view()).hash, 0xffffffffffffff00U);
}

void tst_OrrinImageStatistics::hashOfNearlyEqualPictures()
{
    const std::uint64_t hash = orrin::ImageStatistics::describe(pattern(0).view()).hash;
    const std::uint64_t brighter = orrin::ImageStatistics::describe(pattern(20).view()).hash;
    OrrinTestPicture mirrored = pattern(0);
    for (int y = 0; y < mirrored.height; ++y) {
        for (int x = 0; x < mirrored.width / 2; ++x) {
            for (int c = 0; c < 3; ++c)
                std::swap(mirrored.bytes[static_cast<std::size_t>(3 * (y * 90 + x) + c)],
                    mirrored.bytes[static_cast<std::size_t>(3 * (y * 90 + 89 - x) + c)]);
        }
    }
    QCOMPARE(orrin::ImageStatistics::hashDistance(hash, brighter), 0);
    QVERIFY(orrin::ImageStatistics::hashDistance(hash, orrin::ImageStatistics::describe(mirrored.view()).hash) > 16);
}

void tst_OrrinImageStatistics::hashDistance()
{
    QCOMPARE(orrin::ImageStatistics::hashDistance(0, 0), 0);
    QCOMPARE(orrin::ImageStatistics::hashDistance(0, ~std::uint64_t{0}), 64);
    QCOMPARE(orrin::ImageStatistics::hashDistance(0b1011, 0b0001), 2);
}

void tst_OrrinImageStatistics::rowsMayBePadded()
{
    const OrrinTestPicture tight = pattern(0);
    std::vector<std::uint8_t> padded;
    for (int y = 0; y < tight.height; ++y) {
        padded.insert(padded.end(), tight.bytes.begin() + y * 270, tight.bytes.begin() + (y + 1) * 270);
        padded.insert(padded.end(), {255, 0, 255});
    }
    const orrin::Descriptors expected = orrin::ImageStatistics::describe(tight.view());
    const orrin::Descriptors result = orrin::ImageStatistics::describe({padded.data(), 90, 80, 273});
    QCOMPARE(result.hash, expected.hash);
    QCOMPARE(result.sharpness, expected.sharpness);
    QCOMPARE(result.colorSignature, expected.colorSignature);
}

QTEST_GUILESS_MAIN(tst_OrrinImageStatistics)
#include "tst_OrrinImageStatistics.moc"
