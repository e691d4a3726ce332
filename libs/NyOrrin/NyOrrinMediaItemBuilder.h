#pragma once

#include "NyOrrinMediaItem.h"
#include "nyorrin_export.h"

/** Makes a media item. Each setter changes this builder and returns it, so calls can be chained. */
class NYORRIN_EXPORT NyOrrinMediaItemBuilder
{
public:
    NyOrrinMediaItemBuilder();

    NyOrrinMediaItemBuilder &setId(QString id);
    /** @p timestamp in milliseconds since 1970-01-01 UTC, 0 for unknown. */
    NyOrrinMediaItemBuilder &setTimestamp(long long timestamp);
    NyOrrinMediaItemBuilder &setWidth(int width);
    NyOrrinMediaItemBuilder &setHeight(int height);
    NyOrrinMediaItemBuilder &setRating(int rating);
    NyOrrinMediaItemBuilder &setFavorite(bool favorite);
    NyOrrinMediaItemBuilder &setDigitalZoomRatio(double ratio);
    /** In decimal degrees. Numbers that are no place, such as a latitude above 90, leave the item without a coordinate. */
    NyOrrinMediaItemBuilder &setCoordinate(double latitude, double longitude);

    NyOrrinMediaItem build() const;

private:
    NyOrrinMediaItem m_item;
};
