#pragma once

#include "NyQuilloServiceInstallHandlerInterface.h"

/** The handler of a platform without autostart: it only says so. */
class NYQUILLOSERVICE_EXPORT NyQuilloServiceInstallHandlerDefault : public NyQuilloServiceInstallHandlerInterface
{
public:
    ~NyQuilloServiceInstallHandlerDefault() override;

    void install() override;
    void uninstall() override;
    bool isInstalled() const override;
};
