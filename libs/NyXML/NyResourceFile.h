#pragma once

#include <QtCore/QString>

#include "nyxml_export.h"

/** A file that comes with the program and that a user or an administrator may replace by one of their own. */
class NYXML_EXPORT NyResourceFile
{
public:
    /** @p fileName: a name to look up with NyDirectoryConfig::resourceFile(), or an absolute path. */
    explicit NyResourceFile(const QString &fileName);

    /** Where the file lies now; empty when there is none. */
    QString path() const;

private:
    QString m_fileName;
};
