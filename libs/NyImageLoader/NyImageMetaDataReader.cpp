#include "NyImageMetaDataReader.h"

#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include "NyImageBackends.h"
#include "NyImageMetaDataBackend.h"

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
    const NyImageMetaData metaData = backend->metaData(QFile::encodeName(path), reason);
    if (!metaData.isRead)
        qDebug() << "NyImageLoader: no metadata in" << path << reason;
    return metaData;
}
