#pragma once

#include "nyguiwidgets_export.h"

#include <QString>
#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;

/**
 * A line with a folder's path and a button that opens the desktop's dialog for choosing one. A folder that does not exist is
 * pointed out below the line and is taken all the same: its drive may be unplugged. Main thread.
 */
class NYGUIWIDGETS_EXPORT NyFotoStartDirSelectionBox : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyFotoStartDirSelectionBox)

public:
    /**
     * A new box in `parent`. `withCaption` puts the words "Ordner mit Ihren Fotos" above the line; `typingAllowed` lets the user
     * write into the line, otherwise only the button changes it.
     */
    static NyFotoStartDirSelectionBox *create(QWidget *parent, bool withCaption, bool typingAllowed);
    ~NyFotoStartDirSelectionBox() override;

    /**
     * Shows `folder`, a path or a URL. `locked` keeps the user from choosing another one; `notify` emits folderChanged() if it
     * is another folder than before.
     */
    void setup(const QString &folder, bool locked, bool notify);

    /**
     * The chosen folder: the text of setup() as it was while the user has chosen no other one, and also when the line was
     * emptied. Otherwise a clean, absolute path, "~" being the home folder and a relative path lying in it; or the URL that was
     * entered if it is none of a local file.
     */
    virtual QString folder() const;

Q_SIGNALS:
    /** The user has chosen another folder: by the dialog, or by the Enter key or leaving the line after writing into it. */
    void folderChanged(const QString &folder);

protected:
    NyFotoStartDirSelectionBox(QWidget *parent, bool withCaption, bool typingAllowed);

private:
    void browse();
    void takeFolder();
    void pointOutMissingFolder();
    /** Where the dialog starts: the chosen folder, or the nearest one above it that exists. */
    QString browseStart() const;

    QLineEdit *m_line;
    QPushButton *m_browseButton;
    QLabel *m_missingLabel;
    QString m_setupFolder;
    QString m_setupText;
    QString m_announcedFolder;
    bool m_typingAllowed;
};
