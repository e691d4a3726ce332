#pragma once

#include <optional>

#include <QFuture>
#include <QFutureWatcher>
#include <QList>
#include <QObject>
#include <QThreadPool>
#include <QUndoStack>

#include <NyBookProject.h>

/**
 * A book that is open for editing: its file, what is in it now, and the way back.
 *
 * Every edit is one undo step of its own, so an edit is to be made when it is complete: a title with its last letter, not with each.
 * Files are read and written on worker threads; a save that was asked for is finished even if the document is destroyed, whose
 * destructor waits for it. Lives on the GUI thread.
 */
class NyBookDocument : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyBookDocument)
public:
    enum class Overwrite { No, Yes };

    /** Tells whether a file is the one that was there before. */
    struct Stamp
    {
        qint64 modifiedNs = 0;
        /** Also moves when a program puts the modification time back. */
        qint64 changedNs = 0;
        /** -1 if there is no file. */
        qint64 size = -1;
        quint64 node = 0;

        static Stamp ofFile(const QString &path);
        friend bool operator==(const Stamp &, const Stamp &) = default;
    };

    /** What became of reading a book: a project, or the reason why there is none, fit to be shown. */
    struct Loaded
    {
        QString path;
        /** From before the file was read, so that a change meanwhile is noticed by the next save. */
        Stamp stamp;
        std::optional<NyBookProject> project;
        QString error;
    };

    /** Undo steps beyond this are forgotten. */
    static constexpr int LongestUndo = 500;

    /** Reads a book on a worker thread; callable on any. */
    static QFuture<Loaded> load(const QString &path);

    /** @p book must hold a project. */
    explicit NyBookDocument(const Loaded &book, QObject *parent = nullptr);
    ~NyBookDocument() override;

    const QString &path() const { return m_path; }
    const NyBookProject &project() const { return m_project; }
    /** Its own clean state is not kept; isModified() tells. */
    QUndoStack *undoStack() { return &m_undoStack; }
    /** Whether the book differs from what was last read or written. */
    bool isModified() const { return m_isModified; }
    bool isSaving() const { return !m_saves.isEmpty(); }

    /** As NyBookEditor::withWords(). */
    void setWords(const QString &title, const QString &subtitle);
    /** As NyBookEditor::withoutPhoto(). */
    void removePhoto(NyBookPlace place);
    /**
     * As NyBookEditor::withPhoto(), as soon as the picture's size has been read; replaceFailed() follows if it cannot be. Nothing
     * happens if that photo is no longer in that place by then, or if another one was asked for there since.
     */
    void replacePhoto(NyBookPlace place, const QUrl &url);

    /** Takes over, as one undo step, what an earlier document of this book did not save. */
    void restore(const NyBookProject &edited);

    /**
     * Writes the book and then brings the companions of a proposal up to date; what goes wrong with those is only logged, and tried
     * again by the next save. During a save the next one waits its turn, unless it asks for what is done already.
     */
    void save(Overwrite overwrite = Overwrite::No);
    /** Writes the book, and nothing else, to @p path, whatever is there. The document then belongs to that file. */
    void saveAs(const QString &path);

Q_SIGNALS:
    /** The book is another one now. */
    void changed();
    void modifiedChanged(bool isModified);
    /** @p error is fit to be shown and names the file. */
    void replaceFailed(const QString &error);
    /** Everything that save() and saveAs() were asked for until now is written. */
    void saved();
    /** The old file is as it was. @p error is fit to be shown and names the file. */
    void saveFailed(const QString &error);
    /** Nothing was written: somebody else changed the file. save(Overwrite::Yes) writes all the same. */
    void saveConflict();

private:
    struct Save
    {
        QString path;
        Overwrite overwrite = Overwrite::No;
    };
    struct SaveJob;
    struct SaveOutcome
    {
        enum class State { Saved, Failed, Conflict };
        State state = State::Failed;
        QString error;
        Stamp stamp;
        bool isPreviewOutdated = false;
    };
    struct Replacement
    {
        int id = 0;
        NyBookPlace place;
        QUrl oldUrl;
        QUrl newUrl;
    };

    static SaveOutcome write(const SaveJob &job);
    void push(const QString &text, const NyBookProject &after);
    void handleChange();
    void updateModified();
    void finishReplacement(int id, const QSize &sizePx);
    void enqueue(const Save &save);
    void startSave();
    SaveOutcome endSave();
    void finishSave();

    QString m_path;
    Stamp m_stamp;
    NyBookProject m_project;
    /** As it is in the file. */
    NyBookProject m_savedProject;
    bool m_isModified = false;
    bool m_isPreviewOutdated = false;
    QUndoStack m_undoStack;
    /** The first one is being carried out. */
    QList<Save> m_saves;
    /** What the first save writes. */
    NyBookProject m_projectBeingSaved;
    QList<Replacement> m_replacements;
    int m_lastReplacement = 0;
    QThreadPool m_savePool;
    QFutureWatcher<SaveOutcome> m_saveWatcher;
};
