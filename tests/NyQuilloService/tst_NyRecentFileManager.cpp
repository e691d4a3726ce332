#include "TestSupport.h"

#include <NyDateRange.h>
#include <NyEventFolderClassificationResult.h>
#include <NyFotoList.h>
#include <NyFotoListRegistry.h>
#include <NyFotoSettings.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceConfig.h>
#include <NyQuilloServiceSettings.h>
#include <NyRecentFileManager.h>

#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QThreadPool>

#include <memory>

using namespace TestSupport;

namespace
{
constexpr int minimumPhotos = 4;

/** A manager has to outlive its searches. */
class Manager : public NyRecentFileManager
{
public:
    Manager()
        : NyRecentFileManager(nullptr)
    {
    }
    ~Manager() override { QThreadPool::globalInstance()->waitForDone(); }
};

/** Keeps the pool's only thread busy: searches queue up and do not begin until free(). */
class BusyPool
{
public:
    BusyPool()
        : m_threads(QThreadPool::globalInstance()->maxThreadCount())
    {
        QThreadPool::globalInstance()->setMaxThreadCount(1);
        m_mutex.lock();
        QThreadPool::globalInstance()->start([this] { const QMutexLocker locker(&m_mutex); });
    }
    ~BusyPool()
    {
        free();
        QThreadPool::globalInstance()->waitForDone();
        QThreadPool::globalInstance()->setMaxThreadCount(m_threads);
    }
    Q_DISABLE_COPY_MOVE(BusyPool)

    void free()
    {
        if (m_busy)
            m_mutex.unlock();
        m_busy = false;
    }

private:
    int m_threads;
    QMutex m_mutex;
    bool m_busy = true;
};

NyRecentFileResult resultWith(int count)
{
    QList<QFileInfo> files;
    for (int i = 0; i < count; ++i)
        files.append(QFileInfo(QStringLiteral("/pictures/%1.jpg").arg(i)));
    return NyRecentFileResult(files, NyDateRange(), 0, NyEventFolderClassificationResult(), {});
}
}

class tst_NyRecentFileManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void beforeTheFirstCheck();
    void rules_data();
    void rules();
    void rulesAreLoggedInOneLine();
    void searchFindsTheEventAndStoresAllPhotos();
    void usedPhotosAreNotProposedAgain();
    void tooFewPhotosAreNotRecommended();
    void readersDoNotWaitForASearch();
    void forcedResults();
    void forcedDuringASearchStartsNoSecondOne();
    void timerRepeatsTheCheck();
    void overlappingChecks();
    void anInvalidRangeStillFinishes();
    void picturesHomeCountsUntilTheNextCheck();
    void missingFolder();
    void endOfTheProgramLeavesTheStoredListAlone();

private:
    QString m_home;
    int m_seed = 0;

    void addPhotos(const QString &folder, int count)
    {
        for (int i = 0; i < count; ++i)
            QVERIFY(writePhoto(m_home + QLatin1Char('/') + folder + QStringLiteral("/p%1.jpg").arg(i), ++m_seed));
    }
    static void configure(const QByteArray &sections)
    {
        QVERIFY(writeServiceConfig(sections));
        NyQuilloServiceConfig::instance().reload();
    }
};

void tst_NyRecentFileManager::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    m_home = QDir::homePath() + QStringLiteral("/Pictures");
}

void tst_NyRecentFileManager::init()
{
    QDir(m_home).removeRecursively();
    QDir().mkpath(m_home);
    configure("<recentFiles minimumPhotos='" + QByteArray::number(minimumPhotos) + "' inactivityDuration='0'/>");
    NyQuilloServiceSettings &settings = NyQuilloServiceSettings::instance();
    settings.resetSettings();
    settings.setSearchHomeFolder(m_home);
    settings.saveSettings();
}

void tst_NyRecentFileManager::beforeTheFirstCheck()
{
    const Manager manager;
    QVERIFY(manager.getRecentFileResultSafely().isEmpty());
    QVERIFY(manager.recentFiles().isEmpty());
    QVERIFY(manager.suggestedRecentFiles().isEmpty());
    QVERIFY(!manager.isProductSuggestionRecommended());
}

void tst_NyRecentFileManager::rules_data()
{
    QTest::addColumn<int>("suggestions");
    QTest::addColumn<qint64>("secondsSinceLast");
    QTest::addColumn<int>("photos");
    QTest::addColumn<QString>("now");
    QTest::addColumn<bool>("expected");

    const QString friday = QStringLiteral("2026-11-20T15:00:00");
    const QString monday = QStringLiteral("2026-11-16T15:00:00");
    const QString thursdayMorning = QStringLiteral("2026-11-19T11:59:59");
    const qint64 initialWait = 4 * 3600;
    const qint64 regularWait = 28 * 86400;

    QTest::newRow("first proposal on any day") << 0 << regularWait << minimumPhotos << monday << true;
    QTest::newRow("second proposal on a Monday") << 1 << regularWait << minimumPhotos << monday << false;
    QTest::newRow("second proposal on Thursday before noon") << 1 << regularWait << minimumPhotos << thursdayMorning << false;
    QTest::newRow("second proposal on a Friday") << 1 << regularWait << minimumPhotos << friday << true;
    QTest::newRow("exactly the least number of photos") << 0 << regularWait << minimumPhotos << friday << true;
    QTest::newRow("one photo too few") << 0 << regularWait << minimumPhotos - 1 << friday << false;
    QTest::newRow("the wait is over exactly now") << 1 << initialWait << minimumPhotos << friday << true;
    QTest::newRow("the wait lacks a second") << 1 << initialWait - 1 << minimumPhotos << friday << false;
    QTest::newRow("as many proposals as the initial phase: its wait") << 3 << initialWait << minimumPhotos << friday << true;
    QTest::newRow("one more: the regular wait, not over") << 4 << initialWait << minimumPhotos << friday << false;
    QTest::newRow("one more: the regular wait lacks a second") << 4 << regularWait - 1 << minimumPhotos << friday << false;
    QTest::newRow("one more: the regular wait is over") << 4 << regularWait << minimumPhotos << friday << true;
}

void tst_NyRecentFileManager::rules()
{
    QFETCH(int, suggestions);
    QFETCH(qint64, secondsSinceLast);
    QFETCH(int, photos);
    QFETCH(QString, now);
    const QDateTime moment = QDateTime::fromString(now, Qt::ISODate);
    NyQuilloServiceSettings &settings = NyQuilloServiceSettings::instance();
    for (int i = 0; i < suggestions; ++i)
        settings.increaseProductSuggestionCount();
    settings.setLastProductSuggestionDate(moment.addSecs(-secondsSinceLast));
    const Manager manager;
    QTEST(manager.isProductSuggestionRecommended(resultWith(photos), moment), "expected");
}

void tst_NyRecentFileManager::rulesAreLoggedInOneLine()
{
    NyQuilloServiceSettings &settings = NyQuilloServiceSettings::instance();
    for (int i = 0; i < 4; ++i)
        settings.increaseProductSuggestionCount();
    const QDateTime monday = QDateTime(QDate(2026, 11, 16), QTime(12, 0));
    settings.setLastProductSuggestionDate(monday.addDays(-365));
    const Manager manager;
    const LogRecorder log;
    manager.isProductSuggestionRecommended(resultWith(minimumPhotos - 1), monday);
    QCOMPARE(log.all(),
        QStringList{QStringLiteral("info: inRegularPhase true ; enough time has passed true ; sufficient images false ; preferred time of "
                                   "week false ; was explicitly requested false")});
}

void tst_NyRecentFileManager::searchFindsTheEventAndStoresAllPhotos()
{
    addPhotos(QStringLiteral("2026-07-11 Hochzeit"), minimumPhotos + 2);
    addPhotos(QStringLiteral("2026-08-01 Sommerfest"), minimumPhotos);
    Manager manager;
    QSignalSpy recommended(&manager, &NyRecentFileManager::productSuggestionRecommended);
    const LogRecorder log;
    manager.checkForRecentFiles();
    QVERIFY(recommended.wait());
    QCOMPARE(recommended.size(), 1);
    QVERIFY(manager.isProductSuggestionRecommended());
    QCOMPARE(manager.recentFiles().size(), minimumPhotos + 2);
    for (const QFileInfo &file : manager.recentFiles())
        QCOMPARE(file.dir().dirName(), QStringLiteral("2026-07-11 Hochzeit"));
    QCOMPARE(manager.suggestedRecentFiles().eventFolderType().encode(), QStringLiteral("event"));
    // The list of the scan is kept whole, before the event is chosen.
    const QString key = NyQuilloServiceConfig::instance().registryIdentifier();
    QCOMPARE(NyFotoListRegistry::instance().fotoList(key).toLocalFileInfoList().size(), 2 * minimumPhotos + 2);

    QVERIFY(log.has(QStringLiteral("info: QUILLO_SERVICE: Files found:  %1").arg(minimumPhotos + 2)));
    QVERIFY(log.has(QStringLiteral("info: QUILLO_SERVICE: Files found that were after the cut-off-date:  0")));
    QVERIFY(log.has(QStringLiteral("debug: QUILLO_SERVICE: found recent unused Files %1").arg(2 * minimumPhotos + 2)));
    const QStringList selected = log.containing(QStringLiteral("recommended fotos selected"));
    QCOMPARE(selected.size(), 1);
    QVERIFY(
        selected.first().startsWith(QStringLiteral("debug: QUILLO_SERVICE: recommended fotos selected %1 ").arg(2 * minimumPhotos + 2)));
    QCOMPARE(log.containing(QStringLiteral("QUILLO_SERVICE: DateRange to be considered:")).size(), 1);
    QCOMPARE(log.containing(QStringLiteral("QUILLO_SERVICE: Searching for recently added files from ")).size(), 1);
}

void tst_NyRecentFileManager::usedPhotosAreNotProposedAgain()
{
    addPhotos(QStringLiteral("2026-07-11 Hochzeit"), minimumPhotos + 1);
    Manager manager;
    QSignalSpy recommended(&manager, &NyRecentFileManager::productSuggestionRecommended);
    manager.checkForRecentFiles();
    QVERIFY(recommended.wait());
    NyFotoListRegistry::instance().addFotosUsedForBookProposals(NyFotoList(manager.recentFiles()));

    manager.checkForRecentFiles();
    QTRY_VERIFY(manager.suggestedRecentFiles().isEmpty());
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    QCOMPARE(recommended.size(), 1);
    QVERIFY(manager.recentFiles().isEmpty());
    const QString key = NyQuilloServiceConfig::instance().registryIdentifier();
    QCOMPARE(NyFotoListRegistry::instance().fotoList(key).toLocalFileInfoList().size(), 0);
}

void tst_NyRecentFileManager::tooFewPhotosAreNotRecommended()
{
    addPhotos(QStringLiteral("2026-07-11 Hochzeit"), minimumPhotos - 1);
    Manager manager;
    QSignalSpy recommended(&manager, &NyRecentFileManager::productSuggestionRecommended);
    const LogRecorder log;
    manager.checkForRecentFiles();
    QTRY_VERIFY(!log.containing(QStringLiteral("Files found that were after")).isEmpty());
    QCOMPARE(recommended.size(), 0);
}

void tst_NyRecentFileManager::readersDoNotWaitForASearch()
{
    addPhotos(QStringLiteral("2026-07-11 Hochzeit"), minimumPhotos + 1);
    Manager manager;
    QSignalSpy recommended(&manager, &NyRecentFileManager::productSuggestionRecommended);
    BusyPool pool;
    manager.checkForRecentFiles();
    QVERIFY(manager.recentFiles().isEmpty());
    QVERIFY(!manager.isProductSuggestionRecommended());
    QVERIFY(manager.suggestedRecentFiles().isEmpty());
    pool.free();
    QVERIFY(recommended.wait());
    QVERIFY(manager.isProductSuggestionRecommended());
}

void tst_NyRecentFileManager::forcedResults()
{
    Manager manager;
    QSignalSpy recommended(&manager, &NyRecentFileManager::productSuggestionRecommended);
    bool recommendedAfterTheFlag = true;
    connect(&manager, &NyRecentFileManager::productSuggestionRecommended, &manager,
        [&] { recommendedAfterTheFlag = manager.isProductSuggestionRecommended(); });
    manager.forceResults();
    QVERIFY(recommended.wait());
    // The flag is cleared before the signal, and an empty result alone is worth nothing.
    QVERIFY(!recommendedAfterTheFlag);

    const LogRecorder log;
    manager.checkForRecentFiles();
    QTRY_VERIFY(!log.containing(QStringLiteral("was explicitly requested false")).isEmpty());
    QCOMPARE(recommended.size(), 1);
}

void tst_NyRecentFileManager::forcedDuringASearchStartsNoSecondOne()
{
    Manager manager;
    QSignalSpy recommended(&manager, &NyRecentFileManager::productSuggestionRecommended);
    BusyPool pool;
    const LogRecorder log;
    manager.checkForRecentFiles();
    manager.forceResults();
    pool.free();
    QVERIFY(recommended.wait());
    QCOMPARE(log.containing(QStringLiteral("DateRange to be considered")).size(), 1);
}

void tst_NyRecentFileManager::timerRepeatsTheCheck()
{
    configure("<recentFiles minimumPhotos='4' durationBetweenChecks='1'/>");
    Manager manager;
    const LogRecorder log;
    manager.startCheckingForRecentFiles();
    QTRY_VERIFY_WITH_TIMEOUT(log.containing(QStringLiteral("Files found that were after")).size() >= 2, 10000);
}

void tst_NyRecentFileManager::overlappingChecks()
{
    addPhotos(QStringLiteral("2026-07-11 Hochzeit"), minimumPhotos + 1);
    Manager manager;
    QSignalSpy recommended(&manager, &NyRecentFileManager::productSuggestionRecommended);
    BusyPool pool;
    const LogRecorder log;
    manager.checkForRecentFiles();
    manager.checkForRecentFiles();
    pool.free();
    QVERIFY(recommended.wait());
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    // Both searches ran, the result of the first one was dropped.
    QCOMPARE(log.containing(QStringLiteral("found recent unused Files")).size(), 2);
    QCOMPARE(log.containing(QStringLiteral("Files found that were after")).size(), 1);
    QCOMPARE(recommended.size(), 1);
}

void tst_NyRecentFileManager::anInvalidRangeStillFinishes()
{
    // A negative span makes the range end before it begins.
    configure("<recentFiles minimumPhotos='4' recentTimeSpan='-864000'/>");
    addPhotos(QStringLiteral("2026-07-11 Hochzeit"), minimumPhotos + 1);
    Manager manager;
    const LogRecorder log;
    manager.checkForRecentFiles();
    QTRY_VERIFY(log.has(QStringLiteral("info: QUILLO_SERVICE: Files found:  0")));
    QVERIFY(log.containing(QStringLiteral("Searching for recently added files")).isEmpty());
    QVERIFY(!manager.isProductSuggestionRecommended());
}

void tst_NyRecentFileManager::picturesHomeCountsUntilTheNextCheck()
{
    Manager manager;
    NyFotoSettings::instance().setPicturesHome(QDir::homePath() + QStringLiteral("/other"));
    const LogRecorder log;
    manager.handlePicturesHomeChange();
    QCOMPARE(log.containing(QStringLiteral("QUILLO_SERVICE: observing path changed from ")).size(), 1);
    manager.handlePicturesHomeChange();
    QCOMPARE(log.containing(QStringLiteral("QUILLO_SERVICE: observing path changed from ")).size(), 1);
    manager.checkForRecentFiles();
    const QStringList changes = log.containing(QStringLiteral("QUILLO_SERVICE: observing path changed from "));
    QCOMPARE(changes.size(), 2);
    QVERIFY(changes.last().endsWith(QStringLiteral("\"%1\"").arg(m_home)));
    NyFotoSettings::instance().setPicturesHome(m_home);
}

void tst_NyRecentFileManager::missingFolder()
{
    NyQuilloServiceSettings::instance().setSearchHomeFolder(QDir::homePath() + QStringLiteral("/gone"));
    NyQuilloServiceSettings::instance().saveSettings();
    Manager manager;
    const LogRecorder log;
    manager.checkForRecentFiles();
    QTRY_VERIFY(log.has(QStringLiteral("info: QUILLO_SERVICE: Files found:  0")));
}

void tst_NyRecentFileManager::endOfTheProgramLeavesTheStoredListAlone()
{
    addPhotos(QStringLiteral("2026-07-11 Hochzeit"), minimumPhotos);
    const QString key = NyQuilloServiceConfig::instance().registryIdentifier();
    const NyFotoList stored(QList<QUrl>{QUrl::fromLocalFile(QStringLiteral("/tmp/earlier.jpg"))});
    NyFotoListRegistry::instance().clearEntry(key);
    NyFotoListRegistry::instance().add(key, stored);

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("NY_TEST_END_WITH_A_SEARCH"), QStringLiteral("1"));
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), QStringList());
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    const QByteArray output = process.readAll();
    QVERIFY2(output.contains("QUILLO_SERVICE: Searching for recently added files from"), output.constData());
    QVERIFY2(!output.contains("QUILLO_SERVICE: found recent unused Files"), output.constData());
    QCOMPARE(NyFotoListRegistry::instance().fotoList(key).toUrlStringList(), stored.toUrlStringList());
}

namespace
{
/** Destroys the application while a search waits for its thread; the search then runs in the midst of that. */
int endWithASearch(std::unique_ptr<QCoreApplication> application)
{
    NyQuilloServiceSettings::instance().loadSettings();
    QThreadPool *pool = QThreadPool::globalInstance();
    pool->setMaxThreadCount(1);
    pool->start([] {
        while (!QCoreApplication::closingDown())
            QThread::yieldCurrentThread();
    });
    // Has to outlive its search.
    auto *manager = new NyRecentFileManager(nullptr);
    manager->checkForRecentFiles();
    application.reset();
    return 0;
}
}

int main(int argc, char **argv)
{
    auto application = std::make_unique<QCoreApplication>(argc, argv);
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    if (qEnvironmentVariableIsSet("NY_TEST_END_WITH_A_SEARCH"))
        return endWithASearch(std::move(application));
    tst_NyRecentFileManager test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NyRecentFileManager.moc"
