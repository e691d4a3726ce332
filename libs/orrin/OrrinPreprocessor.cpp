#include "OrrinPreprocessor.h"

#include <algorithm>
#include <cmath>

namespace orrin
{

Preprocessor::Preprocessor(const ModelConfig &config)
    : m_layout(config.layout)
    , m_channelOrder(config.channelOrder)
    , m_fit(config.fit)
    , m_mean(config.mean)
    , m_deviation(config.deviation)
    , m_width(config.inputWidthPx)
    , m_height(config.inputHeightPx)
    , m_scaled(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height) * 3)
{
}

std::size_t Preprocessor::valueCount() const
{
    return m_scaled.size();
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

void Preprocessor::scale(const ImageView &image)
{
    int targetWidth = m_width;
    int targetHeight = m_height;
    double left = 0.0;
    double top = 0.0;
    double width = image.widthPx;
    double height = image.heightPx;
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
        for (std::size_t i = 0; i < m_scaled.size(); ++i)
            m_scaled[i] = m_mean[i % 3] * 255.0F;
    }
    computeTaps(m_columns, targetWidth, left, width, image.widthPx);
    computeTaps(m_rows, targetHeight, top, height, image.heightPx);

    const int firstRow = m_rows.front().first;
    const int lastRow = m_rows.back().first + static_cast<int>(m_rows.back().weights.size()) - 1;
    const std::size_t rowLength = static_cast<std::size_t>(targetWidth) * 3;
    m_narrowed.resize(rowLength * static_cast<std::size_t>(lastRow - firstRow + 1));
    float *narrowed = m_narrowed.data();
    for (int y = firstRow; y <= lastRow; ++y) {
        const std::uint8_t *row = image.row(y);
        for (const Tap &tap : m_columns) {
            const std::uint8_t *in = row + std::ptrdiff_t{3} * tap.first;
            float red = 0.0F;
            float green = 0.0F;
            float blue = 0.0F;
            for (const float weight : tap.weights) {
                red += weight * in[0];
                green += weight * in[1];
                blue += weight * in[2];
                in += 3;
            }
            *narrowed++ = red;
            *narrowed++ = green;
            *narrowed++ = blue;
        }
    }

    const std::size_t offsetX = static_cast<std::size_t>((m_width - targetWidth) / 2) * 3;
    const auto offsetY = static_cast<std::size_t>((m_height - targetHeight) / 2);
    for (std::size_t y = 0; y < m_rows.size(); ++y) {
        const Tap &tap = m_rows[y];
        float *out = m_scaled.data() + (offsetY + y) * static_cast<std::size_t>(m_width) * 3 + offsetX;
        std::fill_n(out, rowLength, 0.0F);
        const float *in = m_narrowed.data() + static_cast<std::size_t>(tap.first - firstRow) * rowLength;
        for (const float weight : tap.weights) {
            for (std::size_t i = 0; i < rowLength; ++i)
                out[i] += weight * in[i];
            in += rowLength;
        }
    }
}

template <class Value, class Convert>
void Preprocessor::layOut(Value *values, Convert convert) const
{
    const std::size_t pixels = m_scaled.size() / 3;
    for (std::size_t position = 0; position < 3; ++position) {
        const std::size_t channel = m_channelOrder == ModelConfig::ChannelOrder::Rgb ? position : 2 - position;
        const bool planes = m_layout == ModelConfig::Layout::Nchw;
        Value *out = values + (planes ? position * pixels : position);
        const std::size_t step = planes ? 1 : 3;
        const float *in = m_scaled.data() + channel;
        for (std::size_t i = 0; i < pixels; ++i, in += 3, out += step)
            *out = convert(*in, channel);
    }
}

void Preprocessor::fill(const ImageView &image, float *values)
{
    scale(image);
    layOut(values, [this](float value, std::size_t channel) { return (value / 255.0F - m_mean[channel]) / m_deviation[channel]; });
}

void Preprocessor::fill(const ImageView &image, std::uint8_t *values)
{
    scale(image);
    layOut(values, [](float value, std::size_t) { return static_cast<std::uint8_t>(std::clamp(std::lround(value), 0L, 255L)); });
}

} // namespace orrin
