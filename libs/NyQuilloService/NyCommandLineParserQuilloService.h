#pragma once

#include "nyquilloservice_export.h"

#include <NyCommandLineParserAbstract.h>

/** The command line of the service. Main thread. */
class NYQUILLOSERVICE_EXPORT NyCommandLineParserQuilloService : public NyCommandLineParserAbstract
{
public:
    NyCommandLineParserQuilloService();
    ~NyCommandLineParserQuilloService() override;

    QStringList evaluateCommandLine() override;

private:
    void addOptions();
};
