#include <QAction>
#include <QDragEnterEvent>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QMimeData>
#include <QPointer>
#include <QProgressDialog>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QUndoStack>
#include <QWindow>

#include <NyBookProjectFile.h>

#include "NyAlbumaWindows.h"
#include "NyBookWordsEdit.h"
#include "NyMessageBar.h"
#include "NySpreadView.h"
#include "PaintedPictures.h"
#include "TestSupport.h"

using namespace Qt::Literals::StringLiterals;

/** One window with a book of the test's own, in a file of its own. */
class tst_NyBookWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void pagesWithTheKeyboard();
    void closesWithTheKeyboard_data();
    void closesWithTheKeyboard();
    void pagesWithTheButtons();
    void spacePressesTheButtonThatHasTheKeyboard();
    void warnsAboutMissingPhotos();
    void suppressesWarnings();
    void emptyBook();
    void opensAProject();
    void brokenProjectShowsTheReason();
    void brokenProjectLeavesTheOpenBook();
    void theLastBookAskedForIsShown();

    void titleIsEditedInPlace();
    void escapeBringsTheTitleBack();
    void emptyTitleIsRefused();
    void wordsThatAreNotTouchedKeepTheirForm();
    void longTitleIsLeftAsItIs();
    void arrowsInTheTitleTurnNoPage();
    void typingGoesOnAfterASave();
    void typingSurvivesAnotherEdit();
    void blankTitleLeavesNothingBehind();
    void titleMayLookLikeTheMarkOfChanges();
    void undoAndRedo();
    void removesThePhotoThatIsSelected();
    void coverPhotoCannotBeRemoved();
    void replacesAPhoto();
    void unreadablePhotoIsToldAbout();
    void droppedPhotoReplacesOne();
    void onlyOneLocalPictureCanBeDropped_data();
    void onlyOneLocalPictureCanBeDropped();
    void droppedBookIsOpened();
    void savingWhatIsBeingTyped();
    void failedSaveKeepsTheChanges();
    void savesUnderAnotherName();
    void changedFileIsAskedAbout_data();
    void changedFileIsAskedAbout();
    void longPathFitsTheQuestion();
    void closingAsks_data();
    void closingAsks();
    void answeredEditsDoNotComeBack_data();
    void answeredEditsDoNotComeBack();
    void unsavedEditsComeBack();
    void closingTwiceAsksOnce();
    void closingDuringASaveAsksNothing();
    void openingTheSameBookShowsWhatWasSaved();
    void stayingIsNoQuitting();
    void endingAsksOnce();
    void endingLeadsNotToTheProposals();
    void openingAnotherBookAsks();
    void goingToTheProposalsAsks();
    void longTitleFitsTheQuestion();
    void zoomIsShown();
    void fullScreen();
    void nextBookIsAsLarge();
    void geometryIsKept();
    void helpNamesTheKeys();

    void exportsAPdf();
    void exportAsksAboutMissingPhotos();
    void failedExportIsToldAbout();
    void closingWaitsForTheExport();
    void failedExportStays();
    void anotherBookComesOverAnOpenQuestion();
    void longPathsLeaveTheWindowAsItIs();
    void pdfIsNamedAfterTheTitle_data();
    void pdfIsNamedAfterTheTitle();

private:
    NyBookProject project(int pages, const QString &photo) const;
    QString write(const QString &name, const NyBookProject &project) const;
    /** Opens the book; true when its window is active. */
    bool open(const NyBookProject &project, NyLoadWarnings warnings = NyLoadWarnings::Suppress);
    /** Ends the windows as they are, as at the end of a session, and opens the book anew. */
    bool reopen(NyLoadWarnings warnings = NyLoadWarnings::Suppress);
    NyBookWindow *window() const { return m_windows->bookWindow(); }
    NyBookProject book() const { return window()->document()->project(); }
    NyBookProject stored(const QString &path) const { return NyBookProjectFile::load(QFileInfo(path)).project.value_or(NyBookProject()); }
    template <class T>
    T *part(const QString &name) const
    {
        return window()->findChild<T *>(name);
    }
    QAction *action(const QString &name) const { return part<QAction>(name); }
    /** Drags what the URLs name over the book and drops it at this point of the view; false if it is refused. */
    bool drop(const QList<QUrl> &urls, const QPointF &point, Qt::DropActions actions = Qt::CopyAction | Qt::MoveAction);
    QString message() const { return part<QLabel>(u"error"_s)->text(); }
    void type(const QString &title);
    /** Presses the button of the question with that name; false if there is none. */
    bool answer(const QString &question, const QString &button);
    /** Gives the path to the file dialog with that name; false if there is none. */
    bool choose(const QString &dialog, const QString &path);

    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_photo;
    QString m_path;
    std::unique_ptr<NyAlbumaWindows> m_windows;
};

void tst_NyBookWindow::initTestCase()
{
    // The dialogs of the test's desktop, if there is one, could not be worked from here.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void tst_NyBookWindow::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    m_photo = m_dir->filePath(u"green.jpg"_s);
    QImage image(800, 600, QImage::Format_RGB32);
    image.fill(QColor(0, 160, 0));
    QVERIFY(PaintedPictures::write(m_photo, image));
}

void tst_NyBookWindow::cleanup()
{
    m_windows.reset();
    // What was taken away is only gone with the next round of the event loop.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

NyBookProject tst_NyBookWindow::project(int pages, const QString &photo) const
{
    NyBookProject project;
    project.title = u"Toskana & <b>Rom</b>"_s;
    project.subtitle = u"Juli 2024"_s;
    NyPlacedFoto foto;
    foto.url = QUrl::fromLocalFile(photo);
    foto.rectMm = QRectF(80, 60, 120, 90);
    foto.sizePx = QSize(800, 600);
    project.cover.photos = {foto};
    NyBookText title;
    title.role = NyBookText::Role::Title;
    title.text = project.title;
    title.rectMm = QRectF(18, 159, 244, 24);
    title.fontSizePt = 34;
    project.cover.texts = {title};
    for (int i = 0; i < pages; ++i)
        project.pages.append(NyBookPage{{foto}, {}});
    return project;
}

QString tst_NyBookWindow::write(const QString &name, const NyBookProject &project) const
{
    const QString path = m_dir->filePath(name);
    return TestSupport::writeFile(path, NyBookProjectFile::toJson(project)) ? path : QString();
}

bool tst_NyBookWindow::open(const NyBookProject &project, NyLoadWarnings warnings)
{
    m_path = write(u"buch.nqp"_s, project);
    m_windows = std::make_unique<NyAlbumaWindows>(warnings);
    m_windows->openProject(m_path);
    return QTest::qWaitFor([this] { return window(); }) && QTest::qWaitForWindowActive(window());
}

bool tst_NyBookWindow::reopen(NyLoadWarnings warnings)
{
    m_windows.reset();
    // What was taken away is only gone with the next round of the event loop.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_windows = std::make_unique<NyAlbumaWindows>(warnings);
    m_windows->openProject(m_path);
    return QTest::qWaitFor([this] { return window(); }) && QTest::qWaitForWindowActive(window());
}

void tst_NyBookWindow::type(const QString &title)
{
    action(u"editTitle"_s)->trigger();
    auto *line = part<QLineEdit>(u"title"_s);
    QTRY_VERIFY(line->hasFocus());
    QTest::keyClicks(line, title);
}

bool tst_NyBookWindow::answer(const QString &question, const QString &button)
{
    if (!QTest::qWaitFor([&] { return part<QMessageBox>(question); }))
        return false;
    auto *box = part<QMessageBox>(question);
    const QList<QAbstractButton *> buttons = box->buttons();
    for (QAbstractButton *candidate : buttons) {
        if (candidate->text().remove(u'&') != button)
            continue;
        candidate->click();
        // The box goes once its answer has been worked on.
        QCoreApplication::sendPostedEvents(box, QEvent::DeferredDelete);
        return true;
    }
    return false;
}

bool tst_NyBookWindow::choose(const QString &dialog, const QString &path)
{
    if (!QTest::qWaitFor([&] { return part<QFileDialog>(dialog); }))
        return false;
    auto *box = part<QFileDialog>(dialog);
    auto *line = box->findChild<QLineEdit *>(u"fileNameEdit"_s);
    // A text that is not typed leaves the file in the list selected, and that one would count.
    box->findChild<QListView *>(u"listView"_s)->clearSelection();
    line->setText(path);
    QTest::keyClick(line, Qt::Key_Return);
    return QTest::qWaitFor([&] { return !part<QFileDialog>(dialog); });
}

void tst_NyBookWindow::pagesWithTheKeyboard()
{
    QVERIFY(open(project(5, m_photo)));
    NySpreadView *view = window()->view();
    auto *position = part<QLabel>(u"position"_s);
    QCOMPARE(view->spreadCount(), 4);
    QCOMPARE(position->text(), u"Titel"_s);
    QTest::keyClick(view, Qt::Key_Left);
    QCOMPARE(view->spread(), 0);
    QTest::keyClick(view, Qt::Key_Right);
    QCOMPARE(view->spread(), 1);
    QCOMPARE(position->text(), u"Seiten 1 und 2 von 5"_s);
    QTest::keyClick(view, Qt::Key_End);
    QCOMPARE(view->spread(), 3);
    QCOMPARE(position->text(), u"Seite 5 von 5"_s);
    QTest::keyClick(view, Qt::Key_Right);
    QCOMPARE(view->spread(), 3);
    QTest::keyClick(view, Qt::Key_Left);
    QCOMPARE(view->spread(), 2);
    QTest::keyClick(view, Qt::Key_Home);
    QCOMPARE(view->spread(), 0);
    QTest::keyClick(view, Qt::Key_PageDown);
    QTest::keyClick(view, Qt::Key_Space);
    QCOMPARE(view->spread(), 2);
    QTest::keyClick(view, Qt::Key_PageUp);
    QCOMPARE(view->spread(), 1);
}

void tst_NyBookWindow::closesWithTheKeyboard_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("close") << Qt::Key_W;
    QTest::newRow("quit") << Qt::Key_Q;
}

void tst_NyBookWindow::closesWithTheKeyboard()
{
    QVERIFY(open(project(2, m_photo)));
    QFETCH(Qt::Key, key);
    QTest::keyClick(window(), key, Qt::ControlModifier);
    QTRY_VERIFY(!window());
}

void tst_NyBookWindow::pagesWithTheButtons()
{
    QVERIFY(open(project(2, m_photo)));
    auto *previous = part<QPushButton>(u"previous"_s);
    auto *next = part<QPushButton>(u"next"_s);
    QVERIFY(!previous->isEnabled());
    QVERIFY(next->isEnabled());
    QTest::mouseClick(next, Qt::LeftButton);
    QCOMPARE(window()->view()->spread(), 1);
    QVERIFY(previous->isEnabled());
    QVERIFY(!next->isEnabled());
    QTest::mouseClick(previous, Qt::LeftButton);
    QCOMPARE(window()->view()->spread(), 0);
    QCOMPARE(part<QLineEdit>(u"title"_s)->text(), u"Toskana & <b>Rom</b>"_s);
    QCOMPARE(part<QLineEdit>(u"subtitle"_s)->text(), u"Juli 2024"_s);
    QVERIFY(window()->windowTitle().contains(u"VELMORA ALBUMA"_s));
}

void tst_NyBookWindow::spacePressesTheButtonThatHasTheKeyboard()
{
    QVERIFY(open(project(5, m_photo)));
    window()->view()->setSpread(2);
    auto *previous = part<QPushButton>(u"previous"_s);
    previous->setFocus(Qt::TabFocusReason);
    QTRY_VERIFY(previous->hasFocus());
    QTest::keyClick(previous, Qt::Key_Space);
    QCOMPARE(window()->view()->spread(), 1);
}

void tst_NyBookWindow::warnsAboutMissingPhotos()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"verschwunden\\.jpg"_s));
    QVERIFY(open(project(1, m_dir->filePath(u"verschwunden.jpg"_s)), NyLoadWarnings::Show));
    QTRY_VERIFY(part<QLabel>(u"error"_s)->isVisible());
    QVERIFY(message().contains(u"verschwunden.jpg"_s));
    QTRY_VERIFY(window()->view()->isComplete());
}

void tst_NyBookWindow::suppressesWarnings()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"verschwunden\\.jpg"_s));
    QVERIFY(open(project(1, m_dir->filePath(u"verschwunden.jpg"_s))));
    window()->view()->grab();
    QTRY_VERIFY(window()->view()->isComplete());
    QVERIFY(!part<QLabel>(u"error"_s)->isVisible());
}

void tst_NyBookWindow::emptyBook()
{
    QVERIFY(open(NyBookProject(), NyLoadWarnings::Show));
    QCOMPARE(window()->view()->spreadCount(), 1);
    window()->view()->showNext();
    QCOMPARE(window()->view()->spread(), 0);
    window()->resize(1, 1);
    window()->view()->grab();
}

void tst_NyBookWindow::opensAProject()
{
    const QString path = write(u"Produktvorschlag_ä %1.nqp"_s, project(3, m_photo));
    m_windows = std::make_unique<NyAlbumaWindows>(NyLoadWarnings::Suppress);
    m_windows->showStart();
    QVERIFY(m_windows->startWindow()->isVisible());
    m_windows->openProject(path);
    QTRY_VERIFY(window());
    QVERIFY(window()->isVisible());
    QVERIFY(!m_windows->startWindow()->isVisible());
    QCOMPARE(window()->view()->spreadCount(), 3);
    QVERIFY(!QGuiApplication::overrideCursor());
}

void tst_NyBookWindow::brokenProjectShowsTheReason()
{
    const QString path = m_dir->filePath(u"kaputt.nqp"_s);
    QVERIFY(TestSupport::writeFile(path, "{\"format\": \"velmora-book\", \"formatVersion\": 2}"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"kaputt\\.nqp.*neueren Programmversion"_s));
    m_windows = std::make_unique<NyAlbumaWindows>(NyLoadWarnings::Suppress);
    m_windows->openProject(path);
    QTRY_VERIFY(m_windows->startWindow());
    QVERIFY(!window());
    auto *error = m_windows->startWindow()->findChild<QLabel *>(u"error"_s);
    QVERIFY(error->isVisible());
    QVERIFY(error->text().contains(path));
}

void tst_NyBookWindow::brokenProjectLeavesTheOpenBook()
{
    QVERIFY(open(project(1, m_photo)));
    const NyBookWindow *former = window();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"fort\\.nqp"_s));
    m_windows->openProject(m_dir->filePath(u"fort.nqp"_s));
    QTRY_VERIFY(message().contains(u"fort.nqp"_s));
    QCOMPARE(window(), former);
    QVERIFY(window()->isVisible());
}

void tst_NyBookWindow::theLastBookAskedForIsShown()
{
    NyBookProject other = project(1, m_photo);
    other.title = u"Ostsee"_s;
    const QString first = write(u"erst.nqp"_s, project(1, m_photo));
    const QString second = write(u"zweit.nqp"_s, other);
    m_windows = std::make_unique<NyAlbumaWindows>(NyLoadWarnings::Suppress);
    m_windows->openProject(first);
    m_windows->openProject(second);
    QTRY_VERIFY(window());
    QCOMPARE(book().title, u"Ostsee"_s);
    QVERIFY(!QGuiApplication::overrideCursor());
}

void tst_NyBookWindow::titleIsEditedInPlace()
{
    QVERIFY(open(project(1, m_photo)));
    QVERIFY(!window()->isWindowModified());
    type(u"Rom"_s);
    QVERIFY(!window()->isWindowModified());
    QTest::keyClick(part<QLineEdit>(u"title"_s), Qt::Key_Return);
    QCOMPARE(book().title, u"Rom"_s);
    QCOMPARE(book().cover.texts.constFirst().text, u"Rom"_s);
    QCOMPARE(book().subtitle, u"Juli 2024"_s);
    QVERIFY(window()->isWindowModified());
    QVERIFY(window()->windowTitle().startsWith(u"Rom[*]"_s));
    QVERIFY(window()->view()->hasFocus());
    QCOMPARE(window()->document()->undoStack()->count(), 1);
}

void tst_NyBookWindow::escapeBringsTheTitleBack()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"Rom"_s);
    QTest::keyClick(part<QLineEdit>(u"title"_s), Qt::Key_Escape);
    QCOMPARE(part<QLineEdit>(u"title"_s)->text(), u"Toskana & <b>Rom</b>"_s);
    QCOMPARE(book().title, u"Toskana & <b>Rom</b>"_s);
    QVERIFY(window()->view()->hasFocus());
    QVERIFY(!window()->isWindowModified());
}

void tst_NyBookWindow::emptyTitleIsRefused()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"  "_s);
    window()->view()->setFocus();
    QCOMPARE(part<QLineEdit>(u"title"_s)->text(), u"Toskana & <b>Rom</b>"_s);
    QVERIFY(!window()->isWindowModified());
}

void tst_NyBookWindow::wordsThatAreNotTouchedKeepTheirForm()
{
    NyBookProject lines = project(1, m_photo);
    lines.title = u"Toskana\nund Rom"_s;
    QVERIFY(open(lines));
    QCOMPARE(part<QLineEdit>(u"title"_s)->text(), u"Toskana und Rom"_s);
    action(u"editTitle"_s)->trigger();
    window()->view()->setFocus();
    QCOMPARE(book(), lines);
    QVERIFY(!window()->isWindowModified());
}

void tst_NyBookWindow::longTitleIsLeftAsItIs()
{
    NyBookProject wordy = project(1, m_photo);
    // Where the line ends, there is a blank.
    wordy.title = QString(199, u'W') + u" und "_s + QString(19'000, u'W');
    QVERIFY(open(wordy));
    action(u"editTitle"_s)->trigger();
    QTRY_VERIFY(part<QLineEdit>(u"title"_s)->hasFocus());
    QTest::keyClick(part<QLineEdit>(u"title"_s), Qt::Key_Return);
    QCOMPARE(book(), wordy);
}

void tst_NyBookWindow::arrowsInTheTitleTurnNoPage()
{
    QVERIFY(open(project(4, m_photo)));
    window()->view()->setSpread(1);
    type(u"Rom  "_s);
    auto *line = part<QLineEdit>(u"title"_s);
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Home, Qt::Key_End, Qt::Key_Space, Qt::Key_Backspace, Qt::Key_Delete})
        QTest::keyClick(line, key);
    QCOMPARE(window()->view()->spread(), 1);
    QVERIFY(line->hasFocus());
}

void tst_NyBookWindow::typingGoesOnAfterASave()
{
    QVERIFY(open(project(1, m_photo)));
    auto *line = part<QLineEdit>(u"title"_s);
    type(u"Ost "_s);
    QTest::keyClick(line, Qt::Key_S, Qt::ControlModifier);
    QTRY_COMPARE(stored(m_path).title, u"Ost"_s);
    QTRY_VERIFY(!window()->isWindowModified());
    QTest::keyClicks(line, u"und West"_s);
    QTest::keyClick(line, Qt::Key_Return);
    QCOMPARE(book().title, u"Ost und West"_s);
}

void tst_NyBookWindow::typingSurvivesAnotherEdit()
{
    QVERIFY(open(project(2, m_photo)));
    type(u"Ostsee"_s);
    // As a replacement does whose photo took long to be read.
    window()->document()->removePhoto({0, 0});
    QCOMPARE(book().pages.size(), 1);
    QCOMPARE(part<QLineEdit>(u"title"_s)->text(), u"Ostsee"_s);
    QTest::keyClick(part<QLineEdit>(u"title"_s), Qt::Key_Return);
    QCOMPARE(book().title, u"Ostsee"_s);
}

void tst_NyBookWindow::blankTitleLeavesNothingBehind()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"x"_s);
    part<QLineEdit>(u"title"_s)->setText(QString(2, QChar(0x200b)));
    QTest::keyClick(part<QLineEdit>(u"title"_s), Qt::Key_Return);
    QCOMPARE(book(), project(1, m_photo));
    QCOMPARE(part<QLineEdit>(u"title"_s)->text(), book().title);
}

void tst_NyBookWindow::titleMayLookLikeTheMarkOfChanges()
{
    NyBookProject odd = project(1, m_photo);
    odd.title = u"Rom [*]"_s;
    QVERIFY(open(odd));
    QCOMPARE(window()->windowTitle(), u"Rom [*][*][*] – VELMORA ALBUMA"_s);
    // The desktop's window carries what the user sees.
    QCOMPARE(window()->windowHandle()->title().count(u'*'), 1);
}

void tst_NyBookWindow::undoAndRedo()
{
    QVERIFY(open(project(1, m_photo)));
    QVERIFY(!action(u"undo"_s)->isEnabled());
    type(u"Rom"_s);
    QTest::keyClick(part<QLineEdit>(u"title"_s), Qt::Key_Return);
    QCOMPARE(action(u"undo"_s)->text().remove(u'&'), u"Rückgängig: Titel ändern"_s);
    QTest::keyClick(window(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(book(), project(1, m_photo));
    QCOMPARE(part<QLineEdit>(u"title"_s)->text(), u"Toskana & <b>Rom</b>"_s);
    QVERIFY(!window()->isWindowModified());
    QVERIFY(action(u"redo"_s)->isEnabled());
    QTest::keyClick(window(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(book().title, u"Rom"_s);
    QVERIFY(window()->isWindowModified());
}

void tst_NyBookWindow::removesThePhotoThatIsSelected()
{
    NyBookProject three = project(3, m_photo);
    QVERIFY(open(three));
    QVERIFY(!action(u"remove"_s)->isEnabled());
    QVERIFY(!action(u"replace"_s)->isEnabled());
    window()->view()->setSpread(1);
    window()->view()->setSelected(NyBookPlace{1, 0});
    QVERIFY(action(u"replace"_s)->isEnabled());
    QTest::keyClick(window()->view(), Qt::Key_Delete);
    QCOMPARE(book().pages.size(), 2);
    QCOMPARE(part<QLabel>(u"position"_s)->text(), u"Seiten 1 und 2 von 2"_s);
    QTest::keyClick(window(), Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(book(), three);
}

void tst_NyBookWindow::coverPhotoCannotBeRemoved()
{
    QVERIFY(open(project(1, m_photo)));
    window()->view()->setSelected(NyBookPlace{NyBookPlace::Cover, 0});
    QVERIFY(action(u"replace"_s)->isEnabled());
    QVERIFY(!action(u"remove"_s)->isEnabled());
}

void tst_NyBookWindow::replacesAPhoto()
{
    const QString other = m_dir->filePath(u"rot & blau.jpg"_s);
    QImage image(900, 600, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(PaintedPictures::write(other, image));
    QVERIFY(open(project(1, m_photo)));
    window()->view()->setSpread(1);
    window()->view()->setSelected(NyBookPlace{0, 0});
    action(u"replace"_s)->trigger();
    QVERIFY(choose(u"photoDialog"_s, other));
    QTRY_COMPARE(book().pages.constFirst().photos.constFirst().url, QUrl::fromLocalFile(other));
    QCOMPARE(book().pages.constFirst().photos.constFirst().sizePx, QSize(900, 600));
    QVERIFY(window()->isWindowModified());
}

void tst_NyBookWindow::unreadablePhotoIsToldAbout()
{
    const QString broken = m_dir->filePath(u"kein bild.jpg"_s);
    QVERIFY(TestSupport::writeFile(broken, "no picture"));
    QVERIFY(open(project(1, m_photo)));
    window()->view()->setSpread(1);
    window()->view()->setSelected(NyBookPlace{0, 0});
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"kein bild\\.jpg"_s));
    action(u"replace"_s)->trigger();
    QVERIFY(choose(u"photoDialog"_s, broken));
    QTRY_VERIFY(message().contains(u"kein bild.jpg"_s));
    QCOMPARE(book(), project(1, m_photo));
}

bool tst_NyBookWindow::drop(const QList<QUrl> &urls, const QPointF &point, Qt::DropActions actions)
{
    QMimeData data;
    data.setUrls(urls);
    QWidget *viewport = window()->view()->viewport();
    QDragEnterEvent enter(point.toPoint(), actions, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &enter);
    if (!enter.isAccepted())
        return false;
    QDragMoveEvent move(point.toPoint(), actions, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &move);
    if (!move.isAccepted()) {
        QDragLeaveEvent leave;
        QCoreApplication::sendEvent(viewport, &leave);
        return false;
    }
    QDropEvent event(point, actions, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &event);
    // Whoever drags a file with the wish to move it must not lose it.
    return event.isAccepted() && event.dropAction() != Qt::MoveAction;
}

void tst_NyBookWindow::droppedPhotoReplacesOne()
{
    const QString other = m_dir->filePath(u"rot & blau.JPG"_s);
    QImage image(900, 600, QImage::Format_RGB32);
    image.fill(Qt::red);
    QVERIFY(PaintedPictures::write(other, image));
    QVERIFY(open(project(1, m_photo)));
    NySpreadView *view = window()->view();
    view->setSpread(1);
    const QPointF point = view->photoRect({0, 0}).center();
    const QImage before = view->grab().toImage();

    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(other)});
    QDragEnterEvent enter(point.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &enter);
    QDragMoveEvent move(point.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(view->viewport(), &move);
    QVERIFY(view->grab().toImage() != before);
    QDragLeaveEvent leave;
    QCoreApplication::sendEvent(view->viewport(), &leave);
    QVERIFY(view->grab().toImage() == before);

    QVERIFY(drop({QUrl::fromLocalFile(other)}, point));
    QTRY_COMPARE(book().pages.constFirst().photos.constFirst().url, QUrl::fromLocalFile(other));
    QCOMPARE(view->selected(), std::optional(NyBookPlace{0, 0}));
    action(u"undo"_s)->trigger();
    QCOMPARE(book(), project(1, m_photo));
}

void tst_NyBookWindow::onlyOneLocalPictureCanBeDropped_data()
{
    QTest::addColumn<QList<QUrl>>("urls");
    QTest::addColumn<bool>("isOnPhoto");
    QTest::addColumn<int>("actions");
    const QUrl photo = QUrl::fromLocalFile(u"/tmp/a.jpg"_s);
    const int any = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;
    QTest::newRow("nothing") << QList<QUrl>() << true << any;
    QTest::newRow("two") << QList<QUrl>{photo, photo} << true << any;
    QTest::newRow("text") << QList<QUrl>{QUrl::fromLocalFile(u"/tmp/a.txt"_s)} << true << any;
    QTest::newRow("from afar") << QList<QUrl>{QUrl(u"https://example.org/a.jpg"_s)} << true << any;
    QTest::newRow("beside the photo") << QList<QUrl>{photo} << false << any;
    QTest::newRow("only to be moved") << QList<QUrl>{photo} << true << int(Qt::MoveAction);
}

void tst_NyBookWindow::onlyOneLocalPictureCanBeDropped()
{
    QVERIFY(open(project(1, m_photo)));
    NySpreadView *view = window()->view();
    view->setSpread(1);
    QFETCH(QList<QUrl>, urls);
    QFETCH(bool, isOnPhoto);
    QFETCH(int, actions);
    const QPointF point = isOnPhoto ? view->photoRect({0, 0}).center() : QPointF(5, 5);
    QVERIFY(!drop(urls, point, Qt::DropActions(actions)));
    QCOMPARE(book(), project(1, m_photo));
}

void tst_NyBookWindow::droppedBookIsOpened()
{
    QVERIFY(open(project(1, m_photo)));
    const QString other = write(u"anderes.nqp"_s, project(5, m_photo));
    QVERIFY(drop({QUrl::fromLocalFile(other)}, window()->view()->photoRect({NyBookPlace::Cover, 0}).center()));
    QTRY_COMPARE(window()->view()->spreadCount(), 4);
    // A question that is open comes first.
    type(u"Rom"_s);
    window()->close();
    QTRY_VERIFY(QApplication::activeModalWidget());
    QVERIFY(!drop({QUrl::fromLocalFile(m_path)}, QPointF(5, 5)));
    QVERIFY(answer(u"unsaved"_s, u"Verwerfen"_s));
}

void tst_NyBookWindow::savingWhatIsBeingTyped()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"Rom"_s);
    QTest::keyClick(part<QLineEdit>(u"title"_s), Qt::Key_S, Qt::ControlModifier);
    QTRY_COMPARE(stored(m_path).title, u"Rom"_s);
    QTRY_VERIFY(!window()->isWindowModified());
    QVERIFY(message().isEmpty());
}

void tst_NyBookWindow::failedSaveKeepsTheChanges()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"Rom"_s);
    // A folder that is gone takes no file, whoever asks.
    QVERIFY(QDir(m_dir->path()).removeRecursively());
    action(u"save"_s)->trigger();
    QTRY_VERIFY(message().contains(m_path));
    QVERIFY(window()->isWindowModified());
    QCOMPARE(book().title, u"Rom"_s);
}

void tst_NyBookWindow::savesUnderAnotherName()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"Rom"_s);
    action(u"saveAs"_s)->trigger();
    const QString other = m_dir->filePath(u"anderes"_s);
    QVERIFY(choose(u"saveDialog"_s, other));
    QTRY_COMPARE(stored(other + u".nqp"_s).title, u"Rom"_s);
    QCOMPARE(stored(m_path), project(1, m_photo));
    QTRY_VERIFY(!window()->isWindowModified());
    QCOMPARE(window()->document()->path(), other + u".nqp"_s);
}

void tst_NyBookWindow::changedFileIsAskedAbout_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("isOverwritten");
    QTest::newRow("overwritten") << u"Überschreiben"_s << true;
    QTest::newRow("left alone") << u"Abbrechen"_s << false;
}

void tst_NyBookWindow::changedFileIsAskedAbout()
{
    QVERIFY(open(project(1, m_photo)));
    NyBookProject others = project(2, m_photo);
    others.title = u"Von anderen"_s;
    QVERIFY(!write(u"buch.nqp"_s, others).isEmpty());
    type(u"Rom"_s);
    action(u"save"_s)->trigger();
    QFETCH(QString, button);
    QVERIFY(answer(u"conflict"_s, button));
    QFETCH(bool, isOverwritten);
    QTRY_COMPARE(stored(m_path).title, isOverwritten ? u"Rom"_s : u"Von anderen"_s);
    QTRY_COMPARE(window()->isWindowModified(), !isOverwritten);
}

void tst_NyBookWindow::longPathFitsTheQuestion()
{
    const QString name = QString(200, u'W') + u".nqp"_s;
    QVERIFY(open(project(1, m_photo)));
    QVERIFY(!write(name, project(1, m_photo)).isEmpty());
    m_windows->openProject(m_dir->filePath(name));
    QTRY_VERIFY(window()->document()->path().endsWith(name));
    QVERIFY(!write(name, project(2, m_photo)).isEmpty());
    type(u"Rom"_s);
    action(u"save"_s)->trigger();
    QTRY_VERIFY(part<QMessageBox>(u"conflict"_s));
    auto *box = part<QMessageBox>(u"conflict"_s);
    QTRY_VERIFY(box->isVisible());
    // A box that finds no room cuts its text off.
    const auto *label = box->findChild<QLabel *>(u"qt_msgbox_label"_s);
    QVERIFY2(label && label->minimumSizeHint().width() <= label->width(), qPrintable(QString::number(box->width())));
    QVERIFY(answer(u"conflict"_s, u"Abbrechen"_s));
}

void tst_NyBookWindow::closingAsks_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<QString>("storedTitle");
    QTest::newRow("saved") << u"Speichern"_s << true << u"Rom"_s;
    QTest::newRow("given up") << u"Verwerfen"_s << true << u"Toskana & <b>Rom</b>"_s;
    QTest::newRow("stayed") << u"Abbrechen"_s << false << u"Toskana & <b>Rom</b>"_s;
}

void tst_NyBookWindow::closingAsks()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"Rom"_s);
    window()->close();
    QVERIFY(window()->isVisible());
    QFETCH(QString, button);
    QVERIFY(answer(u"unsaved"_s, button));
    QFETCH(bool, isClosed);
    QTRY_COMPARE(window() == nullptr, isClosed);
    QFETCH(QString, storedTitle);
    QCOMPARE(stored(m_path).title, storedTitle);
    if (!isClosed)
        QCOMPARE(book().title, u"Rom"_s);
}

void tst_NyBookWindow::answeredEditsDoNotComeBack_data()
{
    closingAsks_data();
}

void tst_NyBookWindow::answeredEditsDoNotComeBack()
{
    QFETCH(QString, button);
    QFETCH(bool, isClosed);
    QFETCH(QString, storedTitle);
    QVERIFY(open(project(1, m_photo)));
    type(u"Rom"_s);
    window()->close();
    QVERIFY(answer(u"unsaved"_s, button));
    QTRY_COMPARE(window() == nullptr, isClosed);
    QVERIFY(reopen());
    QTRY_COMPARE(book().title, isClosed ? storedTitle : u"Rom"_s);
    QCOMPARE(window()->document()->isModified(), !isClosed);
}

void tst_NyBookWindow::unsavedEditsComeBack()
{
    QVERIFY(open(project(1, m_dir->filePath(u"fehlt.jpg"_s))));
    type(u"Rom"_s);
    QTest::keyClick(part<QLineEdit>(u"title"_s), Qt::Key_Return);
    QCOMPARE(book().title, u"Rom"_s);
    QVERIFY(reopen(NyLoadWarnings::Show));
    QTRY_COMPARE(book().title, u"Rom"_s);
    QVERIFY(window()->isWindowModified());
    // Both are to be known, whichever was found out first.
    QTRY_VERIFY(message().contains(u"sind wieder da"_s) && message().contains(u"fehlen Fotos: fehlt.jpg"_s));
    QVERIFY(action(u"undo"_s)->text().contains(u"Änderungen wiederherstellen"_s));
    action(u"undo"_s)->trigger();
    QCOMPARE(book().title, u"Toskana & <b>Rom</b>"_s);
    QVERIFY(!window()->isWindowModified());
}

void tst_NyBookWindow::closingTwiceAsksOnce()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"Rom"_s);
    window()->close();
    window()->close();
    QTRY_VERIFY(part<QMessageBox>(u"unsaved"_s));
    QCOMPARE(window()->findChildren<QMessageBox *>(u"unsaved"_s).size(), 1);
}

void tst_NyBookWindow::closingDuringASaveAsksNothing()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"Rom"_s);
    action(u"save"_s)->trigger();
    QVERIFY(window()->document()->isSaving());
    window()->close();
    QVERIFY(!part<QMessageBox>(u"unsaved"_s));
    QTRY_VERIFY(!window());
    QCOMPARE(stored(m_path).title, u"Rom"_s);
}

void tst_NyBookWindow::openingTheSameBookShowsWhatWasSaved()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"Rom"_s);
    m_windows->openProject(m_path);
    const QPointer<NyBookWindow> former = window();
    QVERIFY(answer(u"unsaved"_s, u"Speichern"_s));
    QTRY_VERIFY(!former);
    QCOMPARE(book().title, u"Rom"_s);
    // What is shown is what is in the file, so that nobody is asked about a conflict.
    type(u"Neapel"_s);
    action(u"save"_s)->trigger();
    QTRY_COMPARE(stored(m_path).title, u"Neapel"_s);
}

void tst_NyBookWindow::stayingIsNoQuitting()
{
    m_windows = std::make_unique<NyAlbumaWindows>(NyLoadWarnings::Suppress);
    m_windows->showStart();
    m_path = write(u"buch.nqp"_s, project(1, m_photo));
    m_windows->openProject(m_path);
    QTRY_VERIFY(window());
    QVERIFY(QTest::qWaitForWindowActive(window()));
    type(u"Rom"_s);
    action(u"quit"_s)->trigger();
    QVERIFY(answer(u"unsaved"_s, u"Abbrechen"_s));
    window()->close();
    QVERIFY(answer(u"unsaved"_s, u"Verwerfen"_s));
    // Closed, not quit: the book leads back to where it came from.
    QTRY_VERIFY(m_windows->startWindow()->isVisible());
}

void tst_NyBookWindow::endingAsksOnce()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"Rom"_s);
    m_windows->end();
    QVERIFY(window()->isWaitingToLeave());
    QVERIFY(answer(u"unsaved"_s, u"Abbrechen"_s));
    QVERIFY(window() && !window()->isWaitingToLeave());
    // Staying is forgotten by then.
    m_windows->end();
    QVERIFY(answer(u"unsaved"_s, u"Speichern"_s));
    QTRY_VERIFY(!window());
    QCOMPARE(stored(m_path).title, u"Rom"_s);
}

void tst_NyBookWindow::endingLeadsNotToTheProposals()
{
    m_windows = std::make_unique<NyAlbumaWindows>(NyLoadWarnings::Suppress);
    m_windows->showStart();
    m_path = write(u"buch.nqp"_s, project(1, m_photo));
    m_windows->openProject(m_path);
    QTRY_VERIFY(window());
    QVERIFY(QTest::qWaitForWindowActive(window()));
    type(u"Rom"_s);
    // The later wish counts: closed, it would lead back to the proposals.
    window()->close();
    m_windows->end();
    QVERIFY(answer(u"unsaved"_s, u"Verwerfen"_s));
    QTRY_VERIFY(!window());
    QVERIFY(!m_windows->startWindow()->isVisible());
}

void tst_NyBookWindow::openingAnotherBookAsks()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"Rom"_s);
    NyBookProject other = project(1, m_photo);
    other.title = u"Ostsee"_s;
    const QString path = write(u"anderes.nqp"_s, other);
    m_windows->openProject(path);
    QVERIFY(answer(u"unsaved"_s, u"Speichern"_s));
    QTRY_COMPARE(book().title, u"Ostsee"_s);
    QCOMPARE(stored(m_path).title, u"Rom"_s);
}

void tst_NyBookWindow::goingToTheProposalsAsks()
{
    QVERIFY(open(project(1, m_photo)));
    type(u"Rom"_s);
    action(u"start"_s)->trigger();
    QVERIFY(answer(u"unsaved"_s, u"Abbrechen"_s));
    QVERIFY(!m_windows->startWindow());
    action(u"start"_s)->trigger();
    QVERIFY(answer(u"unsaved"_s, u"Verwerfen"_s));
    QTRY_VERIFY(m_windows->startWindow() && m_windows->startWindow()->isVisible());
    QVERIFY(!window());
}

void tst_NyBookWindow::longTitleFitsTheQuestion()
{
    NyBookProject wordy = project(1, m_photo);
    wordy.title = u"Wort "_s.repeated(4'000).trimmed();
    QVERIFY(open(wordy));
    window()->document()->removePhoto({0, 0});
    window()->close();
    QTRY_VERIFY(part<QMessageBox>(u"unsaved"_s));
    auto *box = part<QMessageBox>(u"unsaved"_s);
    QTRY_VERIFY(box->isVisible());
    const QSize room = box->screen()->availableSize();
    QVERIFY2(box->width() <= room.width() && box->height() <= room.height(), qPrintable(u"%1 x %2"_s.arg(box->width()).arg(box->height())));
    QVERIFY(answer(u"unsaved"_s, u"Verwerfen"_s));
}

void tst_NyBookWindow::zoomIsShown()
{
    QVERIFY(open(project(1, m_photo)));
    auto *zoom = part<QToolButton>(u"zoom"_s);
    QCOMPARE(zoom->text(), u"100 %"_s);
    QVERIFY(!action(u"zoomOut"_s)->isEnabled());
    QTest::keyClick(window(), Qt::Key_Plus, Qt::ControlModifier);
    QVERIFY(window()->view()->zoom() > 1);
    QVERIFY(zoom->text() != u"100 %"_s);
    QVERIFY(action(u"zoomOut"_s)->isEnabled());
    while (action(u"zoomIn"_s)->isEnabled())
        action(u"zoomIn"_s)->trigger();
    QCOMPARE(window()->view()->zoom(), NySpreadView::MaximumZoom);
    QTest::keyClick(window(), Qt::Key_0, Qt::ControlModifier);
    QCOMPARE(zoom->text(), u"100 %"_s);
}

void tst_NyBookWindow::fullScreen()
{
    QVERIFY(open(project(1, m_photo)));
    QTest::keyClick(window(), Qt::Key_F11);
    QTRY_VERIFY(window()->isFullScreen());
    QVERIFY(action(u"fullScreen"_s)->isChecked());
    QTest::keyClick(window(), Qt::Key_F11);
    QTRY_VERIFY(!window()->isFullScreen());
    QVERIFY(!action(u"fullScreen"_s)->isChecked());
}

void tst_NyBookWindow::nextBookIsAsLarge()
{
    QVERIFY(open(project(1, m_photo)));
    window()->setGeometry(40, 60, 720, 540);
    QTRY_COMPARE(window()->size(), QSize(720, 540));
    QTest::keyClick(window(), Qt::Key_F11);
    QTRY_VERIFY(window()->isFullScreen());
    m_windows->openProject(write(u"anderes.nqp"_s, project(3, m_photo)));
    QTRY_COMPARE(window()->view()->spreadCount(), 3);
    QTRY_VERIFY(window()->isFullScreen());
    QVERIFY(action(u"fullScreen"_s)->isChecked());
    action(u"fullScreen"_s)->trigger();
    QTRY_COMPARE(window()->size(), QSize(720, 540));
}

void tst_NyBookWindow::geometryIsKept()
{
    QVERIFY(open(project(1, m_photo)));
    window()->setGeometry(40, 60, 720, 540);
    QTRY_COMPARE(window()->size(), QSize(720, 540));
    // The next book takes the same place, and so does one of the next run.
    m_windows->openProject(write(u"anderes.nqp"_s, project(2, m_photo)));
    QTRY_COMPARE(window()->view()->spreadCount(), 2);
    QCOMPARE(window()->size(), QSize(720, 540));
    window()->close();
    QTRY_VERIFY(!window());
    QVERIFY(open(project(1, m_photo)));
    QCOMPARE(window()->size(), QSize(720, 540));
}

void tst_NyBookWindow::helpNamesTheKeys()
{
    QVERIFY(open(project(1, m_photo)));
    QTest::keyClick(window(), Qt::Key_F1);
    QTRY_VERIFY(part<QMessageBox>(u"help"_s));
    QVERIFY(part<QMessageBox>(u"help"_s)->text().contains(u"Strg+E"_s));
}

void tst_NyBookWindow::exportsAPdf()
{
    QVERIFY(open(project(3, m_photo)));
    action(u"exportPdf"_s)->trigger();
    const QString path = m_dir->filePath(u"mein buch"_s);
    QVERIFY(choose(u"pdfDialog"_s, path));
    QTRY_VERIFY(message().contains(path + u".pdf"_s));
    QFile file(path + u".pdf"_s);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.read(5) == "%PDF-");
    QTRY_VERIFY(!part<QProgressDialog>(u"exportProgress"_s));
    QVERIFY(action(u"exportPdf"_s)->isEnabled());
    // The next one is proposed beside it.
    action(u"exportPdf"_s)->trigger();
    QTRY_VERIFY(part<QFileDialog>(u"pdfDialog"_s));
    QCOMPARE(part<QFileDialog>(u"pdfDialog"_s)->directory().absolutePath(), QFileInfo(path).absolutePath());
}

void tst_NyBookWindow::exportAsksAboutMissingPhotos()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"verschwunden\\.jpg"_s));
    QVERIFY(open(project(1, m_dir->filePath(u"verschwunden.jpg"_s))));
    QTRY_VERIFY(window()->view()->isComplete());
    const QString path = m_dir->filePath(u"buch.pdf"_s);
    action(u"exportPdf"_s)->trigger();
    QVERIFY(choose(u"pdfDialog"_s, path));
    QTRY_VERIFY(part<QMessageBox>(u"missingPhotos"_s));
    QVERIFY(part<QMessageBox>(u"missingPhotos"_s)->informativeText().contains(u"verschwunden.jpg"_s));
    QVERIFY(answer(u"missingPhotos"_s, u"Abbrechen"_s));
    QVERIFY(!QFile::exists(path));
    action(u"exportPdf"_s)->trigger();
    QVERIFY(choose(u"pdfDialog"_s, path));
    QVERIFY(answer(u"missingPhotos"_s, u"Trotzdem schreiben"_s));
    QTRY_VERIFY(message().contains(path));
    QVERIFY(QFile::exists(path));
}

void tst_NyBookWindow::failedExportIsToldAbout()
{
    QVERIFY(open(project(1, m_photo)));
    // A folder stands where the file should go.
    const QString path = m_dir->filePath(u"voll.pdf"_s);
    action(u"exportPdf"_s)->trigger();
    QTRY_VERIFY(part<QFileDialog>(u"pdfDialog"_s));
    Q_EMIT part<QFileDialog>(u"pdfDialog"_s)->fileSelected(m_dir->filePath(u"fort/buch.pdf"_s));
    QTRY_VERIFY(message().contains(u"fort/buch.pdf"_s));
    QVERIFY(!QFile::exists(path));
}

void tst_NyBookWindow::closingWaitsForTheExport()
{
    QVERIFY(open(project(3, m_photo)));
    const QString path = m_dir->filePath(u"buch.pdf"_s);
    action(u"exportPdf"_s)->trigger();
    QTRY_VERIFY(part<QFileDialog>(u"pdfDialog"_s));
    Q_EMIT part<QFileDialog>(u"pdfDialog"_s)->fileSelected(path);
    QVERIFY(!action(u"exportPdf"_s)->isEnabled());
    // Also when another book comes that was asked for before.
    m_windows->openProject(write(u"anderes.nqp"_s, project(5, m_photo)));
    window()->close();
    QTRY_VERIFY(!window() || window()->view()->spreadCount() == 4);
    QVERIFY(QFile::exists(path));
}

void tst_NyBookWindow::failedExportStays()
{
    QVERIFY(open(project(3, m_photo)));
    action(u"exportPdf"_s)->trigger();
    QTRY_VERIFY(part<QFileDialog>(u"pdfDialog"_s));
    Q_EMIT part<QFileDialog>(u"pdfDialog"_s)->fileSelected(m_dir->filePath(u"fort/buch.pdf"_s));
    window()->close();
    QTRY_VERIFY(message().contains(u"fort/buch.pdf"_s));
    QVERIFY(window()->isVisible());
    window()->close();
    QTRY_VERIFY(!window());
}

void tst_NyBookWindow::anotherBookComesOverAnOpenQuestion()
{
    QVERIFY(open(project(3, m_photo)));
    const QString path = m_dir->filePath(u"buch.pdf"_s);
    QVERIFY(TestSupport::writeFile(path, "older"));
    const QString other = write(u"anderes.nqp"_s, project(5, m_photo));
    action(u"exportPdf"_s)->trigger();
    QTRY_VERIFY(part<QFileDialog>(u"pdfDialog"_s));
    auto *line = part<QFileDialog>(u"pdfDialog"_s)->findChild<QLineEdit *>(u"fileNameEdit"_s);
    line->setText(path);
    const QPointer<NyBookWindow> former = window();
    bool wasAsked = false;
    QTimer::singleShot(0, this, [&] {
        wasAsked = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        m_windows->openProject(other);
    });
    // Returns when the dialog's question whether to overwrite the file has gone.
    QTest::keyClick(line, Qt::Key_Return);
    QVERIFY(wasAsked);
    QTRY_VERIFY(!former);
    QCOMPARE(window()->view()->spreadCount(), 4);
    QCOMPARE(QFileInfo(path).size(), 5);
}

void tst_NyBookWindow::longPathsLeaveTheWindowAsItIs()
{
    QVERIFY(open(project(1, m_photo)));
    window()->resize(800, 600);
    QTRY_COMPARE(window()->width(), 800);
    const QString path = u'/' + QString(250, u'W') + u'/' + QString(250, u'M');
    window()->showError(path);
    QTRY_VERIFY(part<QLabel>(u"error"_s)->isVisible());
    QCoreApplication::processEvents();
    QCOMPARE(window()->width(), 800);
    QVERIFY2(window()->minimumSizeHint().width() <= 600, qPrintable(QString::number(window()->minimumSizeHint().width())));
}

void tst_NyBookWindow::pdfIsNamedAfterTheTitle_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"Sommer in Görlitz"_s << u"Sommer in Görlitz.pdf"_s;
    QTest::newRow("what no file may hold") << u"a/b\\c:d*e?f\"g<h>i|j"_s << u"a_b_c_d_e_f_g_h_i_j.pdf"_s;
    QTest::newRow("lines") << u"Rom\nund Umgebung"_s << u"Rom und Umgebung.pdf"_s;
    QTest::newRow("hidden") << u"..Rom"_s << u"Rom.pdf"_s;
    QTest::newRow("nothing left") << u"..."_s << u"Fotobuch.pdf"_s;
    QTest::newRow("long") << QString(300, u'ä') << QString(100, u'ä') + u".pdf"_s;
    QTest::newRow("beyond the first plane") << u"Wien 🎡"_s << u"Wien 🎡.pdf"_s;
}

void tst_NyBookWindow::pdfIsNamedAfterTheTitle()
{
    NyBookProject named = project(1, m_photo);
    QFETCH(QString, title);
    named.title = title;
    QVERIFY(open(named));
    action(u"exportPdf"_s)->trigger();
    QTRY_VERIFY(part<QFileDialog>(u"pdfDialog"_s));
    QFETCH(QString, name);
    QCOMPARE(part<QFileDialog>(u"pdfDialog"_s)->findChild<QLineEdit *>(u"fileNameEdit"_s)->text(), name);
}

QTEST_MAIN(tst_NyBookWindow)
#include "tst_NyBookWindow.moc"
