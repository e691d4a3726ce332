#include "MockNotificationServer.h"
#include "ServiceUnderTest.h"
#include "TestSupport.h"

#include <NyProgramConfig.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QProcess>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
using namespace TestSupport;

/** Both programs in the language of the user's surroundings, whether or not the system has that locale. */
class tst_Languages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void proposal_data();
    void proposal();
    void commandLine_data() { surroundings(); }
    void commandLine();
    void serviceHelpIsEnglish_data() { surroundings(); }
    void serviceHelpIsEnglish();
    void noDisplay();

private:
    static void surroundings();
    static void apply(QProcessEnvironment &environment, const QStringList &variables);
    /** What the main program prints on both channels. */
    static QString mainProgramSays(const QStringList &variables, const QStringList &arguments);
};

void tst_Languages::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
}

void tst_Languages::surroundings()
{
    QTest::addColumn<QStringList>("variables");
    QTest::addColumn<bool>("isEnglish");
    const auto row = [](const QStringList &variables, bool isEnglish) {
        QTest::addRow("%s", qPrintable(variables.join(u' '))) << variables << isEnglish;
    };
    row({u"LC_ALL=C.UTF-8"_s}, false);
    row({u"LANG=POSIX"_s}, false);
    row({}, false);
    row({u"LANG=de_DE.UTF-8"_s}, false);
    row({u"LANG=de_CH.UTF-8"_s, u"LANGUAGE="_s}, false);
    row({u"LANG=en_US.UTF-8"_s, u"LC_MESSAGES=de_AT.UTF-8"_s}, false);
    row({u"LANG=en_US.UTF-8"_s, u"LANGUAGE=fr:de:en"_s}, false);
    row({u"LANG=de_DE.UTF-8"_s, u"LANGUAGE=en"_s}, true);
    row({u"LC_ALL=C.UTF-8"_s, u"LANGUAGE=en"_s}, true);
    row({u"LC_ALL=en_GB.UTF-8"_s}, true);
    row({u"LANG=fr_FR.UTF-8"_s}, true);
    row({u"LANG=ja_JP.UTF-8"_s}, true);
    row({u"LANG=de_DE.UTF-8"_s, u"LC_ALL=en_US.UTF-8"_s}, true);
}

void tst_Languages::apply(QProcessEnvironment &environment, const QStringList &variables)
{
    for (const auto &name : {u"LANGUAGE"_s, u"LC_ALL"_s, u"LC_MESSAGES"_s, u"LANG"_s})
        environment.remove(name);
    for (const QString &variable : variables)
        environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
}

QString tst_Languages::mainProgramSays(const QStringList &variables, const QStringList &arguments)
{
    // Ends all main programs when it goes, so it goes first.
    const QString program = ServiceUnderTest().binary(u"VELMORA ALBUMA"_s);
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    apply(environment, variables);
    environment.remove(u"DISPLAY"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    return process.waitForFinished(30000) ? QString::fromUtf8(process.readAll()) : QString();
}

void tst_Languages::proposal_data()
{
    QTest::addColumn<QStringList>("variables");
    QTest::addColumn<bool>("isEnglish");
    QTest::newRow("English in a German place") << QStringList{u"LANG=de_DE.UTF-8"_s, u"LANGUAGE=en"_s} << true;
    QTest::newRow("French") << QStringList{u"LANG=fr_FR.UTF-8"_s} << true;
    QTest::newRow("German") << QStringList{u"LANG=de_DE.UTF-8"_s} << false;
}

void tst_Languages::proposal()
{
    QFETCH(QStringList, variables);
    QFETCH(bool, isEnglish);
    MockNotificationServer server;
    QVERIFY(server.start());
    ServiceUnderTest service;
    apply(service.environment(), variables);
    service.addPictures(u"2026-07-11 Wedding"_s, 7);
    service.startQuick();
    QTRY_COMPARE_WITH_TIMEOUT(server.notifications().size(), 1, 90000);

    const QDate today = QDate::currentDate();
    const QString name = (isEnglish ? u"Product-Proposal_%1.nqp"_s : u"Produktvorschlag_%1.nqp"_s).arg(today.toString(Qt::ISODate));
    QCOMPARE(service.proposals(), QStringList{name});
    const MockNotificationServer::Notification offer = server.notifications().first();
    QVERIFY2(offer.body.startsWith(isEnglish ? u"Your new personal proposal for a VELMORA ALBUMA has been created.<br>"_s
                                             : u"Ihr neuer, persönlicher Vorschlag für ein VELMORA ALBUMA wurde erstellt.<br>"_s),
        qPrintable(offer.body));
    QCOMPARE(offer.actions,
        (QStringList{u"show:"_s + name, isEnglish ? u"View Now"_s : u"Jetzt ansehen"_s, u"reschedule:"_s + name,
            isEnglish ? u"View Later"_s : u"Später ansehen"_s}));

    // The builder writes the book in the same language. The pictures are from now, so the book's day is today.
    const QJsonObject description = QJsonDocument::fromJson(readFile(service.proposalFolder() + u'/' + name + u".json"_s)).object();
    QCOMPARE(description.value("headline"_L1).toString(), u"Wedding"_s);
    QCOMPARE(description.value("subline"_L1).toString(),
        isEnglish ? QLocale(QLocale::English).toString(today, u"d MMMM yyyy"_s)
                  : QLocale(QLocale::German).toString(today, u"d. MMMM yyyy"_s));
    QCOMPARE(description.value("menu"_L1).toArray().first().toObject().value("title"_L1).toString(),
        isEnglish ? u"Open proposal"_s : u"Vorschlag öffnen"_s);

    // What follows a press goes by the name, whatever word it begins with.
    server.invokeAction(offer.id, u"show:"_s + name);
    const QStringList expected{u"--suppressLoadWarnings"_s, service.proposalFolder() + u'/' + name};
    QTRY_VERIFY_WITH_TIMEOUT(ServiceUnderTest::runningMainPrograms().contains(expected), 30000);
}

void tst_Languages::commandLine()
{
    QFETCH(QStringList, variables);
    QFETCH(bool, isEnglish);
    const QString help = mainProgramSays(variables, {u"--help"_s});
    QVERIFY2(help.contains(isEnglish ? u"Displays this help."_s : u"Zeigt diese Hilfe an."_s), qPrintable(help));
    // Of Qt's own texts.
    QVERIFY2(help.contains(isEnglish ? u"Options:"_s : u"Optionen:"_s), qPrintable(help));
    const QString error = mainProgramSays(variables, {u"--programmode"_s, u"x"_s});
    QCOMPARE(error,
        isEnglish ? u"VELMORA ALBUMA: There is no program mode \"x\".\n"_s
                  : u"VELMORA ALBUMA: Den Programm-Modus \"x\" gibt es nicht.\n"_s);
}

void tst_Languages::serviceHelpIsEnglish()
{
    QFETCH(QStringList, variables);
    ServiceUnderTest service;
    apply(service.environment(), variables);
    QCOMPARE(service.run({u"--help"_s}), 0);
    const QByteArray help = service.output();
    for (const char *text : {"Options:", "Displays this help.", "Switches the current Mode of the Service."})
        QVERIFY2(help.contains(text), help.constData());
    QVERIFY2(!help.contains("Optionen") && !help.contains("Hilfe"), help.constData());
}

void tst_Languages::noDisplay()
{
    QVERIFY(mainProgramSays({u"LANG=en_US.UTF-8"_s}, {}).contains(u"No window can be opened because no display is available."_s));
    QVERIFY(mainProgramSays({u"LANG=de_DE.UTF-8"_s}, {}).contains(u"Es kann kein Fenster geöffnet werden"_s));
}

QTEST_GUILESS_MAIN(tst_Languages)
#include "tst_Languages.moc"
