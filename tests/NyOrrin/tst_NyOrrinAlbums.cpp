#include <QTest>

#include <NyOrrinHome.h>

#include "OrrinAlbum.h"

/** Whole albums, and the occasions that people would name for them. */
class tst_NyOrrinAlbums : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void titles_data();
    void titles();
    void titlesAndDates_data();
    void titlesAndDates();
    void places_data();
    void places();
    void vision_data();
    void vision();
    void sources();
    void calendarAloneSaysNothing();
    void subfolders();
    void atMostThree();
};

void tst_NyOrrinAlbums::titles_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *folder, const char *expected) {
        QTest::newRow(folder) << QString::fromUtf8(folder) << QString::fromLatin1(expected);
    };
    // German
    row("2024-06-15 Hochzeit Anna & Max", "wedding");
    row("2023/Traumhochzeit", "wedding");
    row("Goldene Hochzeit Oma und Opa", "anniversary");
    row("Kindergeburtstag Leon", "birthday");
    row("40. Geburtstag Papa", "birthday");
    row("Weihnachten 2022", "christmas");
    row("Weihnachtsmarkt Nürnberg", "christmas");
    row("Silvester bei Müllers", "newyear");
    row("Rosenmontag", "carnival");
    row("Taufe Emilia", "baptism");
    row("Konfirmation_Jonas", "communion");
    row("Einschulung Mia", "school");
    row("Abiball", "graduation");
    row("Strandurlaub Rügen", "beach,vacation");
    row("Sommerurlaub 2021", "vacation");
    row("SKIURLAUB Ischgl", "snow,vacation");
    row("Wanderung Watzmann", "hiking");
    row("Gebirgswanderung", "hiking");
    row("Kreuzfahrt Norwegen", "cruise");
    row("Oktoberfest", "fair");
    row("Zoobesuch", "zoo");
    row("Muttertag", "family");
    row("Tuerkei Rundreise", "roadtrip");
    // English
    row("Sarah's wedding", "wedding");
    row("Emma 5th Birthday Party", "birthday");
    row("Christmas at Grandma's", "christmas");
    row("New Year's Eve", "newyear");
    row("Easter egg hunt", "easter");
    row("Halloween 2023", "halloween");
    row("First day of school", "school");
    row("Graduation", "graduation");
    row("Beach day", "beach");
    row("California road trip", "roadtrip");
    row("Lake District hiking", "hiking");
    row("Ski trip Aspen", "snow");
    row("Golden wedding anniversary", "anniversary");
    row("Puppies", "pets");
    row("Family reunion", "family");
    row("Weekend in New York", "city");
    // French
    row("Mariage de Julie et Paul", "wedding");
    row("Anniversaire Léa 6 ans", "birthday");
    row("Anniversaire de mariage", "anniversary");
    row("NOËL 2021", "christmas");
    row("Noël en famille", "christmas");
    row("Pâques chez mamie", "easter");
    row("Baptême de Louis", "baptism");
    row("Première communion", "communion");
    row("Vacances d'été", "vacation");
    row("Randonnée Pyrénées", "hiking");
    row("Croisière", "cruise");
    row("Fête foraine", "fair");
    row("Rentrée scolaire", "school");
    // Spanish
    row("Boda de Marta", "wedding");
    row("Bodas de oro", "anniversary");
    row("Cumpleaños Pablo", "birthday");
    row("Navidad", "christmas");
    row("Nochevieja", "newyear");
    row("Semana Santa Sevilla", "easter");
    row("Bautizo", "baptism");
    row("Playa de Benidorm", "beach");
    row("Vacaciones", "vacation");
    row("Día de la madre", "family");
    row("Feria de abril", "fair");
    // Italian and Dutch
    row("Matrimonio di Giulia", "wedding");
    row("Nozze d'oro dei nonni", "anniversary");
    row("Compleanno Luca", "birthday");
    row("Natale 2023", "christmas");
    row("Vacanze in Sardegna", "vacation");
    row("Settimana bianca", "snow");
    row("Viaggio di lavoro", "");
    row("Funerale", "");
    row("Bruiloft Sanne en Daan", "wedding");
    row("Verjaardag oma", "birthday");
    row("Kerst 2022", "christmas");
    row("Zomervakantie Zeeland", "vacation");
    row("Dierentuin", "zoo");
    row("Moederdag", "family");
    row("Begrafenis", "");
    // Years after a wedding, in words that hold a wedding's
    row("Rubinhochzeit", "anniversary");
    row("Diamanthochzeit Schmidt", "anniversary");
    row("Eiserne Hochzeit", "anniversary");
    row("40 ans de mariage", "anniversary");
    row("Aniversario de bodas", "anniversary");
    row("20 years of marriage", "anniversary");
    row("Mariage de Florence", "wedding");
    // None
    row("Berlin Wedding", "");
    row("Hochzeitsturm Darmstadt", "");
    row("Taufkirchen", "");
    row("Skizzen", "");
    row("Babylon", "");
    row("Osterode", "");
    row("Zoom Meeting", "");
    row("Dienstreise Hannover", "");
    row("Tanzschule", "");
    row("2024-05", "");
    row("100CANON", "");
    row("Familie", "");
    row("Hot Dog", "");
    row("Beerdigung Opa", "");
    row("Krankenhaus Geburt Mia", "");
    row("Funeral", "");
    row("Enterrement de vie de garçon", "");
    row("Entierro", "");
    row("Hôpital", "");
}

void tst_NyOrrinAlbums::titles()
{
    QFETCH(QString, folder);
    QFETCH(QString, expected);
    const auto occasions = OrrinAlbum(folder).occasions();
    QCOMPARE(OrrinAlbum::keywords(occasions).join(u','), expected);
    for (const NyOrrinOccasion &occasion : occasions)
        QCOMPARE(occasion.getSource(), std::string("title"));
}

void tst_NyOrrinAlbums::titlesAndDates_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QDate>("from");
    QTest::addColumn<int>("days");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const char *folder, QDate from, int days, const char *expected) {
        QTest::newRow(name) << QString::fromUtf8(folder) << from << days << QString::fromLatin1(expected);
    };
    row("advent in december", "Advent bei Oma", QDate(2023, 12, 10), 1, "christmas");
    row("advent by name in july", "Advent bei Oma", QDate(2023, 7, 10), 1, "");
    row("christmas with a wrong clock", "Weihnachten", QDate(2000, 7, 1), 2, "christmas");
    row("christmas market in november", "Weihnachtsmarkt", QDate(2023, 11, 28), 1, "christmas");
    row("family on mother's day", "Familie", QDate(2024, 5, 12), 1, "family");
    row("family on french mother's day", "Famille", QDate(2024, 5, 26), 1, "family");
    row("family on any day", "Family", QDate(2024, 5, 20), 1, "");
    row("easter holidays at easter", "Osterferien", QDate(2024, 3, 25), 7, "easter,vacation");
    row("easter holidays out of time", "Osterferien", QDate(2024, 5, 20), 7, "vacation");
    row("holidays in december", "Happy holidays", QDate(2023, 12, 24), 2, "christmas");
    row("carnival in august", "Notting Hill Carnival", QDate(2023, 8, 28), 1, "carnival");
    row("snow in winter", "Schnee", QDate(2024, 1, 20), 1, "snow");
    row("snow in july", "Schnee", QDate(2024, 7, 20), 1, "snow");
    row("a whole year", "2023", QDate(2023, 1, 1), 365, "");
}

void tst_NyOrrinAlbums::titlesAndDates()
{
    QFETCH(QString, folder);
    QFETCH(QDate, from);
    QFETCH(int, days);
    QFETCH(QString, expected);
    QCOMPARE(OrrinAlbum::keywords(OrrinAlbum(folder, from, days).occasions()).join(u','), expected);
}

void tst_NyOrrinAlbums::places_data()
{
    QTest::addColumn<std::vector<OrrinAlbum::Place>>("places");
    QTest::addColumn<int>("days");
    QTest::addColumn<bool>("knowsHome");
    QTest::addColumn<QString>("expected");
    const OrrinAlbum::Place munich(48.14, 11.58);
    const OrrinAlbum::Place augsburg(48.37, 10.90);
    const OrrinAlbum::Place palma(39.57, 2.65);
    const OrrinAlbum::Place lyon(45.76, 4.84);
    const OrrinAlbum::Place bordeaux(44.84, -0.58);
    const OrrinAlbum::Place paris(48.86, 2.35);
    const OrrinAlbum::Place sydney(-33.87, 151.21);
    using Places = std::vector<OrrinAlbum::Place>;
    QTest::newRow("a week on an island") << Places{palma} << 7 << true << QStringLiteral("vacation");
    QTest::newRow("the same, home unknown") << Places{palma} << 7 << false << QString();
    QTest::newRow("a day away") << Places{palma} << 1 << true << QString();
    QTest::newRow("a week at home") << Places{munich} << 7 << true << QString();
    QTest::newRow("the next town") << Places{augsburg} << 3 << true << QString();
    QTest::newRow("round trip") << Places{lyon, bordeaux, paris, lyon, bordeaux, paris} << 6 << true << QStringLiteral("roadtrip,vacation");
    QTest::newRow("round trip, home unknown") << Places{lyon, bordeaux, paris, lyon, bordeaux, paris} << 6 << false
                                              << QStringLiteral("roadtrip,vacation");
    QTest::newRow("far away") << Places{sydney} << 3 << true << QStringLiteral("vacation");
    QTest::newRow("from home and back") << Places{munich, palma, palma, palma, munich} << 5 << true << QStringLiteral("vacation");
    QTest::newRow("spread over a year") << Places{palma} << 365 << true << QString();
}

void tst_NyOrrinAlbums::places()
{
    QFETCH(std::vector<OrrinAlbum::Place>, places);
    QFETCH(int, days);
    QFETCH(bool, knowsHome);
    QFETCH(QString, expected);
    const auto home = std::make_shared<NyOrrinHome>();
    if (knowsHome) {
        for (int day = 0; day < 300; day += 3)
            home->add({48.14, 11.58}, QDate(2023, 1, 1).addDays(day).toJulianDay());
    }
    const auto occasions = OrrinAlbum(QStringLiteral("2024-04"), QDate(2024, 4, 10), days).at(places).occasions(NyOrrinCurator(home));
    QCOMPARE(OrrinAlbum::keywords(occasions).join(u','), expected);
    for (const NyOrrinOccasion &occasion : occasions)
        QCOMPARE(occasion.getSource(), std::string("place"));
}

void tst_NyOrrinAlbums::vision_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QByteArray>("keyword");
    QTest::addColumn<float>("share");
    QTest::addColumn<int>("photos");
    QTest::addColumn<QString>("expected");
    const QDate spring(2024, 4, 24);
    const QDate december(2023, 12, 24);
    const auto row = [](const char *name, const char *folder, QDate from, const char *keyword, float share, int photos,
                         const char *expected) {
        QTest::newRow(name) << QString::fromUtf8(folder) << from << QByteArray(keyword) << share << photos << QString::fromLatin1(expected);
    };
    row("much beach", "2024", spring, "beach", 0.6F, 24, "beach");
    row("some beach", "2024", spring, "beach", 0.15F, 24, "");
    row("much wedding", "2024", spring, "wedding", 0.6F, 24, "wedding");
    row("half a wedding is none", "2024", spring, "wedding", 0.27F, 24, "");
    row("one shot is no album", "2024", spring, "beach", 0.9F, 1, "");
    row("six shots are one", "2024", spring, "beach", 0.9F, 6, "beach");
    row("tree in december", "2023", december, "christmas", 0.2F, 24, "christmas");
    row("tree in april", "2024", spring, "christmas", 0.2F, 24, "");
    row("much snow in april", "2024", spring, "snow", 0.5F, 24, "snow");
    row("title and pictures agree", "Familie", spring, "family", 0.2F, 24, "family");
    row("title wins", "Taufe Emilia", spring, "wedding", 0.2F, 24, "baptism");
    row("unknown word", "2024", spring, "funeral", 0.9F, 24, "");
    row("delicate title", "Beerdigung", spring, "wedding", 0.9F, 24, "");
}

void tst_NyOrrinAlbums::vision()
{
    QFETCH(QString, folder);
    QFETCH(QDate, from);
    QFETCH(QByteArray, keyword);
    QFETCH(float, share);
    QFETCH(int, photos);
    QFETCH(QString, expected);
    const auto occasions = OrrinAlbum(folder, from).seen(keyword.constData(), share).photos(photos).occasions();
    QCOMPARE(OrrinAlbum::keywords(occasions).join(u','), expected);
}

void tst_NyOrrinAlbums::sources()
{
    auto occasions = OrrinAlbum(QStringLiteral("Strand"), QDate(2024, 5, 1)).seen("beach", 0.3F).occasions();
    QCOMPARE(occasions.size(), std::size_t{1});
    QCOMPARE(occasions[0].getSource(), std::string("title"));
    QVERIFY(occasions[0].getProbability() > 0.92F);
    QVERIFY(occasions[0].getProbability() < 1.0F);
    occasions = OrrinAlbum(QStringLiteral("Familie"), QDate(2024, 5, 1)).seen("family", 0.5F).occasions();
    QCOMPARE(occasions.size(), std::size_t{1});
    QCOMPARE(occasions[0].getSource(), std::string("vision"));
}

void tst_NyOrrinAlbums::calendarAloneSaysNothing()
{
    for (QDate day(2023, 1, 1); day < QDate(2025, 1, 1); day = day.addDays(1)) {
        const auto occasions = OrrinAlbum(QStringLiteral("%1").arg(day.year()), day).photos(6).occasions();
        QVERIFY2(occasions.empty(), qPrintable(day.toString(Qt::ISODate)));
    }
    QVERIFY(NyOrrinCurator().getOccasion({}).empty());
}

void tst_NyOrrinAlbums::subfolders()
{
    // The folder above names the album.
    QCOMPARE(OrrinAlbum::keywords(OrrinAlbum(QStringLiteral("Hochzeit Anna/RAW")).occasions()), QStringList{QStringLiteral("wedding")});
    QCOMPARE(OrrinAlbum::keywords(OrrinAlbum(QStringLiteral("Hochzeit Anna/1/2/3/4")).occasions()), QStringList());
    // A stray subfolder does not.
    auto items = OrrinAlbum(QStringLiteral("2024/Reise Italien")).items();
    const auto stray = OrrinAlbum(QStringLiteral("2024/Reise Italien/Zoo")).photos(4).items();
    items.insert(items.end(), stray.begin(), stray.end());
    const NyOrrinCurator curator;
    QCOMPARE(OrrinAlbum::keywords(curator.getOccasion(curator.curate(items))), QStringList{QStringLiteral("vacation")});
    // Paths work like URLs.
    const NyOrrinMediaItem item = NyOrrinMediaItemBuilder().setId(QStringLiteral("/data/Boda/a.jpg")).build();
    QCOMPARE(OrrinAlbum::keywords(curator.getOccasion({NyOrrinCuratedMediaItem({item, {}})})), QStringList{QStringLiteral("wedding")});
}

void tst_NyOrrinAlbums::atMostThree()
{
    const auto occasions = OrrinAlbum(QStringLiteral("Hochzeit Geburtstag Weihnachten Zoo Strand")).occasions();
    QCOMPARE(occasions.size(), std::size_t{3});
}

QTEST_GUILESS_MAIN(tst_NyOrrinAlbums)
#include "tst_NyOrrinAlbums.moc"
