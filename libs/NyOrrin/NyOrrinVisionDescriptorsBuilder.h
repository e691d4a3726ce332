#pragma once

#include "NyOrrinVisionDescriptors.h"
#include "nyorrin_export.h"

/** Receives what NyOrrinAccess::process() sees in a photo. Empty until then. */
class NYORRIN_EXPORT NyOrrinVisionDescriptorsBuilder
{
public:
    NyOrrinVisionDescriptorsBuilder();

    void setDescriptors(orrin::Descriptors descriptors);

    NyOrrinVisionDescriptors build() const;

private:
    orrin::Descriptors m_descriptors;
};
