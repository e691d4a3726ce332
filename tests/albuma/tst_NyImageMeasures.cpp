#include <QPainter>
#include <QTest>

#include <bit>

#include "NyImageMeasures.h"
#include "PaintedPictures.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

QImage blurred(const QImage &image, int factor)
{
    const QImage small = image.scaled(image.size() / factor, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return small.scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage plain(const QColor &color)
{
    QImage image(400, 300, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

int distance(const QImage &a, const QImage &b)
{
    return std::popcount(NyImageMeasures::measure(a).differenceHash ^ NyImageMeasures::measure(b).differenceHash);
}

}

class tst_NyImageMeasures : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void blankPictures_data();
    void blankPictures();
    void blurIsSeen();
    void sharpSubjectBeforeSoftBackground();
    void hashSurvivesSizeAndBrightness();
    void hashOfARisingRow();
    void differentPicturesHaveDistantHashes();
    void exposureAndColor();
    void flatness();
    void oddImages();
};

void tst_NyImageMeasures::blankPictures_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<bool>("isBlank");
    QTest::newRow("null") << QImage() << true;
    QTest::newRow("black") << plain(Qt::black) << true;
    QTest::newRow("nearly black") << plain(QColor(20, 18, 22)) << true;
    QTest::newRow("white") << plain(Qt::white) << true;
    QTest::newRow("one tone") << plain(QColor(90, 120, 60)) << true;
    QTest::newRow("picture") << PaintedPictures::painted(QSize(400, 300), 1) << false;
    QImage night = plain(Qt::black);
    QPainter painter(&night);
    painter.fillRect(150, 100, 100, 60, QColor(250, 220, 120));
    painter.end();
    QTest::newRow("lamp at night") << night << false;
}

void tst_NyImageMeasures::blankPictures()
{
    QFETCH(QImage, image);
    QTEST(NyImageMeasures::measure(image).isBlank, "isBlank");
}

void tst_NyImageMeasures::blurIsSeen()
{
    for (quint32 seed = 1; seed <= 8; ++seed) {
        const QImage image = PaintedPictures::painted(QSize(500, 375), seed);
        const NyImageMeasures::Result sharp = NyImageMeasures::measure(image);
        const NyImageMeasures::Result soft = NyImageMeasures::measure(blurred(image, 3));
        const NyImageMeasures::Result lost = NyImageMeasures::measure(blurred(image, 20));
        QVERIFY(!sharp.isBlurred);
        QVERIFY(lost.isBlurred);
        QCOMPARE(lost.sharpness, 0.0);
        QVERIFY(sharp.sharpness > 0.8);
        QVERIFY2(sharp.sharpness > soft.sharpness, qPrintable(QString::number(soft.sharpness)));
    }
}

void tst_NyImageMeasures::sharpSubjectBeforeSoftBackground()
{
    const QImage image = PaintedPictures::painted(QSize(500, 375), 3);
    QImage portrait = blurred(image, 20);
    QPainter painter(&portrait);
    painter.drawImage(QPoint(150, 80), image, QRect(150, 80, 200, 200));
    painter.end();
    QVERIFY(!NyImageMeasures::measure(portrait).isBlurred);
}

void tst_NyImageMeasures::hashSurvivesSizeAndBrightness()
{
    for (quint32 seed = 1; seed <= 8; ++seed) {
        const QImage image = PaintedPictures::painted(QSize(480, 360), seed);
        QVERIFY(distance(image, image.scaled(240, 180, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)) <= 6);
        QImage darker = image;
        QPainter painter(&darker);
        painter.fillRect(darker.rect(), QColor(0, 0, 0, 60));
        painter.end();
        QVERIFY(distance(image, darker) <= 8);
    }
}

void tst_NyImageMeasures::hashOfARisingRow()
{
    QImage rising(90, 80, QImage::Format_RGB32);
    for (int y = 0; y < 80; ++y) {
        for (int x = 0; x < 90; ++x)
            rising.setPixel(x, y, qRgb(x * 2 + 20, x * 2 + 20, x * 2 + 20));
    }
    QCOMPARE(NyImageMeasures::measure(rising).differenceHash, ~Q_UINT64_C(0));
    QCOMPARE(NyImageMeasures::measure(rising.mirrored(true, false)).differenceHash, Q_UINT64_C(0));
}

void tst_NyImageMeasures::differentPicturesHaveDistantHashes()
{
    QList<quint64> hashes;
    for (quint32 seed = 0; seed < 60; ++seed)
        hashes.append(NyImageMeasures::measure(PaintedPictures::painted(QSize(160, 120), seed)).differenceHash);
    int near = 0;
    for (qsizetype a = 0; a < hashes.size(); ++a) {
        for (qsizetype b = 0; b < a; ++b)
            near += std::popcount(hashes.at(a) ^ hashes.at(b)) <= 8 ? 1 : 0;
    }
    QCOMPARE(near, 0);
}

void tst_NyImageMeasures::exposureAndColor()
{
    const QImage image = PaintedPictures::painted(QSize(400, 300), 5);
    QImage dim = image;
    QPainter painter(&dim);
    painter.fillRect(dim.rect(), QColor(0, 0, 0, 200));
    painter.end();
    QVERIFY(NyImageMeasures::measure(image).exposure > NyImageMeasures::measure(dim).exposure + 0.2);
    const QImage gray = image.convertToFormat(QImage::Format_Grayscale8);
    QVERIFY(NyImageMeasures::measure(gray).colorfulness < 0.02);
    QVERIFY(NyImageMeasures::measure(image).colorfulness > 0.3);
}

void tst_NyImageMeasures::flatness()
{
    QCOMPARE(NyImageMeasures::measure(plain(Qt::red)).flatness, 1.0);
    QImage noisy(200, 150, QImage::Format_RGB32);
    for (int y = 0; y < 150; ++y) {
        for (int x = 0; x < 200; ++x)
            noisy.setPixel(x, y, x % 2 == 0 ? qRgb(10, 20, 30) : qRgb(200, 100, 50));
    }
    QCOMPARE(NyImageMeasures::measure(noisy).flatness, 0.0);
}

void tst_NyImageMeasures::oddImages()
{
    for (const QSize &size : {QSize(1, 1), QSize(2, 500), QSize(5000, 3), QSize(37, 37), QSize(38, 38)}) {
        QImage image(size, QImage::Format_ARGB32);
        image.fill(QColor(10, 200, 30, 128));
        const NyImageMeasures::Result result = NyImageMeasures::measure(image);
        QVERIFY(result.isBlank);
        QVERIFY(result.sharpness >= 0 && result.sharpness <= 1);
        QVERIFY(result.exposure >= 0 && result.exposure <= 1);
    }
}

QTEST_GUILESS_MAIN(tst_NyImageMeasures)
#include "tst_NyImageMeasures.moc"
