#include "NyGeoArc.h"

#include <cmath>
#include <numbers>

NyGeoArc::NyGeoArc(double decimalDegrees)
    : m_decimalDegrees(std::isfinite(decimalDegrees) ? decimalDegrees : std::numeric_limits<double>::quiet_NaN())
{
}

NyGeoArc NyGeoArc::fromDegreesMinutesSeconds(double degrees, double minutes, double seconds, bool negative)
{
    const double arc = degrees + minutes / 60.0 + seconds / 3600.0;
    return NyGeoArc(negative ? -arc : arc);
}

double NyGeoArc::radians() const
{
    return m_decimalDegrees * std::numbers::pi / 180.0;
}

bool NyGeoArc::isKnown() const
{
    return !std::isnan(m_decimalDegrees);
}
