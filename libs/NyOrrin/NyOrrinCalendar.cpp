#include "NyOrrinCalendar.h"

namespace
{

QDate sundayOnOrAfter(const QDate &day)
{
    return day.addDays((7 - day.dayOfWeek()) % 7);
}

QDate sundayOnOrBefore(const QDate &day)
{
    return day.addDays(-(day.dayOfWeek() % 7));
}

bool isBetween(const QDate &day, const QDate &first, const QDate &last)
{
    return first <= day && day <= last;
}

bool isMonthBetween(const QDate &day, int first, int last)
{
    return first <= last ? first <= day.month() && day.month() <= last : day.month() >= first || day.month() <= last;
}

double christmas(const QDate &day)
{
    if (isBetween(day, QDate(day.year(), 12, 20), QDate(day.year(), 12, 27)))
        return 6.0;
    if (day >= NyOrrinCalendar::firstAdvent(day.year()) || (day.month() == 1 && day.day() <= 6))
        return 3.0;
    return day.month() == 11 || day.month() == 12 ? 1.5 : 0.25;
}

double newYear(const QDate &day)
{
    return (day.month() == 12 && day.day() >= 30) || (day.month() == 1 && day.day() <= 2) ? 6.0 : 0.25;
}

double easterTime(const QDate &day)
{
    const qint64 distance = NyOrrinCalendar::easter(day.year()).daysTo(day);
    if (-2 <= distance && distance <= 1)
        return 6.0;
    if (-14 <= distance && distance <= 14)
        return 2.5;
    return 0.25;
}

double carnival(const QDate &day)
{
    const QDate ashWednesday = NyOrrinCalendar::ashWednesday(day.year());
    if (isBetween(day, NyOrrinCalendar::carnivalBegin(day.year()), ashWednesday))
        return 6.0;
    // Swiss carnivals begin when the others end.
    if (isBetween(day, QDate(day.year(), 1, 6), ashWednesday.addDays(8)) || (day.month() == 11 && day.day() == 11))
        return 3.0;
    return 0.5;
}

double halloween(const QDate &day)
{
    if (isBetween(day, QDate(day.year(), 10, 29), QDate(day.year(), 11, 2)))
        return 6.0;
    return day.month() == 10 ? 2.0 : 0.3;
}

double communion(const QDate &day)
{
    const QDate easter = NyOrrinCalendar::easter(day.year());
    return isBetween(day, easter.addDays(7), easter.addDays(63)) ? 2.5 : 0.8;
}

double family(const QDate &day)
{
    using Calendar = NyOrrinCalendar;
    const int year = day.year();
    for (const QDate &feast : {Calendar::mothersDay(year), Calendar::motheringSunday(year), Calendar::frenchMothersDay(year),
             Calendar::spanishMothersDay(year), Calendar::mexicanMothersDay(year), Calendar::germanFathersDay(year),
             Calendar::fathersDay(year), Calendar::spanishFathersDay(year), Calendar::thanksgiving(year)}) {
        if (day == feast)
            return 2.5;
    }
    return 1.0;
}

double fair(const QDate &day)
{
    // The largest of all begins on the Saturday after the 15th of September.
    const QDate begin = sundayOnOrAfter(QDate(day.year(), 9, 17)).addDays(-1);
    return isBetween(day, begin, QDate(day.year(), 10, 7)) ? 2.0 : 1.0;
}

} // namespace

QDate NyOrrinCalendar::easter(int year)
{
    const int a = year % 19;
    const int b = year / 100;
    const int c = year % 100;
    const int d = b / 4;
    const int e = b % 4;
    const int f = (b + 8) / 25;
    const int g = (b - f + 1) / 3;
    const int h = (19 * a + b - d - g + 15) % 30;
    const int i = c / 4;
    const int k = c % 4;
    const int l = (32 + 2 * e + 2 * i - h - k) % 7;
    const int m = (a + 11 * h + 22 * l) / 451;
    const int n = h + l - 7 * m + 114;
    return QDate(year, n / 31, n % 31 + 1);
}

QDate NyOrrinCalendar::firstAdvent(int year)
{
    return sundayOnOrBefore(QDate(year, 12, 24)).addDays(-21);
}

QDate NyOrrinCalendar::carnivalBegin(int year)
{
    return easter(year).addDays(-52);
}

QDate NyOrrinCalendar::ashWednesday(int year)
{
    return easter(year).addDays(-46);
}

QDate NyOrrinCalendar::mothersDay(int year)
{
    return sundayOnOrAfter(QDate(year, 5, 1)).addDays(7);
}

QDate NyOrrinCalendar::frenchMothersDay(int year)
{
    const QDate lastSunday = sundayOnOrBefore(QDate(year, 5, 31));
    return lastSunday == easter(year).addDays(49) ? lastSunday.addDays(7) : lastSunday;
}

QDate NyOrrinCalendar::spanishMothersDay(int year)
{
    return sundayOnOrAfter(QDate(year, 5, 1));
}

QDate NyOrrinCalendar::motheringSunday(int year)
{
    return easter(year).addDays(-21);
}

QDate NyOrrinCalendar::mexicanMothersDay(int year)
{
    return QDate(year, 5, 10);
}

QDate NyOrrinCalendar::spanishFathersDay(int year)
{
    return QDate(year, 3, 19);
}

QDate NyOrrinCalendar::thanksgiving(int year)
{
    const QDate first(year, 11, 1);
    return first.addDays((Qt::Thursday - first.dayOfWeek() + 7) % 7 + 21);
}

QDate NyOrrinCalendar::germanFathersDay(int year)
{
    return easter(year).addDays(39);
}

QDate NyOrrinCalendar::fathersDay(int year)
{
    return sundayOnOrAfter(QDate(year, 6, 1)).addDays(14);
}

double NyOrrinCalendar::factor(const QString &keyword, const QDate &day, bool isSouthern)
{
    if (!day.isValid() || day.year() < 1583)
        return 1.0;
    const QDate season = isSouthern ? day.addMonths(6) : day;
    if (keyword == QLatin1String("christmas"))
        return christmas(day);
    if (keyword == QLatin1String("newyear"))
        return newYear(day);
    if (keyword == QLatin1String("easter"))
        return easterTime(day);
    if (keyword == QLatin1String("carnival"))
        return carnival(day);
    if (keyword == QLatin1String("halloween"))
        return halloween(day);
    if (keyword == QLatin1String("communion"))
        return communion(day);
    if (keyword == QLatin1String("family"))
        return family(day);
    if (keyword == QLatin1String("fair"))
        return fair(day);
    if (keyword == QLatin1String("beach"))
        return isMonthBetween(season, 6, 9) ? 1.4 : isMonthBetween(season, 11, 3) ? 0.7 : 1.0;
    if (keyword == QLatin1String("snow"))
        return isMonthBetween(season, 12, 3) ? 1.8 : isMonthBetween(season, 6, 8) ? 0.4 : 1.0;
    if (keyword == QLatin1String("school"))
        return isMonthBetween(day, 8, 9) ? 1.5 : 1.0;
    if (keyword == QLatin1String("graduation"))
        return isMonthBetween(day, 5, 7) ? 1.5 : 1.0;
    if (keyword == QLatin1String("wedding"))
        return isMonthBetween(season, 5, 9) && day.dayOfWeek() == Qt::Saturday ? 1.3 : 1.0;
    return 1.0;
}
