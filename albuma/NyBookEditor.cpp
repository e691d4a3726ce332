#include "NyBookEditor.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include <NyText.h>

#include "NyBookComposer.h"
#include "NyBookGeometry.h"
#include "NyPageLayout.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

/** Rounding in a file that others wrote is no other layout. */
constexpr double SLACK_MM = 0.01;
constexpr double SHAPE_SLACK = 0.01;
/** A picture whose proportions differ by less takes over the place of the other. */
constexpr double SAME_SHAPE = 0.03;
/** Photo files beyond this cannot be read back. */
constexpr int LARGEST_SIDE_PX = 1'000'000;

bool isBlank(const QString &text)
{
    return std::all_of(text.cbegin(), text.cend(),
        [](QChar c) { return c.isSpace() || c.category() == QChar::Other_Control || c.category() == QChar::Other_Format; });
}

bool breaksLine(QChar c)
{
    return c.category() == QChar::Other_Control || c.category() == QChar::Separator_Line || c.category() == QChar::Separator_Paragraph;
}

QString oneLine(QString text)
{
    text.replace(u"\r\n"_s, u"\n"_s);
    std::replace_if(text.begin(), text.end(), breaksLine, QChar(u' '));
    text = NyText::beginning(text.trimmed(), NyBookEditor::LongestText).trimmed();
    // Half a character could be written, but would not come back.
    return QString::fromUtf8(text.toUtf8());
}

bool isFree(const NyBookPage &page, const QRectF &rectMm)
{
    return std::none_of(page.photos.cbegin(), page.photos.cend(), [&](const NyPlacedFoto &foto) { return foto.rectMm.intersects(rectMm); })
        && std::none_of(page.texts.cbegin(), page.texts.cend(), [&](const NyBookText &text) { return text.rectMm.intersects(rectMm); });
}

QList<NyBookText>::iterator findText(NyBookPage &page, NyBookText::Role role)
{
    return std::find_if(page.texts.begin(), page.texts.end(), [role](const NyBookText &text) { return text.role == role; });
}

void setCoverSubtitle(NyBookProject &project)
{
    NyBookPage &cover = project.cover;
    const auto present = findText(cover, NyBookText::Role::Subtitle);
    if (project.subtitle.isEmpty()) {
        if (present != cover.texts.end())
            cover.texts.erase(present);
        return;
    }
    if (present != cover.texts.end()) {
        present->text = project.subtitle;
        return;
    }
    const NyBookText added = NyBookComposer::coverSubtitle(project.subtitle, project.pageSizeMm);
    if (!added.rectMm.isEmpty() && QRectF(QPointF(0, 0), project.pageSizeMm).contains(added.rectMm) && isFree(cover, added.rectMm))
        cover.texts.append(added);
}

bool areLaidOut(const QList<NyPlacedFoto> &photos, const QRectF &areaMm)
{
    if (photos.isEmpty() || photos.size() > NyPageLayout::MaximumPhotos || areaMm.isEmpty())
        return false;
    const QRectF area = areaMm.adjusted(-SLACK_MM, -SLACK_MM, SLACK_MM, SLACK_MM);
    for (qsizetype i = 0; i < photos.size(); ++i) {
        const NyPlacedFoto &foto = photos.at(i);
        const QRectF &rect = foto.rectMm;
        if (!area.contains(rect) || foto.printedDpi() < NyPageLayout::MinimumDpi * (1 - SHAPE_SLACK)
            || std::abs(rect.width() / rect.height() / foto.shownAspectRatio() - 1) > SHAPE_SLACK)
            return false;
        const QRectF inner = rect.adjusted(SLACK_MM, SLACK_MM, -SLACK_MM, -SLACK_MM);
        for (qsizetype other = 0; other < i; ++other) {
            if (inner.intersects(photos.at(other).rectMm))
                return false;
        }
    }
    return true;
}

/** What is left of @p areaMm below the headings. */
QRectF areaBelow(QRectF areaMm, const QList<NyBookText> &headings)
{
    for (const NyBookText &heading : headings)
        areaMm.setTop(std::max(areaMm.top(), heading.rectMm.bottom() + NyBookGeometry::GapMm));
    return areaMm;
}

QList<NyBookText> dayHeadings(const NyBookPage &page)
{
    QList<NyBookText> headings;
    std::copy_if(page.texts.cbegin(), page.texts.cend(), std::back_inserter(headings),
        [](const NyBookText &text) { return text.role == NyBookText::Role::DayHeading; });
    return headings;
}

/** Where the photos of an inner page may be laid out anew; nothing for a page that does not look like the composer's. */
std::optional<QRectF> layoutArea(const NyBookPage &page, const QSizeF &pageMm)
{
    const QList<NyBookText> headings = dayHeadings(page);
    const QRectF area = areaBelow(NyBookGeometry::pageArea(pageMm), headings);
    if (headings.size() != page.texts.size() || !areLaidOut(page.photos, area))
        return std::nullopt;
    return area;
}

std::optional<QRectF> coverLayoutArea(const NyBookPage &cover, const QSizeF &pageMm)
{
    const QRectF area = NyBookGeometry::coverPhotoArea(pageMm);
    const bool isTextApart
        = std::none_of(cover.texts.cbegin(), cover.texts.cend(), [&](const NyBookText &text) { return text.rectMm.intersects(area); });
    if (cover.photos.size() != 1 || !isTextApart || !QRectF(QPointF(0, 0), pageMm).contains(area) || !areLaidOut(cover.photos, area))
        return std::nullopt;
    return area;
}

/** False and no change if these photos cannot share the area. */
bool arrange(QList<NyPlacedFoto> &photos, const QRectF &areaMm)
{
    QList<NyLayoutFoto> shapes;
    for (const NyPlacedFoto &foto : std::as_const(photos))
        shapes.append({foto.shownSizePx().toSize().expandedTo(QSize(1, 1)), false});
    const NyPageLayout::Result layout = NyPageLayout::arrange(shapes, areaMm, NyBookGeometry::GapMm);
    for (qsizetype i = 0; i < layout.rectsMm.size(); ++i)
        photos[i].rectMm = NyPageLayout::fitted(layout.rectsMm.at(i), photos.at(i).shownSizePx());
    return !layout.rectsMm.isEmpty();
}

/** Makes a layout smaller as it is, so that what filled @p from lies in @p to. */
void shrink(QList<NyPlacedFoto> &photos, const QRectF &from, const QRectF &to)
{
    const double scale = std::min(to.width() / from.width(), to.height() / from.height());
    for (NyPlacedFoto &foto : photos)
        foto.rectMm = QRectF(to.center() + (foto.rectMm.topLeft() - from.center()) * scale, foto.rectMm.size() * scale);
}

/** Puts headings of another page onto @p page, unless that would hide something. */
void takeOver(NyBookPage &page, const QList<NyBookText> &headings, const QSizeF &pageMm)
{
    const std::optional<QRectF> area = layoutArea(page, pageMm);
    const QRectF below = area ? areaBelow(*area, headings) : QRectF();
    if (!below.isEmpty()) {
        if (!arrange(page.photos, below))
            shrink(page.photos, *area, below);
    } else if (!std::all_of(headings.cbegin(), headings.cend(), [&](const NyBookText &heading) { return isFree(page, heading.rectMm); })) {
        return;
    }
    page.texts = headings + page.texts;
}

}

NyBookProject NyBookEditor::withWords(const NyBookProject &project, const QString &title, const QString &subtitle)
{
    NyBookProject result = project;
    if (title != project.title && !isBlank(title)) {
        result.title = oneLine(title);
        if (const auto text = findText(result.cover, NyBookText::Role::Title); text != result.cover.texts.end())
            text->text = result.title;
    }
    if (subtitle != project.subtitle) {
        result.subtitle = isBlank(subtitle) ? QString() : oneLine(subtitle);
        setCoverSubtitle(result);
    }
    return result;
}

bool NyBookEditor::canRemove(const NyBookProject &project, NyBookPlace place)
{
    return place.page != NyBookPlace::Cover && project.photo(place);
}

NyBookProject NyBookEditor::withoutPhoto(const NyBookProject &project, NyBookPlace place)
{
    if (!canRemove(project, place))
        return project;
    NyBookProject result = project;
    NyBookPage &page = result.pages[place.page];
    const std::optional<QRectF> area = layoutArea(page, result.pageSizeMm);
    page.photos.removeAt(place.photo);
    if (!page.photos.isEmpty()) {
        if (area)
            arrange(page.photos, *area);
        return result;
    }
    const QList<NyBookText> headings = dayHeadings(page);
    result.pages.removeAt(place.page);
    // A page without a heading goes on with the day of the page before it.
    if (place.page < result.pages.size() && dayHeadings(result.pages.at(place.page)).isEmpty() && !headings.isEmpty())
        takeOver(result.pages[place.page], headings, result.pageSizeMm);
    return result;
}

NyBookProject NyBookEditor::withPhoto(const NyBookProject &project, NyBookPlace place, const QUrl &url, const QSize &sizePx)
{
    const NyPlacedFoto *old = project.photo(place);
    if (!old || !url.isValid() || url.isRelative() || sizePx.isEmpty() || std::max(sizePx.width(), sizePx.height()) > LARGEST_SIDE_PX)
        return project;
    NyPlacedFoto foto;
    foto.url = url;
    foto.sizePx = sizePx;
    foto.rectMm = NyPageLayout::fitted(old->rectMm, sizePx);
    const bool isSameShape = std::abs(old->rectMm.width() / old->rectMm.height() / foto.shownAspectRatio() - 1) < SAME_SHAPE;
    // The place of a picture with few pixels is smaller than the layout wanted it.
    const bool wasShrunk = old->printedDpi() < NyPageLayout::MinimumDpi * (1 + SHAPE_SLACK);

    NyBookProject result = project;
    const bool isCover = place.page == NyBookPlace::Cover;
    NyBookPage &page = isCover ? result.cover : result.pages[place.page];
    const std::optional<QRectF> area = isCover ? coverLayoutArea(page, result.pageSizeMm) : layoutArea(page, result.pageSizeMm);
    page.photos[place.photo] = foto;
    if (area && (!isSameShape || wasShrunk))
        arrange(page.photos, *area);
    return result;
}
