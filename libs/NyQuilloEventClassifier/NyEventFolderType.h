#pragma once

#include <NyEnumWrapper.h>

#include "nyquilloeventclassifier_export.h"

/** The kinds of folders. Values are single bits, so that a set of kinds fits into one wrapper. */
enum class NyEventFolderTypeEnum : int {
    Unknown = 0,
    Year = 2,
    Month = 4,
    Day = 8,
    Event = 16,
    Project = 32,
};

/** What a folder of pictures is: a unit of the calendar, an event, long-running work, or nothing that could be told. */
class NYQUILLOEVENTCLASSIFIER_EXPORT NyEventFolderType : public NyEnumWrapper<NyEventFolderTypeEnum>
{
public:
    explicit NyEventFolderType(NyEventFolderTypeEnum kind = NyEventFolderTypeEnum::Unknown);
    /** Takes any combination of the kinds' bits. */
    explicit NyEventFolderType(int kinds);

    /** The texts appear in the names of report files: "unknown", "year", "month", "day", "event", "project". */
    void fillTable(NyEnumToStringTable<NyEventFolderTypeEnum> *table) const override;
};
