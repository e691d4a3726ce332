#include "NyOrrinCurator.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>

#include <QtCore/QDateTime>
#include <QtCore/QHash>
#include <QtCore/QSet>

#include <OrrinImageStatistics.h>

#include "NyOrrinCalendar.h"
#include "NyOrrinHome.h"
#include "NyOrrinPlace.h"
#include "NyOrrinTitleWords.h"

namespace
{

// Measured at 224 px on photographs of fifty cameras and phones, and on the same ones darkened, bleached, shaken and out of focus. The
// least of the good ones: detail 8.5 (2.1 at a quarter of the light), crispness 0.35, detail of 0.20 of the contrast. The most of lens
// caps, pockets, fingers and even walls with noise: detail 1.5.
constexpr float LeastDetail = 1.6F;
constexpr float BrightestExposure = 0.995F;
// Both together: the smear of a camera that moved by a fifth of the picture. Soft light or fog alone stays below one of them only.
constexpr float SmearedCrispness = 0.38F;
constexpr float SmearedDetailOfContrast = 0.13F;

constexpr std::size_t MaximumOccasions = 3;
// A folder further up tells less of the photos than the one that holds them, and still less when that tells something itself.
constexpr std::array<double, 3> WeightOfDepth{1.0, 0.9, 0.8};
constexpr double WeightBehindOthers = 0.7;
// What is seen: photos that the mean counts beside the album's own, so that a single shot says little.
constexpr double VisionPriorPhotos = 4.0;
constexpr double VisionSteepness = 3.0;
constexpr double VisionLimit = 0.9;
constexpr double HighestEvidence = 0.97;

enum Source { Title, Place, Vision, SourceCount };
constexpr std::array<const char *, SourceCount> SourceNames{"title", "place", "vision"};

using Evidence = std::map<QString, std::array<double, SourceCount>>;

bool isUsable(const NyOrrinVisionedMediaItem &item)
{
    if (!item.descriptors().isValid())
        return true;
    const orrin::Descriptors &seen = item.descriptors().descriptors();
    // Darkness alone is no fault: fireworks and candles are dark.
    if (seen.detail < LeastDetail || seen.exposure > BrightestExposure)
        return false;
    return seen.crispness >= SmearedCrispness || seen.detail >= SmearedDetailOfContrast * seen.contrast;
}

/**
 * What tells near-duplicates. These lie close together in memory: photos without a date of their own that were copied at once all
 * count as taken within minutes, and then each of tens of thousands is compared with each.
 */
struct Trace
{
    explicit Trace(const NyOrrinVisionedMediaItem &item)
        : timestamp(item.item().timestamp())
        , hash(item.descriptors().descriptors().hash)
        , hasTimestamp(item.item().hasTimestamp())
        , hasHash(item.descriptors().isValid())
    {
    }

    long long timestamp;
    std::uint64_t hash;
    bool hasTimestamp;
    bool hasHash;
};

/** Of two photos in the order of time. */
bool areCloseInTime(const Trace &left, const Trace &right)
{
    if (!left.hasTimestamp || !right.hasTimestamp)
        return false;
    // Unsigned, so that the difference of absurd times does not overflow.
    const auto apart = static_cast<unsigned long long>(right.timestamp) - static_cast<unsigned long long>(left.timestamp);
    return apart <= static_cast<unsigned long long>(NyOrrinCurator::DuplicateDistanceMs);
}

bool lookAlike(const Trace &left, const Trace &right)
{
    return left.hasHash && right.hasHash && orrin::ImageStatistics::hashDistance(left.hash, right.hash) <= NyOrrinCurator::DuplicateBits;
}

/** Of two near-duplicates: what the user said counts first, then what is seen. */
bool isBetter(const NyOrrinVisionedMediaItem &left, const NyOrrinVisionedMediaItem &right)
{
    const NyOrrinMediaItem &a = left.item();
    const NyOrrinMediaItem &b = right.item();
    if (a.isFavorite() != b.isFavorite())
        return a.isFavorite();
    if (a.rating() != b.rating())
        return a.rating() > b.rating();
    const double zoomA = std::max(1.0, a.digitalZoomRatio());
    const double zoomB = std::max(1.0, b.digitalZoomRatio());
    const auto merit = [](const NyOrrinVisionedMediaItem &item, double zoom) {
        const orrin::Descriptors &seen = item.descriptors().descriptors();
        return static_cast<double>(seen.sharpness) * (1.0 - static_cast<double>(seen.darkShare + seen.brightShare) / 2.0) / zoom;
    };
    const double meritA = merit(left, zoomA);
    const double meritB = merit(right, zoomB);
    if (meritA != meritB)
        return meritA > meritB;
    return static_cast<long long>(a.widthPx()) * a.heightPx() > static_cast<long long>(b.widthPx()) * b.heightPx();
}

std::optional<QDate> dayOf(const NyOrrinMediaItem &item)
{
    if (!item.hasTimestamp())
        return std::nullopt;
    const QDate day = QDateTime::fromMSecsSinceEpoch(item.timestamp()).date();
    return day.isValid() ? std::optional<QDate>(day) : std::nullopt;
}

bool isKeyword(const QString &word)
{
    const std::vector<std::string> &all = NyOrrinCurator::keywords();
    return std::find(all.begin(), all.end(), word.toStdString()) != all.end();
}

/** How sure one must be: an album that is wrongly called one of these hurts. */
double thresholdOf(const QString &keyword)
{
    static const QSet<QString> careful{QStringLiteral("wedding"), QStringLiteral("baptism"), QStringLiteral("communion"),
        QStringLiteral("baby"), QStringLiteral("graduation")};
    return careful.contains(keyword) ? 0.6 : static_cast<double>(NyOrrinCurator::Threshold);
}

struct Titles
{
    bool isDelicate = false;
    /** Of most of the photos. */
    bool isWork = false;
};

/** Each photo has one voice, so a stray subfolder does not name the album; but what is delicate anywhere is so for all. */
Titles addTitles(const std::vector<NyOrrinCuratedMediaItem> &items, Evidence &evidence)
{
    const NyOrrinTitleWords &words = NyOrrinTitleWords::instance();
    QHash<QString, NyOrrinTitleWords::Reading> readings;
    QHash<QString, double> sums;
    std::size_t atWork = 0;
    for (const NyOrrinCuratedMediaItem &item : items) {
        QHash<QString, double> ofItem;
        bool isWork = false;
        const QStringList names = NyOrrinTitleWords::folderNames(item.item().id());
        for (qsizetype depth = 0; depth < names.size(); ++depth) {
            auto reading = readings.constFind(names.at(depth));
            if (reading == readings.cend())
                reading = readings.insert(names.at(depth), words.read(names.at(depth)));
            if (reading->isDelicate)
                return {true, false};
            isWork = isWork || reading->isWork;
            const double weight = WeightOfDepth[static_cast<std::size_t>(depth)] * (ofItem.isEmpty() ? 1.0 : WeightBehindOthers);
            QHash<QString, double> ofName;
            for (auto entry = reading->evidence.cbegin(); entry != reading->evidence.cend(); ++entry)
                ofName[entry.key()] = std::max(ofItem.value(entry.key()), weight * entry.value());
            ofItem.insert(ofName);
        }
        atWork += isWork ? 1 : 0;
        for (auto entry = ofItem.cbegin(); entry != ofItem.cend(); ++entry)
            sums[entry.key()] += entry.value();
    }
    for (auto sum = sums.cbegin(); sum != sums.cend(); ++sum)
        evidence[sum.key()][Title] = sum.value() / static_cast<double>(items.size());
    return {false, 2 * atWork > items.size()};
}

void addVision(const std::vector<NyOrrinCuratedMediaItem> &items, Evidence &evidence)
{
    QHash<QString, double> sums;
    double count = 0.0;
    for (const NyOrrinCuratedMediaItem &item : items) {
        const orrin::Descriptors &seen = item.descriptors().descriptors();
        // Photos that no model looked at do not thin the mean.
        if (!seen.isValid || (seen.scenes.empty() && seen.occasions.empty()))
            continue;
        count += 1.0;
        for (const orrin::OccasionScore &score : seen.occasions) {
            const QString keyword = QString::fromStdString(score.keyword);
            if (std::isfinite(score.probability) && isKeyword(keyword))
                sums[keyword] += std::clamp(static_cast<double>(score.probability), 0.0, 1.0);
        }
    }
    for (auto sum = sums.cbegin(); sum != sums.cend(); ++sum) {
        const double mean = sum.value() / (count + VisionPriorPhotos);
        evidence[sum.key()][Vision] = VisionLimit * (1.0 - std::exp(-VisionSteepness * mean));
    }
}

void addPlaces(const std::vector<NyOrrinCuratedMediaItem> &items, const std::shared_ptr<NyOrrinHome> &home, Evidence &evidence)
{
    std::vector<NyOrrinPlace::Stop> stops;
    for (const NyOrrinCuratedMediaItem &item : items) {
        const std::optional<QDate> day = dayOf(item.item());
        if (day && item.item().coordinate())
            stops.push_back({*item.item().coordinate(), *day});
    }
    std::stable_sort(stops.begin(), stops.end(), [](const auto &left, const auto &right) { return left.day < right.day; });
    const QHash<QString, double> found = NyOrrinPlace::evidence(stops, home ? home->place() : std::nullopt);
    for (auto entry = found.cbegin(); entry != found.cend(); ++entry)
        evidence[entry.key()][Place] = entry.value();
}

/** How many photos were taken on each day, those from south of the equator apart. */
using PhotosOfDays = std::map<std::pair<QDate, bool>, int>;

PhotosOfDays photosOfDays(const std::vector<NyOrrinCuratedMediaItem> &items)
{
    PhotosOfDays result;
    for (const NyOrrinCuratedMediaItem &item : items) {
        const bool isSouthern = item.item().coordinate() && item.item().coordinate()->latitude < 0.0;
        if (const std::optional<QDate> day = dayOf(item.item()))
            ++result[{*day, isSouthern}];
    }
    return result;
}

/** The mean over the photos: an album of a whole year is not a Christmas album because it ends in December. */
double calendarFactor(const QString &keyword, const PhotosOfDays &photos)
{
    double sum = 0.0;
    int count = 0;
    for (const auto &[day, photosOfDay] : photos) {
        sum += photosOfDay * NyOrrinCalendar::factor(keyword, day.first, day.second);
        count += photosOfDay;
    }
    return count > 0 ? sum / count : 1.0;
}

} // namespace

NyOrrinCurator::NyOrrinCurator(std::shared_ptr<NyOrrinHome> home)
    : m_home(std::move(home))
{
}

NyOrrinCurator::~NyOrrinCurator() = default;

const std::vector<std::string> &NyOrrinCurator::keywords()
{
    static const std::vector<std::string> all{"wedding", "birthday", "christmas", "newyear", "easter", "carnival", "halloween", "baptism",
        "communion", "school", "graduation", "baby", "anniversary", "beach", "city", "hiking", "snow", "roadtrip", "cruise", "vacation",
        "concert", "sports", "zoo", "family", "fair", "pets"};
    return all;
}

std::vector<NyOrrinCuratedMediaItem> NyOrrinCurator::curate(std::vector<NyOrrinVisionedMediaItem> items) const
{
    std::stable_sort(items.begin(), items.end(), [](const NyOrrinVisionedMediaItem &left, const NyOrrinVisionedMediaItem &right) {
        if (left.item().hasTimestamp() != right.item().hasTimestamp())
            return left.item().hasTimestamp();
        return left.item().timestamp() < right.item().timestamp();
    });
    std::vector<NyOrrinVisionedMediaItem> kept;
    std::vector<Trace> traces;
    for (NyOrrinVisionedMediaItem &item : items) {
        if (m_home && item.item().coordinate()) {
            if (const std::optional<QDate> day = dayOf(item.item()))
                m_home->add(*item.item().coordinate(), day->toJulianDay());
        }
        if (!isUsable(item))
            continue;
        std::vector<std::size_t> alike;
        bool isBest = true;
        const Trace trace(item);
        for (std::size_t i = traces.size(); i-- > 0 && areCloseInTime(traces[i], trace);) {
            if (!lookAlike(traces[i], trace))
                continue;
            alike.push_back(i);
            isBest = isBest && isBetter(item, kept[i]);
        }
        if (!isBest)
            continue;
        for (const std::size_t i : alike) {
            kept.erase(kept.begin() + static_cast<std::ptrdiff_t>(i));
            traces.erase(traces.begin() + static_cast<std::ptrdiff_t>(i));
        }
        kept.push_back(std::move(item));
        traces.push_back(trace);
    }
    std::vector<NyOrrinCuratedMediaItem> result;
    result.reserve(kept.size());
    for (NyOrrinVisionedMediaItem &item : kept)
        result.emplace_back(std::move(item));
    return result;
}

std::vector<NyOrrinOccasion> NyOrrinCurator::getOccasion(std::vector<NyOrrinCuratedMediaItem> items) const
{
    std::vector<NyOrrinOccasion> result;
    Evidence evidence;
    if (items.empty())
        return result;
    const Titles titles = addTitles(items, evidence);
    if (titles.isDelicate)
        return result;
    addVision(items, evidence);
    if (!titles.isWork)
        addPlaces(items, m_home, evidence);
    const PhotosOfDays photos = photosOfDays(items);
    for (const auto &[keyword, sources] : evidence) {
        double doubt = 1.0;
        for (const double source : sources)
            doubt *= 1.0 - std::min(source, HighestEvidence);
        const double odds = (1.0 - doubt) / doubt * calendarFactor(keyword, photos);
        const double probability = odds / (1.0 + odds);
        if (probability < thresholdOf(keyword))
            continue;
        const auto strongest = static_cast<std::size_t>(std::max_element(sources.begin(), sources.end()) - sources.begin());
        result.emplace_back(keyword.toStdString(), SourceNames[strongest], static_cast<float>(probability));
    }
    std::stable_sort(result.begin(), result.end(),
        [](const NyOrrinOccasion &left, const NyOrrinOccasion &right) { return left.getProbability() > right.getProbability(); });
    if (result.size() > MaximumOccasions)
        result.erase(result.begin() + MaximumOccasions, result.end());
    return result;
}
