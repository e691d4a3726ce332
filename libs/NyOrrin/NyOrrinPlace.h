#pragma once

#include <optional>
#include <vector>

#include <QtCore/QDate>
#include <QtCore/QHash>
#include <QtCore/QString>

#include "NyOrrinMediaItem.h"
#include "nyorrin_export.h"

/** What the places of an album's photos tell of occasions. Pure function of its arguments. */
class NYORRIN_EXPORT NyOrrinPlace
{
public:
    struct Stop
    {
        NyOrrinMediaItem::Coordinate place;
        QDate day;
    };

    /**
     * Evidence, 0 to 1, for "vacation" and "roadtrip". @p stops in the order of time. Without @p home only the distance that the
     * album itself covers counts.
     */
    static QHash<QString, double> evidence(const std::vector<Stop> &stops, const std::optional<NyOrrinMediaItem::Coordinate> &home);
};
