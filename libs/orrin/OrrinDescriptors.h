#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "OrrinRuntime.h"

namespace orrin
{

/** How much of an occasion one photo shows, by its model. */
struct OccasionScore
{
    std::string keyword; ///< stable lower-case English word, such as "wedding"
    float probability = 0.0F; ///< 0 to 1
};

/** What a model sees in one photo. */
struct Scene
{
    std::string label;
    float probability = 0.0F; ///< 0 to 1
};

/** What is known of one photo's content. Everything but the three lists needs no model. */
struct Descriptors
{
    /** An album's photos are all in memory at once, and some models know thousands of labels. */
    static constexpr std::size_t MaximumScenes = 32;

    /** Whether a picture was looked at; if not, all other values mean nothing. */
    bool isValid = false;

    /**
     * Standard deviation of the Laplacian of the luma in the sharpest of 16 tiles, in grey levels of 0 to 255. 0 for one colour;
     * depends on the picture's size, so compare only pictures of about the same size.
     */
    float sharpness = 0.0F;
    /** Standard deviation of the luma of the whole picture, in grey levels of 0 to 255. */
    float contrast = 0.0F;
    /**
     * How much there is to see: the root mean square slope of the luma, in grey levels a pixel of the picture at half its size, in
     * the direction in which it is least, in the richest of 16 tiles. 0 for one colour and for stripes; noise of one pixel gives little.
     */
    float detail = 0.0F;
    /**
     * The same at full size, by the same at a quarter: about 0.25 when all is smeared or out of focus, 0.5 for clean edges, more for
     * fine patterns. 1 when there is nothing to compare.
     */
    float crispness = 1.0F;
    /** Mean luma (ITU-R BT.601), 0 black to 1 white. */
    float exposure = 0.0F;
    /** Share of pixels, 0 to 1, with a luma below 10 or above 245 of 255. */
    float darkShare = 0.0F;
    float brightShare = 0.0F;
    /** Mean red, green, blue (0 to 1) of each cell of a grid of 3 by 3, row by row from the top left. */
    std::array<float, 27> colorSignature{};
    /** Difference hash: bit 8 * row + column tells whether the luma rises to the right in a picture of 9 by 8. */
    std::uint64_t hash = 0;

    /** The labels of the model in its order, of more than MaximumScenes the most probable. Empty without a model. */
    std::vector<Scene> scenes;
    /** Occasions that the model's scenes feed. */
    std::vector<OccasionScore> occasions;
    /** Of unit length; only from a model that gives image embeddings. */
    std::vector<float> embedding;
};

} // namespace orrin
