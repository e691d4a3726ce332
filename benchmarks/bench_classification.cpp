// Classifying a tree of folders, against a bare walk over the same tree that only lists it.
//
// Usage: bench_classification [--folders N] [--files N a folder] [--rounds N]

#include <cstring>
#include <memory>
#include <string>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <NyFolderNameParser.h>
#include <NyFolderTree.h>
#include <NyImageLoader.h>
#include <NyQuilloEventClassifier.h>

#include "Measurement.h"

#include <dirent.h>

namespace
{
/** Lists the folder and all below it, and looks at nothing. Returns the number of folders. */
int walk(const std::string &path)
{
    DIR *directory = ::opendir(path.c_str());
    if (!directory)
        return 0;
    int folders = 1;
    std::vector<std::string> below;
    while (const struct dirent *entry = ::readdir(directory)) {
        if (entry->d_type == DT_DIR && std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            below.push_back(path + '/' + entry->d_name);
    }
    ::closedir(directory);
    for (const std::string &folder : below)
        folders += walk(folder);
    return folders;
}

/** Years with events, dates and parts, as a tidy person keeps them. */
QStringList makeTree(const QString &root, int folders, int files)
{
    static const QStringList titles{QStringLiteral("Hochzeit Anna & Tom"), QStringLiteral("Rom"), QStringLiteral("Geburtstag Oma"),
        QStringLiteral("Wanderung im Schnee"), QStringLiteral("Vacances d'été"), QStringLiteral("Boda de Ana"), QStringLiteral("Konzert")};
    QStringList names;
    for (int number = 0; names.size() < folders; ++number) {
        const int year = 2000 + number % 25;
        const QString event = QStringLiteral("%1/%1-%2-%3 %4 %5")
                                  .arg(year)
                                  .arg(1 + number % 12, 2, 10, QLatin1Char('0'))
                                  .arg(1 + number % 28, 2, 10, QLatin1Char('0'))
                                  .arg(titles.at(number % titles.size()))
                                  .arg(number);
        names << event;
        if (number % 4 == 0)
            names << event + QStringLiteral("/RAW");
        if (number % 4 == 1)
            names << event + QStringLiteral("/Tag %1 - Ausflug").arg(number % 5 + 1);
    }
    for (const QString &name : std::as_const(names)) {
        QDir().mkpath(root + QLatin1Char('/') + name);
        for (int file = 0; file < files; ++file) {
            QFile picture(root + QStringLiteral("/%1/IMG_%2.JPG").arg(name).arg(file, 4, 10, QLatin1Char('0')));
            if (!picture.open(QIODevice::WriteOnly))
                qFatal("cannot write %s", qPrintable(picture.fileName()));
        }
    }
    return names;
}
} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const auto number = [&arguments](const char *name, int fallback) {
        const qsizetype at = arguments.indexOf(QLatin1String(name));
        return at > 0 && at + 1 < arguments.size() ? arguments.at(at + 1).toInt() : fallback;
    };
    const int folders = number("--folders", 5000);
    const int files = number("--files", 20);
    const QTemporaryDir temporary;
    const QString root = temporary.path() + QStringLiteral("/pictures");
    const QStringList names = makeTree(root, folders, files);
    const std::string nativeRoot = QFile::encodeName(root).toStdString();
    const QStringList filters = NyImageLoader::instance().supportedMediaFormats().fileExtensionFilters();

    qsizetype entries = 0;
    int walked = 0;
    Measurement measurement;
    measurement.add("bare walk", [&]() { return Measurement::milliseconds([&]() { walked = walk(nativeRoot); }); });
    measurement.add(
        "walk of the classifier", [&]() { return Measurement::milliseconds([&]() { const NyFolderTree tree(root, filters); }); });
    measurement.add("names alone", [&]() {
        return Measurement::milliseconds([&]() {
            for (const QString &name : names)
                NyFolderNameParser::parse(name.mid(name.lastIndexOf(QLatin1Char('/')) + 1));
        });
    });
    measurement.add("classification", [&]() {
        return Measurement::milliseconds(
            [&]() { entries = NyQuilloEventClassifier((QFileInfo(root))).eventFolderTypes(QFileInfo(root), {}).size(); });
    });
    measurement.run(number("--rounds", 9));
    std::printf("%d folders with %d files each, %lld entries\n", walked, files, static_cast<long long>(entries));
    measurement.print("bare walk");
    return 0;
}
