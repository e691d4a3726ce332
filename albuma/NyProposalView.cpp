#include "NyProposalView.h"

#include <algorithm>

#include <QContextMenuEvent>
#include <QEvent>
#include <QScrollBar>
#include <QStyle>

#include "NyProposalDelegate.h"

namespace
{

constexpr int NarrowestCard = 240;

}

NyProposalView::NyProposalView(QWidget *parent)
    : QListView(parent)
{
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setResizeMode(QListView::Adjust);
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    setMouseTracking(true);
    updateGrid();
}

NyProposalView::~NyProposalView() = default;

void NyProposalView::updateGrid()
{
    // Without the scroll bar's part, whether it is there or not: the columns must not depend on it, as it depends on them.
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    const int width = std::max(contentsRect().width() - bar - 1, NarrowestCard);
    const int columns = std::max(1, width / NarrowestCard);
    const int card = width / columns;
    const QSize grid(card, NyProposalDelegate::cardHeight(card, font()));
    if (grid == gridSize())
        return;
    setIconSize(grid);
    setGridSize(grid);
    verticalScrollBar()->setSingleStep(grid.height() / 4);
}

void NyProposalView::resizeEvent(QResizeEvent *event)
{
    updateGrid();
    QListView::resizeEvent(event);
}

void NyProposalView::changeEvent(QEvent *event)
{
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateGrid();
}

void NyProposalView::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = isByKey ? currentIndex() : indexAt(viewport()->mapFromGlobal(event->globalPos()));
    if (!index.isValid())
        return;
    setCurrentIndex(index);
    event->accept();
    Q_EMIT menuRequested(isByKey ? viewport()->mapToGlobal(visualRect(index).center()) : event->globalPos());
}
