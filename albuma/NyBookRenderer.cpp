#include "NyBookRenderer.h"

#include <cmath>

#include <QFileInfo>
#include <QFontMetricsF>
#include <QPainter>

#include <NyImageLoader.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr double MM_PER_POINT = 25.4 / 72.0;
/** A word that is still too wide at this share of its size, or at these points, is broken rather than made smaller. */
constexpr double SMALLEST_UNBROKEN_SHARE = 0.45;
constexpr double SMALLEST_UNBROKEN_PT = 9;
constexpr double SMALLEST_FONT_PT = 7;
/** White frame around the cover's photo. */
constexpr double COVER_FRAME_MM = 2.2;
/** The frame and the shadow around it. */
constexpr double COVER_MARGIN_MM = 6;
constexpr double ACCENT_LINE_MM = 26;
/** Up to here four neighbours of a pixel see all of a picture that is painted smaller. */
constexpr double SHARP_SHRINK = 2.1;

QFont fontOf(const QString &families)
{
    QStringList list = families.split(u',', Qt::SkipEmptyParts);
    for (QString &family : list)
        family = family.trimmed();
    QFont font;
    font.setFamilies(list);
    return font;
}

}

NyBookRenderer::NyBookRenderer(const NyDesignStyle &style, PictureSource source)
    : m_style(style)
    , m_source(std::move(source))
{
}

void NyBookRenderer::paint(QPainter &painter, const NyBookPage &page, PageKind kind, const QSizeF &pageMm, const QRectF &target,
    double devicePixelRatio, double bleedMm) const
{
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform | QPainter::TextAntialiasing);
    const double unitsPerMm = target.width() / pageMm.width();
    const double bleed = bleedMm * unitsPerMm;
    const QRectF paper = target.adjusted(-bleed, -bleed, bleed, bleed);
    painter.setClipRect(paper, Qt::IntersectClip);
    painter.fillRect(paper, kind == PageKind::Cover ? m_style.coverBackground : m_style.pageBackground);
    const auto toTarget = [&](const QRectF &mm) { return QRectF(target.topLeft() + mm.topLeft() * unitsPerMm, mm.size() * unitsPerMm); };
    const double margin = kind == PageKind::Cover ? COVER_MARGIN_MM * unitsPerMm : 1;
    const QRectF exposed = painter.clipBoundingRect().adjusted(-margin, -margin, margin, margin);
    for (const NyPlacedFoto &foto : page.photos) {
        const QRectF rect = toTarget(foto.rectMm);
        if (!rect.intersects(exposed))
            continue;
        if (kind == PageKind::Cover) {
            const double frame = COVER_FRAME_MM * unitsPerMm;
            const QRectF framed = rect.adjusted(-frame, -frame, frame, frame);
            for (int ring = 6; ring > 0; --ring) {
                const double spread = ring * 0.35 * unitsPerMm;
                painter.fillRect(framed.adjusted(-spread, -spread * 0.4, spread, spread * 1.4), QColor(0, 0, 0, 9));
            }
            painter.fillRect(framed, Qt::white);
        }
        paintPhoto(painter, foto, kind, rect, devicePixelRatio);
    }
    for (const NyBookText &text : page.texts) {
        paintText(painter, text, kind, toTarget(text.rectMm), unitsPerMm);
        if (kind == PageKind::Cover && text.role == NyBookText::Role::Subtitle) {
            const QRectF line((text.rectMm.center().x() - ACCENT_LINE_MM / 2), text.rectMm.top() - 1.6, ACCENT_LINE_MM, 0.6);
            painter.fillRect(toTarget(line), m_style.accentColor);
        }
    }
    painter.restore();
}

void NyBookRenderer::paintPhoto(
    QPainter &painter, const NyPlacedFoto &foto, PageKind kind, const QRectF &rect, double devicePixelRatio) const
{
    const Picture picture = m_source(foto.url, boxPx(foto, rect.size(), devicePixelRatio));
    switch (picture.state) {
    case Picture::State::Missing:
        paintMissing(painter, foto.url.fileName(), rect);
        return;
    case Picture::State::Loading: {
        const QColor background = kind == PageKind::Cover ? m_style.coverBackground : m_style.pageBackground;
        painter.fillRect(rect, background.lightness() > 128 ? background.darker(108) : background.lighter(130));
        return;
    }
    case Picture::State::Ready:
        break;
    }
    QImage image = picture.image;
    // The picture stays as it is and the painter turns: a copy of a large picture costs more than painting the part that is seen.
    const bool isLying = foto.rotationDegrees % 180 != 0;
    const QRectF crop = QTransform().translate(0.5, 0.5).rotate(-foto.rotationDegrees).translate(-0.5, -0.5).mapRect(foto.crop);
    const double targetWidth = isLying ? rect.height() : rect.width();
    const double shrink = image.width() * crop.width() / (targetWidth * devicePixelRatio);
    if (shrink > SHARP_SHRINK && !picture.isInterim)
        image = image.scaled(QSizeF(image.width() / shrink, image.height() / shrink).toSize().expandedTo(QSize(1, 1)),
            Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QRectF source(crop.x() * image.width(), crop.y() * image.height(), crop.width() * image.width(), crop.height() * image.height());
    if (foto.rotationDegrees == 0) {
        painter.drawImage(rect, image, source);
        return;
    }
    painter.save();
    painter.translate(rect.center());
    painter.rotate(foto.rotationDegrees);
    const QSizeF turned = isLying ? rect.size().transposed() : rect.size();
    painter.drawImage(QRectF(QPointF(-turned.width() / 2, -turned.height() / 2), turned), image, source);
    painter.restore();
}

QSize NyBookRenderer::boxPx(const NyPlacedFoto &foto, const QSizeF &units, double devicePixelRatio)
{
    QSizeF whole(units.width() / foto.crop.width(), units.height() / foto.crop.height());
    if (foto.rotationDegrees % 180 != 0)
        whole.transpose();
    // A tiny crop of a huge picture must not ask for more than any screen or memory has, nor a broken one for nothing.
    constexpr double largestPx = 20000;
    const auto bounded = [&](double px) { return px > 1 ? int(std::ceil(std::min(px, largestPx))) : 1; };
    whole *= devicePixelRatio;
    return {bounded(whole.width()), bounded(whole.height())};
}

void NyBookRenderer::paintMissing(QPainter &painter, const QString &name, const QRectF &rect) const
{
    painter.save();
    painter.fillRect(rect, QColor(0xdc, 0xdc, 0xdc));
    painter.setPen(QPen(QColor(0x9a, 0x9a, 0x9a), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect.adjusted(0.5, 0.5, -0.5, -0.5));
    QFont font = fontOf(m_style.bodyFonts);
    font.setPixelSize(std::clamp(int(rect.height() / 9), 9, 20));
    painter.setFont(font);
    painter.setPen(QColor(0x55, 0x55, 0x55));
    const QRectF inside = rect.adjusted(4, 4, -4, -4);
    const QFontMetricsF metrics(font);
    const QString shownName = metrics.elidedText(name.simplified(), Qt::ElideMiddle, inside.width());
    painter.drawText(inside, Qt::AlignCenter, tr("Foto fehlt") + u'\n' + shownName);
    painter.restore();
}

NyBookRenderer::FittedText NyBookRenderer::fitted(const NyBookText &text, const QRectF &rect, double unitsPerMm) const
{
    const bool isTitle = text.role == NyBookText::Role::Title || text.role == NyBookText::Role::DayHeading;
    FittedText result{fontOf(isTitle ? m_style.titleFonts : m_style.bodyFonts), 0, {}};
    const int vertical = text.role == NyBookText::Role::Title ? Qt::AlignVCenter : Qt::AlignTop;
    result.flags = int(text.alignment) | vertical | Qt::TextWordWrap;
    const double wanted = text.fontSizePt * MM_PER_POINT * unitsPerMm;
    const double unitsPerPoint = MM_PER_POINT * unitsPerMm;
    const double smallestUnbroken = std::max(wanted * SMALLEST_UNBROKEN_SHARE, SMALLEST_UNBROKEN_PT * unitsPerPoint);
    const double smallest = std::min(wanted, SMALLEST_FONT_PT * unitsPerPoint);
    // Hinted glyph widths do not shrink evenly, so the fitting size is found by trying.
    for (double size = wanted; size > 0 && size >= smallest; size *= 0.94) {
        result.font.setPixelSize(std::max(1, int(std::lround(size))));
        const QFontMetricsF metrics(result.font);
        result.words = metrics.boundingRect(rect, result.flags, text.text);
        bool isTooWide = result.words.width() > rect.width() * 1.001;
        if (isTooWide && size < smallestUnbroken) {
            result.flags = (result.flags & ~Qt::TextWordWrap) | Qt::TextWrapAnywhere;
            result.words = metrics.boundingRect(rect, result.flags, text.text);
            isTooWide = result.words.width() > rect.width() * 1.001;
        }
        if (result.words.height() <= rect.height() * 1.02 && !isTooWide)
            break;
    }
    return result;
}

QRectF NyBookRenderer::wordsRect(const NyBookText &text, const QRectF &rect, double unitsPerMm) const
{
    return text.text.trimmed().isEmpty() ? QRectF() : fitted(text, rect, unitsPerMm).words;
}

void NyBookRenderer::paintText(QPainter &painter, const NyBookText &text, PageKind kind, const QRectF &rect, double unitsPerMm) const
{
    const FittedText fit = fitted(text, rect, unitsPerMm);
    painter.setFont(fit.font);
    painter.setPen(kind == PageKind::Cover ? m_style.coverTextColor : m_style.textColor);
    painter.drawText(rect, fit.flags, text.text);
}

QImage NyBookRenderer::coverImage(const NyBookProject &project, const NyDesignStyle &style, int widthPx)
{
    const int heightPx = int(std::lround(widthPx * project.pageSizeMm.height() / project.pageSizeMm.width()));
    QImage image(widthPx, std::max(1, heightPx), QImage::Format_RGB32);
    image.fill(style.coverBackground);
    const NyBookRenderer renderer(style, [](const QUrl &url, const QSize &boxPx) -> Picture {
        const QImage loaded = NyImageLoader::instance().loadScaled(url.toLocalFile(), boxPx);
        return {loaded.isNull() ? Picture::State::Missing : Picture::State::Ready, loaded};
    });
    QPainter painter(&image);
    renderer.paint(painter, project.cover, PageKind::Cover, project.pageSizeMm, QRectF(image.rect()), 1.0);
    painter.end();
    return image;
}
