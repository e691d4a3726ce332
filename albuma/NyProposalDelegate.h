#pragma once

#include <QStyledItemDelegate>

class NyPreviewCache;

/** Paints a proposal as a card: preview, mark of the new, headline and the rest of what is known, in the colours of the palette. */
class NyProposalDelegate : public QStyledItemDelegate
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyProposalDelegate)
public:
    /** @p previews must outlive the delegate. */
    explicit NyProposalDelegate(NyPreviewCache &previews, QObject *parent = nullptr);
    ~NyProposalDelegate() override;

    /** The height of a card of this width, for all proposals alike. */
    static int cardHeight(int widthUnits, const QFont &font);

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    NyPreviewCache &m_previews;
};
