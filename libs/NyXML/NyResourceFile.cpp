#include "NyResourceFile.h"

#include <QtCore/QDir>

#include <NyDirectoryConfig.h>

NyResourceFile::NyResourceFile(const QString &fileName)
    : m_fileName(fileName)
{
}

QString NyResourceFile::path() const
{
    return QDir::isAbsolutePath(m_fileName) ? m_fileName : NyDirectoryConfig::resourceFile(m_fileName);
}
