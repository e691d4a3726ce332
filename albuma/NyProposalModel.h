#pragma once

#include <QAbstractListModel>
#include <QCollator>
#include <QList>
#include <QSortFilterProxyModel>

#include "NyProposal.h"

/**
 * The proposals, the newest first.
 *
 * A new list is brought in by inserting, removing and changing rows, so that selection and position of a view outlive it.
 */
class NyProposalModel : public QAbstractListModel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyProposalModel)
public:
    /** The whole NyProposal. */
    static constexpr int ProposalRole = Qt::UserRole;

    explicit NyProposalModel(QObject *parent = nullptr);
    ~NyProposalModel() override;

    void setProposals(const QList<NyProposal> &proposals);
    const QList<NyProposal> &proposals() const { return m_proposals; }
    int unreadCount() const;
    void markAsRead(const QString &id);
    void markAllAsRead();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    void removeOthers(const QList<NyProposal> &proposals);
    void insertNew(const QList<NyProposal> &proposals);
    void reorder(const QList<NyProposal> &proposals);

    QList<NyProposal> m_proposals;
};

/** The order in which the user wants to see them. */
class NyProposalSorting : public QSortFilterProxyModel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyProposalSorting)
public:
    /** The values are stored. */
    enum class Order : int { NewestFirst = 0, OldestFirst = 1, ByTitle = 2 };

    explicit NyProposalSorting(QObject *parent = nullptr);
    ~NyProposalSorting() override;

    Order order() const { return m_order; }
    void setOrder(Order order);

protected:
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    QCollator m_collator;
    Order m_order = Order::NewestFirst;
};
