#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>

#include <sys/mount.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <NyBookProjectFile.h>
#include <NyFotoListRegistry.h>

#include "NySmallDisk.h"
#include "PaintedPictures.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

struct Outcome
{
    int exitCode = -1;
    bool crashed = false;
    QString standardOutput;
    QString standardError;
};

QStringList builderArguments(const QString &target)
{
    return {u"--backgroundjobs"_s, u"3"_s, u"--programmode"_s, u"b"_s, u"--proposalTargetPath"_s, target};
}

/** What the surroundings say of displays. */
enum class Screen { None, Unreachable };

void start(QProcess &process, const QStringList &arguments, Screen display = Screen::None)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"QT_QPA_PLATFORM"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    environment.remove(u"DISPLAY"_s);
    if (display == Screen::Unreachable) {
        environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        environment.insert(u"DISPLAY"_s, u":4711"_s);
    }
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(ALBUMA_EXECUTABLE), arguments);
}

Outcome finished(QProcess &process)
{
    constexpr int patienceMs = 90'000;
    process.waitForFinished(patienceMs);
    return {process.exitCode(), process.exitStatus() != QProcess::NormalExit, QString::fromUtf8(process.readAllStandardOutput()),
        QString::fromUtf8(process.readAllStandardError())};
}

Outcome run(const QStringList &arguments, Screen display = Screen::None)
{
    QProcess process;
    start(process, arguments, display);
    return finished(process);
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}

/** The real executable as a process of its own, in the surroundings of this test. */
class tst_AlbumaProgram : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void init();

    void buildsAProposal();
    void smallNumbersOfPhotos_data();
    void smallNumbersOfPhotos();
    void photosWithFlaws();
    void manyPhotos();
    void strangeNames();
    void styleAndTitleWithoutHints();
    void failsWithoutPhotos_data();
    void failsWithoutPhotos();
    void failsOnBadTargets_data();
    void failsOnBadTargets();
    void keepsFilesThatAreThere_data();
    void keepsFilesThatAreThere();
    void fullDiskLeavesNothing_data();
    void fullDiskLeavesNothing();
    void readOnlyFolderLeavesNothing();
    void killedInTheMiddleLeavesNothing_data();
    void killedInTheMiddleLeavesNothing();
    void runsWithLowPriority();
    void needsNoDisplay_data();
    void needsNoDisplay();
    void refusesBadCommandLines_data();
    void refusesBadCommandLines();
    void windowWithoutDisplayIsRefused_data();
    void windowWithoutDisplayIsRefused();
    void windowShowsTheBookAndEndsOnSignal();

private:
    /** Photos of an event of @p days days, @p count in all, with their times in the metadata. */
    QList<QFileInfo> makeEvent(const QString &name, int count, int days, const QSize &size = QSize(400, 300)) const;
    static void offer(const QList<QFileInfo> &photos) { NyFotoListRegistry::instance().setFotosForBookProposal(NyFotoList(photos)); }
    QString target() const { return m_out->filePath(u"Produktvorschlag_2026-11-21.nqp"_s); }

    QTemporaryDir m_pictures;
    std::unique_ptr<QTemporaryDir> m_out;
    QList<QFileInfo> m_event;
    QList<QFileInfo> m_manyPhotos;
};

QList<QFileInfo> tst_AlbumaProgram::makeEvent(const QString &name, int count, int days, const QSize &size) const
{
    QList<QFileInfo> files;
    for (int i = 0; i < count; ++i) {
        PaintedPictures::MetaData metaData;
        metaData.captureTime = QDateTime(QDate(2024, 7, 12).addDays(qint64(i) * days / count), QTime(8, 0)).addSecs(i * 170);
        const QString path = m_pictures.filePath(u"%1/IMG_%2.jpg"_s.arg(name, QString::number(1000 + i)));
        if (!PaintedPictures::write(path, PaintedPictures::painted(i % 3 == 1 ? size.transposed() : size, quint32(i)), metaData))
            qFatal("cannot write a picture");
        files.append(QFileInfo(path));
    }
    return files;
}

void tst_AlbumaProgram::initTestCase()
{
    m_event = makeEvent(u"2024-07-12_Toskana mit Oma"_s, 24, 3);
    m_manyPhotos = makeEvent(u"Viele"_s, 250, 9, QSize(240, 180));
}

void tst_AlbumaProgram::init()
{
    m_out = std::make_unique<QTemporaryDir>();
    QVERIFY(m_out->isValid());
    offer({});
}

void tst_AlbumaProgram::buildsAProposal()
{
    offer(m_event);
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    const Outcome outcome = run(builderArguments(target())
        + QStringList{u"--proposalRecommendedStyles"_s, u"unknown.style,velmora.style.coast,velmora.style.linen"_s,
            u"--proposalOccasions"_s, u"vacation,family"_s});
    QVERIFY2(outcome.exitCode == 0 && !outcome.crashed, qPrintable(outcome.standardError));
    const QString name = QFileInfo(target()).fileName();
    QCOMPARE(filesIn(m_out->path()), QStringList({name, name + u".json"_s, name + u".png"_s}));

    const NyBookProjectFile::Result loaded = NyBookProjectFile::load(QFileInfo(target()));
    QVERIFY2(loaded.project, qPrintable(loaded.error));
    const NyBookProject &project = *loaded.project;
    QCOMPARE(project.title, u"Toskana mit Oma"_s);
    QCOMPARE(project.subtitle, u"12. – 14. Juli 2024"_s);
    QCOMPARE(project.style.toString(), u"velmora.style.coast"_s);
    QCOMPARE(project.photoCount(), 24);
    qsizetype next = 0;
    for (const NyBookPage &page : project.pages) {
        for (const NyPlacedFoto &foto : page.photos) {
            QCOMPARE(foto.url.toLocalFile(), m_event.at(next).absoluteFilePath());
            QVERIFY(foto.printedDpi() >= 149.9);
            ++next;
        }
    }

    const QImage preview(target() + u".png"_s);
    QVERIFY(preview.width() >= 480);
    QVERIFY(std::abs(double(preview.width()) / preview.height() - 280.0 / 210) < 0.01);
    QSet<QRgb> colors;
    for (int x = 0; x < preview.width(); ++x)
        colors.insert(preview.pixel(x, preview.height() / 3));
    QVERIFY2(colors.size() > 10, "there is no photo on the cover");

    const QJsonObject description = QJsonDocument::fromJson(contentOf(target() + u".json"_s)).object();
    const int epoch = description.value(u"creationDateEpoch"_s).toInt(0);
    QVERIFY(epoch >= before && epoch <= QDateTime::currentSecsSinceEpoch());
    QCOMPARE(description.value(u"headline"_s).toString(), u"Toskana mit Oma"_s);
    QCOMPARE(description.value(u"subline"_s).toString(), u"12. – 14. Juli 2024"_s);
    QCOMPARE(description.value(u"photoCount"_s).toInt(), 24);
    QCOMPARE(description.value(u"pageCount"_s).toInt(), int(project.pages.size()));
    QCOMPARE(description.value(u"dateFrom"_s).toString(), u"2024-07-12"_s);
    QCOMPARE(description.value(u"dateTo"_s).toString(), u"2024-07-14"_s);
    QCOMPARE(description.value(u"occasions"_s).toArray(), QJsonArray({u"vacation"_s, u"family"_s}));
    const QJsonArray menu = description.value(u"menu"_s).toArray();
    QVERIFY(!menu.isEmpty());
    QVERIFY(menu.first().toObject().value(u"action"_s).toString().endsWith(u':' + name));
}

void tst_AlbumaProgram::smallNumbersOfPhotos_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("one") << 1;
    QTest::newRow("two") << 2;
    QTest::newRow("three") << 3;
}

void tst_AlbumaProgram::smallNumbersOfPhotos()
{
    QFETCH(int, count);
    offer(m_event.first(count));
    const Outcome outcome = run(builderArguments(target()));
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.standardError));
    const NyBookProjectFile::Result loaded = NyBookProjectFile::load(QFileInfo(target()));
    QVERIFY(loaded.project);
    QCOMPARE(loaded.project->photoCount(), count);
    QCOMPARE(filesIn(m_out->path()).size(), 3);
}

void tst_AlbumaProgram::photosWithFlaws()
{
    QList<QFileInfo> photos = m_event.first(6);
    const auto add = [&](const QString &name, const QByteArray &content) {
        QFile file(m_pictures.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), content.size());
        photos.append(QFileInfo(file));
    };
    const QByteArray good = contentOf(m_event.first().absoluteFilePath());
    add(u"truncated.jpg"_s, good.first(good.size() / 2));
    add(u"empty.jpg"_s, QByteArray());
    add(u"text.jpg"_s, "this is no picture");
    photos.append(QFileInfo(m_pictures.filePath(u"gone.jpg"_s)));
    photos.append(QFileInfo(m_pictures.path()));
    photos.append(photos.first());
    add(u"Screenshot_1.jpg"_s, contentOf(m_event.at(7).absoluteFilePath()));
    offer(photos);
    const Outcome outcome = run(builderArguments(target()));
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.standardError));
    const NyBookProjectFile::Result loaded = NyBookProjectFile::load(QFileInfo(target()));
    QVERIFY(loaded.project);
    QCOMPARE(loaded.project->photoCount(), 6);
    QVERIFY(outcome.standardError.contains(u"truncated.jpg"_s));
    QVERIFY(outcome.standardError.contains(u"gone.jpg"_s));
    QVERIFY(outcome.standardError.contains(u"unreadable 5 screenshots 1"_s));
}

void tst_AlbumaProgram::manyPhotos()
{
    offer(m_manyPhotos);
    const Outcome outcome = run(builderArguments(target()));
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.standardError));
    const NyBookProjectFile::Result loaded = NyBookProjectFile::load(QFileInfo(target()));
    QVERIFY(loaded.project);
    QCOMPARE(loaded.project->photoCount(), 160);
    QSet<QUrl> distinct;
    for (const NyBookPage &page : loaded.project->pages) {
        for (const NyPlacedFoto &foto : page.photos)
            distinct.insert(foto.url);
    }
    QCOMPARE(distinct.size(), 160);
}

void tst_AlbumaProgram::strangeNames()
{
    const QString hostile = u"Ä%1 \"x\" &amp; <b>\n:;'\U0001F60A"_s;
    offer(makeEvent(hostile, 3, 1));
    const QString path = m_out->filePath(u"a b/"_s) + hostile + u".nqp"_s;
    QVERIFY(QDir().mkpath(m_out->filePath(u"a b"_s)));
    const Outcome outcome = run(builderArguments(path) + QStringList{u"--proposalOccasions"_s, u"%1,,\"x\""_s});
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.standardError));
    const NyBookProjectFile::Result loaded = NyBookProjectFile::load(QFileInfo(path));
    QVERIFY2(loaded.project, qPrintable(loaded.error));
    QCOMPARE(loaded.project->photoCount(), 3);
    QCOMPARE(loaded.project->occasions, QStringList({u"%1"_s, u"\"x\""_s}));
    for (const QUrl &url : loaded.project->photoUrls())
        QVERIFY(QFileInfo(url.toLocalFile()).isFile());
}

void tst_AlbumaProgram::styleAndTitleWithoutHints()
{
    QList<QFileInfo> photos;
    for (const QFileInfo &photo : m_event.first(2)) {
        const QString copy = m_pictures.filePath(u"2024/07/100CANON/"_s + photo.fileName());
        QVERIFY(QDir().mkpath(QFileInfo(copy).path()));
        QVERIFY(QFile::exists(copy) || QFile::copy(photo.absoluteFilePath(), copy));
        photos.append(QFileInfo(copy));
    }
    offer(photos);
    // The temporary folder's own name must not become the title.
    QVERIFY(QDir().mkpath(QDir::homePath() + u"/.config/VELMORA"_s));
    QFile settings(QDir::homePath() + u"/.config/VELMORA/settings.ini"_s);
    QVERIFY(settings.open(QIODevice::WriteOnly));
    QVERIFY(settings.write("[common]\npicturesHome=" + m_pictures.path().toUtf8() + "\n") > 0);
    settings.close();
    const Outcome outcome = run(builderArguments(target()) + QStringList{u"--proposalRecommendedStyles"_s, u""_s});
    QVERIFY(settings.remove());
    QVERIFY2(outcome.exitCode == 0, qPrintable(outcome.standardError));
    const NyBookProjectFile::Result loaded = NyBookProjectFile::load(QFileInfo(target()));
    QVERIFY(loaded.project);
    QCOMPARE(loaded.project->title, u"12. Juli 2024"_s);
    QVERIFY(loaded.project->style.isValid());
}

void tst_AlbumaProgram::failsWithoutPhotos_data()
{
    QTest::addColumn<QList<QFileInfo>>("photos");
    QTest::newRow("empty list") << QList<QFileInfo>();
    QTest::newRow("missing") << QList<QFileInfo>{QFileInfo(u"/nonexistent/a.jpg"_s), QFileInfo(u"/nonexistent/b.jpg"_s)};
    QImage black(300, 200, QImage::Format_RGB32);
    black.fill(Qt::black);
    const QString path = m_pictures.filePath(u"black.jpg"_s);
    QVERIFY(PaintedPictures::write(path, black));
    QTest::newRow("black") << QList<QFileInfo>{QFileInfo(path)};
}

void tst_AlbumaProgram::failsWithoutPhotos()
{
    QFETCH(QList<QFileInfo>, photos);
    offer(photos);
    const Outcome outcome = run(builderArguments(target()));
    QVERIFY(!outcome.crashed);
    QVERIFY(outcome.exitCode != 0);
    QVERIFY2(outcome.standardError.contains(u"VELMORA ALBUMA: "_s), qPrintable(outcome.standardError));
    QCOMPARE(filesIn(m_out->path()), QStringList());
}

void tst_AlbumaProgram::failsOnBadTargets_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("folder missing") << u"missing/a.nqp"_s;
    QTest::newRow("folder is a file") << u"file/a.nqp"_s;
    QTest::newRow("target is a folder") << u"folder"_s;
    QTest::newRow("name too long") << QString(300, u'n') + u".nqp"_s;
}

void tst_AlbumaProgram::failsOnBadTargets()
{
    QFETCH(QString, path);
    offer(m_event.first(2));
    QFile file(m_out->filePath(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QVERIFY(QDir().mkdir(m_out->filePath(u"folder"_s)));
    const Outcome outcome = run(builderArguments(m_out->filePath(path)));
    QVERIFY(!outcome.crashed);
    QVERIFY(outcome.exitCode != 0);
    QVERIFY2(outcome.standardError.contains(m_out->filePath(path)), qPrintable(outcome.standardError));
    QCOMPARE(filesIn(m_out->path()), QStringList({u"file"_s, u"folder"_s}));
    QCOMPARE(filesIn(m_out->filePath(u"folder"_s)), QStringList());
}

void tst_AlbumaProgram::keepsFilesThatAreThere_data()
{
    QTest::addColumn<QString>("ending");
    QTest::newRow("project") << QString();
    QTest::newRow("preview") << u".png"_s;
    QTest::newRow("description") << u".json"_s;
}

void tst_AlbumaProgram::keepsFilesThatAreThere()
{
    QFETCH(QString, ending);
    offer(m_event.first(2));
    QFile file(target() + ending);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write("older book") > 0);
    file.close();
    const Outcome outcome = run(builderArguments(target()));
    QVERIFY(outcome.exitCode != 0);
    QCOMPARE(filesIn(m_out->path()).size(), 1);
    QCOMPARE(contentOf(file.fileName()), QByteArray("older book"));
}

void tst_AlbumaProgram::fullDiskLeavesNothing_data()
{
    QTest::addColumn<QString>("fitsUpTo");
    QTest::newRow("nothing fits") << QString();
    QTest::newRow("the preview fits") << u".png"_s;
    QTest::newRow("preview and description fit") << u".json"_s;
}

void tst_AlbumaProgram::fullDiskLeavesNothing()
{
    QFETCH(QString, fitsUpTo);
    offer(m_event);
    NySmallDisk disk("4m");
    if (!disk.isMounted())
        QSKIP("mounting a small disk is refused");
    // The same book on a disk with room tells how much each file takes.
    const QString path = disk.filePath(u"a.nqp"_s);
    QCOMPARE(run(builderArguments(path)).exitCode, 0);
    constexpr qint64 block = 4096;
    const auto blocks = [&](const QString &ending) { return (QFileInfo(path + ending).size() + block - 1) / block * block; };
    qint64 room = 0;
    if (!fitsUpTo.isEmpty())
        room += blocks(u".png"_s);
    if (fitsUpTo == u".json"_s)
        room += blocks(u".json"_s);
    QVERIFY(blocks(QString()) > block);
    for (const QString &name : filesIn(disk.path()))
        QVERIFY(QFile::remove(disk.filePath(name)));
    QVERIFY(disk.fill(room));
    const Outcome outcome = run(builderArguments(path));
    QVERIFY(!outcome.crashed);
    QVERIFY(outcome.exitCode != 0);
    QVERIFY2(outcome.standardError.contains(u"kann nicht geschrieben werden"_s), qPrintable(outcome.standardError));
    QCOMPARE(filesIn(disk.path()), QStringList{u"ballast"_s});
}

void tst_AlbumaProgram::readOnlyFolderLeavesNothing()
{
    offer(m_event.first(2));
    NySmallDisk disk("1m");
    if (!disk.isMounted())
        QSKIP("mounting a small disk is refused");
    QCOMPARE(::mount("tmpfs", QFile::encodeName(disk.path()).constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr), 0);
    const Outcome outcome = run(builderArguments(disk.filePath(u"a.nqp"_s)));
    QVERIFY(!outcome.crashed);
    QVERIFY(outcome.exitCode != 0);
    QVERIFY(outcome.standardError.contains(disk.filePath(u"a.nqp"_s)));
    QCOMPARE(filesIn(disk.path()), QStringList());
}

void tst_AlbumaProgram::killedInTheMiddleLeavesNothing_data()
{
    QTest::addColumn<int>("signalNumber");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGKILL") << SIGKILL;
}

void tst_AlbumaProgram::killedInTheMiddleLeavesNothing()
{
    QFETCH(int, signalNumber);
    offer(m_manyPhotos);
    QProcess process;
    start(process, builderArguments(target()));
    QByteArray error;
    QTRY_VERIFY_WITH_TIMEOUT((error += process.readAllStandardError()).contains("analysing 250 photos"), 30'000);
    QCOMPARE(::kill(pid_t(process.processId()), signalNumber), 0);
    const Outcome outcome = finished(process);
    QCOMPARE(outcome.crashed, signalNumber == SIGKILL);
    QVERIFY(outcome.exitCode != 0);
    if (signalNumber != SIGKILL)
        QVERIFY2(outcome.standardError.contains(u"abgebrochen"_s), qPrintable(outcome.standardError));
    QCOMPARE(filesIn(m_out->path()), QStringList());
}

void tst_AlbumaProgram::runsWithLowPriority()
{
    offer(m_manyPhotos);
    QProcess process;
    start(process, builderArguments(target()));
    QByteArray error;
    QTRY_VERIFY_WITH_TIMEOUT((error += process.readAllStandardError()).contains("analysing 250 photos"), 30'000);
    const qint64 id = process.processId();
    // While it works there are at least the main thread, the builder's and its workers.
    const QStringList threads = QDir(u"/proc/%1/task"_s.arg(id)).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QVERIFY(threads.size() >= 4);
    for (const QString &thread : threads) {
        const QByteArray stat = contentOf(u"/proc/%1/task/%2/stat"_s.arg(QString::number(id), thread));
        if (stat.isEmpty())
            continue;
        const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
        QCOMPARE(fields.at(16).toInt(), 19);
        constexpr int ioprioWhoProcess = 1;
        const long priority = ::syscall(SYS_ioprio_get, ioprioWhoProcess, thread.toInt());
        QVERIFY(priority < 0 || (priority >> 13) == 3);
    }
    QCOMPARE(::kill(pid_t(id), SIGTERM), 0);
    QVERIFY(finished(process).exitCode != 0);
}

void tst_AlbumaProgram::needsNoDisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("output");
    QTest::newRow("help") << QStringList{u"--help"_s} << u"--suppressLoadWarnings"_s;
    QTest::newRow("version") << QStringList{u"--version"_s} << u"VELMORA ALBUMA "_s;
    QTest::newRow("builder") << builderArguments(QString()) << QString();
}

void tst_AlbumaProgram::needsNoDisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, output);
    if (arguments.last().isEmpty())
        arguments.last() = target();
    offer(m_event.first(2));
    for (const Screen display : {Screen::None, Screen::Unreachable}) {
        const Outcome outcome = run(arguments, display);
        QVERIFY2(outcome.exitCode == 0 && !outcome.crashed, qPrintable(outcome.standardError));
        QVERIFY2(outcome.standardOutput.contains(output), qPrintable(outcome.standardOutput));
        for (const QString &name : filesIn(m_out->path()))
            QVERIFY(QFile::remove(m_out->filePath(name)));
    }
}

void tst_AlbumaProgram::refusesBadCommandLines_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("unknown option") << QStringList{u"--nonsense"_s} << u"nonsense"_s;
    QTest::newRow("unknown mode") << QStringList{u"--programmode"_s, u"x"_s} << u"\"x\""_s;
    QTest::newRow("no target") << QStringList{u"--programmode"_s, u"b"_s} << u"--proposalTargetPath"_s;
    for (const QString &number : {u"0"_s, u"-1"_s, u"65"_s, u"three"_s}) {
        QTest::newRow(qPrintable(u"jobs "_s + number)) << QStringList{u"--programmode"_s, u"b"_s, u"--proposalTargetPath=/tmp/a.nqp"_s,
            u"--backgroundjobs="_s + number} << u"--backgroundjobs"_s;
    }
    QTest::newRow("two books") << QStringList{u"a.nqp"_s, u"b.nqp"_s} << u"ein Buch"_s;
}

void tst_AlbumaProgram::refusesBadCommandLines()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    const Outcome outcome = run(arguments);
    QVERIFY(!outcome.crashed);
    QVERIFY(outcome.exitCode != 0);
    QVERIFY2(outcome.standardError.contains(message), qPrintable(outcome.standardError));
    QVERIFY(!QFile::exists(u"/tmp/a.nqp"_s));
}

void tst_AlbumaProgram::windowWithoutDisplayIsRefused_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("start window") << QStringList();
    QTest::newRow("book") << QStringList{u"--suppressLoadWarnings"_s, u"/nonexistent/a.nqp"_s};
}

void tst_AlbumaProgram::windowWithoutDisplayIsRefused()
{
    QFETCH(QStringList, arguments);
    for (const Screen display : {Screen::None, Screen::Unreachable}) {
        const Outcome outcome = run(arguments, display);
        QVERIFY(!outcome.crashed);
        QVERIFY(outcome.exitCode != 0);
        QVERIFY2(outcome.standardError.contains(u"keine Anzeige"_s), qPrintable(outcome.standardError));
    }
}

void tst_AlbumaProgram::windowShowsTheBookAndEndsOnSignal()
{
    // A newer version's file makes the window say so on stderr too, which tells from outside that it is up.
    QFile file(target());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write("{\"format\": \"velmora-book\", \"formatVersion\": 99}") > 0);
    file.close();
    QProcess process;
    process.start(QStringLiteral(ALBUMA_EXECUTABLE), {u"--suppressLoadWarnings"_s, target()});
    QByteArray error;
    QTRY_VERIFY_WITH_TIMEOUT((error += process.readAllStandardError()).contains("neueren Programmversion"), 30'000);
    QVERIFY(QString::fromUtf8(error).contains(target()));
    QCOMPARE(::kill(pid_t(process.processId()), SIGTERM), 0);
    const Outcome outcome = finished(process);
    QVERIFY(!outcome.crashed);
    QCOMPARE(outcome.exitCode, 0);
}

QTEST_GUILESS_MAIN(tst_AlbumaProgram)
#include "tst_AlbumaProgram.moc"
