#include <QTest>

#include <NyDateRange.h>

using namespace Qt::Literals::StringLiterals;

class tst_NyDateRange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void expansion_data();
    void expansion();
    void containment_data();
    void containment();
    void validity_data();
    void validity();
    void description_data();
    void description();
    void copiesAreIndependent();
};

void tst_NyDateRange::expansion_data()
{
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<QDate>("newFrom");
    QTest::addColumn<QDate>("newTo");

    const QDate null;
    const QDate a(2024, 3, 1);
    const QDate b(2024, 3, 10);
    const QDate c(2024, 3, 20);
    QTest::newRow("empty by a date") << null << null << b << b << b;
    QTest::newRow("empty by nothing") << null << null << null << null << null;
    QTest::newRow("without start, later") << null << b << c << null << c;
    QTest::newRow("without start, earlier") << null << b << a << null << b;
    QTest::newRow("without start, the end itself") << null << b << b << null << b;
    QTest::newRow("without start, by nothing") << null << b << null << null << b;
    QTest::newRow("later") << a << b << c << a << c;
    QTest::newRow("earlier") << b << c << a << a << c;
    QTest::newRow("inside") << a << c << b << a << c;
    QTest::newRow("first day") << a << c << a << a << c;
    QTest::newRow("last day") << a << c << c << a << c;
    QTest::newRow("by nothing loses its start") << a << c << null << null << c;
    QTest::newRow("without end, later") << b << null << c << b << c;
    QTest::newRow("without end, earlier") << b << null << a << b << a;
    QTest::newRow("by an impossible date") << a << c << QDate(2024, 2, 30) << null << c;
    QTest::newRow("far away") << a << c << QDate(-4000, 1, 1) << QDate(-4000, 1, 1) << c;
}

void tst_NyDateRange::expansion()
{
    QFETCH(QDate, from);
    QFETCH(QDate, to);
    QFETCH(QDate, date);
    NyDateRange range(from, to);
    range.expandTo(date);
    QTEST(range.from(), "newFrom");
    QTEST(range.to(), "newTo");
}

void tst_NyDateRange::containment_data()
{
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");
    QTest::addColumn<QDate>("date");
    QTest::addColumn<bool>("contained");

    const QDate from(2023, 12, 31);
    const QDate to(2024, 2, 29);
    QTest::newRow("day before") << from << to << QDate(2023, 12, 30) << false;
    QTest::newRow("first day") << from << to << from << true;
    QTest::newRow("inside") << from << to << QDate(2024, 1, 15) << true;
    QTest::newRow("last day") << from << to << to << true;
    QTest::newRow("day after") << from << to << QDate(2024, 3, 1) << false;
    QTest::newRow("null date") << from << to << QDate() << false;
    QTest::newRow("null date in an empty range") << QDate() << QDate() << QDate() << false;
    QTest::newRow("date in an empty range") << QDate() << QDate() << from << false;
    QTest::newRow("one day") << from << from << from << true;
    QTest::newRow("turned round") << to << from << QDate(2024, 1, 15) << false;
}

void tst_NyDateRange::containment()
{
    QFETCH(QDate, from);
    QFETCH(QDate, to);
    QFETCH(QDate, date);
    const NyDateRange range(from, to);
    QTEST(range.contains(date), "contained");
    // Through the base, as a generic caller sees it.
    const NyRange<QDate> &base = range;
    QTEST(base.contains(date), "contained");
}

void tst_NyDateRange::validity_data()
{
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");
    QTest::addColumn<bool>("valid");

    const QDate day(2024, 5, 1);
    QTest::newRow("empty") << QDate() << QDate() << false;
    QTest::newRow("no start") << QDate() << day << false;
    QTest::newRow("no end") << day << QDate() << false;
    QTest::newRow("one day") << day << day << true;
    QTest::newRow("two days") << day << day.addDays(1) << true;
    QTest::newRow("turned round") << day << day.addDays(-1) << false;
}

void tst_NyDateRange::validity()
{
    QFETCH(QDate, from);
    QFETCH(QDate, to);
    QTEST(NyDateRange(from, to).isValid(), "valid");
}

void tst_NyDateRange::description_data()
{
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");
    QTest::addColumn<QDate>("reference");
    QTest::addColumn<QString>("text");

    const QDate reference(2024, 6, 1);
    QTest::newRow("empty") << QDate() << QDate() << reference << u"no dates"_s;
    QTest::newRow("this year") << QDate(2024, 3, 12) << QDate(2024, 3, 26) << reference << u"12 Mar to 26 Mar"_s;
    QTest::newRow("another year") << QDate(2023, 3, 12) << QDate(2023, 3, 26) << reference << u"12 Mar to 26 Mar 2023"_s;
    QTest::newRow("two years") << QDate(2023, 12, 27) << QDate(2024, 1, 3) << reference << u"27 Dec 2023 to 3 Jan 2024"_s;
    QTest::newRow("one day") << QDate(2024, 3, 12) << QDate(2024, 3, 12) << reference << u"12 Mar"_s;
    QTest::newRow("one day of another year") << QDate(2018, 3, 12) << QDate(2018, 3, 12) << reference << u"12 Mar 2018"_s;
    QTest::newRow("no start") << QDate() << QDate(2024, 3, 12) << reference << u"unknown to 12 Mar 2024"_s;
    QTest::newRow("no end") << QDate(2024, 3, 12) << QDate() << reference << u"12 Mar 2024 to unknown"_s;
    QTest::newRow("no reference") << QDate(2024, 3, 12) << QDate(2024, 3, 26) << QDate() << u"12 Mar to 26 Mar 2024"_s;
}

void tst_NyDateRange::description()
{
    QFETCH(QDate, from);
    QFETCH(QDate, to);
    QFETCH(QDate, reference);
    // A log is read by people of all languages: the words do not depend on the user's.
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    const QString described = NyDateRange(from, to).dateDescription(reference);
    QLocale::setDefault(before);
    QTEST(described, "text");
}

void tst_NyDateRange::copiesAreIndependent()
{
    const QDate day(2024, 5, 1);
    const NyDateRange original(day, day);
    NyDateRange copy = original;
    QVERIFY(copy == original);
    copy.expandTo(day.addDays(1));
    QCOMPARE(original.to(), day);
    QVERIFY(!(copy == original));
}

QTEST_APPLESS_MAIN(tst_NyDateRange)
#include "tst_NyDateRange.moc"
