#include <QTest>

#include <algorithm>
#include <random>

#include "../../libs/NyFoto/NyFotoListDifference.h"

using Digests = std::vector<quint64>;
using Kept = std::vector<qint32>;
using Orders = std::vector<qint64>;

namespace
{

Digests digests(const char *letters)
{
    return Digests(letters, letters + qstrlen(letters));
}

/** What is stored after the difference was carried out. */
Digests carriedOut(const Digests &oldDigests, const Orders &oldOrders, const Digests &newDigests, const Kept &kept, const Orders &orders)
{
    std::vector<std::pair<qint64, quint64>> rows;
    for (std::size_t i = 0; i < newDigests.size(); ++i) {
        if (kept[i] < 0)
            rows.emplace_back(orders[i], newDigests[i]);
    }
    for (const qint32 row : kept) {
        if (row >= 0)
            rows.emplace_back(oldOrders[std::size_t(row)], oldDigests[std::size_t(row)]);
    }
    std::sort(rows.begin(), rows.end());
    Digests result;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i > 0 && rows[i].first == rows[i - 1].first)
            return {};
        result.push_back(rows[i].second);
    }
    return result;
}

/** The length of the longest common subsequence, by the textbook's table. */
std::size_t longestCommon(const Digests &left, const Digests &right)
{
    std::vector<std::vector<std::size_t>> table(left.size() + 1, std::vector<std::size_t>(right.size() + 1));
    for (std::size_t i = 1; i <= left.size(); ++i) {
        for (std::size_t j = 1; j <= right.size(); ++j)
            table[i][j] = left[i - 1] == right[j - 1] ? table[i - 1][j - 1] + 1 : std::max(table[i - 1][j], table[i][j - 1]);
    }
    return table[left.size()][right.size()];
}

}

class tst_NyFotoListDifference : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keptRows_data();
    void keptRows();
    void randomLists();
    void distinctRowsAreKeptAtBest();
    void orders();
    void narrowGap();
    void manyInsertionsAtOnePlace();
    void limits();
};

void tst_NyFotoListDifference::keptRows_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::addColumn<QList<int>>("expected");
    QTest::newRow("both empty") << QByteArray() << QByteArray() << QList<int>();
    QTest::newRow("from nothing") << QByteArray() << QByteArray("ab") << QList<int>{-1, -1};
    QTest::newRow("to nothing") << QByteArray("ab") << QByteArray() << QList<int>();
    QTest::newRow("same") << QByteArray("abc") << QByteArray("abc") << QList<int>{0, 1, 2};
    QTest::newRow("appended") << QByteArray("abc") << QByteArray("abcd") << QList<int>{0, 1, 2, -1};
    QTest::newRow("prepended") << QByteArray("abc") << QByteArray("dabc") << QList<int>{-1, 0, 1, 2};
    QTest::newRow("removed in front") << QByteArray("abc") << QByteArray("bc") << QList<int>{1, 2};
    QTest::newRow("removed in the middle") << QByteArray("abc") << QByteArray("ac") << QList<int>{0, 2};
    QTest::newRow("replaced") << QByteArray("abc") << QByteArray("axc") << QList<int>{0, -1, 2};
    QTest::newRow("moved") << QByteArray("abcd") << QByteArray("bcda") << QList<int>{1, 2, 3, -1};
    QTest::newRow("nothing common") << QByteArray("abc") << QByteArray("xyz") << QList<int>{-1, -1, -1};
    QTest::newRow("duplicate added") << QByteArray("ab") << QByteArray("abb") << QList<int>{0, 1, -1};
    QTest::newRow("duplicate removed") << QByteArray("aab") << QByteArray("ab") << QList<int>{0, 2};
    QTest::newRow("all equal, one more") << QByteArray("aaa") << QByteArray("aaaa") << QList<int>{0, 1, 2, -1};
    QTest::newRow("all equal, one less") << QByteArray("aaa") << QByteArray("aa") << QList<int>{0, 1};
}

void tst_NyFotoListDifference::keptRows()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QFETCH(QList<int>, expected);
    const Kept kept = NyFotoListDifference::keptRows(digests(before.constData()), digests(after.constData()));
    QCOMPARE(QList<int>(kept.begin(), kept.end()), expected);
}

void tst_NyFotoListDifference::randomLists()
{
    std::mt19937 random(20240714);
    for (int round = 0; round < 2000; ++round) {
        const quint64 letters = 1 + random() % 12;
        Digests before(random() % 20);
        Digests after(random() % 20);
        // Digests that differ by multiples of a power of two press the table's slots together.
        for (quint64 &digest : before)
            digest = (random() % letters) << 40;
        for (quint64 &digest : after)
            digest = (random() % letters) << 40;
        const Orders oldOrders = NyFotoListDifference::freshOrders(before.size());
        const Kept kept = NyFotoListDifference::keptRows(before, after);
        QCOMPARE(kept.size(), after.size());
        qint32 last = -1;
        for (std::size_t i = 0; i < kept.size(); ++i) {
            if (kept[i] < 0)
                continue;
            QVERIFY(kept[i] > last);
            QCOMPARE(before[std::size_t(kept[i])], after[i]);
            last = kept[i];
        }
        const Orders orders = NyFotoListDifference::orders(kept, oldOrders);
        QCOMPARE(carriedOut(before, oldOrders, after, kept, orders), after);
    }
}

void tst_NyFotoListDifference::distinctRowsAreKeptAtBest()
{
    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        Digests all(24);
        for (std::size_t i = 0; i < all.size(); ++i)
            all[i] = i * 0x9e3779b97f4a7c15u;
        std::shuffle(all.begin(), all.end(), random);
        const Digests before(all.begin(), all.begin() + 16);
        std::shuffle(all.begin(), all.end(), random);
        const Digests after(all.begin(), all.begin() + 16);
        const Kept kept = NyFotoListDifference::keptRows(before, after);
        const auto count = std::count_if(kept.begin(), kept.end(), [](qint32 row) { return row >= 0; });
        QCOMPARE(std::size_t(count), longestCommon(before, after));
    }
}

void tst_NyFotoListDifference::orders()
{
    const qint64 step = NyFotoListDifference::OrderStep;
    QCOMPARE(NyFotoListDifference::freshOrders(3), Orders({0, step, 2 * step}));
    QCOMPARE(NyFotoListDifference::orders({-1, -1}, {}), Orders({0, step}));
    QCOMPARE(NyFotoListDifference::orders({0, 1, -1}, {0, step}), Orders({0, step, 2 * step}));
    QCOMPARE(NyFotoListDifference::orders({-1, -1, 0}, {5}), Orders({5 - 2 * step, 5 - step, 5}));
    QCOMPARE(NyFotoListDifference::orders({0, -1, 1}, {0, 10}), Orders({0, 5, 10}));
    // A removed row's number is free again.
    QCOMPARE(NyFotoListDifference::orders({0, -1, 2}, {0, 1, 2}), Orders({0, 1, 2}));
}

void tst_NyFotoListDifference::narrowGap()
{
    QVERIFY(NyFotoListDifference::orders({0, -1, 1}, {0, 1}).empty());
    QVERIFY(NyFotoListDifference::orders({0, -1, -1, 1}, {0, 2}).empty());
    QCOMPARE(NyFotoListDifference::orders({0, -1, -1, 1}, {0, 3}), Orders({0, 1, 2, 3}));
}

void tst_NyFotoListDifference::manyInsertionsAtOnePlace()
{
    // Each new row comes directly behind the first one, until the gap is used up.
    Digests before{1, 2};
    Orders oldOrders = NyFotoListDifference::freshOrders(2);
    int renumbered = 0;
    for (quint64 next = 3; next < 103; ++next) {
        Digests after(before.size() + 1, next);
        for (std::size_t i = 0; i < before.size(); ++i)
            after[i == 0 ? 0 : i + 1] = before[i];
        const Kept kept = NyFotoListDifference::keptRows(before, after);
        Orders orders = NyFotoListDifference::orders(kept, oldOrders);
        if (orders.empty()) {
            ++renumbered;
            orders = NyFotoListDifference::freshOrders(after.size());
        }
        QVERIFY(std::is_sorted(orders.begin(), orders.end()));
        QVERIFY(std::adjacent_find(orders.begin(), orders.end()) == orders.end());
        before = after;
        oldOrders = orders;
    }
    QVERIFY(renumbered >= 1 && renumbered <= 6);
}

void tst_NyFotoListDifference::limits()
{
    const qint64 far = (qint64(1) << 60) - 1;
    QVERIFY(NyFotoListDifference::orders({0, -1}, {far}).empty());
    QVERIFY(NyFotoListDifference::orders({-1, 0}, {-far}).empty());
}

QTEST_GUILESS_MAIN(tst_NyFotoListDifference)
#include "tst_NyFotoListDifference.moc"
