#pragma once

#include "NyActionFactory.h"

#include <QCoreApplication>

class QAction;

/** Makes the actions that belong to no document: those of the service's menu. Main thread. */
class NYGUIWIDGETS_EXPORT NyActionFactoryCommon : public NyActionFactory
{
    Q_DECLARE_TR_FUNCTIONS(NyActionFactoryCommon)

public:
    NyActionFactoryCommon();
    ~NyActionFactoryCommon() override;

    static bool makes(NyActionType type);

    /** A new action with its text and icon, without a parent; null for a kind that this factory does not make. */
    virtual QAction *createAndConfigureAction(NyActionType type);
};
