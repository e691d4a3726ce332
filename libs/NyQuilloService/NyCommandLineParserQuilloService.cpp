#include "NyCommandLineParserQuilloService.h"

#include "NyCommandLineOptionHandlerServiceMode.h"
#include "NyCommandLineOptionHandlerToastNotification.h"

NyCommandLineParserQuilloService::NyCommandLineParserQuilloService()
{
    addOptions();
}

NyCommandLineParserQuilloService::~NyCommandLineParserQuilloService() = default;

QStringList NyCommandLineParserQuilloService::evaluateCommandLine()
{
    return NyCommandLineParserAbstract::evaluateCommandLine();
}

void NyCommandLineParserQuilloService::addOptions()
{
    addOption(CommandLineOptionType::OptionWithValue, new NyCommandLineOptionHandlerServiceMode, {QStringLiteral("serviceMode")},
        QStringLiteral("Switches the current Mode of the Service. n = normal; i = install; u = uninstall"), QStringLiteral("serviceMode"),
        QStringLiteral("n"));
    addOption(CommandLineOptionType::Flag, {QStringLiteral("Embedding")}, QStringLiteral("Weird Stuff Windows sometimes does"), QString(),
        QString());
    addOption(CommandLineOptionType::Flag, new NyCommandLineOptionHandlerToastNotification, {QStringLiteral("ToastActivated")},
        QStringLiteral("Signals that we were called by Windows in response to the user clicking on a toast notifaction button"), QString(),
        QString());
}
