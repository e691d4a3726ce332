// Taking the used photos out of a scan's files, against removing the first equal QFileInfo for each.
//
// Usage: bench_exclusion [--rounds N]

#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include "Measurement.h"
#include "NyFirstEqualFileRemover.h"

namespace
{
QList<QFileInfo> infos(const QStringList &paths)
{
    // New objects each time, because they remember what they have learned of their files.
    QList<QFileInfo> files;
    for (const QString &path : paths)
        files.append(QFileInfo(path));
    return files;
}

void removePlainly(QList<QFileInfo> &files, const QList<QFileInfo> &unwanted)
{
    for (const QFileInfo &file : unwanted) {
        const qsizetype index = files.indexOf(file);
        if (index >= 0)
            files.removeAt(index);
    }
}

QStringList remaining(const QList<QFileInfo> &files)
{
    QStringList paths;
    for (const QFileInfo &file : files)
        paths.append(file.filePath());
    return paths;
}

bool compare(int fileCount, int usedCount, int rounds)
{
    QTemporaryDir folder;
    QStringList paths;
    for (int i = 0; i < fileCount; ++i) {
        const QString parent = folder.filePath(QStringLiteral("%1 Ausflug an den See").arg(i / 100));
        if (i % 100 == 0 && !QDir().mkpath(parent))
            return false;
        paths.append(QStringLiteral("%1/IMG_%2.JPG").arg(parent).arg(i, 6, 10, QLatin1Char('0')));
        const int descriptor = ::open(QFile::encodeName(paths.last()).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
        if (descriptor < 0)
            return false;
        ::close(descriptor);
    }
    QRandomGenerator random(1);
    QStringList used;
    for (int i = 0; i < usedCount; ++i)
        used.append(paths.at(random.bounded(fileCount)));

    std::printf("%d used photos, %d files\n", usedCount, fileCount);
    QStringList fast;
    QStringList plain;
    const auto measure = [&](auto remove, QStringList &result) {
        QList<QFileInfo> files = infos(paths);
        const QList<QFileInfo> unwanted = infos(used);
        const double time = Measurement::milliseconds([&] { remove(files, unwanted); });
        result = remaining(files);
        return time;
    };
    Measurement fastTimes;
    fastTimes.add("exclusion", [&] { return measure(NyFirstEqualFileRemover::removeFrom, fast); });
    fastTimes.run(rounds);
    fastTimes.print("exclusion");
    // Without a warm-up and but once: it takes half a minute, and the files are known to the system by now.
    const double plainTime = measure(removePlainly, plain);
    std::printf("%-52s %10.2f ms\ntimes faster: %.0f, same remainder: %s\n\n", "first equal one removed", plainTime,
        plainTime / fastTimes.median("exclusion"), fast == plain ? "yes" : "NO");
    return true;
}
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const qsizetype index = arguments.indexOf(QStringLiteral("--rounds"));
    const int rounds = index >= 0 && index + 1 < arguments.size() ? arguments.at(index + 1).toInt() : 11;
    if (!compare(10000, 3000, rounds) || !compare(100000, 3000, rounds)) {
        std::fprintf(stderr, "could not make the files\n");
        return 1;
    }
    return 0;
}
