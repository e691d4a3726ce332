#include <atomic>
#include <cstdio>
#include <mutex>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDate>
#include <QtConcurrent>

#include "DemoAlbum.h"
#include "DemoPictureWriter.h"

using namespace Qt::Literals::StringLiterals;

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"Paints the pictures of a family's past year into event folders, each picture different. Pictures that are "
        "there already stay."_s);
    parser.addHelpOption();
    parser.addPositionalArgument(u"folder"_s, u"Where the folders go; made if it is not there."_s);
    parser.process(application);
    if (parser.positionalArguments().size() != 1)
        parser.showHelp(2);

    const QString folder = parser.positionalArguments().constFirst();
    const QList<DemoPicture> album = demoAlbum(QDate::currentDate());
    std::atomic<int> failures = 0;
    std::mutex outputMutex;
    int finished = 0;
    QtConcurrent::blockingMap(album, [&](const DemoPicture &picture) {
        const QString problem = writeDemoPicture(picture, folder);
        const std::scoped_lock lock(outputMutex);
        ++finished;
        if (!problem.isEmpty()) {
            ++failures;
            std::fprintf(stderr, "demo-pictures: %s\n", qUtf8Printable(problem));
        }
        if (finished % 10 == 0 || finished == album.size()) {
            std::printf("%d of %d pictures\n", finished, int(album.size()));
            std::fflush(stdout);
        }
    });
    return failures == 0 ? 0 : 1;
}
