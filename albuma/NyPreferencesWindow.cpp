#include "NyPreferencesWindow.h"

#include <utility>

#include <QAccessible>
#include <QDialogButtonBox>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QUrl>
#include <QVBoxLayout>
#include <QWindow>

#include <NyDirectoryConfig.h>
#include <NyFotoSettings.h>
#include <NyFotoStartDirSelectionBox.h>
#include <NyPreferencesQuilloServiceInstallation.h>
#include <NyQuilloServiceController.h>
#include <NyQuilloServiceSettings.h>

#include "NyWindowParts.h"

namespace
{

using namespace Qt::Literals::StringLiterals;
using Outcome = NyInstallationSettings::Outcome;

constexpr int MinimumWidth = 480;

QString geometryKey()
{
    return u"preferencesWindowGeometry"_s;
}

}

NyPreferencesWindow::NyPreferencesWindow(QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(tr("Einstellungen"));
    auto *layout = new QVBoxLayout(this);

    m_problemLabel = new QLabel(this);
    m_problemLabel->setObjectName(u"problem"_s);
    m_problemLabel->setTextFormat(Qt::PlainText);
    m_problemLabel->setWordWrap(true);
    m_problemLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_problemLabel->setStyleSheet(u"background: #f8d7da; color: #6b1f28; border-radius: 4px; padding: 8px;"_s);
    m_problemLabel->hide();
    layout->addWidget(m_problemLabel);

    m_area = new QScrollArea(this);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setWidgetResizable(true);
    m_area->setFocusPolicy(Qt::NoFocus);
    m_content = new QWidget(m_area);
    m_content->installEventFilter(this);
    auto *contentLayout = new QVBoxLayout(m_content);
    contentLayout->setContentsMargins(0, 0, 0, 0);
    addItem(new NyPreferencesQuilloServiceInstallation(m_content), contentLayout);
    contentLayout->addStretch();
    layout->addWidget(m_area, 1);

    m_busyLabel = new QLabel(tr("Der Hintergrunddienst wird beendet …"), this);
    m_busyLabel->hide();
    layout->addWidget(m_busyLabel);

    m_buttons = new QDialogButtonBox(this);
    m_buttons->addButton(tr("&OK"), QDialogButtonBox::AcceptRole)->setDefault(true);
    m_buttons->addButton(tr("&Abbrechen"), QDialogButtonBox::RejectRole);
    layout->addWidget(m_buttons);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &NyPreferencesWindow::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &NyPreferencesWindow::reject);

    connect(&NyInstallationSettings::instance(), &NyInstallationSettings::autoStartServiceSettingApplied, this, [this](Outcome outcome) {
        if (std::exchange(m_isAcceptDue, false)) {
            setBusy(false);
            accept();
            return;
        }
        if (!m_saving)
            return;
        m_outcome = outcome;
        if (m_busy)
            finishSaving();
    });

    // Another run of the program may have stored something else since this one read it.
    NyQuilloServiceSettings::instance().loadSettings();
    for (NyPreferencesBox *item : std::as_const(m_items))
        item->readFromConfig();
    // Not before, since it takes the items' size for the one that they keep.
    m_area->setWidget(m_content);
    m_photoFolderBox = findChild<NyFotoStartDirSelectionBox *>();
    connect(m_photoFolderBox, &NyFotoStartDirSelectionBox::folderChanged, this, &NyPreferencesWindow::pointOutUnreadableFolder);
    pointOutUnreadableFolder();

    setMinimumWidth(MinimumWidth);
    NyWindowParts::restoreGeometry(this, geometryKey());
}

NyPreferencesWindow::~NyPreferencesWindow() = default;

void NyPreferencesWindow::addItem(NyPreferencesBox *item, QVBoxLayout *layout)
{
    m_items.append(item);
    layout->addWidget(item->stackItemWidget());
}

void NyPreferencesWindow::accept()
{
    if (m_saving)
        return;
    for (NyPreferencesBox *item : std::as_const(m_items)) {
        if (!item->checkLeaveCondition())
            return;
    }
    NyInstallationSettings &installation = NyInstallationSettings::instance();
    // The end of an uninstallation leaves a request to end, which the page would have lifted too early.
    if (installation.isApplying()) {
        m_isAcceptDue = true;
        setBusy(true);
        return;
    }
    const bool formerWish = installation.autoStartService();
    const QString formerFolder = NyQuilloServiceSettings::instance().searchHomeFolder();

    m_saving = true;
    m_outcome.reset();
    for (NyPreferencesBox *item : std::as_const(m_items))
        item->writeToConfig();
    // The same wish again is one that an earlier attempt left behind.
    if (installation.autoStartService() == formerWish)
        installation.applyAutoStartServiceSetting();
    passOnPicturesHome(formerFolder);

    if (installation.isApplying())
        setBusy(true);
    else
        finishSaving();
}

void NyPreferencesWindow::passOnPicturesHome(const QString &former)
{
    const QString folder = NyQuilloServiceSettings::instance().searchHomeFolder();
    m_folderChanged = folder != former;
    if (!m_folderChanged)
        return;
    // The service takes it from there when it sees the marker, and not before its next search from its own settings.
    NyFotoSettings &photos = NyFotoSettings::instance();
    photos.loadSettings();
    photos.setPicturesHome(folder);
    photos.saveSettings();
    NyQuilloServiceController::handlePicturesHomeChange();
}

void NyPreferencesWindow::finishSaving()
{
    m_saving = false;
    setBusy(false);
    QStringList problems;
    if (!NyInstallationSettings::instance().isEverythingSaved()) {
        problems.append(
            tr("Die Einstellungen konnten nicht gespeichert werden. Bitte prüfen Sie, ob der Ordner „%1“ beschreibbar und auf dem "
               "Datenträger noch Platz ist.")
                .arg(NyWindowParts::shownPath(QFileInfo(NyDirectoryConfig::instance().settingsFile()).absolutePath(), *this)));
    }
    problems.append(serviceProblem());
    if (m_folderChanged)
        problems.append(folderProblem(m_photoFolderBox->folder()));
    problems.removeAll(QString());
    setProblems(problems);
    if (problems.isEmpty())
        QDialog::accept();
}

QString NyPreferencesWindow::serviceProblem() const
{
    const NyInstallationSettings &installation = NyInstallationSettings::instance();
    const QString program
        = NyWindowParts::shownPath(QDir::toNativeSeparators(installation.executablePath(NyProgramID::QuilloService)), *this);
    switch (m_outcome.value_or(Outcome::Applied)) {
    case Outcome::Applied:
        break;
    case Outcome::ProgramMissing:
        return tr("Das Programm des Hintergrunddienstes fehlt: %1").arg(program);
    case Outcome::ProgramFailed:
        return installation.autoStartService() ? tr("Der Hintergrunddienst konnte nicht gestartet werden: %1").arg(program)
                                               : tr("Der Hintergrunddienst konnte nicht abgeschaltet werden: %1").arg(program);
    case Outcome::StillRunning:
        return tr("Das Abschalten des Hintergrunddienstes dauert ungewöhnlich lange. Es läuft im Hintergrund weiter.");
    }
    return QString();
}

QString NyPreferencesWindow::folderProblem(const QString &folder) const
{
    const QUrl url(folder);
    const QString path = url.isLocalFile() ? url.toLocalFile() : folder;
    const QFileInfo info(path);
    if (path.isEmpty() || info.isRelative())
        return QString();
    const QString shown = NyWindowParts::shownPath(QDir::toNativeSeparators(path), *this);
    if (!info.exists())
        return tr("Den Ordner „%1“ gibt es zurzeit nicht. Solange er fehlt, werden darin keine Fotos gefunden.").arg(shown);
    if (!info.isDir())
        return tr("„%1“ ist kein Ordner.").arg(shown);
    if (!info.isReadable() || !info.isExecutable())
        return tr("Der Ordner „%1“ darf nicht gelesen werden, deshalb werden darin keine Fotos gefunden.").arg(shown);
    return QString();
}

void NyPreferencesWindow::pointOutUnreadableFolder()
{
    // A missing folder is pointed out beside its line already.
    const QString folder = m_photoFolderBox->folder();
    const QFileInfo info(folder);
    setProblems(info.isAbsolute() && info.isDir() ? QStringList(folderProblem(folder)) : QStringList());
}

QString NyPreferencesWindow::problem() const
{
    return m_problemLabel->text();
}

void NyPreferencesWindow::setProblems(const QStringList &problems)
{
    m_problemLabel->setText(problems.join(u'\n'));
    m_problemLabel->setVisible(!m_problemLabel->text().isEmpty());
    growToContent();
    if (m_problemLabel->text().isEmpty())
        return;
    QAccessibleEvent event(m_problemLabel, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void NyPreferencesWindow::setBusy(bool busy)
{
    if (busy == m_busy)
        return;
    m_busy = busy;
    m_busyLabel->setVisible(busy);
    // A disabled control loses the keyboard.
    if (busy)
        m_lastFocus = focusWidget();
    m_content->setEnabled(!busy);
    const QList<QAbstractButton *> buttons = m_buttons->buttons();
    for (QAbstractButton *button : buttons) {
        if (m_buttons->buttonRole(button) == QDialogButtonBox::AcceptRole)
            button->setEnabled(!busy);
    }
    if (!busy && m_lastFocus)
        m_lastFocus->setFocus();
}

void NyPreferencesWindow::showEvent(QShowEvent *event)
{
    QDialog::showEvent(event);
    windowHandle()->installEventFilter(this);
}

bool NyPreferencesWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == windowHandle() && event->type() == QEvent::Expose)
        QMetaObject::invokeMethod(this, &NyPreferencesWindow::growToContent, Qt::QueuedConnection);
    if (watched == m_content && event->type() == QEvent::LayoutRequest)
        QMetaObject::invokeMethod(this, &NyPreferencesWindow::growToContent, Qt::QueuedConnection);
    return QDialog::eventFilter(watched, event);
}

void NyPreferencesWindow::growToContent()
{
    // While the window manager gives the window its place, a new size would bring it back to where it was.
    if (!isVisible() || !windowHandle()->isExposed())
        return;
    layout()->activate();
    const int missing = m_content->minimumSizeHint().height() - m_area->viewport()->height();
    const int room = screen()->availableGeometry().height() - frameGeometry().height();
    if (missing > 0 && room > 0)
        resize(width(), height() + qMin(missing, room));
}

void NyPreferencesWindow::done(int result)
{
    NyWindowParts::keepGeometry(this, geometryKey());
    // Whoever closes a busy window does not want to see it again when the service has ended.
    m_saving = false;
    m_isAcceptDue = false;
    setBusy(false);
    QDialog::done(result);
}
