#include "TestSupport.h"

#include <NyFotoList.h>
#include <NyFotoListRegistry.h>
#include <NyFotoSettings.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceSettings.h>

#include <QSignalSpy>
#include <QTest>

using namespace TestSupport;

class tst_NyQuilloServiceSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void firstRun();
    void everythingSavedIsLoaded();
    void theKeyOfThePostponedProposal();
    void resetTouchesTwoItemsOnly();
    void searchHomeSignals();
    void sharedItemsAreReadAfreshInTheServiceOnly();
    void theServiceDoesNotUndoWhatAnotherProcessWrote();
    void dueMoment();
    void proposalFolder();
    void loadingMakesTheProposalFolder();
    void theModeIsNeverSaved();
};

void tst_NyQuilloServiceSettings::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    QFile::remove(configFolder() + QStringLiteral("/settings.ini"));
}

void tst_NyQuilloServiceSettings::firstRun()
{
    const QDateTime before = QDateTime::currentDateTime().addDays(-365);
    NyQuilloServiceSettings settings;
    settings.loadSettings();
    const QDateTime after = QDateTime::currentDateTime().addDays(-365);
    QVERIFY(before <= settings.lastProductSuggestionDate());
    QVERIFY(settings.lastProductSuggestionDate() <= after);
    QCOMPARE(settings.productSuggestionCount(), 0);
    QVERIFY(!settings.nextToastRepeat().isValid());
    QVERIFY(!settings.lastStartScreenProposalViewDate().isValid());
    QCOMPARE(settings.lastBookProposalId(), QString());
    QCOMPARE(settings.allowToastMessages(), true);
    QCOMPARE(settings.searchHomeFolder(), NyFotoSettings::instance().picturesHome());
    QCOMPARE(settings.serviceMode(), ServiceModeNormal);
}

void tst_NyQuilloServiceSettings::everythingSavedIsLoaded()
{
    const QDateTime moment(QDate(2026, 3, 29), QTime(3, 30, 1, 250));
    const QString id = QStringLiteral("Buch \"1\" ä%1;=\n🎂.nqp");
    const QString folder = QStringLiteral("/tmp/Bilder: 2026, %20 & mehr");
    {
        NyQuilloServiceSettings settings;
        settings.setLastProductSuggestionDate(moment);
        settings.setLastBookProposalId(id);
        settings.setNextToastRepeat(QDate(2028, 2, 29));
        settings.setLastStartScreenProposalViewDate(moment.addDays(1));
        settings.increaseProductSuggestionCount();
        settings.increaseProductSuggestionCount();
        settings.setSearchHomeFolder(folder);
        settings.setAllowToastMessages(false);
        settings.saveSettings();
    }
    NyQuilloServiceSettings settings;
    settings.loadSettings();
    QCOMPARE(settings.lastProductSuggestionDate(), moment);
    QCOMPARE(settings.lastBookProposalId(), id);
    QCOMPARE(settings.nextToastRepeat(), QDate(2028, 2, 29));
    QCOMPARE(settings.lastStartScreenProposalViewDate(), moment.addDays(1));
    QCOMPARE(settings.productSuggestionCount(), 2);
    QCOMPARE(settings.searchHomeFolder(), folder);
    QCOMPARE(settings.allowToastMessages(), false);
}

void tst_NyQuilloServiceSettings::theKeyOfThePostponedProposal()
{
    NyQuilloServiceSettings settings;
    settings.setLastBookProposalId(QStringLiteral("a.nqp"));
    const QByteArray stored = readFile(configFolder() + QStringLiteral("/settings.ini"));
    QVERIFY(stored.contains("lastBookProposalFilePath"));
    QVERIFY(!stored.contains("lastBookProposalId"));
    // Every setter that saves writes all seven items.
    for (const char *key : {"lastProductSuggestionDate", "nextToastRepeat", "lastStartScreenProposalView", "productSuggestionCounter",
             "quilloServiceSearchHome", "quilloServiceAllowToastMessages"})
        QVERIFY2(stored.contains(key), key);
}

void tst_NyQuilloServiceSettings::resetTouchesTwoItemsOnly()
{
    const QDateTime beforeStart = QDateTime::currentDateTime().addDays(-365);
    NyQuilloServiceSettings settings;
    const QDateTime afterStart = QDateTime::currentDateTime().addDays(-365);
    settings.setLastProductSuggestionDate(QDateTime(QDate(2026, 1, 1), QTime(12, 0)));
    settings.increaseProductSuggestionCount();
    settings.setNextToastRepeat(QDate(2026, 12, 1));
    settings.setLastBookProposalId(QStringLiteral("b.nqp"));
    settings.setSearchHomeFolder(QStringLiteral("/tmp/elsewhere"));
    settings.setAllowToastMessages(false);
    settings.saveSettings();
    NyFotoListRegistry &registry = NyFotoListRegistry::instance();
    registry.addFotosUsedForBookProposals(NyFotoList(QList<QUrl>{QUrl::fromLocalFile(QStringLiteral("/tmp/a.jpg"))}));

    settings.resetSettings();

    NyQuilloServiceSettings reread;
    reread.loadSettings();
    QVERIFY(beforeStart <= reread.lastProductSuggestionDate());
    QVERIFY(reread.lastProductSuggestionDate() <= afterStart);
    QCOMPARE(reread.productSuggestionCount(), 0);
    QCOMPARE(reread.nextToastRepeat(), QDate(2026, 12, 1));
    QCOMPARE(reread.lastBookProposalId(), QStringLiteral("b.nqp"));
    QCOMPARE(reread.searchHomeFolder(), QStringLiteral("/tmp/elsewhere"));
    QCOMPARE(reread.allowToastMessages(), false);
    QCOMPARE(registry.fotosUsedForBookProposals().toUrlStringList(), QStringList());
}

void tst_NyQuilloServiceSettings::searchHomeSignals()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    NyQuilloServiceSettings settings;
    QSignalSpy changed(&settings, &NyQuilloServiceSettings::searchHomeChanged);
    const QString before = settings.searchHomeFolder();
    settings.setSearchHomeFolder(before);
    QCOMPARE(changed.size(), 0);
    settings.setSearchHomeFolder(QStringLiteral("/tmp/other"));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(settings.searchHomeFolder(), QStringLiteral("/tmp/other"));

    NyQuilloServiceSettings unsaved;
    unsaved.loadSettings();
    QCOMPARE(unsaved.searchHomeFolder(), before);
    settings.saveSettings();
    unsaved.loadSettings();
    QCOMPARE(unsaved.searchHomeFolder(), QStringLiteral("/tmp/other"));
}

void tst_NyQuilloServiceSettings::sharedItemsAreReadAfreshInTheServiceOnly()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    NyQuilloServiceSettings mainProgram;
    mainProgram.saveSettings();
    NyQuilloServiceSettings service;
    service.loadSettings();
    mainProgram.setSearchHomeFolder(QStringLiteral("/tmp/new home"));
    mainProgram.setAllowToastMessages(false);
    mainProgram.saveSettings();

    // As any other program, the value in memory counts.
    QCOMPARE(service.allowToastMessages(), true);
    QVERIFY(service.searchHomeFolder() != QStringLiteral("/tmp/new home"));
    QVERIFY(!service.isQuilloService());

    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    QVERIFY(service.isQuilloService());
    QCOMPARE(service.allowToastMessages(), false);
    QCOMPARE(service.searchHomeFolder(), QStringLiteral("/tmp/new home"));
}

void tst_NyQuilloServiceSettings::theServiceDoesNotUndoWhatAnotherProcessWrote()
{
    NyQuilloServiceSettings service;
    service.loadSettings();
    service.saveSettings();

    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    NyQuilloServiceSettings preferences;
    preferences.loadSettings();
    preferences.setSearchHomeFolder(QStringLiteral("/tmp/chosen"));
    preferences.setAllowToastMessages(false);
    preferences.saveSettings();

    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    service.increaseProductSuggestionCount();

    NyQuilloServiceSettings reread;
    reread.loadSettings();
    QCOMPARE(reread.searchHomeFolder(), QStringLiteral("/tmp/chosen"));
    QCOMPARE(reread.allowToastMessages(), false);
    QCOMPARE(reread.productSuggestionCount(), 1);
}

void tst_NyQuilloServiceSettings::dueMoment()
{
    NyQuilloServiceSettings settings;
    QVERIFY(!settings.recommendedNextToastRepeat().isValid());
    settings.setNextToastRepeat(QDate(2026, 11, 28));
    QCOMPARE(settings.recommendedNextToastRepeat(), QDateTime(QDate(2026, 11, 28), QTime(18, 0), Qt::LocalTime));
}

void tst_NyQuilloServiceSettings::proposalFolder()
{
    const NyQuilloServiceSettings settings;
    const QString folder = settings.bookProposalFileFolder();
    QVERIFY(folder.endsWith(QLatin1Char('/')));
    QVERIFY(folder.startsWith(dataFolder()));
    QCOMPARE(settings.projectFile(QStringLiteral("a b.nqp")), folder + QStringLiteral("a b.nqp"));
    QCOMPARE(settings.projectIconFile(QStringLiteral("a b.nqp")), folder + QStringLiteral("a b.nqp.png"));
    QCOMPARE(settings.projectId(QStringLiteral("/x/y/a b.nqp")), QStringLiteral("a b.nqp"));
    QCOMPARE(settings.projectId(settings.projectFile(QStringLiteral("q.nqpx"))), QStringLiteral("q.nqpx"));
}

void tst_NyQuilloServiceSettings::loadingMakesTheProposalFolder()
{
    NyQuilloServiceSettings settings;
    QDir(settings.bookProposalFileFolder()).removeRecursively();
    settings.loadSettings();
    QVERIFY(QFileInfo(settings.bookProposalFileFolder()).isDir());
}

void tst_NyQuilloServiceSettings::theModeIsNeverSaved()
{
    NyQuilloServiceSettings settings;
    settings.setServiceMode(ServiceModeReset);
    settings.saveSettings();
    settings.loadSettings();
    QCOMPARE(settings.serviceMode(), ServiceModeReset);
    NyQuilloServiceSettings other;
    other.loadSettings();
    QCOMPARE(other.serviceMode(), ServiceModeNormal);
}

QTEST_GUILESS_MAIN(tst_NyQuilloServiceSettings)
#include "tst_NyQuilloServiceSettings.moc"
