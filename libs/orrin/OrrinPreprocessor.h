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

    /** Computes what only the picture's size decides; most pictures have that of the one before. */
    void adaptTo(int widthPx, int heightPx);
    static void computeTaps(std::vector<Tap> &taps, int target, double sourceBegin, double sourceLength, int sourceSize);
    /** Weighs some rows of the picture into m_line. */
    void shrinkRows(const ImageView &image, const Tap &tap);
    template <class Value, class Convert>
    void fillWith(const ImageView &image, Value *values, Convert convert);

    ModelConfig::Layout m_layout;
    ModelConfig::ChannelOrder m_channelOrder;
    ModelConfig::Fit m_fit;
    std::array<float, 3> m_mean;
    std::array<float, 3> m_deviation;
    int m_width;
    int m_height;
    int m_sourceWidth = 0;
    int m_sourceHeight = 0;
    std::vector<Tap> m_columns;
    std::vector<Tap> m_rows;
    /** Red, green, blue of 0 to 255, as wide as the picture. */
    std::vector<float> m_line;
};

} // namespace orrin
