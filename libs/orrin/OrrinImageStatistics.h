#pragma once

#include "OrrinDescriptors.h"
#include "OrrinImageView.h"
#include "orrin_export.h"

namespace orrin
{

/** The descriptors that need no model. Pure functions. */
class ORRIN_EXPORT ImageStatistics
{
public:
    /** Fills all but the model's lists. An invalid view leaves the result invalid. Allocates one byte a pixel; throws std::bad_alloc. */
    static Descriptors describe(const ImageView &image);

    /** The number of differing bits, 0 to 64. */
    static int hashDistance(std::uint64_t left, std::uint64_t right) noexcept;
};

} // namespace orrin
