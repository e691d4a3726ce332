#pragma once

#include "NyFotoFacts.h"

#include <QList>

/**
 * Chooses the photos of a book. Pure.
 *
 * Unreadable photos, screenshots, blank, blurred, tiny and rejected shots are left out, and of near-duplicates (at most 300 s apart, at
 * most 8 of 64 bits of the difference hash different) all but the strongest. A day that has only blurred, tiny or
 * rejected shots keeps its strongest, so that no day of the event is missing. If more are left than fit, the best of every moment (two
 * minutes) comes before a second of any.
 */
class NyFotoSelection
{
public:
    static constexpr int NearDuplicateSeconds = 300;
    static constexpr int NearDuplicateBits = 8;
    static constexpr int MomentSeconds = 120;

    struct Result
    {
        /** In the order of capture; photos of the same second by URL. */
        QList<NyFotoFacts> photos;
        int unreadable = 0;
        int screenshots = 0;
        int unusable = 0;
        int nearDuplicates = 0;
        /** Good photos for which there was no room. */
        int surplus = 0;
    };

    /** @p limit is the greatest number of photos; exceeded only if there are more days than that. */
    static Result select(const QList<NyFotoFacts> &photos, int limit);
};
