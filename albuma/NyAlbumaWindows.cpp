#include "NyAlbumaWindows.h"

#include <utility>

#include <QApplication>
#include <QDebug>
#include <QFileDialog>
#include <QWindow>

#include <NyDirectoryConfig.h>
#include <NyPreInstalledDesignElementRegistry.h>

#include "NyPreferencesWindow.h"

NyAlbumaWindows::NyAlbumaWindows(NyLoadWarnings warnings)
    : m_warnings(warnings)
{
    connect(&m_loading, &QFutureWatcherBase::finished, this, [this] {
        setLoading(false);
        handleLoaded(m_loading.result());
    });
}

NyAlbumaWindows::~NyAlbumaWindows()
{
    setLoading(false);
}

void NyAlbumaWindows::showStart()
{
    if (!m_start) {
        m_start = std::make_unique<NyStartWindow>(m_settings);
        connect(m_start.get(), &NyStartWindow::bookRequested, this, &NyAlbumaWindows::askForProject);
        connect(m_start.get(), &NyStartWindow::openRequested, this, &NyAlbumaWindows::openProject);
        connect(m_start.get(), &NyStartWindow::preferencesRequested, this, &NyAlbumaWindows::showPreferences);
    }
    m_start->show();
    m_start->raise();
    m_start->activateWindow();
}

void NyAlbumaWindows::openProject(const QString &path)
{
    setLoading(true);
    m_loading.setFuture(NyBookDocument::load(path));
}

void NyAlbumaWindows::end()
{
    const bool isRepeated = std::exchange(m_isEnding, true);
    if (isRepeated && (!m_book || m_book->isWaitingToLeave())) {
        QCoreApplication::exit();
        return;
    }
    if (!m_book) {
        QCoreApplication::quit();
        return;
    }
    m_book->cancelExport();
    m_book->leave([this] {
        takeAway(std::move(m_book));
        QCoreApplication::quit();
    });
}

void NyAlbumaWindows::setLoading(bool loading)
{
    if (loading == m_isLoading)
        return;
    m_isLoading = loading;
    if (loading)
        QGuiApplication::setOverrideCursor(Qt::BusyCursor);
    else
        QGuiApplication::restoreOverrideCursor();
}

void NyAlbumaWindows::handleLoaded(const NyBookDocument::Loaded &book)
{
    if (!book.project) {
        qWarning().noquote() << book.error;
        if (m_book) {
            m_book->showError(book.error);
            return;
        }
        showStart();
        m_start->setError(book.error);
        return;
    }
    if (!m_book) {
        showBook(book);
        return;
    }
    m_book->leave([this, book] {
        // What was left may have been saved there just now.
        if (NyBookDocument::Stamp::ofFile(book.path) == book.stamp)
            showBook(book);
        else
            openProject(book.path);
    });
}

void NyAlbumaWindows::showBook(const NyBookDocument::Loaded &book)
{
    const auto &registry = NyPreInstalledDesignElementRegistry::instance();
    auto window = std::make_unique<NyBookWindow>(
        std::make_unique<NyBookDocument>(book), registry.firstKnownStyle({book.project->style}), m_warnings);
    connect(window.get(), &NyBookWindow::openRequested, this, &NyAlbumaWindows::askForProject);
    connect(window.get(), &NyBookWindow::bookDropped, this, &NyAlbumaWindows::openProject);
    connect(window.get(), &NyBookWindow::startRequested, this, &NyAlbumaWindows::leaveBook);
    connect(window.get(), &NyBookWindow::quitRequested, this, [this] { m_isQuitting = true; });
    connect(window.get(), &NyBookWindow::closed, this, [this] {
        // Before the book is gone: the program ends with its last window.
        if (m_start && !m_isQuitting)
            showStart();
        takeAway(std::move(m_book));
    });
    if (m_book)
        window->restoreGeometry(m_book->saveGeometry());
    window->show();
    takeAway(std::exchange(m_book, std::move(window)));
    if (m_start) {
        hideStart();
        m_start->setError(QString());
    }
    markAsRead(book.path);
}

void NyAlbumaWindows::hideStart()
{
    // A window that comes back is placed anew by the window manager unless it asks for its place.
    QWindow *window = m_start->isVisible() ? m_start->windowHandle() : nullptr;
    const QPoint place = window ? window->framePosition() : QPoint();
    m_start->hide();
    if (window)
        window->setFramePosition(place);
}

void NyAlbumaWindows::takeAway(std::unique_ptr<NyBookWindow> window)
{
    if (!window)
        return;
    // It may be the sender of what leads here.
    window->disconnect(this);
    window->hide();
    QObject *gone = window.release();
    QWidget *modal = QApplication::activeModalWidget();
    if (!modal || !qobject_cast<QFileDialog *>(modal->parentWidget())) {
        gone->deleteLater();
        return;
    }
    // A file dialog asks on its own stack, which may not be destroyed before it has its answer.
    connect(modal, &QObject::destroyed, gone, &QObject::deleteLater);
    modal->close();
}

void NyAlbumaWindows::leaveBook()
{
    m_book->leave([this] {
        // Before the book is gone: the program ends with its last window.
        showStart();
        takeAway(std::move(m_book));
    });
}

void NyAlbumaWindows::markAsRead(const QString &path)
{
    const QFileInfo file(path);
    const QFileInfo folder(NyDirectoryConfig::instance().bookProposalFolder().absolutePath());
    if (file.canonicalFilePath() != folder.canonicalFilePath() + u'/' + file.fileName())
        return;
    m_settings.addOpenedId(file.fileName());
    if (m_start)
        m_start->markAsRead(file.fileName());
}

void NyAlbumaWindows::askForProject()
{
    QWidget *parent = m_book ? static_cast<QWidget *>(m_book.get()) : m_start.get();
    auto *dialog = new QFileDialog(
        parent, tr("Buch öffnen"), NyDirectoryConfig::instance().bookProposalFolder().filePath(), tr("Fotobücher (*.nqp *.nqpx)"));
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::fileSelected, this, &NyAlbumaWindows::openProject);
    dialog->open();
}

void NyAlbumaWindows::showPreferences()
{
    auto *window = new NyPreferencesWindow(m_start.get());
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->open();
}
