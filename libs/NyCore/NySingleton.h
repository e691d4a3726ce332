#pragma once

#include <atomic>

#include <QtCore/QReadWriteLock>

/**
 * Gives a class one process-wide instance.
 *
 * The instance is made on first use and lives until the process ends. The template has default visibility, so every
 * library of the process sees the same object. Thread-safe; the object itself is as thread-safe as T is.
 */
template <class T>
class Q_DECL_EXPORT NySingleton
{
public:
    /** The one instance. T's constructor and setupInstance() run under the write lock and must not ask for it again. */
    static T &instance()
    {
        static QReadWriteLock lock;
        {
            QReadLocker reading(&lock);
            if (T *known = myInstance.load(std::memory_order_acquire))
                return *known;
        }
        QWriteLocker writing(&lock);
        T *object = myInstance.load(std::memory_order_relaxed);
        if (!object) {
            object = new T;
            static_cast<NySingleton<T> *>(object)->setupInstance();
            myInstance.store(object, std::memory_order_release);
        }
        return *object;
    }

protected:
    NySingleton() = default;
    virtual ~NySingleton() = default;

    /** Called once on the new instance, before anybody else sees it. */
    virtual void setupInstance() { }

private:
    Q_DISABLE_COPY_MOVE(NySingleton)

    // The lock alone would do; race checkers do not see into it, but they see this.
    static inline std::atomic<T *> myInstance{nullptr};
};
