#pragma once

#include <optional>

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QStringList>

#include "NyEventFolderType.h"
#include "nyquilloeventclassifier_export.h"

/**
 * Remembers what the pictures in loose folders said of them, so that a tree that is sorted again every half minute is not opened again.
 *
 * A verdict holds as long as the folders' own times do: a picture that is added, removed or renamed ends it, one that is rewritten in
 * place does not. One object a process; thread-safe; a few thousand verdicts at most, 20 bytes of key each.
 */
class NYQUILLOEVENTCLASSIFIER_EXPORT NyContentsVerdictCache
{
public:
    struct Verdict
    {
        NyEventFolderTypeEnum kind = NyEventFolderTypeEnum::Unknown;
        bool isUndecided = false;
    };

    static NyContentsVerdictCache &instance();

    /**
     * Stands for the folders as they are now. Empty when a verdict on them cannot be kept: a folder is gone, or changed so lately that
     * another change could leave its time as it is.
     */
    static QByteArray key(const QStringList &folderPaths);

    std::optional<Verdict> find(const QByteArray &key) const;
    /** An empty key is ignored. */
    void insert(const QByteArray &key, Verdict verdict);

private:
    mutable QMutex m_mutex;
    QHash<QByteArray, Verdict> m_verdicts;
};
