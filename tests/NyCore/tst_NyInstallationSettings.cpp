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
    void uninstallingIsWaitedFor();
    void slowUninstallingIsNotWaitedForForever();
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

void tst_NyInstallationSettings::uninstallingIsWaitedFor()
{
    const QString mark = m_folder->filePath(u"mark"_s);
    makeProgram(m_script, "sleep 0.2; echo \"$@\" > '" + mark.toUtf8() + "'");
    storeSettings(u"[common]\nautoStartService=true\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    settings.setAutoStartService(false, false);
    settings.applyAutoStartServiceSetting();
    QCOMPARE(contentOf(mark), "--serviceMode u\n");
    QVERIFY(!settings.autoStartService());
}

void tst_NyInstallationSettings::slowUninstallingIsNotWaitedForForever()
{
    const QString mark = m_folder->filePath(u"mark"_s);
    makeProgram(m_script, "sleep 3.5; echo ended > '" + mark.toUtf8() + "'");
    storeSettings(u"[common]\nquilloServicePath=\"%1\"\n"_s.arg(m_script));
    NyInstallationSettings settings;
    settings.setAutoStartService(false, false);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^program still runs: "_s));
    QElapsedTimer time;
    time.start();
    settings.applyAutoStartServiceSetting();
    QVERIFY2(time.elapsed() >= 2900 && time.elapsed() < 3450, QByteArray::number(time.elapsed()).constData());
    // It is left to itself, not killed.
    QVERIFY(!QFile::exists(mark));
    QTRY_COMPARE_WITH_TIMEOUT(contentOf(mark), "ended\n"_ba, 10000);
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
    const QString besides = QCoreApplication::applicationDirPath() + u"/quilloservice"_s;
    QVERIFY2(!QFile::exists(besides), "a service lies beside this test");
    const QByteArray warning = (u"no executable program: \""_s + besides + u'"').toUtf8();
    for (const bool on : {true, false}) {
        settings.setAutoStartService(on, false);
        QTest::ignoreMessage(QtWarningMsg, warning.constData());
        settings.applyAutoStartServiceSetting();
        QCOMPARE(settings.autoStartService(), on);
    }
    // It comes, and the wish is fulfilled.
    const QString mark = m_folder->filePath(u"mark"_s);
    makeProgram(m_folder->filePath(u"quilloservice"_s), "echo \"$@\" > '" + mark.toUtf8() + "'");
    settings.applyAutoStartServiceSetting();
    qputenv("PATH", searchPath);
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
