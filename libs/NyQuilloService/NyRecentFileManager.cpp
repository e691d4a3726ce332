#include "NyRecentFileManager.h"

#include "NyEventFinder.h"
#include "NyQuilloServiceConfig.h"
#include "NyQuilloServiceSettings.h"

#include <NyDateRange.h>
#include <NyFotoList.h>
#include <NyFotoListRegistry.h>
#include <NyFotoSettings.h>
#include <NyImageLoader.h>
#include <NyMediaFormatList.h>
#include <NyPlatformIndependent.h>

#include <QCoreApplication>
#include <QDebug>
#include <QThreadPool>
#include <QtConcurrentRun>

namespace
{
const char *text(bool value)
{
    return value ? "true" : "false";
}

/** For log lines only: the range is described as seen from this day. */
const QDate logReferenceDate(2018, 1, 1);
}

NyRecentFileManager::NyRecentFileManager(QObject *parent)
    : QObject(parent)
    , m_recentFileFinder(settings().searchHomeFolder(), fileExtensionFilters())
    , m_timer(this)
{
    connect(&m_watcher, &QFutureWatcher<NyRecentFileResult>::finished, this, &NyRecentFileManager::recentFileCheckFinished);
    qDebug() << text(m_watcher.isRunning()) << text(m_watcher.isFinished());
    connect(&m_timer, &QTimer::timeout, this, &NyRecentFileManager::checkForRecentFiles);
    m_timer.setInterval(NyQuilloServiceConfig::timerInterval(durationBetweenChecks()));
    m_timer.setSingleShot(false);
}

NyRecentFileManager::~NyRecentFileManager() = default;

void NyRecentFileManager::forceResults()
{
    m_forceResults = true;
    if (!m_watcher.isRunning())
        startCheckingForRecentFiles();
}

void NyRecentFileManager::handlePicturesHomeChange()
{
    m_recentFileFinder.setObservedDirectory(NyFotoSettings::instance().picturesHome());
}

bool NyRecentFileManager::isProductSuggestionRecommended() const
{
    return m_watcher.isFinished() && isProductSuggestionRecommended(getRecentFileResultSafely());
}

bool NyRecentFileManager::isProductSuggestionRecommended(const NyRecentFileResult &result) const
{
    return isProductSuggestionRecommended(result, QDateTime::currentDateTime());
}

bool NyRecentFileManager::isProductSuggestionRecommended(const NyRecentFileResult &result, const QDateTime &now) const
{
    const int suggestions = settings().productSuggestionCount();
    const bool inRegularPhase = suggestions > config().initialPhaseSuggestions();
    const int minimumWait = inRegularPhase ? config().minimumWaitTimeRegularPhase() : config().minimumWaitTimeInitialPhase();
    const bool enoughTimeHasPassed = settings().lastProductSuggestionDate().addSecs(minimumWait) <= now;
    const bool sufficientImages = result.count() >= config().minimumPhotos();
    const bool preferredTimeOfWeek = suggestions <= 0 || config().inPreferredDateTimeRange(now);

    qInfo() << "inRegularPhase" << text(inRegularPhase) << "; enough time has passed" << text(enoughTimeHasPassed) << "; sufficient images"
            << text(sufficientImages) << "; preferred time of week" << text(preferredTimeOfWeek) << "; was explicitly requested"
            << text(m_forceResults);
    return (enoughTimeHasPassed && sufficientImages && preferredTimeOfWeek) || m_forceResults;
}

NyRecentFileResult NyRecentFileManager::suggestedRecentFiles() const
{
    return getRecentFileResultSafely();
}

QList<QFileInfo> NyRecentFileManager::recentFiles() const
{
    if (!m_watcher.isFinished())
        return {};
    return getRecentFileResultSafely().files();
}

NyRecentFileResult NyRecentFileManager::getRecentFileResultSafely() const
{
    if (!m_watcher.isFinished())
        return {};
    // Taking a result from a cancelled future would throw.
    const QFuture<NyRecentFileResult> future = m_watcher.future();
    if (future.isCanceled())
        return {};
    return future.resultAt(0);
}

void NyRecentFileManager::startCheckingForRecentFiles()
{
    checkForRecentFiles();
    m_timer.start();
}

void NyRecentFileManager::checkForRecentFiles()
{
    const QDateTime end = QDateTime::currentDateTime().addSecs(-qint64(inactivityDuration()));
    const QDateTime start = end.addSecs(-qint64(recentTimeSpan()));
    const NyDateRange range(start.date(), end.date());
    m_recentFileFinder.setObservedDirectory(settings().searchHomeFolder());
    qDebug() << "QUILLO_SERVICE: DateRange to be considered:" << range.dateDescription(logReferenceDate);
    if (range.isValid())
        m_watcher.setFuture(QtConcurrent::run(QThreadPool::globalInstance(), [this, range] { return searchAndRecommend(range); }));
    else
        m_watcher.setFuture(QFuture<NyRecentFileResult>());
}

void NyRecentFileManager::recentFileCheckFinished()
{
    if (!m_watcher.isFinished())
        return;
    // A scan needs a lot for a moment, and the service then does nothing for a long time.
    NyPlatformIndependent::instance().releaseUnusedMemory();
    const NyRecentFileResult result = getRecentFileResultSafely();
    qInfo() << "QUILLO_SERVICE: Files found: " << result.count();
    qInfo() << "QUILLO_SERVICE: Files found that were after the cut-off-date: " << result.countAfterDateRange();
    if (isProductSuggestionRecommended(result)) {
        m_forceResults = false;
        Q_EMIT productSuggestionRecommended();
    }
}

NyRecentFileResult NyRecentFileManager::searchAndRecommend(const NyDateRange &range)
{
    qDebug() << "QUILLO_SERVICE: Searching for recently added files from " << range.dateDescription(logReferenceDate);
    const QMutexLocker locker(&m_mutex);
    NyRecentFileResult result = m_recentFileFinder.lastAddedFiles(range);
    // A scan that the end of the program cut short must not replace the stored list, nor keep the program from ending.
    if (QCoreApplication::closingDown())
        return {};
    result.excludePreviouslyUsedFotos();
    const QString key = config().registryIdentifier();
    NyFotoListRegistry::instance().clearEntry(key);
    NyFotoListRegistry::instance().add(key, NyFotoList(result.files()));
    qDebug() << "QUILLO_SERVICE: found recent unused Files" << result.count();
    NyEventFinder eventFinder(result);
    const NyRecentFileResult event = eventFinder.findEvent();
    qDebug() << "QUILLO_SERVICE: recommended fotos selected" << result.count() << result.recommendedStyleIds().join(QLatin1Char(';'));
    return event;
}

QStringList NyRecentFileManager::fileExtensionFilters() const
{
    return NyImageLoader::instance().supportedMediaFormats().fileExtensionFilters();
}

NyQuilloServiceConfig &NyRecentFileManager::config() const
{
    return NyQuilloServiceConfig::instance();
}

NyQuilloServiceSettings &NyRecentFileManager::settings() const
{
    return NyQuilloServiceSettings::instance();
}

int NyRecentFileManager::inactivityDuration() const
{
    return config().inactivityDuration();
}

int NyRecentFileManager::recentTimeSpan() const
{
    return config().recentTimeSpan();
}

int NyRecentFileManager::durationBetweenChecks() const
{
    return config().durationBetweenChecks();
}
