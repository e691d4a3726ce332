#include "NyOrrinHome.h"

#include <algorithm>
#include <cmath>

namespace
{

/** Cells of a quarter of a degree: about 28 km from north to south. */
quint32 cellOf(const NyOrrinMediaItem::Coordinate &place)
{
    const auto row = static_cast<quint32>(std::floor((place.latitude + 90.0) * 4.0));
    const auto column = static_cast<quint32>(std::floor((place.longitude + 360.0) * 4.0));
    return (row << 16) | column;
}

} // namespace

void NyOrrinHome::add(const NyOrrinMediaItem::Coordinate &place, qint64 julianDay)
{
    const QMutexLocker locker(&m_mutex);
    Cell &cell = m_cells[cellOf(place)];
    cell.days.insert(julianDay);
    cell.latitudeSum += place.latitude;
    cell.longitudeSum += place.longitude;
    ++cell.count;
}

std::optional<NyOrrinMediaItem::Coordinate> NyOrrinHome::place() const
{
    const QMutexLocker locker(&m_mutex);
    const Cell *best = nullptr;
    quint32 bestKey = 0;
    for (auto cell = m_cells.cbegin(); cell != m_cells.cend(); ++cell) {
        if (cell->days.size() < MinimumDays)
            continue;
        const auto [first, last] = std::minmax_element(cell->days.cbegin(), cell->days.cend());
        if (*last - *first < MinimumSpanDays)
            continue;
        // The hash has no order of its own that would be the same in every run.
        if (!best || cell->days.size() > best->days.size() || (cell->days.size() == best->days.size() && cell.key() < bestKey)) {
            best = &*cell;
            bestKey = cell.key();
        }
    }
    if (!best)
        return std::nullopt;
    return NyOrrinMediaItem::Coordinate{best->latitudeSum / best->count, best->longitudeSum / best->count};
}
