#include "NyActionRegistry.h"

NyActionRegistry::NyActionRegistry() = default;

NyActionRegistry::~NyActionRegistry() = default;
