#include "NyFileHandler.h"

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QSaveFile>

bool NyFileHandler::writeBinaryFile(const QFileInfo &file, const QByteArray &content, QString *reason)
{
    const QString path = file.absoluteFilePath();
    QSaveFile saved(path);
    const auto fail = [&] {
        qWarning().noquote() << "cannot write" << path << saved.errorString();
        if (reason)
            *reason = saved.errorString();
        return false;
    };
    if (!saved.open(QIODevice::WriteOnly))
        return fail();
    // commit() alone reports success after a buffered write that did not fit on the disk, and leaves an empty file.
    if (saved.write(content) != content.size() || !saved.flush() || saved.error() != QFileDevice::NoError) {
        fail();
        saved.cancelWriting();
        return false;
    }
    return saved.commit() || fail();
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
