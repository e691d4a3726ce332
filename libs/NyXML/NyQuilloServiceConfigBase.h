#pragma once

#include "NyXMLConfig.h"
#include "nyxml_export.h"

/** The configuration of the background service, the file "quilloservice.xml". */
class NYXML_EXPORT NyQuilloServiceConfigBase : public NyXMLConfig
{
    Q_OBJECT

public:
    NyQuilloServiceConfigBase();
    ~NyQuilloServiceConfigBase() override;
};
