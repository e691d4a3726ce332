#include "NyReportThumbnails.h"

#include <QtCore/QBuffer>
#include <QtCore/QFile>
#include <QtCore/QMutexLocker>
#include <QtGui/QImage>
#include <QtGui/QPainter>

#include <NyImageLoader.h>

#include <sys/stat.h>

namespace
{

constexpr qsizetype MostPictures = 800;
constexpr int JpegQuality = 72;

/** Stands for the file as it is now; empty when there is none. */
QByteArray keyOf(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    if (::stat(name.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return QByteArray();
    return QByteArray::number(qint64(status.st_size)) + '/' + QByteArray::number(qint64(status.st_mtim.tv_sec)) + '.'
        + QByteArray::number(qint64(status.st_mtim.tv_nsec)) + name;
}

}

NyReportThumbnails &NyReportThumbnails::instance()
{
    static NyReportThumbnails *const thumbnails = new NyReportThumbnails;
    return *thumbnails;
}

QByteArray NyReportThumbnails::jpeg(const QString &path)
{
    const QByteArray key = keyOf(path);
    if (key.isEmpty())
        return QByteArray();
    {
        const QMutexLocker locker(&m_mutex);
        if (const auto known = m_jpegs.constFind(key); known != m_jpegs.cend())
            return *known;
    }
    const QByteArray jpeg = makeJpeg(path);
    const QMutexLocker locker(&m_mutex);
    if (m_jpegs.size() >= MostPictures)
        m_jpegs.clear();
    m_jpegs.insert(key, jpeg);
    return jpeg;
}

QByteArray NyReportThumbnails::makeJpeg(const QString &path)
{
    const QImage image = NyImageLoader::instance().loadScaled(path, QSize(SidePx, SidePx));
    if (image.isNull())
        return QByteArray();
    // Drawn anew: transparency has no place in a JPEG, and texts and colour profiles would be the larger part of the file.
    QImage plain(image.size(), QImage::Format_RGB32);
    plain.fill(Qt::white);
    QPainter(&plain).drawImage(0, 0, image);
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    if (!buffer.open(QIODevice::WriteOnly) || !plain.save(&buffer, "JPEG", JpegQuality))
        return QByteArray();
    return jpeg;
}
