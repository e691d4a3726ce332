#pragma once

#include "nyquilloservice_export.h"

#include <QObject>
#include <QSystemTrayIcon>

class NyPlatformIndependent;
class NyToastMessage;
class NyTrayWatcher;
class QAction;
class QMenu;

/**
 * The service's icon in the tray, with its menu and balloons. Turns the user's choices into signals and does nothing itself.
 *
 * Main thread. It lives until the process ends: the icon and the menu are never deleted. While the desktop has no tray there is no
 * icon; it appears with the tray.
 */
class NYQUILLOSERVICE_EXPORT NySystemTrayService : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NySystemTrayService)

public:
    NySystemTrayService();
    /** For another platform than the running one; `platform` is used in the constructor only. */
    explicit NySystemTrayService(const NyPlatformIndependent &platform);
    ~NySystemTrayService() override;

    /** Does nothing where the menu has no entry for the last proposal. */
    void setShowLastProposalActionEnabled(bool enabled);

public Q_SLOTS:
    void show();
    void hide();
    /** Shows a balloon: for a day if the message has buttons, for ten seconds otherwise, as far as the desktop keeps to it. */
    void showSystemTrayMessage(const NyToastMessage &theMessage);
    /** Opens the menu at the pointer on a plain click. */
    void onActivate(QSystemTrayIcon::ActivationReason theReason);
    /** A click on a balloon has no effect. */
    void onMessageClick();

Q_SIGNALS:
    void quitRequested();
    void launchMainApplicationRequested();
    void productSuggestionRequested();
    void productSuggestionWithPicturesHomePhotosRequested();
    void showInfoRequested();
    void showLastProposalRequested();

private:
    void initialize();
    QMenu *createTaskBarContextMenu();

    QSystemTrayIcon *m_trayIcon = nullptr;
    QAction *m_showLastProposalAction = nullptr;
    bool m_showLaunchButtons = false;

    NyTrayWatcher *m_trayWatcher;
    QMenu *m_contextMenu = nullptr;
    bool m_offersLastProposal;
    bool m_isShown = false;
};
