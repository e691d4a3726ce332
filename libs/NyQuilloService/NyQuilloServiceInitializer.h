#pragma once

#include "nyquilloservice_export.h"

#include <NyInitializer.h>
#include <NyInitializerAbstract.h>

/** Connects this library to the start-up of whatever program loads it: logging of the service, settings. Main thread. */
class NYQUILLOSERVICE_EXPORT NyQuilloServiceInitializer : public NyInitializerAbstract
{
public:
    NyQuilloServiceInitializer();
    ~NyQuilloServiceInitializer() override;

    void addCommandLineOptionHandlers(NyCommandLineParserAbstract *parser) override;
    void setup(NyInitializerOption option) override;
    void teardown() override;

    /** Registers itself when the library is loaded. */
    static NyQuilloServiceInitializer me;
};
