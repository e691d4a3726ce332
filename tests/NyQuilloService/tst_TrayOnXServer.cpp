#include "ScreenPixels.h"

#include <NySystemTrayService.h>

#include <QApplication>
#include <QMenu>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace Qt::Literals::StringLiterals;
using namespace ScreenPixels;

/** The icon in a tray of the X server that comes later than the service. */
class tst_TrayOnXServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void iconComesWithTheTray();
};

void tst_TrayOnXServer::iconComesWithTheTray()
{
    QTest::ignoreMessage(QtInfoMsg, "the desktop has no tray yet; the icon waits for one");
    auto *tray = new NySystemTrayService;
    tray->show();
    QVERIFY(!isIconShown());

    QProcess trayer;
    trayer.start(u"trayer"_s, {u"--edge"_s, u"bottom"_s, u"--height"_s, u"24"_s});
    QVERIFY(trayer.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(isIconShown(), 15000);

    // A click of the mouse opens the menu, Escape closes it.
    QMenu *menu = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets())
        menu = menu ? menu : qobject_cast<QMenu *>(widget);
    QVERIFY(menu);
    QSignalSpy aboutToShow(menu, &QMenu::aboutToShow);
    bool isVisible = false;
    connect(menu, &QMenu::aboutToShow, menu, [&] {
        QTimer::singleShot(300, menu, [&] {
            isVisible = menu->isVisible();
            menu->close();
        });
    });
    const QPoint pixel = iconPixel();
    QCOMPARE(
        QProcess::execute(u"xdotool"_s, {u"mousemove"_s, QString::number(pixel.x()), QString::number(pixel.y()), u"click"_s, u"1"_s}), 0);
    QTRY_COMPARE(aboutToShow.size(), 1);
    QTRY_VERIFY(isVisible);
    QTRY_VERIFY(!menu->isVisible());

    // The tray goes, and comes again.
    trayer.kill();
    QVERIFY(trayer.waitForFinished());
    QTRY_VERIFY(!isIconShown());
    trayer.start();
    QVERIFY(trayer.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(isIconShown(), 15000);

    tray->hide();
    QTRY_VERIFY(!isIconShown());
    trayer.terminate();
    trayer.waitForFinished();
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    tst_TrayOnXServer test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_TrayOnXServer.moc"
