#include "MockNotificationServer.h"
#include "ServiceUnderTest.h"
#include "TestSupport.h"

#include <NyFotoList.h>
#include <NyFotoListRegistry.h>
#include <NyFotoSettings.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceController.h>
#include <NyQuilloServiceSettings.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace TestSupport;

/** From a folder of pictures to a proposal that the user answers: the service, the builder and a notification server. */
class tst_ProposalRoad : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void offered();
    void occasionsReachTheBook();
    void opened();
    void openedAfterTheProjectIsGone();
    void postponed();
    void postponedIsDue_data();
    void postponedIsDue();
    void postponedIsDueAfterARestart();
    void twoProposalsOnOneDay();
    void usedPhotosAreNotProposedAgain();
    void notificationsSwitchedOff();
    void picturesHomeChanged();
    void anotherFolderChosenInThePreferences();

private:
    using Notification = MockNotificationServer::Notification;

    static QString today() { return QDate::currentDate().toString(Qt::ISODate); }
    static QString firstProposal() { return QStringLiteral("Produktvorschlag_%1.nqp").arg(today()); }
    /** Puts a proposal into the folder as the builder leaves it, and the date at which it is due again. */
    static void postpone(const ServiceUnderTest &service, const QString &id, const QDate &due);

    std::unique_ptr<MockNotificationServer> m_server;
};

#define VERIFY_OFFERED(count) QTRY_COMPARE_WITH_TIMEOUT(m_server->notifications().size(), count, 90000)

void tst_ProposalRoad::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
}

void tst_ProposalRoad::init()
{
    m_server = std::make_unique<MockNotificationServer>();
    QVERIFY(m_server->start());
}

void tst_ProposalRoad::cleanup()
{
    m_server.reset();
}

void tst_ProposalRoad::offered()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026/2026-07-11 Hochzeit Anna & Tom"), 9);
    // Too few for a second book, which would come at once.
    service.addPictures(QStringLiteral("2026/2026-08-01 Sommerfest"), 4);
    service.startQuick();
    VERIFY_OFFERED(1);

    const Notification offer = m_server->notifications().first();
    QCOMPARE(offer.title, QStringLiteral("VELMORA ALBUMA"));
    const QString preview
        = QUrl::fromLocalFile(service.proposalFolder() + QLatin1Char('/') + firstProposal() + QStringLiteral(".png")).toString();
    QCOMPARE(offer.body,
        QStringLiteral("Ihr neuer, persönlicher Vorschlag für ein VELMORA ALBUMA wurde erstellt.<br><center><img src=\"%1\" ></center>")
            .arg(preview));
    QCOMPARE(offer.actions,
        (QStringList{QStringLiteral("show:") + firstProposal(), QStringLiteral("Jetzt ansehen"),
            QStringLiteral("reschedule:") + firstProposal(), QStringLiteral("Später ansehen")}));
    QCOMPARE(offer.timeoutMs, 0);

    QCOMPARE(service.proposals(), QStringList{firstProposal()});
    QImage image(service.proposalFolder() + QLatin1Char('/') + firstProposal() + QStringLiteral(".png"));
    QVERIFY(image.width() >= 480);
    const QJsonObject description
        = QJsonDocument::fromJson(readFile(service.proposalFolder() + QLatin1Char('/') + firstProposal() + QStringLiteral(".json")))
              .object();
    QVERIFY(description.value(QLatin1String("headline")).toString().contains(QStringLiteral("Hochzeit")));
    QVERIFY(description.value(QLatin1String("photoCount")).toInt() > 0);
    const qint64 created = description.value(QLatin1String("creationDateEpoch")).toInteger();
    QVERIFY(qAbs(created - QDateTime::currentSecsSinceEpoch()) < 120);

    // The nine of the wedding are used now, and the date and the count are stored.
    QTRY_COMPARE(NyFotoListRegistry::instance().fotosUsedForBookProposals().toUrlStringList().size(), 9);
    const QStringList events = service.eventLog();
    QVERIFY(events.contains(QStringLiteral("launchCreateProductSuggestionProcess")));
    QVERIFY(events.contains(QStringLiteral("showCreationResults")));
    QVERIFY(events.indexOf(QStringLiteral("launchCreateProductSuggestionProcess")) < events.indexOf(QStringLiteral("showCreationResults")));
    const QStringList starts = events.filter(QStringLiteral("startAsService VALUES:"));
    QCOMPARE(starts.size(), 1);
    QVERIFY2(starts.first().startsWith(QStringLiteral("startAsService VALUES:--backgroundjobs;3;--programmode;b;--proposalTargetPath;%1/%2;"
                                                      "--proposalRecommendedStyles;")
                                           .arg(service.proposalFolder(), firstProposal())),
        qPrintable(starts.first()));
    QVERIFY(!starts.first().contains(QStringLiteral("--proposalOccasions")));
}

void tst_ProposalRoad::occasionsReachTheBook()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2025/2025-12-24 Weihnachten bei Oma"), 9);
    // Too few for a second book, which would come at once.
    service.addPictures(QStringLiteral("2026/2026-08-01 Sommerfest"), 4);
    service.writeConfiguration(ServiceUnderTest::quickSections("<eventFinder detectOccasions=\"selectedEvent\"/>")
                                   .replace("<debug ", "<debug printClassification='true' ")
                                   // The report is about the last search, and only the first finds the nine.
                                   .replace("durationBetweenChecks='1'", "durationBetweenChecks='600'"));
    service.allowAutostart();
    service.start();
    VERIFY_OFFERED(1);

    const QStringList starts = service.eventLog().filter(QStringLiteral("startAsService VALUES:"));
    QCOMPARE(starts.size(), 1);
    const QStringList arguments = starts.first().section(QLatin1Char(':'), 1).split(QLatin1Char(';'));
    const qsizetype option = arguments.indexOf(QStringLiteral("--proposalOccasions"));
    QCOMPARE(option, arguments.size() - 2);
    const QStringList occasions = arguments.last().split(QLatin1Char(','));
    QCOMPARE(occasions.first(), QStringLiteral("christmas"));

    const QJsonObject description
        = QJsonDocument::fromJson(readFile(service.proposalFolder() + QLatin1Char('/') + firstProposal() + QStringLiteral(".json")))
              .object();
    QCOMPARE(description.value(QLatin1String("occasions")).toVariant().toStringList(), occasions);
    const QByteArray report = readFile(service.proposalFolder() + QStringLiteral("/classification.lastEvent.txt"));
    QVERIFY2(report.contains("Detecting occasion of 9 photos \n"), report.constData());
    QVERIFY2(report.contains("\n  christmas (title, "), report.constData());
    const QByteArray page = readFile(service.proposalFolder() + QStringLiteral("/classification.event.all.html"));
    QVERIFY(page.contains("Weihnachten bei Oma") && page.contains("Sommerfest"));
}

void tst_ProposalRoad::opened()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    VERIFY_OFFERED(1);
    m_server->invokeAction(m_server->notifications().first().id, QStringLiteral("show:") + firstProposal());
    const QStringList expected{QStringLiteral("--suppressLoadWarnings"), service.proposalFolder() + QLatin1Char('/') + firstProposal()};
    QTRY_VERIFY_WITH_TIMEOUT(ServiceUnderTest::runningMainPrograms().contains(expected), 30000);
    QVERIFY(service.eventLog().contains(QStringLiteral("showProject PROJECTID:") + firstProposal()));
    // The main program outlives the service.
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);
    QVERIFY(ServiceUnderTest::runningMainPrograms().contains(expected));
}

void tst_ProposalRoad::openedAfterTheProjectIsGone()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    VERIFY_OFFERED(1);
    QVERIFY(QFile::remove(service.proposalFolder() + QLatin1Char('/') + firstProposal()));
    m_server->invokeAction(m_server->notifications().first().id, QStringLiteral("show:") + firstProposal());
    QTRY_VERIFY(service.log().contains(QStringLiteral("Proposal project file not found! Was: ")));
    QVERIFY(service.isRunning());
    QVERIFY(service.eventLog().filter(QStringLiteral("startAsIndependentProgram")).isEmpty());
}

void tst_ProposalRoad::postponed()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    VERIFY_OFFERED(1);
    const QDate dueEarly = QDateTime::currentDateTime().addSecs(604800).date();
    m_server->invokeAction(m_server->notifications().first().id, QStringLiteral("reschedule:") + firstProposal());
    QTRY_VERIFY(service.eventLog().contains(QStringLiteral("rescheduleToast PROJECTID:") + firstProposal()));
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);
    const QDate dueLate = QDateTime::currentDateTime().addSecs(604800).date();

    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    NyQuilloServiceSettings settings;
    settings.loadSettings();
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    QVERIFY(settings.nextToastRepeat() == dueEarly || settings.nextToastRepeat() == dueLate);
    QCOMPARE(settings.lastBookProposalId(), firstProposal());
}

void tst_ProposalRoad::postpone(const ServiceUnderTest &service, const QString &id, const QDate &due)
{
    QVERIFY(writeFile(service.proposalFolder() + QLatin1Char('/') + id, "{}"));
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    NyQuilloServiceSettings settings;
    settings.setLastBookProposalId(id);
    settings.setNextToastRepeat(due);
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
}

void tst_ProposalRoad::postponedIsDue_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<bool>("before");

    // The first look comes a second after the start.
    QTest::newRow("just before 18:00, looked at 17:59:5x, then at 18:00") << QStringLiteral("2027-03-04T17:59:55") << true;
    QTest::newRow("at 18:00:00") << QStringLiteral("2027-03-04T17:59:59") << false;
    QTest::newRow("two weeks late") << QStringLiteral("2027-03-18T09:00:00") << false;
}

void tst_ProposalRoad::postponedIsDue()
{
    if (!ServiceUnderTest::hasFakeTime())
        QSKIP("libfaketime is not installed");
    QFETCH(QString, start);
    QFETCH(bool, before);
    ServiceUnderTest service;
    const QString id = QStringLiteral("Buch.nqp");
    postpone(service, id, QDate(2027, 3, 4));
    // No pictures: nothing else is offered.
    service.writeConfiguration("<toastMessaging checkSchedule='1'/>");
    service.allowAutostart();
    const QDateTime moment = QDateTime::fromString(start, Qt::ISODate);
    service.pretendItIs(moment);
    QElapsedTimer sinceStart;
    sinceStart.start();
    service.start();
    VERIFY_OFFERED(1);
    if (before) {
        // Looked at from the first second on, but shown only once it was 18:00.
        QVERIFY2(sinceStart.elapsed() >= 4500, qPrintable(QString::number(sinceStart.elapsed())));
    }
    const Notification offer = m_server->notifications().first();
    QCOMPARE(offer.actions.value(0), QStringLiteral("show:") + id);
    QCOMPARE(offer.actions.value(2), QStringLiteral("reschedule:") + id);
    QVERIFY(service.eventLog().contains(QStringLiteral("showRescheduledToast PROJECTID:") + id));
    // Once only: the next looks find no date.
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);
    QCOMPARE(service.eventLog().filter(QStringLiteral("showRescheduledToast")).size(), 1);
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    NyQuilloServiceSettings settings;
    settings.loadSettings();
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    QVERIFY(!settings.nextToastRepeat().isValid());
    QCOMPARE(settings.lastBookProposalId(), id);
}

void tst_ProposalRoad::postponedIsDueAfterARestart()
{
    if (!ServiceUnderTest::hasFakeTime())
        QSKIP("libfaketime is not installed");
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick("<toastMessaging checkSchedule='1'/>");
    VERIFY_OFFERED(1);
    m_server->invokeAction(m_server->notifications().first().id, QStringLiteral("reschedule:") + firstProposal());
    QTRY_VERIFY(service.eventLog().contains(QStringLiteral("rescheduleToast PROJECTID:") + firstProposal()));
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);

    service.pretendItIs(QDateTime(QDate::currentDate().addDays(7), QTime(17, 59, 57)));
    service.start();
    VERIFY_OFFERED(2);
    QCOMPARE(m_server->notifications().last().actions, m_server->notifications().first().actions);
    QCOMPARE(m_server->notifications().last().body, m_server->notifications().first().body);
    // The answer to the new notification still opens the book.
    m_server->invokeAction(m_server->notifications().last().id, QStringLiteral("show:") + firstProposal());
    QTRY_VERIFY(!ServiceUnderTest::runningMainPrograms().isEmpty());
}

void tst_ProposalRoad::twoProposalsOnOneDay()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 9);
    service.addPictures(QStringLiteral("2026-08-01 Sommerfest"), 7);
    service.startQuick();
    VERIFY_OFFERED(2);
    const QString second = QStringLiteral("Produktvorschlag_%1_2.nqp").arg(today());
    QCOMPARE(m_server->notifications().at(0).actions.value(0), QStringLiteral("show:") + firstProposal());
    QCOMPARE(m_server->notifications().at(1).actions.value(0), QStringLiteral("show:") + second);
    QCOMPARE(service.proposals(), (QStringList{firstProposal(), second}));
    const auto headline = [&](const QString &id) {
        return QJsonDocument::fromJson(readFile(service.proposalFolder() + QLatin1Char('/') + id + QStringLiteral(".json")))
            .object()
            .value(QLatin1String("headline"))
            .toString();
    };
    QVERIFY(headline(firstProposal()).contains(QStringLiteral("Hochzeit")));
    QVERIFY(headline(second).contains(QStringLiteral("Sommerfest")));
    // Both answers are taken: the older notification carries its own proposal.
    m_server->invokeAction(m_server->notifications().at(0).id, QStringLiteral("show:") + firstProposal());
    QTRY_COMPARE(ServiceUnderTest::runningMainPrograms().size(), 1);
    QVERIFY(ServiceUnderTest::runningMainPrograms().first().last().endsWith(firstProposal()));
}

void tst_ProposalRoad::usedPhotosAreNotProposedAgain()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 8);
    service.startQuick();
    VERIFY_OFFERED(1);
    const qsizetype scansSoFar = service.log().count(QStringLiteral("recommended fotos selected"));
    QTRY_VERIFY_WITH_TIMEOUT(service.log().count(QStringLiteral("recommended fotos selected")) >= scansSoFar + 3, 30000);
    QVERIFY(service.log().contains(QStringLiteral("QUILLO_SERVICE: found recent unused Files 0")));
    QCOMPARE(m_server->notifications().size(), 1);
    QCOMPARE(service.proposals().size(), 1);

    // Enough new ones in the same folder make another book, of the new ones only.
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 6);
    VERIFY_OFFERED(2);
    QTRY_COMPARE(NyFotoListRegistry::instance().fotosUsedForBookProposals().toUrlStringList().size(), 14);
    QCOMPARE(NyFotoListRegistry::instance().getFotosForBookProposal().toUrlStringList().size(), 6);
}

void tst_ProposalRoad::notificationsSwitchedOff()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.writeConfiguration(ServiceUnderTest::quickSections());
    service.allowAutostart();
    {
        NyQuilloServiceSettings settings;
        settings.setAllowToastMessages(false);
        settings.saveSettings();
    }
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(service.eventLog().contains(QStringLiteral("showCreationResults")), 90000);
    QCOMPARE(service.proposals().size(), 1);
    QCOMPARE(m_server->notifications().size(), 0);
}

void tst_ProposalRoad::picturesHomeChanged()
{
    ServiceUnderTest service;
    service.startQuick();
    QTRY_VERIFY_WITH_TIMEOUT(service.log().contains(QStringLiteral("recommended fotos selected")), 90000);
    const QString newHome = QDir::homePath() + QStringLiteral("/Neue Bilder");
    QDir().mkpath(newHome);
    NyFotoSettings::instance().setPicturesHome(newHome);
    NyFotoSettings::instance().saveSettings();
    NyQuilloServiceController::handlePicturesHomeChange();
    QTRY_VERIFY(service.log().contains(
        QStringLiteral("QUILLO_SERVICE: observing path changed from  \"%1\" to \"%2\"").arg(service.picturesHome(), newHome)));
    QVERIFY(!QFile::exists(NyQuilloServiceController::markerFilePathForPicturesHome()));
    // The next check takes the observed folder from the settings again.
    QTRY_VERIFY(service.log().contains(
        QStringLiteral("QUILLO_SERVICE: observing path changed from  \"%1\" to \"%2\"").arg(newHome, service.picturesHome())));
    NyFotoSettings::instance().setPicturesHome(service.picturesHome());
    NyFotoSettings::instance().saveSettings();
}

void tst_ProposalRoad::anotherFolderChosenInThePreferences()
{
    ServiceUnderTest service;
    service.startQuick();
    QTRY_VERIFY_WITH_TIMEOUT(service.log().contains(QStringLiteral("recommended fotos selected")), 90000);
    service.addPictures(QStringLiteral("../Other place/2026-07-11 Hochzeit"), 7);
    {
        NyQuilloServiceSettings settings;
        settings.loadSettings();
        settings.setSearchHomeFolder(QDir::homePath() + QStringLiteral("/Other place"));
        settings.saveSettings();
    }
    VERIFY_OFFERED(1);
    QDir(QDir::homePath() + QStringLiteral("/Other place")).removeRecursively();
}

QTEST_MAIN(tst_ProposalRoad)
#include "tst_ProposalRoad.moc"
