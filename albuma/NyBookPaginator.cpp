#include "NyBookPaginator.h"

#include <array>
#include <limits>
#include <vector>

namespace
{

constexpr int MAXIMUM = NyPageLayout::MaximumPhotos;
constexpr double INFINITE = std::numeric_limits<double>::infinity();

/** Cost for each photo of a page by the number of photos on it; two is the number to aim at. */
constexpr std::array<double, MAXIMUM + 1> COST_BY_COUNT{0, 0.5, 0.0, 0.12, 0.36, 0.7, 0.95};
constexpr double HERO_ALONE_GAIN = 0.9;
/** A hero that shares its page cannot be as large as it deserves. */
constexpr double HERO_SHARING_COST = 0.25;
constexpr double SAME_COUNT_COST = 0.3;
constexpr double ODD_PAGES_COST = 0.8;
constexpr double EMPTY_PAPER_COST = 0.8;
/** A photo with a side shorter than this is hard to look at. */
constexpr double COMFORTABLE_SIDE_MM = 45;
constexpr double SMALL_SIDE_COST = 0.5;

struct Candidate
{
    NyPageLayout::Result layout;
    double cost = INFINITE;
};

bool beginsDay(const QList<NyPaginatorFoto> &photos, int index)
{
    return index == 0 || photos.at(index - 1).day != photos.at(index).day;
}

Candidate measure(const QList<NyPaginatorFoto> &photos, int begin, int count, const NyPageGeometry &geometry)
{
    QList<NyLayoutFoto> onPage;
    int heroes = 0;
    for (int i = begin; i < begin + count; ++i) {
        onPage.append(photos.at(i).layout);
        heroes += photos.at(i).layout.isHero ? 1 : 0;
    }
    QRectF area = geometry.areaMm;
    if (beginsDay(photos, begin))
        area.setTop(area.top() + geometry.headingMm);
    Candidate candidate;
    candidate.layout = NyPageLayout::arrange(onPage, area, geometry.gapMm);
    if (candidate.layout.rectsMm.isEmpty())
        return candidate;
    double perPhoto = COST_BY_COUNT[size_t(count)] + EMPTY_PAPER_COST * (1 - candidate.layout.coverage);
    if (candidate.layout.shortestSideMm < COMFORTABLE_SIDE_MM)
        perPhoto += SMALL_SIDE_COST * (1 - candidate.layout.shortestSideMm / COMFORTABLE_SIDE_MM);
    if (count == 1 && heroes == 1)
        perPhoto -= HERO_ALONE_GAIN;
    candidate.cost = perPhoto * count + (count > 1 ? HERO_SHARING_COST * heroes : 0);
    return candidate;
}

/** The cheapest way to have brought out the photos before an index, by the last page's count and the pages' parity. */
struct State
{
    double cost = INFINITE;
    int previousCount = 0;
};

}

QList<NyPaginatedPage> NyBookPaginator::paginate(const QList<NyPaginatorFoto> &photos, const NyPageGeometry &geometry)
{
    const int total = int(photos.size());
    if (total == 0)
        return {};
    using States = std::array<std::array<State, 2>, MAXIMUM + 1>;
    std::vector<States> states(size_t(total) + 1);
    std::vector<std::array<Candidate, MAXIMUM + 1>> candidates{size_t(total)};
    states[0][0][0].cost = 0;

    for (int begin = 0; begin < total; ++begin) {
        for (int count = 1; count <= MAXIMUM && begin + count <= total; ++count) {
            if (count > 1 && beginsDay(photos, begin + count - 1))
                break;
            Candidate &candidate = candidates[size_t(begin)][size_t(count)];
            candidate = measure(photos, begin, count, geometry);
            if (candidate.cost == INFINITE)
                continue;
            for (int previous = 0; previous <= MAXIMUM; ++previous) {
                for (int parity = 0; parity < 2; ++parity) {
                    const State &from = states[size_t(begin)][size_t(previous)][size_t(parity)];
                    if (from.cost == INFINITE)
                        continue;
                    const double cost = from.cost + candidate.cost + (count == previous ? SAME_COUNT_COST : 0);
                    State &to = states[size_t(begin + count)][size_t(count)][size_t(1 - parity)];
                    if (cost < to.cost)
                        to = {cost, previous};
                }
            }
        }
    }

    int count = 0;
    int parity = 0;
    double best = INFINITE;
    for (int c = 1; c <= MAXIMUM; ++c) {
        for (int p = 0; p < 2; ++p) {
            const double cost = states[size_t(total)][size_t(c)][size_t(p)].cost + (p == 1 ? ODD_PAGES_COST : 0);
            if (cost < best) {
                best = cost;
                count = c;
                parity = p;
            }
        }
    }

    QList<NyPaginatedPage> pages;
    for (int end = total; end > 0;) {
        const int begin = end - count;
        pages.prepend({begin, beginsDay(photos, begin), candidates[size_t(begin)][size_t(count)].layout});
        count = states[size_t(end)][size_t(count)][size_t(parity)].previousCount;
        parity = 1 - parity;
        end = begin;
    }
    return pages;
}
