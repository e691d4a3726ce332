#pragma once

#include "nyquilloservice_export.h"

/** Lets the service start with the user's desktop session, or not. Main thread; no operation reports a failure. */
class NYQUILLOSERVICE_EXPORT NyQuilloServiceInstallHandlerInterface
{
public:
    virtual ~NyQuilloServiceInstallHandlerInterface();

    virtual void install() = 0;
    virtual void uninstall() = 0;
    virtual bool isInstalled() const = 0;
    /** Tells a service that is running now to end. */
    virtual void cancelRunningService();

    /** Stores whether the service starts with the session, as something that has taken effect already. */
    void setAutoStartService(bool value);
};
