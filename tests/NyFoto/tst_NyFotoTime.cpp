#include <QTest>

#include <QTimeZone>

#include <NyFotoTime.h>

using namespace Qt::Literals::StringLiterals;

class tst_NyFotoTime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void readable_data();
    void readable();
    void unreadable_data();
    void unreadable();
    void skippedHour();
    void repeatedHour();
    void wallClockNeverMoves_data();
    void wallClockNeverMoves();
    void firstReadableWins();
};

void tst_NyFotoTime::initTestCase()
{
    // The machine's zone has a summer time.
    qputenv("TZ", "Europe/Berlin");
    tzset();
    QCOMPARE(QDateTime(QDate(2024, 7, 1), QTime(12, 0)).offsetFromUtc(), 7200);
}

void tst_NyFotoTime::readable_data()
{
    QTest::addColumn<QString>("dateTime");
    QTest::addColumn<QString>("subSeconds");
    QTest::addColumn<QString>("offset");
    QTest::addColumn<QDateTime>("expected");
    const QDate date(2024, 7, 14);
    QTest::newRow("EXIF") << u"2024:07:14 18:30:05"_s << u""_s << u""_s << QDateTime(date, QTime(18, 30, 5));
    QTest::newRow("EXIF with fraction") << u"2024:07:14 18:30:05"_s << u"25"_s << u""_s << QDateTime(date, QTime(18, 30, 5, 250));
    QTest::newRow("fraction with blanks") << u"2024:07:14 18:30:05"_s << u" 007 "_s << u""_s << QDateTime(date, QTime(18, 30, 5, 7));
    QTest::newRow("long fraction") << u"2024:07:14 18:30:05"_s << u"123456789"_s << u""_s << QDateTime(date, QTime(18, 30, 5, 123));
    QTest::newRow("fraction is no number") << u"2024:07:14 18:30:05"_s << u"abc"_s << u""_s << QDateTime(date, QTime(18, 30, 5));
    QTest::newRow("EXIF with offset") << u"2024:07:14 18:30:05"_s << u""_s << u"+09:00"_s
                                      << QDateTime(date, QTime(18, 30, 5), Qt::OffsetFromUTC, 32400);
    QTest::newRow("negative offset") << u"2024:07:14 18:30:05"_s << u""_s << u"-03:30"_s
                                     << QDateTime(date, QTime(18, 30, 5), Qt::OffsetFromUTC, -12600);
    QTest::newRow("unreadable offset") << u"2024:07:14 18:30:05"_s << u""_s << u"+99:00"_s << QDateTime(date, QTime(18, 30, 5));
    QTest::newRow("blank offset") << u"2024:07:14 18:30:05"_s << u""_s << u"   :  "_s << QDateTime(date, QTime(18, 30, 5));
    QTest::newRow("dashes") << u"2024-07-14 18:30:05"_s << u""_s << u""_s << QDateTime(date, QTime(18, 30, 5));
    QTest::newRow("ISO") << u"2024-07-14T18:30:05"_s << u""_s << u""_s << QDateTime(date, QTime(18, 30, 5));
    QTest::newRow("ISO with all") << u"2024-07-14T18:30:05.25+02:00"_s << u""_s << u""_s
                                  << QDateTime(date, QTime(18, 30, 5, 250), Qt::OffsetFromUTC, 7200);
    QTest::newRow("ISO in UTC") << u"2024-07-14T18:30:05Z"_s << u""_s << u""_s << QDateTime(date, QTime(18, 30, 5), Qt::OffsetFromUTC, 0);
    QTest::newRow("ISO to the minute") << u"2024-07-14T18:30"_s << u""_s << u""_s << QDateTime(date, QTime(18, 30));
    QTest::newRow("date alone") << u"2024-07-14"_s << u""_s << u""_s << QDateTime(date, QTime(0, 0));
    QTest::newRow("blanks around") << u" 2024:07:14 18:30:05 "_s << u""_s << u""_s << QDateTime(date, QTime(18, 30, 5));
    QTest::newRow("leap day") << u"2024:02:29 00:00:00"_s << u""_s << u""_s << QDateTime(QDate(2024, 2, 29), QTime(0, 0));
    QTest::newRow("last second of a year") << u"2023:12:31 23:59:59"_s << u""_s << u""_s
                                           << QDateTime(QDate(2023, 12, 31), QTime(23, 59, 59));
    QTest::newRow("scan of an old print") << u"1911:05:01 12:00:00"_s << u""_s << u""_s << QDateTime(QDate(1911, 5, 1), QTime(12, 0));
}

void tst_NyFotoTime::readable()
{
    QFETCH(QString, dateTime);
    QFETCH(QString, subSeconds);
    QFETCH(QString, offset);
    QFETCH(QDateTime, expected);
    const QDateTime time = NyFotoTime::parse({dateTime, subSeconds, offset});
    QVERIFY(time.isValid());
    QCOMPARE(time, expected);
    QCOMPARE(time.date(), expected.date());
    QCOMPARE(time.time(), expected.time());
    QCOMPARE(time.timeSpec(), expected.timeSpec());
    QCOMPARE(time.offsetFromUtc(), expected.offsetFromUtc());
}

void tst_NyFotoTime::unreadable_data()
{
    QTest::addColumn<QString>("dateTime");
    for (const char *text :
        {"", " ", "0000:00:00 00:00:00", "    :  :     :  :  ", "2024:00:10 10:00:00", "2024:13:01 10:00:00", "2023:02:29 10:00:00",
            "2024:07:14 24:00:00", "2024:07:14 18:60:00", "2024:07:14 18:30:61", "2024:07", "2024", "14.07.2024 18:30:05",
            "2024:07:14 18:30:05 x", "12024:07:14 18:30:05", "0001:01:01 00:00:00", "1825:12:31 23:59:59", "2024:07:14\n18:30:05 ", "now"})
        QTest::newRow(*text ? text : "empty") << QString::fromLatin1(text);
    QTest::newRow("other digits") << u"\u0662\u0660\u0662\u0664:07:14 18:30:05"_s;
}

void tst_NyFotoTime::unreadable()
{
    QFETCH(QString, dateTime);
    QVERIFY(!NyFotoTime::parse({dateTime, {}, {}}).isValid());
}

void tst_NyFotoTime::skippedHour()
{
    // Berlin's clocks go from 2:00 to 3:00; those of cameras need not.
    QVERIFY(!QDateTime(QDate(2027, 3, 28), QTime(2, 30)).isValid());
    const QDateTime time = NyFotoTime::parse({u"2027:03:28 02:30:00"_s, {}, {}});
    QVERIFY(time.isValid());
    QCOMPARE(time.date(), QDate(2027, 3, 28));
    QCOMPARE(time.time(), QTime(2, 30));
    QCOMPARE(time.offsetFromUtc(), 3600);
    // Order is kept around it.
    const QDateTime before = NyFotoTime::parse({u"2027:03:28 01:59:59"_s, {}, {}});
    QVERIFY(before < time);
}

void tst_NyFotoTime::repeatedHour()
{
    const QDateTime time = NyFotoTime::parse({u"2027:10:31 02:30:00"_s, {}, {}});
    QVERIFY(time.isValid());
    QCOMPARE(time.time(), QTime(2, 30));
}

void tst_NyFotoTime::wallClockNeverMoves_data()
{
    QTest::addColumn<QString>("offset");
    for (const char *offset : {"", "Z", "+14:00", "-12:00", "+05:45", "-00:30"})
        QTest::newRow(*offset ? offset : "none") << QString::fromLatin1(offset);
}

void tst_NyFotoTime::wallClockNeverMoves()
{
    QFETCH(QString, offset);
    for (const QTime &clock : {QTime(0, 0), QTime(0, 30), QTime(12, 0), QTime(23, 30), QTime(23, 59, 59)}) {
        const QDateTime time = NyFotoTime::parse({u"2024:12:31 "_s + clock.toString(u"HH:mm:ss"), {}, offset});
        QCOMPARE(time.date(), QDate(2024, 12, 31));
        QCOMPARE(time.time(), clock);
    }
}

void tst_NyFotoTime::firstReadableWins()
{
    NyImageMetaData data;
    QVERIFY(!NyFotoTime::captureTime(data).isValid());
    data.captureTimes = {{u"0000:00:00 00:00:00"_s, {}, {}}, {u"2024:07:14 18:30:05"_s, u"5"_s, {}}, {u"2025:01:01 00:00:00"_s, {}, {}}};
    QCOMPARE(NyFotoTime::captureTime(data), QDateTime(QDate(2024, 7, 14), QTime(18, 30, 5, 500)));
}

QTEST_GUILESS_MAIN(tst_NyFotoTime)
#include "tst_NyFotoTime.moc"
