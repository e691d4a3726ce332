#pragma once

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QByteArray>
#include <QString>

#include "WithoutRootPowers.h"

/** Makes folders and files with any bytes in their names, as tests of file system code need them. */
class TreeBuilder
{
public:
    explicit TreeBuilder(const QString &root)
        : m_root(root.toStdString())
    {
        folder("");
    }

    std::string path(const std::string &name) const { return name.empty() ? m_root : m_root + '/' + name; }

    void folder(const std::string &name)
    {
        // Also makes what is missing above.
        for (std::size_t slash = name.find('/'); slash != std::string::npos; slash = name.find('/', slash + 1))
            ::mkdir(path(name.substr(0, slash)).c_str(), 0755);
        check(::mkdir(path(name).c_str(), 0755) == 0 || errno == EEXIST, name);
    }
    void file(const std::string &name)
    {
        if (const std::size_t slash = name.rfind('/'); slash != std::string::npos)
            folder(name.substr(0, slash));
        const int descriptor = ::open(path(name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
        check(descriptor >= 0, name);
        ::close(descriptor);
    }
    /** A file whose modification time, and under FileSystemDoubles its birth time, is the given one. */
    void file(const std::string &name, qint64 timeMs)
    {
        file(name);
        const timespec time{timeMs / 1000, (timeMs % 1000) * 1000000};
        const timespec times[]{time, time};
        check(::utimensat(AT_FDCWD, path(name).c_str(), times, 0) == 0, name);
    }
    void link(const std::string &name, const std::string &target)
    {
        if (const std::size_t slash = name.rfind('/'); slash != std::string::npos)
            folder(name.substr(0, slash));
        check(::symlink(target.c_str(), path(name).c_str()) == 0, name);
    }
    void pipe(const std::string &name) { check(::mkfifo(path(name).c_str(), 0644) == 0, name); }
    void socket(const std::string &name)
    {
        // Socket addresses are short, so it is bound by a name in the working directory.
        const int before = ::open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        const std::size_t slash = name.rfind('/');
        check(::chdir(path(slash == std::string::npos ? std::string() : name.substr(0, slash)).c_str()) == 0, name);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const std::string last = slash == std::string::npos ? name : name.substr(slash + 1);
        std::memcpy(address.sun_path, last.c_str(), last.size());
        const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        check(::bind(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0, name);
        ::close(descriptor);
        check(::fchdir(before) == 0, name);
        ::close(before);
    }
    void mode(const std::string &name, mode_t bits) { check(::chmod(path(name).c_str(), bits) == 0, name); }

private:
    static void check(bool succeeded, const std::string &name)
    {
        if (!succeeded)
            qFatal("could not make %s: %s", name.c_str(), std::strerror(errno));
    }

    std::string m_root;
};
