#include "NyCalendarWords.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

#include <QtCore/QLocale>
#include <QtCore/QStringList>

namespace
{

QString folded(const QString &word)
{
    return word.normalized(QString::NormalizationForm_C).toCaseFolded();
}

QSet<QString> words(std::initializer_list<const char16_t *> list)
{
    QSet<QString> set;
    set.reserve(qsizetype(list.size()));
    for (const char16_t *word : list)
        set.insert(folded(QString::fromUtf16(word)));
    return set;
}

// The languages whose month names are trusted and whose short forms are known at all. The first ones win where two disagree about a word.
QList<QLocale::Language> trustedLanguages()
{
    return {
        QLocale::German,
        QLocale::English,
        QLocale::French,
        QLocale::Dutch,
        QLocale::Italian,
        QLocale::Spanish,
        QLocale::Polish,
        QLocale::Swedish,
        QLocale::Danish,
        QLocale::NorwegianBokmal,
        QLocale::NorwegianNynorsk,
        QLocale::Portuguese,
        QLocale::Catalan,
        QLocale::Galician,
        QLocale::Basque,
        QLocale::Czech,
        QLocale::Slovak,
        QLocale::Slovenian,
        QLocale::Croatian,
        QLocale::Serbian,
        QLocale::Bosnian,
        QLocale::Macedonian,
        QLocale::Bulgarian,
        QLocale::Hungarian,
        QLocale::Romanian,
        QLocale::Finnish,
        QLocale::Estonian,
        QLocale::Latvian,
        QLocale::Lithuanian,
        QLocale::Icelandic,
        QLocale::Albanian,
        QLocale::Turkish,
        QLocale::Greek,
        QLocale::Russian,
        QLocale::Ukrainian,
        QLocale::Belarusian,
        QLocale::Hebrew,
        QLocale::Arabic,
        QLocale::Persian,
        QLocale::Japanese,
        QLocale::Korean,
        QLocale::Chinese,
    };
}

// What would be a month, in a distant language or without its marks, and is a place, a first name or a plain word where photos are sorted.
const QSet<QString> &misleadingMonths()
{
    static const QSet<QString> set = words({
        u"adar",
        u"dama",
        u"elba",
        u"eost",
        u"gulan",
        u"here",
        u"iune",
        u"jenner",
        u"jona",
        u"julie",
        u"kamena",
        u"kanama",
        u"kasim",
        u"kele",
        u"korse",
        u"mabasa",
        u"mach",
        u"machi",
        u"malaki",
        u"marco",
        u"maris",
        u"marto",
        u"masa",
        u"mashi",
        u"mata",
        u"medi",
        u"meyi",
        u"nadale",
        u"nollaig",
        u"orara",
        u"out",
        u"pamba",
        u"samhain",
        u"sune",
        u"wanja",
        u"zin",
        u"julija",
        u"augusto",
        u"agusta",
        u"martio",
        u"marso",
        u"junie",
    });
    return set;
}

// Short forms that are no word of their own in the languages in which people name folders.
const QSet<QString> &safeShortForms()
{
    static const QSet<QString> set = words({
        u"jan",
        u"j\u00e4n",
        u"janv",
        u"feb",
        u"febr",
        u"f\u00e9vr",
        u"fevr",
        u"m\u00e4r",
        u"mrz",
        u"mrt",
        u"apr",
        u"avr",
        u"jun",
        u"juin",
        u"jul",
        u"juil",
        u"aug",
        u"sep",
        u"sept",
        u"okt",
        u"oct",
        u"nov",
        u"dec",
        u"dez",
        u"d\u00e9c",
        u"dic",
        u"abr",
        u"ene",
        u"giu",
        u"lug",
        u"pa\u017a",
        u"wrz",
        u"kwi",
        u"gru",
    });
    return set;
}

bool isLatin(const QString &word)
{
    for (const QChar c : word) {
        if (c.isLetter() && c.script() != QChar::Script_Latin)
            return false;
    }
    return true;
}

// A single word without digits: "de gener" and "1月" are understood by their parts.
bool isPlainWord(const QString &word)
{
    for (const QChar c : word) {
        if (!c.isLetter() && !c.isMark() && !c.isSurrogate())
            return false;
    }
    return !word.isEmpty();
}

QString withoutDot(QString word)
{
    while (word.endsWith(QLatin1Char('.')))
        word.chop(1);
    return word;
}

QString withoutMarks(const QString &word)
{
    QString plain;
    const QString parts = word.normalized(QString::NormalizationForm_D);
    for (const QChar c : parts) {
        if (!c.isMark())
            plain.append(c == QChar(0x0131) ? QChar(u'i') : c);
    }
    return plain;
}

} // namespace

const NyCalendarWords &NyCalendarWords::instance()
{
    static const NyCalendarWords words;
    return words;
}

NyCalendarWords::NyCalendarWords()
    : m_seasons(words({
        u"fr\u00fchling",
        u"fruehling",
        u"fr\u00fchjahr",
        u"fruehjahr",
        u"sommer",
        u"herbst",
        u"winter", // de
        u"fr\u00fchlings",
        u"sommers",
        u"winters",
        u"spring",
        u"summer",
        u"autumn",
        u"fall",
        u"printemps",
        u"\u00e9t\u00e9",
        u"ete",
        u"automne",
        u"hiver",
        u"primavera",
        u"estate",
        u"autunno",
        u"inverno",
        u"verano",
        u"oto\u00f1o",
        u"otono",
        u"invierno",
        u"lente",
        u"voorjaar",
        u"zomer",
        u"herfst",
        u"najaar",
        u"wiosna",
        u"lato",
        u"jesie\u0144",
        u"jesien",
        u"zima",
        u"v\u00e5r",
        u"sommar",
        u"h\u00f6st",
        u"vinter",
        u"for\u00e5r",
        u"efter\u00e5r",
        u"ver\u00e3o",
        u"outono",
        u"\u6625",
        u"\u590f",
        u"\u79cb",
        u"\u51ac",
    }))
    , m_quarters(words({u"q", u"quartal", u"quarter", u"trimestre", u"kwartaal", u"kwarta\u0142", u"kwartal", u"kvartal", u"trim"}))
    , m_halfYears(words({u"halbjahr", u"semester", u"semestre", u"halfjaar", u"p\u00f3\u0142rocze", u"halv\u00e5r"}))
    , m_weeks(words({
          u"kw",
          u"kalenderwoche",
          u"woche",
          u"week",
          u"wk",
          u"cw",
          u"semaine",
          u"settimana",
          u"semana",
          u"tydzie\u0144",
          u"tydzien",
          u"vecka",
          u"uge",
          u"uke",
          u"w",
      }))
    , m_decades(words({u"jahre", u"jahren", u"ann\u00e9es", u"annees", u"anni", u"a\u00f1os", u"anos", u"jaren", u"lata", u"talet"}))
    , m_ranges(words({
          u"bis",
          u"to",
          u"till",
          u"til",
          u"until",
          u"through",
          u"thru",
          u"au",
          u"al",
          u"a",
          u"\u00e0",
          u"tot",
          u"do",
          u"hasta",
          u"at\u00e9",
          u"fino",
          u"und",
          u"and",
          u"et",
          u"e",
          u"y",
          u"en",
          u"och",
          u"i",
          u"og",
          u"\uae4c\uc9c0",
          u"\u307e\u3067",
      }))
    , m_joints(words({u"de", u"del", u"di", u"of", u"den", u"d", u"dell", u"dello", u"do", u"des", u"the"}))
    , m_ordinals(words({u"st", u"nd", u"rd", u"th", u"er", u"re", u"e", u"\u00ba", u"\u00aa", u"ste", u"de", u"a", u"o"}))
{
    addMonths();
}

void NyCalendarWords::addMonth(const QString &word, int number, Trust trust)
{
    const auto known = m_months.find(word);
    if (known == m_months.end())
        m_months.insert(word, Month{number, trust, false});
    else if (known->number == number && trust < known->trust)
        known->trust = trust;
}

void NyCalendarWords::addMonthVariants(const QString &word, int number, Trust trust)
{
    addMonth(word, number, trust);
    // People type names without the marks that their keyboard lacks.
    const QString plain = withoutMarks(word);
    if (plain.size() > 3 && !misleadingMonths().contains(plain))
        addMonth(plain, number, trust);
    QString spelled = word;
    spelled.replace(QChar(0x00e4), QStringLiteral("ae"))
        .replace(QChar(0x00fc), QStringLiteral("ue"))
        .replace(QChar(0x00f6), QStringLiteral("oe"));
    addMonth(spelled, number, trust);
}

void NyCalendarWords::addMonths()
{
    const QList<QLocale> all = QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
    QHash<QLocale::Language, QList<QLocale>> byLanguage;
    for (const QLocale &locale : all)
        byLanguage[locale.language()].append(locale);

    const QList<QLocale::Language> trusted = trustedLanguages();
    for (const QLocale::Language language : trusted) {
        const QList<QLocale> locales = byLanguage.take(language);
        for (const QLocale &locale : locales) {
            for (int number = 1; number <= 12; ++number) {
                const QString name = folded(locale.standaloneMonthName(number));
                if (isPlainWord(name))
                    addMonthVariants(name, number, Trust::Full);
                const QString inDate = folded(locale.monthName(number));
                if (inDate != name && isPlainWord(inDate))
                    addMonthVariants(inDate, number, Trust::Genitive);
            }
            for (int day = 1; day <= 7; ++day) {
                for (const auto format : {QLocale::LongFormat, QLocale::ShortFormat}) {
                    m_weekdays.insert(withoutDot(folded(locale.dayName(day, format))));
                    m_weekdays.insert(withoutDot(folded(locale.standaloneDayName(day, format))));
                }
            }
        }
        for (const QLocale &locale : locales) {
            for (int number = 1; number <= 12; ++number) {
                for (const QString &form :
                    {locale.standaloneMonthName(number, QLocale::ShortFormat), locale.monthName(number, QLocale::ShortFormat)}) {
                    const QString shortForm = withoutDot(folded(form));
                    if (shortForm.size() > 1 && isPlainWord(shortForm))
                        addMonth(shortForm, number,
                            safeShortForms().contains(shortForm) || !isLatin(shortForm) ? Trust::Short : Trust::WeakShort);
                }
            }
        }
    }
    // A lone letter is too little to be a weekday.
    for (auto word = m_weekdays.begin(); word != m_weekdays.end();)
        word = word->isEmpty() || (word->size() == 1 && isLatin(*word)) ? m_weekdays.erase(word) : std::next(word);
    addMonth(QStringLiteral("mrz"), 3, Trust::Short);
    addMonth(QStringLiteral("jan"), 1, Trust::Short);

    // Hash order would make words that two languages share change their meaning from run to run.
    QList<QLocale::Language> distant = byLanguage.keys();
    std::sort(distant.begin(), distant.end());
    for (const QLocale::Language language : std::as_const(distant)) {
        for (const QLocale &locale : std::as_const(byLanguage[language])) {
            for (int number = 1; number <= 12; ++number) {
                for (const QString &form : {locale.standaloneMonthName(number), locale.monthName(number)}) {
                    const QString name = folded(form);
                    if (!isPlainWord(name) || misleadingMonths().contains(name) || m_months.contains(name))
                        continue;
                    if (!isLatin(name))
                        addMonth(name, number, Trust::Full);
                    else if (name.size() >= 4)
                        addMonth(name, number, Trust::Foreign);
                }
            }
        }
    }

    for (const char16_t *word : {u"january", u"february", u"march", u"may", u"june", u"july", u"october", u"december"}) {
        const auto found = m_months.find(QString::fromUtf16(word));
        if (found != m_months.end())
            found->englishOnly = true;
    }
}
