#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QStringView>

#include "nyimageloader_export.h"

/** How the picture of a format comes out of its file. */
enum class NyMediaFormatSource {
    ImagePlugin, /**< one of Qt's image plug-ins */
    Heif, /**< libheif */
    EmbeddedPreview, /**< a raw format: the JPEG that the camera put into it */
};

/** One picture format with the file extensions it goes by. */
class NYIMAGELOADER_EXPORT NyMediaFormat
{
public:
    /** @p fileExtensions in lower case, without the dot. */
    NyMediaFormat(QString name, QStringList fileExtensions, NyMediaFormatSource source);

    const QString &name() const { return m_name; }
    const QStringList &fileExtensions() const { return m_fileExtensions; }
    NyMediaFormatSource source() const { return m_source; }

private:
    QString m_name;
    QStringList m_fileExtensions;
    NyMediaFormatSource m_source;
};

/** The photo formats that can be read. Value type. */
class NYIMAGELOADER_EXPORT NyMediaFormatList
{
public:
    NyMediaFormatList() = default;
    explicit NyMediaFormatList(const QList<NyMediaFormat> &formats);

    const QList<NyMediaFormat> &formats() const { return m_formats; }
    bool isEmpty() const { return m_formats.isEmpty(); }

    /** A wildcard pattern "*.jpg" for each extension, all in lower case; they are meant to be matched ignoring case. */
    QList<QString> fileExtensionFilters() const;

    /** Whether the file's extension, in upper or lower ASCII letters, is one of the list's. The file is not looked at. */
    bool matches(QStringView fileName) const;

private:
    QList<NyMediaFormat> m_formats;
};
