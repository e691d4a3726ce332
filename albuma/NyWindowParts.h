#pragma once

#include <utility>

#include <QByteArray>
#include <QIcon>
#include <QKeySequence>
#include <QList>
#include <QString>

class QAction;
class QDropEvent;
class QMainWindow;
class QMimeData;
class QWidget;

/** What the program's windows are put together from, so that they look and behave alike. GUI thread. */
namespace NyWindowParts
{

/** One of the program's own icons; an empty icon for an empty id. */
QIcon icon(const QString &id);

/** An action of @p window. Its icon is shown in menus and tool bars; without an id it has none. */
QAction *createAction(QWidget *window, const QString &name, const QString &text, const QString &iconId, const QKeySequence &key);

/** A tool bar that the keyboard and screen readers reach. A null pointer stands for a line between the actions. */
void addToolBar(QMainWindow *window, const QList<QAction *> &actions, Qt::ToolButtonStyle style);

/** Opens a help text over @p window: a paragraph, and under it a table of keys and what they do. */
void showHelp(QWidget *window, const QString &title, const QString &iconId, const QString &introduction,
    const QList<std::pair<QString, QString>> &keys);

/** The path of the one book that is dragged here; empty for anything else. */
QString draggedBook(const QMimeData *data);
/** The path of the one picture of a known format that is dragged here; empty for anything else. */
QString draggedPhoto(const QMimeData *data);
/** Accepts a drag or drop as one that leaves the file where it is; false, and ignored, if it offers none or a dialog has to be answered. */
bool acceptWithoutMoving(QDropEvent *event);

/** A path for a label of @p window that wraps its text: no longer than some lines, and without names that fit into none. */
QString shownPath(const QString &path, const QWidget &window);

/** Gives @p window the place and size of QWidget::saveGeometry(), no larger than the desktop; false if it is none. */
bool restoreGeometry(QWidget *window, const QByteArray &geometry);
/** Gives @p window the place and size that keepGeometry() has stored under @p key; false if there is none. */
bool restoreGeometry(QWidget *window, const QString &key);
void keepGeometry(const QWidget *window, const QString &key);

}
