#include <QTest>

#include "NyDesignElementIDSet.h"

using namespace Qt::Literals::StringLiterals;

class tst_NyDesignElementIDSet : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void keepsOrderOfInsertion();
    void dropsRepetitions();
    void refusesInvalidIds_data();
    void refusesInvalidIds();
    void emptySet();
};

void tst_NyDesignElementIDSet::keepsOrderOfInsertion()
{
    const NyDesignElementIDSet set{NyDesignElementID(u"b"_s), NyDesignElementID(u"C"_s), NyDesignElementID(u"a"_s)};
    QCOMPARE(set.toStringList(false), QStringList({u"b"_s, u"C"_s, u"a"_s}));
    QCOMPARE(set.toStringList(true), QStringList({u"C"_s, u"a"_s, u"b"_s}));
}

void tst_NyDesignElementIDSet::dropsRepetitions()
{
    NyDesignElementIDSet set;
    QVERIFY(set.insert(NyDesignElementID(u"a"_s)));
    QVERIFY(!set.insert(NyDesignElementID(u" a "_s)));
    QVERIFY(set.insert(NyDesignElementID(u"A"_s)));
    QCOMPARE(set.count(), 2);
    QVERIFY(set.contains(NyDesignElementID(u"A"_s)));
    QVERIFY(!set.contains(NyDesignElementID(u"b"_s)));
}

void tst_NyDesignElementIDSet::refusesInvalidIds_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("empty") << QString();
    QTest::newRow("blanks") << u"  "_s;
    QTest::newRow("comma") << u"a,b"_s;
    QTest::newRow("inner blank") << u"a b"_s;
    QTest::newRow("newline") << u"a\nb"_s;
}

void tst_NyDesignElementIDSet::refusesInvalidIds()
{
    QFETCH(QString, id);
    NyDesignElementIDSet set;
    QVERIFY(!set.insert(NyDesignElementID(id)));
    QVERIFY(set.isEmpty());
}

void tst_NyDesignElementIDSet::emptySet()
{
    QCOMPARE(NyDesignElementIDSet().toStringList(false), QStringList());
    QCOMPARE(NyDesignElementIDSet().toStringList(true), QStringList());
}

QTEST_GUILESS_MAIN(tst_NyDesignElementIDSet)
#include "tst_NyDesignElementIDSet.moc"
