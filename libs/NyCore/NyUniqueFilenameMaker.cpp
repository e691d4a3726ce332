#include "NyUniqueFilenameMaker.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

namespace
{

// NAME_MAX of Linux, in bytes.
constexpr qsizetype LongestName = 255;
const QString companionEndings[] = {QStringLiteral(".png"), QStringLiteral(".json")};

bool isTaken(const QString &path)
{
    // A link counts even when it leads nowhere.
    const auto isThere = [](const QString &candidate) {
        const QFileInfo info(candidate);
        return info.exists() || info.isSymLink();
    };
    if (isThere(path))
        return true;
    for (const QString &ending : companionEndings) {
        if (isThere(path + ending))
            return true;
    }
    return false;
}

/** Shortens the base so that the name with its longest companion ending fits into a directory entry. */
QString fitting(QString base, const QString &rest)
{
    const qsizetype room = LongestName - QFile::encodeName(rest).size() - QStringLiteral(".json").size();
    while (!base.isEmpty() && QFile::encodeName(base).size() > room)
        base.chop(base.size() > 1 && base.at(base.size() - 1).isLowSurrogate() ? 2 : 1);
    return base + rest;
}

} // namespace

QFileInfo NyUniqueFilenameMaker::makeHumanCompatibleUniqueFileName(const QFileInfo &file, const QString &separator)
{
    if (!isTaken(file.absoluteFilePath()))
        return file;
    const QString base = file.completeBaseName();
    const QString suffix = file.suffix();
    const QString ending = file.fileName().contains(QLatin1Char('.')) ? QLatin1Char('.') + suffix : QString();
    const QDir folder(file.absolutePath());
    for (int number = 2;; ++number) {
        const QString name = fitting(base, separator + QString::number(number) + ending);
        const QFileInfo candidate(folder.absoluteFilePath(name));
        if (!isTaken(candidate.absoluteFilePath()))
            return candidate;
    }
}
