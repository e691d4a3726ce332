#pragma once

#include <memory>
#include <vector>

#include "NyOrrinCuratedMediaItem.h"
#include "NyOrrinOccasion.h"
#include "NyOrrinVisionedMediaItem.h"
#include "nyorrin_export.h"

class NyOrrinHome;

/** Chooses an album's photos and weighs what occasion they show. Copies share what they have learned of the user's home. Thread-safe. */
class NYORRIN_EXPORT NyOrrinCurator
{
public:
    /** Near-duplicates are at most so far apart, and differ in at most so many bits of their hashes. */
    static constexpr long long DuplicateDistanceMs = 300 * 1000;
    static constexpr int DuplicateBits = 8;
    /** Occasions of a lower probability are not told; some need more, see the source file. */
    static constexpr float Threshold = 0.5F;

    explicit NyOrrinCurator(std::shared_ptr<NyOrrinHome> home = {});
    ~NyOrrinCurator();

    /**
     * Drops shots that show nothing, and of near-duplicates all but the best. The rest comes in the order of time, photos without a
     * time last, in the order given. A photo whose picture could not be looked at is kept.
     */
    std::vector<NyOrrinCuratedMediaItem> curate(std::vector<NyOrrinVisionedMediaItem> items) const;

    /**
     * At most three occasions, in no particular order; none when nothing is told clearly enough, and none for an album whose
     * title is delicate. Dates are read in this machine's time zone.
     */
    std::vector<NyOrrinOccasion> getOccasion(std::vector<NyOrrinCuratedMediaItem> items) const;

    /** All keywords that getOccasion() may return. */
    static const std::vector<std::string> &keywords();

private:
    std::shared_ptr<NyOrrinHome> m_home;
};
