#pragma once

#include <QMainWindow>

class QLabel;

/** What is seen when no book is open: a way to open one. GUI thread. */
class NyStartWindow : public QMainWindow
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyStartWindow)
public:
    NyStartWindow();
    ~NyStartWindow() override;

    /** Says why a book could not be opened; an empty text takes the message away. */
    void setError(const QString &error);

Q_SIGNALS:
    void openRequested();
    void preferencesRequested();

private:
    QLabel *m_error = nullptr;
};
