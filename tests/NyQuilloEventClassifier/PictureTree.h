#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QString>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

/** A folder tree with pictures in it, whose capture times are in their metadata. */
class PictureTree
{
public:
    QString root() const { return m_root; }
    QString path(const QString &relative) const { return relative.isEmpty() ? m_root : m_root + QLatin1Char('/') + relative; }

    explicit PictureTree(const QString &rootName = QStringLiteral("pictures"))
    {
        if (!m_folder.isValid())
            qFatal("no temporary folder");
        m_root = m_folder.path() + QLatin1Char('/') + rootName;
        QDir().mkpath(m_root);
    }

    void addFolder(const QString &relative) { QDir().mkpath(path(relative)); }

    void addFile(const QString &relative, const QByteArray &contents = QByteArray("x"))
    {
        QDir().mkpath(path(relative).section(QLatin1Char('/'), 0, -2));
        QFile file(path(relative));
        if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        // Written twice within a tick of the file system's clock, a file would look as if it had stayed what it was.
        static qint64 writes = 0;
        if (!file.flush() || !file.setFileTime(QDateTime::fromSecsSinceEpoch(1'700'000'000 + ++writes), QFileDevice::FileModificationTime))
            qFatal("cannot set the time of %s", qPrintable(file.fileName()));
    }

    /** A picture that says when it was taken; without a valid time only its birth time does. */
    void addPicture(const QString &relative, const QDateTime &taken = {}) { addFile(relative, jpeg(taken)); }

    /** Two pictures that lie so far apart that a folder's contents say nothing. */
    void addDistantPictures(const QString &folder)
    {
        addPicture(folder + QStringLiteral("/a.jpg"), QDateTime(QDate(2001, 5, 1), QTime(12, 0)));
        addPicture(folder + QStringLiteral("/b.jpg"), QDateTime(QDate(2023, 9, 1), QTime(12, 0)));
    }

    static QByteArray jpeg(const QDateTime &taken)
    {
        static const QByteArray plain = [] {
            QImage image(8, 8, QImage::Format_RGB32);
            image.fill(0x336699);
            QByteArray bytes;
            QBuffer buffer(&bytes);
            buffer.open(QIODevice::WriteOnly);
            if (!image.save(&buffer, "JPEG"))
                qFatal("no JPEG writer");
            return bytes;
        }();
        if (!taken.isValid())
            return plain;
        // A little-endian TIFF structure with one directory entry, the Exif directory, which has one entry, DateTimeOriginal.
        QByteArray tiff;
        const auto put16 = [&tiff](quint16 value) { tiff.append(char(value & 0xff)).append(char(value >> 8)); };
        const auto put32 = [&put16](quint32 value) {
            put16(quint16(value & 0xffff));
            put16(quint16(value >> 16));
        };
        const auto entry = [&put16, &put32](quint16 tag, quint16 type, quint32 count, quint32 value) {
            put16(tag);
            put16(type);
            put32(count);
            put32(value);
        };
        tiff.append("II*");
        tiff.append('\0');
        put32(8);
        put16(1);
        entry(0x8769, 4, 1, 26);
        put32(0);
        put16(1);
        entry(0x9003, 2, 20, 44);
        put32(0);
        tiff.append(taken.toString(QStringLiteral("yyyy:MM:dd HH:mm:ss")).toLatin1()).append('\0');
        const QByteArray payload = QByteArray("Exif\0\0", 6) + tiff;
        QByteArray segment("\xff\xe1", 2);
        const quint16 length = quint16(payload.size() + 2);
        segment.append(char(length >> 8)).append(char(length & 0xff)).append(payload);
        return plain.left(2) + segment + plain.mid(2);
    }

private:
    QTemporaryDir m_folder;
    QString m_root;
};
