#include <algorithm>
#include <memory>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <NyBookProjectFile.h>
#include <NyInstallationSettings.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceController.h>
#include <NyStartScreenRecommendationsInterface.h>

#include "FakeService.h"
#include "NyAlbumaWindows.h"
#include "NyProposalView.h"
#include "NyStartScreenSettings.h"
#include "NyStartWindow.h"
#include "ProposalFiles.h"
#include "WithoutRootPowers.h"

using namespace Qt::Literals::StringLiterals;
using namespace ProposalFiles;

namespace
{
/** Answers the next question, which comes with an event loop of its own, and keeps what it said. */
class Answer : public QObject
{
public:
    explicit Answer(bool yes)
    {
        connect(&m_timer, &QTimer::timeout, this, [this, yes] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            m_questions.append(box->text());
            const QList<QAbstractButton *> buttons = box->buttons();
            for (QAbstractButton *button : buttons) {
                if ((box->buttonRole(button) == QMessageBox::YesRole) == yes)
                    button->click();
            }
        });
        m_timer.start(10);
    }
    const QStringList &questions() const { return m_questions; }

private:
    QTimer m_timer;
    QStringList m_questions;
};

QChar mnemonic(const QString &text)
{
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (text.at(i) != u'&')
            continue;
        if (text.at(i + 1) != u'&')
            return text.at(i + 1).toLower();
        ++i;
    }
    return {};
}

/** When none is, a program ends. */
bool isAnyWindowOpen()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.cbegin(), windows.cend(), [](const QWidget *window) { return window->isVisible(); });
}

QByteArray book(const QString &title)
{
    NyBookProject project;
    project.title = title;
    project.pages.append(NyBookPage());
    return NyBookProjectFile::toJson(project);
}
}

class tst_NyStartWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void showsProposals();
    void isThereBeforeTheList();
    void unreadInTitleAndText_data();
    void unreadInTitleAndText();
    void openingMarksOneAsRead();
    void theMarkOutlivesTheWindow();
    void markingAllAsRead();
    void walksWithTheKeyboard();
    void tabReachesEverything();
    void everythingHasAName();
    void noMnemonicTwice();
    void noShortcutTwice();
    void deletesAfterAYes();
    void deletesNothingAfterANo();
    void deletingTheLastOneLeavesTheEmptyState();
    void theMenuKeyOpensTheProposalsMenu();
    void aTitleIsNoMnemonic();
    void aProposalWithoutProjectSaysSo();
    void brokenOnesAreThereAndCanBeOpened();
    void aProjectDeletedMeanwhileSaysSo();
    void emptyAndOffOffersToSwitchOn();
    void emptyAndOnSaysWhatWillCome();
    void emptyWithoutPictures();
    void emptyWithALongPath();
    void theFolderDisappears();
    void aFileInPlaceOfTheFolder();
    void newProposalsAppear();
    void theSwitch();
    void theSwitchWaitsForTheServicesEnd();
    void theSwitchWithoutAService();
    void theSwitchThatFails_data();
    void theSwitchThatFails();
    void theSwitchFollowsOthers();
    void settingsThatCannotBeStored();
    void marksOfAnotherProcessAreSeen();
    void marksOfAnotherProcessOutliveADeletion();
    void allReadInAnotherProcessIsSeen();
    void aFolderChosenInAnotherProcessIsSeen();
    void geometryIsKept();
    void aWindowOfALargerDesktop_data();
    void aWindowOfALargerDesktop();
    void theOrderIsKept();
    void aBookThatIsDropped();
    void closesWithTheKeyboard_data();
    void closesWithTheKeyboard();
    void helpAndAbout();
    void theBookLeadsBack();
    void quittingFromTheBook();
    void aBookStartedDirectlyEndsTheProgram();

    void tellsWhenProposalsCome_data();
    void tellsWhenProposalsCome();

private:
    /** A window that is shown, active and has read the folder. */
    bool start();
    QString emptyTitle() const;
    QString error() const;
    QAction *action(const QString &name) const { return m_window->findChild<QAction *>(name); }

    std::unique_ptr<FakeService> m_service;
    std::unique_ptr<NyStartScreenSettings> m_settings;
    std::unique_ptr<NyStartWindow> m_window;
};

void tst_NyStartWindow::initTestCase()
{
    QApplication::setQuitOnLastWindowClosed(false);
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    QVERIFY(NyQuilloServiceController::markerDir().mkpath(u"."_s));
    QVERIFY(QDir().mkpath(NyQuilloServiceSettings::instance().searchHomeFolder()));
}

void tst_NyStartWindow::init()
{
    QVERIFY(reset());
    QFile::remove(NyQuilloServiceController::terminationFilePath());
    m_service = std::make_unique<FakeService>();
    QVERIFY(m_service->storeSettings(true));
    NyQuilloServiceSettings::instance().setLastStartScreenProposalViewDate({});
    m_settings = std::make_unique<NyStartScreenSettings>();
}

void tst_NyStartWindow::cleanup()
{
    m_window.reset();
    m_settings.reset();
    m_service.reset();
}

bool tst_NyStartWindow::start()
{
    m_window = std::make_unique<NyStartWindow>(*m_settings);
    m_window->show();
    return QTest::qWaitForWindowActive(m_window.get()) && QTest::qWaitFor([this] { return m_window->isUpToDate(); });
}

QString tst_NyStartWindow::emptyTitle() const
{
    const auto *title = m_window->findChild<QLabel *>(u"emptyTitle"_s);
    return title->isVisible() ? title->text() : QString();
}

QString tst_NyStartWindow::error() const
{
    const auto *error = m_window->findChild<QLabel *>(u"error"_s);
    return error->isVisible() ? error->text() : QString();
}

void tst_NyStartWindow::showsProposals()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100));
    QVERIFY(writeProposal(u"b.nqp"_s, u"Rom"_s, 200));
    QVERIFY(start());
    QVERIFY(m_window->view()->isVisible());
    const QAbstractItemModel *shown = m_window->view()->model();
    QCOMPARE(shown->rowCount(), 2);
    QCOMPARE(shown->index(0, 0).data().toString(), u"Rom"_s);
    QCOMPARE(shown->index(1, 0).data().toString(), u"Ostsee"_s);
    QCOMPARE(m_window->view()->currentIndex().row(), 0);
    QVERIFY(m_window->view()->hasFocus());
    // All of it can be painted, at any size.
    QVERIFY(!m_window->grab().isNull());
    m_window->resize(m_window->minimumSizeHint());
    QVERIFY(!m_window->grab().isNull());
}

void tst_NyStartWindow::isThereBeforeTheList()
{
    for (int i = 0; i < 200; ++i)
        QVERIFY(writeProposal(u"%1.nqp"_s.arg(i), u"Buch"_s, 100));
    NyStartWindow window(*m_settings);
    window.show();
    QVERIFY(!window.isUpToDate());
    QCOMPARE(window.model().rowCount(), 0);
    QVERIFY(!window.grab().isNull());
    // No state is claimed that is not known yet.
    QVERIFY(!window.findChild<QLabel *>(u"emptyTitle"_s)->isVisible());
    QTRY_COMPARE(window.model().rowCount(), 200);
    QVERIFY(!window.findChild<QProgressBar *>(u"progress"_s)->isVisible());
}

void tst_NyStartWindow::unreadInTitleAndText_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0 << u"VELMORA ALBUMA"_s << QString();
    QTest::newRow("one") << 1 << u"VELMORA ALBUMA – 1 neuer Vorschlag"_s << u"1 Vorschlag, 1 neu"_s;
    QTest::newRow("two") << 2 << u"VELMORA ALBUMA – 2 neue Vorschläge"_s << u"2 Vorschläge, 2 neu"_s;
}

void tst_NyStartWindow::unreadInTitleAndText()
{
    QFETCH(int, count);
    QFETCH(QString, title);
    QFETCH(QString, text);
    for (int i = 0; i < count; ++i)
        QVERIFY(writeProposal(u"%1.nqp"_s.arg(i), u"Buch"_s, 100));
    QVERIFY(start());
    QCOMPARE(m_window->windowTitle(), title);
    QCOMPARE(m_window->findChild<QLabel *>(u"count"_s)->text(), text);
    QCOMPARE(action(u"markAll"_s)->isEnabled(), count > 0);
}

void tst_NyStartWindow::openingMarksOneAsRead()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100, book(u"Ostsee"_s)));
    QVERIFY(writeProposal(u"b.nqp"_s, u"Rom"_s, 200, book(u"Rom"_s)));
    NyAlbumaWindows windows(NyLoadWarnings::Suppress);
    windows.showStart();
    NyStartWindow *window = windows.startWindow();
    QVERIFY(QTest::qWaitForWindowActive(window));
    QTRY_VERIFY(window->isUpToDate());
    QTest::keyClick(window->view(), Qt::Key_Return);
    QTRY_VERIFY(windows.bookWindow());
    QVERIFY(windows.bookWindow()->windowTitle().startsWith(u"Rom"_s));
    QVERIFY(!window->isVisible());
    QCOMPARE(window->model().unreadCount(), 1);
    QVERIFY(!window->model().proposals().at(0).isUnread);
    // What others see is the moment of the last view; it has not moved.
    QCOMPARE(NyStartScreenRecommendationsInterface().getUnreadRecommendations(), 2);
}

void tst_NyStartWindow::theMarkOutlivesTheWindow()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100, book(u"Ostsee"_s)));
    QVERIFY(writeProposal(u"b.nqp"_s, u"Rom"_s, 200, book(u"Rom"_s)));
    {
        // As when the notification's button was pressed.
        NyAlbumaWindows windows(NyLoadWarnings::Suppress);
        windows.openProject(folder() + u"a.nqp"_s);
        QTRY_VERIFY(windows.bookWindow());
    }
    m_settings = std::make_unique<NyStartScreenSettings>();
    QVERIFY(start());
    QCOMPARE(m_window->model().unreadCount(), 1);
    QVERIFY(m_window->model().proposals().at(0).isUnread);
    QCOMPARE(m_settings->openedIds(), QSet<QString>{u"a.nqp"_s});
    // Forgotten with the proposal.
    QVERIFY(QFile::remove(folder() + u"a.nqp"_s));
    QVERIFY(QFile::remove(folder() + u"a.nqp.json"_s));
    QTRY_VERIFY(m_settings->openedIds().isEmpty());
}

void tst_NyStartWindow::markingAllAsRead()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100));
    QVERIFY(writeProposal(u"b.nqp"_s, u"Rom"_s, 200));
    QVERIFY(start());
    QTest::keyClick(m_window.get(), Qt::Key_M, Qt::ControlModifier);
    QCOMPARE(m_window->model().unreadCount(), 0);
    QCOMPARE(m_window->windowTitle(), u"VELMORA ALBUMA"_s);
    QVERIFY(!action(u"markAll"_s)->isEnabled());
    QCOMPARE(NyStartScreenRecommendationsInterface().getUnreadRecommendations(), 0);
    QTest::keyClick(m_window.get(), Qt::Key_F5);
    QTRY_VERIFY(m_window->isUpToDate());
    QCOMPARE(m_window->model().unreadCount(), 0);
    QVERIFY(start());
    QCOMPARE(m_window->model().unreadCount(), 0);
}

void tst_NyStartWindow::walksWithTheKeyboard()
{
    for (int i = 0; i < 9; ++i)
        QVERIFY(writeProposal(u"%1.nqp"_s.arg(i), u"Buch %1"_s.arg(i), 100 - i));
    QVERIFY(start());
    m_window->resize(800, 600);
    NyProposalView *view = m_window->view();
    const auto current = [view] { return view->currentIndex().row(); };
    QCOMPARE(current(), 0);
    QTest::keyClick(view, Qt::Key_Right);
    QCOMPARE(current(), 1);
    QTest::keyClick(view, Qt::Key_Down);
    QVERIFY(current() > 2);
    QTest::keyClick(view, Qt::Key_Up);
    QCOMPARE(current(), 1);
    QTest::keyClick(view, Qt::Key_End);
    QCOMPARE(current(), 8);
    QTest::keyClick(view, Qt::Key_Home);
    QCOMPARE(current(), 0);
    QTest::keyClicks(view, u"Buch 4"_s);
    QCOMPARE(current(), 4);
    const QSignalSpy opened(m_window.get(), &NyStartWindow::openRequested);
    QTest::keyClick(view, Qt::Key_Enter);
    QCOMPARE(opened.count(), 1);
    QCOMPARE(opened.at(0).at(0).toString(), QString(folder() + u"4.nqp"_s));
    view->scrollToTop();
    const QPoint second = view->visualRect(view->model()->index(1, 0)).center();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, second);
    QTest::mouseDClick(view->viewport(), Qt::LeftButton, {}, second);
    QCOMPARE(opened.count(), 2);
    QCOMPARE(opened.at(1).at(0).toString(), QString(folder() + u"1.nqp"_s));
}

void tst_NyStartWindow::tabReachesEverything()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100));
    QVERIFY(start());
    m_window->setError(u"Fehler"_s);
    QSet<QWidget *> wanted;
    const QList<QWidget *> widgets = m_window->findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        if (widget->isVisible() && widget->isEnabled()
            && (qobject_cast<QAbstractButton *>(widget) || qobject_cast<QComboBox *>(widget) || widget == m_window->view()))
            wanted.insert(widget);
    }
    // The tool bar's button for what does not fit shows itself only when it is needed.
    QVERIFY(wanted.size() >= 7);
    QSet<QWidget *> reached;
    for (int i = 0; i < 3 * wanted.size(); ++i) {
        reached.insert(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    for (QWidget *widget : std::as_const(wanted))
        QVERIFY2(reached.contains(widget), qPrintable(widget->objectName() + u' ' + widget->accessibleName()));
}

void tst_NyStartWindow::everythingHasAName()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100));
    QVERIFY(start());
    m_window->setError(u"Fehler"_s);
    const QList<QWidget *> widgets = m_window->findChildren<QWidget *>();
    int checked = 0;
    for (QWidget *widget : widgets) {
        if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible())
            continue;
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(widget);
        QVERIFY2(accessible && !accessible->text(QAccessible::Name).isEmpty(),
            qPrintable(QString::fromLatin1(widget->metaObject()->className()) + u' ' + widget->objectName()));
        ++checked;
    }
    QVERIFY(checked >= 7);
    const QList<QAction *> actions = m_window->findChildren<QAction *>(Qt::FindDirectChildrenOnly);
    QVERIFY(!actions.isEmpty());
    for (const QAction *action : actions)
        QVERIFY(action->isSeparator() || !action->text().isEmpty());
    for (const QString &name : {u"openBook"_s, u"open"_s, u"delete"_s, u"markAll"_s})
        QVERIFY2(!action(name)->icon().isNull(), qPrintable(name));
}

void tst_NyStartWindow::noMnemonicTwice()
{
    QVERIFY(start());
    QStringList window;
    const auto add = [](QStringList &used, const QString &text) {
        const QChar key = mnemonic(text);
        const bool isFree = !key.isNull() && !used.contains(key);
        used.append(key);
        return isFree;
    };
    const QList<QAction *> menus = m_window->menuBar()->actions();
    QCOMPARE(menus.size(), 3);
    for (const QAction *menu : menus) {
        QVERIFY2(add(window, menu->text()), qPrintable(menu->text()));
        QStringList entries;
        const QList<QAction *> actions = menu->menu()->actions();
        for (const QAction *action : actions)
            QVERIFY2(action->isSeparator() || add(entries, action->text()), qPrintable(action->text()));
    }
    const QList<QLabel *> labels = m_window->findChildren<QLabel *>();
    for (const QLabel *label : labels)
        QVERIFY2(!label->buddy() || add(window, label->text()), qPrintable(label->text()));
    for (const QAbstractButton *button : {static_cast<QAbstractButton *>(m_window->findChild<QCheckBox *>(u"serviceBox"_s)),
             static_cast<QAbstractButton *>(m_window->findChild<QPushButton *>(u"emptyButton"_s))})
        QVERIFY2(button->text().isEmpty() || add(window, button->text()), qPrintable(button->text()));
}

void tst_NyStartWindow::noShortcutTwice()
{
    QVERIFY(start());
    QList<QKeySequence> used;
    const QList<QAction *> actions = m_window->findChildren<QAction *>();
    for (const QAction *action : actions) {
        const QList<QKeySequence> keys = action->shortcuts();
        for (const QKeySequence &key : keys) {
            QVERIFY2(!used.contains(key), qPrintable(action->text()));
            used.append(key);
        }
    }
    for (const QKeySequence &key : {QKeySequence(u"Ctrl+O"_s), QKeySequence(u"Ctrl+W"_s), QKeySequence(u"Ctrl+Q"_s), QKeySequence(u"F1"_s),
             QKeySequence(u"F5"_s), QKeySequence(u"Del"_s), QKeySequence(u"Return"_s)})
        QVERIFY2(used.contains(key), qPrintable(key.toString()));
}

void tst_NyStartWindow::deletesAfterAYes()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Anna & Tom"_s, 100));
    QVERIFY(write(u"a.nqp.png"_s, "x"));
    QVERIFY(writeProposal(u"b.nqp"_s, u"Rom"_s, 50));
    QVERIFY(start());
    const Answer answer(true);
    QTest::keyClick(m_window->view(), Qt::Key_Delete);
    QCOMPARE(answer.questions(), QStringList({u"Möchten Sie den Buchvorschlag „Anna & Tom“ wirklich löschen?"_s}));
    QTRY_COMPARE(m_window->model().rowCount(), 1);
    QCOMPARE(QDir(folder()).entryList(QDir::Files), QStringList({u"b.nqp"_s, u"b.nqp.json"_s}));
    QCOMPARE(error(), QString());
    // The keyboard stays where it was.
    QCOMPARE(m_window->view()->currentIndex().data().toString(), u"Rom"_s);
    QVERIFY(action(u"delete"_s)->isEnabled());
}

void tst_NyStartWindow::deletesNothingAfterANo()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Rom"_s, 100));
    QVERIFY(start());
    const Answer answer(false);
    action(u"delete"_s)->trigger();
    QCOMPARE(answer.questions().size(), 1);
    QCOMPARE(QDir(folder()).entryList(QDir::Files).size(), 2);
    QCOMPARE(m_window->model().rowCount(), 1);
}

void tst_NyStartWindow::deletingTheLastOneLeavesTheEmptyState()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Rom"_s, 100));
    QVERIFY(start());
    QCOMPARE(emptyTitle(), QString());
    const Answer answer(true);
    action(u"delete"_s)->trigger();
    QTRY_COMPARE(emptyTitle(), u"Noch keine Vorschläge"_s);
    QVERIFY(!action(u"delete"_s)->isEnabled());
    QVERIFY(!action(u"open"_s)->isEnabled());
    QCOMPARE(m_window->windowTitle(), u"VELMORA ALBUMA"_s);
}

void tst_NyStartWindow::theMenuKeyOpensTheProposalsMenu()
{
    QJsonObject object = description(u"a.nqp"_s, u"Rom"_s, 100);
    QVERIFY(writeDescription(u"a.nqp"_s, object));
    QVERIFY(write(u"a.nqp"_s, "{}"));
    QVERIFY(start());
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(m_window->view()->viewport(), &event);
    QTRY_VERIFY(QApplication::activePopupWidget());
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    QCOMPARE(menu->actions().at(0)->text(), u"Vorschlag öffnen"_s);
    QCOMPARE(menu->actions().at(1)->text(), u"Vorschlag löschen"_s);
    const QSignalSpy opened(m_window.get(), &NyStartWindow::openRequested);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    QTRY_COMPARE(opened.count(), 1);
    QTRY_VERIFY(!QApplication::activePopupWidget());
}

void tst_NyStartWindow::aTitleIsNoMnemonic()
{
    QJsonObject object = description(u"a.nqp"_s, u"Rom"_s, 100);
    object[u"menu"] = QJsonArray{QJsonObject{{u"title"_s, u"Anna & Tom öffnen"_s}, {u"action"_s, u"open:a.nqp"_s}}};
    QVERIFY(writeDescription(u"a.nqp"_s, object));
    QVERIFY(write(u"a.nqp"_s, "{}"));
    QVERIFY(start());
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(m_window->view()->viewport(), &event);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QCOMPARE(QApplication::activePopupWidget()->actions().at(0)->text(), u"Anna && Tom öffnen"_s);
    QApplication::activePopupWidget()->close();
}

void tst_NyStartWindow::aProposalWithoutProjectSaysSo()
{
    QVERIFY(writeDescription(u"a.nqp"_s, description(u"a.nqp"_s, u"Rom"_s, 100)));
    QVERIFY(start());
    const QSignalSpy opened(m_window.get(), &NyStartWindow::openRequested);
    QTest::keyClick(m_window->view(), Qt::Key_Return);
    QCOMPARE(opened.count(), 0);
    QVERIFY(error().contains(u"Rom"_s));
    QVERIFY(error().contains(folder() + u"a.nqp"_s));
    // What is left of it can be deleted.
    const Answer answer(true);
    action(u"delete"_s)->trigger();
    QTRY_COMPARE(m_window->model().rowCount(), 0);
    QVERIFY(QDir(folder()).isEmpty());
}

void tst_NyStartWindow::brokenOnesAreThereAndCanBeOpened()
{
    const TestSupport::LogRecorder log;
    QVERIFY(write(u"Kaputt.nqp.json"_s, "{\"headline\": \"halb"));
    QVERIFY(write(u"Kaputt.nqp"_s, "{}"));
    QVERIFY(write(u"Ohne.nqp"_s, "{}"));
    QVERIFY(writeProposal(u"gut.nqp"_s, u"Rom"_s, 100));
    QVERIFY(start());
    QCOMPARE(m_window->model().rowCount(), 3);
    QCOMPARE(m_window->model().unreadCount(), 3);
    const QSignalSpy opened(m_window.get(), &NyStartWindow::openRequested);
    QTest::keyClicks(m_window->view(), u"Kap"_s);
    QTest::keyClick(m_window->view(), Qt::Key_Return);
    QCOMPARE(opened.count(), 1);
    QCOMPARE(opened.at(0).at(0).toString(), QString(folder() + u"Kaputt.nqp"_s));
    QVERIFY(!log.containing(u"Kaputt.nqp.json"_s).isEmpty());
}

void tst_NyStartWindow::aProjectDeletedMeanwhileSaysSo()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Rom"_s, 100, book(u"Rom"_s)));
    NyAlbumaWindows windows(NyLoadWarnings::Suppress);
    windows.showStart();
    NyStartWindow *window = windows.startWindow();
    QTRY_VERIFY(window->isUpToDate());
    const TestSupport::LogRecorder log;
    QVERIFY(QFile::remove(folder() + u"a.nqp"_s));
    window->findChild<QAction *>(u"open"_s)->trigger();
    const auto *error = window->findChild<QLabel *>(u"error"_s);
    QTRY_VERIFY(error->isVisible());
    QVERIFY(!windows.bookWindow());
    QVERIFY(window->isVisible());
    QVERIFY(error->text().contains(u"a.nqp"_s));
    QTest::keyClick(window->findChild<QLabel *>(u"error"_s)->parentWidget(), Qt::Key_Escape);
    QVERIFY(!error->isVisible());
    QTRY_COMPARE(window->model().proposals().at(0).state, NyProposal::State::NoProject);
}

void tst_NyStartWindow::emptyAndOffOffersToSwitchOn()
{
    QVERIFY(m_service->storeSettings(false));
    QVERIFY(start());
    QCOMPARE(emptyTitle(), u"Automatische Produktvorschläge sind ausgeschaltet"_s);
    auto *button = m_window->findChild<QPushButton *>(u"emptyButton"_s);
    QVERIFY(button->isVisible());
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_COMPARE(m_service->starts(), QStringList({u"--serviceMode i"_s}));
    QCOMPARE(emptyTitle(), u"Noch keine Vorschläge"_s);
    QVERIFY(!button->isVisible());
    QVERIFY(m_window->findChild<QCheckBox *>(u"serviceBox"_s)->isChecked());
}

void tst_NyStartWindow::emptyAndOnSaysWhatWillCome()
{
    QVERIFY(start());
    QCOMPARE(emptyTitle(), u"Noch keine Vorschläge"_s);
    const QString text = m_window->findChild<QLabel *>(u"emptyText"_s)->text();
    QVERIFY(text.contains(u"mindestens 52"_s));
    QVERIFY(text.contains(u"Donnerstag, 12 Uhr, bis Samstag"_s));
    QVERIFY(text.contains(NyStartScreenRecommendationsInterface().getRecommendationsPath()));
}

void tst_NyStartWindow::emptyWithoutPictures()
{
    auto &settings = NyQuilloServiceSettings::instance();
    const QString before = settings.searchHomeFolder();
    settings.setSearchHomeFolder(u"/nirgends/Fotos"_s);
    // As the preferences do; what is not stored gives way to the file when the window gets active.
    settings.saveSettings();
    QVERIFY(start());
    QCOMPARE(emptyTitle(), u"Der Ordner mit Ihren Fotos ist nicht da"_s);
    QVERIFY(m_window->findChild<QLabel *>(u"emptyText"_s)->text().contains(u"/nirgends/Fotos"_s));
    settings.setSearchHomeFolder(before);
    settings.saveSettings();
    QTest::mouseClick(m_window->findChild<QPushButton *>(u"emptyButton"_s), Qt::LeftButton);
    QTRY_COMPARE(emptyTitle(), u"Noch keine Vorschläge"_s);
}

void tst_NyStartWindow::emptyWithALongPath()
{
    auto &settings = NyQuilloServiceSettings::instance();
    const QString before = settings.searchHomeFolder();
    const auto reset = qScopeGuard([&] {
        settings.setSearchHomeFolder(before);
        settings.saveSettings();
    });
    settings.setSearchHomeFolder(u"/nirgends/"_s + u"Sommerferien_"_s.repeated(15));
    settings.saveSettings();
    QVERIFY(start());
    const auto *text = m_window->findChild<QLabel *>(u"emptyText"_s);
    QVERIFY(text->text().contains(u"/nirgends/Sommerferien_"_s));
    const QStringList words = text->text().split(QRegularExpression(u"[ /\n]"_s));
    for (const QString &word : words)
        QVERIFY2(text->fontMetrics().horizontalAdvance(word) < text->width(), qPrintable(word));
}

void tst_NyStartWindow::theFolderDisappears()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Rom"_s, 100));
    QVERIFY(start());
    m_settings->addOpenedId(u"a.nqp"_s);
    const QString path = QDir::cleanPath(folder());
    QVERIFY(QDir().rename(path, path + u" fort"_s));
    QTRY_COMPARE(emptyTitle(), u"Der Ordner mit den Vorschlägen ist nicht da"_s);
    QVERIFY(m_window->findChild<QLabel *>(u"emptyText"_s)->text().contains(path));
    QVERIFY(QDir().rename(path + u" fort"_s, path));
    QTRY_COMPARE(m_window->model().rowCount(), 1);
    QCOMPARE(emptyTitle(), QString());
    // What was read stays read.
    QCOMPARE(m_window->model().unreadCount(), 0);
}

void tst_NyStartWindow::aFileInPlaceOfTheFolder()
{
    const QString path = QDir::cleanPath(folder());
    QVERIFY(QDir(path).removeRecursively());
    QVERIFY(TestSupport::writeFile(path, "no folder"));
    QVERIFY(start());
    QCOMPARE(emptyTitle(), u"Der Ordner mit den Vorschlägen kann nicht gelesen werden"_s);
    QVERIFY(m_window->findChild<QLabel *>(u"emptyText"_s)->text().contains(path));
    QVERIFY(reset());
    QTest::mouseClick(m_window->findChild<QPushButton *>(u"emptyButton"_s), Qt::LeftButton);
    QTRY_COMPARE(emptyTitle(), u"Noch keine Vorschläge"_s);
}

void tst_NyStartWindow::newProposalsAppear()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100));
    QVERIFY(writeProposal(u"b.nqp"_s, u"Rom"_s, 200));
    QVERIFY(start());
    m_window->view()->setCurrentIndex(m_window->view()->model()->index(1, 0));
    QVERIFY(writeProposal(u"c.nqp"_s, u"Wien"_s, 300));
    QTRY_COMPARE(m_window->model().rowCount(), 3);
    QCOMPARE(m_window->windowTitle(), u"VELMORA ALBUMA – 3 neue Vorschläge"_s);
    QCOMPARE(m_window->view()->currentIndex().data().toString(), u"Ostsee"_s);
}

void tst_NyStartWindow::theSwitch()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100));
    QVERIFY(start());
    auto *box = m_window->findChild<QCheckBox *>(u"serviceBox"_s);
    QVERIFY(box->isChecked());
    QVERIFY(action(u"service"_s)->isChecked());
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(8, box->height() / 2));
    QVERIFY(!box->isEnabled());
    QTRY_VERIFY(box->isEnabled());
    QCOMPARE(m_service->starts(), QStringList({u"--serviceMode u"_s}));
    QVERIFY(!NyInstallationSettings().autoStartService());
    QVERIFY(!action(u"service"_s)->isChecked());
    QVERIFY(QFile::exists(NyQuilloServiceController::terminationFilePath()));
    action(u"service"_s)->trigger();
    QTRY_COMPARE(m_service->starts(), QStringList({u"--serviceMode u"_s, u"--serviceMode i"_s}));
    QVERIFY(NyInstallationSettings().autoStartService());
    QVERIFY(box->isChecked());
    // A request to end that was left behind would end the new service at its first proposal.
    QVERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
    QCOMPARE(error(), QString());
}

void tst_NyStartWindow::theSwitchWaitsForTheServicesEnd()
{
    const QTemporaryDir place;
    const QString go = place.filePath(u"go"_s);
    m_service = std::make_unique<FakeService>("[ \"$2\" = i ] || while [ ! -e '" + go.toUtf8() + "' ]; do sleep 0.02; done");
    QVERIFY(m_service->storeSettings(true));
    QVERIFY(start());
    auto *box = m_window->findChild<QCheckBox *>(u"serviceBox"_s);
    box->click();
    QCOMPARE(emptyTitle(), u"Automatische Produktvorschläge sind ausgeschaltet"_s);
    // Neither of the two ways to switch on again is open before the service has been switched off.
    auto *button = m_window->findChild<QPushButton *>(u"emptyButton"_s);
    QVERIFY(button->isVisible());
    QVERIFY(!button->isEnabled());
    QVERIFY(!box->isEnabled());
    QVERIFY(TestSupport::writeFile(go, ""));
    QTRY_VERIFY(button->isEnabled());
    QVERIFY(box->isEnabled());
    button->click();
    QTRY_COMPARE(m_service->starts(), QStringList({u"--serviceMode u"_s, u"--serviceMode i"_s}));
    QVERIFY(!QFile::exists(NyQuilloServiceController::terminationFilePath()));
}

void tst_NyStartWindow::theSwitchWithoutAService()
{
    QVERIFY(TestSupport::writeFile(TestSupport::configFolder() + u"/settings.ini"_s, "[common]\nautoStartService=false\n"));
    QVERIFY(start());
    auto *box = m_window->findChild<QCheckBox *>(u"serviceBox"_s);
    QVERIFY(!box->isChecked());
    box->click();
    QVERIFY(!box->isChecked());
    QVERIFY(!NyInstallationSettings().autoStartService());
    QVERIFY(error().contains(u"nicht installiert"_s));
    QVERIFY(error().contains(u"quilloservice"_s));
}

void tst_NyStartWindow::theSwitchThatFails_data()
{
    QTest::addColumn<bool>("isOn");
    QTest::addColumn<QByteArray>("program");
    QTest::addColumn<QString>("text");
    QTest::newRow("on") << false << QByteArray("#!/nowhere/interpreter\n") << u"kann nicht gestartet werden"_s;
    QTest::newRow("off") << true << QByteArray("#!/bin/sh\nexit 7\n") << u"kann nicht abgeschaltet werden"_s;
}

void tst_NyStartWindow::theSwitchThatFails()
{
    QFETCH(bool, isOn);
    QFETCH(QByteArray, program);
    QFETCH(QString, text);
    QVERIFY(m_service->storeSettings(isOn));
    QVERIFY(TestSupport::writeFile(m_service->path(), program));
    QVERIFY(start());
    auto *box = m_window->findChild<QCheckBox *>(u"serviceBox"_s);
    QCOMPARE(box->isChecked(), isOn);
    box->click();
    QTRY_VERIFY2(error().contains(text), qPrintable(error()));
    QVERIFY(error().contains(m_service->path()));
    QVERIFY(box->isEnabled());
}

void tst_NyStartWindow::theSwitchFollowsOthers()
{
    QVERIFY(start());
    auto *box = m_window->findChild<QCheckBox *>(u"serviceBox"_s);
    QVERIFY(box->isChecked());
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(m_service->storeSettings(false));
    m_window->activateWindow();
    QTRY_VERIFY(!box->isChecked());
    QCOMPARE(emptyTitle(), u"Automatische Produktvorschläge sind ausgeschaltet"_s);
}

void tst_NyStartWindow::settingsThatCannotBeStored()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100));
    QVERIFY(start());
    auto *box = m_window->findChild<QCheckBox *>(u"serviceBox"_s);
    const QString path = TestSupport::configFolder() + u"/settings.ini"_s;
    const auto hint = [this] {
        const auto *text = m_window->findChild<QLabel *>(u"error"_s);
        return text->isVisible() ? text->text() : QString();
    };
    {
        // The file is replaced whole, so its folder is what counts.
        QVERIFY(QFile::setPermissions(TestSupport::configFolder(), QFile::ReadOwner | QFile::ExeOwner));
        const WithoutRootPowers powers;
        box->click();
        QTRY_VERIFY(box->isEnabled());
        QVERIFY2(hint().startsWith(u"Die Einstellung kann nicht gespeichert werden."_s), qPrintable(hint()));
        QVERIFY(hint().contains(path));
        QVERIFY(TestSupport::readFile(path).contains("autoStartService=true"));
        // It holds for this run all the same.
        QVERIFY(!box->isChecked());
        QCOMPARE(m_service->starts(), QStringList({u"--serviceMode u"_s}));

        action(u"markAll"_s)->trigger();
        QCOMPARE(m_window->model().unreadCount(), 0);
        QVERIFY2(hint().startsWith(u"Dass Sie die Vorschläge gelesen haben, gilt nur, bis Sie das Programm beenden"_s), qPrintable(hint()));
        QVERIFY(hint().contains(path));
    }
    QVERIFY(QFile::setPermissions(TestSupport::configFolder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    // What failed is written together with what comes next.
    box->click();
    QCOMPARE(hint(), QString());
    QTRY_COMPARE(m_service->starts(), QStringList({u"--serviceMode u"_s, u"--serviceMode i"_s}));
    QVERIFY(TestSupport::readFile(path).contains("lastStartScreenProposalView"));
    QVERIFY(box->isChecked());
}

void tst_NyStartWindow::marksOfAnotherProcessAreSeen()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100));
    QVERIFY(start());
    QCOMPARE(m_window->model().unreadCount(), 1);
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    NyStartScreenSettings().addOpenedId(u"a.nqp"_s);
    m_window->activateWindow();
    QTRY_COMPARE(m_window->model().unreadCount(), 0);
    QCOMPARE(m_window->windowTitle(), u"VELMORA ALBUMA"_s);
}

void tst_NyStartWindow::marksOfAnotherProcessOutliveADeletion()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100));
    QVERIFY(writeProposal(u"b.nqp"_s, u"Wien"_s, 200));
    m_settings->addOpenedId(u"a.nqp"_s);
    QVERIFY(start());
    NyStartScreenSettings().addOpenedId(u"b.nqp"_s);
    QVERIFY(QFile::remove(folder() + u"a.nqp"_s) && QFile::remove(folder() + u"a.nqp.json"_s));
    QTRY_COMPARE(m_window->model().rowCount(), 1);
    QCOMPARE(NyStartScreenSettings().openedIds(), QSet<QString>{u"b.nqp"_s});
    QTRY_COMPARE(m_window->model().unreadCount(), 0);
}

void tst_NyStartWindow::allReadInAnotherProcessIsSeen()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100));
    QVERIFY(writeProposal(u"b.nqp"_s, u"Rom"_s, 200));
    NyStartScreenSettings().addOpenedId(u"b.nqp"_s);
    QVERIFY(start());
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    {
        NyQuilloServiceSettings settings;
        settings.loadSettings();
        settings.setLastStartScreenProposalViewDate(QDateTime::currentDateTime().addSecs(1));
        NyStartScreenSettings startScreen;
        startScreen.clearOpenedIds();
    }
    QVERIFY(m_window->model().unreadCount() > 0);
    m_window->activateWindow();
    QTRY_COMPARE(m_window->model().unreadCount(), 0);
    QCOMPARE(m_window->windowTitle(), u"VELMORA ALBUMA"_s);
    QVERIFY(!action(u"markAll"_s)->isEnabled());
    QCOMPARE(NyStartScreenRecommendationsInterface().getUnreadRecommendations(), 0);
}

void tst_NyStartWindow::aFolderChosenInAnotherProcessIsSeen()
{
    const QString before = NyQuilloServiceSettings::instance().searchHomeFolder();
    QVERIFY(start());
    QWidget other;
    other.show();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    {
        NyQuilloServiceSettings settings;
        settings.loadSettings();
        settings.setSearchHomeFolder(u"/nirgends/Fotos"_s);
        settings.saveSettings();
    }
    m_window->activateWindow();
    QTRY_COMPARE(emptyTitle(), u"Der Ordner mit Ihren Fotos ist nicht da"_s);
    QVERIFY(m_window->findChild<QLabel *>(u"emptyText"_s)->text().contains(u"/nirgends/Fotos"_s));
    NyQuilloServiceSettings::instance().setSearchHomeFolder(before);
}

void tst_NyStartWindow::geometryIsKept()
{
    QVERIFY(start());
    m_window->setGeometry(60, 70, 700, 520);
    m_window->close();
    m_settings = std::make_unique<NyStartScreenSettings>();
    QVERIFY(start());
    QCOMPARE(m_window->size(), QSize(700, 520));
    // As near as the platform's window frames allow.
    QVERIFY((m_window->pos() - QPoint(60, 70)).manhattanLength() < 20);
    // What is stored but no geometry is no harm.
    m_settings->setGeometry("nothing");
    QVERIFY(start());
    QVERIFY(m_window->width() > 300);
}

void tst_NyStartWindow::aWindowOfALargerDesktop_data()
{
    QTest::addColumn<QRect>("geometry");
    QTest::newRow("too wide") << QRect(40, 50, 3000, 500);
    QTest::newRow("too high") << QRect(40, 50, 700, 3000);
    QTest::newRow("both") << QRect(-500, -500, 9000, 9000);
    QTest::newRow("both, elsewhere") << QRect(90000, 90000, 9000, 9000);
}

void tst_NyStartWindow::aWindowOfALargerDesktop()
{
    QFETCH(QRect, geometry);
    QWidget former;
    former.setGeometry(geometry);
    m_settings->setGeometry(former.saveGeometry());
    QVERIFY(start());
    const QRect room = m_window->screen()->availableVirtualGeometry();
    QVERIFY(room.contains(m_window->geometry()));
}

void tst_NyStartWindow::theOrderIsKept()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Wien"_s, 100));
    QVERIFY(writeProposal(u"b.nqp"_s, u"Athen"_s, 200));
    QVERIFY(writeProposal(u"c.nqp"_s, u"Rom"_s, 300));
    QVERIFY(start());
    const auto first = [this] { return m_window->view()->model()->index(0, 0).data().toString(); };
    QCOMPARE(first(), u"Rom"_s);
    auto *box = m_window->findChild<QComboBox *>(u"orderBox"_s);
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(first(), u"Wien"_s);
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(first(), u"Athen"_s);
    m_settings = std::make_unique<NyStartScreenSettings>();
    QVERIFY(start());
    QCOMPARE(first(), u"Athen"_s);
    QCOMPARE(m_window->findChild<QComboBox *>(u"orderBox"_s)->currentText(), u"Nach Titel"_s);
}

void tst_NyStartWindow::aBookThatIsDropped()
{
    QVERIFY(start());
    const QSignalSpy opened(m_window.get(), &NyStartWindow::openRequested);
    const auto drop = [this](const QList<QUrl> &urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(m_window.get(), &enter);
        QDropEvent event(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window.get(), &event);
        return enter.isAccepted();
    };
    QVERIFY(!drop({QUrl::fromLocalFile(u"/tmp/foto.jpg"_s)}));
    QVERIFY(!drop({QUrl(u"https://example.org/buch.nqp"_s)}));
    QVERIFY(!drop({}));
    QVERIFY(!drop({QUrl::fromLocalFile(u"/tmp/a.nqp"_s), QUrl::fromLocalFile(u"/tmp/b.nqp"_s)}));
    QCOMPARE(opened.count(), 0);
    QVERIFY(drop({QUrl::fromLocalFile(u"/tmp/Mein Buch ä.NQP"_s)}));
    QCOMPARE(opened.count(), 1);
    QCOMPARE(opened.at(0).at(0).toString(), u"/tmp/Mein Buch ä.NQP"_s);
}

void tst_NyStartWindow::closesWithTheKeyboard_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("close") << Qt::Key_W;
    QTest::newRow("quit") << Qt::Key_Q;
}

void tst_NyStartWindow::closesWithTheKeyboard()
{
    QFETCH(Qt::Key, key);
    QVERIFY(start());
    QTest::keyClick(m_window.get(), key, Qt::ControlModifier);
    QTRY_VERIFY(!m_window->isVisible());
}

void tst_NyStartWindow::helpAndAbout()
{
    QVERIFY(start());
    QTest::keyClick(m_window.get(), Qt::Key_F1);
    QTRY_VERIFY(m_window->findChild<QMessageBox *>(u"help"_s));
    auto *help = m_window->findChild<QMessageBox *>(u"help"_s);
    QVERIFY(help->text().contains(u"Strg+O"_s));
    const QSignalSpy gone(help, &QObject::destroyed);
    QTest::keyClick(help, Qt::Key_Escape);
    QTRY_COMPARE(gone.count(), 1);
}

void tst_NyStartWindow::theBookLeadsBack()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100, book(u"Ostsee"_s)));
    NyAlbumaWindows windows(NyLoadWarnings::Suppress);
    windows.showStart();
    QTRY_VERIFY(windows.startWindow()->isUpToDate());
    windows.startWindow()->findChild<QAction *>(u"open"_s)->trigger();
    QTRY_VERIFY(windows.bookWindow());
    QVERIFY(!windows.startWindow()->isVisible());
    QVERIFY(QTest::qWaitForWindowActive(windows.bookWindow()));
    QTest::keyClick(windows.bookWindow(), Qt::Key_W, Qt::ControlModifier);
    QTRY_VERIFY(windows.startWindow()->isVisible());
    QVERIFY(!windows.bookWindow());
}

void tst_NyStartWindow::quittingFromTheBook()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100, book(u"Ostsee"_s)));
    NyAlbumaWindows windows(NyLoadWarnings::Suppress);
    windows.showStart();
    QTRY_VERIFY(windows.startWindow()->isUpToDate());
    windows.openProject(folder() + u"a.nqp"_s);
    QTRY_VERIFY(windows.bookWindow());
    QVERIFY(QTest::qWaitForWindowActive(windows.bookWindow()));
    QTest::keyClick(windows.bookWindow(), Qt::Key_Q, Qt::ControlModifier);
    QTRY_VERIFY(!isAnyWindowOpen());
}

void tst_NyStartWindow::aBookStartedDirectlyEndsTheProgram()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100, book(u"Ostsee"_s)));
    NyAlbumaWindows windows(NyLoadWarnings::Suppress);
    windows.openProject(folder() + u"a.nqp"_s);
    QTRY_VERIFY(windows.bookWindow());
    QVERIFY(QTest::qWaitForWindowActive(windows.bookWindow()));
    windows.bookWindow()->close();
    QTRY_VERIFY(!isAnyWindowOpen());
    // Unless the user asks for the proposals.
    windows.openProject(folder() + u"a.nqp"_s);
    QTRY_VERIFY(windows.bookWindow());
    QVERIFY(QTest::qWaitForWindowActive(windows.bookWindow()));
    QTest::keyClick(windows.bookWindow(), Qt::Key_Home, Qt::AltModifier);
    QTRY_VERIFY(windows.startWindow() && windows.startWindow()->isVisible());
    QVERIFY(!windows.bookWindow());
}

void tst_NyStartWindow::tellsWhenProposalsCome_data()
{
    QTest::addColumn<int>("firstDay");
    QTest::addColumn<int>("lastDay");
    QTest::addColumn<QString>("text");
    QTest::newRow("as it comes") << 4 << 6 << u"Weitere Vorschläge kommen von Donnerstag, 12 Uhr, bis Samstag."_s;
    QTest::newRow("the whole week") << 1 << 7 << u"Weitere Vorschläge kommen von Montag, 12 Uhr, bis Sonntag."_s;
    QTest::newRow("no day to begin with") << 0 << 7 << QString();
    QTest::newRow("no day to end with") << 1 << 8 << QString();
}

void tst_NyStartWindow::tellsWhenProposalsCome()
{
    QFETCH(int, firstDay);
    QFETCH(int, lastDay);
    QFETCH(QString, text);
    QCOMPARE(NyStartWindow::furtherProposalsText(firstDay, 12, lastDay), text);
}

QTEST_MAIN(tst_NyStartWindow)
#include "tst_NyStartWindow.moc"
