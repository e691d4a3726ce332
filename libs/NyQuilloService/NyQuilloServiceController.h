#pragma once

#include "NyIdleWatcher.h"
#include "nyquilloservice_export.h"

#include <NySingleton.h>

#include <QDir>
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

class NyQuilloDornRunner;
class NyQuilloServiceConfig;
class NyQuilloServiceSettings;
class NyRecentFileManager;
class NySystemTrayService;
class NyToastMessage;
class NyToastMessaging;
class QFileInfo;

/** How a request to delete a proposal ended. */
enum class NyProposalDeletion {
    Declined,
    Complete,
    /** The user agreed, but files are left; each has a warning in the log. */
    Incomplete
};

/**
 * The main object of the service: start-up and the modes of a run, the road from a scan to a finished proposal, what follows it,
 * and the messages between processes. The hub on the main thread through which all other parts reach each other.
 *
 * The executable makes the application object first, then the one controller, and calls runService() once. The static
 * operations need no controller; any program of the user may call them on its main thread, and none reports a failure.
 */
class NYQUILLOSERVICE_EXPORT NyQuilloServiceController : public QObject, public NySingleton<NyQuilloServiceController>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyQuilloServiceController)

public:
    NyQuilloServiceController();
    ~NyQuilloServiceController() override;

    /**
     * Reads the command line, runs in the mode that it asks for and returns the exit code of the process. `arguments` is for the
     * log only. Some modes, and a service that is not allowed to run, end the process from within.
     */
    int runService(const QStringList &arguments);

    NyQuilloServiceConfig &config() const;
    NyQuilloServiceSettings &settings() const;
    NyToastMessaging &toastMessaging() const;
    QString versionDescription(bool testClient) const;
    void showSystemTrayMessage(const NyToastMessage &message);

    QString suggestProposalFilename() const;
    /** The builder's command line; no option for 0 jobs and for empty lists. */
    static QStringList builderArguments(int jobs, const QString &path, const QStringList &styleIds, const QStringList &occasions);
    void storeCreatedSuggestionInformation();
    QString lastProposalFilename() const;
    void setLastProposalFilename(const QString &filename);
    /** Path of the preview of the last proposal, whether it exists or not. */
    QString lastProposalFilenameIcon() const;
    NyToastMessage createProposalReadyToast(const QFileInfo &image, const QString &id) const;

    /** Adds `path` to the watched paths unless it is there already. */
    void watchFile(const QString &path);
    /** Removes `path` and its parent folder from the watched paths. */
    void unWatchFile(const QString &path);

    /** Asks the user, then deletes every file of the proposal folder whose name begins with `name`, a proposal's project id. */
    static void deleteProposal(const QString &name);
    /** The same for a caller that has to say how it ended. An empty name is declined. */
    static NyProposalDeletion askAndDeleteProposal(const QString &name);
    /** Tells a running service to end. */
    static void quitRunningService();
    /** Takes that request back. */
    static void unquitRunningService();
    /** Tells a running service that another pictures home was stored. */
    static void handlePicturesHomeChange();
    static QDir markerDir();
    static QString terminationFilePath();
    static QString markerFilePathForPicturesHome();

public Q_SLOTS:
    void quit();
    void launchMainApplication();
    void launchCreateProductSuggestionProcess();
    void launchCreateProductSuggestionProcessWithPicturesHomePhotos();
    void launchCreateProductSuggestionProcessForced() const;
    void showProject(const QString &theProjectId);
    void rescheduleToast(const QString &theProjectId);
    void showInfo();
    bool showLastProposal();
    void startCollection();
    void considerCreatingProductSuggestion();
    void showCreationResults();
    void showRescheduledToast();
    void checkRescheduledToast();
    void watchedFileChanged(const QString &filePath);
    void watchFileChangedBookProposal(const QString &filePath);
    void watchFileChangedMarkerPicturesHome();
    void watchTerminationFileChanged();
    void updateSystemTrayActions();

private:
    void switchServiceModeToNormal();
    void initRecentFileManager();
    void initSystemTray();
    void initWatchTerminationFile();
    /**
     * Offers the awaited proposal if it is there although no change of its folder was reported: the folder could not be watched,
     * or another one took its place. Without this, every further search would build the same book again.
     */
    bool offerMissedProposal();

    // Lives to the end of the process, without an owner; null in the modes without a tray.
    NySystemTrayService *m_systemTray = nullptr;
    NyRecentFileManager *m_recentFileManager = nullptr;
    NyIdleWatcher m_idleWatcher;
    QFileSystemWatcher m_fileSystemWatcher;
    // Lives to the end of the process: a builder ends with the process, not with the controller.
    NyQuilloDornRunner *m_builderRunner;
    QTimer m_idleCheckTimer;
    QTimer m_toastRescheduleTimer;
    QString m_lastProposalFilename;
    bool m_usePicturesHomePhotos = false;
    bool m_proposalAwaited = false;
};
