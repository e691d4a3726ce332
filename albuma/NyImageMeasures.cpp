#include "NyImageMeasures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace
{

/** Brightness 0 to 255 of every pixel, row by row. */
struct Gray
{
    int width = 0;
    int height = 0;
    std::vector<float> values;

    float at(int x, int y) const { return values[size_t(y) * size_t(width) + size_t(x)]; }
};

Gray grayOf(const QImage &image)
{
    Gray gray{image.width(), image.height(), {}};
    gray.values.reserve(size_t(gray.width) * size_t(gray.height));
    for (int y = 0; y < gray.height; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < gray.width; ++x)
            gray.values.push_back(0.299f * float(qRed(line[x])) + 0.587f * float(qGreen(line[x])) + 0.114f * float(qBlue(line[x])));
    }
    return gray;
}

quint64 differenceHash(const QImage &image)
{
    constexpr int columns = 9;
    constexpr int rows = 8;
    const QImage small
        = image.scaled(columns, rows, Qt::IgnoreAspectRatio, Qt::SmoothTransformation).convertToFormat(QImage::Format_Grayscale8);
    quint64 hash = 0;
    for (int y = 0; y < rows; ++y) {
        const uchar *line = small.constScanLine(y);
        for (int x = 0; x + 1 < columns; ++x)
            hash = (hash << 1) | (line[x] < line[x + 1] ? 1U : 0U);
    }
    return hash;
}

/**
 * How much of the fine detail a slight blur takes away: near 1 for crisp edges, near 0 where there is none to lose.
 *
 * After Crete et al., "The blur effect: perception and estimation with a new no-reference perceptual blur metric", 2007, but by
 * blocks: a portrait before a soft background is sharp where it matters.
 */
double crispness(const Gray &gray)
{
    constexpr int blockPx = 32;
    constexpr int radius = 2;
    /** Sum of differences below which a block holds nothing but noise, per pixel. */
    constexpr float leastVariation = 1.5f;
    std::vector<double> blocks;
    size_t measured = 0;
    // The soft difference reaches one pixel further back than forward.
    const int firstPx = radius + 1;
    for (int top = firstPx; top + blockPx + radius <= gray.height; top += blockPx) {
        for (int left = firstPx; left + blockPx + radius <= gray.width; left += blockPx) {
            float variation[2] = {0, 0};
            float lost[2] = {0, 0};
            for (int y = top; y < top + blockPx; ++y) {
                for (int x = left; x < left + blockPx; ++x) {
                    const auto add = [&](int dx, int dy, int direction) {
                        float here = 0;
                        float before = 0;
                        for (int r = -radius; r <= radius; ++r) {
                            here += gray.at(x + r * dx, y + r * dy);
                            before += gray.at(x + (r - 1) * dx, y + (r - 1) * dy);
                        }
                        const float sharp = std::abs(gray.at(x, y) - gray.at(x - dx, y - dy));
                        const float soft = std::abs(here - before) / float(2 * radius + 1);
                        variation[direction] += sharp;
                        lost[direction] += std::max(0.f, sharp - soft);
                    };
                    add(1, 0, 0);
                    add(0, 1, 1);
                }
            }
            const float least = leastVariation * blockPx * blockPx;
            double best = 0;
            for (int direction = 0; direction < 2; ++direction) {
                if (variation[direction] > least)
                    best = std::max(best, double(lost[direction] / variation[direction]));
            }
            ++measured;
            if (best > 0)
                blocks.push_back(best);
        }
    }
    if (measured == 0)
        return 1;
    if (blocks.empty())
        return 0;
    // The best tenth of the picture, as far as it holds anything but smooth areas.
    std::sort(blocks.begin(), blocks.end(), std::greater<>());
    const size_t count = std::clamp<size_t>(measured / 10, 1, blocks.size());
    double sum = 0;
    for (size_t i = 0; i < count; ++i)
        sum += blocks[i];
    return sum / double(count);
}

double colorfulness(const QImage &image)
{
    double sum[2] = {0, 0};
    double squares[2] = {0, 0};
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const double redGreen = qRed(line[x]) - qGreen(line[x]);
            const double yellowBlue = 0.5 * (qRed(line[x]) + qGreen(line[x])) - qBlue(line[x]);
            sum[0] += redGreen;
            sum[1] += yellowBlue;
            squares[0] += redGreen * redGreen;
            squares[1] += yellowBlue * yellowBlue;
        }
    }
    const double count = double(image.width()) * image.height();
    double deviation = 0;
    double mean = 0;
    for (int i = 0; i < 2; ++i) {
        const double average = sum[i] / count;
        deviation += std::max(0.0, squares[i] / count - average * average);
        mean += average * average;
    }
    // 109 is what the paper calls extremely colourful.
    return std::min(1.0, (std::sqrt(deviation) + 0.3 * std::sqrt(mean)) / 109.0);
}

double flatness(const QImage &image)
{
    qint64 equal = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 1; x < image.width(); ++x)
            equal += line[x] == line[x - 1] ? 1 : 0;
    }
    return double(equal) / std::max(1.0, double(image.width() - 1) * image.height());
}

/** Brightness below which a share of the pixels lies. */
int percentile(const std::array<int, 256> &histogram, size_t total, double share)
{
    size_t seen = 0;
    for (int value = 0; value < 256; ++value) {
        seen += size_t(histogram[size_t(value)]);
        if (double(seen) >= share * double(total))
            return value;
    }
    return 255;
}

}

NyImageMeasures::Result NyImageMeasures::measure(const QImage &original)
{
    Result result;
    if (original.isNull()) {
        result.isBlank = true;
        return result;
    }
    QImage image = original;
    if (std::max(image.width(), image.height()) > AnalysisSidePx)
        image = image.scaled(AnalysisSidePx, AnalysisSidePx, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    image.convertTo(QImage::Format_RGB32);

    const Gray gray = grayOf(image);
    std::array<int, 256> histogram{};
    for (const float value : gray.values)
        ++histogram[size_t(std::clamp(int(std::lround(value)), 0, 255))];
    const int dark = percentile(histogram, gray.values.size(), 0.02);
    const int middle = percentile(histogram, gray.values.size(), 0.5);
    const int bright = percentile(histogram, gray.values.size(), 0.98);
    constexpr int blackLevel = 24;
    constexpr int whiteLevel = 240;
    constexpr int leastRange = 10;
    result.isBlank = bright <= blackLevel || dark >= whiteLevel || bright - dark < leastRange;
    const double range = std::min(1.0, (bright - dark) / 200.0);
    const double placement = 1.0 - std::abs(middle - 118.0) / 137.0;
    result.exposure = 0.6 * range + 0.4 * placement;

    constexpr double blurredBelow = 0.30;
    constexpr double crispAbove = 0.75;
    const double crisp = crispness(gray);
    result.isBlurred = crisp < blurredBelow;
    result.sharpness = std::clamp((crisp - blurredBelow) / (crispAbove - blurredBelow), 0.0, 1.0);
    result.colorfulness = colorfulness(image);
    result.flatness = flatness(image);
    result.differenceHash = differenceHash(image);
    return result;
}
