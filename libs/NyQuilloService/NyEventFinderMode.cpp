#include "NyEventFinderMode.h"

NyEventFinderMode::NyEventFinderMode(NyEventFinderModeEnum mode)
    : NyEnumWrapper<NyEventFinderModeEnum>(mode)
{
}

NyEventFinderMode::NyEventFinderMode(const QString &text)
    : NyEnumWrapper<NyEventFinderModeEnum>(NyEventFinderModeEnum::classic)
{
    setValue(enumToStringTable()->decodeCSV(text));
}

void NyEventFinderMode::fillTable(NyEnumToStringTable<NyEventFinderModeEnum> *table) const
{
    table->insert(QStringLiteral("classic"), NyEventFinderModeEnum::classic);
    table->insert(QStringLiteral("combined"), NyEventFinderModeEnum::combined);
    table->insert(QStringLiteral("recognizerOnly"), NyEventFinderModeEnum::recognizerOnly);
    table->insert(QStringLiteral("recognizerFallbackOnly"), NyEventFinderModeEnum::recognizerFallbackOnly);
    table->insert(QStringLiteral("expandEvent"), NyEventFinderModeEnum::expandEvent);
}
