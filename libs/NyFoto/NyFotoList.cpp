#include "NyFotoList.h"

NyFotoList::NyFotoList(std::initializer_list<NyFoto> fotos)
    : m_fotos(fotos)
{
}

NyFotoList::NyFotoList(const QList<NyFoto> &fotos)
    : m_fotos(fotos)
{
}

NyFotoList::NyFotoList(const QList<QFileInfo> &files)
{
    m_fotos.reserve(files.size());
    for (const QFileInfo &file : files)
        m_fotos.append(NyFoto(file));
}

NyFotoList::NyFotoList(const QList<QUrl> &urls)
{
    m_fotos.reserve(urls.size());
    for (const QUrl &url : urls)
        m_fotos.append(NyFoto(url));
}

QList<QFileInfo> NyFotoList::toLocalFileInfoList() const
{
    QList<QFileInfo> files;
    files.reserve(m_fotos.size());
    for (const NyFoto &foto : m_fotos)
        files.append(foto.localFileInfo());
    return files;
}

QList<QUrl> NyFotoList::toUrlList() const
{
    QList<QUrl> urls;
    urls.reserve(m_fotos.size());
    for (const NyFoto &foto : m_fotos)
        urls.append(foto.url());
    return urls;
}

QStringList NyFotoList::toUrlStringList() const
{
    QStringList urls;
    urls.reserve(m_fotos.size());
    for (const NyFoto &foto : m_fotos)
        urls.append(foto.urlString());
    return urls;
}
