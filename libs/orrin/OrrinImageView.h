#pragma once

#include <cstddef>
#include <cstdint>

namespace orrin
{

/** Somebody else's pixels: rows from the top, three bytes a pixel in the order red, green, blue. Owns nothing. */
struct ImageView
{
    const std::uint8_t *pixels = nullptr;
    int widthPx = 0;
    int heightPx = 0;
    std::ptrdiff_t bytesPerLine = 0;

    bool isValid() const { return pixels && widthPx > 0 && heightPx > 0 && bytesPerLine >= std::ptrdiff_t{3} * widthPx; }
    const std::uint8_t *row(int y) const { return pixels + bytesPerLine * y; }
};

} // namespace orrin
