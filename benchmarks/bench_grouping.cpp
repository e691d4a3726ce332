// Sorting files into the classified folders that hold them, against the plain loops.
//
// Usage: bench_grouping [--rounds N]

#include <NyEventFolderClassificationResultList.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QRandomGenerator>

#include "Measurement.h"
#include "NyEventFileGrouping.h"

namespace
{
using Grouping = NyEventFileGrouping::FilesOfEvents;

Grouping groupPlainly(const QList<QFileInfo> &files, const NyEventFolderClassificationResultList &folders)
{
    Grouping grouping;
    for (const QFileInfo &file : files) {
        for (const NyEventFolderClassificationResult &folder : folders) {
            if (file.absoluteFilePath().startsWith(folder.directory().absoluteFilePath(), Qt::CaseSensitive))
                grouping.insert(folder, file);
        }
    }
    return grouping;
}

/** The plain loops as somebody writes them who knows that asking for a path costs. */
Grouping groupPlainlyWithPathsAtHand(const QList<QFileInfo> &files, const NyEventFolderClassificationResultList &folders)
{
    Grouping grouping;
    for (const QFileInfo &file : files) {
        const QString path = file.absoluteFilePath();
        for (const NyEventFolderClassificationResult &folder : folders) {
            if (path.startsWith(folder.directoryPath(), Qt::CaseSensitive))
                grouping.insert(folder, file);
        }
    }
    return grouping;
}

bool sameOrder(const Grouping &left, const Grouping &right)
{
    if (left.size() != right.size())
        return false;
    for (auto one = left.cbegin(), other = right.cbegin(); one != left.cend(); ++one, ++other) {
        if (!(one.key() == other.key()) || one.value().filePath() != other.value().filePath())
            return false;
    }
    return true;
}

void compare(int fileCount, int folderCount, int rounds)
{
    QRandomGenerator random(1);
    NyEventFolderClassificationResultList folders;
    QStringList paths;
    for (int i = 0; i < folderCount; ++i) {
        paths.append(QStringLiteral("/home/somebody/Bilder/20%1/%2 Ausflug an den See").arg(i % 25, 2, 10, QLatin1Char('0')).arg(i));
        folders.append(NyEventFolderClassificationResult(QFileInfo(paths.last()), NyEventFolderType(NyEventFolderTypeEnum::Event)));
    }
    QList<QFileInfo> files;
    for (int i = 0; i < fileCount; ++i)
        files.append(QFileInfo(QStringLiteral("%1/IMG_%2.JPG").arg(paths.at(random.bounded(folderCount))).arg(i, 6, 10, QLatin1Char('0'))));

    std::printf("%d files, %d folders\n", fileCount, folderCount);
    Grouping fast;
    Grouping plain;
    Measurement fastTimes;
    fastTimes.add(
        "grouping", [&] { return Measurement::milliseconds([&] { fast = NyEventFileGrouping::filesOfEvents(files, folders); }); });
    fastTimes.run(rounds);
    fastTimes.print("grouping");
    // The plain forms take seconds, so each runs once to warm up and once for the figure.
    Measurement plainTimes;
    plainTimes.add("plain loops", [&] { return Measurement::milliseconds([&] { plain = groupPlainly(files, folders); }); });
    Grouping plainAtHand;
    plainTimes.add("plain loops, paths at hand",
        [&] { return Measurement::milliseconds([&] { plainAtHand = groupPlainlyWithPathsAtHand(files, folders); }); });
    plainTimes.run(1);
    plainTimes.print("plain loops");
    std::printf("times faster: %.0f, than with paths at hand: %.0f, same hash and order: %s\n\n",
        plainTimes.median("plain loops") / fastTimes.median("grouping"),
        plainTimes.median("plain loops, paths at hand") / fastTimes.median("grouping"),
        sameOrder(fast, plain) && sameOrder(fast, plainAtHand) ? "yes" : "NO");
}
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const qsizetype index = arguments.indexOf(QStringLiteral("--rounds"));
    const int rounds = index >= 0 && index + 1 < arguments.size() ? arguments.at(index + 1).toInt() : 11;
    compare(10000, 500, rounds);
    compare(100000, 5000, rounds);
    return 0;
}
