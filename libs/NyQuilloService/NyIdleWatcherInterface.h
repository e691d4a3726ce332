#pragma once

#include "nyquilloservice_export.h"

#include <QObject>

/** Answers whether the machine may be loaded now. Main thread. */
class NYQUILLOSERVICE_EXPORT NyIdleWatcherInterface : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyIdleWatcherInterface)

public:
    explicit NyIdleWatcherInterface(QObject *parent);
    ~NyIdleWatcherInterface() override;

    virtual bool isIdle() const = 0;
};
