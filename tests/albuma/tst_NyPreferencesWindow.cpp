#include "FakeService.h"
#include "TestSupport.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollArea>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <NyDirectoryConfig.h>
#include <NyFotoSettings.h>
#include <NyFotoStartDirSelectionBox.h>
#include <NyInstallationSettings.h>
#include <NyPreferencesQuilloServiceInstallation.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceController.h>
#include <NyQuilloServiceSettings.h>

#include "NyAlbumaWindows.h"
#include "NyPreferencesWindow.h"

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace TestSupport;

namespace
{

/** The window, shown and active, and its controls as the user finds them. */
struct Shown
{
    Shown()
    {
        const QList<QCheckBox *> boxes = window.findChildren<QCheckBox *>();
        for (QCheckBox *box : boxes)
            (box->text().startsWith(u"Ja, "_s) ? autoStart : allowToasts) = box;
        line = window.findChild<QLineEdit *>();
        const QList<QPushButton *> buttons = window.findChildren<QPushButton *>();
        for (QPushButton *button : buttons) {
            if (button->text() == u"&OK"_s)
                ok = button;
            else if (button->text() == u"&Abbrechen"_s)
                cancel = button;
        }
        window.show();
        window.activateWindow();
    }
    bool isComplete() { return autoStart && allowToasts && line && ok && cancel && QTest::qWaitForWindowActive(&window); }
    void writeFolder(const QString &text)
    {
        line->setFocus();
        line->selectAll();
        QTest::keyClicks(line, text);
    }

    NyPreferencesWindow window;
    QCheckBox *autoStart = nullptr;
    QCheckBox *allowToasts = nullptr;
    QLineEdit *line = nullptr;
    QPushButton *ok = nullptr;
    QPushButton *cancel = nullptr;
};

bool markerIsThere()
{
    return QFile::exists(NyQuilloServiceController::markerFilePathForPicturesHome());
}

NyQuilloServiceSettings &serviceSettings()
{
    return NyQuilloServiceSettings::instance();
}

}

class tst_NyPreferencesWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void showsWhatIsStored();
    void aChangeOfAnotherProgramIsSeen();
    void everythingByKeyboard();
    void namesForScreenReaders();
    void cancelChangesNothing_data();
    void cancelChangesNothing();
    void storesAndCloses();
    void anotherFolderIsPassedOn();
    void theSameFolderIsNotPassedOn();
    void switchingOn();
    void switchingOffDoesNotBlock();
    void closedWhileTheServiceEnds();
    void savedAgainWhileTheServiceEnds();
    void closedAgainWhileTheServiceEnds();
    void theServiceDoesNotEnd();
    void theProgramOfTheServiceIsMissing();
    void switchingOffFails();
    void settingsThatCannotBeWritten();
    void foldersWithoutPhotos_data();
    void foldersWithoutPhotos();
    void aFolderWithALongPath_data();
    void aFolderWithALongPath();
    void anUnreadableFolder();
    void anUnpluggedFolderDoesNotKeepTheWindowOpen();
    void staysWhereItWas();
    void comesInItsSize_data();
    void comesInItsSize();
    void growsWhenItCanBeSeen();
    void reachedFromTheStartWindow();

private:
    QTemporaryDir m_folder;
};

void tst_NyPreferencesWindow::init()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    QVERIFY(NyQuilloServiceController::markerDir().mkpath(u"."_s));
    QFile::remove(NyQuilloServiceController::terminationFilePath());
    QFile::remove(NyQuilloServiceController::markerFilePathForPicturesHome());
    QFile::remove(configFolder() + u"/settings.ini"_s);
    serviceSettings().setSearchHomeFolder(QDir::homePath() + u"/Pictures"_s);
    serviceSettings().setAllowToastMessages(true);
    NyFotoSettings::instance().setPicturesHome(QDir::homePath() + u"/Pictures"_s);
}

void tst_NyPreferencesWindow::showsWhatIsStored()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    Shown shown;
    QVERIFY(shown.isComplete());
    QCOMPARE(shown.window.windowTitle(), u"Einstellungen"_s);
    QVERIFY(shown.window.findChild<NyPreferencesQuilloServiceInstallation *>());
    QVERIFY(shown.autoStart->isChecked());
    QVERIFY(shown.allowToasts->isChecked());
    QCOMPARE(shown.line->text(), QDir::homePath() + u"/Pictures"_s);
    QCOMPARE(shown.window.problem(), QString());
    // Nothing of the page is hidden behind an edge at the size that the window asks for.
    for (const QWidget *widget : {static_cast<QWidget *>(shown.autoStart), static_cast<QWidget *>(shown.line)})
        QCOMPARE(widget->visibleRegion().boundingRect(), widget->rect());
}

void tst_NyPreferencesWindow::aChangeOfAnotherProgramIsSeen()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    QVERIFY(writeFile(configFolder() + u"/settings.ini"_s,
        "[common]\nautoStartService=true\nquilloServiceAllowToastMessages=false\nquilloServiceSearchHome=\"/usr/share\"\n"));
    Shown shown;
    QVERIFY(shown.isComplete());
    QVERIFY(!shown.allowToasts->isChecked());
    QCOMPARE(shown.line->text(), u"/usr/share"_s);
}

void tst_NyPreferencesWindow::everythingByKeyboard()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    Shown shown;
    QVERIFY(shown.isComplete());
    QCOMPARE(QApplication::focusWidget(), shown.autoStart);
    QList<QWidget *> reached;
    do {
        reached.append(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    } while (QApplication::focusWidget() != shown.autoStart && reached.size() < 20);
    QCOMPARE(reached.size(), 6);
    QCOMPARE(reached.mid(0, 3), QList<QWidget *>({shown.autoStart, shown.allowToasts, shown.line}));
    QVERIFY(reached.contains(shown.ok));
    QVERIFY(reached.contains(shown.cancel));

    QTest::keyClick(&shown.window, Qt::Key_B, Qt::AltModifier);
    QTRY_VERIFY(!shown.allowToasts->isChecked());
    QTest::keyClick(&shown.window, Qt::Key_O, Qt::AltModifier);
    QTRY_VERIFY(!shown.window.isVisible());
    QCOMPARE(shown.window.result(), int(QDialog::Accepted));
    QVERIFY(!serviceSettings().allowToastMessages());
}

void tst_NyPreferencesWindow::namesForScreenReaders()
{
    Shown shown;
    QVERIFY(shown.isComplete());
    const QList<QWidget *> widgets = shown.window.findChildren<QWidget *>();
    int controls = 0;
    for (QWidget *widget : widgets) {
        if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible())
            continue;
        ++controls;
        const QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(widget);
        QVERIFY(accessible);
        QVERIFY2(!accessible->text(QAccessible::Name).isEmpty(), widget->metaObject()->className());
    }
    QCOMPARE(controls, 6);
}

void tst_NyPreferencesWindow::cancelChangesNothing_data()
{
    QTest::addColumn<int>("how");
    QTest::newRow("button") << 0;
    QTest::newRow("escape") << 1;
    QTest::newRow("closed") << 2;
}

void tst_NyPreferencesWindow::cancelChangesNothing()
{
    QFETCH(int, how);
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.autoStart->click();
    shown.writeFolder(m_folder.path());
    if (how == 0)
        shown.cancel->click();
    else if (how == 1)
        QTest::keyClick(&shown.window, Qt::Key_Escape);
    else
        shown.window.close();
    QVERIFY(!shown.window.isVisible());
    QCOMPARE(shown.window.result(), int(QDialog::Rejected));
    QVERIFY(NyInstallationSettings().autoStartService());
    QCOMPARE(serviceSettings().searchHomeFolder(), QDir::homePath() + u"/Pictures"_s);
    QVERIFY(!markerIsThere());
    QVERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
    QCOMPARE(service.starts(), QStringList());
}

void tst_NyPreferencesWindow::storesAndCloses()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    NyQuilloServiceController::quitRunningService();
    Shown shown;
    QVERIFY(shown.isComplete());
    QSignalSpy accepted(&shown.window, &QDialog::accepted);
    shown.allowToasts->click();
    shown.ok->click();
    QCOMPARE(accepted.size(), 1);
    QVERIFY(!shown.window.isVisible());
    // The page has lifted the request to end, as on every save with the service on.
    QVERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
    QVERIFY(readFile(configFolder() + u"/settings.ini"_s).contains("quilloServiceAllowToastMessages=false"));
    QCOMPARE(service.starts(), QStringList());
}

void tst_NyPreferencesWindow::anotherFolderIsPassedOn()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.writeFolder(m_folder.path() + u'/');
    QTest::keyClick(shown.line, Qt::Key_Return);
    QVERIFY(!shown.window.isVisible());
    QVERIFY(markerIsThere());
    const QByteArray stored = readFile(configFolder() + u"/settings.ini"_s);
    QVERIFY(stored.contains("quilloServiceSearchHome=\"" + m_folder.path().toUtf8() + "\"\n"));
    QVERIFY(stored.contains("picturesHome=\"" + m_folder.path().toUtf8() + "\"\n"));
}

void tst_NyPreferencesWindow::theSameFolderIsNotPassedOn()
{
    const FakeService service;
    QVERIFY(service.storeSettings(false));
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.writeFolder(QDir::homePath() + u"/Pictures"_s);
    shown.autoStart->click();
    shown.ok->click();
    QVERIFY(!shown.window.isVisible());
    QVERIFY(!markerIsThere());
    QVERIFY(!readFile(configFolder() + u"/settings.ini"_s).contains("picturesHome"));
    QTRY_COMPARE(service.starts(), QStringList({u"--serviceMode i"_s}));
}

void tst_NyPreferencesWindow::switchingOn()
{
    const FakeService service;
    QVERIFY(service.storeSettings(false));
    Shown shown;
    QVERIFY(shown.isComplete());
    QVERIFY(!shown.allowToasts->isEnabled());
    shown.autoStart->click();
    shown.ok->click();
    QVERIFY(!shown.window.isVisible());
    QTRY_COMPARE(service.starts(), QStringList({u"--serviceMode i"_s}));
    QVERIFY(NyInstallationSettings().autoStartService());
}

void tst_NyPreferencesWindow::switchingOffDoesNotBlock()
{
    const QString go = m_folder.filePath(u"go"_s);
    const FakeService service("while [ ! -e '" + go.toUtf8() + "' ]; do sleep 0.02; done");
    QVERIFY(service.storeSettings(true));
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.autoStart->setFocus();
    shown.autoStart->click();
    shown.ok->click();
    // It waits for the service, and nothing may be changed meanwhile.
    QVERIFY(shown.window.isVisible());
    QVERIFY(shown.window.isBusy());
    QVERIFY(!shown.ok->isEnabled());
    QVERIFY(!shown.autoStart->isEnabled());
    QVERIFY(shown.cancel->isEnabled());
    shown.window.accept();
    QTRY_COMPARE(service.starts(), QStringList({u"--serviceMode u"_s}));
    QVERIFY(shown.window.isVisible());
    QVERIFY(writeFile(go, ""));
    QTRY_VERIFY(!shown.window.isVisible());
    QCOMPARE(shown.window.result(), int(QDialog::Accepted));
    QCOMPARE(service.starts().size(), 1);
    QVERIFY(QFile::remove(go));
}

void tst_NyPreferencesWindow::closedWhileTheServiceEnds()
{
    const QString go = m_folder.filePath(u"go"_s);
    const FakeService service("while [ ! -e '" + go.toUtf8() + "' ]; do sleep 0.02; done");
    QVERIFY(service.storeSettings(true));
    Shown shown;
    QVERIFY(shown.isComplete());
    QSignalSpy finished(&shown.window, &QDialog::finished);
    shown.autoStart->click();
    shown.ok->click();
    QVERIFY(shown.window.isBusy());
    shown.cancel->click();
    QVERIFY(!shown.window.isVisible());
    QCOMPARE(finished.size(), 1);
    QVERIFY(writeFile(go, ""));
    QTRY_VERIFY(!NyInstallationSettings::instance().isApplying());
    QCOMPARE(finished.size(), 1);
    QVERIFY(QFile::remove(go));
}

void tst_NyPreferencesWindow::savedAgainWhileTheServiceEnds()
{
    const QString go = m_folder.filePath(u"go"_s);
    const QByteArray request = NyQuilloServiceController::terminationFilePath().toUtf8();
    // An uninstallation asks a running service to end, at its own end.
    const FakeService service("[ \"$2\" = i ] || { while [ ! -e '" + go.toUtf8() + "' ]; do sleep 0.02; done; touch '" + request + "'; }");
    QVERIFY(service.storeSettings(true));
    {
        Shown shown;
        QVERIFY(shown.isComplete());
        shown.autoStart->click();
        shown.ok->click();
        QVERIFY(shown.window.isBusy());
        shown.cancel->click();
    }
    Shown again;
    QVERIFY(again.isComplete());
    QVERIFY(!again.autoStart->isChecked());
    again.autoStart->click();
    again.ok->click();
    QVERIFY(again.window.isBusy());
    QVERIFY(!again.ok->isEnabled());
    again.window.accept();
    QVERIFY(again.window.isVisible());
    QVERIFY(!NyInstallationSettings().autoStartService());
    QVERIFY(writeFile(go, ""));
    QTRY_VERIFY(!again.window.isVisible());
    QCOMPARE(again.window.result(), int(QDialog::Accepted));
    QTRY_COMPARE(service.starts(), QStringList({u"--serviceMode u"_s, u"--serviceMode i"_s}));
    QVERIFY(NyInstallationSettings().autoStartService());
    // The new service would end at the next change of the folder.
    QVERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
    QVERIFY(QFile::remove(go));
}

void tst_NyPreferencesWindow::closedAgainWhileTheServiceEnds()
{
    const QString go = m_folder.filePath(u"go"_s);
    const FakeService service("while [ ! -e '" + go.toUtf8() + "' ]; do sleep 0.02; done");
    QVERIFY(service.storeSettings(true));
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.autoStart->click();
    shown.ok->click();
    shown.cancel->click();
    Shown again;
    QVERIFY(again.isComplete());
    again.autoStart->click();
    again.ok->click();
    QVERIFY(again.window.isBusy());
    again.cancel->click();
    QVERIFY(!again.window.isVisible());
    QVERIFY(writeFile(go, ""));
    QTRY_VERIFY(!NyInstallationSettings::instance().isApplying());
    QVERIFY(!NyInstallationSettings().autoStartService());
    QCOMPARE(service.starts(), QStringList({u"--serviceMode u"_s}));
    QVERIFY(QFile::remove(go));
}

void tst_NyPreferencesWindow::theServiceDoesNotEnd()
{
    const QString go = m_folder.filePath(u"go"_s);
    const QString ended = m_folder.filePath(u"ended"_s);
    const FakeService service("while [ ! -e '" + go.toUtf8() + "' ]; do sleep 0.02; done; echo ended > '" + ended.toUtf8() + "'");
    QVERIFY(service.storeSettings(true));
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.autoStart->setFocus();
    shown.autoStart->click();
    shown.ok->click();
    QTRY_VERIFY_WITH_TIMEOUT(!shown.window.isBusy(), 15000);
    QVERIFY(shown.window.isVisible());
    QVERIFY2(shown.window.problem().contains(u"ungewöhnlich lange"_s), qPrintable(shown.window.problem()));
    QVERIFY(shown.autoStart->isEnabled());
    QCOMPARE(shown.window.focusWidget(), shown.autoStart);
    // Nothing is left to do for the second one.
    shown.ok->click();
    QVERIFY(!shown.window.isVisible());
    QVERIFY(writeFile(go, ""));
    QTRY_VERIFY(QFile::exists(ended));
    QVERIFY(QFile::remove(go));
}

void tst_NyPreferencesWindow::theProgramOfTheServiceIsMissing()
{
    const QByteArray searchPath = qgetenv("PATH");
    qputenv("PATH", m_folder.path().toUtf8());
    const FakeService service;
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.autoStart->click();
    shown.ok->click();
    const QString problem = shown.window.problem();
    shown.ok->click();
    const QString problemAgain = shown.window.problem();
    const bool stillVisible = shown.window.isVisible();
    // It is installed while the window is open.
    qputenv("PATH", searchPath);
    QVERIFY(problem.contains(u"fehlt: "_s + QCoreApplication::applicationDirPath() + u"/quilloservice"_s));
    QCOMPARE(problemAgain, problem);
    QVERIFY(stillVisible);
    QVERIFY(shown.window.findChild<QLabel *>(u"problem"_s)->isVisible());
    QVERIFY(service.storeSettings(true));
    shown.ok->click();
    QVERIFY(!shown.window.isVisible());
    QTRY_COMPARE(service.starts(), QStringList({u"--serviceMode i"_s}));
}

void tst_NyPreferencesWindow::switchingOffFails()
{
    const FakeService service("exit 7");
    QVERIFY(service.storeSettings(true));
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.autoStart->click();
    shown.ok->click();
    QTRY_VERIFY(!shown.window.isBusy());
    QVERIFY(shown.window.isVisible());
    QCOMPARE(shown.window.problem(), u"Der Hintergrunddienst konnte nicht abgeschaltet werden: "_s + service.path());
    QVERIFY(writeFile(service.path(), "#!/bin/sh\nexit 0\n"));
    shown.ok->click();
    QTRY_VERIFY(!shown.window.isVisible());
}

void tst_NyPreferencesWindow::settingsThatCannotBeWritten()
{
    // A file where the folder should be.
    QVERIFY(QDir(configFolder()).removeRecursively());
    QVERIFY(QDir().mkpath(QFileInfo(configFolder()).absolutePath()));
    QFile obstacle(configFolder());
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.allowToasts->setChecked(false);
    shown.ok->click();
    const bool visible = shown.window.isVisible();
    const QString problem = shown.window.problem();
    QVERIFY(obstacle.remove());
    QVERIFY(visible);
    QVERIFY2(problem.contains(u"nicht gespeichert"_s) && problem.contains(configFolder()), qPrintable(problem));
    shown.ok->click();
    QVERIFY(!shown.window.isVisible());
    QVERIFY(readFile(configFolder() + u"/settings.ini"_s).contains("quilloServiceAllowToastMessages=false"));
}

void tst_NyPreferencesWindow::foldersWithoutPhotos_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("problem");
    QTest::newRow("missing") << u"/nowhere/Meine & Deine <Bilder>"_s
                             << u"Den Ordner „/nowhere/Meine & Deine <Bilder>“ gibt es zurzeit nicht."_s;
    QTest::newRow("file") << u"/etc/passwd"_s << u"„/etc/passwd“ ist kein Ordner."_s;
}

void tst_NyPreferencesWindow::foldersWithoutPhotos()
{
    QFETCH(QString, folder);
    QFETCH(QString, problem);
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.writeFolder(folder);
    shown.ok->click();
    QVERIFY(shown.window.isVisible());
    QVERIFY2(shown.window.problem().contains(problem), qPrintable(shown.window.problem()));
    // The message does not push anything out of sight.
    QTRY_COMPARE(shown.line->visibleRegion().boundingRect(), shown.line->rect());
    // It is stored all the same, and who insists may go.
    QCOMPARE(serviceSettings().searchHomeFolder(), folder);
    QVERIFY(markerIsThere());
    shown.ok->click();
    QVERIFY(!shown.window.isVisible());
}

void tst_NyPreferencesWindow::aFolderWithALongPath_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("a long name") << QString(u"/nirgends/"_s + u"Sommerferien_"_s.repeated(15));
    QTest::newRow("two long names") << QString(u"/nirgends/"_s + u"Sommerferien_"_s.repeated(15) + u'/' + u"W"_s.repeated(250));
    QTest::newRow("many names") << u"/Sommerferien 2024"_s.repeated(200);
    QTest::newRow("many short names") << u"/x"_s.repeated(2000);
}

void tst_NyPreferencesWindow::aFolderWithALongPath()
{
    QFETCH(QString, folder);
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    serviceSettings().saveSettings();
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.line->setText(folder);
    shown.ok->click();
    QVERIFY(shown.window.isVisible());
    const auto *label = shown.window.findChild<QLabel *>(u"problem"_s);
    QVERIFY(label && label->text().startsWith(u"Den Ordner „/"_s));
    // All of it can be read, and the buttons below it reached.
    const QStringList words = label->text().split(QRegularExpression(u"[ /]"_s));
    for (const QString &word : words)
        QVERIFY2(label->fontMetrics().horizontalAdvance(word) < label->contentsRect().width(), qPrintable(word));
    QTRY_VERIFY(label->height() >= label->heightForWidth(label->width()));
    QVERIFY(shown.window.height() <= shown.window.screen()->availableGeometry().height());
}

void tst_NyPreferencesWindow::anUnreadableFolder()
{
    // Others may enter the folder above it, which the test's own folders do not allow.
    const QTemporaryDir above(u"/tmp/nytest-above.XXXXXX"_s);
    const QString folder = above.filePath(u"private"_s);
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(
        QFile::setPermissions(above.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther));
    QVERIFY(QFile::setPermissions(folder, QFile::WriteOwner));
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.writeFolder(folder);
    // Root may read everything: while this is asked, the process is somebody else's.
    const bool isRoot = ::getuid() == 0;
    QCOMPARE(isRoot ? ::setreuid(65534, uid_t(-1)) : 0, 0);
    QTest::keyClick(shown.line, Qt::Key_Tab);
    QCOMPARE(isRoot ? ::setreuid(0, uid_t(-1)) : 0, 0);
    QVERIFY2(shown.window.problem().contains(u"darf nicht gelesen werden"_s), qPrintable(shown.window.problem()));
    shown.writeFolder(m_folder.path());
    QTest::keyClick(shown.line, Qt::Key_Tab);
    QCOMPARE(shown.window.problem(), QString());
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void tst_NyPreferencesWindow::anUnpluggedFolderDoesNotKeepTheWindowOpen()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    serviceSettings().setSearchHomeFolder(u"/media/anna/Platte/Bilder"_s);
    Shown shown;
    QVERIFY(shown.isComplete());
    shown.allowToasts->click();
    shown.ok->click();
    QVERIFY(!shown.window.isVisible());
    QVERIFY(!markerIsThere());
}

void tst_NyPreferencesWindow::staysWhereItWas()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    QSize size;
    {
        Shown shown;
        QVERIFY(shown.isComplete());
        size = shown.window.size() + QSize(70, 40);
        shown.window.resize(size);
        QCoreApplication::processEvents();
        shown.cancel->click();
    }
    Shown shown;
    QVERIFY(shown.isComplete());
    QCOMPARE(shown.window.size(), size);
}

void tst_NyPreferencesWindow::comesInItsSize_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("there") << QDir::homePath();
    QTest::newRow("missing") << QDir::homePath() + u"/Nirgends"_s;
}

void tst_NyPreferencesWindow::comesInItsSize()
{
    QFETCH(QString, folder);
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    serviceSettings().setSearchHomeFolder(folder);
    serviceSettings().saveSettings();
    NyPreferencesWindow window;
    window.show();
    const QSize size = window.size();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCoreApplication::processEvents();
    QCOMPARE(window.size(), size);
}

void tst_NyPreferencesWindow::growsWhenItCanBeSeen()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    serviceSettings().setSearchHomeFolder(QDir::homePath());
    serviceSettings().saveSettings();
    NyPreferencesWindow window;
    const auto *area = window.findChild<QScrollArea *>();
    auto *box = window.findChild<NyFotoStartDirSelectionBox *>();
    QVERIFY(area && box);
    window.show();
    const QSize size = window.size();
    box->setup(QDir::homePath() + u"/Nirgends"_s, false, false);
    // From one layout up to the next takes a round each.
    for (int round = 0; round < 5; ++round)
        QCoreApplication::sendPostedEvents();
    QVERIFY(!window.windowHandle()->isExposed());
    QCOMPARE(window.size(), size);
    QTRY_VERIFY(window.height() > size.height());
    QVERIFY(window.windowHandle()->isExposed());
    QVERIFY(area->viewport()->height() >= area->widget()->minimumSizeHint().height());
}

void tst_NyPreferencesWindow::reachedFromTheStartWindow()
{
    const FakeService service;
    QVERIFY(service.storeSettings(false));
    NyAlbumaWindows windows(NyLoadWarnings::Suppress);
    windows.showStart();
    QVERIFY(QTest::qWaitForWindowActive(windows.startWindow()));
    QTest::keyClick(windows.startWindow(), Qt::Key_Comma, Qt::ControlModifier);
    const QPointer<NyPreferencesWindow> window = windows.startWindow()->findChild<NyPreferencesWindow *>();
    QVERIFY(window);
    QVERIFY(QTest::qWaitForWindowActive(window));
    QVERIFY(window->isModal());
    QTest::keyClick(window, Qt::Key_Escape);
    QTRY_VERIFY(!window);
}

QTEST_MAIN(tst_NyPreferencesWindow)
#include "tst_NyPreferencesWindow.moc"
