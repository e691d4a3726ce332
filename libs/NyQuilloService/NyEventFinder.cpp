#include "NyEventFinder.h"

#include <NyClassificationResultsRendererHTML.h>
#include <NyFotoBuilder.h>
#include <NyFotoCacheManager.h>
#include <NyImageLoader.h>
#include <NyLogger.h>
#include <NyMediaFormatList.h>
#include <NyQuilloEventClassifier.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDate>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QMultiHash>
#include <QtCore/QMutex>
#include <QtCore/QThread>
#include <QtCore/QUrl>

#include "NyEventFileGrouping.h"
#include "NyQuilloServiceConfig.h"
#include "NyQuilloServiceSettings.h"

namespace
{

// In the mode that combines both kinds, an event spread over no more folders than this gives way to a year.
constexpr int MostFoldersOfThinEvent = 2;

bool isSet(const NyEventFinderConfiguration &config, NyEventFinderOccasionDetectorModeEnum bit)
{
    return config.occassionDetectorMode().reducedTo(bit) == bit;
}

QString kindText(const NyEventFolderType &kind)
{
    return kind.enumToStringTable()->encodeCSV(kind.value());
}

} // namespace

NyEventFinder::NyEventFinder(const NyRecentFileResult &recentFileResult)
    : m_recentFileResult(recentFileResult)
    , m_mutex(std::make_unique<QMutex>())
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
    NyEventFolderClassificationResultList eventsOfKind = m_eventFolderClassificationList.filtered(kind);
    if (isSet(config(), NyEventFinderOccasionDetectorModeEnum::eventAll))
        eventsOfKind = enrichedWithOccassionInformation(eventsOfKind);
    renderClassificationList(eventsOfKind, QStringLiteral("%1.all").arg(kind.encode()));
    qDebug() << "\n" << eventsOfKind.toString();

    const NyEventFileGrouping::FilesOfEvents filesOfEvent = NyEventFileGrouping::filesOfEvents(recentFiles.files(), eventsOfKind);

    NyEventFolderClassificationResultList eventsOfInterest(filesOfEvent.uniqueKeys());
    if (isSet(config(), NyEventFinderOccasionDetectorModeEnum::eventOfInterest))
        eventsOfInterest = enrichedWithOccassionInformation(eventsOfInterest);
    renderClassificationList(eventsOfInterest, QStringLiteral("%1.ofInterest").arg(kind.encode()));

    // From the hash, whose keys do not have what was detected for the folders of interest.
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

    if (isSet(config(), NyEventFinderOccasionDetectorModeEnum::selectedEvent))
        selected = enrichedWithOccassionInformation(selected);

    qInfo() << "Chosen: " << selected.directory() << kindText(selected.classification()) << selectedFiles.size()
            << selected.occasionInformation().description();
    return NyRecentFileResult(
        selectedFiles, recentFiles.relevantDateRange(), 0, selected, NySingleton<NyQuilloServiceConfig>::instance().designStyleIds());
}

NyEventFolderClassificationResult NyEventFinder::enrichedWithOccassionInformation(NyEventFolderClassificationResult result)
{
    const QFileInfo folder = result.directory();
    const NyFotoList fotos = NySingleton<NyFotoBuilder>::instance().fotosFromUrl(QUrl::fromLocalFile(folder.absoluteFilePath()));
    NyEventFinderOccasionDetector detector;
    result.setOccasionInformation(detector.detectOccasion(fotos));
    return result;
}

NyEventFolderClassificationResultList NyEventFinder::enrichedWithOccassionInformation(const NyEventFolderClassificationResultList &list)
{
    NyEventFolderClassificationResultList enriched;
    QElapsedTimer timer;
    timer.start();
    for (const NyEventFolderClassificationResult &folder : list) {
        if (QCoreApplication::closingDown())
            break;
        enriched.append(enrichedWithOccassionInformation(folder));
        qDebug() << "OccassionDetection time (ms) elapsed: " << timer.elapsed();
    }
    qDebug() << "renderClassificationListRequest suggested " << enriched.size() << QThread::currentThreadId();
    NySingleton<NyFotoCacheManager>::instance().clearCache();
    return enriched;
}

void NyEventFinder::renderClassificationList(const NyEventFolderClassificationResultList &list, const QString &name)
{
    const QMutexLocker locker(m_mutex.get());
    // A search that the end of the program cut short must not put part of a list in the place of a whole report.
    if (!NySingleton<NyQuilloServiceConfig>::instance().printClassification() || QCoreApplication::closingDown())
        return;
    const QFileInfo target(QDir(NySingleton<NyQuilloServiceSettings>::instance().bookProposalFileFolder()),
        QStringLiteral("classification.%1.html").arg(name));
    const int startDirectoryLength = int(m_recentFileResult.startDirectory().size());
    const QStringList filters = NySingleton<NyImageLoader>::instance().supportedMediaFormats().fileExtensionFilters();
    NyClassificationResultsRendererHTML(list, startDirectoryLength, filters).renderToFile(target);
    qInfo() << "renderClassificationListRequest (" << name << list.size() << ") written to" << target.absoluteFilePath();
    qDebug() << "renderClassificationListRequest file was actually created: "
             << (QFileInfo(target.absoluteFilePath()).exists() ? "true" : "false");
}
