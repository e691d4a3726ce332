#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "OrrinLog.h"
#include "OrrinModelSource.h"
#include "orrin_export.h"

namespace orrin
{

/** What a model.json says of its model. Value type; docs/models.md describes the file. */
struct ORRIN_EXPORT ModelConfig
{
    enum class Layout { Nchw, Nhwc };
    enum class ChannelOrder { Rgb, Bgr };
    enum class Fit {
        Crop, ///< scaled until it covers the input, what sticks out is cut off evenly
        Stretch, ///< each side scaled by itself
        Pad, ///< scaled until all of it is inside, the rest filled with the mean
    };
    enum class Activation { None, Softmax, Sigmoid };

    std::string file;

    std::string inputName;
    int inputWidthPx = 0;
    int inputHeightPx = 0;
    Layout layout = Layout::Nchw;
    ChannelOrder channelOrder = ChannelOrder::Rgb;
    /** Red, green, blue whatever the channel order. An input value is (byte / 255 - mean) / deviation; models that take bytes get bytes. */
    std::array<float, 3> mean{0.0F, 0.0F, 0.0F};
    std::array<float, 3> deviation{1.0F, 1.0F, 1.0F};
    Fit fit = Fit::Crop;

    /** One value a label; empty for a model of the CLIP kind. */
    std::string scoresOutput;
    /** The image's embedding; empty when the model gives none. */
    std::string embeddingOutput;
    /** What turns the scores into probabilities. */
    Activation activation = Activation::Softmax;

    std::vector<std::string> labels;
    /** Of a model of the CLIP kind: a row of unit length for each label. */
    std::vector<std::vector<float>> labelEmbeddings;
    /** Cosine similarities, or the scores before a softmax, are divided by it. */
    float temperature = 1.0F;

    /** For each label, the occasions that it feeds, with weights above 0 and at most 1. */
    std::vector<std::vector<std::pair<std::string, float>>> occasionsOfLabel;

    bool isClipKind() const { return !labelEmbeddings.empty(); }

    /** Nothing, and a warning that names file and field, when the file is missing or wrong. Unknown fields are warned of and left out. */
    static std::optional<ModelConfig> read(const ModelSource &source, const LogCallback &log);
};

} // namespace orrin
