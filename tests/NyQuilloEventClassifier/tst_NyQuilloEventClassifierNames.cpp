#include <QTest>

#include <NyEventFolderClassificationResultList.h>
#include <NyQuilloEventClassifier.h>

#include "PictureTree.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// Kinds, for short rows.
constexpr int Unknown = 0;
constexpr int Year = 2;
constexpr int Month = 4;
constexpr int Day = 8;
constexpr int Event = 16;
constexpr int Project = 32;

struct Row {
    const char16_t* path; // the last folder is the one in question
    int kind;
    const char* why;
};

const Row Rows[] = {
    // Years
    {u"2024", Year, "a year alone"},
    {u"1984", Year, "a year, even though it is a book's title too"},
    {u"1984 (2)", Year, "a second copy of a year"},
    {u"1962", Year, "scanned slides have old years"},
    {u"Fotos 2024", Year, "de: a word for pictures is no title"},
    {u"2024 Fotos", Year, "de: the same in the other order"},
    {u"Bilder aus 2021", Year, "de: with a preposition"},
    {u"Jahr 2022", Year, "de: the word year is no title"},
    {u"Alle Bilder 2019", Year, "de: all pictures of a year"},
    {u"Fotoarchiv 2015", Year, "de: an archive of a year"},
    {u"2024 Handy", Year, "de: a year by the device it came from"},
    {u"Handyfotos 2023", Year, "de: a year by the device it came from"},
    {u"Familie 2023", Year, "de: a theme through a year is no event"},
    {u"Sonstiges 2020", Year, "de: the rest of a year"},
    {u"Photos from 2023", Year, "en: as an export names its years"},
    {u"Pictures 2018", Year, "en: a word for pictures is no title"},
    {u"Best of 2023", Year, "en: a selection of a year"},
    {u"My Photos 2010", Year, "en: words without a meaning of their own"},
    {u"iPhone 2023", Year, "en: a year by the device it came from"},
    {u"Photos de 2022", Year, "fr: with a preposition"},
    {u"Année 2021", Year, "fr: the word year is no title"},
    {u"Nos photos 2020", Year, "fr: our photos of a year"},
    {u"Foto 2022", Year, "it: a word for pictures is no title"},
    {u"Anno 2019", Year, "it: the word year is no title"},
    {u"Le mie foto 2018", Year, "it: my photos of a year"},
    {u"Fotos del año 2021", Year, "es: photos of the year"},
    {u"Mis fotos 2017", Year, "es: my photos of a year"},
    {u"Foto's 2020", Year, "nl: an apostrophe inside the word for photos"},
    {u"Jaar 2016", Year, "nl: the word year is no title"},
    {u"Zdjęcia 2023", Year, "pl: a word for pictures is no title"},
    {u"Bilder från 2022", Year, "sv: with a preposition"},
    {u"2023年", Year, "ja, zh: a year with its sign"},
    {u"2023年の写真", Event, "ja: words that run into one cannot be told from a title"},
    {u"'24", Year, "two digits behind an apostrophe are a year"},
    {u"📷 2024", Year, "a camera's symbol says no more than a word for pictures"},
    {u"Archiv/2024", Year, "a year in an archive"},
    {u"Familie/2024", Year, "years under a theme stay years"},
    {u"DCIM/2024", Year, "a name counts below a folder that a camera named"},
    {u"Renovierung/2023", Year, "a year in a project"},

    // Several years
    {u"2019-2021", Unknown, "three years are neither a year nor an event"},
    {u"2023-24", Unknown, "two years, the second one shortened"},
    {u"90er Jahre", Unknown, "de: a decade"},
    {u"1980s", Unknown, "en: a decade"},
    {u"années 80", Unknown, "fr: a decade"},
    {u"Schuljahr 2023-2024", Unknown, "de: a school year lasts as long as a year"},
    {u"Rom 2019-2021", Event, "a title over several years is still a title"},

    // Months
    {u"2024-07", Month, "year and month"},
    {u"2024_07", Month, "the same with an underscore"},
    {u"2024.07", Month, "the same with a dot"},
    {u"202407", Month, "the same without a sign between"},
    {u"07-2024", Month, "month and year"},
    {u"07.2024", Month, "month and year with a dot"},
    {u"2009-10", Month, "a month, not the years 2009 and 2010"},
    {u"März 2024", Month, "de: with an umlaut"},
    {u"Ma\u0308rz 2024", Month, "de: the umlaut in two characters, as some systems write names"},
    {u"Maerz 2024", Month, "de: the umlaut written out"},
    {u"2024 Juli", Month, "de: the year first"},
    {u"2024-07 Juli", Month, "de: number and name of the same month"},
    {u"Jänner 2024", Month, "de: as in Austria"},
    {u"Okt 2023", Month, "de: a short form"},
    {u"Fotos Juli 2024", Month, "de: a word for pictures is no title"},
    {u"Mai2024", Month, "de: nothing between name and year"},
    {u"Juli 24", Month, "de: two digits behind a German month are the year"},
    {u"JULI 2024", Month, "de: capitals"},
    {u"July 2024", Month, "en: a name"},
    {u"May 2024", Month, "en: a month rather than a first name, beside a year"},
    {u"Sept 2022", Month, "en: a short form"},
    {u"2024-Jul", Month, "en: a short form behind the year"},
    {u"mars 2024", Month, "fr: March, not the planet"},
    {u"août 2023", Month, "fr: with an accent"},
    {u"aout 2023", Month, "fr: without the accent"},
    {u"févr. 2022", Month, "fr: a short form with its dot"},
    {u"décembre 2021", Month, "fr: a name"},
    {u"luglio 2023", Month, "it: a name"},
    {u"set 2023", Month, "it: September beside a year, not a set"},
    {u"julio de 2023", Month, "es: with a preposition"},
    {u"Enero 2022", Month, "es: a name"},
    {u"maart 2024", Month, "nl: a name"},
    {u"mrt 2024", Month, "nl: a short form"},
    {u"lipiec 2023", Month, "pl: a name"},
    {u"augusti 2023", Month, "sv: a name"},
    {u"июль 2024", Month, "ru: another alphabet"},
    {u"2024年7月", Month, "ja: year and month with their signs"},
    {u"七月 2024", Month, "zh: a month's name"},
    {u"Juli", Month, "de: a month without a year"},
    {u"Mai", Month, "de: a month without a year"},
    {u"2024/07", Month, "a number up to twelve under a year"},
    {u"2024/7", Month, "the same without the zero"},
    {u"2024/12", Month, "the last of them"},
    {u"2024/07 Juli", Month, "the seventh month, not the seventh of July"},
    {u"2024/07-Juli", Month, "the same with a hyphen"},
    {u"2024/7 Juli", Month, "the same without the zero, under a year"},
    {u"2024/07 - Juli", Month, "a number that counts, and a name"},
    {u"2024/Juli", Month, "a name under a year"},
    {u"2024/Juli 2024", Month, "the year again"},
    {u"2024/2024-07", Month, "the year again in digits"},
    {u"2024/03 Mar", Month, "a short form with its number"},
    {u"2024/05 May", Month, "en: with its number"},
    {u"2024/Janvier", Month, "fr: a name under a year"},
    {u"2024/Fotos/07", Month, "a folder without a meaning does not break the place"},
    {u"Toskana/2024-07", Month, "a month under an event is a month"},

    // Days
    {u"2024-07-15", Day, "a full date, ISO"},
    {u"2024_07_15", Day, "the same with underscores"},
    {u"2024.07.15", Day, "the same with dots"},
    {u"20240715", Day, "the same without signs"},
    {u"240715", Day, "six digits at the beginning of a name"},
    {u"15.07.2024", Day, "German order"},
    {u"15.7.2024", Day, "German order without zeros"},
    {u"15. 7. 2024", Day, "German order with blanks"},
    {u"15.07.24", Day, "German order, short year"},
    {u"15-07-2024", Day, "the same order with hyphens"},
    {u"07-15-2024", Day, "US order: there is no fifteenth month"},
    {u"15. Juli 2024", Day, "de: month by name"},
    {u"7. Juli", Day, "de: a dot makes the number a day"},
    {u"Mo 15.07.2024", Day, "de: a weekday is no title"},
    {u"2024-07-15 Montag", Day, "de: a weekday is no title"},
    {u"15. Juli 24", Day, "de: short year"},
    {u"July 15, 2024", Day, "en: month first"},
    {u"July 4th, 2024", Day, "en: an ordinal number"},
    {u"4th of July 2024", Day, "en: day first"},
    {u"July 24", Day, "en: two digits behind an English month are a day"},
    {u"15 juillet 2024", Day, "fr: month by name"},
    {u"1er mai 2024", Day, "fr: the first of a month"},
    {u"15 luglio 2023", Day, "it: month by name"},
    {u"15 de julio de 2023", Day, "es: with prepositions"},
    {u"15 juli 2023", Day, "nl: month by name"},
    {u"15 maja 2024", Day, "pl: the genitive of May, behind a day"},
    {u"den 15 juli 2023", Day, "sv: with its article"},
    {u"2024年6月15日", Day, "ja: with all signs"},
    {u"20240615_123456", Day, "date and time of one photo"},
    {u"2024-06-15 18.30.12", Day, "date and time"},
    {u"2024-06-15 18h30", Day, "fr: date and time"},
    {u"2024-06-15 (2)", Day, "a second folder of a day"},
    {u"Import 2024-06-15", Day, "an import that says its day"},
    {u"IMG_20240615", Day, "a camera's prefix before a whole date"},
    {u"2024/07/15", Day, "a number under a month"},
    {u"2024/07/05", Day, "a number that might be a month too"},
    {u"2024/07 Juli/15.", Day, "with a dot"},
    {u"2024/07/15.07.", Day, "day and month under a month"},
    {u"2024/15.07.", Day, "day and month under a year"},
    {u"2024/07-15", Day, "month and day under a year"},
    {u"2024/0715", Day, "month and day without a sign, under a year"},
    {u"2024-07/31", Day, "the last day of a month"},
    {u"2024-02/29", Day, "in a leap year"},
    {u"2024/07/Sa 20", Day, "de: a weekday and a number under a month"},
    {u"Tag 3", Day, "a day of something"},

    // Numbers that are no dates
    {u"15", Unknown, "a number without a month above it"},
    {u"07", Unknown, "a number without a year above it"},
    {u"24", Unknown, "two digits without anything that makes them a date"},
    {u"2024/13", Unknown, "there is no thirteenth month"},
    {u"2024-02/30", Unknown, "there is no thirtieth of February"},
    {u"4711", Unknown, "four digits that are no year"},
    {u"1234", Unknown, "four digits that are no year"},
    {u"2024-13-45", Year, "a year followed by what is no date"},
    {u"0170 1234567", Unknown, "a telephone number"},
    {u"+49 30 1234567", Unknown, "a telephone number"},
    {u"0049301984", Unknown, "a telephone number that ends like a year"},
    {u"123456789012345678901234567890", Unknown, "more digits than any number has"},
    {u"IMG_2024", Unknown, "a running number, not a year"},
    {u"DSC00012", Unknown, "a running number"},
    {u"P1010012", Unknown, "a running number"},
    {u"3F2504E0-4F89-41D3-9A0C-0305E82C3301", Unknown, "an identifier"},
    {u"%1", Unknown, "a place marker is a number without a meaning"},
    {u"---", Unknown, "no word at all"},
    {u"(1)", Unknown, "no word at all"},

    // Events by title
    {u"2024_07_15 Hochzeit Anna & Tom", Event, "date and title"},
    {u"Hochzeit Anna und Tom 15.07.2024", Event, "title and date"},
    {u"Hochzeit", Event, "a title alone"},
    {u"Urlaub 2024", Event, "de: a title and a year"},
    {u"2024-07 Urlaub", Event, "de: a month and a title"},
    {u"Sommerurlaub", Event, "de: a season inside a word is no season"},
    {u"Maiwanderung", Event, "de: a month inside a word is no month"},
    {u"Mailand", Event, "de: a city, not May"},
    {u"Mailand 2023", Event, "de: a city and a year"},
    {u"Märzenbecher", Event, "de: a flower, not March"},
    {u"Augustiner", Event, "de: a brewery, not August"},
    {u"Skizzen", Event, "de: sketches, and nothing about snow"},
    {u"Taufkirchen", Event, "de: a town, and no baptism"},
    {u"Weihnachten bei Oma", Event, "de: a feast"},
    {u"Silvester 2023-24", Event, "de: a feast over two years"},
    {u"Abi 24", Event, "de: a title and a number"},
    {u"Projektwoche 2023", Event, "de: a week at school, not long-running work"},
    {u"Rohrbach", Event, "de: a town that begins like RAW"},
    {u"Fotos von der Hochzeit", Event, "de: what remains behind the words for pictures"},
    {u"1001 Nacht", Event, "de: a number that is no year"},
    {u"100 Tage Nina", Event, "de: not a camera's folder of that number"},
    {u"Sonntagsausflug", Event, "de: a weekday inside a word"},
    {u"Exportmesse", Event, "de: a word that begins like Export"},
    {u"Klein-Venedig", Event, "de: a town with the word small in it"},
    {u"Anna's 18th Birthday", Event, "en: an ordinal number that is no date"},
    {u"Christmas 2023", Event, "en: a feast and a year"},
    {u"Marie 2023", Event, "en: a name that begins like March"},
    {u"Route 66", Event, "en: a number that is no date"},
    {u"Blade Runner 2049", Event, "en: a title with a year"},
    {u"Camera Obscura", Event, "en: a title that begins like a device"},
    {u"Trip to Rome - July 2023", Event, "en: title and month"},
    {u"Signal Iduna Park", Event, "a stadium, not the messenger"},
    {u"WhatsApp Hochzeit Anna", Event, "a title beside the source"},
    {u"Mar Menor 2023", Event, "es: a lagoon, not March"},
    {u"Mar Menor", Event, "es: a lagoon, not March"},
    {u"Boda de Ana y Luis", Event, "es: a wedding"},
    {u"Vacaciones 2023", Event, "es: holidays"},
    {u"Semana Santa 2024", Event, "es: Holy Week, not a calendar week"},
    {u"Mariage de Sophie", Event, "fr: a wedding"},
    {u"Vacances d'été 2023", Event, "fr: holidays with a season"},
    {u"Saint-Malo 2022", Event, "fr: a city"},
    {u"14 juillet", Day, "fr: a feast that is only a date"},
    {u"Matrimonio di Laura", Event, "it: a wedding"},
    {u"Vacanze al mare 2023", Event, "it: holidays"},
    {u"Marzabotto", Event, "it: a town that begins like March"},
    {u"Bruiloft Kees en Els", Event, "nl: a wedding"},
    {u"Koningsdag 2024", Event, "nl: a feast"},
    {u"Meivakantie", Event, "nl: a month inside a word"},
    {u"Wesele Kasi", Event, "pl: a wedding"},
    {u"Maja 2023", Event, "pl: a first name, not the genitive of May"},
    {u"Midsommar 2023", Event, "sv: a feast"},
    {u"Elba 2023", Event, "an island, whatever a distant language calls a month"},
    {u"東京旅行 2024", Event, "ja: a title"},
    {u"Ο γάμος", Event, "el: a title"},
    {u"🎄 2023", Event, "a symbol that says an occasion"},
    {u"🎂", Event, "a symbol alone"},
    {u"Rom_2024_Tag_und_Nacht", Event, "the word day without a number"},
    {u"Hochzeit \"Anna\": 100%", Event, "quotes, colon and percent sign"},
    {u"Zeile1\nZeile2", Event, "a line break inside a name"},
    {u"  Rom  ", Event, "blanks at both ends"},
    {u"2024/07/15/Hochzeit", Event, "a title under a day"},
    {u"2024/Rom", Event, "a title under a year"},
    {u"2024/07 Rom", Event, "a month's number and a title"},
    {u"DCIM/Rom", Event, "a title below a folder that a camera named"},
    {u"WhatsApp Images/Rom", Event, "a title below a messenger's folder"},
    {u"Tag 3 - Florenz", Event, "a title, as long as there is no event above it"},
    {u"Familie", Event, "a theme alone is a title"},

    // Events by dates
    {u"12.-26.03.2024", Event, "a range alone, German order"},
    {u"12. - 26. März 2024", Event, "de: a range with a month's name"},
    {u"vom 12. bis 26. März 2024", Event, "de: in words"},
    {u"12.03.-26.03.2024", Event, "both ends with their months"},
    {u"30.12.-02.01.2024", Event, "over the turn of the year"},
    {u"2024-03-12 - 2024-03-26", Event, "a range, ISO"},
    {u"2024-03-12_2024-03-26", Event, "two dates"},
    {u"2024-03-12 bis 26", Event, "de: the end by its day"},
    {u"20240312-20240326", Event, "a range without signs"},
    {u"March 12-26, 2024", Event, "en: a range"},
    {u"12 to 26 March 2024", Event, "en: in words"},
    {u"du 12 au 26 mars 2024", Event, "fr: in words"},
    {u"dal 12 al 26 marzo 2024", Event, "it: in words"},
    {u"del 12 al 26 de marzo de 2024", Event, "es: in words"},
    {u"12 tot 26 maart 2024", Event, "nl: in words"},
    {u"12 do 26 marca 2024", Event, "pl: in words"},
    {u"12 till 26 mars 2024", Event, "sv: in words"},
    {u"KW 12 2024", Event, "de: a calendar week is a range"},
    {u"Week 12 2024", Event, "en: a calendar week"},
    {u"semaine 12", Event, "fr: a calendar week"},
    {u"2024-W12", Event, "ISO: a calendar week"},
    {u"Sommer 2024", Event, "de: a season is a range"},
    {u"Summer 2023", Event, "en: a season"},
    {u"été 2023", Event, "fr: a season"},
    {u"Estate 2023", Event, "it: a season"},
    {u"Verano 2023", Event, "es: a season"},
    {u"Zomer 2023", Event, "nl: a season"},
    {u"Winter 2023-24", Event, "a season over two years"},
    {u"Q3 2024", Event, "a quarter is a range"},
    {u"3. Quartal 2024", Event, "de: a quarter"},
    {u"3e trimestre 2024", Event, "fr: a quarter"},
    {u"Juni-Juli 2024", Event, "two months are a range"},
    {u"2024/07/15.-17.", Event, "three days under a month"},
    {u"2024/KW 28", Event, "a week under a year"},

    // Below events
    {u"2024-06-15 Hochzeit/RAW", Unknown, "files of one format"},
    {u"2024-06-15 Hochzeit/JPG", Unknown, "files of one format"},
    {u"2024-06-15 Hochzeit/CR2", Unknown, "files of one format"},
    {u"2024-06-15 Hochzeit/Export", Unknown, "a state of work"},
    {u"2024-06-15 Hochzeit/100CANON", Unknown, "a camera's folder inside an event"},
    {u"2024-06-15 Hochzeit/bearbeitet", Unknown, "de: a state of work"},
    {u"2024-06-15 Hochzeit/Auswahl", Unknown, "de: a selection"},
    {u"2024-06-15 Hochzeit/Auswahl 2", Unknown, "de: a second selection"},
    {u"2024-06-15 Hochzeit/edited", Unknown, "en: a state of work"},
    {u"2024-06-15 Hochzeit/Selection", Unknown, "en, fr: a selection"},
    {u"2024-06-15 Hochzeit/Black and White", Unknown, "en: a treatment"},
    {u"2024-06-15 Mariage/retouchées", Unknown, "fr: a state of work"},
    {u"2024-06-15 Matrimonio/Selezione", Unknown, "it: a selection"},
    {u"2024-06-15 Boda/editadas", Unknown, "es: a state of work"},
    {u"2024-06-15 Bruiloft/bewerkt", Unknown, "nl: a state of work"},
    {u"2024-06-15 Hochzeit/Teil 2", Unknown, "de: a part by its number"},
    {u"2024-06-15 Hochzeit/Part 1", Unknown, "en: a part by its number"},
    {u"2024-06-15 Hochzeit/Abend", Unknown, "de: a part of the day"},
    {u"2024-06-15 Hochzeit/01 Standesamt", Unknown, "parts in their order"},
    {u"2024-06-15 Hochzeit/01", Unknown, "a number without a meaning of its own"},
    {u"2024-06-15 Hochzeit/iPhone von Tom", Unknown, "de: somebody's camera"},
    {u"2024-06-15 Hochzeit/Tom's iPhone", Unknown, "en: somebody's camera"},
    {u"2024-06-15 Hochzeit/Annas Handy", Unknown, "de: somebody's camera"},
    {u"2024-06-15 Hochzeit/WhatsApp Images", Unknown, "what others sent"},
    {u"2024-06-15 Hochzeit/RAW/100CANON", Unknown, "two steps below an event"},
    {u"Toskana 2024/Tag 3 - Florenz", Day, "de: a day of the journey, whatever its title"},
    {u"Toskana 2024/Tag 3", Day, "de: a day of the journey"},
    {u"Toskana 2024/3. Tag", Day, "de: the number first"},
    {u"Toskana 2024/Day 2", Day, "en: a day of the journey"},
    {u"Toskana 2024/2nd day", Day, "en: the number first"},
    {u"Toscane 2024/Jour 1 Pise", Day, "fr: a day of the journey"},
    {u"Toscana 2024/Giorno 4", Day, "it: a day of the journey"},
    {u"Toscana 2024/Día 2 - Pisa", Day, "es: a day of the journey"},
    {u"Toscane 2024/Dag 5", Day, "nl: a day of the journey"},
    {u"Toskana 2024/2024-03-14", Day, "a date inside a journey"},
    {u"Toskana 2024/2024-03-14 Florenz", Day, "a dated part of a journey"},
    {u"12.-26.03.2024/14.03. Florenz", Day, "a dated part of a range"},
    {u"Toskana 2024/KW 12", Unknown, "a week inside a journey"},
    {u"Toskana 2024/Florenz", Event, "a title of its own"},
    {u"Rom 2019/2024-06-15 Hochzeit", Event, "another year cannot belong to it"},

    // Cameras, imports and sources
    {u"100CANON", Unknown, "a camera's folder"},
    {u"101APPLE", Unknown, "a telephone's folder"},
    {u"100_0615", Unknown, "a camera's folder with a date inside that nobody meant"},
    {u"102_PANA", Unknown, "a camera's folder"},
    {u"DCIM", Unknown, "what every camera has"},
    {u"Camera", Unknown, "en: a telephone's folder"},
    {u"Camera Roll", Unknown, "en: a telephone's folder"},
    {u"Eigene Aufnahmen", Unknown, "de: a telephone's folder"},
    {u"Pellicule", Unknown, "fr: a telephone's folder"},
    {u"Rullino", Unknown, "it: a telephone's folder"},
    {u"Carrete", Unknown, "es: a telephone's folder"},
    {u"Filmrol", Unknown, "nl: a telephone's folder"},
    {u"Takeout", Unknown, "an export"},
    {u"Google Photos", Unknown, "an export"},
    {u"iCloud Photos", Unknown, "a cloud's folder"},
    {u"Neuer Ordner", Unknown, "de: nobody named it"},
    {u"Neuer Ordner (2)", Unknown, "de: nobody named it, twice"},
    {u"New folder", Unknown, "en: nobody named it"},
    {u"Nouveau dossier", Unknown, "fr: nobody named it"},
    {u"Nuova cartella", Unknown, "it: nobody named it"},
    {u"Nueva carpeta", Unknown, "es: nobody named it"},
    {u"Nieuwe map", Unknown, "nl: nobody named it"},
    {u"iPhone von Tom", Unknown, "de: somebody's telephone"},
    {u"iPhone de Marie", Unknown, "fr: somebody's telephone"},
    {u"iPhone 12 Pro Max", Unknown, "a model, not December"},
    {u"Galaxy S21", Unknown, "a model"},
    {u"Canon EOS 5D Mark III", Unknown, "a model"},
    {u"Fotos", Unknown, "a word for pictures"},
    {u"Unsortiert", Unknown, "de: nothing has been sorted"},
    {u"À trier", Unknown, "fr: nothing has been sorted"},
    {u"Diverses", Unknown, "de: everything else"},
    {u"RAW", Unknown, "a format without an event"},
    {u"2024/100CANON", Unknown, "a camera's folder under a year"},
    {u"2024-07-15/100CANON", Unknown, "a camera's folder under a day"},
    {u"WhatsApp Images", Unknown, "a messenger's folder"},
    {u"WhatsApp Images 2024", Unknown, "a messenger's folder of a year"},
    {u"WhatsApp/Media/WhatsApp Images", Unknown, "a messenger's folder in its place"},
    {u"Telegram", Unknown, "a messenger's folder"},
    {u"Signal", Unknown, "a messenger's folder"},
    {u"Viber", Unknown, "a messenger's folder"},
    {u"Messenger", Unknown, "a messenger's folder"},
    {u"Instagram", Unknown, "an app's folder"},
    {u"Facebook", Unknown, "an app's folder"},
    {u"Snapseed", Unknown, "an app's folder"},
    {u"Downloads", Unknown, "en: what was fetched"},
    {u"Téléchargements", Unknown, "fr: what was fetched"},
    {u"Scans", Unknown, "papers"},

    // Projects
    {u"Renovierung", Project, "de: long-running work"},
    {u"Renovierung Bad 2023", Project, "de: with a title and a year"},
    {u"Hausbau", Project, "de: long-running work"},
    {u"Hausbau 2021-2023", Project, "de: with its years"},
    {u"Stammbaum", Project, "de: long-running work"},
    {u"Portfolio", Project, "en: long-running work"},
    {u"Family Tree", Project, "en: two words"},
    {u"Rénovation maison", Project, "fr: long-running work"},
    {u"Ristrutturazione", Project, "it: long-running work"},
    {u"Árbol genealógico", Project, "es: two words"},
    {u"Verbouwing keuken", Project, "nl: with a title"},
    {u"Remont", Project, "pl: long-running work"},
    {u"Hausbau/Keller", Unknown, "a part of the work"},
    {u"Hausbau/2022-05-12 Richtfest", Event, "a dated occasion in the work"},
    {u"2023/Renovierung", Project, "under a year"},
};

} // namespace

/** What a folder's name and place make of it. Its pictures lie more than twenty years apart, so that they never decide. */
class tst_NyQuilloEventClassifierNames : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void kind_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("why");
        QSet<QString> known;
        for (const Row& row : Rows) {
            const QString path = QString::fromUtf16(row.path);
            QVERIFY2(!known.contains(path), qPrintable(path));
            known.insert(path);
            QTest::newRow(qPrintable(path + u": "_s + QLatin1String(row.why))) << path << row.kind << QString::fromLatin1(row.why);
        }
    }
    void kind()
    {
        QFETCH(QString, path);
        QFETCH(int, kind);
        QFETCH(QString, why);
        PictureTree tree;
        tree.addDistantPictures(path);
        NyQuilloEventClassifier classifier((QFileInfo(tree.root())));
        const NyEventFolderClassificationResultList results(classifier.eventFolderTypes(QFileInfo(tree.root()), {}));
        QCOMPARE(results.size(), path.count(QLatin1Char('/')) + 1);
        QCOMPARE(results.constLast().directoryPath(), tree.path(path));
        const NyEventFolderType expected(kind);
        QVERIFY2(results.constLast().classification().value() == expected.value(),
            qPrintable(u"%1 expected, because: %2\n%3"_s.arg(expected.encode(), why, results.toString())));
    }
    void thereAreRowsEnoughOfEveryKind()
    {
        QHash<int, int> counts;
        for (const Row& row : Rows)
            ++counts[row.kind];
        for (const int kind : {Unknown, Year, Month, Day, Event})
            QVERIFY(counts.value(kind) >= 30);
        QVERIFY(counts.value(Project) >= 10);
    }
};

QTEST_GUILESS_MAIN(tst_NyQuilloEventClassifierNames)
#include "tst_NyQuilloEventClassifierNames.moc"
