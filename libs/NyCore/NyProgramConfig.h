#pragma once

#include <QtCore/QString>

#include "NySingleton.h"
#include "nycore_export.h"

/** The programs of the family. */
enum class NyProgramID : int { MainProgram = 1, QuilloService = 8 };

/** Which program of the family is running, and how its programs are called. Set once at start, on the main thread. */
class NYCORE_EXPORT NyProgramConfig : public NySingleton<NyProgramConfig>
{
public:
    NyProgramConfig();
    ~NyProgramConfig() override;

    /** The running program; the main program unless said otherwise. */
    NyProgramID programID() const { return m_programID; }
    void setProgramID(NyProgramID programID) { m_programID = programID; }

    /** The file name of the program's executable, which is also the name that people see. */
    QString programName(const NyProgramID &programID) const;

    /** The program's name in the search path, in log file names and in the settings store: lower case, no blanks. */
    QString commandName(const NyProgramID &programID) const;

private:
    NyProgramID m_programID = NyProgramID::MainProgram;
};
