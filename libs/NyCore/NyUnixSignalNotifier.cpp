#include "NyUnixSignalNotifier.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QDebug>
#include <QList>
#include <QSocketNotifier>

namespace
{
int sockets[2] = {-1, -1};
QList<QPair<int, struct sigaction>> formerHandlers;

void handleSignal(int signalNumber)
{
    const int savedErrno = errno;
    const auto byte = static_cast<unsigned char>(signalNumber);
    // A full socket already holds enough signals to act on.
    [[maybe_unused]] const ssize_t written = ::write(sockets[0], &byte, 1);
    errno = savedErrno;
}
}

NyUnixSignalNotifier::NyUnixSignalNotifier(std::initializer_list<int> signalNumbers, QObject *parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, sockets) != 0) {
        qWarning() << "NyUnixSignalNotifier: no socket pair:" << qt_error_string(errno);
        return;
    }
    m_notifier = new QSocketNotifier(sockets[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &NyUnixSignalNotifier::readSignals);
    for (const int signalNumber : signalNumbers) {
        struct sigaction action = {};
        action.sa_handler = handleSignal;
        sigemptyset(&action.sa_mask);
        action.sa_flags = SA_RESTART;
        struct sigaction former = {};
        if (::sigaction(signalNumber, nullptr, &former) == 0 && former.sa_handler == SIG_IGN)
            continue; // Whoever started this process wants it to outlive the signal, as nohup does.
        if (::sigaction(signalNumber, &action, &former) == 0)
            formerHandlers.append({signalNumber, former});
        else
            qWarning() << "NyUnixSignalNotifier: cannot catch signal" << signalNumber << qt_error_string(errno);
    }
}

NyUnixSignalNotifier::~NyUnixSignalNotifier()
{
    for (const auto &[signalNumber, former] : std::as_const(formerHandlers))
        ::sigaction(signalNumber, &former, nullptr);
    formerHandlers.clear();
    delete m_notifier;
    for (int &socket : sockets) {
        if (socket >= 0)
            ::close(socket);
        socket = -1;
    }
}

void NyUnixSignalNotifier::readSignals()
{
    unsigned char byte = 0;
    while (::read(sockets[1], &byte, 1) == 1)
        Q_EMIT received(byte);
}
