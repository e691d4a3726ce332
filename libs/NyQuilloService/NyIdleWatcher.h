#pragma once

#include "NyIdleWatcherInterface.h"

/** The idle watcher that the controller holds; it asks the platform's strategy, which it owns. */
class NYQUILLOSERVICE_EXPORT NyIdleWatcher : public NyIdleWatcherInterface
{
    Q_OBJECT

public:
    explicit NyIdleWatcher(QObject *parent);

    bool isIdle() const override;

private:
    NyIdleWatcherInterface *m_strategy;
};
