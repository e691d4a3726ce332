#include "NyOrrinMediaItem.h"

NyOrrinMediaItem::NyOrrinMediaItem() = default;
NyOrrinMediaItem::NyOrrinMediaItem(const NyOrrinMediaItem &) = default;
NyOrrinMediaItem::NyOrrinMediaItem(NyOrrinMediaItem &&) noexcept = default;
NyOrrinMediaItem &NyOrrinMediaItem::operator=(const NyOrrinMediaItem &) = default;
NyOrrinMediaItem &NyOrrinMediaItem::operator=(NyOrrinMediaItem &&) noexcept = default;
NyOrrinMediaItem::~NyOrrinMediaItem() = default;
