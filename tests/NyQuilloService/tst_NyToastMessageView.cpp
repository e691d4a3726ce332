#include <NyToastMessageView.h>

#include <QApplication>
#include <QCursor>
#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPropertyAnimation>
#include <QScreen>
#include <QTest>
#include <QWindow>

using namespace Qt::Literals::StringLiterals;

/** The window on two screens: one of 1280 x 800 at the origin, one of 1024 x 768 beside and below it. */
class tst_NyToastMessageView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void newWindow();
    void place_data();
    void place();
    void fadesInOnce();
    void opacityThatIsNotZeroStays();
    void painted_data();
    void painted();
    void roundedRect();
    void maskFollowsTheSize();
    void drag();
    void otherButtonsDoNotDrag();
};

void tst_NyToastMessageView::init()
{
    // The offscreen platform warns of what it cannot do.
    QTest::failOnWarning(QRegularExpression(u"^(?!This plugin does not support)"_s));
    QCOMPARE(QGuiApplication::screens().size(), 2);
}

void tst_NyToastMessageView::newWindow()
{
    const NyToastMessageView view;
    QCOMPARE(view.parent(), nullptr);
    QVERIFY(view.windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(view.windowFlags().testFlag(Qt::WindowSystemMenuHint));
    QVERIFY(view.testAttribute(Qt::WA_TranslucentBackground));
    QVERIFY(view.testAttribute(Qt::WA_NativeWindow));
    QCOMPARE(view.windowOpacity(), 0.0);
    QVERIFY(!view.isVisible());
}

void tst_NyToastMessageView::place_data()
{
    QTest::addColumn<QPoint>("pointer");
    QTest::addColumn<QPoint>("topRight");
    // The point behind the window's right edge and on its top edge: 15 px inside the screen.
    QTest::newRow("first screen") << QPoint(100, 700) << QPoint(1280 - 15, 15);
    QTest::newRow("second screen") << QPoint(1500, 300) << QPoint(1280 + 1024 - 15, 200 + 15);
    QTest::newRow("between the screens") << QPoint(1500, 50) << QPoint(1280 - 15, 15);
}

void tst_NyToastMessageView::place()
{
    QFETCH(QPoint, pointer);
    QFETCH(QPoint, topRight);
    QCursor::setPos(pointer);
    QCOMPARE(QCursor::pos(), pointer);
    NyToastMessageView view;
    view.resize(300, 200);
    view.show();
    QCOMPARE(view.size(), QSize(300, 200));
    QCOMPARE(view.pos() + QPoint(300, 0), topRight);
    QCOMPARE(view.windowHandle()->screen(),
        QGuiApplication::screenAt(topRight) ? QGuiApplication::screenAt(topRight) : QGuiApplication::primaryScreen());
}

void tst_NyToastMessageView::fadesInOnce()
{
    QCursor::setPos(100, 100);
    NyToastMessageView view;
    view.resize(300, 200);
    view.show();
    const QList<QPropertyAnimation *> animations = view.findChildren<QPropertyAnimation *>();
    QCOMPARE(animations.size(), 1);
    QPropertyAnimation *animation = animations.first();
    QCOMPARE(animation->targetObject(), &view);
    QCOMPARE(animation->propertyName(), QByteArray("windowOpacity"));
    QCOMPARE(animation->duration(), 386);
    QCOMPARE(animation->easingCurve().type(), QEasingCurve::InQuad);
    QCOMPARE(animation->startValue().toDouble(), 0.0);
    QCOMPARE(animation->endValue().toDouble(), 1.0);
    QCOMPARE(animation->state(), QAbstractAnimation::Running);
    // Half of the time is a quarter of the way.
    animation->setCurrentTime(193);
    QVERIFY2(qAbs(view.windowOpacity() - 0.25) < 0.02, qPrintable(QString::number(view.windowOpacity())));
    QTRY_COMPARE(view.windowOpacity(), 1.0);
    QTRY_VERIFY(view.findChildren<QPropertyAnimation *>().isEmpty());

    view.hide();
    view.show();
    QVERIFY(view.findChildren<QPropertyAnimation *>().isEmpty());
    QCOMPARE(view.windowOpacity(), 1.0);
}

void tst_NyToastMessageView::opacityThatIsNotZeroStays()
{
    NyToastMessageView view;
    // Windows know 255 steps.
    view.setWindowOpacity(0.2);
    view.show();
    QVERIFY(view.findChildren<QPropertyAnimation *>().isEmpty());
    QCOMPARE(view.windowOpacity(), 0.2);
}

void tst_NyToastMessageView::painted_data()
{
    QTest::addColumn<QColor>("color");
    QTest::newRow("bright") << QColor(0xef, 0xef, 0xef);
    QTest::newRow("coloured") << QColor(0x20, 0x90, 0x40);
}

void tst_NyToastMessageView::painted()
{
    QFETCH(QColor, color);
    NyToastMessageView view;
    QPalette palette = view.palette();
    palette.setColor(QPalette::Window, color);
    view.setPalette(palette);
    view.resize(120, 80);
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    // render() does not paint a translucent background; the expected picture is drawn with the figures themselves.
    QImage expected(view.size(), QImage::Format_ARGB32_Premultiplied);
    expected.fill(Qt::transparent);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(u"#444444"_s), 1.1, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    painter.setBrush(color);
    painter.drawRoundedRect(QRectF(2.0, 2.0, 116.0, 76.0), 10.0, 10.0, Qt::AbsoluteSize);
    painter.end();
    // The mask clips what render() paints, the reference is not clipped; both agree inside it.
    QImage clipped(expected.size(), expected.format());
    clipped.fill(Qt::transparent);
    QPainter clipper(&clipped);
    clipper.setClipRegion(view.mask());
    clipper.drawImage(0, 0, expected);
    clipper.end();
    QCOMPARE(image.pixelColor(60, 40), color);
    QCOMPARE(qAlpha(image.pixel(60, 0)), 0);
    QCOMPARE(image, clipped);
}

void tst_NyToastMessageView::roundedRect()
{
    NyToastMessageView view;
    view.resize(120, 80);
    QPainterPath expected;
    expected.addRoundedRect(0, 0, 120, 80, 10.0, 10.0, Qt::AbsoluteSize);
    QCOMPARE(view.roundedRect(), expected);
}

void tst_NyToastMessageView::maskFollowsTheSize()
{
    NyToastMessageView view;
    view.show();
    for (const QSize &size : {QSize(120, 80), QSize(400, 300)}) {
        view.resize(size);
        QCOMPARE(view.mask(), QRegion(view.roundedRect().toFillPolygon(QTransform()).toPolygon(), Qt::OddEvenFill));
        QVERIFY(!view.mask().contains(QPoint(0, 0)));
        QVERIFY(!view.mask().contains(QPoint(size.width() - 1, size.height() - 1)));
        QVERIFY(view.mask().contains(QPoint(size.width() / 2, 0)));
        QVERIFY(view.mask().contains(QPoint(0, size.height() / 2)));
    }
}

void tst_NyToastMessageView::drag()
{
    QCursor::setPos(100, 100);
    NyToastMessageView view;
    view.resize(300, 200);
    view.show();
    const QPoint start = view.pos();
    QTest::mousePress(&view, Qt::LeftButton, Qt::NoModifier, QPoint(40, 30));
    QCOMPARE(view.pos(), start);
    QMouseEvent move(QEvent::MouseMove, QPointF(0, 0), QPointF(500, 400), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &move);
    QVERIFY(move.isAccepted());
    QCOMPARE(view.pos(), QPoint(500 - 40, 400 - 30));
    QMouseEvent moveAgain(
        QEvent::MouseMove, QPointF(0, 0), QPointF(1400, 500), Qt::NoButton, Qt::LeftButton | Qt::RightButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &moveAgain);
    QCOMPARE(view.pos(), QPoint(1400 - 40, 500 - 30));
    // Where it is dragged to is not remembered.
    view.hide();
    view.show();
    QCOMPARE(view.pos(), start);
}

void tst_NyToastMessageView::otherButtonsDoNotDrag()
{
    NyToastMessageView view;
    view.resize(300, 200);
    view.show();
    const QPoint start = view.pos();
    QMouseEvent press(
        QEvent::MouseButtonPress, QPointF(40, 30), QPointF(start + QPoint(40, 30)), Qt::RightButton, Qt::RightButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &press);
    QVERIFY(!press.isAccepted());
    QMouseEvent move(QEvent::MouseMove, QPointF(60, 60), QPointF(500, 400), Qt::NoButton, Qt::RightButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &move);
    QVERIFY(!move.isAccepted());
    QCOMPARE(view.pos(), start);
}

int main(int argc, char *argv[])
{
    const QString path = QDir::tempPath() + u"/screens.json"_s;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("no file for the screens");
    file.write(R"({"screens": [
        {"name": "first", "x": 0, "y": 0, "width": 1280, "height": 800, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
        {"name": "second", "x": 1280, "y": 200, "width": 1024, "height": 768, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    file.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(path));
    QApplication application(argc, argv);
    tst_NyToastMessageView test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_NyToastMessageView.moc"
