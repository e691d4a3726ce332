#include "NyRotatingFile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

QByteArray rotatedName(const QString &path, int number)
{
    return QFile::encodeName(number == 0 ? path : path + QLatin1Char('.') + QString::number(number));
}

bool isSameFile(int descriptor, const QByteArray &path)
{
    struct stat opened;
    struct stat named;
    return ::fstat(descriptor, &opened) == 0 && ::stat(path.constData(), &named) == 0 && opened.st_dev == named.st_dev
        && opened.st_ino == named.st_ino;
}

} // namespace

NyRotatingFile::~NyRotatingFile()
{
    close();
}

void NyRotatingFile::setPath(const QString &path)
{
    if (path == m_path)
        return;
    close();
    m_path = path;
    m_lineBroken = false;
    m_failureTold = false;
}

bool NyRotatingFile::append(const QByteArray &bytes)
{
    if (m_path.isEmpty() || bytes.isEmpty())
        return bytes.isEmpty();
    if (!ensureOpen())
        return fail(errno);
    struct stat status;
    if (::fstat(m_descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0
        && status.st_size + bytes.size() > LargestSize) {
        rotate();
        if (!ensureOpen())
            return fail(errno);
    }
    // After a write that broke off, the next line must not go on with the torn one.
    const QByteArray whole = m_lineBroken ? '\n' + bytes : bytes;
    qsizetype written = 0;
    while (written < whole.size()) {
        const ssize_t count = ::write(m_descriptor, whole.constData() + written, static_cast<size_t>(whole.size() - written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0) {
            const int error = count < 0 ? errno : ENOSPC;
            if (written > 0)
                m_lineBroken = true;
            return fail(error);
        }
        written += count;
    }
    m_lineBroken = false;
    m_failureTold = false;
    return true;
}

void NyRotatingFile::close()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
}

bool NyRotatingFile::ensureOpen()
{
    const QByteArray name = QFile::encodeName(m_path);
    // Another process may have set the file aside, or somebody removed it.
    if (m_descriptor >= 0 && !isSameFile(m_descriptor, name))
        close();
    if (m_descriptor >= 0)
        return true;
    // Non-blocking, because a pipe without a reader would hold the whole program.
    constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK;
    m_descriptor = ::open(name.constData(), flags, 0600);
    if (m_descriptor < 0 && errno == ENOENT && QDir().mkpath(QFileInfo(m_path).absolutePath()))
        m_descriptor = ::open(name.constData(), flags, 0600);
    return m_descriptor >= 0;
}

void NyRotatingFile::rotate()
{
    const QByteArray name = QFile::encodeName(m_path);
    // Whoever holds the lock is about to do the same; this file then just gets a little longer.
    if (::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0)
        return;
    if (isSameFile(m_descriptor, name)) {
        for (int number = KeptFiles; number > 0; --number)
            ::rename(rotatedName(m_path, number - 1).constData(), rotatedName(m_path, number).constData());
    }
    close();
}

bool NyRotatingFile::fail(int error)
{
    if (!m_failureTold) {
        // Not through Qt's logging, which may be what is being written here.
        std::fprintf(stderr, "cannot write the log file %s: %s\n", QFile::encodeName(m_path).constData(), std::strerror(error));
        m_failureTold = true;
    }
    return false;
}
