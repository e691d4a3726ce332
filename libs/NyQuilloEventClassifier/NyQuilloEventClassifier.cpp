#include "NyQuilloEventClassifier.h"

#include <utility>
#include <vector>

#include <QtCore/QDateTime>
#include <QtCore/QDir>

#include <NyFotoAccess.h>
#include <NyImageLoader.h>

#include "NyContentsVerdictCache.h"
#include "NyFolderName.h"
#include "NyFolderNameParser.h"
#include "NyFolderTree.h"

namespace
{

using Kind = NyEventFolderTypeEnum;
using DateForm = NyFolderName::DateForm;
using Nature = NyFolderName::Nature;

/** At most so many photos of a camera folder are asked for their capture time. */
constexpr int MaximumSamples = 200;
constexpr qint64 EventSpanSeconds = 4 * 24 * 60 * 60;
/** What lasts longer is a stretch of the calendar rather than an occasion. Two months of summer are still one journey. */
constexpr int LongestEventDays = 62;

/** Where a folder stands: what the folders above it have settled. */
struct Place
{
    int year = 0;
    int month = 0;
    bool inEvent = false;
    int eventYear = 0;
    bool inProject = false;
    bool inDay = false;
    bool inSource = false;
};

/** Undecided: no rule said anything. */
using Verdict = NyContentsVerdictCache::Verdict;

bool isCalendar(const NyFolderName &name)
{
    return name.dateForm != DateForm::None && !name.hasTitle() && name.nature != Nature::Project;
}

/** A name that tells nothing of the contents, or only how they came there. */
bool isLoose(const NyFolderName &name)
{
    return name.dateForm == DateForm::None
        && (name.nature == Nature::Camera || name.nature == Nature::Technical || name.nature == Nature::Source);
}

/** A name with neither date nor number nor title: what lies below counts for the folder above as well. */
bool saysNothing(const NyFolderName &name)
{
    return name.dateForm == DateForm::None && !name.hasTitle() && name.number < 0 && name.nature != Nature::Source
        && name.nature != Nature::Project;
}

class Sorter
{
public:
    Sorter(const NyFolderTree &tree, bool startsAtRoot)
        : m_tree(tree)
        , m_startsAtRoot(startsAtRoot)
    {
        const QList<NyFolderTree::Folder> &folders = tree.folders();
        m_names.reserve(folders.size());
        for (const NyFolderTree::Folder &folder : folders)
            m_names.append(folder.hasPicturesBelow ? NyFolderNameParser::parse(folder.name) : NyFolderName());
        lookInside();
    }

    QList<NyEventFolderClassificationResult> results(const Place &place, const NyEventFolderClassificationResult &defaultResult);

    /** The verdict on a folder by its name and place alone. */
    static Verdict verdictByName(const NyFolderName &name, const Place &place);
    static Place placeBelow(const NyFolderName &name, Kind kind, bool isUndecided, const Place &place);

private:
    struct Inside
    {
        bool onlyLoose = true; ///< all folders below are loose ones
        bool isCollection = false; ///< an undated title over several years, or over events far apart
        bool hasTitled = false; ///< a titled folder directly in it
        // What the dates below say, seen through folders whose names say nothing.
        bool hasUnitsOfYears = false; ///< a folder for a whole year, or a collection
        int firstYear = 0;
        int lastYear = 0;
        QDate firstDay;
        QDate lastDay;

        void addYears(int first, int last);
        void addDays(const QDate &first, const QDate &last);
    };

    void lookInside();
    Verdict verdict(int index, const Place &place) const;
    Verdict verdictByContents(int index) const;
    Verdict verdictByCaptureTimes(const QList<int> &folders) const;
    void addLooseFolders(int index, QList<int> *folders) const;

    static Verdict verdictInEvent(const NyFolderName &name, const Place &place);
    static Verdict verdictByNumber(const NyFolderName &name, const Place &place);

    const NyFolderTree &m_tree;
    const bool m_startsAtRoot;
    QList<NyFolderName> m_names;
    std::vector<Inside> m_inside;
};

void Sorter::Inside::addYears(int first, int last)
{
    if (first <= 0)
        return;
    firstYear = firstYear > 0 ? qMin(firstYear, first) : first;
    lastYear = qMax(lastYear, last);
}

void Sorter::Inside::addDays(const QDate &first, const QDate &last)
{
    if (first.isValid() && (!firstDay.isValid() || first < firstDay))
        firstDay = first;
    if (last.isValid() && (!lastDay.isValid() || last > lastDay))
        lastDay = last;
}

/** Gathers what the names of subfolders say about the folder above them. */
void Sorter::lookInside()
{
    const QList<NyFolderTree::Folder> &folders = m_tree.folders();
    m_inside.resize(size_t(folders.size()));
    for (qsizetype index = folders.size() - 1; index >= 0; --index) {
        Inside &inside = m_inside[size_t(index)];
        for (const int child : folders.at(index).children) {
            if (!folders.at(child).hasPicturesBelow)
                continue;
            const NyFolderName &name = m_names.at(child);
            const Inside &below = m_inside[size_t(child)];
            inside.onlyLoose = inside.onlyLoose && isLoose(name) && below.onlyLoose;
            inside.hasTitled = inside.hasTitled || (name.hasTitle() && (name.nature == Nature::Plain || name.nature == Nature::Project));
            inside.hasUnitsOfYears = inside.hasUnitsOfYears || (name.dateForm == DateForm::Year && !name.hasTitle()) || below.isCollection;
            if (name.from.year > 0 && name.dateForm != DateForm::Years) {
                inside.addYears(name.from.year, name.from.year);
                if (name.from.month > 0)
                    inside.addDays(name.firstDay(), name.lastDay());
            }
            if (saysNothing(name)) {
                inside.hasUnitsOfYears = inside.hasUnitsOfYears || below.hasUnitsOfYears;
                inside.addYears(below.firstYear, below.lastYear);
                inside.addDays(below.firstDay, below.lastDay);
            }
        }
        const bool farApart = inside.firstYear != inside.lastYear
            || (inside.firstDay.isValid() && inside.lastDay.isValid() && inside.firstDay.daysTo(inside.lastDay) > LongestEventDays);
        const NyFolderName &own = m_names.at(index);
        inside.isCollection = own.hasTitle() && own.dateForm == DateForm::None && own.nature == Nature::Plain
            && (inside.hasUnitsOfYears || farApart || (own.isCategory && !inside.onlyLoose));
    }
}

Verdict Sorter::verdictByNumber(const NyFolderName &name, const Place &place)
{
    const int first = name.number;
    const int second = name.secondNumber;
    const int year = place.year > 0 ? place.year : 2000;
    if (place.month > 0) {
        const bool firstIsDay = name.numberDigits <= 2 && QDate::isValid(year, place.month, first);
        if (second < 0 && firstIsDay)
            return {Kind::Day};
        if (second > 0
            && ((first == place.month && QDate::isValid(year, first, second))
                || (second == place.month && QDate::isValid(year, second, first))))
            return {Kind::Day};
        if (second > first && firstIsDay && QDate::isValid(year, place.month, second))
            return {Kind::Event};
    } else if (place.year > 0) {
        if (second < 0 && name.numberDigits <= 2 && first >= 1 && first <= 12)
            return {Kind::Month};
        if (second < 0 && name.numberDigits == 4 && QDate::isValid(year, first / 100, first % 100))
            return {Kind::Day};
        if (second > 0 && name.numberDigits == 2 && (QDate::isValid(year, first, second) || QDate::isValid(year, second, first)))
            return {Kind::Day};
    }
    return {Kind::Unknown, true};
}

/** Parts of an event belong to it: they are days, or nothing of their own. */
Verdict Sorter::verdictInEvent(const NyFolderName &name, const Place &place)
{
    if (name.nature == Nature::Project)
        return {Kind::Project};
    if (name.nature == Nature::DayPart)
        return {name.isNumberedDay ? Kind::Day : Kind::Unknown};
    const bool otherYear = place.eventYear > 0 && name.from.year > 0 && name.from.year != place.eventYear;
    if (name.hasTitle()) {
        if (otherYear)
            return {Kind::Event};
        if (name.hasDay())
            return {Kind::Day};
        return {name.number >= 0 ? Kind::Unknown : Kind::Event};
    }
    switch (name.dateForm) {
    case DateForm::Day:
    case DateForm::FullDate:
        return {Kind::Day};
    case DateForm::Month:
    case DateForm::YearMonth:
        return {Kind::Month};
    case DateForm::Year:
        return {Kind::Year};
    default:
        return {Kind::Unknown};
    }
}

Verdict Sorter::verdictByName(const NyFolderName &name, const Place &place)
{
    if (name.nature == Nature::Source)
        return {Kind::Unknown};
    if (place.inEvent)
        return verdictInEvent(name, place);
    if (name.nature == Nature::Project)
        return {Kind::Project};

    if (name.nature == Nature::DayPart) {
        if (place.inProject || (place.inDay && !name.isNumberedDay))
            return {Kind::Unknown};
        if (name.hasTitle())
            return {Kind::Event};
        return name.isNumberedDay ? Verdict{Kind::Day} : Verdict{Kind::Unknown, true};
    }
    if (name.hasTitle()) {
        const bool dated = name.dateForm != DateForm::None && name.dateForm != DateForm::Year && name.dateForm != DateForm::Years;
        return {place.inProject && !dated ? Kind::Unknown : Kind::Event};
    }
    switch (name.dateForm) {
    case DateForm::Year:
        return {Kind::Year};
    case DateForm::Years:
        return {Kind::Unknown};
    case DateForm::Month:
    case DateForm::YearMonth:
        return {Kind::Month};
    case DateForm::Day:
        return {name.mayBeListedMonth && place.year > 0 && place.month == 0 ? Kind::Month : Kind::Day};
    case DateForm::FullDate:
        return {Kind::Day};
    case DateForm::Range:
    case DateForm::Period:
        return {Kind::Event};
    case DateForm::None:
        break;
    }
    if (name.number >= 0)
        return verdictByNumber(name, place);
    return {Kind::Unknown, true};
}

Verdict Sorter::verdict(int index, const Place &place) const
{
    const NyFolderTree::Folder &folder = m_tree.folders().at(index);
    const NyFolderName &name = m_names.at(index);
    const Inside &inside = m_inside[size_t(index)];
    if (index == 0 && m_startsAtRoot)
        return inside.onlyLoose ? verdictByContents(index) : Verdict{Kind::Unknown};

    Verdict verdict = verdictByName(name, place);
    if (folder.hasProjectFiles && !isCalendar(name) && name.nature != Nature::Source && (!place.inEvent || verdict.kind == Kind::Event))
        return {Kind::Project};
    if (verdict.kind == Kind::Event) {
        if (inside.isCollection)
            return {Kind::Unknown};
        // A stretch of the calendar with events in it sorts them, as a month does.
        const bool stretch = !name.hasTitle()
            && (name.dateForm == DateForm::Period
                || (name.dateForm == DateForm::Range && name.firstDay().isValid()
                    && name.firstDay().daysTo(name.lastDay()) > LongestEventDays));
        if (stretch && inside.hasTitled)
            return {Kind::Unknown};
    }
    if (verdict.isUndecided) {
        if (place.inEvent || place.inDay || place.inProject || place.inSource)
            return {Kind::Unknown};
        return inside.onlyLoose ? verdictByContents(index) : Verdict{Kind::Unknown};
    }
    return verdict;
}

void Sorter::addLooseFolders(int index, QList<int> *folders) const
{
    if (m_tree.folders().at(index).hasOwnPictures)
        folders->append(index);
    for (const int child : m_tree.folders().at(index).children) {
        if (m_names.at(child).nature != Nature::Source && m_tree.folders().at(child).hasPicturesBelow)
            addLooseFolders(child, folders);
    }
}

/** Photos of a few days are an event, those of a year a year. */
Verdict Sorter::verdictByContents(int index) const
{
    QList<int> folders;
    addLooseFolders(index, &folders);
    QStringList folderPaths;
    for (const int folder : std::as_const(folders))
        folderPaths.append(m_tree.folders().at(folder).path);
    const QByteArray key = NyContentsVerdictCache::key(folderPaths);
    if (const auto known = NyContentsVerdictCache::instance().find(key))
        return *known;
    const Verdict verdict = verdictByCaptureTimes(folders);
    NyContentsVerdictCache::instance().insert(key, verdict);
    return verdict;
}

Verdict Sorter::verdictByCaptureTimes(const QList<int> &folders) const
{
    const QStringList paths = m_tree.samplePictures(folders, MaximumSamples);
    QDateTime earliest;
    QDateTime latest;
    const auto isYearAtMost = [&earliest, &latest]() { return latest <= earliest.addYears(1); };
    for (qsizetype sample = 0; sample < paths.size(); ++sample) {
        // The two ends first: names mostly follow time, so that a long span shows at once.
        const qsizetype at = sample == 0 ? 0 : sample == 1 ? paths.size() - 1 : sample - 1;
        const QDateTime taken = NyFotoAccess::captureTime(NyFoto(QFileInfo(paths.at(at))));
        // Clocks that were never set begin in 1970 or 1980.
        if (!taken.isValid() || taken.date() == QDate(1970, 1, 1) || taken.date() == QDate(1980, 1, 1))
            continue;
        // As the clocks on the walls showed it: a flight across time zones makes no span longer.
        const QDateTime wall(taken.date(), taken.time(), Qt::UTC);
        if (!earliest.isValid() || wall < earliest)
            earliest = wall;
        if (!latest.isValid() || wall > latest)
            latest = wall;
        if (!isYearAtMost())
            return {Kind::Unknown, true};
    }
    if (!earliest.isValid())
        return {Kind::Unknown, true};
    return {earliest.secsTo(latest) <= EventSpanSeconds ? Kind::Event : Kind::Year};
}

Place Sorter::placeBelow(const NyFolderName &name, Kind kind, bool isUndecided, const Place &place)
{
    Place below = place;
    switch (kind) {
    case Kind::Year:
        if (name.dateForm == DateForm::Year) {
            below.year = name.from.year;
            below.month = 0;
        }
        break;
    case Kind::Month:
        below.month = name.from.month > 0 ? name.from.month : name.number;
        if (name.from.year > 0)
            below.year = name.from.year;
        break;
    case Kind::Day:
        below.inDay = true;
        break;
    case Kind::Event:
        below.inEvent = true;
        below.eventYear = name.from.year;
        break;
    case Kind::Project:
        // A book that was made of an event leaves it one.
        if (name.nature == Nature::Project)
            below.inProject = true;
        else
            below.inEvent = true;
        break;
    case Kind::Unknown:
        if (name.nature == Nature::Source)
            below.inSource = true;
        else if (!isUndecided && name.dateForm == DateForm::Years)
            below.year = below.month = 0;
        else if (name.dateForm == DateForm::Period && name.from.year > 0)
            below.year = name.from.year;
        break;
    }
    return below;
}

QList<NyEventFolderClassificationResult> Sorter::results(const Place &start, const NyEventFolderClassificationResult &defaultResult)
{
    QList<NyEventFolderClassificationResult> results;
    const QList<NyFolderTree::Folder> &folders = m_tree.folders();
    if (folders.isEmpty())
        return results;
    std::vector<std::pair<int, Place>> pending{{0, start}};
    while (!pending.empty()) {
        const auto [index, place] = pending.back();
        pending.pop_back();
        const NyFolderTree::Folder &folder = folders.at(index);
        if (!folder.hasPicturesBelow)
            continue;
        const bool isRoot = index == 0 && m_startsAtRoot;
        Place below = place;
        if (!isRoot || folder.hasOwnPictures) {
            const Verdict verdict = this->verdict(index, place);
            const NyEventFolderType kind = verdict.isUndecided ? defaultResult.classification() : NyEventFolderType(verdict.kind);
            NyEventFolderClassificationResult result(QFileInfo(folder.path), kind);
            if (verdict.isUndecided)
                result.setOccasionInformation(defaultResult.occasionInformation());
            results.append(result);
            if (!isRoot)
                below = placeBelow(m_names.at(index), verdict.kind, verdict.isUndecided, place);
            else
                below.inEvent = verdict.kind == Kind::Event;
        }
        for (auto child = folder.children.crbegin(); child != folder.children.crend(); ++child)
            pending.emplace_back(*child, below);
    }
    return results;
}

} // namespace

NyQuilloEventClassifier::NyQuilloEventClassifier(const QFileInfo &startFolder)
    : m_startFolder(startFolder)
{
}

NyQuilloEventClassifier::~NyQuilloEventClassifier() = default;

QList<NyEventFolderClassificationResult> NyQuilloEventClassifier::eventFolderTypes(
    const QFileInfo &folder, const NyEventFolderClassificationResult &defaultResult)
{
    const QString path = folder.absoluteFilePath();
    if (path.isEmpty())
        return {};
    const QString cleanPath = QDir::cleanPath(path);
    const QString startPath = QDir::cleanPath(m_startFolder.absoluteFilePath());

    Place place;
    const QString startPrefix = startPath.endsWith(QLatin1Char('/')) ? startPath : startPath + QLatin1Char('/');
    const bool isBelowStart = !startPath.isEmpty() && cleanPath.size() > startPrefix.size() && cleanPath.startsWith(startPrefix);
    if (isBelowStart) {
        QStringList names = cleanPath.mid(startPrefix.size()).split(QLatin1Char('/'));
        names.removeLast();
        for (const QString &name : std::as_const(names)) {
            const NyFolderName parsed = NyFolderNameParser::parse(name);
            const Verdict verdict = Sorter::verdictByName(parsed, place);
            place = Sorter::placeBelow(parsed, verdict.kind, verdict.isUndecided, place);
        }
    }

    const NyFolderTree tree(cleanPath, NyImageLoader::instance().supportedMediaFormats().fileExtensionFilters());
    return Sorter(tree, !isBelowStart).results(place, defaultResult);
}
