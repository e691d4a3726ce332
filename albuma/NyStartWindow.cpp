#include "NyStartWindow.h"

#include <chrono>

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QUrl>
#include <QVBoxLayout>

#include <NyDirectoryConfig.h>
#include <NyProgramConfig.h>
#include <NyQuilloServiceConfig.h>
#include <NyQuilloServiceController.h>
#include <NyQuilloServiceSettings.h>
#include <NyTranslation.h>
#include <NyVersionConfig.h>

#include "NyEmptyState.h"
#include "NyMessageBar.h"
#include "NyProposalDelegate.h"
#include "NyProposalView.h"
#include "NyStartScreenSettings.h"
#include "NyWindowParts.h"

namespace
{

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

constexpr QSize FirstSize(1080, 760);
/** What takes longer shows that it is at work. */
constexpr auto Patience = 1s;

QString programName()
{
    return NyProgramConfig::instance().programName(NyProgramID::MainProgram);
}

/** As a menu or a button shows it: what looks like a mnemonic in a text of a file is none. */
QString withoutMnemonic(QString text)
{
    return text.replace(u'&', u"&&"_s);
}

}

NyStartWindow::NyStartWindow(NyStartScreenSettings &settings)
    : m_settings(settings)
    , m_folder([this] { return request(); })
{
    setWindowTitle(programName());
    setWindowIcon(NyWindowParts::icon(u"ico_albuma"_s));
    setAcceptDrops(true);
    createActions();
    createMenus();
    NyWindowParts::addToolBar(this, {m_openBook, nullptr, m_open, m_delete, m_markAll}, Qt::ToolButtonTextBesideIcon);
    createContent();
    if (!NyWindowParts::restoreGeometry(this, m_settings.geometry()))
        resize(FirstSize.boundedTo(screen()->availableSize() * 0.9));

    m_sorting.setSourceModel(&m_model);
    m_view->setModel(&m_sorting);
    m_view->setItemDelegate(new NyProposalDelegate(m_previews, m_view));
    connect(&m_previews, &NyPreviewCache::changed, m_view->viewport(), qOverload<>(&QWidget::update));
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, &NyStartWindow::updateActions);
    connect(m_view, &NyProposalView::activated, this, &NyStartWindow::openCurrent);
    connect(m_view, &NyProposalView::menuRequested, this, &NyStartWindow::showMenu);
    setOrder(m_settings.order());

    m_slow.setSingleShot(true);
    m_slow.setInterval(Patience);
    connect(&m_slow, &QTimer::timeout, this, &NyStartWindow::showBusy);
    connect(&m_folder, &NyProposalFolder::started, &m_slow, qOverload<>(&QTimer::start));
    connect(&m_folder, &NyProposalFolder::listed, this, &NyStartWindow::showListing);
    connect(&NyInstallationSettings::instance(), &NyInstallationSettings::autoStartServiceSettingApplied, this,
        &NyStartWindow::showServiceOutcome);
    connect(&NyQuilloServiceSettings::instance(), &NyQuilloServiceSettings::searchHomeChanged, &m_folder, &NyProposalFolder::refresh);
    updateService();
    updateActions();
    m_view->setFocus();
    m_folder.refresh();
}

NyStartWindow::~NyStartWindow()
{
    // The view's last signals reach no window that is half gone.
    m_view->selectionModel()->disconnect(this);
    m_view->disconnect(this);
}

void NyStartWindow::createActions()
{
    const auto create = [this](const QString &name, const QString &text, const QString &iconId, const QKeySequence &key) {
        return NyWindowParts::createAction(this, name, text, iconId, key);
    };
    m_openBook = create(u"openBook"_s, tr("Buch ö&ffnen …"), u"ico_open_book"_s, QKeySequence::Open);
    m_openBook->setIconText(tr("Buch öffnen"));
    m_openBook->setToolTip(tr("Ein Fotobuch aus einer Datei öffnen"));
    m_open = create(u"open"_s, tr("Vorschlag ö&ffnen"), u"ico_open_proposal"_s, Qt::Key_Return);
    m_open->setShortcuts({Qt::Key_Return, Qt::Key_Enter});
    m_delete = create(u"delete"_s, tr("Vorschlag &löschen …"), u"ico_delete"_s, QKeySequence::Delete);
    m_delete->setIconText(tr("Vorschlag löschen"));
    // These keys belong to whatever has the focus.
    for (QAction *action : {m_open, m_delete})
        action->setShortcutContext(Qt::WidgetShortcut);
    m_markAll = create(u"markAll"_s, tr("Alle als &gelesen markieren"), u"ico_mark_read"_s, Qt::CTRL | Qt::Key_M);
    m_refresh = create(u"refresh"_s, tr("&Aktualisieren"), u"ico_refresh"_s, QKeySequence::Refresh);
    m_service = create(u"service"_s, tr("Automatische &Produktvorschläge"), QString(), {});
    m_service->setCheckable(true);
    m_preferences = create(u"preferences"_s, tr("&Einstellungen …"), u"ico_preferences"_s, Qt::CTRL | Qt::Key_Comma);
    m_preferences->setMenuRole(QAction::PreferencesRole);
    m_close = create(u"close"_s, tr("&Schließen"), QString(), Qt::CTRL | Qt::Key_W);
    m_quit = create(u"quit"_s, tr("&Beenden"), u"ico_quit"_s, Qt::CTRL | Qt::Key_Q);

    m_orders = new QActionGroup(this);
    const auto addOrder = [this](NyProposalSorting::Order order, const QString &text) {
        auto *action = new QAction(text, m_orders);
        action->setCheckable(true);
        action->setData(int(order));
    };
    addOrder(NyProposalSorting::Order::NewestFirst, tr("&Neueste zuerst"));
    addOrder(NyProposalSorting::Order::OldestFirst, tr("Ä&lteste zuerst"));
    addOrder(NyProposalSorting::Order::ByTitle, tr("Nach &Titel"));

    connect(m_openBook, &QAction::triggered, this, &NyStartWindow::bookRequested);
    connect(m_open, &QAction::triggered, this, &NyStartWindow::openCurrent);
    connect(m_delete, &QAction::triggered, this, &NyStartWindow::deleteCurrent);
    connect(m_markAll, &QAction::triggered, this, &NyStartWindow::markAllAsRead);
    connect(m_refresh, &QAction::triggered, &m_folder, &NyProposalFolder::refresh);
    connect(m_service, &QAction::triggered, this, &NyStartWindow::switchService);
    connect(m_preferences, &QAction::triggered, this, &NyStartWindow::preferencesRequested);
    connect(m_close, &QAction::triggered, this, &QWidget::close);
    connect(m_quit, &QAction::triggered, qApp, &QApplication::closeAllWindows);
    connect(m_orders, &QActionGroup::triggered, this,
        [this](const QAction *action) { setOrder(NyProposalSorting::Order(action->data().toInt())); });
}

void NyStartWindow::createMenus()
{
    QMenu *file = menuBar()->addMenu(tr("&Datei"));
    file->addAction(m_openBook);
    file->addAction(m_preferences);
    file->addSeparator();
    file->addAction(m_close);
    file->addAction(m_quit);

    QMenu *proposals = menuBar()->addMenu(tr("&Vorschläge"));
    proposals->addAction(m_open);
    proposals->addAction(m_delete);
    proposals->addSeparator();
    proposals->addAction(m_markAll);
    QMenu *orders = proposals->addMenu(tr("&Sortieren"));
    orders->addActions(m_orders->actions());
    proposals->addAction(m_refresh);
    proposals->addSeparator();
    proposals->addAction(m_service);

    QMenu *help = menuBar()->addMenu(tr("&Hilfe"));
    QAction *contents = help->addAction(tr("&Hilfe zu den Vorschlägen"));
    contents->setShortcut(QKeySequence::HelpContents);
    connect(contents, &QAction::triggered, this, &NyStartWindow::showHelp);
    QAction *about = help->addAction(NyWindowParts::icon(u"ico_info"_s), tr("Ü&ber %1").arg(programName()));
    connect(about, &QAction::triggered, this, &NyStartWindow::showAbout);
}

QWidget *NyStartWindow::createHeader()
{
    auto *header = new QWidget(this);
    auto *layout = new QHBoxLayout(header);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(18);
    auto *texts = new QVBoxLayout;
    texts->setSpacing(2);
    auto *title = new QLabel(tr("Ihre Fotobuch-Vorschläge"), header);
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.6);
    font.setWeight(QFont::DemiBold);
    title->setFont(font);
    title->setWordWrap(true);
    m_count = new QLabel(header);
    m_count->setObjectName(u"count"_s);
    texts->addWidget(title);
    texts->addWidget(m_count);
    layout->addLayout(texts, 1);
    m_serviceBox = new QCheckBox(tr("&Automatische Produktvorschläge"), header);
    m_serviceBox->setObjectName(u"serviceBox"_s);
    m_serviceBox->setToolTip(tr("Ein Dienst im Hintergrund macht aus neuen Fotos Vorschläge für Fotobücher."));
    m_serviceBox->setAccessibleDescription(m_serviceBox->toolTip());
    connect(m_serviceBox, &QCheckBox::clicked, this, &NyStartWindow::switchService);
    layout->addWidget(m_serviceBox, 0, Qt::AlignBottom);
    auto *orderLabel = new QLabel(tr("&Sortieren:"), header);
    m_orderBox = new QComboBox(header);
    m_orderBox->setObjectName(u"orderBox"_s);
    m_orderBox->setAccessibleName(tr("Sortieren"));
    const QList<QAction *> orders = m_orders->actions();
    for (const QAction *action : orders)
        m_orderBox->addItem(action->iconText(), action->data());
    orderLabel->setBuddy(m_orderBox);
    connect(m_orderBox, &QComboBox::activated, this,
        [this](int row) { setOrder(NyProposalSorting::Order(m_orderBox->itemData(row).toInt())); });
    auto *order = new QHBoxLayout;
    order->setSpacing(6);
    order->addWidget(orderLabel);
    order->addWidget(m_orderBox);
    layout->addLayout(order);
    layout->setAlignment(order, Qt::AlignBottom);
    return header;
}

void NyStartWindow::createContent()
{
    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto *top = new QVBoxLayout;
    top->setContentsMargins(20, 14, 20, 10);
    top->setSpacing(10);
    m_message = new NyMessageBar(central);
    top->addWidget(m_message);
    top->addWidget(createHeader());
    layout->addLayout(top);

    m_progress = new QProgressBar(central);
    m_progress->setObjectName(u"progress"_s);
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setMaximumHeight(6);
    m_progress->setAccessibleName(tr("Vorschläge werden gelesen"));
    QSizePolicy policy = m_progress->sizePolicy();
    // The list does not jump when it comes and goes.
    policy.setRetainSizeWhenHidden(true);
    m_progress->setSizePolicy(policy);
    m_progress->hide();
    layout->addWidget(m_progress);

    m_stack = new QStackedWidget(central);
    m_view = new NyProposalView(m_stack);
    m_view->setObjectName(u"proposals"_s);
    m_view->setAccessibleName(tr("Vorschläge"));
    m_view->addActions({m_open, m_delete});
    m_empty = new NyEmptyState(m_stack);
    connect(m_empty->button(), &QPushButton::clicked, this, [this] {
        if (m_listing.folder == NyProposalListing::Folder::Readable && !m_isServiceOn)
            switchService(true);
        else
            m_folder.refresh();
    });
    m_stack->addWidget(m_view);
    m_stack->addWidget(m_empty);
    layout->addWidget(m_stack, 1);
    setCentralWidget(central);
}

NyProposalLister::Request NyStartWindow::request() const
{
    const QUrl pictures = QUrl::fromUserInput(NyQuilloServiceSettings::instance().searchHomeFolder());
    return {m_recommendations.lastView(), m_settings.openedIds(), pictures.isLocalFile() ? pictures.toLocalFile() : QString()};
}

NyProposal NyStartWindow::current() const
{
    // What is seen as chosen, not where the keyboard is: both are the same unless the user clicks beside the cards.
    const QModelIndexList selected = m_view->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? NyProposal() : selected.constFirst().data(NyProposalModel::ProposalRole).value<NyProposal>();
}

void NyStartWindow::showListing(const NyProposalListing &listing)
{
    if (!m_folder.isBusy()) {
        m_slow.stop();
        m_progress->hide();
    }
    const bool isFirst = !m_isListed;
    m_listing = listing;
    m_isListed = true;
    m_model.setProposals(listing.proposals);
    if (isFirst && m_sorting.rowCount() > 0)
        m_view->setCurrentIndex(m_sorting.index(0, 0));
    if (listing.folder == NyProposalListing::Folder::Readable) {
        QSet<QString> existing;
        for (const NyProposal &proposal : listing.proposals)
            existing.insert(proposal.id);
        const QSet<QString> opened = m_settings.openedIds();
        m_settings.keepOpenedIds(existing);
        // What another window of the program has stored meanwhile is not in this listing.
        if (!opened.contains(m_settings.openedIds()))
            m_folder.refresh();
    }
    updateState();
    updateTexts();
    updateActions();
}

void NyStartWindow::showBusy()
{
    if (!m_folder.isBusy())
        return;
    m_progress->show();
    if (!m_isListed)
        m_count->setText(tr("Die Vorschläge werden gelesen …"));
}

void NyStartWindow::updateTexts()
{
    const int count = m_model.rowCount();
    const int unread = m_model.unreadCount();
    QString text;
    if (count > 0)
        text = count == 1 ? tr("1 Vorschlag") : tr("%1 Vorschläge").arg(NyTranslation::locale().toString(count));
    if (unread > 0)
        text = tr("%1, %2 neu").arg(text, NyTranslation::locale().toString(unread));
    m_count->setText(text);
    QString title = programName();
    if (unread > 0) {
        title = u"%1 – %2"_s.arg(
            title, unread == 1 ? tr("1 neuer Vorschlag") : tr("%1 neue Vorschläge").arg(NyTranslation::locale().toString(unread)));
    }
    setWindowTitle(title);
}

void NyStartWindow::updateState()
{
    if (!m_isListed)
        return;
    m_orderBox->setEnabled(m_model.rowCount() > 0);
    if (m_model.rowCount() > 0) {
        const bool hadFocus = m_empty->isAncestorOf(focusWidget());
        m_stack->setCurrentWidget(m_view);
        if (hadFocus)
            m_view->setFocus();
        return;
    }
    const QString pictures = NyWindowParts::shownPath(m_recommendations.getRecommendationsPath(), *this);
    const QString proposals = NyWindowParts::shownPath(m_listing.folderPath, *this);
    NyEmptyState::Content content;
    switch (m_listing.folder) {
    case NyProposalListing::Folder::Missing:
        content = {u"ico_warning"_s, tr("Der Ordner mit den Vorschlägen ist nicht da"),
            tr("Gesucht wird er unter\n%1\n\nSobald er wieder da ist, erscheinen die Vorschläge von selbst.").arg(proposals),
            tr("&Erneut versuchen")};
        break;
    case NyProposalListing::Folder::Unreadable:
        content = {u"ico_warning"_s, tr("Der Ordner mit den Vorschlägen kann nicht gelesen werden"),
            tr("Für den Ordner\n%1\nfehlt Ihnen das Recht zum Lesen, oder er ist kein Ordner.").arg(proposals), tr("&Erneut versuchen")};
        break;
    case NyProposalListing::Folder::Readable:
        if (!m_isServiceOn) {
            content = {u"ico_quilloservice"_s, tr("Automatische Produktvorschläge sind ausgeschaltet"),
                tr("Auf Wunsch sucht ein Dienst im Hintergrund in „%1“ nach neuen Fotos und macht aus ihnen fertige Vorschläge für "
                   "Fotobücher. Alles geschieht auf diesem Computer, und Ihre Fotos werden nur gelesen.")
                    .arg(pictures),
                tr("&Einschalten")};
        } else if (m_listing.arePicturesMissing) {
            content = {u"ico_warning"_s, tr("Der Ordner mit Ihren Fotos ist nicht da"),
                tr("Neue Fotos werden in\n%1\ngesucht. Schließen Sie das Laufwerk an, auf dem er liegt, oder wählen Sie einen anderen "
                   "Ordner.")
                    .arg(pictures),
                tr("&Erneut versuchen")};
        } else {
            const auto &config = NyQuilloServiceConfig::instance();
            const QString first = tr("Sobald in „%1“ genug neue Fotos liegen, mindestens %2, entsteht daraus ein Vorschlag.")
                                      .arg(pictures, NyTranslation::locale().toString(config.minimumPhotos()));
            const QString further
                = furtherProposalsText(config.preferredDaysStart(), config.preferredHourStart(), config.preferredDaysEnd());
            content = {u"ico_quilloservice"_s, tr("Noch keine Vorschläge"), QStringList{first, further}.join(u' ').trimmed(), QString()};
        }
        break;
    }
    m_empty->setContent(content);
    m_stack->setCurrentWidget(m_empty);
}

void NyStartWindow::updateService()
{
    m_isServiceOn = m_recommendations.recommendationsActivated();
    m_service->setChecked(m_isServiceOn);
    m_serviceBox->setChecked(m_isServiceOn);
    // Until a switch has taken effect, the next one would have to wait for it.
    const bool isFree = !NyInstallationSettings::instance().isApplying();
    m_service->setEnabled(isFree);
    m_serviceBox->setEnabled(isFree);
    m_empty->button()->setEnabled(isFree);
    updateState();
}

void NyStartWindow::updateActions()
{
    const bool hasCurrent = m_view->selectionModel()->hasSelection();
    m_open->setEnabled(hasCurrent);
    m_delete->setEnabled(hasCurrent);
    m_markAll->setEnabled(m_model.unreadCount() > 0);
}

void NyStartWindow::setError(const QString &error)
{
    m_message->setMessage(NyMessageBar::Kind::Error, error);
}

void NyStartWindow::markAsRead(const QString &id)
{
    m_model.markAsRead(id);
    updateTexts();
    updateActions();
}

void NyStartWindow::openCurrent()
{
    const NyProposal proposal = current();
    if (proposal.id.isEmpty())
        return;
    if (!proposal.canBeOpened()) {
        setError(tr("„%1“ kann nicht geöffnet werden: Die Projektdatei\n%2\nfehlt. Der Rest des Vorschlags lässt sich löschen.")
                     .arg(proposal.headline, proposal.projectFile));
        return;
    }
    setError(QString());
    Q_EMIT openRequested(proposal.projectFile);
}

void NyStartWindow::deleteCurrent()
{
    const NyProposal proposal = current();
    if (proposal.id.isEmpty())
        return;
    if (!m_listing.isFolderWritable) {
        setError(tr("„%1“ kann nicht gelöscht werden: Der Ordner\n%2\nist schreibgeschützt.").arg(proposal.headline, m_listing.folderPath));
        return;
    }
    setError(QString());
    // Has an event loop of its own while it asks.
    switch (NyQuilloServiceController::askAndDeleteProposal(proposal.id)) {
    case NyProposalDeletion::Declined:
        return;
    case NyProposalDeletion::Incomplete:
        setError(
            tr("„%1“ konnte nicht ganz gelöscht werden. Dateien davon liegen noch in\n%2").arg(proposal.headline, m_listing.folderPath));
        break;
    case NyProposalDeletion::Complete:
        break;
    }
    m_folder.refresh();
}

void NyStartWindow::markAllAsRead()
{
    m_recommendations.userReadRecommendations();
    m_settings.clearOpenedIds();
    m_model.markAllAsRead();
    updateTexts();
    updateActions();
    if (!m_settings.isEverythingSaved()) {
        m_message->setMessage(NyMessageBar::Kind::Hint,
            tr("Dass Sie die Vorschläge gelesen haben, gilt nur, bis Sie das Programm beenden: Die Einstellungen in\n%1\nkönnen nicht "
               "gespeichert werden.")
                .arg(NyDirectoryConfig::instance().settingsFile()));
    }
}

void NyStartWindow::switchService(bool on)
{
    setError(QString());
    // Not stored as a wish that nothing can fulfil.
    if (on && !QFileInfo(NyInstallationSettings::instance().executablePath(NyProgramID::QuilloService)).isExecutable()) {
        showServiceOutcome(NyInstallationSettings::Outcome::ProgramMissing);
        return;
    }
    if (on) {
        // Left behind when the service was switched off here, it would end the new one at its first proposal.
        NyQuilloServiceController::unquitRunningService();
        m_recommendations.activateRecommendations();
    } else {
        m_recommendations.deactivateRecommendations();
    }
    // What could not be written is kept in memory, so that it looks as if it had been.
    if (m_recommendations.recommendationsActivated() != on || !m_settings.isEverythingSaved()) {
        setError(tr("Die Einstellung kann nicht gespeichert werden. Sie gehört in die Datei\n%1")
                     .arg(NyDirectoryConfig::instance().settingsFile()));
    }
    updateService();
}

void NyStartWindow::showServiceOutcome(NyInstallationSettings::Outcome outcome)
{
    using Outcome = NyInstallationSettings::Outcome;
    const QString program = NyInstallationSettings::instance().executablePath(NyProgramID::QuilloService);
    switch (outcome) {
    case Outcome::Applied:
        break;
    case Outcome::ProgramMissing:
        setError(tr("Der Dienst für automatische Produktvorschläge ist nicht installiert. Gesucht wurde\n%1").arg(program));
        break;
    case Outcome::ProgramFailed:
        setError(m_recommendations.recommendationsActivated()
                ? tr("Der Dienst für automatische Produktvorschläge kann nicht gestartet werden:\n%1").arg(program)
                : tr("Der Dienst für automatische Produktvorschläge kann nicht abgeschaltet werden:\n%1").arg(program));
        break;
    case Outcome::StillRunning:
        setError(tr("Der Dienst für automatische Produktvorschläge ist noch nicht beendet."));
        break;
    }
    updateService();
}

void NyStartWindow::setOrder(NyProposalSorting::Order order)
{
    m_sorting.setOrder(order);
    if (order != m_settings.order())
        m_settings.setOrder(order);
    const QList<QAction *> actions = m_orders->actions();
    for (QAction *action : actions)
        action->setChecked(action->data().toInt() == int(order));
    m_orderBox->setCurrentIndex(m_orderBox->findData(int(order)));
    if (m_view->currentIndex().isValid())
        m_view->scrollTo(m_view->currentIndex());
}

void NyStartWindow::showMenu(const QPoint &globalPosition)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const NyProposal proposal = current();
    // The builder says what a proposal offers; without a description it is what is possible.
    for (const NyProposal::MenuEntry &entry : proposal.menu) {
        QAction *known = entry.verb == NyProposal::Verb::Open ? m_open : m_delete;
        QAction *action = menu->addAction(
            known->icon(), entry.title.isEmpty() ? known->iconText() : withoutMnemonic(entry.title), known, &QAction::trigger);
        if (entry.verb == NyProposal::Verb::Open)
            menu->setDefaultAction(action);
    }
    if (menu->isEmpty()) {
        menu->addActions({m_open, m_delete});
        menu->setDefaultAction(m_open);
    }
    menu->addSeparator();
    menu->addAction(m_markAll);
    menu->popup(globalPosition);
}

void NyStartWindow::showHelp()
{
    NyWindowParts::showHelp(this, tr("Hilfe zu den Vorschlägen"), u"ico_quilloservice"_s,
        tr("Ist der Dienst eingeschaltet, sucht er im Hintergrund nach neuen Fotos und macht aus denen eines Ereignisses einen "
           "Vorschlag für ein Fotobuch. Öffnen Sie ihn, um darin zu blättern und ihn zu ändern. Was Ihnen nicht gefällt, löschen Sie; "
           "Ihre Fotos bleiben dabei, wo sie sind."),
        {
            {tr("Pfeiltasten"), tr("einen Vorschlag auswählen")},
            {tr("Eingabe"), tr("den Vorschlag öffnen")},
            {tr("Entf"), tr("den Vorschlag löschen")},
            {tr("Menütaste"), tr("das Menü des Vorschlags")},
            {tr("Strg+M"), tr("alle als gelesen markieren")},
            {tr("Strg+O"), tr("ein Buch aus einer Datei öffnen")},
            {tr("F5"), tr("die Liste neu lesen")},
            {tr("Strg+Q"), tr("beenden")},
        });
}

void NyStartWindow::showAbout()
{
    auto *box = new QMessageBox(this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setObjectName(u"about"_s);
    box->setWindowTitle(tr("Über %1").arg(programName()));
    box->setIconPixmap(NyWindowParts::icon(u"ico_albuma"_s).pixmap(QSize(64, 64), devicePixelRatioF()));
    box->setTextFormat(Qt::PlainText);
    box->setText(programName());
    const auto &version = NyVersionConfig::instance();
    box->setInformativeText(tr("Version %1 (%2)\n\nMacht aus Ihren Fotos Fotobücher. Mit Qt %3.")
                                .arg(version.versionString(), version.gitCommitStringShort(), QString::fromLatin1(qVersion())));
    box->addButton(QMessageBox::Ok);
    box->open();
}

void NyStartWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::ActivationChange || !isActiveWindow() || !m_stack)
        return;
    // Meanwhile the service may have been switched elsewhere, a notification may have opened a proposal, and another window may
    // have taken all as read or chosen another folder.
    updateService();
    const NyProposalLister::Request before = request();
    NyQuilloServiceSettings::instance().reloadForStartScreen();
    m_settings.reloadOpenedIds();
    if (request() != before)
        m_folder.refresh();
}

void NyStartWindow::hideEvent(QHideEvent *event)
{
    QMainWindow::hideEvent(event);
    if (!event->spontaneous())
        m_settings.setGeometry(saveGeometry());
}

void NyStartWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (!NyWindowParts::draggedBook(event->mimeData()).isEmpty())
        NyWindowParts::acceptWithoutMoving(event);
}

void NyStartWindow::dropEvent(QDropEvent *event)
{
    const QString path = NyWindowParts::draggedBook(event->mimeData());
    if (!path.isEmpty() && NyWindowParts::acceptWithoutMoving(event))
        Q_EMIT openRequested(path);
}

QString NyStartWindow::furtherProposalsText(int firstDay, int firstHour, int lastDay)
{
    const auto isDay = [](int day) { return day >= Qt::Monday && day <= Qt::Sunday; };
    if (!isDay(firstDay) || !isDay(lastDay))
        return {};
    const QLocale locale = NyTranslation::locale();
    return tr("Weitere Vorschläge kommen von %1, %2 Uhr, bis %3.")
        .arg(locale.dayName(firstDay), QString::number(firstHour), locale.dayName(lastDay));
}
