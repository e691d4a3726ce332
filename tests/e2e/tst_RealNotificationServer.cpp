#include "ServiceUnderTest.h"
#include "TestSupport.h"

#include <NyProgramConfig.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QTemporaryDir>
#include <QTest>

using namespace TestSupport;

/** The service, the builder and the main program with a notification server that people use, on a real display. */
class tst_RealNotificationServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void opened();
    void postponedAndOfferedAgain();
    void answeredAfterTheServerCameBack();

private:
    static bool serverIsThere()
    {
        return QDBusConnection::sessionBus().interface()->isServiceRegistered(QStringLiteral("org.freedesktop.Notifications"));
    }
    static QByteArray control(const QStringList &arguments)
    {
        QProcess process;
        process.start(QStringLiteral("dunstctl"), arguments);
        return process.waitForFinished(5000) ? process.readAllStandardOutput().trimmed() : QByteArray();
    }
    void startServer()
    {
        m_server.start(QStringLiteral("dunst"), {QStringLiteral("-conf"), m_folder.filePath(QStringLiteral("dunstrc"))});
        QTRY_VERIFY2(serverIsThere(), "dunst did not come up");
    }
    void stopServer()
    {
        m_server.terminate();
        m_server.waitForFinished(5000);
        QTRY_VERIFY(!serverIsThere());
    }
    /** The menu of a notification's buttons takes the one with this label. */
    void choose(const QString &label)
    {
        const QString script = m_folder.filePath(QStringLiteral("menu"));
        QVERIFY(writeFile(script, "#!/bin/sh\ngrep -m 1 '" + label.toUtf8() + "'\n"));
        QVERIFY(QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
    static bool shownCountIs(int count)
    {
        return control({QStringLiteral("count"), QStringLiteral("displayed")}) == QByteArray::number(count);
    }

    QTemporaryDir m_folder;
    QProcess m_server;
};

void tst_RealNotificationServer::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    QVERIFY(!qEnvironmentVariableIsEmpty("DISPLAY"));
    QVERIFY(writeFile(m_folder.filePath(QStringLiteral("dunstrc")),
        "[global]\n    dmenu = " + QFile::encodeName(m_folder.filePath(QStringLiteral("menu")))
            + "\n    markup = full\n    width = 400\n    notification_limit = 5\n    font = DejaVu Sans 10\n    idle_threshold = 0\n"));
}

void tst_RealNotificationServer::init()
{
    startServer();
}

void tst_RealNotificationServer::cleanup()
{
    if (m_server.state() != QProcess::NotRunning)
        stopServer();
}

void tst_RealNotificationServer::opened()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    QTRY_VERIFY_WITH_TIMEOUT(shownCountIs(1), 90000);
    choose(QStringLiteral("Jetzt ansehen"));
    control({QStringLiteral("context")});
    QTRY_COMPARE_WITH_TIMEOUT(ServiceUnderTest::runningMainPrograms().size(), 1, 30000);
    QCOMPARE(ServiceUnderTest::runningMainPrograms().first().value(0), QStringLiteral("--suppressLoadWarnings"));
    QCOMPARE(ServiceUnderTest::runningMainPrograms().first().value(1),
        service.proposalFolder() + QLatin1Char('/') + service.proposals().first());
    // A window of the main program is on the display.
    QTRY_VERIFY_WITH_TIMEOUT(
        [] {
            QProcess search;
            search.start(QStringLiteral("xdotool"),
                {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"), QStringLiteral("VELMORA ALBUMA")});
            search.waitForFinished();
            return !search.readAllStandardOutput().trimmed().isEmpty();
        }(),
        30000);
}

void tst_RealNotificationServer::postponedAndOfferedAgain()
{
    QVERIFY(ServiceUnderTest::hasFakeTime());
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick("<toastMessaging checkSchedule='1'/>");
    QTRY_VERIFY_WITH_TIMEOUT(shownCountIs(1), 90000);
    choose(QStringLiteral("Später ansehen"));
    control({QStringLiteral("context")});
    QTRY_VERIFY(!service.eventLog().filter(QStringLiteral("rescheduleToast PROJECTID:Produktvorschlag_")).isEmpty());
    service.terminate();
    QCOMPARE(service.waitForEnd(), 0);
    control({QStringLiteral("close-all")});
    QTRY_VERIFY(shownCountIs(0));

    service.pretendItIs(QDateTime(QDate::currentDate().addDays(7), QTime(18, 0, 0)));
    service.start();
    QTRY_VERIFY_WITH_TIMEOUT(shownCountIs(1), 30000);
    choose(QStringLiteral("Jetzt ansehen"));
    control({QStringLiteral("context")});
    QTRY_COMPARE_WITH_TIMEOUT(ServiceUnderTest::runningMainPrograms().size(), 1, 30000);
}

void tst_RealNotificationServer::answeredAfterTheServerCameBack()
{
    ServiceUnderTest service;
    service.addPictures(QStringLiteral("2026-07-11 Hochzeit"), 7);
    service.startQuick();
    QTRY_VERIFY_WITH_TIMEOUT(shownCountIs(1), 90000);
    stopServer();
    startServer();
    service.addPictures(QStringLiteral("2026-08-01 Sommerfest"), 7);
    QTRY_VERIFY_WITH_TIMEOUT(shownCountIs(1), 90000);
    choose(QStringLiteral("Jetzt ansehen"));
    control({QStringLiteral("context")});
    QTRY_COMPARE_WITH_TIMEOUT(ServiceUnderTest::runningMainPrograms().size(), 1, 30000);
    QVERIFY(ServiceUnderTest::runningMainPrograms().first().value(1).endsWith(service.proposals().last()));
}

QTEST_GUILESS_MAIN(tst_RealNotificationServer)
#include "tst_RealNotificationServer.moc"
