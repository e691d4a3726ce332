#include <QSet>
#include <QTest>
#include <QThread>

#include <memory>

#include <NyEventFolderClassificationResultList.h>
#include <NyQuilloEventClassifier.h>

#include "PictureTree.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

QDateTime at(int year, int month, int day, int hour = 12, int minute = 0, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
}

/** "kind path" for each entry, in the classifier's order; the start folder's path is ".". */
QStringList verdicts(const PictureTree &tree, const QString &folder, const NyEventFolderClassificationResult &defaultResult = {})
{
    NyQuilloEventClassifier classifier((QFileInfo(tree.root())));
    QStringList lines;
    const QList<NyEventFolderClassificationResult> results = classifier.eventFolderTypes(QFileInfo(folder), defaultResult);
    for (const NyEventFolderClassificationResult &result : results) {
        const QString path = result.directoryPath();
        lines.append(
            result.classification().encode() + QLatin1Char(' ') + (path == tree.root() ? u"."_s : path.mid(tree.root().size() + 1)));
    }
    return lines;
}

QStringList verdicts(const PictureTree &tree)
{
    return verdicts(tree, tree.root());
}

} // namespace

class tst_NyQuilloEventClassifier : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The order of entries, and which folders have one

    void aSortedCollection()
    {
        PictureTree tree;
        for (const char16_t *folder : {u"2024/07/15", u"2024/2024-06-15 Hochzeit/RAW", u"2024/2024-06-15 Hochzeit",
                 u"2023/Rom/Tag 1 - Forum", u"DCIM/100CANON", u"Renovierung"})
            tree.addDistantPictures(QString::fromUtf16(folder));
        QCOMPARE(verdicts(tree),
            (QStringList{u"year 2023"_s, u"event 2023/Rom"_s, u"day 2023/Rom/Tag 1 - Forum"_s, u"year 2024"_s, u"month 2024/07"_s,
                u"day 2024/07/15"_s, u"event 2024/2024-06-15 Hochzeit"_s, u"unknown 2024/2024-06-15 Hochzeit/RAW"_s, u"unknown DCIM"_s,
                u"unknown DCIM/100CANON"_s, u"project Renovierung"_s}));
        QCOMPARE(verdicts(tree), verdicts(tree));
    }
    void foldersWithoutPicturesHaveNoEntry()
    {
        PictureTree tree;
        tree.addFolder(u"2024/empty"_s);
        tree.addFile(u"2024/text/a.txt"_s);
        tree.addFile(u"Projekt/book.nqp"_s);
        QCOMPARE(verdicts(tree), QStringList());
        tree.addDistantPictures(u"2024/Rom/RAW"_s);
        QCOMPARE(verdicts(tree), (QStringList{u"year 2024"_s, u"event 2024/Rom"_s, u"unknown 2024/Rom/RAW"_s}));
    }
    void ignorableFoldersHaveNoEntry()
    {
        PictureTree tree;
        for (const char16_t *folder : {u"Rom", u"Rom/.thumbnails", u"Rom/@eaDir", u"Screenshots", u"Papierkorb/Rom", u"Stumm"})
            tree.addDistantPictures(QString::fromUtf16(folder));
        tree.addFile(u"Stumm/.nomedia"_s);
        QCOMPARE(verdicts(tree), QStringList{u"event Rom"_s});
    }
    void anEmptyOrMissingFolderGivesNothing()
    {
        PictureTree tree;
        QCOMPARE(verdicts(tree), QStringList());
        NyQuilloEventClassifier nowhere{QFileInfo()};
        QVERIFY(nowhere.eventFolderTypes(QFileInfo(), {}).isEmpty());
        QTest::ignoreMessage(
            QtWarningMsg, qPrintable(u"Folder cannot be classified: "_s + tree.path(u"gone"_s) + u": No such file or directory"_s));
        QCOMPARE(verdicts(tree, tree.path(u"gone"_s)), QStringList());
    }
    void aFileIsNoFolder()
    {
        PictureTree tree;
        tree.addPicture(u"a.jpg"_s, at(2024, 6, 15));
        QTest::ignoreMessage(QtWarningMsg, qPrintable(u"Folder cannot be classified: "_s + tree.path(u"a.jpg"_s) + u": Not a directory"_s));
        QCOMPARE(verdicts(tree, tree.path(u"a.jpg"_s)), QStringList());
    }
    void linksAreClassifiedOnce()
    {
        PictureTree tree;
        PictureTree elsewhere(u"elsewhere"_s);
        elsewhere.addDistantPictures(u"Rom"_s);
        tree.addDistantPictures(u"2024/Paris"_s);
        QVERIFY(QFile::link(elsewhere.path(u"Rom"_s), tree.path(u"2024/Rom 2024"_s)));
        QVERIFY(QFile::link(elsewhere.path(u"Rom"_s), tree.path(u"2024/Rom again"_s)));
        QVERIFY(QFile::link(tree.root(), tree.path(u"2024/Paris/up"_s)));
        QCOMPARE(verdicts(tree), (QStringList{u"year 2024"_s, u"event 2024/Paris"_s, u"event 2024/Rom 2024"_s}));
    }

    // The start folder

    void loosePicturesOfAFewDaysAreAnEvent()
    {
        PictureTree tree;
        tree.addPicture(u"a.jpg"_s, at(2024, 6, 15));
        tree.addPicture(u"b.jpg"_s, at(2024, 6, 16));
        QCOMPARE(verdicts(tree), QStringList{u"event ."_s});
    }
    void loosePicturesOfAYearAreAYear()
    {
        PictureTree tree(u"Hochzeit"_s);
        tree.addPicture(u"a.jpg"_s, at(2024, 1, 15));
        tree.addPicture(u"b.jpg"_s, at(2024, 11, 16));
        QCOMPARE(verdicts(tree), QStringList{u"year ."_s});
    }
    void loosePicturesOfManyYearsAreUnknown()
    {
        PictureTree tree(u"2024"_s);
        tree.addDistantPictures(QString());
        QCOMPARE(verdicts(tree), QStringList{u"unknown ."_s});
    }
    void loosePicturesBesideCameraFoldersCountTogether()
    {
        PictureTree tree;
        tree.addPicture(u"a.jpg"_s, at(2024, 6, 15));
        tree.addPicture(u"100CANON/b.jpg"_s, at(2024, 6, 16));
        QCOMPARE(verdicts(tree), (QStringList{u"event ."_s, u"unknown 100CANON"_s}));
        tree.addPicture(u"101CANON/c.jpg"_s, at(2024, 9, 16));
        QCOMPARE(verdicts(tree), (QStringList{u"year ."_s, u"event 100CANON"_s, u"event 101CANON"_s}));
    }
    void loosePicturesBesideSortedOnesSayNothing()
    {
        PictureTree tree;
        tree.addPicture(u"a.jpg"_s, at(2024, 6, 15));
        tree.addDistantPictures(u"Rom"_s);
        QCOMPARE(verdicts(tree), (QStringList{u"unknown ."_s, u"event Rom"_s}));
    }
    void aMessengersFolderBesideLoosePicturesIsPassedOver()
    {
        PictureTree tree;
        tree.addPicture(u"a.jpg"_s, at(2024, 6, 15));
        tree.addDistantPictures(u"WhatsApp Images"_s);
        QCOMPARE(verdicts(tree), (QStringList{u"event ."_s, u"unknown WhatsApp Images"_s}));
    }
    void aStartFolderWithoutPicturesOfItsOwnHasNoEntry()
    {
        PictureTree tree(u"Hochzeit"_s);
        tree.addDistantPictures(u"Rom"_s);
        QCOMPARE(verdicts(tree), QStringList{u"event Rom"_s});
    }

    // Camera folders by what they hold

    void spans_data()
    {
        QTest::addColumn<QDateTime>("first");
        QTest::addColumn<QDateTime>("last");
        QTest::addColumn<QString>("kind");
        QTest::newRow("one moment") << at(2024, 6, 15) << at(2024, 6, 15) << u"event"_s;
        QTest::newRow("four days to the second") << at(2024, 6, 15) << at(2024, 6, 19) << u"event"_s;
        QTest::newRow("a second more") << at(2024, 6, 15) << at(2024, 6, 19, 12, 0, 1) << u"year"_s;
        QTest::newRow("over new year") << at(2023, 12, 30) << at(2024, 1, 2) << u"event"_s;
        QTest::newRow("over the end of summer time") << at(2024, 10, 25, 2, 30) << at(2024, 10, 29, 2, 30) << u"event"_s;
        QTest::newRow("a winter") << at(2023, 11, 1) << at(2024, 2, 1) << u"year"_s;
        QTest::newRow("a year to the second") << at(2023, 6, 15) << at(2024, 6, 15) << u"year"_s;
        QTest::newRow("a second more than a year") << at(2023, 6, 15) << at(2024, 6, 15, 12, 0, 1) << u"unknown"_s;
        QTest::newRow("the last name is the first photo") << at(2024, 6, 16) << at(2024, 6, 15) << u"event"_s;
    }
    void spans()
    {
        QFETCH(QDateTime, first);
        QFETCH(QDateTime, last);
        QFETCH(QString, kind);
        PictureTree tree;
        tree.addPicture(u"DCIM/100CANON/a.jpg"_s, first);
        tree.addPicture(u"DCIM/100CANON/b.jpg"_s, last);
        const QString inner = kind == u"event"_s ? u"unknown"_s : kind;
        QCOMPARE(verdicts(tree), (QStringList{kind + u" DCIM"_s, inner + u" DCIM/100CANON"_s}));
    }
    void foldersThatAskTheirContents_data()
    {
        QTest::addColumn<QString>("name");
        for (const char16_t *name :
            {u"100CANON", u"Camera Roll", u"Neuer Ordner", u"iPhone von Tom", u"4711", u"RAW", u"IMG_2024", u"---", u"Teil 2", u"Fotos"})
            QTest::newRow(qPrintable(QString::fromUtf16(name))) << QString::fromUtf16(name);
    }
    void foldersThatAskTheirContents()
    {
        QFETCH(QString, name);
        PictureTree tree;
        tree.addPicture(name + u"/a.jpg"_s, at(2024, 6, 15));
        tree.addPicture(name + u"/b.jpg"_s, at(2024, 6, 17));
        QCOMPARE(verdicts(tree), QStringList{u"event "_s + name});
        tree.addPicture(name + u"/c.jpg"_s, at(2024, 9, 17));
        QCOMPARE(verdicts(tree), QStringList{u"year "_s + name});
    }
    void foldersThatDoNot_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("kind");
        QTest::newRow("messenger") << u"WhatsApp Images"_s << u"unknown"_s;
        QTest::newRow("below a messenger") << u"WhatsApp/Media"_s << u"unknown"_s;
        QTest::newRow("fetched") << u"Downloads"_s << u"unknown"_s;
        QTest::newRow("below an event") << u"Rom/100CANON"_s << u"unknown"_s;
        QTest::newRow("below a day") << u"2024-06-15/100CANON"_s << u"unknown"_s;
        QTest::newRow("below a project") << u"Hausbau/100CANON"_s << u"unknown"_s;
        QTest::newRow("several years") << u"2019-2021"_s << u"unknown"_s;
        QTest::newRow("a year") << u"2024"_s << u"year"_s;
    }
    void foldersThatDoNot()
    {
        QFETCH(QString, path);
        QFETCH(QString, kind);
        PictureTree tree;
        tree.addPicture(path + u"/a.jpg"_s, at(2024, 6, 15));
        QCOMPARE(verdicts(tree).constLast(), kind + QLatin1Char(' ') + path);
    }
    void aCameraFolderUnderAYearMayBeAnEvent()
    {
        PictureTree tree;
        tree.addPicture(u"2024/100CANON/a.jpg"_s, at(2024, 6, 15));
        tree.addPicture(u"2024/101CANON/a.jpg"_s, at(2024, 8, 15));
        QCOMPARE(verdicts(tree), (QStringList{u"year 2024"_s, u"event 2024/100CANON"_s, u"event 2024/101CANON"_s}));
    }
    void aCameraFolderWithSortedOnesInItSaysNothing()
    {
        PictureTree tree;
        tree.addPicture(u"Camera Roll/a.jpg"_s, at(2024, 6, 15));
        tree.addPicture(u"Camera Roll/Rom/b.jpg"_s, at(2024, 6, 15));
        QCOMPARE(verdicts(tree), (QStringList{u"unknown Camera Roll"_s, u"event Camera Roll/Rom"_s}));
    }
    void withoutMetaDataTheBirthTimeCounts()
    {
        PictureTree tree;
        tree.addPicture(u"100CANON/a.jpg"_s);
        tree.addPicture(u"100CANON/b.jpg"_s);
        if (!QFileInfo(tree.path(u"100CANON/a.jpg"_s)).fileTime(QFile::FileBirthTime).isValid())
            QSKIP("this file system knows no birth times");
        QCOMPARE(verdicts(tree), QStringList{u"event 100CANON"_s});
        tree.addPicture(u"100CANON/c.jpg"_s, QDateTime::currentDateTime().addDays(-30));
        QCOMPARE(verdicts(tree), QStringList{u"year 100CANON"_s});
        tree.addPicture(u"100CANON/d.jpg"_s, at(2001, 1, 1));
        QCOMPARE(verdicts(tree), QStringList{u"unknown 100CANON"_s});
    }
    void clocksThatWereNeverSetDoNotCount()
    {
        PictureTree tree;
        tree.addPicture(u"100CANON/a.jpg"_s, at(1980, 1, 1));
        tree.addPicture(u"100CANON/b.jpg"_s, at(2024, 6, 15));
        QCOMPARE(verdicts(tree), QStringList{u"event 100CANON"_s});
    }
    void atMostTwoHundredPhotosAreAskedEvenly()
    {
        PictureTree tree;
        const auto name = [](int number) { return u"100CANON/IMG_%1.jpg"_s.arg(number, 4, 10, QLatin1Char('0')); };
        for (int number = 0; number <= 398; ++number)
            tree.addPicture(name(number), at(2024, 6, 15));
        QCOMPARE(verdicts(tree), QStringList{u"event 100CANON"_s});
        // Of 399 photos every second one is asked, from the first to the last: numbers 0, 2, 4 ... 396, 398.
        tree.addPicture(name(1), at(2001, 1, 1));
        tree.addPicture(name(397), at(2001, 1, 1));
        QCOMPARE(verdicts(tree), QStringList{u"event 100CANON"_s});
        for (const int asked : {0, 2, 200, 398}) {
            tree.addPicture(name(asked), at(2001, 1, 1));
            QCOMPARE(verdicts(tree), QStringList{u"unknown 100CANON"_s});
            tree.addPicture(name(asked), at(2024, 6, 15));
        }
        QCOMPARE(verdicts(tree), QStringList{u"event 100CANON"_s});
    }
    void twoHundredPhotosAreAllAsked()
    {
        PictureTree tree;
        for (int number = 0; number < 200; ++number)
            tree.addPicture(
                u"100CANON/IMG_%1.jpg"_s.arg(number, 4, 10, QLatin1Char('0')), number == 137 ? at(2024, 9, 1) : at(2024, 6, 15));
        QCOMPARE(verdicts(tree), QStringList{u"year 100CANON"_s});
    }
    void damagedPicturesDoNotStopTheSampling()
    {
        PictureTree tree;
        tree.addFile(u"100CANON/a.jpg"_s,
            QByteArray("\xff\xd8\xff\xe1\xff\xff"
                       "Exif",
                10));
        tree.addFile(u"100CANON/b.jpg"_s, QByteArray());
        tree.addPicture(u"100CANON/c.jpg"_s, QDateTime::currentDateTime());
        QVERIFY(QFile::link(tree.path(u"nowhere"_s), tree.path(u"100CANON/d.jpg"_s)));
        QCOMPARE(verdicts(tree).size(), 1);
        QCOMPARE(verdicts(tree), QStringList{u"event 100CANON"_s});
    }

    // Titles over several events

    void aTitleOverYearsIsACollection()
    {
        PictureTree tree;
        tree.addDistantPictures(u"Weihnachten/2022"_s);
        tree.addDistantPictures(u"Weihnachten/2023"_s);
        QCOMPARE(verdicts(tree), (QStringList{u"unknown Weihnachten"_s, u"year Weihnachten/2022"_s, u"year Weihnachten/2023"_s}));
    }
    void aTitleOverEventsOfSeveralYearsIsACollection()
    {
        PictureTree tree;
        tree.addDistantPictures(u"Urlaub/2022 Rom/RAW"_s);
        tree.addDistantPictures(u"Urlaub/2023 Paris"_s);
        QCOMPARE(verdicts(tree),
            (QStringList{u"unknown Urlaub"_s, u"event Urlaub/2022 Rom"_s, u"unknown Urlaub/2022 Rom/RAW"_s, u"event Urlaub/2023 Paris"_s}));
    }
    void aTitleOverDatesOfAFewWeeksIsAnEvent()
    {
        PictureTree tree;
        tree.addDistantPictures(u"Urlaub/2023-07-01 Rom"_s);
        tree.addDistantPictures(u"Urlaub/2023-08-31 Paris"_s);
        QCOMPARE(verdicts(tree), (QStringList{u"event Urlaub"_s, u"day Urlaub/2023-07-01 Rom"_s, u"day Urlaub/2023-08-31 Paris"_s}));
        tree.addDistantPictures(u"Urlaub/2023-09-02 Wien"_s);
        QCOMPARE(verdicts(tree),
            (QStringList{u"unknown Urlaub"_s, u"event Urlaub/2023-07-01 Rom"_s, u"event Urlaub/2023-08-31 Paris"_s,
                u"event Urlaub/2023-09-02 Wien"_s}));
    }
    void datesAreSeenThroughFoldersThatSayNothing()
    {
        PictureTree tree;
        tree.addDistantPictures(u"MobileBackup/Handy/DCIM/2023"_s);
        tree.addDistantPictures(u"Rom/Bilder/2024-05-01"_s);
        tree.addDistantPictures(u"Rom/Bilder/2024-05-03"_s);
        tree.addDistantPictures(u"Toms Laptop/Bilder/2022-05"_s);
        tree.addDistantPictures(u"Toms Laptop/Bilder/2022-11/Paris"_s);
        QCOMPARE(verdicts(tree),
            (QStringList{u"unknown MobileBackup"_s, u"unknown MobileBackup/Handy"_s, u"unknown MobileBackup/Handy/DCIM"_s,
                u"year MobileBackup/Handy/DCIM/2023"_s, u"event Rom"_s, u"unknown Rom/Bilder"_s, u"day Rom/Bilder/2024-05-01"_s,
                u"day Rom/Bilder/2024-05-03"_s, u"unknown Toms Laptop"_s, u"unknown Toms Laptop/Bilder"_s,
                u"month Toms Laptop/Bilder/2022-05"_s, u"month Toms Laptop/Bilder/2022-11"_s,
                u"event Toms Laptop/Bilder/2022-11/Paris"_s}));
    }
    void aThemeOverTitlesIsACollection()
    {
        PictureTree tree;
        tree.addDistantPictures(u"Reisen/Rom"_s);
        QCOMPARE(verdicts(tree), (QStringList{u"unknown Reisen"_s, u"event Reisen/Rom"_s}));
        PictureTree plain;
        plain.addDistantPictures(u"Reisen/RAW"_s);
        QCOMPARE(verdicts(plain), (QStringList{u"event Reisen"_s, u"unknown Reisen/RAW"_s}));
    }
    void aTitleWithAYearStaysAnEvent()
    {
        PictureTree tree;
        tree.addDistantPictures(u"Weltreise 2023/2023-01 Peru"_s);
        tree.addDistantPictures(u"Weltreise 2023/2023-05 Bali"_s);
        QCOMPARE(verdicts(tree).constFirst(), u"event Weltreise 2023"_s);
    }
    void aSeasonWithEventsInItIsACollection()
    {
        PictureTree tree;
        tree.addDistantPictures(u"Sommer 2024/Rom"_s);
        tree.addDistantPictures(u"Q1 2024/RAW"_s);
        tree.addDistantPictures(u"2024-01-01 - 2024-06-30/Paris"_s);
        tree.addDistantPictures(u"12.-26.03.2024/Pisa"_s);
        QCOMPARE(verdicts(tree),
            (QStringList{u"event 12.-26.03.2024"_s, u"event 12.-26.03.2024/Pisa"_s, u"unknown 2024-01-01 - 2024-06-30"_s,
                u"event 2024-01-01 - 2024-06-30/Paris"_s, u"event Q1 2024"_s, u"unknown Q1 2024/RAW"_s, u"unknown Sommer 2024"_s,
                u"event Sommer 2024/Rom"_s}));
    }

    // Project files

    void projectFilesMakeProjects()
    {
        PictureTree tree;
        for (const char16_t *folder : {u"Rom", u"Rom/RAW", u"Paris", u"2024", u"2024/07", u"Fotobuch", u"WhatsApp Images"})
            tree.addDistantPictures(QString::fromUtf16(folder));
        for (const char16_t *file :
            {u"Rom/book.nqp", u"Paris/book.nqpx", u"2024/book.nqp", u"Fotobuch/book.nqp", u"WhatsApp Images/book.nqp"})
            tree.addFile(QString::fromUtf16(file));
        QCOMPARE(verdicts(tree),
            (QStringList{u"year 2024"_s, u"month 2024/07"_s, u"project Fotobuch"_s, u"project Paris"_s, u"project Rom"_s,
                u"unknown Rom/RAW"_s, u"unknown WhatsApp Images"_s}));
    }
    void aProjectFileInAPartOfAnEventChangesNothing()
    {
        PictureTree tree;
        tree.addDistantPictures(u"Rom/Fotobuch"_s);
        tree.addFile(u"Rom/Fotobuch/book.nqp"_s);
        QCOMPARE(verdicts(tree), (QStringList{u"event Rom"_s, u"unknown Rom/Fotobuch"_s}));
    }
    void aProjectFileInTheStartFolderChangesNothing()
    {
        PictureTree tree;
        tree.addPicture(u"a.jpg"_s, at(2024, 6, 15));
        tree.addFile(u"book.nqp"_s);
        QCOMPARE(verdicts(tree), QStringList{u"event ."_s});
    }

    // The arguments

    void aFolderBelowTheStartFolderKeepsItsPlace()
    {
        PictureTree tree;
        tree.addDistantPictures(u"2024/07/15"_s);
        tree.addDistantPictures(u"Rom/RAW"_s);
        QCOMPARE(verdicts(tree, tree.path(u"2024/07"_s)), (QStringList{u"month 2024/07"_s, u"day 2024/07/15"_s}));
        QCOMPARE(verdicts(tree, tree.path(u"2024/07/15"_s)), QStringList{u"day 2024/07/15"_s});
        QCOMPARE(verdicts(tree, tree.path(u"Rom/RAW"_s)), QStringList{u"unknown Rom/RAW"_s});
        QCOMPARE(verdicts(tree, tree.path(u"2024/../Rom/"_s)), (QStringList{u"event Rom"_s, u"unknown Rom/RAW"_s}));
    }
    void aFolderElsewhereIsARoot()
    {
        PictureTree tree;
        PictureTree elsewhere(u"pictures2"_s);
        elsewhere.addDistantPictures(u"Rom"_s);
        NyQuilloEventClassifier classifier((QFileInfo(tree.root())));
        const auto results = classifier.eventFolderTypes(QFileInfo(elsewhere.root()), {});
        QCOMPARE(results.size(), 1);
        QCOMPARE(results.constFirst().directoryPath(), elsewhere.path(u"Rom"_s));
    }
    void theDefaultIsForFoldersWithoutAVerdict()
    {
        PictureTree tree;
        for (const char16_t *folder : {u"100CANON", u"Rom/RAW", u"WhatsApp Images", u"2024", u"Fotos/2023"})
            tree.addDistantPictures(QString::fromUtf16(folder));
        NyEventFolderClassificationResult fallback(QFileInfo(u"/not/looked/at"_s), NyEventFolderType(NyEventFolderTypeEnum::Project));
        fallback.setOccasionInformation(NyOccasionInfoList({NyOccasionInfo(u"city"_s, u"title"_s, 0.5)}));
        QCOMPARE(verdicts(tree, tree.root(), fallback),
            (QStringList{u"project 100CANON"_s, u"year 2024"_s, u"unknown Fotos"_s, u"year Fotos/2023"_s, u"event Rom"_s,
                u"unknown Rom/RAW"_s, u"unknown WhatsApp Images"_s}));
        NyQuilloEventClassifier classifier((QFileInfo(tree.root())));
        const auto results = classifier.eventFolderTypes(QFileInfo(tree.root()), fallback);
        for (const NyEventFolderClassificationResult &result : results)
            QCOMPARE(result.occasionInformation().size(), result.directoryPath().endsWith(u"100CANON"_s) ? 1 : 0);
    }

    // Names that nobody expects

    void hostileNames()
    {
        PictureTree tree;
        const QStringList names{u"Rom %1 %2"_s, u"Rom & Paris"_s, u"Rom: \"Tag\" und 'Nacht'"_s, u"Rom\nParis"_s, u" Rom "_s,
            u"Rom\u200d\U0001F469"_s, u"Ro\u0308mer"_s, u"Römer"_s, u"Rom\\Paris"_s, u"-rf Rom"_s, u"Rom;ls"_s, QString(80, QChar(0x6771))};
        for (const QString &name : names)
            tree.addDistantPictures(name);
        const QStringList lines = verdicts(tree);
        QCOMPARE(lines.size(), names.size());
        for (const QString &name : names)
            QVERIFY2(lines.contains(u"event "_s + name), qPrintable(name));
    }
    void namesThatAreNotUtf8()
    {
        PictureTree tree;
        tree.addDistantPictures(u"Rom"_s);
        const QByteArray bad = QFile::encodeName(tree.root()) + "/\xff\xff";
        QVERIFY(::mkdir(bad.constData(), 0700) == 0);
        QTest::ignoreMessage(QtWarningMsg, qPrintable(u"Folder name is not valid UTF-8, it is left out: "_s + tree.root() + u"/%FF%FF"_s));
        QCOMPARE(verdicts(tree), QStringList{u"event Rom"_s});
    }
    void neighboursThatBeginAlikeStayApart()
    {
        PictureTree tree;
        for (const char16_t *folder : {u"2024", u"2024-07", u"2024 Rom", u"20240715", u"2024x"})
            tree.addDistantPictures(QString::fromUtf16(folder));
        QCOMPARE(
            verdicts(tree), (QStringList{u"year 2024"_s, u"event 2024 Rom"_s, u"month 2024-07"_s, u"day 20240715"_s, u"year 2024x"_s}));
    }

    void severalThreadsMayClassifyAtOnce()
    {
        PictureTree tree;
        for (const char16_t *folder : {u"2024/07/15", u"2024/Rom/RAW", u"DCIM/100CANON"})
            tree.addDistantPictures(QString::fromUtf16(folder));
        const QStringList expected = verdicts(tree);
        QList<QStringList> found(4);
        std::vector<std::unique_ptr<QThread>> threads;
        for (int index = 0; index < 4; ++index) {
            QStringList *result = &found[index];
            threads.emplace_back(QThread::create([result, &tree]() {
                for (int round = 0; round < 5; ++round)
                    *result = verdicts(tree);
            }));
            threads.back()->start();
        }
        for (const auto &thread : threads)
            thread->wait();
        for (const QStringList &result : std::as_const(found))
            QCOMPARE(result, expected);
    }
};

QTEST_GUILESS_MAIN(tst_NyQuilloEventClassifier)
#include "tst_NyQuilloEventClassifier.moc"
