#pragma once

#include <QtCore/QtGlobal>

#include "nycore_export.h"

/**
 * Holds the settings store for this thread, against other threads and other processes, while the object lives.
 *
 * Recursive within a thread. What a dead process left locked is taken over. The wait is bounded: after 3 s of a living
 * holder a warning is written and the work goes on unlocked, since the store's file is replaced whole in any case.
 */
class NYCORE_EXPORT NySettingsLock
{
public:
    NySettingsLock();
    ~NySettingsLock();

    /** False when another holder did not let go in time, or the lock file could not be made. */
    bool isLocked() const { return m_locked; }

private:
    Q_DISABLE_COPY_MOVE(NySettingsLock)

    bool m_entered = false;
    bool m_locked = false;
};
