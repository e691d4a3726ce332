#include "NyBookPdfExport.h"

#include <QtConcurrent/QtConcurrentRun>

NyBookPdfExport::NyBookPdfExport(const NyBookProject &project, const NyDesignStyle &style, QObject *parent)
    : QObject(parent)
    , m_project(project)
    , m_style(style)
{
    connect(&m_watcher, &QFutureWatcherBase::finished, this, [this] { Q_EMIT finished(m_watcher.result()); });
}

NyBookPdfExport::~NyBookPdfExport()
{
    m_isCancelled = true;
    m_watcher.waitForFinished();
}

void NyBookPdfExport::start(const QString &path, NyBookPdf::MissingPhotos missingPhotos)
{
    m_watcher.setFuture(QtConcurrent::run([this, path, missingPhotos] {
        const auto progress = [this](int done, int total) {
            QMetaObject::invokeMethod(
                this, [this, done, total] { Q_EMIT progressed(done, total); }, Qt::QueuedConnection);
        };
        return NyBookPdf(m_project, m_style).write(path, missingPhotos, progress, m_isCancelled);
    }));
}
