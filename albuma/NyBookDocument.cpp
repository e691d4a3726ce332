#include "NyBookDocument.h"

#include <functional>

#include <sys/stat.h>

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUndoCommand>
#include <QtConcurrent/QtConcurrentRun>

#include <NyBookProjectFile.h>
#include <NyFileHandler.h>
#include <NyImageLoader.h>

#include "NyBookEditor.h"
#include "NyProposalCompanions.h"

namespace
{

/** Books share their pages, so that a step costs little more than the pages it changed. */
class EditCommand : public QUndoCommand
{
public:
    EditCommand(const QString &text, NyBookProject &project, const NyBookProject &after)
        : QUndoCommand(text)
        , m_project(project)
        , m_before(project)
        , m_after(after)
    {
    }

    void undo() override { m_project = m_before; }
    void redo() override { m_project = m_after; }

private:
    NyBookProject &m_project;
    NyBookProject m_before;
    NyBookProject m_after;
};

qint64 nanoseconds(const timespec &time)
{
    return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

bool looksTheSame(const NyBookProject &a, const NyBookProject &b)
{
    return a.cover == b.cover && a.style == b.style && a.pageSizeMm == b.pageSizeMm;
}

}

/** All that a worker thread needs, by value. */
struct NyBookDocument::SaveJob
{
    QString path;
    NyBookProject project;
    Overwrite overwrite = Overwrite::No;
    Stamp knownStamp;
    NyBookProject knownProject;
    bool isElsewhere = false;
    bool isPreviewOutdated = false;
};

NyBookDocument::Stamp NyBookDocument::Stamp::ofFile(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return {};
    return {nanoseconds(status.st_mtim), nanoseconds(status.st_ctim), qint64(status.st_size), quint64(status.st_ino)};
}

QFuture<NyBookDocument::Loaded> NyBookDocument::load(const QString &path)
{
    return QtConcurrent::run([path] {
        Loaded loaded;
        loaded.path = QFileInfo(path).absoluteFilePath();
        loaded.stamp = Stamp::ofFile(loaded.path);
        NyBookProjectFile::Result result = NyBookProjectFile::load(QFileInfo(loaded.path));
        loaded.project = std::move(result.project);
        loaded.error = result.error;
        return loaded;
    });
}

NyBookDocument::NyBookDocument(const Loaded &book, QObject *parent)
    : QObject(parent)
    , m_path(QDir::cleanPath(book.path))
    , m_stamp(book.stamp)
    , m_project(book.project.value())
    , m_savedProject(m_project)
{
    m_undoStack.setUndoLimit(LongestUndo);
    // One after the other, and on a thread that no slow folder of photos keeps busy.
    m_savePool.setMaxThreadCount(1);
    // Not from the commands: while they run, the stack does not yet know what can be undone.
    connect(&m_undoStack, &QUndoStack::indexChanged, this, &NyBookDocument::handleChange);
    connect(&m_saveWatcher, &QFutureWatcher<SaveOutcome>::finished, this, &NyBookDocument::finishSave);
}

NyBookDocument::~NyBookDocument()
{
    m_undoStack.disconnect(this);
    m_saveWatcher.disconnect(this);
    while (isSaving()) {
        m_saveWatcher.waitForFinished();
        endSave();
    }
}

void NyBookDocument::push(const QString &text, const NyBookProject &after)
{
    if (after != m_project)
        m_undoStack.push(new EditCommand(text, m_project, after));
}

void NyBookDocument::handleChange()
{
    Q_EMIT changed();
    updateModified();
}

void NyBookDocument::updateModified()
{
    const bool isModified = m_project != m_savedProject;
    if (isModified == m_isModified)
        return;
    m_isModified = isModified;
    Q_EMIT modifiedChanged(isModified);
}

void NyBookDocument::setWords(const QString &title, const QString &subtitle)
{
    push(tr("Titel ändern"), NyBookEditor::withWords(m_project, title, subtitle));
}

void NyBookDocument::removePhoto(NyBookPlace place)
{
    push(tr("Foto entfernen"), NyBookEditor::withoutPhoto(m_project, place));
}

void NyBookDocument::replacePhoto(NyBookPlace place, const QUrl &url)
{
    const NyPlacedFoto *old = m_project.photo(place);
    if (!old)
        return;
    m_replacements.removeIf([&](const Replacement &other) { return other.place == place; });
    const int id = ++m_lastReplacement;
    m_replacements.append({id, place, old->url, url});
    auto *watcher = new QFutureWatcher<QSize>(this);
    connect(watcher, &QFutureWatcher<QSize>::finished, this, [this, watcher, id] {
        watcher->deleteLater();
        finishReplacement(id, watcher->result());
    });
    watcher->setFuture(
        QtConcurrent::run([url] { return url.isLocalFile() ? NyImageLoader::instance().orientedSize(url.toLocalFile()) : QSize(); }));
}

void NyBookDocument::finishReplacement(int id, const QSize &sizePx)
{
    const auto found
        = std::find_if(m_replacements.cbegin(), m_replacements.cend(), [id](const Replacement &other) { return other.id == id; });
    if (found == m_replacements.cend())
        return;
    const Replacement replacement = *found;
    m_replacements.erase(found);
    if (sizePx.isEmpty()) {
        const QString name = replacement.newUrl.isLocalFile() ? QDir::toNativeSeparators(replacement.newUrl.toLocalFile())
                                                              : replacement.newUrl.toDisplayString();
        Q_EMIT replaceFailed(tr("Das Foto \"%1\" kann nicht gelesen werden.").arg(name));
        return;
    }
    const NyPlacedFoto *old = m_project.photo(replacement.place);
    if (old && old->url == replacement.oldUrl)
        push(tr("Foto ersetzen"), NyBookEditor::withPhoto(m_project, replacement.place, replacement.newUrl, sizePx));
}

void NyBookDocument::restore(const NyBookProject &edited)
{
    push(tr("Änderungen wiederherstellen"), edited);
}

void NyBookDocument::save(Overwrite overwrite)
{
    enqueue({isSaving() ? m_saves.constLast().path : m_path, overwrite});
}

void NyBookDocument::saveAs(const QString &path)
{
    enqueue({QDir::cleanPath(QFileInfo(path).absoluteFilePath()), Overwrite::Yes});
}

void NyBookDocument::enqueue(const Save &save)
{
    // The first one is under way and knows nothing of edits that come now.
    if (m_saves.size() > 1 && m_saves.constLast().path == save.path) {
        if (save.overwrite == Overwrite::Yes)
            m_saves.last().overwrite = Overwrite::Yes;
        return;
    }
    m_saves.append(save);
    if (m_saves.size() == 1)
        startSave();
}

void NyBookDocument::startSave()
{
    const Save &save = m_saves.constFirst();
    m_projectBeingSaved = m_project;
    SaveJob job;
    job.path = save.path;
    job.project = m_project;
    job.overwrite = save.overwrite;
    job.knownStamp = m_stamp;
    job.knownProject = m_savedProject;
    job.isElsewhere = save.path != m_path;
    job.isPreviewOutdated = m_isPreviewOutdated || !looksTheSame(m_project, m_savedProject);
    m_saveWatcher.setFuture(QtConcurrent::run(&m_savePool, &NyBookDocument::write, job));
}

NyBookDocument::SaveOutcome NyBookDocument::write(const SaveJob &job)
{
    const QFileInfo file(job.path);
    const QString name = QDir::toNativeSeparators(job.path);
    SaveOutcome outcome;
    outcome.isPreviewOutdated = job.isPreviewOutdated;
    const Stamp present = Stamp::ofFile(job.path);
    const bool isOurs = present.size < 0 || present == job.knownStamp;
    // Synchronising and restoring programs leave new stamps on the same book.
    const bool isConflict = !isOurs && NyBookProjectFile::load(file).project != job.knownProject;
    if (isConflict && job.overwrite == Overwrite::No) {
        qWarning().noquote() << "book not written, the file was changed by another program:" << job.path;
        outcome.state = SaveOutcome::State::Conflict;
        return outcome;
    }
    const QByteArray json = NyBookProjectFile::toJson(job.project);
    QString reason;
    if (json.size() > NyBookProjectFile::MaximumBytes)
        reason = tr("Es ist zu groß, um wieder gelesen zu werden.");
    else if (NyFileHandler::writeBinaryFile(file, json, &reason))
        outcome.state = SaveOutcome::State::Saved;
    if (outcome.state == SaveOutcome::State::Failed) {
        outcome.error = tr("Das Buch \"%1\" kann nicht gespeichert werden: %2").arg(name, reason);
        return outcome;
    }
    outcome.stamp = Stamp::ofFile(job.path);
    if (job.isElsewhere) {
        // Whatever lies beside that file was made for another book.
        outcome.isPreviewOutdated = true;
        return outcome;
    }
    if (!NyProposalCompanions::updateDescription(file, job.project))
        qWarning().noquote() << "the start screen shows old words of the book" << job.path;
    if (job.isPreviewOutdated || isConflict)
        outcome.isPreviewOutdated = !NyProposalCompanions::updatePreview(file, job.project);
    return outcome;
}

/** Takes over what became of the first save and starts the next one that is still wanted. */
NyBookDocument::SaveOutcome NyBookDocument::endSave()
{
    const SaveOutcome outcome = m_saveWatcher.result();
    const Save ended = m_saves.takeFirst();
    const bool isSaved = outcome.state == SaveOutcome::State::Saved;
    if (isSaved) {
        m_isPreviewOutdated = outcome.isPreviewOutdated;
        m_path = ended.path;
        m_stamp = outcome.stamp;
        m_savedProject = m_projectBeingSaved;
    }
    if (isSaving() && m_saves.constFirst().path == ended.path) {
        const bool isDone = isSaved && m_project == m_savedProject;
        const bool mayOverwrite = outcome.state == SaveOutcome::State::Conflict && m_saves.constFirst().overwrite == Overwrite::Yes;
        const bool wouldFailAgain = !isSaved && !mayOverwrite;
        if (isDone || wouldFailAgain)
            m_saves.removeFirst();
    }
    if (isSaving())
        startSave();
    return outcome;
}

void NyBookDocument::finishSave()
{
    const SaveOutcome outcome = endSave();
    const bool isLast = !isSaving();
    updateModified();
    switch (outcome.state) {
    case SaveOutcome::State::Saved:
        if (isLast)
            Q_EMIT saved();
        break;
    case SaveOutcome::State::Failed:
        Q_EMIT saveFailed(outcome.error);
        break;
    case SaveOutcome::State::Conflict:
        Q_EMIT saveConflict();
        break;
    }
}
