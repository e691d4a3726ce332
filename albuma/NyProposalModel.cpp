#include "NyProposalModel.h"

#include <algorithm>

#include <QHash>
#include <QLocale>
#include <QSet>

#include <NyTranslation.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

QStringList ids(const QList<NyProposal> &proposals)
{
    QStringList result;
    result.reserve(proposals.size());
    for (const NyProposal &proposal : proposals)
        result.append(proposal.id);
    return result;
}

QStringList nonEmpty(QStringList texts)
{
    texts.removeAll(QString());
    return texts;
}

}

NyProposalModel::NyProposalModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

NyProposalModel::~NyProposalModel() = default;

void NyProposalModel::setProposals(const QList<NyProposal> &proposals)
{
    removeOthers(proposals);
    insertNew(proposals);
    reorder(proposals);
    // Both lists hold the same proposals in the same order now.
    for (int row = 0; row < int(proposals.size()); ++row) {
        if (m_proposals.at(row) == proposals.at(row))
            continue;
        m_proposals[row] = proposals.at(row);
        Q_EMIT dataChanged(index(row), index(row));
    }
}

void NyProposalModel::removeOthers(const QList<NyProposal> &proposals)
{
    const QStringList wanted = ids(proposals);
    const QSet<QString> kept(wanted.cbegin(), wanted.cend());
    for (int last = int(m_proposals.size()) - 1; last >= 0; --last) {
        int first = last;
        while (first >= 0 && !kept.contains(m_proposals.at(first).id))
            --first;
        if (first == last)
            continue;
        beginRemoveRows({}, first + 1, last);
        m_proposals.remove(first + 1, last - first);
        endRemoveRows();
        last = first;
    }
}

void NyProposalModel::insertNew(const QList<NyProposal> &proposals)
{
    const QStringList present = ids(m_proposals);
    const QSet<QString> known(present.cbegin(), present.cend());
    for (int first = 0; first < int(proposals.size()); ++first) {
        int end = first;
        while (end < int(proposals.size()) && !known.contains(proposals.at(end).id))
            ++end;
        if (end == first)
            continue;
        // What stands before has been inserted or was there.
        beginInsertRows({}, first, end - 1);
        m_proposals.insert(first, end - first, NyProposal());
        std::copy(proposals.cbegin() + first, proposals.cbegin() + end, m_proposals.begin() + first);
        endInsertRows();
        first = end;
    }
}

void NyProposalModel::reorder(const QList<NyProposal> &proposals)
{
    if (ids(m_proposals) == ids(proposals))
        return;
    Q_EMIT layoutAboutToBeChanged();
    QHash<QString, int> rows;
    for (int row = 0; row < int(proposals.size()); ++row)
        rows.insert(proposals.at(row).id, row);
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex &old : before)
        after.append(index(rows.value(m_proposals.at(old.row()).id)));
    m_proposals = proposals;
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged();
}

int NyProposalModel::unreadCount() const
{
    return int(std::count_if(m_proposals.cbegin(), m_proposals.cend(), [](const NyProposal &proposal) { return proposal.isUnread; }));
}

void NyProposalModel::markAsRead(const QString &id)
{
    for (int row = 0; row < int(m_proposals.size()); ++row) {
        NyProposal &proposal = m_proposals[row];
        if (proposal.id != id || !proposal.isUnread)
            continue;
        proposal.isUnread = false;
        Q_EMIT dataChanged(index(row), index(row));
    }
}

void NyProposalModel::markAllAsRead()
{
    if (unreadCount() == 0)
        return;
    for (NyProposal &proposal : m_proposals)
        proposal.isUnread = false;
    Q_EMIT dataChanged(index(0), index(int(m_proposals.size()) - 1));
}

int NyProposalModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_proposals.size());
}

QVariant NyProposalModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const NyProposal &proposal = m_proposals.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return proposal.headline;
    case Qt::AccessibleTextRole:
        return proposal.isUnread ? tr("Neu: %1").arg(proposal.headline) : proposal.headline;
    case Qt::AccessibleDescriptionRole:
        return nonEmpty({proposal.subline, proposal.dates, proposal.extent(), proposal.problem()}).join(u", "_s);
    case Qt::ToolTipRole: {
        // As markup, for the line breaks; the texts come from files and are none.
        QStringList lines = nonEmpty({proposal.headline.toHtmlEscaped(), proposal.subline.toHtmlEscaped(), proposal.dates.toHtmlEscaped(),
            proposal.extent(), proposal.problem()});
        lines.first() = u"<b>%1</b>"_s.arg(lines.constFirst());
        if (proposal.created.isValid()) {
            const QString format = tr("d. MMMM yyyy", "date, as in QDate::toString()");
            lines.append(tr("Erstellt am %1").arg(NyTranslation::locale().toString(proposal.created.date(), format)));
        }
        return u"<qt>%1</qt>"_s.arg(lines.join(u"<br/>"_s));
    }
    case ProposalRole:
        return QVariant::fromValue(proposal);
    default:
        return {};
    }
}

NyProposalSorting::NyProposalSorting(QObject *parent)
    : QSortFilterProxyModel(parent)
    , m_collator(NyTranslation::locale())
{
    m_collator.setNumericMode(true);
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    // No column keeps the order of the source.
    sort(-1);
}

NyProposalSorting::~NyProposalSorting() = default;

void NyProposalSorting::setOrder(Order order)
{
    m_order = order;
    switch (order) {
    case Order::NewestFirst:
        sort(-1);
        return;
    case Order::OldestFirst:
    case Order::ByTitle:
        invalidate();
        sort(0);
        return;
    }
}

bool NyProposalSorting::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    if (m_order == Order::ByTitle) {
        const int comparison = m_collator.compare(left.data().toString(), right.data().toString());
        if (comparison != 0)
            return comparison < 0;
        return left.row() < right.row();
    }
    return left.row() > right.row();
}
