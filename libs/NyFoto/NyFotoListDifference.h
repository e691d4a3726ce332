#pragma once

#include <vector>

#include <QtCore/QtGlobal>

/**
 * What it takes to turn one stored sequence into another: which rows stay, and which order numbers the others get. Pure functions.
 *
 * Rows are compared by their digests. Order numbers rise strictly from row to row and have gaps, so that a row can come between
 * two others without touching them.
 */
class NyFotoListDifference
{
public:
    /** The distance between the order numbers of neighbours in a freshly numbered list. */
    static constexpr qint64 OrderStep = qint64(1) << 20;

    /**
     * For each new row the index of the old row that stays in its place, or -1 for a row to insert. The indexes rise strictly; old rows
     * that are not named are to be removed. As many rows stay as possible, except that of equal rows the k-th new one only
     * ever matches the k-th old one. Takes time n log n.
     */
    static std::vector<qint32> keptRows(const std::vector<quint64> &oldDigests, const std::vector<quint64> &newDigests);

    /**
     * The order number of each new row; the rows that stay keep theirs. Empty when a gap is too narrow, and the whole list must be
     * numbered anew.
     */
    static std::vector<qint64> orders(const std::vector<qint32> &keptRows, const std::vector<qint64> &oldOrders);

    static std::vector<qint64> freshOrders(std::size_t count);
};
