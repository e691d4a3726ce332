#include "NyQuilloServiceInstallHandlerDefault.h"

#include <QDebug>

NyQuilloServiceInstallHandlerDefault::~NyQuilloServiceInstallHandlerDefault() = default;

void NyQuilloServiceInstallHandlerDefault::install()
{
    qWarning() << "NyQuilloServiceInstallHandlerInterface::install not implemented on this platform.";
}

void NyQuilloServiceInstallHandlerDefault::uninstall()
{
    qWarning() << "NyQuilloServiceInstallHandlerInterface::uninstall not implemented on this platform.";
}

bool NyQuilloServiceInstallHandlerDefault::isInstalled() const
{
    return false;
}
