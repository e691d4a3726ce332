#include "NyClassificationResultsRendererHTML.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <utility>
#include <vector>

#include <QtCore/QCollator>
#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QLocale>
#include <QtCore/QUrl>

#include <NyFileHandler.h>

#include "NyFolderName.h"
#include "NyFolderNameParser.h"
#include "NyFolderTree.h"
#include "NyReportThumbnails.h"

#include <fcntl.h>
#include <unistd.h>

namespace
{

using Kind = NyEventFolderTypeEnum;

constexpr auto Style = R"(
:root {
  color-scheme: light dark;
  --page: #f5f4f0; --sheet: #ffffff; --text: #1c2025; --quiet: #59616b; --line: #dcd9d1; --track: #e6e8e8; --link: #0a5f69;
  --event: #0d7c88; --year: #b3590a; --month: #7a4fb0; --day: #2563b8; --project: #3d7a2a; --several: #a3386c; --unknown: #6b7280;
}
@media (prefers-color-scheme: dark) {
  :root {
    --page: #14171a; --sheet: #1d2125; --text: #e7e9ec; --quiet: #a4adb7; --line: #343a41; --track: #353c43; --link: #6fcfd9;
    --event: #4dbac6; --year: #e8a05c; --month: #b795e6; --day: #7eaef0; --project: #8bc776; --several: #e58bb4; --unknown: #9aa3ad;
  }
}
* { box-sizing: border-box; }
html { scroll-behavior: smooth; }
body { margin: 0; background: var(--page); color: var(--text); font: 16px/1.5 system-ui, "Noto Sans", "DejaVu Sans", sans-serif; }
body > * { max-width: 68rem; margin-inline: auto; padding-inline: 1.5rem; }
a { color: inherit; text-decoration-color: var(--line); text-underline-offset: .2em; }
a:hover { color: var(--link); text-decoration-color: currentColor; }
:focus-visible { outline: 3px solid var(--link); outline-offset: 2px; border-radius: 3px; }
h1 { margin: 0; font-size: 2rem; line-height: 1.2; letter-spacing: -.01em; }
h2 { margin: 0; font-size: 1.3rem; line-height: 1.3; }
h3 { margin: 0; font-size: 1.05rem; line-height: 1.35; overflow-wrap: anywhere; }
p { margin: 0; }
ul { margin: 0; padding: 0; list-style: none; }
header { padding-block: 2.5rem 1.5rem; }
.about { margin-top: .5rem; max-width: 46rem; }
.quiet, .where, .facts { color: var(--quiet); font-size: .875rem; }
header .quiet { margin-top: .5rem; overflow-wrap: anywhere; }
.tiles { display: grid; grid-template-columns: repeat(auto-fill, minmax(9.5rem, 1fr)); gap: .75rem; }
.tile { display: block; height: 100%; padding: .75rem 1rem .8rem; background: var(--sheet); border: 1px solid var(--line);
  border-top: 4px solid var(--kind); border-radius: 8px; text-decoration: none; }
.tile b { display: block; font-size: 1.75rem; line-height: 1.2; font-variant-numeric: tabular-nums; }
.tile .quiet { display: block; }
a.tile:hover { border-color: var(--kind); color: inherit; }
section { margin-top: 2.5rem; }
.heading { display: flex; flex-wrap: wrap; align-items: baseline; gap: 0 .75rem; margin-bottom: .75rem; }
.heading h2::before { content: ""; display: inline-block; width: .7rem; height: .7rem; margin-right: .6rem; border-radius: 50%;
  background: var(--kind); print-color-adjust: exact; -webkit-print-color-adjust: exact; }
.folders { background: var(--sheet); border: 1px solid var(--line); border-radius: 8px; }
.folder { display: grid; grid-template-columns: minmax(0, 1fr); gap: .5rem 1.25rem; align-items: start; padding: .9rem 1rem;
  content-visibility: auto; contain-intrinsic-size: auto 6.5rem; }
.folder + .folder { border-top: 1px solid var(--line); }
.facts { margin-top: .25rem; color: var(--text); }
.where { overflow-wrap: anywhere; }
.warn { font-weight: 600; }
.pictures { display: flex; gap: 6px; }
.pictures img, .pictures span { flex: none; width: 96px; height: 72px; border-radius: 5px; object-fit: cover; background: var(--track); }
.pictures span { display: flex; align-items: center; justify-content: center; padding: 4px; color: var(--quiet); font-size: .75rem;
  line-height: 1.2; text-align: center; }
.occasions { display: grid; gap: .35rem; font-size: .875rem; line-height: 1.3; }
.occasions li { display: grid; grid-template-columns: minmax(0, 1fr) auto; gap: .1rem .75rem; }
.occasions .word { overflow-wrap: anywhere; }
.occasions .share { font-variant-numeric: tabular-nums; }
.bar { grid-column: 1 / -1; height: 6px; border-radius: 3px; background: var(--track); overflow: hidden; }
.bar i { display: block; height: 100%; border-radius: 3px; background: var(--kind); }
.bar, .bar i { print-color-adjust: exact; -webkit-print-color-adjust: exact; }
.nothing { padding: 2.5rem 1.5rem; text-align: center; background: var(--sheet); border: 1px solid var(--line); border-radius: 8px; }
footer { margin-top: 3rem; padding-bottom: 3rem; color: var(--quiet); font-size: .875rem; }
footer h2 { padding-top: 1.25rem; border-top: 1px solid var(--line); font-size: 1rem; color: var(--text); }
footer li { margin-top: .4rem; max-width: 46rem; overflow-wrap: anywhere; }
@media (min-width: 48rem) {
  .pictured .folder { grid-template-columns: var(--strip) minmax(0, 1fr); }
  .weighed .folder { grid-template-columns: minmax(0, 1fr) 17rem; }
  .pictured.weighed .folder { grid-template-columns: var(--strip) minmax(0, 1fr) 17rem; }
  .pictured .folder > .text { grid-column: 2; }
  .pictured .folder > .pictures { grid-column: 1; grid-row: 1; }
}
@media print {
  :root {
    --page: #fff; --sheet: #fff; --text: #000; --quiet: #444; --line: #bbb; --track: #ddd; --link: #000;
    --event: #0d7c88; --year: #b3590a; --month: #7a4fb0; --day: #2563b8; --project: #3d7a2a; --several: #a3386c; --unknown: #6b7280;
  }
  body { font-size: 11pt; }
  body > * { max-width: none; padding-inline: 0; }
  a { text-decoration: none; }
  .folder { break-inside: avoid; content-visibility: visible; }
  .heading { break-after: avoid; }
}
)";

/** The sections of the page in their order. */
constexpr std::array SectionIds{"event", "year", "month", "day", "project", "several", "unknown"};
constexpr size_t SeveralSection = 5;
constexpr size_t UnknownSection = 6;

size_t sectionOf(const NyEventFolderType &kind)
{
    switch (kind.value()) {
    case Kind::Event:
        return 0;
    case Kind::Year:
        return 1;
    case Kind::Month:
        return 2;
    case Kind::Day:
        return 3;
    case Kind::Project:
        return 4;
    case Kind::Unknown:
        return UnknownSection;
    }
    return SeveralSection;
}

/** A character that shows where another one is that would show nothing, or would turn round the text behind it. */
char16_t shown(char16_t unit)
{
    if (unit < 0x20)
        return char16_t(0x2400 + unit);
    if (unit == 0x7f)
        return u'\u2421';
    const bool isInvisible = (unit >= 0x80 && unit < 0xa0) || (unit >= 0x202a && unit <= 0x202e) || (unit >= 0x2066 && unit <= 0x2069)
        || unit == 0x2028 || unit == 0x2029 || unit >= 0xfffe;
    return isInvisible ? u'\ufffd' : unit;
}

/** Text for between tags and for attributes in double quotes. */
QString escaped(const QString &text)
{
    QString result;
    result.reserve(text.size() + 16);
    for (qsizetype at = 0; at < text.size(); ++at) {
        const QChar unit = text.at(at);
        if (unit.isHighSurrogate() && at + 1 < text.size() && text.at(at + 1).isLowSurrogate()) {
            result += unit;
            result += text.at(++at);
            continue;
        }
        if (unit.isSurrogate()) {
            result += QChar::ReplacementCharacter;
            continue;
        }
        switch (unit.unicode()) {
        case u'&':
            result += QLatin1String("&amp;");
            break;
        case u'<':
            result += QLatin1String("&lt;");
            break;
        case u'>':
            result += QLatin1String("&gt;");
            break;
        case u'"':
            result += QLatin1String("&quot;");
            break;
        case u'\'':
            result += QLatin1String("&#39;");
            break;
        default:
            result += QChar(shown(unit.unicode()));
        }
    }
    return result;
}

/** By RFC 3986; QUrl itself leaves brackets in a path. */
QString fileUrl(const QString &path)
{
    return QStringLiteral("file://") + QLatin1String(QUrl::toPercentEncoding(path, "/!$'()*+,;=:@&"));
}

/** One folder of the list, with what was found out about it. */
struct Entry
{
    enum class State {
        Read,
        NoPath,
        Gone,
        Unreadable,
        PassedOver, ///< left out by the walk: hidden, ignorable, or entered by another way
    };

    const NyEventFolderClassificationResult *result = nullptr;
    QString path; ///< clean and absolute
    QString name;
    QString parentPath;
    bool isStartDirectory = false;
    size_t section = 0;
    State state = State::NoPath;
    int folder = -1; ///< in the tree
};

struct Section
{
    std::vector<Entry> entries;
    qint64 pictures = 0; ///< each counted once
};

/** What the disk says about the listed folders. */
class Page
{
    Q_DECLARE_TR_FUNCTIONS(NyClassificationResultsRendererHTML)

public:
    Page(const QList<NyEventFolderClassificationResult> &results, int startDirectoryLength, const QList<QString> &filters)
        : m_filters(filters)
        , m_locale(tr("de", "language of this page, as in the HTML attribute lang"))
    {
        fillSections(results, startDirectoryLength);
        count();
    }

    QString html(const QString &fileName) const;

private:
    void fillSections(const QList<NyEventFolderClassificationResult> &results, int startDirectoryLength);
    static void split(Entry &entry, int startDirectoryLength, QString *startDirectory);
    void count();
    void findFolders(const QHash<QString, int> &indexes);

    QString number(qint64 value) const { return m_locale.toString(value); }
    QString pictureCount(qint64 count) const { return count == 1 ? tr("1 Foto") : tr("%1 Fotos").arg(number(count)); }
    static QString sectionTitle(size_t section, qint64 count);
    static QString sectionText(size_t section);
    static QString kindWord(Kind kind);
    static QString title(const QString &fileName, QString *explanation);

    QString header(const QString &title, const QString &explanation) const;
    QString summary() const;
    QString sectionHtml(size_t section, int picturesOfFolder, int *picturesLeft) const;
    QString entryHtml(const Entry &entry, int picturesOfFolder, int *picturesLeft) const;
    QString pictures(const Entry &entry, int maximum, int *picturesLeft) const;
    QString facts(const Entry &entry) const;
    QString dates(const QString &name) const;
    QString occasions(const NyOccasionInfoList &occasions) const;
    QString footer(int picturesOfFolder) const;
    static QString occasionWord(const QString &keyword);
    static QString sourceWord(const QString &source);

    const QList<QString> m_filters;
    const QLocale m_locale;
    qsizetype m_entryCount = 0;
    QString m_startDirectory; ///< empty when it cannot be told
    std::array<Section, SectionIds.size()> m_sections;
    NyFolderTree m_tree;
    std::vector<qint64> m_picturesBelow; ///< of each folder of the tree, those in it included
    qint64 m_allPictures = 0;
};

void Page::fillSections(const QList<NyEventFolderClassificationResult> &results, int startDirectoryLength)
{
    m_entryCount = results.size();
    bool isStartKnown = true;
    for (const NyEventFolderClassificationResult &result : results) {
        Entry entry;
        entry.result = &result;
        entry.path = QDir::cleanPath(result.directoryPath());
        entry.section = sectionOf(result.classification());
        QString start;
        split(entry, startDirectoryLength, &start);
        if (m_startDirectory.isEmpty())
            m_startDirectory = start;
        // A shorter path says nothing about it.
        isStartKnown = isStartKnown && (entry.path.size() < startDirectoryLength || start == m_startDirectory);
        m_sections[entry.section].entries.push_back(entry);
    }
    if (!isStartKnown)
        m_startDirectory.clear();

    QCollator collator(m_locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    for (Section &section : m_sections) {
        std::vector<std::pair<QCollatorSortKey, Entry>> sorted;
        sorted.reserve(section.entries.size());
        for (Entry &entry : section.entries)
            sorted.emplace_back(collator.sortKey(entry.path), std::move(entry));
        std::stable_sort(sorted.begin(), sorted.end(), [](const auto &left, const auto &right) {
            const int order = left.first.compare(right.first);
            return order != 0 ? order < 0 : left.second.path < right.second.path;
        });
        for (size_t at = 0; at < sorted.size(); ++at)
            section.entries[at] = std::move(sorted[at].second);
    }
}

/** Divides the path into start directory, parent folders and name. A length that ends amid a name tells no start directory. */
void Page::split(Entry &entry, int startDirectoryLength, QString *startDirectory)
{
    const QString &path = entry.path;
    const qsizetype length = startDirectoryLength;
    entry.name = path.section(QLatin1Char('/'), -1);
    QString rest = path;
    if (length > 0 && length <= path.size()) {
        const bool endsBeforeSeparator = length == path.size() || path.at(length) == QLatin1Char('/');
        const bool endsWithSeparator = path.at(length - 1) == QLatin1Char('/');
        if (endsBeforeSeparator || endsWithSeparator) {
            *startDirectory = endsWithSeparator && length > 1 ? path.left(length - 1) : path.left(length);
            rest = path.mid(endsWithSeparator ? length : length + 1);
            entry.isStartDirectory = rest.isEmpty();
        }
    }
    entry.parentPath = rest.left(std::max<qsizetype>(rest.lastIndexOf(QLatin1Char('/')), 0));
    if (entry.name.isEmpty())
        entry.name = path;
}

void Page::count()
{
    QStringList paths;
    for (Section &section : m_sections) {
        for (Entry &entry : section.entries) {
            if (entry.path.isEmpty())
                continue;
            // The list may be older than what lies there now.
            const int folder = ::open(QFile::encodeName(entry.path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            if (folder >= 0)
                ::close(folder);
            entry.state = folder >= 0                 ? Entry::State::PassedOver
                : errno == ENOENT || errno == ENOTDIR ? Entry::State::Gone
                                                      : Entry::State::Unreadable;
            if (entry.state == Entry::State::PassedOver)
                paths.append(entry.path == QLatin1String("/") ? entry.path : entry.path + QLatin1Char('/'));
        }
    }
    // With the separator behind each, a folder stands right before all that lie in it.
    std::sort(paths.begin(), paths.end());
    QStringList starts;
    QString outermost;
    for (const QString &path : std::as_const(paths)) {
        if (!outermost.isEmpty() && path.startsWith(outermost))
            continue;
        outermost = path;
        starts.append(QDir::cleanPath(path));
    }
    m_tree = NyFolderTree(starts, m_filters, NyFolderTree::Pictures::Count);

    const QList<NyFolderTree::Folder> &folders = m_tree.folders();
    QHash<QString, int> indexes;
    indexes.reserve(folders.size());
    m_picturesBelow.assign(size_t(folders.size()), 0);
    // A folder always stands behind its parent.
    for (int index = int(folders.size()) - 1; index >= 0; --index) {
        const NyFolderTree::Folder &folder = folders.at(index);
        indexes.insert(folder.path, index);
        m_picturesBelow[size_t(index)] += folder.ownPictures;
        if (folder.parent >= 0)
            m_picturesBelow[size_t(folder.parent)] += m_picturesBelow[size_t(index)];
        m_allPictures += folder.ownPictures;
    }
    findFolders(indexes);
}

/** Connects the entries with the tree's folders, and counts the pictures of each section. */
void Page::findFolders(const QHash<QString, int> &indexes)
{
    const QList<NyFolderTree::Folder> &folders = m_tree.folders();
    std::vector<unsigned> sectionsOfFolder(size_t(folders.size()), 0);
    for (size_t section = 0; section < m_sections.size(); ++section) {
        for (Entry &entry : m_sections[section].entries) {
            entry.folder = entry.state == Entry::State::PassedOver ? indexes.value(entry.path, -1) : -1;
            if (entry.folder < 0)
                continue;
            entry.state = Entry::State::Read;
            sectionsOfFolder[size_t(entry.folder)] |= 1U << section;
        }
    }
    for (int index = 0; index < int(folders.size()); ++index) {
        const int parent = folders.at(index).parent;
        if (parent >= 0)
            sectionsOfFolder[size_t(index)] |= sectionsOfFolder[size_t(parent)];
        for (size_t section = 0; section < m_sections.size(); ++section) {
            if (sectionsOfFolder[size_t(index)] >> section & 1U)
                m_sections[section].pictures += folders.at(index).ownPictures;
        }
    }
}

QString Page::sectionTitle(size_t section, qint64 count)
{
    const bool one = count == 1;
    switch (section) {
    case 0:
        return one ? tr("Ereignis") : tr("Ereignisse");
    case 1:
        return one ? tr("Jahr") : tr("Jahre");
    case 2:
        return one ? tr("Monat") : tr("Monate");
    case 3:
        return one ? tr("Tag") : tr("Tage");
    case 4:
        return one ? tr("Projekt") : tr("Projekte");
    case SeveralSection:
        return tr("Mehrere Arten");
    default:
        return tr("Ohne Art");
    }
}

QString Page::sectionText(size_t section)
{
    switch (section) {
    case 0:
        return tr("Ordner zu einem Anlass, nach Name, Zeitraum oder Aufnahmezeiten");
    case 1:
        return tr("Ordner, die ein Jahr sammeln");
    case 2:
        return tr("Ordner, die einen Monat sammeln");
    case 3:
        return tr("Ordner für einen Tag");
    case 4:
        return tr("Ordner mit Arbeiten, die länger dauern, oder mit Projektdateien");
    case SeveralSection:
        return tr("Ordner, die mehr als eine Art haben");
    default:
        return tr("Ordner, über die sich nichts sagen ließ, etwa Kameraordner und Sammlungen");
    }
}

QString Page::kindWord(Kind kind)
{
    switch (kind) {
    case Kind::Unknown:
        return QString();
    default:
        return sectionTitle(sectionOf(NyEventFolderType(kind)), 1);
    }
}

QString Page::title(const QString &fileName, QString *explanation)
{
    QStringList parts = fileName.split(QLatin1Char('.'));
    const bool isReport
        = parts.size() == 4 && parts.constFirst() == QLatin1String("classification") && parts.constLast() == QLatin1String("html");
    const Kind kind = isReport ? NyEventFolderType().enumToStringTable()->decodeCSV(parts.at(1)) : Kind::Unknown;
    const size_t section = sectionOf(NyEventFolderType(kind));
    if (section < SeveralSection && parts.at(2) == QLatin1String("all")) {
        *explanation
            = tr("Alle Ordner, die von dieser Art sind. Unter denen mit neuen Fotos wird einer für den nächsten Vorschlag gewählt.");
        return tr("Alle Ordner der Art %1").arg(sectionTitle(section, 1));
    }
    if (section < SeveralSection && parts.at(2) == QLatin1String("ofInterest")) {
        *explanation
            = tr("Die Ordner dieser Art, in denen neue Fotos liegen. Der mit den meisten neuen Fotos wird zum nächsten Vorschlag.");
        return tr("Ordner der Art %1 mit neuen Fotos").arg(sectionTitle(section, 1));
    }
    *explanation = tr("Was die Bilderordner sind, und welche Anlässe ihre Fotos zeigen.");
    return tr("Einordnung der Bilderordner");
}

QString Page::html(const QString &fileName) const
{
    qsizetype withPictures = 0;
    for (const Section &section : m_sections) {
        withPictures += std::count_if(section.entries.begin(), section.entries.end(),
            [this](const Entry &entry) { return entry.folder >= 0 && m_picturesBelow[size_t(entry.folder)] > 0; });
    }
    using Renderer = NyClassificationResultsRendererHTML;
    const int picturesOfFolder = withPictures == 0
        ? Renderer::MostThumbnailsOfFolder
        : int(std::clamp<qsizetype>(Renderer::MostThumbnails / withPictures, 1, Renderer::MostThumbnailsOfFolder));
    int picturesLeft = Renderer::MostThumbnails;

    QString explanation;
    const QString title = Page::title(fileName, &explanation);
    QString page = header(title, explanation);
    page += QLatin1String("<main>\n");
    if (m_entryCount == 0) {
        page += QLatin1String("<p class=\"nothing\">") + escaped(tr("Die Liste ist leer: Es gibt keinen Ordner, der hierher gehört."))
            + QLatin1String("</p>\n");
    } else {
        page += summary();
        for (size_t section = 0; section < m_sections.size(); ++section)
            page += sectionHtml(section, picturesOfFolder, &picturesLeft);
    }
    page += QLatin1String("</main>\n") + footer(picturesOfFolder) + QLatin1String("</body>\n</html>\n");
    return page;
}

/** The page is HTML5 that is well-formed XML as well, so that tools can read it with either parser. */
QString Page::header(const QString &title, const QString &explanation) const
{
    QString html = QStringLiteral("<!DOCTYPE html>\n<html lang=\"") + escaped(m_locale.bcp47Name())
        + QStringLiteral("\">\n<head>\n<meta charset=\"utf-8\" />\n"
                         "<meta http-equiv=\"Content-Security-Policy\" "
                         "content=\"default-src 'none'; img-src data:; style-src 'unsafe-inline'\" />\n"
                         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\" />\n"
                         "<meta name=\"color-scheme\" content=\"light dark\" />\n<title>")
        + escaped(title) + QStringLiteral("</title>\n<style>") + QLatin1String(Style)
        + QStringLiteral("</style>\n</head>\n<body>\n<header>\n<h1>") + escaped(title) + QStringLiteral("</h1>\n<p class=\"about\">")
        + escaped(explanation) + QStringLiteral("</p>\n<p class=\"quiet\">");
    if (!m_startDirectory.isEmpty())
        html += escaped(tr("Gesucht in")) + QStringLiteral(" <bdi>") + escaped(m_startDirectory) + QStringLiteral("</bdi> · ");
    const QDateTime now = QDateTime::currentDateTime();
    html += escaped(tr("Stand: %1").arg(m_locale.toString(now, tr("d. MMMM yyyy, HH:mm", "date and time, as in QDateTime::toString()"))));
    return html + QStringLiteral("</p>\n</header>\n");
}

QString Page::summary() const
{
    QString html = QStringLiteral("<nav aria-label=\"") + escaped(tr("Übersicht")) + QStringLiteral("\">\n<ul class=\"tiles\">\n");
    int kinds = 0;
    for (size_t index = 0; index < m_sections.size(); ++index) {
        const Section &section = m_sections[index];
        if (section.entries.empty())
            continue;
        ++kinds;
        const auto count = qint64(section.entries.size());
        const QLatin1String id(SectionIds[index]);
        html += QStringLiteral("<li><a class=\"tile\" href=\"#") + id + QStringLiteral("\" style=\"--kind: var(--") + id
            + QStringLiteral(")\"><b>") + number(count) + QStringLiteral("</b>") + escaped(sectionTitle(index, count))
            + QStringLiteral(" <span class=\"quiet\">") + escaped(pictureCount(section.pictures)) + QStringLiteral("</span></a></li>\n");
    }
    // With one kind its tile says it all.
    if (kinds > 1) {
        html += QStringLiteral("<li><div class=\"tile\" style=\"--kind: var(--text)\"><b>") + number(m_allPictures) + QStringLiteral("</b>")
            + escaped(m_allPictures == 1 ? tr("Foto") : tr("Fotos")) + QStringLiteral(" <span class=\"quiet\">")
            + escaped(tr("in %1 Ordnern").arg(number(m_entryCount))) + QStringLiteral("</span></div></li>\n");
    }
    return html + QStringLiteral("</ul>\n</nav>\n");
}

QString Page::sectionHtml(size_t index, int picturesOfFolder, int *picturesLeft) const
{
    const Section &section = m_sections[index];
    if (section.entries.empty())
        return QString();
    const QLatin1String id(SectionIds[index]);
    const int picturesBefore = *picturesLeft;
    QString folders;
    bool hasOccasions = false;
    for (const Entry &entry : section.entries) {
        hasOccasions = hasOccasions || !entry.result->occasionInformation().isEmpty();
        folders += entryHtml(entry, picturesOfFolder, picturesLeft);
    }
    QString classes = QStringLiteral("folders");
    if (*picturesLeft < picturesBefore)
        classes += QStringLiteral(" pictured");
    if (hasOccasions)
        classes += QStringLiteral(" weighed");
    constexpr int PictureWidthPx = 96;
    constexpr int GapPx = 6;
    const QString strip = QString::number(picturesOfFolder * (PictureWidthPx + GapPx) - GapPx) + QStringLiteral("px");
    return QStringLiteral("<section aria-labelledby=\"") + id + QStringLiteral("\" style=\"--kind: var(--") + id
        + QStringLiteral("); --strip: ") + strip + QStringLiteral("\">\n<div class=\"heading\">\n<h2 id=\"") + id + QStringLiteral("\">")
        + escaped(sectionTitle(index, 2)) + QStringLiteral("</h2>\n<p class=\"quiet\">") + escaped(sectionText(index))
        + QStringLiteral("</p>\n</div>\n<ul class=\"") + classes + QStringLiteral("\">\n") + folders
        + QStringLiteral("</ul>\n</section>\n");
}

QString Page::entryHtml(const Entry &entry, int picturesOfFolder, int *picturesLeft) const
{
    QString html = QStringLiteral("<li class=\"folder\">\n<div class=\"text\">\n<h3>");
    if (entry.path.isEmpty()) {
        html += escaped(tr("Ohne Ordner"));
    } else {
        html += QStringLiteral("<a href=\"") + escaped(fileUrl(entry.path)) + QStringLiteral("\"><bdi>") + escaped(entry.name)
            + QStringLiteral("</bdi></a>");
    }
    html += QStringLiteral("</h3>\n");
    if (entry.isStartDirectory)
        html += QStringLiteral("<p class=\"where\">") + escaped(tr("der durchsuchte Ordner selbst")) + QStringLiteral("</p>\n");
    else if (!entry.parentPath.isEmpty())
        html += QStringLiteral("<p class=\"where\">") + escaped(tr("in")) + QStringLiteral(" <bdi>") + escaped(entry.parentPath)
            + QStringLiteral("</bdi></p>\n");
    html += facts(entry) + QStringLiteral("</div>\n");
    html += pictures(entry, picturesOfFolder, picturesLeft);
    html += occasions(entry.result->occasionInformation());
    return html + QStringLiteral("</li>\n");
}

QString Page::facts(const Entry &entry) const
{
    QStringList facts;
    switch (entry.state) {
    case Entry::State::NoPath:
        break;
    case Entry::State::Gone:
        facts.append(QStringLiteral("<span class=\"warn\">") + escaped(tr("Hier gibt es keinen Ordner mehr.")) + QStringLiteral("</span>"));
        break;
    case Entry::State::Unreadable:
        facts.append(
            QStringLiteral("<span class=\"warn\">") + escaped(tr("Dieser Ordner lässt sich nicht lesen.")) + QStringLiteral("</span>"));
        break;
    case Entry::State::PassedOver:
        facts.append(escaped(tr("Dieser Ordner wird beim Zählen übergangen.")));
        break;
    case Entry::State::Read: {
        const qint64 below = m_picturesBelow[size_t(entry.folder)];
        const int own = m_tree.folders().at(entry.folder).ownPictures;
        QString text = below == 0 ? tr("keine Fotos") : pictureCount(below);
        if (below > 0 && own == 0)
            text = tr("%1 in Unterordnern").arg(text);
        else if (own < below)
            text = tr("%1, davon %2 direkt im Ordner").arg(text, number(own));
        facts.append(escaped(text));
        break;
    }
    }
    if (const QString text = dates(entry.name); !text.isEmpty())
        facts.append(escaped(text));
    if (entry.section == SeveralSection) {
        QStringList words;
        for (const Kind kind : {Kind::Event, Kind::Year, Kind::Month, Kind::Day, Kind::Project}) {
            if (int(entry.result->classification().value()) & int(kind))
                words.append(kindWord(kind));
        }
        facts.append(words.isEmpty() ? escaped(tr("Art %1").arg(int(entry.result->classification().value())))
                                     : escaped(words.join(QStringLiteral(" + "))));
    }
    return facts.isEmpty() ? QString()
                           : QStringLiteral("<p class=\"facts\">") + facts.join(QStringLiteral(" · ")) + QStringLiteral("</p>\n");
}

/** The days that the name tells of. A bare year is the name over again. */
QString Page::dates(const QString &name) const
{
    const NyFolderName parsed = NyFolderNameParser::parse(name);
    if (parsed.dateForm == NyFolderName::DateForm::None || (parsed.dateForm == NyFolderName::DateForm::Year && !parsed.hasTitle()))
        return QString();
    const QDate first = parsed.firstDay();
    const QDate last = parsed.lastDay();
    if (!first.isValid() || !last.isValid() || last < first)
        return QString();
    const QString dayFormat = tr("d. MMMM yyyy", "date, as in QDate::toString()");
    if (first == last)
        return m_locale.toString(first, dayFormat);
    const bool isWholeMonths = first.day() == 1 && last.day() == last.daysInMonth();
    if (isWholeMonths && first.year() == last.year() && first.month() == 1 && last.month() == 12)
        return tr("Jahr %1").arg(first.year());
    if (isWholeMonths && first.year() == last.year() && first.month() == last.month())
        return m_locale.toString(first, QStringLiteral("MMMM yyyy"));
    return m_locale.toString(first, dayFormat) + QStringLiteral(" – ") + m_locale.toString(last, dayFormat);
}

QString Page::pictures(const Entry &entry, int maximum, int *picturesLeft) const
{
    if (entry.folder < 0 || *picturesLeft <= 0 || m_picturesBelow[size_t(entry.folder)] == 0 || QCoreApplication::closingDown())
        return QString();
    QList<int> folders{entry.folder};
    for (qsizetype at = 0; at < folders.size(); ++at)
        folders.append(m_tree.folders().at(folders.at(at)).children);
    const QStringList paths = m_tree.samplePictures(folders, std::min(maximum, *picturesLeft));
    if (paths.isEmpty())
        return QString();
    QString html = QStringLiteral("<div class=\"pictures\">\n");
    for (const QString &path : paths) {
        --*picturesLeft;
        const QByteArray jpeg = NyReportThumbnails::instance().jpeg(path);
        if (jpeg.isEmpty()) {
            html += QStringLiteral("<span>") + escaped(tr("nicht lesbar")) + QStringLiteral("</span>\n");
            continue;
        }
        html += QStringLiteral("<img width=\"96\" height=\"72\" alt=\"") + escaped(path.section(QLatin1Char('/'), -1))
            + QStringLiteral("\" src=\"data:image/jpeg;base64,") + QLatin1String(jpeg.toBase64()) + QStringLiteral("\" />\n");
    }
    return html + QStringLiteral("</div>\n");
}

QString Page::occasions(const NyOccasionInfoList &occasions) const
{
    if (occasions.isEmpty())
        return QString();
    QString html = QStringLiteral("<ul class=\"occasions\" aria-label=\"") + escaped(tr("Anlässe")) + QStringLiteral("\">\n");
    for (const NyOccasionInfo &occasion : occasions) {
        const double share = std::isnan(occasion.probability()) ? 0.0 : std::clamp(occasion.probability(), 0.0, 1.0);
        const QString percent = std::isnan(occasion.probability()) ? QStringLiteral("?") : QString::number(std::lround(share * 100));
        const QString source = sourceWord(occasion.source());
        html += QStringLiteral("<li><span class=\"word\">") + escaped(occasionWord(occasion.keyword()));
        if (!source.isEmpty())
            html += QStringLiteral(" <span class=\"quiet\">") + escaped(source) + QStringLiteral("</span>");
        html += QStringLiteral("</span> <span class=\"share\">") + percent
            + QStringLiteral("\u00a0%</span><span class=\"bar\" aria-hidden=\"true\"><i style=\"width: ")
            + QString::number(share * 100, 'f', 1) + QStringLiteral("%\"></i></span></li>\n");
    }
    return html + QStringLiteral("</ul>\n");
}

QString Page::footer(int picturesOfFolder) const
{
    QStringList endings;
    for (const QString &filter : m_filters)
        endings.append(filter.startsWith(QLatin1String("*.")) ? filter.mid(2) : filter);
    QStringList notes;
    notes.append(endings.isEmpty() ? tr("Es war keine Endung genannt, nach der Fotos gezählt werden.")
                                   : tr("Als Foto zählt jede Datei mit einer dieser Endungen, im Ordner und in allen Ordnern darunter: %1. "
                                        "Verborgene Ordner, Papierkörbe, Vorschauspeicher und Ordner mit „.nomedia“ zählen nicht.")
                                         .arg(endings.join(QStringLiteral(", "))));
    notes.append(tr("Liegen Ordner ineinander, so stehen dieselben Fotos bei jedem von ihnen. In den Summen oben zählt jedes nur einmal."));
    notes.append(tr("Zeiträume stammen aus den Namen der Ordner, nicht aus den Fotos."));
    notes.append(tr("Bei Anlässen steht, woraus sie vor allem geschlossen wurden, und wie wahrscheinlich sie sind. "
                    "Ohne Angabe wurde nicht danach gesucht oder nichts gefunden."));
    notes.append(tr("Kleine Bilder: höchstens %1 je Ordner und %2 auf der Seite, verteilt über die Fotos des Ordners.")
                     .arg(picturesOfFolder)
                     .arg(NyClassificationResultsRendererHTML::MostThumbnails));
    QString html = QStringLiteral("<footer>\n<h2>") + escaped(tr("Zu dieser Seite")) + QStringLiteral("</h2>\n<ul>\n");
    for (const QString &note : std::as_const(notes))
        html += QStringLiteral("<li>") + escaped(note) + QStringLiteral("</li>\n");
    return html + QStringLiteral("</ul>\n</footer>\n");
}

QString Page::occasionWord(const QString &keyword)
{
    const QHash<QString, QString> words{
        {QStringLiteral("wedding"), tr("Hochzeit")},
        {QStringLiteral("birthday"), tr("Geburtstag")},
        {QStringLiteral("christmas"), tr("Weihnachten")},
        {QStringLiteral("newyear"), tr("Silvester")},
        {QStringLiteral("easter"), tr("Ostern")},
        {QStringLiteral("carnival"), tr("Karneval")},
        {QStringLiteral("halloween"), tr("Halloween")},
        {QStringLiteral("baptism"), tr("Taufe")},
        {QStringLiteral("communion"), tr("Kommunion")},
        {QStringLiteral("school"), tr("Schule")},
        {QStringLiteral("graduation"), tr("Abschlussfeier")},
        {QStringLiteral("baby"), tr("Baby")},
        {QStringLiteral("anniversary"), tr("Jubiläum")},
        {QStringLiteral("beach"), tr("Strand")},
        {QStringLiteral("city"), tr("Städtereise")},
        {QStringLiteral("hiking"), tr("Wandern")},
        {QStringLiteral("snow"), tr("Schnee")},
        {QStringLiteral("roadtrip"), tr("Rundreise")},
        {QStringLiteral("cruise"), tr("Kreuzfahrt")},
        {QStringLiteral("vacation"), tr("Urlaub")},
        {QStringLiteral("concert"), tr("Konzert")},
        {QStringLiteral("sports"), tr("Sport")},
        {QStringLiteral("zoo"), tr("Zoo")},
        {QStringLiteral("family"), tr("Familie")},
        {QStringLiteral("fair"), tr("Volksfest")},
        {QStringLiteral("pets"), tr("Haustiere")},
    };
    if (keyword.isEmpty())
        return tr("ohne Namen");
    return words.value(keyword, keyword);
}

QString Page::sourceWord(const QString &source)
{
    if (source == QLatin1String("title"))
        return tr("laut Ordnername");
    if (source == QLatin1String("place"))
        return tr("laut Orten");
    if (source == QLatin1String("vision"))
        return tr("laut Bildern");
    if (source == QLatin1String("calendar"))
        return tr("laut Kalender");
    return source;
}

} // namespace

NyClassificationResultsRendererHTML::NyClassificationResultsRendererHTML(
    const QList<NyEventFolderClassificationResult> &results, int startDirectoryLength, const QList<QString> &fileExtensionFilters)
    : m_results(results)
    , m_startDirectoryLength(startDirectoryLength)
    , m_fileExtensionFilters(fileExtensionFilters)
{
}

NyClassificationResultsRendererHTML::~NyClassificationResultsRendererHTML() = default;

bool NyClassificationResultsRendererHTML::renderToFile(const QFileInfo &target) const
{
    const Page page(m_results, m_startDirectoryLength, m_fileExtensionFilters);
    const QByteArray html = page.html(target.fileName()).toUtf8();
    // Pictures may be missing in it.
    if (QCoreApplication::closingDown())
        return false;
    return NyFileHandler::writeBinaryFile(target, html);
}
