#include "NyQuilloServiceInstallHandlerInterface.h"

#include "NyQuilloServiceController.h"

#include <NyInstallationSettings.h>
#include <NyLogger.h>

NyQuilloServiceInstallHandlerInterface::~NyQuilloServiceInstallHandlerInterface() = default;

void NyQuilloServiceInstallHandlerInterface::cancelRunningService()
{
    NyQuilloServiceController::quitRunningService();
}

void NyQuilloServiceInstallHandlerInterface::setAutoStartService(bool value)
{
    NyInstallationSettings::instance().setAutoStartService(value, true);
    NyLogger::instance().logQuilloService(value ? QStringLiteral("setAutoStartService VALUE:1 SOURCE:service")
                                                : QStringLiteral("setAutoStartService VALUE:0 SOURCE:service"));
}
