#include "NyAlbumaWindows.h"

#include <QDebug>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMessageBox>
#include <QScreen>

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
        m_start = std::make_unique<NyStartWindow>();
        connect(m_start.get(), &NyStartWindow::openRequested, this, &NyAlbumaWindows::askForProject);
        connect(m_start.get(), &NyStartWindow::preferencesRequested, this, &NyAlbumaWindows::showPreferences);
    }
    m_start->show();
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
    // Sender of the request to open another book may be the window that goes.
    if (m_book)
        m_book.release()->deleteLater();
    m_book = std::move(window);
    const QSize available = m_book->screen()->availableSize();
    m_book->resize(m_book->sizeHint().boundedTo(available * 0.95));
    m_book->show();
    if (m_start) {
        m_start->hide();
        m_start->setError(QString());
    }
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
