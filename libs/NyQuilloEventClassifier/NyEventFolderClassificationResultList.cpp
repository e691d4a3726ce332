#include "NyEventFolderClassificationResultList.h"

NyEventFolderClassificationResultList::NyEventFolderClassificationResultList(const QList<NyEventFolderClassificationResult> &results)
    : QList<NyEventFolderClassificationResult>(results)
{
}

NyEventFolderClassificationResultList::~NyEventFolderClassificationResultList() = default;

NyEventFolderClassificationResultList NyEventFolderClassificationResultList::filtered(const NyEventFolderType &kind) const
{
    NyEventFolderClassificationResultList matches;
    for (const NyEventFolderClassificationResult &result : *this) {
        if (result.classification().value() == kind.value())
            matches.append(result);
    }
    return matches;
}

QString NyEventFolderClassificationResultList::toString() const
{
    QString text;
    for (const NyEventFolderClassificationResult &result : *this) {
        const NyEventFolderType kind = result.classification();
        const QString name = kind.encode();
        text += name.isEmpty() ? kind.enumToStringTable()->encodeCSV(kind.value()) : name;
        text += QLatin1Char(' ') + result.directoryPath();
        const QString occasions = result.occasionInformation().description();
        if (!occasions.isEmpty())
            text += QStringLiteral(" [") + occasions + QLatin1Char(']');
        text += QLatin1Char('\n');
    }
    return text;
}
