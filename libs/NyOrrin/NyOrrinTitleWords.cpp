#include "NyOrrinTitleWords.h"

#include <algorithm>

#include <QtCore/QSet>
#include <QtCore/QUrl>

namespace
{

constexpr double Sure = 0.92; ///< names the occasion itself
constexpr double Likely = 0.75; ///< goes with it nearly always
constexpr double Hint = 0.4; ///< says too little alone
constexpr int MaximumFolders = 3;

const QString Delicate = QStringLiteral("delicate");
const QString Work = QStringLiteral("work");
const QString Vacation = QStringLiteral("vacation");

/** Lower case without accents, so that "Noël", "NOEL" and "noël" in either normal form are one. */
QString folded(const QString &text)
{
    QString result;
    for (const QChar character : text.normalized(QString::NormalizationForm_KD).toCaseFolded()) {
        if (!character.isMark())
            result.append(character);
    }
    return result;
}

/** Splits at all that is no letter, and between letters and digits, which are left out. */
QStringList wordsOf(const QString &foldedName)
{
    QStringList words;
    QString word;
    for (const QChar character : foldedName) {
        if (character.isLetter() || character.isSurrogate()) {
            word.append(character);
        } else if (!word.isEmpty()) {
            words.append(word);
            word.clear();
        }
    }
    if (!word.isEmpty())
        words.append(word);
    return words;
}

/** How German names without umlauts are written. */
QString withoutUmlauts(const QString &text)
{
    QString result = text.normalized(QString::NormalizationForm_C).toCaseFolded();
    result.replace(u'\u00e4', QStringLiteral("ae")).replace(u'\u00f6', QStringLiteral("oe")).replace(u'\u00fc', QStringLiteral("ue"));
    return result;
}

bool isRootName(const QString &foldedName)
{
    static const QSet<QString> names{QStringLiteral("pictures"), QStringLiteral("bilder"), QStringLiteral("photos"),
        QStringLiteral("fotos"), QStringLiteral("images"), QStringLiteral("imagenes"), QStringLiteral("immagini"),
        QStringLiteral("afbeeldingen"), QStringLiteral("home"), QStringLiteral("users"), QStringLiteral("media"), QStringLiteral("mnt"),
        QStringLiteral("run"), QStringLiteral("volumes")};
    return names.contains(foldedName);
}

} // namespace

const NyOrrinTitleWords &NyOrrinTitleWords::instance()
{
    static const NyOrrinTitleWords words;
    return words;
}

void NyOrrinTitleWords::add(const char16_t *keyword, double strength, const char16_t *phrases)
{
    const Entry entry{QString::fromUtf16(keyword), strength};
    const QStringList list = QString::fromUtf16(phrases).split(u',', Qt::SkipEmptyParts);
    for (const QString &phrase : list) {
        const QString text = phrase.trimmed();
        if (text.startsWith(u'-')) {
            m_endings.emplace_back(folded(text.sliced(1)), entry);
            m_endings.emplace_back(folded(withoutUmlauts(text.sliced(1))), entry);
            continue;
        }
        QSet<QString> forms{wordsOf(folded(text)).join(u' '), wordsOf(folded(withoutUmlauts(text))).join(u' ')};
        for (const QString &form : forms)
            m_phrases[form].append(entry);
    }
}

NyOrrinTitleWords::NyOrrinTitleWords()
{
    // Each list in the order German, English, French, Spanish. A dash marks the last part of German compounds.
    add(u"wedding", Sure, u"Hochzeit, Hochzeiten, Hochzeitsfeier, Hochzeitsfotos, Trauung, -hochzeit");
    add(u"wedding", Sure, u"wedding, weddings, wedding day, wedding party, our wedding");
    add(u"wedding", Sure, u"mariage, mariages, noces");
    add(u"wedding", Sure, u"boda, bodas, casamiento");
    add(u"wedding", Likely, u"Standesamt, Brautpaar, Polterabend, bride and groom, bridal party, just married, nozze");
    add(u"birthday", Sure, u"Geburtstag, Geburtstage, Geburtstagsfeier, Geburtstagsparty, Geburtstagsfest, -geburtstag");
    add(u"birthday", Sure, u"birthday, birthdays, bday, birthday party");
    add(u"birthday", Sure, u"anniversaire de naissance, fête d'anniversaire, goûter d'anniversaire");
    // The French word also means an anniversary, but hardly ever in an album's name without "mariage".
    add(u"birthday", Sure, u"anniversaire, anniv");
    add(u"birthday", Sure, u"cumpleaños, cumple");
    add(u"christmas", Sure,
        u"Weihnachten, Weihnacht, Weihnachtsfeier, Heiligabend, Heilig Abend, Weihnachtsfest, Bescherung, -weihnachten");
    add(u"christmas", Sure, u"christmas, xmas, x-mas, christmas eve, christmas day, boxing day");
    add(u"christmas", Sure,
        u"noël en famille, veillée de noël, sapin de noël, matin de noël, vacances de noël, repas de noël, joyeux noël");
    add(u"christmas", Sure, u"réveillon de noël");
    // Also a first name; so is the other name of the last evening of the year.
    add(u"christmas", Likely, u"noël");
    add(u"christmas", Sure, u"navidad, navidades, nochebuena, reyes magos");
    add(u"christmas", Likely,
        u"Weihnachtsmarkt, Christkindlmarkt, Christkindlesmarkt, Adventsmarkt, christmas market, marché de noël, mercado de navidad");
    add(u"christmas", Hint, u"Advent, Adventszeit, Nikolaus, Plätzchen backen, avent, adviento, holidays");
    add(u"newyear", Sure, u"Silvester, Neujahr, Silvesterfeier, Silvesterparty, Jahreswechsel");
    add(u"newyear", Likely, u"Sylvester");
    add(u"newyear", Sure, u"new year, new years, new year's eve, new years eve, nye, hogmanay");
    add(u"newyear", Sure, u"nouvel an, saint-sylvestre, st sylvestre, réveillon du nouvel an, jour de l'an");
    add(u"newyear", Sure, u"nochevieja, año nuevo, fin de año");
    add(u"easter", Sure, u"Ostern, Osterfest, Ostersonntag, Ostermontag, Ostereiersuche, Ostereier, Osterfeuer");
    add(u"easter", Sure, u"easter, easter sunday, easter egg hunt");
    add(u"easter", Sure, u"pâques, chasse aux oeufs");
    add(u"easter", Sure, u"semana santa, pascua, domingo de pascua");
    add(u"easter", Hint, u"Osterferien, Osterurlaub, easter holidays, easter break, vacances de pâques");
    add(u"carnival", Sure,
        u"Karneval, Fasching, Fastnacht, Fasnacht, Fasnet, Rosenmontag, Weiberfastnacht, Faschingsumzug, Faschingsparty, -karneval");
    add(u"carnival", Sure, u"carnival, mardi gras");
    add(u"carnival", Sure, u"carnaval");
    add(u"carnival", Sure, u"carnavales, entierro de la sardina");
    add(u"halloween", Sure, u"Halloween, Halloweenparty, trick or treat");
    add(u"baptism", Sure, u"Taufe, Tauffeier, Kindstaufe");
    add(u"baptism", Sure, u"baptism, christening");
    add(u"baptism", Sure, u"baptême");
    add(u"baptism", Sure, u"bautizo, bautismo");
    add(u"communion", Sure, u"Kommunion, Erstkommunion, Kommunionfeier, Konfirmation, Firmung");
    add(u"communion", Sure, u"first communion, holy communion, communion, confirmation day");
    add(u"communion", Sure, u"première communion, communion solennelle");
    add(u"communion", Sure, u"primera comunión, comunión");
    add(u"school", Sure, u"Einschulung, Schulanfang, Schuleinführung, erster Schultag, Schulfest, Klassenfahrt, Schulausflug");
    add(u"school", Sure, u"first day of school, back to school, school trip, school play, school fete");
    add(u"school", Sure, u"rentrée, rentrée scolaire, rentrée des classes, kermesse de l'école, sortie scolaire");
    add(u"school", Sure, u"vuelta al cole, primer día de colegio, excursión del colegio, fin de año escolar, fin de curso");
    add(u"school", Likely, u"Schule, Sommerfest Schule, school, école, colegio, escuela");
    add(u"graduation", Sure, u"Abitur, Abiball, Abifeier, Abschlussfeier, Abschlussball, Zeugnisübergabe, Examensfeier, Bachelorfeier");
    add(u"graduation", Sure, u"graduation, commencement, prom");
    add(u"graduation", Sure, u"remise des diplômes, remise de diplôme");
    add(u"graduation", Sure, u"graduación");
    add(u"baby", Sure, u"Geburt, unser Baby, Babyfotos, Babybauch, Neugeborenes, Babyparty");
    add(u"baby", Sure, u"newborn, baby shower, our baby, baby's first year, birth of");
    add(u"baby", Sure, u"naissance, bébé");
    add(u"baby", Sure, u"nacimiento, bebé, recién nacido");
    add(u"baby", Likely, u"Baby");
    add(u"anniversary", Sure,
        u"Hochzeitstag, Silberhochzeit, Silberne Hochzeit, Goldene Hochzeit, Goldhochzeit, Diamantene Hochzeit, Jubiläum");
    add(u"anniversary", Sure,
        u"Eiserne Hochzeit, Gnadenhochzeit, Kupferhochzeit, Rosenhochzeit, Holzhochzeit, Petersilienhochzeit, Perlenhochzeit, "
        u"Rubinhochzeit, Diamanthochzeit");
    add(u"anniversary", Sure, u"anniversary, wedding anniversary, golden wedding, silver wedding, years married, years of marriage");
    add(u"anniversary", Sure, u"anniversaire de mariage, ans de mariage, noces d'or, noces d'argent, noces de diamant");
    add(u"anniversary", Sure, u"aniversario, aniversario de boda, aniversario de bodas, bodas de oro, bodas de plata, bodas de diamante");
    add(u"beach", Sure, u"Strand, Strandtag, Strandurlaub, Badeurlaub, Strandausflug, am Meer");
    add(u"beach", Sure, u"beach, seaside, beach day, beach holiday");
    add(u"beach", Sure, u"plage, à la mer, bord de mer");
    add(u"beach", Sure, u"playa");
    add(u"beach", Likely,
        u"Ostsee, Ostseeurlaub, Nordsee, Nordseeurlaub, Mallorca, Costa Brava, Costa del Sol, Côte d'Azur, Maldives, Malediven, Cancún");
    add(u"city", Sure, u"Städtereise, Städtetrip, Stadtrundgang, Wochenende in der Stadt, -städtereise");
    add(u"city", Sure, u"city trip, city break, citytrip, sightseeing");
    add(u"city", Sure, u"escapade urbaine, visite de la ville, week-end à Paris");
    add(u"city", Sure, u"escapada urbana, visita a la ciudad");
    add(u"city", Likely,
        u"Paris, London, Londres, Rom, Rome, Roma, New York, Barcelona, Barcelone, Wien, Vienna, Vienne, Viena, Prag, Prague, Praga, "
        u"Venedig, "
        u"Venice, Venise, Venecia, Amsterdam, Lissabon, Lisbon, Lisbonne, Lisboa, Istanbul, Budapest, Kopenhagen, Copenhagen, Florenz");
    add(u"hiking", Sure,
        u"Wanderung, Wandern, Wanderurlaub, Bergtour, Wanderwoche, Wandertag, Hüttentour, Alpenüberquerung, -wanderung, -wanderurlaub, "
        u"-bergtour");
    add(u"hiking", Sure, u"hike, hikes, hiking, trek, trekking, backpacking, walking holiday");
    add(u"hiking", Sure, u"randonnée, randonnées, rando");
    add(u"hiking", Sure, u"senderismo, excursión a la montaña, camino de santiago");
    add(u"snow", Sure,
        u"Skiurlaub, Skifahren, Skifreizeit, Skiwochenende, Schlittenfahren, Rodeln, Winterurlaub, Snowboarden, im Schnee, -skiurlaub");
    add(u"snow", Sure, u"ski, skiing, ski trip, ski holiday, snowboarding, sledding, snow day");
    add(u"snow", Sure, u"vacances au ski, sports d'hiver, luge, à la neige");
    add(u"snow", Sure, u"esquí, esquiar, viaje a la nieve");
    add(u"snow", Likely, u"Schnee, snow, neige, nieve, raquettes, Schneeschuhe, snowshoes");
    add(u"roadtrip", Sure, u"Roadtrip, Rundreise, Wohnmobilreise, Wohnmobiltour, Campertour, -rundreise");
    add(u"roadtrip", Sure, u"road trip, roadtrip, route 66");
    add(u"roadtrip", Sure, u"road-trip, tour en camping-car");
    add(u"roadtrip", Sure, u"viaje por carretera, viaje en autocaravana");
    add(u"cruise", Sure, u"Kreuzfahrt, Flusskreuzfahrt, Schiffsreise, -kreuzfahrt");
    add(u"cruise", Sure, u"cruise, river cruise, carnival cruise");
    add(u"cruise", Sure, u"croisière");
    add(u"cruise", Sure, u"crucero");
    add(u"vacation", Sure,
        u"Urlaub, Ferien, Sommerferien, Herbstferien, Reise, Familienurlaub, Osterferien, Osterurlaub, Flitterwochen, Badeurlaub, "
        u"Strandurlaub, Wanderurlaub, Skiurlaub, Winterurlaub, -urlaub, -reise, -ferien");
    add(u"vacation", Sure,
        u"vacation, holiday, summer holiday, summer holidays, trip to, honeymoon, beach holiday, ski holiday, easter holidays, staycation");
    add(u"vacation", Sure,
        u"vacances, voyage, lune de miel, séjour à, séjour en, séjour au, séjour aux, vacances de pâques, vacances de noël, vacances au "
        u"ski");
    add(u"vacation", Sure, u"vacaciones, viaje a, viaje, luna de miel");
    add(u"concert", Sure, u"Konzert, Festival, Rock am Ring, -konzert");
    add(u"concert", Sure, u"concert, gig, music festival, live concert");
    add(u"concert", Sure, u"festival de musique, fête de la musique");
    add(u"concert", Sure, u"concierto, festival de música");
    add(u"sports", Sure,
        u"Fußballspiel, Fußballturnier, Turnier, Sportfest, Marathon, Wettkampf, Halbmarathon, Stadtmarathon, Bergmarathon, -turnier");
    add(u"sports", Sure, u"football match, soccer game, tournament, half marathon, sports day, race day");
    add(u"sports", Sure, u"match de foot, tournoi, compétition sportive");
    add(u"sports", Sure, u"partido de fútbol, torneo, maratón");
    add(u"sports", Likely, u"Fußball, football, soccer, handball, tennis, rugby, fútbol, baseball");
    add(u"zoo", Sure, u"Zoo, Tierpark, Zoobesuch, Wildpark, Tiergarten, Safaripark");
    add(u"zoo", Sure, u"safari park, aquarium, wildlife park");
    add(u"zoo", Sure, u"parc zoologique, parc animalier");
    add(u"zoo", Sure, u"zoológico, acuario");
    add(u"family", Sure, u"Familienfeier, Familientreffen, Familienfest, Muttertag, Vatertag");
    add(u"family", Sure,
        u"family reunion, family gathering, thanksgiving, mother's day, mothers day, mothering sunday, father's day, fathers day");
    add(u"family", Sure, u"réunion de famille, fête des mères, fête des pères, repas de famille");
    add(u"family", Sure, u"reunión familiar, día de la madre, día del padre, comida familiar");
    add(u"family", Hint, u"Familie, family, famille, familia, Oma, Opa, grandma, mamie, abuela");
    // With a mother's or a father's day they tell enough.
    add(u"family", Hint, u"Mama, Mutti, Mutter, Papa, Vati, mum, mom, mummy, mommy, dad, daddy, maman, mamá, papá, papi");
    add(u"fair", Sure, u"Kirmes, Jahrmarkt, Volksfest, Oktoberfest, Stadtfest, Dorffest, Schützenfest, Wiesn, Rummel, -volksfest");
    add(u"fair", Sure, u"funfair, fun fair, county fair, state fair, village fete, theme park, amusement park");
    add(u"fair", Sure, u"fête foraine, fête du village, kermesse, parc d'attractions");
    add(u"fair", Sure, u"feria, verbena, fiestas del pueblo, parque de atracciones");
    add(u"pets", Sure, u"Haustiere, unser Hund, unsere Katze, Hundewelpen, Welpen, Katzenbabys");
    add(u"pets", Sure, u"pets, puppy, puppies, kitten, kittens, our dog, our cat");
    add(u"pets", Sure, u"chiot, chiots, chaton, chatons, notre chien, notre chat, le chat, mon chat, petit chat, nos chats");
    add(u"pets", Sure, u"mascotas, cachorro, cachorros, gatitos, nuestro perro");
    add(u"pets", Likely, u"Hund, Katze, Hunde, Katzen, dog, dogs, cat, cats, chien, chiens, perro, gato");

    // The words of all four for what comes less often.
    add(u"wedding", Sure, u"wedding reception, rehearsal dinner, Jawort, recién casados, nos casamos, les mariés");
    add(u"birthday", Sure, u"Geburtstagskuchen, b-day, sweet sixteen, quinceañera, fête d'anniv, goûter d'anniv");
    add(u"christmas", Sure, u"Weihnachtszeit, Weihnachtsbaum, Christbaum, Christkind, christmas party, christmas tree, christmas dinner");
    add(u"christmas", Sure, u"père noël, sapin de noël, papá noel, noche de reyes, cabalgata de reyes, día de reyes");
    add(u"christmas", Likely, u"Krippenspiel, nativity, nativity play, sapin, crèche vivante, belén viviente");
    add(u"newyear", Sure, u"Neujahrstag, Silvesternacht, new year's day, new years day, bonne année, feliz año");
    add(u"easter", Sure,
        u"Osterhase, Osterbrunch, Osterwochenende, Eiersuche, easter monday, good friday, lundi de pâques, huevos de pascua");
    add(u"easter", Sure, u"domingo de ramos, viernes santo, jueves santo");
    add(u"carnival", Sure, u"Karnevalszug, Karnevalsumzug, Faschingsball, Fasnachtsumzug, Fastnachtsumzug, Straßenkarneval, Altweiber");
    add(u"halloween", Sure, u"trick or treating, halloween party, Halloweenkostüm");
    add(u"halloween", Likely, u"Kürbisschnitzen, pumpkin carving");
    add(u"communion", Sure, u"Erstkommunionfeier, Konfirmationsfeier, Firmungsfeier, profession de foi");
    add(u"school", Sure,
        u"Schultüte, Klassenfoto, Schultheater, last day of school, school concert, school sports day, fête de l'école, spectacle de "
        u"l'école");
    add(u"school", Sure, u"classe verte, classe de neige, fiesta del cole, primer día de cole, función del cole");
    add(u"graduation", Sure,
        u"Abi, Schulabschluss, Masterfeier, Diplomfeier, grad party, graduation party, prom night, fiesta de graduación");
    add(u"beach", Sure, u"Sandstrand, Strandspaziergang, beaches, plages, playas");
    add(u"beach", Likely, u"Sylt, Usedom, Norderney, Borkum, Amrum, Costa Blanca, Algarve");
    add(u"hiking", Sure,
        u"Klettersteig, Gipfeltour, Bergwanderung, Hüttenwanderung, hillwalking, trail walk, balade en montagne, caminata");
    add(u"hiking", Sure, u"excursión a la sierra, excursión por la sierra, ruta de senderismo, subida al pico");
    add(u"snow", Sure,
        u"Skikurs, Skitag, Skiwoche, Skilager, Skitour, Langlauf, Schneemann, snowman, tobogganing, semana blanca, esquiando");
    add(u"roadtrip", Likely, u"Wohnmobil, campervan, motorhome, Motorradtour, Interrail, camping-car, autocaravana");
    add(u"vacation", Sure, u"Kurzurlaub, Campingurlaub, getaway, spring break, half term, summer break, camping trip, colonie de vacances");
    add(u"vacation", Sure, u"escapada, puente de mayo, vacaciones de verano, grandes vacances");
    add(u"vacation", Likely, u"Camping, Zelten, Zeltlager, Ferienhaus, Ferienwohnung, Pauschalreise, safari, gîte, casa rural, campamento");
    add(u"concert", Likely, u"Open Air, Musikfestival");
    add(u"sports", Likely, u"Bundesliga, Länderspiel, Stadion, league, match, triathlon, partido, carrera popular, FC");
    add(u"zoo", Sure, u"Streichelzoo, petting zoo, Wildgehege, Tierparkbesuch");
    add(u"fair", Sure, u"Freizeitpark, Vergnügungspark, Weinfest, Kirchweih, Kerwa, Dult");
    add(u"fair", Likely,
        u"Europa-Park, Europapark, Phantasialand, Legoland, Disneyland, Disney World, Efteling, Alton Towers, parc Astérix, Futuroscope");
    add(u"fair", Likely, u"PortAventura, parque Warner, Sommerfest, Feuerwehrfest");
    add(u"pets", Likely, u"Kätzchen, Hundebaby, Meerschweinchen, hamster, guinea pig, conejo");
    add(u"family", Sure, u"Familientag, Cousinentreffen, Großfamilientreffen, cousinade");

    // Italian and Dutch: the words that everybody uses.
    add(u"wedding", Sure, u"matrimonio, nozze, bruiloft, huwelijk");
    add(u"birthday", Sure, u"compleanno, verjaardag, kinderfeestje");
    add(u"christmas", Sure, u"natale, vigilia di natale, kerst, kerstmis, kerstavond, kerstdag");
    add(u"christmas", Likely, u"mercatini di natale, kerstmarkt");
    add(u"newyear", Sure, u"capodanno, oud en nieuw, oudejaarsavond, nieuwjaar");
    add(u"easter", Sure, u"pasqua, pasquetta, pasen");
    add(u"carnival", Sure, u"carnevale");
    add(u"baptism", Sure, u"battesimo, doopfeest");
    add(u"communion", Sure, u"prima comunione, comunione, cresima, eerste communie, communie");
    add(u"school", Sure, u"primo giorno di scuola, gita scolastica, eerste schooldag, schoolreis");
    add(u"graduation", Sure, u"laurea, diploma-uitreiking, afstuderen");
    add(u"baby", Sure, u"nascita, neonato, geboorte");
    add(u"anniversary", Sure,
        u"anniversario, anniversario di matrimonio, nozze d'oro, nozze d'argento, gouden bruiloft, zilveren bruiloft, jubileum");
    add(u"beach", Sure, u"spiaggia, al mare, strandvakantie");
    add(u"city", Sure, u"stedentrip");
    add(u"hiking", Sure, u"escursione, wandeling, wandelvakantie");
    add(u"snow", Sure, u"settimana bianca, sulla neve, wintersport, skivakantie");
    add(u"cruise", Sure, u"crociera");
    add(u"vacation", Sure,
        u"vacanza, vacanze, ferie, viaggio, viaggio di nozze, luna di miele, vakantie, zomervakantie, huwelijksreis, strandvakantie, "
        u"skivakantie");
    add(u"concert", Sure, u"concerto");
    add(u"sports", Sure, u"partita di calcio, torneo, voetbalwedstrijd, toernooi");
    add(u"zoo", Sure, u"dierentuin");
    add(u"family", Sure, u"festa della mamma, festa del papà, moederdag, vaderdag");
    add(u"fair", Sure, u"sagra, luna park, kermis, pretpark");
    add(u"work", 1.0, u"viaggio di lavoro, zakenreis");
    add(u"delicate", 1.0, u"funerale, ospedale, cimitero, lutto, begrafenis, ziekenhuis, uitvaart, crematie, kerkhof");

    // Longer phrases that take their words' meaning away.
    add(u"", 0.0, u"Berlin Wedding, Wedding Berlin, Hochzeitsmesse, Hochzeitsturm, wedding fair, wedding planning, salon du mariage");
    add(u"", 0.0, u"Reisepass, school reunion, Klassentreffen");
    // Who travels for work has no holidays.
    add(u"work", 1.0,
        u"Dienstreise, Geschäftsreise, Konferenz, Tagung, Kongress, Seminar, Montage, Baustelle, Messestand, -dienstreise, -tagung");
    add(u"work", 1.0, u"business trip, work trip, conference, trade fair, offsite, site visit");
    add(u"work", 1.0, u"voyage d'affaires, déplacement professionnel, congrès, chantier, séminaire");
    add(u"work", 1.0, u"viaje de negocios, viaje de trabajo, congreso, seminario");
    add(u"", 0.0, u"Schulung, Baumschule, Fahrschule, Tanzschule, Hundeschule, Volkshochschule, driving school");
    add(u"", 0.0, u"Hot Dog, Cat Stevens, Paris Hilton, Jack London, Prime Minister, Long Beach California, Palm Beach");
    add(u"", 0.0,
        u"Holiday Inn, Easter Island, Christmas Island, Isla de Pascua, Île de Pâques, Snow White, birth certificate, birth certificates");
    add(u"", 0.0, u"Hochzeit des Figaro, Figaros Hochzeit, noces de figaro, bodas de fígaro, bodas de sangre");
    add(u"", 0.0, u"Auswanderung, Einwanderung, Zuwanderung, Abwanderung, Völkerwanderung, Zeitreise, Pressereise");
    add(u"", 0.0, u"Elternurlaub, Mutterschaftsurlaub, Erziehungsurlaub, Bildungsurlaub, Urlaubsantrag");
    add(u"", 0.0, u"commencement des, commencement de, commencement du, au commencement, enterrement de vie de, video chat, whatsapp chat");
    add(u"", 0.0, u"Tag der offenen Tür, Probleme, open day, Adventure");
    add(u"delicate", 1.0,
        u"Beerdigung, Begräbnis, Beisetzung, Trauerfeier, Trauer, Bestattung, Friedhof, Krankenhaus, Klinik, Hospiz, Reha, Operation, "
        u"Chemo, Intensivstation, Abschied von, Todestag, Kondolenz");
    add(u"delicate", 1.0,
        u"Unfall, Autounfall, Grab, Grabstein, Nachruf, Urne, Notaufnahme, Palliativstation, -beerdigung, -beisetzung, -begräbnis, "
        u"-klinik, "
        u"-krankenhaus, -unfall");
    add(u"delicate", 1.0, u"funeral, burial, wake, memorial service, hospital, hospice, in memoriam, cemetery, surgery, chemotherapy");
    add(u"delicate", 1.0, u"accident, in loving memory, in memory of, gravestone, obituary, emergency room, car crash");
    add(u"delicate", 1.0, u"enterrement, obsèques, funérailles, hôpital, cimetière, deuil, clinique, urgences, tombe");
    add(u"delicate", 1.0, u"funerales, entierro, velatorio, cementerio, duelo, clínica, sepelio, tanatorio, accidente, urgencias, tumba");

    std::stable_sort(
        m_endings.begin(), m_endings.end(), [](const auto &left, const auto &right) { return left.first.size() > right.first.size(); });
}

const NyOrrinTitleWords::Entry *NyOrrinTitleWords::findCompound(const QString &word) const
{
    for (const auto &[ending, entry] : m_endings) {
        // A part of one or two letters before it is no German word.
        if (word.size() >= ending.size() + 3 && word.endsWith(ending))
            return &entry;
    }
    return nullptr;
}

QList<NyOrrinTitleWords::Entry> NyOrrinTitleWords::findBeginning(const QString &word) const
{
    // What German puts behind an occasion without changing it; "Hochzeitstag" and "Geburtstagskind" are something else.
    static const QStringList tails{QStringLiteral("bilder"), QStringLiteral("fotos"), QStringLiteral("photos"), QStringLiteral("album"),
        QStringLiteral("fotobuch"), QStringLiteral("video"), QStringLiteral("videos"), QStringLiteral("feier"), QStringLiteral("fest"),
        QStringLiteral("party"), QStringLiteral("wochenende"), QStringLiteral("essen"), QStringLiteral("fruhstuck"),
        QStringLiteral("brunch"), QStringLiteral("morgen"), QStringLiteral("abend")};
    for (const QString &tail : tails) {
        if (!word.endsWith(tail))
            continue;
        const QString beginning = word.chopped(tail.size());
        // With the letters that join the parts, and without.
        for (const qsizetype joint : {0, 1, 2}) {
            if (beginning.size() < joint + 3
                || (joint > 0 && beginning.last(joint) != QLatin1String("s") && beginning.last(joint) != QLatin1String("n")
                    && beginning.last(joint) != QLatin1String("en")))
                continue;
            const QList<Entry> found = m_phrases.value(beginning.chopped(joint));
            if (!found.isEmpty())
                return found;
        }
    }
    return {};
}

NyOrrinTitleWords::Reading NyOrrinTitleWords::read(const QString &folderName) const
{
    Reading reading;
    const auto take = [&reading](const Entry &entry) {
        if (entry.keyword == Delicate)
            reading.isDelicate = true;
        else if (entry.keyword == Work)
            reading.isWork = true;
        else if (!entry.keyword.isEmpty())
            reading.evidence[entry.keyword] = std::max(reading.evidence.value(entry.keyword), entry.strength);
    };
    const QStringList words = wordsOf(folded(folderName));
    for (qsizetype first = 0; first < words.size();) {
        qsizetype length = std::min<qsizetype>(MaximumPhraseLength, words.size() - first);
        for (; length > 0; --length) {
            const QList<Entry> found = m_phrases.value(words.sliced(first, length).join(u' '));
            if (found.isEmpty())
                continue;
            std::for_each(found.cbegin(), found.cend(), take);
            break;
        }
        if (length == 0) {
            if (const Entry *entry = findCompound(words.at(first))) {
                take(*entry);
            } else {
                const QList<Entry> found = findBeginning(words.at(first));
                std::for_each(found.cbegin(), found.cend(), take);
            }
        }
        first += std::max<qsizetype>(1, length);
    }
    const bool isSureOfMore = std::any_of(reading.evidence.keyValueBegin(), reading.evidence.keyValueEnd(),
        [](const auto &entry) { return entry.second >= Sure && entry.first != Vacation; });
    if (isSureOfMore) {
        // A birthday in Paris is a birthday, and a baby elephant at the zoo is no baby.
        for (double &strength : reading.evidence) {
            if (strength < Sure)
                strength = std::min(strength, Hint);
        }
    }
    return reading;
}

QStringList NyOrrinTitleWords::folderNames(const QString &id)
{
    // Display texts of URLs keep some characters encoded.
    const QString path = id.startsWith(QLatin1String("file:")) ? QUrl(id, QUrl::TolerantMode).path(QUrl::FullyDecoded) : id;
    QStringList names = path.split(u'/', Qt::SkipEmptyParts);
    if (names.isEmpty())
        return {};
    names.removeLast();
    // The user's own name is no title.
    if (names.size() >= 2 && (names.first() == QLatin1String("home") || names.first() == QLatin1String("Users")))
        names.remove(0, 2);
    QStringList result;
    for (auto name = names.crbegin(); name != names.crend() && result.size() < MaximumFolders; ++name) {
        if (isRootName(folded(*name)))
            break;
        result.append(*name);
    }
    return result;
}
