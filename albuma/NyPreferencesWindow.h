#pragma once

#include <optional>

#include <QDialog>
#include <QList>
#include <QPointer>

#include <NyInstallationSettings.h>

class NyFotoStartDirSelectionBox;
class NyPreferencesBox;
class QDialogButtonBox;
class QLabel;
class QScrollArea;
class QVBoxLayout;

/**
 * The settings of the program and of the service, in one window. GUI thread.
 *
 * Shows what is stored when it is made. accept() stores and applies; a window in which something went wrong stays open and says
 * so, and the next accept() tries that again. Owns its items.
 */
class NyPreferencesWindow : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NyPreferencesWindow)
public:
    explicit NyPreferencesWindow(QWidget *parent = nullptr);
    ~NyPreferencesWindow() override;

    /** Stores and applies what the items say. The window closes when that has taken effect, which may be a moment later. */
    void accept() override;
    void done(int result) override;

    /** Whether accept() waits for the end of the service. */
    bool isBusy() const { return m_busy; }
    /** What the window says that went wrong, one sentence or more a line; empty if nothing did. */
    QString problem() const;

protected:
    void showEvent(QShowEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addItem(NyPreferencesBox *item, QVBoxLayout *layout);
    void finishSaving();
    void setBusy(bool busy);
    void setProblems(const QStringList &problems);
    void pointOutUnreadableFolder();
    /** Makes the window higher when a message takes the items' room, as far as the screen allows. */
    void growToContent();
    /** Tells a running service that the folder of the pictures is another one now; nothing if it is the same. */
    void passOnPicturesHome(const QString &former);
    QString serviceProblem() const;
    /** Why no photos will be found in the folder; empty if it can be read or is no folder of this machine. */
    QString folderProblem(const QString &folder) const;

    QList<NyPreferencesBox *> m_items;
    NyFotoStartDirSelectionBox *m_photoFolderBox = nullptr;
    QLabel *m_problemLabel = nullptr;
    QLabel *m_busyLabel = nullptr;
    QDialogButtonBox *m_buttons = nullptr;
    QScrollArea *m_area = nullptr;
    QWidget *m_content = nullptr;
    QPointer<QWidget> m_lastFocus;
    bool m_saving = false;
    bool m_busy = false;
    bool m_isAcceptDue = false;
    bool m_folderChanged = false;
    std::optional<NyInstallationSettings::Outcome> m_outcome;
};
