#pragma once

#include <limits>

#include <QtCore/QtGlobal>

#include "nygeolocation_export.h"

/** An angle on the globe, in decimal degrees. A default-constructed arc is unknown. Value type. */
class NYGEOLOCATION_EXPORT NyGeoArc
{
public:
    NyGeoArc() = default;
    explicit NyGeoArc(double decimalDegrees);

    /** From sexagesimal parts, each at least 0; the sign belongs to the whole. A part that is no finite number gives an unknown arc. */
    static NyGeoArc fromDegreesMinutesSeconds(double degrees, double minutes, double seconds, bool negative);

    /** Not a number for an unknown arc. */
    double decimalDegrees() const { return m_decimalDegrees; }
    double radians() const;
    /** Whether the arc is a finite number, in whatever range. */
    bool isKnown() const;

    /** Two unknown arcs are equal. */
    friend bool operator==(const NyGeoArc &left, const NyGeoArc &right)
    {
        return left.m_decimalDegrees == right.m_decimalDegrees || (!left.isKnown() && !right.isKnown());
    }

private:
    double m_decimalDegrees = std::numeric_limits<double>::quiet_NaN();
};
