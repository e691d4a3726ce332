#include "NyFolderPrefixIndex.h"

#include <QRandomGenerator>
#include <QTest>

class tst_NyFolderPrefixIndex : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsPrefixes_data();
    void findsPrefixes();
    void agreesWithPlainLoop_data();
    void agreesWithPlainLoop();
};

void tst_NyFolderPrefixIndex::findsPrefixes_data()
{
    QTest::addColumn<QStringList>("folders");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QList<int>>("positions");
    const QString file = QStringLiteral("/p/summer2/a.jpg");
    const auto row = [&file](const char *name, const QStringList &folders, const QList<int> &positions) {
        QTest::newRow(name) << folders << file << positions;
    };
    row("none at all", {}, {});
    row("the parent", {QStringLiteral("/p/summer2")}, {0});
    row("a neighbour whose name begins alike", {QStringLiteral("/p/summer")}, {0});
    row("another neighbour", {QStringLiteral("/p/summer3"), QStringLiteral("/p/summer20")}, {});
    row("other case", {QStringLiteral("/p/Summer2"), QStringLiteral("/P/summer2")}, {});
    row("nested, outer first", {QStringLiteral("/p"), QStringLiteral("/p/summer2")}, {0, 1});
    row("nested, inner first", {QStringLiteral("/p/summer2"), QStringLiteral("/p")}, {0, 1});
    row("twice", {QStringLiteral("/p"), QStringLiteral("/q"), QStringLiteral("/p")}, {0, 2});
    row("a part of the file's name",
        {QStringLiteral("/p/summer2/a"), QStringLiteral("/p/summer2/a.jpg"), QStringLiteral("/p/summer2/a.jpgx")}, {0, 1});
    row("separator at the end", {QStringLiteral("/p/"), QStringLiteral("/p/summer/")}, {0});
    row("empty path", {QStringLiteral("/x"), QString()}, {1});
    row("root", {QStringLiteral("/")}, {0});
    row("sorted between prefix and file",
        {QStringLiteral("/p"), QStringLiteral("/p/a"), QStringLiteral("/p/s/t"), QStringLiteral("/p/summer"),
            QStringLiteral("/p/summer1/z")},
        {0, 3});
}

void tst_NyFolderPrefixIndex::findsPrefixes()
{
    QFETCH(QStringList, folders);
    QFETCH(QString, file);
    QFETCH(QList<int>, positions);
    const NyFolderPrefixIndex index(folders);
    const std::vector<int> &found = index.positionsOfPrefixes(file);
    QCOMPARE(QList<int>(found.cbegin(), found.cend()), positions);
}

void tst_NyFolderPrefixIndex::agreesWithPlainLoop_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 20; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

void tst_NyFolderPrefixIndex::agreesWithPlainLoop()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    // Few characters, so that paths often begin alike; among them both forms of an accented letter and half of a pair.
    static constexpr char16_t alphabet[] = {u'/', u'a', u'b', u'A', u'\u00e9', u'\u0301', char16_t(0xd83d), u' '};
    const auto randomPath = [&random](int longest) {
        QString path;
        for (int length = random.bounded(longest + 1); length > 0; --length)
            path += QChar(alphabet[random.bounded(int(std::size(alphabet)))]);
        return path;
    };
    QStringList folders;
    for (int i = 0; i < 300; ++i)
        folders.append(randomPath(6));
    const NyFolderPrefixIndex index(folders);
    qsizetype matches = 0;
    for (int i = 0; i < 500; ++i) {
        const QString file = randomPath(9);
        std::vector<int> expected;
        for (int position = 0; position < folders.size(); ++position) {
            if (file.startsWith(folders.at(position), Qt::CaseSensitive))
                expected.push_back(position);
        }
        QVERIFY2(index.positionsOfPrefixes(file) == expected, qPrintable(file));
        matches += qsizetype(expected.size());
    }
    QVERIFY(matches > 500);
}

QTEST_GUILESS_MAIN(tst_NyFolderPrefixIndex)
#include "tst_NyFolderPrefixIndex.moc"
