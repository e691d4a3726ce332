#pragma once

#include <memory>

#include <QFutureWatcher>
#include <QObject>

#include "NyBookDocument.h"
#include "NyBookWindow.h"
#include "NyStartScreenSettings.h"
#include "NyStartWindow.h"

/**
 * The windows of one run: the start window or a book. The program ends when the last is closed; a book that was opened from the
 * start window leads back there. GUI thread.
 */
class NyAlbumaWindows : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyAlbumaWindows)
public:
    explicit NyAlbumaWindows(NyLoadWarnings warnings);
    ~NyAlbumaWindows() override;

    void showStart();
    /**
     * Shows the book, as soon as it has been read, in place of what is shown. If it cannot be read, that stays, or the start window
     * comes, with the reason; so it does if the user does not want to give up a book with changes.
     */
    void openProject(const QString &path);
    /**
     * Ends the program as somebody wants who does not sit before it: a PDF that is being written is given up, and the user is asked
     * about changes. Asked for again while that waits for an answer, it ends without one.
     */
    void end();

    NyBookWindow *bookWindow() const { return m_book.get(); }
    NyStartWindow *startWindow() const { return m_start.get(); }

private:
    void handleLoaded(const NyBookDocument::Loaded &book);
    void showBook(const NyBookDocument::Loaded &book);
    void askForProject();
    void showPreferences();
    void markAsRead(const QString &path);
    void hideStart();
    void takeAway(std::unique_ptr<NyBookWindow> window);
    void setLoading(bool loading);
    void leaveBook();

    NyLoadWarnings m_warnings;
    NyStartScreenSettings m_settings;
    std::unique_ptr<NyStartWindow> m_start;
    std::unique_ptr<NyBookWindow> m_book;
    bool m_isQuitting = false;
    bool m_isEnding = false;
    /** The book that is being read; one that was asked for before it is forgotten. */
    QFutureWatcher<NyBookDocument::Loaded> m_loading;
    bool m_isLoading = false;
};
