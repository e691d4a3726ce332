#include "NyOrrinVisionedMediaItem.h"

NyOrrinVisionedMediaItem::NyOrrinVisionedMediaItem(const NyOrrinMediaItem &item, const NyOrrinVisionDescriptors &descriptors)
    : m_item(item)
    , m_descriptors(descriptors)
{
}
