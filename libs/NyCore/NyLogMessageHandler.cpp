#include "NyLogMessageHandler.h"

#include <atomic>
#include <cstdlib>

#include <QtCore/QByteArray>
#include <QtCore/QDateTime>
#include <QtCore/QElapsedTimer>
#include <QtCore/QLoggingCategory>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QString>

#include "NyRotatingFile.h"

namespace
{

constexpr qsizetype LargestBuffer = 64 * 1024;
constexpr qint64 OldestLineMs = 1000;

QByteArray levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "info";
    case QtWarningMsg:
        return "warning";
    case QtCriticalMsg:
        return "critical";
    case QtFatalMsg:
        return "fatal";
    }
    return "unknown";
}

bool isSevere(QtMsgType type)
{
    return type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg;
}

QByteArray line(QtMsgType type, const QString &message)
{
    const QDateTime now = QDateTime::currentDateTime();
    QByteArray text = message.toUtf8();
    // A name with a line break must not look like a line of its own.
    text.replace('\n', "\n\t");
    return now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODateWithMs).toLatin1() + ' ' + levelName(type) + ' ' + text + '\n';
}

} // namespace

class NyLogMessageHandler::Private
{
public:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message);
    static void flushAtExit();

    void add(QtMsgType type, const QString &message);
    void flush();

    static inline std::atomic<Private *> s_active{nullptr};
    static inline std::atomic<QtMessageHandler> s_previous{nullptr};

    QMutex mutex;
    NyRotatingFile file;
    QByteArray buffer;
    QElapsedTimer oldestLine;
    bool verbose = false;
};

void NyLogMessageHandler::Private::handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (Private *active = s_active.load(std::memory_order_acquire))
        active->add(type, message);
    if (const QtMessageHandler previous = s_previous.load(std::memory_order_acquire))
        previous(type, context, message);
}

void NyLogMessageHandler::Private::flushAtExit()
{
    if (Private *active = s_active.load(std::memory_order_acquire)) {
        const QMutexLocker locker(&active->mutex);
        active->flush();
    }
}

void NyLogMessageHandler::Private::add(QtMsgType type, const QString &message)
{
    const QMutexLocker locker(&mutex);
    if (file.path().isEmpty() || (!verbose && !isSevere(type)))
        return;
    if (buffer.isEmpty())
        oldestLine.start();
    buffer += line(type, message);
    if (isSevere(type) || buffer.size() >= LargestBuffer || oldestLine.hasExpired(OldestLineMs))
        flush();
}

void NyLogMessageHandler::Private::flush()
{
    if (buffer.isEmpty())
        return;
    file.append(buffer);
    buffer.clear();
}

NyLogMessageHandler::NyLogMessageHandler()
    : d(std::make_unique<Private>())
{
}

NyLogMessageHandler::~NyLogMessageHandler()
{
    setVerbose(false, QFileInfo());
}

void NyLogMessageHandler::setVerbose(bool verbose, const QFileInfo &logFile)
{
    const QString path = logFile.filePath().isEmpty() ? QString() : logFile.absoluteFilePath();
    {
        const QMutexLocker locker(&d->mutex);
        d->flush();
        d->file.setPath(path);
        d->verbose = verbose;
    }
    if (path.isEmpty()) {
        Private *self = d.get();
        if (!Private::s_active.compare_exchange_strong(self, nullptr))
            return;
        const QtMessageHandler current = qInstallMessageHandler(Private::s_previous.load());
        // Somebody may have put a handler of theirs before this one; it stays.
        if (current != &Private::handle)
            qInstallMessageHandler(current);
        return;
    }
    if (verbose) {
        // Some systems ship logging rules that switch these levels off.
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, true);
        QLoggingCategory::defaultCategory()->setEnabled(QtInfoMsg, true);
    }
    if (Private::s_active.exchange(d.get()) != nullptr)
        return;
    static const int registered = std::atexit(&Private::flushAtExit);
    Q_UNUSED(registered)
    const QtMessageHandler previous = qInstallMessageHandler(&Private::handle);
    if (previous != &Private::handle)
        Private::s_previous.store(previous);
}

void NyLogMessageHandler::flushLogFile()
{
    const QMutexLocker locker(&d->mutex);
    d->flush();
}
