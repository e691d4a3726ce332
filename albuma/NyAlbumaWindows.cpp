#include "NyAlbumaWindows.h"

#include <QDebug>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QScreen>
#include <QWindow>

#include <NyBookProjectFile.h>
#include <NyDirectoryConfig.h>
#include <NyPreInstalledDesignElementRegistry.h>

#include "NyPreferencesWindow.h"
#include "NySpreadView.h"

NyAlbumaWindows::NyAlbumaWindows(NyLoadWarnings warnings)
    : m_warnings(warnings)
{
}

NyAlbumaWindows::~NyAlbumaWindows() = default;

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
    const NyBookProjectFile::Result result = NyBookProjectFile::load(QFileInfo(path));
    if (!result.project) {
        qWarning().noquote() << result.error;
        if (m_book) {
            auto *message = new QMessageBox(QMessageBox::Warning, m_book->windowTitle(), result.error, QMessageBox::Ok, m_book.get());
            message->setTextFormat(Qt::PlainText);
            message->setAttribute(Qt::WA_DeleteOnClose);
            message->open();
            return;
        }
        showStart();
        m_start->setError(result.error);
        return;
    }
    const auto &registry = NyPreInstalledDesignElementRegistry::instance();
    auto window = std::make_unique<NyBookWindow>(*result.project, registry.firstKnownStyle({result.project->style}), m_warnings);
    connect(window.get(), &NyBookWindow::openRequested, this, &NyAlbumaWindows::askForProject);
    connect(window.get(), &NyBookWindow::startRequested, this, &NyAlbumaWindows::leaveBook);
    connect(window.get(), &NyBookWindow::quitRequested, this, [this] { m_isQuitting = true; });
    connect(window.get(), &NyBookWindow::closed, this, [this] {
        // Before the book is gone: the program ends with its last window.
        if (m_start && !m_isQuitting)
            showStart();
        takeBookAway();
    });
    takeBookAway();
    m_book = std::move(window);
    const QSize available = m_book->screen()->availableSize();
    m_book->resize(m_book->sizeHint().boundedTo(available * 0.95));
    m_book->show();
    if (m_start) {
        hideStart();
        m_start->setError(QString());
    }
    markAsRead(path);
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

void NyAlbumaWindows::takeBookAway()
{
    if (!m_book)
        return;
    // It may be the sender of what leads here.
    m_book->disconnect(this);
    m_book.release()->deleteLater();
}

void NyAlbumaWindows::leaveBook()
{
    showStart();
    m_book->close();
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
