#include "NyPageLayout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace
{

constexpr double MM_PER_INCH = 25.4;
/** A hero counts as much as this many other photos. */
constexpr double HERO_WEIGHT = 3.2;
/** Lost for each change between rows and columns inside the tree: simple pages look calmer. */
constexpr double NESTING_COST = 0.06;

/**
 * A cut of consecutive photos into two parts, side by side or one above the other, down to single photos.
 *
 * Because gaps have a fixed width, the height of a flush block is not proportional to its width but linear in it:
 * height = slope * width + offset.
 */
struct Block
{
    double slope = 0;
    double offset = 0;
    /** Photo index of a leaf, else -1. */
    int photo = -1;
    bool sideBySide = false;
    int directionChanges = 0;
    const Block *first = nullptr;
    const Block *second = nullptr;
};

/** All blocks of each run of consecutive photos; they live as long as this object. */
class BlockTable
{
public:
    BlockTable(const QList<NyLayoutFoto> &photos, double gapMm)
    {
        const int count = int(photos.size());
        for (int length = 1; length <= count; ++length) {
            for (int begin = 0; begin + length <= count; ++begin)
                fill(photos, gapMm, begin, length);
        }
    }

    const std::vector<Block> &all(int begin, int length) const { return m_blocks[size_t(begin)][size_t(length - 1)]; }

private:
    static int changes(const Block &parent, const Block &child)
    {
        if (child.photo >= 0)
            return 0;
        return child.directionChanges + (child.sideBySide != parent.sideBySide ? 1 : 0);
    }

    void fill(const QList<NyLayoutFoto> &photos, double gapMm, int begin, int length)
    {
        std::vector<Block> &blocks = m_blocks[size_t(begin)][size_t(length - 1)];
        if (length == 1) {
            const QSize size = photos.at(begin).sizePx;
            Block leaf;
            leaf.slope = double(size.height()) / size.width();
            leaf.photo = begin;
            blocks.push_back(leaf);
            return;
        }
        for (int cut = 1; cut < length; ++cut) {
            for (const Block &a : all(begin, cut)) {
                for (const Block &b : all(begin + cut, length - cut)) {
                    for (const bool sideBySide : {true, false})
                        append(blocks, a, b, sideBySide, gapMm);
                }
            }
        }
    }

    static void append(std::vector<Block> &blocks, const Block &a, const Block &b, bool sideBySide, double gapMm)
    {
        // Three in a row would come as (a b) c and as a (b c); keeping only the first form avoids measuring twice.
        if (b.photo < 0 && b.sideBySide == sideBySide)
            return;
        Block block;
        block.sideBySide = sideBySide;
        block.first = &a;
        block.second = &b;
        if (sideBySide) {
            const double inverse = 1 / a.slope + 1 / b.slope;
            block.slope = 1 / inverse;
            block.offset = (a.offset / a.slope + b.offset / b.slope - gapMm) / inverse;
        } else {
            block.slope = a.slope + b.slope;
            block.offset = a.offset + b.offset + gapMm;
        }
        block.directionChanges = std::max(changes(block, a), changes(block, b));
        blocks.push_back(block);
    }

    std::array<std::array<std::vector<Block>, NyPageLayout::MaximumPhotos>, NyPageLayout::MaximumPhotos> m_blocks;
};

/** Next to a panorama a photo can be left with hardly any room; such a page is no choice. */
constexpr double LEAST_SIDE_MM = 0.5;

bool isTooSmall(const QRectF &rect)
{
    return rect.width() < LEAST_SIDE_MM || rect.height() < LEAST_SIDE_MM;
}

/** Gives each photo of @p block its rectangle; false if some part would have hardly any extent. */
bool place(const Block &block, const QRectF &rect, double gapMm, QList<QRectF> &rects)
{
    if (block.photo >= 0) {
        rects[block.photo] = rect;
        return true;
    }
    QRectF first = rect;
    QRectF second = rect;
    if (block.sideBySide) {
        first.setWidth((rect.height() - block.first->offset) / block.first->slope);
        second.setLeft(first.right() + gapMm);
    } else {
        first.setHeight(block.first->slope * rect.width() + block.first->offset);
        second.setTop(first.bottom() + gapMm);
    }
    if (isTooSmall(first) || isTooSmall(second))
        return false;
    return place(*block.first, first, gapMm, rects) && place(*block.second, second, gapMm, rects);
}

struct Scored
{
    NyPageLayout::Result result;
    double score = -std::numeric_limits<double>::infinity();
};

Scored arrangedInOrder(const QList<NyLayoutFoto> &photos, const QRectF &areaMm, double gapMm)
{
    const int count = int(photos.size());
    const BlockTable table(photos, gapMm);
    Scored best;
    QList<QRectF> rects(count);
    for (const Block &block : table.all(0, count)) {
        const double width = std::min(areaMm.width(), (areaMm.height() - block.offset) / block.slope);
        if (width <= 0)
            continue;
        QRectF outer(0, 0, width, block.slope * width + block.offset);
        outer.moveCenter(areaMm.center());
        if (!place(block, outer, gapMm, rects))
            continue;
        double score = -NESTING_COST * block.directionChanges * count;
        double covered = 0;
        double shortest = std::numeric_limits<double>::infinity();
        for (int i = 0; i < count; ++i) {
            const QRectF rect = NyPageLayout::fitted(rects.at(i), photos.at(i).sizePx);
            rects[i] = rect;
            const double area = rect.width() * rect.height();
            covered += area;
            shortest = std::min({shortest, rect.width(), rect.height()});
            score += (photos.at(i).isHero ? HERO_WEIGHT : 1.0) * std::log(area);
        }
        if (score > best.score)
            best = {{rects, covered / (areaMm.width() * areaMm.height()), shortest}, score};
    }
    return best;
}

}

QSizeF NyPageLayout::largestPrintMm(const QSizeF &sizePx)
{
    return sizePx * MM_PER_INCH / MinimumDpi;
}

QRectF NyPageLayout::fitted(const QRectF &rectMm, const QSizeF &sizePx)
{
    const QSizeF limit = largestPrintMm(sizePx);
    const double scale = std::min({rectMm.width() / sizePx.width(), rectMm.height() / sizePx.height(), limit.width() / sizePx.width()});
    QRectF result(0, 0, sizePx.width() * scale, sizePx.height() * scale);
    result.moveCenter(rectMm.center());
    return result;
}

NyPageLayout::Result NyPageLayout::arrange(const QList<NyLayoutFoto> &photos, const QRectF &areaMm, double gapMm)
{
    const qsizetype count = photos.size();
    if (count < 1 || count > MaximumPhotos || areaMm.isEmpty()
        || std::any_of(photos.cbegin(), photos.cend(), [](const NyLayoutFoto &foto) { return foto.sizePx.isEmpty(); }))
        return {};

    Scored best = arrangedInOrder(photos, areaMm, gapMm);
    const auto isHero = [](const NyLayoutFoto &foto) { return foto.isHero; };
    if (std::count_if(photos.cbegin(), photos.cend(), isHero) == 1) {
        // Between its neighbours a hero has no room to grow; at either end of the order it can fill one side of the page.
        const qsizetype hero = std::find_if(photos.cbegin(), photos.cend(), isHero) - photos.cbegin();
        for (const qsizetype end : {qsizetype(0), count - 1}) {
            if (end == hero)
                continue;
            QList<NyLayoutFoto> moved = photos;
            moved.move(hero, end);
            Scored other = arrangedInOrder(moved, areaMm, gapMm);
            if (other.score <= best.score)
                continue;
            other.result.rectsMm.move(end, hero);
            best = other;
        }
    }
    return best.result;
}
