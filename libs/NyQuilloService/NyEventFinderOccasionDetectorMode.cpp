#include "NyEventFinderOccasionDetectorMode.h"

NyEventFinderOccasionDetectorMode::NyEventFinderOccasionDetectorMode(NyEventFinderOccasionDetectorModeEnum mode)
    : NyEnumWrapper<NyEventFinderOccasionDetectorModeEnum>(mode)
{
}

NyEventFinderOccasionDetectorMode::NyEventFinderOccasionDetectorMode(QString text)
    : NyEnumWrapper<NyEventFinderOccasionDetectorModeEnum>(NyEventFinderOccasionDetectorModeEnum::none)
{
    setValue(enumToStringTable()->decodeCSV(text));
}

void NyEventFinderOccasionDetectorMode::fillTable(NyEnumToStringTable<NyEventFinderOccasionDetectorModeEnum> *table) const
{
    // The first name of a value is the one it encodes to: the empty string stands for none in the file.
    table->insert(QString(), NyEventFinderOccasionDetectorModeEnum::none);
    table->insert(QStringLiteral("none"), NyEventFinderOccasionDetectorModeEnum::none);
    table->insert(QStringLiteral("selectedEvent"), NyEventFinderOccasionDetectorModeEnum::selectedEvent);
    table->insert(QStringLiteral("eventOfInterest"), NyEventFinderOccasionDetectorModeEnum::eventOfInterest);
    table->insert(QStringLiteral("eventAll"), NyEventFinderOccasionDetectorModeEnum::eventAll);
}
