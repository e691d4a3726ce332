#include <QTest>

#include <csignal>
#include <thread>

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTimeZone>

#include <NyDirectoryConfig.h>
#include <NyProgramConfig.h>
#include <NySettings.h>
#include <NySettingsLock.h>

#include "NySmallDisk.h"

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace
{

QString settingsPath()
{
    return NyDirectoryConfig::instance().settingsFile();
}

QByteArray stored()
{
    QFile file(settingsPath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void store(const QByteArray &content)
{
    QDir().mkpath(QFileInfo(settingsPath()).absolutePath());
    QFile file(settingsPath());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

NyConfigItem<QString> textItem(const QString &value = QString(), bool programScope = false)
{
    return {value, value, u"text"_s, programScope};
}

NyConfigItem<int> numberItem(int value = 0, const QString &key = u"number"_s)
{
    return {value, value, key, false};
}

QString loadedText(const QString &key = u"text"_s, bool programScope = false)
{
    NyConfigItem<QString> item(u"default"_s, u"default"_s, key, programScope);
    NySettings().load(item);
    return item.value();
}

int loadedNumber(const QString &key = u"number"_s)
{
    NyConfigItem<int> item(-1, -1, key, false);
    NySettings().load(item);
    return item.value();
}

/** This program again, in a part of its own. */
class OtherProcess : public QProcess
{
public:
    explicit OtherProcess(const QStringList &arguments)
    {
        setProcessChannelMode(QProcess::ForwardedErrorChannel);
        start(QCoreApplication::applicationFilePath(), QStringList{u"--child"_s} + arguments);
    }
    ~OtherProcess() override
    {
        if (state() != NotRunning) {
            ::kill(static_cast<pid_t>(processId()), SIGCONT);
            kill();
            waitForFinished();
        }
    }
    bool said(const QByteArray &word)
    {
        while (!canReadLine()) {
            if (!waitForReadyRead(10000))
                return false;
        }
        return readLine().trimmed() == word;
    }
    int result()
    {
        const bool ended = state() == NotRunning || waitForFinished(30000);
        return ended && exitStatus() == NormalExit ? exitCode() : -1;
    }
};

int runChild(const QStringList &arguments)
{
    const QString what = arguments.value(0);
    const NySettings settings;
    if (what == u"count") {
        // Counts up one shared number and one of its own, the whole of each step under the lock.
        const QString own = arguments.value(1);
        const int rounds = arguments.value(2).toInt();
        NyConfigItem<int> shared(0, 0, u"shared"_s, false);
        NyConfigItem<int> mine(0, 0, own, false);
        for (int i = 0; i < rounds; ++i) {
            const NySettingsLock lock;
            if (!lock.isLocked())
                return 2;
            settings.load(shared);
            settings.load(mine);
            shared.setValue(shared.value() + 1);
            mine.setValue(mine.value() + 1);
            settings.save(shared);
            settings.save(mine);
        }
        return 0;
    }
    if (what == u"write") {
        NyConfigItem<QString> item(QString(), QString(), u"text"_s, false);
        item.setValue(arguments.value(1));
        settings.save(item);
        return 0;
    }
    if (what == u"hold") {
        const NySettingsLock lock;
        std::fputs(lock.isLocked() ? "held\n" : "free\n", stdout);
        std::fflush(stdout);
        for (;;)
            ::pause();
    }
    return 3;
}

} // namespace

class tst_NySettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void missingFileGivesDefaults();
    void roundTripOfTexts_data();
    void roundTripOfTexts();
    void roundTripOfTimes_data();
    void roundTripOfTimes();
    void roundTripOfDates();
    void roundTripOfNumbersAndFlags();
    void timesSurviveAChangeOfTimeZone();
    void hostileKey();
    void scopes();

    void unchangedItemIsLeftAlone();
    void unchangedItemIsWrittenWhenNotStored();
    void changedItemOverwrites();
    void assignedItemIsWrittenWithoutLoading();
    void untouchedItemIsLeftAloneWithoutLoading();
    void seesWhatAnotherProcessWrote();
    void unknownKeysAndCommentsStay();
    void valuesWrittenByHand();
    void unusableValue_data();
    void unusableValue();
    void changesUnderOneLockAreWrittenTogether();
    void savingTheSameWritesNothing();
    void linkedFileStaysALink();

    void brokenFileIsSetAside_data();
    void brokenFileIsSetAside();
    void secondBrokenFileKeepsTheFirst();
    void unreadableFileIsNotOverwritten();

    void lockIsRecursive();
    void lockBetweenThreads();
    void writersInTwoProcesses();
    void lockOfADeadProcessIsTakenOver();
    void lockFileWithoutOwnerIsTakenOver();
    void livingHolderDelaysForABoundedTime();
    void readingNeedsNoLock();

    void fullDiskKeepsTheOldFile();
    void unwritableFolder();
};

void tst_NySettings::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
}

void tst_NySettings::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    QDir(QFileInfo(settingsPath()).absolutePath()).removeRecursively();
}

void tst_NySettings::cleanup()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
}

void tst_NySettings::missingFileGivesDefaults()
{
    NyConfigItem<QString> item = textItem(u"kept"_s);
    NySettings().load(item);
    QCOMPARE(item.value(), u"kept"_s);
    QVERIFY(!QFile::exists(settingsPath()));
}

void tst_NySettings::roundTripOfTexts_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("empty") << u""_s;
    QTest::newRow("plain") << u"/home/tom/Bilder"_s;
    QTest::newRow("blanks at the ends") << u"  a b  "_s;
    QTest::newRow("quotes and escapes") << u"a\"b\\n\\\\c\\"_s;
    QTest::newRow("line breaks") << u"a\nb\r\nc\rd\te"_s;
    QTest::newRow("looks like a group") << u"[common]"_s;
    QTest::newRow("looks like a comment") << u"# ; // a=b"_s;
    QTest::newRow("percent") << u"%1 %20 %%"_s;
    QTest::newRow("composed") << u"Fotos von M\u00fcller"_s;
    QTest::newRow("decomposed") << u"Fotos von Mu\u0308ller"_s;
    QTest::newRow("beyond the base plane") << QString::fromUcs4(U"\U0001F4F7 \U0001F600");
    QTest::newRow("half a pair") << (u"a"_s + QChar(0xd83d) + u"b"_s + QChar(0xde00));
    QTest::newRow("half a pair at the end") << (u"a"_s + QChar(0xd83d));
    QTest::newRow("NUL inside") << (u"a"_s + QChar(0) + u"b"_s);
    QTest::newRow("line separators") << (u"a"_s + QChar(0x2028) + QChar(0x2029) + QChar(0x85) + QChar(0xfeff) + QChar(0xffff));
    QTest::newRow("right to left") << u"\u05e9\u05dc\u05d5\u05dd \u202e"_s;
    QTest::newRow("long") << QString(100'000, u'x');
}

void tst_NySettings::roundTripOfTexts()
{
    QFETCH(QString, text);
    NyConfigItem<QString> item = textItem();
    item.setValue(text);
    NySettings().save(item);
    QCOMPARE(loadedText(), text);
    // Another process reads the bytes, not this one's memory of them.
    const QByteArray bytes = stored();
    QVERIFY(!bytes.contains('\0'));
    store(bytes + "# touched\n");
    QCOMPARE(loadedText(), text);
}

void tst_NySettings::roundTripOfTimes_data()
{
    QTest::addColumn<QDateTime>("time");

    QTest::newRow("invalid") << QDateTime();
    QTest::newRow("local") << QDateTime(QDate(2026, 7, 2), QTime(18, 0, 0, 7));
    QTest::newRow("UTC") << QDateTime(QDate(2026, 7, 2), QTime(23, 59, 59, 999), Qt::UTC);
    QTest::newRow("offset") << QDateTime(QDate(2026, 1, 1), QTime(0, 30), Qt::OffsetFromUTC, 5 * 3600 + 1800);
    QTest::newRow("zone") << QDateTime(QDate(2026, 7, 2), QTime(12, 0), QTimeZone("Australia/Sydney"));
    QTest::newRow("first of the two hours") << QDateTime(QDate(2026, 10, 25), QTime(0, 30), Qt::UTC);
    QTest::newRow("second of the two hours") << QDateTime(QDate(2026, 10, 25), QTime(1, 30), Qt::UTC);
    QTest::newRow("before 1970") << QDateTime(QDate(1901, 2, 3), QTime(4, 5, 6, 789), Qt::UTC);
}

void tst_NySettings::roundTripOfTimes()
{
    QFETCH(QDateTime, time);
    NyConfigItem<QDateTime> item(QDateTime::currentDateTime(), QDateTime(), u"time"_s, true);
    item.setValue(time);
    NySettings().save(item);
    NyConfigItem<QDateTime> read(QDateTime::currentDateTime(), QDateTime(), u"time"_s, true);
    NySettings().load(read);
    QCOMPARE(read.value(), time);
    QCOMPARE(read.value().isValid(), time.isValid());
    if (time.isValid()) {
        QCOMPARE(read.value().toMSecsSinceEpoch(), time.toMSecsSinceEpoch());
        QCOMPARE(read.value().timeSpec(), Qt::LocalTime);
    }
}

void tst_NySettings::roundTripOfDates()
{
    for (const QDate &date : {QDate(2026, 7, 2), QDate(2024, 2, 29), QDate(1582, 10, 15), QDate()}) {
        NyConfigItem<QDate> item(QDate(2000, 1, 1), QDate(), u"date"_s, true);
        item.setValue(date);
        NySettings().save(item);
        NyConfigItem<QDate> read(QDate(2000, 1, 1), QDate(), u"date"_s, true);
        NySettings().load(read);
        QCOMPARE(read.value(), date);
    }
}

void tst_NySettings::roundTripOfNumbersAndFlags()
{
    for (const int number : {0, 1, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        NyConfigItem<int> item = numberItem();
        item.setValue(number);
        NySettings().save(item);
        QCOMPARE(loadedNumber(), number);
    }
    for (const bool flag : {true, false}) {
        NyConfigItem<bool> item(!flag, !flag, u"flag"_s, false);
        item.setValue(flag);
        NySettings().save(item);
        NyConfigItem<bool> read(!flag, !flag, u"flag"_s, false);
        NySettings().load(read);
        QCOMPARE(read.value(), flag);
    }
}

void tst_NySettings::timesSurviveAChangeOfTimeZone()
{
    const QByteArray before = qgetenv("TZ");
    const bool wasSet = qEnvironmentVariableIsSet("TZ");
    qputenv("TZ", "Europe/Berlin");
    NyConfigItem<QDateTime> item(QDateTime(), QDateTime(), u"time"_s, true);
    item.setValue(QDateTime(QDate(2026, 7, 2), QTime(18, 0)));
    const qint64 moment = item.value().toMSecsSinceEpoch();
    NySettings().save(item);
    qputenv("TZ", "America/New_York");
    NyConfigItem<QDateTime> read(QDateTime(), QDateTime(), u"time"_s, true);
    NySettings().load(read);
    const qint64 readMoment = read.value().toMSecsSinceEpoch();
    const QTime readTime = read.value().time();
    if (wasSet)
        qputenv("TZ", before);
    else
        qunsetenv("TZ");
    QCOMPARE(readMoment, moment);
    QCOMPARE(readTime, QTime(12, 0));
    QVERIFY2(stored().contains("time=2026-07-02T18:00:00.000+02:00"), stored().constData());
}

void tst_NySettings::hostileKey()
{
    const QString key = u" a=b]\n[x] %1 \u00e4\"; "_s;
    NyConfigItem<int> item = numberItem(0, key);
    item.setValue(7);
    NySettings().save(item);
    store(stored() + "\n");
    QCOMPARE(loadedNumber(key), 7);
}

void tst_NySettings::scopes()
{
    NyConfigItem<QString> common = textItem();
    NyConfigItem<QString> own = textItem(QString(), true);
    common.setValue(u"for all"_s);
    own.setValue(u"for the service"_s);
    NySettings().save(common);
    NySettings().save(own);

    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    QCOMPARE(loadedText(u"text"_s, false), u"for all"_s);
    QCOMPARE(loadedText(u"text"_s, true), u"default"_s);
    NyConfigItem<QString> other = textItem(QString(), true);
    other.setValue(u"for the window"_s);
    NySettings().save(other);

    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    QCOMPARE(loadedText(u"text"_s, true), u"for the service"_s);
    QCOMPARE(
        stored(), "[common]\ntext=\"for all\"\n\n[quilloservice]\ntext=\"for the service\"\n\n[velmora-albuma]\ntext=\"for the window\"\n");
}

void tst_NySettings::unchangedItemIsLeftAlone()
{
    store("[common]\ntext=\"old\"\n");
    NyConfigItem<QString> item = textItem();
    NySettings().load(item);
    QCOMPARE(OtherProcess({u"write"_s, u"from the preferences"_s}).result(), 0);
    NySettings().save(item);
    QCOMPARE(loadedText(), u"from the preferences"_s);
    // Changed and changed back is unchanged, too.
    item.setValue(u"something"_s);
    item.setValue(u"old"_s);
    NySettings().save(item);
    QCOMPARE(loadedText(), u"from the preferences"_s);
}

void tst_NySettings::unchangedItemIsWrittenWhenNotStored()
{
    NyConfigItem<QString> item = textItem(u"default of this class"_s);
    NySettings().load(item);
    NySettings().save(item);
    QCOMPARE(loadedText(), u"default of this class"_s);
}

void tst_NySettings::changedItemOverwrites()
{
    store("[common]\ntext=\"old\"\n");
    NyConfigItem<QString> item = textItem();
    NySettings().load(item);
    QCOMPARE(OtherProcess({u"write"_s, u"from the preferences"_s}).result(), 0);
    item.setValue(u"mine"_s);
    NySettings().save(item);
    QCOMPARE(loadedText(), u"mine"_s);
    // Once written it is unchanged again.
    QCOMPARE(OtherProcess({u"write"_s, u"later"_s}).result(), 0);
    NySettings().save(item);
    QCOMPARE(loadedText(), u"later"_s);
}

void tst_NySettings::assignedItemIsWrittenWithoutLoading()
{
    store("[common]\nnumber=5\n");
    NyConfigItem<int> item = numberItem(0);
    item.setValue(0);
    NySettings().save(item);
    QCOMPARE(loadedNumber(), 0);
}

void tst_NySettings::untouchedItemIsLeftAloneWithoutLoading()
{
    store("[common]\nnumber=5\n");
    NyConfigItem<int> item = numberItem(0);
    NySettings().save(item);
    QCOMPARE(loadedNumber(), 5);
}

void tst_NySettings::seesWhatAnotherProcessWrote()
{
    NyConfigItem<QString> item = textItem();
    // Texts of one length, so that neither the file's size nor anything but its content tells them apart.
    for (const QString &text : {u"aaa"_s, u"bbb"_s, u"ccc"_s, u"ddd"_s}) {
        QCOMPARE(OtherProcess({u"write"_s, text}).result(), 0);
        NySettings().load(item);
        QCOMPARE(item.value(), text);
    }
    // Written in place, so that the file stays the same but for its times.
    for (const QByteArray &text : {"eee"_ba, "fff"_ba, "ggg"_ba}) {
        store("[common]\ntext=\"" + text + "\"\n");
        NySettings().load(item);
        QCOMPARE(item.value(), QString::fromLatin1(text));
    }
}

void tst_NySettings::unknownKeysAndCommentsStay()
{
    store("# by hand\n\n[common]\n; a note\nother = 1\nnumber=5\n\n[strange group]\nx=y\n");
    NyConfigItem<int> item = numberItem();
    item.setValue(6);
    NySettings().save(item);
    NyConfigItem<QString> text = textItem();
    text.setValue(u"new"_s);
    NySettings().save(text);
    QCOMPARE(stored(), "# by hand\n\n[common]\n; a note\nother = 1\nnumber=6\ntext=\"new\"\n\n[strange group]\nx=y\n");
}

void tst_NySettings::valuesWrittenByHand()
{
    store("\xef\xbb\xbf[common]\r\n text = no quotes \r\nnumber = 12 \r\n flag=TRUE\r\n[common]\r\nnumber=13");
    QCOMPARE(loadedText(), u"no quotes"_s);
    QCOMPARE(loadedNumber(), 13);
    NyConfigItem<bool> flag(false, false, u"flag"_s, false);
    NySettings().load(flag);
    QVERIFY(flag.value());
}

void tst_NySettings::unusableValue_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("key");

    QTest::newRow("no number") << "number=many"_ba << u"number"_s;
    QTest::newRow("too large a number") << "number=99999999999"_ba << u"number"_s;
    QTest::newRow("no flag") << "flag=perhaps"_ba << u"flag"_s;
    QTest::newRow("no date") << "date=2026-02-30"_ba << u"date"_s;
    QTest::newRow("no time") << "time=yesterday"_ba << u"time"_s;
}

void tst_NySettings::unusableValue()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, key);
    store("[common]\n" + line + "\n");
    const QString value = QString::fromLatin1(line.sliced(line.indexOf('=') + 1));
    const QString warning = u"unusable value in %1 group common key %2 value %3"_s.arg(settingsPath(), key, value);
    // Once, though it is read several times.
    QTest::ignoreMessage(QtWarningMsg, warning.toUtf8().constData());

    const QDateTime now = QDateTime::currentDateTime();
    NyConfigItem<int> number(3, 3, u"number"_s, false);
    NyConfigItem<bool> flag(true, true, u"flag"_s, false);
    NyConfigItem<QDate> date(now.date(), now.date(), u"date"_s, false);
    NyConfigItem<QDateTime> time(now, now, u"time"_s, false);
    for (int i = 0; i < 2; ++i) {
        NySettings().load(number);
        NySettings().load(flag);
        NySettings().load(date);
        NySettings().load(time);
    }
    QCOMPARE(number.value(), 3);
    QCOMPARE(flag.value(), true);
    QCOMPARE(date.value(), now.date());
    QCOMPARE(time.value(), now);

    // The next save puts it right.
    NySettings().save(number);
    NySettings().save(flag);
    NySettings().save(date);
    NySettings().save(time);
    QVERIFY2(!stored().contains(line), stored().constData());
}

void tst_NySettings::changesUnderOneLockAreWrittenTogether()
{
    NyConfigItem<int> number = numberItem();
    NyConfigItem<QString> text = textItem();
    {
        const NySettingsLock lock;
        number.setValue(1);
        text.setValue(u"one"_s);
        NySettings().save(number);
        NySettings().save(text);
        QVERIFY(!QFile::exists(settingsPath()));
        // This process sees them at once.
        QCOMPARE(loadedNumber(), 1);
        QCOMPARE(loadedText(), u"one"_s);
    }
    QCOMPARE(stored(), "[common]\nnumber=1\ntext=\"one\"\n");
}

void tst_NySettings::savingTheSameWritesNothing()
{
    NyConfigItem<int> item = numberItem();
    item.setValue(4);
    NySettings().save(item);
    const QFileInfo before(settingsPath());
    const QDateTime time = before.lastModified();
    struct stat first;
    struct stat second;
    QCOMPARE(::stat(QFile::encodeName(settingsPath()).constData(), &first), 0);
    NyConfigItem<int> again = numberItem();
    again.setValue(4);
    NySettings().save(again);
    QCOMPARE(::stat(QFile::encodeName(settingsPath()).constData(), &second), 0);
    QCOMPARE(second.st_ino, first.st_ino);
    QCOMPARE(QFileInfo(settingsPath()).lastModified(), time);
}

void tst_NySettings::linkedFileStaysALink()
{
    QTemporaryDir elsewhere;
    const QString target = elsewhere.filePath(u"settings of mine.ini"_s);
    QDir().mkpath(QFileInfo(settingsPath()).absolutePath());
    QFile file(target);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[common]\nnumber=1\n");
    file.close();
    QVERIFY(QFile::link(target, settingsPath()));
    QCOMPARE(loadedNumber(), 1);
    NyConfigItem<int> item = numberItem();
    item.setValue(2);
    NySettings().save(item);
    QVERIFY(QFileInfo(settingsPath()).isSymLink());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), "[common]\nnumber=2\n");
}

void tst_NySettings::brokenFileIsSetAside_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("problem");

    QTest::newRow("NUL bytes") << QByteArray(4096, '\0') << u"a NUL byte in it"_s;
    QTest::newRow("NUL bytes at the end") << "[common]\nnumber=5\n"_ba + QByteArray(100, '\0') << u"a NUL byte in it"_s;
    QTest::newRow("no UTF-8") << "[common]\ntext=\"\xff\xfe\"\n"_ba << u"bytes that are no UTF-8"_s;
    QTest::newRow("cut off in a character") << "[common]\nnumber=5\ntext=\"\xc3"_ba << u"bytes that are no UTF-8"_s;
    QTest::newRow("cut off in a text") << "[common]\nnumber=5\ntext=\"abc"_ba << u"line 3 has an unfinished text"_s;
    QTest::newRow("cut off in an escape") << "[common]\nnumber=5\ntext=\"abc\\"_ba << u"line 3 has an unfinished text"_s;
    QTest::newRow("cut off in a code") << "[common]\nnumber=5\ntext=\"abc\\u12"_ba << u"line 3 has an unfinished text"_s;
    QTest::newRow("cut off in a key") << "[common]\nnumber=5\nte"_ba << u"line 3 is no value of a group"_s;
    QTest::newRow("cut off in a group") << "[common]\nnumber=5\n[quil"_ba << u"line 3 is no group"_s;
    QTest::newRow("no group") << "number=5\n"_ba << u"line 1 is no value of a group"_s;
    QTest::newRow("another kind of file") << "<xml/>\n"_ba << u"line 1 is no value of a group"_s;
    QTest::newRow("merge left over") << "<<<<<<< HEAD\n[common]\n"_ba << u"line 1 is no value of a group"_s;
    QTest::newRow("huge") << QByteArray(16 * 1024 * 1024 + 1, '\n') << u"larger than any settings"_s;
}

void tst_NySettings::brokenFileIsSetAside()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, problem);
    store(content);
    const QString aside = settingsPath() + u".broken"_s;
    const QString warning = u"broken settings: %1 %2 set aside as %3"_s.arg(settingsPath(), problem, aside);
    QTest::ignoreMessage(QtWarningMsg, warning.toUtf8().constData());
    QCOMPARE(loadedNumber(), -1);
    QVERIFY(!QFile::exists(settingsPath()));
    QFile broken(aside);
    QVERIFY(broken.open(QIODevice::ReadOnly));
    QCOMPARE(broken.readAll(), content);
    // A new file begins.
    NyConfigItem<int> item = numberItem();
    item.setValue(9);
    NySettings().save(item);
    QCOMPARE(stored(), "[common]\nnumber=9\n");
}

void tst_NySettings::secondBrokenFileKeepsTheFirst()
{
    const QString first = settingsPath() + u".broken"_s;
    const QString second = settingsPath() + u".2.broken"_s;
    for (const QString &aside : {first, second}) {
        store("broken for " + QFileInfo(aside).fileName().toLatin1());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"set aside as "_s + QRegularExpression::escape(aside)));
        QCOMPARE(loadedNumber(), -1);
    }
    for (const QString &aside : {first, second}) {
        QFile file(aside);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "broken for " + QFileInfo(aside).fileName().toLatin1());
    }
}

void tst_NySettings::unreadableFileIsNotOverwritten()
{
    // A folder in its place cannot be read by anybody, not even by root.
    QVERIFY(QDir().mkpath(settingsPath() + u"/inside"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot read the settings "_s + settingsPath()));
    QCOMPARE(loadedNumber(), -1);
    QCOMPARE(loadedNumber(), -1);
    NyConfigItem<int> item = numberItem();
    item.setValue(5);
    QTest::ignoreMessage(QtWarningMsg, (u"settings are not saved, the file cannot be read: "_s + settingsPath()).toUtf8().constData());
    NySettings().save(item);
    QVERIFY(QFileInfo(settingsPath() + u"/inside"_s).isDir());
    // What could not be written is written with the next change.
    QVERIFY(QDir(settingsPath()).removeRecursively());
    NyConfigItem<QString> text = textItem();
    text.setValue(u"later"_s);
    NySettings().save(text);
    QCOMPARE(loadedNumber(), 5);
    QVERIFY2(stored().contains("number=5\n"), stored().constData());
}

void tst_NySettings::lockIsRecursive()
{
    const NySettingsLock outer;
    QVERIFY(outer.isLocked());
    {
        const NySettingsLock inner;
        QVERIFY(inner.isLocked());
    }
    // Still held for others.
    QLockFile other(settingsPath() + u".lock"_s);
    QVERIFY(!other.tryLock(0));
}

void tst_NySettings::lockBetweenThreads()
{
    constexpr int rounds = 15;
    const auto count = [](const QString &own) {
        const NySettings settings;
        NyConfigItem<int> shared(0, 0, u"shared"_s, false);
        NyConfigItem<int> mine(0, 0, own, false);
        for (int i = 0; i < rounds; ++i) {
            const NySettingsLock lock;
            settings.load(shared);
            settings.load(mine);
            shared.setValue(shared.value() + 1);
            mine.setValue(mine.value() + 1);
            settings.save(shared);
            settings.save(mine);
        }
    };
    std::thread a(count, u"a"_s);
    std::thread b(count, u"b"_s);
    a.join();
    b.join();
    QCOMPARE(loadedNumber(u"shared"_s), 2 * rounds);
    QCOMPARE(loadedNumber(u"a"_s), rounds);
    QCOMPARE(loadedNumber(u"b"_s), rounds);
}

void tst_NySettings::writersInTwoProcesses()
{
    constexpr int rounds = 20;
    OtherProcess a({u"count"_s, u"a"_s, QString::number(rounds)});
    OtherProcess b({u"count"_s, u"b"_s, QString::number(rounds)});
    // A reader never sees half a file: that would be set aside with a warning.
    while (a.state() != QProcess::NotRunning && !a.waitForFinished(1))
        loadedNumber(u"shared"_s);
    QCOMPARE(a.result(), 0);
    QCOMPARE(b.result(), 0);
    QCOMPARE(loadedNumber(u"shared"_s), 2 * rounds);
    QCOMPARE(loadedNumber(u"a"_s), rounds);
    QCOMPARE(loadedNumber(u"b"_s), rounds);
}

void tst_NySettings::lockOfADeadProcessIsTakenOver()
{
    OtherProcess holder({u"hold"_s});
    QVERIFY(holder.said("held"));
    holder.kill();
    QVERIFY(holder.waitForFinished(10000));
    QVERIFY(QFile::exists(settingsPath() + u".lock"_s));
    QElapsedTimer time;
    time.start();
    const NySettingsLock lock;
    QVERIFY(lock.isLocked());
    QVERIFY(time.elapsed() < 1000);
}

void tst_NySettings::lockFileWithoutOwnerIsTakenOver()
{
    // What a crash or a full disk leaves: an empty lock file, some time old.
    QDir().mkpath(QFileInfo(settingsPath()).absolutePath());
    QFile leftover(settingsPath() + u".lock"_s);
    QVERIFY(leftover.open(QIODevice::WriteOnly));
    QVERIFY(leftover.setFileTime(QDateTime::currentDateTime().addSecs(-60), QFileDevice::FileModificationTime));
    leftover.close();
    const NySettingsLock lock;
    QVERIFY(lock.isLocked());
}

void tst_NySettings::livingHolderDelaysForABoundedTime()
{
    OtherProcess holder({u"hold"_s});
    QVERIFY(holder.said("held"));
    // Stopped, as by a debugger or a full memory: alive, but it will not let go.
    QCOMPARE(::kill(static_cast<pid_t>(holder.processId()), SIGSTOP), 0);
    const QString warning = u"settings are held by another process for too long: %1 tst_NySettings %2"_s.arg(
        settingsPath(), QString::number(holder.processId()));
    QTest::ignoreMessage(QtWarningMsg, warning.toUtf8().constData());
    QElapsedTimer time;
    time.start();
    NyConfigItem<int> item = numberItem();
    item.setValue(11);
    NySettings().save(item);
    QVERIFY2(time.elapsed() < 4500, QByteArray::number(time.elapsed()).constData());
    QVERIFY2(time.elapsed() >= 2900, QByteArray::number(time.elapsed()).constData());
    // The user's wish is kept all the same.
    QVERIFY(stored().contains("number=11"));
}

void tst_NySettings::readingNeedsNoLock()
{
    store("[common]\nnumber=8\n");
    OtherProcess holder({u"hold"_s});
    QVERIFY(holder.said("held"));
    QElapsedTimer time;
    time.start();
    QCOMPARE(loadedNumber(), 8);
    QVERIFY(time.elapsed() < 1000);
}

void tst_NySettings::fullDiskKeepsTheOldFile()
{
    NySmallDisk disk;
    if (!disk.isMounted())
        QSKIP("mounting is not allowed here");
    // The settings folder is a link to the small disk; its lock file lies there, too.
    const QString folder = QFileInfo(settingsPath()).absolutePath();
    QVERIFY(QDir().mkpath(QFileInfo(folder).absolutePath()));
    QVERIFY(QFile::link(disk.path(), folder));
    const QByteArray old = "[common]\nnumber=1\ntext=\"" + QByteArray(6000, 'a') + "\"\n";
    store(old);
    QVERIFY(disk.fill());

    NyConfigItem<int> number = numberItem();
    NySettings().load(number);
    number.setValue(2);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot make the lock file "_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^settings are not saved: "_s + settingsPath()));
    NySettings().save(number);
    QCOMPARE(stored(), old);
    QCOMPARE(QDir(disk.path()).entryList({u"settings.ini*"_s}, QDir::Files), QStringList{u"settings.ini"_s});

    // With one block left, too little for the file, though enough for the lock.
    QVERIFY(disk.clear());
    QVERIFY(disk.fill(4096 * 2));
    NyConfigItem<QString> text = textItem();
    text.setValue(QString(20'000, u'b'));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^settings are not saved: "_s + settingsPath()));
    NySettings().save(text);
    QCOMPARE(stored(), old);

    // With room again, the next change takes both with it.
    QVERIFY(disk.clear());
    NyConfigItem<int> other = numberItem(0, u"other"_s);
    other.setValue(3);
    NySettings().save(other);
    QCOMPARE(stored(), "[common]\nnumber=2\ntext=\"" + QByteArray(20'000, 'b') + "\"\nother=3\n");
    QVERIFY(QFile::remove(folder));
}

void tst_NySettings::unwritableFolder()
{
    // A file where the folder should be: neither lock nor settings can be made, whoever asks.
    const QString folder = QFileInfo(settingsPath()).absolutePath();
    QVERIFY(QDir().mkpath(QFileInfo(folder).absolutePath()));
    QFile obstacle(folder);
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    NyConfigItem<int> item = numberItem();
    item.setValue(1);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot make the lock file "_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^settings are not saved: "_s + settingsPath()));
    QVERIFY(NySettings().isEverythingSaved());
    NySettings().save(item);
    QVERIFY(!NySettings().isEverythingSaved());
    QVERIFY(obstacle.remove());
    // Later changes find their way, so that nothing of this is left for the tests after it.
    NyConfigItem<int> later = numberItem(0, u"later"_s);
    later.setValue(1);
    NySettings().save(later);
    QCOMPARE(loadedNumber(), 1);
    QVERIFY(NySettings().isEverythingSaved());
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    NyProgramConfig::instance().setProgramID(NyProgramID::QuilloService);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--child")
        return runChild(arguments.sliced(2));
    tst_NySettings test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NySettings.moc"
