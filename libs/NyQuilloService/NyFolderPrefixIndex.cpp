#include "NyFolderPrefixIndex.h"

#include <algorithm>
#include <iterator>
#include <numeric>

NyFolderPrefixIndex::NyFolderPrefixIndex(const QList<QString> &folderPaths)
{
    std::vector<int> order(std::size_t(folderPaths.size()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(
        order.begin(), order.end(), [&folderPaths](int left, int right) { return folderPaths.at(left) < folderPaths.at(right); });

    m_entries.reserve(order.size());
    for (const int position : order) {
        const QString &path = folderPaths.at(position);
        if (m_entries.empty() || m_entries.back().path != path) {
            // All prefixes of a path are in the chain of the entry that sorts right before it.
            int prefix = int(m_entries.size()) - 1;
            while (prefix >= 0 && !path.startsWith(m_entries[std::size_t(prefix)].path, Qt::CaseSensitive))
                prefix = m_entries[std::size_t(prefix)].nextShorter;
            m_entries.push_back({path, prefix, {}});
        }
        m_entries.back().positions.push_back(position);
    }
    // Shorter ones sort before longer ones, so their positions are complete already.
    for (Entry &entry : m_entries) {
        if (entry.nextShorter < 0)
            continue;
        const std::vector<int> &inherited = m_entries[std::size_t(entry.nextShorter)].positions;
        std::vector<int> merged;
        merged.reserve(inherited.size() + entry.positions.size());
        std::merge(inherited.cbegin(), inherited.cend(), entry.positions.cbegin(), entry.positions.cend(), std::back_inserter(merged));
        entry.positions = std::move(merged);
    }
}

const std::vector<int> &NyFolderPrefixIndex::positionsOfPrefixes(QStringView filePath) const
{
    const auto behind = std::upper_bound(m_entries.cbegin(), m_entries.cend(), filePath,
        [](QStringView path, const Entry &entry) { return path < QStringView(entry.path); });
    int prefix = int(behind - m_entries.cbegin()) - 1;
    while (prefix >= 0 && !filePath.startsWith(m_entries[std::size_t(prefix)].path, Qt::CaseSensitive))
        prefix = m_entries[std::size_t(prefix)].nextShorter;
    return prefix < 0 ? m_none : m_entries[std::size_t(prefix)].positions;
}
