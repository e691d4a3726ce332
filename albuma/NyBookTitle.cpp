#include "NyBookTitle.h"

#include <QDir>
#include <QHash>
#include <QLocale>
#include <QRegularExpression>
#include <QSet>

#include <NyTranslation.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

/** Month names of the languages that folders are most often named in, with their usual short forms. */
QString monthPattern()
{
    static const QString pattern = [] {
        QStringList names;
        for (const QLocale::Language language :
            {QLocale::German, QLocale::English, QLocale::French, QLocale::Italian, QLocale::Spanish, QLocale::Dutch}) {
            const QLocale locale(language);
            for (int month = 1; month <= 12; ++month) {
                for (const QLocale::FormatType format : {QLocale::LongFormat, QLocale::ShortFormat}) {
                    for (const QString &name : {locale.monthName(month, format), locale.standaloneMonthName(month, format)}) {
                        QString bare = name;
                        bare.remove(u'.');
                        if (bare.size() >= 3)
                            names.append(QRegularExpression::escape(bare));
                    }
                }
            }
        }
        names.append({u"maerz"_s, u"mrz"_s, u"sept"_s, u"okt"_s, u"dez"_s});
        names.removeDuplicates();
        std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) { return a.size() > b.size(); });
        return u"(?:"_s + names.join(u'|') + u")\\.?"_s;
    }();
    return pattern;
}

/** Everything in a name that says when, longest forms first. */
const QList<QRegularExpression> &datePatterns()
{
    static const QList<QRegularExpression> patterns = [] {
        const QString month = monthPattern();
        const QString year = u"(?:19|20)\\d\\d"_s;
        const QString begin = u"(?<![\\p{L}\\d])"_s;
        const QString end = u"(?![\\p{L}\\d])"_s;
        const QString upTo = u"\\s*(?:-|–|bis|to)\\s*"_s;
        const QString isoDay = year + u"[-_. ]?(?:0[1-9]|1[0-2])[-_. ]?(?:0[1-9]|[12]\\d|3[01])"_s;
        const QString clock = u"[-T ]\\d\\d[-.:]\\d\\d(?:[-.:]\\d\\d)?"_s;
        const QString dayMonth = u"(?:0?[1-9]|[12]\\d|3[01])\\.(?:0?[1-9]|1[0-2])"_s;
        const QString dayMonthYear = u"\\d{1,2}[./]\\s?\\d{1,2}[./]\\s?(?:\\d{4}|\\d{2})"_s;
        const QStringList texts{
            isoDay + upTo + isoDay,
            isoDay + clock,
            isoDay + upTo + u"(?:(?:0[1-9]|1[0-2])[-.])?(?:0[1-9]|[12]\\d|3[01])"_s,
            isoDay,
            u"\\d{1,2}\\.(?:\\d{1,2}\\.)?"_s + upTo + dayMonthYear,
            dayMonthYear,
            dayMonthYear + upTo + dayMonthYear,
            dayMonth + u"\\.?"_s + upTo + dayMonth + u"\\.?"_s,
            dayMonth + u"\\."_s,
            u"^\\d\\d(?:0[1-9]|1[0-2])(?:0[1-9]|[12]\\d|3[01])"_s,
            u"\\d{1,2}\\.?(?:\\s?"_s + month + u")?"_s + upTo + u"\\d{1,2}\\.?\\s?"_s + month + u"(?:\\s?"_s + year + u")?"_s,
            u"\\d{1,2}\\.?\\s?"_s + month + u"(?:\\s?"_s + year + u")?"_s,
            month + u"\\s?\\d{1,2},?\\s?"_s + year,
            month + upTo + month + u"\\s?"_s + year,
            month + u"\\s?'?(?:"_s + year + u"|\\d\\d)"_s,
            year + u"[-_. ](?:0[1-9]|1[0-2]|"_s + month + u")"_s,
            u"(?:0[1-9]|1[0-2])[-_./]"_s + year,
            year + upTo + u"(?:"_s + year + u"|\\d\\d)"_s,
            year + u"/\\d\\d"_s,
            u"(?:kw|q)\\s?\\d{1,2}(?:[-_ /]?"_s + year + u")?"_s,
            year,
            u"'\\d\\d"_s,
        };
        QList<QRegularExpression> compiled;
        for (const QString &text : texts) {
            compiled.append(QRegularExpression(begin + u"(?:"_s + text + u")"_s + end,
                QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption));
        }
        return compiled;
    }();
    return patterns;
}

/** Folders that cameras, phones and programs make. */
bool isTechnicalName(const QString &name)
{
    static const QRegularExpression pattern(
        u"^(?:\\d{3}[A-Z0-9_]{5}|\\d{3}[_-]?(?:canon|nikon|olymp|apple|media|msdcf|fuji|panas|_pana)\\w*|dcim|camera(?: roll)?|kamera|"
        "camera uploads|raw|raws|jpe?gs?|png|heic|export(?:iert)?|bearbeitet|edited|originale?s?|auswahl|"
        "neuer ordner|new folder|nouveau dossier|nuova cartella|nueva carpeta|nieuwe map|import|importe?d?|upload|uploads|"
        "download|downloads|desktop|schreibtisch|dokumente|documents|tmp|temp|home|"
        "takeout|google (?:fotos|photos)|whatsapp(?: images)?|fotos?|photos?|pictures|bilder|images?|pics|"
        "fotos? von|photos? from|(?:iphone|ipad|handy|smartphone|galaxy|pixel) (?:von|of|de) .+|.+['’]s? "
        "(?:iphone|ipad|handy|smartphone)|backup|sicherung|handy|smartphone|iphone|ipad|android|sonstiges?|diverse?s?|misc|test|jahr)"
        "(?:\\s*\\(?\\d{1,3}\\)?)?$"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    return pattern.match(name).hasMatch();
}

/** A month alone says no more than the dates do; three letters may be a person's name as well. */
bool isMonthName(const QString &name)
{
    static const QRegularExpression pattern(
        u"^"_s + monthPattern() + u"$"_s, QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    return name.size() > 3 && pattern.match(name).hasMatch();
}

/** "4. Juli " of "4. Juli in Boston": a day that the words after it belong to. */
QString partOfSentence(const QString &name)
{
    static const QRegularExpression pattern(
        u"^(?:\\d{1,2}\\.?\\s?)?"_s + monthPattern() + u"\\s+(?=(?:in|im|am|an|auf|bei|beim|mit|at|on|with|à|en)\\s)"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    return pattern.match(name).captured();
}

/** Writes abbreviations in capitals, whatever the folder's owner typed. */
void raiseAbbreviations(QString &name)
{
    static const QRegularExpression pattern(u"\\b(?:usa|uk|nyc|ddr|bbq|wm|em)\\b"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    for (auto matches = pattern.globalMatch(name); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        name.replace(match.capturedStart(), match.capturedLength(), match.captured().toUpper());
    }
}

bool hasLetter(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(), [](QChar c) { return c.isLetter() || c.isSurrogate(); });
}

/** The deepest folder that holds all of @p folders; empty if there is none. */
QString commonFolder(const QStringList &folders)
{
    QStringList common;
    bool first = true;
    for (const QString &folder : folders) {
        const QStringList parts = QDir::cleanPath(folder).split(u'/');
        if (first) {
            common = parts;
            first = false;
            continue;
        }
        qsizetype same = 0;
        while (same < common.size() && same < parts.size() && common.at(same) == parts.at(same))
            ++same;
        common.resize(same);
    }
    return common.join(u'/');
}

}

NyBookTitle::Result NyBookTitle::forBook(
    const QStringList &folders, const QString &picturesHome, const QStringList &occasions, const QDate &from, const QDate &to)
{
    Result result;
    QString folder = commonFolder(folders);
    const QString home = QDir::cleanPath(picturesHome);
    while (!folder.isEmpty() && folder != home && !(home + u'/').startsWith(folder + u'/')) {
        result.title = eventName(folder.section(u'/', -1));
        if (!result.title.isEmpty())
            break;
        folder = folder.section(u'/', 0, -2);
    }
    const QString dates = dateRange(from, to);
    for (const QString &occasion : occasions) {
        if (!result.title.isEmpty())
            break;
        result.title = occasionName(occasion);
    }
    if (!result.title.isEmpty()) {
        result.subtitle = dates;
        return result;
    }
    result.title = dates.isEmpty() ? tr("Unser Fotobuch") : dates;
    result.subtitle = tr("Unsere schönsten Momente");
    return result;
}

QString NyBookTitle::eventName(const QString &folderName)
{
    QString name = folderName.normalized(QString::NormalizationForm_C);
    // A school year or a turn of the year; as soon as the underscore is a blank, the second number could be anything.
    static const QRegularExpression twoYears(u"(?<!\\d)((?:19|20)\\d\\d)_(\\d\\d)(?!\\d|_\\d)"_s);
    name.replace(twoYears, u"\\1/\\2"_s);
    name.replace(u'_', u' ');
    const QString opening = partOfSentence(name);
    name.remove(0, opening.size());
    for (const QRegularExpression &pattern : datePatterns())
        name.replace(pattern, u" "_s);
    // What brackets held was often only the date.
    static const QRegularExpression emptyBrackets(u"[(\\[{]\\s*[)\\]}]"_s);
    name.remove(emptyBrackets);
    static const QRegularExpression copyMark(
        u"(?:\\s*\\(\\d{1,3}\\)|\\s*-\\s*(?:Kopie|Copy)(?:\\s*\\(\\d+\\))?)\\s*$"_s, QRegularExpression::CaseInsensitiveOption);
    name.remove(copyMark);
    name = name.simplified();
    static const QRegularExpression blankBeforeMark(u"\\s+(?=[!?])"_s);
    name.remove(blankBeforeMark);
    static const QRegularExpression looseEnds(u"^[\\s\\-–—.,;:+/&#~]+|[\\s\\-–—.,;:+/&#~(\\[{]+$"_s);
    name.remove(looseEnds);
    // A number that only sorts; "3 Wochen Neuseeland" and "50. Geburtstag" mean theirs.
    static const QRegularExpression sortingNumber(
        u"^(?:0\\d{1,2}[\\s.\\-–)]+|\\d{1,3}\\s*(?:\\)\\s*|\\s[\\-–]\\s+))(?=\\p{L})"_s, QRegularExpression::UseUnicodePropertiesOption);
    name.remove(sortingNumber);
    name.prepend(opening);
    if (!hasLetter(name) || isTechnicalName(name) || isMonthName(name))
        return {};

    const bool shouted = name.size() > 4 && name == name.toUpper();
    if (shouted) {
        name = name.toLower();
        for (qsizetype i = 0; i < name.size(); ++i) {
            if (i == 0 || !(name.at(i - 1).isLetterOrNumber() || name.at(i - 1) == u'\''))
                name[i] = name.at(i).toUpper();
        }
    } else if (name.size() < 2 || !name.at(1).isUpper()) {
        name[0] = name.at(0).toUpper();
    }
    raiseAbbreviations(name);
    return name;
}

QString NyBookTitle::dateRange(const QDate &from, const QDate &to)
{
    if (!from.isValid() || !to.isValid())
        return {};
    const QLocale locale = NyTranslation::locale();
    const QString dayOfYear = tr("d. MMMM yyyy", "date, as in QDate::toString()");
    const QString last = locale.toString(to, dayOfYear);
    if (from == to)
        return last;
    constexpr int longestInDays = 62;
    if (from.daysTo(to) > longestInDays) {
        if (from.year() != to.year())
            return u"%1 – %2"_s.arg(from.year()).arg(to.year());
        constexpr int nearlyAYear = 300;
        if (from.daysTo(to) > nearlyAYear)
            return QString::number(from.year());
        return u"%1 – %2"_s.arg(locale.toString(from, u"MMMM"_s), locale.toString(to, u"MMMM yyyy"_s));
    }
    QString firstFormat = dayOfYear;
    if (from.year() == to.year()) {
        firstFormat = from.month() == to.month() ? tr("d.", "day of a month, as in QDate::toString(), before a day with its month and year")
                                                 : tr("d. MMMM", "date without its year, as in QDate::toString()");
    }
    return u"%1 – %2"_s.arg(locale.toString(from, firstFormat), last);
}

QString NyBookTitle::day(const QDate &date)
{
    return NyTranslation::locale().toString(date, tr("dddd, d. MMMM yyyy", "date with its weekday, as in QDate::toString()"));
}

QString NyBookTitle::occasionName(const QString &keyword)
{
    const QHash<QString, QString> names{
        {u"wedding"_s, tr("Hochzeit")},
        {u"birthday"_s, tr("Geburtstag")},
        {u"christmas"_s, tr("Weihnachten")},
        {u"newyear"_s, tr("Silvester")},
        {u"easter"_s, tr("Ostern")},
        {u"carnival"_s, tr("Karneval")},
        {u"halloween"_s, tr("Halloween")},
        {u"baptism"_s, tr("Taufe")},
        {u"communion"_s, tr("Kommunion")},
        {u"school"_s, tr("Schulzeit")},
        {u"graduation"_s, tr("Abschlussfeier")},
        {u"baby"_s, tr("Unser Baby")},
        {u"anniversary"_s, tr("Jubiläum")},
        {u"beach"_s, tr("Am Strand")},
        {u"city"_s, tr("Städtereise")},
        {u"hiking"_s, tr("Wandern")},
        {u"snow"_s, tr("Winterfreuden")},
        {u"roadtrip"_s, tr("Rundreise")},
        {u"cruise"_s, tr("Kreuzfahrt")},
        {u"vacation"_s, tr("Urlaub")},
        {u"concert"_s, tr("Konzert")},
        {u"sports"_s, tr("Sport")},
        {u"zoo"_s, tr("Im Zoo")},
        {u"family"_s, tr("Familie")},
        {u"fair"_s, tr("Auf dem Volksfest")},
        {u"pets"_s, tr("Unsere Haustiere")},
    };
    return names.value(keyword);
}
