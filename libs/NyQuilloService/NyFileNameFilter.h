#pragma once

#include <string>
#include <vector>

#include <QtCore/QByteArrayView>
#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include "nyquilloservice_export.h"

/**
 * Wildcard patterns for file names, matched as QDir matches its name filters: case is folded by Unicode's simple rules, no
 * pattern at all lets every name through.
 *
 * Patterns of the form "*.jpg" are compared as bytes, every other form through a regular expression made once. Immutable
 * after construction; may be read from any thread.
 */
class NYQUILLOSERVICE_EXPORT NyFileNameFilter
{
public:
    explicit NyFileNameFilter(const QStringList &patterns);

    /** @p utf8Name is a file name as the file system gives it, without a folder. */
    bool matches(QByteArrayView utf8Name) const;

private:
    bool m_matchesEverything = false;
    // Folded endings behind the last dot, packed last byte first, sorted.
    std::vector<quint64> m_extensions;
    // Folded endings that hold a further dot or none, or that are long.
    std::vector<std::string> m_suffixes;
    std::vector<QRegularExpression> m_expressions;
};
