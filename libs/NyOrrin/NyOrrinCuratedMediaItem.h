#pragma once

#include <utility>

#include "NyOrrinVisionedMediaItem.h"

/** A photo that NyOrrinCurator::curate() kept. Value type. */
class NyOrrinCuratedMediaItem
{
public:
    explicit NyOrrinCuratedMediaItem(NyOrrinVisionedMediaItem item)
        : m_item(std::move(item))
    {
    }

    const NyOrrinMediaItem &item() const { return m_item.item(); }
    const NyOrrinVisionDescriptors &descriptors() const { return m_item.descriptors(); }

private:
    NyOrrinVisionedMediaItem m_item;
};
