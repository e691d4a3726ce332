#include "TestSupport.h"

#include <NyQuilloServiceConfig.h>

#include <QTest>

using namespace TestSupport;

class tst_NyQuilloServiceConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void defaults_data();
    void defaults();
    void valuesOfTheFile();
    void debuggingReadsItsOwnSectionAlone();
    void debuggingShortensTheFirstWait();
    void preferredTime_data();
    void preferredTime();
    void toastRepeatTime();
    void brokenFileIsNamedAndCountsAsEmpty();
    void numberThatIsNoneGivesTheDefault();
    void eventFinderSection();
    void designStylesAreThere();
};

void tst_NyQuilloServiceConfig::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    QFile::remove(configFolder() + QStringLiteral("/quilloservice.xml"));
}

void tst_NyQuilloServiceConfig::defaults_data()
{
    QTest::addColumn<bool>("withFile");
    QTest::newRow("no file of the user's") << false;
    QTest::newRow("file without keys") << true;
}

void tst_NyQuilloServiceConfig::defaults()
{
    QFETCH(bool, withFile);
    if (withFile)
        QVERIFY(writeServiceConfig(""));
    const NyQuilloServiceConfig config;
    QCOMPARE(config.requiredIdleTime(), 60);
    QCOMPARE(config.initialPhaseSuggestions(), 3);
    QCOMPARE(config.minimumPhotos(), 52);
    QCOMPARE(config.maximumPhotos(), 250);
    QCOMPARE(config.registryIdentifier(), QStringLiteral("velmora.dorn.quillo.recentFiles"));
    QCOMPARE(config.waitForIdleDuration(), 60);
    QCOMPARE(config.waitBetweenIdleChecks(), 60);
    QCOMPARE(config.toastExpirationTime(), 604800);
    QCOMPARE(config.toastRepeatTime(), 604800);
    QCOMPARE(config.checkToastReschedule(), 3600);
    QCOMPARE(config.enableDebuggingFeatures(), false);
    QCOMPARE(config.printClassification(), false);
    QCOMPARE(config.numberOfBackgroundJobs(), 3);
    QCOMPARE(config.processPriority(), 0);
    QCOMPARE(config.durationBetweenChecks(), 30);
    QCOMPARE(config.inactivityDuration(), 60);
    QCOMPARE(config.recentTimeSpan(), 31536000);
    QCOMPARE(config.minimumWaitTimeInitialPhase(), 14400);
    QCOMPARE(config.minimumWaitTimeRegularPhase(), 2419200);
    QCOMPARE(config.preferredDaysStart(), 4);
    QCOMPARE(config.preferredDaysEnd(), 6);
    QCOMPARE(config.preferredHourStart(), 12);
    QCOMPARE(config.firstCollectionInterval(), 600000);
}

void tst_NyQuilloServiceConfig::valuesOfTheFile()
{
    QVERIFY(writeServiceConfig("<idleWatcher requiredIdleTime='1'/>"
                               "<recentFiles initialPhaseSuggestions='2' minimumPhotos='3' maximumPhotos='4' registryIdentifier='list' "
                               "durationBetweenChecks='5' inactivityDuration='6' recentTimeSpan='7' minimumWaitTimeInitialPhase='8' "
                               "minimumWaitTimeRegularPhase='9' preferredDaysStart='1' preferredDaysEnd='2' preferredHourStart='10'/>"
                               "<suggestion waitForIdleDuration='11'/>"
                               "<toastMessaging expirationTime='12' repeatToast='13' checkSchedule='14'/>"
                               "<debug printClassification='true'/>"
                               "<linux backGroundJobs='0' processPriority='15'/>"));
    const NyQuilloServiceConfig config;
    QCOMPARE(config.requiredIdleTime(), 1);
    QCOMPARE(config.initialPhaseSuggestions(), 2);
    QCOMPARE(config.minimumPhotos(), 3);
    QCOMPARE(config.maximumPhotos(), 4);
    QCOMPARE(config.registryIdentifier(), QStringLiteral("list"));
    QCOMPARE(config.durationBetweenChecks(), 5);
    QCOMPARE(config.inactivityDuration(), 6);
    QCOMPARE(config.recentTimeSpan(), 7);
    QCOMPARE(config.minimumWaitTimeInitialPhase(), 8);
    QCOMPARE(config.minimumWaitTimeRegularPhase(), 9);
    QCOMPARE(config.preferredDaysStart(), 1);
    QCOMPARE(config.preferredDaysEnd(), 2);
    QCOMPARE(config.preferredHourStart(), 10);
    QCOMPARE(config.waitForIdleDuration(), 11);
    QCOMPARE(config.waitBetweenIdleChecks(), 11);
    QCOMPARE(config.toastExpirationTime(), 12);
    QCOMPARE(config.toastRepeatTime(), 13);
    QCOMPARE(config.checkToastReschedule(), 14);
    QCOMPARE(config.printClassification(), true);
    QCOMPARE(config.numberOfBackgroundJobs(), 0);
    QCOMPARE(config.processPriority(), 15);
}

void tst_NyQuilloServiceConfig::debuggingReadsItsOwnSectionAlone()
{
    QVERIFY(writeServiceConfig("<recentFiles minimumWaitTimeRegularPhase='5' inactivityDuration='6' minimumPhotos='7'/>"
                               "<debug enabled='true' inactivityDuration='8' minimumPhotos='9'/>"));
    const NyQuilloServiceConfig config;
    QCOMPARE(config.minimumWaitTimeRegularPhase(), 2419200);
    QCOMPARE(config.inactivityDuration(), 8);
    // Not one of the keys that move.
    QCOMPARE(config.minimumPhotos(), 7);
}

void tst_NyQuilloServiceConfig::debuggingShortensTheFirstWait()
{
    QVERIFY(writeServiceConfig("<debug enabled='true'/>"));
    const NyQuilloServiceConfig config;
    QVERIFY(config.enableDebuggingFeatures());
    QCOMPARE(config.firstCollectionInterval(), 5000);
    QCOMPARE(config.minimumPhotos(), 52);
    QCOMPARE(config.maximumPhotos(), 250);
    QCOMPARE(config.checkToastReschedule(), 3600);
    QCOMPARE(config.waitBetweenIdleChecks(), 60);
    QCOMPARE(config.numberOfBackgroundJobs(), 3);
}

void tst_NyQuilloServiceConfig::preferredTime_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<QString>("moment");
    QTest::addColumn<bool>("expected");

    const QByteArray defaults;
    QTest::newRow("Monday") << defaults << QStringLiteral("2026-11-16T13:00:00") << false;
    QTest::newRow("Tuesday") << defaults << QStringLiteral("2026-11-17T13:00:00") << false;
    QTest::newRow("Wednesday, late") << defaults << QStringLiteral("2026-11-18T23:59:59") << false;
    QTest::newRow("Thursday 11:59") << defaults << QStringLiteral("2026-11-19T11:59:59") << false;
    QTest::newRow("Thursday 12:00") << defaults << QStringLiteral("2026-11-19T12:00:00") << true;
    QTest::newRow("Friday 00:00") << defaults << QStringLiteral("2026-11-20T00:00:00") << true;
    QTest::newRow("Saturday 23:59") << defaults << QStringLiteral("2026-11-21T23:59:59") << true;
    QTest::newRow("Sunday 00:00") << defaults << QStringLiteral("2026-11-22T00:00:00") << false;

    const QByteArray wrapping = "<recentFiles preferredDaysStart='6' preferredDaysEnd='2'/>";
    QTest::newRow("end before start: Saturday, early") << wrapping << QStringLiteral("2026-11-21T11:59:00") << false;
    QTest::newRow("end before start: Saturday") << wrapping << QStringLiteral("2026-11-21T12:00:00") << true;
    QTest::newRow("end before start: Sunday") << wrapping << QStringLiteral("2026-11-22T13:00:00") << false;
    QTest::newRow("end before start: Monday") << wrapping << QStringLiteral("2026-11-23T13:00:00") << false;

    const QByteArray oneDay = "<recentFiles preferredDaysStart='3' preferredDaysEnd='3' preferredHourStart='9'/>";
    QTest::newRow("one day: before its hour") << oneDay << QStringLiteral("2026-11-18T08:59:00") << false;
    QTest::newRow("one day: from its hour") << oneDay << QStringLiteral("2026-11-18T09:00:00") << true;
    QTest::newRow("one day: next day") << oneDay << QStringLiteral("2026-11-19T09:00:00") << false;
}

void tst_NyQuilloServiceConfig::preferredTime()
{
    QFETCH(QByteArray, section);
    QFETCH(QString, moment);
    QVERIFY(writeServiceConfig(section));
    const NyQuilloServiceConfig config;
    QTEST(config.inPreferredDateTimeRange(QDateTime::fromString(moment, Qt::ISODate)), "expected");
}

void tst_NyQuilloServiceConfig::toastRepeatTime()
{
    QVERIFY(writeServiceConfig("<toastMessaging repeatToast='3600'/>"));
    const NyQuilloServiceConfig config;
    const QDateTime before = QDateTime::currentDateTime();
    const QDateTime repeat = config.findNextToastRepeatTime();
    const QDateTime after = QDateTime::currentDateTime();
    QVERIFY(before.addSecs(3600) <= repeat);
    QVERIFY(repeat <= after.addSecs(3600));
}

void tst_NyQuilloServiceConfig::brokenFileIsNamedAndCountsAsEmpty()
{
    QVERIFY(writeFile(
        configFolder() + QStringLiteral("/quilloservice.xml"), "<quilloservice>\n<recentFiles minimumPhotos='5'\n</quilloservice>"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("quilloservice\\.xml.*3")));
    const NyQuilloServiceConfig config;
    QCOMPARE(config.minimumPhotos(), 52);
}

void tst_NyQuilloServiceConfig::numberThatIsNoneGivesTheDefault()
{
    QVERIFY(writeServiceConfig("<recentFiles minimumPhotos='many'/>"));
    const NyQuilloServiceConfig config;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("minimumPhotos")));
    QCOMPARE(config.minimumPhotos(), 52);
}

void tst_NyQuilloServiceConfig::eventFinderSection()
{
    {
        const NyQuilloServiceConfig config;
        QVERIFY(config.eventFinderConfiguration().eventFinderMode() == NyEventFinderModeEnum::classic);
    }
    QVERIFY(writeServiceConfig(
        "<eventFinder eventFinderMode='combined' detectOccasions='selectedEvent'><eventRecognizer maxPhotos='9'/></eventFinder>"));
    const NyQuilloServiceConfig config;
    QVERIFY(config.eventFinderConfiguration().eventFinderMode() == NyEventFinderModeEnum::combined);
    QVERIFY(config.eventFinderConfiguration().occassionDetectorMode() == NyEventFinderOccasionDetectorModeEnum::selectedEvent);
    QCOMPARE(config.eventFinderConfiguration().maxPhotos(), 9);
}

void tst_NyQuilloServiceConfig::designStylesAreThere()
{
    const NyQuilloServiceConfig config;
    QVERIFY(!config.designStyleIds().isEmpty());
    QVERIFY(!config.designStyleIds().contains(QString()));
}

QTEST_GUILESS_MAIN(tst_NyQuilloServiceConfig)
#include "tst_NyQuilloServiceConfig.moc"
