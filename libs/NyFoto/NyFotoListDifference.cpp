#include "NyFotoListDifference.h"

#include <algorithm>
#include <bit>

namespace
{

/** Finds, for a digest, the first old row with it that was not taken yet. */
class DigestTable
{
public:
    explicit DigestTable(const std::vector<quint64> &digests)
        : m_digests(digests)
        , m_mask(std::bit_ceil(digests.size() * 2 + 2) - 1)
        , m_heads(m_mask + 1, -1)
        , m_next(digests.size(), -1)
        , m_taken(m_mask + 1, 0)
    {
        for (qint32 row = qint32(digests.size()) - 1; row >= 0; --row) {
            const std::size_t slot = slotOf(digests[std::size_t(row)]);
            m_next[std::size_t(row)] = m_heads[slot];
            m_heads[slot] = row;
        }
    }

    qint32 take(quint64 digest)
    {
        const std::size_t slot = slotOf(digest);
        const qint32 head = m_heads[slot];
        if (head < 0 || m_taken[slot])
            return -1;
        const qint32 next = m_next[std::size_t(head)];
        // The last row stays in its slot, which marks the digest that the slot belongs to.
        if (next >= 0)
            m_heads[slot] = next;
        else
            m_taken[slot] = 1;
        return head;
    }

private:
    std::size_t slotOf(quint64 digest) const
    {
        std::size_t slot = std::size_t(digest * 0x9e3779b97f4a7c15u >> 17) & m_mask;
        while (m_heads[slot] >= 0 && m_digests[std::size_t(m_heads[slot])] != digest)
            slot = (slot + 1) & m_mask;
        return slot;
    }

    const std::vector<quint64> &m_digests;
    std::size_t m_mask;
    std::vector<qint32> m_heads;
    std::vector<qint32> m_next;
    std::vector<char> m_taken;
};

}

std::vector<qint32> NyFotoListDifference::keptRows(const std::vector<quint64> &oldDigests, const std::vector<quint64> &newDigests)
{
    std::vector<qint32> matches(newDigests.size(), -1);
    DigestTable table(oldDigests);
    for (std::size_t i = 0; i < newDigests.size(); ++i)
        matches[i] = table.take(newDigests[i]);

    // The longest rising subsequence of the matches: the last element of the best sequence of each length, and who came before.
    std::vector<qint32> ends;
    std::vector<qint32> previous(newDigests.size(), -1);
    for (std::size_t i = 0; i < matches.size(); ++i) {
        if (matches[i] < 0)
            continue;
        const auto position = ends.empty() || matches[std::size_t(ends.back())] < matches[i]
            ? ends.end()
            : std::lower_bound(
                ends.begin(), ends.end(), matches[i], [&matches](qint32 index, qint32 row) { return matches[std::size_t(index)] < row; });
        previous[i] = position == ends.begin() ? -1 : *(position - 1);
        if (position == ends.end())
            ends.push_back(qint32(i));
        else
            *position = qint32(i);
    }

    std::vector<qint32> kept(newDigests.size(), -1);
    for (qint32 i = ends.empty() ? -1 : ends.back(); i >= 0; i = previous[std::size_t(i)])
        kept[std::size_t(i)] = matches[std::size_t(i)];
    return kept;
}

std::vector<qint64> NyFotoListDifference::orders(const std::vector<qint32> &keptRows, const std::vector<qint64> &oldOrders)
{
    // Far from the limits of the type, so that sums below cannot overflow.
    constexpr qint64 Limit = qint64(1) << 60;
    std::vector<qint64> result(keptRows.size());
    std::size_t i = 0;
    while (i < keptRows.size()) {
        if (keptRows[i] >= 0) {
            result[i] = oldOrders[std::size_t(keptRows[i])];
            ++i;
            continue;
        }
        std::size_t end = i;
        while (end < keptRows.size() && keptRows[end] < 0)
            ++end;
        const qint64 count = qint64(end - i);
        qint64 first = 0;
        qint64 step = OrderStep;
        const bool hasBefore = i > 0;
        const bool hasAfter = end < keptRows.size();
        if (hasBefore && hasAfter) {
            const qint64 before = result[i - 1];
            step = (oldOrders[std::size_t(keptRows[end])] - before) / (count + 1);
            if (step < 1)
                return {};
            first = before + step;
        } else if (hasBefore) {
            first = result[i - 1] + step;
        } else if (hasAfter) {
            first = oldOrders[std::size_t(keptRows[end])] - step * count;
        }
        if (first < -Limit || first + step * count > Limit)
            return {};
        for (qint64 k = 0; k < count; ++k)
            result[i + std::size_t(k)] = first + k * step;
        i = end;
    }
    return result;
}

std::vector<qint64> NyFotoListDifference::freshOrders(std::size_t count)
{
    std::vector<qint64> result(count);
    for (std::size_t i = 0; i < count; ++i)
        result[i] = qint64(i) * OrderStep;
    return result;
}
