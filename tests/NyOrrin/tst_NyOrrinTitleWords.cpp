#include <NyOrrinTitleWords.h>

#include <QTest>

#include <NyOrrinCurator.h>

class tst_NyOrrinTitleWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void folderNames_data();
    void folderNames();
    void forms_data();
    void forms();
    void sureWordsWeakenLikelyOnes();
    void work();
    void delicateCompounds();
    void everyKeywordHasWords();
    void hostileNames();
};

void tst_NyOrrinTitleWords::folderNames_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("expected");
    QTest::newRow("url") << QStringLiteral("file:///home/a/Pictures/2024/Zoo Köln/a.jpg") << QStringLiteral("Zoo Köln|2024");
    QTest::newRow("path") << QStringLiteral("/srv/x/y/z/a.jpg") << QStringLiteral("z|y|x");
    QTest::newRow("the user's name") << QStringLiteral("/home/noel/Downloads/x/a.jpg") << QStringLiteral("x|Downloads");
    QTest::newRow("nothing but the user") << QStringLiteral("/home/noel/a.jpg") << QString();
    QTest::newRow("encoded") << QStringLiteral("file:///x/100%25 %23 Zoo%3F/a.jpg") << QStringLiteral("100% # Zoo?|x");
    QTest::newRow("no folder") << QStringLiteral("a.jpg") << QString();
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("slashes") << QStringLiteral("///") << QString();
    QTest::newRow("in the root itself") << QStringLiteral("file:///home/a/Bilder/a.jpg") << QString();
}

void tst_NyOrrinTitleWords::folderNames()
{
    QFETCH(QString, id);
    QFETCH(QString, expected);
    QCOMPARE(NyOrrinTitleWords::folderNames(id).join(u'|'), expected);
}

void tst_NyOrrinTitleWords::forms_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("keyword");
    QTest::newRow("composed") << QStringLiteral("No\u00ebl") << QStringLiteral("christmas");
    QTest::newRow("decomposed") << QStringLiteral("Noe\u0308l") << QStringLiteral("christmas");
    QTest::newRow("capitals") << QStringLiteral("NOEL") << QStringLiteral("christmas");
    QTest::newRow("umlaut") << QStringLiteral("Schützenfest") << QStringLiteral("fair");
    QTest::newRow("umlaut written out") << QStringLiteral("Schuetzenfest") << QStringLiteral("fair");
    QTest::newRow("sharp s") << QStringLiteral("Fußballturnier") << QStringLiteral("sports");
    QTest::newRow("sharp s written out") << QStringLiteral("FUSSBALLTURNIER") << QStringLiteral("sports");
    QTest::newRow("underscores and digits") << QStringLiteral("20240615_wedding_01") << QStringLiteral("wedding");
    QTest::newRow("phrase over signs") << QStringLiteral("Mother's-Day") << QStringLiteral("family");
    QTest::newRow("longest ending of a compound") << QStringLiteral("Familienskiurlaub") << QStringLiteral("snow");
    QTest::newRow("beginning of a compound") << QStringLiteral("Hochzeitsfotobuch") << QStringLiteral("wedding");
    QTest::newRow("beginning without a joint") << QStringLiteral("Nikolausfeier") << QStringLiteral("christmas");
    QTest::newRow("beginning before an umlaut") << QStringLiteral("Geburtstagsfrühstück") << QStringLiteral("birthday");
    QTest::newRow("sure before likely") << QStringLiteral("Mardi gras Paris") << QStringLiteral("carnival,city");
    QTest::newRow("compound") << QStringLiteral("Silberbergwanderung") << QStringLiteral("hiking");
}

void tst_NyOrrinTitleWords::forms()
{
    QFETCH(QString, name);
    QFETCH(QString, keyword);
    const auto reading = NyOrrinTitleWords::instance().read(name);
    QVERIFY(!reading.isDelicate);
    QStringList keywords = reading.evidence.keys();
    keywords.sort();
    QCOMPARE(keywords, keyword.split(u','));
}

void tst_NyOrrinTitleWords::sureWordsWeakenLikelyOnes()
{
    const NyOrrinTitleWords &words = NyOrrinTitleWords::instance();
    QVERIFY(words.read(QStringLiteral("Paris")).evidence.value(QStringLiteral("city")) > 0.7);
    QVERIFY(words.read(QStringLiteral("Hochzeit in Paris")).evidence.value(QStringLiteral("city")) < 0.5);
    QVERIFY(words.read(QStringLiteral("Urlaub in Paris")).evidence.value(QStringLiteral("city")) > 0.7);
}

void tst_NyOrrinTitleWords::work()
{
    const NyOrrinTitleWords &words = NyOrrinTitleWords::instance();
    for (const QString &name : {QStringLiteral("Dienstreise Wien"), QStringLiteral("Business trip"), QStringLiteral("voyage d'affaires"),
             QStringLiteral("Viaje de negocios"), QStringLiteral("Herbsttagung")}) {
        QVERIFY2(words.read(name).isWork, qPrintable(name));
        QVERIFY2(!words.read(name).evidence.contains(QStringLiteral("vacation")), qPrintable(name));
    }
    QVERIFY(!words.read(QStringLiteral("Reise")).isWork);
}

void tst_NyOrrinTitleWords::delicateCompounds()
{
    const NyOrrinTitleWords &words = NyOrrinTitleWords::instance();
    for (const QString &name : {QStringLiteral("Urnenbeisetzung"), QStringLiteral("Uniklinik"), QStringLiteral("Verkehrsunfall"),
             QStringLiteral("Trauerbilder"), QStringLiteral("Funerale"), QStringLiteral("uitvaart")})
        QVERIFY2(words.read(name).isDelicate, qPrintable(name));
}

void tst_NyOrrinTitleWords::everyKeywordHasWords()
{
    // One word of each keyword in one name.
    const auto reading = NyOrrinTitleWords::instance().read(
        QStringLiteral("boda, cumple, navidad, nochevieja, pascua, carnaval, halloween, bautizo, comunión, Einschulung, Abitur, bébé, "
                       "aniversario, playa, sightseeing, rando, luge, roadtrip, crucero, vacances, concierto, torneo, Zoo, Muttertag, "
                       "Kirmes, puppies"));
    for (const std::string &keyword : NyOrrinCurator::keywords())
        QVERIFY2(reading.evidence.value(QString::fromStdString(keyword)) > 0.9, keyword.c_str());
    QCOMPARE(std::size_t(reading.evidence.size()), NyOrrinCurator::keywords().size());
}

void tst_NyOrrinTitleWords::hostileNames()
{
    const NyOrrinTitleWords &words = NyOrrinTitleWords::instance();
    for (const QString &name : {QString(), QStringLiteral(" \n\t%&:\""), QString(100000, u'a'), QString(20000, u' ') + u'x',
             QString(QChar(0xd800)), QStringLiteral("urlaub").repeated(3000) + QStringLiteral("x")}) {
        const auto reading = words.read(name);
        QVERIFY(reading.evidence.isEmpty());
        QVERIFY(!reading.isDelicate);
    }
}

QTEST_GUILESS_MAIN(tst_NyOrrinTitleWords)
#include "tst_NyOrrinTitleWords.moc"
