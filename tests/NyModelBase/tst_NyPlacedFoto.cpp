#include <QTest>

#include "NyBookProject.h"

using namespace Qt::Literals::StringLiterals;

class tst_NyPlacedFoto : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void printedDpi();
    void printedDpiOfTurnedAndCropped();
    void unknownSize();
    void countsOfABook();
    void placesInABook();
};

void tst_NyPlacedFoto::printedDpi()
{
    NyPlacedFoto foto;
    foto.rectMm = QRectF(0, 0, 254, 127);
    foto.sizePx = QSize(3000, 1500);
    QCOMPARE(foto.printedDpi(), 300.0);
    QCOMPARE(foto.shownAspectRatio(), 2.0);
    foto.rectMm = QRectF(0, 0, 254, 254);
    QCOMPARE(foto.printedDpi(), 150.0);
}

void tst_NyPlacedFoto::printedDpiOfTurnedAndCropped()
{
    NyPlacedFoto foto;
    foto.rectMm = QRectF(10, 10, 127, 254);
    foto.sizePx = QSize(3000, 1500);
    foto.rotationDegrees = 270;
    QCOMPARE(foto.printedDpi(), 300.0);
    QCOMPARE(foto.shownAspectRatio(), 0.5);
    foto.crop = QRectF(0.25, 0, 0.5, 1);
    QCOMPARE(foto.printedDpi(), 150.0);
    QCOMPARE(foto.shownAspectRatio(), 0.25);
    QCOMPARE(foto.shownSizePx(), QSizeF(750, 3000));
}

void tst_NyPlacedFoto::unknownSize()
{
    NyPlacedFoto foto;
    QCOMPARE(foto.printedDpi(), 0.0);
    foto.rectMm = QRectF(0, 0, 10, 10);
    QCOMPARE(foto.printedDpi(), 0.0);
    QCOMPARE(foto.shownAspectRatio(), 0.0);
    QVERIFY(foto.shownSizePx().isEmpty());
}

void tst_NyPlacedFoto::countsOfABook()
{
    NyBookProject project;
    QCOMPARE(project.spreadCount(), 1);
    QCOMPARE(project.photoCount(), 0);
    NyPlacedFoto a, b;
    a.url = QUrl(u"file:///a.jpg"_s);
    b.url = QUrl(u"file:///b.jpg"_s);
    project.cover.photos = {b};
    project.pages = {NyBookPage{{a}, {}}};
    QCOMPARE(project.spreadCount(), 2);
    project.pages.append(NyBookPage{{a, b}, {}});
    QCOMPARE(project.spreadCount(), 2);
    project.pages.append(NyBookPage());
    QCOMPARE(project.spreadCount(), 3);
    QCOMPARE(project.photoCount(), 3);
    QCOMPARE(project.photoUrls(), QList<QUrl>({b.url, a.url}));
}

void tst_NyPlacedFoto::placesInABook()
{
    NyBookProject project;
    NyPlacedFoto a, b;
    a.url = QUrl(u"file:///a.jpg"_s);
    b.url = QUrl(u"file:///b.jpg"_s);
    project.cover.photos = {b};
    project.pages = {NyBookPage(), NyBookPage{{b, a}, {}}};
    QCOMPARE(project.page(NyBookPlace::Cover), &project.cover);
    QCOMPARE(project.page(1), &project.pages.at(1));
    QCOMPARE(project.page(2), nullptr);
    QCOMPARE(project.page(-2), nullptr);
    QCOMPARE(project.photo({NyBookPlace::Cover, 0})->url, b.url);
    QCOMPARE(project.photo({1, 1})->url, a.url);
    QCOMPARE(project.photo({1, 2}), nullptr);
    QCOMPARE(project.photo({1, -1}), nullptr);
    QCOMPARE(project.photo({0, 0}), nullptr);
    QCOMPARE(project.photo({7, 0}), nullptr);
}

QTEST_GUILESS_MAIN(tst_NyPlacedFoto)
#include "tst_NyPlacedFoto.moc"
