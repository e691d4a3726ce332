#include "NyFileNameFilter.h"

#include <QDir>
#include <QTest>

#include <algorithm>

/** Qt's own verdicts on the same names are the measure. */
class tst_NyFileNameFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void agreesWithQt_data();
    void agreesWithQt();
    void matchesEverythingWithoutPatterns();
};

void tst_NyFileNameFilter::agreesWithQt_data()
{
    QTest::addColumn<QStringList>("patterns");
    const auto row = [](const char *name, const QStringList &patterns) { QTest::newRow(name) << patterns; };
    row("extensions",
        {QStringLiteral("*.jpg"), QStringLiteral("*.jpeg"), QStringLiteral("*.heic"), QStringLiteral("*.ps"), QStringLiteral("*.k")});
    row("upper case pattern", {QStringLiteral("*.JPG"), QStringLiteral("*.PS")});
    row("star alone", {QStringLiteral("*.jpg"), QStringLiteral("*")});
    row("no star", {QStringLiteral("a.jpg")});
    row("suffix without a dot", {QStringLiteral("*jpg")});
    row("suffix with two dots", {QStringLiteral("*.tar.gz"), QStringLiteral("*.ps.k")});
    row("dot alone", {QStringLiteral("*.")});
    row("longest packed", {QStringLiteral("*.abcdefgh")});
    row("too long to pack", {QStringLiteral("*.abcdefghi")});
    row("question mark", {QStringLiteral("*.jp?")});
    row("set", {QStringLiteral("*.[jp]pg")});
    row("negated set", {QStringLiteral("*.[!j]pg")});
    row("star inside", {QStringLiteral("*.j*g")});
    row("prefix", {QStringLiteral("img_*.jpg")});
    row("empty pattern", {QString()});
    row("signs", {QStringLiteral("*.(x)+{y}^$|"), QStringLiteral("*.a-b_c")});
    row("blank", {QStringLiteral("* copy.jpg")});
    row("not ASCII", {QStringLiteral("*.jpä"), QStringLiteral("*.ſ"), QStringLiteral("*.ß")});
    row("backslash", {QStringLiteral("*.j\\pg")});
    row("slash", {QStringLiteral("*/a.jpg")});
}

void tst_NyFileNameFilter::agreesWithQt()
{
    QFETCH(QStringList, patterns);
    QStringList names{
        QStringLiteral("a.jpg"),
        QStringLiteral("a.JPG"),
        QStringLiteral("a.JpEg"),
        QStringLiteral("a.jpg.txt"),
        QStringLiteral("jpg"),
        QStringLiteral("ajpg"),
        QStringLiteral(".jpg"),
        QStringLiteral("a.b.jpg"),
        QStringLiteral("a."),
        QStringLiteral("a..jpg"),
        QStringLiteral("a.jpg "),
        QStringLiteral("a b\nc.jpg"),
        QStringLiteral("\U0001f600.jpg"),
        QStringLiteral("a.jpg\u0301"),
        QStringLiteral("e\u0301.jpg"),
        QStringLiteral("\u00e9.jpg"),
        QStringLiteral("a.tar.gz"),
        QStringLiteral("a.TAR.gz"),
        QStringLiteral("a.gz"),
        QStringLiteral("a.abcdefgh"),
        QStringLiteral("a.abcdefghi"),
        QStringLiteral("a.xabcdefgh"),
        QStringLiteral("IMG_1.jpg"),
        QStringLiteral("a.ps"),
        QStringLiteral("a.p\u017f"),
        QStringLiteral("a.P\u017f.\u212a"),
        QStringLiteral("a.\u212a"),
        QStringLiteral("a.K"),
        QStringLiteral("a.\u017f"),
        QStringLiteral("a.\u1e9e"),
        QStringLiteral("a.\u00df"),
        QStringLiteral("a.jp\u00c4"),
        QStringLiteral("a.jp\u00e4"),
        QStringLiteral("a.jpa\u0308"),
        QStringLiteral("a.(x)+{y}^$|"),
        QStringLiteral("a.A-B_c"),
        QStringLiteral("a copy.jpg"),
        QStringLiteral("a.heic"),
        QStringLiteral("a.HE\u0130C"),
        QStringLiteral("a.he\u0131c"),
        QStringLiteral("\u017f"),
        QStringLiteral("\u212a"),
        QStringLiteral("a.\u00e5\u017f"),
        QStringLiteral("a.\u2c6f\u00bf"),
        QStringLiteral("a.\u0cbf"),
        QStringLiteral("a.ppg"),
        QStringLiteral("a.\uff4a\uff50\uff47"),
        QStringLiteral("a.jp\\g"),
    };
    // Characters whose encoding ends as that of the two characters that fold to ASCII does.
    for (const char16_t character : {u'\u013f', u'\u053f', u'\u113f', u'\u202a', u'\u312a', u'\u212b'})
        names.append(QStringLiteral("a.p") + QChar(character));

    QTemporaryDir folder;
    QVERIFY(folder.isValid());
    for (const QString &name : std::as_const(names)) {
        QFile file(folder.filePath(name));
        QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(name));
    }
    const QDir::Filters filters = QDir::Files | QDir::Hidden;
    const QStringList found = QDir(folder.path()).entryList(patterns, filters, QDir::NoSort);
    const QSet<QString> expected(found.cbegin(), found.cend());

    const NyFileNameFilter filter(patterns);
    for (const QString &name : std::as_const(names))
        QVERIFY2(filter.matches(name.toUtf8()) == expected.contains(name), qPrintable(name));
}

void tst_NyFileNameFilter::matchesEverythingWithoutPatterns()
{
    const NyFileNameFilter filter{QStringList()};
    QVERIFY(filter.matches("a.jpg"));
    QVERIFY(filter.matches("anything"));
}

QTEST_GUILESS_MAIN(tst_NyFileNameFilter)
#include "tst_NyFileNameFilter.moc"
