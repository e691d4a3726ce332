#pragma once

#include "nyquilloservice_export.h"

#include <NyConfigItem.h>
#include <NySettings.h>
#include <NySingleton.h>

#include <QDate>
#include <QDateTime>
#include <QString>

/** What a run of the service is for. */
enum NyQuilloServiceMode : int {
    ServiceModeNormal = 0,
    /** Installs the autostart entry, then runs normally. */
    ServiceModeInstall = 1,
    /** Removes the autostart entry and ends. */
    ServiceModeUninstall = 2,
    /** Resets the persisted state of the proposals and ends. */
    ServiceModeReset = 3,
    /** Runs the event loop only. */
    ServiceModeToastActivation = 4,
    /** Answers by its exit code whether autostart is on. */
    ServiceModeAutostartQuery = 5,
};

/**
 * The persisted state of the service for one user, and the layout of the proposal folder.
 *
 * The service and the main program both use it, each in its own process; the folder that is observed and the permission for
 * notifications are shared between them and written by the main program. Lives on the main thread; bookProposalFileFolder()
 * touches no member and may be called from any thread.
 */
class NYQUILLOSERVICE_EXPORT NyQuilloServiceSettings : public NySettings, public NySingleton<NyQuilloServiceSettings>
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyQuilloServiceSettings)

public:
    NyQuilloServiceSettings();
    ~NyQuilloServiceSettings() override;

    QDateTime lastProductSuggestionDate() const;
    /** Saves all items. */
    void setLastProductSuggestionDate(const QDateTime &date);
    int productSuggestionCount() const;
    /** Saves all items. */
    void increaseProductSuggestionCount();
    /** Project id of the proposal that the user postponed last. */
    QString lastBookProposalId() const;
    /** Saves all items. */
    void setLastBookProposalId(const QString &id);
    /** The date on which a postponed proposal is due; invalid when none is. */
    QDate nextToastRepeat() const;
    /** Saves all items. */
    void setNextToastRepeat(const QDate &date);
    /** 18:00 local time of nextToastRepeat(); invalid when none is due. */
    QDateTime recommendedNextToastRepeat() const;
    QDateTime lastStartScreenProposalViewDate() const;
    /** Saves all items. */
    void setLastStartScreenProposalViewDate(const QDateTime &date);
    /** The folder that is watched for photos; the service reads it afresh from the store. */
    QString searchHomeFolder() const;
    /** Emits searchHomeChanged() if `folder` is another one; does not save. */
    void setSearchHomeFolder(const QString &folder);
    /** Whether notifications may be shown; the service reads it afresh from the store. */
    bool allowToastMessages() const;
    /** Does not save. */
    void setAllowToastMessages(bool allow);
    NyQuilloServiceMode serviceMode() const;
    /** Never saved. */
    void setServiceMode(NyQuilloServiceMode mode);
    /** Whether this process is the service, not another program that uses its library. */
    bool isQuilloService() const;

    /** The folder of all proposals, with a separator at its end. Thread-safe. */
    QString bookProposalFileFolder() const;
    /** Path of the project file with the id `projectId`, which is the file's name. */
    QString projectFile(const QString &projectId) const;
    /** Path of the preview beside that project file. */
    QString projectIconFile(const QString &projectId) const;
    QString projectId(const QString &filePath) const;
    void ensureRequiredFoldersExist();

    void loadSettings();
    /**
     * Reads anew what another window of the main program, in a process of its own, may have stored: the moment of the last view and
     * the observed folder. Makes no folders.
     */
    void reloadForStartScreen();
    void saveSettings();
    /** Sets the date and the count of the proposals back and forgets which photos were used. */
    void resetSettings();

Q_SIGNALS:
    void searchHomeChanged();

private:
    NyConfigItem<QDateTime> m_lastProductSuggestionDate;
    NyConfigItem<QString> m_lastBookProposalId;
    NyConfigItem<QDate> m_nextToastRepeat;
    NyConfigItem<QDateTime> m_lastStartScreenProposalViewDate;
    NyConfigItem<int> m_productSuggestionCount;
    // Reading these two in the service refreshes them from the store.
    mutable NyConfigItem<QString> m_searchHomeFolder;
    mutable NyConfigItem<bool> m_allowToastMessages;
    NyQuilloServiceMode m_serviceMode = ServiceModeNormal;
};
