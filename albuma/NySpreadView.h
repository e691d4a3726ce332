#pragma once

#include <QWidget>

#include <NyBookProject.h>
#include <NyDesignStyle.h>

#include "NyFotoImageCache.h"

/** Shows a book spread by spread: 0 is the front cover, 1 the first two pages. GUI thread. */
class NySpreadView : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NySpreadView)
public:
    NySpreadView(const NyBookProject &project, const NyDesignStyle &style, QWidget *parent = nullptr);

    int spread() const { return m_spread; }
    int spreadCount() const { return m_project.spreadCount(); }
    /** For people: "Titel", "Seite 7 von 7", "Seiten 3 und 4 von 12". */
    QString spreadDescription() const;
    /** Whether every photo of this spread has come or is known to be missing. */
    bool isComplete() const { return m_images.pendingCount() == 0; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** Values beyond the book's ends mean its ends. */
    void setSpread(int spread);
    void showNext() { setSpread(m_spread + 1); }
    void showPrevious() { setSpread(m_spread - 1); }
    void showFirst() { setSpread(0); }
    void showLast() { setSpread(spreadCount() - 1); }

Q_SIGNALS:
    void spreadChanged(int spread);

protected:
    void paintEvent(QPaintEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    struct PlacedPage
    {
        /** Null for the empty paper behind the last page. */
        const NyBookPage *page = nullptr;
        NyBookRenderer::PageKind kind = NyBookRenderer::PageKind::Inner;
        QRectF rect;
    };
    QList<PlacedPage> pagesOf(int spread) const;
    void prefetch(int spread);

    NyBookProject m_project;
    NyDesignStyle m_style;
    NyFotoImageCache m_images;
    int m_spread = 0;
    int m_wheelDelta = 0;
};
