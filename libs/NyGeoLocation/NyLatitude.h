#pragma once

#include "NyGeoArc.h"

/** How far north of the equator, in decimal degrees; south is negative. */
class NYGEOLOCATION_EXPORT NyLatitude : public NyGeoArc
{
public:
    NyLatitude() = default;
    explicit NyLatitude(double decimalDegrees);
    explicit NyLatitude(const NyGeoArc &arc);

    /** Known and from -90 to 90, both inclusive. */
    bool isInValidRange() const;
};
