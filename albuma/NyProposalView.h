#pragma once

#include <QListView>

/** The proposals as cards, in as many columns as there is room for. */
class NyProposalView : public QListView
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyProposalView)
public:
    explicit NyProposalView(QWidget *parent = nullptr);
    ~NyProposalView() override;

Q_SIGNALS:
    /** The user wants the menu of the selected proposal. */
    void menuRequested(const QPoint &globalPosition);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void updateGrid();
};
