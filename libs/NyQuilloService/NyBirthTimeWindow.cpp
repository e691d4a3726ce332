#include "NyBirthTimeWindow.h"

#include <QtCore/QDateTime>

namespace
{

qint64 startOfDayMs(QDate day)
{
    // Days that a time zone left out altogether have no start: the next one's is the same moment.
    for (int skipped = 0; skipped < 3; ++skipped, day = day.addDays(1)) {
        const QDateTime start = day.startOfDay();
        if (start.isValid() && start.date() == day)
            return start.toMSecsSinceEpoch();
    }
    return day.addDays(-3).startOfDay(Qt::UTC).toMSecsSinceEpoch();
}

} // namespace

NyBirthTimeWindow::NyBirthTimeWindow(const NyDateRange &range)
    : m_range(range)
    , m_hasBothEnds(range.from().isValid() && range.to().isValid())
{
    if (!m_hasBothEnds)
        return;
    m_endMs = startOfDayMs(range.to().addDays(1));
    // No day is inside a range that ends before it starts.
    m_startMs = range.from() <= range.to() ? startOfDayMs(range.from()) : m_endMs;
}

NyBirthTimeWindow::Verdict NyBirthTimeWindow::verdictByDate(qint64 birthTimeMs) const
{
    const QDate date = QDateTime::fromMSecsSinceEpoch(birthTimeMs).date();
    if (m_range.contains(date))
        return Verdict::Inside;
    return date > m_range.to() ? Verdict::After : Verdict::Outside;
}
