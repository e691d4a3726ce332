#pragma once

#include <atomic>

#include <QFutureWatcher>
#include <QObject>

#include <NyBookProject.h>
#include <NyDesignStyle.h>

#include "NyBookPdf.h"

/**
 * One export of a book as a PDF, on a thread of its own. The book is copied: it may change meanwhile. Lives on the GUI thread;
 * its destruction cancels the export and waits for it.
 */
class NyBookPdfExport : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyBookPdfExport)
public:
    NyBookPdfExport(const NyBookProject &project, const NyDesignStyle &style, QObject *parent = nullptr);
    ~NyBookPdfExport() override;

    /** Once for each object. */
    void start(const QString &path, NyBookPdf::MissingPhotos missingPhotos);
    /** finished() follows soon. */
    void cancel() { m_isCancelled = true; }

Q_SIGNALS:
    void progressed(int done, int total);
    void finished(const NyBookPdf::Result &result);

private:
    NyBookProject m_project;
    NyDesignStyle m_style;
    std::atomic_bool m_isCancelled = false;
    QFutureWatcher<NyBookPdf::Result> m_watcher;
};
