#include "ServiceUnderTest.h"
#include "TestSupport.h"

#include <NyInstallationSettings.h>
#include <NyPreferencesWindow.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceController.h>
#include <NyQuilloServiceSettings.h>
#include <NyRunningServiceLock.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QTest>

using namespace TestSupport;

/** The settings window of the main program and the real service. */
class tst_PreferencesAndService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void anotherFolderReachesTheServiceAtOnce();
    void switchedOnAndOff();
    void switchedOnAndOffAtOnce();

private:
    static QString entryPath() { return QDir::homePath() + QStringLiteral("/.config/autostart/velmora.dorn.quillo.desktop"); }
    static QCheckBox *mainSwitch(const NyPreferencesWindow &window)
    {
        const QList<QCheckBox *> boxes = window.findChildren<QCheckBox *>();
        const auto found = std::find_if(boxes.begin(), boxes.end(),
            [](const QCheckBox *box) { return box->text() == QStringLiteral("Ja, ich möchte automatische Produktvorschläge erhalten."); });
        return found == boxes.end() ? nullptr : *found;
    }
};

void tst_PreferencesAndService::init()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
}

void tst_PreferencesAndService::cleanup()
{
    // A service that the window started is nobody's child.
    NyQuilloServiceController::quitRunningService();
}

void tst_PreferencesAndService::anotherFolderReachesTheServiceAtOnce()
{
    ServiceUnderTest service;
    // Without debugging features the first search, which would read the settings too, comes after ten minutes.
    service.writeConfiguration(QByteArray());
    service.allowAutostart();
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(service.log().contains(QStringLiteral("observing path")), 30000);
    const QString folder = QDir::homePath() + QStringLiteral("/Andere Bilder & mehr");
    QVERIFY(QDir().mkpath(folder));
    const QString change
        = QStringLiteral("QUILLO_SERVICE: observing path changed from  \"%1\" to \"%2\"").arg(service.picturesHome(), folder);
    QVERIFY(!service.output().contains(change.toUtf8()));

    NyPreferencesWindow window;
    window.findChild<QLineEdit *>()->setText(folder);
    window.accept();
    QCOMPARE(window.result(), int(QDialog::Accepted));
    QTRY_VERIFY_WITH_TIMEOUT(service.output().contains(change.toUtf8()), 30000);
    QCOMPARE(service.eventLog().last(), QStringLiteral("watchFileChanged"));
    QVERIFY(!QFile::exists(NyQuilloServiceController::markerFilePathForPicturesHome()));
    QVERIFY(service.isRunning());
    QVERIFY(!service.output().contains("starting first check"));
}

void tst_PreferencesAndService::switchedOnAndOff()
{
    ServiceUnderTest service;
    QVERIFY(writeFile(configFolder() + QStringLiteral("/settings.ini"),
        "[common]\nautoStartService=false\nquilloServicePath=\"" + QFile::encodeName(service.binary(QStringLiteral("quilloservice")))
            + "\"\n"));
    {
        NyPreferencesWindow window;
        mainSwitch(window)->click();
        window.accept();
        QCOMPARE(window.result(), int(QDialog::Accepted));
    }
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(entryPath()), 30000);
    QTRY_VERIFY_WITH_TIMEOUT(service.log().contains(QStringLiteral("observing path")), 30000);
    QVERIFY(NyInstallationSettings().autoStartService());

    NyPreferencesWindow window;
    QVERIFY(mainSwitch(window)->isChecked());
    mainSwitch(window)->click();
    window.accept();
    QVERIFY(window.isBusy());
    QTRY_COMPARE_WITH_TIMEOUT(window.result(), int(QDialog::Accepted), 30000);
    QCOMPARE(window.problem(), QString());
    QVERIFY(!QFile::exists(entryPath()));
    QVERIFY(!NyInstallationSettings().autoStartService());
    // The running service has ended: the request of the page, or that of the uninstallation.
    QTRY_VERIFY_WITH_TIMEOUT(service.log().contains(QStringLiteral("removing")), 30000);
}

void tst_PreferencesAndService::switchedOnAndOffAtOnce()
{
    ServiceUnderTest service;
    // A service that comes up slowly, as after the start of the machine.
    const QString program = QDir::homePath() + QStringLiteral("/slow service");
    QVERIFY(writeFile(program,
        "#!/bin/sh\n[ \"$2\" = i ] && sleep 0.5\nexec '" + QFile::encodeName(service.binary(QStringLiteral("quilloservice")))
            + "' \"$@\"\n"));
    QVERIFY(QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY(writeFile(configFolder() + QStringLiteral("/settings.ini"),
        "[common]\nautoStartService=false\nquilloServicePath=\"" + QFile::encodeName(program) + "\"\n"));
    for (int i = 0; i < 2; ++i) {
        NyPreferencesWindow window;
        mainSwitch(window)->click();
        window.accept();
        QTRY_COMPARE_WITH_TIMEOUT(window.result(), int(QDialog::Accepted), 30000);
        QCOMPARE(window.problem(), QString());
    }
    QVERIFY(!QFile::exists(entryPath()));
    QVERIFY(!NyInstallationSettings().autoStartService());
    // The one that was started has installed before that, and has heard that it is to end.
    QTRY_VERIFY_WITH_TIMEOUT(NyRunningServiceLock().acquire(0), 30000);
    const QStringList switches = service.eventLog().filter(QStringLiteral("setAutoStartService"));
    QCOMPARE(switches,
        (QStringList{
            QStringLiteral("setAutoStartService VALUE:1 SOURCE:service"), QStringLiteral("setAutoStartService VALUE:0 SOURCE:service")}));
    QVERIFY(!QFile::exists(entryPath()));
    QVERIFY(!NyInstallationSettings().autoStartService());
}

QTEST_MAIN(tst_PreferencesAndService)
#include "tst_PreferencesAndService.moc"
