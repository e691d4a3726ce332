#pragma once

#include <QDateTime>
#include <QImage>
#include <QString>

/** Pictures with crisp shapes in many colours, different for every seed. */
namespace PaintedPictures
{
QImage painted(const QSize &sizePx, quint32 seed);

struct MetaData
{
    /** Written as the camera's clock; nothing is written for an invalid time. */
    QDateTime captureTime;
    /** EXIF orientation, 1 to 8; 0 writes none. */
    int orientation = 0;
    /** 0 writes none. */
    int rating = 0;
    QString camera = QStringLiteral("Testkamera");
};

/** Writes a JPEG with EXIF; its folder is made. */
bool write(const QString &path, const QImage &image, const MetaData &metaData = {});
}
