#pragma once

#include <QtCore/QDate>
#include <QtCore/QString>

#include "NyRange.h"
#include "nycore_export.h"

/** A range of days, both ends inclusive. */
class NYCORE_EXPORT NyDateRange : public NyRange<QDate>
{
public:
    NyDateRange();
    NyDateRange(const QDate &from, const QDate &to);
    NyDateRange(const NyDateRange &) = default;
    NyDateRange(NyDateRange &&) = default;
    NyDateRange &operator=(const NyDateRange &) = default;
    NyDateRange &operator=(NyDateRange &&) = default;
    ~NyDateRange() override;

    /** False for the null date, whatever the range. */
    bool contains(const QDate &date) const override;

    /** Both ends are dates, and the first is not after the last. */
    bool isValid() const;

    /** The range in words for log lines, in English. A year that is the reference's own is left out where both ends share it. */
    QString dateDescription(const QDate &reference) const;
};
