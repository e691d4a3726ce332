#include <QTest>

#include <cmath>
#include <limits>
#include <numbers>

#include <NyGeoArc.h>
#include <NyLatitude.h>
#include <NyLongitude.h>

namespace
{

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinity = std::numeric_limits<double>::infinity();

}

class tst_NyGeoArc : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void unknownArcs();
    void sexagesimal_data();
    void sexagesimal();
    void radians();
    void latitudeRange_data();
    void latitudeRange();
    void normalizedLongitude_data();
    void normalizedLongitude();
};

void tst_NyGeoArc::unknownArcs()
{
    QVERIFY(!NyGeoArc().isKnown());
    QVERIFY(std::isnan(NyGeoArc().decimalDegrees()));
    QVERIFY(!NyGeoArc(NaN).isKnown());
    QVERIFY(!NyGeoArc(Infinity).isKnown());
    QVERIFY(!NyGeoArc(-Infinity).isKnown());
    QVERIFY(NyGeoArc(0.0).isKnown());
    QVERIFY(NyGeoArc() == NyGeoArc(NaN));
    QVERIFY(!(NyGeoArc() == NyGeoArc(0.0)));
    QVERIFY(NyGeoArc(12.5) == NyGeoArc(12.5));
    QVERIFY(!NyLongitude().normalized().isKnown());
}

void tst_NyGeoArc::sexagesimal_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("minutes");
    QTest::addColumn<double>("seconds");
    QTest::addColumn<bool>("negative");
    QTest::addColumn<double>("expected");
    QTest::newRow("north") << 43.0 << 28.0 << 2.81400000 << false << 43.467448333333;
    QTest::newRow("south") << 43.0 << 28.0 << 2.81400000 << true << -43.467448333333;
    QTest::newRow("fraction in the minutes") << 11.0 << 53.106 << 0.0 << false << 11.8851;
    QTest::newRow("less than a degree, south") << 0.0 << 30.0 << 0.0 << true << -0.5;
    QTest::newRow("not a number") << 1.0 << NaN << 0.0 << false << NaN;
}

void tst_NyGeoArc::sexagesimal()
{
    QFETCH(double, degrees);
    QFETCH(double, minutes);
    QFETCH(double, seconds);
    QFETCH(bool, negative);
    QFETCH(double, expected);
    const NyGeoArc arc = NyGeoArc::fromDegreesMinutesSeconds(degrees, minutes, seconds, negative);
    QCOMPARE(arc.isKnown(), !std::isnan(expected));
    if (arc.isKnown())
        QVERIFY2(std::abs(arc.decimalDegrees() - expected) < 1e-10, qPrintable(QString::number(arc.decimalDegrees(), 'g', 15)));
}

void tst_NyGeoArc::radians()
{
    QCOMPARE(NyGeoArc(180.0).radians(), std::numbers::pi);
    QCOMPARE(NyGeoArc(-90.0).radians(), -std::numbers::pi / 2.0);
    QVERIFY(std::isnan(NyGeoArc().radians()));
}

void tst_NyGeoArc::latitudeRange_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<bool>("expected");
    QTest::newRow("equator") << 0.0 << true;
    QTest::newRow("north pole") << 90.0 << true;
    QTest::newRow("south pole") << -90.0 << true;
    QTest::newRow("just above the north pole") << std::nextafter(90.0, 91.0) << false;
    QTest::newRow("just below the south pole") << std::nextafter(-90.0, -91.0) << false;
    QTest::newRow("longitude in the wrong place") << 151.2 << false;
    QTest::newRow("unknown") << NaN << false;
}

void tst_NyGeoArc::latitudeRange()
{
    QFETCH(double, degrees);
    QFETCH(bool, expected);
    QCOMPARE(NyLatitude(degrees).isInValidRange(), expected);
    QCOMPARE(NyLatitude(NyGeoArc(degrees)).isInValidRange(), expected);
}

void tst_NyGeoArc::normalizedLongitude_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<double>("expected");
    QTest::newRow("zero") << 0.0 << 0.0;
    QTest::newRow("east") << 151.25 << 151.25;
    QTest::newRow("west") << -122.5 << -122.5;
    QTest::newRow("date line from the east") << 180.0 << 180.0;
    QTest::newRow("date line from the west") << -180.0 << 180.0;
    QTest::newRow("past the date line") << 190.0 << -170.0;
    QTest::newRow("past the date line westward") << -190.0 << 170.0;
    QTest::newRow("full turn") << 360.0 << 0.0;
    QTest::newRow("full turn and a half") << 540.0 << 180.0;
    QTest::newRow("two and a half turns back") << -900.0 << 180.0;
    QTest::newRow("only positive notation") << 237.5 << -122.5;
}

void tst_NyGeoArc::normalizedLongitude()
{
    QFETCH(double, degrees);
    QFETCH(double, expected);
    QCOMPARE(NyLongitude(degrees).normalized().decimalDegrees(), expected);
    QCOMPARE(NyLongitude(NyGeoArc(degrees)).normalized(), NyLongitude(expected));
}

QTEST_GUILESS_MAIN(tst_NyGeoArc)
#include "tst_NyGeoArc.moc"
