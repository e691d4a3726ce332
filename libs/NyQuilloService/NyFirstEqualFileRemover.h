#pragma once

#include <QtCore/QFileInfo>
#include <QtCore/QList>

#include "nyquilloservice_export.h"

/**
 * Takes files out of a list. Equal means what QFileInfo's operator== says: the same path, or the same canonical path, which is
 * empty for all files that are gone.
 *
 * The canonical paths of a large list are had without asking the system for each: a folder's canonical path serves all its
 * entries that are no links. Stateless; may be called from any thread.
 */
class NYQUILLOSERVICE_EXPORT NyFirstEqualFileRemover
{
public:
    /** For each of @p unwanted in turn removes the first file equal to it, if there is one, and at most one. */
    static void removeFrom(QList<QFileInfo> &files, const QList<QFileInfo> &unwanted);
};
