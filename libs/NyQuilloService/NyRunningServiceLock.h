#pragma once

#include "nyquilloservice_export.h"

#include <QString>

/**
 * Keeps a second service of the same user from running beside the first: both would build and offer the same book.
 *
 * A file in the folder of the user's data that the running service holds locked. The system lets go of it when the process ends,
 * however it ends, so what a dead service left behind is never in the way. Main thread.
 */
class NYQUILLOSERVICE_EXPORT NyRunningServiceLock
{
public:
    NyRunningServiceLock();
    ~NyRunningServiceLock();
    Q_DISABLE_COPY_MOVE(NyRunningServiceLock)

    /**
     * False if another process holds the lock, and still does after `patienceMs`: it may be about to end. True if this process
     * holds it now, and also, with a warning, if the file cannot be made or locked: better two services than none.
     */
    bool acquire(int patienceMs);

    /** The id of the process that holds the lock, as far as it has written it; 0 otherwise. */
    qint64 holder() const;

    static QString filePath();

private:
    int m_file = -1;
};
