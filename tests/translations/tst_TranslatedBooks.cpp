#include "TestSupport.h"

#include <NyBookTitle.h>
#include <NyClassificationResultsRendererHTML.h>
#include <NyEventFolderClassificationResult.h>
#include <NyOccasionInfoList.h>
#include <NyOrrinCurator.h>
#include <NyTranslation.h>

#include <QDate>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

/** What the programs write for people, in each language: the words of a book and the report about classified folders. */
class tst_TranslatedBooks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void datesOfBooks_data();
    void datesOfBooks();
    void titleWithoutAnEvent();
    void occasionsHaveWords();
    void report();

private:
    /** The text of a report about a folder that shows all occasions. */
    QString reportText();

    QTemporaryDir m_folder;
};

void tst_TranslatedBooks::cleanup()
{
    NyTranslation::install({u"C"_s});
}

void tst_TranslatedBooks::datesOfBooks_data()
{
    QTest::addColumn<QDate>("from");
    QTest::addColumn<QDate>("to");
    QTest::addColumn<QString>("german");
    QTest::addColumn<QString>("english");
    const QDate day(2024, 7, 12);
    QTest::newRow("one day") << day << day << u"12. Juli 2024"_s << u"12 July 2024"_s;
    QTest::newRow("one month") << day << day.addDays(2) << u"12. – 14. Juli 2024"_s << u"12 – 14 July 2024"_s;
    QTest::newRow("two months") << QDate(2024, 6, 28) << QDate(2024, 7, 3) << u"28. Juni – 3. Juli 2024"_s << u"28 June – 3 July 2024"_s;
    QTest::newRow("two years") << QDate(2023, 12, 30) << QDate(2024, 1, 2) << u"30. Dezember 2023 – 2. Januar 2024"_s
                               << u"30 December 2023 – 2 January 2024"_s;
    QTest::newRow("half a year") << QDate(2024, 3, 1) << QDate(2024, 8, 1) << u"März – August 2024"_s << u"March – August 2024"_s;
}

void tst_TranslatedBooks::datesOfBooks()
{
    QFETCH(QDate, from);
    QFETCH(QDate, to);
    NyTranslation::install({u"en"_s});
    QTEST(NyBookTitle::dateRange(from, to), "english");
    QCOMPARE(NyBookTitle::day(QDate(2024, 7, 1)), u"Monday, 1 July 2024"_s);
    NyTranslation::install({u"de"_s});
    QTEST(NyBookTitle::dateRange(from, to), "german");
    QCOMPARE(NyBookTitle::day(QDate(2024, 7, 1)), u"Montag, 1. Juli 2024"_s);
}

void tst_TranslatedBooks::titleWithoutAnEvent()
{
    NyTranslation::install({u"en"_s});
    const NyBookTitle::Result plain = NyBookTitle::forBook({}, QString(), {}, QDate(), QDate());
    QCOMPARE(plain.title, u"Our Photo Book"_s);
    QCOMPARE(plain.subtitle, u"Our Best Moments"_s);
    QCOMPARE(NyBookTitle::forBook({}, QString(), {u"beach"_s}, QDate(), QDate()).title, u"At the Beach"_s);
}

void tst_TranslatedBooks::occasionsHaveWords()
{
    for (const QString &language : NyTranslation::languages()) {
        NyTranslation::install({language});
        QSet<QString> words;
        for (const std::string &keyword : NyOrrinCurator::keywords()) {
            const QString word = NyBookTitle::occasionName(QString::fromStdString(keyword));
            QVERIFY2(!word.isEmpty() && word.at(0).isUpper(), keyword.c_str());
            words.insert(word);
        }
        QCOMPARE(words.size(), NyOrrinCurator::keywords().size());
    }
}

QString tst_TranslatedBooks::reportText()
{
    QList<NyOccasionInfo> occasions;
    for (const std::string &keyword : NyOrrinCurator::keywords())
        occasions.append(NyOccasionInfo(QString::fromStdString(keyword), u"title"_s, 0.5));
    NyEventFolderClassificationResult folder(QFileInfo(m_folder.path()), NyEventFolderType(NyEventFolderTypeEnum::Event));
    folder.setOccasionInformation(NyOccasionInfoList(occasions));
    const QString target = m_folder.filePath(u"classification.event.all.html"_s);
    if (!NyClassificationResultsRendererHTML({folder}, 0, {u"*.jpg"_s}).renderToFile(QFileInfo(target)))
        return {};
    return QString::fromUtf8(TestSupport::readFile(target));
}

void tst_TranslatedBooks::report()
{
    NyTranslation::install({u"en"_s});
    const QString english = reportText();
    QVERIFY(english.contains(u"<html lang=\"en\">"_s));
    QVERIFY(english.contains(u"<h1>All Folders of the Kind “Event”</h1>"_s));
    NyTranslation::install({u"de"_s});
    const QString german = reportText();
    QVERIFY(german.contains(u"<html lang=\"de\">"_s));
    static const QRegularExpression word(u"<span class=\"word\">([^<]+) <"_s);
    QStringList same;
    int count = 0;
    for (auto matches = word.globalMatch(english); matches.hasNext(); ++count) {
        const QString found = matches.next().captured(1);
        // A keyword that has no word stands as it is.
        if (!found.at(0).isUpper())
            same.append(found);
    }
    QCOMPARE(count, int(NyOrrinCurator::keywords().size()));
    QCOMPARE(same, QStringList());
    // What the two pages share is the sheet of styles, and words of both languages.
    static const QRegularExpression text(u">([^<>]*\\p{L}{2}[^<>]*)<"_s);
    QSet<QString> germanTexts;
    for (auto matches = text.globalMatch(german.section(u"<body>"_s, 1)); matches.hasNext();)
        germanTexts.insert(matches.next().captured(1).trimmed());
    for (auto matches = text.globalMatch(english.section(u"<body>"_s, 1)); matches.hasNext();) {
        const QString found = matches.next().captured(1).trimmed();
        if (germanTexts.contains(found) && !found.contains(u'/') && !QFileInfo(m_folder.path()).fileName().contains(found))
            same.append(found);
    }
    QVERIFY2(QSet<QString>(same.cbegin(), same.cend()).subtract({u"Halloween"_s, u"Zoo"_s, u"Baby"_s, u"in"_s}).isEmpty(),
        qPrintable(same.join(u'\n')));
}

QTEST_GUILESS_MAIN(tst_TranslatedBooks)
#include "tst_TranslatedBooks.moc"
