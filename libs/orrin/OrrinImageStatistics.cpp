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

class Luma
{
public:
    explicit Luma(const ImageView &image)
        : m_width(image.widthPx)
        , m_height(image.heightPx)
        , m_values(static_cast<std::size_t>(image.widthPx) * static_cast<std::size_t>(image.heightPx))
    {
        std::uint8_t *out = m_values.data();
        for (int y = 0; y < m_height; ++y) {
            const std::uint8_t *in = image.row(y);
            // BT.601 weights in 1/65536.
            for (int x = 0; x < m_width; ++x, in += 3)
                *out++ = static_cast<std::uint8_t>((19595U * in[0] + 38470U * in[1] + 7471U * in[2] + 32768U) >> 16);
        }
    }

    int width() const { return m_width; }
    int height() const { return m_height; }
    const std::uint8_t *row(int y) const { return m_values.data() + static_cast<std::ptrdiff_t>(y) * m_width; }
    const std::vector<std::uint8_t> &values() const { return m_values; }

private:
    int m_width;
    int m_height;
    std::vector<std::uint8_t> m_values;
};

int cellBegin(int cell, int cells, int length)
{
    return static_cast<int>(static_cast<std::int64_t>(cell) * length / cells);
}

float sharpness(const Luma &luma)
{
    double sharpest = 0.0;
    for (int tileY = 0; tileY < TilesPerSide; ++tileY) {
        for (int tileX = 0; tileX < TilesPerSide; ++tileX) {
            const int top = std::max(1, cellBegin(tileY, TilesPerSide, luma.height()));
            const int bottom = std::min(luma.height() - 1, cellBegin(tileY + 1, TilesPerSide, luma.height()));
            const int left = std::max(1, cellBegin(tileX, TilesPerSide, luma.width()));
            const int right = std::min(luma.width() - 1, cellBegin(tileX + 1, TilesPerSide, luma.width()));
            std::int64_t sum = 0;
            std::int64_t squares = 0;
            std::int64_t count = 0;
            for (int y = top; y < bottom; ++y) {
                const std::uint8_t *above = luma.row(y - 1);
                const std::uint8_t *here = luma.row(y);
                const std::uint8_t *below = luma.row(y + 1);
                for (int x = left; x < right; ++x) {
                    const int laplacian = above[x] + below[x] + here[x - 1] + here[x + 1] - 4 * here[x];
                    sum += laplacian;
                    squares += static_cast<std::int64_t>(laplacian) * laplacian;
                    ++count;
                }
            }
            if (count == 0)
                continue;
            const double mean = static_cast<double>(sum) / static_cast<double>(count);
            sharpest = std::max(sharpest, static_cast<double>(squares) / static_cast<double>(count) - mean * mean);
        }
    }
    return static_cast<float>(std::sqrt(std::max(0.0, sharpest)));
}

void fillColorSignature(const ImageView &image, Descriptors &result)
{
    std::size_t index = 0;
    for (int cellY = 0; cellY < SignatureCellsPerSide; ++cellY) {
        for (int cellX = 0; cellX < SignatureCellsPerSide; ++cellX) {
            // A cell of a picture of one or two pixels still holds its nearest pixel.
            const int top = std::min(cellBegin(cellY, SignatureCellsPerSide, image.heightPx), image.heightPx - 1);
            const int bottom = std::max(top + 1, cellBegin(cellY + 1, SignatureCellsPerSide, image.heightPx));
            const int left = std::min(cellBegin(cellX, SignatureCellsPerSide, image.widthPx), image.widthPx - 1);
            const int right = std::max(left + 1, cellBegin(cellX + 1, SignatureCellsPerSide, image.widthPx));
            std::array<std::uint64_t, 3> sums{};
            for (int y = top; y < bottom; ++y) {
                const std::uint8_t *in = image.row(y) + std::ptrdiff_t{3} * left;
                for (int x = left; x < right; ++x, in += 3) {
                    sums[0] += in[0];
                    sums[1] += in[1];
                    sums[2] += in[2];
                }
            }
            const double count = static_cast<double>(bottom - top) * (right - left) * 255.0;
            for (const std::uint64_t sum : sums)
                result.colorSignature[index++] = static_cast<float>(static_cast<double>(sum) / count);
        }
    }
}

double meanOf(const Luma &luma, double left, double right, double top, double bottom)
{
    const int firstY = static_cast<int>(top);
    const int lastY = std::min(luma.height() - 1, static_cast<int>(std::ceil(bottom)) - 1);
    const int firstX = static_cast<int>(left);
    const int lastX = std::min(luma.width() - 1, static_cast<int>(std::ceil(right)) - 1);
    double sum = 0.0;
    double area = 0.0;
    for (int y = firstY; y <= lastY; ++y) {
        const double rowShare = std::min(bottom, y + 1.0) - std::max(top, static_cast<double>(y));
        const std::uint8_t *values = luma.row(y);
        for (int x = firstX; x <= lastX; ++x) {
            const double share = rowShare * (std::min(right, x + 1.0) - std::max(left, static_cast<double>(x)));
            sum += share * values[x];
            area += share;
        }
    }
    return area > 0.0 ? sum / area : 0.0;
}

std::uint64_t differenceHash(const Luma &luma)
{
    const double cellWidth = static_cast<double>(luma.width()) / HashColumns;
    const double cellHeight = static_cast<double>(luma.height()) / HashRows;
    std::uint64_t hash = 0;
    for (int row = 0; row < HashRows; ++row) {
        double before = 0.0;
        for (int column = 0; column < HashColumns; ++column) {
            const double mean = meanOf(luma, column * cellWidth, (column + 1) * cellWidth, row * cellHeight, (row + 1) * cellHeight);
            // Half a grey level: rounding must not set bits in an even area.
            if (column > 0 && mean > before + 0.5)
                hash |= std::uint64_t{1} << (8 * row + column - 1);
            before = mean;
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
    const Luma luma(image);
    std::uint64_t sum = 0;
    std::size_t dark = 0;
    std::size_t bright = 0;
    for (const std::uint8_t value : luma.values()) {
        sum += value;
        dark += value < DarkBelow ? 1 : 0;
        bright += value > BrightAbove ? 1 : 0;
    }
    const auto count = static_cast<double>(luma.values().size());
    result.exposure = static_cast<float>(static_cast<double>(sum) / (255.0 * count));
    result.darkShare = static_cast<float>(static_cast<double>(dark) / count);
    result.brightShare = static_cast<float>(static_cast<double>(bright) / count);
    result.sharpness = sharpness(luma);
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
