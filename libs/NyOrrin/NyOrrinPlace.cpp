#include "NyOrrinPlace.h"

#include <algorithm>

#include <NyGeoPosition.h>

namespace
{

constexpr int MinimumStops = 5;
constexpr double AwayKm = 100.0;
constexpr double FarAwayKm = 1000.0;
constexpr double HopKm = 60.0;
constexpr double RoadtripKm = 500.0;
constexpr double WidePathKm = 150.0;

double distanceKm(const NyOrrinMediaItem::Coordinate &from, const NyOrrinMediaItem::Coordinate &to)
{
    const auto position
        = [](const NyOrrinMediaItem::Coordinate &place) { return NyGeoPosition(NyLatitude(place.latitude), NyLongitude(place.longitude)); };
    return position(from).distanceTo(position(to)) / 1000.0;
}

/** The photo in the middle of each day: one wrong fix does not move it. */
std::vector<NyOrrinMediaItem::Coordinate> placesByDay(const std::vector<NyOrrinPlace::Stop> &stops)
{
    std::vector<NyOrrinMediaItem::Coordinate> places;
    for (auto first = stops.begin(); first != stops.end();) {
        const auto last = std::find_if(first, stops.end(), [first](const NyOrrinPlace::Stop &stop) { return stop.day != first->day; });
        std::vector<double> latitudes;
        std::vector<double> longitudes;
        for (auto stop = first; stop != last; ++stop) {
            latitudes.push_back(stop->place.latitude);
            longitudes.push_back(stop->place.longitude);
        }
        const auto middle = static_cast<std::ptrdiff_t>(latitudes.size() / 2);
        std::nth_element(latitudes.begin(), latitudes.begin() + middle, latitudes.end());
        std::nth_element(longitudes.begin(), longitudes.begin() + middle, longitudes.end());
        places.push_back({latitudes[static_cast<std::size_t>(middle)], longitudes[static_cast<std::size_t>(middle)]});
        first = last;
    }
    return places;
}

} // namespace

QHash<QString, double> NyOrrinPlace::evidence(const std::vector<Stop> &stops, const std::optional<NyOrrinMediaItem::Coordinate> &home)
{
    QHash<QString, double> result;
    if (stops.size() < MinimumStops)
        return result;
    const std::vector<NyOrrinMediaItem::Coordinate> places = placesByDay(stops);
    const qint64 spanDays = stops.front().day.daysTo(stops.back().day) + 1;
    const auto days = static_cast<double>(places.size());
    // Photos spread thinly over months are no journey.
    if (places.size() < 2 || static_cast<double>(spanDays) > 3.0 * days + 4.0)
        return result;

    double pathKm = 0.0;
    double widestKm = 0.0;
    int hops = 0;
    for (std::size_t i = 1; i < places.size(); ++i) {
        const double hopKm = distanceKm(places[i - 1], places[i]);
        pathKm += hopKm;
        hops += hopKm >= HopKm ? 1 : 0;
        widestKm = std::max(widestKm, distanceKm(places.front(), places[i]));
    }
    const QString vacation = QStringLiteral("vacation");
    if (home) {
        std::size_t away = 0;
        double farthestKm = 0.0;
        for (const NyOrrinMediaItem::Coordinate &place : places) {
            const double km = distanceKm(*home, place);
            away += km >= AwayKm ? 1 : 0;
            farthestKm = std::max(farthestKm, km);
        }
        if (away >= 2 && 2 * away >= places.size()) {
            result[vacation]
                = std::min(0.85, 0.45 + 0.04 * std::min(static_cast<double>(away), 7.0) + (farthestKm >= FarAwayKm ? 0.1 : 0.0));
        }
    } else if (places.size() >= 3 && widestKm >= WidePathKm) {
        result[vacation] = std::min(0.7, 0.4 + 0.03 * std::min(days, 7.0) + (widestKm >= FarAwayKm ? 0.1 : 0.0));
    }
    if (hops >= 3 && places.size() >= 4 && pathKm >= RoadtripKm)
        result[QStringLiteral("roadtrip")] = std::min(0.8, 0.5 + 0.04 * hops);
    return result;
}
