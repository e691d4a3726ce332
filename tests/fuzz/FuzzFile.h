#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QString>
#include <QtGlobal>

/** What the fuzzers share: a folder in memory for the bytes under test, and no log lines. */
namespace FuzzFile
{

/** Ends the run with a finding. */
inline void require(bool condition)
{
    if (!condition)
        std::abort();
}

/** Of this process alone; removed when it ends by itself. */
inline const QString &folder()
{
    static const QString path = [] {
        std::string name = std::string(::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp") + "/velmora-fuzz-XXXXXX";
        require(::mkdtemp(name.data()) != nullptr);
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
        static std::string kept;
        kept = name;
        std::atexit([] {
            // Only file names that this header made.
            for (const char *file : {"/bytes", "/bytes.jpg", "/bytes.nef", "/bytes.jpg.xmp", "/bytes.xml", "/bytes.json"})
                ::unlink((kept + file).c_str());
            ::rmdir(kept.c_str());
        });
        return QFile::decodeName(QByteArray::fromStdString(name));
    }();
    return path;
}

/** Writes the bytes into the folder under one of the names above; the path. */
inline QString write(const char *name, const std::uint8_t *data, std::size_t size)
{
    const QString path = folder() + QLatin1Char('/') + QLatin1StringView(name);
    const int file = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    require(file >= 0);
    for (std::size_t done = 0; done < size;) {
        const ssize_t count = ::write(file, data + done, size - done);
        require(count > 0);
        done += std::size_t(count);
    }
    ::close(file);
    return path;
}

}
