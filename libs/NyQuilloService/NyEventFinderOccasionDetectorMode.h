#pragma once

#include "nyquilloservice_export.h"

#include <NyEnumWrapper.h>

#include <QString>

/** For which folders occasions are detected; flags. */
enum class Q_DECL_EXPORT NyEventFinderOccasionDetectorModeEnum : int {
    none = 0,
    /** The one chosen folder. */
    selectedEvent = 1,
    /** Every folder that holds recent files. */
    eventOfInterest = 2,
    /** Every folder of the requested kind. */
    eventAll = 4,
};

/** The occasion detector's mode with its names in the configuration. `none` encodes to the empty string. */
class NYQUILLOSERVICE_EXPORT NyEventFinderOccasionDetectorMode : public NyEnumWrapper<NyEventFinderOccasionDetectorModeEnum>
{
public:
    NyEventFinderOccasionDetectorMode(NyEventFinderOccasionDetectorModeEnum mode);
    /** Decodes one or more names, separated by commas; unknown names count as `none`. */
    explicit NyEventFinderOccasionDetectorMode(QString text);

    void fillTable(NyEnumToStringTable<NyEventFinderOccasionDetectorModeEnum> *table) const override;
};
