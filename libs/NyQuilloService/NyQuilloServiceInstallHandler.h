#pragma once

#include "NyQuilloServiceInstallHandlerInterface.h"

/** The install handler of this platform; made where it is needed. */
class NYQUILLOSERVICE_EXPORT NyQuilloServiceInstallHandler : public NyQuilloServiceInstallHandlerInterface
{
public:
    NyQuilloServiceInstallHandler();
    ~NyQuilloServiceInstallHandler() override;

    void install() override;
    void uninstall() override;
    bool isInstalled() const override;

private:
    // Lives to the end of the process.
    NyQuilloServiceInstallHandlerInterface *m_handler;
};
