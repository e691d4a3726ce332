#include <NyOrrinCalendar.h>

#include <QTest>

class tst_NyOrrinCalendar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void easter_data();
    void easter();
    void otherFeasts();
    void factors_data();
    void factors();
    void invalidDates();
};

void tst_NyOrrinCalendar::easter_data()
{
    QTest::addColumn<QDate>("expected");
    // The earliest and the latest possible dates are among them.
    for (const QDate day : {QDate(1818, 3, 22), QDate(1943, 4, 25), QDate(2000, 4, 23), QDate(2008, 3, 23), QDate(2019, 4, 21),
             QDate(2024, 3, 31), QDate(2025, 4, 20), QDate(2026, 4, 5), QDate(2038, 4, 25)})
        QTest::newRow(qPrintable(QString::number(day.year()))) << day;
}

void tst_NyOrrinCalendar::easter()
{
    QFETCH(QDate, expected);
    QCOMPARE(NyOrrinCalendar::easter(expected.year()), expected);
}

void tst_NyOrrinCalendar::otherFeasts()
{
    QCOMPARE(NyOrrinCalendar::firstAdvent(2022), QDate(2022, 11, 27));
    QCOMPARE(NyOrrinCalendar::firstAdvent(2023), QDate(2023, 12, 3));
    QCOMPARE(NyOrrinCalendar::firstAdvent(2024), QDate(2024, 12, 1));
    QCOMPARE(NyOrrinCalendar::ashWednesday(2024), QDate(2024, 2, 14));
    QCOMPARE(NyOrrinCalendar::carnivalBegin(2024), QDate(2024, 2, 8));
    QCOMPARE(NyOrrinCalendar::mothersDay(2024), QDate(2024, 5, 12));
    QCOMPARE(NyOrrinCalendar::mothersDay(2022), QDate(2022, 5, 8));
    QCOMPARE(NyOrrinCalendar::motheringSunday(2024), QDate(2024, 3, 10));
    QCOMPARE(NyOrrinCalendar::motheringSunday(2025), QDate(2025, 3, 30));
    QCOMPARE(NyOrrinCalendar::mexicanMothersDay(2025), QDate(2025, 5, 10));
    QCOMPARE(NyOrrinCalendar::spanishFathersDay(2025), QDate(2025, 3, 19));
    QCOMPARE(NyOrrinCalendar::thanksgiving(2023), QDate(2023, 11, 23));
    QCOMPARE(NyOrrinCalendar::thanksgiving(2024), QDate(2024, 11, 28));
    QCOMPARE(NyOrrinCalendar::frenchMothersDay(2024), QDate(2024, 5, 26));
    QCOMPARE(NyOrrinCalendar::frenchMothersDay(2023), QDate(2023, 6, 4));
    QCOMPARE(NyOrrinCalendar::spanishMothersDay(2024), QDate(2024, 5, 5));
    QCOMPARE(NyOrrinCalendar::germanFathersDay(2024), QDate(2024, 5, 9));
    QCOMPARE(NyOrrinCalendar::fathersDay(2024), QDate(2024, 6, 16));
}

void tst_NyOrrinCalendar::factors_data()
{
    QTest::addColumn<QString>("keyword");
    QTest::addColumn<QDate>("day");
    QTest::addColumn<bool>("isSouthern");
    QTest::addColumn<int>("sign");
    const auto row = [](const char *name, const char *keyword, QDate day, bool isSouthern, int sign) {
        QTest::newRow(name) << QString::fromLatin1(keyword) << day << isSouthern << sign;
    };
    row("christmas eve", "christmas", QDate(2023, 12, 24), false, 1);
    row("epiphany", "christmas", QDate(2024, 1, 6), false, 1);
    row("after epiphany", "christmas", QDate(2024, 1, 7), false, -1);
    row("christmas in june", "christmas", QDate(2024, 6, 1), true, -1);
    row("new year's eve", "newyear", QDate(2023, 12, 31), false, 1);
    row("new year's day", "newyear", QDate(2024, 1, 1), false, 1);
    row("third of january", "newyear", QDate(2024, 1, 3), false, -1);
    row("good friday", "easter", QDate(2024, 3, 29), false, 1);
    row("late easter's good friday", "easter", QDate(2025, 4, 18), false, 1);
    row("the same day in another year", "easter", QDate(2024, 4, 18), false, -1);
    row("shrove monday", "carnival", QDate(2024, 2, 12), false, 1);
    row("after ash wednesday", "carnival", QDate(2024, 3, 1), false, -1);
    row("november carnival", "carnival", QDate(2024, 11, 11), false, 1);
    row("halloween", "halloween", QDate(2024, 10, 31), false, 1);
    row("white sunday", "communion", QDate(2024, 4, 7), false, 1);
    row("beach in summer", "beach", QDate(2024, 7, 1), false, 1);
    row("beach in winter", "beach", QDate(2024, 1, 10), false, -1);
    row("beach in southern january", "beach", QDate(2024, 1, 10), true, 1);
    row("snow in southern july", "snow", QDate(2024, 7, 10), true, 1);
    row("snow in july", "snow", QDate(2024, 7, 10), false, -1);
    row("leap day", "snow", QDate(2024, 2, 29), false, 1);
    row("oktoberfest", "fair", QDate(2024, 9, 21), false, 1);
    row("the day before", "fair", QDate(2024, 9, 20), false, 0);
    row("saturday in june", "wedding", QDate(2024, 6, 15), false, 1);
    row("birthdays are any day", "birthday", QDate(2024, 6, 15), false, 0);
    row("unknown word", "nonsense", QDate(2024, 12, 24), false, 0);
}

void tst_NyOrrinCalendar::factors()
{
    QFETCH(QString, keyword);
    QFETCH(QDate, day);
    QFETCH(bool, isSouthern);
    QFETCH(int, sign);
    const double factor = NyOrrinCalendar::factor(keyword, day, isSouthern);
    QVERIFY(factor > 0.0);
    QCOMPARE(factor > 1.0 ? 1 : factor < 1.0 ? -1 : 0, sign);
}

void tst_NyOrrinCalendar::invalidDates()
{
    QCOMPARE(NyOrrinCalendar::factor(QStringLiteral("easter"), QDate(), false), 1.0);
    QCOMPARE(NyOrrinCalendar::factor(QStringLiteral("easter"), QDate(-4000, 1, 1), false), 1.0);
}

QTEST_GUILESS_MAIN(tst_NyOrrinCalendar)
#include "tst_NyOrrinCalendar.moc"
