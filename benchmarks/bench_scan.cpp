// The scan of a picture tree against what it cannot do without, the plain Qt form, and bfs, which knows birth times.
//
// Usage: bench_scan [--folders N] [--files N] [--rounds N] [--processor] [--plain] [--tree DIR]
// --processor measures processor time instead of wall clock time, for busy machines. --plain also measures the plain Qt form, which
// takes long. --tree makes the tree in DIR and leaves it there.

#include <cstdlib>
#include <cstring>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <malloc.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <NyImageLoader.h>
#include <NyMediaFormatList.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "../tests/NyQuilloService/PlainScan.h"
#include "Measurement.h"
#include "NyRecentFileFinder.h"

namespace
{
bool useProcessorTime = false;

template <class Work>
double measure(Work &&work)
{
    return useProcessorTime ? Measurement::processorMilliseconds(work) : Measurement::milliseconds(work);
}

int makeTree(const QString &root, int folders, int files)
{
    const int perFolder = std::max(1, files / folders);
    int made = 0;
    for (int folder = 0; folder < folders; ++folder) {
        const QString path
            = QStringLiteral("%1/20%2/Ausflug an den See %3").arg(root).arg(folder % 10, 2, 10, QLatin1Char('0')).arg(folder);
        if (!QDir().mkpath(path))
            return -1;
        for (int file = 0; file < perFolder; ++file, ++made) {
            const QByteArray name = QFile::encodeName(QStringLiteral("%1/IMG_%2.JPG").arg(path).arg(made, 6, 10, QLatin1Char('0')));
            const int descriptor = ::open(name.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
            if (descriptor < 0)
                return -1;
            ::close(descriptor);
        }
    }
    return made;
}

/** The least that finds birth times: every directory read, every entry's status asked for. */
int walkBarely(int parent, const char *name, std::vector<char> &buffer, qint64 fromMs)
{
    const int descriptor = ::openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return 0;
    int found = 0;
    std::vector<std::string> folders;
    for (;;) {
        const ssize_t bytes = ::getdents64(descriptor, buffer.data(), buffer.size());
        if (bytes <= 0)
            break;
        for (ssize_t offset = 0; offset < bytes;) {
            const auto *entry = reinterpret_cast<const struct dirent64 *>(buffer.data() + offset);
            offset += entry->d_reclen;
            if (entry->d_name[0] == '.')
                continue;
            if (entry->d_type == DT_DIR) {
                folders.emplace_back(entry->d_name);
                continue;
            }
            struct statx status;
            if (::statx(descriptor, entry->d_name, AT_SYMLINK_NOFOLLOW, STATX_BTIME, &status) == 0)
                found += qint64(status.stx_btime.tv_sec) * 1000 >= fromMs;
        }
    }
    for (const std::string &folder : folders)
        found += walkBarely(descriptor, folder.c_str(), buffer, fromMs);
    ::close(descriptor);
    return found;
}

/** Runs a program with its output dropped. */
double runProgram(const std::vector<std::string> &arguments)
{
    double processorTime = 0;
    const double wallTime = Measurement::milliseconds([&] {
        std::vector<char *> argv;
        for (const std::string &argument : arguments)
            argv.push_back(const_cast<char *>(argument.c_str()));
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        pid_t child = 0;
        if (::posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ) == 0) {
            int status = 0;
            struct rusage usage
            {
            };
            ::wait4(child, &status, 0, &usage);
            if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
                std::fprintf(stderr, "%s failed\n", argv[0]);
            for (const timeval &time : {usage.ru_utime, usage.ru_stime})
                processorTime += double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
        }
        posix_spawn_file_actions_destroy(&actions);
    });
    return useProcessorTime ? processorTime : wallTime;
}

QStringList photoFilters()
{
    return NySingleton<NyImageLoader>::instance().supportedMediaFormats().fileExtensionFilters();
}

NyDateRange everything()
{
    return NyDateRange(QDate::currentDate().addDays(-365), QDate::currentDate().addDays(1));
}

NyDateRange nothing()
{
    return NyDateRange(QDate(2001, 1, 1), QDate(2001, 12, 31));
}

double scan(const QString &root, const NyDateRange &range, int expected)
{
    NyRecentFileFinder finder(root, photoFilters());
    NyRecentFileResult result;
    const double time = measure([&] { result = finder.lastAddedFiles(range); });
    if (result.count() != expected)
        std::fprintf(stderr, "found %d files, not %d\n", result.count(), expected);
    return time;
}

double scanPlainly(const QString &root, const NyDateRange &range, int expected)
{
    const QStringList filters = photoFilters();
    PlainScan::Result result;
    const double time = measure([&] { result = PlainScan::scan(root, filters, range); });
    if (result.files.size() != expected)
        std::fprintf(stderr, "found %d files plainly, not %d\n", int(result.files.size()), expected);
    return time;
}
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false\ndefault.info=false"));
    const QStringList arguments = application.arguments();
    const auto value = [&arguments](const QString &name, int otherwise) {
        const qsizetype index = arguments.indexOf(name);
        return index >= 0 && index + 1 < arguments.size() ? arguments.at(index + 1).toInt() : otherwise;
    };

    // One scan in a process of its own, to be compared with other programs.
    if (const qsizetype index = arguments.indexOf(QStringLiteral("--scan-once")); index >= 0) {
        NyRecentFileFinder finder(arguments.at(index + 1), photoFilters());
        const NyRecentFileResult result = finder.lastAddedFiles(arguments.contains(QStringLiteral("--all")) ? everything() : nothing());
        for (const QFileInfo &file : result.files())
            std::puts(qPrintable(file.filePath()));
        return 0;
    }

    useProcessorTime = arguments.contains(QStringLiteral("--processor"));
    const int folders = value(QStringLiteral("--folders"), 1000);
    QTemporaryDir temporary;
    const qsizetype treeIndex = arguments.indexOf(QStringLiteral("--tree"));
    const QString root = treeIndex >= 0 ? arguments.at(treeIndex + 1) : temporary.filePath(QStringLiteral("Bilder"));
    const int files = makeTree(root, folders, value(QStringLiteral("--files"), 100000));
    if (files < 0) {
        std::fprintf(stderr, "could not make the tree\n");
        return 1;
    }
    std::printf("%d files in %d folders, %d name patterns\n", files, folders, int(photoFilters().size()));

    std::vector<char> buffer(128 * 1024);
    const std::string nativeRoot = QFile::encodeName(root).toStdString();
    const std::string bare = "bare directory and status walker";
    const auto walk = [&](qint64 fromMs, int expected) {
        int found = 0;
        const double time = measure([&] { found = walkBarely(AT_FDCWD, nativeRoot.c_str(), buffer, fromMs); });
        if (found != expected)
            std::fprintf(stderr, "found %d files barely, not %d\n", found, expected);
        return time;
    };
    const int rounds = value(QStringLiteral("--rounds"), 11);
    Measurement inProcess;
    inProcess.add(bare, [&] { return walk(0, files); });
    inProcess.add("scan, no file in range", [&] { return scan(root, nothing(), 0); });
    inProcess.add("scan, all files in range", [&] { return scan(root, everything(), files); });
    inProcess.run(rounds);
    inProcess.print(bare);

    if (!QStandardPaths::findExecutable(QStringLiteral("bfs")).isEmpty()) {
        const std::string self = QFile::encodeName(QCoreApplication::applicationFilePath()).toStdString();
        const std::string yearAgo = QDate::currentDate().addDays(-365).toString(Qt::ISODate).toStdString();
        const std::string farAhead = "2100-01-01";
        std::vector<std::string> withPatterns{"bfs", "-L", nativeRoot, "-type", "f", "-newerBt", yearAgo, "("};
        for (const QString &pattern : photoFilters()) {
            if (withPatterns.back() != "(")
                withPatterns.emplace_back("-o");
            withPatterns.emplace_back("-iname");
            withPatterns.push_back(pattern.toStdString());
        }
        withPatterns.emplace_back(")");
        Measurement processes;
        const std::string bfs = "process: bfs -newerBt, none";
        processes.add(bfs, [&] { return runProgram({"bfs", nativeRoot, "-type", "f", "-newerBt", farAhead}); });
        processes.add("scan, no file in range, as the service does it", [&] { return scan(root, nothing(), 0); });
        processes.add("scan, all files in range, as the service does it", [&] { return scan(root, everything(), files); });
        processes.add("process: bfs -newerBt, all", [&] { return runProgram({"bfs", nativeRoot, "-type", "f", "-newerBt", yearAgo}); });
        processes.add("process: bfs -newerBt with the name patterns, all", [&] { return runProgram(withPatterns); });
        processes.add("process: scan, none", [&] { return runProgram({self, "--scan-once", nativeRoot}); });
        processes.add("process: scan, all, printed", [&] { return runProgram({self, "--scan-once", nativeRoot, "--all"}); });
        processes.run(rounds);
        processes.print(bfs);
    } else {
        std::printf("bfs is not installed: not compared\n");
    }

    {
        const std::size_t before = ::mallinfo2().uordblks;
        NyRecentFileFinder finder(root, photoFilters());
        const NyRecentFileResult result = finder.lastAddedFiles(everything());
        std::printf("memory for a kept file: %.0f bytes\n", double(::mallinfo2().uordblks - before) / std::max(1, result.count()));
    }

    if (arguments.contains(QStringLiteral("--plain"))) {
        Measurement plain;
        plain.add(bare, [&] { return walk(0, files); });
        plain.add("plain Qt form, no file in range", [&] { return scanPlainly(root, nothing(), 0); });
        plain.add("plain Qt form, all files in range", [&] { return scanPlainly(root, everything(), files); });
        plain.run(1);
        plain.print(bare);
    }
    return 0;
}
