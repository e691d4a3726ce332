#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <NyBookProjectFile.h>

#include "NyAlbumaWindows.h"
#include "NySpreadView.h"
#include "PaintedPictures.h"

using namespace Qt::Literals::StringLiterals;

class tst_NyBookWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void pagesWithTheKeyboard();
    void closesWithTheKeyboard_data();
    void closesWithTheKeyboard();
    void pagesWithTheButtons();
    void warnsAboutMissingPhotos();
    void suppressesWarnings();
    void emptyBook();
    void opensAProject();
    void brokenProjectShowsTheReason();

private:
    NyBookProject project(int pages, const QString &photo) const;

    QTemporaryDir m_dir;
    QString m_photo;
};

void tst_NyBookWindow::initTestCase()
{
    m_photo = m_dir.filePath(u"green.jpg"_s);
    QImage image(800, 600, QImage::Format_RGB32);
    image.fill(QColor(0, 160, 0));
    QVERIFY(PaintedPictures::write(m_photo, image));
}

NyBookProject tst_NyBookWindow::project(int pages, const QString &photo) const
{
    NyBookProject project;
    project.title = u"Toskana & <b>Rom</b>"_s;
    project.subtitle = u"Juli 2024"_s;
    NyPlacedFoto foto;
    foto.url = QUrl::fromLocalFile(photo);
    foto.rectMm = QRectF(40, 45, 160, 120);
    project.cover.photos = {foto};
    for (int i = 0; i < pages; ++i)
        project.pages.append(NyBookPage{{foto}, {}});
    return project;
}

void tst_NyBookWindow::pagesWithTheKeyboard()
{
    NyBookWindow window(project(5, m_photo), NyDesignStyle(), NyLoadWarnings::Suppress);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    NySpreadView *view = window.view();
    auto *position = window.findChild<QLabel *>(u"position"_s);
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
    NyBookWindow window(project(2, m_photo), NyDesignStyle(), NyLoadWarnings::Suppress);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QFETCH(Qt::Key, key);
    QTest::keyClick(&window, key, Qt::ControlModifier);
    QTRY_VERIFY(!window.isVisible());
}

void tst_NyBookWindow::pagesWithTheButtons()
{
    NyBookWindow window(project(2, m_photo), NyDesignStyle(), NyLoadWarnings::Suppress);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    auto *previous = window.findChild<QPushButton *>(u"previous"_s);
    auto *next = window.findChild<QPushButton *>(u"next"_s);
    QVERIFY(!previous->isEnabled());
    QVERIFY(next->isEnabled());
    QTest::mouseClick(next, Qt::LeftButton);
    QCOMPARE(window.view()->spread(), 1);
    QVERIFY(previous->isEnabled());
    QVERIFY(!next->isEnabled());
    QTest::mouseClick(previous, Qt::LeftButton);
    QCOMPARE(window.view()->spread(), 0);
    QCOMPARE(window.findChild<QLabel *>(u"title"_s)->text(), u"Toskana & <b>Rom</b>"_s);
    QVERIFY(window.windowTitle().contains(u"VELMORA ALBUMA"_s));
}

void tst_NyBookWindow::warnsAboutMissingPhotos()
{
    const QString missing = m_dir.filePath(u"verschwunden.jpg"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"verschwunden\\.jpg"_s));
    NyBookWindow window(project(1, missing), NyDesignStyle(), NyLoadWarnings::Show);
    window.show();
    auto *warning = window.findChild<QLabel *>(u"warning"_s);
    QTRY_VERIFY(warning->isVisible());
    QVERIFY(warning->text().contains(u"verschwunden.jpg"_s));
    QTRY_VERIFY(window.view()->isComplete());
}

void tst_NyBookWindow::suppressesWarnings()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"verschwunden\\.jpg"_s));
    NyBookWindow window(project(1, m_dir.filePath(u"verschwunden.jpg"_s)), NyDesignStyle(), NyLoadWarnings::Suppress);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.view()->grab();
    QTRY_VERIFY(window.view()->isComplete());
    QVERIFY(!window.findChild<QLabel *>(u"warning"_s)->isVisible());
}

void tst_NyBookWindow::emptyBook()
{
    NyBookWindow window(NyBookProject(), NyDesignStyle(), NyLoadWarnings::Show);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QCOMPARE(window.view()->spreadCount(), 1);
    window.view()->showNext();
    QCOMPARE(window.view()->spread(), 0);
    window.resize(1, 1);
    window.view()->grab();
}

void tst_NyBookWindow::opensAProject()
{
    const QString path = m_dir.filePath(u"Produktvorschlag_ä %1.nqp"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write(NyBookProjectFile::toJson(project(3, m_photo))) > 0);
    file.close();
    NyAlbumaWindows windows(NyLoadWarnings::Suppress);
    windows.showStart();
    QVERIFY(windows.startWindow()->isVisible());
    windows.openProject(path);
    QVERIFY(windows.bookWindow());
    QVERIFY(windows.bookWindow()->isVisible());
    QVERIFY(!windows.startWindow()->isVisible());
    QCOMPARE(windows.bookWindow()->view()->spreadCount(), 3);
}

void tst_NyBookWindow::brokenProjectShowsTheReason()
{
    const QString path = m_dir.filePath(u"kaputt.nqp"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write("{\"format\": \"velmora-book\", \"formatVersion\": 2}") > 0);
    file.close();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"kaputt\\.nqp.*neueren Programmversion"_s));
    NyAlbumaWindows windows(NyLoadWarnings::Suppress);
    windows.openProject(path);
    QVERIFY(!windows.bookWindow());
    auto *error = windows.startWindow()->findChild<QLabel *>(u"error"_s);
    QVERIFY(error->isVisible());
    QVERIFY(error->text().contains(path));
}

QTEST_MAIN(tst_NyBookWindow)
#include "tst_NyBookWindow.moc"
