#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QMainWindow>
#include <QPointer>

#include <NyBookPlace.h>
#include <NyDesignStyle.h>

#include "NyBookPdf.h"

class QAction;
class QLabel;
class QMessageBox;
class QProgressDialog;
class QPushButton;
class QToolButton;
class NyBookDocument;
class NyBookPdfExport;
class NyBookRecovery;
class NyBookWordsEdit;
class NyMessageBar;
class NySpreadView;

/** Whether the user is told about photos that a book cannot find. */
enum class NyLoadWarnings { Show, Suppress };

/**
 * A window in which one book is paged through, edited, saved and exported. GUI thread; decoding, saving and exporting happen on
 * others.
 */
class NyBookWindow : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyBookWindow)
public:
    NyBookWindow(std::unique_ptr<NyBookDocument> document, const NyDesignStyle &style, NyLoadWarnings warnings);
    ~NyBookWindow() override;

    NySpreadView *view() const { return m_view; }
    NyBookDocument *document() const { return m_document.get(); }

    /**
     * Calls @p then as soon as the book may be given up: at once if nothing has changed and no PDF is being written, else after that
     * and after the user has saved the book or does without; never if the user wants to stay or the PDF fails. The last call counts.
     */
    void leave(std::function<void()> then);
    /** Whether a call of leave() has still to come to its end. */
    bool isWaitingToLeave() const;
    /** Ends the writing of a PDF, if there is one, soon. */
    void cancelExport();
    /** Told above the book until it is closed or outdated. */
    void showError(const QString &text);

Q_SIGNALS:
    /** The user wants to open another book. */
    void openRequested();
    /** The user wants to see the proposals. */
    void startRequested();
    /** The user has dropped the file of another book here. */
    void bookDropped(const QString &path);
    /** The user wants to end the program; the window closes. */
    void quitRequested();
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void createContent();
    QWidget *createBottom();
    void createActions();
    void createMenus();
    QMessageBox *createQuestion(const QString &name, const QString &text, const QString &information);
    void connectDocument();

    void showBook();
    void updateActions();
    void updateTitle();
    void lookForMissingPhotos();
    void addHint(const QString &text);
    void showMenu(NyBookPlace place, const QPoint &globalPosition);
    void showHelp();

    void save();
    void saveAs();
    void askAboutConflict();
    void askForPhoto(NyBookPlace place);
    void replacePhoto(NyBookPlace place, const QString &path);
    void askForPdf();
    void exportPdf(const QString &path, NyBookPdf::MissingPhotos missingPhotos);
    void showExportResult(const QString &path, const NyBookPdf::Result &result);
    void askAboutMissingPhotos(const QString &path, const QStringList &missing);
    QString proposedPdfPath() const;

    std::unique_ptr<NyBookDocument> m_document;
    std::unique_ptr<NyBookRecovery> m_recovery;
    NyDesignStyle m_style;
    std::unique_ptr<NyBookPdfExport> m_export;
    QPointer<QProgressDialog> m_progress;
    /** What was to be done after a save that is still going on. */
    std::function<void()> m_afterSave;
    /** What was to be done after an export that is still going on. */
    std::function<void()> m_afterExport;
    /** What is to be done once the user has answered what becomes of the changes. */
    std::function<void()> m_afterQuestion;
    QString m_pdfFolder;
    /** What there was to know at the opening of the book. */
    QString m_hint;
    bool m_isLeaving = false;

    NyMessageBar *m_message = nullptr;
    NyBookWordsEdit *m_words = nullptr;
    NySpreadView *m_view = nullptr;
    QLabel *m_position = nullptr;
    QPushButton *m_previous = nullptr;
    QPushButton *m_next = nullptr;
    QToolButton *m_zoom = nullptr;

    QAction *m_open = nullptr;
    QAction *m_start = nullptr;
    QAction *m_save = nullptr;
    QAction *m_saveAs = nullptr;
    QAction *m_exportPdf = nullptr;
    QAction *m_close = nullptr;
    QAction *m_quit = nullptr;
    QAction *m_undo = nullptr;
    QAction *m_redo = nullptr;
    QAction *m_editTitle = nullptr;
    QAction *m_replace = nullptr;
    QAction *m_remove = nullptr;
    QAction *m_zoomIn = nullptr;
    QAction *m_zoomOut = nullptr;
    QAction *m_zoomToFit = nullptr;
    QAction *m_fullScreen = nullptr;
};
