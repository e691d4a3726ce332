#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <sys/mount.h>
#include <sys/statvfs.h>

/** A file system of one's own with little room, for tests of a full disk. Needs the right to mount; unmounted at the end. */
class NySmallDisk
{
public:
    explicit NySmallDisk(const char *size = "256k")
    {
        const QByteArray options = QByteArrayLiteral("size=") + size;
        m_mounted
            = m_folder.isValid() && ::mount("tmpfs", QFile::encodeName(m_folder.path()).constData(), "tmpfs", 0, options.constData()) == 0;
    }
    ~NySmallDisk()
    {
        if (m_mounted)
            ::umount2(QFile::encodeName(m_folder.path()).constData(), MNT_DETACH);
    }

    bool isMounted() const { return m_mounted; }
    QString path() const { return m_folder.path(); }
    QString filePath(const QString &name) const { return m_folder.filePath(name); }

    /** Takes all room but @p left bytes, rounded down to whole blocks. */
    bool fill(qint64 left = 0)
    {
        struct statvfs status;
        if (::statvfs(QFile::encodeName(path()).constData(), &status) != 0)
            return false;
        const qint64 block = static_cast<qint64>(status.f_bsize);
        const qint64 blocks = static_cast<qint64>(status.f_bavail) - left / block;
        QFile ballast(filePath(QStringLiteral("ballast")));
        const QByteArray bytes(block, 'x');
        if (!ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered | QIODevice::Append))
            return false;
        for (qint64 i = 0; i < blocks; ++i) {
            if (ballast.write(bytes) != block)
                return false;
        }
        return true;
    }
    bool clear() { return QFile::remove(filePath(QStringLiteral("ballast"))); }

private:
    Q_DISABLE_COPY_MOVE(NySmallDisk)

    QTemporaryDir m_folder;
    bool m_mounted = false;
};
