#include <QTest>

#include <cmath>

#include <NyGeoPosition.h>

namespace
{

NyGeoPosition at(double latitude, double longitude)
{
    return NyGeoPosition(NyLatitude(latitude), NyLongitude(longitude));
}

}

class tst_NyGeoPosition : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void validity();
    void equality();
    void distance_data();
    void distance();
    void distanceOfNoPlace();
};

void tst_NyGeoPosition::validity()
{
    QVERIFY(!NyGeoPosition().isValid());
    QVERIFY(at(48.137, 11.575).isValid());
    QVERIFY(at(0.0, 0.0).isValid());
    QVERIFY(!NyGeoPosition(NyLatitude(48.137), NyLongitude()).isValid());
    QVERIFY(!NyGeoPosition(NyLatitude(), NyLongitude(11.575)).isValid());
    // The range is a question of its own.
    QVERIFY(at(151.2, 11.575).isValid());
    QVERIFY(!at(151.2, 11.575).latitude().isInValidRange());
    QCOMPARE(at(48.137, 371.575).longitude().decimalDegrees(), 371.575);
}

void tst_NyGeoPosition::equality()
{
    QVERIFY(at(1.0, 2.0) == at(1.0, 2.0));
    QVERIFY(!(at(1.0, 2.0) == at(2.0, 1.0)));
    QVERIFY(NyGeoPosition() == NyGeoPosition());
    QVERIFY(!(NyGeoPosition() == at(0.0, 0.0)));
}

void tst_NyGeoPosition::distance_data()
{
    QTest::addColumn<double>("latitude1");
    QTest::addColumn<double>("longitude1");
    QTest::addColumn<double>("latitude2");
    QTest::addColumn<double>("longitude2");
    QTest::addColumn<double>("metres");
    QTest::addColumn<double>("tolerance");
    QTest::newRow("same place") << 48.137 << 11.575 << 48.137 << 11.575 << 0.0 << 0.001;
    QTest::newRow("a degree along the equator") << 0.0 << 0.0 << 0.0 << 1.0 << 111195.08 << 1.0;
    QTest::newRow("a degree along a meridian") << 10.0 << 20.0 << 11.0 << 20.0 << 111195.08 << 1.0;
    QTest::newRow("pole to pole") << 90.0 << 0.0 << -90.0 << 0.0 << 20015114.4 << 10.0;
    QTest::newRow("across the date line") << 0.0 << 179.5 << 0.0 << -179.5 << 111195.08 << 1.0;
    QTest::newRow("opposite side") << 10.0 << 20.0 << -10.0 << -160.0 << 20015114.4 << 10.0;
    QTest::newRow("a step") << 48.137 << 11.575 << 48.137009 << 11.575 << 1.0 << 0.01;
}

void tst_NyGeoPosition::distance()
{
    QFETCH(double, latitude1);
    QFETCH(double, longitude1);
    QFETCH(double, latitude2);
    QFETCH(double, longitude2);
    QFETCH(double, metres);
    QFETCH(double, tolerance);
    const double there = at(latitude1, longitude1).distanceTo(at(latitude2, longitude2));
    const double back = at(latitude2, longitude2).distanceTo(at(latitude1, longitude1));
    QVERIFY2(std::abs(there - metres) <= tolerance, qPrintable(QString::number(there, 'f', 3)));
    QVERIFY2(std::abs(back - metres) <= tolerance, qPrintable(QString::number(back, 'f', 3)));
}

void tst_NyGeoPosition::distanceOfNoPlace()
{
    QVERIFY(std::isnan(NyGeoPosition().distanceTo(at(1.0, 1.0))));
    QVERIFY(std::isnan(at(1.0, 1.0).distanceTo(NyGeoPosition())));
}

QTEST_GUILESS_MAIN(tst_NyGeoPosition)
#include "tst_NyGeoPosition.moc"
