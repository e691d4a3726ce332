#include "TestSupport.h"

#include <NyAlbumaWindows.h>
#include <NyBookProjectFile.h>
#include <NyJsonParser.h>
#include <NyPreferencesWindow.h>
#include <NyRequestQuilloService.h>
#include <NySystemTrayService.h>
#include <NyToastMessage.h>
#include <NyToastMessageView.h>
#include <NyToastMessagingQt.h>
#include <NyTranslation.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::Literals::StringLiterals;

/** The windows of both programs, as they stand on the screen in each language. */
class tst_TranslatedWindows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void textsChangeWithTheLanguage_data() { windowRows(); }
    void textsChangeWithTheLanguage();
    void accessKeysDoNotClash_data();
    void accessKeysDoNotClash();
    void clashesAreFound();

private:
    static void windowRows();
    /** Leaves one proposal in the folder, or none. */
    void putProposal(bool isThere) const;
    /** Gives what `inspect` makes of the named window. */
    QStringList inspected(const QString &window, const std::function<QStringList(QWidget *)> &inspect);
    /** Inspects and deletes the only window of its kind. */
    template <class Window>
    static QStringList inspectedNew(const std::function<QStringList(QWidget *)> &inspect);
    QStringList textsOf(const QString &window, const QString &language);

    QTemporaryDir m_folder;
    QString m_book;
};

namespace
{

bool hasWords(const QString &text)
{
    static const QRegularExpression word(u"\\p{L}{2}"_s);
    return word.match(text).hasMatch();
}

/** What people read in a window or hear of it, hidden parts and closed menus with it. */
QStringList shownTexts(QWidget *window)
{
    QStringList texts{window->windowTitle()};
    QWidgetList widgets = window->findChildren<QWidget *>();
    widgets.prepend(window);
    for (const QWidget *widget : std::as_const(widgets)) {
        texts << widget->toolTip() << widget->statusTip() << widget->accessibleName() << widget->accessibleDescription();
        if (const auto *label = qobject_cast<const QLabel *>(widget))
            texts << label->text();
        else if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
            texts << button->text();
        else if (const auto *group = qobject_cast<const QGroupBox *>(widget))
            texts << group->title();
        else if (const auto *menu = qobject_cast<const QMenu *>(widget))
            texts << menu->title();
        else if (const auto *line = qobject_cast<const QLineEdit *>(widget))
            texts << line->placeholderText();
        else if (const auto *box = qobject_cast<const QComboBox *>(widget)) {
            for (int i = 0; i < box->count(); ++i)
                texts << box->itemText(i);
        } else if (const auto *view = qobject_cast<const QAbstractItemView *>(widget); view && view->model()) {
            for (int row = 0; row < view->model()->rowCount(); ++row) {
                for (const int role :
                    {int(Qt::DisplayRole), int(Qt::ToolTipRole), int(Qt::AccessibleTextRole), int(Qt::AccessibleDescriptionRole)})
                    texts << view->model()->index(row, 0).data(role).toString();
            }
        }
        const QList<QAction *> actions = widget->actions();
        for (const QAction *action : actions)
            texts << action->text() << action->toolTip() << action->statusTip();
    }
    texts.removeDuplicates();
    texts.removeIf([](const QString &text) { return !hasWords(text); });
    return texts;
}

/** A key and the text that tells of it. */
using AccessKey = std::pair<QKeySequence, QString>;

AccessKey accessKey(const QString &text)
{
    return {QKeySequence::mnemonic(text), text};
}

void addClashes(const QString &place, const QList<AccessKey> &keys, QStringList &clashes)
{
    QHash<QKeySequence, QString> owners;
    for (const auto &[key, text] : keys) {
        if (key.isEmpty())
            continue;
        if (owners.contains(key))
            clashes.append(u"%1: \"%2\" and \"%3\""_s.arg(place, owners.value(key), text));
        owners.insert(key, text);
    }
}

/** Pairs of entries of one menu, or of controls of one window, that answer to the same key. */
QStringList clashesOf(QWidget *window)
{
    QStringList clashes;
    QList<AccessKey> own;
    QWidgetList widgets = window->findChildren<QWidget *>();
    widgets.prepend(window);
    for (const QWidget *widget : std::as_const(widgets)) {
        QList<AccessKey> entries;
        const QList<QAction *> actions = widget->actions();
        for (const QAction *action : actions) {
            if (action->isVisible() && !action->isSeparator())
                entries.append(accessKey(action->text()));
        }
        if (const auto *menu = qobject_cast<const QMenu *>(widget))
            addClashes(u"menu \"%1\""_s.arg(menu->title()), entries, clashes);
        else if (qobject_cast<const QMenuBar *>(widget))
            own.append(entries);
        else if (const auto *button = qobject_cast<const QAbstractButton *>(widget))
            own.append({button->shortcut(), button->text()});
        else if (const auto *label = qobject_cast<const QLabel *>(widget); label && label->buddy())
            own.append(accessKey(label->text()));
        else if (const auto *group = qobject_cast<const QGroupBox *>(widget))
            own.append(accessKey(group->title()));
    }
    addClashes(u"window"_s, own, clashes);
    return clashes;
}

}

void tst_TranslatedWindows::initTestCase()
{
    m_book = m_folder.filePath(u"4711.nqp"_s);
    NyBookProject project;
    project.title = u"4711"_s;
    project.pages = QList<NyBookPage>(4);
    QVERIFY(TestSupport::writeFile(m_book, NyBookProjectFile::toJson(project)));
}

void tst_TranslatedWindows::cleanup()
{
    NyTranslation::install({u"C"_s});
}

void tst_TranslatedWindows::windowRows()
{
    QTest::addColumn<QString>("window");
    for (const char *window :
        {"start", "proposals", "help", "about", "book", "broken book", "preferences", "tray", "toast with buttons", "toast", "question"})
        QTest::newRow(window) << QString::fromLatin1(window);
}

void tst_TranslatedWindows::putProposal(bool isThere) const
{
    const QString project = TestSupport::dataFolder() + u"/proposals/4711.nqp"_s;
    for (const auto &suffix : {QString(), u".json"_s})
        QFile::remove(project + suffix);
    if (!isThere)
        return;
    QVERIFY(TestSupport::writeFile(project, TestSupport::readFile(m_book)));
    const QJsonObject description{{u"headline"_s, u"4711"_s}, {u"photoCount"_s, 60}, {u"pageCount"_s, 1}, {u"dateFrom"_s, u"2024-07-12"_s},
        {u"dateTo"_s, u"2024-07-14"_s}, {u"creationDateEpoch"_s, 1790000000}, {u"menu"_s, NyJsonParser::createMenuJson(u"4711.nqp"_s)}};
    QVERIFY(TestSupport::writeFile(project + u".json"_s, QJsonDocument(description).toJson()));
}

QStringList tst_TranslatedWindows::inspected(const QString &window, const std::function<QStringList(QWidget *)> &inspect)
{
    if (window == u"preferences"_s) {
        NyPreferencesWindow preferences;
        return inspect(&preferences);
    }
    if (window == u"question"_s) {
        QStringList result;
        QTimer::singleShot(0, this, [&] {
            QWidget *box = QApplication::activeModalWidget();
            QVERIFY(box);
            result = inspect(box);
            box->close();
        });
        NyRequestQuilloService().askDeleteBookProposal(QString());
        return result;
    }
    if (window == u"tray"_s) {
        NySystemTrayService tray;
        tray.show();
        return inspectedNew<QMenu>(inspect);
    }
    if (window.startsWith(u"toast"_s)) {
        NyToastMessagingQt toasts(nullptr);
        toasts.sendToastMessage(NyToastMessage(u"4711"_s, u"4712"_s, QFileInfo(), u"4713"_s, window != u"toast"_s));
        return inspectedNew<NyToastMessageView>(inspect);
    }
    NyAlbumaWindows windows(NyLoadWarnings::Suppress);
    if (window == u"book"_s) {
        windows.openProject(m_book);
        return QTest::qWaitFor([&] { return windows.bookWindow(); }) ? inspect(windows.bookWindow()) : QStringList();
    }
    putProposal(window == u"proposals"_s);
    if (window == u"broken book"_s)
        windows.openProject(m_folder.filePath(u"4712.nqp"_s));
    else
        windows.showStart();
    if (!QTest::qWaitFor([&] { return windows.startWindow() && windows.startWindow()->isUpToDate(); }))
        return {};
    QWidget *start = windows.startWindow();
    if (window != u"help"_s && window != u"about"_s)
        return inspect(start);
    const QList<QAction *> entries = windows.startWindow()->menuBar()->actions().constLast()->menu()->actions();
    (window == u"help"_s ? entries.constFirst() : entries.constLast())->trigger();
    return inspect(start->findChild<QMessageBox *>());
}

template <class Window>
QStringList tst_TranslatedWindows::inspectedNew(const std::function<QStringList(QWidget *)> &inspect)
{
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (!qobject_cast<Window *>(widget))
            continue;
        const QStringList result = inspect(widget);
        delete widget;
        return result;
    }
    return {};
}

QStringList tst_TranslatedWindows::textsOf(const QString &window, const QString &language)
{
    NyTranslation::install({language});
    return inspected(window, shownTexts);
}

void tst_TranslatedWindows::textsChangeWithTheLanguage()
{
    QFETCH(QString, window);
    // Names, which are the same everywhere.
    static const QRegularExpression names(u"VELMORA|ALBUMA|BILDARA|QUILLO|DEBUG|&?OK|%1|Qt|/\\S*"_s);
    const QStringList german = textsOf(window, u"de"_s);
    const QStringList english = textsOf(window, u"en"_s);
    QVERIFY(!german.isEmpty());
    QStringList same;
    for (const QString &text : english) {
        if (german.contains(text) && hasWords(QString(text).remove(names)))
            same.append(text);
    }
    QVERIFY(!english.isEmpty());
    QVERIFY2(same.isEmpty(), qPrintable(same.join(u'\n')));
}

void tst_TranslatedWindows::accessKeysDoNotClash_data()
{
    QTest::addColumn<QString>("window");
    QTest::addColumn<QString>("language");
    for (const QString &language : NyTranslation::languages()) {
        for (const char *window : {"start", "proposals", "book", "preferences", "tray", "toast with buttons", "question"})
            QTest::addRow("%s, %s", window, qPrintable(language)) << QString::fromLatin1(window) << language;
    }
}

void tst_TranslatedWindows::accessKeysDoNotClash()
{
    QFETCH(QString, window);
    QFETCH(QString, language);
    NyTranslation::install({language});
    const QStringList clashes = inspected(window, clashesOf);
    QVERIFY2(clashes.isEmpty(), qPrintable(clashes.join(u'\n')));
}

void tst_TranslatedWindows::clashesAreFound()
{
    QMainWindow window;
    QMenu *file = window.menuBar()->addMenu(u"&File"_s);
    file->addAction(u"&Open"_s);
    file->addAction(u"&Options"_s);
    file->addAction(u"&File && more"_s);
    auto *find = new QPushButton(u"&Find"_s, &window);
    Q_UNUSED(find)
    QCOMPARE(clashesOf(&window), (QStringList{u"menu \"&File\": \"&Open\" and \"&Options\""_s, u"window: \"&File\" and \"&Find\""_s}));
}

QTEST_MAIN(tst_TranslatedWindows)
#include "tst_TranslatedWindows.moc"
