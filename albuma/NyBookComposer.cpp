#include "NyBookComposer.h"

#include <algorithm>

#include "NyBookGeometry.h"
#include "NyBookPaginator.h"

namespace
{

/** Sharpness below which a photo is not blown up to a cover. */
constexpr double COVER_SHARPNESS = 0.45;
/** One photo in this many may be a hero, and two heroes are at least this far apart. */
constexpr int PHOTOS_PER_HERO = 7;
constexpr int HERO_DISTANCE = 4;

double landscapeBonus(const QSize &size)
{
    const double ratio = double(size.width()) / size.height();
    return ratio >= 1.15 && ratio <= 1.95 ? 0.15 : 0.0;
}

/** The strongest photos with enough pixels to stand alone, well apart from each other. */
QList<bool> heroes(const QList<NyFotoFacts> &photos, const QRectF &areaMm)
{
    QList<bool> hero(photos.size(), false);
    QList<qsizetype> order(photos.size());
    for (qsizetype i = 0; i < order.size(); ++i)
        order[i] = i;
    std::stable_sort(
        order.begin(), order.end(), [&](qsizetype a, qsizetype b) { return photos.at(a).strength() > photos.at(b).strength(); });
    qsizetype left = (photos.size() + PHOTOS_PER_HERO - 1) / PHOTOS_PER_HERO;
    for (const qsizetype i : std::as_const(order)) {
        if (left == 0)
            break;
        const QSize size = photos.at(i).sizePx;
        const QSizeF whole = QSizeF(size).scaled(areaMm.size(), Qt::KeepAspectRatio);
        const bool enoughPixels = size.width() / whole.width() * 25.4 >= NyPageLayout::RecommendedDpi;
        const double ratio = double(size.width()) / size.height();
        const bool suitableShape = ratio > 0.6 && ratio < 3;
        const auto neighbours = hero.mid(std::max<qsizetype>(0, i - HERO_DISTANCE), 2 * HERO_DISTANCE + 1);
        if (!enoughPixels || !suitableShape || neighbours.contains(true))
            continue;
        hero[i] = true;
        --left;
    }
    return hero;
}

NyPlacedFoto placed(const NyFotoFacts &facts, const QRectF &rectMm)
{
    NyPlacedFoto foto;
    foto.url = facts.url;
    foto.rectMm = rectMm;
    foto.sizePx = facts.sizePx;
    return foto;
}

NyBookText text(NyBookText::Role role, const QString &words, const QRectF &rectMm, double fontSizePt, Qt::AlignmentFlag alignment)
{
    NyBookText result;
    result.role = role;
    result.text = words;
    result.rectMm = rectMm;
    result.fontSizePt = fontSizePt;
    result.alignment = alignment;
    return result;
}

NyBookPage cover(const NyBookComposer::Request &request, const QSizeF &pageMm)
{
    NyBookPage page;
    const NyFotoFacts &facts = request.photos.at(NyBookComposer::coverPhoto(request.photos));
    const NyPageLayout::Result layout = NyPageLayout::arrange({{facts.sizePx, true}}, NyBookGeometry::coverPhotoArea(pageMm), 0);
    page.photos = {placed(facts, layout.rectsMm.constFirst())};
    page.texts.append(NyBookComposer::coverTitle(request.words.title, pageMm));
    if (!request.words.subtitle.isEmpty())
        page.texts.append(NyBookComposer::coverSubtitle(request.words.subtitle, pageMm));
    return page;
}

}

qsizetype NyBookComposer::coverPhoto(const QList<NyFotoFacts> &photos)
{
    const auto rank = [](const NyFotoFacts &facts) {
        return (facts.sharpness >= COVER_SHARPNESS ? 10 : 0) + facts.strength() + landscapeBonus(facts.sizePx);
    };
    const auto best
        = std::max_element(photos.cbegin(), photos.cend(), [&](const NyFotoFacts &a, const NyFotoFacts &b) { return rank(a) < rank(b); });
    return best - photos.cbegin();
}

NyBookText NyBookComposer::coverTitle(const QString &words, const QSizeF &pageMm)
{
    return text(NyBookText::Role::Title, words, NyBookGeometry::coverTitleRect(pageMm), 34, Qt::AlignHCenter);
}

NyBookText NyBookComposer::coverSubtitle(const QString &words, const QSizeF &pageMm)
{
    return text(NyBookText::Role::Subtitle, words, NyBookGeometry::coverSubtitleRect(pageMm), 14, Qt::AlignHCenter);
}

int NyBookComposer::lowResolutionCount(const NyBookProject &project)
{
    int count = 0;
    for (const NyBookPage &page : project.pages) {
        count += int(std::count_if(page.photos.cbegin(), page.photos.cend(),
            [](const NyPlacedFoto &foto) { return foto.printedDpi() < NyPageLayout::RecommendedDpi; }));
    }
    return count;
}

NyBookProject NyBookComposer::compose(const Request &request)
{
    NyBookProject project;
    project.title = request.words.title;
    project.subtitle = request.words.subtitle;
    project.style = request.style.id;
    project.occasions = request.occasions;
    project.creationDateEpoch = request.creationDateEpoch;
    if (request.photos.isEmpty())
        return project;
    project.cover = cover(request, project.pageSizeMm);

    NyPageGeometry geometry;
    geometry.areaMm = NyBookGeometry::pageArea(project.pageSizeMm);
    geometry.gapMm = NyBookGeometry::GapMm;
    const QDate firstDay = request.photos.constFirst().captureTime.date();
    const QDate lastDay = request.photos.constLast().captureTime.date();
    // A book about one day has its date on the cover; headings would only repeat it.
    const bool withHeadings = firstDay != lastDay;
    geometry.headingMm = withHeadings ? NyBookGeometry::HeadingMm : 0;

    const QList<bool> hero = heroes(request.photos, geometry.areaMm);
    QList<NyPaginatorFoto> sequence;
    sequence.reserve(request.photos.size());
    for (qsizetype i = 0; i < request.photos.size(); ++i) {
        const NyFotoFacts &facts = request.photos.at(i);
        sequence.append({{facts.sizePx, hero.at(i)}, facts.captureTime.date()});
    }
    const QList<NyPaginatedPage> pages = NyBookPaginator::paginate(sequence, geometry);
    for (const NyPaginatedPage &paginated : pages) {
        NyBookPage page;
        for (qsizetype i = 0; i < paginated.layout.rectsMm.size(); ++i)
            page.photos.append(placed(request.photos.at(paginated.firstPhoto + i), paginated.layout.rectsMm.at(i)));
        if (withHeadings && paginated.beginsDay) {
            const QDate day = sequence.at(paginated.firstPhoto).day;
            const QRectF rect = NyBookGeometry::headingRect(project.pageSizeMm);
            page.texts.append(text(NyBookText::Role::DayHeading, NyBookTitle::day(day), rect, 15, Qt::AlignLeft));
        }
        project.pages.append(page);
    }
    return project;
}
