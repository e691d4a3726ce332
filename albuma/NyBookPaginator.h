#pragma once

#include "NyPageLayout.h"

#include <QDate>

/** A photo in the order of the book. */
struct NyPaginatorFoto
{
    NyLayoutFoto layout;
    /** The day it belongs to, by the camera's clock. */
    QDate day;
};

/** The photos of one page and where they lie. */
struct NyPaginatedPage
{
    /** Index of the page's first photo in the list that was paginated. */
    int firstPhoto = 0;
    bool beginsDay = false;
    NyPageLayout::Result layout;
};

/** Where photos may lie on a page. */
struct NyPageGeometry
{
    QRectF areaMm;
    double gapMm = 4;
    /** Height taken from the top of the area on a page that begins a day. */
    double headingMm = 0;
};

/**
 * Spreads photos over pages, in order: a new day begins a page, a page holds 1 to 6 photos and about two on average,
 * neighbouring pages differ in number, a hero gets a page to itself where its pixels allow, and the number of pages is
 * even where the days allow it. The cheapest division is found by dynamic programming, so equal input gives equal books.
 */
class NyBookPaginator
{
public:
    static QList<NyPaginatedPage> paginate(const QList<NyPaginatorFoto> &photos, const NyPageGeometry &geometry);
};
