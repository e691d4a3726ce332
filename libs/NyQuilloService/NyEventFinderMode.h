#pragma once

#include "nyquilloservice_export.h"

#include <NyEnumWrapper.h>

#include <QString>

/** How the event finder decides; plain values, although the string table would combine them. */
enum class Q_DECL_EXPORT NyEventFinderModeEnum : int {
    classic = 0,
    combined = 1,
    recognizerOnly = 2,
    recognizerFallbackOnly = 3,
    expandEvent = 4,
};

/** The event finder's mode with its names in the configuration. A mode that reads `classic` is not valid. */
class NYQUILLOSERVICE_EXPORT NyEventFinderMode : public NyEnumWrapper<NyEventFinderModeEnum>
{
public:
    NyEventFinderMode(NyEventFinderModeEnum mode);
    /** Decodes one or more names, separated by commas; unknown names count as `classic`. */
    explicit NyEventFinderMode(const QString &text);

    void fillTable(NyEnumToStringTable<NyEventFinderModeEnum> *table) const override;
};
