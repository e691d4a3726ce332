#include <cmath>
#include <limits>

#include <QHash>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <NyClassificationResultsRendererHTML.h>
#include <NyEventFolderClassificationResult.h>

#include "PictureTree.h"
#include "TestSupport.h"
#include "WithoutRootPowers.h"

#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;
using Kind = NyEventFolderTypeEnum;
using Result = NyEventFolderClassificationResult;
using Renderer = NyClassificationResultsRendererHTML;

namespace
{

const QList<QString> Filters{u"*.jpg"_s, u"*.heic"_s};

struct Occasion
{
    QString text;
    QString share;
    QString barWidth;
};

struct Folder
{
    QString section;
    QString name;
    QString where;
    QString facts;
    QString link;
    QStringList pictureNames;
    QList<QByteArray> pictures;
    QStringList unreadable;
    QList<Occasion> occasions;
};

/** What a reader sees on the page. */
struct Page
{
    bool isWellFormed = false;
    QByteArray bytes;
    QString language;
    QString title;
    QString heading;
    QString subline;
    QStringList tiles;
    QStringList sections;
    QList<Folder> folders;
    QString nothing;
    QString footer;
    QStringList elements;
    QStringList sources; ///< of the attributes src, href and style

    QStringList names() const
    {
        QStringList list;
        for (const Folder &folder : folders)
            list.append(folder.section + u'/' + folder.name);
        return list;
    }
    Folder folder(const QString &name) const
    {
        for (const Folder &folder : folders) {
            if (folder.name == name)
                return folder;
        }
        return {};
    }
};

class PageReader
{
public:
    explicit PageReader(const QByteArray &bytes)
        : m_reader(bytes)
    {
        m_page.bytes = bytes;
    }

    Page read()
    {
        QList<QPair<QString, QString>> open; // element and class
        while (!m_reader.atEnd()) {
            switch (m_reader.readNext()) {
            case QXmlStreamReader::StartElement: {
                const QString element = m_reader.name().toString();
                const QString kind = m_reader.attributes().value(QLatin1String("class")).toString();
                open.append({element, kind});
                m_page.elements.append(element);
                for (const char16_t *attribute : {u"src", u"href", u"style"}) {
                    if (m_reader.attributes().hasAttribute(QString::fromUtf16(attribute)))
                        m_page.sources.append(m_reader.attributes().value(QString::fromUtf16(attribute)).toString());
                }
                start(element, kind);
                break;
            }
            case QXmlStreamReader::EndElement:
                open.removeLast();
                break;
            case QXmlStreamReader::Characters:
                addText(open);
                break;
            default:
                break;
            }
        }
        m_page.isWellFormed = !m_reader.hasError();
        if (m_reader.hasError())
            qInfo() << m_reader.errorString() << m_reader.lineNumber() << m_reader.columnNumber();
        return m_page;
    }

private:
    void start(const QString &element, const QString &kind)
    {
        const QXmlStreamAttributes attributes = m_reader.attributes();
        if (element == u"html")
            m_page.language = attributes.value(QLatin1String("lang")).toString();
        else if (element == u"section")
            m_page.sections.append(attributes.value(QLatin1String("aria-labelledby")).toString());
        else if (kind == u"tile")
            m_page.tiles.append(QString());
        else if (kind == u"folder")
            m_page.folders.append(
                Folder{m_page.sections.isEmpty() ? QString() : m_page.sections.constLast(), {}, {}, {}, {}, {}, {}, {}, {}});
        if (m_page.folders.isEmpty())
            return;
        Folder &folder = m_page.folders.last();
        if (element == u"a" && kind.isEmpty())
            folder.link = attributes.value(QLatin1String("href")).toString();
        if (element == u"img") {
            folder.pictureNames.append(attributes.value(QLatin1String("alt")).toString());
            const QString source = attributes.value(QLatin1String("src")).toString();
            const QString prefix = u"data:image/jpeg;base64,"_s;
            if (source.startsWith(prefix))
                folder.pictures.append(QByteArray::fromBase64(source.mid(prefix.size()).toLatin1()));
        }
        if (kind == u"word")
            folder.occasions.append(Occasion());
        if (element == u"i" && !folder.occasions.isEmpty())
            folder.occasions.last().barWidth = attributes.value(QLatin1String("style")).toString();
    }

    void addText(const QList<QPair<QString, QString>> &open)
    {
        const QString text = m_reader.text().toString();
        for (const auto &[element, kind] : open) {
            if (element == u"title")
                m_page.title += text;
            else if (element == u"h1")
                m_page.heading += text;
            else if (kind == u"tile")
                m_page.tiles.last() += text;
            else if (kind == u"nothing")
                m_page.nothing += text;
            else if (element == u"footer")
                m_page.footer += text;
            if (m_page.folders.isEmpty()) {
                if (kind == u"quiet" && element == u"p")
                    m_page.subline += text;
                continue;
            }
            Folder &folder = m_page.folders.last();
            if (element == u"h3")
                folder.name += text;
            else if (kind == u"where")
                folder.where += text;
            else if (kind == u"facts")
                folder.facts += text;
            else if (kind == u"word")
                folder.occasions.last().text += text;
            else if (kind == u"share")
                folder.occasions.last().share += text;
            else if (element == u"span" && open.size() > 1 && open.at(open.size() - 2).second == u"pictures")
                folder.unreadable.append(text);
        }
    }

    QXmlStreamReader m_reader;
    Page m_page;
};

Result result(const QString &path, Kind kind, const QList<NyOccasionInfo> &occasions = {})
{
    Result folder{QFileInfo(path), NyEventFolderType(kind)};
    folder.setOccasionInformation(NyOccasionInfoList(occasions));
    return folder;
}

} // namespace

class tst_NyClassificationResultsRendererHTML : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    QString target(const QString &name = u"classification.event.all.html"_s) const { return m_folder.filePath(name); }

    /** Renders and reads the page back. */
    Page rendered(
        const QList<Result> &results, qsizetype startDirectoryLength, const QString &name = u"classification.event.all.html"_s) const
    {
        const Renderer renderer(results, int(startDirectoryLength), Filters);
        if (!renderer.renderToFile(QFileInfo(target(name))))
            return {};
        return PageReader(TestSupport::readFile(target(name))).read();
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void anEmptyListSaysSo()
    {
        const Page page = rendered({}, 10);
        QVERIFY(page.isWellFormed);
        QVERIFY(page.bytes.startsWith("<!DOCTYPE html>\n"));
        QCOMPARE(page.language, u"de"_s);
        QVERIFY(page.nothing.contains(u"Die Liste ist leer"_s));
        QVERIFY(page.folders.isEmpty());
        QVERIFY(page.sections.isEmpty());
    }

    void theTitleTellsWhatThePageIs_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("title");
        QTest::newRow("all events") << u"classification.event.all.html"_s << u"Alle Ordner der Art Ereignis"_s;
        QTest::newRow("all years") << u"classification.year.all.html"_s << u"Alle Ordner der Art Jahr"_s;
        QTest::newRow("events with new photos")
            << u"classification.event.ofInterest.html"_s << u"Ordner der Art Ereignis mit neuen Fotos"_s;
        QTest::newRow("years with new photos") << u"classification.year.ofInterest.html"_s << u"Ordner der Art Jahr mit neuen Fotos"_s;
        QTest::newRow("no kind") << u"classification..all.html"_s << u"Einordnung der Bilderordner"_s;
        QTest::newRow("unknown kind") << u"classification.feast.all.html"_s << u"Einordnung der Bilderordner"_s;
        QTest::newRow("unknown list") << u"classification.event.some.html"_s << u"Einordnung der Bilderordner"_s;
        QTest::newRow("another name") << u"<report> & %1.html"_s << u"Einordnung der Bilderordner"_s;
    }
    void theTitleTellsWhatThePageIs()
    {
        QFETCH(QString, fileName);
        QFETCH(QString, title);
        const Page page = rendered({}, 0, fileName);
        QVERIFY(page.isWellFormed);
        QCOMPARE(page.title, title);
        QCOMPARE(page.heading, title);
    }

    void foldersStandByKindAndInTheOrderOfTheirPaths()
    {
        PictureTree tree;
        QList<Result> results;
        const QList<QPair<const char16_t *, int>> folders{{u"u", 0}, {u"Fest 10", 16}, {u"p", 32}, {u"2024", 2}, {u"Fest 9", 16},
            {u"both", 18}, {u"d", 8}, {u"m", 4}, {u"strange", 64}, {u"alt/Ägypten", 16}, {u"Zebra", 16}, {u"alt/Afrika", 16}};
        for (const auto &[name, kind] : folders) {
            tree.addFolder(QString::fromUtf16(name));
            results.append(Result(QFileInfo(tree.path(QString::fromUtf16(name))), NyEventFolderType(kind)));
        }
        const Page page = rendered(results, tree.root().size());
        QVERIFY(page.isWellFormed);
        QCOMPARE(page.names(),
            (QStringList{u"event/Afrika"_s, u"event/Ägypten"_s, u"event/Fest 9"_s, u"event/Fest 10"_s, u"event/Zebra"_s, u"year/2024"_s,
                u"month/m"_s, u"day/d"_s, u"project/p"_s, u"several/both"_s, u"several/strange"_s, u"unknown/u"_s}));
        QCOMPARE(page.sections, (QStringList{u"event"_s, u"year"_s, u"month"_s, u"day"_s, u"project"_s, u"several"_s, u"unknown"_s}));
        QCOMPARE(page.folder(u"both"_s).facts, u"keine Fotos · Ereignis + Jahr"_s);
        QVERIFY(page.folder(u"strange"_s).facts.endsWith(u"Art 64"_s));
        QCOMPARE(page.tiles.size(), 8);
        QCOMPARE(page.tiles.at(0), u"5Ereignisse 0 Fotos"_s);
        QCOMPARE(page.tiles.at(1), u"1Jahr 0 Fotos"_s);
        QCOMPARE(page.tiles.at(7), u"0Fotos in 12 Ordnern"_s);
        QVERIFY(page.subline.contains(u"Gesucht in "_s + tree.root()));
    }

    void photosAreCountedInAndBelowAFolder()
    {
        PictureTree tree;
        for (const char16_t *file : {u"2024/a.jpg", u"2024/05/b.JPG", u"2024/05/c.HEIC", u"2024/05/Rom/d.jpg", u"2024/05/Rom/e.txt",
                 u"2024/05/Rom/jpg", u"2024/.hidden/f.jpg", u"2024/05/.g.jpg", u"2025/Weit/Unten/h.jpg", u"2026/i.png", u"20/j.jpg"})
            tree.addPicture(QString::fromUtf16(file));
        const Page page = rendered({result(tree.path(u"2024/05/Rom"_s), Kind::Event), result(tree.path(u"2024"_s), Kind::Year),
                                       result(tree.path(u"2024/05"_s), Kind::Month), result(tree.path(u"2025"_s), Kind::Year),
                                       result(tree.path(u"2026"_s), Kind::Year), result(tree.path(u"2024"_s), Kind::Event)},
            tree.root().size());
        QVERIFY(page.isWellFormed);
        QCOMPARE(page.folder(u"Rom"_s).facts, u"1 Foto"_s);
        QCOMPARE(page.folder(u"05"_s).facts, u"3 Fotos, davon 2 direkt im Ordner"_s);
        QCOMPARE(page.folder(u"2024"_s).facts, u"4 Fotos, davon 1 direkt im Ordner"_s);
        QCOMPARE(page.folder(u"2025"_s).facts, u"1 Foto in Unterordnern"_s);
        QCOMPARE(page.folder(u"2026"_s).facts, u"keine Fotos"_s);
        QCOMPARE(page.tiles, (QStringList{u"2Ereignisse 4 Fotos"_s, u"3Jahre 5 Fotos"_s, u"1Monat 3 Fotos"_s, u"5Fotos in 6 Ordnern"_s}));
        QVERIFY(page.footer.contains(u"jpg, heic"_s));
        const Page years = rendered({result(tree.path(u"2024"_s), Kind::Year), result(tree.path(u"2025"_s), Kind::Year)}, 0);
        QCOMPARE(years.tiles, QStringList{u"2Jahre 5 Fotos"_s});
    }

    void datesComeFromNames_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("facts");
        QTest::newRow("day") << u"2024-07-12 Hafenfest"_s << u"keine Fotos · 12. Juli 2024"_s;
        QTest::newRow("range") << u"2024-03-12 - 2024-03-26 Rom"_s << u"keine Fotos · 12. März 2024 – 26. März 2024"_s;
        QTest::newRow("month") << u"2024-07 Urlaub"_s << u"keine Fotos · Juli 2024"_s;
        QTest::newRow("year and title") << u"Rom 2024"_s << u"keine Fotos · Jahr 2024"_s;
        QTest::newRow("year") << u"2024"_s << u"keine Fotos"_s;
        QTest::newRow("no year") << u"Juli"_s << u"keine Fotos"_s;
        QTest::newRow("none") << u"Rom"_s << u"keine Fotos"_s;
    }
    void datesComeFromNames()
    {
        QFETCH(QString, name);
        QFETCH(QString, facts);
        PictureTree tree;
        tree.addFolder(name);
        QCOMPARE(rendered({result(tree.path(name), Kind::Event)}, tree.root().size()).folder(name).facts, facts);
    }

    void occasionsHaveBars()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const Page page = rendered({result(u"/gone/Fest"_s, Kind::Event,
                                        {NyOccasionInfo(u"wedding"_s, u"title"_s, 0.871), NyOccasionInfo(u"beach"_s, u"vision"_s, 0.125),
                                            NyOccasionInfo(u"city"_s, u"place"_s, 1.5), NyOccasionInfo(u"<i>%1</i>"_s, u"&amp;"_s, -3),
                                            NyOccasionInfo(QString(), QString(), nan)}),
                                       result(u"/gone/Ohne"_s, Kind::Event)},
            5);
        QVERIFY(page.isWellFormed);
        const QList<Occasion> occasions = page.folder(u"Fest"_s).occasions;
        QCOMPARE(occasions.size(), 5);
        QCOMPARE(occasions.at(0).text, u"Hochzeit laut Ordnername"_s);
        QCOMPARE(occasions.at(0).share, u"87\u00a0%"_s);
        QCOMPARE(occasions.at(0).barWidth, u"width: 87.1%"_s);
        QCOMPARE(occasions.at(1).text, u"Strand laut Bildern"_s);
        QCOMPARE(occasions.at(1).share, u"13\u00a0%"_s);
        QCOMPARE(occasions.at(2).text, u"Städtereise laut Orten"_s);
        QCOMPARE(occasions.at(2).share, u"100\u00a0%"_s);
        QCOMPARE(occasions.at(2).barWidth, u"width: 100.0%"_s);
        QCOMPARE(occasions.at(3).text, u"<i>%1</i> &amp;"_s);
        QCOMPARE(occasions.at(3).barWidth, u"width: 0.0%"_s);
        QCOMPARE(occasions.at(4).text, u"ohne Namen"_s);
        QCOMPARE(occasions.at(4).share, u"?\u00a0%"_s);
        QVERIFY(page.folder(u"Ohne"_s).occasions.isEmpty());
    }

    void namesAreEscaped_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char *what, const QString &name, const QString &shown = {}) {
            QTest::newRow(what) << name << (shown.isNull() ? name : shown);
        };
        row("script", u"<script>alert(1)<x>"_s);
        row("end of style", u"</style><b>"_s.replace(u'/', u'\u2215'));
        row("quotes", u"\"onload='x'"_s);
        row("entity", u"&lt; & &#60;"_s);
        row("comment", u"<!-- -->]]>"_s);
        row("markers", u"%1 %2 %n %"_s);
        row("url", u"a#b?c=d;e%20f%zz"_s);
        row("backslash", u"C:\\x"_s);
        row("line feed", u"a\nb\r\tc"_s, u"a\u240ab\u240d\u2409c"_s);
        row("controls", u"a\u0001\u001b\u007f\u0085b"_s, u"a\u2401\u241b\u2421\ufffdb"_s);
        row("override", u"a\u202egpj.b\u2066c\u2069"_s, u"a\ufffdgpj.b\ufffdc\ufffd"_s);
        row("right to left", u"חופשה ‏2024"_s);
        row("emoji", u"🎉 Fest 👩‍👩‍👧"_s);
        row("noncharacters", u"a\uffff\ufffe\ufdd0"_s, u"a\ufffd\ufffd\ufdd0"_s);
        row("blanks", u" a  b "_s);
        row("decomposed", u"A\u0308"_s);
        row("long", QString(250, u'x'));
    }
    void namesAreEscaped()
    {
        QFETCH(QString, name);
        QFETCH(QString, shown);
        PictureTree tree;
        const QString path = tree.path(u"Über & <so>/"_s + name);
        tree.addPicture(path.mid(tree.root().size() + 1) + u"/\"<&>'.jpg"_s);
        QVERIFY(QFileInfo(path).isDir());
        const Page page = rendered({result(path, Kind::Event)}, tree.root().size());
        QVERIFY(page.isWellFormed);
        QCOMPARE(page.folders.size(), 1);
        const Folder &folder = page.folders.constFirst();
        QCOMPARE(folder.name, shown);
        QCOMPARE(folder.where, u"in Über & <so>"_s);
        QCOMPARE(folder.pictureNames, QStringList{u"\"<&>'.jpg"_s});
        QVERIFY(folder.facts.startsWith(u"1 Foto"_s));
        QVERIFY(folder.link.startsWith(u"file:///"_s));
        static const QRegularExpression reserved(u"[^A-Za-z0-9/%:._~!$&'()*+,;=@-]"_s);
        QVERIFY2(!folder.link.contains(reserved), qPrintable(folder.link));
        QCOMPARE(QString::fromUtf8(QByteArray::fromPercentEncoding(folder.link.mid(7).toLatin1())), path);
        QVERIFY(!page.elements.contains(u"script"_s));
        QVERIFY(!page.elements.contains(u"b"_s) || page.elements.count(u"b"_s) == page.tiles.size());
    }
    void halvesOfCharactersDoNotSpoilThePage()
    {
        const QString broken = u"/gone/a"_s + QChar(0xd83d) + u"b"_s + QChar(0xdc00);
        const Page page = rendered({result(broken, Kind::Event, {NyOccasionInfo(QString(QChar(0xdfff)), {}, 0.5)})}, 5);
        QVERIFY(page.isWellFormed);
        QCOMPARE(page.folders.constFirst().name, u"a\ufffdb\ufffd"_s);
    }

    void thePathIsCutAtTheStartDirectory_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("where");
        QTest::addColumn<QString>("searched");
        const QString path = u"/gone/Bilder/2024/Rom"_s;
        QTest::newRow("directory") << path << 12 << u"in 2024"_s << u"/gone/Bilder"_s;
        QTest::newRow("with separator") << path << 13 << u"in 2024"_s << u"/gone/Bilder"_s;
        QTest::newRow("parent") << path << 17 << QString() << u"/gone/Bilder/2024"_s;
        QTest::newRow("itself") << path << 21 << u"der durchsuchte Ordner selbst"_s << path;
        QTest::newRow("root") << path << 1 << u"in gone/Bilder/2024"_s << u"/"_s;
        QTest::newRow("amid a name") << path << 10 << u"in /gone/Bilder/2024"_s << QString();
        QTest::newRow("zero") << path << 0 << u"in /gone/Bilder/2024"_s << QString();
        QTest::newRow("negative") << path << -7 << u"in /gone/Bilder/2024"_s << QString();
        QTest::newRow("least") << path << std::numeric_limits<int>::min() << u"in /gone/Bilder/2024"_s << QString();
        QTest::newRow("one longer") << path << 22 << u"in /gone/Bilder/2024"_s << QString();
        QTest::newRow("greatest") << path << std::numeric_limits<int>::max() << u"in /gone/Bilder/2024"_s << QString();
        QTest::newRow("behind a pair") << u"/🎉/a"_s << 2 << u"in /🎉"_s << QString();
        QTest::newRow("no path") << QString() << 3 << QString() << QString();
    }
    void thePathIsCutAtTheStartDirectory()
    {
        QFETCH(QString, path);
        QFETCH(int, length);
        QFETCH(QString, where);
        QFETCH(QString, searched);
        const Page page = rendered({path.isEmpty() ? Result() : result(path, Kind::Event)}, length);
        QVERIFY(page.isWellFormed);
        QCOMPARE(page.folders.size(), 1);
        QCOMPARE(page.folders.constFirst().where, where);
        QCOMPARE(page.subline.contains(u"Gesucht in"_s), !searched.isEmpty());
        QVERIFY(searched.isEmpty() || page.subline.contains(u"Gesucht in "_s + searched + u" ·"_s));
    }

    void foldersThatCannotBeReadAreShownAsSuch()
    {
        PictureTree tree;
        tree.addPicture(u"Da/a.jpg"_s);
        tree.addPicture(u"Zu/a.jpg"_s);
        tree.addPicture(u".Verborgen/a.jpg"_s);
        tree.addFile(u"Datei"_s);
        QVERIFY(::chmod(QFile::encodeName(tree.path(u"Zu"_s)).constData(), 0) == 0);
        QTest::failOnWarning(QRegularExpression(u"."_s));
        Page page;
        {
            const WithoutRootPowers withoutPrivileges;
            page = rendered(
                {result(tree.path(u"Da"_s), Kind::Event), result(tree.path(u"Zu"_s), Kind::Event), result(tree.path(u"Weg"_s), Kind::Event),
                    result(tree.path(u"Datei"_s), Kind::Event), result(tree.path(u".Verborgen"_s), Kind::Event), Result()},
                tree.root().size());
        }
        QVERIFY(::chmod(QFile::encodeName(tree.path(u"Zu"_s)).constData(), 0700) == 0);
        QVERIFY(page.isWellFormed);
        QCOMPARE(page.folders.size(), 6);
        QCOMPARE(page.folder(u"Da"_s).facts, u"1 Foto"_s);
        QCOMPARE(page.folder(u"Zu"_s).facts, u"Dieser Ordner lässt sich nicht lesen."_s);
        QCOMPARE(page.folder(u"Weg"_s).facts, u"Hier gibt es keinen Ordner mehr."_s);
        QCOMPARE(page.folder(u"Datei"_s).facts, u"Hier gibt es keinen Ordner mehr."_s);
        QCOMPARE(page.folder(u".Verborgen"_s).facts, u"Dieser Ordner wird beim Zählen übergangen."_s);
        QCOMPARE(page.folder(u"Ohne Ordner"_s).section, u"unknown"_s);
    }

    void picturesStandBesideFolders()
    {
        PictureTree tree;
        QVERIFY(TestSupport::writePhoto(tree.path(u"Fest/1.jpg"_s), 1));
        for (int number = 2; number <= 8; ++number)
            QVERIFY(TestSupport::writePhoto(tree.path(u"Fest/"_s + QString::number(number) + u".jpg"_s), number));
        QVERIFY(QImage(900, 600, QImage::Format_RGB32).save(tree.path(u"Fest/9.jpg"_s), "JPEG"));
        const QList<Result> results{result(tree.path(u"Fest"_s), Kind::Event)};
        const Page page = rendered(results, tree.root().size());
        const Folder folder = page.folder(u"Fest"_s);
        QCOMPARE(folder.pictureNames, (QStringList{u"1.jpg"_s, u"5.jpg"_s, u"9.jpg"_s}));
        QCOMPARE(folder.pictures.size(), 3);
        QCOMPARE(QImage::fromData(folder.pictures.at(0)).size(), QSize(48, 32));
        QCOMPARE(QImage::fromData(folder.pictures.at(2)).size(), QSize(192, 128));
        // The second time nothing is decoded, and what changed meanwhile is.
        QVERIFY(QImage(90, 90, QImage::Format_RGB32).save(tree.path(u"Fest/1.jpg"_s), "JPEG"));
        const Folder later = rendered(results, tree.root().size()).folder(u"Fest"_s);
        QCOMPARE(QImage::fromData(later.pictures.at(0)).size(), QSize(90, 90));
        QCOMPARE(later.pictures.at(2), folder.pictures.at(2));
    }
    void picturesThatCannotBeReadAreNamedOnce()
    {
        PictureTree tree;
        tree.addFile(u"Fest/a.jpg"_s, "no picture");
        tree.addPicture(u"Fest/b.jpg"_s);
        QTest::failOnWarning(QRegularExpression(u"."_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^NyImageLoader: cannot read the picture .*/Fest/a.jpg\""_s));
        const QList<Result> results{result(tree.path(u"Fest"_s), Kind::Event)};
        QCOMPARE(rendered(results, 0).folder(u"Fest"_s).unreadable, QStringList{u"nicht lesbar"_s});
        const Folder again = rendered(results, 0).folder(u"Fest"_s);
        QCOMPARE(again.unreadable, QStringList{u"nicht lesbar"_s});
        QCOMPARE(again.pictures.size(), 1);
    }
    void picturesAreShared_data()
    {
        QTest::addColumn<int>("folders");
        QTest::addColumn<int>("ofFirst");
        QTest::addColumn<int>("ofLast");
        QTest::addColumn<int>("all");
        QTest::newRow("few") << 66 << 3 << 3 << 198;
        QTest::newRow("more") << 67 << 2 << 2 << 134;
        QTest::newRow("as many") << 200 << 1 << 1 << 200;
        QTest::newRow("too many") << 201 << 1 << 0 << 200;
    }
    void picturesAreShared()
    {
        QFETCH(int, folders);
        QFETCH(int, ofFirst);
        QFETCH(int, ofLast);
        QFETCH(int, all);
        PictureTree tree;
        QList<Result> results;
        for (int number = 0; number < folders; ++number) {
            const QString name = QString::number(number).rightJustified(4, u'0');
            for (int picture = 0; picture <= ofFirst; ++picture)
                tree.addPicture(name + u'/' + QString::number(picture) + u".jpg"_s);
            results.append(result(tree.path(name), Kind::Event));
        }
        // Folders without photos take nothing from the others.
        results.append(result(tree.path(u"zz"_s), Kind::Event));
        const Page page = rendered(results, tree.root().size());
        QVERIFY(page.isWellFormed);
        QCOMPARE(page.folders.size(), folders + 1);
        QCOMPARE(page.folders.at(0).pictures.size(), ofFirst);
        QCOMPARE(page.folders.at(folders - 1).pictures.size(), ofLast);
        qsizetype pictures = 0;
        for (const Folder &folder : page.folders)
            pictures += folder.pictures.size();
        QCOMPARE(pictures, all);
    }

    void thePageNeedsNothingElse()
    {
        PictureTree tree;
        tree.addPicture(u"Fest/a.jpg"_s);
        const Page page
            = rendered({result(tree.path(u"Fest"_s), Kind::Event, {NyOccasionInfo(u"city"_s, u"place"_s, 0.5)})}, tree.root().size());
        QVERIFY(page.isWellFormed);
        QVERIFY(page.sources.size() > 4);
        static const QRegularExpression own(u"^(data:image/jpeg;base64,|file:///|#|width: |--kind: )"_s);
        for (const QString &source : page.sources)
            QVERIFY2(own.match(source).hasMatch(), qPrintable(source));
        for (const char *outside : {"http:", "https:", "url(", "@import", "<script", "<link", "<iframe"})
            QVERIFY2(!page.bytes.contains(outside), outside);
        QVERIFY(page.bytes.contains("prefers-color-scheme: dark"));
        QVERIFY(page.bytes.contains("@media print"));
    }

    void manyFoldersFitOntoAPage()
    {
        QList<Result> results;
        for (int number = 0; number < 10'000; ++number)
            results.append(result(u"/gone/Fest "_s + QString::number(number), number % 3 ? Kind::Event : Kind::Day));
        const Page page = rendered(results, 5);
        QVERIFY(page.isWellFormed);
        QCOMPARE(page.folders.size(), 10'000);
        QCOMPARE(page.tiles.at(0), u"6.666Ereignisse 0 Fotos"_s);
        QCOMPARE(page.folders.at(1).name, u"Fest 2"_s);
        QCOMPARE(page.folders.at(6665).name, u"Fest 9998"_s);
    }

    void aPageReplacesTheOlderOne()
    {
        QVERIFY(rendered({result(u"/gone/Alt"_s, Kind::Event)}, 5).isWellFormed);
        const Page page = rendered({result(u"/gone/Neu"_s, Kind::Event)}, 5);
        QCOMPARE(page.names(), QStringList{u"event/Neu"_s});
        QCOMPARE(QDir(m_folder.path()).entryList({u"classification.event.all.html*"_s}, QDir::Files),
            QStringList{u"classification.event.all.html"_s});
    }
    void aPageThatCannotBeWrittenIsReported()
    {
        const QString path = m_folder.filePath(u"no such folder/classification.event.all.html"_s);
        QTest::failOnWarning(QRegularExpression(u"."_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot write .*"_s + QRegularExpression::escape(path)));
        QVERIFY(!Renderer({}, 0, {}).renderToFile(QFileInfo(path)));
        QVERIFY(!QFileInfo::exists(path));

        // A folder in the file's place stays.
        const QString folder = m_folder.filePath(u"folder.html"_s);
        QVERIFY(QDir().mkpath(folder));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot write .*"_s + QRegularExpression::escape(folder)));
        QVERIFY(!Renderer({}, 0, {}).renderToFile(QFileInfo(folder)));
        QVERIFY(QFileInfo(folder).isDir());
    }
    void withoutFiltersNothingIsCounted()
    {
        PictureTree tree;
        tree.addPicture(u"Fest/a.jpg"_s);
        QVERIFY(Renderer({result(tree.path(u"Fest"_s), Kind::Event)}, 0, {}).renderToFile(QFileInfo(target())));
        const Page page = PageReader(TestSupport::readFile(target())).read();
        QCOMPARE(page.folder(u"Fest"_s).facts, u"keine Fotos"_s);
        QVERIFY(page.footer.contains(u"keine Endung genannt"_s));
    }
};

QTEST_GUILESS_MAIN(tst_NyClassificationResultsRendererHTML)
#include "tst_NyClassificationResultsRendererHTML.moc"
