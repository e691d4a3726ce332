#pragma once

class QProcess;

/** What every child process of the family needs between its birth and its program. */
class NyChildProcess
{
public:
    enum class Lifetime {
        EndsWithThisProcess, ///< gets SIGTERM when the thread that starts it ends
        Independent,
    };

    /** Call before the start, on the thread that starts it. */
    static void prepare(QProcess &process, Lifetime lifetime);
};
