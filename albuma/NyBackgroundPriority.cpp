#include "NyBackgroundPriority.h"

#include <cerrno>

#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QDebug>

void NyBackgroundPriority::lower()
{
    constexpr int lowestNice = 19;
    if (::setpriority(PRIO_PROCESS, 0, lowestNice) != 0)
        qWarning() << "builder: CPU priority stays as it is:" << qt_error_string(errno);
    // From linux/ioprio.h, which not every system installs.
    constexpr int ioprioWhoProcess = 1;
    constexpr int ioprioClassIdle = 3;
    constexpr int ioprioClassShift = 13;
    if (::syscall(SYS_ioprio_set, ioprioWhoProcess, 0, ioprioClassIdle << ioprioClassShift) != 0)
        qWarning() << "builder: disk priority stays as it is:" << qt_error_string(errno);
}
