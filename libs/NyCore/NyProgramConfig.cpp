#include "NyProgramConfig.h"

NyProgramConfig::NyProgramConfig() = default;

NyProgramConfig::~NyProgramConfig() = default;

QString NyProgramConfig::programName(const NyProgramID &programID) const
{
    switch (programID) {
    case NyProgramID::MainProgram:
        return QStringLiteral("VELMORA ALBUMA");
    case NyProgramID::QuilloService:
        return QStringLiteral("quilloservice");
    }
    return {};
}

QString NyProgramConfig::commandName(const NyProgramID &programID) const
{
    switch (programID) {
    case NyProgramID::MainProgram:
        return QStringLiteral("velmora-albuma");
    case NyProgramID::QuilloService:
        return QStringLiteral("quilloservice");
    }
    return {};
}
