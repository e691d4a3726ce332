#include "NyLongitude.h"

#include <cmath>

NyLongitude::NyLongitude(double decimalDegrees)
    : NyGeoArc(decimalDegrees)
{
}

NyLongitude::NyLongitude(const NyGeoArc &arc)
    : NyGeoArc(arc)
{
}

NyLongitude NyLongitude::normalized() const
{
    // std::remainder rounds ties to even, so a half turn may come out as either sign.
    const double degrees = std::remainder(decimalDegrees(), 360.0);
    return NyLongitude(degrees <= -180.0 ? degrees + 360.0 : degrees);
}
