#pragma once

#include <QtCore/QtGlobal>

#include <NyDateRange.h>

#include "nyquilloservice_export.h"

/**
 * A range of local days as an interval of time, so that a scan compares numbers and converts no birth time to a date.
 *
 * The days' first moments are computed once, in the system's time zone: a day may begin later than 00:00 or have 23 or 25 hours.
 */
class NYQUILLOSERVICE_EXPORT NyBirthTimeWindow
{
public:
    enum class Verdict { Inside, After, Outside };

    explicit NyBirthTimeWindow(const NyDateRange &range);

    /** @p birthTimeMs is in ms since 1970-01-01 UTC. After means: on a later day than the range's last. */
    Verdict verdict(qint64 birthTimeMs) const
    {
        if (!m_hasBothEnds)
            return verdictByDate(birthTimeMs);
        if (birthTimeMs >= m_endMs)
            return Verdict::After;
        return birthTimeMs >= m_startMs ? Verdict::Inside : Verdict::Outside;
    }

private:
    Verdict verdictByDate(qint64 birthTimeMs) const;

    NyDateRange m_range;
    bool m_hasBothEnds;
    qint64 m_startMs = 0; // inclusive
    qint64 m_endMs = 0; // exclusive
};
