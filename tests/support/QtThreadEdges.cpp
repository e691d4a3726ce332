// Qt's libraries are not built with the thread sanitizer, which therefore does not see their mutexes and atomics: all that one thread
// hands over to another through them would look like a race. The functions here stand before those of Qt that our code hands
// something over with, tell the sanitizer of the order that they give, and call Qt's. Linked into every program of the preset tsan.

#include <functional>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

#include <QCoreApplication>
#include <QEvent>
#include <QFutureInterface>
#include <QReadWriteLock>
#include <QRunnable>
#include <QThreadPool>
#include <QtConcurrent/qtconcurrentthreadengine.h>

namespace
{

/** Stands for the mutex of the main thread's queue of events. */
char mainQueue;
/** Stands for the semaphore that a blocking call waits for. */
char callEnd;
/** Stands for the barrier that the threads of a mapping end at. */
char mappingEnd;

/** Qt's own function of this mangled name; members take their object first. */
template <class Function>
Function *original(const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

/** Sees each event of the main thread before its receiver does. */
class Delivery : public QObject
{
public:
    using QObject::QObject;
    bool eventFilter(QObject *, QEvent *) override
    {
        __tsan_acquire(&mainQueue);
        return false;
    }
};

void watchDelivery()
{
    QCoreApplication::instance()->installEventFilter(new Delivery(QCoreApplication::instance()));
}

/** Calls a functor, on whatever thread. */
class FunctorCall : public QtPrivate::QSlotObjectBase
{
public:
    explicit FunctorCall(QtPrivate::QSlotObjectBase *slot)
        : QSlotObjectBase(&FunctorCall::handle)
        , m_slot(slot)
    {
        __tsan_release(this);
    }
    ~FunctorCall() { m_slot->destroyIfLastRef(); }
    Q_DISABLE_COPY_MOVE(FunctorCall)

private:
    static void handle(int which, QSlotObjectBase *base, QObject *receiver, void **arguments, bool *isEqual)
    {
        auto *const self = static_cast<FunctorCall *>(base);
        __tsan_acquire(self);
        if (which == Destroy) {
            delete self;
        } else if (which == Call) {
            self->m_slot->call(receiver, arguments);
            __tsan_release(&callEnd);
        } else if (which == Compare) {
            *isEqual = false;
        }
    }

    QSlotObjectBase *m_slot;
};

/** As Qt wraps a function for a pool. */
class Task : public QRunnable
{
public:
    Task(QThreadPool *pool, std::function<void()> function)
        : m_pool(pool)
        , m_function(std::move(function))
    {
    }
    void run() override
    {
        __tsan_acquire(static_cast<QRunnable *>(this));
        m_function();
        m_function = nullptr;
        __tsan_release(m_pool);
    }

private:
    QThreadPool *m_pool;
    std::function<void()> m_function;
};

}

Q_COREAPP_STARTUP_FUNCTION(watchDelivery)

// What is queued for the main thread, and calls on any thread.

void QCoreApplication::postEvent(QObject *receiver, QEvent *event, int priority)
{
    static const auto next = original<void(QObject *, QEvent *, int)>("_ZN16QCoreApplication9postEventEP7QObjectP6QEventi");
    __tsan_release(&mainQueue);
    next(receiver, event, priority);
}

void QObject::deleteLater()
{
    static const auto next = original<void(QObject *)>("_ZN7QObject11deleteLaterEv");
    __tsan_release(&mainQueue);
    next(this);
}

void QMetaObject::activate(QObject *sender, const QMetaObject *type, int signalIndex, void **arguments)
{
    static const auto next = original<void(QObject *, const QMetaObject *, int, void **)>("_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    __tsan_release(&mainQueue);
    next(sender, type, signalIndex, arguments);
}

bool QMetaObject::invokeMethodImpl(QObject *object, QtPrivate::QSlotObjectBase *slot, Qt::ConnectionType type, void *result)
{
    static const auto next = original<bool(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *)>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    const bool isCalled = next(object, new FunctorCall(slot), type, result);
    if (type == Qt::BlockingQueuedConnection)
        __tsan_acquire(&callEnd);
    return isCalled;
}

// What a pool's threads are given, and the waiting for them.

void QThreadPool::start(QRunnable *runnable, int priority)
{
    static const auto next = original<void(QThreadPool *, QRunnable *, int)>("_ZN11QThreadPool5startEP9QRunnablei");
    __tsan_release(runnable);
    next(this, runnable, priority);
}

void QThreadPool::start(std::function<void()> function, int priority)
{
    if (function)
        start(new Task(this, std::move(function)), priority);
}

bool QThreadPool::waitForDone(int timeoutMs)
{
    static const auto next = original<bool(QThreadPool *, int)>("_ZN11QThreadPool11waitForDoneEi");
    const bool isDone = next(this, timeoutMs);
    __tsan_acquire(this);
    return isDone;
}

void QtConcurrent::ThreadEngineBase::run()
{
    static const auto next = original<void(ThreadEngineBase *)>("_ZN12QtConcurrent16ThreadEngineBase3runEv");
    __tsan_acquire(static_cast<QRunnable *>(this));
    next(this);
}

/** A mapping's thread asks this last after its work. */
bool QtConcurrent::ThreadEngineBase::isCanceled()
{
    static const auto next = original<bool(ThreadEngineBase *)>("_ZN12QtConcurrent16ThreadEngineBase10isCanceledEv");
    __tsan_release(&mappingEnd);
    return next(this);
}

// A future's mutex. QFuture::isFinished() alone orders nothing, here as in Qt.

void QFutureInterfaceBase::reportStarted()
{
    static const auto next = original<void(QFutureInterfaceBase *)>("_ZN20QFutureInterfaceBase13reportStartedEv");
    __tsan_release(&mutex());
    next(this);
}

/** The first thing that a function run by QtConcurrent does on its thread. */
bool QFutureInterfaceBase::isCanceled() const
{
    static const auto next = original<bool(const QFutureInterfaceBase *)>("_ZNK20QFutureInterfaceBase10isCanceledEv");
    __tsan_acquire(&mutex());
    return next(this);
}

void QFutureInterfaceBase::reportResultsReady(int begin, int end)
{
    static const auto next = original<void(QFutureInterfaceBase *, int, int)>("_ZN20QFutureInterfaceBase18reportResultsReadyEii");
    __tsan_release(&mutex());
    __tsan_release(&mainQueue);
    next(this, begin, end);
}

void QFutureInterfaceBase::reportFinished()
{
    static const auto next = original<void(QFutureInterfaceBase *)>("_ZN20QFutureInterfaceBase14reportFinishedEv");
    __tsan_release(&mutex());
    __tsan_release(&mainQueue);
    next(this);
}

void QFutureInterfaceBase::waitForResult(int index)
{
    static const auto next = original<void(QFutureInterfaceBase *, int)>("_ZN20QFutureInterfaceBase13waitForResultEi");
    next(this, index);
    __tsan_acquire(&mutex());
    __tsan_acquire(&mappingEnd);
}

void QFutureInterfaceBase::waitForFinished()
{
    static const auto next = original<void(QFutureInterfaceBase *)>("_ZN20QFutureInterfaceBase15waitForFinishedEv");
    next(this);
    __tsan_acquire(&mutex());
    __tsan_acquire(&mappingEnd);
}

/** Whoever takes the last reference deletes the results. */
bool QFutureInterfaceBase::derefT() const noexcept
{
    static const auto next = original<bool(const QFutureInterfaceBase *)>("_ZNK20QFutureInterfaceBase6derefTEv");
    QMutex *const key = &mutex();
    __tsan_release(key);
    const bool isShared = next(this);
    __tsan_acquire(key);
    return isShared;
}

// QMutex tells of itself in the code that uses it, but not QReadWriteLock.

void QReadWriteLock::lockForRead()
{
    static const auto next = original<void(QReadWriteLock *)>("_ZN14QReadWriteLock11lockForReadEv");
    next(this);
    __tsan_acquire(this);
}

void QReadWriteLock::lockForWrite()
{
    static const auto next = original<void(QReadWriteLock *)>("_ZN14QReadWriteLock12lockForWriteEv");
    next(this);
    __tsan_acquire(this);
}

void QReadWriteLock::unlock()
{
    static const auto next = original<void(QReadWriteLock *)>("_ZN14QReadWriteLock6unlockEv");
    __tsan_release(this);
    next(this);
}
