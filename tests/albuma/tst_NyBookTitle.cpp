#include <QLocale>
#include <QTest>

#include "NyBookTitle.h"

using namespace Qt::Literals::StringLiterals;

class tst_NyBookTitle : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void eventName_data();
    void eventName();
    void dateRange_data();
    void dateRange();
    void isGermanInEveryLocale();
    void forBook_data();
    void forBook();
};

void tst_NyBookTitle::eventName_data()
{
    QTest::addColumn<QString>("expected");
    const auto row = [](const QString &name, const QString &expected) { QTest::newRow(qPrintable(name)) << expected; };
    row(u"2024-07-12 Toskana"_s, u"Toskana"_s);
    row(u"Toskana 2024"_s, u"Toskana"_s);
    row(u"2024_07_12_Toskana_Urlaub"_s, u"Toskana Urlaub"_s);
    row(u"20240712 Geburtstag Oma"_s, u"Geburtstag Oma"_s);
    row(u"12.-26.03.2024 Skiurlaub"_s, u"Skiurlaub"_s);
    row(u"12.03.2024 - Taufe Emma"_s, u"Taufe Emma"_s);
    row(u"12. bis 14. Juli 2024 Berlin"_s, u"Berlin"_s);
    row(u"Sommer in Rom (Juli 2024)"_s, u"Sommer in Rom"_s);
    row(u"Juli 2024 - Nordsee"_s, u"Nordsee"_s);
    row(u"2024-07 Wanderung"_s, u"Wanderung"_s);
    row(u"Baden-Baden 2023"_s, u"Baden-Baden"_s);
    row(u"hochzeit anna & tom"_s, u"Hochzeit anna & tom"_s);
    row(u"URLAUB ITALIEN 2024"_s, u"Urlaub Italien"_s);
    row(u"USA 2024"_s, u"USA"_s);
    row(u"01 Anreise"_s, u"Anreise"_s);
    row(u"Toskana (2)"_s, u"Toskana"_s);
    row(u"Toskana - Kopie"_s, u"Toskana"_s);
    row(u"Mai-Ausflug"_s, u"Mai-Ausflug"_s);
    row(u"Ostern '24"_s, u"Ostern"_s);
    row(u"KW 12 2024 Messe"_s, u"Messe"_s);
    row(u"Été à Paris 2022"_s, u"Été à Paris"_s);
    row(u"50. Geburtstag Papa"_s, u"50. Geburtstag Papa"_s);
    row(u"3 Wochen Neuseeland"_s, u"3 Wochen Neuseeland"_s);
    row(u"2. Klasse 2024"_s, u"2. Klasse"_s);
    row(u"1 - Anreise"_s, u"Anreise"_s);
    row(u"12.03.-26.03. Kreta"_s, u"Kreta"_s);
    row(u"Saint-Tropez 14.07."_s, u"Saint-Tropez"_s);
    row(u"240504 Taufe"_s, u"Taufe"_s);
    row(u"2024-05-04_14-30-00 Fest"_s, u"Fest"_s);
    row(u"Schuljahr 2023_24"_s, u"Schuljahr"_s);
    row(u"Weihnachten 2023/24"_s, u"Weihnachten"_s);
    row(u"Abi 2024!"_s, u"Abi!"_s);
    row(u"4. Juli in Boston"_s, u"4. Juli in Boston"_s);
    row(u"Mai in Paris"_s, u"Mai in Paris"_s);
    row(u"14 juillet 2023 Nice"_s, u"Nice"_s);
    row(u"iPhone 2024 Ausflug"_s, u"iPhone Ausflug"_s);
    row(u"USA-REISE"_s, u"USA-Reise"_s);
    row(u"usa 2019"_s, u"USA"_s);
    row(u"Route 66"_s, u"Route 66"_s);
    row(u"Route 101010"_s, u"Route 101010"_s);
    row(u"Version 1.2 Feier"_s, u"Version 1.2 Feier"_s);
    row(u"iPhone von Tom"_s, QString());
    row(u"Juni"_s, QString());
    row(u"2024"_s, QString());
    row(u"2024-07-12"_s, QString());
    row(u"Juli 2024"_s, QString());
    row(u"100CANON"_s, QString());
    row(u"DCIM"_s, QString());
    row(u"Camera Roll"_s, QString());
    row(u"Fotos 2024"_s, QString());
    row(u"Neuer Ordner (3)"_s, QString());
    row(u"---"_s, QString());
    row(u"12345"_s, QString());
}

void tst_NyBookTitle::eventName()
{
    QFETCH(QString, expected);
    QCOMPARE(NyBookTitle::eventName(QString::fromUtf8(QTest::currentDataTag())), expected);
}

void tst_NyBookTitle::dateRange_data()
{
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");
    QTest::addColumn<QString>("expected");
    const auto row = [](const QDate &from, const QDate &to, const QString &expected) {
        QTest::newRow(qPrintable(from.toString(Qt::ISODate) + u" "_s + to.toString(Qt::ISODate))) << from << to << expected;
    };
    row(QDate(2024, 7, 12), QDate(2024, 7, 12), u"12. Juli 2024"_s);
    row(QDate(2024, 3, 12), QDate(2024, 3, 26), u"12. – 26. März 2024"_s);
    row(QDate(2024, 6, 28), QDate(2024, 7, 3), u"28. Juni – 3. Juli 2024"_s);
    row(QDate(2023, 12, 28), QDate(2024, 1, 3), u"28. Dezember 2023 – 3. Januar 2024"_s);
    row(QDate(2024, 6, 1), QDate(2024, 9, 30), u"Juni – September 2024"_s);
    row(QDate(2024, 1, 1), QDate(2024, 12, 31), u"2024"_s);
    row(QDate(2022, 5, 1), QDate(2024, 5, 1), u"2022 – 2024"_s);
    row(QDate(), QDate(2024, 5, 1), QString());
}

void tst_NyBookTitle::dateRange()
{
    QFETCH(QDate, from);
    QFETCH(QDate, to);
    QTEST(NyBookTitle::dateRange(from, to), "expected");
}

void tst_NyBookTitle::isGermanInEveryLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    const QString range = NyBookTitle::dateRange(QDate(2024, 3, 12), QDate(2024, 3, 26));
    const QString day = NyBookTitle::day(QDate(2024, 3, 12));
    QLocale::setDefault(before);
    QCOMPARE(range, u"12. – 26. März 2024"_s);
    QCOMPARE(day, u"Dienstag, 12. März 2024"_s);
}

void tst_NyBookTitle::forBook_data()
{
    QTest::addColumn<QStringList>("folders");
    QTest::addColumn<QStringList>("occasions");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("subtitle");
    const QString dates = u"12. – 26. März 2024"_s;
    QTest::newRow("event") << QStringList{u"/p/2024/Toskana 2024"_s} << QStringList{u"vacation"_s} << u"Toskana"_s << dates;
    QTest::newRow("days below the event") << QStringList{u"/p/2024/Toskana/Tag 1"_s, u"/p/2024/Toskana/Tag 2"_s} << QStringList()
                                          << u"Toskana"_s << dates;
    QTest::newRow("technical below the event") << QStringList{u"/p/Toskana/100CANON"_s} << QStringList() << u"Toskana"_s << dates;
    QTest::newRow("prefix of names") << QStringList{u"/p/Rom/Abend"_s, u"/p/Roma/Abend"_s} << QStringList{u"city"_s} << u"Städtereise"_s
                                     << dates;
    QTest::newRow("year, occasion") << QStringList{u"/p/2024"_s} << QStringList{u"unknown"_s, u"wedding"_s} << u"Hochzeit"_s << dates;
    QTest::newRow("pictures home") << QStringList{u"/p"_s} << QStringList() << dates << u"Unsere schönsten Momente"_s;
    QTest::newRow("above the pictures home") << QStringList{u"/p/a"_s, u"/elsewhere/b"_s} << QStringList() << dates
                                             << u"Unsere schönsten Momente"_s;
    QTest::newRow("no folder") << QStringList() << QStringList() << dates << u"Unsere schönsten Momente"_s;
}

void tst_NyBookTitle::forBook()
{
    QFETCH(QStringList, folders);
    QFETCH(QStringList, occasions);
    const NyBookTitle::Result words = NyBookTitle::forBook(folders, u"/p/"_s, occasions, QDate(2024, 3, 12), QDate(2024, 3, 26));
    QTEST(words.title, "title");
    QTEST(words.subtitle, "subtitle");
    QVERIFY(!NyBookTitle::forBook({}, QString(), {}, QDate(), QDate()).title.isEmpty());
}

QTEST_GUILESS_MAIN(tst_NyBookTitle)
#include "tst_NyBookTitle.moc"
