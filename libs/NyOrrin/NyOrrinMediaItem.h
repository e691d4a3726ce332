#pragma once

#include <optional>

#include <QtCore/QString>

#include "nyorrin_export.h"

/** What is known of one photo beside its picture. Value type, made by NyOrrinMediaItemBuilder. */
class NYORRIN_EXPORT NyOrrinMediaItem
{
public:
    /** In decimal degrees, north and east positive. */
    struct Coordinate
    {
        double latitude = 0.0;
        double longitude = 0.0;
    };

    NyOrrinMediaItem();
    NyOrrinMediaItem(const NyOrrinMediaItem &);
    NyOrrinMediaItem(NyOrrinMediaItem &&) noexcept;
    NyOrrinMediaItem &operator=(const NyOrrinMediaItem &);
    NyOrrinMediaItem &operator=(NyOrrinMediaItem &&) noexcept;
    ~NyOrrinMediaItem();

    /** The photo's URL as text; its folders' names tell of occasions. */
    const QString &id() const { return m_id; }
    /** Milliseconds since 1970-01-01 UTC; 0 when unknown. */
    long long timestamp() const { return m_timestamp; }
    bool hasTimestamp() const { return m_timestamp != 0; }
    int widthPx() const { return m_width; }
    int heightPx() const { return m_height; }
    /** -1 (rejected) to 5; 0 without a rating. */
    int rating() const { return m_rating; }
    bool isFavorite() const { return m_favorite; }
    /** 0 or 1 without digital zoom. */
    double digitalZoomRatio() const { return m_digitalZoomRatio; }
    const std::optional<Coordinate> &coordinate() const { return m_coordinate; }

private:
    friend class NyOrrinMediaItemBuilder;

    QString m_id;
    long long m_timestamp = 0;
    int m_width = 0;
    int m_height = 0;
    int m_rating = 0;
    bool m_favorite = false;
    double m_digitalZoomRatio = 0.0;
    std::optional<Coordinate> m_coordinate;
};
