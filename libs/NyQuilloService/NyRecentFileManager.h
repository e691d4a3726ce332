#pragma once

#include "NyRecentFileFinder.h"
#include "NyRecentFileResult.h"
#include "nyquilloservice_export.h"

#include <QDateTime>
#include <QFutureWatcher>
#include <QList>
#include <QMutex>
#include <QObject>
#include <QString>
#include <QTimer>

class NyDateRange;
class NyQuilloServiceConfig;
class NyQuilloServiceSettings;

/**
 * Decides when the tree of pictures is searched and whether what was found is worth a proposal.
 *
 * Lives on the main thread; each search runs on a thread of the global pool, one at a time. The last search's result lives in
 * the watcher's future and nowhere else. A search that is under way when the manager dies runs on to its end or to the end of
 * the application, so the manager of a program has to live as long as the program.
 */
class NYQUILLOSERVICE_EXPORT NyRecentFileManager : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyRecentFileManager)

public:
    explicit NyRecentFileManager(QObject *parent);
    ~NyRecentFileManager() override;

    /** The next search to finish recommends whatever it found; starts one unless one is running. */
    void forceResults();
    /** Observes the pictures home until the next check takes the observed folder from the settings again. */
    void handlePicturesHomeChange();
    /** Whether the last search is worth a proposal; false while one is running. */
    bool isProductSuggestionRecommended() const;
    /** Applies the rules to `result` now. */
    bool isProductSuggestionRecommended(const NyRecentFileResult &result) const;
    /** Applies the rules to `result` at the local moment `now`. */
    bool isProductSuggestionRecommended(const NyRecentFileResult &result, const QDateTime &now) const;
    NyRecentFileResult suggestedRecentFiles() const;
    /** The photos of the last search's event; empty while a search is running. */
    QList<QFileInfo> recentFiles() const;
    /** The last search's result, or an empty one while a search is running or none has been made; never blocks. */
    NyRecentFileResult getRecentFileResultSafely() const;

public Q_SLOTS:
    /** Searches at once and from then on at the configured interval. */
    void startCheckingForRecentFiles();
    /** Starts one search, also while another one is running: that one's result is then dropped. */
    void checkForRecentFiles();
    void recentFileCheckFinished();

Q_SIGNALS:
    void recentFileSearchCompleted();
    /** A finished search is worth a proposal. */
    void productSuggestionRecommended();

private:
    NyRecentFileResult searchAndRecommend(const NyDateRange &range);
    QStringList fileExtensionFilters() const;
    NyQuilloServiceConfig &config() const;
    NyQuilloServiceSettings &settings() const;
    int inactivityDuration() const;
    int recentTimeSpan() const;
    int durationBetweenChecks() const;

    NyRecentFileFinder m_recentFileFinder;
    bool m_forceResults = false;
    QTimer m_timer;
    QFutureWatcher<NyRecentFileResult> m_watcher;
    /** Held by a search from its beginning to its end; the finder's own lock is always taken after it. */
    QMutex m_mutex;
};
