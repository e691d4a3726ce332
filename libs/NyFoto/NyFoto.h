#pragma once

#include <QtCore/QFileInfo>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include "nyfoto_export.h"

/**
 * One photo, known by where it lies: a local file, or a location that only its URL tells. Value type; nothing is read from the disk.
 *
 * A local file's path is kept as it stands, so both unicode forms of a name, blanks, line breaks, "%", "#", "?" and ":" survive.
 */
class NYFOTO_EXPORT NyFoto
{
public:
    /** No photo. */
    NyFoto() = default;
    /** A relative path is made absolute. A path in the scheme "photokit:" is taken as a URL. */
    explicit NyFoto(const QFileInfo &file);
    explicit NyFoto(const QUrl &url);

    /** From what urlString() gave. */
    static NyFoto fromUrlString(const QString &urlString);

    bool isNull() const { return m_location.isEmpty(); }
    bool isLocalFile() const { return m_location.startsWith(u'/'); }

    /** For a location that is no local file, a file info on the text of its URL. */
    QFileInfo localFileInfo() const;
    /** The path of a local file, otherwise the URL's text. */
    const QString &location() const { return m_location; }
    QUrl url() const;
    /** The URL fully percent-encoded, so plain ASCII without line breaks. */
    QString urlString() const;

    friend bool operator==(const NyFoto &left, const NyFoto &right) { return left.m_location == right.m_location; }

private:
    QString m_location;
};

Q_DECLARE_TYPEINFO(NyFoto, Q_RELOCATABLE_TYPE);
