#include <QPainter>
#include <QTest>

#include "NyBookRenderer.h"
#include "TestStyle.h"

using namespace Qt::Literals::StringLiterals;
using Picture = NyBookRenderer::Picture;

namespace
{

/** Left half red, right half blue; upper half bright, lower half dark. */
QImage fourFields(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const int w = size.width() / 2;
    const int h = size.height() / 2;
    painter.fillRect(0, 0, w, h, QColor(255, 0, 0));
    painter.fillRect(w, 0, size.width() - w, h, QColor(0, 0, 255));
    painter.fillRect(0, h, w, size.height() - h, QColor(120, 0, 0));
    painter.fillRect(w, h, size.width() - w, size.height() - h, QColor(0, 0, 120));
    return image;
}

NyPlacedFoto photo(const QRectF &rectMm)
{
    NyPlacedFoto foto;
    foto.url = QUrl(u"file:///p/a.jpg"_s);
    foto.rectMm = rectMm;
    foto.sizePx = QSize(400, 300);
    return foto;
}

}

class tst_NyBookRenderer : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void paintsPhotoWhereItLies();
    void turnsAndCrops();
    void asksForThePixelsItNeeds_data();
    void asksForThePixelsItNeeds();
    void missingAndLoading();
    void textIsDrawnInsideItsRectangle_data();
    void textIsDrawnInsideItsRectangle();
    void asksOnlyForWhatTheClipShows();
    void interimPictureIsPaintedAsItIs();
    void tellsWhereTheWordsAre();
    void coverImage();

private:
    QImage paint(const NyBookPage &page, NyBookRenderer::PageKind kind, const NyBookRenderer::PictureSource &source);
};

QImage tst_NyBookRenderer::paint(const NyBookPage &page, NyBookRenderer::PageKind kind, const NyBookRenderer::PictureSource &source)
{
    QImage image(560, 420, QImage::Format_RGB32);
    QPainter painter(&image);
    NyBookRenderer(testStyle(), source).paint(painter, page, kind, QSizeF(280, 210), QRectF(image.rect()), 1.0);
    painter.end();
    return image;
}

void tst_NyBookRenderer::paintsPhotoWhereItLies()
{
    NyBookPage page;
    page.photos = {photo(QRectF(100, 60, 80, 60))};
    const QImage image = paint(page, NyBookRenderer::PageKind::Inner, [](const QUrl &, const QSize &box) {
        return Picture{Picture::State::Ready, fourFields(box)};
    });
    QCOMPARE(image.pixelColor(190, 200), testStyle().pageBackground);
    QCOMPARE(image.pixelColor(370, 200), testStyle().pageBackground);
    QCOMPARE(image.pixelColor(210, 130), QColor(255, 0, 0));
    QCOMPARE(image.pixelColor(350, 130), QColor(0, 0, 255));
    QCOMPARE(image.pixelColor(210, 230), QColor(120, 0, 0));
    QCOMPARE(image.pixelColor(350, 230), QColor(0, 0, 120));
}

void tst_NyBookRenderer::turnsAndCrops()
{
    NyBookPage page;
    page.photos = {photo(QRectF(100, 60, 60, 80))};
    page.photos[0].rotationDegrees = 90;
    const auto source = [](const QUrl &, const QSize &box) { return Picture{Picture::State::Ready, fourFields(box)}; };
    QImage image = paint(page, NyBookRenderer::PageKind::Inner, source);
    // Clockwise: the lower left corner comes up.
    QCOMPARE(image.pixelColor(210, 130), QColor(120, 0, 0));
    QCOMPARE(image.pixelColor(310, 130), QColor(255, 0, 0));
    page.photos[0].rotationDegrees = 0;
    page.photos[0].crop = QRectF(0.5, 0.5, 0.5, 0.5);
    image = paint(page, NyBookRenderer::PageKind::Inner, source);
    QCOMPARE(image.pixelColor(205, 125), QColor(0, 0, 120));
    QCOMPARE(image.pixelColor(315, 275), QColor(0, 0, 120));
}

void tst_NyBookRenderer::asksForThePixelsItNeeds_data()
{
    QTest::addColumn<QRectF>("crop");
    QTest::addColumn<int>("rotation");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QSize>("box");
    QTest::newRow("whole") << QRectF(0, 0, 1, 1) << 0 << 1.0 << QSize(160, 120);
    QTest::newRow("high density") << QRectF(0, 0, 1, 1) << 0 << 2.0 << QSize(320, 240);
    QTest::newRow("half") << QRectF(0, 0, 0.5, 0.5) << 0 << 1.0 << QSize(320, 240);
    QTest::newRow("turned") << QRectF(0, 0, 1, 1) << 270 << 1.0 << QSize(120, 160);
    QTest::newRow("speck") << QRectF(0, 0, 1e-9, 1) << 0 << 1.0 << QSize(20000, 120);
}

void tst_NyBookRenderer::asksForThePixelsItNeeds()
{
    QFETCH(QRectF, crop);
    QFETCH(int, rotation);
    QFETCH(double, ratio);
    NyPlacedFoto foto = photo(QRectF(0, 0, 80, 60));
    foto.crop = crop;
    foto.rotationDegrees = rotation;
    QTEST(NyBookRenderer::boxPx(foto, QSizeF(160, 120), ratio), "box");
}

void tst_NyBookRenderer::missingAndLoading()
{
    NyBookPage page;
    page.photos = {photo(QRectF(100, 60, 80, 60))};
    const QImage missing = paint(page, NyBookRenderer::PageKind::Inner, [](const QUrl &, const QSize &) { return Picture(); });
    QCOMPARE(missing.pixelColor(206, 126), QColor(0xdc, 0xdc, 0xdc));
    int dark = 0;
    for (int y = 122; y < 238; ++y) {
        for (int x = 202; x < 358; ++x)
            dark += missing.pixelColor(x, y).lightness() < 130 ? 1 : 0;
    }
    QVERIFY2(dark > 40, "the file's name is not written");
    const QImage loading = paint(page, NyBookRenderer::PageKind::Inner, [](const QUrl &, const QSize &) {
        return Picture{Picture::State::Loading, QImage()};
    });
    QVERIFY(loading.pixelColor(280, 180) != testStyle().pageBackground);
    QVERIFY(loading.pixelColor(280, 180) != missing.pixelColor(206, 126));
}

void tst_NyBookRenderer::textIsDrawnInsideItsRectangle_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("short") << u"Toskana"_s;
    QTest::newRow("long") << u"Eine sehr lange Reise mit der ganzen Familie durch die Toskana und weiter nach Rom"_s;
    QTest::newRow("one long word") << u"Donaudampfschifffahrtsgesellschaftskapitänsausflug"_s;
    // Nobody's title is longer.
    QTest::newRow("as long as can be")
        << u"Sommerurlaub an der Ostsee mit Oma Helga, Opa Karl-Heinz und dem Hund Balduin, "_s.repeated(3).left(200);
    QTest::newRow("wide letters") << u"WWWWWWW MMMMMMMM "_s.repeated(12).left(200);
    QTest::newRow("one word as long as can be") << u"Donaudampfschifffahrtsgesellschaft"_s.repeated(6).left(200);
    QTest::newRow("markup and percent") << u"<b>100%</b> %1 & \"mehr\""_s;
    QTest::newRow("other scripts") << u"東京 – Αθήνα – Москва"_s;
}

void tst_NyBookRenderer::textIsDrawnInsideItsRectangle()
{
    QFETCH(QString, text);
    NyBookPage page;
    NyBookText title;
    title.role = NyBookText::Role::Title;
    title.text = text;
    title.rectMm = QRectF(40, 100, 200, 24);
    title.fontSizePt = 34;
    page.texts = {title};
    const QImage image = paint(page, NyBookRenderer::PageKind::Cover, [](const QUrl &, const QSize &) { return Picture(); });
    int inside = 0;
    int outside = 0;
    // Accents and descenders may reach a little over.
    const QRect allowed(76, 194, 408, 60);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != testStyle().coverBackground)
                ++(allowed.contains(x, y) ? inside : outside);
        }
    }
    QVERIFY(inside > 100);
    QCOMPARE(outside, 0);
    // Nothing is cut off either: what does not fit is painted, but outside.
    const QRectF rect(80, 200, 400, 48);
    const QRectF words = NyBookRenderer(testStyle(), {}).wordsRect(title, rect, 2);
    QVERIFY2(rect.adjusted(-1, -1, 1, 1).contains(words), qPrintable(QDebug::toString(words)));
}

void tst_NyBookRenderer::asksOnlyForWhatTheClipShows()
{
    NyBookPage page;
    page.photos = {photo(QRectF(10, 10, 80, 60)), photo(QRectF(150, 10, 80, 60)), photo(QRectF(10, 120, 80, 60))};
    page.photos[1].url = QUrl(u"file:///p/b.jpg"_s);
    page.photos[2].url = QUrl(u"file:///p/c.jpg"_s);
    QStringList asked;
    const auto source = [&](const QUrl &url, const QSize &box) {
        asked.append(url.fileName());
        return Picture{Picture::State::Ready, fourFields(box)};
    };
    const QImage whole = paint(page, NyBookRenderer::PageKind::Inner, source);
    QCOMPARE(asked, (QStringList{u"a.jpg"_s, u"b.jpg"_s, u"c.jpg"_s}));
    asked.clear();
    // The second photo's middle; two pixels are a millimetre.
    const QRect clip(360, 60, 40, 40);
    QImage part(whole.size(), QImage::Format_RGB32);
    part.fill(Qt::black);
    QPainter painter(&part);
    painter.setClipRect(clip);
    const NyBookRenderer renderer(testStyle(), source);
    renderer.paint(painter, page, NyBookRenderer::PageKind::Inner, QSizeF(280, 210), QRectF(part.rect()), 1.0);
    painter.end();
    QCOMPARE(asked, QStringList{u"b.jpg"_s});
    QCOMPARE(part.copy(clip), whole.copy(clip));
    QCOMPARE(part.pixelColor(100, 60), QColor(Qt::black));
}

void tst_NyBookRenderer::interimPictureIsPaintedAsItIs()
{
    // One white column in eight: painted smaller with care it is grey, without it stays white or black.
    QImage columns(1280, 960, QImage::Format_RGB32);
    columns.fill(Qt::black);
    for (int x = 0; x < columns.width(); x += 8) {
        for (int y = 0; y < columns.height(); ++y)
            columns.setPixelColor(x, y, Qt::white);
    }
    NyBookPage page;
    page.photos = {photo(QRectF(20, 20, 80, 60))};
    const auto lightest = [&](bool isInterim) {
        const QImage image = paint(page, NyBookRenderer::PageKind::Inner, [&](const QUrl &, const QSize &) {
            return Picture{Picture::State::Ready, columns, isInterim};
        });
        int result = 0;
        for (int x = 60; x < 180; ++x)
            result = std::max(result, qGray(image.pixel(x, 100)));
        return result;
    };
    QVERIFY(lightest(false) < 80);
    QVERIFY(lightest(false) > 10);
    QVERIFY(lightest(true) > 80 || lightest(true) < 10);
}

void tst_NyBookRenderer::tellsWhereTheWordsAre()
{
    const NyBookRenderer renderer(testStyle(), [](const QUrl &, const QSize &) { return Picture(); });
    const QRectF rect(40, 40, 480, 60);
    NyBookText text{NyBookText::Role::Title, u"Rom"_s, {}, 18};
    const QRectF middle = renderer.wordsRect(text, rect, 2);
    QVERIFY(rect.contains(middle));
    QVERIFY(middle.width() < 120);
    QVERIFY(std::abs(middle.center().x() - rect.center().x()) < 2);
    text.alignment = Qt::AlignLeft;
    QVERIFY(std::abs(renderer.wordsRect(text, rect, 2).left() - rect.left()) < 2);
    text.text = u" \n"_s;
    QVERIFY(renderer.wordsRect(text, rect, 2).isEmpty());
}

void tst_NyBookRenderer::coverImage()
{
    NyBookProject project;
    const QImage image = NyBookRenderer::coverImage(project, testStyle(), 480);
    QCOMPARE(image.size(), QSize(480, 360));
    QCOMPARE(image.pixelColor(240, 180), testStyle().coverBackground);
}

QTEST_MAIN(tst_NyBookRenderer)
#include "tst_NyBookRenderer.moc"
