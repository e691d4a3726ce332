#include <QTest>

#include <thread>
#include <vector>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>

#include <NyDirectoryConfig.h>
#include <NyGeneralSettings.h>
#include <NyLogger.h>
#include <NyProgramConfig.h>

#include "NySmallDisk.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

QString logPath()
{
    return NyGeneralSettings::instance().eventLogFile().absoluteFilePath();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QList<QByteArray> lines()
{
    QList<QByteArray> result = contentOf(logPath()).split('\n');
    if (!result.isEmpty() && result.constLast().isEmpty())
        result.removeLast();
    return result;
}

constexpr qint64 LargestSize = 5 * 1024 * 1024;

int runChild(const QStringList &arguments)
{
    NyLogger logger;
    if (arguments.value(0) == u"many") {
        for (int i = 0; i < 2000; ++i)
            logger.logQuilloService(arguments.value(1) + QString::number(i) + QString(3000, u'x'));
    } else {
        logger.logQuilloService(u"first"_s);
        logger.logQuilloService(u"second"_s);
    }
    return 0;
}

} // namespace

class tst_NyLogger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void placeOfTheFile();
    void record();
    void hostileTexts_data();
    void hostileTexts();
    void recordIsInTheFileAtOnce();
    void closedFileIsOpenedAgain();
    void removedFileIsMadeAgain();
    void manyThreads();
    void rotation();
    void rotationByTwoProcesses();
    void fullDisk();
    void unwritableFolder();
};

void tst_NyLogger::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    QDir(NyDirectoryConfig::instance().logFolder()).removeRecursively();
}

void tst_NyLogger::placeOfTheFile()
{
    QCOMPARE(logPath(), QDir::homePath() + u"/.local/share/VELMORA/log/quilloservice-events.log"_s);
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    const QString ofTheMainProgram = logPath();
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    QCOMPARE(ofTheMainProgram, QDir::homePath() + u"/.local/share/VELMORA/log/velmora-albuma-events.log"_s);
}

void tst_NyLogger::record()
{
    NyLogger logger;
    const QDateTime before = QDateTime::currentDateTime();
    logger.logQuilloService(u"runService VALUES:%1"_s);
    const QDateTime after = QDateTime::currentDateTime();
    QCOMPARE(lines().size(), 1);
    const QList<QByteArray> parts = lines().constFirst().split('\t');
    QCOMPARE(parts.size(), 2);
    QCOMPARE(parts.at(1), "runService VALUES:%1");
    const QDateTime time = QDateTime::fromString(QString::fromLatin1(parts.at(0)), Qt::ISODateWithMs);
    QVERIFY2(before <= time && time <= after, parts.at(0).constData());
    QVERIFY(QRegularExpression(u"[+-]\\d\\d:\\d\\d$|Z$"_s).match(QString::fromLatin1(parts.at(0))).hasMatch());
}

void tst_NyLogger::hostileTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("recorded");

    QTest::newRow("empty") << QString() << ""_ba;
    QTest::newRow("line break") << u"a\n2026-01-01\tforged"_s << "a\\n2026-01-01\tforged"_ba;
    QTest::newRow("return") << u"a\r\nb"_s << "a\\r\\nb"_ba;
    QTest::newRow("backslash") << u"a\\nb"_s << "a\\\\nb"_ba;
    QTest::newRow("unicode") << u"\u00e4 \u65e5"_s << "\xc3\xa4 \xe6\x97\xa5"_ba;
    QTest::newRow("percent") << u"%s%n%1"_s << "%s%n%1"_ba;
}

void tst_NyLogger::hostileTexts()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, recorded);
    NyLogger().logQuilloService(text);
    QCOMPARE(lines().size(), 1);
    const QByteArray line = lines().constFirst();
    QCOMPARE(line.sliced(line.indexOf('\t') + 1), recorded);
}

void tst_NyLogger::recordIsInTheFileAtOnce()
{
    NyLogger logger;
    for (int i = 1; i <= 3; ++i) {
        logger.logQuilloService(u"record"_s);
        QCOMPARE(lines().size(), i);
    }
}

void tst_NyLogger::closedFileIsOpenedAgain()
{
    NyLogger logger;
    logger.logQuilloService(u"one"_s);
    logger.closeFile();
    logger.closeFile();
    logger.logQuilloService(u"two"_s);
    QCOMPARE(lines().size(), 2);
}

void tst_NyLogger::removedFileIsMadeAgain()
{
    NyLogger logger;
    logger.logQuilloService(u"one"_s);
    QVERIFY(QFile::remove(logPath()));
    logger.logQuilloService(u"two"_s);
    QCOMPARE(lines().size(), 1);
    QVERIFY(lines().constFirst().endsWith("\ttwo"));
}

void tst_NyLogger::manyThreads()
{
    NyLogger logger;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&logger, t] {
            for (int i = 0; i < 250; ++i)
                logger.logQuilloService(u"thread %1 record %2"_s.arg(t).arg(i));
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(lines().size(), 1000);
    const QRegularExpression form(u"^\\S+\tthread \\d record \\d+$"_s);
    const QList<QByteArray> all = lines();
    for (const QByteArray &line : all)
        QVERIFY2(form.match(QString::fromUtf8(line)).hasMatch(), line.constData());
}

void tst_NyLogger::rotation()
{
    NyLogger logger;
    const QString text(1000, u'x');
    logger.logQuilloService(u"the first of all"_s);
    // One record is little more than a kilobyte: the fifth file begins after some 20 MiB.
    QFile first(logPath());
    for (int file = 0; file < 4; ++file) {
        // Brought near the limit by hand, so that the test need not write 20 MiB in small records.
        QVERIFY(QFile::resize(logPath(), LargestSize - 2000));
        logger.logQuilloService(u"last of file %1"_s.arg(file));
        QVERIFY(QFileInfo(logPath()).size() < LargestSize);
        QVERIFY(QFileInfo(logPath()).size() > LargestSize - 2000);
        logger.logQuilloService(text + text);
        QVERIFY(QFileInfo(logPath()).size() < 3000);
    }
    QVERIFY(contentOf(logPath() + u".1"_s).contains("last of file 3"));
    QVERIFY(contentOf(logPath() + u".2"_s).contains("last of file 2"));
    QVERIFY(contentOf(logPath() + u".3"_s).contains("last of file 1"));
    QCOMPARE(QDir(NyDirectoryConfig::instance().logFolder()).entryList(QDir::Files).size(), 4);
}

void tst_NyLogger::rotationByTwoProcesses()
{
    // Each writes 6 MiB of records into the same file.
    QProcess a;
    QProcess b;
    a.setProcessChannelMode(QProcess::ForwardedChannels);
    b.setProcessChannelMode(QProcess::ForwardedChannels);
    a.start(QCoreApplication::applicationFilePath(), {u"--child"_s, u"many"_s, u"a"_s});
    b.start(QCoreApplication::applicationFilePath(), {u"--child"_s, u"many"_s, u"b"_s});
    QVERIFY(a.waitForFinished(30000));
    QVERIFY(b.state() == QProcess::NotRunning || b.waitForFinished(30000));
    QCOMPARE(a.exitCode(), 0);
    QCOMPARE(b.exitCode(), 0);
    int records = 0;
    for (const QString &ending : {u".3"_s, u".2"_s, u".1"_s, u""_s}) {
        const QByteArray content = contentOf(logPath() + ending);
        // While one process is held up in the middle of setting the file aside, the other goes on appending to it.
        QVERIFY2(content.size() < 2 * LargestSize, QByteArray::number(content.size()).constData());
        records += static_cast<int>(content.count('\n'));
    }
    QCOMPARE(records, 4000);
    QVERIFY(QFile::exists(logPath() + u".2"_s));
}

void tst_NyLogger::fullDisk()
{
    NySmallDisk disk;
    if (!disk.isMounted())
        QSKIP("mounting is not allowed here");
    const QString folder = NyDirectoryConfig::instance().logFolder();
    QVERIFY(QDir().mkpath(QFileInfo(folder).absolutePath()));
    QVERIFY(QFile::link(disk.path(), folder));
    QProcess child;
    QVERIFY(disk.fill());
    child.start(QCoreApplication::applicationFilePath(), {u"--child"_s, u"two"_s});
    QVERIFY(child.waitForFinished(30000));
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
    // Told once, though two records are lost.
    QCOMPARE(
        child.readAllStandardError().trimmed(), "cannot write the log file " + QFile::encodeName(logPath()) + ": No space left on device");

    // With room again, the same logger goes on.
    NyLogger logger;
    logger.logQuilloService(u"lost"_s);
    QVERIFY(disk.clear());
    logger.logQuilloService(u"kept"_s);
    QCOMPARE(lines().size(), 1);
    QVERIFY(lines().constFirst().endsWith("\tkept"));
    logger.closeFile();

    // A record that fits only in part does not spoil the next one.
    QVERIFY(QFile::resize(logPath(), 0));
    QVERIFY(disk.fill(4096));
    logger.logQuilloService(QString(10'000, u'y'));
    QVERIFY(disk.clear());
    logger.logQuilloService(u"whole"_s);
    QCOMPARE(lines().size(), 2);
    QVERIFY(lines().constLast().endsWith("\twhole"));
    QVERIFY(QFile::remove(folder));
}

void tst_NyLogger::unwritableFolder()
{
    const QString folder = NyDirectoryConfig::instance().logFolder();
    QVERIFY(QDir().mkpath(QFileInfo(folder).absolutePath()));
    QFile obstacle(folder);
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {u"--child"_s, u"two"_s});
    QVERIFY(child.waitForFinished(30000));
    QCOMPARE(child.exitCode(), 0);
    const QByteArray message = child.readAllStandardError().trimmed();
    QVERIFY2(message.startsWith("cannot write the log file " + QFile::encodeName(logPath())), message.constData());
    QCOMPARE(message.count('\n'), 0);
    QVERIFY(obstacle.remove());
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--child")
        return runChild(arguments.sliced(2));
    tst_NyLogger test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NyLogger.moc"
