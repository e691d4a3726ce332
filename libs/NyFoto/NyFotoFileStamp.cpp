#include "NyFotoFileStamp.h"

#include <sys/stat.h>

#include <QtCore/QFile>
#include <QtCore/QHashFunctions>

#include "NyImageMetaDataReader.h"

namespace
{

qint64 milliseconds(const timespec &time)
{
    return qint64(time.tv_sec) * 1000 + time.tv_nsec / 1'000'000;
}

}

NyFotoFileStamp NyFotoFileStamp::ofFile(const QString &path)
{
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return {qint64(status.st_size), milliseconds(status.st_mtim), milliseconds(status.st_ctim), 0};
}

NyFotoFileStamp NyFotoFileStamp::ofFileAndSidecars(const QString &path)
{
    NyFotoFileStamp stamp = ofFile(path);
    const QStringList sidecars = NyImageMetaDataReader::sidecarPaths(path);
    for (qsizetype i = 0; i < sidecars.size(); ++i) {
        const NyFotoFileStamp sidecar = ofFile(sidecars[i]);
        if (sidecar.size >= 0)
            stamp.sidecars = qHashMulti(stamp.sidecars, i, sidecar.size, sidecar.modifiedMs, sidecar.changedMs);
    }
    return stamp;
}
