#pragma once

#include <optional>

#include <QAbstractScrollArea>

#include <NyBookProject.h>
#include <NyDesignStyle.h>

#include "NyFotoImageCache.h"
#include "NySpreadGeometry.h"

/**
 * Shows a book spread by spread: 0 is the front cover, 1 the first two pages. A spread can be looked at more closely, and its photos
 * can be selected with pointer, keyboard and assistive technology. GUI thread.
 */
class NySpreadView : public QAbstractScrollArea
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NySpreadView)
public:
    /** The whole spread fits the window. */
    static constexpr double MinimumZoom = 1;
    static constexpr double MaximumZoom = 8;

    NySpreadView(const NyBookProject &project, const NyDesignStyle &style, QWidget *parent = nullptr);

    /** Shows another state of the book: spread, zoom and selection stay as far as the book still has them, and so do loaded photos. */
    void setProject(const NyBookProject &project);

    int spread() const { return m_spread; }
    int spreadCount() const { return m_project.spreadCount(); }
    /** For people: "Titel", "Seite 7 von 7", "Seiten 3 und 4 von 12". */
    QString spreadDescription() const;
    /** Whether every photo of this spread has come or is known to be missing. */
    bool isComplete() const { return m_images.pendingCount() == 0; }

    double zoom() const { return m_zoom; }
    bool isZoomedIn() const { return m_zoom > MinimumZoom; }

    /** A photo of the shown spread, or none. */
    std::optional<NyBookPlace> selected() const { return m_selected; }
    /** Selects a photo and shows it, on its spread; a place without a photo means none. */
    void setSelected(std::optional<NyBookPlace> place);

    /** The shown spread's photos, in the order in which the keyboard walks through them. */
    QList<NyBookPlace> places() const;
    /** Where a photo of the shown spread is, in the viewport's units; empty if it is not there. Zoomed in, it may lie outside. */
    QRectF photoRect(NyBookPlace place) const;
    /** The uppermost photo at a point of the viewport. */
    std::optional<NyBookPlace> photoAt(const QPointF &point) const;
    /** The name of the photo's file; empty if there is no photo. */
    QString photoName(NyBookPlace place) const;
    /** For people, with the position among the spread's photos: "strand.jpg, Foto 2 von 4". */
    QString photoDescription(NyBookPlace place) const;
    /** Selects the photo and asks for its menu beside it. */
    void requestContextMenu(NyBookPlace place);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** Values beyond the book's ends mean its ends. */
    void setSpread(int spread);
    void showNext() { setSpread(m_spread + 1); }
    void showPrevious() { setSpread(m_spread - 1); }
    void showFirst() { setSpread(0); }
    void showLast() { setSpread(spreadCount() - 1); }
    /** Around the selected photo if it can be seen, else around the middle. Values out of range mean its ends. */
    void setZoom(double zoom);
    void zoomIn();
    void zoomOut();
    void zoomToFit() { setZoom(MinimumZoom); }

Q_SIGNALS:
    void spreadChanged(int spread);
    void zoomChanged(double zoom);
    void selectionChanged();
    /** A photo was double-clicked, or Return was pressed on it. It is selected. */
    void photoActivated(NyBookPlace place);
    /** The cover's title or subtitle was double-clicked. */
    void wordsActivated();
    /** A picture file was dropped onto a photo. */
    void photoDropped(NyBookPlace place, const QString &path);
    /** The menu of a photo is wanted. It is selected. */
    void contextMenuRequested(NyBookPlace place, const QPoint &globalPos);

protected:
    bool viewportEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    /** A point of the viewport, none for its middle, and what of the spread is to be there, as shares of its width and height. */
    struct Anchor
    {
        std::optional<QPointF> point;
        QPointF share;
    };
    struct Press
    {
        enum class Purpose { Click, TurnOn, Nothing };
        Qt::MouseButton button = Qt::NoButton;
        QPointF point;
        QPoint scroll;
        Purpose purpose = Purpose::Nothing;
        bool isDrag = false;
    };
    /** The last click that turned the page. */
    struct Turn
    {
        QPointF point;
        quint64 timestampMs = 0;
    };

    double unitsPerMm(int spread, double zoom) const;
    QSizeF spreadSize() const;
    QPointF spreadTopLeft() const;
    NySpreadGeometry geometry() const;
    NyBookRenderer renderer();
    QPointF shareAt(const QPointF &point) const;
    QPointF middle() const;
    QPoint scrollPosition() const;
    void setScrollPosition(const QPointF &position);
    void updateScrollBars();
    void place(const Anchor &anchor);
    void zoomAround(double zoom, std::optional<QPointF> point);
    std::optional<QPointF> zoomPoint() const;
    void ensureVisible(NyBookPlace place);

    void present(int spread, std::optional<NyBookPlace> selected);
    void click(const Press &press, quint64 timestampMs);
    void turnAt(const QPointF &point, quint64 timestampMs);
    bool goesOnTurning(const QMouseEvent &event) const;
    void showToolTip(const QPoint &point, const QPoint &globalPos);
    QStringList photoNames() const;

    bool isFocusFrameShown() const { return hasFocus() && m_isKeyboardFocus && !m_selected; }
    double pictureShare(const NySpreadGeometry &spread, const QRectF &seen, double memoryShare) const;
    void prefetch(int spread);
    void setDropTarget(std::optional<NyBookPlace> place);
    void paintSelection(QPainter &painter, const NySpreadGeometry &spread) const;

    NyBookProject m_project;
    NyDesignStyle m_style;
    NyFotoImageCache m_images;
    int m_spread = 0;
    double m_zoom = MinimumZoom;
    std::optional<NyBookPlace> m_selected;
    /** The photo that a picture is dragged over. */
    std::optional<NyBookPlace> m_dropTarget;
    /** What is in the middle of the window, as shares of the spread. */
    QPointF m_middleShare = QPointF(0.5, 0.5);
    /** Where it was zoomed last; keeps rounded scroll positions from adding up. */
    std::optional<Anchor> m_zoomAnchor;
    bool m_isPlacing = false;
    std::optional<Press> m_press;
    std::optional<Turn> m_lastTurn;
    bool m_isKeyboardFocus = false;
    double m_pictureShare = 1;
    int m_wheelDelta = 0;
    QPointF m_scrollRest;
};
