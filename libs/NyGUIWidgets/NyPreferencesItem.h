#pragma once

#include "NyPreferencesType.h"
#include "nyguiwidgets_export.h"

/** One item of the settings window: controls that are filled from the settings and written back to them. Main thread. */
class NYGUIWIDGETS_EXPORT NyPreferencesItem
{
public:
    NyPreferencesItem();
    virtual ~NyPreferencesItem();
    NyPreferencesItem(const NyPreferencesItem &) = delete;
    NyPreferencesItem &operator=(const NyPreferencesItem &) = delete;

    virtual NyPreferencesType type() const = 0;
    /** Stores what the controls say and makes it take effect. */
    virtual void writeToConfig() = 0;
    /** Fills the controls from the settings. */
    virtual void readFromConfig() = 0;
    /** Whether the controls are in a state in which the user may leave the item. May ask the user. */
    virtual bool checkLeaveCondition() = 0;
    /** Gives up what the user changed since the controls were filled or written. */
    virtual void revertChanges() = 0;
};
