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

const NyBookPage *NyBookProject::page(int index) const
{
    if (index == NyBookPlace::Cover)
        return &cover;
    return index >= 0 && index < pages.size() ? &pages.at(index) : nullptr;
}

const NyPlacedFoto *NyBookProject::photo(NyBookPlace place) const
{
    const NyBookPage *found = page(place.page);
    return found && place.photo >= 0 && place.photo < found->photos.size() ? &found->photos.at(place.photo) : nullptr;
}

bool operator==(const NyBookProject &a, const NyBookProject &b)
{
    return a.title == b.title && a.subtitle == b.subtitle && a.style == b.style && a.occasions == b.occasions
        && a.creationDateEpoch == b.creationDateEpoch && a.pageSizeMm == b.pageSizeMm && a.cover == b.cover && a.pages == b.pages;
}
