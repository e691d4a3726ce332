#pragma once

#include <optional>

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QSet>

#include "NyOrrinMediaItem.h"
#include "nyorrin_export.h"

/**
 * Learns where the user is at home: where photos were taken on the most different days, over a time that no journey lasts. Knows only
 * the photos of this process. Thread-safe.
 */
class NYORRIN_EXPORT NyOrrinHome
{
public:
    static constexpr int MinimumDays = 10;
    static constexpr int MinimumSpanDays = 60;

    /** @p julianDay as QDate::toJulianDay(). */
    void add(const NyOrrinMediaItem::Coordinate &place, qint64 julianDay);
    /** Nothing as long as no place has been seen often enough. */
    std::optional<NyOrrinMediaItem::Coordinate> place() const;

private:
    struct Cell
    {
        QSet<qint64> days;
        double latitudeSum = 0.0;
        double longitudeSum = 0.0;
        int count = 0;
    };

    mutable QMutex m_mutex;
    QHash<quint32, Cell> m_cells;
};
