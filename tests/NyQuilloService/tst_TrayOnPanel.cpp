#include "ScreenPixels.h"
#include "TestSupport.h"

#include <NySystemTrayService.h>
#include <NyTrayWatcher.h>

#include <QApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDirIterator>
#include <QMenu>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace ScreenPixels;

/** The icon in a desktop's panel that takes icons over the bus, xfce4-panel, which comes late and breaks down. */
class tst_TrayOnPanel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void iconLivesWithThePanel();
    void cleanupTestCase();

private:
    static void stop(QProcess &process)
    {
        process.kill();
        process.waitForFinished();
    }
    static bool click(const QPoint &place, int button)
    {
        return QProcess::execute(u"xdotool"_s,
                   {u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"click"_s, QString::number(button)})
            == 0;
    }
    static bool press(const QStringList &keys) { return QProcess::execute(u"xdotool"_s, QStringList{u"key"_s} + keys) == 0; }
    static bool isOnBus(const QString &name) { return QDBusConnection::sessionBus().interface()->isServiceRegistered(name); }

    QProcess m_settings;
    QProcess m_panel;
};

void tst_TrayOnPanel::initTestCase()
{
    // One panel at the lower edge, with nothing but the tray.
    QVERIFY(TestSupport::writeFile(QDir::homePath() + u"/.config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"_s,
        R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array"><value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=8;x=640;y=780"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="26"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"><property name="icon-size" type="int" value="16"/></property>
  </property>
</channel>
)"));
    // The tests' bus starts nothing by itself.
    QDirIterator programs(u"/usr/lib"_s, {u"xfconfd"_s}, QDir::Files, QDirIterator::Subdirectories);
    QVERIFY2(programs.hasNext(), "the package xfconf, which xfce4-panel brings, is missing");
    m_settings.start(programs.next(), {});
    QVERIFY(m_settings.waitForStarted());
    QTRY_VERIFY(isOnBus(u"org.xfce.Xfconf"_s));

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"NO_AT_BRIDGE"_s, u"1"_s);
    environment.insert(u"GDK_BACKEND"_s, u"x11"_s);
    m_panel.setProcessEnvironment(environment);
    m_panel.setProgram(u"xfce4-panel"_s);
    m_panel.setArguments({u"--disable-wm-check"_s});
    m_panel.setProcessChannelMode(QProcess::MergedChannels);
}

void tst_TrayOnPanel::iconLivesWithThePanel()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    QTest::ignoreMessage(QtInfoMsg, "the desktop has no tray yet; the icon waits for one");
    auto *tray = new NySystemTrayService;
    QSignalSpy info(tray, &NySystemTrayService::showInfoRequested);
    QSignalSpy quit(tray, &NySystemTrayService::quitRequested);
    tray->show();
    QVERIFY(!isIconShown());

    m_panel.start();
    QVERIFY2(m_panel.waitForStarted(), qPrintable(m_panel.errorString()));
    QVERIFY(QTest::qWaitFor(isIconShown, 20000));

    // A plain click opens our own menu.
    QMenu *menu = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets())
        menu = menu ? menu : qobject_cast<QMenu *>(widget);
    QVERIFY(menu);
    // It runs a loop of its own until it closes.
    QSignalSpy aboutToShow(menu, &QMenu::aboutToShow);
    connect(menu, &QMenu::aboutToShow, menu, [menu] { QMetaObject::invokeMethod(menu, &QMenu::close, Qt::QueuedConnection); });
    QVERIFY(click(iconPixel() + QPoint(3, 3), 1));
    QTRY_COMPARE(aboutToShow.size(), 1);
    QTRY_VERIFY(!menu->isVisible());

    // The panel breaks down and is started again.
    stop(m_panel);
    QTRY_VERIFY(!isIconShown());
    m_panel.start();
    QVERIFY(m_panel.waitForStarted());
    QVERIFY(QTest::qWaitFor(isIconShown, 20000));

    // The panel goes for good and a tray of the X server takes its place: out of reach for this process, and no harm to it.
    stop(m_panel);
    QTRY_VERIFY(!isIconShown());
    QProcess trayer;
    trayer.start(u"trayer"_s, {u"--edge"_s, u"top"_s, u"--height"_s, u"24"_s});
    QVERIFY(trayer.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(NyTrayWatcher().isTrayThere(), 15000);
    tray->setShowLastProposalActionEnabled(true);
    QVERIFY(!QTest::qWaitFor(isIconShown, 1000));
    stop(trayer);
    // A panel that comes in the end gets the icon.
    m_panel.start();
    QVERIFY(m_panel.waitForStarted());
    QVERIFY(QTest::qWaitFor(isIconShown, 20000));

    // The other button opens the panel's form of the menu, right at the icon: the keys reach its entries.
    const QPoint icon = iconPixel();
    // The entries hold icons of the same red, above the panel. Until the panel has read them, it opens a menu of its own.
    bool isMenuShown = false;
    for (int attempt = 0; attempt < 10 && !isMenuShown; ++attempt) {
        QVERIFY(click(icon + QPoint(3, 3), 3));
        isMenuShown = QTest::qWaitFor([icon] { return iconPixel().y() < icon.y(); }, 1000);
        if (!isMenuShown)
            QVERIFY(press({u"Escape"_s}));
    }
    QVERIFY(isMenuShown);
    QVERIFY(press({u"Up"_s, u"Return"_s}));
    QTRY_COMPARE(quit.size(), 1);
    QCOMPARE(info.size(), 0);

    tray->hide();
    QTRY_VERIFY(!isIconShown());
}

void tst_TrayOnPanel::cleanupTestCase()
{
    stop(m_panel);
    stop(m_settings);
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    tst_TrayOnPanel test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_TrayOnPanel.moc"
