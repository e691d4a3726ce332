#include <QLocale>
#include <QRandomGenerator>
#include <QTest>

#include <NyFolderNameParser.h>

using namespace Qt::Literals::StringLiterals;
using Form = NyFolderName::DateForm;
using Nature = NyFolderName::Nature;

Q_DECLARE_METATYPE(NyFolderName::DateForm)
Q_DECLARE_METATYPE(NyFolderName::Nature)

namespace
{

QString text(const NyFolderName::PartialDate &date)
{
    QString result = date.year > 0 ? QString::number(date.year) : u"?"_s;
    if (date.month > 0)
        result += u"-%1"_s.arg(date.month, 2, 10, QLatin1Char('0'));
    if (date.day > 0)
        result += (date.month > 0 ? u"-%1"_s : u"-?-%1"_s).arg(date.day, 2, 10, QLatin1Char('0'));
    return result;
}

QString dates(const NyFolderName &name)
{
    if (name.dateForm == Form::None)
        return {};
    return name.from == name.to ? text(name.from) : text(name.from) + u".."_s + text(name.to);
}

} // namespace

class tst_NyFolderNameParser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dates_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<Form>("form");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QString>("title");
        const auto row = [](const QString &name, Form form, const QString &expected, const QString &title = {}) {
            QTest::newRow(qPrintable(name)) << name << form << expected << title;
        };
        row(u"2024"_s, Form::Year, u"2024"_s);
        row(u"'24"_s, Form::Year, u"2024"_s);
        row(u"Rom '98"_s, Form::Year, u"1998"_s, u"Rom"_s);
        row(u"2049"_s, Form::Year, u"2049"_s);
        row(u"1839"_s, Form::None, {});
        row(u"1840"_s, Form::Year, u"1840"_s);
        row(u"2099"_s, Form::Year, u"2099"_s);
        row(u"2100"_s, Form::None, {});
        row(u"２０２４"_s, Form::Year, u"2024"_s);
        row(u"٢٠٢٤"_s, Form::Year, u"2024"_s);
        row(u"2019-2021"_s, Form::Years, u"2019..2021"_s);
        row(u"2019 bis 2021"_s, Form::Years, u"2019..2021"_s);
        row(u"2023-24"_s, Form::Years, u"2023..2024"_s);
        row(u"90er Jahre"_s, Form::Years, u"1990..1999"_s);
        row(u"1980s"_s, Form::Years, u"1980..1989"_s);
        row(u"années 80"_s, Form::Years, u"1980..1989"_s);

        row(u"2024-07"_s, Form::YearMonth, u"2024-07"_s);
        row(u"2024.7"_s, Form::YearMonth, u"2024-07"_s);
        row(u"07-2024"_s, Form::YearMonth, u"2024-07"_s);
        row(u"202407"_s, Form::YearMonth, u"2024-07"_s);
        row(u"2009-10"_s, Form::YearMonth, u"2009-10"_s);
        row(u"2024年7月"_s, Form::YearMonth, u"2024-07"_s);
        row(u"2024년 7월"_s, Form::YearMonth, u"2024-07"_s);
        row(u"Juli 24"_s, Form::YearMonth, u"2024-07"_s);
        row(u"Juli '24"_s, Form::YearMonth, u"2024-07"_s);
        row(u"2024-07 Juli"_s, Form::YearMonth, u"2024-07"_s);
        row(u"07 Juli 2024"_s, Form::YearMonth, u"2024-07"_s);
        row(u"июль 2024"_s, Form::YearMonth, u"2024-07"_s);
        row(u"Ιούλιος 2024"_s, Form::YearMonth, u"2024-07"_s);
        row(u"七月 2024"_s, Form::YearMonth, u"2024-07"_s);
        row(u"Agustus 2024"_s, Form::YearMonth, u"2024-08"_s);
        row(u"07 - Juli"_s, Form::Month, u"?-07"_s);

        row(u"2024-07-15"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"15.07.2024"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"15. 7. 2024"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"07-15-2024"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"07-08-2024"_s, Form::FullDate, u"2024-08-07"_s);
        row(u"15.07.24"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"31.12.99"_s, Form::FullDate, u"1999-12-31"_s);
        row(u"98-12-31"_s, Form::FullDate, u"1998-12-31"_s);
        row(u"240715"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"15072024"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"20240715183012"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"202407151830"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"20240715_183012"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"2024-07-15T18-30-12"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"2024-07-15 18.30 Uhr"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"2024-02-30"_s, Form::YearMonth, u"2024-02"_s);
        row(u"2023-02-29"_s, Form::YearMonth, u"2023-02"_s);
        row(u"2024-02-29"_s, Form::FullDate, u"2024-02-29"_s);
        row(u"32.01.2024"_s, Form::YearMonth, u"2024-01"_s);
        row(u"15 lipca 2024"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"15 července 2024"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"den 15 juli 2024"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"15 de julho de 2024"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"1er janvier 2024"_s, Form::FullDate, u"2024-01-01"_s);
        row(u"4 July"_s, Form::Day, u"?-07-04"_s);
        row(u"July 24"_s, Form::Day, u"?-07-24"_s);
        row(u"15.07."_s, Form::Day, u"?-07-15"_s);
        row(u"Sa 15.07.2024"_s, Form::FullDate, u"2024-07-15"_s);
        row(u"2024-07-15 lundi"_s, Form::FullDate, u"2024-07-15"_s);

        row(u"12.-26.03.2024"_s, Form::Range, u"2024-03-12..2024-03-26"_s);
        row(u"12.–26. März 2024"_s, Form::Range, u"2024-03-12..2024-03-26"_s);
        row(u"March 12 to 26, 2024"_s, Form::Range, u"2024-03-12..2024-03-26"_s);
        row(u"March 28 - April 3, 2024"_s, Form::Range, u"2024-03-28..2024-04-03"_s);
        row(u"20240312-0326"_s, Form::Range, u"2024-03-12..2024-03-26"_s);
        row(u"2024-12-28 - 2025-01-02"_s, Form::Range, u"2024-12-28..2025-01-02"_s);
        row(u"28.12.-02.01.2025"_s, Form::Range, u"2024-12-28..2025-01-02"_s);
        row(u"12-26 marca 2024"_s, Form::Range, u"2024-03-12..2024-03-26"_s);
        row(u"12 till 26 mars 2024"_s, Form::Range, u"2024-03-12..2024-03-26"_s);
        row(u"2024-03-26 - 2024-03-12"_s, Form::Range, u"2024-03-12..2024-03-26"_s);
        row(u"Juni-Juli 2024"_s, Form::Period, u"2024-06..2024-07"_s);
        row(u"Q3 2024"_s, Form::Period, u"2024"_s);
        row(u"2024-W12"_s, Form::Period, u"2024"_s);
        row(u"Winter 2023/24"_s, Form::Period, u"2023..2024"_s);
        row(u"2024年夏"_s, Form::Period, u"2024"_s);

        row(u"2024_07_15 Hochzeit Anna & Tom"_s, Form::FullDate, u"2024-07-15"_s, u"Hochzeit Anna & Tom"_s);
        row(u"Hochzeit_Anna_Tom_2024"_s, Form::Year, u"2024"_s, u"Hochzeit Anna Tom"_s);
        row(u"[2024-07-15] Rom (Tag und Nacht)"_s, Form::FullDate, u"2024-07-15"_s, u"Rom (Tag und Nacht)"_s);
        row(u"Fotos von der Hochzeit 2024"_s, Form::Year, u"2024"_s, u"Hochzeit"_s);
        row(u"Rom 12.-26.03.2024"_s, Form::Range, u"2024-03-12..2024-03-26"_s, u"Rom"_s);
        row(u"Mar Menor 2023"_s, Form::Year, u"2023"_s, u"Mar Menor"_s);
        row(u"Mai Tai"_s, Form::None, {}, u"Mai Tai"_s);
        row(u"Winter in Rom"_s, Form::None, {}, u"Winter in Rom"_s);
        row(u"Elba 2023"_s, Form::Year, u"2023"_s, u"Elba"_s);
        row(u"Maja 2023"_s, Form::Year, u"2023"_s, u"Maja"_s);
        row(u"100 Tage Nina"_s, Form::None, {}, u"Tage Nina"_s);
        row(u"東京旅行 2024"_s, Form::Year, u"2024"_s, u"東京旅行"_s);
        row(u"🎄 2023"_s, Form::Year, u"2023"_s, u"🎄"_s);
        row(u"Rom %1 %2"_s, Form::None, {}, u"Rom %1 %2"_s);
    }
    void dates()
    {
        QFETCH(QString, name);
        QFETCH(Form, form);
        QFETCH(QString, expected);
        QFETCH(QString, title);
        const NyFolderName parsed = NyFolderNameParser::parse(name);
        QCOMPARE(int(parsed.dateForm), int(form));
        QCOMPARE(::dates(parsed), expected);
        QCOMPARE(parsed.title, title);
        // The other normal form says the same.
        const NyFolderName decomposed = NyFolderNameParser::parse(name.normalized(QString::NormalizationForm_D));
        QCOMPARE(int(decomposed.dateForm), int(form));
        QCOMPARE(::dates(decomposed), expected);
        QCOMPARE(decomposed.title, title.normalized(QString::NormalizationForm_C));
    }

    void everyTrustedLanguageNamesItsMonths_data()
    {
        QTest::addColumn<QString>("language");
        for (const char *language :
            {"de", "en", "fr", "nl", "it", "es", "pl", "sv", "da", "nb", "pt", "cs", "fi", "hu", "tr", "ru", "el", "ro", "uk", "bg"})
            QTest::newRow(language) << QString::fromLatin1(language);
    }
    void everyTrustedLanguageNamesItsMonths()
    {
        QFETCH(QString, language);
        const QLocale locale(language);
        for (int month = 1; month <= 12; ++month) {
            const NyFolderName::PartialDate expected{2021, month, 0};
            const QString byName = locale.standaloneMonthName(month) + u" 2021"_s;
            QVERIFY2(NyFolderNameParser::parse(byName).from == expected, qPrintable(byName));
            // Turkish capitals do not come back as the small letters they were.
            if (byName.toUpper().toCaseFolded() == byName.toCaseFolded())
                QVERIFY2(NyFolderNameParser::parse(byName.toUpper()).from == expected, qPrintable(byName.toUpper()));
            const QString inDate = u"15 "_s + locale.monthName(month) + u" 2021"_s;
            QVERIFY2((NyFolderNameParser::parse(inDate).from == NyFolderName::PartialDate{2021, month, 15}), qPrintable(inDate));
            // A genitive by itself is rather a first name: "Maja", "Марта".
            if (locale.monthName(month, QLocale::ShortFormat) == locale.monthName(month)
                && locale.monthName(month) != locale.standaloneMonthName(month))
                continue;
            const QString shortForm = u"2021-"_s + locale.monthName(month, QLocale::ShortFormat);
            QVERIFY2(NyFolderNameParser::parse(shortForm).from == expected, qPrintable(shortForm));
        }
    }

    void natures_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<Nature>("nature");
        const auto row = [](const QString &name, Nature nature) { QTest::newRow(qPrintable(name)) << name << nature; };
        row(u"Rom"_s, Nature::Plain);
        row(u"2024"_s, Nature::Plain);
        row(u"100CANON"_s, Nature::Camera);
        row(u"100meter"_s, Nature::Plain);
        row(u"IMG_2024"_s, Nature::Camera);
        row(u"3F2504E0-4F89-41D3-9A0C-0305E82C3301"_s, Nature::Camera);
        row(QString(), Nature::Camera);
        row(u"---"_s, Nature::Camera);
        row(u"iPhone von Tom"_s, Nature::Camera);
        row(u"WhatsApp Images"_s, Nature::Source);
        row(u"RAW"_s, Nature::Technical);
        row(u"Tag 3 - Florenz"_s, Nature::DayPart);
        row(u"Teil 2"_s, Nature::DayPart);
        row(u"Abend"_s, Nature::DayPart);
        row(u"Renovierung Bad"_s, Nature::Project);
        row(u"Projektwoche"_s, Nature::Plain);
    }
    void natures()
    {
        QFETCH(QString, name);
        QFETCH(Nature, nature);
        QCOMPARE(int(NyFolderNameParser::parse(name).nature), int(nature));
    }

    void anyTextIsSurvived()
    {
        // Pieces of names in any order: nothing may crash, and what is read must be a date that exists.
        const QStringList pieces{u"2024"_s, u"24"_s, u"12"_s, u"31"_s, u"0"_s, u"00"_s, u"."_s, u"-"_s, u" - "_s, u"_"_s, u"'"_s, u"bis"_s,
            u"Juli"_s, u"mar"_s, u"Q"_s, u"KW"_s, u"Tag"_s, u"RAW"_s, u"iPhone"_s, u"von"_s, u"Winter"_s, u"年"_s, u"月"_s, u"日"_s,
            u"\U0001F384"_s, QString(QChar(0xd83c)), QString(QChar(0)), u"\u0301"_s, u"20240231"_s, u"99999999999999999999"_s, u"%1"_s,
            u"&"_s, u"er"_s, u"de"_s, u"h"_s, u"IMG"_s, u" "_s, u"("_s, u"to"_s, u"the"_s, u"Camera"_s, u"best"_s, u"of"_s, u"s"_s,
            u"\u200d"_s};
        QRandomGenerator random(20240715);
        for (int round = 0; round < 30000; ++round) {
            QString name;
            const int count = int(random.bounded(9));
            for (int piece = 0; piece < count; ++piece)
                name += pieces.at(random.bounded(pieces.size()));
            const NyFolderName parsed = NyFolderNameParser::parse(name);
            for (const NyFolderName::PartialDate &date : {parsed.from, parsed.to}) {
                QVERIFY2(date.month >= 0 && date.month <= 12, qPrintable(name));
                if (date.day > 0)
                    QVERIFY2(QDate::isValid(date.year > 0 ? date.year : 2000, date.month, date.day), qPrintable(name));
                QVERIFY2(date.year == 0 || (date.year >= 1840 && date.year <= 2199), qPrintable(name));
            }
            if (parsed.firstDay().isValid() && parsed.lastDay().isValid())
                QVERIFY2(parsed.firstDay() <= parsed.lastDay(), qPrintable(name + u" "_s + parsed.firstDay().toString(Qt::ISODate)));
            QVERIFY2(parsed.title.size() <= name.size(), qPrintable(name));
        }
    }
};

QTEST_GUILESS_MAIN(tst_NyFolderNameParser)
#include "tst_NyFolderNameParser.moc"
