#include "NyRunningServiceLock.h"

#include <NyDirectoryConfig.h>

#include <QDeadlineTimer>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace
{
constexpr int pollMs = 50;

bool lockAtOnce(int file)
{
    int result = -1;
    do
        result = ::flock(file, LOCK_EX | LOCK_NB);
    while (result != 0 && errno == EINTR);
    return result == 0;
}
}

NyRunningServiceLock::NyRunningServiceLock() = default;

NyRunningServiceLock::~NyRunningServiceLock()
{
    // The file stays: to remove it would take it from under one that has just opened it.
    if (m_file >= 0)
        ::close(m_file);
}

bool NyRunningServiceLock::acquire(int patienceMs)
{
    if (m_file >= 0)
        return true;
    const QString path = filePath();
    QDir().mkpath(QFileInfo(path).absolutePath());
    // Not passed on to the programs that the service starts, which may live longer.
    const int file = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0) {
        qWarning() << "QUILLO_SERVICE: another service would not be noticed, cannot open:" << path << std::strerror(errno);
        return true;
    }
    const QDeadlineTimer patience(patienceMs);
    while (!lockAtOnce(file)) {
        if (errno != EWOULDBLOCK) {
            qWarning() << "QUILLO_SERVICE: another service would not be noticed, cannot lock:" << path << std::strerror(errno);
            ::close(file);
            return true;
        }
        if (patience.hasExpired()) {
            ::close(file);
            return false;
        }
        QThread::msleep(pollMs);
    }
    m_file = file;
    // For people and log lines only.
    const QByteArray id = QByteArray::number(qint64(::getpid())) + '\n';
    if (::ftruncate(file, 0) != 0 || ::pwrite(file, id.constData(), size_t(id.size()), 0) != id.size())
        qDebug() << "QUILLO_SERVICE: cannot write to:" << path;
    return true;
}

qint64 NyRunningServiceLock::holder() const
{
    QFile file(filePath());
    return file.open(QIODevice::ReadOnly) ? file.read(32).trimmed().toLongLong() : 0;
}

QString NyRunningServiceLock::filePath()
{
    return NyDirectoryConfig::instance().serviceLockFile();
}
