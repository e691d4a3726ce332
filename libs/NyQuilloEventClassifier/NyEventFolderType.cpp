#include "NyEventFolderType.h"

NyEventFolderType::NyEventFolderType(NyEventFolderTypeEnum kind)
    : NyEnumWrapper<NyEventFolderTypeEnum>(kind)
{
}

NyEventFolderType::NyEventFolderType(int kinds)
    : NyEnumWrapper<NyEventFolderTypeEnum>(static_cast<NyEventFolderTypeEnum>(kinds))
{
}

void NyEventFolderType::fillTable(NyEnumToStringTable<NyEventFolderTypeEnum> *table) const
{
    table->insert(QStringLiteral("unknown"), NyEventFolderTypeEnum::Unknown);
    table->insert(QStringLiteral("year"), NyEventFolderTypeEnum::Year);
    table->insert(QStringLiteral("month"), NyEventFolderTypeEnum::Month);
    table->insert(QStringLiteral("day"), NyEventFolderTypeEnum::Day);
    table->insert(QStringLiteral("event"), NyEventFolderTypeEnum::Event);
    table->insert(QStringLiteral("project"), NyEventFolderTypeEnum::Project);
}
