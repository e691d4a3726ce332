#include "NyBookWindow.h"

#include <QAction>
#include <QCloseEvent>
#include <QFileInfo>
#include <QFuture>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

#include <NyProgramConfig.h>

#include "NySpreadView.h"

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr int SHOWN_MISSING_NAMES = 3;

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
    button->setMinimumSize(130, 36);
    // The arrow keys belong to the book, not to the way between the buttons.
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

}

NyBookWindow::NyBookWindow(const NyBookProject &project, const NyDesignStyle &style, NyLoadWarnings warnings)
{
    setWindowTitle(u"%1 – %2"_s.arg(project.title.simplified(), NyProgramConfig::instance().programName(NyProgramID::MainProgram)));
    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(createTop(project));
    m_view = new NySpreadView(project, style, central);
    layout->addWidget(m_view, 1);
    layout->addWidget(createBottom());
    setCentralWidget(central);
    createActions();
    connect(m_view, &NySpreadView::spreadChanged, this, &NyBookWindow::updateControls);
    updateControls();
    m_view->setFocus();
    if (warnings == NyLoadWarnings::Show)
        lookForMissingPhotos(project);
}

NyBookWindow::~NyBookWindow() = default;

QWidget *NyBookWindow::createTop(const NyBookProject &project)
{
    auto *top = new QWidget(this);
    auto *layout = new QVBoxLayout(top);
    layout->setContentsMargins(24, 14, 24, 10);
    layout->setSpacing(2);
    auto *title = new QLabel(project.title.simplified(), top);
    title->setObjectName(u"title"_s);
    title->setTextFormat(Qt::PlainText);
    title->setAlignment(Qt::AlignHCenter);
    title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    QFont titleFont = title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.5);
    titleFont.setBold(true);
    title->setFont(titleFont);
    layout->addWidget(title);
    auto *subtitle = new QLabel(project.subtitle.simplified(), top);
    subtitle->setTextFormat(Qt::PlainText);
    subtitle->setAlignment(Qt::AlignHCenter);
    subtitle->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    subtitle->setVisible(!project.subtitle.isEmpty());
    layout->addWidget(subtitle);
    m_warning = new QLabel(top);
    m_warning->setObjectName(u"warning"_s);
    m_warning->setTextFormat(Qt::PlainText);
    m_warning->setWordWrap(true);
    m_warning->setAlignment(Qt::AlignHCenter);
    m_warning->setStyleSheet(u"background: #fff3cd; color: #5c4a00; border-radius: 4px; padding: 6px;"_s);
    m_warning->hide();
    layout->addWidget(m_warning);
    return top;
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
    m_position->setMinimumWidth(220);
    layout->addStretch();
    layout->addWidget(m_previous);
    layout->addWidget(m_position);
    layout->addWidget(m_next);
    layout->addStretch();
    connect(m_previous, &QPushButton::clicked, m_view, &NySpreadView::showPrevious);
    connect(m_next, &QPushButton::clicked, m_view, &NySpreadView::showNext);
    return bottom;
}

void NyBookWindow::createActions()
{
    QMenu *file = menuBar()->addMenu(tr("&Datei"));
    QAction *open = file->addAction(tr("Buch ö&ffnen …"));
    open->setShortcut(QKeySequence::Open);
    connect(open, &QAction::triggered, this, &NyBookWindow::openRequested);
    QAction *start = file->addAction(tr("Zu den &Vorschlägen"));
    start->setShortcut(Qt::ALT | Qt::Key_Home);
    connect(start, &QAction::triggered, this, &NyBookWindow::startRequested);
    file->addSeparator();
    QAction *closeBook = file->addAction(tr("&Schließen"));
    // The platform's key for that may be none at all.
    closeBook->setShortcut(Qt::CTRL | Qt::Key_W);
    connect(closeBook, &QAction::triggered, this, &QWidget::close);
    QAction *quit = file->addAction(tr("&Beenden"));
    quit->setShortcut(Qt::CTRL | Qt::Key_Q);
    connect(quit, &QAction::triggered, this, [this] {
        Q_EMIT quitRequested();
        close();
    });

    QMenu *pages = menuBar()->addMenu(tr("&Blättern"));
    const auto add = [&](const QString &text, const QList<QKeySequence> &keys, void (NySpreadView::*slot)()) {
        QAction *action = pages->addAction(text);
        action->setShortcuts(keys);
        connect(action, &QAction::triggered, m_view, slot);
    };
    add(tr("&Weiter"), {Qt::Key_Right, Qt::Key_PageDown, Qt::Key_Space}, &NySpreadView::showNext);
    add(tr("&Zurück"), {Qt::Key_Left, Qt::Key_PageUp, Qt::Key_Backspace}, &NySpreadView::showPrevious);
    add(tr("Zum &Anfang"), {Qt::Key_Home}, &NySpreadView::showFirst);
    add(tr("Zum &Ende"), {Qt::Key_End}, &NySpreadView::showLast);
}

void NyBookWindow::closeEvent(QCloseEvent *event)
{
    QMainWindow::closeEvent(event);
    if (event->isAccepted())
        Q_EMIT closed();
}

void NyBookWindow::updateControls()
{
    m_previous->setEnabled(m_view->spread() > 0);
    m_next->setEnabled(m_view->spread() < m_view->spreadCount() - 1);
    m_position->setText(m_view->spreadDescription());
}

void NyBookWindow::lookForMissingPhotos(const NyBookProject &project)
{
    // On another thread: a photo folder on a sleeping network drive answers late.
    auto *watcher = new QFutureWatcher<QStringList>(this);
    connect(watcher, &QFutureWatcher<QStringList>::finished, this, [this, watcher] {
        const QStringList names = watcher->result();
        watcher->deleteLater();
        if (names.isEmpty())
            return;
        const QString listed = names.mid(0, SHOWN_MISSING_NAMES).join(u", "_s);
        m_warning->setText(names.size() <= SHOWN_MISSING_NAMES
                ? tr("In diesem Buch fehlen Fotos: %1").arg(listed)
                : tr("In diesem Buch fehlen %1 Fotos: %2 und weitere").arg(QString::number(names.size()), listed));
        m_warning->show();
    });
    watcher->setFuture(QtConcurrent::run(missingPhotos, project.photoUrls()));
}
