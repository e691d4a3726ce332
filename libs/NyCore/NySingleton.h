#pragma once

#include <QtCore/QReadWriteLock>

/**
 * Gives a class one process-wide instance.
 *
 * The instance is made on first use and lives until the process ends. The template has default visibility, so every
 * library of the process sees the same object. Thread-safe; the object itself is as thread-safe as T is.
 */
template<class T>
class Q_DECL_EXPORT NySingleton {
public:
    /** The one instance. T's constructor and setupInstance() run under the write lock and must not ask for it again. */
    static T& instance()
    {
        static QReadWriteLock lock;
        {
            QReadLocker reading(&lock);
            if (myInstance)
                return *myInstance;
        }
        QWriteLocker writing(&lock);
        if (!myInstance) {
            T* created = new T;
            static_cast<NySingleton<T>*>(created)->setupInstance();
            myInstance = created;
        }
        return *myInstance;
    }

protected:
    NySingleton() = default;
    virtual ~NySingleton() = default;

    /** Called once on the new instance, before anybody else sees it. */
    virtual void setupInstance() {}

private:
    Q_DISABLE_COPY_MOVE(NySingleton)

    static inline T* myInstance = nullptr;
};
