#pragma once

#include <QMainWindow>

#include <NyBookProject.h>
#include <NyDesignStyle.h>

class QLabel;
class QPushButton;
class NySpreadView;

/** Whether the user is told about photos that a book cannot find. */
enum class NyLoadWarnings { Show, Suppress };

/** A window in which one book can be paged through. GUI thread. */
class NyBookWindow : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyBookWindow)
public:
    NyBookWindow(const NyBookProject &project, const NyDesignStyle &style, NyLoadWarnings warnings);
    ~NyBookWindow() override;

    NySpreadView *view() const { return m_view; }

Q_SIGNALS:
    /** The user wants to open another book. */
    void openRequested();
    /** The user wants to see the proposals. */
    void startRequested();
    /** The user wants to end the program; the window closes. */
    void quitRequested();
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    QWidget *createTop(const NyBookProject &project);
    QWidget *createBottom();
    void createActions();
    void updateControls();
    void lookForMissingPhotos(const NyBookProject &project);

    NySpreadView *m_view = nullptr;
    QLabel *m_warning = nullptr;
    QLabel *m_position = nullptr;
    QPushButton *m_previous = nullptr;
    QPushButton *m_next = nullptr;
};
