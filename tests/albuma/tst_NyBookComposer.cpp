#include <QMap>
#include <QTest>

#include "ComposedBooks.h"
#include "NyBookComposer.h"
#include "NyBookGeometry.h"
#include "NyPageLayout.h"

using namespace Qt::Literals::StringLiterals;

using namespace ComposedBooks;

class tst_NyBookComposer : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void everyPhotoOnceAndInOrder_data();
    void everyPhotoOnceAndInOrder();
    void aboutFourPhotosOnASpread();
    void rhythmVaries();
    void pagesAreEvenWhereDaysAllow();
    void heroesStandOut();
    void headingsOnlyForSeveralDays();
    void coverTakesTheStrongestSharpPhoto();
    void coverTextNeverOverThePhoto();
    void lowResolutionIsCounted();
    void noPhotosGiveNoPages();
};

void tst_NyBookComposer::everyPhotoOnceAndInOrder_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("days");
    QTest::addColumn<int>("mix");
    for (const Mix mix : {Mix::Landscape, Mix::Mixed, Mix::Wild, Mix::LowResolution}) {
        for (const int count : {1, 2, 3, 4, 5, 7, 12, 53, 160, 250}) {
            for (const int days : {1, 3, 30}) {
                if (days <= count)
                    QTest::addRow("%d photos, %d days, mix %d", count, days, int(mix)) << count << days << int(mix);
            }
        }
    }
}

void tst_NyBookComposer::everyPhotoOnceAndInOrder()
{
    QFETCH(int, count);
    QFETCH(int, days);
    QFETCH(int, mix);
    const QList<NyFotoFacts> facts = photos(count, days, Mix(mix));
    const NyBookProject project = book(facts);
    const double margin = NyBookGeometry::MarginMm;
    const QRectF inside = QRectF(QPointF(0, 0), project.pageSizeMm).adjusted(margin, margin, -margin, -margin);
    constexpr double slack = 1e-6;
    qsizetype next = 0;
    for (const NyBookPage &page : project.pages) {
        QVERIFY(!page.photos.isEmpty() && page.photos.size() <= NyPageLayout::MaximumPhotos);
        QSet<QDate> daysOnPage;
        QList<QRectF> taken;
        for (const NyBookText &text : page.texts) {
            QVERIFY(inside.adjusted(-slack, -slack, slack, slack).contains(text.rectMm));
            taken.append(text.rectMm);
        }
        const bool newDay = next == 0 || facts.at(next).captureTime.date() != facts.at(next - 1).captureTime.date();
        QCOMPARE(page.texts.size(), days > 1 && newDay ? 1 : 0);
        for (const NyPlacedFoto &foto : page.photos) {
            QCOMPARE(foto.url, facts.at(next).url);
            daysOnPage.insert(facts.at(next).captureTime.date());
            ++next;
            QVERIFY(inside.adjusted(-slack, -slack, slack, slack).contains(foto.rectMm));
            QVERIFY(std::abs(foto.rectMm.width() / foto.rectMm.height() / foto.shownAspectRatio() - 1) < 0.005);
            QVERIFY(foto.printedDpi() >= NyPageLayout::MinimumDpi - slack);
            QCOMPARE(foto.crop, QRectF(0, 0, 1, 1));
            for (const QRectF &other : std::as_const(taken))
                QVERIFY(!other.adjusted(slack, slack, -slack, -slack).intersects(foto.rectMm));
            taken.append(foto.rectMm);
        }
        QCOMPARE(daysOnPage.size(), 1);
    }
    QCOMPARE(next, facts.size());
    QVERIFY(project.cover.photos.first().printedDpi() >= NyPageLayout::MinimumDpi - slack);
}

void tst_NyBookComposer::aboutFourPhotosOnASpread()
{
    for (const Mix mix : {Mix::Landscape, Mix::Mixed}) {
        for (const int count : {60, 120, 160}) {
            const NyBookProject project = book(photos(count, 5, mix));
            const double perSpread = 2.0 * count / double(project.pages.size());
            QVERIFY2(perSpread > 3.3 && perSpread < 5.0, qPrintable(QString::number(perSpread)));
        }
    }
}

void tst_NyBookComposer::rhythmVaries()
{
    const NyBookProject project = book(photos(120, 2, Mix::Mixed));
    QMap<qsizetype, int> frequency;
    qsizetype run = 1;
    qsizetype longestRun = 1;
    for (qsizetype i = 0; i < project.pages.size(); ++i) {
        ++frequency[project.pages.at(i).photos.size()];
        run = i > 0 && project.pages.at(i).photos.size() == project.pages.at(i - 1).photos.size() ? run + 1 : 1;
        longestRun = std::max(longestRun, run);
    }
    QVERIFY(frequency.size() >= 3);
    QVERIFY2(longestRun <= 3, qPrintable(QString::number(longestRun)));
}

void tst_NyBookComposer::pagesAreEvenWhereDaysAllow()
{
    for (int count = 4; count <= 40; ++count)
        QVERIFY2(book(photos(count, 1, Mix::Landscape)).pages.size() % 2 == 0, qPrintable(QString::number(count)));
}

void tst_NyBookComposer::heroesStandOut()
{
    QList<NyFotoFacts> facts = photos(40, 1, Mix::Landscape);
    for (NyFotoFacts &fact : facts)
        fact.sharpness = fact.exposure = 0.3;
    facts[20].sharpness = facts[20].exposure = 1;
    const NyBookProject project = book(facts);
    double heroWidth = 0;
    double widest = 0;
    for (const NyBookPage &page : project.pages) {
        for (const NyPlacedFoto &foto : page.photos) {
            widest = std::max(widest, foto.rectMm.width());
            if (foto.url == facts.at(20).url)
                heroWidth = foto.rectMm.width();
        }
    }
    QCOMPARE(heroWidth, widest);
    QVERIFY(heroWidth > 200);
}

void tst_NyBookComposer::headingsOnlyForSeveralDays()
{
    const auto headings = [](const NyBookProject &project) {
        QStringList words;
        for (const NyBookPage &page : project.pages) {
            for (const NyBookText &text : page.texts)
                words.append(text.text);
        }
        return words;
    };
    QCOMPARE(headings(book(photos(10, 1, Mix::Landscape))), QStringList());
    QCOMPARE(headings(book(photos(10, 2, Mix::Landscape))), QStringList({u"Montag, 1. Juli 2024"_s, u"Dienstag, 2. Juli 2024"_s}));
}

void tst_NyBookComposer::coverTakesTheStrongestSharpPhoto()
{
    QList<NyFotoFacts> facts = photos(3, 1, Mix::Landscape);
    facts[0].sharpness = 0.2;
    facts[0].exposure = 1;
    facts[0].colorfulness = 1;
    facts[0].rating = 1;
    facts[1].sharpness = 0.6;
    facts[1].exposure = 0.2;
    facts[2].sharpness = 0.5;
    facts[2].exposure = 0.2;
    QCOMPARE(NyBookComposer::coverPhoto(facts), 1);
    for (NyFotoFacts &fact : facts)
        fact.sharpness = 0.1;
    QCOMPARE(NyBookComposer::coverPhoto(facts), 0);
    QCOMPARE(book(facts).cover.photos.first().url, facts.first().url);
}

void tst_NyBookComposer::coverTextNeverOverThePhoto()
{
    for (const QSize &size : {QSize(4000, 3000), QSize(3000, 4000), QSize(10000, 1000), QSize(1000, 10000), QSize(64, 64)}) {
        QList<NyFotoFacts> facts = photos(1, 1, Mix::Landscape);
        facts[0].sizePx = size;
        const NyBookProject project = book(facts);
        const QRectF paper(QPointF(0, 0), project.pageSizeMm);
        const QRectF photo = project.cover.photos.first().rectMm;
        QVERIFY(paper.contains(photo));
        QCOMPARE(project.cover.texts.size(), 2);
        for (const NyBookText &text : project.cover.texts) {
            QVERIFY(paper.contains(text.rectMm));
            QVERIFY(!text.rectMm.intersects(photo));
        }
    }
}

void tst_NyBookComposer::lowResolutionIsCounted()
{
    QCOMPARE(NyBookComposer::lowResolutionCount(book(photos(12, 1, Mix::Landscape))), 0);
    QList<NyFotoFacts> facts = photos(1, 1, Mix::Landscape);
    facts[0].sizePx = QSize(320, 240);
    QCOMPARE(NyBookComposer::lowResolutionCount(book(facts)), 1);
}

void tst_NyBookComposer::noPhotosGiveNoPages()
{
    const NyBookProject project = book({});
    QVERIFY(project.pages.isEmpty());
    QVERIFY(project.cover.photos.isEmpty());
}

QTEST_GUILESS_MAIN(tst_NyBookComposer)
#include "tst_NyBookComposer.moc"
