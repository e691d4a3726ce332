#include <QTest>

#include <csignal>
#include <memory>
#include <thread>

#include <sys/stat.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QThread>

#include <NyDirectoryConfig.h>
#include <NyFotoList.h>
#include <NyFotoListRegistry.h>

#include "NySmallDisk.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

NyFoto foto(const QString &path)
{
    return NyFoto(QFileInfo(path));
}

NyFotoList numbered(int from, int to, const QString &folder = u"/home/anna/Bilder/2024"_s)
{
    NyFotoList list;
    for (int i = from; i < to; ++i)
        list.append(foto(u"%1/IMG_%2.jpg"_s.arg(folder).arg(i, 6, 10, QLatin1Char('0'))));
    return list;
}

/** The bytes that this process has handed to write calls so far. */
qint64 writtenBytes()
{
    QFile file(u"/proc/self/io"_s);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("wchar: "))
            return line.mid(7).toLongLong();
    }
    return -1;
}

/** Whether nothing was written since. The sanitizers check addresses by writing to a pipe; that is less than one page of the database. */
bool wroteNothingSince(qint64 before)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return writtenBytes() - before < 4096;
#else
    return writtenBytes() == before;
#endif
}

/** Name, size and time of all files of the database. The shared memory file is left out: it is no file of the disk by its nature. */
QStringList filesState(const QString &folder)
{
    QStringList state;
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &file : files) {
        if (!file.fileName().endsWith(u"-shm"))
            state.append(u"%1 %2 %3"_s.arg(file.fileName()).arg(file.size()).arg(file.lastModified().toMSecsSinceEpoch()));
    }
    return state;
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

/** Runs this program as another process on the database; see child(). */
bool runChild(const QStringList &arguments)
{
    return QProcess::execute(QCoreApplication::applicationFilePath(), QStringList{u"--child"_s} + arguments) == 0;
}

int child(const QStringList &arguments)
{
    const QString task = arguments.at(0);
    if (task == u"clear-at-exit") {
        // On the process-wide instance, so that the end of the application carries it out.
        NyFotoListRegistry::instance().clearEntry(arguments.at(1));
        return 0;
    }
    NyFotoListRegistry registry(arguments.at(1));
    if (task == u"add") {
        registry.add(arguments.at(2), numbered(arguments.at(3).toInt(), arguments.at(4).toInt()));
    } else if (task == u"use") {
        for (int i = 0; i < arguments.at(3).toInt(); ++i)
            registry.addFotosUsedForBookProposals(NyFotoList{foto(u"/%1/%2.jpg"_s.arg(arguments.at(2)).arg(i))});
    } else if (task == u"alternate") {
        for (;;) {
            registry.add(u"list"_s, numbered(0, 2000));
            registry.add(u"list"_s, numbered(5000, 9000));
        }
    } else if (task == u"expect") {
        return registry.fotoList(arguments.at(2)) == numbered(arguments.at(3).toInt(), arguments.at(4).toInt()) ? 0 : 1;
    }
    return 0;
}

const QRegularExpression AnyLine(u".*"_s);

}

class tst_NyFotoListRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void nothingStored();
    void defaultPlace();
    void keepsOrderAndDuplicates();
    void hostileNames();
    void hostileKeys();
    void rolesAreNoKeys();
    void usedFotosAccumulate();
    void emptyListsAreNone();
    void changes_data();
    void changes();
    void unchangedListWritesNothing();
    void logStaysBetweenThreads();
    void smallChangeWritesLittle();
    void clearEntryAlone_data();
    void clearEntryAlone();
    void clearEntryOfOneSparesOthers();
    void clearEntryAtApplicationEnd();
    void seesOtherProcesses();
    void processesAppendTogether();
    void killedWriterLeavesWholeList();
    void threadsHaveTheirOwnConnections();
    void garbageIsSetAside();
    void damagedPagesAreSetAside();
    void damageWhileOpenIsSetAside();
    void foreignDatabaseIsSetAside();
    void emptyFileIsTaken();
    void newerVersionIsLeftAlone();
    void removedFileIsMadeAgain();
    void fullDiskKeepsOldList();
    void fullDiskAtStart();
    void folderThatCannotBeMade();
    void invalidTextIsReported();

private:
    QString database() const { return m_folder->filePath(u"lists/photolists.sqlite"_s); }
    QString databaseFolder() const { return m_folder->filePath(u"lists"_s); }
    QStringList brokenFiles() const
    {
        return QDir(databaseFolder())
            .entryList({u"photolists.sqlite.broken-*"_s}, QDir::Files, QDir::Name)
            .filter(QRegularExpression(u"broken-[0-9]{8}-[0-9]{6}(-[0-9]+)?$"_s));
    }
    static void expectSetAside()
    {
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(u"photolists\\.sqlite\" is damaged .* set aside as .*\\.broken-[0-9]{8}-[0-9]{6}"_s));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    // For the many rows of changes(), each with a key of its own: making a database waits for the disk.
    const QTemporaryDir m_sharedFolder;
    const QString m_sharedDatabase = m_sharedFolder.filePath(u"photolists.sqlite"_s);
    NyFotoListRegistry m_shared{m_sharedDatabase};
};

void tst_NyFotoListRegistry::initTestCase()
{
    QVERIFY(m_shared.getFotosForBookProposal().isEmpty());
}

void tst_NyFotoListRegistry::init()
{
    QTest::failOnWarning(AnyLine);
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_NyFotoListRegistry::cleanup()
{
    m_folder.reset();
}

void tst_NyFotoListRegistry::nothingStored()
{
    NyFotoListRegistry registry(database());
    QVERIFY(registry.fotoList(u"none"_s).isEmpty());
    QVERIFY(registry.getFotosForBookProposal().isEmpty());
    QVERIFY(registry.fotosUsedForBookProposals().isEmpty());
    registry.clearEntry(u"none"_s);
    registry.clearFotoUsedForBookProposals();
    QVERIFY(QFileInfo::exists(database()));
}

void tst_NyFotoListRegistry::defaultPlace()
{
    NyFotoListRegistry registry;
    registry.add(u"key"_s, numbered(0, 3));
    QVERIFY(QFileInfo::exists(NyDirectoryConfig::instance().photoListDatabase()));
    QCOMPARE(NyFotoListRegistry::instance().fotoList(u"key"_s), numbered(0, 3));
}

void tst_NyFotoListRegistry::keepsOrderAndDuplicates()
{
    const NyFotoList list{foto(u"/b.jpg"_s), foto(u"/a.jpg"_s), foto(u"/b.jpg"_s), foto(u"/b.jpg"_s), foto(u"/A.jpg"_s)};
    {
        NyFotoListRegistry registry(database());
        registry.add(u"key"_s, list);
        QCOMPARE(registry.fotoList(u"key"_s), list);
    }
    NyFotoListRegistry registry(database());
    QCOMPARE(registry.fotoList(u"key"_s), list);
}

void tst_NyFotoListRegistry::hostileNames()
{
    const NyFotoList list{
        foto(u"/x/ a b .jpg"_s),
        foto(u"/x/a\nb\r\t.jpg"_s),
        foto(u"/x/100%25/%41.jpg"_s),
        foto(u"/x/#?&=:;.jpg"_s),
        foto(u"/x/'quote\"--;DROP TABLE photo;.jpg"_s),
        foto(u"/x/\u00e4.jpg"_s),
        foto(u"/x/a\u0308.jpg"_s),
        foto(u"/x/\U0001F389.jpg"_s),
        foto(u"/x/\\%1%2.jpg"_s),
        NyFoto(QUrl(u"photokit:asset/1"_s)),
        NyFoto(QUrl::fromEncoded("file:///x/caf%E9.jpg")),
        NyFoto(QUrl(u"https://example.org/a%20b?c#d"_s)),
        NyFoto(),
    };
    NyFotoListRegistry registry(database());
    registry.add(u"key"_s, list);
    const NyFotoList stored = registry.fotoList(u"key"_s);
    QCOMPARE(stored.toUrlStringList(), list.toUrlStringList());
    QCOMPARE(stored, list);
    for (qsizetype i = 0; i < list.size(); ++i)
        QCOMPARE(stored[i].localFileInfo().filePath(), list[i].localFileInfo().filePath());
    // The two unicode forms of one name stay two names.
    QVERIFY(!(stored[5] == stored[6]));
    // A new process, whose digests differ, finds the list unchanged as well.
    NyFotoListRegistry other(database());
    const qint64 before = writtenBytes();
    other.add(u"key"_s, list);
    QVERIFY(wroteNothingSince(before));
}

void tst_NyFotoListRegistry::hostileKeys()
{
    NyFotoListRegistry registry(database());
    const QStringList keys{
        QString(), u"velmora"_s, u"velmora.dorn"_s, u"VELMORA"_s, u"a'b\"c"_s, u"zwei\nZeilen"_s, u"\u00e4"_s, u"a\u0308"_s, u"%1"_s};
    for (int i = 0; i < keys.size(); ++i)
        registry.add(keys.at(i), numbered(i, i + 1));
    for (int i = 0; i < keys.size(); ++i)
        QCOMPARE(registry.fotoList(keys.at(i)), numbered(i, i + 1));
    registry.clearEntry(u"velmora"_s);
    registry.flush();
    QVERIFY(registry.fotoList(u"velmora"_s).isEmpty());
    QCOMPARE(registry.fotoList(u"velmora.dorn"_s), numbered(2, 3));
    QCOMPARE(registry.fotoList(u"VELMORA"_s), numbered(3, 4));
}

void tst_NyFotoListRegistry::rolesAreNoKeys()
{
    NyFotoListRegistry registry(database());
    registry.add(u""_s, numbered(0, 1));
    registry.setFotosForBookProposal(numbered(1, 2));
    registry.addFotosUsedForBookProposals(numbered(2, 3));
    QCOMPARE(registry.fotoList(u""_s), numbered(0, 1));
    QCOMPARE(registry.getFotosForBookProposal(), numbered(1, 2));
    QCOMPARE(registry.fotosUsedForBookProposals(), numbered(2, 3));
    registry.clearFotoUsedForBookProposals();
    QVERIFY(registry.fotosUsedForBookProposals().isEmpty());
    QCOMPARE(registry.fotoList(u""_s), numbered(0, 1));
    QCOMPARE(registry.getFotosForBookProposal(), numbered(1, 2));
    registry.setFotosForBookProposal(numbered(5, 9));
    QCOMPARE(registry.getFotosForBookProposal(), numbered(5, 9));
    registry.setFotosForBookProposal(NyFotoList());
    QVERIFY(registry.getFotosForBookProposal().isEmpty());
}

void tst_NyFotoListRegistry::usedFotosAccumulate()
{
    NyFotoListRegistry registry(database());
    NyFotoList expected;
    for (const NyFotoList &list : {numbered(5, 8), numbered(0, 2), numbered(5, 8), NyFotoList(), numbered(7, 9)}) {
        registry.addFotosUsedForBookProposals(list);
        expected.append(list);
        QCOMPARE(registry.fotosUsedForBookProposals(), expected);
    }
    registry.clearFotoUsedForBookProposals();
    registry.addFotosUsedForBookProposals(numbered(1, 3));
    QCOMPARE(registry.fotosUsedForBookProposals(), numbered(1, 3));
}

void tst_NyFotoListRegistry::emptyListsAreNone()
{
    NyFotoListRegistry registry(database());
    registry.add(u"key"_s, numbered(0, 5));
    registry.add(u"key"_s, NyFotoList());
    QVERIFY(registry.fotoList(u"key"_s).isEmpty());
    const qint64 before = writtenBytes();
    registry.add(u"key"_s, NyFotoList());
    registry.addFotosUsedForBookProposals(NyFotoList());
    QVERIFY(wroteNothingSince(before));
    registry.add(u"key"_s, numbered(3, 4));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(3, 4));
}

void tst_NyFotoListRegistry::changes_data()
{
    QTest::addColumn<NyFotoList>("before");
    QTest::addColumn<NyFotoList>("after");
    const NyFotoList base = numbered(0, 20);
    NyFotoList appended = base;
    appended.append(numbered(20, 25));
    NyFotoList prepended = numbered(50, 55);
    prepended.append(base);
    NyFotoList inside = numbered(0, 10);
    inside.append(numbered(100, 103));
    inside.append(numbered(10, 20));
    NyFotoList doubled = base;
    doubled.append(base);
    NyFotoList reversed;
    for (qsizetype i = base.size() - 1; i >= 0; --i)
        reversed.append(base[i]);
    NyFotoList holes;
    for (qsizetype i = 0; i < base.size(); i += 3)
        holes.append(base[i]);
    const QList<std::pair<const char *, NyFotoList>> lists{{"base", base}, {"appended", appended}, {"prepended", prepended},
        {"inside", inside}, {"doubled", doubled}, {"reversed", reversed}, {"holes", holes}, {"others", numbered(200, 230)},
        {"empty", NyFotoList()}};
    for (const auto &[beforeName, before] : lists) {
        for (const auto &[afterName, after] : lists)
            QTest::addRow("%s to %s", beforeName, afterName) << before << after;
    }
}

void tst_NyFotoListRegistry::changes()
{
    QFETCH(NyFotoList, before);
    QFETCH(NyFotoList, after);
    const QString key = QString::fromLatin1(QTest::currentDataTag());
    NyFotoListRegistry registry(m_sharedDatabase);
    registry.add(key, before);
    QCOMPARE(registry.fotoList(key), before);
    registry.add(key, after);
    QCOMPARE(registry.fotoList(key), after);
    // An object that has not seen the list yet takes the other road: it reads what is stored.
    NyFotoListRegistry other(m_sharedDatabase);
    other.add(key, before);
    QCOMPARE(registry.fotoList(key), before);
    // And this one's knowledge is out of date now.
    registry.add(key, after);
    QCOMPARE(other.fotoList(key), after);
}

void tst_NyFotoListRegistry::unchangedListWritesNothing()
{
    const NyFotoList list = numbered(0, 5000);
    NyFotoListRegistry registry(database());
    registry.add(u"key"_s, list);
    registry.add(u"other"_s, numbered(0, 10));
    const QStringList state = filesState(databaseFolder());
    QVERIFY(!state.isEmpty());
    const qint64 before = writtenBytes();
    QVERIFY(before > 0);

    for (int i = 0; i < 5; ++i)
        registry.add(u"key"_s, list);
    QVERIFY(wroteNothingSince(before));

    for (int i = 0; i < 5; ++i) {
        registry.clearEntry(u"key"_s);
        registry.add(u"key"_s, list);
    }
    QVERIFY(wroteNothingSince(before));
    QCOMPARE(filesState(databaseFolder()), state);

    // On threads that come and go, as those of a pool do.
    bool wroteNothing = false;
    for (int i = 0; i < 3; ++i) {
        std::unique_ptr<QThread> thread(QThread::create([&] {
            registry.clearEntry(u"key"_s);
            registry.add(u"key"_s, list);
            wroteNothing = wroteNothingSince(before);
        }));
        thread->start();
        QVERIFY(thread->wait());
        QVERIFY(wroteNothing);
        wroteNothing = false;
    }
    QCOMPARE(filesState(databaseFolder()), state);

    // An object that has to read the list first.
    NyFotoListRegistry fresh(database());
    fresh.clearEntry(u"key"_s);
    fresh.add(u"key"_s, list);
    QVERIFY(wroteNothingSince(before));
    QCOMPARE(filesState(databaseFolder()), state);
    QCOMPARE(registry.fotoList(u"key"_s), list);
    QVERIFY(wroteNothingSince(before));
}

void tst_NyFotoListRegistry::logStaysBetweenThreads()
{
    // Only threads that end use the registry. Without a connection that stays, each would take the log away and the next make it anew.
    NyFotoListRegistry registry(database());
    const auto onThread = [&registry] {
        std::unique_ptr<QThread> thread(QThread::create([&registry] {
            registry.clearEntry(u"key"_s);
            registry.add(u"key"_s, numbered(0, 100));
        }));
        thread->start();
        return thread->wait();
    };
    const QString log = database() + u"-wal"_s;
    QVERIFY(onThread());
    struct stat before;
    QCOMPARE(::stat(QFile::encodeName(log).constData(), &before), 0);
    const QStringList state = filesState(databaseFolder());
    QVERIFY(onThread());
    QVERIFY(onThread());
    struct stat after;
    QCOMPARE(::stat(QFile::encodeName(log).constData(), &after), 0);
    QCOMPARE(after.st_ino, before.st_ino);
    QCOMPARE(filesState(databaseFolder()), state);
}

void tst_NyFotoListRegistry::smallChangeWritesLittle()
{
    NyFotoListRegistry registry(database());
    registry.add(u"warm-up"_s, numbered(0, 1));
    NyFotoList list = numbered(0, 20000);
    qint64 before = writtenBytes();
    registry.add(u"key"_s, list);
    const qint64 all = writtenBytes() - before;
    QVERIFY(all > 20000 * 40);

    // Ten go and ten come, spread over the list.
    NyFotoList changed;
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (i % 2000 == 1000)
            changed.append(foto(u"/home/anna/Bilder/neu/%1.jpg"_s.arg(i)));
        else
            changed.append(list[i]);
    }
    before = writtenBytes();
    registry.clearEntry(u"key"_s);
    registry.add(u"key"_s, changed);
    const qint64 ten = writtenBytes() - before;
    QVERIFY2(ten > 0 && ten * 10 <= all, qPrintable(u"%1 of %2 bytes"_s.arg(ten).arg(all)));
    QCOMPARE(registry.fotoList(u"key"_s), changed);

    // The window of time moved on: some fall out in front, some come at the end.
    NyFotoList moved(QList<NyFoto>(changed.begin() + 10, changed.end()));
    moved.append(numbered(90000, 90010));
    before = writtenBytes();
    registry.add(u"key"_s, moved);
    QVERIFY((writtenBytes() - before) * 10 <= all);
    QCOMPARE(registry.fotoList(u"key"_s), moved);
}

void tst_NyFotoListRegistry::clearEntryAlone_data()
{
    QTest::addColumn<QString>("how");
    for (const char *how :
        {"read of the key", "read of another list", "write of another key", "used photos", "flush", "clearEntry of another", "destructor"})
        QTest::newRow(how) << QString::fromLatin1(how);
}

void tst_NyFotoListRegistry::clearEntryAlone()
{
    QFETCH(QString, how);
    auto registry = std::make_unique<NyFotoListRegistry>(database());
    NyFotoListRegistry observer(database());
    registry->add(u"key"_s, numbered(0, 10));
    registry->clearEntry(u"key"_s);
    if (how == u"read of the key")
        QVERIFY(registry->fotoList(u"key"_s).isEmpty());
    else if (how == u"read of another list")
        registry->getFotosForBookProposal();
    else if (how == u"write of another key")
        registry->add(u"other"_s, numbered(0, 2));
    else if (how == u"used photos")
        registry->addFotosUsedForBookProposals(numbered(0, 2));
    else if (how == u"flush")
        registry->flush();
    else if (how == u"clearEntry of another")
        registry->clearEntry(u"other"_s);
    else
        registry.reset();
    QVERIFY(observer.fotoList(u"key"_s).isEmpty());
}

void tst_NyFotoListRegistry::clearEntryOfOneSparesOthers()
{
    NyFotoListRegistry registry(database());
    registry.add(u"a"_s, numbered(0, 10));
    registry.add(u"b"_s, numbered(10, 20));
    registry.clearEntry(u"a"_s);
    registry.clearEntry(u"a"_s);
    QCOMPARE(registry.fotoList(u"b"_s), numbered(10, 20));
    QVERIFY(registry.fotoList(u"a"_s).isEmpty());
    // What was written after the clearing stays.
    registry.clearEntry(u"b"_s);
    registry.add(u"b"_s, numbered(3, 5));
    registry.flush();
    QCOMPARE(registry.fotoList(u"b"_s), numbered(3, 5));
}

void tst_NyFotoListRegistry::clearEntryAtApplicationEnd()
{
    NyFotoListRegistry registry;
    registry.add(u"at end"_s, numbered(0, 4));
    QVERIFY(runChild({u"clear-at-exit"_s, u"at end"_s}));
    QVERIFY(registry.fotoList(u"at end"_s).isEmpty());
}

void tst_NyFotoListRegistry::seesOtherProcesses()
{
    NyFotoListRegistry registry(database());
    registry.add(u"key"_s, numbered(0, 100));
    QVERIFY(runChild({u"expect"_s, database(), u"key"_s, u"0"_s, u"100"_s}));
    QVERIFY(runChild({u"add"_s, database(), u"key"_s, u"50"_s, u"120"_s}));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(50, 120));
    // What this object remembers of its own list must not hide that another one is stored by now.
    registry.add(u"key"_s, numbered(0, 100));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(0, 100));
    QVERIFY(runChild({u"expect"_s, database(), u"key"_s, u"0"_s, u"100"_s}));
    QVERIFY(runChild({u"use"_s, database(), u"fotos"_s, u"3"_s}));
    QCOMPARE(registry.fotosUsedForBookProposals().size(), 3);
}

void tst_NyFotoListRegistry::processesAppendTogether()
{
    // No process made the database before: they begin it together.
    QProcess processes[3];
    for (int i = 0; i < 3; ++i)
        processes[i].start(QCoreApplication::applicationFilePath(), {u"--child"_s, u"use"_s, database(), QString::number(i), u"40"_s});
    for (QProcess &process : processes) {
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 0);
        QCOMPARE(process.readAllStandardError(), QByteArray());
    }
    NyFotoListRegistry registry(database());
    const NyFotoList used = registry.fotosUsedForBookProposals();
    QCOMPARE(used.size(), 120);
    // Each process's photos stand in its order.
    int next[3] = {0, 0, 0};
    for (const NyFoto &one : used) {
        const int process = one.location().mid(1, 1).toInt();
        QCOMPARE(one.location(), u"/%1/%2.jpg"_s.arg(process).arg(next[process]++));
    }
    QVERIFY(brokenFiles().isEmpty());
}

void tst_NyFotoListRegistry::killedWriterLeavesWholeList()
{
    NyFotoListRegistry registry(database());
    registry.add(u"list"_s, numbered(0, 2000));
    QProcess writer;
    writer.start(QCoreApplication::applicationFilePath(), {u"--child"_s, u"alternate"_s, database()});
    QVERIFY(writer.waitForStarted());
    int changes = 0;
    qsizetype last = 2000;
    QTRY_VERIFY_WITH_TIMEOUT(([&] {
        const NyFotoList list = registry.fotoList(u"list"_s);
        if (list.size() != last) {
            last = list.size();
            ++changes;
        }
        return (list == numbered(0, 2000) || list == numbered(5000, 9000)) && changes > 2;
    }()),
        20000);
    ::kill(pid_t(writer.processId()), SIGKILL);
    QVERIFY(writer.waitForFinished());
    NyFotoListRegistry after(database());
    const NyFotoList list = after.fotoList(u"list"_s);
    QVERIFY(list == numbered(0, 2000) || list == numbered(5000, 9000));
    after.add(u"list"_s, numbered(1, 5));
    QCOMPARE(registry.fotoList(u"list"_s), numbered(1, 5));
}

void tst_NyFotoListRegistry::threadsHaveTheirOwnConnections()
{
    NyFotoListRegistry registry(database());
    registry.add(u"shared"_s, numbered(0, 10));
    const qsizetype connections = QSqlDatabase::connectionNames().size();
    std::vector<std::unique_ptr<QThread>> threads;
    std::atomic<int> failures{0};
    for (int i = 0; i < 6; ++i) {
        threads.emplace_back(QThread::create([&registry, &failures, i] {
            const QString own = QString::number(i);
            for (int round = 1; round <= 12; ++round) {
                registry.add(own, numbered(i * 100, i * 100 + round));
                if (registry.fotoList(own) != numbered(i * 100, i * 100 + round))
                    ++failures;
                registry.add(u"shared"_s, numbered(0, 10 + round % 3));
                const qsizetype size = registry.fotoList(u"shared"_s).size();
                if (size < 10 || size > 12)
                    ++failures;
                registry.addFotosUsedForBookProposals(NyFotoList{foto(u"/%1/%2"_s.arg(i).arg(round))});
            }
        }));
        threads.back()->start();
    }
    for (const auto &thread : threads)
        QVERIFY(thread->wait());
    QCOMPARE(failures.load(), 0);
    QCOMPARE(registry.fotosUsedForBookProposals().size(), 72);
    QCOMPARE(QSqlDatabase::connectionNames().size(), connections);
}

void tst_NyFotoListRegistry::garbageIsSetAside()
{
    QDir().mkpath(databaseFolder());
    QByteArray garbage(20000, '\0');
    for (qsizetype i = 0; i < garbage.size(); ++i)
        garbage[i] = char(i * 7 % 251);
    put(database(), garbage);
    put(database() + u"-wal"_s, "left behind");
    expectSetAside();
    NyFotoListRegistry registry(database());
    registry.add(u"key"_s, numbered(0, 5));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(0, 5));
    QCOMPARE(brokenFiles().size(), 1);
    QCOMPARE(content(QDir(databaseFolder()).filePath(brokenFiles().constFirst())), garbage);
    // The next damage on the same day gets a name of its own.
    NyFotoListRegistry another(database());
    QVERIFY(QDir(databaseFolder()).entryList({u"*.lock"_s}, QDir::Files).isEmpty());
}

void tst_NyFotoListRegistry::damagedPagesAreSetAside()
{
    {
        NyFotoListRegistry registry(database());
        registry.add(u"key"_s, numbered(0, 5000));
    }
    // Closing the last connection brought everything into the file.
    QByteArray bytes = content(database());
    QVERIFY(bytes.size() > 40 * 4096);
    for (qsizetype page = 5; page < 30; ++page)
        bytes.replace(page * 4096, 4096, QByteArray(4096, '\xa5'));
    put(database(), bytes);
    expectSetAside();
    NyFotoListRegistry registry(database());
    // Found when the file is opened, though this list has no page there.
    QVERIFY(registry.fotoList(u"other"_s).isEmpty());
    QCOMPARE(brokenFiles().size(), 1);
    QVERIFY(registry.fotoList(u"key"_s).isEmpty());
    QCOMPARE(content(QDir(databaseFolder()).filePath(brokenFiles().constFirst())), bytes);
    registry.add(u"key"_s, numbered(1, 3));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(1, 3));
}

void tst_NyFotoListRegistry::damageWhileOpenIsSetAside()
{
    {
        NyFotoListRegistry registry(database());
        registry.add(u"key"_s, numbered(0, 20000));
    }
    NyFotoListRegistry registry(database());
    NyFotoListRegistry neighbour(database());
    QVERIFY(registry.fotoList(u"other"_s).isEmpty());
    QVERIFY(neighbour.fotoList(u"other"_s).isEmpty());
    QFile file(database());
    QVERIFY(file.open(QIODevice::ReadWrite));
    const qint64 pages = file.size() / 4096;
    QVERIFY(pages > 100);
    for (qint64 page = 6; page < pages; ++page) {
        QVERIFY(file.seek(page * 4096));
        QCOMPARE(file.write(QByteArray(4096, '\xa5')), 4096);
    }
    file.close();
    expectSetAside();
    QVERIFY(registry.fotoList(u"key"_s).isEmpty());
    QCOMPARE(brokenFiles().size(), 1);
    registry.add(u"key"_s, numbered(1, 3));
    // Whoever had the old file open goes over to the new one without a word.
    QCOMPARE(neighbour.fotoList(u"key"_s), numbered(1, 3));
    neighbour.add(u"key"_s, numbered(1, 4));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(1, 4));
    QCOMPARE(brokenFiles().size(), 1);
}

void tst_NyFotoListRegistry::foreignDatabaseIsSetAside()
{
    QDir().mkpath(databaseFolder());
    {
        QSqlDatabase foreign = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"foreign"_s);
        foreign.setDatabaseName(database());
        QVERIFY(foreign.open());
        QSqlQuery query(foreign);
        QVERIFY(query.exec(u"CREATE TABLE recipes (title TEXT)"_s));
    }
    QSqlDatabase::removeDatabase(u"foreign"_s);
    const QByteArray bytes = content(database());
    expectSetAside();
    NyFotoListRegistry registry(database());
    registry.add(u"key"_s, numbered(0, 5));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(0, 5));
    QCOMPARE(content(QDir(databaseFolder()).filePath(brokenFiles().constFirst())), bytes);
}

void tst_NyFotoListRegistry::emptyFileIsTaken()
{
    QDir().mkpath(databaseFolder());
    put(database(), QByteArray());
    NyFotoListRegistry registry(database());
    registry.add(u"key"_s, numbered(0, 5));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(0, 5));
    QVERIFY(brokenFiles().isEmpty());
}

void tst_NyFotoListRegistry::newerVersionIsLeftAlone()
{
    {
        NyFotoListRegistry registry(database());
        registry.add(u"key"_s, numbered(0, 5));
    }
    {
        QSqlDatabase newer = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"newer"_s);
        newer.setDatabaseName(database());
        QVERIFY(newer.open());
        QSqlQuery query(newer);
        QVERIFY(query.exec(u"PRAGMA user_version = 2"_s));
    }
    QSqlDatabase::removeDatabase(u"newer"_s);
    const QByteArray bytes = content(database());
    // One line, however often it is asked.
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"photolists\\.sqlite\" was written by a newer version \\( 2 \\)"_s));
    {
        NyFotoListRegistry registry(database());
        QVERIFY(registry.fotoList(u"key"_s).isEmpty());
        registry.add(u"key"_s, numbered(7, 9));
        QVERIFY(registry.fotoList(u"key"_s).isEmpty());
        registry.addFotosUsedForBookProposals(numbered(0, 1));
        registry.clearEntry(u"key"_s);
    }
    QCOMPARE(content(database()), bytes);
    QVERIFY(brokenFiles().isEmpty());
}

void tst_NyFotoListRegistry::removedFileIsMadeAgain()
{
    NyFotoListRegistry registry(database());
    registry.add(u"key"_s, numbered(0, 5));
    QVERIFY(QDir(databaseFolder()).removeRecursively());
    QVERIFY(registry.fotoList(u"key"_s).isEmpty());
    registry.add(u"key"_s, numbered(0, 5));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(0, 5));
    QVERIFY(QFileInfo::exists(database()));
    QVERIFY(runChild({u"expect"_s, database(), u"key"_s, u"0"_s, u"5"_s}));
}

void tst_NyFotoListRegistry::fullDiskKeepsOldList()
{
    NySmallDisk disk("2m");
    if (!disk.isMounted())
        QSKIP("mounting a small disk is refused here");
    const QString path = disk.filePath(u"photolists.sqlite"_s);
    NyFotoListRegistry registry(path);
    registry.add(u"key"_s, numbered(0, 100));
    registry.addFotosUsedForBookProposals(numbered(0, 20));
    QVERIFY(disk.fill());

    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot store a photo list in the database .*photolists\\.sqlite"_s));
    registry.add(u"key"_s, numbered(500, 9000));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(0, 100));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot add to a photo list in the database .*photolists\\.sqlite"_s));
    registry.addFotosUsedForBookProposals(numbered(500, 9000));
    QCOMPARE(registry.fotosUsedForBookProposals(), numbered(0, 20));

    QVERIFY(disk.clear());
    registry.add(u"key"_s, numbered(500, 700));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(500, 700));
    QCOMPARE(registry.fotosUsedForBookProposals(), numbered(0, 20));
    QVERIFY(QDir(disk.path()).entryList({u"*.broken*"_s}).isEmpty());
}

void tst_NyFotoListRegistry::fullDiskAtStart()
{
    NySmallDisk disk("2m");
    if (!disk.isMounted())
        QSKIP("mounting a small disk is refused here");
    // A name that means something in a URL.
    const QString path = disk.filePath(u"photo lists 100%3f?#.sqlite"_s);
    {
        NyFotoListRegistry registry(path);
        registry.add(u"key"_s, numbered(0, 100));
        registry.addFotosUsedForBookProposals(numbered(0, 20));
    }
    QVERIFY(!QFileInfo::exists(path + u"-wal"_s));
    QVERIFY(disk.fill());
    NyFotoListRegistry registry(path);
    // What is stored can be read, though SQLite finds no room for its log.
    QCOMPARE(registry.fotoList(u"key"_s), numbered(0, 100));
    QCOMPARE(registry.fotosUsedForBookProposals(), numbered(0, 20));
    registry.add(u"key"_s, numbered(0, 100));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot (open|store).*photo lists 100%3f"_s));
    registry.add(u"key"_s, numbered(0, 101));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(0, 100));
    QVERIFY(disk.clear());
    registry.add(u"key"_s, numbered(0, 101));
    QCOMPARE(registry.fotoList(u"key"_s), numbered(0, 101));
    QCOMPARE(registry.fotosUsedForBookProposals(), numbered(0, 20));
}

void tst_NyFotoListRegistry::folderThatCannotBeMade()
{
    put(m_folder->filePath(u"lists"_s), "a file where the folder should be");
    NyFotoListRegistry registry(database());
    const QRegularExpression line(u"cannot open the database .*photolists\\.sqlite"_s);
    QTest::ignoreMessage(QtWarningMsg, line);
    registry.add(u"key"_s, numbered(0, 5));
    QTest::ignoreMessage(QtWarningMsg, line);
    QVERIFY(registry.fotoList(u"key"_s).isEmpty());
    QCOMPARE(content(m_folder->filePath(u"lists"_s)), QByteArray("a file where the folder should be"));
}

void tst_NyFotoListRegistry::invalidTextIsReported()
{
    // Half of a surrogate pair is no text in any encoding, so no file bears this name.
    const NyFotoList list{foto(u"/a.jpg"_s), foto(u"/x"_s + QChar(0xd83c) + u".jpg"_s), foto(u"/b.jpg"_s)};
    NyFotoListRegistry registry(database());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no valid text and cannot be kept exactly"_s));
    registry.add(u"key"_s, list);
    const NyFotoList stored = registry.fotoList(u"key"_s);
    QCOMPARE(stored.size(), 3);
    QCOMPARE(stored[0], list[0]);
    QCOMPARE(stored[2], list[2]);
    // Not again for a list that has not changed.
    registry.add(u"key"_s, list);
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 2 && arguments.at(1) == u"--child")
        return child(arguments.mid(2));
    tst_NyFotoListRegistry test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_NyFotoListRegistry.moc"
