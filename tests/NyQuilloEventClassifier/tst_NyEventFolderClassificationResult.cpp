#include <QDir>
#include <QHash>
#include <QMultiHash>
#include <QSet>
#include <QTest>

#include <NyEventFolderClassificationResult.h>
#include <NyEventFolderClassificationResultList.h>
#include <NyEventFolderType.h>
#include <NyOccasionInfo.h>
#include <NyOccasionInfoList.h>

using namespace Qt::Literals::StringLiterals;
using Kind = NyEventFolderTypeEnum;
using Result = NyEventFolderClassificationResult;

class tst_NyEventFolderClassificationResult : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindsHaveTheirValuesAndTexts_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("unknown") << 0 << u"unknown"_s;
        QTest::newRow("year") << 2 << u"year"_s;
        QTest::newRow("month") << 4 << u"month"_s;
        QTest::newRow("day") << 8 << u"day"_s;
        QTest::newRow("event") << 16 << u"event"_s;
        QTest::newRow("project") << 32 << u"project"_s;
    }
    void kindsHaveTheirValuesAndTexts()
    {
        QFETCH(int, value);
        QFETCH(QString, text);
        const NyEventFolderType kind(value);
        QCOMPARE(int(kind.value()), value);
        QCOMPARE(kind.encode(), text);
        QCOMPARE(kind.isValid(), value != 0);
        QCOMPARE(int(kind.enumToStringTable()->decodeCSV(u" "_s + text.toUpper() + u" "_s)), value);
        QCOMPARE(kind.enumToStringTable()->encodeCSV(kind.value()), value == 0 ? QString() : text);
    }
    void twoKindsHaveNoTextOfTheirOwn()
    {
        const NyEventFolderType both(18);
        QCOMPARE(both.encode(), QString());
        QCOMPARE(both.enumToStringTable()->encodeCSV(both.value()), u"year, event"_s);
        QCOMPARE(int(both.enumToStringTable()->decodeCSV(u"event,year"_s)), 18);
    }

    void aNewResultIsEmptyAndUnknown()
    {
        const Result result;
        QCOMPARE(result.directoryPath(), QString());
        QCOMPARE(result.directory().absoluteFilePath(), QString());
        QCOMPARE(int(result.classification().value()), 0);
        QVERIFY(result.occasionInformation().isEmpty());
        QVERIFY(result == Result());
    }
    void copiesAreEqualWhateverTheirOccasions()
    {
        const Result result(QFileInfo(u"/pictures/Rom"_s), NyEventFolderType(Kind::Event));
        Result copy = result;
        QVERIFY(copy == result);
        copy.setOccasionInformation(NyOccasionInfoList({NyOccasionInfo(u"wedding"_s, u"title"_s, 0.5)}));
        QVERIFY(copy == result);
        QCOMPARE(qHash(copy), qHash(result));
        QVERIFY(result.occasionInformation().isEmpty());
    }
    void anotherFolderOrKindIsUnequal()
    {
        const Result rome(QFileInfo(u"/pictures/Rom"_s), NyEventFolderType(Kind::Event));
        QVERIFY(rome != Result(QFileInfo(u"/pictures/Rom2"_s), NyEventFolderType(Kind::Event)));
        QVERIFY(rome != Result(QFileInfo(u"/pictures/rom"_s), NyEventFolderType(Kind::Event)));
        QVERIFY(rome != Result(QFileInfo(u"/pictures/Rom"_s), NyEventFolderType(Kind::Year)));
        QVERIFY(rome != Result());
    }
    void theSameFolderSaidOtherwiseIsEqual()
    {
        const QString here = QDir::currentPath();
        QVERIFY(Result(QFileInfo(u"Rom"_s), NyEventFolderType(2)) == Result(QFileInfo(here + u"/Rom"_s), NyEventFolderType(2)));
    }
    void expandingAddsKindsAndKeepsTheRest()
    {
        Result result(QFileInfo(u"/pictures/Rom"_s), NyEventFolderType(Kind::Event));
        result.setOccasionInformation(NyOccasionInfoList({NyOccasionInfo(u"city"_s, u"title"_s, 0.5)}));
        result.expandTo(NyEventFolderType(Kind::Unknown));
        QCOMPARE(int(result.classification().value()), 16);
        result.expandTo(NyEventFolderType(Kind::Year));
        QCOMPARE(int(result.classification().value()), 18);
        QCOMPARE(result.directoryPath(), u"/pictures/Rom"_s);
        QCOMPARE(result.occasionInformation().size(), 1);
    }
    void hashesArePathHashesUnderTheSeed()
    {
        const Result result(QFileInfo(u"/pictures/Großeltern"_s), NyEventFolderType(Kind::Event));
        QCOMPARE(qHash(result), qHash(result.directory().absoluteFilePath()));
        QVERIFY(QHashPrivate::HasQHashSingleArgOverload<Result>);
        for (const size_t seed : {size_t(0), size_t(1), size_t(0x123456789abcdef)})
            QCOMPARE(QHashPrivate::calculateHash(result, seed), qHash(u"/pictures/Großeltern"_s) ^ seed);
    }
    void resultsServeAsKeys()
    {
        QMultiHash<Result, int> files;
        for (int file = 0; file < 100; ++file) {
            const QString path = u"/pictures/"_s + QString::number(file % 10);
            files.insert(Result(QFileInfo(path), NyEventFolderType(Kind::Event)), file);
        }
        QCOMPARE(files.uniqueKeys().size(), 10);
        const QList<int> ofThree = files.values(Result(QFileInfo(u"/pictures/3"_s), NyEventFolderType(Kind::Event)));
        QCOMPARE(ofThree.size(), 10);
        QCOMPARE(ofThree.constFirst(), 93);
    }

    void filteringMatchesTheWholeKind()
    {
        NyEventFolderClassificationResultList list;
        int number = 0;
        for (const int kind : {16, 2, 18, 0, 16, 32})
            list.append(Result(QFileInfo(u"/p/"_s + QString::number(number++)), NyEventFolderType(kind)));
        const NyEventFolderClassificationResultList events = list.filtered(NyEventFolderType(16));
        QCOMPARE(events.size(), 2);
        QCOMPARE(events.at(0).directoryPath(), u"/p/0"_s);
        QCOMPARE(events.at(1).directoryPath(), u"/p/4"_s);
        QCOMPARE(list.filtered(NyEventFolderType(2)).size(), 1);
        QCOMPARE(list.filtered(NyEventFolderType(0)).size(), 1);
        QCOMPARE(list.filtered(NyEventFolderType(18)).size(), 1);
        QCOMPARE(list.filtered(NyEventFolderType(8)).size(), 0);
        QCOMPARE(list.size(), 6);
    }
    void aListMakesATextForTheLog()
    {
        NyEventFolderClassificationResultList list;
        QCOMPARE(list.toString(), QString());
        Result rome(QFileInfo(u"/p/Rom %1"_s), NyEventFolderType(16));
        rome.setOccasionInformation(NyOccasionInfoList({NyOccasionInfo(u"city"_s, u"title"_s, 0.876)}));
        list.append(rome);
        list.append(Result(QFileInfo(u"/p/2024"_s), NyEventFolderType(2)));
        list.append(Result(QFileInfo(u"/p/x"_s), NyEventFolderType(20)));
        QCOMPARE(list.toString(), u"event /p/Rom %1 [city (title, 0.88)]\nyear /p/2024\nmonth, event /p/x\n"_s);
        QCOMPARE(NyEventFolderClassificationResultList(QList<Result>(list)).toString(), list.toString());
    }

    void occasionsAreDescribed()
    {
        const NyOccasionInfo wedding(u"wedding"_s, u"vision"_s, 0.5);
        QCOMPARE(wedding.keyword(), u"wedding"_s);
        QCOMPARE(wedding.source(), u"vision"_s);
        QCOMPARE(wedding.probability(), 0.5);
        QCOMPARE(wedding.description(), u"wedding (vision, 0.50)"_s);
        QCOMPARE(NyOccasionInfo(u"%1"_s, u"%2"_s, 1).description(), u"%1 (%2, 1.00)"_s);
    }
    void occasionListsKeepTheirOrder()
    {
        NyOccasionInfoList list;
        QCOMPARE(list.description(), QString());
        QCOMPARE(list.descriptions(), QStringList());
        QCOMPARE(list.occasions(), QStringList());
        list.append(NyOccasionInfo(u"wedding"_s, u"title"_s, 0.9));
        list.append(NyOccasionInfo(u"city"_s, u"place"_s, 0.4));
        list.append(NyOccasionInfo(u"wedding"_s, u"vision"_s, 0.3));
        list.append(NyOccasionInfo(QString(), u"vision"_s, 0.1));
        QCOMPARE(list.occasions(), (QStringList{u"wedding"_s, u"city"_s}));
        QCOMPARE(list.descriptions().size(), 4);
        QCOMPARE(list.description(), u"wedding (title, 0.90), city (place, 0.40), wedding (vision, 0.30),  (vision, 0.10)"_s);
    }
};

QTEST_GUILESS_MAIN(tst_NyEventFolderClassificationResult)
#include "tst_NyEventFolderClassificationResult.moc"
