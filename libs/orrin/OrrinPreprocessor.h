#pragma once

#include <cstdint>
#include <vector>

#include "OrrinImageView.h"
#include "OrrinModelConfig.h"
#include "orrin_export.h"

namespace orrin
{

/**
 * Brings pictures into the form that a model takes: scaled with a triangle filter that widens when it shrinks (so fine patterns do not
 * alias), then laid out and normalised. Its working memory is reused; not thread-safe.
 */
class ORRIN_EXPORT Preprocessor
{
public:
    explicit Preprocessor(const ModelConfig &config);

    std::size_t valueCount() const;
    /** Writes valueCount() values. @p image must be valid. */
    void fill(const ImageView &image, float *values);
    void fill(const ImageView &image, std::uint8_t *values);

private:
    struct Tap
    {
        int first = 0;
        std::vector<float> weights;
    };

    void scale(const ImageView &image);
    void computeTaps(std::vector<Tap> &taps, int target, double sourceBegin, double sourceLength, int sourceSize);
    template <class Value, class Convert>
    void layOut(Value *values, Convert convert) const;

    ModelConfig::Layout m_layout;
    ModelConfig::ChannelOrder m_channelOrder;
    ModelConfig::Fit m_fit;
    std::array<float, 3> m_mean;
    std::array<float, 3> m_deviation;
    int m_width;
    int m_height;
    std::vector<Tap> m_columns;
    std::vector<Tap> m_rows;
    std::vector<float> m_narrowed;
    /** Red, green, blue of 0 to 255, row by row. */
    std::vector<float> m_scaled;
};

} // namespace orrin
