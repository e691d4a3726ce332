#include "NySpreadGeometry.h"

#include <algorithm>

NySpreadGeometry::NySpreadGeometry(const NyBookProject &project, int spread, const QPointF &topLeft, double unitsPerMm)
    : m_unitsPerMm(unitsPerMm)
{
    if (spread < 0 || spread >= project.spreadCount())
        return;
    const QSizeF one = sizeMm(project, 0) * unitsPerMm;
    if (spread == 0) {
        m_pages = {{&project.cover, NyBookPlace::Cover, NyBookRenderer::PageKind::Cover, QRectF(topLeft, one)}};
        return;
    }
    for (int column = 0; column < 2; ++column) {
        const int index = 2 * (spread - 1) + column;
        const QRectF rect(topLeft + QPointF(column * one.width(), 0), one);
        m_pages.append({project.page(index), index, NyBookRenderer::PageKind::Inner, rect});
    }
}

QSizeF NySpreadGeometry::sizeMm(const NyBookProject &project, int spread)
{
    const QSizeF page = project.pageSizeMm.expandedTo(QSizeF(1, 1));
    return {spread == 0 ? page.width() : 2 * page.width(), page.height()};
}

QRectF NySpreadGeometry::rect() const
{
    return m_pages.isEmpty() ? QRectF() : m_pages.first().rect | m_pages.last().rect;
}

QRectF NySpreadGeometry::toUnits(const Page &page, const QRectF &mm) const
{
    return {page.rect.topLeft() + mm.topLeft() * m_unitsPerMm, mm.size() * m_unitsPerMm};
}

QRectF NySpreadGeometry::shownRect(const Page &page, const NyPlacedFoto &foto) const
{
    return toUnits(page, foto.rectMm) & page.rect;
}

QList<NyBookPlace> NySpreadGeometry::places() const
{
    QList<NyBookPlace> places;
    for (const Page &page : m_pages) {
        for (int i = 0; page.page && i < page.page->photos.size(); ++i) {
            if (!shownRect(page, page.page->photos.at(i)).isEmpty())
                places.append({page.index, i});
        }
    }
    return places;
}

QRectF NySpreadGeometry::photoRect(NyBookPlace place) const
{
    for (const Page &page : m_pages) {
        if (page.page && page.index == place.page && place.photo >= 0 && place.photo < page.page->photos.size())
            return shownRect(page, page.page->photos.at(place.photo));
    }
    return {};
}

std::optional<NyBookPlace> NySpreadGeometry::photoAt(const QPointF &point) const
{
    for (const Page &page : m_pages) {
        if (!page.page || !page.rect.contains(point))
            continue;
        // The last one is painted over those before it.
        for (int i = int(page.page->photos.size()) - 1; i >= 0; --i) {
            if (shownRect(page, page.page->photos.at(i)).contains(point))
                return NyBookPlace{page.index, i};
        }
    }
    return std::nullopt;
}

bool NySpreadGeometry::areTitleWordsAt(const QPointF &point, const NyBookRenderer &renderer) const
{
    for (const Page &page : m_pages) {
        if (page.kind != NyBookRenderer::PageKind::Cover || !page.page || !page.rect.contains(point))
            continue;
        const auto isUnderPoint = [&](const NyBookText &text) {
            const bool isTitle = text.role == NyBookText::Role::Title || text.role == NyBookText::Role::Subtitle;
            return isTitle && renderer.wordsRect(text, toUnits(page, text.rectMm), m_unitsPerMm).contains(point);
        };
        if (std::any_of(page.page->texts.cbegin(), page.page->texts.cend(), isUnderPoint))
            return true;
    }
    return false;
}
