#include "NyInitializerAbstract.h"

NyInitializerAbstract::~NyInitializerAbstract() = default;
