#include "NyCommandLineOptionHandlerToastNotification.h"

#include "NyQuilloServiceSettings.h"

NyCommandLineOptionHandlerToastNotification::~NyCommandLineOptionHandlerToastNotification() = default;

void NyCommandLineOptionHandlerToastNotification::optionUsed(const QString &)
{
    NyQuilloServiceSettings::instance().setServiceMode(ServiceModeToastActivation);
}
