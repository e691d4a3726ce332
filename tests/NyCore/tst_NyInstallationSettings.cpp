#include <QTest>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <NyDirectoryConfig.h>
#include <NyInstallationSettings.h>

#include "NyOwnFolder.h"

#include <signal.h>

using namespace Qt::Literals::StringLiterals;

namespace
{

void storeSettings(const QString &content)
{
    const QString path = NyDirectoryConfig::instance().settingsFile();
    QVERIFY(QDir().mkpath(QFileInfo(path).absolutePath()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content.toUtf8());
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void makeProgram(const QString &path, const QByteArray &script)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n" + script + "\n");
    file.close();
    QVERIFY(file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner));
}

using Outcome = NyInstallationSettings::Outcome;

/** The outcomes that the settings have told since this object was made. */
class Outcomes
{
public:
    explicit Outcomes(const NyInstallationSettings &settings)
    {
        QObject::connect(&settings, &NyInstallationSettings::autoStartServiceSettingApplied, &m_context,
            [this](Outcome outcome) { m_outcomes.append(outcome); });
    }
    const QList<Outcome> &all() const { return m_outcomes; }

private:
    QObject m_context;
    QList<Outcome> m_outcomes;
};

} // namespace

class tst_NyInstallationSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void offUnlessSwitchedOn();
    void readAfreshEachTime();
    void storedForAllPrograms();
    void installingIsDetached();
    void installingTellsItsOutcome();
    void uninstallingGoesOnBeside();
    void theNextWishWaitsForTheUninstallation();
    void switchingOffWaitsForTheInstallation_data();
    void switchingOffWaitsForTheInstallation();
    void switchingOffDoesNotWaitForever();
    void switchingOnAgainEndsTheWait();
    void quittingDoesNotLoseTheWish();
    void slowUninstallingIsLeftToItself();
    void theNextWishDoesNotWaitForever();
    void failedUninstallingLeavesTheWishPending_data();
    void failedUninstallingLeavesTheWishPending();
    void uninstallingOutlivesTheSettings();
    void nothingToApply();
    void missingServiceLeavesTheWishPending();
    void executablePaths();

private:
    QString m_script;
    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_NyInstallationSettings::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    m_folder = std::make_unique<QTemporaryDir>();
    QFile::remove(NyDirectoryConfig::instance().settingsFile());
    m_script = m_folder->filePath(u"the service"_s);
}

void tst_NyInstallationSettings::offUnlessSwitchedOn()
{
    const NyInstallationSettings settings;
    QVERIFY(!settings.autoStartService());
    QVERIFY(!QFile::exists(NyDirectoryConfig::instance().settingsFile()));
}

void tst_NyInstallationSettings::readAfreshEachTime()
{
    const NyInstallationSettings settings;
    for (const bool on : {true, false, true}) {
        // As another program of the user would.
        storeSettings(u"[common]\nautoStartService=%1\n"_s.arg(on ? u"true"_s : u"false"_s));
        QCOMPARE(settings.autoStartService(), on);
    }
}

void tst_NyInstallationSettings::storedForAllPrograms()
{
    NyInstallationSettings settings;
    settings.setAutoStartService(true, true);
    QVERIFY(contentOf(NyDirectoryConfig::instance().settingsFile()).contains("[common]\nautoStartService=true\n"));
    QVERIFY(NyInstallationSettings().autoStartService());
    // Switched off by one who never read it.
    NyInstallationSettings().setAutoStartService(false, true);
    QVERIFY(!settings.autoStartService());
    settings.setAutoStartService(true, true);
    QVERIFY(NyInstallationSettings().autoStartService());
}

void tst_NyInstallationSettings::installingIsDetached()
{
    const QString mark = m_folder->filePath(u"mark"_s);
    makeProgram(m_script,
        "echo $$ \"$@\" > '" + mark.toUtf8() + ".tmp' && mv '" + mark.toUtf8() + ".tmp' '" + mark.toUtf8() + "'; exec sleep 1000");
    storeSettings(u"[common]\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    settings.setAutoStartService(true, false);
    QElapsedTimer time;
    time.start();
    settings.applyAutoStartServiceSetting();
    QVERIFY(time.elapsed() < 2000);
    QVERIFY(QTest::qWaitFor([&mark] { return QFile::exists(mark); }));
    const QList<QByteArray> said = contentOf(mark).trimmed().split(' ');
    const auto id = static_cast<pid_t>(said.constFirst().toLongLong());
    QVERIFY(id > 1);
    QCOMPARE(said.sliced(1), QList<QByteArray>({"--serviceMode", "i"}));
    QCOMPARE(::kill(id, SIGTERM), 0);
    // Applied once.
    QVERIFY(QFile::remove(mark));
    QVERIFY(QFile::remove(m_script));
    settings.applyAutoStartServiceSetting();
}

void tst_NyInstallationSettings::installingTellsItsOutcome()
{
    makeProgram(m_script, "exit 0");
    storeSettings(u"[common]\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    const Outcomes outcomes(settings);
    settings.setAutoStartService(true, false);
    settings.applyAutoStartServiceSetting();
    QCOMPARE(outcomes.all(), QList({Outcome::Applied}));
    QVERIFY(!settings.isApplying());
    settings.applyAutoStartServiceSetting();
    QCOMPARE(outcomes.all().size(), 1);

    settings.setAutoStartService(false, true);
    // Executable, but its interpreter is missing.
    QFile script(m_script);
    QVERIFY(script.open(QIODevice::WriteOnly | QIODevice::Truncate));
    script.write("#!/nowhere/interpreter\n");
    script.close();
    settings.setAutoStartService(true, false);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^program could not be started: "_s));
    settings.applyAutoStartServiceSetting();
    QCOMPARE(outcomes.all(), QList({Outcome::Applied, Outcome::ProgramFailed}));
}

void tst_NyInstallationSettings::uninstallingGoesOnBeside()
{
    const QString mark = m_folder->filePath(u"mark"_s);
    const QString go = m_folder->filePath(u"go"_s);
    makeProgram(m_script, "while [ ! -e '" + go.toUtf8() + "' ]; do sleep 0.02; done; echo \"$@\" > '" + mark.toUtf8() + "'");
    storeSettings(u"[common]\nautoStartService=true\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    const Outcomes outcomes(settings);
    settings.setAutoStartService(false, false);
    settings.applyAutoStartServiceSetting();
    // Back although it has not ended, and asking again starts no second one.
    QVERIFY(settings.isApplying());
    settings.applyAutoStartServiceSetting();
    QCOMPARE(outcomes.all(), QList<Outcome>());
    makeProgram(go, "");
    QTRY_COMPARE(outcomes.all(), QList({Outcome::Applied}));
    QVERIFY(!settings.isApplying());
    QCOMPARE(contentOf(mark), "--serviceMode u\n");
    QVERIFY(!settings.autoStartService());
}

void tst_NyInstallationSettings::theNextWishWaitsForTheUninstallation()
{
    const QString mark = m_folder->filePath(u"mark"_s);
    const QByteArray store = NyDirectoryConfig::instance().settingsFile().toUtf8();
    const QString settingsText = u"[common]\nautoStartService=%1\nquilloServicePath=\"%2\"\n"_s;
    // Like the service, it stores that it is off when it uninstalls.
    makeProgram(
        m_script, "if [ \"$2\" = u ]; then sleep 0.3; sed -i s/=true/=false/ '" + store + "'; fi; echo \"$2\" >> '" + mark.toUtf8() + "'");
    storeSettings(settingsText.arg(u"true"_s, m_script));
    NyInstallationSettings settings;
    const Outcomes outcomes(settings);
    settings.setAutoStartService(false, false);
    settings.applyAutoStartServiceSetting();
    settings.setAutoStartService(true, false);
    settings.applyAutoStartServiceSetting();
    QCOMPARE(outcomes.all(), QList({Outcome::Applied, Outcome::Applied}));
    QVERIFY(settings.autoStartService());
    QTRY_COMPARE(contentOf(mark), "u\ni\n"_ba);
    QVERIFY(settings.autoStartService());
}

void tst_NyInstallationSettings::switchingOffWaitsForTheInstallation_data()
{
    QTest::addColumn<QByteArray>("whenInstalled");
    // As the service says that it runs.
    QTest::newRow("stays as the running service") << QByteArray("echo $$ > 'LOCK'; exec sleep 1000");
    QTest::newRow("ends, since another one runs") << QByteArray("exit 0");
    QTest::newRow("breaks down") << QByteArray("kill -KILL $$");
}

void tst_NyInstallationSettings::switchingOffWaitsForTheInstallation()
{
    QFETCH(QByteArray, whenInstalled);
    const QByteArray mark = m_folder->filePath(u"mark"_s).toUtf8();
    const QByteArray store = NyDirectoryConfig::instance().settingsFile().toUtf8();
    const QByteArray lockFile = NyDirectoryConfig::instance().serviceLockFile().toUtf8();
    QVERIFY(QDir().mkpath(QFileInfo(QString::fromUtf8(lockFile)).absolutePath()));
    const QString go = m_folder->filePath(u"go"_s);
    // Like the service, it stores what it has done; to install it takes its time to come up.
    makeProgram(m_script,
        "if [ \"$2\" = u ]; then sed -i s/=true/=false/ '" + store + "'; echo u >> '" + mark + "'; exit 0; fi\nwhile [ ! -e '" + go.toUtf8()
            + "' ]; do sleep 0.02; done\nsed -i s/=false/=true/ '" + store + "'\necho i $$ >> '" + mark + "'\n"
            + whenInstalled.replace("LOCK", lockFile));
    storeSettings(u"[common]\nautoStartService=false\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    const Outcomes outcomes(settings);
    settings.setAutoStartService(true, false);
    settings.applyAutoStartServiceSetting();
    settings.setAutoStartService(false, false);
    settings.applyAutoStartServiceSetting();
    // The caller goes on meanwhile, and the wish counts already.
    QVERIFY(settings.isApplying());
    QVERIFY(!QFile::exists(QString::fromUtf8(mark)));
    makeProgram(go, "");
    while (settings.isApplying()) {
        QVERIFY(!settings.autoStartService());
        QVERIFY(outcomes.all().size() == 1);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QCOMPARE(outcomes.all(), QList({Outcome::Applied, Outcome::Applied}));
    const QList<QByteArray> said = contentOf(QString::fromUtf8(mark)).trimmed().split('\n');
    QCOMPARE(said.size(), 2);
    QVERIFY(said.first().startsWith("i "));
    QCOMPARE(said.last(), "u");
    QVERIFY(!settings.autoStartService());
    if (whenInstalled.contains("sleep"))
        QCOMPARE(::kill(pid_t(said.first().mid(2).toLongLong()), SIGTERM), 0);
    QFile::remove(QString::fromUtf8(lockFile));
}

void tst_NyInstallationSettings::switchingOffDoesNotWaitForever()
{
    const QString mark = m_folder->filePath(u"mark"_s);
    const QString go = m_folder->filePath(u"go"_s);
    makeProgram(m_script,
        "echo \"$2\" >> '" + mark.toUtf8() + "'; [ \"$2\" = u ] || while [ ! -e '" + go.toUtf8()
            + "' ]; do sleep 0.02; done; echo \"$2 ended\" >> '" + mark.toUtf8() + "'");
    storeSettings(u"[common]\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    const Outcomes outcomes(settings);
    settings.setAutoStartService(true, false);
    settings.applyAutoStartServiceSetting();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^program does not come to install: "_s));
    settings.setAutoStartService(false, false);
    settings.applyAutoStartServiceSetting();
    QTRY_COMPARE_WITH_TIMEOUT(outcomes.all(), QList({Outcome::Applied, Outcome::Applied}), 10000);
    QVERIFY(contentOf(mark).startsWith("i\nu\n"));
    makeProgram(go, "");
    // Nobody's child, it must not outlive the folder.
    QTRY_VERIFY(contentOf(mark).contains("i ended\n"));
}

void tst_NyInstallationSettings::switchingOnAgainEndsTheWait()
{
    const QString mark = m_folder->filePath(u"mark"_s);
    const QString go = m_folder->filePath(u"go"_s);
    makeProgram(m_script, "echo \"$2\" >> '" + mark.toUtf8() + "'; while [ ! -e '" + go.toUtf8() + "' ]; do sleep 0.02; done");
    storeSettings(u"[common]\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    const Outcomes outcomes(settings);
    settings.setAutoStartService(true, false);
    settings.applyAutoStartServiceSetting();
    QTRY_COMPARE(contentOf(mark), "i\n"_ba);
    settings.setAutoStartService(false, false);
    settings.applyAutoStartServiceSetting();
    QVERIFY(settings.isApplying());
    settings.setAutoStartService(true, false);
    QVERIFY(!settings.isApplying());
    settings.applyAutoStartServiceSetting();
    makeProgram(go, "");
    QTRY_COMPARE(contentOf(mark), "i\ni\n"_ba);
    QCOMPARE(outcomes.all(), QList({Outcome::Applied, Outcome::Applied}));
    QTest::qWait(100);
    QVERIFY(settings.autoStartService());
    QCOMPARE(contentOf(mark), "i\ni\n"_ba);
}

void tst_NyInstallationSettings::quittingDoesNotLoseTheWish()
{
    const QByteArray mark = m_folder->filePath(u"mark"_s).toUtf8();
    const QByteArray store = NyDirectoryConfig::instance().settingsFile().toUtf8();
    makeProgram(m_script, "if [ \"$2\" = i ]; then sleep 0.5; sed -i s/=false/=true/ '" + store + "'; fi; echo \"$2\" >> '" + mark + "'");
    storeSettings(u"[common]\nautoStartService=false\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    settings.setAutoStartService(true, false);
    settings.applyAutoStartServiceSetting();
    settings.setAutoStartService(false, false);
    settings.applyAutoStartServiceSetting();
    QVERIFY(settings.isApplying());
    QTimer::singleShot(0, QCoreApplication::instance(), &QCoreApplication::quit);
    QCoreApplication::exec();
    QVERIFY(!settings.autoStartService());
    QTRY_COMPARE(contentOf(QString::fromUtf8(mark)), "i\nu\n"_ba);
}

void tst_NyInstallationSettings::slowUninstallingIsLeftToItself()
{
    const QString mark = m_folder->filePath(u"mark"_s);
    const QString go = m_folder->filePath(u"go"_s);
    makeProgram(m_script, "while [ ! -e '" + go.toUtf8() + "' ]; do sleep 0.02; done; echo ended > '" + mark.toUtf8() + "'");
    storeSettings(u"[common]\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    const Outcomes outcomes(settings);
    settings.setAutoStartService(false, false);
    settings.applyAutoStartServiceSetting();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^program still runs: "_s));
    QTRY_COMPARE_WITH_TIMEOUT(outcomes.all(), QList({Outcome::StillRunning}), 10000);
    QVERIFY(!settings.isApplying());
    // It goes on, and its end is nothing new.
    makeProgram(go, "");
    QTRY_COMPARE(contentOf(mark), "ended\n"_ba);
    QCOMPARE(outcomes.all().size(), 1);
}

void tst_NyInstallationSettings::theNextWishDoesNotWaitForever()
{
    const QString mark = m_folder->filePath(u"mark"_s);
    makeProgram(m_script, "if [ \"$2\" = u ]; then sleep 4; else echo \"$2\" > '" + mark.toUtf8() + "'; fi");
    storeSettings(u"[common]\nautoStartService=true\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    const Outcomes outcomes(settings);
    settings.setAutoStartService(false, false);
    settings.applyAutoStartServiceSetting();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^program still runs: "_s));
    settings.setAutoStartService(true, false);
    settings.applyAutoStartServiceSetting();
    QCOMPARE(outcomes.all(), QList({Outcome::StillRunning, Outcome::Applied}));
    QTRY_COMPARE(contentOf(mark), "i\n"_ba);
}

void tst_NyInstallationSettings::failedUninstallingLeavesTheWishPending_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::newRow("code") << QByteArray("exit 3");
    QTest::newRow("crash") << QByteArray("kill -SEGV $$");
}

void tst_NyInstallationSettings::failedUninstallingLeavesTheWishPending()
{
    QFETCH(QByteArray, script);
    makeProgram(m_script, script);
    storeSettings(u"[common]\nautoStartService=true\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    const Outcomes outcomes(settings);
    settings.setAutoStartService(false, false);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^program failed: "_s));
    settings.applyAutoStartServiceSetting();
    QTRY_COMPARE(outcomes.all(), QList({Outcome::ProgramFailed}));
    makeProgram(m_script, "exit 0");
    settings.applyAutoStartServiceSetting();
    QTRY_COMPARE(outcomes.all(), QList({Outcome::ProgramFailed, Outcome::Applied}));
}

void tst_NyInstallationSettings::uninstallingOutlivesTheSettings()
{
    const QString mark = m_folder->filePath(u"mark"_s);
    const QString go = m_folder->filePath(u"go"_s);
    makeProgram(m_script, "while [ ! -e '" + go.toUtf8() + "' ]; do sleep 0.02; done; echo ended > '" + mark.toUtf8() + "'");
    storeSettings(u"[common]\nautoStartService=true\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    {
        NyInstallationSettings settings;
        settings.setAutoStartService(false, false);
        settings.applyAutoStartServiceSetting();
    }
    makeProgram(go, "");
    QTRY_COMPARE(contentOf(mark), "ended\n"_ba);
}

void tst_NyInstallationSettings::nothingToApply()
{
    makeProgram(m_script, "echo started > '" + m_folder->filePath(u"mark"_s).toUtf8() + "'");
    storeSettings(u"[common]\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    settings.applyAutoStartServiceSetting();
    settings.setAutoStartService(false, true);
    settings.applyAutoStartServiceSetting();
    // A wish fulfilled by the caller overtakes one that was pending.
    settings.setAutoStartService(false, false);
    settings.setAutoStartService(false, true);
    settings.applyAutoStartServiceSetting();
    QVERIFY(!QFile::exists(m_folder->filePath(u"mark"_s)));
}

void tst_NyInstallationSettings::missingServiceLeavesTheWishPending()
{
    const QByteArray searchPath = qgetenv("PATH");
    qputenv("PATH", m_folder->path().toUtf8());
    NyInstallationSettings settings;
    const Outcomes outcomes(settings);
    const QString besides = QCoreApplication::applicationDirPath() + u"/quilloservice"_s;
    QVERIFY2(!QFile::exists(besides), "a service lies beside this test");
    const QByteArray warning = (u"no executable program: \""_s + besides + u'"').toUtf8();
    for (const bool on : {true, false}) {
        settings.setAutoStartService(on, false);
        QTest::ignoreMessage(QtWarningMsg, warning.constData());
        settings.applyAutoStartServiceSetting();
        QCOMPARE(settings.autoStartService(), on);
    }
    QCOMPARE(outcomes.all(), QList({Outcome::ProgramMissing, Outcome::ProgramMissing}));
    // It comes, and the wish is fulfilled.
    const QString mark = m_folder->filePath(u"mark"_s);
    makeProgram(m_folder->filePath(u"quilloservice"_s), "echo \"$@\" > '" + mark.toUtf8() + "'");
    settings.applyAutoStartServiceSetting();
    qputenv("PATH", searchPath);
    QTRY_COMPARE(outcomes.all().size(), 3);
    QCOMPARE(outcomes.all().last(), Outcome::Applied);
    QCOMPARE(contentOf(mark), "--serviceMode u\n");
}

void tst_NyInstallationSettings::executablePaths()
{
    const QByteArray searchPath = qgetenv("PATH");
    qputenv("PATH", m_folder->path().toUtf8());
    const NyInstallationSettings settings;
    const QString besides = QCoreApplication::applicationDirPath() + u"/VELMORA ALBUMA"_s;
    const QString inSearchPath = m_folder->filePath(u"velmora-albuma"_s);
    QVERIFY2(!QFile::exists(besides), "a main program lies beside this test");

    const QString nowhere = settings.executablePath(NyProgramID::MainProgram);
    makeProgram(inSearchPath, "exit 0");
    const QString fromSearchPath = settings.executablePath(NyProgramID::MainProgram);
    makeProgram(besides, "exit 0");
    const QString fromBesides = settings.executablePath(NyProgramID::MainProgram);
    makeProgram(m_script, "exit 0");
    storeSettings(u"[common]\nmainProgramPath=\"%1\"\n"_s.arg(m_script));
    const QString fromSettings = settings.executablePath(NyProgramID::MainProgram);
    storeSettings(u"[common]\nmainProgramPath=\"/nowhere/at all\"\n"_s);
    const QString withWrongSetting = settings.executablePath(NyProgramID::MainProgram);
    const bool removed = QFile::remove(besides);
    qputenv("PATH", searchPath);

    QVERIFY(removed);
    QCOMPARE(nowhere, besides);
    QCOMPARE(fromSearchPath, inSearchPath);
    QCOMPARE(fromBesides, besides);
    QCOMPARE(fromSettings, m_script);
    QCOMPARE(withWrongSetting, besides);
}

int main(int argc, char **argv)
{
    runFromFolderOfItsOwn(argv);
    QCoreApplication application(argc, argv);
    tst_NyInstallationSettings test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NyInstallationSettings.moc"
