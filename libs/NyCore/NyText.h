#pragma once

#include <QtCore/QString>

#include "nycore_export.h"

/** Parts of texts from outside that are to be shown. Stateless, any thread. */
class NYCORE_EXPORT NyText
{
public:
    /** The first @p length UTF-16 units, fewer if the text is shorter, and one less where a character would be halved. */
    static QString beginning(const QString &text, qsizetype length);
    /** The last @p length UTF-16 units, in the same way. */
    static QString end(const QString &text, qsizetype length);

    /** Whether it is a sign that nobody sees and that turns the direction of the writing behind it. */
    static constexpr bool turnsDirection(QChar c)
    {
        return (c >= QChar(0x202a) && c <= QChar(0x202e)) || (c >= QChar(0x2066) && c <= QChar(0x2069));
    }
};
