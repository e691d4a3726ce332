#include "NyOrrinMediaItemBuilder.h"

#include <cmath>
#include <utility>

NyOrrinMediaItemBuilder::NyOrrinMediaItemBuilder() = default;

NyOrrinMediaItemBuilder &NyOrrinMediaItemBuilder::setId(QString id)
{
    m_item.m_id = std::move(id);
    return *this;
}

NyOrrinMediaItemBuilder &NyOrrinMediaItemBuilder::setTimestamp(long long timestamp)
{
    m_item.m_timestamp = timestamp;
    return *this;
}

NyOrrinMediaItemBuilder &NyOrrinMediaItemBuilder::setWidth(int width)
{
    m_item.m_width = width;
    return *this;
}

NyOrrinMediaItemBuilder &NyOrrinMediaItemBuilder::setHeight(int height)
{
    m_item.m_height = height;
    return *this;
}

NyOrrinMediaItemBuilder &NyOrrinMediaItemBuilder::setRating(int rating)
{
    m_item.m_rating = rating;
    return *this;
}

NyOrrinMediaItemBuilder &NyOrrinMediaItemBuilder::setFavorite(bool favorite)
{
    m_item.m_favorite = favorite;
    return *this;
}

NyOrrinMediaItemBuilder &NyOrrinMediaItemBuilder::setDigitalZoomRatio(double ratio)
{
    m_item.m_digitalZoomRatio = ratio;
    return *this;
}

NyOrrinMediaItemBuilder &NyOrrinMediaItemBuilder::setCoordinate(double latitude, double longitude)
{
    // Written so that numbers that are none fail too.
    if (std::abs(latitude) <= 90.0 && std::abs(longitude) <= 360.0)
        m_item.m_coordinate = NyOrrinMediaItem::Coordinate{latitude, longitude};
    else
        m_item.m_coordinate.reset();
    return *this;
}

NyOrrinMediaItem NyOrrinMediaItemBuilder::build() const
{
    return m_item;
}
