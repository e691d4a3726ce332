#include "ServiceUnderTest.h"

#include "TestSupport.h"

#include <NyConfigItem.h>
#include <NyInstallationSettings.h>

#include <QDir>
#include <QPainter>
#include <QRandomGenerator>

#include <csignal>

using namespace TestSupport;

namespace
{
QString mainProgram()
{
    return QStringLiteral(NY_BIN_DIR "/VELMORA ALBUMA");
}

QString fakeTimeLibrary()
{
    const QStringList folders = QDir(QStringLiteral("/usr/lib")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &folder : folders) {
        const QString path = QStringLiteral("/usr/lib/%1/faketime/libfaketime.so.1").arg(folder);
        if (QFile::exists(path))
            return path;
    }
    return QString();
}

void empty(const QString &folder)
{
    // Qt does not see names that are not UTF-8, and would leave them.
    QProcess::execute(QStringLiteral("rm"), {QStringLiteral("-rf"), QStringLiteral("--"), folder});
    QDir().mkpath(folder);
}

QList<qint64> mainProgramIds()
{
    QList<qint64> ids;
    const QString executable = QFileInfo(mainProgram()).canonicalFilePath();
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        bool isId = false;
        const qint64 id = entry.toLongLong(&isId);
        if (!isId || QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(entry)) != executable)
            continue;
        // Tests run beside each other: only programs with this test's home count.
        if (readFile(QStringLiteral("/proc/%1/environ").arg(entry)).split('\0').contains("HOME=" + QFile::encodeName(QDir::homePath())))
            ids.append(id);
    }
    return ids;
}
}

ServiceUnderTest::ServiceUnderTest()
    : m_environment(QProcessEnvironment::systemEnvironment())
{
    empty(picturesHome());
    empty(configFolder());
    empty(dataFolder());
    empty(QDir::homePath() + QStringLiteral("/.config/autostart"));
    empty(markerFolder());
    m_process.setProcessChannelMode(QProcess::MergedChannels);
}

ServiceUnderTest::~ServiceUnderTest()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.terminate();
        if (!m_process.waitForFinished(5000)) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }
    if (QTest::currentTestFailed()) {
        fprintf(stderr, "--- log of the service\n%s--- output of the service\n%s---\n", qPrintable(log()), output().constData());
        fflush(stderr);
    }
    endMainPrograms();
}

void ServiceUnderTest::addPictures(const QString &folder, int count)
{
    const QString path = picturesHome() + QLatin1Char('/') + folder;
    QDir().mkpath(path);
    for (int i = 0; i < count; ++i) {
        QRandomGenerator random(static_cast<quint32>(++m_seed));
        QImage image(1200, 800, QImage::Format_RGB32);
        image.fill(QColor::fromHsv(random.bounded(360), 120, 200));
        QPainter painter(&image);
        for (int shape = 0; shape < 60; ++shape) {
            painter.setBrush(QColor::fromHsv(random.bounded(360), 80 + random.bounded(170), 60 + random.bounded(190)));
            const QRect box(random.bounded(1100), random.bounded(700), 40 + random.bounded(300), 40 + random.bounded(200));
            if (random.bounded(2))
                painter.drawEllipse(box);
            else
                painter.drawRect(box);
        }
        painter.end();
        image.save(path + QStringLiteral("/img%1.jpg").arg(m_seed, 4, 10, QLatin1Char('0')), "JPEG", 85);
    }
}

QString ServiceUnderTest::picturesHome() const
{
    return QDir::homePath() + QStringLiteral("/Pictures");
}

QByteArray ServiceUnderTest::quickSections(const QByteArray &more)
{
    return "<recentFiles minimumPhotos='5'/>"
           "<suggestion waitForIdleDuration='1'/>"
           "<debug enabled='true' durationBetweenChecks='1' inactivityDuration='0' minimumWaitTimeInitialPhase='0' preferredDaysStart='0' "
           "preferredDaysEnd='7'/>"
        + more;
}

void ServiceUnderTest::writeConfiguration(const QByteArray &sections)
{
    QVERIFY(writeServiceConfig(sections));
}

void ServiceUnderTest::allowAutostart()
{
    NyInstallationSettings::instance().setAutoStartService(true, true);
}

void ServiceUnderTest::pretendItIs(const QDateTime &moment)
{
    m_environment.insert(QStringLiteral("LD_PRELOAD"), fakeTimeLibrary());
    m_environment.insert(QStringLiteral("FAKETIME"), moment.toString(QStringLiteral("'@'yyyy-MM-dd HH:mm:ss")));
    // Timers keep their real pace.
    m_environment.insert(QStringLiteral("DONT_FAKE_MONOTONIC"), QStringLiteral("1"));
    m_environment.insert(QStringLiteral("NO_FAKE_STAT"), QStringLiteral("1"));
}

void ServiceUnderTest::quickenTime(int factor)
{
    m_environment.insert(QStringLiteral("LD_PRELOAD"), fakeTimeLibrary());
    m_environment.insert(QStringLiteral("FAKETIME"), QStringLiteral("+0 x%1").arg(factor));
    m_environment.insert(QStringLiteral("NO_FAKE_STAT"), QStringLiteral("1"));
}

bool ServiceUnderTest::hasFakeTime()
{
    return !fakeTimeLibrary().isEmpty();
}

QString ServiceUnderTest::useOwnProgramFolder()
{
    m_programFolder = QDir::homePath() + QStringLiteral("/programs");
    empty(m_programFolder);
    const QString copy = m_programFolder + QStringLiteral("/quilloservice");
    [&] { QVERIFY(QFile::copy(QStringLiteral(NY_BIN_DIR "/quilloservice"), copy)); }();
    m_environment.insert(QStringLiteral("LD_LIBRARY_PATH"), QStringLiteral(NY_LIB_DIR));
    return m_programFolder;
}

void ServiceUnderTest::start(const QStringList &arguments)
{
    m_process.setProcessEnvironment(m_environment);
    m_process.start(binary(QStringLiteral("quilloservice")), arguments);
    QVERIFY(m_process.waitForStarted());
}

void ServiceUnderTest::startQuick(const QByteArray &moreSections)
{
    writeConfiguration(quickSections(moreSections));
    allowAutostart();
    start();
}

int ServiceUnderTest::run(const QStringList &arguments, int timeoutMs)
{
    start(arguments);
    return waitForEnd(timeoutMs);
}

int ServiceUnderTest::waitForEnd(int timeoutMs)
{
    if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(timeoutMs))
        return -1000;
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1001;
}

QByteArray ServiceUnderTest::output()
{
    m_output += m_process.readAll();
    return m_output;
}

QString ServiceUnderTest::log() const
{
    return QString::fromUtf8(readFile(dataFolder() + QStringLiteral("/log/quilloservice.log")));
}

QStringList ServiceUnderTest::eventLog() const
{
    return TestSupport::eventLog();
}

QStringList ServiceUnderTest::proposals() const
{
    return QDir(proposalFolder()).entryList({QStringLiteral("*.nqp")}, QDir::Files, QDir::Name);
}

QString ServiceUnderTest::proposalFolder() const
{
    return dataFolder() + QStringLiteral("/proposals");
}

QString ServiceUnderTest::markerFolder() const
{
    return QDir::tempPath() + QStringLiteral("/VELMORA");
}

QString ServiceUnderTest::binary(const QString &name) const
{
    const QString own = m_programFolder + QLatin1Char('/') + name;
    return !m_programFolder.isEmpty() && QFile::exists(own) ? own : QStringLiteral(NY_BIN_DIR "/") + name;
}

QList<QStringList> ServiceUnderTest::runningMainPrograms()
{
    QList<QStringList> result;
    const QList<qint64> ids = mainProgramIds();
    for (const qint64 id : ids) {
        QStringList arguments;
        const QList<QByteArray> parts = readFile(QStringLiteral("/proc/%1/cmdline").arg(id)).split('\0');
        for (qsizetype i = 1; i + 1 < parts.size(); ++i)
            arguments.append(QString::fromUtf8(parts.at(i)));
        // The builder ends a moment after the book that it has made is offered.
        if (!arguments.contains(QStringLiteral("--programmode")))
            result.append(arguments);
    }
    return result;
}

void ServiceUnderTest::endMainPrograms()
{
    const QList<qint64> ids = mainProgramIds();
    for (const qint64 id : ids)
        ::kill(static_cast<pid_t>(id), SIGKILL);
    QTRY_VERIFY_WITH_TIMEOUT(mainProgramIds().isEmpty(), 30000);
}
