#pragma once

#include <QtCore/QDateTime>

#include "NyImageMetaData.h"
#include "nyfoto_export.h"

/** Reads the times in a picture's metadata. Pure functions. */
class NYFOTO_EXPORT NyFotoTime
{
public:
    /**
     * The time as the clock on the wall showed it. With an offset the result has it (Qt::OffsetFromUTC); otherwise it is a local time, or,
     * for an hour that this machine's summer time skipped, has the offset of the time before. Invalid for a text that is no time,
     * such as the zeros and blanks that cameras write when their clock was not set.
     */
    static QDateTime parse(const NyImageTimeText &text);

    /** The first of the picture's capture times that can be read; invalid without one. */
    static QDateTime captureTime(const NyImageMetaData &metaData);
};
