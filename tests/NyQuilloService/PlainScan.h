#pragma once

#include <algorithm>

#include <NyDateRange.h>
#include <NyDirectoryConfig.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QStringList>

/** The scan written down plainly with Qt's means: what every faster one is compared with. */
namespace PlainScan
{
struct Result
{
    QFileInfoList files; // oldest first, equally old ones by path
    int countAfterRange = 0;
    bool hasSubfolders = false;
};

inline void collect(const QDir &dir, const QStringList &nameFilters, const NyDateRange &range, Result &result)
{
    if (NySingleton<NyDirectoryConfig>::instance().isIgnorableFolder(dir.absolutePath(), false))
        return;
    const QFileInfoList files = dir.entryInfoList(nameFilters, QDir::Files, QDir::NoSort);
    for (const QFileInfo &file : files) {
        const QDate date = file.fileTime(QFileDevice::FileBirthTime).date();
        if (range.contains(date))
            result.files.append(file);
        else if (date > range.to())
            ++result.countAfterRange;
    }
    const QFileInfoList subfolders = dir.entryInfoList({QStringLiteral("*")}, QDir::AllDirs | QDir::NoDotAndDotDot, QDir::NoSort);
    result.hasSubfolders = result.hasSubfolders || !subfolders.isEmpty();
    for (const QFileInfo &subfolder : subfolders)
        collect(QDir(subfolder.absoluteFilePath()), nameFilters, range, result);
}

inline Result scan(const QString &path, const QStringList &nameFilters, const NyDateRange &range)
{
    Result result;
    collect(QDir(path), nameFilters, range, result);
    std::sort(result.files.begin(), result.files.end(), [](const QFileInfo &left, const QFileInfo &right) {
        const QDateTime leftTime = left.fileTime(QFileDevice::FileBirthTime);
        const QDateTime rightTime = right.fileTime(QFileDevice::FileBirthTime);
        return leftTime < rightTime || (!(rightTime < leftTime) && left.filePath() < right.filePath());
    });
    return result;
}
}
