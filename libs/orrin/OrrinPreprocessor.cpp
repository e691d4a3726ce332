#include "OrrinPreprocessor.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orrin
{

namespace
{

/** Red, green, blue and one value without a meaning, worked on at once. */
using Quad = float __attribute__((vector_size(16)));

} // namespace

Preprocessor::Preprocessor(const ModelConfig &config)
    : m_layout(config.layout)
    , m_channelOrder(config.channelOrder)
    , m_fit(config.fit)
    , m_mean(config.mean)
    , m_deviation(config.deviation)
    , m_width(config.inputWidthPx)
    , m_height(config.inputHeightPx)
{
}

std::size_t Preprocessor::valueCount() const
{
    return static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height) * 3;
}

void Preprocessor::computeTaps(std::vector<Tap> &taps, int target, double sourceBegin, double sourceLength, int sourceSize)
{
    taps.resize(static_cast<std::size_t>(target));
    const double step = sourceLength / target;
    const double reach = std::max(1.0, step);
    for (int i = 0; i < target; ++i) {
        Tap &tap = taps[static_cast<std::size_t>(i)];
        const double center = sourceBegin + (i + 0.5) * step - 0.5;
        const int first = std::clamp(static_cast<int>(std::ceil(center - reach)), 0, sourceSize - 1);
        const int last = std::clamp(static_cast<int>(std::floor(center + reach)), first, sourceSize - 1);
        tap.first = first;
        tap.weights.assign(static_cast<std::size_t>(last - first + 1), 0.0F);
        double sum = 0.0;
        for (int x = first; x <= last; ++x) {
            const double weight = std::max(0.0, 1.0 - std::abs(x - center) / reach);
            tap.weights[static_cast<std::size_t>(x - first)] = static_cast<float>(weight);
            sum += weight;
        }
        if (sum <= 0.0) {
            tap.weights.assign(1, 1.0F);
            tap.first = std::clamp(static_cast<int>(std::lround(center)), 0, sourceSize - 1);
            continue;
        }
        for (float &weight : tap.weights)
            weight = static_cast<float>(weight / sum);
    }
}

void Preprocessor::adaptTo(int widthPx, int heightPx)
{
    if (widthPx == m_sourceWidth && heightPx == m_sourceHeight)
        return;
    int targetWidth = m_width;
    int targetHeight = m_height;
    double left = 0.0;
    double top = 0.0;
    double width = widthPx;
    double height = heightPx;
    if (m_fit == ModelConfig::Fit::Crop) {
        const double factor = std::min(width / m_width, height / m_height);
        left = (width - factor * m_width) / 2.0;
        top = (height - factor * m_height) / 2.0;
        width = factor * m_width;
        height = factor * m_height;
    } else if (m_fit == ModelConfig::Fit::Pad) {
        const double factor = std::max(width / m_width, height / m_height);
        targetWidth = std::clamp(static_cast<int>(std::lround(width / factor)), 1, m_width);
        targetHeight = std::clamp(static_cast<int>(std::lround(height / factor)), 1, m_height);
    }
    computeTaps(m_columns, targetWidth, left, width, widthPx);
    computeTaps(m_rows, targetHeight, top, height, heightPx);
    // One value more, so that the last pixel can be read like the others.
    m_line.assign(static_cast<std::size_t>(widthPx) * 3 + 1, 0.0F);
    m_sourceWidth = widthPx;
    m_sourceHeight = heightPx;
}

void Preprocessor::shrinkRows(const ImageView &image, const Tap &tap)
{
    const auto first = static_cast<std::size_t>(m_columns.front().first) * 3;
    const auto last = (static_cast<std::size_t>(m_columns.back().first) + m_columns.back().weights.size()) * 3;
    float *const line = m_line.data();
    for (std::size_t row = 0; row < tap.weights.size(); ++row) {
        const float weight = tap.weights[row];
        const std::uint8_t *const in = image.row(tap.first + static_cast<int>(row));
        if (row == 0) {
            for (std::size_t i = first; i < last; ++i)
                line[i] = weight * static_cast<float>(in[i]);
        } else {
            for (std::size_t i = first; i < last; ++i)
                line[i] += weight * static_cast<float>(in[i]);
        }
    }
}

template <class Value, class Convert>
void Preprocessor::fillWith(const ImageView &image, Value *values, Convert convert)
{
    adaptTo(image.widthPx, image.heightPx);
    const bool planes = m_layout == ModelConfig::Layout::Nchw;
    const auto pixels = static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height);
    const std::size_t pixelStep = planes ? 1 : 3;
    const std::size_t channelStep = planes ? pixels : 1;
    const bool isRgb = m_channelOrder == ModelConfig::ChannelOrder::Rgb;
    Value *const red = values + (isRgb ? 0 : 2) * channelStep;
    Value *const green = values + channelStep;
    Value *const blue = values + (isRgb ? 2 : 0) * channelStep;
    const auto put = [&](std::size_t pixel, const Quad &color) {
        const Quad converted = convert(color);
        red[pixel * pixelStep] = static_cast<Value>(converted[0]);
        green[pixel * pixelStep] = static_cast<Value>(converted[1]);
        blue[pixel * pixelStep] = static_cast<Value>(converted[2]);
    };

    if (m_columns.size() * m_rows.size() < pixels) {
        const Quad mean{m_mean[0] * 255.0F, m_mean[1] * 255.0F, m_mean[2] * 255.0F, 0.0F};
        for (std::size_t pixel = 0; pixel < pixels; ++pixel)
            put(pixel, mean);
    }
    const std::size_t offsetX = (static_cast<std::size_t>(m_width) - m_columns.size()) / 2;
    const std::size_t offsetY = (static_cast<std::size_t>(m_height) - m_rows.size()) / 2;
    for (std::size_t y = 0; y < m_rows.size(); ++y) {
        shrinkRows(image, m_rows[y]);
        std::size_t pixel = (offsetY + y) * static_cast<std::size_t>(m_width) + offsetX;
        for (const Tap &tap : m_columns) {
            const float *in = m_line.data() + std::size_t{3} * static_cast<std::size_t>(tap.first);
            Quad color{};
            for (const float weight : tap.weights) {
                Quad next;
                std::memcpy(&next, in, sizeof(next));
                color += weight * next;
                in += 3;
            }
            put(pixel++, color);
        }
    }
}

void Preprocessor::fill(const ImageView &image, float *values)
{
    Quad factor{};
    Quad offset{};
    for (std::size_t channel = 0; channel < 3; ++channel) {
        factor[channel] = 1.0F / (255.0F * m_deviation[channel]);
        offset[channel] = -m_mean[channel] / m_deviation[channel];
    }
    fillWith(image, values, [&](const Quad &color) { return color * factor + offset; });
}

void Preprocessor::fill(const ImageView &image, std::uint8_t *values)
{
    fillWith(image, values, [](const Quad &color) {
        Quad rounded = color + 0.5F;
        for (std::size_t channel = 0; channel < 3; ++channel)
            rounded[channel] = std::clamp(rounded[channel], 0.0F, 255.0F);
        return rounded;
    });
}

} // namespace orrin
