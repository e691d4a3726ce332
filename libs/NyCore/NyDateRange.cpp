#include "NyDateRange.h"

#include <QtCore/QLocale>

namespace
{

QString text(const QDate &date, bool withYear)
{
    if (!date.isValid())
        return QStringLiteral("unknown");
    return QLocale::c().toString(date, withYear ? QStringLiteral("d MMM yyyy") : QStringLiteral("d MMM"));
}

} // namespace

NyDateRange::NyDateRange() = default;

NyDateRange::NyDateRange(const QDate &from, const QDate &to)
    : NyRange<QDate>(from, to)
{
}

NyDateRange::~NyDateRange() = default;

bool NyDateRange::contains(const QDate &date) const
{
    return date.isValid() && NyRange<QDate>::contains(date);
}

bool NyDateRange::isValid() const
{
    return from().isValid() && to().isValid() && from() <= to();
}

QString NyDateRange::dateDescription(const QDate &reference) const
{
    if (!from().isValid() && !to().isValid())
        return QStringLiteral("no dates");
    const bool sameYear = from().isValid() && to().isValid() && from().year() == to().year();
    const bool withYear = !sameYear || !reference.isValid() || from().year() != reference.year();
    if (from() == to())
        return text(from(), withYear);
    return text(from(), withYear && !sameYear) + QStringLiteral(" to ") + text(to(), withYear);
}
