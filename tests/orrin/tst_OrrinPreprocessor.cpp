#include <OrrinPreprocessor.h>

#include <QTest>

#include "OrrinTestModels.h"

using orrin::ModelConfig;
using orrin::Preprocessor;

class tst_OrrinPreprocessor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sameSizeIsExact();
    void fits_data();
    void fits();
    void finePatternsAverageOut();
    void enlargingIsSmooth();

private:
    static ModelConfig config(int width, int height, ModelConfig::Fit fit);
};

ModelConfig tst_OrrinPreprocessor::config(int width, int height, ModelConfig::Fit fit)
{
    ModelConfig result;
    result.inputWidthPx = width;
    result.inputHeightPx = height;
    result.fit = fit;
    return result;
}

void tst_OrrinPreprocessor::sameSizeIsExact()
{
    OrrinTestPicture picture(4, 2);
    for (int i = 0; i < 24; ++i)
        picture.bytes[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(10 * i);
    ModelConfig description = config(4, 2, ModelConfig::Fit::Crop);
    Preprocessor planes(description);
    std::vector<std::uint8_t> values(planes.valueCount());
    planes.fill(picture.view(), values.data());
    for (int i = 0; i < 24; ++i)
        QCOMPARE(int(values[static_cast<std::size_t>(i % 3 * 8 + i / 3)]), 10 * i);
    description.layout = ModelConfig::Layout::Nhwc;
    Preprocessor pixels(description);
    pixels.fill(picture.view(), values.data());
    QVERIFY(values == picture.bytes);
}

void tst_OrrinPreprocessor::fits_data()
{
    QTest::addColumn<int>("fit");
    QTest::addColumn<QByteArray>("row");
    // A picture of 12 by 4: red, green, blue thirds.
    QTest::newRow("crop") << int(ModelConfig::Fit::Crop) << QByteArray("gggg");
    QTest::newRow("stretch") << int(ModelConfig::Fit::Stretch) << QByteArray("r??b");
    QTest::newRow("pad") << int(ModelConfig::Fit::Pad) << QByteArray("....");
}

void tst_OrrinPreprocessor::fits()
{
    QFETCH(int, fit);
    QFETCH(QByteArray, row);
    OrrinTestPicture picture(12, 4);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 12; ++x)
            picture.set(x, y, {std::uint8_t(x < 4 ? 255 : 0), std::uint8_t(x >= 4 && x < 8 ? 255 : 0), std::uint8_t(x >= 8 ? 255 : 0)});
    }
    ModelConfig description = config(4, 4, static_cast<ModelConfig::Fit>(fit));
    description.layout = ModelConfig::Layout::Nhwc;
    Preprocessor preprocessor(description);
    std::vector<std::uint8_t> values(preprocessor.valueCount());
    preprocessor.fill(picture.view(), values.data());
    for (std::size_t x = 0; x < 4; ++x) {
        const std::uint8_t *pixel = values.data() + 3 * x;
        const char wanted = row[static_cast<qsizetype>(x)];
        if (wanted == '?')
            continue;
        for (std::size_t c = 0; c < 3; ++c) {
            const int expected = wanted == "rgb"[c] ? 255 : 0;
            // The triangle reaches a little over the border of two colours.
            QVERIFY2(std::abs(int(pixel[c]) - expected) <= 40, qPrintable(QStringLiteral("pixel %1: %2").arg(x).arg(int(pixel[c]))));
        }
    }
}

void tst_OrrinPreprocessor::finePatternsAverageOut()
{
    OrrinTestPicture picture(200, 200);
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 200; ++x) {
            if ((x + y) % 2)
                picture.set(x, y, {255, 255, 255});
        }
    }
    Preprocessor preprocessor(config(20, 20, ModelConfig::Fit::Crop));
    std::vector<float> values(preprocessor.valueCount());
    preprocessor.fill(picture.view(), values.data());
    for (const float value : values)
        QVERIFY(std::abs(value - 0.5F) < 0.02F);
}

void tst_OrrinPreprocessor::enlargingIsSmooth()
{
    OrrinTestPicture picture(2, 1);
    picture.set(1, 0, {255, 255, 255});
    Preprocessor preprocessor(config(16, 8, ModelConfig::Fit::Crop));
    std::vector<float> values(preprocessor.valueCount());
    preprocessor.fill(picture.view(), values.data());
    for (std::size_t x = 1; x < 16; ++x) {
        QVERIFY(values[x] >= values[x - 1]);
        QVERIFY(values[x] - values[x - 1] < 0.15F);
    }
    QCOMPARE(values[0], 0.0F);
    QCOMPARE(values[15], 1.0F);
}

QTEST_GUILESS_MAIN(tst_OrrinPreprocessor)
#include "tst_OrrinPreprocessor.moc"
