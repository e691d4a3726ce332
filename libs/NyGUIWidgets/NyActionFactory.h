#pragma once

#include "NyActionType.h"
#include "nyguiwidgets_export.h"

/** Knows how actions look. Each kind of action has one factory at most. Main thread. */
class NYGUIWIDGETS_EXPORT NyActionFactory
{
public:
    virtual ~NyActionFactory();
    NyActionFactory(const NyActionFactory &) = delete;
    NyActionFactory &operator=(const NyActionFactory &) = delete;

    /** The factory of that kind of action, which lives until the process ends; null for a kind that nobody makes. */
    static NyActionFactory *factory(NyActionType type);

protected:
    NyActionFactory();
};
