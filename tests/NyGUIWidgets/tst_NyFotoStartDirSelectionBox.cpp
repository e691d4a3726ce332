#include <NyFotoStartDirSelectionBox.h>

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace
{
struct Box
{
    Box(bool withCaption, bool typingAllowed)
        : widget(NyFotoStartDirSelectionBox::create(nullptr, withCaption, typingAllowed))
        , line(widget->findChild<QLineEdit *>())
        , button(widget->findChild<QPushButton *>())
    {
    }
    bool show() const
    {
        widget->show();
        widget->activateWindow();
        return QTest::qWaitForWindowActive(widget.get());
    }
    void write(const QString &text) const
    {
        line->setFocus();
        line->selectAll();
        QTest::keyClick(line, Qt::Key_Delete);
        QTest::keyClicks(line, text);
    }
    /** The hint about a folder that does not exist, empty while there is none. */
    QString hint() const
    {
        const QList<QLabel *> labels = widget->findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            if (!label->isHidden() && label->text().contains(u"gibt es"_s))
                return label->text();
        }
        return {};
    }
    std::unique_ptr<NyFotoStartDirSelectionBox> widget;
    QLineEdit *line;
    QPushButton *button;
};

QFileDialog *openDialog()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (auto *dialog = qobject_cast<QFileDialog *>(window); dialog && dialog->isVisible())
            return dialog;
    }
    return nullptr;
}
}

class tst_NyFotoStartDirSelectionBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void anUntouchedFolderComesBackAsItWas_data();
    void anUntouchedFolderComesBackAsItWas();
    void whatIsWritten_data();
    void whatIsWritten();
    void anEmptiedLineKeepsTheFolder();
    void missingFolder();
    void caption();
    void typingOnlyWhereAllowed();
    void locked();
    void announcements();
    void keyboardAndNames();
    void browsingTakesTheFolder();
    void browsingStartsAboveAMissingFolder();
    void cancelledBrowsing();
    void theBoxGoesWhileTheDialogIsOpen();
};

void tst_NyFotoStartDirSelectionBox::init()
{
    // The offscreen platform has one of its own about windows.
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)."_s));
}

void tst_NyFotoStartDirSelectionBox::anUntouchedFolderComesBackAsItWas_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("shown");
    QTest::newRow("path") << u"/tmp"_s << u"/tmp"_s;
    QTest::newRow("unclean") << u"/tmp//x/../"_s << u"/tmp//x/../"_s;
    QTest::newRow("file URL") << u"file:///tmp/a%20b"_s << u"/tmp/a b"_s;
    QTest::newRow("share") << u"smb://nas/Bilder"_s << u"smb://nas/Bilder"_s;
    QTest::newRow("percent") << u"/tmp/100%25 & <b>"_s << u"/tmp/100%25 & <b>"_s;
    QTest::newRow("like a URL") << u"/tmp/a://b"_s << u"/tmp/a://b"_s;
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("beyond the line") << u'/' + QString(40000, u'x') << u'/' + QString(32766, u'x');
}

void tst_NyFotoStartDirSelectionBox::anUntouchedFolderComesBackAsItWas()
{
    QFETCH(QString, folder);
    QFETCH(QString, shown);
    const Box box(false, true);
    box.widget->setup(folder, false, false);
    QCOMPARE(box.line->text(), shown);
    QCOMPARE(box.widget->folder(), folder);
}

void tst_NyFotoStartDirSelectionBox::whatIsWritten_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("folder");
    const QString home = QDir::homePath();
    QTest::newRow("path") << u"/usr/share"_s << u"/usr/share"_s;
    QTest::newRow("unclean") << u"/usr//lib/../share/"_s << u"/usr/share"_s;
    QTest::newRow("home") << u"~"_s << home;
    QTest::newRow("in the home") << u"~/Pictures"_s << QString(home + u"/Pictures"_s);
    QTest::newRow("relative") << u"Pictures/2026"_s << QString(home + u"/Pictures/2026"_s);
    QTest::newRow("file URL") << u"file:///usr/share"_s << u"/usr/share"_s;
    QTest::newRow("share") << u"smb://nas/Bilder"_s << u"smb://nas/Bilder"_s;
    QTest::newRow("blanks around") << u"  /usr/share "_s << u"/usr/share"_s;
    QTest::newRow("missing") << u"/nowhere/at all"_s << u"/nowhere/at all"_s;
}

void tst_NyFotoStartDirSelectionBox::whatIsWritten()
{
    QFETCH(QString, text);
    QFETCH(QString, folder);
    const Box box(false, true);
    box.widget->setup(u"/tmp"_s, false, false);
    box.write(text);
    QCOMPARE(box.widget->folder(), folder);
}

void tst_NyFotoStartDirSelectionBox::anEmptiedLineKeepsTheFolder()
{
    const Box box(false, true);
    box.widget->setup(u"/tmp"_s, false, false);
    box.write(u"  "_s);
    QCOMPARE(box.widget->folder(), u"/tmp"_s);
    QSignalSpy changed(box.widget.get(), &NyFotoStartDirSelectionBox::folderChanged);
    QTest::keyClick(box.line, Qt::Key_Return);
    QCOMPARE(box.line->text(), u"/tmp"_s);
    QCOMPARE(changed.size(), 0);
}

void tst_NyFotoStartDirSelectionBox::missingFolder()
{
    const QTemporaryDir folder;
    const QString missing = folder.filePath(u"gone"_s);
    const Box box(false, true);
    QVERIFY(box.show());
    box.widget->setup(missing, false, false);
    QVERIFY(!box.hint().isEmpty());
    QCOMPARE(box.line->accessibleDescription(), box.hint());
    QCOMPARE(box.widget->folder(), missing);

    box.write(folder.path());
    QTest::keyClick(box.line, Qt::Key_Return);
    QCOMPARE(box.hint(), QString());
    QCOMPARE(box.line->accessibleDescription(), QString());

    // A file is no folder.
    QFile file(folder.filePath(u"file"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    box.write(file.fileName());
    QTest::keyClick(box.line, Qt::Key_Return);
    QVERIFY(!box.hint().isEmpty());

    // Whether another machine has it is not known here.
    box.widget->setup(u"smb://nas/Bilder"_s, false, false);
    QCOMPARE(box.hint(), QString());
    box.widget->setup(QString(), false, false);
    QCOMPARE(box.hint(), QString());
}

void tst_NyFotoStartDirSelectionBox::caption()
{
    for (const bool withCaption : {false, true}) {
        const Box box(withCaption, true);
        int captions = 0;
        const QList<QLabel *> labels = box.widget->findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            if (label->buddy() == box.line && label->text() == u"Ordner mit Ihren Fotos"_s)
                ++captions;
        }
        QCOMPARE(captions, withCaption ? 1 : 0);
    }
}

void tst_NyFotoStartDirSelectionBox::typingOnlyWhereAllowed()
{
    const Box box(false, false);
    box.widget->setup(u"/tmp"_s, false, false);
    box.write(u"/usr"_s);
    QCOMPARE(box.widget->folder(), u"/tmp"_s);
    QVERIFY(box.button->isEnabled());
}

void tst_NyFotoStartDirSelectionBox::locked()
{
    const Box box(false, true);
    box.widget->setup(u"/tmp"_s, true, false);
    box.write(u"/usr"_s);
    QCOMPARE(box.widget->folder(), u"/tmp"_s);
    QVERIFY(!box.button->isEnabled());
    box.widget->setup(u"/tmp"_s, false, false);
    box.write(u"/usr"_s);
    QCOMPARE(box.widget->folder(), u"/usr"_s);
    QVERIFY(box.button->isEnabled());
}

void tst_NyFotoStartDirSelectionBox::announcements()
{
    const Box box(false, true);
    QSignalSpy changed(box.widget.get(), &NyFotoStartDirSelectionBox::folderChanged);
    box.widget->setup(u"/tmp"_s, false, false);
    QCOMPARE(changed.size(), 0);
    box.widget->setup(u"/usr"_s, false, true);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.last().constFirst().toString(), u"/usr"_s);
    box.widget->setup(u"/usr"_s, false, true);
    QCOMPARE(changed.size(), 1);

    box.write(u"/usr/share"_s);
    QCOMPARE(changed.size(), 1);
    QTest::keyClick(box.line, Qt::Key_Return);
    QCOMPARE(changed.size(), 2);
    QCOMPARE(changed.last().constFirst().toString(), u"/usr/share"_s);
    QTest::keyClick(box.line, Qt::Key_Return);
    QCOMPARE(changed.size(), 2);
}

void tst_NyFotoStartDirSelectionBox::keyboardAndNames()
{
    const Box box(false, true);
    box.widget->setup(u"/tmp"_s, false, false);
    QVERIFY(box.show());
    QCOMPARE(box.button->text(), u"&Durchsuchen…"_s);
    QVERIFY(!box.line->accessibleName().isEmpty());
    QVERIFY(!box.button->accessibleName().isEmpty());
    QVERIFY(box.line->accessibleName() != box.button->accessibleName());

    box.widget->setFocus();
    QVERIFY(box.line->hasFocus());
    QTest::keyClick(box.line, Qt::Key_Tab);
    QVERIFY(box.button->hasFocus());
    QTest::keyClick(box.button, Qt::Key_Space);
    QTRY_VERIFY(openDialog());
    openDialog()->reject();
    QTRY_VERIFY(!openDialog());
}

void tst_NyFotoStartDirSelectionBox::browsingTakesTheFolder()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(u"Meine Fotos"_s));
    const Box box(false, true);
    box.widget->setup(folder.path(), false, false);
    QVERIFY(box.show());
    QSignalSpy changed(box.widget.get(), &NyFotoStartDirSelectionBox::folderChanged);

    box.button->click();
    QTRY_VERIFY(openDialog());
    QCOMPARE(openDialog()->fileMode(), QFileDialog::Directory);
    QCOMPARE(openDialog()->directory().absolutePath(), folder.path());
    openDialog()->selectFile(folder.filePath(u"Meine Fotos"_s));
    static_cast<QDialog *>(openDialog())->accept();
    QTRY_VERIFY(!openDialog());

    QCOMPARE(box.widget->folder(), folder.filePath(u"Meine Fotos"_s));
    QCOMPARE(box.line->text(), folder.filePath(u"Meine Fotos"_s));
    QCOMPARE(changed.size(), 1);
}

void tst_NyFotoStartDirSelectionBox::browsingStartsAboveAMissingFolder()
{
    const QTemporaryDir folder;
    const Box box(false, true);
    QVERIFY(box.show());
    const QList<QPair<QString, QString>> starts{
        {folder.filePath(u"gone/and gone"_s), folder.path()},
        {u"smb://nas/Bilder"_s, QDir::homePath()},
        {QString(), QDir::homePath()},
    };
    for (const auto &[chosen, start] : starts) {
        box.widget->setup(chosen, false, false);
        box.button->click();
        QTRY_VERIFY(openDialog());
        QCOMPARE(openDialog()->directory().absolutePath(), start);
        openDialog()->reject();
        QTRY_VERIFY(!openDialog());
    }
}

void tst_NyFotoStartDirSelectionBox::cancelledBrowsing()
{
    const Box box(false, true);
    box.widget->setup(u"/usr"_s, false, false);
    QVERIFY(box.show());
    QSignalSpy changed(box.widget.get(), &NyFotoStartDirSelectionBox::folderChanged);
    box.button->click();
    QTRY_VERIFY(openDialog());
    const QPointer<QFileDialog> dialog = openDialog();
    dialog->reject();
    QTRY_VERIFY(!dialog);
    QCOMPARE(box.widget->folder(), u"/usr"_s);
    QCOMPARE(changed.size(), 0);
}

void tst_NyFotoStartDirSelectionBox::theBoxGoesWhileTheDialogIsOpen()
{
    Box box(false, true);
    box.widget->setup(u"/usr"_s, false, false);
    QVERIFY(box.show());
    box.button->click();
    QTRY_VERIFY(openDialog());
    const QPointer<QFileDialog> dialog = openDialog();
    box.widget.reset();
    QVERIFY(!dialog);
}

QTEST_MAIN(tst_NyFotoStartDirSelectionBox)
#include "tst_NyFotoStartDirSelectionBox.moc"
