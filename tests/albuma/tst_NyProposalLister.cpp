#include <algorithm>

#include <QImage>
#include <QTest>

#include <NyStartScreenRecommendationsInterface.h>

#include "NyProposalLister.h"
#include "ProposalFiles.h"

using namespace Qt::Literals::StringLiterals;
using namespace ProposalFiles;
using State = NyProposal::State;

namespace
{
QStringList ids(const NyProposalListing &listing)
{
    QStringList result;
    for (const NyProposal &proposal : listing.proposals)
        result.append(proposal.id);
    return result;
}

NyProposal only(const NyProposalListing &listing)
{
    return listing.proposals.size() == 1 ? listing.proposals.constFirst() : NyProposal();
}

QString warningAbout(const QString &name)
{
    return u".*%1.*has unexpected format or is empty:.*"_s.arg(QRegularExpression::escape(name));
}
}

class tst_NyProposalLister : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void emptyFolder();
    void missingFolder();
    void aFileInPlaceOfTheFolder();
    void everythingThatIsKnown();
    void newestFirst();
    void unusableDescriptions_data();
    void unusableDescriptions();
    void anEnormousDescription();
    void aDescriptionWithoutItsProject();
    void aFolderNamedAsAProject();
    void hostileIds_data();
    void hostileIds();
    void oneEntryAProject();
    void textsOnOneLine_data();
    void textsOnOneLine();
    void datesAreNotToldTwice_data();
    void datesAreNotToldTwice();
    void unreadAsTheInterfaceCounts();
    void openedOnesAreRead();
    void previews();
    void aPreviewThatMayBeIncomplete_data();
    void aPreviewThatMayBeIncomplete();
    void missingPictures();
};

void tst_NyProposalLister::init()
{
    QVERIFY(reset());
}

void tst_NyProposalLister::emptyFolder()
{
    const NyProposalListing listing = NyProposalLister::list({});
    QCOMPARE(listing.folder, NyProposalListing::Folder::Readable);
    QCOMPARE(listing.folderPath + u'/', folder());
    QVERIFY(listing.isFolderWritable);
    QVERIFY(listing.proposals.isEmpty());
    QVERIFY(!listing.isUnsettled);
}

void tst_NyProposalLister::missingFolder()
{
    QVERIFY(QDir(folder()).removeRecursively());
    const NyProposalListing listing = NyProposalLister::list({});
    QCOMPARE(listing.folder, NyProposalListing::Folder::Missing);
    QCOMPARE(listing.folderPath + u'/', folder());
    QVERIFY(!QFileInfo::exists(folder()));
}

void tst_NyProposalLister::aFileInPlaceOfTheFolder()
{
    QVERIFY(QDir(folder()).removeRecursively());
    QVERIFY(TestSupport::writeFile(QDir::cleanPath(folder()), "no folder"));
    QCOMPARE(NyProposalLister::list({}).folder, NyProposalListing::Folder::Unreadable);
}

void tst_NyProposalLister::everythingThatIsKnown()
{
    QJsonObject object = description(u"a.nqp"_s, u"Ägypten „2026“"_s, 1700000000);
    object[u"subline"] = u"Unsere Reise"_s;
    object[u"photoCount"] = 42;
    object[u"pageCount"] = 1;
    object[u"dateFrom"] = u"2026-07-11"_s;
    object[u"dateTo"] = u"2026-07-19"_s;
    QVERIFY(writeDescription(u"a.nqp"_s, object));
    QVERIFY(write(u"a.nqp"_s, "{}"));
    const NyProposal proposal = only(NyProposalLister::list({}));
    QCOMPARE(proposal.id, u"a.nqp"_s);
    QCOMPARE(proposal.headline, u"Ägypten „2026“"_s);
    QCOMPARE(proposal.subline, u"Unsere Reise"_s);
    QCOMPARE(proposal.dates, u"11. – 19. Juli 2026"_s);
    QCOMPARE(proposal.extent(), u"42 Fotos · 1 Seite"_s);
    QCOMPARE(proposal.problem(), QString());
    QCOMPARE(proposal.created.toSecsSinceEpoch(), 1700000000);
    QCOMPARE(proposal.projectFile, QString(folder() + u"a.nqp"_s));
    QCOMPARE(proposal.state, State::Complete);
    QVERIFY(proposal.canBeOpened());
    QVERIFY(proposal.isUnread);
    QCOMPARE(proposal.menu.size(), 2);
    QCOMPARE(proposal.menu.at(0), (NyProposal::MenuEntry{NyProposal::Verb::Open, u"Vorschlag öffnen"_s}));
    QCOMPARE(proposal.menu.at(1).verb, NyProposal::Verb::Delete);
}

void tst_NyProposalLister::newestFirst()
{
    QVERIFY(writeProposal(u"b.nqp"_s, u"b"_s, 200));
    QVERIFY(writeProposal(u"a.nqpx"_s, u"a"_s, 100));
    QVERIFY(writeProposal(u"none.nqp"_s, u"none"_s, 0));
    QVERIFY(writeProposal(u"c.nqp"_s, u"c"_s, 150));
    QCOMPARE(ids(NyProposalLister::list({})), QStringList({u"b.nqp"_s, u"c.nqp"_s, u"a.nqpx"_s, u"none.nqp"_s}));
}

void tst_NyProposalLister::unusableDescriptions_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isWarning");
    QTest::newRow("empty") << QByteArray() << true;
    QTest::newRow("half written") << QByteArray(R"({"headline": "Somm)") << true;
    QTest::newRow("list") << QByteArray("[]") << true;
    QTest::newRow("zeros") << QByteArray(4096, '\0') << true;
    QTest::newRow("no UTF-8") << QByteArray("{\"headline\": \"\xe4\xff\"}") << true;
    QTest::newRow("nothing said") << QByteArray("{}") << false;
    QTest::newRow("menu of another kind") << QByteArray(R"({"menu": "open", "headline": 7})") << false;
    QTest::newRow("menu about nothing") << QByteArray(R"({"menu": [null, 3, [], {}, {"action": ""}, {"action": "open"}]})") << false;
    QTest::newRow("unknown action") << QByteArray(R"({"menu": [{"action": "format:a.nqp"}]})") << false;
    QTest::newRow("action with too much") << QByteArray(R"({"action": "proposal:a.nqp:b"})") << false;
}

void tst_NyProposalLister::unusableDescriptions()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isWarning);
    QVERIFY(write(u"a.nqp.json"_s, content));
    QVERIFY(write(u"a.nqp"_s, "{}"));
    if (isWarning)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warningAbout(u"a.nqp.json"_s)));
    const NyProposalListing listing = NyProposalLister::list({});
    const NyProposal proposal = only(listing);
    QCOMPARE(proposal.id, u"a.nqp"_s);
    QCOMPARE(proposal.headline, u"a"_s);
    QCOMPARE(proposal.state, State::NoDescription);
    QVERIFY(!proposal.problem().isEmpty());
    QVERIFY(proposal.canBeOpened());
    QVERIFY(listing.isUnsettled);
}

void tst_NyProposalLister::anEnormousDescription()
{
    QJsonObject object = description(u"a.nqp"_s, u"Riese "_s.repeated(2000000), 100);
    object[u"subline"] = QString(1000000, u'\n');
    object[u"photoCount"] = 3e9;
    object[u"pageCount"] = -4;
    QVERIFY(writeDescription(u"a.nqp"_s, object));
    QVERIFY(write(u"a.nqp"_s, "{}"));
    const NyProposal proposal = only(NyProposalLister::list({}));
    QCOMPARE(proposal.headline.size(), NyProposalLister::LongestText);
    QVERIFY(proposal.headline.endsWith(u'…'));
    QCOMPARE(proposal.subline, QString());
    QCOMPARE(proposal.extent(), QString());
}

void tst_NyProposalLister::aDescriptionWithoutItsProject()
{
    QVERIFY(writeDescription(u"a.nqp"_s, description(u"a.nqp"_s, u"Ostsee"_s, 100)));
    const NyProposalListing listing = NyProposalLister::list({});
    const NyProposal proposal = only(listing);
    QCOMPARE(proposal.headline, u"Ostsee"_s);
    QCOMPARE(proposal.state, State::NoProject);
    QVERIFY(!proposal.canBeOpened());
    QVERIFY(!proposal.isUnread);
    QVERIFY(!proposal.problem().isEmpty());
    QVERIFY(listing.isUnsettled);
}

void tst_NyProposalLister::aFolderNamedAsAProject()
{
    QVERIFY(QDir(folder()).mkpath(u"a.nqp"_s));
    QCOMPARE(only(NyProposalLister::list({})).state, State::NoProject);
}

void tst_NyProposalLister::hostileIds_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("path") << u"../../a.nqp"_s;
    QTest::newRow("absolute path") << u"/etc/a.nqp"_s;
    QTest::newRow("all files") << u"*.nqp"_s;
    QTest::newRow("one sign") << u"?.nqp"_s;
    QTest::newRow("signs") << u"[a-z].nqp"_s;
    QTest::newRow("no project") << u"settings.ini"_s;
    QTest::newRow("nothing") << QString();
}

void tst_NyProposalLister::hostileIds()
{
    QFETCH(QString, id);
    QVERIFY(writeDescription(u"b.nqp"_s, description(id, u"falsch"_s, 100)));
    QVERIFY(write(u"b.nqp"_s, "{}"));
    const NyProposal proposal = only(NyProposalLister::list({}));
    QCOMPARE(proposal.id, u"b.nqp"_s);
    QCOMPARE(proposal.state, State::NoDescription);
    QVERIFY(proposal.menu.isEmpty());
}

void tst_NyProposalLister::oneEntryAProject()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"neu"_s, 200));
    QVERIFY(writeDescription(u"Kopie von a.nqp"_s, description(u"a.nqp"_s, u"alt"_s, 100)));
    QCOMPARE(only(NyProposalLister::list({})).headline, u"neu"_s);
}

void tst_NyProposalLister::textsOnOneLine_data()
{
    QTest::addColumn<QString>("written");
    QTest::addColumn<QString>("shown");
    QTest::newRow("lines") << u"Oma\n und\tOpa "_s << u"Oma und Opa"_s;
    QTest::newRow("control characters") << QString(u"a"_s + QChar(7) + u"b"_s + QChar(0x202e) + u"c"_s) << u"a b c"_s;
    QTest::newRow("joined emoji") << u"👨‍👩‍👧 Familie"_s << u"👨‍👩‍👧 Familie"_s;
    QTest::newRow("markup") << u"<b>Rom</b> & \"mehr\""_s << u"<b>Rom</b> & \"mehr\""_s;
    QTest::newRow("none") << u" \n"_s << u"a"_s;
    const QString limit(NyProposalLister::LongestText, u'x');
    QTest::newRow("limit") << limit << limit;
    QTest::newRow("limit + 1") << QString(limit + u'x') << QString(limit.chopped(1) + u'…');
    const QString pairs = u"🎂"_s.repeated(int(NyProposalLister::LongestText));
    QTest::newRow("no half characters") << pairs << QString(u"🎂"_s.repeated(int(NyProposalLister::LongestText / 2 - 1)) + u'…');
}

void tst_NyProposalLister::textsOnOneLine()
{
    QFETCH(QString, written);
    QFETCH(QString, shown);
    QVERIFY(writeProposal(u"a.nqp"_s, written, 100));
    QCOMPARE(only(NyProposalLister::list({})).headline, shown);
}

void tst_NyProposalLister::datesAreNotToldTwice_data()
{
    QTest::addColumn<QString>("headline");
    QTest::addColumn<QString>("subline");
    QTest::addColumn<QString>("dates");
    QTest::newRow("in the headline") << u"11. – 19. Juli 2026"_s << u"Unsere Reise"_s << QString();
    QTest::newRow("in the subline") << u"Ostsee"_s << u"11. – 19. Juli 2026"_s << QString();
    QTest::newRow("in the subline, in another language") << u"Ostsee"_s << u"11 – 19 July 2026"_s << QString();
    QTest::newRow("in none") << u"Ostsee"_s << QString() << u"11. – 19. Juli 2026"_s;
}

void tst_NyProposalLister::datesAreNotToldTwice()
{
    QFETCH(QString, headline);
    QFETCH(QString, subline);
    QFETCH(QString, dates);
    QJsonObject object = description(u"a.nqp"_s, headline, 100);
    object[u"subline"] = subline;
    object[u"dateFrom"] = u"2026-07-11"_s;
    object[u"dateTo"] = u"2026-07-19"_s;
    QVERIFY(writeDescription(u"a.nqp"_s, object));
    QCOMPARE(only(NyProposalLister::list({})).dates, dates);
}

void tst_NyProposalLister::unreadAsTheInterfaceCounts()
{
    auto &settings = NyQuilloServiceSettings::instance();
    const NyStartScreenRecommendationsInterface interface;
    const auto unread = [&] {
        const QList<NyProposal> proposals = NyProposalLister::list({interface.lastView(), {}, {}}).proposals;
        return int(std::count_if(proposals.cbegin(), proposals.cend(), [](const NyProposal &proposal) { return proposal.isUnread; }));
    };
    QVERIFY(writeProposal(u"a.nqp"_s, u"a"_s, 100));
    QVERIFY(writeProposal(u"b.nqpx"_s, u"b"_s, 200));
    QVERIFY(write(u"c.nqp"_s, "{}"));
    QVERIFY(writeDescription(u"d.nqp"_s, description(u"d.nqp"_s, u"d"_s, 50)));
    settings.setLastStartScreenProposalViewDate({});
    QCOMPARE(interface.getUnreadRecommendations(), 3);
    QCOMPARE(unread(), 3);
    const QDateTime birth = QFileInfo(folder() + u"b.nqpx"_s).fileTime(QFile::FileBirthTime);
    if (!birth.isValid())
        QSKIP("this file system has no birth times");
    settings.setLastStartScreenProposalViewDate(birth);
    QCOMPARE(unread(), interface.getUnreadRecommendations());
    settings.setLastStartScreenProposalViewDate(birth.addSecs(-3600));
    QCOMPARE(unread(), 3);
    settings.setLastStartScreenProposalViewDate(birth.addSecs(3600));
    QCOMPARE(interface.getUnreadRecommendations(), 0);
    QCOMPARE(unread(), 0);
}

void tst_NyProposalLister::openedOnesAreRead()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"a"_s, 100));
    QVERIFY(writeProposal(u"b.nqp"_s, u"b"_s, 200));
    const NyProposalListing listing = NyProposalLister::list({{}, {u"b.nqp"_s}, {}});
    QCOMPARE(ids(listing), QStringList({u"b.nqp"_s, u"a.nqp"_s}));
    QVERIFY(!listing.proposals.at(0).isUnread);
    QVERIFY(listing.proposals.at(1).isUnread);
}

void tst_NyProposalLister::previews()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"a"_s, 200));
    QVERIFY(writeProposal(u"b.nqp"_s, u"b"_s, 100));
    QVERIFY(write(u"a.nqp.png"_s, "preview"));
    const NyProposalListing listing = NyProposalLister::list({});
    QCOMPARE(listing.proposals.at(0).previewFile, QString(folder() + u"a.nqp.png"_s));
    QVERIFY(listing.proposals.at(0).previewStampMs >= 0);
    QCOMPARE(listing.proposals.at(1).previewStampMs, -1);
}

void tst_NyProposalLister::aPreviewThatMayBeIncomplete_data()
{
    QTest::addColumn<int>("ageS");
    QTest::addColumn<bool>("isUnsettled");
    QTest::newRow("an hour old") << 3600 << false;
    QTest::newRow("newer than the clock") << -3600 << true;
}

void tst_NyProposalLister::aPreviewThatMayBeIncomplete()
{
    QFETCH(int, ageS);
    QVERIFY(writeProposal(u"a.nqp"_s, u"a"_s, 200));
    QVERIFY(write(u"a.nqp.png"_s, "half a pre"));
    QFile preview(folder() + u"a.nqp.png"_s);
    QVERIFY(preview.open(QIODevice::ReadWrite));
    QVERIFY(preview.setFileTime(QDateTime::currentDateTime().addSecs(-ageS), QFileDevice::FileModificationTime));
    QTEST(NyProposalLister::list({}).isUnsettled, "isUnsettled");
}

void tst_NyProposalLister::missingPictures()
{
    QVERIFY(!NyProposalLister::list({}).arePicturesMissing);
    QVERIFY(!NyProposalLister::list({{}, {}, QDir::homePath()}).arePicturesMissing);
    QVERIFY(NyProposalLister::list({{}, {}, QDir::homePath() + u"/weg"_s}).arePicturesMissing);
}

QTEST_GUILESS_MAIN(tst_NyProposalLister)
#include "tst_NyProposalLister.moc"
