#include "ToastWindow.h"

#include <NyToastMessage.h>
#include <NyToastMessagingQt.h>

#include <QDir>
#include <QImage>
#include <QMetaMethod>
#include <QProcess>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class tst_NyToastMessagingQt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void grid();
    void withButtons();
    void withoutButtons();
    void show();
    void reschedule();
    void close_data();
    void close();
    void image_data();
    void image();
    void newestIdAnswers();
    void windowsDoNotBelongToTheBackend();
    void slotsInTheirOrder();
    void draggedAndPressedWithTheMouse();

private:
    static bool useMouse(const QStringList &arguments) { return QProcess::execute(u"xdotool"_s, arguments) == 0; }
    static NyToastMessage message(bool hasButtons, const QString &id = u"a.nqp"_s, const QFileInfo &image = QFileInfo())
    {
        return NyToastMessage(u"VELMORA ALBUMA"_s, u"Ihr neuer Vorschlag"_s, image, id, hasButtons);
    }
    static NyToastMessageView *onlyWindow()
    {
        const QList<NyToastMessageView *> views = ToastWindow::all();
        return views.size() == 1 ? views.first() : nullptr;
    }
};

static const char *const CSS
    = "QPushButton {background-color: #c30c15;border: 1px solid #c30c15;border-radius: 4px;color: #ffffff;font-weight: Bold;margin-left: "
      "4px;margin-right: 2px;min-height: 30px;padding-left: 6px;padding-right: 6px;}";
static const char *const GRAY_CSS
    = "QPushButton {background-color: #ffffff;border-left: 1px solid #d8d8d8;border-top: 1px solid #dddddd;border-right: 1px solid "
      "#d8d8d8;border-bottom: 1px solid #b3b3b3;border-radius: 4px;color: #262626;padding-top: 4px;padding-left: 8px;padding-right: "
      "8px;padding-bottom: 4px;icon-size: 24px;margin-left: 4px;margin-top: 6px;margin-right: 4px;margin-bottom: 6px;min-height: 24px;}";

void tst_NyToastMessagingQt::init()
{
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QVERIFY(ToastWindow::all().isEmpty());
}

void tst_NyToastMessagingQt::cleanup()
{
    qDeleteAll(ToastWindow::all());
}

void tst_NyToastMessagingQt::grid()
{
    NyToastMessagingQt messaging(nullptr);
    messaging.sendToastMessage(message(true));
    const NyToastMessageView *view = onlyWindow();
    QVERIFY(view);
    QCOMPARE(view->parent(), nullptr);
    QVERIFY(view->isVisible());
    QVERIFY(view->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY(view->windowFlags().testFlag(Qt::FramelessWindowHint));
    auto *grid = qobject_cast<QGridLayout *>(view->layout());
    QVERIFY(grid);
    QCOMPARE(grid->count(), 6);

    struct Cell
    {
        QWidget *widget;
        int row, column, rowSpan, columnSpan;
        Qt::Alignment alignment;
    };
    const QList<Cell> expected{{ToastWindow::closeButton(view), 0, 2, 1, 1, Qt::AlignRight}, {ToastWindow::title(view), 0, 0, 1, 2, {}},
        {ToastWindow::description(view), 1, 0, 1, 3, {}}, {ToastWindow::image(view), 2, 0, 1, 3, Qt::AlignCenter},
        {ToastWindow::mainButton(view), 3, 2, 1, 1, Qt::AlignRight}, {ToastWindow::secondaryButton(view), 3, 1, 1, 1, Qt::AlignRight}};
    for (qsizetype i = 0; i < expected.size(); ++i) {
        const Cell &cell = expected.at(i);
        QVERIFY2(cell.widget, qPrintable(QString::number(i)));
        QCOMPARE(cell.widget->parentWidget(), view);
        int row, column, rowSpan, columnSpan;
        grid->getItemPosition(grid->indexOf(cell.widget), &row, &column, &rowSpan, &columnSpan);
        QCOMPARE((QList<int>{row, column, rowSpan, columnSpan}), (QList<int>{cell.row, cell.column, cell.rowSpan, cell.columnSpan}));
        QCOMPARE(grid->itemAt(grid->indexOf(cell.widget))->alignment(), cell.alignment);
    }
    QCOMPARE(grid->columnStretch(0), 7);
    QCOMPARE(grid->columnStretch(1), 0);
    QCOMPARE(grid->columnStretch(2), 0);
    QCOMPARE(ToastWindow::title(view)->text(), u"VELMORA ALBUMA"_s);
    QCOMPARE(ToastWindow::title(view)->styleSheet(), u"QLabel {color: #262626;font-weight: Bold;}"_s);
    QCOMPARE(ToastWindow::description(view)->text(), u"Ihr neuer Vorschlag"_s);
    QCOMPARE(ToastWindow::description(view)->styleSheet(), u"QLabel {color: #262626;}"_s);
    QVERIFY(!ToastWindow::closeButton(view)->icon().isNull());
}

void tst_NyToastMessagingQt::withButtons()
{
    NyToastMessagingQt messaging(nullptr);
    messaging.sendToastMessage(message(true));
    QVERIFY(onlyWindow());
    const QPushButton *mainButton = ToastWindow::mainButton(onlyWindow());
    const QPushButton *secondaryButton = ToastWindow::secondaryButton(onlyWindow());
    QVERIFY(mainButton->isVisible());
    QVERIFY(secondaryButton->isVisible());
    QCOMPARE(mainButton->text(), u"Jetzt anschauen"_s);
    QCOMPARE(secondaryButton->text(), u"Später anschauen"_s);
    QCOMPARE(mainButton->styleSheet(), QLatin1String(CSS));
    QCOMPARE(secondaryButton->styleSheet(), QLatin1String(GRAY_CSS));
}

void tst_NyToastMessagingQt::withoutButtons()
{
    NyToastMessagingQt messaging(nullptr);
    QSignalSpy shown(&messaging, &NyToastMessagingInterface::showProjectRequested);
    QSignalSpy rescheduled(&messaging, &NyToastMessagingInterface::rescheduleToastRequested);
    messaging.sendToastMessage(message(false));
    const QPointer<NyToastMessageView> view = onlyWindow();
    QVERIFY(view);
    QVERIFY(!ToastWindow::mainButton(view)->isVisible());
    QPushButton *button = ToastWindow::secondaryButton(view);
    QVERIFY(button->isVisible());
    QCOMPARE(button->text(), u"Schließen"_s);
    QCOMPARE(button->styleSheet(), QLatin1String(CSS));
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_VERIFY(!view);
    QCOMPARE(shown.size(), 0);
    QCOMPARE(rescheduled.size(), 0);
}

void tst_NyToastMessagingQt::show()
{
    NyToastMessagingQt messaging(nullptr);
    QSignalSpy shown(&messaging, &NyToastMessagingInterface::showProjectRequested);
    QSignalSpy rescheduled(&messaging, &NyToastMessagingInterface::rescheduleToastRequested);
    messaging.sendToastMessage(message(true, u"Anna & Tom: 1 %1.nqp"_s));
    const QPointer<NyToastMessageView> view = onlyWindow();
    QVERIFY(view);
    QTest::mouseClick(ToastWindow::mainButton(view), Qt::LeftButton);
    QCOMPARE(shown, (QList<QVariantList>{{u"Anna & Tom: 1 %1.nqp"_s}}));
    QTRY_VERIFY(!view);
    QCOMPARE(rescheduled.size(), 0);
}

void tst_NyToastMessagingQt::reschedule()
{
    NyToastMessagingQt messaging(nullptr);
    QSignalSpy shown(&messaging, &NyToastMessagingInterface::showProjectRequested);
    QSignalSpy rescheduled(&messaging, &NyToastMessagingInterface::rescheduleToastRequested);
    messaging.sendToastMessage(message(true));
    const QPointer<NyToastMessageView> view = onlyWindow();
    QVERIFY(view);
    QTest::mouseClick(ToastWindow::secondaryButton(view), Qt::LeftButton);
    QCOMPARE(rescheduled, (QList<QVariantList>{{u"a.nqp"_s}}));
    QTRY_VERIFY(!view);
    QCOMPARE(shown.size(), 0);
}

void tst_NyToastMessagingQt::close_data()
{
    QTest::addColumn<bool>("hasButtons");
    QTest::newRow("with buttons") << true;
    QTest::newRow("without buttons") << false;
}

void tst_NyToastMessagingQt::close()
{
    QFETCH(bool, hasButtons);
    NyToastMessagingQt messaging(nullptr);
    QSignalSpy shown(&messaging, &NyToastMessagingInterface::showProjectRequested);
    QSignalSpy rescheduled(&messaging, &NyToastMessagingInterface::rescheduleToastRequested);
    messaging.sendToastMessage(message(hasButtons));
    const QPointer<NyToastMessageView> view = onlyWindow();
    QVERIFY(view);
    QTest::mouseClick(ToastWindow::closeButton(view), Qt::LeftButton);
    QTRY_VERIFY(!view);
    QCOMPARE(shown.size(), 0);
    QCOMPARE(rescheduled.size(), 0);
}

void tst_NyToastMessagingQt::image_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<bool>("isPicture");
    QTest::newRow("picture") << u"a b & ü %1.png"_s << true;
    QTest::newRow("missing") << u"missing.png"_s << false;
    QTest::newRow("no picture") << u"text.png"_s << false;
    QTest::newRow("folder") << u"."_s << false;
    QTest::newRow("empty") << QString() << false;
}

void tst_NyToastMessagingQt::image()
{
    QFETCH(QString, fileName);
    QFETCH(bool, isPicture);
    QImage picture(480, 320, QImage::Format_RGB32);
    picture.fill(Qt::darkGreen);
    QVERIFY(picture.save(QDir::tempPath() + u"/a b & ü %1.png"_s));
    QFile text(QDir::tempPath() + u"/text.png"_s);
    QVERIFY(text.open(QIODevice::WriteOnly) && text.write("no picture") > 0);
    text.close();

    NyToastMessagingQt messaging(nullptr);
    messaging.sendToastMessage(message(true, u"a.nqp"_s, fileName.isEmpty() ? QFileInfo() : QFileInfo(QDir::tempPath() + u'/' + fileName)));
    const NyToastMessageView *view = onlyWindow();
    QVERIFY(view);
    QVERIFY(view->isVisible());
    const QLabel *label = ToastWindow::image(view);
    QVERIFY(label->text().isEmpty());
    if (isPicture) {
        QCOMPARE(label->pixmap().toImage().convertToFormat(QImage::Format_RGB32), picture);
        QVERIFY(view->width() >= 480 && view->height() >= 320);
    } else {
        QVERIFY(label->pixmap().isNull());
        QVERIFY(view->height() < 320);
    }
}

void tst_NyToastMessagingQt::newestIdAnswers()
{
    NyToastMessagingQt messaging(nullptr);
    QSignalSpy shown(&messaging, &NyToastMessagingInterface::showProjectRequested);
    QSignalSpy rescheduled(&messaging, &NyToastMessagingInterface::rescheduleToastRequested);
    messaging.sendToastMessage(message(true, u"alt.nqp"_s));
    const QPointer<NyToastMessageView> old = onlyWindow();
    QVERIFY(old);
    messaging.sendToastMessage(message(true, u"neu.nqp"_s));
    QCOMPARE(ToastWindow::all().size(), 2);
    QTest::mouseClick(ToastWindow::mainButton(old), Qt::LeftButton);
    QCOMPARE(shown, (QList<QVariantList>{{u"neu.nqp"_s}}));
    QTRY_VERIFY(!old);
    QVERIFY(onlyWindow());

    messaging.sendToastMessage(message(false, QString()));
    QList<NyToastMessageView *> views = ToastWindow::all();
    QCOMPARE(views.size(), 2);
    for (const NyToastMessageView *view : views) {
        if (ToastWindow::mainButton(view)->isVisible())
            QTest::mouseClick(ToastWindow::secondaryButton(view), Qt::LeftButton);
    }
    QCOMPARE(rescheduled, (QList<QVariantList>{{QString()}}));
}

void tst_NyToastMessagingQt::windowsDoNotBelongToTheBackend()
{
    QPointer<NyToastMessageView> view;
    {
        NyToastMessagingQt messaging(nullptr);
        messaging.sendToastMessage(message(true));
        view = onlyWindow();
    }
    QVERIFY(view);
    QVERIFY(view->isVisible());
    QTest::mouseClick(ToastWindow::mainButton(view), Qt::LeftButton);
    QTRY_VERIFY(!view);
}

void tst_NyToastMessagingQt::slotsInTheirOrder()
{
    const QMetaObject &meta = NyToastMessagingQt::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        methods.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    QCOMPARE(methods, (QStringList{u"onShowClicked()"_s, u"onRescheduleClicked()"_s}));
}

void tst_NyToastMessagingQt::draggedAndPressedWithTheMouse()
{
    NyToastMessagingQt messaging(nullptr);
    QSignalSpy shown(&messaging, &NyToastMessagingInterface::showProjectRequested);
    messaging.sendToastMessage(message(true));
    const QPointer<NyToastMessageView> view = onlyWindow();
    QVERIFY(view);
    QTRY_COMPARE(view->windowOpacity(), 1.0);
    const NyToastMessageView *const window = view;
    QVERIFY(window);
    const QRect screen = window->screen()->availableGeometry();
    QCOMPARE(window->geometry().top(), 15);
    QCOMPARE(window->x() + window->width(), screen.width() - 15);

    const QPoint start = window->pos();
    const QPoint hold = window->mapToGlobal(QPoint(window->width() / 2, window->height() - 4));
    const auto place = [](const QPoint &point) {
        return QStringList{u"mousemove"_s, QString::number(point.x()), QString::number(point.y())};
    };
    const QPoint way(-300, 200);
    QVERIFY(useMouse(place(hold) + QStringList{u"mousedown"_s, u"1"_s}));
    QVERIFY(useMouse(place(hold + way / 2)));
    QVERIFY(useMouse(place(hold + way) + QStringList{u"mouseup"_s, u"1"_s}));
    QTRY_COMPARE(window->pos(), start + way);

    const QPushButton *button = ToastWindow::mainButton(view);
    QVERIFY(useMouse(place(button->mapToGlobal(button->rect().center())) + QStringList{u"click"_s, u"1"_s}));
    QTRY_COMPARE(shown.size(), 1);
    QTRY_VERIFY(!view);
}

QTEST_MAIN(tst_NyToastMessagingQt)
#include "tst_NyToastMessagingQt.moc"
