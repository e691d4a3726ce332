#pragma once

#include <QtCore/QDate>
#include <QtCore/QString>

#include "nyquilloeventclassifier_export.h"

/** What a folder's name says by itself, whatever lies around or inside the folder. */
struct NYQUILLOEVENTCLASSIFIER_EXPORT NyFolderName
{
    /** A date of which parts may be missing; a missing part is 0. */
    struct PartialDate
    {
        int year = 0;
        int month = 0;
        int day = 0;

        bool operator==(const PartialDate &) const = default;
    };

    enum class DateForm {
        None,
        Year,
        Years, ///< several years or a decade
        Month, ///< a month without a year
        YearMonth,
        Period, ///< weeks, quarters, seasons, several months: longer than a day, and neither month nor year
        Day, ///< day and month without a year
        FullDate,
        Range, ///< from a day to another day
    };

    enum class Nature {
        Plain, ///< a title, a date or both
        Camera, ///< named by a camera, by an import, or by nobody: says nothing about what is inside
        Source, ///< a program's or messenger's store
        Technical, ///< a state of work on photos
        DayPart, ///< a day or another part of something larger
        Project, ///< long-running work
    };

    DateForm dateForm = DateForm::None;
    PartialDate from;
    /** The end of a Range, Period or Years as far as the name tells it; otherwise equal to from. */
    PartialDate to;
    Nature nature = Nature::Camera;
    /** What remains when dates and words without a meaning of their own are gone. Empty for all but titled folders. */
    QString title;
    /** The lone number of a name without date and title, or the number that comes before a title; -1 for none. */
    int number = -1;
    int numberDigits = 0;
    /** The second number of a name that consists of two, -1 for none. */
    int secondNumber = -1;
    /** A month's number and its name, as in "7 Juli": a month in a list of months, the seventh of July elsewhere. */
    bool mayBeListedMonth = false;
    /** The title has nothing but words for many events at once, such as "Reisen". */
    bool isCategory = false;
    /** DayPart by a number and a word for day, such as "Tag 3". */
    bool isNumberedDay = false;

    bool hasTitle() const { return !title.isEmpty(); }
    bool hasDay() const { return dateForm == DateForm::Day || dateForm == DateForm::FullDate; }
    /** The earliest and the latest day that the dates may mean; invalid without a year. */
    QDate firstDay() const;
    QDate lastDay() const;
};
