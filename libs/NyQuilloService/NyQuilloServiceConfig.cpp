#include "NyQuilloServiceConfig.h"

#include <algorithm>
#include <limits>

#include <NyDesignElementIDSet.h>
#include <NyPreInstalledDesignElementRegistry.h>

#include <QDomElement>

namespace
{
constexpr int secondsPerHour = 60 * 60;
constexpr int secondsPerDay = 24 * secondsPerHour;

const QString recentFiles = QStringLiteral("recentFiles");
const QString suggestion = QStringLiteral("suggestion");
const QString toastMessaging = QStringLiteral("toastMessaging");
const QString debug = QStringLiteral("debug");
const QString linuxSection = QStringLiteral("linux");
}

NyQuilloServiceConfig::NyQuilloServiceConfig()
{
    m_eventFinderConfig = NyEventFinderConfiguration(documentElement().firstChildElement(QStringLiteral("eventFinder")));
    parseDesignStyles();
}

NyQuilloServiceConfig::~NyQuilloServiceConfig() = default;

int NyQuilloServiceConfig::requiredIdleTime() const
{
    return getIntAttributeOfNode(QStringLiteral("idleWatcher"), QStringLiteral("requiredIdleTime"), 60);
}

int NyQuilloServiceConfig::initialPhaseSuggestions() const
{
    return getIntAttributeOfNode(recentFiles, QStringLiteral("initialPhaseSuggestions"), 3);
}

int NyQuilloServiceConfig::minimumPhotos() const
{
    return getIntAttributeOfNode(recentFiles, QStringLiteral("minimumPhotos"), 52);
}

int NyQuilloServiceConfig::maximumPhotos() const
{
    return getIntAttributeOfNode(recentFiles, QStringLiteral("maximumPhotos"), 250);
}

QString NyQuilloServiceConfig::registryIdentifier() const
{
    return getAttributeOfNode(recentFiles, QStringLiteral("registryIdentifier"), QStringLiteral("velmora.dorn.quillo.recentFiles"));
}

int NyQuilloServiceConfig::waitForIdleDuration() const
{
    return getIntAttributeOfNode(suggestion, QStringLiteral("waitForIdleDuration"), 60);
}

int NyQuilloServiceConfig::waitBetweenIdleChecks() const
{
    return waitForIdleDuration();
}

int NyQuilloServiceConfig::toastExpirationTime() const
{
    return getIntAttributeOfNode(toastMessaging, QStringLiteral("expirationTime"), 7 * secondsPerDay);
}

int NyQuilloServiceConfig::toastRepeatTime() const
{
    return getIntAttributeOfNode(toastMessaging, QStringLiteral("repeatToast"), 7 * secondsPerDay);
}

int NyQuilloServiceConfig::checkToastReschedule() const
{
    return getIntAttributeOfNode(toastMessaging, QStringLiteral("checkSchedule"), secondsPerHour);
}

bool NyQuilloServiceConfig::enableDebuggingFeatures() const
{
    return getBoolAttributeOfNode(debug, QStringLiteral("enabled"), false);
}

bool NyQuilloServiceConfig::printClassification() const
{
    return getBoolAttributeOfNode(debug, QStringLiteral("printClassification"), false);
}

int NyQuilloServiceConfig::numberOfBackgroundJobs() const
{
    return getIntAttributeOfNode(linuxSection, QStringLiteral("backGroundJobs"), 3);
}

int NyQuilloServiceConfig::processPriority() const
{
    return getIntAttributeOfNode(linuxSection, QStringLiteral("processPriority"), 0);
}

QString NyQuilloServiceConfig::recentFilesSection() const
{
    return enableDebuggingFeatures() ? debug : recentFiles;
}

int NyQuilloServiceConfig::durationBetweenChecks() const
{
    return getIntAttributeOfNode(recentFilesSection(), QStringLiteral("durationBetweenChecks"), 30);
}

int NyQuilloServiceConfig::inactivityDuration() const
{
    return getIntAttributeOfNode(recentFilesSection(), QStringLiteral("inactivityDuration"), 60);
}

int NyQuilloServiceConfig::recentTimeSpan() const
{
    return getIntAttributeOfNode(recentFilesSection(), QStringLiteral("recentTimeSpan"), 365 * secondsPerDay);
}

int NyQuilloServiceConfig::minimumWaitTimeInitialPhase() const
{
    return getIntAttributeOfNode(recentFilesSection(), QStringLiteral("minimumWaitTimeInitialPhase"), 4 * secondsPerHour);
}

int NyQuilloServiceConfig::minimumWaitTimeRegularPhase() const
{
    return getIntAttributeOfNode(recentFilesSection(), QStringLiteral("minimumWaitTimeRegularPhase"), 28 * secondsPerDay);
}

int NyQuilloServiceConfig::preferredDaysStart() const
{
    return getIntAttributeOfNode(recentFilesSection(), QStringLiteral("preferredDaysStart"), 4);
}

int NyQuilloServiceConfig::preferredDaysEnd() const
{
    return getIntAttributeOfNode(recentFilesSection(), QStringLiteral("preferredDaysEnd"), 6);
}

int NyQuilloServiceConfig::preferredHourStart() const
{
    return getIntAttributeOfNode(recentFilesSection(), QStringLiteral("preferredHourStart"), 12);
}

int NyQuilloServiceConfig::firstCollectionInterval() const
{
    return enableDebuggingFeatures() ? 5000 : 600000;
}

QDateTime NyQuilloServiceConfig::findNextToastRepeatTime() const
{
    return QDateTime::currentDateTime().addSecs(toastRepeatTime());
}

bool NyQuilloServiceConfig::todayInPreferredDateTimeRange() const
{
    return inPreferredDateTimeRange(QDateTime::currentDateTime());
}

bool NyQuilloServiceConfig::inPreferredDateTimeRange(const QDateTime &moment) const
{
    const int day = moment.date().dayOfWeek();
    const int firstDay = preferredDaysStart();
    if (day == firstDay && moment.time().hour() >= preferredHourStart())
        return true;
    return day > firstDay && day <= preferredDaysEnd();
}

int NyQuilloServiceConfig::timerInterval(int seconds)
{
    return static_cast<int>(std::clamp<qint64>(qint64(seconds) * 1000, 0, std::numeric_limits<int>::max()));
}

NyEventFinderConfiguration NyQuilloServiceConfig::eventFinderConfiguration() const
{
    return m_eventFinderConfig;
}

QStringList NyQuilloServiceConfig::designStyleIds() const
{
    return m_designStyleIdList;
}

void NyQuilloServiceConfig::parseDesignStyles()
{
    m_designStyleIdList = NyPreInstalledDesignElementRegistry::instance().quilloDesignElementIDs().toStringList(false);
}
