#include "NyImageMetaDataReader.h"

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include "NyImageBackends.h"
#include "NyImageMetaDataBackend.h"

namespace
{

/** The packet of the picture's sidecar; empty without one. */
QByteArray sidecarOf(const QString &path, const NyImageMetaDataBackend &backend)
{
    const QStringList sidecars = NyImageMetaDataReader::sidecarPaths(path);
    for (const QString &sidecar : sidecars) {
        const QFileInfo info(sidecar);
        if (!info.isFile())
            continue;
        QString reason;
        QFile file(sidecar);
        if (info.size() > NyImageMetaDataReader::MaximumSidecarBytes) {
            reason = QStringLiteral("it is too large");
        } else if (!file.open(QIODevice::ReadOnly)) {
            reason = file.errorString();
        } else {
            // It may grow while it is read.
            QByteArray packet = file.read(NyImageMetaDataReader::MaximumSidecarBytes);
            const std::optional<QString> extension = backend.sidecarExtension(packet, reason);
            if (extension && (extension->isEmpty() || extension->compare(QFileInfo(path).suffix(), Qt::CaseInsensitive) == 0))
                return packet;
            if (extension)
                continue;
        }
        qWarning() << "NyImageLoader: cannot read the sidecar" << sidecar << ":" << reason;
    }
    return {};
}

}

NyImageMetaData NyImageMetaDataReader::read(const QString &path)
{
    // Opening a pipe would wait for its writer.
    if (!QFileInfo(path).isFile()) {
        qDebug() << "NyImageLoader: no metadata, not a file:" << path;
        return {};
    }
    const NyImageMetaDataBackend *backend = NyImageBackends::metaData();
    if (!backend)
        return {};
    QString reason;
    const NyImageMetaData metaData = backend->metaData(QFile::encodeName(path), sidecarOf(path, *backend), reason);
    if (!metaData.isRead)
        qDebug() << "NyImageLoader: no metadata in" << path << reason;
    return metaData;
}

QStringList NyImageMetaDataReader::sidecarPaths(const QString &path)
{
    // Cameras and their programs write names in capital letters.
    const QString lower = QStringLiteral(".xmp");
    const QString upper = QStringLiteral(".XMP");
    QStringList paths{path + lower, path + upper};
    const qsizetype dot = path.lastIndexOf(u'.');
    if (dot > path.lastIndexOf(u'/') + 1)
        paths << path.first(dot) + lower << path.first(dot) + upper;
    return paths;
}
