#include "NyQuilloServiceInstallHandler.h"

#include "NyQuilloServiceInstallHandlerLinux.h"

NyQuilloServiceInstallHandler::NyQuilloServiceInstallHandler()
    : m_handler(new NyQuilloServiceInstallHandlerLinux)
{
}

NyQuilloServiceInstallHandler::~NyQuilloServiceInstallHandler() = default;

void NyQuilloServiceInstallHandler::install()
{
    m_handler->install();
}

void NyQuilloServiceInstallHandler::uninstall()
{
    m_handler->uninstall();
}

bool NyQuilloServiceInstallHandler::isInstalled() const
{
    return m_handler->isInstalled();
}
