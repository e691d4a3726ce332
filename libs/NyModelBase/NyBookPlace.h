#pragma once

/** Where a photo stands in a book. Plain value. */
struct NyBookPlace
{
    static constexpr int Cover = -1;

    /** Index of the inner page, or Cover. */
    int page = Cover;
    /** Index among the page's photos. */
    int photo = 0;

    friend bool operator==(const NyBookPlace &, const NyBookPlace &) = default;
};
