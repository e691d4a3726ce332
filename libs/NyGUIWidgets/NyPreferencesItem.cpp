#include "NyPreferencesItem.h"

NyPreferencesItem::NyPreferencesItem() = default;

NyPreferencesItem::~NyPreferencesItem() = default;
