#pragma once

#include <cerrno>

#include <dirent.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

/**
 * File systems that a test machine does not have, by functions of this program that stand before those of the C library for Qt and
 * our libraries alike. To be included in one source file of a program.
 */
namespace FileSystemDoubles
{
/** The birth time is what the modification time is, so that a test can set it. */
inline bool birthIsModification = false;
/** No birth times, as on FUSE and some network file systems. */
inline bool noBirthTimes = false;
/** Directory entries without types, as on some older file systems. */
inline bool noEntryTypes = false;
inline int untypedEntries = 0;

struct Switch
{
    explicit Switch(bool &flag)
        : m_flag(flag)
    {
        m_flag = true;
    }
    ~Switch() { m_flag = false; }
    Switch(const Switch &) = delete;
    Switch &operator=(const Switch &) = delete;

private:
    bool &m_flag;
};
}

extern "C" __attribute__((visibility("default"))) int statx(
    int descriptor, const char *path, int flags, unsigned int mask, struct statx *status) noexcept
{
    const int result = int(::syscall(SYS_statx, descriptor, path, flags, mask | STATX_MTIME, status));
    if (result == 0 && FileSystemDoubles::birthIsModification) {
        status->stx_btime = status->stx_mtime;
        status->stx_mask |= STATX_BTIME;
    }
    if (result == 0 && FileSystemDoubles::noBirthTimes) {
        status->stx_btime = {};
        status->stx_mask &= ~unsigned(STATX_BTIME);
    }
    return result;
}

extern "C" __attribute__((visibility("default"))) ssize_t getdents64(int descriptor, void *buffer, size_t size) noexcept
{
    const ssize_t bytes = ::syscall(SYS_getdents64, descriptor, buffer, size);
    if (!FileSystemDoubles::noEntryTypes)
        return bytes;
    for (ssize_t offset = 0; offset < bytes;) {
        auto *entry = reinterpret_cast<struct dirent64 *>(static_cast<char *>(buffer) + offset);
        entry->d_type = DT_UNKNOWN;
        offset += entry->d_reclen;
        ++FileSystemDoubles::untypedEntries;
    }
    return bytes;
}
