#pragma once

#include "NyLatitude.h"
#include "NyLongitude.h"

/** A place on the globe. A default-constructed position is no place. Value type. */
class NYGEOLOCATION_EXPORT NyGeoPosition
{
public:
    NyGeoPosition() = default;
    NyGeoPosition(const NyLatitude &latitude, const NyLongitude &longitude);

    /** Whether both coordinates are known; the latitude may still be out of its range. */
    bool isValid() const;
    const NyLatitude &latitude() const { return m_latitude; }
    const NyLongitude &longitude() const { return m_longitude; }

    /**
     * Along the great circle, in metres, on a sphere of the mean radius of the Earth (IUGG: 6371008.8 m). Not a number when
     * either position is invalid.
     */
    double distanceTo(const NyGeoPosition &other) const;

    friend bool operator==(const NyGeoPosition &left, const NyGeoPosition &right)
    {
        return left.m_latitude == right.m_latitude && left.m_longitude == right.m_longitude;
    }

private:
    NyLatitude m_latitude;
    NyLongitude m_longitude;
};
