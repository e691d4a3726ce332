#pragma once

#include "nycore_export.h"

class NyCommandLineParserAbstract;

/** What is being set up. */
enum class NyInitializerOption : int { MainWindow = 0, Builder = 1, Test = 2, BackgroundService = 3 };

/** One library's part in the program's start and end. Objects are static: they register themselves when their library is loaded. */
class NYCORE_EXPORT NyInitializerAbstract
{
public:
    virtual ~NyInitializerAbstract();

    virtual void addCommandLineOptionHandlers(NyCommandLineParserAbstract *parser) = 0;
    virtual void setup(NyInitializerOption option) = 0;
    virtual void teardown() = 0;
};
