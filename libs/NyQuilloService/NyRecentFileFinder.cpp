#include "NyRecentFileFinder.h"

#include <NyDirectoryConfig.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDate>
#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QFileInfo>
#include <QtCore/QMutexLocker>

#include "NyBirthTimeWindow.h"
#include "NyFileNameFilter.h"
#include "NyNativeFileWalker.h"
#include "NyQuilloServiceConfig.h"

NyRecentFileFinder::NyRecentFileFinder(const QString &observedDirectory, const QList<QString> &nameFilters)
    : m_observedDirectory(QString())
    , m_nameFilters(nameFilters)
    , m_mutex(new QMutex)
{
    setObservedDirectory(observedDirectory);
    qInfo() << "QUILLO_SERVICE: observing path:" << m_observedDirectory;
}

NyRecentFileFinder::~NyRecentFileFinder() = default;

void NyRecentFileFinder::setObservedDirectory(const QString &path)
{
    const QMutexLocker locker(m_mutex);
    const QString scheme = QStringLiteral("photokit:");
    QString scannedPath = path;
    if (scannedPath.startsWith(scheme, Qt::CaseSensitive))
        scannedPath.replace(scheme, QStringLiteral("photokitfs:"), Qt::CaseSensitive);
    if (QDir(scannedPath) == m_observedDirectory)
        return;
    qDebug() << "QUILLO_SERVICE: observing path changed from " << m_observedDirectory.absolutePath() << "to" << scannedPath;
    m_observedDirectory.setPath(scannedPath);
}

NyRecentFileResult NyRecentFileFinder::lastAddedFiles(const NyDateRange &range)
{
    const QMutexLocker locker(m_mutex);
    qInfo() << "Checking " << m_observedDirectory.absolutePath() << "for files from Timespan"
            << range.dateDescription(QDate::currentDate());
    NyRecentFileResult result = collectLastAddedFilesRecursively(m_observedDirectory, range);
    result.setStartDirectory(m_observedDirectory.absolutePath());
    return result;
}

NyRecentFileResult NyRecentFileFinder::collectLastAddedFilesRecursively(const QDir &dir, const NyDateRange &range)
{
    if (QCoreApplication::closingDown())
        return NyRecentFileResult();
    if (NyNativeFileWalker::canWalk(dir.path()))
        return collectNatively(dir, range);

    const QList<QString> styleIds = NySingleton<NyQuilloServiceConfig>::instance().designStyleIds();
    if (NySingleton<NyDirectoryConfig>::instance().isIgnorableFolder(dir.absolutePath(), false))
        return NyRecentFileResult({}, range, 0, NyEventFolderClassificationResult(), styleIds);

    QList<QFileInfo> files;
    int countAfterRange = 0;
    const QFileInfoList candidates = dir.entryInfoList(m_nameFilters, QDir::Files, QDir::NoSort);
    for (const QFileInfo &file : candidates) {
        const QDate date = file.fileTime(QFileDevice::FileBirthTime).date();
        if (range.contains(date))
            files.append(file);
        else if (date > range.to())
            ++countAfterRange;
    }
    NyRecentFileResult result(files, range, countAfterRange, NyEventFolderClassificationResult(), styleIds);
    const QFileInfoList subfolders = dir.entryInfoList({QStringLiteral("*")}, QDir::AllDirs | QDir::NoDotAndDotDot, QDir::NoSort);
    for (const QFileInfo &subfolder : subfolders)
        result.merge(collectLastAddedFilesRecursively(QDir(subfolder.absoluteFilePath()), range));
    result.sort();
    return result;
}

NyRecentFileResult NyRecentFileFinder::collectNatively(const QDir &dir, const NyDateRange &range)
{
    const NyFileNameFilter filter(m_nameFilters);
    const NyBirthTimeWindow window(range);
    NyNativeFileWalker walker(filter, window, &m_reportedFolders);
    walker.walk(dir.path());
    const QList<QString> styleIds = NySingleton<NyQuilloServiceConfig>::instance().designStyleIds();
    NyRecentFileResult result(walker.takeFiles(), range, walker.countAfterWindow(), NyEventFolderClassificationResult(), styleIds);
    // All subfolders have the same range, ids and kind, so merging one nameless subfolder has the effect of merging them all.
    if (walker.hasSubfolders())
        result.merge(NyRecentFileResult({}, range, 0, NyEventFolderClassificationResult(), styleIds));
    if (walker.isInterrupted())
        result.merge(NyRecentFileResult());
    return result;
}
