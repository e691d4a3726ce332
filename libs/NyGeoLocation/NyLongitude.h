#pragma once

#include "NyGeoArc.h"

/** How far east of Greenwich, in decimal degrees; west is negative. */
class NYGEOLOCATION_EXPORT NyLongitude : public NyGeoArc
{
public:
    NyLongitude() = default;
    explicit NyLongitude(double decimalDegrees);
    explicit NyLongitude(const NyGeoArc &arc);

    /** The same meridian, above -180 and up to and including 180. An unknown one stays unknown. */
    NyLongitude normalized() const;
};
