#include "OrrinImageStatistics.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace orrin
{

namespace
{

constexpr int TilesPerSide = 4;
constexpr int SignatureCellsPerSide = 3;
constexpr int HashColumns = 9;
constexpr int HashRows = 8;
constexpr int DarkBelow = 10;
constexpr int BrightAbove = 245;
/** So many squares of differences fit into 32 bits, also in planes of sums, and so many values into 16. */
constexpr int Stretch = 64;

/** Brightness of a picture, row by row. */
template <class Value>
class Plane
{
public:
    Plane(int width, int height)
        : m_width(width)
        , m_height(height)
        , m_values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
    {
    }

    int width() const { return m_width; }
    int height() const { return m_height; }
    const Value *row(int y) const { return m_values.data() + static_cast<std::ptrdiff_t>(y) * m_width; }
    Value *row(int y) { return m_values.data() + static_cast<std::ptrdiff_t>(y) * m_width; }
    const std::vector<Value> &values() const { return m_values; }

    /** Sums of two by two; what is left over at the right and at the bottom falls away. */
    Plane<std::int16_t> halved() const
    {
        Plane<std::int16_t> result(m_width / 2, m_height / 2);
        for (int y = 0; y < result.height(); ++y) {
            const Value *upper = row(2 * y);
            const Value *lower = row(2 * y + 1);
            std::int16_t *out = result.row(y);
            for (int x = 0; x < result.width(); ++x)
                out[x] = static_cast<std::int16_t>(upper[2 * x] + upper[2 * x + 1] + lower[2 * x] + lower[2 * x + 1]);
        }
        return result;
    }

private:
    int m_width;
    int m_height;
    std::vector<Value> m_values;
};

using Luma = Plane<std::uint8_t>;

Luma lumaOf(const ImageView &image)
{
    Luma luma(image.widthPx, image.heightPx);
    for (int y = 0; y < image.heightPx; ++y) {
        const std::uint8_t *in = image.row(y);
        std::uint8_t *out = luma.row(y);
        // BT.601 weights in 1/65536.
        for (int x = 0; x < image.widthPx; ++x, in += 3)
            out[x] = static_cast<std::uint8_t>((19595U * in[0] + 38470U * in[1] + 7471U * in[2] + 32768U) >> 16);
    }
    return luma;
}

int cellBegin(int cell, int cells, int length)
{
    return static_cast<int>(static_cast<std::int64_t>(cell) * length / cells);
}

struct Tile
{
    int left;
    int right;
    int top;
    int bottom;

    std::int64_t pixels() const { return static_cast<std::int64_t>(std::max(0, right - left)) * std::max(0, bottom - top); }
};

/** The tiles of a picture without its outermost pixels, which lack a neighbour. */
template <class Work>
void forEachTile(int width, int height, Work &&work)
{
    for (int tileY = 0; tileY < TilesPerSide; ++tileY) {
        for (int tileX = 0; tileX < TilesPerSide; ++tileX) {
            const Tile tile{std::max(1, cellBegin(tileX, TilesPerSide, width)),
                std::min(width - 1, cellBegin(tileX + 1, TilesPerSide, width)), std::max(1, cellBegin(tileY, TilesPerSide, height)),
                std::min(height - 1, cellBegin(tileY + 1, TilesPerSide, height))};
            if (tile.pixels() > 0)
                work(tile);
        }
    }
}

float sharpness(const Luma &luma)
{
    double sharpest = 0.0;
    forEachTile(luma.width(), luma.height(), [&](const Tile &tile) {
        std::int64_t sum = 0;
        std::int64_t squares = 0;
        for (int y = tile.top; y < tile.bottom; ++y) {
            const std::uint8_t *above = luma.row(y - 1);
            const std::uint8_t *here = luma.row(y);
            const std::uint8_t *below = luma.row(y + 1);
            for (int first = tile.left; first < tile.right; first += Stretch) {
                const int last = std::min(tile.right, first + Stretch);
                std::int32_t stretchSum = 0;
                std::int32_t stretchSquares = 0;
                for (int x = first; x < last; ++x) {
                    const auto laplacian = static_cast<std::int16_t>(above[x] + below[x] + here[x - 1] + here[x + 1] - 4 * here[x]);
                    stretchSum += laplacian;
                    stretchSquares += laplacian * laplacian;
                }
                sum += stretchSum;
                squares += stretchSquares;
            }
        }
        const auto count = static_cast<double>(tile.pixels());
        const double mean = static_cast<double>(sum) / count;
        sharpest = std::max(sharpest, static_cast<double>(squares) / count - mean * mean);
    });
    return static_cast<float>(std::sqrt(sharpest));
}

/**
 * Root mean square of the slope, per pixel, in the direction in which it is least: the smaller eigenvalue of the structure tensor, in
 * the tile where it is largest. An edge alone, or the streaks of a moved camera, have none along themselves.
 */
template <class Value>
double leastSlope(const Plane<Value> &plane)
{
    double best = 0.0;
    forEachTile(plane.width(), plane.height(), [&](const Tile &tile) {
        std::int64_t xx = 0;
        std::int64_t yy = 0;
        std::int64_t xy = 0;
        for (int y = tile.top; y < tile.bottom; ++y) {
            const Value *above = plane.row(y - 1);
            const Value *here = plane.row(y);
            const Value *below = plane.row(y + 1);
            for (int first = tile.left; first < tile.right; first += Stretch) {
                const int last = std::min(tile.right, first + Stretch);
                std::int32_t stretchXx = 0;
                std::int32_t stretchYy = 0;
                std::int32_t stretchXy = 0;
                for (int x = first; x < last; ++x) {
                    const auto acrossX = static_cast<std::int16_t>(here[x + 1] - here[x - 1]);
                    const auto acrossY = static_cast<std::int16_t>(below[x] - above[x]);
                    stretchXx += acrossX * acrossX;
                    stretchYy += acrossY * acrossY;
                    stretchXy += acrossX * acrossY;
                }
                xx += stretchXx;
                yy += stretchYy;
                xy += stretchXy;
            }
        }
        const double middle = static_cast<double>(xx + yy) / 2.0;
        const double radius = std::hypot(static_cast<double>(xx - yy) / 2.0, static_cast<double>(xy));
        best = std::max(best, (middle - radius) / static_cast<double>(tile.pixels()));
    });
    // Each slope was taken over two pixels.
    return std::sqrt(best) / 2.0;
}

void fillColorSignature(const ImageView &image, Descriptors &result)
{
    const auto length = static_cast<std::size_t>(image.widthPx) * 3;
    std::vector<std::uint32_t> columns(length);
    std::size_t index = 0;
    for (int cellY = 0; cellY < SignatureCellsPerSide; ++cellY) {
        // A cell of a picture of one or two pixels still holds its nearest pixel.
        const int top = std::min(cellBegin(cellY, SignatureCellsPerSide, image.heightPx), image.heightPx - 1);
        const int bottom = std::max(top + 1, cellBegin(cellY + 1, SignatureCellsPerSide, image.heightPx));
        std::fill(columns.begin(), columns.end(), 0U);
        for (int y = top; y < bottom; ++y) {
            const std::uint8_t *in = image.row(y);
            for (std::size_t i = 0; i < length; ++i)
                columns[i] += in[i];
        }
        for (int cellX = 0; cellX < SignatureCellsPerSide; ++cellX) {
            const int left = std::min(cellBegin(cellX, SignatureCellsPerSide, image.widthPx), image.widthPx - 1);
            const int right = std::max(left + 1, cellBegin(cellX + 1, SignatureCellsPerSide, image.widthPx));
            std::array<std::uint64_t, 3> sums{};
            for (int x = left; x < right; ++x) {
                for (std::size_t channel = 0; channel < 3; ++channel)
                    sums[channel] += columns[static_cast<std::size_t>(x) * 3 + channel];
            }
            const double count = static_cast<double>(bottom - top) * (right - left) * 255.0;
            for (const std::uint64_t sum : sums)
                result.colorSignature[index++] = static_cast<float>(static_cast<double>(sum) / count);
        }
    }
}

/** Adds a row's values to the cells that it crosses, pixels at their borders by the share that is inside. */
template <class Value>
void addRow(const Value *values, int width, double share, std::array<double, HashColumns> &cells)
{
    const double cellWidth = static_cast<double>(width) / HashColumns;
    for (int column = 0; column < HashColumns; ++column) {
        const double left = column * cellWidth;
        const double right = (column + 1) * cellWidth;
        const int first = static_cast<int>(left);
        const int last = std::min(width - 1, static_cast<int>(std::ceil(right)) - 1);
        double sum = values[first] * (std::min(right, first + 1.0) - left);
        for (int x = first + 1; x < last; ++x)
            sum += values[x];
        if (last > first)
            sum += values[last] * (right - last);
        cells[static_cast<std::size_t>(column)] += share * sum;
    }
}

std::uint64_t differenceHash(const Luma &luma)
{
    const double cellHeight = static_cast<double>(luma.height()) / HashRows;
    const double cellPixels = cellHeight * luma.width() / HashColumns;
    const auto width = static_cast<std::size_t>(luma.width());
    std::vector<std::uint32_t> whole(width);
    std::uint64_t hash = 0;
    for (int row = 0; row < HashRows; ++row) {
        const double top = row * cellHeight;
        const double bottom = (row + 1) * cellHeight;
        const int last = std::min(luma.height() - 1, static_cast<int>(std::ceil(bottom)) - 1);
        std::array<double, HashColumns> cells{};
        std::fill(whole.begin(), whole.end(), 0U);
        for (int y = static_cast<int>(top); y <= last; ++y) {
            const double share = std::min(bottom, y + 1.0) - std::max(top, static_cast<double>(y));
            const std::uint8_t *const values = luma.row(y);
            if (share < 1.0) {
                addRow(values, luma.width(), share, cells);
                continue;
            }
            for (std::size_t x = 0; x < width; ++x)
                whole[x] += values[x];
        }
        addRow(whole.data(), luma.width(), 1.0, cells);
        for (std::size_t column = 1; column < HashColumns; ++column) {
            // Half a grey level: rounding must not set bits in an even area.
            if (cells[column] > cells[column - 1] + 0.5 * cellPixels)
                hash |= std::uint64_t{1} << (8 * static_cast<std::size_t>(row) + column - 1);
        }
    }
    return hash;
}

} // namespace

Descriptors ImageStatistics::describe(const ImageView &image)
{
    Descriptors result;
    if (!image.isValid())
        return result;
    const Luma luma = lumaOf(image);
    std::uint64_t sum = 0;
    std::uint64_t squares = 0;
    std::uint64_t dark = 0;
    std::uint64_t bright = 0;
    const std::vector<std::uint8_t> &values = luma.values();
    for (std::size_t first = 0; first < values.size(); first += Stretch) {
        const std::size_t last = std::min(values.size(), first + Stretch);
        std::uint16_t stretchSum = 0;
        std::int32_t stretchSquares = 0;
        std::uint8_t stretchDark = 0;
        std::uint8_t stretchBright = 0;
        for (std::size_t i = first; i < last; ++i) {
            const auto value = static_cast<std::int16_t>(values[i]);
            stretchSum = static_cast<std::uint16_t>(stretchSum + values[i]);
            stretchSquares += value * value;
            stretchDark = static_cast<std::uint8_t>(stretchDark + (values[i] < DarkBelow ? 1 : 0));
            stretchBright = static_cast<std::uint8_t>(stretchBright + (values[i] > BrightAbove ? 1 : 0));
        }
        sum += stretchSum;
        squares += static_cast<std::uint64_t>(stretchSquares);
        dark += stretchDark;
        bright += stretchBright;
    }
    const auto count = static_cast<double>(luma.values().size());
    result.exposure = static_cast<float>(static_cast<double>(sum) / (255.0 * count));
    result.darkShare = static_cast<float>(static_cast<double>(dark) / count);
    result.brightShare = static_cast<float>(static_cast<double>(bright) / count);
    const double mean = static_cast<double>(sum) / count;
    result.contrast = static_cast<float>(std::sqrt(std::max(0.0, static_cast<double>(squares) / count - mean * mean)));
    result.sharpness = sharpness(luma);
    const Plane<std::int16_t> half = luma.halved();
    const double slopeOfQuarter = leastSlope(half.halved()) / 16.0;
    result.detail = static_cast<float>(leastSlope(half) / 4.0);
    if (slopeOfQuarter > 0.0)
        result.crispness = static_cast<float>(leastSlope(luma) / slopeOfQuarter);
    fillColorSignature(image, result);
    result.hash = differenceHash(luma);
    result.isValid = true;
    return result;
}

int ImageStatistics::hashDistance(std::uint64_t left, std::uint64_t right) noexcept
{
    return std::popcount(left ^ right);
}

} // namespace orrin
