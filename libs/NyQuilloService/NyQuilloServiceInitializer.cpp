#include "NyQuilloServiceInitializer.h"

#include "NyQuilloServiceSettings.h"

#include <NyGeneralSettings.h>
#include <NyLogMessageHandler.h>
#include <NyProgramConfig.h>

NyQuilloServiceInitializer NyQuilloServiceInitializer::me;

NyQuilloServiceInitializer::NyQuilloServiceInitializer()
{
    NyInitializer::instance().registerInitializer(this);
}

NyQuilloServiceInitializer::~NyQuilloServiceInitializer() = default;

void NyQuilloServiceInitializer::addCommandLineOptionHandlers(NyCommandLineParserAbstract *) { }

void NyQuilloServiceInitializer::setup(NyInitializerOption)
{
    if (NyProgramConfig::instance().programID() == NyProgramID::QuilloService)
        NyLogMessageHandler::instance().setVerbose(true, NyGeneralSettings::instance().logFile());
    NyQuilloServiceSettings::instance().loadSettings();
}

void NyQuilloServiceInitializer::teardown() { }
