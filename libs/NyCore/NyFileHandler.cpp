#include "NyFileHandler.h"

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QSaveFile>

bool NyFileHandler::writeBinaryFile(const QFileInfo &file, const QByteArray &content)
{
    const QString path = file.absoluteFilePath();
    QSaveFile saved(path);
    if (!saved.open(QIODevice::WriteOnly)) {
        qWarning().noquote() << "cannot write" << path << saved.errorString();
        return false;
    }
    // commit() alone reports success after a buffered write that did not fit on the disk, and leaves an empty file.
    if (saved.write(content) != content.size() || !saved.flush() || saved.error() != QFileDevice::NoError) {
        qWarning().noquote() << "cannot write" << path << saved.errorString();
        saved.cancelWriting();
        return false;
    }
    if (!saved.commit()) {
        qWarning().noquote() << "cannot write" << path << saved.errorString();
        return false;
    }
    return true;
}

bool NyFileHandler::deleteFiles(const QFileInfoList &files)
{
    bool allGone = true;
    for (const QFileInfo &info : files) {
        const QString path = info.absoluteFilePath();
        // Asked anew: the list may be older than the files.
        const QFileInfo now(path);
        if (now.isDir() && !now.isSymLink())
            continue;
        QFile file(path);
        if (!file.remove() && (QFileInfo::exists(path) || QFileInfo(path).isSymLink())) {
            qWarning().noquote() << "cannot delete" << path << file.errorString();
            allGone = false;
        }
    }
    return allGone;
}
