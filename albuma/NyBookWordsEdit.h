#pragma once

#include <QWidget>

class QLineEdit;

/**
 * A book's title and subtitle above its pages. They look like plain text until the pointer or the keyboard comes to them, and are
 * edited in place: Return or leaving the line takes the words over, Escape brings the former ones back. GUI thread.
 */
class NyBookWordsEdit : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyBookWordsEdit)
public:
    explicit NyBookWordsEdit(QWidget *parent = nullptr);
    ~NyBookWordsEdit() override;

    /** The words as the book has them now. If they are others than before, what is being typed is given up. */
    void setWords(const QString &title, const QString &subtitle);
    /** Puts the keyboard into the title, all of it selected. */
    void editTitle();
    /** Takes over what is being typed in a line that still has the keyboard. */
    void finishEditing();

Q_SIGNALS:
    /** The user has changed at least one of the two. */
    void edited(const QString &title, const QString &subtitle);
    /** Return or Escape: the keyboard may go back to the book. */
    void left();

private:
    QLineEdit *createLine(const QString &name, const QString &description);
    void takeOver();
    void restore();
    /** Gives what the line then holds; long words are shortened. */
    static QString show(QLineEdit *line, const QString &words);

    QLineEdit *m_title;
    QLineEdit *m_subtitle;
    QString m_bookTitle;
    QString m_bookSubtitle;
    QString m_shownTitle;
    QString m_shownSubtitle;
};
