#pragma once

#include <QtCore/QList>
#include <QtCore/QStringList>

#include "NyOccasionInfo.h"
#include "nyquilloeventclassifier_export.h"

/** The occasions of one set of photos, by convention the most probable one first. */
class NYQUILLOEVENTCLASSIFIER_EXPORT NyOccasionInfoList : public QList<NyOccasionInfo>
{
public:
    NyOccasionInfoList() = default;
    explicit NyOccasionInfoList(const QList<NyOccasionInfo> &occasions);
    NyOccasionInfoList(const NyOccasionInfoList &) = default;
    NyOccasionInfoList(NyOccasionInfoList &&) = default;
    NyOccasionInfoList &operator=(const NyOccasionInfoList &) = default;
    NyOccasionInfoList &operator=(NyOccasionInfoList &&) = default;
    virtual ~NyOccasionInfoList();

    /** One text an occasion, for logs, in the list's order. */
    QStringList descriptions() const;
    /** The descriptions in one line, joined by ", ". */
    QString description() const;
    /** The keywords in the list's order, each once even when several sources name it. */
    QStringList occasions() const;
};
