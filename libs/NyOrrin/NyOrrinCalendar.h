#pragma once

#include <QtCore/QDate>
#include <QtCore/QString>

#include "nyorrin_export.h"

/** Fixed and moving feasts, computed, and what a date adds to what others tell of an occasion. Pure functions. */
class NYORRIN_EXPORT NyOrrinCalendar
{
public:
    /** Easter Sunday of the Gregorian calendar, by the algorithm of Meeus, Jones and Butcher. Years from 1583. */
    static QDate easter(int year);
    /** The fourth Sunday before Christmas Day. */
    static QDate firstAdvent(int year);
    /** Thursday before Shrove Tuesday, with which the street carnival of the Rhine begins. */
    static QDate carnivalBegin(int year);
    static QDate ashWednesday(int year);
    /** Of Germany and the United States: the second Sunday of May. */
    static QDate mothersDay(int year);
    /** Of France: the last Sunday of May, a week later when that is Whit Sunday. */
    static QDate frenchMothersDay(int year);
    /** Of Spain: the first Sunday of May. */
    static QDate spanishMothersDay(int year);
    /** Of the United Kingdom and Ireland: the fourth Sunday of Lent. */
    static QDate motheringSunday(int year);
    /** Of Mexico and its neighbours: the 10th of May, whatever the weekday. */
    static QDate mexicanMothersDay(int year);
    /** Of Spain and Italy: Saint Joseph's, the 19th of March. */
    static QDate spanishFathersDay(int year);
    /** Of the United States: the fourth Thursday of November. */
    static QDate thanksgiving(int year);
    /** Of Germany: Ascension Day. */
    static QDate germanFathersDay(int year);
    /** Of most other countries: the third Sunday of June. */
    static QDate fathersDay(int year);

    /**
     * By what the odds of an occasion are multiplied for a photo of that day: above 1 around its feast or in its season, below 1 far
     * from it, 1 when the date tells nothing. @p isSouthern turns the seasons round.
     */
    static double factor(const QString &keyword, const QDate &day, bool isSouthern);
};
