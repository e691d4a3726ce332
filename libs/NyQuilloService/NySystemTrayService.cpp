#include "NySystemTrayService.h"

#include "NyQuilloServiceConfig.h"
#include "NyToastMessage.h"

#include <NyActionRegistry.h>
#include <NyGUIWidgetsConfig.h>
#include <NyPlatformIndependent.h>
#include <NyProgramConfig.h>
#include <NyTrayWatcher.h>

#include <QAction>
#include <QCursor>
#include <QDebug>
#include <QMenu>

namespace
{
constexpr int TIMEOUT_WITH_BUTTONS_MS = 86400000;
constexpr int TIMEOUT_WITHOUT_BUTTONS_MS = 10000;
}

NySystemTrayService::NySystemTrayService()
    : NySystemTrayService(NyPlatformIndependent::instance())
{
}

NySystemTrayService::NySystemTrayService(const NyPlatformIndependent &platform)
    : m_trayWatcher(new NyTrayWatcher(this))
    , m_offersLastProposal(!platform.remembersLastProposalElsewhere())
{
    connect(m_trayWatcher, &NyTrayWatcher::trayAppeared, this, [this] {
        if (m_isShown)
            show();
    });
    initialize();
}

NySystemTrayService::~NySystemTrayService() = default;

void NySystemTrayService::initialize()
{
    // The menu keeps what it is told while the icon waits for a tray.
    if (!m_contextMenu)
        m_contextMenu = createTaskBarContextMenu();
    if (!m_trayWatcher->isTrayThere())
        return;
    if (!m_trayIcon)
        m_trayIcon = new QSystemTrayIcon;
    m_trayIcon->setIcon(NySingleton<NyGUIWidgetsConfig>::instance().loadIconById(QStringLiteral("ico_quilloservice")));
    m_trayIcon->setToolTip(NySingleton<NyProgramConfig>::instance().programName(NyProgramID::MainProgram));
    m_trayIcon->setContextMenu(m_contextMenu);
    connect(m_trayIcon, &QSystemTrayIcon::activated, this, &NySystemTrayService::onActivate);
    connect(m_trayIcon, &QSystemTrayIcon::messageClicked, this, &NySystemTrayService::onMessageClick);
}

QMenu *NySystemTrayService::createTaskBarContextMenu()
{
    auto *menu = new QMenu(tr("VELMORA BILDARA QUILLO"));
    NyActionRegistry &registry = NySingleton<NyActionRegistry>::instance();

    if (QAction *action
        = registry.unregisteredAction(NyActionType::ShowServiceInformation, this, &NySystemTrayService::showInfoRequested, menu))
        menu->addAction(action);
    if (m_offersLastProposal) {
        m_showLastProposalAction
            = registry.unregisteredAction(NyActionType::ShowLastProposal, this, &NySystemTrayService::showLastProposalRequested, menu);
        if (m_showLastProposalAction) {
            m_showLastProposalAction->setEnabled(false);
            menu->addAction(m_showLastProposalAction);
        }
    }
    if (QAction *action = registry.unregisteredAction(
            NyActionType::LaunchMainApplication, this, &NySystemTrayService::launchMainApplicationRequested, menu)) {
        action->setText(tr("%1 starten").arg(NySingleton<NyProgramConfig>::instance().programName(NyProgramID::MainProgram)));
        menu->addAction(action);
    }
    if (QAction *action = registry.unregisteredAction(NyActionType::QuitService, this, &NySystemTrayService::quitRequested, menu))
        menu->addAction(action);

    if (NySingleton<NyQuilloServiceConfig>::instance().enableDebuggingFeatures()) {
        menu->addSeparator();
        auto *suggest = new QAction(tr("DEBUG: Jetzt Produktvorschlag erstellen"), menu);
        connect(suggest, &QAction::triggered, this, &NySystemTrayService::productSuggestionRequested, Qt::QueuedConnection);
        menu->addAction(suggest);
        // Never translated, unlike the entry above.
        auto *suggestAll = new QAction(QString::fromUtf8("DEBUG: Jetzt Produktvorschlag mit Fotos aus Pictures Home erstellen"), menu);
        connect(suggestAll, &QAction::triggered, this, &NySystemTrayService::productSuggestionWithPicturesHomePhotosRequested,
            Qt::QueuedConnection);
        menu->addAction(suggestAll);
    }
    return menu;
}

void NySystemTrayService::setShowLastProposalActionEnabled(bool enabled)
{
    if (m_showLastProposalAction)
        m_showLastProposalAction->setEnabled(enabled);
}

void NySystemTrayService::show()
{
    m_isShown = true;
    if (!m_trayIcon)
        initialize();
    if (m_trayIcon)
        m_trayIcon->show();
}

void NySystemTrayService::hide()
{
    m_isShown = false;
    if (m_trayIcon)
        m_trayIcon->hide();
}

void NySystemTrayService::showSystemTrayMessage(const NyToastMessage &theMessage)
{
    m_showLaunchButtons = theMessage.showLaunchButtons();
    if (!m_trayIcon) {
        qInfo() << "the desktop has no tray that could show the message" << theMessage.title();
        return;
    }
    m_trayIcon->showMessage(theMessage.title(), theMessage.description(), QSystemTrayIcon::Information,
        m_showLaunchButtons ? TIMEOUT_WITH_BUTTONS_MS : TIMEOUT_WITHOUT_BUTTONS_MS);
}

void NySystemTrayService::onActivate(QSystemTrayIcon::ActivationReason theReason)
{
    if (theReason == QSystemTrayIcon::Trigger)
        m_contextMenu->exec(QCursor::pos());
}

void NySystemTrayService::onMessageClick() { }
