#include "NyOrrinVisionDescriptorsBuilder.h"

NyOrrinVisionDescriptorsBuilder::NyOrrinVisionDescriptorsBuilder() = default;

void NyOrrinVisionDescriptorsBuilder::setDescriptors(orrin::Descriptors descriptors)
{
    m_descriptors = std::move(descriptors);
}

NyOrrinVisionDescriptors NyOrrinVisionDescriptorsBuilder::build() const
{
    return NyOrrinVisionDescriptors(m_descriptors);
}
