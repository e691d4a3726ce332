#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

#include "NyProposalFolder.h"
#include "ProposalFiles.h"

using namespace Qt::Literals::StringLiterals;
using namespace ProposalFiles;

class tst_NyProposalFolder : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void listsInTheBackground();
    void tenThousandProposals();
    void changesAreSeen();
    void changesTogetherAreOne();
    void aRefreshDuringAListingMakesAnother();
    void anOutdatedListingIsDropped();
    void aFileWrittenInPlaceIsSeenLater();
    void theFolderDisappearsAndReturns();
    void anotherFolderInItsPlace();
    void theFoldersAboveAreMissingToo();
    void aLinkToADriveThatIsMissing();
    void canBeDestroyedWhileListing();
};

namespace
{
constexpr int PatienceMs = 20000;

NyProposalFolder::RequestSource noMarks()
{
    return [] { return NyProposalLister::Request(); };
}

qsizetype lastCount(const QSignalSpy &listed)
{
    return listed.isEmpty() ? -1 : listed.constLast().at(0).value<NyProposalListing>().proposals.size();
}

NyProposalListing::Folder lastState(const QSignalSpy &listed)
{
    return listed.constLast().at(0).value<NyProposalListing>().folder;
}
}

void tst_NyProposalFolder::init()
{
    QVERIFY(reset());
}

void tst_NyProposalFolder::listsInTheBackground()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"a"_s, 100));
    NyProposalFolder folder(noMarks());
    const QSignalSpy started(&folder, &NyProposalFolder::started);
    const QSignalSpy listed(&folder, &NyProposalFolder::listed);
    folder.refresh();
    QVERIFY(folder.isBusy());
    QCOMPARE(started.count(), 1);
    QCOMPARE(listed.count(), 0);
    QTRY_COMPARE(listed.count(), 1);
    QVERIFY(!folder.isBusy());
    QCOMPARE(lastCount(listed), 1);
}

void tst_NyProposalFolder::tenThousandProposals()
{
    constexpr int Count = 10000;
    for (int i = 0; i < Count; ++i)
        QVERIFY(writeProposal(u"Produktvorschlag_%1.nqp"_s.arg(i), u"Buch %1"_s.arg(i), i + 1));
    NyProposalFolder folder(noMarks());
    const QSignalSpy listed(&folder, &NyProposalFolder::listed);
    folder.refresh();
    // As long as it takes, this thread is free for other things.
    int turns = 0;
    while (listed.isEmpty() && turns < 1000) {
        bool isHandled = false;
        QMetaObject::invokeMethod(
            this, [&isHandled] { isHandled = true; }, Qt::QueuedConnection);
        while (!isHandled)
            QCoreApplication::processEvents();
        ++turns;
    }
    QVERIFY(turns > 1);
    QTRY_COMPARE_WITH_TIMEOUT(lastCount(listed), Count, PatienceMs);
    QCOMPARE(listed.constLast().at(0).value<NyProposalListing>().proposals.constFirst().headline, u"Buch 9999"_s);
}

void tst_NyProposalFolder::changesAreSeen()
{
    NyProposalFolder folder(noMarks());
    const QSignalSpy listed(&folder, &NyProposalFolder::listed);
    folder.refresh();
    QTRY_COMPARE(lastCount(listed), 0);
    QVERIFY(writeProposal(u"a.nqp"_s, u"a"_s, 100));
    QTRY_COMPARE(lastCount(listed), 1);
    QVERIFY(QFile::remove(ProposalFiles::folder() + u"a.nqp"_s));
    QVERIFY(QFile::remove(ProposalFiles::folder() + u"a.nqp.json"_s));
    QTRY_COMPARE(lastCount(listed), 0);
}

void tst_NyProposalFolder::changesTogetherAreOne()
{
    NyProposalFolder folder(noMarks());
    const QSignalSpy listed(&folder, &NyProposalFolder::listed);
    folder.refresh();
    QTRY_COMPARE(listed.count(), 1);
    for (int i = 0; i < 50; ++i) {
        QVERIFY(writeProposal(u"%1.nqp"_s.arg(i), u"a"_s, 100));
        // Each is reported by itself.
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE(lastCount(listed), 50);
    QVERIFY2(listed.count() <= 6, qPrintable(QString::number(listed.count())));
}

void tst_NyProposalFolder::aRefreshDuringAListingMakesAnother()
{
    NyProposalFolder folder(noMarks());
    const QSignalSpy started(&folder, &NyProposalFolder::started);
    const QSignalSpy listed(&folder, &NyProposalFolder::listed);
    folder.refresh();
    folder.refresh();
    folder.refresh();
    QCOMPARE(started.count(), 1);
    QTRY_COMPARE(listed.count(), 2);
    QCOMPARE(started.count(), 2);
    QVERIFY(!folder.isBusy());
}

void tst_NyProposalFolder::anOutdatedListingIsDropped()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"a"_s, 100));
    NyProposalLister::Request request;
    NyProposalFolder folder([&request] { return request; });
    const QSignalSpy started(&folder, &NyProposalFolder::started);
    const QSignalSpy listed(&folder, &NyProposalFolder::listed);
    folder.refresh();
    request.openedIds = {u"a.nqp"_s};
    QTRY_COMPARE(listed.count(), 1);
    QCOMPARE(started.count(), 2);
    QVERIFY(!listed.at(0).at(0).value<NyProposalListing>().proposals.at(0).isUnread);
}

void tst_NyProposalFolder::aFileWrittenInPlaceIsSeenLater()
{
    QVERIFY(writeProposal(u"a.nqp"_s, u"Ostsee"_s, 100));
    const QString path = ProposalFiles::folder() + u"a.nqp.json"_s;
    const QByteArray whole = TestSupport::readFile(path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write(whole.left(20)) == 20 && file.flush());
    // How often it is read half is left to the clock.
    const TestSupport::LogRecorder log;
    NyProposalFolder folder(noMarks());
    const QSignalSpy listed(&folder, &NyProposalFolder::listed);
    folder.refresh();
    QTRY_COMPARE(lastCount(listed), 1);
    const auto headline = [&] { return listed.constLast().at(0).value<NyProposalListing>().proposals.at(0).headline; };
    QCOMPARE(headline(), u"a"_s);
    // Nothing in the folder changes by this.
    QVERIFY(file.write(whole.mid(20)) > 0 && file.flush());
    QTRY_COMPARE_WITH_TIMEOUT(headline(), u"Ostsee"_s, PatienceMs);
    QVERIFY(!log.containing(u"a.nqp.json"_s).isEmpty());
}

void tst_NyProposalFolder::theFolderDisappearsAndReturns()
{
    using Folder = NyProposalListing::Folder;
    QVERIFY(writeProposal(u"a.nqp"_s, u"a"_s, 100));
    NyProposalFolder folder(noMarks());
    const QSignalSpy listed(&folder, &NyProposalFolder::listed);
    folder.refresh();
    QTRY_COMPARE(lastCount(listed), 1);
    const QString path = QDir::cleanPath(ProposalFiles::folder());
    for (int round = 0; round < 2; ++round) {
        QVERIFY(QDir().rename(path, path + u" fort"_s));
        QTRY_COMPARE(lastState(listed), Folder::Missing);
        QCOMPARE(lastCount(listed), 0);
        QVERIFY(QDir().rename(path + u" fort"_s, path));
        QTRY_COMPARE(lastState(listed), Folder::Readable);
        QCOMPARE(lastCount(listed), 1);
    }
    // And what happens in it is seen as before.
    QVERIFY(writeProposal(u"b.nqp"_s, u"b"_s, 200));
    QTRY_COMPARE(lastCount(listed), 2);
}

void tst_NyProposalFolder::anotherFolderInItsPlace()
{
    NyProposalFolder folder(noMarks());
    const QSignalSpy listed(&folder, &NyProposalFolder::listed);
    folder.refresh();
    QTRY_COMPARE(lastCount(listed), 0);
    const QString path = QDir::cleanPath(ProposalFiles::folder());
    QVERIFY(QDir().rename(path, path + u" alt"_s));
    QVERIFY(QDir().mkpath(path));
    QVERIFY(writeProposal(u"a.nqp"_s, u"a"_s, 100));
    QTRY_COMPARE(lastCount(listed), 1);
    QVERIFY(writeProposal(u"b.nqp"_s, u"b"_s, 200));
    QTRY_COMPARE(lastCount(listed), 2);
    QVERIFY(QDir(path + u" alt"_s).removeRecursively());
}

void tst_NyProposalFolder::theFoldersAboveAreMissingToo()
{
    const QString above = QFileInfo(QDir::cleanPath(ProposalFiles::folder())).absolutePath();
    QVERIFY(QDir(above).removeRecursively());
    NyProposalFolder folder(noMarks());
    const QSignalSpy listed(&folder, &NyProposalFolder::listed);
    folder.refresh();
    QTRY_COMPARE(listed.count(), 1);
    QCOMPARE(lastState(listed), NyProposalListing::Folder::Missing);
    QVERIFY(QDir().mkpath(above));
    QVERIFY(writeProposal(u"a.nqp"_s, u"a"_s, 100));
    QTRY_COMPARE(lastCount(listed), 1);
}

void tst_NyProposalFolder::aLinkToADriveThatIsMissing()
{
    const QString path = QDir::cleanPath(ProposalFiles::folder());
    const QString drive = QDir::homePath() + u"/Laufwerk"_s;
    QVERIFY(QDir(path).removeRecursively());
    QVERIFY(QFile::link(drive, path));
    {
        NyProposalFolder folder(noMarks());
        const QSignalSpy listed(&folder, &NyProposalFolder::listed);
        folder.refresh();
        QTRY_COMPARE(listed.count(), 1);
        QCOMPARE(lastState(listed), NyProposalListing::Folder::Missing);
        QVERIFY(QDir().mkpath(drive));
        QVERIFY(writeProposal(u"a.nqp"_s, u"a"_s, 100));
        QTRY_COMPARE_WITH_TIMEOUT(lastCount(listed), 1, PatienceMs);
        QVERIFY(QDir(drive).removeRecursively());
        QTRY_COMPARE(lastState(listed), NyProposalListing::Folder::Missing);
    }
    QVERIFY(QFile::remove(path));
}

void tst_NyProposalFolder::canBeDestroyedWhileListing()
{
    for (int i = 0; i < 200; ++i)
        QVERIFY(writeProposal(u"%1.nqp"_s.arg(i), u"a"_s, 100));
    QSignalSpy *listed = nullptr;
    {
        NyProposalFolder folder(noMarks());
        listed = new QSignalSpy(&folder, &NyProposalFolder::listed);
        folder.refresh();
        QVERIFY(folder.isBusy());
    }
    QCoreApplication::processEvents();
    QCOMPARE(listed->count(), 0);
    delete listed;
}

QTEST_GUILESS_MAIN(tst_NyProposalFolder)
#include "tst_NyProposalFolder.moc"
