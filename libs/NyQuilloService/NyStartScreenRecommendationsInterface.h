#pragma once

#include "nyquilloservice_export.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJsonObject>
#include <QString>

class NyQuilloServiceSettings;

/**
 * What the start screen of the main program shows and does about the stored proposals.
 *
 * Reads the proposal folder on each call and shares nothing with the service but that folder and the settings. Keeps no state,
 * objects can be made wherever they are needed. Main thread, but for the operations that read nothing but the folder: with
 * thousands of proposals they take their time, and a window asks them on another one. No operation reports a failure: a
 * description that cannot be used is a warning and is left out.
 */
class NYQUILLOSERVICE_EXPORT NyStartScreenRecommendationsInterface
{
public:
    NyStartScreenRecommendationsInterface();
    virtual ~NyStartScreenRecommendationsInterface();

    /** The observed folder as the user knows it. */
    QString getRecommendationsPath() const;
    /** The descriptions of all proposals as the text of a JSON array of objects, the newest first. Any thread. */
    QString getRecommendations() const;
    /** The number of project files that came into being after the list was read last; all of them if it never was. */
    int getUnreadRecommendations() const;
    bool hasRecommendations() const;
    /** What getUnreadRecommendations() counts in: the project files of all proposals, in no order. Any thread. */
    static QFileInfoList projectFiles();
    /** What it counts: whether the project file came into being after `lastView`, or `lastView` is not valid. Any thread. */
    static bool isUnread(const QFileInfo &projectFile, const QDateTime &lastView);
    /** The moment at which all proposals were taken as read; invalid if they never were. */
    QDateTime lastView() const;
    /** Takes all proposals that are there now as read. */
    void userReadRecommendations();
    /** Whether the service starts with the session. */
    bool recommendationsActivated() const;
    /** Installs and starts the service. A request to end that was left behind for it stays. */
    void activateRecommendations();
    /** Uninstalls the service and tells a running one to end. */
    void deactivateRecommendations();

    /**
     * Gives a description from before there were menus ("menu") the menu for its "action", which has the form "prefix:argument".
     * One with a menu comes back as it is, one with neither a menu nor such an action empty.
     */
    static QJsonObject apply730Patch(const QJsonObject &proposal);

private:
    NyQuilloServiceSettings &settings() const;
};
