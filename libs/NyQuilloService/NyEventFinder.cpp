#include "NyEventFinder.h"

#include <NyLogger.h>
#include <NyQuilloEventClassifier.h>

#include <QtCore/QDate>
#include <QtCore/QDebug>
#include <QtCore/QFileInfo>
#include <QtCore/QMultiHash>

#include "NyEventFileGrouping.h"
#include "NyQuilloServiceConfig.h"

namespace
{

// In the mode that combines both kinds, an event spread over no more folders than this gives way to a year.
constexpr int MostFoldersOfThinEvent = 2;

QString kindText(const NyEventFolderType &kind)
{
    return kind.enumToStringTable()->encodeCSV(kind.value());
}

} // namespace

NyEventFinder::NyEventFinder(const NyRecentFileResult &recentFileResult)
    : m_recentFileResult(recentFileResult)
{
}

NyEventFinder::~NyEventFinder() = default;

NyRecentFileResult NyEventFinder::findEvent()
{
    initEventFolderClassificationList();
    const NyEventFinderModeEnum mode = config().eventFinderMode().value();
    NyRecentFileResult result = findFittingEvent(m_recentFileResult, NyEventFolderType(NyEventFolderTypeEnum::Event));

    bool takeYear = false;
    if (NySingleton<NyQuilloServiceConfig>::instance().minimumPhotos() >= result.files().size())
        takeYear = true;
    else if (mode == NyEventFinderModeEnum::combined)
        takeYear = result.filesPerDirCount().size() <= MostFoldersOfThinEvent;
    if (takeYear)
        result = findFittingEvent(m_recentFileResult, NyEventFolderType(NyEventFolderTypeEnum::Year));

    qInfo() << "Final Classic Result" << kindText(result.eventFolderType()) << result.files().size()
            << "; takeYear = " << (takeYear ? "true" : "false") << "; takeAll = "
            << "false";
    return result;
}

NyEventFinderConfiguration NyEventFinder::config() const
{
    return NySingleton<NyQuilloServiceConfig>::instance().eventFinderConfiguration();
}

void NyEventFinder::initEventFolderClassificationList()
{
    const QFileInfo startFolder(m_recentFileResult.startDirectory());
    m_recentFileResult.excludePreviouslyUsedFotos();
    qDebug() << m_recentFileResult.relevantDateRange().dateDescription(QDate::currentDate()) << "found" << m_recentFileResult.count();
    NyQuilloEventClassifier classifier(startFolder);
    m_eventFolderClassificationList
        = NyEventFolderClassificationResultList(classifier.eventFolderTypes(startFolder, NyEventFolderClassificationResult()));
    logEventFolderTypeStatistics();
}

void NyEventFinder::logEventFolderTypeStatistics()
{
    int events = 0;
    int years = 0;
    int months = 0;
    int days = 0;
    int projects = 0;
    int unknowns = 0;
    for (const NyEventFolderClassificationResult &folder : std::as_const(m_eventFolderClassificationList)) {
        switch (folder.classification().value()) {
        case NyEventFolderTypeEnum::Year:
            ++years;
            break;
        case NyEventFolderTypeEnum::Month:
            ++months;
            break;
        case NyEventFolderTypeEnum::Day:
            ++days;
            break;
        case NyEventFolderTypeEnum::Event:
            ++events;
            break;
        case NyEventFolderTypeEnum::Project:
            ++projects;
            break;
        default:
            ++unknowns;
        }
    }
    const QString counts = QStringLiteral("Counted %1 events, %2 years, %3 months, %4 days, %5 projects and %6 unknowns")
                               .arg(events)
                               .arg(years)
                               .arg(months)
                               .arg(days)
                               .arg(projects)
                               .arg(unknowns);
    NySingleton<NyLogger>::instance().logQuilloService(
        QStringLiteral("logEventFolderTypeStatistics EVENTS:%1 YEARS:%2 MONTHS:%3 DAYS:%4 PROJECTS:%5 UNKNOWNS:%6 TOTAL:%7")
            .arg(events)
            .arg(years)
            .arg(months)
            .arg(days)
            .arg(projects)
            .arg(unknowns)
            .arg(m_eventFolderClassificationList.size()));
    qInfo() << counts;
}

NyRecentFileResult NyEventFinder::findFittingEvent(const NyRecentFileResult &recentFiles, const NyEventFolderType &kind)
{
    const NyEventFolderClassificationResultList eventsOfKind = m_eventFolderClassificationList.filtered(kind);
    qDebug() << "\n" << eventsOfKind.toString();

    const NyEventFileGrouping::FilesOfEvents filesOfEvent = NyEventFileGrouping::filesOfEvents(recentFiles.files(), eventsOfKind);

    NyEventFolderClassificationResult selected;
    QList<QFileInfo> selectedFiles;
    int maxCount = 0;
    // All files of a folder follow each other in the hash. The log has one line a file, as a walk over the hash's keys gives it.
    for (auto file = filesOfEvent.cbegin(); file != filesOfEvent.cend();) {
        const NyEventFolderClassificationResult &event = file.key();
        const auto firstFile = file;
        int count = 0;
        for (; file != filesOfEvent.cend() && file.key() == event; ++file)
            ++count;
        const QString text = kindText(event.classification());
        for (int line = 0; line < count; ++line)
            qDebug() << text << count;
        if (count <= maxCount)
            continue;
        selectedFiles.clear();
        std::for_each(firstFile, file, [&selectedFiles](const QFileInfo &info) { selectedFiles.append(info); });
        selected = event;
        maxCount = count;
    }

    qInfo() << "Chosen: " << selected.directory() << kindText(selected.classification()) << selectedFiles.size()
            << selected.occasionInformation().description();
    return NyRecentFileResult(
        selectedFiles, recentFiles.relevantDateRange(), 0, selected, NySingleton<NyQuilloServiceConfig>::instance().designStyleIds());
}
