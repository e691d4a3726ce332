#pragma once

#include "NyEventFinderConfiguration.h"
#include "nyquilloservice_export.h"

#include <NyQuilloServiceConfigBase.h>
#include <NySingleton.h>

#include <QDateTime>
#include <QString>
#include <QStringList>

/**
 * The read-only tuning values of the service, from the XML file that comes with the program.
 *
 * Every accessor has its default built in and reads the parsed document at each call; only the event finder's section and the
 * style ids are kept. The document does not change after construction, so accessors may be called from any thread. Durations
 * are in seconds unless the accessor says otherwise.
 */
class NYQUILLOSERVICE_EXPORT NyQuilloServiceConfig : public NyQuilloServiceConfigBase, public NySingleton<NyQuilloServiceConfig>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyQuilloServiceConfig)

public:
    NyQuilloServiceConfig();
    ~NyQuilloServiceConfig() override;

    int requiredIdleTime() const;
    /** Number of proposals until the regular phase, whose waits are longer, begins. */
    int initialPhaseSuggestions() const;
    /** Least number of photos for a proposal. */
    int minimumPhotos() const;
    /** Greatest number of photos that the builder is given. */
    int maximumPhotos() const;
    /** Name under which the recent photos are kept in the photo-list registry. */
    QString registryIdentifier() const;
    int waitForIdleDuration() const;
    int waitBetweenIdleChecks() const;
    int toastExpirationTime() const;
    int toastRepeatTime() const;
    /** Seconds between two looks at a postponed notification. */
    int checkToastReschedule() const;
    bool enableDebuggingFeatures() const;
    bool printClassification() const;
    /** Worker threads of the builder; 0 leaves the choice to the builder. */
    int numberOfBackgroundJobs() const;
    int processPriority() const;

    // These eight are read from the section "debug" instead of "recentFiles" while debugging features are enabled.
    int durationBetweenChecks() const;
    /** The newest photos that count lie this far before now. */
    int inactivityDuration() const;
    /** How far the scanned range reaches behind that point. */
    int recentTimeSpan() const;
    int minimumWaitTimeInitialPhase() const;
    int minimumWaitTimeRegularPhase() const;
    /** Day of the week, 1 is Monday, 7 is Sunday. */
    int preferredDaysStart() const;
    int preferredDaysEnd() const;
    /** Hour of the day, 0 to 23, from which the first preferred day counts. */
    int preferredHourStart() const;

    /** Milliseconds from the start of the service to its first scan. */
    int firstCollectionInterval() const;
    /** The moment at which a notification that is postponed now is due again. */
    QDateTime findNextToastRepeatTime() const;
    /** Whether a proposal is welcome now. */
    bool todayInPreferredDateTimeRange() const;
    /** The same for a given local moment: from the start hour of the first preferred day to the end of the last; never past Sunday. */
    bool inPreferredDateTimeRange(const QDateTime &moment) const;

    /** A timer's interval in milliseconds for a duration of this configuration, within what a timer can do. */
    static int timerInterval(int seconds);

    NyEventFinderConfiguration eventFinderConfiguration() const;
    /** Ids of the design styles that every proposal may use. */
    QStringList designStyleIds() const;

private:
    void parseDesignStyles();
    QString recentFilesSection() const;

    NyEventFinderConfiguration m_eventFinderConfig;
    QStringList m_designStyleIdList;
};
