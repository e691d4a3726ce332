#include "NyQuilloServiceController.h"

#include "NyCommandLineParserQuilloService.h"
#include "NyQuilloDornRunner.h"
#include "NyQuilloServiceConfig.h"
#include "NyQuilloServiceInstallHandler.h"
#include "NyQuilloServiceSettings.h"
#include "NyRecentFileManager.h"
#include "NyRecentFileResult.h"
#include "NyRequestQuilloService.h"
#include "NyRunningServiceLock.h"
#include "NySystemTrayService.h"
#include "NyToastMessage.h"
#include "NyToastMessaging.h"

#include <NyEventFolderClassificationResult.h>
#include <NyFileHandler.h>
#include <NyFotoList.h>
#include <NyFotoListRegistry.h>
#include <NyFotoSettings.h>
#include <NyGUIWidgetsConfig.h>
#include <NyInitializer.h>
#include <NyInstallationSettings.h>
#include <NyJsonParser.h>
#include <NyKeyAccount.h>
#include <NyLogMessageHandler.h>
#include <NyLogger.h>
#include <NyOccasionInfoList.h>
#include <NyPlatformIndependent.h>
#include <NyUniqueFilenameMaker.h>
#include <NyVersionConfig.h>

#include <QApplication>
#include <QDate>
#include <QDateTime>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>
#include <QThreadPool>
#include <QUrl>

#include <cstdlib>

namespace
{
const QString MARKER_FOLDERNAME = QStringLiteral("VELMORA");
const QString TERMINATION_FILENAME = QStringLiteral("terminateQuilloService.txt");
const QString PICTURES_HOME_CHANGE_FILENAME = QStringLiteral("picturesHomeChanged.txt");

/** A service that was told to end holds its lock until it has. */
constexpr int longestEndOfAServiceMs = 2000;

const char *text(bool value)
{
    return value ? "true" : "false";
}

void logUsage(const QString &record)
{
    NyLogger::instance().logQuilloService(record);
}

void flushLogFile()
{
    NyLogMessageHandler::instance().flushLogFile();
}

/** Ends the process at the beginning of its exit if a search is under way, which would go on while the static objects go. */
void endWithinASearch()
{
    if (QThreadPool::globalInstance()->activeThreadCount() == 0)
        return;
    flushLogFile();
    std::_Exit(0);
}
}

NyQuilloServiceController::NyQuilloServiceController()
    : m_idleWatcher(this)
    , m_fileSystemWatcher(this)
    , m_builderRunner(new NyQuilloDornRunner)
    , m_idleCheckTimer(this)
    , m_toastRescheduleTimer(this)
{
    initWatchTerminationFile();

    connect(&m_fileSystemWatcher, &QFileSystemWatcher::directoryChanged, this, &NyQuilloServiceController::watchedFileChanged);
    connect(&m_fileSystemWatcher, &QFileSystemWatcher::fileChanged, this, &NyQuilloServiceController::watchedFileChanged);
    connect(
        &toastMessaging(), &NyToastMessaging::showProjectRequested, this, &NyQuilloServiceController::showProject, Qt::QueuedConnection);
    connect(&toastMessaging(), &NyToastMessaging::rescheduleToastRequested, this, &NyQuilloServiceController::rescheduleToast,
        Qt::QueuedConnection);
    connect(&m_idleCheckTimer, &QTimer::timeout, this, &NyQuilloServiceController::considerCreatingProductSuggestion);
    connect(&m_toastRescheduleTimer, &QTimer::timeout, this, &NyQuilloServiceController::checkRescheduledToast);

    m_idleCheckTimer.setInterval(NyQuilloServiceConfig::timerInterval(config().waitBetweenIdleChecks()));
    m_idleCheckTimer.setSingleShot(false);
    m_toastRescheduleTimer.setInterval(NyQuilloServiceConfig::timerInterval(config().checkToastReschedule()));
    m_toastRescheduleTimer.setSingleShot(false);
}

NyQuilloServiceController::~NyQuilloServiceController() = default;

int NyQuilloServiceController::runService(const QStringList &arguments)
{
    qInfo() << "Launching QuilloService" << arguments;
    NyCommandLineParserQuilloService parser;
    NyInitializer::instance().addCommandLineOptionHandlers(&parser);
    parser.processCommandLine();
    NyInitializer::instance().setup(NyInitializerOption::BackgroundService);
    NyPlatformIndependent::instance().prepareProgram();

    if (!NyInstallationSettings::instance().autoStartService() && settings().serviceMode() == ServiceModeNormal) {
        qWarning() << "Running not allowed by settings!";
        std::exit(0);
    }
    logUsage(QStringLiteral("runService VALUES:%1").arg(arguments.join(QLatin1Char(';'))));

    int result = 0;
    bool startNormalRun = true;
    bool enterEventLoop = true;
    switch (settings().serviceMode()) {
    case ServiceModeInstall:
        NyQuilloServiceInstallHandler().install();
        break;
    case ServiceModeUninstall:
        NyQuilloServiceInstallHandler().uninstall();
        std::exit(0);
    case ServiceModeReset:
        settings().resetSettings();
        startNormalRun = false;
        enterEventLoop = false;
        break;
    case ServiceModeToastActivation:
        startNormalRun = false;
        break;
    case ServiceModeAutostartQuery:
        std::exit(NyInstallationSettings::instance().autoStartService() ? 1 : 0);
    case ServiceModeNormal:
        break;
    }

    NyRunningServiceLock runningServiceLock;
    if (startNormalRun && !runningServiceLock.acquire(longestEndOfAServiceMs)) {
        qInfo() << "QUILLO_SERVICE: another service of this user is running already, this one ends. Process:"
                << runningServiceLock.holder();
        startNormalRun = false;
        enterEventLoop = false;
    }
    if (startNormalRun) {
        switchServiceModeToNormal();
        initRecentFileManager();
        initSystemTray();
        m_toastRescheduleTimer.start();
        QTimer::singleShot(config().firstCollectionInterval(), this, &NyQuilloServiceController::startCollection);
    }
    if (enterEventLoop) {
        const QIcon icon = NyGUIWidgetsConfig::instance().loadIconById(QStringLiteral("ico_quilloservice"));
        if (!icon.isNull())
            QGuiApplication::setWindowIcon(icon);
        result = QApplication::exec();
    }

    NyLogger::instance().closeFile();
    NyInitializer::instance().teardown();
    return result;
}

NyQuilloServiceConfig &NyQuilloServiceController::config() const
{
    return NyQuilloServiceConfig::instance();
}

NyQuilloServiceSettings &NyQuilloServiceController::settings() const
{
    return NyQuilloServiceSettings::instance();
}

NyToastMessaging &NyQuilloServiceController::toastMessaging() const
{
    return NyToastMessaging::instance();
}

QString NyQuilloServiceController::versionDescription(bool testClient) const
{
    const NyVersionConfig &version = NyVersionConfig::instance();
    const QString keyAccountId = NyKeyAccount::instance().keyAccountId().toString();
    if (testClient)
        return tr("Version %1-%2-%3").arg(version.clientVersion(), version.gitCommitStringShort(), keyAccountId);
    return tr("Version %1-%2").arg(version.versionString(), keyAccountId);
}

void NyQuilloServiceController::showSystemTrayMessage(const NyToastMessage &message)
{
    m_systemTray->showSystemTrayMessage(message);
}

void NyQuilloServiceController::switchServiceModeToNormal()
{
    if (settings().serviceMode() == ServiceModeInstall)
        settings().setServiceMode(ServiceModeNormal);
}

void NyQuilloServiceController::initRecentFileManager()
{
    // The manager reads the photo settings while it is made, and again on its worker.
    NyFotoSettings::instance();
    m_recentFileManager = new NyRecentFileManager(this);
    connect(m_recentFileManager, &NyRecentFileManager::productSuggestionRecommended, this,
        &NyQuilloServiceController::considerCreatingProductSuggestion);
}

void NyQuilloServiceController::initSystemTray()
{
    m_systemTray = new NySystemTrayService;
    connect(m_systemTray, &NySystemTrayService::quitRequested, this, &NyQuilloServiceController::quit);
    connect(m_systemTray, &NySystemTrayService::launchMainApplicationRequested, this, &NyQuilloServiceController::launchMainApplication);
    connect(m_systemTray, &NySystemTrayService::showInfoRequested, this, &NyQuilloServiceController::showInfo);
    connect(m_systemTray, &NySystemTrayService::productSuggestionRequested, this,
        &NyQuilloServiceController::launchCreateProductSuggestionProcessForced);
    connect(m_systemTray, &NySystemTrayService::productSuggestionWithPicturesHomePhotosRequested, this,
        &NyQuilloServiceController::launchCreateProductSuggestionProcessWithPicturesHomePhotos);
    connect(m_systemTray, &NySystemTrayService::showLastProposalRequested, this, &NyQuilloServiceController::showLastProposal);
    m_systemTray->show();
}

void NyQuilloServiceController::startCollection()
{
    qInfo() << "QUILLO_SERVICE: starting first check for recent files";
    m_recentFileManager->startCheckingForRecentFiles();
}

void NyQuilloServiceController::quit()
{
    logUsage(QStringLiteral("quit"));
    qInfo() << "QUILLO_SERVICE: Good Bye.";
    if (m_systemTray)
        m_systemTray->hide();
    QCoreApplication::quit();
}

void NyQuilloServiceController::launchMainApplication()
{
    m_builderRunner->startAsIndependentProgram({});
}

void NyQuilloServiceController::showInfo()
{
    logUsage(QStringLiteral("showInfo"));
    const QString version = versionDescription(NyKeyAccount::instance().keyAccountId().isTestClient());
    const NyToastMessage message(tr("VELMORA ALBUMA") + QStringLiteral("\n%1").arg(version),
        tr("Automatische Ereigniserkennung zur Erstellung persönlicher Buchvorschläge."), QFileInfo(), QString(), false);
    toastMessaging().sendToastMessage(message);
    flushLogFile();
}

void NyQuilloServiceController::updateSystemTrayActions()
{
    if (m_systemTray)
        m_systemTray->setShowLastProposalActionEnabled(QFile::exists(m_lastProposalFilename));
}

// Creating a proposal

void NyQuilloServiceController::considerCreatingProductSuggestion()
{
    qInfo() << "QUILLO_SERVICE: checking if the system is idle and we have enough fotos to create a product suggestion.";
    if (m_builderRunner->isRunning()) {
        qInfo() << "QUILLO_SERVICE: QuilloDornRunner still running ";
    } else if (!m_idleWatcher.isIdle()) {
        qInfo() << "QUILLO_SERVICE: IdleWatcher reports system is not idle. Next check in " << m_idleCheckTimer.interval() / 1000.0
                << "seconds.";
        m_idleCheckTimer.start();
    } else if (m_recentFileManager->isProductSuggestionRecommended()) {
        m_idleCheckTimer.stop();
        if (!offerMissedProposal())
            launchCreateProductSuggestionProcess();
    } else {
        qInfo() << "QUILLO_SERVICE: Creating product suggestion was not recommended due to lack of qualified photos.";
        m_idleCheckTimer.start();
    }
    flushLogFile();
}

void NyQuilloServiceController::launchCreateProductSuggestionProcess()
{
    logUsage(QStringLiteral("launchCreateProductSuggestionProcess"));
    qInfo() << "QUILLO_SERVICE: ====> Launching a process to create a photobook based on the found data.";

    NyRecentFileResult result;
    if (m_usePicturesHomePhotos) {
        result = NyRecentFileResult::fromFolder(QDir(NyFotoSettings::instance().picturesHomePath()));
        m_usePicturesHomePhotos = false;
    } else {
        result = m_recentFileManager->suggestedRecentFiles();
    }
    const QList<QUrl> photoUrls = result.photoUrls(config().maximumPhotos());
    const QStringList styleIds = result.recommendedStyleIds();
    const QStringList occasions = result.classification().occasionInformation().occasions();

    if (photoUrls.isEmpty()) {
        qInfo() << "QUILLO_SERVICE: no recent files found";
        if (config().enableDebuggingFeatures()) {
            toastMessaging().sendToastMessage(NyToastMessage(tr("VELMORA ALBUMA"),
                tr("Es wurden leider keine neuen Foto-Ereignisse auf Ihrem Gerät gefunden. Doch "
                   "Ihr nächstes Ereignis steht bestimmt bevor."),
                QFileInfo(), QString(), false));
        }
        return;
    }
    if (config().minimumPhotos() > photoUrls.size()) {
        qInfo() << "suggested file count too low: " << photoUrls.size();
        return;
    }

    NyFotoListRegistry::instance().setFotosForBookProposal(NyFotoList(photoUrls));
    // Somebody may have tidied the folder away since the start.
    settings().ensureRequiredFoldersExist();
    setLastProposalFilename(suggestProposalFilename());
    m_proposalAwaited = true;
    // Watched before the builder starts: a quick builder must not be missed.
    watchFile(QFileInfo(lastProposalFilename()).absolutePath());

    m_builderRunner->startAsService(builderArguments(config().numberOfBackgroundJobs(), lastProposalFilename(), styleIds, occasions));
}

QStringList NyQuilloServiceController::builderArguments(
    int jobs, const QString &path, const QStringList &styleIds, const QStringList &occasions)
{
    QStringList arguments;
    if (jobs != 0)
        arguments << QStringLiteral("--backgroundjobs") << QString::number(jobs);
    arguments << QStringLiteral("--programmode") << QStringLiteral("b");
    arguments << QStringLiteral("--proposalTargetPath") << path;
    if (!styleIds.isEmpty())
        arguments << QStringLiteral("--proposalRecommendedStyles") << styleIds.join(QLatin1Char(','));
    if (!occasions.isEmpty())
        arguments << QStringLiteral("--proposalOccasions") << occasions.join(QLatin1Char(','));
    return arguments;
}

void NyQuilloServiceController::launchCreateProductSuggestionProcessWithPicturesHomePhotos()
{
    m_usePicturesHomePhotos = true;
    launchCreateProductSuggestionProcess();
}

void NyQuilloServiceController::launchCreateProductSuggestionProcessForced() const
{
    m_recentFileManager->forceResults();
}

QString NyQuilloServiceController::suggestProposalFilename() const
{
    const QString date = QDate::currentDate().toString(Qt::ISODate);
    const QString path = settings().bookProposalFileFolder() + tr("Produktvorschlag") + QLatin1Char('_') + date + QStringLiteral(".nqp");
    return NyUniqueFilenameMaker::makeHumanCompatibleUniqueFileName(QFileInfo(path), QStringLiteral("_")).absoluteFilePath();
}

void NyQuilloServiceController::storeCreatedSuggestionInformation()
{
    NyFotoListRegistry &registry = NyFotoListRegistry::instance();
    registry.addFotosUsedForBookProposals(registry.getFotosForBookProposal());
    settings().setLastProductSuggestionDate(QDateTime::currentDateTime());
    settings().increaseProductSuggestionCount();
}

// What follows a finished proposal

QString NyQuilloServiceController::lastProposalFilename() const
{
    return m_lastProposalFilename;
}

void NyQuilloServiceController::setLastProposalFilename(const QString &filename)
{
    m_lastProposalFilename = filename;
}

QString NyQuilloServiceController::lastProposalFilenameIcon() const
{
    return m_lastProposalFilename + QStringLiteral(".png");
}

NyToastMessage NyQuilloServiceController::createProposalReadyToast(const QFileInfo &image, const QString &id) const
{
    return NyToastMessage(
        tr("VELMORA ALBUMA"), tr("Ihr neuer, persönlicher Vorschlag für ein VELMORA ALBUMA wurde erstellt."), image, id, true);
}

void NyQuilloServiceController::watchFile(const QString &path)
{
    QFileInfo info(path);
    if (!info.exists())
        info = QFileInfo(info.absolutePath());
    const QStringList watched = info.isFile() ? m_fileSystemWatcher.files() : m_fileSystemWatcher.directories();
    if (watched.contains(path, Qt::CaseSensitive))
        return;
    const bool added = m_fileSystemWatcher.addPath(path);
    qDebug() << "QUILLO_SERVICE: watchFile a: result" << text(added) << ", filename" << path << ", absoluteFilePath"
             << info.absoluteFilePath();
}

void NyQuilloServiceController::unWatchFile(const QString &path)
{
    const QFileInfo info(path);
    if (info.exists())
        m_fileSystemWatcher.removePath(path);
    m_fileSystemWatcher.removePath(info.absolutePath());
}

void NyQuilloServiceController::watchFileChangedBookProposal(const QString &filePath)
{
    const QFileInfo changed(filePath);
    const QFileInfo proposalFolder(settings().bookProposalFileFolder());
    if (!changed.isDir() || changed.canonicalFilePath() != proposalFolder.canonicalFilePath()) {
        qDebug() << "not the bookProposalFileFolder";
        return;
    }
    const QFileInfo proposal(lastProposalFilename());
    if (!proposal.exists()) {
        qWarning() << "QUILLO_SERVICE: proposal file does not exist at:" << proposal.absoluteFilePath();
        return;
    }
    qInfo() << "QUILLO_SERVICE: proposal file exists at:" << proposal.absoluteFilePath();
    m_proposalAwaited = false;
    showCreationResults();
    unWatchFile(lastProposalFilename());
}

bool NyQuilloServiceController::offerMissedProposal()
{
    if (!m_proposalAwaited || !QFileInfo::exists(lastProposalFilename()))
        return false;
    qWarning() << "QUILLO_SERVICE: the change of the proposal folder was not reported, check the limit of file watches:"
               << QFileInfo(lastProposalFilename()).absolutePath();
    watchFileChangedBookProposal(settings().bookProposalFileFolder());
    return true;
}

void NyQuilloServiceController::showCreationResults()
{
    qInfo() << "QUILLO_SERVICE: ====> Product Suggestion was created and we're offering it to the customer.";
    flushLogFile();
    storeCreatedSuggestionInformation();
    updateSystemTrayActions();
    logUsage(QStringLiteral("showCreationResults"));
    NyLogger::instance().closeFile();
    const NyToastMessage toast
        = createProposalReadyToast(QFileInfo(lastProposalFilenameIcon()), settings().projectId(lastProposalFilename()));
    toastMessaging().sendToastMessage(toast);
    flushLogFile();
}

void NyQuilloServiceController::showProject(const QString &theProjectId)
{
    logUsage(QStringLiteral("showProject PROJECTID:%1").arg(theProjectId));
    qInfo() << "QUILLO_SERVICE: Opening the project in the main application.";
    flushLogFile();
    const QString projectFile = settings().projectFile(theProjectId);
    if (!QFile::exists(projectFile)) {
        qWarning() << "Proposal project file not found! Was: " << projectFile;
        return;
    }
    m_builderRunner->startAsIndependentProgram({QStringLiteral("--suppressLoadWarnings"), projectFile});
}

bool NyQuilloServiceController::showLastProposal()
{
    const QFileInfo proposal(lastProposalFilename());
    logUsage(QStringLiteral("launchMainApplication"));
    const bool exists = proposal.exists();
    if (exists)
        showProject(settings().projectId(lastProposalFilename()));
    return exists;
}

void NyQuilloServiceController::rescheduleToast(const QString &theProjectId)
{
    logUsage(QStringLiteral("rescheduleToast PROJECTID:%1").arg(theProjectId));
    qInfo() << "QUILLO_SERVICE: reschedule toast";
    settings().setNextToastRepeat(config().findNextToastRepeatTime().date());
    settings().setLastBookProposalId(theProjectId);
    if (!m_toastRescheduleTimer.isActive())
        m_toastRescheduleTimer.start();
}

void NyQuilloServiceController::checkRescheduledToast()
{
    const QDate due = settings().nextToastRepeat();
    const QDateTime now = QDateTime::currentDateTime();
    const QDateTime dueMoment = settings().recommendedNextToastRepeat();
    if (!due.isValid() || now < dueMoment)
        return;
    settings().setNextToastRepeat(QDate());
    showRescheduledToast();
}

void NyQuilloServiceController::showRescheduledToast()
{
    qInfo() << "QUILLO_SERVICE: ====> Customer asked us to show the suggestion again later, it's now later.";
    const QString id = settings().lastBookProposalId();
    logUsage(QStringLiteral("showRescheduledToast PROJECTID:%1").arg(id));
    updateSystemTrayActions();
    toastMessaging().sendToastMessage(createProposalReadyToast(QFileInfo(settings().projectIconFile(id)), id));
    flushLogFile();
}

void NyQuilloServiceController::deleteProposal(const QString &name)
{
    askAndDeleteProposal(name);
}

NyProposalDeletion NyQuilloServiceController::askAndDeleteProposal(const QString &name)
{
    if (name.isEmpty()) {
        qWarning() << "QUILLO_SERVICE: no proposal named for deletion, nothing is deleted";
        return NyProposalDeletion::Declined;
    }
    const QDir folder(NyQuilloServiceSettings::instance().bookProposalFileFolder());
    const QFileInfo description(folder, name + QStringLiteral(".json"));
    const QString headline = NyJsonParser::loadDocument(description).object().value(QLatin1String("headline")).toString();
    if (!NyRequestQuilloService::instance().askDeleteBookProposal(headline))
        return NyProposalDeletion::Declined;
    // A name filter would take signs of the name for a pattern, and letters of either case for the same.
    QFileInfoList files = folder.entryInfoList(QDir::NoFilter, QDir::NoSort);
    files.removeIf([&name](const QFileInfo &file) { return !file.fileName().startsWith(name); });
    if (!NyFileHandler::deleteFiles(files))
        return NyProposalDeletion::Incomplete;
    if (folder.exists(name)) {
        qWarning() << "QUILLO_SERVICE: a folder is no proposal and stays:" << folder.absoluteFilePath(name);
        return NyProposalDeletion::Incomplete;
    }
    return NyProposalDeletion::Complete;
}

// Messages between processes

QDir NyQuilloServiceController::markerDir()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::TempLocation) + QLatin1Char('/') + MARKER_FOLDERNAME);
}

QString NyQuilloServiceController::terminationFilePath()
{
    return markerDir().absoluteFilePath(TERMINATION_FILENAME);
}

QString NyQuilloServiceController::markerFilePathForPicturesHome()
{
    return markerDir().absoluteFilePath(PICTURES_HOME_CHANGE_FILENAME);
}

void NyQuilloServiceController::quitRunningService()
{
    const QString path = terminationFilePath();
    qDebug() << "writing file" << path;
    // The rename lets the file come into being in one step, and leaves one that is there already alone.
    const QString temporaryPath = path + QLatin1Char('~');
    NyFileHandler::writeBinaryFile(QFileInfo(temporaryPath), QByteArray());
    if (!QFile::rename(temporaryPath, path))
        QFile::remove(temporaryPath);
    const QFileInfo written(path);
    qDebug() << "wrote file" << written.absoluteFilePath() << text(written.exists());
}

void NyQuilloServiceController::unquitRunningService()
{
    const QString path = terminationFilePath();
    qDebug() << "removing file" << path;
    QFile file(path);
    file.remove();
    const QFileInfo removed(path);
    qDebug() << "removed file" << removed.absoluteFilePath() << text(removed.exists());
}

void NyQuilloServiceController::handlePicturesHomeChange()
{
    const QFileInfo marker(markerFilePathForPicturesHome());
    const QDir folder(marker.absolutePath());
    if (!folder.exists() && !folder.mkpath(QStringLiteral(".")))
        qWarning() << "QUILLO_SERVICE: failed to create path:" << folder.absolutePath();
    if (!folder.exists())
        return;
    // A marker that nobody has collected yet must not swallow this message.
    if (marker.exists() && !QFile::remove(marker.absoluteFilePath()))
        qWarning() << "QUILLO_SERVICE: failed to remove marker file:" << marker.absoluteFilePath();
    QFile file(marker.absoluteFilePath());
    if (!file.open(QIODevice::WriteOnly))
        qWarning() << "QUILLO_SERVICE: failed to create marker file:" << marker.absoluteFilePath();
}

void NyQuilloServiceController::initWatchTerminationFile()
{
    const QFileInfo terminationFile(terminationFilePath());
    const QDir folder(terminationFile.absolutePath());
    if (terminationFile.exists()) {
        if (!m_fileSystemWatcher.addPath(terminationFile.absoluteFilePath()))
            qWarning() << "QUILLO_SERVICE: failed to watch:" << terminationFile.absoluteFilePath();
    } else if (!folder.exists() && !folder.mkpath(QStringLiteral("."))) {
        qWarning() << "QUILLO_SERVICE: failed to create path:" << folder.absolutePath();
    }
    if (!m_fileSystemWatcher.addPath(folder.absolutePath()))
        qWarning() << "QUILLO_SERVICE: failed to watch:" << folder.absolutePath();
}

void NyQuilloServiceController::watchedFileChanged(const QString &filePath)
{
    logUsage(QStringLiteral("watchFileChanged"));
    qInfo() << "QUILLO_SERVICE: changes at watched file path:" << filePath;
    // A clean of the temporary folder takes the marker folder away, and the watch with it: without it nobody could end this process.
    if (!m_fileSystemWatcher.directories().contains(markerDir().absolutePath()))
        initWatchTerminationFile();
    // Events come late and merged: each handler looks at the files themselves.
    watchTerminationFileChanged();
    watchFileChangedMarkerPicturesHome();
    watchFileChangedBookProposal(filePath);
}

void NyQuilloServiceController::watchTerminationFileChanged()
{
    const QString path = terminationFilePath();
    if (!QFile::exists(path) || settings().serviceMode() == ServiceModeUninstall)
        return;
    qDebug() << "removing" << path;
    QFile::remove(path);
    if (settings().serviceMode() == ServiceModeInstall)
        return;
    QCoreApplication::exit(0);
    NyLogger::instance().closeFile();
    std::atexit(&endWithinASearch);
    std::exit(0);
}

void NyQuilloServiceController::watchFileChangedMarkerPicturesHome()
{
    const QString path = markerFilePathForPicturesHome();
    if (!QFile::exists(path))
        return;
    if (!QFile::remove(path))
        qWarning() << "QUILLO_SERVICE: failed to remove marker file:" << path;
    // Another process stored the new pictures home; this one still holds the old one.
    NyFotoSettings::instance().loadSettings();
    if (m_recentFileManager)
        m_recentFileManager->handlePicturesHomeChange();
}
