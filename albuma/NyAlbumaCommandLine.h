#pragma once

#include <QCoreApplication>

#include <NyCommandLineParserAbstract.h>

#include "NyBookBuilder.h"

/** What the main program was started for. */
struct NyAlbumaStart
{
    enum class Mode { Window, Builder };

    Mode mode = Mode::Window;
    /** Filled for the builder, except for the pictures home. */
    NyBuilderRequest builder;
    /** The project to open; empty for the start window. */
    QString projectFile;
    /** Whether the user is spared what is wrong with a project that can be shown nevertheless. */
    bool suppressLoadWarnings = false;
    /** Not empty if the command line makes no sense. */
    QString error;
};

/** The main program's command line. */
class NyAlbumaCommandLine : public NyCommandLineParserAbstract
{
    Q_DECLARE_TR_FUNCTIONS(NyAlbumaCommandLine)
public:
    NyAlbumaCommandLine();

    /** Reads QCoreApplication::arguments(); ends the process as processCommandLine() says. */
    NyAlbumaStart read();

private:
    QString readBuilder(NyBuilderRequest &request) const;
};
