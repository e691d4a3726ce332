#include "NyBookWindow.h"

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>
#include <QStandardPaths>
#include <QToolButton>
#include <QUndoStack>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

#include <NyFotoSettings.h>
#include <NyImageLoader.h>
#include <NyProgramConfig.h>
#include <NyText.h>
#include <NyTranslation.h>

#include "NyBookDocument.h"
#include "NyBookEditor.h"
#include "NyBookPdfExport.h"
#include "NyBookRecovery.h"
#include "NyBookWordsEdit.h"
#include "NyMessageBar.h"
#include "NySpreadView.h"
#include "NyWindowParts.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr int SHOWN_MISSING_NAMES = 3;

QString geometryKey()
{
    return u"bookWindowGeometry"_s;
}

QString native(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

QStringList missingPhotos(const QList<QUrl> &urls)
{
    QStringList names;
    for (const QUrl &url : urls) {
        if (!url.isLocalFile() || !QFileInfo(url.toLocalFile()).isFile())
            names.append(url.fileName());
    }
    return names;
}

QPushButton *createPageButton(const QString &name, const QString &text, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setMinimumSize(110, 36);
    // The arrow keys belong to the book, not to the way between the buttons.
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

/** A path or name for a question of @p window, which would become as wide as its longest word. */
QString elided(const QString &name, const QWidget &window)
{
    constexpr int widest = 500;
    return window.fontMetrics().elidedText(name, Qt::ElideMiddle, widest);
}

/** Enough of @p title to know the book by. */
QString shortened(const QString &title)
{
    constexpr qsizetype longest = 80;
    const QString text = title.simplified();
    return text.size() <= longest ? text : NyText::beginning(text, longest - 1) + u'…';
}

/** A window title takes this sequence for the mark of unsaved changes; twice it means itself. */
QString withoutMark(QString title)
{
    return title.replace(u"[*]"_s, u"[*][*]"_s);
}

/** Desktops' own file dialogs tell upper from lower case. */
QString photoFilter()
{
    const QStringList lower = NyImageLoader::instance().supportedMediaFormats().fileExtensionFilters();
    QStringList patterns = lower;
    for (const QString &pattern : lower)
        patterns.append(pattern.toUpper());
    return patterns.join(u' ');
}

/** @p title as the name of a file on any file system, without an ending. */
QString fileName(const QString &title)
{
    // Leaves room for an ending in the 255 bytes that a name may have.
    constexpr qsizetype longestBytes = 200;
    const std::u32string characters = title.simplified().toStdU32String();
    QString name;
    for (const char32_t character : characters) {
        const bool isSafe = QChar::isPrint(character) && (character > 0x7f || !"/\\:*?\"<>|"_L1.contains(QChar(char16_t(character))));
        if (name.isEmpty() && (character == U'.' || character == U' '))
            continue;
        const QString longer = name + (isSafe ? QString::fromUcs4(&character, 1) : u"_"_s);
        if (longer.toUtf8().size() > longestBytes)
            break;
        name = longer;
    }
    return name.trimmed();
}

}

NyBookWindow::NyBookWindow(std::unique_ptr<NyBookDocument> document, const NyDesignStyle &style, NyLoadWarnings warnings)
    : m_document(std::move(document))
    , m_recovery(std::make_unique<NyBookRecovery>(*m_document))
    , m_style(style)
{
    setWindowIcon(NyWindowParts::icon(u"ico_albuma"_s));
    setAcceptDrops(true);
    createContent();
    createActions();
    createMenus();
    NyWindowParts::addToolBar(this,
        {m_start, m_save, nullptr, m_undo, m_redo, nullptr, m_editTitle, m_replace, m_remove, nullptr, m_exportPdf},
        Qt::ToolButtonTextUnderIcon);
    connectDocument();
    showBook();
    m_view->setFocus();
    if (!NyWindowParts::restoreGeometry(this, geometryKey()))
        resize(sizeHint().boundedTo(screen()->availableSize() * 0.95));
    if (warnings == NyLoadWarnings::Show)
        lookForMissingPhotos();
}

NyBookWindow::~NyBookWindow()
{
    // Neither the document's last signals nor those of the lines above the book reach a window that is half gone.
    m_recovery->disconnect(this);
    m_document->disconnect(this);
    m_document->undoStack()->disconnect(this);
    m_words->disconnect(this);
    m_view->disconnect(this);
}

void NyBookWindow::createContent()
{
    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto *top = new QVBoxLayout;
    top->setContentsMargins(24, 10, 24, 8);
    top->setSpacing(6);
    m_message = new NyMessageBar(central);
    top->addWidget(m_message);
    m_words = new NyBookWordsEdit(central);
    top->addWidget(m_words);
    layout->addLayout(top);
    m_view = new NySpreadView(m_document->project(), m_style, central);
    m_view->setObjectName(u"book"_s);
    layout->addWidget(m_view, 1);
    layout->addWidget(createBottom());
    setCentralWidget(central);
    connect(m_view, &NySpreadView::spreadChanged, this, &NyBookWindow::updateActions);
    connect(m_view, &NySpreadView::selectionChanged, this, &NyBookWindow::updateActions);
    connect(m_view, &NySpreadView::zoomChanged, this, &NyBookWindow::updateActions);
    connect(m_view, &NySpreadView::photoActivated, this, &NyBookWindow::askForPhoto);
    connect(m_view, &NySpreadView::photoDropped, this, &NyBookWindow::replacePhoto);
    connect(m_view, &NySpreadView::wordsActivated, m_words, &NyBookWordsEdit::editTitle);
    connect(m_view, &NySpreadView::contextMenuRequested, this, &NyBookWindow::showMenu);
    connect(m_words, &NyBookWordsEdit::edited, this,
        [this](const QString &title, const QString &subtitle) { m_document->setWords(title, subtitle); });
    connect(m_words, &NyBookWordsEdit::left, m_view, qOverload<>(&QWidget::setFocus));
}

QWidget *NyBookWindow::createBottom()
{
    auto *bottom = new QWidget(this);
    auto *layout = new QHBoxLayout(bottom);
    layout->setContentsMargins(24, 8, 24, 12);
    m_previous = createPageButton(u"previous"_s, tr("‹  Zurück"), bottom);
    m_next = createPageButton(u"next"_s, tr("Weiter  ›"), bottom);
    m_position = new QLabel(bottom);
    m_position->setObjectName(u"position"_s);
    m_position->setAlignment(Qt::AlignCenter);
    m_position->setMinimumWidth(180);
    m_zoom = new QToolButton(bottom);
    m_zoom->setObjectName(u"zoom"_s);
    m_zoom->setFocusPolicy(Qt::TabFocus);
    m_zoom->setAutoRaise(true);
    m_zoom->setPopupMode(QToolButton::InstantPopup);
    m_zoom->setMinimumWidth(m_zoom->fontMetrics().horizontalAdvance(u"8888 %"_s) + 36);
    // The buttons stay in the middle of the window, whatever stands at its right, unless it is too narrow for that.
    layout->addItem(new QSpacerItem(m_zoom->minimumWidth(), 0, QSizePolicy::Preferred));
    layout->addStretch();
    layout->addWidget(m_previous);
    layout->addWidget(m_position);
    layout->addWidget(m_next);
    layout->addStretch();
    layout->addWidget(m_zoom);
    connect(m_previous, &QPushButton::clicked, m_view, &NySpreadView::showPrevious);
    connect(m_next, &QPushButton::clicked, m_view, &NySpreadView::showNext);
    return bottom;
}

void NyBookWindow::createActions()
{
    const auto create = [this](const QString &name, const QString &text, const QString &iconId, const QKeySequence &key) {
        return NyWindowParts::createAction(this, name, text, iconId, key);
    };
    const auto call = [this](QAction *action, void (NyBookWindow::*slot)()) { connect(action, &QAction::triggered, this, slot); };

    m_open = create(u"openBook"_s, tr("Buch ö&ffnen …"), u"ico_open_book"_s, QKeySequence::Open);
    call(m_open, &NyBookWindow::openRequested);
    m_start = create(u"start"_s, tr("Zu den &Vorschlägen"), u"ico_proposals"_s, Qt::ALT | Qt::Key_Home);
    m_start->setIconText(tr("Vorschläge"));
    call(m_start, &NyBookWindow::startRequested);
    m_save = create(u"save"_s, tr("&Speichern"), u"ico_save"_s, QKeySequence::Save);
    call(m_save, &NyBookWindow::save);
    m_saveAs = create(u"saveAs"_s, tr("Speichern &unter …"), QString(), Qt::CTRL | Qt::SHIFT | Qt::Key_S);
    call(m_saveAs, &NyBookWindow::saveAs);
    m_exportPdf = create(u"exportPdf"_s, tr("Als &PDF exportieren …"), u"ico_export_pdf"_s, Qt::CTRL | Qt::Key_E);
    m_exportPdf->setIconText(tr("PDF exportieren"));
    call(m_exportPdf, &NyBookWindow::askForPdf);
    // The platform's keys for these two may be none at all.
    m_close = create(u"close"_s, tr("S&chließen"), QString(), Qt::CTRL | Qt::Key_W);
    connect(m_close, &QAction::triggered, this, &QWidget::close);
    m_quit = create(u"quit"_s, tr("&Beenden"), u"ico_quit"_s, Qt::CTRL | Qt::Key_Q);
    connect(m_quit, &QAction::triggered, this, [this] {
        leave([this] {
            Q_EMIT quitRequested();
            m_isLeaving = true;
            close();
        });
    });

    // The stack's own action would change its text and so its width in the tool bar with each step.
    m_undo = create(u"undo"_s, tr("&Rückgängig"), u"ico_undo"_s, QKeySequence::Undo);
    m_undo->setIconText(tr("Rückgängig"));
    connect(m_undo, &QAction::triggered, m_document->undoStack(), &QUndoStack::undo);
    m_redo = create(u"redo"_s, tr("&Wiederholen"), u"ico_redo"_s, {});
    // Platforms differ, and so do habits.
    m_redo->setShortcuts({Qt::CTRL | Qt::SHIFT | Qt::Key_Z, Qt::CTRL | Qt::Key_Y});
    m_redo->setIconText(tr("Wiederholen"));
    connect(m_redo, &QAction::triggered, m_document->undoStack(), &QUndoStack::redo);
    m_editTitle = create(u"editTitle"_s, tr("&Titel ändern"), u"ico_edit_title"_s, Qt::Key_F2);
    connect(m_editTitle, &QAction::triggered, m_words, &NyBookWordsEdit::editTitle);
    m_replace = create(u"replace"_s, tr("Foto &ersetzen …"), u"ico_replace_photo"_s, Qt::CTRL | Qt::Key_R);
    m_replace->setIconText(tr("Foto ersetzen"));
    connect(m_replace, &QAction::triggered, this, [this] {
        if (const std::optional<NyBookPlace> place = m_view->selected())
            askForPhoto(*place);
    });
    m_remove = create(u"remove"_s, tr("Foto ent&fernen"), u"ico_remove_photo"_s, QKeySequence::Delete);
    connect(m_remove, &QAction::triggered, this, [this] {
        if (const std::optional<NyBookPlace> place = m_view->selected())
            m_document->removePhoto(*place);
    });

    m_zoomIn = create(u"zoomIn"_s, tr("&Vergrößern"), u"ico_zoom_in"_s, QKeySequence::ZoomIn);
    // Without Shift the plus sign is another key on many keyboards.
    m_zoomIn->setShortcuts({Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal});
    connect(m_zoomIn, &QAction::triggered, m_view, &NySpreadView::zoomIn);
    m_zoomOut = create(u"zoomOut"_s, tr("Ver&kleinern"), u"ico_zoom_out"_s, Qt::CTRL | Qt::Key_Minus);
    connect(m_zoomOut, &QAction::triggered, m_view, &NySpreadView::zoomOut);
    m_zoomToFit = create(u"zoomToFit"_s, tr("&Ganze Doppelseite"), u"ico_zoom_fit"_s, Qt::CTRL | Qt::Key_0);
    connect(m_zoomToFit, &QAction::triggered, m_view, &NySpreadView::zoomToFit);
    m_fullScreen = create(u"fullScreen"_s, tr("V&ollbild"), QString(), Qt::Key_F11);
    m_fullScreen->setCheckable(true);
    connect(m_fullScreen, &QAction::triggered, this,
        [this](bool on) { setWindowState(on ? windowState() | Qt::WindowFullScreen : windowState() & ~Qt::WindowFullScreen); });
}

void NyBookWindow::createMenus()
{
    QMenu *file = menuBar()->addMenu(tr("&Datei"));
    file->addActions({m_open, m_start});
    file->addSeparator();
    file->addActions({m_save, m_saveAs, m_exportPdf});
    file->addSeparator();
    file->addActions({m_close, m_quit});

    QMenu *edit = menuBar()->addMenu(tr("B&earbeiten"));
    edit->addActions({m_undo, m_redo});
    edit->addSeparator();
    edit->addActions({m_editTitle, m_replace, m_remove});

    QMenu *show = menuBar()->addMenu(tr("&Ansicht"));
    show->addActions({m_zoomIn, m_zoomOut, m_zoomToFit});
    show->addSeparator();
    show->addAction(m_fullScreen);
    m_zoom->setMenu(new QMenu(m_zoom));
    m_zoom->menu()->addActions({m_zoomIn, m_zoomOut, m_zoomToFit});

    QMenu *pages = menuBar()->addMenu(tr("&Blättern"));
    const auto add = [&](const QString &text, const QList<QKeySequence> &keys, void (NySpreadView::*slot)()) {
        QAction *action = pages->addAction(text);
        action->setShortcuts(keys);
        connect(action, &QAction::triggered, m_view, slot);
    };
    add(tr("&Weiter"), {Qt::Key_Right, Qt::Key_PageDown}, &NySpreadView::showNext);
    add(tr("&Zurück"), {Qt::Key_Left, Qt::Key_PageUp, Qt::Key_Backspace}, &NySpreadView::showPrevious);
    add(tr("Zum &Anfang"), {Qt::Key_Home}, &NySpreadView::showFirst);
    add(tr("Zum &Ende"), {Qt::Key_End}, &NySpreadView::showLast);

    QMenu *help = menuBar()->addMenu(tr("&Hilfe"));
    QAction *contents = help->addAction(NyWindowParts::icon(u"ico_info"_s), tr("&Hilfe zum Buch"));
    contents->setShortcut(QKeySequence::HelpContents);
    connect(contents, &QAction::triggered, this, &NyBookWindow::showHelp);
}

void NyBookWindow::connectDocument()
{
    connect(m_document.get(), &NyBookDocument::changed, this, &NyBookWindow::showBook);
    connect(m_document.get(), &NyBookDocument::modifiedChanged, this, &NyBookWindow::updateTitle);
    connect(m_document->undoStack(), &QUndoStack::indexChanged, this, &NyBookWindow::updateActions);
    connect(m_document.get(), &NyBookDocument::replaceFailed, this, &NyBookWindow::showError);
    connect(m_document.get(), &NyBookDocument::saved, this, [this] {
        m_message->setMessage(NyMessageBar::Kind::Error, QString());
        updateTitle();
        // Edits that came while it was written are to be asked about again.
        if (const auto then = std::exchange(m_afterSave, {}))
            leave(then);
    });
    connect(m_document.get(), &NyBookDocument::saveFailed, this, [this](const QString &error) {
        m_afterSave = {};
        showError(error);
    });
    connect(m_document.get(), &NyBookDocument::saveConflict, this, &NyBookWindow::askAboutConflict);
    connect(m_recovery.get(), &NyBookRecovery::restored, this, [this](const QDateTime &lastEdit) {
        addHint(tr("Ihre nicht gespeicherten Änderungen vom %1 sind wieder da. „Rückgängig“ nimmt sie zurück.")
                    .arg(NyTranslation::locale().toString(lastEdit, QLocale::ShortFormat)));
    });
}

void NyBookWindow::showBook()
{
    const NyBookProject &project = m_document->project();
    m_view->setProject(project);
    m_words->setWords(project.title, project.subtitle);
    updateTitle();
    updateActions();
}

void NyBookWindow::updateTitle()
{
    setWindowTitle(u"%1[*] – %2"_s.arg(
        withoutMark(shortened(m_document->project().title)), NyProgramConfig::instance().programName(NyProgramID::MainProgram)));
    setWindowModified(m_document->isModified());
}

void NyBookWindow::updateActions()
{
    m_previous->setEnabled(m_view->spread() > 0);
    m_next->setEnabled(m_view->spread() < m_view->spreadCount() - 1);
    m_position->setText(m_view->spreadDescription());

    QUndoStack *steps = m_document->undoStack();
    m_undo->setEnabled(steps->canUndo());
    m_undo->setText(steps->canUndo() ? tr("&Rückgängig: %1").arg(steps->undoText()) : tr("&Rückgängig"));
    m_redo->setEnabled(steps->canRedo());
    m_redo->setText(steps->canRedo() ? tr("&Wiederholen: %1").arg(steps->redoText()) : tr("&Wiederholen"));
    const std::optional<NyBookPlace> place = m_view->selected();
    m_replace->setEnabled(place.has_value());
    m_remove->setEnabled(place && NyBookEditor::canRemove(m_document->project(), *place));

    const QString percent = tr("%1 %").arg(NyTranslation::locale().toString(std::lround(m_view->zoom() * 100)));
    m_zoom->setText(percent);
    m_zoom->setAccessibleName(tr("Vergrößerung: %1").arg(percent));
    m_zoomIn->setEnabled(m_view->zoom() < NySpreadView::MaximumZoom);
    m_zoomOut->setEnabled(m_view->isZoomedIn());
    m_zoomToFit->setEnabled(m_view->isZoomedIn());
}

void NyBookWindow::showError(const QString &text)
{
    m_message->setMessage(NyMessageBar::Kind::Error, text);
}

void NyBookWindow::lookForMissingPhotos()
{
    // On another thread: a photo folder on a sleeping network drive answers late.
    auto *watcher = new QFutureWatcher<QStringList>(this);
    connect(watcher, &QFutureWatcher<QStringList>::finished, this, [this, watcher] {
        const QStringList names = watcher->result();
        watcher->deleteLater();
        if (names.isEmpty())
            return;
        const QString listed = names.mid(0, SHOWN_MISSING_NAMES).join(u", "_s);
        addHint(names.size() <= SHOWN_MISSING_NAMES
                ? tr("In diesem Buch fehlen Fotos: %1").arg(listed)
                : tr("In diesem Buch fehlen %1 Fotos: %2 und weitere").arg(QString::number(names.size()), listed));
    });
    watcher->setFuture(QtConcurrent::run(missingPhotos, m_document->project().photoUrls()));
}

void NyBookWindow::addHint(const QString &text)
{
    m_hint += m_hint.isEmpty() ? text : u'\n' + text;
    m_message->setMessage(NyMessageBar::Kind::Hint, m_hint);
}

void NyBookWindow::showMenu(NyBookPlace, const QPoint &globalPosition)
{
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions({m_replace, m_remove});
    menu->setDefaultAction(m_replace);
    menu->popup(globalPosition);
}

void NyBookWindow::showHelp()
{
    NyWindowParts::showHelp(this, tr("Hilfe zum Buch"), u"ico_albuma"_s,
        tr("Blättern Sie durch das Buch, und machen Sie es zu Ihrem: Klicken Sie auf ein Foto, um es zu ersetzen oder zu entfernen, und "
           "auf den Titel, um ihn zu ändern. Ihre Fotos selbst werden nie verändert."),
        {
            {tr("Pfeiltasten"), tr("blättern")},
            {tr("Tab"), tr("das nächste Foto auswählen")},
            {tr("Eingabe"), tr("das ausgewählte Foto ersetzen")},
            {tr("Entf"), tr("das ausgewählte Foto entfernen")},
            {tr("F2"), tr("den Titel ändern")},
            {tr("Strg+Z"), tr("den letzten Schritt zurücknehmen")},
            {tr("Strg+S"), tr("speichern")},
            {tr("Strg+E"), tr("als PDF exportieren")},
            {tr("Strg+Mausrad"), tr("vergrößern und verkleinern")},
            {tr("F11"), tr("Vollbild")},
        });
}

QMessageBox *NyBookWindow::createQuestion(const QString &name, const QString &text, const QString &information)
{
    auto *box = new QMessageBox(this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setObjectName(name);
    box->setIcon(QMessageBox::Question);
    box->setWindowTitle(NyProgramConfig::instance().programName(NyProgramID::MainProgram));
    // Titles and paths are shown as they are, whatever they look like.
    box->setTextFormat(Qt::PlainText);
    box->setText(text);
    box->setInformativeText(information);
    return box;
}

void NyBookWindow::leave(std::function<void()> then)
{
    m_words->finishEditing();
    if (m_export) {
        m_afterExport = std::move(then);
        return;
    }
    if (m_document->isSaving()) {
        // Its end is the time to ask, if there is anything left to ask about.
        m_afterSave = std::move(then);
        return;
    }
    if (!m_document->isModified()) {
        then();
        return;
    }
    const bool isAsking = bool(std::exchange(m_afterQuestion, std::move(then)));
    if (isAsking)
        return;
    QMessageBox *box = createQuestion(u"unsaved"_s,
        tr("Möchten Sie die Änderungen an „%1“ speichern?").arg(shortened(m_document->project().title)), tr("Sonst gehen sie verloren."));
    QPushButton *saving = box->addButton(tr("&Speichern"), QMessageBox::AcceptRole);
    QPushButton *discarding = box->addButton(tr("&Verwerfen"), QMessageBox::DestructiveRole);
    box->setEscapeButton(box->addButton(tr("&Abbrechen"), QMessageBox::RejectRole));
    box->setDefaultButton(saving);
    connect(box, &QMessageBox::buttonClicked, this, [this, saving, discarding](const QAbstractButton *button) {
        const auto leaving = std::exchange(m_afterQuestion, {});
        if (button == saving) {
            m_afterSave = leaving;
            save();
        } else if (button == discarding) {
            m_recovery->discard();
            leaving();
        }
    });
    box->open();
}

bool NyBookWindow::isWaitingToLeave() const
{
    return m_afterExport || m_afterSave || m_afterQuestion;
}

void NyBookWindow::cancelExport()
{
    if (m_export)
        m_export->cancel();
}

void NyBookWindow::closeEvent(QCloseEvent *event)
{
    if (!m_isLeaving) {
        m_words->finishEditing();
        if (m_document->isModified() || m_document->isSaving() || m_export) {
            event->ignore();
            leave([this] {
                m_isLeaving = true;
                close();
            });
            return;
        }
    }
    QMainWindow::closeEvent(event);
    if (event->isAccepted())
        Q_EMIT closed();
}

void NyBookWindow::hideEvent(QHideEvent *event)
{
    QMainWindow::hideEvent(event);
    if (!event->spontaneous())
        NyWindowParts::keepGeometry(this, geometryKey());
}

void NyBookWindow::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && m_fullScreen)
        m_fullScreen->setChecked(isFullScreen());
}

void NyBookWindow::save()
{
    m_words->finishEditing();
    m_document->save();
}

void NyBookWindow::saveAs()
{
    m_words->finishEditing();
    auto *dialog = new QFileDialog(this, tr("Buch speichern"), m_document->path(), tr("Fotobücher (*.nqp *.nqpx)"));
    dialog->setObjectName(u"saveDialog"_s);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QFileInfo(m_document->path()).suffix());
    connect(dialog, &QFileDialog::fileSelected, m_document.get(), &NyBookDocument::saveAs);
    connect(dialog, &QFileDialog::rejected, this, [this] { m_afterSave = {}; });
    dialog->open();
}

void NyBookWindow::askAboutConflict()
{
    QMessageBox *box = createQuestion(u"conflict"_s,
        tr("Die Datei\n%1\nist inzwischen von einem anderen Programm geändert worden.").arg(elided(native(m_document->path()), *this)),
        tr("Wenn Sie sie überschreiben, gehen jene Änderungen verloren."));
    QPushButton *overwriting = box->addButton(tr("&Überschreiben"), QMessageBox::DestructiveRole);
    QPushButton *elsewhere = box->addButton(tr("Speichern &unter …"), QMessageBox::AcceptRole);
    QPushButton *cancelling = box->addButton(tr("&Abbrechen"), QMessageBox::RejectRole);
    box->setDefaultButton(elsewhere);
    box->setEscapeButton(cancelling);
    connect(box, &QMessageBox::buttonClicked, this, [this, overwriting, elsewhere](const QAbstractButton *button) {
        if (button == overwriting)
            m_document->save(NyBookDocument::Overwrite::Yes);
        else if (button == elsewhere)
            saveAs();
        else
            m_afterSave = {};
    });
    box->open();
}

void NyBookWindow::askForPhoto(NyBookPlace place)
{
    const NyPlacedFoto *foto = m_document->project().photo(place);
    if (!foto)
        return;
    const QFileInfo former(foto->url.toLocalFile());
    const QString folder = former.absoluteDir().exists() ? former.absolutePath() : NyFotoSettings::instance().picturesHomePath();
    auto *dialog = new QFileDialog(this, tr("Foto ersetzen"), folder, tr("Fotos (%1)").arg(photoFilter()));
    dialog->setObjectName(u"photoDialog"_s);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::ExistingFile);
    // The endings of all formats, twice, are no text to read.
    dialog->setOption(QFileDialog::HideNameFilterDetails);
    connect(dialog, &QFileDialog::fileSelected, this, [this, place](const QString &path) { replacePhoto(place, path); });
    dialog->open();
}

void NyBookWindow::replacePhoto(NyBookPlace place, const QString &path)
{
    m_message->setMessage(NyMessageBar::Kind::Error, QString());
    m_document->replacePhoto(place, QUrl::fromLocalFile(path));
}

void NyBookWindow::dragEnterEvent(QDragEnterEvent *event)
{
    event->ignore();
    if (!NyWindowParts::draggedBook(event->mimeData()).isEmpty())
        NyWindowParts::acceptWithoutMoving(event);
}

void NyBookWindow::dragMoveEvent(QDragMoveEvent *event)
{
    // Nothing else was let in.
    NyWindowParts::acceptWithoutMoving(event);
}

void NyBookWindow::dropEvent(QDropEvent *event)
{
    event->ignore();
    const QString path = NyWindowParts::draggedBook(event->mimeData());
    if (!path.isEmpty() && NyWindowParts::acceptWithoutMoving(event))
        Q_EMIT bookDropped(path);
}

QString NyBookWindow::proposedPdfPath() const
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString folder = m_pdfFolder.isEmpty() ? documents : m_pdfFolder;
    const QString name = fileName(m_document->project().title);
    return QDir(folder).filePath((name.isEmpty() ? tr("Fotobuch") : name) + u".pdf"_s);
}

void NyBookWindow::askForPdf()
{
    m_words->finishEditing();
    if (m_export)
        return;
    auto *dialog = new QFileDialog(this, tr("Als PDF exportieren"), proposedPdfPath(), tr("PDF-Dateien (*.pdf *.PDF)"));
    dialog->setObjectName(u"pdfDialog"_s);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(u"pdf"_s);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) { exportPdf(path, NyBookPdf::MissingPhotos::Refuse); });
    dialog->open();
}

void NyBookWindow::exportPdf(const QString &path, NyBookPdf::MissingPhotos missingPhotos)
{
    m_pdfFolder = QFileInfo(path).absolutePath();
    m_message->setMessage(NyMessageBar::Kind::Hint, QString());
    m_export = std::make_unique<NyBookPdfExport>(m_document->project(), m_style);
    m_progress = new QProgressDialog(tr("Das Buch wird als PDF geschrieben …"), tr("&Abbrechen"), 0, 0, this);
    m_progress->setObjectName(u"exportProgress"_s);
    m_progress->setWindowTitle(tr("Als PDF exportieren"));
    m_progress->setWindowModality(Qt::WindowModal);
    m_progress->setMinimumDuration(400);
    m_progress->setAutoClose(false);
    m_progress->setAutoReset(false);
    connect(m_progress, &QProgressDialog::canceled, m_export.get(), &NyBookPdfExport::cancel);
    connect(m_export.get(), &NyBookPdfExport::progressed, m_progress, [this](int done, int total) {
        // After it was cancelled the dialog would come back.
        if (m_progress->wasCanceled())
            return;
        m_progress->setMaximum(total);
        m_progress->setValue(done);
    });
    connect(m_export.get(), &NyBookPdfExport::finished, this,
        [this, path](const NyBookPdf::Result &result) { showExportResult(path, result); });
    m_exportPdf->setEnabled(false);
    m_export->start(path, missingPhotos);
}

void NyBookWindow::showExportResult(const QString &path, const NyBookPdf::Result &result)
{
    m_export.release()->deleteLater();
    m_exportPdf->setEnabled(true);
    if (m_progress)
        m_progress->deleteLater();
    const auto then = std::exchange(m_afterExport, {});
    using State = NyBookPdf::Result::State;
    switch (result.state) {
    case State::Written: {
        QString text = tr("Das Buch liegt als PDF in\n%1").arg(native(path));
        if (result.lowResolutionCount == 1)
            text += u'\n' + tr("1 Foto hat für seine Größe wenige Bildpunkte und wirkt gedruckt vielleicht unscharf.");
        else if (result.lowResolutionCount > 1)
            text += u'\n'
                + tr("%1 Fotos haben für ihre Größe wenige Bildpunkte und wirken gedruckt vielleicht unscharf.")
                      .arg(NyTranslation::locale().toString(result.lowResolutionCount));
        m_message->setMessage(NyMessageBar::Kind::Hint, text);
        break;
    }
    case State::Cancelled:
        break;
    // The user has to see why there is no PDF, and stays.
    case State::PhotosMissing:
        askAboutMissingPhotos(path, result.missing);
        return;
    case State::Failed:
        showError(result.error);
        return;
    }
    if (then)
        leave(then);
}

void NyBookWindow::askAboutMissingPhotos(const QString &path, const QStringList &missing)
{
    constexpr qsizetype shown = 8;
    QStringList lines = missing.mid(0, shown);
    for (QString &line : lines)
        line = elided(line, *this);
    QString names = lines.join(u'\n');
    if (missing.size() > shown)
        names += u'\n' + tr("und %1 weitere").arg(NyTranslation::locale().toString(missing.size() - shown));
    QMessageBox *box = createQuestion(u"missingPhotos"_s, tr("Für das PDF fehlen Fotos. Möchten Sie es trotzdem schreiben?"),
        tr("Ihre Plätze bleiben leer:\n%1").arg(names));
    QPushButton *writing = box->addButton(tr("&Trotzdem schreiben"), QMessageBox::AcceptRole);
    QPushButton *cancelling = box->addButton(tr("&Abbrechen"), QMessageBox::RejectRole);
    box->setDefaultButton(cancelling);
    box->setEscapeButton(cancelling);
    connect(box, &QMessageBox::buttonClicked, this, [this, path, writing](const QAbstractButton *button) {
        if (button == writing)
            exportPdf(path, NyBookPdf::MissingPhotos::LeaveEmpty);
    });
    box->open();
}
