#include "NyOccasionInfoList.h"

NyOccasionInfoList::NyOccasionInfoList(const QList<NyOccasionInfo> &occasions)
    : QList<NyOccasionInfo>(occasions)
{
}

NyOccasionInfoList::~NyOccasionInfoList() = default;

QStringList NyOccasionInfoList::descriptions() const
{
    QStringList texts;
    texts.reserve(size());
    for (const NyOccasionInfo &occasion : *this)
        texts.append(occasion.description());
    return texts;
}

QString NyOccasionInfoList::description() const
{
    return descriptions().join(QStringLiteral(", "));
}

QStringList NyOccasionInfoList::occasions() const
{
    QStringList keywords;
    for (const NyOccasionInfo &occasion : *this) {
        if (!occasion.keyword().isEmpty() && !keywords.contains(occasion.keyword()))
            keywords.append(occasion.keyword());
    }
    return keywords;
}
