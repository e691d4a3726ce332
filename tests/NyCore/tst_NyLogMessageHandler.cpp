#include <QTest>

#include <cstdlib>
#include <thread>
#include <vector>

#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <NyGeneralSettings.h>
#include <NyLogMessageHandler.h>
#include <NyProgramConfig.h>

using namespace Qt::Literals::StringLiterals;

namespace
{

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int runChild(const QStringList &arguments)
{
    const QString how = arguments.value(0);
    NyLogMessageHandler::instance().setVerbose(true, QFileInfo(arguments.value(1)));
    qDebug() << "a first line";
    qInfo() << "a last line";
    if (how == u"exit")
        std::exit(0);
    if (how == u"fatal")
        qFatal("the end");
    if (how == u"static") {
        // Said while static objects are destroyed, after the handler's own work at the end.
        struct Late
        {
            ~Late() { qWarning() << "a late line"; }
        };
        static const Late late;
        std::exit(0);
    }
    return 0;
}

} // namespace

class tst_NyLogMessageHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void placeOfTheFile();
    void lineForm();
    void linesAreBuffered();
    void severeLineIsWrittenAtOnce();
    void oldLinesAreWritten();
    void manyLinesAreWritten();
    void notVerboseKeepsWarningsOnly();
    void emptyFileEndsLogging();
    void changeOfFile();
    void earlierHandlerStillHears();
    void lineBreaksCannotForgeLines();
    void manyThreads();
    void rotation();
    void nothingIsLostAtTheEnd_data();
    void nothingIsLostAtTheEnd();
    void fullDiskIsToldOnce();

private:
    QString logPath() const { return m_folder->filePath(u"program.log"_s); }
    QByteArray logged() const { return contentOf(logPath()); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<NyLogMessageHandler> m_handler;
};

void tst_NyLogMessageHandler::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
}

void tst_NyLogMessageHandler::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    m_folder = std::make_unique<QTemporaryDir>();
    m_handler = std::make_unique<NyLogMessageHandler>();
}

void tst_NyLogMessageHandler::cleanup()
{
    m_handler.reset();
}

void tst_NyLogMessageHandler::placeOfTheFile()
{
    QCOMPARE(
        NyGeneralSettings::instance().logFile().absoluteFilePath(), QDir::homePath() + u"/.local/share/VELMORA/log/quilloservice.log"_s);
}

void tst_NyLogMessageHandler::lineForm()
{
    m_handler->setVerbose(true, QFileInfo(logPath()));
    const QDateTime before = QDateTime::currentDateTime();
    QTest::ignoreMessage(QtDebugMsg, "a debug line true \"text\"");
    QTest::ignoreMessage(QtInfoMsg, "an info line");
    QTest::ignoreMessage(QtWarningMsg, "a warning");
    QTest::ignoreMessage(QtCriticalMsg, "an error");
    qDebug() << "a debug line" << true << u"text"_s;
    qInfo() << "an info line";
    qWarning() << "a warning";
    qCritical() << "an error";
    const QDateTime after = QDateTime::currentDateTime();
    const QList<QByteArray> lines = logged().split('\n');
    QCOMPARE(lines.size(), 5);
    const QByteArray expected[] = {"debug a debug line true \"text\"", "info an info line", "warning a warning", "critical an error"};
    for (int i = 0; i < 4; ++i) {
        const qsizetype blank = lines.at(i).indexOf(' ');
        QCOMPARE(lines.at(i).sliced(blank + 1), expected[i]);
        const QDateTime time = QDateTime::fromString(QString::fromLatin1(lines.at(i).first(blank)), Qt::ISODateWithMs);
        QVERIFY2(before <= time && time <= after, lines.at(i).constData());
    }
}

void tst_NyLogMessageHandler::linesAreBuffered()
{
    m_handler->setVerbose(true, QFileInfo(logPath()));
    QTest::ignoreMessage(QtInfoMsg, "a line");
    qInfo() << "a line";
    QCOMPARE(logged(), QByteArray());
    m_handler->flushLogFile();
    QVERIFY(logged().endsWith(" info a line\n"));
    const QByteArray once = logged();
    m_handler->flushLogFile();
    QCOMPARE(logged(), once);
}

void tst_NyLogMessageHandler::severeLineIsWrittenAtOnce()
{
    m_handler->setVerbose(true, QFileInfo(logPath()));
    QTest::ignoreMessage(QtInfoMsg, "before");
    QTest::ignoreMessage(QtWarningMsg, "trouble");
    qInfo() << "before";
    qWarning() << "trouble";
    QCOMPARE(logged().count('\n'), 2);
}

void tst_NyLogMessageHandler::oldLinesAreWritten()
{
    m_handler->setVerbose(true, QFileInfo(logPath()));
    QElapsedTimer time;
    time.start();
    int count = 0;
    while (logged().isEmpty() && time.elapsed() < 10000) {
        QTest::ignoreMessage(QtDebugMsg, "again");
        qDebug() << "again";
        ++count;
        QTest::qWait(100);
    }
    QVERIFY(!logged().isEmpty());
    QVERIFY2(time.elapsed() >= 1000, QByteArray::number(time.elapsed()).constData());
    QCOMPARE(logged().count('\n'), count);
}

void tst_NyLogMessageHandler::manyLinesAreWritten()
{
    m_handler->setVerbose(true, QFileInfo(logPath()));
    const QByteArray text(10'000, 'x');
    for (int i = 0; i < 7; ++i) {
        QTest::ignoreMessage(QtDebugMsg, text.constData());
        qDebug().noquote() << QString::fromLatin1(text);
    }
    QCOMPARE(logged().count('\n'), 7);
}

void tst_NyLogMessageHandler::notVerboseKeepsWarningsOnly()
{
    m_handler->setVerbose(false, QFileInfo(logPath()));
    QTest::ignoreMessage(QtDebugMsg, "debug");
    QTest::ignoreMessage(QtInfoMsg, "info");
    QTest::ignoreMessage(QtWarningMsg, "warning");
    qDebug() << "debug";
    qInfo() << "info";
    qWarning() << "warning";
    m_handler->flushLogFile();
    QCOMPARE(logged().count('\n'), 1);
    QVERIFY(logged().endsWith(" warning warning\n"));
}

void tst_NyLogMessageHandler::emptyFileEndsLogging()
{
    m_handler->setVerbose(true, QFileInfo(logPath()));
    QTest::ignoreMessage(QtInfoMsg, "kept");
    qInfo() << "kept";
    m_handler->setVerbose(false, QFileInfo());
    QVERIFY(logged().endsWith(" info kept\n"));
    QTest::ignoreMessage(QtWarningMsg, "not logged");
    qWarning() << "not logged";
    m_handler->flushLogFile();
    QCOMPARE(logged().count('\n'), 1);
    // And on again.
    m_handler->setVerbose(true, QFileInfo(logPath()));
    QTest::ignoreMessage(QtWarningMsg, "logged again");
    qWarning() << "logged again";
    QCOMPARE(logged().count('\n'), 2);
}

void tst_NyLogMessageHandler::changeOfFile()
{
    const QString other = m_folder->filePath(u"made/by the handler/other.log"_s);
    m_handler->setVerbose(true, QFileInfo(logPath()));
    QTest::ignoreMessage(QtInfoMsg, "one");
    qInfo() << "one";
    m_handler->setVerbose(true, QFileInfo(other));
    QTest::ignoreMessage(QtInfoMsg, "two");
    qInfo() << "two";
    m_handler->flushLogFile();
    QVERIFY(logged().endsWith(" info one\n"));
    QVERIFY(contentOf(other).endsWith(" info two\n"));
    QCOMPARE(contentOf(other).count('\n'), 1);
}

void tst_NyLogMessageHandler::earlierHandlerStillHears()
{
    static QStringList heard;
    heard.clear();
    const QtMessageHandler before
        = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &message) { heard.append(message); });
    m_handler->setVerbose(true, QFileInfo(logPath()));
    m_handler->setVerbose(true, QFileInfo(logPath()));
    qInfo() << "heard once";
    m_handler->setVerbose(false, QFileInfo());
    qInfo() << "heard still";
    qInstallMessageHandler(before);
    QCOMPARE(heard, QStringList({u"heard once"_s, u"heard still"_s}));
}

void tst_NyLogMessageHandler::lineBreaksCannotForgeLines()
{
    m_handler->setVerbose(true, QFileInfo(logPath()));
    QTest::ignoreMessage(QtWarningMsg, "name: a\n2026-01-01T00:00:00.000Z warning forged");
    qWarning().noquote() << "name:" << u"a\n2026-01-01T00:00:00.000Z warning forged"_s;
    QVERIFY(logged().endsWith(" warning name: a\n\t2026-01-01T00:00:00.000Z warning forged\n"));
}

void tst_NyLogMessageHandler::manyThreads()
{
    static std::atomic<int> heard;
    heard = 0;
    const QtMessageHandler before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) { ++heard; });
    m_handler->setVerbose(true, QFileInfo(logPath()));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([this, t] {
            for (int i = 0; i < 500; ++i) {
                qInfo() << "thread" << t << "line" << i;
                if (i % 50 == 0)
                    m_handler->flushLogFile();
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    m_handler->setVerbose(false, QFileInfo());
    qInstallMessageHandler(before);
    QCOMPARE(heard.load(), 2000);
    QList<QByteArray> lines = logged().split('\n');
    QVERIFY(lines.takeLast().isEmpty());
    QCOMPARE(lines.size(), 2000);
    const QRegularExpression form(u"^\\S+ info thread \\d line \\d+$"_s);
    for (const QByteArray &line : std::as_const(lines))
        QVERIFY2(form.match(QString::fromUtf8(line)).hasMatch(), line.constData());
}

void tst_NyLogMessageHandler::rotation()
{
    m_handler->setVerbose(true, QFileInfo(logPath()));
    QTest::ignoreMessage(QtWarningMsg, "before");
    qWarning() << "before";
    QVERIFY(QFile::resize(logPath(), 5 * 1024 * 1024));
    QTest::ignoreMessage(QtWarningMsg, "after");
    qWarning() << "after";
    QVERIFY(logged().endsWith(" warning after\n"));
    QCOMPARE(logged().count('\n'), 1);
    QCOMPARE(QFileInfo(logPath() + u".1"_s).size(), 5 * 1024 * 1024);
}

void tst_NyLogMessageHandler::nothingIsLostAtTheEnd_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QByteArray>("last");

    QTest::newRow("main returns") << u"return"_s << "info a last line"_ba;
    QTest::newRow("exit") << u"exit"_s << "info a last line"_ba;
    QTest::newRow("fatal message") << u"fatal"_s << "fatal the end"_ba;
    QTest::newRow("static object") << u"static"_s << "warning a late line"_ba;
}

void tst_NyLogMessageHandler::nothingIsLostAtTheEnd()
{
    QFETCH(QString, how);
    QFETCH(QByteArray, last);
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {u"--child"_s, how, logPath()});
    QVERIFY(child.waitForFinished(30000));
    QVERIFY2(logged().contains(" debug a first line\n"), logged().constData());
    QVERIFY2(logged().contains(" info a last line\n"), logged().constData());
    QVERIFY2(logged().endsWith(' ' + last + '\n'), logged().constData());
    // They reach the terminal as before.
    QVERIFY(child.readAllStandardError().contains("a last line"));
}

void tst_NyLogMessageHandler::fullDiskIsToldOnce()
{
    // This device takes nothing, as a full disk does.
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), {u"--child"_s, u"static"_s, u"/dev/full"_s});
    QVERIFY(child.waitForFinished(30000));
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
    const QByteArray said = child.readAllStandardError();
    QCOMPARE(said.count("cannot write the log file /dev/full: No space left on device"), 1);
    QVERIFY(said.contains("a late line"));
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--child")
        return runChild(arguments.sliced(2));
    tst_NyLogMessageHandler test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NyLogMessageHandler.moc"
