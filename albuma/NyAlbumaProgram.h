#pragma once

#include <QCoreApplication>

#include "NyAlbumaCommandLine.h"

/** The main program's two ways to run, each with the application object that it needs. Main thread. */
class NyAlbumaProgram
{
    Q_DECLARE_TR_FUNCTIONS(NyAlbumaProgram)
public:
    /** Reads the command line, runs, and returns the process's exit code. */
    static int run(int &argc, char **argv);

private:
    static int runBuilder(const NyAlbumaStart &start, int &argc, char **argv);
    static int runWindows(const NyAlbumaStart &start, int &argc, char **argv);
};
