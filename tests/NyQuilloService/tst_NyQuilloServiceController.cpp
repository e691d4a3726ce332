#include "FakeMainProgram.h"
#include "MockNotificationServer.h"
#include "TestSupport.h"

#include <NyFotoList.h>
#include <NyFotoListRegistry.h>
#include <NyFotoSettings.h>
#include <NyInitializer.h>
#include <NyInitializerAbstract.h>
#include <NyInstallationSettings.h>
#include <NyKeyAccount.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceConfig.h>
#include <NyQuilloServiceController.h>
#include <NyQuilloServiceSettings.h>
#include <NyToastMessage.h>
#include <NyToastMessaging.h>
#include <NyVersionConfig.h>

#include <QApplication>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <limits>

#include <unistd.h>

using namespace TestSupport;

/** The controller with photos of the pictures home, a main program that only records its starts, and a notification server. */
namespace
{
/** Presses the button of that role in each question that comes. */
class Answer
{
public:
    explicit Answer(QMessageBox::ButtonRole role)
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this, role] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            m_question = box->text();
            const QList<QAbstractButton *> buttons = box->buttons();
            for (QAbstractButton *button : buttons) {
                if (box->buttonRole(button) == role)
                    button->click();
            }
        });
        m_timer.start(10);
    }
    QString question() const { return m_question; }

private:
    QTimer m_timer;
    QString m_question;
};
}

class tst_NyQuilloServiceController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void resetEndsWithoutEventLoop();
    void forcedSearch_data();
    void forcedSearch();
    void versionDescription();
    void information();
    void timerIntervals_data();
    void timerIntervals();
    void quitWithoutTray();
    void launchesTheMainApplication();

    void builderArguments_data();
    void builderArguments();
    void builderCommandLine_data();
    void builderCommandLine();
    void noPhotos();
    void noPhotosWithDebuggingFeatures();
    void tooFewPhotosLeaveEverythingAlone();
    void noMorePhotosThanTheGreatestNumber();
    void startsWhileABuilderRuns();
    void picturesHomePhotosAreUsedOnce();
    void proposalFilenames();
    void storedInformation();

    void watchedPathsAreAddedOnce();
    void offeredOnceWhenTheFileArrives();
    void changesElsewhereAreNoProposals();
    void showProject();
    void showProjectThatIsGone();
    void showLastProposal();
    void rescheduling();
    void rescheduledToastIsDue();
    void deletion_data();
    void deletion();
    void deletionOfANameLikeAPattern_data();
    void deletionOfANameLikeAPattern();
    void deletionOfAFolder();
    void deletionSaysHowItEnded();
    void deletionOfNothing();

    void markerFolder();
    void quitAndUnquitLeaveNoTraces();
    void picturesHomeMarker();
    void collectedMarkerReloadsThePicturesHome();
    void aMarkerThatNobodyCollectedIsHeardOnce();
    void terminationFileSurvivesUninstalling();
    void terminationFileIsRemovedWhileInstalling();
    void removedMarkerFolderIsWatchedAgain();
    void terminationFileEndsTheProcessWithinASearch();
    void aChangeOfTheProposalFolderRunsAllHandlers();

private:
    static QString home() { return QDir::homePath() + QStringLiteral("/Pictures"); }
    static QString proposals() { return NyQuilloServiceSettings::instance().bookProposalFileFolder(); }
    static void configure(const QByteArray &sections)
    {
        QVERIFY(writeServiceConfig(sections));
        NyQuilloServiceConfig::instance().reload();
    }
    static void addPhotos(int count)
    {
        for (int i = 0; i < count; ++i)
            QVERIFY(writePhoto(home() + QStringLiteral("/p%1.jpg").arg(i, 3, 10, QLatin1Char('0')), i));
    }
    /** Runs a service in a process of its own, as `scenario` at the end of this file tells; its output. */
    static QByteArray runService(const QByteArray &scenario, const QStringList &arguments, int *exitCode);
    static QStringList urls(const NyFotoList &list) { return list.toUrlStringList(); }
    /** The services of earlier functions live as their processes would; each function has its own. */
    std::unique_ptr<NyQuilloServiceController> m_controller;
    std::unique_ptr<FakeMainProgram> m_mainProgram;
    std::unique_ptr<MockNotificationServer> m_server;
};

void tst_NyQuilloServiceController::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    NyQuilloServiceSettings::instance().loadSettings();
    NyFotoSettings::instance().setPicturesHome(home());
    NyFotoSettings::instance().saveSettings();
}

void tst_NyQuilloServiceController::init()
{
    for (const QString &folder :
        {home(), proposals(), NyQuilloServiceController::markerDir().absolutePath(), dataFolder() + QStringLiteral("/log")}) {
        QDir(folder).removeRecursively();
        QDir().mkpath(folder);
    }
    configure("<recentFiles minimumPhotos='3'/>");
    NyQuilloServiceSettings &settings = NyQuilloServiceSettings::instance();
    settings.setServiceMode(ServiceModeNormal);
    settings.resetSettings();
    settings.setNextToastRepeat(QDate());
    settings.setLastBookProposalId(QString());
    NyFotoListRegistry::instance().setFotosForBookProposal(NyFotoList());
    m_mainProgram = std::make_unique<FakeMainProgram>();
    m_server = std::make_unique<MockNotificationServer>();
    QVERIFY(m_server->start());
    m_controller = std::make_unique<NyQuilloServiceController>();
}

void tst_NyQuilloServiceController::cleanup()
{
    m_mainProgram->openGate();
    m_controller.reset();
    m_server.reset();
    m_mainProgram.reset();
}

QByteArray tst_NyQuilloServiceController::runService(const QByteArray &scenario, const QStringList &arguments, int *exitCode)
{
    NyInstallationSettings::instance().setAutoStartService(true, true);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("NY_TEST_SCENARIO"), QString::fromLatin1(scenario));
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), arguments);
    const bool ended = process.waitForFinished(20000);
    process.kill();
    process.waitForFinished();
    *exitCode = ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    return process.readAll();
}

void tst_NyQuilloServiceController::resetEndsWithoutEventLoop()
{
    NyQuilloServiceSettings::instance().increaseProductSuggestionCount();
    int exitCode = -1;
    const QByteArray output = runService("run", {QStringLiteral("--serviceMode"), QStringLiteral("z")}, &exitCode);
    QCOMPARE(exitCode, 0);
    QCOMPARE(eventLog(), QStringList{QStringLiteral("runService VALUES:--serviceMode;z")});
    NyQuilloServiceSettings::instance().loadSettings();
    QCOMPARE(NyQuilloServiceSettings::instance().productSuggestionCount(), 0);
    // The initializer is asked for its options, then set up, and torn down at the end.
    const qsizetype launching = output.indexOf("Launching QuilloService QList(\"--serviceMode\", \"z\")");
    const qsizetype options = output.indexOf("initializer options");
    const qsizetype setup = output.indexOf("initializer setup 3");
    const qsizetype teardown = output.indexOf("initializer teardown");
    QVERIFY2(0 <= launching && launching < options && options < setup && setup < teardown, output.constData());
}

void tst_NyQuilloServiceController::forcedSearch_data()
{
    QTest::addColumn<QByteArray>("week");
    QTest::addColumn<bool>("builds");
    QTest::newRow("the ordinary rules hold") << QByteArray("preferredDaysStart='0' preferredDaysEnd='7'") << true;
    QTest::newRow("outside the preferred time of the week") << QByteArray("preferredDaysStart='8' preferredDaysEnd='8'") << false;
}

void tst_NyQuilloServiceController::forcedSearch()
{
    QFETCH(QByteArray, week);
    QFETCH(bool, builds);
    configure("<recentFiles minimumPhotos='3' inactivityDuration='0' " + week + "/><suggestion waitForIdleDuration='1'/>");
    for (int i = 0; i < 5; ++i)
        QVERIFY(writePhoto(home() + QStringLiteral("/2026-07-11 Hochzeit/p%1.jpg").arg(i), i));
    // The first proposal would be made on any day.
    NyQuilloServiceSettings &settings = NyQuilloServiceSettings::instance();
    settings.increaseProductSuggestionCount();
    settings.setSearchHomeFolder(home());
    settings.saveSettings();
    int exitCode = -1;
    const QByteArray output = runService("forced", {}, &exitCode);
    QVERIFY2(exitCode == 0, output.constData());
    QCOMPARE(output.count("; was explicitly requested true"), 1);
    QCOMPARE(m_mainProgram->starts().size(), builds ? 1 : 0);
    QCOMPARE(eventLog().contains(QStringLiteral("launchCreateProductSuggestionProcess")), builds);
    // Refused, it asks again and again by the timer.
    QCOMPARE(
        output.count("QUILLO_SERVICE: Creating product suggestion was not recommended due to lack of qualified photos."), builds ? 0 : 2);
}

void tst_NyQuilloServiceController::versionDescription()
{
    const NyVersionConfig &version = NyVersionConfig::instance();
    const QString account = NyKeyAccount::instance().keyAccountId().toString();
    QCOMPARE(m_controller->versionDescription(true),
        QStringLiteral("Version ") + version.clientVersion() + QLatin1Char('-') + version.gitCommitStringShort() + QLatin1Char('-')
            + account);
    QCOMPARE(m_controller->versionDescription(false), QStringLiteral("Version ") + version.versionString() + QLatin1Char('-') + account);
}

void tst_NyQuilloServiceController::information()
{
    m_controller->showInfo();
    QTRY_COMPARE(m_server->notifications().size(), 1);
    const auto shown = m_server->notifications().first();
    QCOMPARE(shown.title,
        QStringLiteral("VELMORA ALBUMA\n") + m_controller->versionDescription(NyKeyAccount::instance().keyAccountId().isTestClient()));
    QCOMPARE(shown.body, QStringLiteral("Automatische Ereigniserkennung zur Erstellung persönlicher Buchvorschläge."));
    QCOMPARE(shown.actions, QStringList());
    QCOMPARE(shown.timeoutMs, -1);
    QCOMPARE(eventLog(), QStringList{QStringLiteral("showInfo")});
}

void tst_NyQuilloServiceController::timerIntervals_data()
{
    QTest::addColumn<QByteArray>("sections");
    QTest::addColumn<QList<int>>("expected");
    QTest::newRow("defaults") << QByteArray() << QList<int>{60 * 1000, 3600 * 1000};
    QTest::newRow("values of the file") << QByteArray("<suggestion waitForIdleDuration='7'/><toastMessaging checkSchedule='90'/>")
                                        << QList<int>{7000, 90000};
    QTest::newRow("longer than a timer can wait")
        << QByteArray("<suggestion waitForIdleDuration='2147484'/><toastMessaging checkSchedule='2147483647'/>")
        << QList<int>{std::numeric_limits<int>::max(), std::numeric_limits<int>::max()};
    QTest::newRow("negative") << QByteArray("<suggestion waitForIdleDuration='-1'/><toastMessaging checkSchedule='-2147483648'/>")
                              << QList<int>{0, 0};
}

void tst_NyQuilloServiceController::timerIntervals()
{
    QFETCH(QByteArray, sections);
    configure(sections);
    // The configuration is read when a controller is made.
    const NyQuilloServiceController controller;
    QList<int> intervals;
    const QList<QTimer *> timers = controller.findChildren<QTimer *>(Qt::FindDirectChildrenOnly);
    for (const QTimer *timer : timers) {
        QVERIFY(!timer->isActive());
        QVERIFY(!timer->isSingleShot());
        intervals.append(timer->interval());
    }
    QTEST(intervals, "expected");
}

void tst_NyQuilloServiceController::quitWithoutTray()
{
    const LogRecorder log;
    QTimer::singleShot(0, m_controller.get(), &NyQuilloServiceController::quit);
    QCOMPARE(QApplication::exec(), 0);
    QCOMPARE(eventLog(), QStringList{QStringLiteral("quit")});
    QVERIFY(log.has(QStringLiteral("info: QUILLO_SERVICE: Good Bye.")));
    m_controller->updateSystemTrayActions();
}

void tst_NyQuilloServiceController::launchesTheMainApplication()
{
    m_controller->launchMainApplication();
    QTRY_COMPARE(m_mainProgram->starts(), QList<QStringList>{QStringList()});
    QCOMPARE(eventLog(), QStringList{QStringLiteral("startAsIndependentProgram VALUES:")});
}

void tst_NyQuilloServiceController::builderArguments_data()
{
    QTest::addColumn<int>("jobs");
    QTest::addColumn<QString>("styles");
    QTest::addColumn<QString>("occasions");
    QTest::addColumn<QString>("expected");
    QTest::newRow("everything") << 3 << QStringLiteral("a b") << QStringLiteral("beach family")
                                << QStringLiteral(
                                       "--backgroundjobs 3 --programmode b --proposalTargetPath p --proposalRecommendedStyles a,b "
                                       "--proposalOccasions beach,family");
    QTest::newRow("no jobs") << 0 << QStringLiteral("a") << QStringLiteral("beach")
                             << QStringLiteral(
                                    "--programmode b --proposalTargetPath p --proposalRecommendedStyles a --proposalOccasions beach");
    QTest::newRow("occasions only") << 1 << QString() << QStringLiteral("beach")
                                    << QStringLiteral(
                                           "--backgroundjobs 1 --programmode b --proposalTargetPath p --proposalOccasions beach");
    QTest::newRow("neither list") << 1 << QString() << QString()
                                  << QStringLiteral("--backgroundjobs 1 --programmode b --proposalTargetPath p");
}

void tst_NyQuilloServiceController::builderArguments()
{
    QFETCH(int, jobs);
    QFETCH(QString, styles);
    QFETCH(QString, occasions);
    const auto words = [](const QString &text) { return text.split(QLatin1Char(' '), Qt::SkipEmptyParts); };
    QTEST(NyQuilloServiceController::builderArguments(jobs, QStringLiteral("p"), words(styles), words(occasions)).join(QLatin1Char(' ')),
        "expected");
}

void tst_NyQuilloServiceController::builderCommandLine_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<QStringList>("begin");
    QTest::newRow("by default") << QByteArray()
                                << QStringList{QStringLiteral("--backgroundjobs"), QStringLiteral("3"), QStringLiteral("--programmode"),
                                       QStringLiteral("b")};
    QTest::newRow("eight jobs") << QByteArray("<linux backGroundJobs='8'/>")
                                << QStringList{QStringLiteral("--backgroundjobs"), QStringLiteral("8"), QStringLiteral("--programmode"),
                                       QStringLiteral("b")};
    QTest::newRow("no number of jobs") << QByteArray("<linux backGroundJobs='0'/>")
                                       << QStringList{QStringLiteral("--programmode"), QStringLiteral("b")};
}

void tst_NyQuilloServiceController::builderCommandLine()
{
    QFETCH(QByteArray, section);
    QFETCH(QStringList, begin);
    configure("<recentFiles minimumPhotos='3'/>" + section);
    // Exactly the least number.
    addPhotos(3);
    m_controller->launchCreateProductSuggestionProcessWithPicturesHomePhotos();
    QTRY_COMPARE(m_mainProgram->starts().size(), 1);
    const QString path = proposals() + QStringLiteral("Produktvorschlag_%1.nqp").arg(QDate::currentDate().toString(Qt::ISODate));
    const QStringList expected = begin
        + QStringList{QStringLiteral("--proposalTargetPath"), path, QStringLiteral("--proposalRecommendedStyles"),
            NyQuilloServiceConfig::instance().designStyleIds().join(QLatin1Char(','))};
    QCOMPARE(m_mainProgram->starts().first(), expected);
    QCOMPARE(m_controller->lastProposalFilename(), path);
    QCOMPARE(m_controller->lastProposalFilenameIcon(), path + QStringLiteral(".png"));
    QCOMPARE(urls(NyFotoListRegistry::instance().getFotosForBookProposal()).size(), 3);
    QCOMPARE(eventLog(),
        (QStringList{QStringLiteral("launchCreateProductSuggestionProcess"),
            QStringLiteral("startAsService VALUES:") + expected.join(QLatin1Char(';'))}));
}

void tst_NyQuilloServiceController::noPhotos()
{
    const LogRecorder log;
    m_controller->launchCreateProductSuggestionProcessWithPicturesHomePhotos();
    QVERIFY(log.has(QStringLiteral("info: QUILLO_SERVICE: no recent files found")));
    m_controller->showInfo();
    QTRY_COMPARE(m_server->notifications().size(), 1);
    QVERIFY(m_server->notifications().first().title.contains(QStringLiteral("Version")));
    QCOMPARE(m_controller->lastProposalFilename(), QString());
}

void tst_NyQuilloServiceController::noPhotosWithDebuggingFeatures()
{
    configure("<debug enabled='true'/>");
    m_controller->launchCreateProductSuggestionProcessWithPicturesHomePhotos();
    QTRY_COMPARE(m_server->notifications().size(), 1);
    QCOMPARE(m_server->notifications().first().title, QStringLiteral("VELMORA ALBUMA"));
    QCOMPARE(m_server->notifications().first().body,
        QStringLiteral(
            "Es wurden leider keine neuen Foto-Ereignisse auf Ihrem Gerät gefunden. Doch Ihr nächstes Ereignis steht bestimmt bevor."));
    QCOMPARE(m_server->notifications().first().actions, QStringList());
}

void tst_NyQuilloServiceController::tooFewPhotosLeaveEverythingAlone()
{
    const NyFotoList before(QList<QUrl>{QUrl::fromLocalFile(QStringLiteral("/tmp/before.jpg"))});
    NyFotoListRegistry::instance().setFotosForBookProposal(before);
    m_controller->setLastProposalFilename(QStringLiteral("/tmp/earlier.nqp"));
    addPhotos(2);
    const LogRecorder log;
    m_controller->launchCreateProductSuggestionProcessWithPicturesHomePhotos();
    QVERIFY(log.has(QStringLiteral("info: suggested file count too low:  2")));
    QCOMPARE(urls(NyFotoListRegistry::instance().getFotosForBookProposal()), urls(before));
    QCOMPARE(m_controller->lastProposalFilename(), QStringLiteral("/tmp/earlier.nqp"));
    QCOMPARE(eventLog(), QStringList{QStringLiteral("launchCreateProductSuggestionProcess")});
}

void tst_NyQuilloServiceController::noMorePhotosThanTheGreatestNumber()
{
    configure("<recentFiles minimumPhotos='3' maximumPhotos='4'/>");
    addPhotos(6);
    m_controller->launchCreateProductSuggestionProcessWithPicturesHomePhotos();
    QTRY_COMPARE(m_mainProgram->starts().size(), 1);
    QCOMPARE(urls(NyFotoListRegistry::instance().getFotosForBookProposal()).size(), 4);
}

void tst_NyQuilloServiceController::startsWhileABuilderRuns()
{
    m_mainProgram->closeGate();
    addPhotos(3);
    m_controller->launchCreateProductSuggestionProcessWithPicturesHomePhotos();
    QTRY_COMPARE(m_mainProgram->starts().size(), 1);
    // A recommendation is dropped while a builder runs,
    const LogRecorder log;
    m_controller->considerCreatingProductSuggestion();
    QCOMPARE(log.all(),
        (QStringList{
            QStringLiteral("info: QUILLO_SERVICE: checking if the system is idle and we have enough fotos to create a product suggestion."),
            QStringLiteral("info: QUILLO_SERVICE: QuilloDornRunner still running ")}));
    // and the timer stays stopped: only the next recommendation asks again.
    const QList<QTimer *> timers = m_controller->findChildren<QTimer *>(Qt::FindDirectChildrenOnly);
    const auto idleCheck = std::find_if(timers.cbegin(), timers.cend(), [](const QTimer *timer) { return timer->interval() == 60000; });
    QVERIFY(idleCheck != timers.cend());
    QVERIFY(!(*idleCheck)->isActive());
    // What the user asks for is not dropped.
    m_controller->launchCreateProductSuggestionProcessWithPicturesHomePhotos();
    QTRY_COMPARE(m_mainProgram->starts().size(), 2);
}

void tst_NyQuilloServiceController::picturesHomePhotosAreUsedOnce()
{
    // The wish is spent even when the folder turned out to be empty: what lies there at the next launch is not taken.
    int exitCode = -1;
    const QByteArray output = runService("spent", {}, &exitCode);
    QVERIFY2(exitCode == 0, output.constData());
    QCOMPARE(output.count("QUILLO_SERVICE: no recent files found"), 2);
    QCOMPARE(eventLog().count(QStringLiteral("launchCreateProductSuggestionProcess")), 2);
    QCOMPARE(m_mainProgram->starts().size(), 0);
    QCOMPARE(QDir(home()).entryList(QDir::Files).size(), 3);
}

void tst_NyQuilloServiceController::proposalFilenames()
{
    const QString first = m_controller->suggestProposalFilename();
    QCOMPARE(first, proposals() + QStringLiteral("Produktvorschlag_%1.nqp").arg(QDate::currentDate().toString(Qt::ISODate)));
    QVERIFY(writeFile(first, "book"));
    const QString second = m_controller->suggestProposalFilename();
    QVERIFY(second != first);
    QCOMPARE(QFileInfo(second).absolutePath(), QFileInfo(first).absolutePath());
    QVERIFY(second.endsWith(QStringLiteral(".nqp")));
    // The files of the one are not taken for files of the other.
    QVERIFY(!QFileInfo(second).fileName().startsWith(QFileInfo(first).fileName()));
}

void tst_NyQuilloServiceController::storedInformation()
{
    const NyFotoList photos(
        QList<QUrl>{QUrl::fromLocalFile(QStringLiteral("/tmp/a.jpg")), QUrl::fromLocalFile(QStringLiteral("/tmp/b.jpg"))});
    NyFotoListRegistry::instance().setFotosForBookProposal(photos);
    const QDateTime before = QDateTime::currentDateTime();
    m_controller->storeCreatedSuggestionInformation();
    QCOMPARE(urls(NyFotoListRegistry::instance().fotosUsedForBookProposals()), urls(photos));
    const NyQuilloServiceSettings &settings = NyQuilloServiceSettings::instance();
    QVERIFY(settings.lastProductSuggestionDate() >= before);
    QCOMPARE(settings.productSuggestionCount(), 1);
}

void tst_NyQuilloServiceController::watchedPathsAreAddedOnce()
{
    const QString folder = QDir(proposals()).absolutePath();
    const LogRecorder log;
    m_controller->watchFile(folder);
    m_controller->watchFile(folder);
    const QStringList lines = log.containing(QStringLiteral("watchFile a: result"));
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first(),
        QStringLiteral("debug: QUILLO_SERVICE: watchFile a: result true , filename \"%1\" , absoluteFilePath \"%1\"").arg(folder));
    // A path that does not exist cannot be watched, its parent is not watched in its place.
    m_controller->watchFile(folder + QStringLiteral("/missing.nqp"));
    QVERIFY(log.containing(QStringLiteral("watchFile a: result false")).size() == 1);
}

void tst_NyQuilloServiceController::offeredOnceWhenTheFileArrives()
{
    const QString id = QStringLiteral("Buch.nqp");
    const QString path = proposals() + id;
    m_controller->setLastProposalFilename(path);
    m_controller->watchFile(QFileInfo(path).absolutePath());
    const LogRecorder log;
    const auto warnings = [&] {
        return log.containing(QStringLiteral("warning: QUILLO_SERVICE: proposal file does not exist at: \"%1\"").arg(path)).size();
    };
    QVERIFY(writeFile(path + QStringLiteral(".json"), "{}"));
    QTRY_VERIFY(warnings() >= 1);
    const qsizetype warningsBefore = warnings();
    QVERIFY(writeFile(path + QStringLiteral(".png"), "x"));
    QTRY_VERIFY(warnings() > warningsBefore);
    QCOMPARE(m_server->notifications().size(), 0);

    QVERIFY(writeFile(path, "book"));
    QTRY_COMPARE(m_server->notifications().size(), 1);
    QVERIFY(log.has(QStringLiteral("info: QUILLO_SERVICE: proposal file exists at: \"%1\"").arg(path)));
    QCOMPARE(m_server->notifications().first().actions,
        (QStringList{QStringLiteral("show:Buch.nqp"), QStringLiteral("Jetzt ansehen"), QStringLiteral("reschedule:Buch.nqp"),
            QStringLiteral("Später ansehen")}));
    QCOMPARE(NyQuilloServiceSettings::instance().productSuggestionCount(), 1);

    // The watch is gone: further changes cause nothing, only the marker folder is still watched.
    const qsizetype changes = log.containing(QStringLiteral("changes at watched file path")).size();
    QVERIFY(writeFile(proposals() + QStringLiteral("other"), "x"));
    NyQuilloServiceController::handlePicturesHomeChange();
    QTRY_VERIFY(log.containing(QStringLiteral("changes at watched file path")).size() > changes);
    QVERIFY(log.containing(QStringLiteral("changes at watched file path: \"%1\"").arg(QDir(proposals()).absolutePath())).size() <= changes);
    QTRY_VERIFY(!QFile::exists(NyQuilloServiceController::markerFilePathForPicturesHome()));
    QCOMPARE(m_server->notifications().size(), 1);
    QCOMPARE(NyQuilloServiceSettings::instance().productSuggestionCount(), 1);
}

void tst_NyQuilloServiceController::changesElsewhereAreNoProposals()
{
    QVERIFY(writeFile(proposals() + QStringLiteral("Buch.nqp"), "book"));
    m_controller->setLastProposalFilename(proposals() + QStringLiteral("Buch.nqp"));
    const LogRecorder log;
    m_controller->watchFileChangedBookProposal(NyQuilloServiceController::markerDir().absolutePath());
    m_controller->watchFileChangedBookProposal(proposals() + QStringLiteral("Buch.nqp"));
    m_controller->watchFileChangedBookProposal(proposals() + QStringLiteral("missing"));
    QCOMPARE(log.all(), QStringList(3, QStringLiteral("debug: not the bookProposalFileFolder")));
    // The folder itself, on another way.
    const QString link = QDir::homePath() + QStringLiteral("/way");
    QFile::remove(link);
    QVERIFY(QFile::link(QDir(proposals()).absolutePath(), link));
    m_controller->watchFileChangedBookProposal(link);
    QTRY_COMPARE(m_server->notifications().size(), 1);
}

void tst_NyQuilloServiceController::showProject()
{
    QVERIFY(writeFile(proposals() + QStringLiteral("Buch 1.nqp"), "book"));
    const LogRecorder log;
    m_controller->showProject(QStringLiteral("Buch 1.nqp"));
    QTRY_COMPARE(m_mainProgram->starts(),
        (QList<QStringList>{{QStringLiteral("--suppressLoadWarnings"), proposals() + QStringLiteral("Buch 1.nqp")}}));
    QVERIFY(log.has(QStringLiteral("info: QUILLO_SERVICE: Opening the project in the main application.")));
    QCOMPARE(eventLog().first(), QStringLiteral("showProject PROJECTID:Buch 1.nqp"));
}

void tst_NyQuilloServiceController::showProjectThatIsGone()
{
    const LogRecorder log;
    m_controller->showProject(QStringLiteral("gone.nqp"));
    QVERIFY(log.has(QStringLiteral("warning: Proposal project file not found! Was:  \"%1gone.nqp\"").arg(proposals())));
    QCOMPARE(eventLog(), QStringList{QStringLiteral("showProject PROJECTID:gone.nqp")});
}

void tst_NyQuilloServiceController::showLastProposal()
{
    QVERIFY(!m_controller->showLastProposal());
    QCOMPARE(eventLog(), QStringList{QStringLiteral("launchMainApplication")});
    QVERIFY(writeFile(proposals() + QStringLiteral("Buch.nqp"), "book"));
    m_controller->setLastProposalFilename(proposals() + QStringLiteral("Buch.nqp"));
    QVERIFY(m_controller->showLastProposal());
    QTRY_COMPARE(m_mainProgram->starts().size(), 1);
    QCOMPARE(
        eventLog().mid(1, 2), (QStringList{QStringLiteral("launchMainApplication"), QStringLiteral("showProject PROJECTID:Buch.nqp")}));
}

void tst_NyQuilloServiceController::rescheduling()
{
    configure("<toastMessaging repeatToast='86400'/>");
    const LogRecorder log;
    const QDate before = QDateTime::currentDateTime().addSecs(86400).date();
    m_controller->rescheduleToast(QStringLiteral("a.nqp"));
    m_controller->rescheduleToast(QStringLiteral("b.nqp"));
    const QDate after = QDateTime::currentDateTime().addSecs(86400).date();
    // One slot: the latest wins.
    const NyQuilloServiceSettings &settings = NyQuilloServiceSettings::instance();
    QVERIFY(settings.nextToastRepeat() == before || settings.nextToastRepeat() == after);
    QCOMPARE(settings.lastBookProposalId(), QStringLiteral("b.nqp"));
    QCOMPARE(log.all().count(QStringLiteral("info: QUILLO_SERVICE: reschedule toast")), 2);
    QCOMPARE(
        eventLog(), (QStringList{QStringLiteral("rescheduleToast PROJECTID:a.nqp"), QStringLiteral("rescheduleToast PROJECTID:b.nqp")}));
}

void tst_NyQuilloServiceController::rescheduledToastIsDue()
{
    NyQuilloServiceSettings &settings = NyQuilloServiceSettings::instance();
    m_controller->checkRescheduledToast();
    QCOMPARE(eventLog(), QStringList());

    settings.setLastBookProposalId(QStringLiteral("a.nqp"));
    settings.setNextToastRepeat(QDate::currentDate().addDays(1));
    m_controller->checkRescheduledToast();
    QCOMPARE(eventLog(), QStringList());
    QCOMPARE(settings.nextToastRepeat(), QDate::currentDate().addDays(1));

    // Late, and although the proposal is gone.
    settings.setNextToastRepeat(QDate::currentDate().addDays(-3));
    m_controller->checkRescheduledToast();
    QTRY_COMPARE(m_server->notifications().size(), 1);
    QVERIFY(!settings.nextToastRepeat().isValid());
    QCOMPARE(settings.lastBookProposalId(), QStringLiteral("a.nqp"));
    QCOMPARE(eventLog(), QStringList{QStringLiteral("showRescheduledToast PROJECTID:a.nqp")});
    m_controller->checkRescheduledToast();
    QCOMPARE(eventLog().size(), 1);
}

void tst_NyQuilloServiceController::deletion_data()
{
    QTest::addColumn<QByteArray>("description");
    QTest::addColumn<bool>("yes");
    QTest::addColumn<QString>("question");
    const QString named = QStringLiteral("Möchten Sie den Buchvorschlag „Sommer & Meer“ wirklich löschen?");
    const QString unnamed = QStringLiteral("Möchten Sie den Buchvorschlag wirklich löschen?");
    QTest::newRow("yes") << QByteArray("{\"headline\":\"Sommer & Meer\"}") << true << named;
    QTest::newRow("no") << QByteArray("{\"headline\":\"Sommer & Meer\"}") << false << named;
    QTest::newRow("broken description") << QByteArray("{\"headline\":\"Som") << true << unnamed;
    QTest::newRow("no description") << QByteArray() << true << unnamed;
    QTest::newRow("description without a headline") << QByteArray("[1]") << true << unnamed;
}

void tst_NyQuilloServiceController::deletion()
{
    QFETCH(QByteArray, description);
    QFETCH(bool, yes);
    QFETCH(QString, question);
    const QString id = QStringLiteral("Buch.nqp");
    QVERIFY(writeFile(proposals() + id, "book"));
    QVERIFY(writeFile(proposals() + id + QStringLiteral(".png"), "x"));
    if (!description.isNull())
        QVERIFY(writeFile(proposals() + id + QStringLiteral(".json"), description));
    // Its name begins with the name of the other.
    QVERIFY(writeFile(proposals() + id + QStringLiteral("x"), "book"));
    QVERIFY(writeFile(proposals() + QStringLiteral("Buch2.nqp"), "book"));
    const QStringList before = QDir(proposals()).entryList(QDir::Files);

    const Answer answer(yes ? QMessageBox::YesRole : QMessageBox::NoRole);
    NyQuilloServiceController::deleteProposal(id);
    QCOMPARE(answer.question(), question);
    QCOMPARE(QDir(proposals()).entryList(QDir::Files), yes ? QStringList{QStringLiteral("Buch2.nqp")} : before);
}

void tst_NyQuilloServiceController::deletionOfANameLikeAPattern_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("neighbour");
    QTest::newRow("set of signs") << QStringLiteral("Wien [2024].nqp") << QStringLiteral("Wien 2.nqp");
    QTest::newRow("one sign") << QStringLiteral("Wohin?.nqp") << QStringLiteral("Wohin1.nqp");
    QTest::newRow("any signs") << QStringLiteral("Wien*.nqp") << QStringLiteral("Wien und Linz.nqp");
    QTest::newRow("bracket") << QStringLiteral("Wien [.nqp") << QStringLiteral("Wien x.nqp");
    QTest::newRow("other case") << QStringLiteral("Wien.nqp") << QStringLiteral("wien.nqp");
}

void tst_NyQuilloServiceController::deletionOfANameLikeAPattern()
{
    QFETCH(QString, id);
    QFETCH(QString, neighbour);
    for (const QString &name : {id, id + QStringLiteral(".png"), id + QStringLiteral("x"), neighbour})
        QVERIFY(writeFile(proposals() + name, "book"));
    const Answer answer(QMessageBox::YesRole);
    QCOMPARE(NyQuilloServiceController::askAndDeleteProposal(id), NyProposalDeletion::Complete);
    QCOMPARE(QDir(proposals()).entryList(QDir::Files), QStringList(neighbour));
}

void tst_NyQuilloServiceController::deletionOfAFolder()
{
    const QString id = QStringLiteral("Buch.nqp");
    QVERIFY(writeFile(proposals() + id + QStringLiteral("/photo.jpg"), "photo"));
    QVERIFY(writeFile(proposals() + id + QStringLiteral(".png"), "x"));
    const Answer answer(QMessageBox::YesRole);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("a folder is no proposal and stays: .*/Buch\\.nqp")));
    QCOMPARE(NyQuilloServiceController::askAndDeleteProposal(id), NyProposalDeletion::Incomplete);
    QVERIFY(QFile::exists(proposals() + id + QStringLiteral("/photo.jpg")));
    QVERIFY(!QFile::exists(proposals() + id + QStringLiteral(".png")));
    QVERIFY(QDir(proposals() + id).removeRecursively());
}

void tst_NyQuilloServiceController::deletionSaysHowItEnded()
{
    const QString id = QStringLiteral("Buch.nqp");
    QVERIFY(writeFile(proposals() + id, "book"));
    auto answer = std::make_unique<Answer>(QMessageBox::NoRole);
    QCOMPARE(NyQuilloServiceController::askAndDeleteProposal(id), NyProposalDeletion::Declined);
    answer = std::make_unique<Answer>(QMessageBox::YesRole);
    // A folder in which nothing can be deleted. Root can everywhere, so another user asks.
    const bool isRoot = ::geteuid() == 0;
    const QFile::Permissions readOnly(0x5555);
    QVERIFY(QFile::setPermissions(proposals(), readOnly));
    const QString last = QFileInfo(QDir::homePath()).absolutePath();
    for (QString above = QFileInfo(QDir::cleanPath(proposals())).absolutePath(); above.startsWith(last); above = QFileInfo(above).path())
        QVERIFY(QFile::setPermissions(above, readOnly | QFile::WriteOwner));
    QCOMPARE(isRoot ? ::seteuid(65534) : 0, 0);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^cannot delete .*Buch\\.nqp")));
    const NyProposalDeletion refused = NyQuilloServiceController::askAndDeleteProposal(id);
    QCOMPARE(isRoot ? ::seteuid(0) : 0, 0);
    QVERIFY(QFile::setPermissions(proposals(), readOnly | QFile::WriteOwner));
    QCOMPARE(refused, NyProposalDeletion::Incomplete);
    QVERIFY(QFile::exists(proposals() + id));
    QCOMPARE(NyQuilloServiceController::askAndDeleteProposal(id), NyProposalDeletion::Complete);
    QVERIFY(!QFile::exists(proposals() + id));
}

void tst_NyQuilloServiceController::deletionOfNothing()
{
    QVERIFY(writeFile(proposals() + QStringLiteral("Buch.nqp"), "book"));
    QTest::ignoreMessage(QtWarningMsg, "QUILLO_SERVICE: no proposal named for deletion, nothing is deleted");
    NyQuilloServiceController::deleteProposal(QString());
    QTest::ignoreMessage(QtWarningMsg, "QUILLO_SERVICE: no proposal named for deletion, nothing is deleted");
    QCOMPARE(NyQuilloServiceController::askAndDeleteProposal(QString()), NyProposalDeletion::Declined);
    QVERIFY(QFile::exists(proposals() + QStringLiteral("Buch.nqp")));
}

void tst_NyQuilloServiceController::markerFolder()
{
    QCOMPARE(NyQuilloServiceController::markerDir().absolutePath(), QDir::tempPath() + QStringLiteral("/VELMORA"));
    QCOMPARE(NyQuilloServiceController::terminationFilePath(), QDir::tempPath() + QStringLiteral("/VELMORA/terminateQuilloService.txt"));
    QCOMPARE(
        NyQuilloServiceController::markerFilePathForPicturesHome(), QDir::tempPath() + QStringLiteral("/VELMORA/picturesHomeChanged.txt"));
}

void tst_NyQuilloServiceController::quitAndUnquitLeaveNoTraces()
{
    m_controller.reset();
    const QString path = NyQuilloServiceController::terminationFilePath();
    {
        const LogRecorder log;
        NyQuilloServiceController::quitRunningService();
        NyQuilloServiceController::quitRunningService();
        QVERIFY(log.has(QStringLiteral("debug: writing file \"%1\"").arg(path)));
        QVERIFY(log.has(QStringLiteral("debug: wrote file \"%1\" true").arg(path)));
    }
    const QFileInfoList files = NyQuilloServiceController::markerDir().entryInfoList(QDir::Files);
    QCOMPARE(files.size(), 1);
    QCOMPARE(files.first().absoluteFilePath(), path);
    QCOMPARE(files.first().size(), 0);
    {
        const LogRecorder log;
        NyQuilloServiceController::unquitRunningService();
        QVERIFY(log.has(QStringLiteral("debug: removed file \"%1\" false").arg(path)));
    }
    QVERIFY(NyQuilloServiceController::markerDir().isEmpty());
    m_controller = std::make_unique<NyQuilloServiceController>();
}

void tst_NyQuilloServiceController::picturesHomeMarker()
{
    m_controller.reset();
    NyQuilloServiceController::markerDir().removeRecursively();
    NyQuilloServiceController::handlePicturesHomeChange();
    const QFileInfo first(NyQuilloServiceController::markerFilePathForPicturesHome());
    QVERIFY(first.exists());
    QCOMPARE(first.size(), 0);
    // A marker that was not collected is made anew: that is a change in the folder.
    QFileSystemWatcher watcher({first.absolutePath()});
    QSignalSpy changed(&watcher, &QFileSystemWatcher::directoryChanged);
    NyQuilloServiceController::handlePicturesHomeChange();
    QVERIFY(changed.wait());
    QVERIFY(QFile::exists(first.absoluteFilePath()));
    m_controller = std::make_unique<NyQuilloServiceController>();
}

void tst_NyQuilloServiceController::collectedMarkerReloadsThePicturesHome()
{
    NyFotoSettings stored;
    stored.loadSettings();
    stored.setPicturesHome(QDir::homePath() + QStringLiteral("/moved"));
    stored.saveSettings();
    QCOMPARE(NyFotoSettings::instance().picturesHome(), home());
    NyQuilloServiceController::handlePicturesHomeChange();
    QTRY_COMPARE(NyFotoSettings::instance().picturesHome(), QDir::homePath() + QStringLiteral("/moved"));
    QVERIFY(!QFile::exists(NyQuilloServiceController::markerFilePathForPicturesHome()));
    NyFotoSettings::instance().setPicturesHome(home());
    NyFotoSettings::instance().saveSettings();
}

void tst_NyQuilloServiceController::aMarkerThatNobodyCollectedIsHeardOnce()
{
    // Left from a time at which no service ran; a service does not look at it when it starts.
    m_controller.reset();
    NyQuilloServiceController::handlePicturesHomeChange();
    m_controller = std::make_unique<NyQuilloServiceController>();
    QCoreApplication::processEvents();
    QVERIFY(QFile::exists(NyQuilloServiceController::markerFilePathForPicturesHome()));

    const QString moved = QDir::homePath() + QStringLiteral("/moved");
    NyFotoSettings stored;
    stored.loadSettings();
    stored.setPicturesHome(moved);
    stored.saveSettings();
    NyQuilloServiceController::handlePicturesHomeChange();
    QTRY_COMPARE(NyFotoSettings::instance().picturesHome(), moved);
    QVERIFY(!QFile::exists(NyQuilloServiceController::markerFilePathForPicturesHome()));

    // What is not stored would go with a second reading.
    NyFotoSettings::instance().setPicturesHome(home());
    const LogRecorder log;
    QVERIFY(writeFile(NyQuilloServiceController::markerDir().absoluteFilePath(QStringLiteral("later")), ""));
    QTRY_VERIFY(!log.containing(QStringLiteral("changes at watched file path")).isEmpty());
    QCOMPARE(NyFotoSettings::instance().picturesHome(), home());
    NyFotoSettings::instance().saveSettings();
}

void tst_NyQuilloServiceController::terminationFileSurvivesUninstalling()
{
    NyQuilloServiceSettings::instance().setServiceMode(ServiceModeUninstall);
    const LogRecorder log;
    NyQuilloServiceController::quitRunningService();
    QTRY_VERIFY(!log.containing(QStringLiteral("changes at watched file path")).isEmpty());
    m_controller->watchedFileChanged(NyQuilloServiceController::markerDir().absolutePath());
    QVERIFY(QFile::exists(NyQuilloServiceController::terminationFilePath()));
    NyQuilloServiceController::unquitRunningService();
}

void tst_NyQuilloServiceController::terminationFileIsRemovedWhileInstalling()
{
    NyQuilloServiceSettings::instance().setServiceMode(ServiceModeInstall);
    NyQuilloServiceController::quitRunningService();
    QTRY_VERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
}

void tst_NyQuilloServiceController::removedMarkerFolderIsWatchedAgain()
{
    NyQuilloServiceSettings::instance().setServiceMode(ServiceModeInstall);
    for (int i = 0; i < 2; ++i) {
        QVERIFY(NyQuilloServiceController::markerDir().removeRecursively());
        QTRY_VERIFY(NyQuilloServiceController::markerDir().exists());
        NyQuilloServiceController::quitRunningService();
        QTRY_VERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
    }
}

void tst_NyQuilloServiceController::terminationFileEndsTheProcessWithinASearch()
{
    int exitCode = -1;
    const QByteArray output = runService("end", {}, &exitCode);
    QVERIFY2(exitCode == 0, qPrintable(QString::number(exitCode) + QLatin1Char('\n') + QString::fromUtf8(output)));
    QVERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
}

void tst_NyQuilloServiceController::aChangeOfTheProposalFolderRunsAllHandlers()
{
    NyQuilloServiceSettings::instance().setServiceMode(ServiceModeInstall);
    QVERIFY(writeFile(NyQuilloServiceController::terminationFilePath(), ""));
    QVERIFY(writeFile(NyQuilloServiceController::markerFilePathForPicturesHome(), ""));
    const LogRecorder log;
    m_controller->watchedFileChanged(QDir(proposals()).absolutePath());
    QVERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
    QVERIFY(!QFile::exists(NyQuilloServiceController::markerFilePathForPicturesHome()));
    QCOMPARE(eventLog(), QStringList{QStringLiteral("watchFileChanged")});
    QCOMPARE(log.all().first(),
        QStringLiteral("info: QUILLO_SERVICE: changes at watched file path: \"%1\"").arg(QDir(proposals()).absolutePath()));
    QCOMPARE(log.containing(QStringLiteral("proposal file does not exist at:")).size(), 1);
}

namespace
{
/** Stands for the static objects of all libraries: they must not go while a search may use them. */
struct StaticObject
{
    ~StaticObject()
    {
        if (inUse)
            std::_Exit(2);
    }
    std::atomic<bool> inUse = false;
};
StaticObject staticObject;

/** Runs into a termination file while a thread of the pool is busy; returns only if the process was not ended. */
int endWithinASearch()
{
    NyQuilloServiceController controller;
    QSemaphore begun;
    QSemaphore never;
    QThreadPool::globalInstance()->start([&] {
        staticObject.inUse = true;
        begun.release();
        never.acquire();
    });
    begun.acquire();
    writeFile(NyQuilloServiceController::terminationFilePath(), "");
    controller.watchTerminationFileChanged();
    return 1;
}

class RecordingInitializer : public NyInitializerAbstract
{
public:
    void addCommandLineOptionHandlers(NyCommandLineParserAbstract *) override { qInfo() << "initializer options"; }
    void setup(NyInitializerOption option) override { qInfo() << "initializer setup" << static_cast<int>(option); }
    void teardown() override { qInfo() << "initializer teardown"; }
};

int runToTheEnd()
{
    NyInitializer::instance().registerInitializer(new RecordingInitializer);
    return NyQuilloServiceController::instance().runService(QCoreApplication::arguments().mid(1));
}

/** Forces a search at once; ends when the builder was started, or when a second question came out as not recommended. */
int runForced()
{
    NyQuilloServiceController &controller = NyQuilloServiceController::instance();
    QTimer::singleShot(0, &controller, &NyQuilloServiceController::launchCreateProductSuggestionProcessForced);
    const LogRecorder log;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &controller, [&] {
        const bool refused = log.containing(QStringLiteral("not recommended due to lack of qualified photos")).size() >= 2;
        if (refused || !log.containing(QStringLiteral("process ended: ")).isEmpty())
            controller.quit();
    });
    look.start(20);
    return controller.runService({});
}

/** Asks for a proposal from the pictures home while that is empty, and for an ordinary one when it has photos. */
int runSpent()
{
    NyQuilloServiceController &controller = NyQuilloServiceController::instance();
    QTimer::singleShot(0, &controller, [&controller] {
        controller.launchCreateProductSuggestionProcessWithPicturesHomePhotos();
        for (int i = 0; i < 3; ++i)
            writePhoto(NyFotoSettings::instance().picturesHomePath() + QStringLiteral("/p%1.jpg").arg(i), i);
        controller.launchCreateProductSuggestionProcess();
        controller.quit();
    });
    return controller.runService({});
}
}

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QByteArray scenario = qgetenv("NY_TEST_SCENARIO");
    if (!scenario.isEmpty())
        NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    if (scenario == "end")
        return endWithinASearch();
    if (scenario == "run")
        return runToTheEnd();
    if (scenario == "forced")
        return runForced();
    if (scenario == "spent")
        return runSpent();
    tst_NyQuilloServiceController test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NyQuilloServiceController.moc"
