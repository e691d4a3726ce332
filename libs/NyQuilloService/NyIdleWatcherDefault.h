#pragma once

#include "NyIdleWatcherInterface.h"

/** The strategy of a platform on which idleness is not measured: the machine may always be loaded. */
class NYQUILLOSERVICE_EXPORT NyIdleWatcherDefault : public NyIdleWatcherInterface
{
    Q_OBJECT

public:
    explicit NyIdleWatcherDefault(QObject *parent);

    bool isIdle() const override;
};
