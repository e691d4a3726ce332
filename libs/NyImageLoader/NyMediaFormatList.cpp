#include "NyMediaFormatList.h"

#include <utility>

NyMediaFormat::NyMediaFormat(QString name, QStringList fileExtensions, NyMediaFormatSource source)
    : m_name(std::move(name))
    , m_fileExtensions(std::move(fileExtensions))
    , m_source(source)
{
}

NyMediaFormatList::NyMediaFormatList(const QList<NyMediaFormat> &formats)
    : m_formats(formats)
{
}

QList<QString> NyMediaFormatList::fileExtensionFilters() const
{
    QList<QString> filters;
    for (const NyMediaFormat &format : m_formats) {
        for (const QString &extension : format.fileExtensions())
            filters.append(QStringLiteral("*.") + extension);
    }
    return filters;
}

bool NyMediaFormatList::matches(QStringView fileName) const
{
    const qsizetype dot = fileName.lastIndexOf(u'.');
    if (dot < 0)
        return false;
    const QStringView extension = fileName.sliced(dot + 1);
    // Unicode case folding would take the long s for an s.
    for (const QChar letter : extension) {
        if (letter.unicode() > 0x7f)
            return false;
    }
    for (const NyMediaFormat &format : m_formats) {
        for (const QString &known : format.fileExtensions()) {
            if (extension.compare(known, Qt::CaseInsensitive) == 0)
                return true;
        }
    }
    return false;
}
