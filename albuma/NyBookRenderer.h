#pragma once

#include <functional>

#include <QCoreApplication>
#include <QFont>
#include <QImage>

#include <NyBookProject.h>
#include <NyDesignStyle.h>

class QPainter;

/** Paints pages of a book. May be used on any thread that may paint on the given device. */
class NyBookRenderer
{
    Q_DECLARE_TR_FUNCTIONS(NyBookRenderer)
public:
    enum class PageKind { Cover, Inner };

    struct Picture
    {
        enum class State { Ready, Loading, Missing };
        State state = State::Missing;
        /** Upright; null unless ready. */
        QImage image;
        /** A better version is on its way, so that this one may be painted with less care. */
        bool isInterim = false;
    };
    /** Gives the upright picture of a URL, best in a size that just fills the box of px. */
    using PictureSource = std::function<Picture(const QUrl &url, const QSize &boxPx)>;

    NyBookRenderer(const NyDesignStyle &style, PictureSource source);

    /**
     * Paints @p page into @p target, whose proportions should be the page's. Units of the painter; @p devicePixelRatio px a unit. What
     * reaches beyond the page is painted up to @p bleedMm around the target. Photos outside the painter's clip are neither painted nor
     * asked for.
     */
    void paint(QPainter &painter, const NyBookPage &page, PageKind kind, const QSizeF &pageMm, const QRectF &target,
        double devicePixelRatio, double bleedMm = 0) const;

    /** The size in px of the whole upright picture when @p foto is painted into a rectangle of @p units. */
    static QSize boxPx(const NyPlacedFoto &foto, const QSizeF &units, double devicePixelRatio);

    /** Where the words of a text are when it is painted into @p rect with @p unitsPerMm; empty if there are none. */
    QRectF wordsRect(const NyBookText &text, const QRectF &rect, double unitsPerMm) const;

    /** The front cover as a picture of @p widthPx, drawn with the files that the photos name. */
    static QImage coverImage(const NyBookProject &project, const NyDesignStyle &style, int widthPx);

private:
    struct FittedText
    {
        QFont font;
        int flags = 0;
        QRectF words;
    };
    FittedText fitted(const NyBookText &text, const QRectF &rect, double unitsPerMm) const;
    void paintPhoto(QPainter &painter, const NyPlacedFoto &foto, PageKind kind, const QRectF &rect, double devicePixelRatio) const;
    void paintMissing(QPainter &painter, const QString &name, const QRectF &rect) const;
    void paintText(QPainter &painter, const NyBookText &text, PageKind kind, const QRectF &rect, double unitsPerMm) const;

    NyDesignStyle m_style;
    PictureSource m_source;
};
