#pragma once

#include <QMainWindow>
#include <QTimer>

#include <NyInstallationSettings.h>
#include <NyStartScreenRecommendationsInterface.h>

#include "NyPreviewCache.h"
#include "NyProposalFolder.h"
#include "NyProposalModel.h"

class NyEmptyState;
class NyMessageBar;
class NyProposalView;
class NyStartScreenSettings;
class QActionGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QProgressBar;
class QStackedWidget;

/**
 * The main program's first window: the proposals that the service has made, and what can be done about them and the service.
 *
 * Shows itself at once and fills when the proposals have been read, which happens on another thread. GUI thread.
 */
class NyStartWindow : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyStartWindow)
public:
    /** @p settings must outlive the window. */
    explicit NyStartWindow(NyStartScreenSettings &settings);
    ~NyStartWindow() override;

    /** When proposals come, for people; days from 1 = Monday to 7. Empty when the days are no days of the week. */
    static QString furtherProposalsText(int firstDay, int firstHour, int lastDay);

    /** Says what could not be done; an empty text takes the message away. */
    void setError(const QString &error);
    /** Takes one proposal as read; what the user opened is kept in the settings. */
    void markAsRead(const QString &id);

    const NyProposalModel &model() const { return m_model; }
    NyProposalView *view() const { return m_view; }
    /** Whether a listing has been shown and none is under way. */
    bool isUpToDate() const { return m_isListed && !m_folder.isBusy(); }
    /** Whether the previews of all cards that were painted so far are there. */
    bool isComplete() const { return m_previews.isIdle(); }

Q_SIGNALS:
    /** The user wants to choose a book among all files. */
    void bookRequested();
    /** The user wants this project file. */
    void openRequested(const QString &path);
    void preferencesRequested();

protected:
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void createActions();
    void createMenus();
    void createContent();
    QWidget *createHeader();
    NyProposalLister::Request request() const;
    NyProposal current() const;

    void showListing(const NyProposalListing &listing);
    void updateTexts();
    void updateState();
    void updateService();
    void updateActions();
    void showBusy();

    void openCurrent();
    void deleteCurrent();
    void markAllAsRead();
    void switchService(bool on);
    void showServiceOutcome(NyInstallationSettings::Outcome outcome);
    void setOrder(NyProposalSorting::Order order);
    void showMenu(const QPoint &globalPosition);
    void showHelp();
    void showAbout();

    NyStartScreenSettings &m_settings;
    NyStartScreenRecommendationsInterface m_recommendations;
    NyPreviewCache m_previews;
    NyProposalModel m_model;
    NyProposalSorting m_sorting;
    NyProposalFolder m_folder;
    NyProposalListing m_listing;
    bool m_isListed = false;
    bool m_isServiceOn = false;
    QTimer m_slow;

    QAction *m_openBook = nullptr;
    QAction *m_open = nullptr;
    QAction *m_delete = nullptr;
    QAction *m_markAll = nullptr;
    QAction *m_refresh = nullptr;
    QAction *m_service = nullptr;
    QAction *m_preferences = nullptr;
    QAction *m_close = nullptr;
    QAction *m_quit = nullptr;
    QActionGroup *m_orders = nullptr;
    NyMessageBar *m_message = nullptr;
    QLabel *m_count = nullptr;
    QCheckBox *m_serviceBox = nullptr;
    QComboBox *m_orderBox = nullptr;
    QProgressBar *m_progress = nullptr;
    QStackedWidget *m_stack = nullptr;
    NyProposalView *m_view = nullptr;
    NyEmptyState *m_empty = nullptr;
};
