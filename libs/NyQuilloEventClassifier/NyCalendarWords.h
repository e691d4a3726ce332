#pragma once

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QString>

#include "nyquilloeventclassifier_export.h"

/**
 * The words of the calendar in many languages: months, weekdays, seasons, quarters, weeks, and what joins two dates.
 *
 * Months and weekdays come from QLocale, the rest is listed. Built once on first use, then only read, from any thread. All words are looked
 * up in composed form (NFC) and case-folded.
 */
class NYQUILLOEVENTCLASSIFIER_EXPORT NyCalendarWords
{
public:
    /** How far a word may be trusted to mean a month. */
    enum class Trust : quint8 {
        Full, ///< a month's full name
        Genitive, ///< the form that follows a day's number, such as "maja" in "15 maja"; by itself often a first name
        Short, ///< a short form that is no other word, such as "Okt"
        WeakShort, ///< a short form that is also a word, such as "mar" or "set"
        Foreign, ///< a full name in Latin letters of a language that the name's reader hardly expects
    };

    struct Month
    {
        int number = 0; ///< 1 to 12, 0 for none
        Trust trust = Trust::Full;
        bool englishOnly = false; ///< the languages that write a month before its day
    };

    static const NyCalendarWords &instance();

    Month month(const QString &word) const { return m_months.value(word); }
    bool isWeekday(const QString &word) const { return m_weekdays.contains(word); }
    bool isSeason(const QString &word) const { return m_seasons.contains(word); }
    bool isQuarter(const QString &word) const { return m_quarters.contains(word); }
    bool isHalfYear(const QString &word) const { return m_halfYears.contains(word); }
    bool isWeek(const QString &word) const { return m_weeks.contains(word); }
    /** "years" before or after a decade, as in "90er Jahre" or "années 90". */
    bool isDecade(const QString &word) const { return m_decades.contains(word); }
    /** Joins the ends of a range: "bis", "to", "au". */
    bool isRange(const QString &word) const { return m_ranges.contains(word); }
    /** Stands inside a date without a meaning of its own: "de" in "15 de julio de 2024". */
    bool isJoint(const QString &word) const { return m_joints.contains(word); }
    /** Follows a day's number: "th", "er". */
    bool isOrdinal(const QString &word) const { return m_ordinals.contains(word); }

private:
    NyCalendarWords();

    void addMonths();
    void addMonth(const QString &word, int number, Trust trust);
    void addMonthVariants(const QString &word, int number, Trust trust);

    QHash<QString, Month> m_months;
    QSet<QString> m_weekdays;
    QSet<QString> m_seasons;
    QSet<QString> m_quarters;
    QSet<QString> m_halfYears;
    QSet<QString> m_weeks;
    QSet<QString> m_decades;
    QSet<QString> m_ranges;
    QSet<QString> m_joints;
    QSet<QString> m_ordinals;
};
