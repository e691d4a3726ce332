#include "NyWindowParts.h"

#include <QAction>
#include <QApplication>
#include <QDropEvent>
#include <QFileInfo>
#include <QMainWindow>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>
#include <QUrl>

#include <NyConfigItem.h>
#include <NyGUIWidgetsConfig.h>
#include <NyImageLoader.h>
#include <NySettings.h>

namespace
{

using namespace Qt::Literals::StringLiterals;

constexpr bool OfThisProgram = true;

NyConfigItem<QString> geometryItem(const QString &key)
{
    return NyConfigItem<QString>(QString(), QString(), key, OfThisProgram);
}

/** The path of the one local file; empty for anything else. */
QString draggedFile(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    return urls.size() == 1 && urls.constFirst().isLocalFile() ? urls.constFirst().toLocalFile() : QString();
}

}

QIcon NyWindowParts::icon(const QString &id)
{
    return id.isEmpty() ? QIcon() : NyGUIWidgetsConfig::instance().loadIconById(id);
}

QAction *NyWindowParts::createAction(
    QWidget *window, const QString &name, const QString &text, const QString &iconId, const QKeySequence &key)
{
    auto *action = new QAction(icon(iconId), text, window);
    action->setObjectName(name);
    action->setShortcut(key);
    return action;
}

void NyWindowParts::addToolBar(QMainWindow *window, const QList<QAction *> &actions, Qt::ToolButtonStyle style)
{
    auto *bar = new QToolBar(QCoreApplication::translate("NyWindowParts", "Werkzeugleiste"), window);
    bar->setObjectName(u"toolBar"_s);
    bar->setMovable(false);
    bar->setIconSize(QSize(24, 24));
    bar->setToolButtonStyle(style);
    bar->setContextMenuPolicy(Qt::PreventContextMenu);
    for (QAction *action : actions) {
        if (!action) {
            bar->addSeparator();
            continue;
        }
        bar->addAction(action);
        // Tool bars leave the keyboard out unless told otherwise.
        if (auto *button = qobject_cast<QToolButton *>(bar->widgetForAction(action))) {
            button->setFocusPolicy(Qt::TabFocus);
            button->setAccessibleName(action->iconText());
        }
    }
    window->addToolBar(bar);
}

void NyWindowParts::showHelp(QWidget *window, const QString &title, const QString &iconId, const QString &introduction,
    const QList<std::pair<QString, QString>> &keys)
{
    QString text = u"<p>%1</p><table>"_s.arg(introduction);
    for (const auto &[key, meaning] : keys)
        text += u"<tr><td style='padding-right: 24px'><b>%1</b></td><td>%2</td></tr>"_s.arg(key, meaning);
    text += u"</table>"_s;
    auto *box = new QMessageBox(window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setObjectName(u"help"_s);
    box->setWindowTitle(title);
    box->setIconPixmap(icon(iconId).pixmap(QSize(64, 64), window->devicePixelRatioF()));
    box->setTextFormat(Qt::RichText);
    box->setText(text);
    box->addButton(QMessageBox::Ok);
    box->open();
}

QString NyWindowParts::draggedBook(const QMimeData *data)
{
    const QString path = draggedFile(data);
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == u"nqp" || suffix == u"nqpx" ? path : QString();
}

QString NyWindowParts::draggedPhoto(const QMimeData *data)
{
    const QString path = draggedFile(data);
    return NyImageLoader::instance().supportedMediaFormats().matches(QFileInfo(path).fileName()) ? path : QString();
}

bool NyWindowParts::acceptWithoutMoving(QDropEvent *event)
{
    event->ignore();
    if (QApplication::activeModalWidget())
        return false;
    for (const Qt::DropAction action : {Qt::CopyAction, Qt::LinkAction}) {
        if (!event->possibleActions().testFlag(action))
            continue;
        event->setDropAction(action);
        event->accept();
        return true;
    }
    return false;
}

QString NyWindowParts::shownPath(const QString &path, const QWidget &window)
{
    constexpr int widestPath = 1200;
    constexpr int widestName = 300;
    const QFontMetrics metrics = window.fontMetrics();
    QStringList names = metrics.elidedText(path, Qt::ElideMiddle, widestPath).split(u'/');
    for (QString &name : names)
        name = metrics.elidedText(name, Qt::ElideMiddle, widestName);
    return names.join(u'/');
}

bool NyWindowParts::restoreGeometry(QWidget *window, const QByteArray &geometry)
{
    if (!window->restoreGeometry(geometry))
        return false;
    // Qt looks to the place only; the size may be of a desktop with one screen more.
    const QRect room = window->screen()->availableVirtualGeometry();
    if (window->size().boundedTo(room.size()) == window->size() || window->isMaximized() || window->isFullScreen())
        return true;
    window->resize(window->size().boundedTo(room.size() * 0.95));
    window->move(room.center() - window->rect().center());
    return true;
}

bool NyWindowParts::restoreGeometry(QWidget *window, const QString &key)
{
    NyConfigItem<QString> item = geometryItem(key);
    NySettings().load(item);
    return restoreGeometry(window, QByteArray::fromBase64(item.value().toLatin1()));
}

void NyWindowParts::keepGeometry(const QWidget *window, const QString &key)
{
    NyConfigItem<QString> item = geometryItem(key);
    const NySettings settings;
    settings.load(item);
    item.setValue(QString::fromLatin1(window->saveGeometry().toBase64()));
    settings.save(item);
}
