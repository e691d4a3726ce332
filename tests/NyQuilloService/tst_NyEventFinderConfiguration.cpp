#include <NyEventFinderConfiguration.h>

#include <QDomDocument>
#include <QTest>

class tst_NyEventFinderConfiguration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultsOfTheTwoConstructorsDiffer();
    void eventFinderMode_data();
    void eventFinderMode();
    void occasionMode_data();
    void occasionMode();
    void encoding();
    void listsAreEncodedLowestBitFirst();
    void aModeOfZeroIsNotValid();
    void recognizerValues_data();
    void recognizerValues();
    void settersStore();

private:
    static QDomElement element(const QByteArray &xml)
    {
        static QDomDocument document;
        document = QDomDocument();
        document.setContent(xml);
        return document.documentElement();
    }
};

void tst_NyEventFinderConfiguration::defaultsOfTheTwoConstructorsDiffer()
{
    const NyEventFinderConfiguration byDefault;
    QVERIFY(byDefault.eventFinderMode() == NyEventFinderModeEnum::recognizerOnly);
    QVERIFY(byDefault.occassionDetectorMode() == NyEventFinderOccasionDetectorModeEnum::none);
    QCOMPARE(byDefault.maxPhotos(), 1000);
    QCOMPARE(byDefault.useWordSimilarity(), false);

    const NyEventFinderConfiguration fromNothing{QDomElement()};
    QVERIFY(fromNothing.eventFinderMode() == NyEventFinderModeEnum::classic);
    QVERIFY(fromNothing.occassionDetectorMode() == NyEventFinderOccasionDetectorModeEnum::none);
    QCOMPARE(fromNothing.maxPhotos(), 1000);
}

void tst_NyEventFinderConfiguration::eventFinderMode_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<int>("expected");

    QTest::newRow("absent") << QByteArray("<eventFinder/>") << 0;
    QTest::newRow("empty") << QByteArray("<eventFinder eventFinderMode=''/>") << 0;
    QTest::newRow("classic") << QByteArray("<eventFinder eventFinderMode='classic'/>") << 0;
    QTest::newRow("combined") << QByteArray("<eventFinder eventFinderMode='combined'/>") << 1;
    QTest::newRow("recognizerOnly, other case") << QByteArray("<eventFinder eventFinderMode='RECOGNIZERonly'/>") << 2;
    QTest::newRow("recognizerFallbackOnly") << QByteArray("<eventFinder eventFinderMode='recognizerFallbackOnly'/>") << 3;
    QTest::newRow("expandEvent") << QByteArray("<eventFinder eventFinderMode='expandEvent'/>") << 4;
    QTest::newRow("two names are combined bit by bit") << QByteArray("<eventFinder eventFinderMode='combined,expandEvent'/>") << 5;
    QTest::newRow("unknown") << QByteArray("<eventFinder eventFinderMode='newest'/>") << 0;
}

void tst_NyEventFinderConfiguration::eventFinderMode()
{
    QFETCH(QByteArray, xml);
    QFETCH(int, expected);
    const NyEventFinderConfiguration configuration(element(xml));
    QVERIFY(configuration.eventFinderMode() == static_cast<NyEventFinderModeEnum>(expected));
}

void tst_NyEventFinderConfiguration::occasionMode_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("expected");

    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("none") << QStringLiteral("none") << 0;
    QTest::newRow("blanks and mixed case") << QStringLiteral("  sElEcTedEvent ") << 1;
    QTest::newRow("eventOfInterest") << QStringLiteral("eventOfInterest") << 2;
    QTest::newRow("two") << QStringLiteral("selectedEvent,eventAll") << 5;
    QTest::newRow("empty parts") << QStringLiteral("selectedEvent,,") << 1;
    QTest::newRow("unknown") << QStringLiteral("everything") << 0;
    QTest::newRow("unknown beside a known one") << QStringLiteral("everything,eventAll") << 4;
}

void tst_NyEventFinderConfiguration::occasionMode()
{
    QFETCH(QString, text);
    QFETCH(int, expected);
    QVERIFY(NyEventFinderOccasionDetectorMode(text) == static_cast<NyEventFinderOccasionDetectorModeEnum>(expected));
    QDomDocument document;
    QDomElement section = document.createElement(QStringLiteral("eventFinder"));
    section.setAttribute(QStringLiteral("detectOccasions"), text);
    QVERIFY(NyEventFinderConfiguration(section).occassionDetectorMode() == static_cast<NyEventFinderOccasionDetectorModeEnum>(expected));
}

void tst_NyEventFinderConfiguration::encoding()
{
    QCOMPARE(NyEventFinderOccasionDetectorMode(QStringLiteral("none")).encode(), QString());
    QCOMPARE(NyEventFinderOccasionDetectorMode(QStringLiteral("eventall")).encode(), QStringLiteral("eventAll"));
    QCOMPARE(NyEventFinderMode(NyEventFinderModeEnum::classic).encode(), QStringLiteral("classic"));
    QCOMPARE(NyEventFinderMode(NyEventFinderModeEnum::recognizerFallbackOnly).encode(), QStringLiteral("recognizerFallbackOnly"));
    QCOMPARE(NyEventFinderMode(static_cast<NyEventFinderModeEnum>(5)).encode(), QString());
}

void tst_NyEventFinderConfiguration::listsAreEncodedLowestBitFirst()
{
    const auto table = NyEventFinderOccasionDetectorMode(QString()).enumToStringTable();
    QCOMPARE(table->encodeAsList(static_cast<NyEventFinderOccasionDetectorModeEnum>(0)), QList<QString>());
    QCOMPARE(table->encodeCSV(static_cast<NyEventFinderOccasionDetectorModeEnum>(0)), QString());
    QCOMPARE(table->encodeCSV(static_cast<NyEventFinderOccasionDetectorModeEnum>(5)), QStringLiteral("selectedEvent, eventAll"));
}

void tst_NyEventFinderConfiguration::aModeOfZeroIsNotValid()
{
    QVERIFY(!NyEventFinderMode(NyEventFinderModeEnum::classic).isValid());
    QVERIFY(!NyEventFinderOccasionDetectorMode(NyEventFinderOccasionDetectorModeEnum::none).isValid());
    QVERIFY(NyEventFinderMode(NyEventFinderModeEnum::combined).isValid());
}

void tst_NyEventFinderConfiguration::recognizerValues_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<bool>("similarity");
    QTest::addColumn<bool>("loosen");
    QTest::addColumn<bool>("cosine");
    QTest::addColumn<int>("photos");

    QTest::newRow("no element") << QByteArray("<eventFinder/>") << false << false << false << 1000;
    QTest::newRow("no attributes") << QByteArray("<eventFinder><eventRecognizer/></eventFinder>") << false << false << false << 1000;
    QTest::newRow("all") << QByteArray(
        "<eventFinder><eventRecognizer useWordSimilarity='true' loosenThreshold='true' useCosineOrdering='true' "
        "maxPhotos='17'/></eventFinder>")
                         << true << true << true << 17;
    QTest::newRow("one") << QByteArray("<eventFinder><eventRecognizer loosenThreshold='true'/></eventFinder>") << false << true << false
                         << 1000;
}

void tst_NyEventFinderConfiguration::recognizerValues()
{
    QFETCH(QByteArray, xml);
    const NyEventFinderConfiguration configuration(element(xml));
    QTEST(configuration.useWordSimilarity(), "similarity");
    QTEST(configuration.loosenThreshold(), "loosen");
    QTEST(configuration.useCosineOrdering(), "cosine");
    QTEST(configuration.maxPhotos(), "photos");
}

void tst_NyEventFinderConfiguration::settersStore()
{
    NyEventFinderConfiguration configuration;
    configuration.setEventFinderMode(NyEventFinderModeEnum::combined);
    configuration.setOccassionDetectorMode(NyEventFinderOccasionDetectorModeEnum::eventAll);
    configuration.setUseWordSimilarity(true);
    configuration.setLoosenThreshold(true);
    configuration.setUseCosineOrdering(true);
    configuration.setMaxPhotos(3);
    const NyEventFinderConfiguration copy = configuration;
    QVERIFY(copy.eventFinderMode() == NyEventFinderModeEnum::combined);
    QVERIFY(copy.occassionDetectorMode() == NyEventFinderOccasionDetectorModeEnum::eventAll);
    QVERIFY(copy.useWordSimilarity());
    QVERIFY(copy.loosenThreshold());
    QVERIFY(copy.useCosineOrdering());
    QCOMPARE(copy.maxPhotos(), 3);
}

QTEST_GUILESS_MAIN(tst_NyEventFinderConfiguration)
#include "tst_NyEventFinderConfiguration.moc"
