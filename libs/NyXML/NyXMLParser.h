#pragma once

#include <optional>

#include <QtCore/QString>
#include <QtCore/QStringView>
#include <QtXml/QDomDocument>
#include <QtXml/QDomElement>

#include "nyxml_export.h"

/** Reads XML files and the attributes of their elements. Stateless. */
class NYXML_EXPORT NyXMLParser
{
public:
    /** The attribute's text, without blanks at its ends when @p trimmed; the default when the element has no such attribute. */
    static QString attribute(const QDomElement &element, const QString &name, const QString &defaultValue, bool trimmed);
    /** The default, with a warning, for a text that toBool() does not know. */
    static bool boolAttribute(const QDomElement &element, const QString &name, bool defaultValue);
    /** The default, with a warning, for a text that is no number of 32 bits. */
    static int intAttribute(const QDomElement &element, const QString &name, int defaultValue);

    /** true, false, 1, 0, yes, no, on, off, in any case and with blanks at the ends. */
    static std::optional<bool> toBool(QStringView text);
    static std::optional<int> toInt(QStringView text);

    /**
     * The file's document. An empty one, with a warning that tells path, line and column, when the file cannot be read, is not
     * well-formed, or is larger or more deeply nested than any of the family's files.
     */
    static QDomDocument parseFile(const QString &path);
};
