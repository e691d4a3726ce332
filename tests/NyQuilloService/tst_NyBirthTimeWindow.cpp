#include "NyBirthTimeWindow.h"

#include <QDateTime>
#include <QTest>

#include <ctime>

using Verdict = NyBirthTimeWindow::Verdict;

class tst_NyBirthTimeWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void agreesWithDates_data();
    void agreesWithDates();
    void bothEndsAreInside();
    void reversedRange();
    void rangesWithoutAnEnd_data();
    void rangesWithoutAnEnd();
    void cleanup();
};

void tst_NyBirthTimeWindow::cleanup()
{
    qunsetenv("TZ");
    ::tzset();
}

void tst_NyBirthTimeWindow::agreesWithDates_data()
{
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");
    const auto row
        = [](const char *name, const char *zone, QDate from, QDate to) { QTest::newRow(name) << QByteArray(zone) << from << to; };
    row("UTC", "UTC", {2024, 2, 29}, {2024, 3, 1});
    row("one day", "UTC", {2024, 2, 29}, {2024, 2, 29});
    row("spring and autumn", "Europe/Berlin", {2024, 3, 31}, {2024, 10, 27});
    row("autumn to spring", "Europe/Berlin", {2024, 10, 27}, {2025, 3, 30});
    row("a day that begins at one", "America/Havana", {2024, 3, 10}, {2024, 3, 10});
    row("a range before that day", "America/Havana", {2024, 3, 1}, {2024, 3, 9});
    row("a midnight that comes twice", "America/Havana", {2024, 11, 2}, {2024, 11, 3});
    row("clocks put back at midnight", "Asia/Beirut", {2024, 10, 26}, {2024, 10, 27});
    row("clocks put forward at midnight", "Asia/Beirut", {2024, 3, 31}, {2024, 3, 31});
    row("a day that was left out, first", "Pacific/Apia", {2011, 12, 30}, {2011, 12, 31});
    row("a day that was left out, last", "Pacific/Apia", {2011, 12, 28}, {2011, 12, 30});
    row("a day that was left out, behind", "Pacific/Apia", {2011, 12, 28}, {2011, 12, 29});
    row("half hours", "Australia/Lord_Howe", {2024, 4, 7}, {2024, 10, 6});
    row("before the epoch", "Europe/Berlin", {1969, 12, 30}, {1970, 1, 1});
}

void tst_NyBirthTimeWindow::agreesWithDates()
{
    QFETCH(QByteArray, zone);
    QFETCH(QDate, from);
    QFETCH(QDate, to);
    qputenv("TZ", zone);
    ::tzset();
    const NyDateRange range(from, to);
    const NyBirthTimeWindow window(range);
    int inside = 0;
    int after = 0;
    for (const QDate day : {from, to}) {
        const qint64 middle = day.startOfDay(Qt::UTC).toMSecsSinceEpoch();
        // Two days to both sides, to the minute and, about each full hour, to the millisecond.
        for (qint64 ms = middle - 48 * 3600000LL; ms <= middle + 48 * 3600000LL; ms += 60000) {
            for (const qint64 moment : {ms - 1, ms, ms + 1}) {
                const QDate date = QDateTime::fromMSecsSinceEpoch(moment).date();
                const Verdict expected = range.contains(date) ? Verdict::Inside : date > to ? Verdict::After : Verdict::Outside;
                if (window.verdict(moment) != expected)
                    QFAIL(qPrintable(QStringLiteral("%1 ms").arg(moment)));
                inside += expected == Verdict::Inside;
                after += expected == Verdict::After;
            }
        }
    }
    QVERIFY(inside > 0);
    QVERIFY(after > 0);
}

void tst_NyBirthTimeWindow::bothEndsAreInside()
{
    const NyBirthTimeWindow window(NyDateRange(QDate(2024, 5, 1), QDate(2024, 5, 31)));
    const auto verdict = [&window](QDate day, QTime time) { return window.verdict(QDateTime(day, time).toMSecsSinceEpoch()); };
    QCOMPARE(verdict({2024, 4, 30}, {23, 59, 59, 999}), Verdict::Outside);
    QCOMPARE(verdict({2024, 5, 1}, {0, 0}), Verdict::Inside);
    QCOMPARE(verdict({2024, 5, 31}, {23, 59, 59, 999}), Verdict::Inside);
    QCOMPARE(verdict({2024, 6, 1}, {0, 0}), Verdict::After);
}

void tst_NyBirthTimeWindow::reversedRange()
{
    const NyBirthTimeWindow window(NyDateRange(QDate(2024, 5, 31), QDate(2024, 5, 1)));
    const auto verdict = [&window](QDate day) { return window.verdict(day.startOfDay().toMSecsSinceEpoch()); };
    QCOMPARE(verdict({2024, 4, 30}), Verdict::Outside);
    QCOMPARE(verdict({2024, 5, 1}), Verdict::Outside);
    QCOMPARE(verdict({2024, 5, 2}), Verdict::After);
    QCOMPARE(verdict({2024, 6, 1}), Verdict::After);
}

void tst_NyBirthTimeWindow::rangesWithoutAnEnd_data()
{
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");
    QTest::newRow("none") << QDate() << QDate();
    QTest::newRow("no start") << QDate() << QDate(2024, 5, 1);
    QTest::newRow("no end") << QDate(2024, 5, 1) << QDate();
}

void tst_NyBirthTimeWindow::rangesWithoutAnEnd()
{
    QFETCH(QDate, from);
    QFETCH(QDate, to);
    const NyDateRange range(from, to);
    const NyBirthTimeWindow window(range);
    for (const QDate date : {QDate(2024, 4, 30), QDate(2024, 5, 1), QDate(2024, 5, 2)}) {
        const Verdict expected = range.contains(date) ? Verdict::Inside : date > to ? Verdict::After : Verdict::Outside;
        QCOMPARE(window.verdict(date.startOfDay().toMSecsSinceEpoch()), expected);
    }
}

QTEST_GUILESS_MAIN(tst_NyBirthTimeWindow)
#include "tst_NyBirthTimeWindow.moc"
