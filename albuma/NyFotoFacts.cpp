#include "NyFotoFacts.h"

#include <algorithm>
#include <cmath>

double NyFotoFacts::strength() const
{
    // Beyond 12 megapixels more pixels no longer show in print at this size.
    const double megapixels = double(sizePx.width()) * sizePx.height() / 1e6;
    const double resolution = std::min(1.0, std::sqrt(megapixels / 12.0));
    return 0.40 * sharpness + 0.25 * exposure + 0.15 * colorfulness + 0.20 * resolution + 0.25 * rating;
}

qint64 NyFotoFacts::wallClockSeconds() const
{
    return QDateTime(captureTime.date(), captureTime.time(), Qt::UTC).toSecsSinceEpoch();
}
