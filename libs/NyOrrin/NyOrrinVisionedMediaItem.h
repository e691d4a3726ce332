#pragma once

#include "NyOrrinMediaItem.h"
#include "NyOrrinVisionDescriptors.h"
#include "nyorrin_export.h"

/** A photo and what was seen in it. Value type. */
class NYORRIN_EXPORT NyOrrinVisionedMediaItem
{
public:
    NyOrrinVisionedMediaItem(const NyOrrinMediaItem &item, const NyOrrinVisionDescriptors &descriptors);

    const NyOrrinMediaItem &item() const { return m_item; }
    const NyOrrinVisionDescriptors &descriptors() const { return m_descriptors; }

private:
    NyOrrinMediaItem m_item;
    NyOrrinVisionDescriptors m_descriptors;
};
