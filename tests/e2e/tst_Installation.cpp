#include "MockNotificationServer.h"
#include "ServiceUnderTest.h"
#include "TestSupport.h"

#include <NyProgramConfig.h>

#include <QDirIterator>
#include <QMimeDatabase>
#include <QProcess>
#include <QSettings>
#include <QTest>

#include <filesystem>

using namespace Qt::Literals::StringLiterals;
using namespace TestSupport;

namespace
{
struct Output
{
    int exitCode = -1;
    QString text;
};

Output run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return {-1, program + u" did not start, end or survive: "_s + process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAll())};
}

bool isElf(const QFileInfo &file)
{
    QFile content(file.absoluteFilePath());
    return content.open(QIODevice::ReadOnly)
        && content.read(4)
        == "\x7f"
           "ELF";
}
}

/** What `cmake --install` puts below a prefix, here one with blanks in its path, and that it runs from there. */
class tst_Installation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void programsRunThroughTheirLinks_data();
    void programsRunThroughTheirLinks();
    void linksStayInThePrefix();
    void librariesAreFoundInThePrefix();
    void nothingElseSaysWhereLibrariesLie();
    void aProposalIsMade();
    void aPlugInOfAnotherVersionIsLeftAlone();
    void desktopEntries_data();
    void desktopEntries();
    void metadataIsValid();
    void booksAreRecognized();
    void manualPages_data();
    void manualPages();

private:
    QString inPrefix(const QString &path) const { return m_prefix + u'/' + path; }
    QStringList elfFiles() const;
    /** Starts a service of the installation and waits for its proposal of nine pictures, with files of its own in share/. */
    void makeProposal(ServiceUnderTest &service);
    /** The options in a text, with their dashes, without repetition. */
    static QStringList optionsIn(const QString &text);

    QString m_prefix;
};

void tst_Installation::initTestCase()
{
    NyProgramConfig::instance().setProgramID(NyProgramID::MainProgram);
    m_prefix = QDir::homePath() + u"/some where/an installation"_s;
    qunsetenv("DESTDIR");
    qunsetenv("LD_LIBRARY_PATH");
    const Output installed = run(QStringLiteral(NY_CMAKE), {u"--install"_s, QStringLiteral(NY_BUILD_DIR), u"--prefix"_s, m_prefix});
    QVERIFY2(installed.exitCode == 0, qPrintable(installed.text));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(inPrefix(u"share"_s)) + ":/usr/share");
}

QStringList tst_Installation::elfFiles() const
{
    QStringList files;
    QDirIterator entries(m_prefix, QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        entries.next();
        if (isElf(entries.fileInfo()))
            files.append(entries.filePath());
    }
    return files;
}

QStringList tst_Installation::optionsIn(const QString &text)
{
    static const QRegularExpression option(u"--[A-Za-z]+"_s);
    QStringList found;
    QRegularExpressionMatchIterator matches = option.globalMatch(text);
    while (matches.hasNext())
        found.append(matches.next().captured());
    found.removeDuplicates();
    found.sort();
    return found;
}

void tst_Installation::programsRunThroughTheirLinks_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("program");
    QTest::newRow("service") << u"quilloservice"_s << u"lib/velmora/bin/quilloservice"_s;
    QTest::newRow("main program") << u"velmora-albuma"_s << u"lib/velmora/bin/VELMORA ALBUMA"_s;
}

void tst_Installation::programsRunThroughTheirLinks()
{
    QFETCH(QString, command);
    QFETCH(QString, program);
    const QFileInfo link(inPrefix(u"bin/"_s + command));
    QVERIFY(link.isSymLink());
    QCOMPARE(link.canonicalFilePath(), inPrefix(program));

    const Output version = run(link.filePath(), {u"--version"_s});
    QCOMPARE(version.exitCode, 0);
    QVERIFY2(version.text.startsWith(command + u' '), qPrintable(version.text));
    const Output help = run(link.filePath(), {u"--help"_s});
    QCOMPARE(help.exitCode, 0);
    QVERIFY2(help.text.contains(command) && optionsIn(help.text).contains(u"--version"), qPrintable(help.text));
}

void tst_Installation::linksStayInThePrefix()
{
    QDirIterator entries(m_prefix, QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
    int links = 0;
    while (entries.hasNext()) {
        entries.next();
        if (!entries.fileInfo().isSymLink())
            continue;
        ++links;
        const std::filesystem::path target = std::filesystem::read_symlink(QFile::encodeName(entries.filePath()).toStdString());
        QVERIFY2(target.is_relative(), target.c_str());
        QVERIFY2(entries.fileInfo().canonicalFilePath().startsWith(m_prefix + u'/'), qPrintable(entries.filePath()));
    }
    QVERIFY(links > 4);
}

void tst_Installation::librariesAreFoundInThePrefix()
{
    const QStringList files = elfFiles();
    for (const QString &name : {u"bin/quilloservice"_s, u"bin/VELMORA ALBUMA"_s, u"lib/libNyQuilloService.so.0.1.0"_s,
             u"lib/libNyOrrin.so"_s, u"lib/liborrin.so"_s, u"lib/libNyImageLoaderHeif.so"_s, u"lib/libNyImageLoaderMetaData.so"_s})
        QVERIFY2(files.contains(inPrefix(u"lib/velmora/"_s + name)), qPrintable(name));
    for (const QString &file : files) {
        const Output loaded = run(u"ldd"_s, {file});
        QVERIFY2(loaded.exitCode == 0 && !loaded.text.contains(u"not found"), qPrintable(file + u'\n' + loaded.text));
        for (const QString &line : loaded.text.split(u'\n')) {
            if (line.contains(u"libNy") || line.contains(u"liborrin"))
                QVERIFY2(line.contains(u"=> "_s + m_prefix), qPrintable(file + u'\n' + line));
        }
    }
}

void tst_Installation::nothingElseSaysWhereLibrariesLie()
{
    static const QRegularExpression searchPath(u"\\((RUNPATH|RPATH)\\)[^\\[]*\\[([^\\]]*)\\]"_s);
    for (const QString &file : elfFiles()) {
        const Output dynamic = run(u"readelf"_s, {u"-d"_s, file});
        QCOMPARE(dynamic.exitCode, 0);
        const QRegularExpressionMatch match = searchPath.match(dynamic.text);
        if (match.hasMatch())
            QVERIFY2(
                match.captured(2) == u"$ORIGIN" || match.captured(2) == u"$ORIGIN/../lib", qPrintable(file + u'\n' + match.captured()));
    }
}

void tst_Installation::makeProposal(ServiceUnderTest &service)
{
    service.addPictures(u"2026/2026-07-11 Hochzeit Anna & Tom"_s, 9);
    service.useProgramsIn(inPrefix(u"bin"_s));
    // What only the installation's own files say: five photos are enough, and there is a single design.
    QVERIFY(writeFile(inPrefix(u"share/VELMORA/quilloservice.xml"_s),
        "<quilloservice>" + ServiceUnderTest::quickSections("<eventFinder detectOccasions='selectedEvent'/>") + "</quilloservice>"));
    QVERIFY(writeFile(inPrefix(u"share/VELMORA/designs.xml"_s),
        "<designs><design id='velmora.style.installed' name='Installiert' proposal='true'/></designs>"));
    QVERIFY(writeFile(inPrefix(u"share/VELMORA/models/broken/model.json"_s), "{"));
    MockNotificationServer server;
    QVERIFY(server.start());
    service.start({u"--serviceMode"_s, u"i"_s});
    QTRY_COMPARE_WITH_TIMEOUT(server.notifications().size(), 1, 90000);
    QCOMPARE(service.proposals().size(), 1);
}

void tst_Installation::aProposalIsMade()
{
    ServiceUnderTest service;
    const QString loaderLog = QDir::tempPath() + u"/loader"_s;
    QVERIFY(QDir().mkpath(loaderLog));
    service.environment().insert(u"LD_DEBUG"_s, u"files"_s);
    service.environment().insert(u"LD_DEBUG_OUTPUT"_s, loaderLog + u"/log"_s);
    makeProposal(service);
    if (QTest::currentTestFailed())
        return;
    const QString start = service.eventLog().filter(u"startAsService VALUES:"_s).join(u'\n');
    QVERIFY2(start.contains(u"--proposalRecommendedStyles;velmora.style.installed;--proposalOccasions;wedding"), qPrintable(start));
    const QByteArray book = readFile(service.proposalFolder() + u'/' + service.proposals().constFirst());
    QVERIFY2(book.contains("velmora.style.installed"), book.left(500).constData());

    QString loaded;
    for (const QFileInfo &log : QDir(loaderLog).entryInfoList(QDir::Files))
        loaded += QString::fromUtf8(readFile(log.filePath()));
    // The programs' word on where libraries lie is kept as it is.
    loaded.replace(u"/bin/../lib/"_s, u"/lib/"_s);
    QVERIFY(loaded.contains(inPrefix(u"lib/velmora/bin/VELMORA ALBUMA"_s)));
    QVERIFY(loaded.contains(inPrefix(u"lib/velmora/lib/libNyImageLoaderMetaData.so"_s)));
    QVERIFY(!loaded.contains(QStringLiteral(NY_BUILD_DIR)));
    // Occasions come from the pictures too: with the installation's models, and its own runtime if it brought one along.
    QVERIFY2(service.log().contains(u"share/VELMORA/models/broken"), qPrintable(service.log()));
    const QStringList runtimes = QDir(inPrefix(u"lib/velmora/lib"_s)).entryList({u"libonnxruntime.so*"_s});
    for (const QString &runtime : runtimes)
        QVERIFY2(loaded.contains(inPrefix(u"lib/velmora/lib/"_s + runtime)), qPrintable(loaded.split(u'\n').filter(u"onnx"_s).join(u'\n')));

    // A session starts the program itself, whatever becomes of the links, and finds the icon that the entry names.
    const QSettings entry(QDir::homePath() + u"/.config/autostart/velmora.dorn.quillo.desktop"_s, QSettings::IniFormat);
    QCOMPARE(entry.value(u"Desktop Entry/Exec"_s).toString(), inPrefix(u"lib/velmora/bin/quilloservice"_s));
    const QString icon = inPrefix(u"share/icons/hicolor/scalable/apps/%1.svg"_s).arg(entry.value(u"Desktop Entry/Icon"_s).toString());
    QVERIFY2(readFile(icon).contains("<svg"), qPrintable(icon));
}

void tst_Installation::aPlugInOfAnotherVersionIsLeftAlone()
{
    // As an upgrade replaces it below a running service: the function is called differently, its interface may be another.
    const QString path = inPrefix(u"lib/velmora/lib/libNyImageLoaderMetaData.so"_s);
    const QByteArray plugIn = readFile(path);
    const QString version = run(inPrefix(u"bin/velmora-albuma"_s), {u"--version"_s}).text.trimmed().section(u' ', -1);
    const QByteArray suffix = '_' + version.toUtf8().replace('.', '_').replace('-', '_');
    const QByteArray function = "nyImageMetaDataBackend" + suffix;
    QVERIFY(plugIn.contains(function));
    QVERIFY(writeFile(path, QByteArray(plugIn).replace(function, "nyImageMetaDataBackend" + QByteArray(suffix.size(), '_'))));
    {
        ServiceUnderTest service;
        makeProposal(service);
        const QString log = QString::fromUtf8(readFile(dataFolder() + u"/log/velmora-albuma.log"_s));
        QVERIFY2(log.contains(u"a plug-in cannot be loaded"), qPrintable(log));
    }
    QVERIFY(writeFile(path, plugIn));
}

void tst_Installation::desktopEntries_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("shown");
    QTest::newRow("main program") << u"velmora-albuma"_s << true;
    QTest::newRow("service") << u"quilloservice"_s << false;
}

void tst_Installation::desktopEntries()
{
    QFETCH(QString, name);
    QFETCH(bool, shown);
    const QString path = inPrefix(u"share/applications/%1.desktop"_s).arg(name);
    const Output checked = run(u"desktop-file-validate"_s, {path});
    QVERIFY2(checked.exitCode == 0 && checked.text.isEmpty(), qPrintable(checked.text));
    const QSettings entry(path, QSettings::IniFormat);
    const auto value = [&entry](const QString &key) { return entry.value(u"Desktop Entry/"_s + key).toString(); };
    QCOMPARE(value(u"NoDisplay"_s) != u"true", shown);
    // Under X11 a window tells its program's name as its class, whichever way the program was started.
    if (shown)
        QCOMPARE(value(u"StartupWMClass"_s), NyProgramConfig::instance().programName(NyProgramID::MainProgram));
    QVERIFY(QFileInfo(inPrefix(u"bin/"_s + value(u"Exec"_s).section(u' ', 0, 0))).isExecutable());
    QVERIFY(readFile(inPrefix(u"share/icons/hicolor/scalable/apps/%1.svg"_s).arg(value(u"Icon"_s))).contains("<svg"));
}

void tst_Installation::metadataIsValid()
{
    const QString path = inPrefix(u"share/metainfo/velmora.dorn.albuma.metainfo.xml"_s);
    const Output checked = run(u"appstreamcli"_s, {u"validate-tree"_s, u"--no-net"_s, m_prefix});
    QVERIFY2(checked.exitCode == 0, qPrintable(checked.text));
    const QString version = run(inPrefix(u"bin/velmora-albuma"_s), {u"--version"_s}).text.trimmed().section(u' ', -1);
    QVERIFY(readFile(path).contains("<release version=\"" + version.toUtf8() + '"'));
}

void tst_Installation::booksAreRecognized()
{
    const QMimeDatabase types;
    const QString book = u"application/x-velmora-book"_s;
    QCOMPARE(types.mimeTypeForFile(u"Produktvorschlag_2026-07-11.nqp"_s, QMimeDatabase::MatchExtension).name(), book);
    QCOMPARE(types.mimeTypeForFile(u"Produktvorschlag_2026-07-11.nqp.json"_s, QMimeDatabase::MatchExtension).name(), u"application/json"_s);
    QCOMPARE(types.mimeTypeForData("{\n    \"designId\": \"velmora.style.coast\",\n    \"format\": \"velmora-book\",\n").name(), book);
    const QSettings entry(inPrefix(u"share/applications/velmora-albuma.desktop"_s), QSettings::IniFormat);
    QCOMPARE(entry.value(u"Desktop Entry/MimeType"_s).toString(), book);
    QVERIFY(QFile::exists(inPrefix(u"share/icons/hicolor/scalable/mimetypes/%1.svg"_s).arg(types.mimeTypeForName(book).iconName())));
}

void tst_Installation::manualPages_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("service") << u"quilloservice"_s;
    QTest::newRow("main program") << u"velmora-albuma"_s;
}

void tst_Installation::manualPages()
{
    QFETCH(QString, command);
    const QString page = inPrefix(u"share/man/man1/%1.1.gz"_s).arg(command);
    const Output checked = run(u"mandoc"_s, {u"-Tlint"_s, u"-Wwarning"_s, page});
    QVERIFY2(checked.exitCode == 0 && checked.text.isEmpty(), qPrintable(checked.text));
    const Output text = run(u"mandoc"_s, {u"-Tutf8"_s, page});
    QCOMPARE(text.exitCode, 0);
    static const QRegularExpression overstrike(u".\b"_s);
    QCOMPARE(optionsIn(QString(text.text).remove(overstrike)), optionsIn(run(inPrefix(u"bin/"_s + command), {u"--help"_s}).text));
}

QTEST_GUILESS_MAIN(tst_Installation)
#include "tst_Installation.moc"
