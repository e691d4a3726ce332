#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include "nycore_export.h"

/** What differs between platforms. The base does what fits a freedesktop system. */
class NYCORE_EXPORT NyPlatformIndependent
{
public:
    /** The running platform's object; lives until the process ends. Thread-safe. */
    static NyPlatformIndependent &instance();

    virtual ~NyPlatformIndependent();

    /** Called once by a program after its set-up. */
    virtual void prepareProgram();

    /**
     * Starts a program that lives on without the caller.
     *
     * False, with nothing started, when @p path is no executable file or the start fails. An empty working directory means
     * the caller's. @p processId gets the id of what was started.
     */
    virtual bool runProgram(
        const QString &path, const QStringList &arguments, const QString &workingDirectory, qint64 *processId = nullptr) const;

    /** Whether the platform itself keeps the last proposal at hand for the user, so that a menu need not offer it. */
    virtual bool remembersLastProposalElsewhere() const;

    /** Gives memory that the heap holds and nobody uses back to the system, as after work that needed a lot. Thread-safe. */
    virtual void releaseUnusedMemory() const;

protected:
    NyPlatformIndependent();

private:
    Q_DISABLE_COPY_MOVE(NyPlatformIndependent)
};
