#include "TestSupport.h"

#include <NyQuilloServiceInstallHandlerLinux.h>

#include <QCoreApplication>
#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace
{

/** What a copy of this program does instead of testing; see main(). */
constexpr const char *TASK = "NY_TEST_TASK";
constexpr const char *TARGET = "NY_TEST_TARGET";

struct Outcome
{
    int code = -1;
    QString output;
};

Outcome run(const QString &program, const QStringList &arguments, const QStringList &variables = {})
{
    QProcess process;
    QStringList environment = QProcess::systemEnvironment();
    environment += variables;
    process.setEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(30000))
        return {-1, process.errorString()};
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, QString::fromUtf8(process.readAll())};
}

}

/** The autostart entry before the programs that read it, with the executable in folders of many names. */
class tst_AutostartEntry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void entryIsUnderstood_data();
    void entryIsUnderstood();
    void desktopsAreLenient_data();
    void desktopsAreLenient();

private:
    /** Puts a copy of this program into a folder of that name and lets it write the entry. Empty on failure. */
    QString install(const QString &folderName);
    /** The unit that systemd would start with the session; empty when it makes none. */
    QString systemdUnit() const;
    /** The path of the program that a desktop starts by the entry; empty when none comes up. */
    QString startedByGlib() const;

    QTemporaryDir m_folder;
    QString m_entry;
};

void tst_AutostartEntry::initTestCase()
{
    QVERIFY(m_folder.isValid());
    m_entry = QDir::homePath() + u"/.config/autostart/velmora.dorn.quillo.desktop"_s;
}

QString tst_AutostartEntry::install(const QString &folderName)
{
    QFile::remove(m_entry);
    const QString folder = m_folder.filePath(folderName);
    const QString program = folder + u"/quilloservice"_s;
    if (!QDir().mkpath(folder) || (!QFile::exists(program) && !QFile::copy(QCoreApplication::applicationFilePath(), program)))
        return QString();
    const Outcome outcome = run(program, {}, {QString::fromLatin1(TASK) + u"=write"_s});
    if (outcome.code != 0 || !QFile::exists(m_entry)) {
        qInfo().noquote() << outcome.code << outcome.output;
        return QString();
    }
    return program;
}

QString tst_AutostartEntry::systemdUnit() const
{
    QTemporaryDir units;
    const QStringList folders{units.filePath(u"normal"_s), units.filePath(u"early"_s), units.filePath(u"late"_s)};
    for (const QString &folder : folders)
        QDir().mkpath(folder);
    const Outcome outcome
        = run(u"/usr/lib/systemd/user-generators/systemd-xdg-autostart-generator"_s, folders, {u"XDG_CURRENT_DESKTOP=GNOME"_s});
    if (outcome.code != 0) {
        qInfo().noquote() << "The generator of the package systemd:" << outcome.code << outcome.output;
        return QString();
    }
    QDirIterator files(units.path(), {u"app-velmora*.service"_s}, QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    if (!files.hasNext()) {
        qInfo().noquote() << outcome.output;
        return QString();
    }
    const QString unit = m_folder.filePath(u"app-velmora.service"_s);
    QFile::remove(unit);
    return QFile::copy(files.next(), unit) ? unit : QString();
}

QString tst_AutostartEntry::startedByGlib() const
{
    const QString mark = m_folder.filePath(u"mark"_s);
    QFile::remove(mark);
    const Outcome outcome
        = run(u"gio"_s, {u"launch"_s, m_entry}, {QString::fromLatin1(TASK) + u"=tell"_s, QString::fromLatin1(TARGET) + u'=' + mark});
    if (outcome.code != 0)
        return QString();
    // It does not wait for what it starts.
    [&] { QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(mark), 20000); }();
    return QString::fromUtf8(TestSupport::readFile(mark));
}

void tst_AutostartEntry::entryIsUnderstood_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("plain") << u"velmora"_s;
    QTest::newRow("blanks") << u"VELMORA ALBUMA  2"_s;
    QTest::newRow("umlauts") << u"Bücher für Größe"_s;
    QTest::newRow("other letters") << u"写真 Фото"_s;
    QTest::newRow("marks") << u"a;b&c#d=e,f+g@h!"_s;
    QTest::newRow("brackets") << u"(a) [b] {c} <d>"_s;
    QTest::newRow("patterns") << u"~a*b?c|d"_s;
}

void tst_AutostartEntry::entryIsUnderstood()
{
    QFETCH(QString, folder);
    const QString program = install(folder);
    QVERIFY(!program.isEmpty());

    const Outcome validation = run(u"desktop-file-validate"_s, {m_entry});
    QVERIFY2(validation.code == 0, qPrintable(validation.output));
    QCOMPARE(validation.output, QString());

    // Sessions that systemd starts, such as those of GNOME and Plasma.
    const QString unit = systemdUnit();
    QVERIFY(!unit.isEmpty());
    const QString text = QString::fromUtf8(TestSupport::readFile(unit));
    QVERIFY2(text.contains(u"\nDescription=VELMORA Hintergrunddienst\n"_s), qPrintable(text));
    QVERIFY2(text.contains(program), qPrintable(text));
    // This complains of a program that is not there, too.
    const Outcome unitCheck = run(u"systemd-analyze"_s, {u"--user"_s, u"--man=no"_s, u"--recursive-errors=no"_s, u"verify"_s, unit});
    QVERIFY2(unitCheck.code == 0, qPrintable(unitCheck.output));
    QVERIFY2(!unitCheck.output.contains(u"app-velmora"_s), qPrintable(unitCheck.output));

    // Sessions that start entries themselves.
    QCOMPARE(startedByGlib(), program);
}

void tst_AutostartEntry::desktopsAreLenient_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("single quote") << u"it's"_s;
    QTest::newRow("variable") << u"$HOME"_s;
    QTest::newRow("command") << u"$(id) `id`"_s;
}

/** The rules for entries want marks before these, and systemd refuses them; GLib takes them as they are, and never as a shell would. */
void tst_AutostartEntry::desktopsAreLenient()
{
    QFETCH(QString, folder);
    const QString program = install(folder);
    QVERIFY(!program.isEmpty());
    QCOMPARE(startedByGlib(), program);
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QByteArray task = qgetenv(TASK);
    if (task == "write")
        return NyQuilloServiceInstallHandlerLinux().createAutoStartFile() ? 0 : 1;
    if (task == "tell") {
        const QString target = qEnvironmentVariable(TARGET);
        const QByteArray path = QCoreApplication::applicationFilePath().toUtf8();
        // Whole or not there at all: somebody waits for it.
        return argc == 1 && TestSupport::writeFile(target + u".new"_s, path) && QFile::rename(target + u".new"_s, target) ? 0 : 1;
    }
    tst_AutostartEntry test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_AutostartEntry.moc"
