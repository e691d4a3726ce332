#include "NyCommandLineOptionHandlerServiceMode.h"

NyCommandLineOptionHandlerServiceMode::~NyCommandLineOptionHandlerServiceMode() = default;

NyQuilloServiceMode NyCommandLineOptionHandlerServiceMode::mode(const QString &value) const
{
    const QChar letter = value.at(0).toLower();
    if (letter.unicode() > 255)
        return ServiceModeNormal;
    switch (letter.toLatin1()) {
    case 'i':
        return ServiceModeInstall;
    case 'u':
        return ServiceModeUninstall;
    case 'z':
        return ServiceModeReset;
    case 's':
        return ServiceModeAutostartQuery;
    default:
        return ServiceModeNormal;
    }
}

void NyCommandLineOptionHandlerServiceMode::optionUsed(const QString &value)
{
    NyQuilloServiceSettings::instance().setServiceMode(mode(value));
}
