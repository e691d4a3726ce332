#include "NyActionFactory.h"

#include "NyActionFactoryCommon.h"

NyActionFactory::NyActionFactory() = default;

NyActionFactory::~NyActionFactory() = default;

NyActionFactory *NyActionFactory::factory(NyActionType type)
{
    static NyActionFactoryCommon *const common = new NyActionFactoryCommon;
    return NyActionFactoryCommon::makes(type) ? common : nullptr;
}
