#include <algorithm>
#include <random>

#include <QAbstractItemModelTester>
#include <QPersistentModelIndex>
#include <QSignalSpy>
#include <QTest>

#include "NyProposalModel.h"

using namespace Qt::Literals::StringLiterals;
using Order = NyProposalSorting::Order;

namespace
{
NyProposal proposal(const QString &id, const QString &headline = {})
{
    NyProposal result;
    result.id = id;
    result.headline = headline.isEmpty() ? id : headline;
    return result;
}

QStringList shown(const QAbstractItemModel &model)
{
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row)
        result.append(model.index(row, 0).data().toString());
    return result;
}

QList<NyProposal> list(const QStringList &ids)
{
    QList<NyProposal> result;
    for (const QString &id : ids)
        result.append(proposal(id));
    return result;
}
}

class tst_NyProposalModel : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void takesOverAnyList_data();
    void takesOverAnyList();
    void takesOverRandomLists();
    void selectionOutlivesAChange();
    void anUnchangedListIsSilent();
    void aChangedEntryIsReported();
    void marks();
    void textsForEverybody();
    void orders();
    void keepsTheOrderForNewOnes();
};

void tst_NyProposalModel::takesOverAnyList_data()
{
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("after");
    const QStringList abc{u"a"_s, u"b"_s, u"c"_s};
    QTest::newRow("first") << QStringList() << abc;
    QTest::newRow("all gone") << abc << QStringList();
    QTest::newRow("new in front") << abc << QStringList({u"x"_s, u"a"_s, u"b"_s, u"c"_s});
    QTest::newRow("new between and behind") << abc << QStringList({u"a"_s, u"x"_s, u"y"_s, u"b"_s, u"c"_s, u"z"_s});
    QTest::newRow("gone in front") << abc << QStringList({u"b"_s, u"c"_s});
    QTest::newRow("gone between") << abc << QStringList({u"a"_s, u"c"_s});
    QTest::newRow("others") << abc << QStringList({u"x"_s, u"y"_s});
    QTest::newRow("turned round") << abc << QStringList({u"c"_s, u"b"_s, u"a"_s});
    QTest::newRow("all at once") << abc << QStringList({u"c"_s, u"x"_s, u"a"_s});
}

void tst_NyProposalModel::takesOverAnyList()
{
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    NyProposalModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setProposals(list(before));
    QCOMPARE(shown(model), before);
    model.setProposals(list(after));
    QCOMPARE(shown(model), after);
}

void tst_NyProposalModel::takesOverRandomLists()
{
    std::mt19937 random(17);
    NyProposalModel model;
    NyProposalSorting sorting;
    sorting.setSourceModel(&model);
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QAbstractItemModelTester sortingTester(&sorting, QAbstractItemModelTester::FailureReportingMode::QtTest);
    for (int round = 0; round < 60; ++round) {
        QStringList ids;
        for (int i = 0; i < 20; ++i) {
            if (random() % 2 == 0)
                ids.append(QString::number(i));
        }
        std::shuffle(ids.begin(), ids.end(), random);
        sorting.setOrder(Order(random() % 3));
        model.setProposals(list(ids));
        QCOMPARE(shown(model), ids);
        if (sorting.order() == Order::OldestFirst)
            std::reverse(ids.begin(), ids.end());
        else if (sorting.order() == Order::ByTitle)
            std::sort(ids.begin(), ids.end(), [](const QString &a, const QString &b) { return a.toInt() < b.toInt(); });
        QCOMPARE(shown(sorting), ids);
    }
}

void tst_NyProposalModel::selectionOutlivesAChange()
{
    NyProposalModel model;
    model.setProposals(list({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
    const QPersistentModelIndex kept = model.index(2);
    const QPersistentModelIndex gone = model.index(0);
    model.setProposals(list({u"d"_s, u"x"_s, u"c"_s, u"b"_s}));
    QVERIFY(!gone.isValid());
    QCOMPARE(kept.row(), 2);
    QCOMPARE(kept.data().toString(), u"c"_s);
}

void tst_NyProposalModel::anUnchangedListIsSilent()
{
    NyProposalModel model;
    model.setProposals(list({u"a"_s, u"b"_s}));
    const QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    const QSignalSpy inserts(&model, &QAbstractItemModel::rowsInserted);
    const QSignalSpy removals(&model, &QAbstractItemModel::rowsRemoved);
    const QSignalSpy layouts(&model, &QAbstractItemModel::layoutChanged);
    const QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    model.setProposals(list({u"a"_s, u"b"_s}));
    QCOMPARE(changes.count() + inserts.count() + removals.count() + layouts.count() + resets.count(), 0);
}

void tst_NyProposalModel::aChangedEntryIsReported()
{
    NyProposalModel model;
    model.setProposals(list({u"a"_s, u"b"_s}));
    const QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    model.setProposals({proposal(u"a"_s), proposal(u"b"_s, u"anders"_s)});
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.at(0).at(0).toModelIndex().row(), 1);
    QCOMPARE(shown(model), QStringList({u"a"_s, u"anders"_s}));
}

void tst_NyProposalModel::marks()
{
    QList<NyProposal> proposals = list({u"a"_s, u"b"_s, u"c"_s});
    for (NyProposal &proposal : proposals)
        proposal.isUnread = true;
    NyProposalModel model;
    model.setProposals(proposals);
    QCOMPARE(model.unreadCount(), 3);
    const QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    model.markAsRead(u"b"_s);
    model.markAsRead(u"b"_s);
    model.markAsRead(u"x"_s);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(model.unreadCount(), 2);
    QVERIFY(!model.proposals().at(1).isUnread);
    model.markAllAsRead();
    QCOMPARE(model.unreadCount(), 0);
    model.markAllAsRead();
    QCOMPARE(changes.count(), 2);
}

void tst_NyProposalModel::textsForEverybody()
{
    NyProposal entry = proposal(u"a.nqp"_s, u"Anna & <b>Tom</b>"_s);
    entry.subline = u"Mai"_s;
    entry.photoCount = 1;
    entry.state = NyProposal::State::NoDescription;
    entry.isUnread = true;
    NyProposalModel model;
    model.setProposals({entry});
    const QModelIndex index = model.index(0);
    QCOMPARE(index.data().toString(), entry.headline);
    QCOMPARE(index.data(Qt::AccessibleTextRole).toString(), u"Neu: Anna & <b>Tom</b>"_s);
    QCOMPARE(index.data(Qt::AccessibleDescriptionRole).toString(), u"Mai, 1 Foto, "_s + entry.problem());
    QVERIFY(index.data(Qt::ToolTipRole).toString().contains(u"Anna &amp; &lt;b&gt;Tom&lt;/b&gt;"_s));
    model.markAsRead(u"a.nqp"_s);
    QCOMPARE(index.data(Qt::AccessibleTextRole).toString(), entry.headline);
}

void tst_NyProposalModel::orders()
{
    NyProposalModel model;
    NyProposalSorting sorting;
    sorting.setSourceModel(&model);
    model.setProposals(list({u"Rom 10"_s, u"ägypten"_s, u"Rom 9"_s, u"Zoo"_s}));
    QCOMPARE(shown(sorting), QStringList({u"Rom 10"_s, u"ägypten"_s, u"Rom 9"_s, u"Zoo"_s}));
    sorting.setOrder(Order::OldestFirst);
    QCOMPARE(shown(sorting), QStringList({u"Zoo"_s, u"Rom 9"_s, u"ägypten"_s, u"Rom 10"_s}));
    sorting.setOrder(Order::ByTitle);
    QCOMPARE(shown(sorting), QStringList({u"ägypten"_s, u"Rom 9"_s, u"Rom 10"_s, u"Zoo"_s}));
    sorting.setOrder(Order::NewestFirst);
    QCOMPARE(shown(sorting), QStringList({u"Rom 10"_s, u"ägypten"_s, u"Rom 9"_s, u"Zoo"_s}));
}

void tst_NyProposalModel::keepsTheOrderForNewOnes()
{
    NyProposalModel model;
    NyProposalSorting sorting;
    sorting.setSourceModel(&model);
    sorting.setOrder(Order::ByTitle);
    model.setProposals(list({u"c"_s, u"a"_s}));
    model.setProposals(list({u"b"_s, u"c"_s, u"a"_s}));
    QCOMPARE(shown(sorting), QStringList({u"a"_s, u"b"_s, u"c"_s}));
}

QTEST_GUILESS_MAIN(tst_NyProposalModel)
#include "tst_NyProposalModel.moc"
