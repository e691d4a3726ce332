#pragma once

#include "NyBookPage.h"
#include "NyBookPlace.h"
#include "NyDesignElementID.h"

#include <QSizeF>
#include <QStringList>

/** A book: front cover and inner pages. Two pages side by side make a spread: pages 0 and 1, 2 and 3, and so on. */
struct NYMODELBASE_EXPORT NyBookProject
{
    QString title;
    QString subtitle;
    NyDesignElementID style;
    /** Keywords of the occasions that the book is about. */
    QStringList occasions;
    /** Seconds since 1970-01-01 UTC. */
    qint64 creationDateEpoch = 0;
    /** Size of the cover and of every page. */
    QSizeF pageSizeMm = QSizeF(280, 210);
    NyBookPage cover;
    QList<NyBookPage> pages;

    /** Number of photos on the inner pages. */
    int photoCount() const;
    /** Number of spreads, the cover included as the first; at least 1. */
    int spreadCount() const;
    /** The URLs of all photos, cover first, each once. */
    QList<QUrl> photoUrls() const;
    /** The cover or the inner page with this index; null for any other. */
    const NyBookPage *page(int index) const;
    /** The photo there; null if there is none. */
    const NyPlacedFoto *photo(NyBookPlace place) const;

    friend NYMODELBASE_EXPORT bool operator==(const NyBookProject &a, const NyBookProject &b);
};
