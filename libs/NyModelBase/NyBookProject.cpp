#include "NyBookProject.h"

#include <QSet>

int NyBookProject::photoCount() const
{
    qsizetype count = 0;
    for (const NyBookPage &page : pages)
        count += page.photos.size();
    return int(count);
}

int NyBookProject::spreadCount() const
{
    return 1 + int((pages.size() + 1) / 2);
}

QList<QUrl> NyBookProject::photoUrls() const
{
    QList<QUrl> urls;
    QSet<QUrl> seen;
    const auto collect = [&](const NyBookPage &page) {
        for (const NyPlacedFoto &foto : page.photos) {
            if (seen.contains(foto.url))
                continue;
            seen.insert(foto.url);
            urls.append(foto.url);
        }
    };
    collect(cover);
    for (const NyBookPage &page : pages)
        collect(page);
    return urls;
}

bool operator==(const NyBookProject &a, const NyBookProject &b)
{
    return a.title == b.title && a.subtitle == b.subtitle && a.style == b.style && a.occasions == b.occasions
        && a.creationDateEpoch == b.creationDateEpoch && a.pageSizeMm == b.pageSizeMm && a.cover == b.cover && a.pages == b.pages;
}
