#include "FakeService.h"
#include "TestSupport.h"

#include <NyFotoStartDirSelectionBox.h>
#include <NyInstallationSettings.h>
#include <NyPreferencesQuilloServiceInstallation.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceController.h>
#include <NyQuilloServiceSettings.h>

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace TestSupport;

namespace
{
NyQuilloServiceSettings &settings()
{
    return NyQuilloServiceSettings::instance();
}

QStringList events()
{
    return eventLog(u"velmora-albuma"_s);
}

bool endIsRequested()
{
    return QFile::exists(NyQuilloServiceController::terminationFilePath());
}

/** The page in a window, and its controls as the user finds them. */
struct Page
{
    Page()
        : page(new NyPreferencesQuilloServiceInstallation(&window))
        , folder(page->findChild<NyFotoStartDirSelectionBox *>())
        , line(folder->findChild<QLineEdit *>())
    {
        const QList<QCheckBox *> boxes = page->findChildren<QCheckBox *>();
        for (QCheckBox *box : boxes) {
            if (box->text() == u"Ja, ich möchte automatische Produktvorschläge erhalten."_s)
                autoStart = box;
            else if (box->text() == u"Bei neuen Produktvorschlägen benachrichtigen."_s)
                allowToasts = box;
        }
        const QList<QLabel *> labels = page->findChildren<QLabel *>();
        for (QLabel *candidate : labels) {
            if (candidate->text() == u"Ordner mit Ihren Fotos für Produktvorschläge"_s)
                label = candidate;
        }
    }
    bool isComplete() const { return autoStart && allowToasts && label && folder && line; }

    QWidget window;
    NyPreferencesQuilloServiceInstallation *page;
    QCheckBox *autoStart = nullptr;
    QCheckBox *allowToasts = nullptr;
    QLabel *label = nullptr;
    NyFotoStartDirSelectionBox *folder;
    QLineEdit *line;
};
}

class tst_NyPreferencesQuilloServiceInstallation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void layout();
    void withoutAParent();
    void keyboardGoesFromTopToBottom();
    void keysOfTheControls();
    void reading_data();
    void reading();
    void readingAgainGivesUpChanges();
    void theMainBoxLeadsTheNotificationBoxOnly();
    void savingWithoutAChange_data();
    void savingWithoutAChange();
    void switchingOn();
    void switchingOff();
    void theRequestComesBeforeTheSettings();
    void anotherFolder();
    void aMissingFolderIsKept();
    void notifications();
    void savingLiftsARequestToEnd();
};

void tst_NyPreferencesQuilloServiceInstallation::init()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    QVERIFY(NyQuilloServiceController::markerDir().mkpath(u"."_s));
    QFile::remove(NyQuilloServiceController::terminationFilePath());
    QFile::remove(configFolder() + u"/settings.ini"_s);
    settings().setSearchHomeFolder(QDir::homePath() + u"/Pictures"_s);
    settings().setAllowToastMessages(true);
}

void tst_NyPreferencesQuilloServiceInstallation::layout()
{
    const Page page;
    QVERIFY(page.isComplete());
    QCOMPARE(page.page->title(), u"Automatische Produktvorschläge"_s);
    QCOMPARE(page.page->parentWidget(), &page.window);
    QCOMPARE(int(page.page->type()), 0);
    QCOMPARE(&page.page->quilloServiceSettings(), &settings());

    const auto cell = [](const QGridLayout *grid, QWidget *widget) {
        int row = -1;
        int column = -1;
        int rows = -1;
        int columns = -1;
        if (const int index = grid->indexOf(widget); index >= 0)
            grid->getItemPosition(index, &row, &column, &rows, &columns);
        return QList<int>{row, column, rows, columns};
    };
    const auto *pageGrid = qobject_cast<QGridLayout *>(page.page->layout());
    QVERIFY(pageGrid);
    QWidget *inner = page.allowToasts->parentWidget();
    QVERIFY(inner != page.page);
    QCOMPARE(cell(pageGrid, page.autoStart), QList<int>({0, 0, 1, 2}));
    QCOMPARE(cell(pageGrid, inner), QList<int>({1, 0, 1, 2}));
    const auto *innerGrid = qobject_cast<QGridLayout *>(inner->layout());
    QVERIFY(innerGrid);
    QCOMPARE(innerGrid->contentsMargins(), QMargins(0, 0, 0, 5));
    QCOMPARE(innerGrid->columnMinimumWidth(0), 20);
    QCOMPARE(cell(innerGrid, page.allowToasts), QList<int>({0, 1, 1, 1}));
    QCOMPARE(cell(innerGrid, page.label), QList<int>({1, 1, 1, 1}));
    QCOMPARE(cell(innerGrid, page.folder), QList<int>({2, 1, 1, 1}));
    QCOMPARE(innerGrid->count(), 3);
}

void tst_NyPreferencesQuilloServiceInstallation::withoutAParent()
{
    const QPointer<NyPreferencesQuilloServiceInstallation> page = new NyPreferencesQuilloServiceInstallation(nullptr);
    const QPointer<NyFotoStartDirSelectionBox> folder = page->findChild<NyFotoStartDirSelectionBox *>();
    QVERIFY(folder);
    page->readFromConfig();
    delete page.data();
    QVERIFY(!folder);
}

void tst_NyPreferencesQuilloServiceInstallation::keyboardGoesFromTopToBottom()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    Page page;
    page.page->readFromConfig();
    page.window.show();
    page.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&page.window));
    page.autoStart->setFocus();
    const QList<QWidget *> expected{page.allowToasts, page.line, page.folder->findChild<QPushButton *>()};
    for (const QWidget *next : expected) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), next);
    }
}

void tst_NyPreferencesQuilloServiceInstallation::keysOfTheControls()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    Page page;
    page.page->readFromConfig();
    page.window.show();
    page.window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&page.window));
    page.line->setFocus();
    QTest::keyClick(&page.window, Qt::Key_B, Qt::AltModifier);
    QTRY_VERIFY(!page.allowToasts->isChecked());
    QTest::keyClick(&page.window, Qt::Key_J, Qt::AltModifier);
    QTRY_VERIFY(!page.autoStart->isChecked());
}

void tst_NyPreferencesQuilloServiceInstallation::reading_data()
{
    QTest::addColumn<bool>("autoStart");
    QTest::addColumn<bool>("allowToasts");
    QTest::newRow("all off") << false << false;
    QTest::newRow("service only") << true << false;
    QTest::newRow("notifications only") << false << true;
    QTest::newRow("all on") << true << true;
}

void tst_NyPreferencesQuilloServiceInstallation::reading()
{
    QFETCH(bool, autoStart);
    QFETCH(bool, allowToasts);
    const FakeService service;
    QVERIFY(service.storeSettings(autoStart));
    settings().setAllowToastMessages(allowToasts);
    settings().setSearchHomeFolder(u"/tmp/Meine Bilder"_s);
    const Page page;
    page.page->readFromConfig();
    QCOMPARE(page.autoStart->isChecked(), autoStart);
    QCOMPARE(page.allowToasts->isChecked(), allowToasts);
    QCOMPARE(page.allowToasts->isEnabled(), autoStart);
    QVERIFY(page.folder->isEnabled());
    QCOMPARE(page.line->text(), u"/tmp/Meine Bilder"_s);
    QVERIFY(!page.line->isReadOnly());
}

void tst_NyPreferencesQuilloServiceInstallation::readingAgainGivesUpChanges()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    const Page page;
    page.page->readFromConfig();
    const QString folder = page.folder->folder();
    page.autoStart->click();
    page.line->setText(u"/elsewhere"_s);
    page.page->revertChanges();
    QVERIFY(page.autoStart->isChecked());
    QVERIFY(page.allowToasts->isEnabled());
    QCOMPARE(page.folder->folder(), folder);
    QCOMPARE(service.starts(), QStringList());
    QVERIFY(!endIsRequested());
}

void tst_NyPreferencesQuilloServiceInstallation::theMainBoxLeadsTheNotificationBoxOnly()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    const Page page;
    page.page->readFromConfig();
    page.autoStart->click();
    QVERIFY(!page.allowToasts->isEnabled());
    QVERIFY(page.allowToasts->isChecked());
    QVERIFY(page.label->isEnabled());
    QVERIFY(page.folder->isEnabled());
    QVERIFY(page.line->isEnabled());
    QVERIFY(page.folder->findChild<QPushButton *>()->isEnabled());
    QTest::keyClicks(page.line, u"x"_s);
    QVERIFY(page.folder->folder().endsWith(u'x'));
    page.autoStart->click();
    QVERIFY(page.allowToasts->isEnabled());
    page.autoStart->setCheckState(Qt::PartiallyChecked);
    QVERIFY(page.allowToasts->isEnabled());
    // Nothing of this reaches the settings before it is saved.
    QVERIFY(NyInstallationSettings().autoStartService());
    QVERIFY(!endIsRequested());
}

void tst_NyPreferencesQuilloServiceInstallation::savingWithoutAChange_data()
{
    QTest::addColumn<bool>("autoStart");
    QTest::newRow("off") << false;
    QTest::newRow("on") << true;
}

void tst_NyPreferencesQuilloServiceInstallation::savingWithoutAChange()
{
    QFETCH(bool, autoStart);
    const FakeService service;
    QVERIFY(service.storeSettings(autoStart));
    const Page page;
    page.page->readFromConfig();
    const QStringList eventsBefore = events();
    QSignalSpy changed(&settings(), &NyQuilloServiceSettings::searchHomeChanged);
    // The opposite of what saving leaves behind.
    if (autoStart)
        NyQuilloServiceController::quitRunningService();
    QCOMPARE(endIsRequested(), autoStart);
    QVERIFY(!readFile(configFolder() + u"/settings.ini"_s).contains("quilloServiceSearchHome"));

    page.page->writeToConfig();

    QCOMPARE(endIsRequested(), !autoStart);
    QVERIFY(readFile(configFolder() + u"/settings.ini"_s).contains("quilloServiceSearchHome"));
    QCOMPARE(events(), eventsBefore);
    QCOMPARE(NyInstallationSettings().autoStartService(), autoStart);
    QCOMPARE(changed.size(), 0);
    // A wish that is still to be applied would start the service now.
    NyInstallationSettings::instance().applyAutoStartServiceSetting();
    QCOMPARE(service.starts(), QStringList());
}

void tst_NyPreferencesQuilloServiceInstallation::switchingOn()
{
    const FakeService service;
    QVERIFY(service.storeSettings(false));
    const Page page;
    page.page->readFromConfig();
    const QStringList eventsBefore = events();
    QSignalSpy changed(&settings(), &NyQuilloServiceSettings::searchHomeChanged);

    page.autoStart->click();
    page.page->writeToConfig();

    QVERIFY(NyInstallationSettings().autoStartService());
    QTRY_COMPARE(service.starts(), QStringList({u"--serviceMode i"_s}));
    QCOMPARE(events().mid(eventsBefore.size()), QStringList({u"setAutoStartService VALUE:1 SOURCE:settingswindow"_s}));
    QCOMPARE(changed.size(), 1);
    QVERIFY(!endIsRequested());

    page.page->writeToConfig();
    QCOMPARE(events().size(), eventsBefore.size() + 1);
    QCOMPARE(changed.size(), 1);
}

void tst_NyPreferencesQuilloServiceInstallation::switchingOff()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    const Page page;
    page.page->readFromConfig();
    const QStringList eventsBefore = events();
    QSignalSpy changed(&settings(), &NyQuilloServiceSettings::searchHomeChanged);

    page.autoStart->click();
    page.page->writeToConfig();

    QVERIFY(!NyInstallationSettings().autoStartService());
    QTRY_COMPARE(service.starts(), QStringList({u"--serviceMode u"_s}));
    QCOMPARE(events().mid(eventsBefore.size()), QStringList({u"setAutoStartService VALUE:0 SOURCE:settingswindow"_s}));
    QCOMPARE(changed.size(), 1);
    QVERIFY(endIsRequested());
}

void tst_NyPreferencesQuilloServiceInstallation::theRequestComesBeforeTheSettings()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    const Page page;
    page.page->readFromConfig();
    page.autoStart->click();
    page.line->setText(u"/tmp/another"_s);
    bool requested = false;
    QString folderThen;
    QObject context;
    const QMetaObject::Connection first = connect(&settings(), &NyQuilloServiceSettings::searchHomeChanged, &context, [&] {
        if (!folderThen.isNull())
            return;
        requested = endIsRequested();
        folderThen = settings().searchHomeFolder();
    });
    QVERIFY(first);
    QSignalSpy changed(&settings(), &NyQuilloServiceSettings::searchHomeChanged);
    page.page->writeToConfig();
    QVERIFY(requested);
    QVERIFY(folderThen != u"/tmp/another"_s);
    // Once for the switch, once for the folder.
    QCOMPARE(changed.size(), 2);
    QCOMPARE(settings().searchHomeFolder(), u"/tmp/another"_s);
}

void tst_NyPreferencesQuilloServiceInstallation::anotherFolder()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    const Page page;
    page.page->readFromConfig();
    QSignalSpy changed(&settings(), &NyQuilloServiceSettings::searchHomeChanged);
    page.line->selectAll();
    QTest::keyClicks(page.line, u"/usr/share/"_s);
    QCOMPARE(changed.size(), 0);
    page.page->writeToConfig();
    QCOMPARE(changed.size(), 1);
    NyQuilloServiceSettings reread;
    reread.loadSettings();
    QCOMPARE(reread.searchHomeFolder(), u"/usr/share"_s);
    QCOMPARE(service.starts(), QStringList());
}

void tst_NyPreferencesQuilloServiceInstallation::aMissingFolderIsKept()
{
    // The drive of the pictures is unplugged while the user changes something else.
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    settings().setSearchHomeFolder(u"/media/anna/Platte/Bilder/"_s);
    const Page page;
    page.page->readFromConfig();
    QSignalSpy changed(&settings(), &NyQuilloServiceSettings::searchHomeChanged);
    page.allowToasts->click();
    page.page->writeToConfig();
    QCOMPARE(changed.size(), 0);
    QCOMPARE(settings().searchHomeFolder(), u"/media/anna/Platte/Bilder/"_s);

    page.line->clear();
    page.page->writeToConfig();
    QCOMPARE(settings().searchHomeFolder(), u"/media/anna/Platte/Bilder/"_s);
}

void tst_NyPreferencesQuilloServiceInstallation::notifications()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    const Page page;
    page.page->readFromConfig();
    for (const bool allowed : {false, true}) {
        page.allowToasts->click();
        page.page->writeToConfig();
        NyQuilloServiceSettings reread;
        reread.loadSettings();
        QCOMPARE(reread.allowToastMessages(), allowed);
    }
}

void tst_NyPreferencesQuilloServiceInstallation::savingLiftsARequestToEnd()
{
    const FakeService service;
    QVERIFY(service.storeSettings(true));
    const Page page;
    page.page->readFromConfig();
    page.autoStart->click();
    page.page->writeToConfig();
    QVERIFY(endIsRequested());
    page.autoStart->click();
    page.page->writeToConfig();
    QVERIFY(!endIsRequested());
    QTRY_COMPARE(service.starts(), QStringList({u"--serviceMode u"_s, u"--serviceMode i"_s}));
}

QTEST_MAIN(tst_NyPreferencesQuilloServiceInstallation)
#include "tst_NyPreferencesQuilloServiceInstallation.moc"
