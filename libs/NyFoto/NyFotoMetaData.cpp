#include "NyFotoMetaData.h"

#include "NyFotoTime.h"

NyFotoMetaData::NyFotoMetaData(const NyImageMetaData &metaData)
    : m_data(metaData)
{
}

int NyFotoMetaData::rating() const
{
    return m_data.ownRating.value_or(m_data.rating.value_or(0));
}

NyGeoPosition NyFotoMetaData::geoPosition() const
{
    return NyGeoPosition(NyLatitude(m_data.latitude), NyLongitude(m_data.longitude));
}

QDateTime NyFotoMetaData::captureTime() const
{
    return NyFotoTime::captureTime(m_data);
}
