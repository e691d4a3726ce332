#include "NyChildProcess.h"

#include <csignal>

#include <QtCore/QProcess>

#include <sys/prctl.h>
#include <unistd.h>

void NyChildProcess::prepare(QProcess &process, Lifetime lifetime)
{
    const pid_t parent = ::getpid();
    // Between fork and exec only plain system calls are safe.
    process.setChildProcessModifier([parent, lifetime] {
        // A parent that reads its signals from a descriptor blocks them, and a child inherits that.
        sigset_t none;
        ::sigemptyset(&none);
        ::sigprocmask(SIG_SETMASK, &none, nullptr);
        for (const int number : {SIGTERM, SIGINT, SIGHUP})
            ::signal(number, SIG_DFL);
        if (lifetime == Lifetime::Independent)
            return;
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        // The parent may have ended before the line above.
        if (::getppid() != parent)
            ::_exit(1);
    });
}
