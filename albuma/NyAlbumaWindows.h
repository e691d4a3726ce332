#pragma once

#include <memory>

#include <QObject>

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
    /** Shows the book in place of what is shown; if it cannot be read, that stays, or the start window comes, with the reason. */
    void openProject(const QString &path);

    NyBookWindow *bookWindow() const { return m_book.get(); }
    NyStartWindow *startWindow() const { return m_start.get(); }

private:
    void askForProject();
    void showPreferences();
    void markAsRead(const QString &path);
    void hideStart();
    void takeBookAway();
    void leaveBook();

    NyLoadWarnings m_warnings;
    NyStartScreenSettings m_settings;
    std::unique_ptr<NyStartWindow> m_start;
    std::unique_ptr<NyBookWindow> m_book;
    bool m_isQuitting = false;
};
