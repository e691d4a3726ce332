#include "NyFolderName.h"

QDate NyFolderName::firstDay() const
{
    if (from.year == 0)
        return {};
    return QDate(from.year, qMax(from.month, 1), qMax(from.day, 1));
}

QDate NyFolderName::lastDay() const
{
    if (to.year == 0)
        return {};
    const int month = to.month > 0 ? to.month : 12;
    return QDate(to.year, month, to.day > 0 ? to.day : QDate(to.year, month, 1).daysInMonth());
}
