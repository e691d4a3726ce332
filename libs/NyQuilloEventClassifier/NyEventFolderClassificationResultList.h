#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

#include "NyEventFolderClassificationResult.h"
#include "nyquilloeventclassifier_export.h"

/** Classified folders, in the order in which the classifier gives them. */
class NYQUILLOEVENTCLASSIFIER_EXPORT NyEventFolderClassificationResultList : public QList<NyEventFolderClassificationResult>
{
public:
    NyEventFolderClassificationResultList() = default;
    explicit NyEventFolderClassificationResultList(const QList<NyEventFolderClassificationResult> &results);
    NyEventFolderClassificationResultList(const NyEventFolderClassificationResultList &) = default;
    NyEventFolderClassificationResultList(NyEventFolderClassificationResultList &&) = default;
    NyEventFolderClassificationResultList &operator=(const NyEventFolderClassificationResultList &) = default;
    NyEventFolderClassificationResultList &operator=(NyEventFolderClassificationResultList &&) = default;
    virtual ~NyEventFolderClassificationResultList();

    /** The entries of exactly this kind, in their order: an entry with a second bit set is of no single kind. */
    NyEventFolderClassificationResultList filtered(const NyEventFolderType &kind) const;

    /** For logs: one line an entry, its kind, its path and its occasions. */
    QString toString() const;
};
