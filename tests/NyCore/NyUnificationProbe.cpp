#include "NyUnificationProbe.h"

NyProbeSingleton *probeSingletonOfLibrary()
{
    return &NyProbeSingleton::instance();
}

NyProgramConfig *programConfigOfLibrary()
{
    return &NySingleton<NyProgramConfig>::instance();
}

const NyEnumToStringTable<NyProbeEnum> *probeTableOfLibrary()
{
    return NyProbeWrapper().enumToStringTable();
}
