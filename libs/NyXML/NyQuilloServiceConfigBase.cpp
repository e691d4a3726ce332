#include "NyQuilloServiceConfigBase.h"

NyQuilloServiceConfigBase::NyQuilloServiceConfigBase()
    : NyXMLConfig(NyResourceFile(QStringLiteral("quilloservice.xml")))
{
}

NyQuilloServiceConfigBase::~NyQuilloServiceConfigBase() = default;
