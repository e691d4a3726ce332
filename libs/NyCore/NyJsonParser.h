#pragma once

#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QString>

#include "nycore_export.h"

/** Reads JSON files and makes the pieces of them that several programs share. Stateless, any thread. */
class NYCORE_EXPORT NyJsonParser
{
public:
    /** The file's document; null, with a debug line, for a file that cannot be read or parsed. */
    static QJsonDocument loadDocument(const QFileInfo &file);

    /**
     * The start screen's menu for a proposal: objects with the text "title" and the text "action", which is the word "open" or
     * "delete", a colon, and @p argument as it is.
     */
    static QJsonArray createMenuJson(const QString &argument);
};
