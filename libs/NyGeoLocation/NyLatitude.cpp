#include "NyLatitude.h"

NyLatitude::NyLatitude(double decimalDegrees)
    : NyGeoArc(decimalDegrees)
{
}

NyLatitude::NyLatitude(const NyGeoArc &arc)
    : NyGeoArc(arc)
{
}

bool NyLatitude::isInValidRange() const
{
    return decimalDegrees() >= -90.0 && decimalDegrees() <= 90.0;
}
