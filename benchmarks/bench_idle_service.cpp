// What the running service costs between two scans, beside a bare Qt tray program: resident memory, wake-ups, start.
//
// Usage: bench_idle_service QUILLOSERVICE [PHOTOS]. Runs both programs in turn, in a home of its own, on the display that it is
// started on; without one, offscreen. What a user has is a display with a tray.

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QProcess>
#include <QStandardPaths>
#include <QSystemTrayIcon>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace
{
constexpr int rounds = 7;
constexpr int idleSeconds = 30;

/** The reference: what any tray program of Qt costs. */
int runBareTrayProgram(int argc, char **argv)
{
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::red);
    QSystemTrayIcon tray{QIcon(pixmap)};
    QMenu menu;
    for (int i = 0; i < 4; ++i)
        menu.addAction(QStringLiteral("Entry %1").arg(i));
    tray.setContextMenu(&menu);
    tray.setToolTip(QStringLiteral("bare"));
    tray.show();
    return QApplication::exec();
}

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** Resident memory in KiB; 0 if the process is gone. */
qint64 residentKiB(qint64 processId)
{
    const QList<QByteArray> lines = readAll(QStringLiteral("/proc/%1/status").arg(processId)).split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).simplified().split(' ').first().toLongLong();
    }
    return 0;
}

/** How often the threads of a process gave up the processor by themselves so far. */
qint64 wakeUps(qint64 processId)
{
    qint64 sum = 0;
    const QString tasks = QStringLiteral("/proc/%1/task").arg(processId);
    const QStringList threads = QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &thread : threads) {
        const QList<QByteArray> lines = readAll(tasks + QLatin1Char('/') + thread + QStringLiteral("/status")).split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith("voluntary_ctxt_switches:"))
                sum += line.mid(24).trimmed().toLongLong();
        }
    }
    return sum;
}

/** Whether the main thread waits in poll() or ppoll(), as an event loop does that has nothing to do. */
bool waitsForEvents(qint64 processId)
{
    const QByteArray call = readAll(QStringLiteral("/proc/%1/syscall").arg(processId));
    return call.startsWith("7 ") || call.startsWith("271 ");
}

/** Milliseconds from the start to the first wait of the event loop that lasts. */
double startMs(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    QElapsedTimer timer;
    timer.start();
    process.start(program, arguments);
    process.waitForStarted();
    double firstSeen = 0;
    int inARow = 0;
    // Start-up has short waits of its own, for the bus: only one that lasts is the event loop's.
    while (timer.elapsed() < 10000 && inARow < 20) {
        if (waitsForEvents(process.processId())) {
            if (inARow++ == 0)
                firstSeen = static_cast<double>(timer.nsecsElapsed()) / 1e6;
        } else {
            inARow = 0;
        }
        QThread::usleep(500);
    }
    process.kill();
    process.waitForFinished();
    return firstSeen;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

void write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}
}

int main(int argc, char **argv)
{
    if (argc > 1 && qstrcmp(argv[1], "--bare") == 0)
        return runBareTrayProgram(argc, argv);
    QCoreApplication application(argc, argv);
    if (argc < 2) {
        fprintf(stderr, "Usage: bench_idle_service QUILLOSERVICE [PHOTOS]\n");
        return 2;
    }
    const QString service = QString::fromLocal8Bit(argv[1]);
    const int photos = argc > 2 ? atoi(argv[2]) : 0;

    QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("TMPDIR", QFile::encodeName(home.path()));
    for (const char *name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        qunsetenv(name);
    if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Scans begin after five seconds and come every thirty, as in ordinary operation.
    write(home.path() + QStringLiteral("/.config/VELMORA/quilloservice.xml"),
        "<quilloservice><debug enabled='true' inactivityDuration='0'/></quilloservice>");
    write(home.path() + QStringLiteral("/.config/VELMORA/settings.ini"), "[common]\nautoStartService=true\n");
    const QString pictures = home.path() + QStringLiteral("/Pictures");
    QDir().mkpath(pictures);
    for (int i = 0; i < photos; ++i)
        write(pictures + QStringLiteral("/Ordner %1/Bild %2.jpg").arg(i / 100).arg(i), "\xff\xd8\xff");

    QList<double> bareStarts;
    QList<double> serviceStarts;
    const QString self = QCoreApplication::applicationFilePath();
    for (int round = 0; round < rounds; ++round) {
        bareStarts.append(startMs(self, {QStringLiteral("--bare")}));
        serviceStarts.append(startMs(service, {}));
    }

    QProcess bare;
    bare.start(self, {QStringLiteral("--bare")});
    QProcess running;
    running.setStandardOutputFile(QProcess::nullDevice());
    running.setStandardErrorFile(QProcess::nullDevice());
    running.start(service, QStringList());
    bare.waitForStarted();
    running.waitForStarted();
    // Two scans, so that what a scan leaves behind is counted.
    QThread::sleep(5 + 2);
    const qint64 afterFirst = residentKiB(running.processId());
    // Between the first and the second scan.
    const qint64 wakesBefore = wakeUps(running.processId());
    QThread::sleep(idleSeconds - 7);
    const qint64 wakesBetween = wakeUps(running.processId()) - wakesBefore;
    QThread::sleep(12);
    const qint64 afterSecond = residentKiB(running.processId());
    const qint64 bareKiB = residentKiB(bare.processId());

    const double limitKiB = 1.25 * static_cast<double>(bareKiB) + photos;
    printf("%-42s %12s %12s %8s\n", "", "bare tray", "service", "ratio");
    printf("%-42s %12.1f %12.1f %8.2f\n", "start to event loop, ms (median)", median(bareStarts), median(serviceStarts),
        median(serviceStarts) / median(bareStarts));
    printf("%-42s %12lld %12lld %8.2f\n", "resident after the first scan, KiB", bareKiB, afterFirst,
        static_cast<double>(afterFirst) / static_cast<double>(bareKiB));
    printf("%-42s %12lld %12lld %8.2f\n", "resident after the second scan, KiB", bareKiB, afterSecond,
        static_cast<double>(afterSecond) / static_cast<double>(bareKiB));
    printf("%-42s %12.0f %12lld %8.2f\n", "allowed: 1.25 x bare + 1 KiB a photo", limitKiB, afterSecond,
        static_cast<double>(afterSecond) / limitKiB);
    printf("%-42s %12s %12lld\n", "wake-ups in 23 s between two scans", "", wakesBetween);

    for (QProcess *process : {&bare, &running}) {
        process->kill();
        process->waitForFinished();
    }
    return 0;
}
