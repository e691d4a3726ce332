#pragma once

#include <optional>

#include <QPointF>
#include <QRectF>

#include <NyBookProject.h>
#include <NyBookPlace.h>

#include "NyBookRenderer.h"

/** Where the pages of a spread and what is on them lie. Refers to the project, which has to outlive it unchanged. */
class NySpreadGeometry
{
public:
    struct Page
    {
        /** Null for the empty paper behind the last page. */
        const NyBookPage *page = nullptr;
        /** As in NyBookPlace. */
        int index = NyBookPlace::Cover;
        NyBookRenderer::PageKind kind = NyBookRenderer::PageKind::Inner;
        QRectF rect;
    };

    /** A spread that the book does not have gives no pages. All rectangles are in the units of @p topLeft. */
    NySpreadGeometry(const NyBookProject &project, int spread, const QPointF &topLeft, double unitsPerMm);

    /** The size of a spread's paper; never empty, whatever the project says. */
    static QSizeF sizeMm(const NyBookProject &project, int spread);
    /** The spread on which a place of the book is. */
    static int spreadOf(NyBookPlace place) { return place.page == NyBookPlace::Cover ? 0 : place.page / 2 + 1; }

    const QList<Page> &pages() const { return m_pages; }
    /** All the paper. */
    QRectF rect() const;
    double unitsPerMm() const { return m_unitsPerMm; }

    /** The photos of which something can be seen, page by page in reading order. */
    QList<NyBookPlace> places() const;
    /** What lies on the paper of the photo there; empty if there is none on this spread. */
    QRectF photoRect(NyBookPlace place) const;
    /** The uppermost photo under the point. */
    std::optional<NyBookPlace> photoAt(const QPointF &point) const;
    /** Whether the cover's title or subtitle is under the point. */
    bool areTitleWordsAt(const QPointF &point, const NyBookRenderer &renderer) const;

private:
    QRectF shownRect(const Page &page, const NyPlacedFoto &foto) const;
    QRectF toUnits(const Page &page, const QRectF &mm) const;

    QList<Page> m_pages;
    double m_unitsPerMm;
};
