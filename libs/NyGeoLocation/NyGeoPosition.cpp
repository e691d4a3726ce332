#include "NyGeoPosition.h"

#include <algorithm>
#include <cmath>

NyGeoPosition::NyGeoPosition(const NyLatitude &latitude, const NyLongitude &longitude)
    : m_latitude(latitude)
    , m_longitude(longitude)
{
}

bool NyGeoPosition::isValid() const
{
    return m_latitude.isKnown() && m_longitude.isKnown();
}

double NyGeoPosition::distanceTo(const NyGeoPosition &other) const
{
    if (!isValid() || !other.isValid())
        return std::numeric_limits<double>::quiet_NaN();
    constexpr double EarthRadiusM = 6371008.8;
    // The haversine form keeps its digits for places that lie close together.
    const double halfLatitude = std::sin((other.m_latitude.radians() - m_latitude.radians()) / 2.0);
    const double halfLongitude = std::sin((other.m_longitude.radians() - m_longitude.radians()) / 2.0);
    const double square = halfLatitude * halfLatitude
        + std::cos(m_latitude.radians()) * std::cos(other.m_latitude.radians()) * halfLongitude * halfLongitude;
    return 2.0 * EarthRadiusM * std::asin(std::sqrt(std::clamp(square, 0.0, 1.0)));
}
