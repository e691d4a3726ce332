#include <QRandomGenerator>
#include <QTest>

#include <NyBookProjectFile.h>

#include "ComposedBooks.h"
#include "NyBookEditor.h"
#include "NyBookGeometry.h"
#include "NyPageLayout.h"

using namespace Qt::Literals::StringLiterals;
using namespace ComposedBooks;

namespace
{

constexpr double SLACK = 1e-6;

QUrl picture(const QString &name)
{
    return QUrl(u"file:///neu/"_s + name);
}

NyPlacedFoto placed(int number, const QRectF &rectMm, const QSize &sizePx = QSize(4000, 3000))
{
    NyPlacedFoto foto;
    foto.url = QUrl(u"file:///p/%1.jpg"_s.arg(number));
    foto.rectMm = rectMm;
    foto.sizePx = sizePx;
    return foto;
}

QList<QRectF> rects(const NyBookPage &page)
{
    QList<QRectF> list;
    for (const NyPlacedFoto &foto : page.photos)
        list.append(foto.rectMm);
    return list;
}

/** A book with one page of these photos. */
NyBookProject bookOf(const QList<NyPlacedFoto> &photos, const QList<NyBookText> &texts = {})
{
    NyBookProject project = book(ComposedBooks::photos(1, 1, Mix::Landscape));
    project.pages = {NyBookPage{photos, texts}};
    return project;
}

NyBookText text(NyBookText::Role role, const QRectF &rectMm)
{
    NyBookText result;
    result.role = role;
    result.text = u"Wörter"_s;
    result.rectMm = rectMm;
    return result;
}

/** The first page with that many photos; -1 if there is none. */
int pageWith(const NyBookProject &project, qsizetype count)
{
    for (int i = 0; i < project.pages.size(); ++i) {
        if (project.pages.at(i).photos.size() == count)
            return i;
    }
    return -1;
}

/** What is wrong with a page that the program has laid out; empty if nothing is. */
QString fault(const NyBookPage &page, const QRectF &areaMm)
{
    QList<QRectF> taken;
    for (const NyBookText &words : page.texts)
        taken.append(words.rectMm);
    for (const NyPlacedFoto &foto : page.photos) {
        if (!areaMm.adjusted(-SLACK, -SLACK, SLACK, SLACK).contains(foto.rectMm))
            return u"outside: "_s + foto.url.toString();
        if (foto.printedDpi() < NyPageLayout::MinimumDpi - SLACK)
            return u"too few pixels: "_s + foto.url.toString();
        if (std::abs(foto.rectMm.width() / foto.rectMm.height() / foto.shownAspectRatio() - 1) > SLACK)
            return u"distorted: "_s + foto.url.toString();
        for (const QRectF &other : std::as_const(taken)) {
            if (other.adjusted(SLACK, SLACK, -SLACK, -SLACK).intersects(foto.rectMm))
                return u"overlaps: "_s + foto.url.toString();
        }
        taken.append(foto.rectMm);
    }
    return {};
}

}

class tst_NyBookEditor : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void titleBecomes_data();
    void titleBecomes();
    void subtitleComesAndGoes();
    void wordsThatStayAreNotTouched();
    void wordsOnCoversOfOthers();
    void whatCanBeRemoved();
    void removedPhotoLeavesItsRoom();
    void headingMovesOn();
    void headingGoesWithTheDay();
    void headingFindsRoomOnAnyPage();
    void pagesOfOthersStayAsTheyAre_data();
    void pagesOfOthersStayAsTheyAre();
    void sameShapeStaysInPlace();
    void otherShapeIsLaidOutAnew();
    void replacementIsWholeAndUnturned();
    void turnedAndCutPhotosKeepTheirShape();
    void moreOrFewerPixels();
    void coverPhotoIsReplaced();
    void shapesThatCannotShareAPage();
    void refusesWhatNoBookHolds_data();
    void refusesWhatNoBookHolds();
    void anyEditsKeepBooksSound_data();
    void anyEditsKeepBooksSound();
};

void tst_NyBookEditor::titleBecomes_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");
    const QString old = u"Titel"_s;
    const QString longest(NyBookEditor::LongestText, u'x');
    QTest::newRow("words") << u"Unser Sommer"_s << u"Unser Sommer"_s;
    QTest::newRow("nothing") << QString() << old;
    QTest::newRow("blanks") << u" \t\u00a0\u2003 "_s << old;
    QTest::newRow("invisible") << u"\u200b\u200e"_s << old;
    QTest::newRow("line feeds alone") << u"\n\r\n"_s << old;
    QTest::newRow("around") << u"  Rom \n"_s << u"Rom"_s;
    QTest::newRow("lines") << u"Rom\nund\r\nOstia\u2028am Meer"_s << u"Rom und Ostia am Meer"_s;
    QTest::newRow("control characters") << (u"a"_s + QChar(0) + u"b\x7f"_s + u'c') << u"a b c"_s;
    QTest::newRow("markup") << u"<b>100%1</b> & \"mehr\""_s << u"<b>100%1</b> & \"mehr\""_s;
    QTest::newRow("longest") << longest << longest;
    QTest::newRow("longer") << longest + u'y' << longest;
    QTest::newRow("half a character at the end") << longest.chopped(1) + QString::fromUcs4(U"\U0001F4F7") << longest.chopped(1);
    QTest::newRow("half a character") << u"a"_s + QChar(0xd83d) + u'b' << u"a?b"_s;
}

void tst_NyBookEditor::titleBecomes()
{
    QFETCH(QString, typed);
    QFETCH(QString, expected);
    const QList<NyFotoFacts> facts = photos(7, 2, Mix::Mixed);
    const NyBookProject after = NyBookEditor::withWords(book(facts), typed, u"Juli 2024"_s);
    QCOMPARE(after.title, expected);
    QVERIFY(after == book(facts, expected));
    QVERIFY(NyBookProjectFile::fromJson(NyBookProjectFile::toJson(after), {}).project == after);
}

void tst_NyBookEditor::subtitleComesAndGoes()
{
    const QList<NyFotoFacts> facts = photos(7, 2, Mix::Mixed);
    const NyBookProject with = book(facts);
    const NyBookProject without = book(facts, u"Titel"_s, QString());
    QCOMPARE(with.cover.texts.size(), 2);
    QCOMPARE(without.cover.texts.size(), 1);
    QVERIFY(NyBookEditor::withWords(without, u"Titel"_s, u" Juli\n2024 "_s) == with);
    QVERIFY(NyBookEditor::withWords(with, u"Titel"_s, QString()) == without);
    QVERIFY(NyBookEditor::withWords(with, u"Titel"_s, u" \n"_s) == without);
    QVERIFY(NyBookEditor::withWords(with, u"Rom"_s, u"Ostia"_s) == book(facts, u"Rom"_s, u"Ostia"_s));
    QCOMPARE(NyBookEditor::withWords(with, u"Rom"_s, QString(500, u'z')).subtitle.size(), NyBookEditor::LongestText);
}

void tst_NyBookEditor::wordsThatStayAreNotTouched()
{
    NyBookProject project = book(photos(3, 1, Mix::Landscape));
    project.title = u"von anderen,\nviel zu lang: "_s + QString(5000, u'x');
    project.cover.texts[0].text = u"auf dem Einband kürzer"_s;
    const NyBookProject after = NyBookEditor::withWords(project, project.title, u"neu"_s);
    QCOMPARE(after.title, project.title);
    QCOMPARE(after.cover.texts.at(0), project.cover.texts.at(0));
    QCOMPARE(after.subtitle, u"neu"_s);
    QVERIFY(NyBookEditor::withWords(project, project.title, project.subtitle) == project);
}

void tst_NyBookEditor::wordsOnCoversOfOthers()
{
    NyBookProject project = book(photos(3, 1, Mix::Landscape), u"Titel"_s, QString());
    project.cover.texts.clear();
    project.cover.photos[0].rectMm = QRectF(QPointF(0, 0), project.pageSizeMm);
    const NyBookProject filled = NyBookEditor::withWords(project, u"Rom"_s, u"Ostia"_s);
    QCOMPARE(filled.title, u"Rom"_s);
    QCOMPARE(filled.subtitle, u"Ostia"_s);
    QVERIFY(filled.cover == project.cover);

    project.cover.photos.clear();
    project.pageSizeMm = QSizeF(100, 100);
    QVERIFY(NyBookEditor::withWords(project, u"Rom"_s, u"Ostia"_s).cover.texts.isEmpty());

    project.cover.texts = {text(NyBookText::Role::Subtitle, QRectF(1, 2, 3, 4)), text(NyBookText::Role::Title, QRectF(5, 6, 7, 8))};
    const NyBookProject named = NyBookEditor::withWords(project, u"Rom"_s, u"Ostia"_s);
    QCOMPARE(named.cover.texts.at(0).text, u"Ostia"_s);
    QCOMPARE(named.cover.texts.at(0).rectMm, QRectF(1, 2, 3, 4));
    QCOMPARE(named.cover.texts.at(1).text, u"Rom"_s);
}

void tst_NyBookEditor::whatCanBeRemoved()
{
    const NyBookProject project = book(photos(1, 1, Mix::Landscape));
    QVERIFY(NyBookEditor::canRemove(project, {0, 0}));
    for (const NyBookPlace place :
        {NyBookPlace{NyBookPlace::Cover, 0}, NyBookPlace{0, 1}, NyBookPlace{0, -1}, NyBookPlace{1, 0}, NyBookPlace{-2, 0}}) {
        QVERIFY(!NyBookEditor::canRemove(project, place));
        QVERIFY(NyBookEditor::withoutPhoto(project, place) == project);
    }
    const NyBookProject empty = NyBookEditor::withoutPhoto(project, {0, 0});
    QVERIFY(empty.pages.isEmpty());
    QVERIFY(empty.cover == project.cover);
}

void tst_NyBookEditor::removedPhotoLeavesItsRoom()
{
    const NyBookProject project = book(photos(40, 1, Mix::Landscape));
    const int page = pageWith(project, 3);
    QVERIFY(page >= 0);
    const NyBookProject after = NyBookEditor::withoutPhoto(project, {page, 1});
    QCOMPARE(after.pages.size(), project.pages.size());
    const QList<NyPlacedFoto> &left = after.pages.at(page).photos;
    QCOMPARE(left.size(), 2);
    QCOMPARE(left.at(0).url, project.pages.at(page).photos.at(0).url);
    QCOMPARE(left.at(1).url, project.pages.at(page).photos.at(2).url);
    const NyPageLayout::Result expected = NyPageLayout::arrange(
        {{QSize(4032, 3024), false}, {QSize(4032, 3024), false}}, NyBookGeometry::pageArea(project.pageSizeMm), NyBookGeometry::GapMm);
    QCOMPARE(rects(after.pages.at(page)), expected.rectsMm);
    for (int other = 0; other < project.pages.size(); ++other)
        QVERIFY(other == page || after.pages.at(other) == project.pages.at(other));
}

void tst_NyBookEditor::headingMovesOn()
{
    NyBookProject project = book(photos(12, 2, Mix::Landscape));
    project.pages[0].photos.resize(1);
    QVERIFY(project.pages.at(1).texts.isEmpty());
    // Smaller than they could be, so that laying them out anew differs from shrinking them.
    project.pages[1].photos = {placed(1, QRectF(20, 60, 80, 60)), placed(2, QRectF(120, 60, 80, 60)), placed(3, QRectF(20, 130, 80, 60))};
    const NyBookProject after = NyBookEditor::withoutPhoto(project, {0, 0});
    QCOMPARE(after.pages.size(), project.pages.size() - 1);
    QCOMPARE(after.pages.at(0).texts, project.pages.at(0).texts);
    QRectF below = NyBookGeometry::pageArea(project.pageSizeMm);
    below.setTop(below.top() + NyBookGeometry::HeadingMm);
    const QList<NyLayoutFoto> shapes(3, {QSize(4000, 3000), false});
    QCOMPARE(rects(after.pages.at(0)), NyPageLayout::arrange(shapes, below, NyBookGeometry::GapMm).rectsMm);
    QCOMPARE(after.pages.mid(1), project.pages.mid(2));
}

void tst_NyBookEditor::headingGoesWithTheDay()
{
    const NyBookProject project = book(photos(3, 3, Mix::Landscape));
    QCOMPARE(project.pages.size(), 3);
    const NyBookProject withoutSecond = NyBookEditor::withoutPhoto(project, {1, 0});
    QCOMPARE(withoutSecond.pages, QList<NyBookPage>({project.pages.at(0), project.pages.at(2)}));
    const NyBookProject withoutLast = NyBookEditor::withoutPhoto(project, {2, 0});
    QCOMPARE(withoutLast.pages, project.pages.mid(0, 2));
}

void tst_NyBookEditor::headingFindsRoomOnAnyPage()
{
    NyBookProject project = book(photos(2, 2, Mix::Landscape));
    const NyBookText heading = project.pages.at(0).texts.at(0);
    const NyBookPage free{{placed(5, QRectF(0, 100, 280, 110))}, {}};
    project.pages[1] = free;
    QCOMPARE(NyBookEditor::withoutPhoto(project, {0, 0}).pages, QList<NyBookPage>({NyBookPage{free.photos, {heading}}}));
    const NyBookPage full{{placed(5, QRectF(0, 0, 280, 210))}, {}};
    project.pages[1] = full;
    QCOMPARE(NyBookEditor::withoutPhoto(project, {0, 0}).pages, QList<NyBookPage>({full}));
    const NyBookPage words{{}, {text(NyBookText::Role::Title, QRectF(20, 100, 200, 20))}};
    project.pages[1] = words;
    QCOMPARE(NyBookEditor::withoutPhoto(project, {0, 0}).pages, QList<NyBookPage>({NyBookPage{{}, {heading, words.texts.at(0)}}}));
}

void tst_NyBookEditor::pagesOfOthersStayAsTheyAre_data()
{
    QTest::addColumn<NyBookProject>("project");
    const QList<NyPlacedFoto> pair{placed(0, QRectF(20, 60, 80, 60)), placed(1, QRectF(120, 60, 80, 60))};
    QList<NyPlacedFoto> seven;
    for (int i = 0; i < 7; ++i)
        seven.append(placed(i, QRectF(15 + 36 * i, 60, 32, 24)));
    const auto with = [&](const NyPlacedFoto &foto) { return QList<NyPlacedFoto>{pair.at(0), pair.at(1), foto}; };
    NyPlacedFoto unknownSize = placed(2, QRectF(20, 140, 40, 30), QSize());
    NyPlacedFoto distorted = placed(2, QRectF(20, 140, 60, 30));
    QTest::newRow("seven photos") << bookOf(seven);
    QTest::newRow("over the edge") << bookOf(with(placed(2, QRectF(-10, 140, 40, 30))));
    QTest::newRow("in the margin") << bookOf(with(placed(2, QRectF(5, 140, 40, 30))));
    QTest::newRow("overlapping") << bookOf(with(placed(2, QRectF(50, 80, 40, 30))));
    QTest::newRow("few pixels") << bookOf(with(placed(2, QRectF(20, 140, 40, 30), QSize(160, 120))));
    QTest::newRow("unknown size") << bookOf(with(unknownSize));
    QTest::newRow("distorted") << bookOf(with(distorted));
    QTest::newRow("caption") << bookOf(pair, {text(NyBookText::Role::Caption, QRectF(20, 125, 80, 10))});
    QTest::newRow("heading over a photo") << bookOf(pair, {text(NyBookText::Role::DayHeading, QRectF(20, 60, 80, 10))});
    NyBookProject tiny = bookOf(pair);
    tiny.pageSizeMm = QSizeF(20, 20);
    QTest::newRow("page without room") << tiny;
}

void tst_NyBookEditor::pagesOfOthersStayAsTheyAre()
{
    QFETCH(NyBookProject, project);
    const NyBookPage &before = project.pages.at(0);
    const NyBookPage removed = NyBookEditor::withoutPhoto(project, {0, 1}).pages.at(0);
    NyBookPage expected = before;
    expected.photos.removeAt(1);
    QCOMPARE(removed, expected);

    const NyBookPage replaced = NyBookEditor::withPhoto(project, {0, 1}, picture(u"a.jpg"_s), QSize(3000, 4000)).pages.at(0);
    expected = before;
    expected.photos[1] = replaced.photos.at(1);
    QCOMPARE(replaced, expected);
    const QRectF rect = replaced.photos.at(1).rectMm;
    QVERIFY(before.photos.at(1).rectMm.adjusted(-SLACK, -SLACK, SLACK, SLACK).contains(rect));
    QVERIFY(std::abs(rect.width() / rect.height() - 0.75) < SLACK);
}

void tst_NyBookEditor::sameShapeStaysInPlace()
{
    const NyBookProject project = book(photos(40, 1, Mix::Landscape));
    const int page = pageWith(project, 3);
    const QList<QRectF> before = rects(project.pages.at(page));
    const NyBookProject same = NyBookEditor::withPhoto(project, {page, 1}, picture(u"a.jpg"_s), QSize(8064, 6048));
    QCOMPARE(rects(same.pages.at(page)), before);
    QCOMPARE(same.pages.at(page).photos.at(1).url, picture(u"a.jpg"_s));
    QCOMPARE(same.pages.at(page).photos.at(1).sizePx, QSize(8064, 6048));

    const NyBookProject nearly = NyBookEditor::withPhoto(project, {page, 1}, picture(u"a.jpg"_s), QSize(4032, 2960));
    const QRectF rect = nearly.pages.at(page).photos.at(1).rectMm;
    QVERIFY(std::abs(rect.width() - before.at(1).width()) < SLACK);
    QCOMPARE(rect.center(), before.at(1).center());
    QCOMPARE(fault(nearly.pages.at(page), NyBookGeometry::pageArea(project.pageSizeMm)), QString());
    QCOMPARE(nearly.pages.at(page).photos.at(0), project.pages.at(page).photos.at(0));
    QCOMPARE(nearly.pages.at(page).photos.at(2), project.pages.at(page).photos.at(2));
}

void tst_NyBookEditor::otherShapeIsLaidOutAnew()
{
    const NyBookProject project = book(photos(40, 1, Mix::Landscape));
    const int page = pageWith(project, 2);
    const NyBookPage after = NyBookEditor::withPhoto(project, {page, 0}, picture(u"a.jpg"_s), QSize(3024, 4032)).pages.at(page);
    const NyPageLayout::Result expected = NyPageLayout::arrange(
        {{QSize(3024, 4032), false}, {QSize(4032, 3024), false}}, NyBookGeometry::pageArea(project.pageSizeMm), NyBookGeometry::GapMm);
    QCOMPARE(rects(after), expected.rectsMm);
}

void tst_NyBookEditor::replacementIsWholeAndUnturned()
{
    NyPlacedFoto old = placed(0, QRectF(40, 40, 60, 90));
    old.rotationDegrees = 90;
    old.crop = QRectF(0.25, 0, 0.5, 0.5625);
    const NyBookProject project = bookOf({old});
    const NyPlacedFoto after = NyBookEditor::withPhoto(project, {0, 0}, picture(u"a.jpg"_s), QSize(2000, 3000)).pages.at(0).photos.at(0);
    QCOMPARE(after.rotationDegrees, 0);
    QCOMPARE(after.crop, QRectF(0, 0, 1, 1));
    QCOMPARE(after.rectMm, old.rectMm);
}

void tst_NyBookEditor::turnedAndCutPhotosKeepTheirShape()
{
    // Shown as a square of 1500 px and as an upright of 1500 x 2000 px.
    NyPlacedFoto cut = placed(0, QRectF(20, 40, 60, 60));
    cut.crop = QRectF(0.1, 0.2, 0.375, 0.5);
    NyPlacedFoto turned = placed(1, QRectF(90, 40, 45, 60), QSize(2000, 1500));
    turned.rotationDegrees = 270;
    const NyBookProject project = bookOf({cut, placed(2, QRectF(150, 40, 80, 60)), turned});
    const NyBookPage after = NyBookEditor::withoutPhoto(project, {0, 1}).pages.at(0);
    QCOMPARE(after.photos.at(0).crop, cut.crop);
    QCOMPARE(after.photos.at(1).rotationDegrees, 270);
    const NyPageLayout::Result expected = NyPageLayout::arrange(
        {{QSize(1500, 1500), false}, {QSize(1500, 2000), false}}, NyBookGeometry::pageArea(project.pageSizeMm), NyBookGeometry::GapMm);
    QCOMPARE(rects(after), expected.rectsMm);
    QCOMPARE(fault(after, NyBookGeometry::pageArea(project.pageSizeMm)), QString());
}

void tst_NyBookEditor::moreOrFewerPixels()
{
    const NyBookProject project = book(photos(40, 1, Mix::Landscape));
    const int page = pageWith(project, 2);
    const NyBookPlace place{page, 1};
    const NyBookProject small = NyBookEditor::withPhoto(project, place, picture(u"a.jpg"_s), QSize(160, 120));
    const NyPlacedFoto shrunk = small.pages.at(page).photos.at(1);
    QVERIFY(std::abs(shrunk.printedDpi() - NyPageLayout::MinimumDpi) < SLACK);
    QCOMPARE(shrunk.rectMm.center(), project.photo(place)->rectMm.center());
    QCOMPARE(small.pages.at(page).photos.at(0), project.pages.at(page).photos.at(0));
    const NyBookProject large = NyBookEditor::withPhoto(small, place, picture(u"b.jpg"_s), QSize(4032, 3024));
    QCOMPARE(rects(large.pages.at(page)), rects(project.pages.at(page)));
}

void tst_NyBookEditor::coverPhotoIsReplaced()
{
    QList<NyFotoFacts> facts = photos(1, 1, Mix::Landscape);
    const NyBookProject project = book(facts);
    for (const QSize &size : {QSize(8064, 6048), QSize(3000, 4000), QSize(10000, 1000), QSize(64, 64)}) {
        facts[0].sizePx = size;
        const NyBookProject after = NyBookEditor::withPhoto(project, {NyBookPlace::Cover, 0}, facts.at(0).url, size);
        QVERIFY(after.cover == book(facts).cover);
        QVERIFY(after.pages == project.pages);
    }

    NyBookProject other = project;
    other.cover.photos[0].rectMm = QRectF(40, 60, 160, 120);
    const NyBookProject after = NyBookEditor::withPhoto(other, {NyBookPlace::Cover, 0}, picture(u"a.jpg"_s), QSize(3000, 4000));
    QCOMPARE(after.cover.photos.at(0).rectMm, QRectF(75, 60, 90, 120));

    NyBookProject low = project;
    low.pageSizeMm = QSizeF(280, 140);
    low.cover.photos[0].rectMm = QRectF(40, 20, 120, 90);
    low.cover.texts.clear();
    const NyBookProject lowAfter = NyBookEditor::withPhoto(low, {NyBookPlace::Cover, 0}, picture(u"a.jpg"_s), QSize(3000, 4000));
    QCOMPARE(lowAfter.cover.photos.at(0).rectMm, QRectF(66.25, 20, 67.5, 90));

    other.cover.photos.append(placed(3, QRectF(20, 20, 40, 30)));
    const NyBookPage two = NyBookEditor::withPhoto(other, {NyBookPlace::Cover, 1}, picture(u"a.jpg"_s), QSize(3000, 4000)).cover;
    QCOMPARE(two.photos.at(0), other.cover.photos.at(0));
    QCOMPARE(two.photos.at(1).rectMm, QRectF(28.75, 20, 22.5, 30));
}

void tst_NyBookEditor::shapesThatCannotShareAPage()
{
    const NyBookProject project = book(photos(40, 1, Mix::Landscape));
    const int page = pageWith(project, 3);
    const QSize thread(1'000'000, 1);
    QVERIFY(NyPageLayout::arrange({{QSize(4032, 3024), false}, {thread, false}, {QSize(4032, 3024), false}},
        NyBookGeometry::pageArea(project.pageSizeMm), NyBookGeometry::GapMm)
                .rectsMm.isEmpty());
    const NyBookProject after = NyBookEditor::withPhoto(project, {page, 1}, picture(u"a.png"_s), thread);
    QList<QRectF> expected = rects(project.pages.at(page));
    expected[1] = NyPageLayout::fitted(expected.at(1), thread);
    QCOMPARE(rects(after.pages.at(page)), expected);
    QVERIFY(NyBookProjectFile::fromJson(NyBookProjectFile::toJson(after), {}).project == after);
}

void tst_NyBookEditor::refusesWhatNoBookHolds_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<QSize>("sizePx");
    QTest::addColumn<NyBookPlace>("place");
    const NyBookPlace place{0, 0};
    QTest::newRow("no size") << picture(u"a.jpg"_s) << QSize() << place;
    QTest::newRow("no height") << picture(u"a.jpg"_s) << QSize(100, 0) << place;
    QTest::newRow("too wide") << picture(u"a.jpg"_s) << QSize(1'000'001, 10) << place;
    QTest::newRow("no address") << QUrl() << QSize(100, 100) << place;
    QTest::newRow("no whole address") << QUrl(u"a.jpg"_s) << QSize(100, 100) << place;
    QTest::newRow("no such page") << picture(u"a.jpg"_s) << QSize(100, 100) << NyBookPlace{99, 0};
    QTest::newRow("no such photo") << picture(u"a.jpg"_s) << QSize(100, 100) << NyBookPlace{NyBookPlace::Cover, 1};
}

void tst_NyBookEditor::refusesWhatNoBookHolds()
{
    QFETCH(QUrl, url);
    QFETCH(QSize, sizePx);
    QFETCH(NyBookPlace, place);
    const NyBookProject project = book(photos(3, 1, Mix::Landscape));
    QVERIFY(NyBookEditor::withPhoto(project, place, url, sizePx) == project);
}

void tst_NyBookEditor::anyEditsKeepBooksSound_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("days");
    QTest::addColumn<int>("mix");
    for (const Mix mix : {Mix::Landscape, Mix::Mixed, Mix::Wild, Mix::LowResolution}) {
        for (const int count : {1, 2, 5, 12, 53, 160}) {
            for (const int days : {1, 3, 30}) {
                if (days <= count)
                    QTest::addRow("%d photos, %d days, mix %d", count, days, int(mix)) << count << days << int(mix);
            }
        }
    }
}

void tst_NyBookEditor::anyEditsKeepBooksSound()
{
    QFETCH(int, count);
    QFETCH(int, days);
    QFETCH(int, mix);
    struct Expected
    {
        QUrl url;
        QDate day;
    };
    const QList<NyFotoFacts> facts = photos(count, days, Mix(mix));
    NyBookProject project = book(facts);
    const QRectF area = NyBookGeometry::pageArea(project.pageSizeMm);
    const QRectF coverArea = NyBookGeometry::coverPhotoArea(project.pageSizeMm);
    QList<Expected> expected;
    for (const NyFotoFacts &fact : facts)
        expected.append({fact.url, fact.captureTime.date()});
    QRandomGenerator random(quint32(count * 1000 + days * 10 + mix));
    const int edits = std::min(40, 3 * count);
    for (int edit = 0; edit < edits; ++edit) {
        const NyBookProject before = project;
        int position = expected.isEmpty() ? -1 : random.bounded(int(expected.size()));
        NyBookPlace place;
        for (int left = position; !expected.isEmpty() && left >= 0;) {
            const int onPage = int(project.pages.at(++place.page).photos.size());
            place.photo = left;
            left -= onPage;
        }
        const bool removes = position >= 0 && random.bounded(2) == 0;
        const bool pageGoes = removes && project.pages.at(place.page).photos.size() == 1;
        if (removes) {
            project = NyBookEditor::withoutPhoto(before, place);
            expected.removeAt(position);
        } else {
            if (random.bounded(8) == 0)
                place = {};
            const QSize size = random.bounded(4) == 0 ? QSize(random.bounded(1, 300), random.bounded(1, 300))
                                                      : QSize(random.bounded(200, 9000), random.bounded(200, 9000));
            const QUrl url = picture(u"%1.jpg"_s.arg(edit));
            project = NyBookEditor::withPhoto(before, place, url, size);
            if (place.page == NyBookPlace::Cover)
                QCOMPARE(project.cover.photos.at(0).url, url);
            else
                expected[position].url = url;
        }

        QCOMPARE(project.pages.size(), before.pages.size() - (pageGoes ? 1 : 0));
        QCOMPARE(fault(project.cover, coverArea), QString());
        qsizetype next = 0;
        QDate dayBefore;
        for (const NyBookPage &page : std::as_const(project.pages)) {
            QVERIFY(!page.photos.isEmpty());
            QCOMPARE(fault(page, area), QString());
            const QDate day = expected.at(next).day;
            QCOMPARE(page.texts.size(), days > 1 && day != dayBefore ? 1 : 0);
            if (!page.texts.isEmpty())
                QCOMPARE(page.texts.at(0).text, NyBookTitle::day(day));
            for (const NyPlacedFoto &foto : page.photos) {
                QCOMPARE(foto.url, expected.at(next).url);
                QCOMPARE(expected.at(next).day, day);
                ++next;
            }
            dayBefore = day;
        }
        QCOMPARE(next, expected.size());
        if (edit % 8 == 0 || edit == edits - 1)
            QVERIFY(NyBookProjectFile::fromJson(NyBookProjectFile::toJson(project), {}).project == project);
    }
}

QTEST_GUILESS_MAIN(tst_NyBookEditor)
#include "tst_NyBookEditor.moc"
