#include <QAccessible>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHelpEvent>
#include <QLineEdit>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QPointingDevice>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyleHints>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>

#include "NySpreadView.h"
#include "PaintedPictures.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

constexpr int Cover = NyBookPlace::Cover;
const QSize WindowSize(1000, 450);

bool areClose(const QPointF &a, const QPointF &b, double distance)
{
    return QLineF(a, b).length() <= distance;
}

bool areAlike(const QColor &a, const QColor &b)
{
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) < 40;
}

/** Moves, presses and releases like a pointing device, with times of its own. */
class Pointer
{
public:
    explicit Pointer(NySpreadView &view)
        : m_view(view)
    {
    }

    void rest() { m_timeMs += 10 * quint64(QGuiApplication::styleHints()->mouseDoubleClickInterval()); }
    void press(const QPointF &point, Qt::MouseButton button = Qt::LeftButton) { send(QEvent::MouseButtonPress, point, button, button); }
    void release(const QPointF &point, Qt::MouseButton button = Qt::LeftButton)
    {
        send(QEvent::MouseButtonRelease, point, button, Qt::NoButton);
    }
    void move(const QPointF &point, Qt::MouseButtons buttons = Qt::LeftButton) { send(QEvent::MouseMove, point, Qt::NoButton, buttons); }
    void click(const QPointF &point)
    {
        rest();
        press(point);
        release(point);
    }
    void doubleClick(const QPointF &point)
    {
        click(point);
        send(QEvent::MouseButtonDblClick, point, Qt::LeftButton, Qt::LeftButton);
        release(point);
    }
    void drag(const QPointF &from, const QPointF &to, Qt::MouseButton button = Qt::LeftButton)
    {
        rest();
        press(from, button);
        for (int step = 1; step <= 10; ++step)
            move(from + (to - from) * step / 10.0, button);
        release(to, button);
    }
    void wheel(const QPointF &point, const QPoint &angle, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QWheelEvent event(point, m_view.viewport()->mapToGlobal(point), QPoint(), angle, Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(m_view.viewport(), &event);
    }
    bool help(const QPoint &point)
    {
        QHelpEvent event(QEvent::ToolTip, point, m_view.viewport()->mapToGlobal(point));
        return QCoreApplication::sendEvent(m_view.viewport(), &event);
    }
    void contextMenu(const QPoint &point)
    {
        QContextMenuEvent event(QContextMenuEvent::Mouse, point, m_view.viewport()->mapToGlobal(point));
        QCoreApplication::sendEvent(m_view.viewport(), &event);
    }

private:
    void send(QEvent::Type type, const QPointF &point, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        m_timeMs += 20;
        QMouseEvent event(type, point, m_view.viewport()->mapToGlobal(point), button, buttons, Qt::NoModifier);
        event.setTimestamp(m_timeMs);
        QCoreApplication::sendEvent(m_view.viewport(), &event);
    }

    NySpreadView &m_view;
    quint64 m_timeMs = 1000000;
};

}

/** Each photo of the book has a colour of its own: red, green and blue on the first spread. */
class tst_NySpreadView : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void pagesWithWheelAndMouse();
    void photosAppear();
    void missingPhotoIsAGreyBox();

    void zoomStaysInRange();
    void zoomSteps();
    void selectsWhatIsUnderThePointer_data();
    void selectsWhatIsUnderThePointer();
    void uppermostPhotoIsHit();
    void wheelZoomsAroundThePointer();
    void pinchZoomsAroundThePointer();
    void zoomFollowsTheSelection();
    void resizingKeepsZoomAndMiddle();
    void wheelScrollsWhenZoomedIn();
    void keysScrollWhenZoomedIn();
    void dragPans_data();
    void dragPans();
    void dragIsNoClick();
    void nextPageKeepsZoom();
    void largeZoomShowsMorePixels();

    void clickOnPaper();
    void doubleClickOnPaperTurnsTwice();
    void quickClicksOnlyTurn();
    void doubleClickOnPhotoActivatesIt();
    void doubleClickOnPaperBesideASelection();
    void doubleClickOnTheTitle();
    void contextMenu();
    void toolTip();

    void tabWalksThroughPhotos();
    void keysOnASelection();
    void keyboardSelectionIsScrolledIntoView();
    void framesAreSeen_data();
    void framesAreSeen();
    void turningClearsTheSelection();
    void setSelectedShowsTheSpread();

    void setProjectKeepsWhatIsThere();
    void setProjectDropsWhatIsGone();
    void setProjectReloadsNothing();

    void accessibleTree();
    void accessibleActions();

    void deskFollowsThePalette();
    void deskDoesNotShineThroughTheFold();
    void brokenBooks_data();
    void brokenBooks();
    void thousandPhotos();

private:
    NyPlacedFoto foto(const QString &name, const QRectF &rectMm) const;
    /** Pages with 2, 1, 1 and 0 photos, and a cover with photo, title and subtitle. */
    NyBookProject book() const;
    static bool waitForPhotos(NySpreadView &view);
    static QColor colorAt(NySpreadView &view, const QPointF &point);

    QTemporaryDir m_dir;
};

/** Shown, in its size, with its photos. */
#define SHOW(view)                                                                                                                         \
    (view).resize(WindowSize);                                                                                                             \
    (view).show();                                                                                                                         \
    QVERIFY(QTest::qWaitForWindowActive(&(view)));                                                                                         \
    QVERIFY(waitForPhotos(view))

void tst_NySpreadView::initTestCase()
{
    const QList<std::pair<QString, QColor>> photos{
        {u"red"_s, QColor(200, 0, 0)},
        {u"green"_s, QColor(0, 160, 0)},
        {u"blue"_s, QColor(0, 0, 200)},
        {u"yellow"_s, QColor(220, 200, 0)},
        {u"violet"_s, QColor(160, 0, 160)},
    };
    for (const auto &[name, color] : photos) {
        QImage image(800, 600, QImage::Format_RGB32);
        image.fill(color);
        QVERIFY(PaintedPictures::write(m_dir.filePath(name + u".jpg"_s), image));
    }
}

NyPlacedFoto tst_NySpreadView::foto(const QString &name, const QRectF &rectMm) const
{
    NyPlacedFoto foto;
    foto.url = QUrl::fromLocalFile(m_dir.filePath(name + u".jpg"_s));
    foto.rectMm = rectMm;
    foto.sizePx = QSize(800, 600);
    return foto;
}

NyBookProject tst_NySpreadView::book() const
{
    NyBookProject book;
    book.title = u"Toskana"_s;
    book.cover.photos = {foto(u"violet"_s, QRectF(80, 20, 120, 90))};
    book.cover.texts = {{NyBookText::Role::Title, u"Toskana"_s, QRectF(20, 130, 240, 24), 32},
        {NyBookText::Role::Subtitle, u"Juli 2024"_s, QRectF(20, 160, 240, 12), 14}};
    book.pages = {NyBookPage{{foto(u"red"_s, QRectF(20, 30, 100, 75)), foto(u"green"_s, QRectF(150, 110, 100, 75))}, {}},
        NyBookPage{{foto(u"blue"_s, QRectF(60, 60, 120, 90))}, {}}, NyBookPage{{foto(u"yellow"_s, QRectF(20, 20, 240, 170))}, {}},
        NyBookPage()};
    return book;
}

bool tst_NySpreadView::waitForPhotos(NySpreadView &view)
{
    return QTest::qWaitFor([&] {
        // A repaint may ask for more.
        view.grab();
        return view.isComplete();
    });
}

QColor tst_NySpreadView::colorAt(NySpreadView &view, const QPointF &point)
{
    return view.viewport()->grab().toImage().pixelColor(point.toPoint());
}

void tst_NySpreadView::pagesWithWheelAndMouse()
{
    NySpreadView view(book(), NyDesignStyle());
    SHOW(view);
    Pointer pointer(view);
    pointer.click(QPointF(980, 430));
    QCOMPARE(view.spread(), 1);
    pointer.press(QPointF(980, 430), Qt::RightButton);
    pointer.release(QPointF(980, 430), Qt::RightButton);
    QCOMPARE(view.spread(), 1);
    pointer.click(QPointF(10, 430));
    QCOMPARE(view.spread(), 0);
    pointer.wheel(QPointF(10, 10), QPoint(0, -60));
    QCOMPARE(view.spread(), 0);
    pointer.wheel(QPointF(10, 10), QPoint(0, -60));
    QCOMPARE(view.spread(), 1);
    pointer.wheel(QPointF(10, 10), QPoint(0, 120));
    pointer.wheel(QPointF(10, 10), QPoint(0, -240));
    QCOMPARE(view.spread(), 2);
}

void tst_NySpreadView::photosAppear()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    // The spread is 560 mm by 210 mm and leaves a margin of 28 px.
    const double unitsPerMm = (WindowSize.width() - 56) / 560.0;
    const QPointF origin(28, (WindowSize.height() - 210 * unitsPerMm) / 2);
    const QImage shot = view.viewport()->grab().toImage();
    QVERIFY(areAlike(shot.pixelColor((origin + QPointF(70, 67) * unitsPerMm).toPoint()), QColor(200, 0, 0)));
    QVERIFY(areAlike(shot.pixelColor((origin + QPointF(200, 147) * unitsPerMm).toPoint()), QColor(0, 160, 0)));
    QVERIFY(areAlike(shot.pixelColor((origin + QPointF(400, 105) * unitsPerMm).toPoint()), QColor(0, 0, 200)));
    QVERIFY(areAlike(shot.pixelColor((origin + QPointF(10, 10) * unitsPerMm).toPoint()), Qt::white));
}

void tst_NySpreadView::missingPhotoIsAGreyBox()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"verschwunden\\.jpg"_s));
    NyBookProject project = book();
    project.pages[1].photos = {foto(u"verschwunden"_s, QRectF(60, 60, 120, 90))};
    NySpreadView view(project, NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    QCOMPARE(colorAt(view, view.photoRect({1, 0}).topLeft() + QPointF(6, 6)), QColor(0xdc, 0xdc, 0xdc));
    // It can be selected like any other.
    Pointer(view).click(view.photoRect({1, 0}).center());
    QCOMPARE(view.selected(), std::optional(NyBookPlace{1, 0}));
}

void tst_NySpreadView::zoomStaysInRange()
{
    NySpreadView view(book(), NyDesignStyle());
    SHOW(view);
    const QSignalSpy changes(&view, &NySpreadView::zoomChanged);
    QCOMPARE(view.zoom(), 1.0);
    view.setZoom(0.01);
    view.setZoom(1.0);
    view.setZoom(-3);
    view.setZoom(std::numeric_limits<double>::quiet_NaN());
    QCOMPARE(changes.count(), 0);
    QVERIFY(!view.horizontalScrollBar()->isVisible());
    QVERIFY(!view.verticalScrollBar()->isVisible());
    view.setZoom(100);
    QCOMPARE(view.zoom(), NySpreadView::MaximumZoom);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.at(0).at(0).toDouble(), NySpreadView::MaximumZoom);
    QVERIFY(view.horizontalScrollBar()->isVisible());
    QVERIFY(view.verticalScrollBar()->isVisible());
    view.setZoom(100);
    QCOMPARE(changes.count(), 1);
    view.zoomToFit();
    QCOMPARE(view.zoom(), 1.0);
    QVERIFY(!view.horizontalScrollBar()->isVisible());
    QVERIFY(!view.verticalScrollBar()->isVisible());
}

void tst_NySpreadView::zoomSteps()
{
    NySpreadView view(book(), NyDesignStyle());
    SHOW(view);
    QList<double> up{view.zoom()};
    for (int i = 0; i < 30 && view.zoom() < NySpreadView::MaximumZoom; ++i) {
        view.zoomIn();
        QVERIFY(view.zoom() > up.last());
        up.append(view.zoom());
    }
    QCOMPARE(view.zoom(), NySpreadView::MaximumZoom);
    view.zoomIn();
    QCOMPARE(view.zoom(), NySpreadView::MaximumZoom);
    for (qsizetype i = up.size() - 2; i >= 0; --i) {
        view.zoomOut();
        QCOMPARE(view.zoom(), up.at(i));
    }
    view.zoomOut();
    QCOMPARE(view.zoom(), 1.0);
    // Between two steps the next one counts.
    view.setZoom(2.2);
    view.zoomOut();
    QCOMPARE(view.zoom(), 2.0);
}

void tst_NySpreadView::selectsWhatIsUnderThePointer_data()
{
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QPointF>("scrollShare");
    QTest::newRow("fit") << 1.0 << QPointF();
    QTest::newRow("twice, upper left") << 2.0 << QPointF(0, 0);
    QTest::newRow("twice, lower middle") << 2.0 << QPointF(0.5, 1);
    QTest::newRow("twice, right") << 2.0 << QPointF(1, 0.4);
    QTest::newRow("eight times") << 8.0 << QPointF(0.3, 0.6);
    QTest::newRow("eight times, red's corner") << 8.0 << QPointF(0.02, 0.1);
}

void tst_NySpreadView::selectsWhatIsUnderThePointer()
{
    QFETCH(double, zoom);
    QFETCH(QPointF, scrollShare);
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    view.setZoom(zoom);
    view.horizontalScrollBar()->setValue(int(scrollShare.x() * view.horizontalScrollBar()->maximum()));
    view.verticalScrollBar()->setValue(int(scrollShare.y() * view.verticalScrollBar()->maximum()));
    QVERIFY(waitForPhotos(view));
    const QImage shot = view.viewport()->grab().toImage();
    const auto seenAt = [&](const QPoint &point) -> std::optional<NyBookPlace> {
        const QColor color = shot.pixelColor(point);
        if (areAlike(color, QColor(200, 0, 0)))
            return NyBookPlace{0, 0};
        if (areAlike(color, QColor(0, 160, 0)))
            return NyBookPlace{0, 1};
        return areAlike(color, QColor(0, 0, 200)) ? std::optional(NyBookPlace{1, 0}) : std::nullopt;
    };
    QSet<int> seen;
    for (int y = 7; y < shot.height(); y += 21) {
        for (int x = 5; x < shot.width(); x += 17) {
            const std::optional<NyBookPlace> place = seenAt(QPoint(x, y));
            QCOMPARE(view.photoAt(QPointF(x, y)), place);
            const int key = place ? place->page * 10 + place->photo : -1;
            if (!place || seen.contains(key))
                continue;
            seen.insert(key);
            Pointer(view).click(QPointF(x, y));
            QCOMPARE(view.selected(), place);
            QCOMPARE(view.zoom(), zoom);
        }
    }
    QVERIFY(!seen.isEmpty());
}

void tst_NySpreadView::uppermostPhotoIsHit()
{
    NyBookProject project = book();
    project.pages[0].photos = {foto(u"red"_s, QRectF(20, 30, 200, 150)), foto(u"green"_s, QRectF(100, 80, 100, 75))};
    NySpreadView view(project, NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    const QPointF point = view.photoRect({0, 1}).center();
    QVERIFY(areAlike(colorAt(view, point), QColor(0, 160, 0)));
    QCOMPARE(view.photoAt(point), std::optional(NyBookPlace{0, 1}));
    QCOMPARE(view.photoAt(view.photoRect({0, 0}).topLeft() + QPointF(2, 2)), std::optional(NyBookPlace{0, 0}));
}

void tst_NySpreadView::wheelZoomsAroundThePointer()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    Pointer pointer(view);
    view.setZoom(2);
    const QPointF point = view.photoRect({0, 1}).topLeft();
    QVERIFY(view.viewport()->rect().contains(point.toPoint()));
    for (int i = 0; i < 60; ++i) {
        pointer.wheel(point, QPoint(0, 15), Qt::ControlModifier);
        QVERIFY(areClose(view.photoRect({0, 1}).topLeft(), point, 1));
    }
    QCOMPARE(view.zoom(), NySpreadView::MaximumZoom);
    for (int i = 0; i < 6; ++i) {
        pointer.wheel(point, QPoint(0, -120), Qt::ControlModifier);
        QVERIFY(areClose(view.photoRect({0, 1}).topLeft(), point, 1));
    }
    QVERIFY(view.zoom() < 2.1);
    for (int i = 0; i < 6; ++i)
        pointer.wheel(point, QPoint(0, -120), Qt::ControlModifier);
    QCOMPARE(view.zoom(), 1.0);
    QCOMPARE(view.spread(), 1);
}

void tst_NySpreadView::pinchZoomsAroundThePointer()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    view.setZoom(3);
    const QPointF point = view.photoRect({1, 0}).topLeft();
    const auto pinch = [&](double value) {
        QNativeGestureEvent event(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2, point, point,
            view.viewport()->mapToGlobal(point), value, QPointF());
        QCoreApplication::sendEvent(view.viewport(), &event);
    };
    for (int i = 0; i < 20; ++i)
        pinch(0.02);
    QVERIFY(view.zoom() > 4.4 && view.zoom() < 4.5);
    QVERIFY(areClose(view.photoRect({1, 0}).topLeft(), point, 1));
    pinch(-0.99);
    QCOMPARE(view.zoom(), 1.0);
}

void tst_NySpreadView::zoomFollowsTheSelection()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    view.setSelected(NyBookPlace{0, 0});
    view.setZoom(8);
    QVERIFY(view.photoRect({0, 0}).contains(QRectF(view.viewport()->rect()).center()));
    view.setSelected(std::nullopt);
    view.zoomToFit();
    // Around the middle: the fold.
    view.setZoom(8);
    const double fold = QRectF(view.viewport()->rect()).center().x();
    const QRectF blue = view.photoRect({1, 0});
    QVERIFY(std::abs(blue.left() - blue.width() / 2 - fold) < 2);
}

void tst_NySpreadView::resizingKeepsZoomAndMiddle()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    view.setSelected(NyBookPlace{0, 1});
    view.setZoom(4);
    const auto shareInMiddle = [&] {
        const QPointF way = QRectF(view.viewport()->rect()).center() - view.photoRect({0, 1}).topLeft();
        return QPointF(way.x() / view.photoRect({0, 1}).width(), way.y() / view.photoRect({0, 1}).height());
    };
    const QPointF before = shareInMiddle();
    for (const QSize &size : {QSize(700, 350), QSize(1200, 500), QSize(900, 430)}) {
        view.resize(size);
        QCOMPARE(view.zoom(), 4.0);
        QVERIFY(areClose(shareInMiddle(), before, 0.01));
    }
    // Where all the height fits, the middle is the paper's; afterwards it is where it was.
    view.resize(330, 600);
    QCOMPARE(view.verticalScrollBar()->maximum(), 0);
    QCOMPARE(view.zoom(), 4.0);
    view.resize(WindowSize);
    QVERIFY(areClose(shareInMiddle(), before, 0.01));
}

void tst_NySpreadView::wheelScrollsWhenZoomedIn()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    view.setZoom(3);
    Pointer pointer(view);
    const QPointF before = view.photoRect({0, 0}).topLeft();
    pointer.wheel(QPointF(10, 10), QPoint(0, -120));
    QVERIFY(view.photoRect({0, 0}).top() < before.y());
    QCOMPARE(view.photoRect({0, 0}).left(), before.x());
    pointer.wheel(QPointF(10, 10), QPoint(0, 120));
    QCOMPARE(view.photoRect({0, 0}).topLeft(), before);
    pointer.wheel(QPointF(10, 10), QPoint(0, -120), Qt::ShiftModifier);
    QVERIFY(view.photoRect({0, 0}).left() < before.x());
    QCOMPARE(view.photoRect({0, 0}).top(), before.y());
    for (int i = 0; i < 200; ++i)
        pointer.wheel(QPointF(10, 10), QPoint(-60, -120));
    QCOMPARE(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum());
    QVERIFY(view.horizontalScrollBar()->value() > 0);
    QCOMPARE(view.spread(), 1);
    // What was left over at the edge does not turn pages later.
    view.zoomToFit();
    pointer.wheel(QPointF(10, 10), QPoint(0, -30));
    QCOMPARE(view.spread(), 1);
}

void tst_NySpreadView::keysScrollWhenZoomedIn()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    view.setZoom(3);
    const QPointF before = view.photoRect({0, 0}).topLeft();
    QTest::keyClick(&view, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
    const QPointF after = view.photoRect({0, 0}).topLeft();
    QVERIFY(after.x() < before.x() && after.y() < before.y());
    QTest::keyClick(&view, Qt::Key_Up, Qt::ShiftModifier);
    QTest::keyClick(&view, Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(view.photoRect({0, 0}).topLeft(), before);
}

void tst_NySpreadView::dragPans_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::newRow("left") << Qt::LeftButton;
    QTest::newRow("middle") << Qt::MiddleButton;
}

void tst_NySpreadView::dragPans()
{
    QFETCH(Qt::MouseButton, button);
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    view.setZoom(3);
    const QPointF before = view.photoRect({0, 1}).topLeft();
    Pointer pointer(view);
    pointer.drag(QPointF(500, 200), QPointF(430, 260), button);
    QCOMPARE(view.photoRect({0, 1}).topLeft(), before + QPointF(-70, 60));
    QVERIFY(!view.selected());
    // The edge of the paper is the end.
    pointer.drag(QPointF(100, 100), QPointF(90000, 100), button);
    QCOMPARE(view.horizontalScrollBar()->value(), 0);
    QCOMPARE(view.spread(), 1);
    QVERIFY(!view.selected());
}

void tst_NySpreadView::dragIsNoClick()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    const QSignalSpy selections(&view, &NySpreadView::selectionChanged);
    Pointer pointer(view);
    const QPointF onPhoto = view.photoRect({0, 0}).center();
    const QPointF onPaper(980, 430);
    pointer.drag(onPaper, onPaper - QPointF(60, 0));
    pointer.drag(onPhoto, onPhoto + QPointF(0, 30));
    // Back where it began, it still was one.
    pointer.rest();
    pointer.press(onPhoto);
    pointer.move(onPhoto + QPointF(40, 0));
    pointer.move(onPhoto);
    pointer.release(onPhoto);
    // A release without a press belongs to something else.
    pointer.release(onPhoto);
    QCOMPARE(view.spread(), 1);
    QCOMPARE(selections.count(), 0);
    // A hand that is not quite still clicks all the same.
    pointer.rest();
    pointer.press(onPhoto);
    pointer.move(onPhoto + QPointF(1, 1));
    pointer.release(onPhoto + QPointF(1, 1));
    QCOMPARE(view.selected(), std::optional(NyBookPlace{0, 0}));
}

void tst_NySpreadView::nextPageKeepsZoom()
{
    NySpreadView view(book(), NyDesignStyle());
    SHOW(view);
    view.setZoom(3);
    view.showNext();
    QCOMPARE(view.zoom(), 3.0);
    QCOMPARE(view.spread(), 1);
    // In the middle of the cover, then in the middle of the spread.
    const QRectF blue = view.photoRect({1, 0});
    QVERIFY(std::abs(blue.left() - blue.width() / 2 - QRectF(view.viewport()->rect()).center().x()) < 2);
    // A click on paper turns no page here.
    Pointer(view).click(QPointF(blue.left() - 20, blue.center().y()));
    QCOMPARE(view.spread(), 1);
}

void tst_NySpreadView::largeZoomShowsMorePixels()
{
    // Black and white columns of one pixel are grey from afar.
    QImage columns(1500, 1125, QImage::Format_RGB32);
    columns.fill(Qt::white);
    QPainter painter(&columns);
    for (int x = 0; x < columns.width(); x += 2)
        painter.fillRect(x, 0, 1, columns.height(), Qt::black);
    painter.end();
    QVERIFY(columns.save(m_dir.filePath(u"columns.jpg"_s), "JPEG", 100));
    NyBookProject project = book();
    project.pages[0].photos = {foto(u"columns"_s, QRectF(30, 30, 200, 150))};
    NySpreadView view(project, NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    const auto contrast = [&] {
        const QRectF seen = view.photoRect({0, 0}) & QRectF(view.viewport()->rect());
        const QImage shot = view.viewport()->grab().toImage();
        int darkest = 255;
        int lightest = 0;
        for (int x = int(seen.left()) + 10; x < int(seen.right()) - 10; ++x) {
            const int lightness = qGray(shot.pixel(x, int(seen.center().y())));
            darkest = std::min(darkest, lightness);
            lightest = std::max(lightest, lightness);
        }
        return lightest - darkest;
    };
    QVERIFY(contrast() < 100);
    view.setSelected(NyBookPlace{0, 0});
    view.setZoom(8);
    view.setSelected(std::nullopt);
    QVERIFY(view.photoRect({0, 0}).width() > 2000);
    // Until the pixels have come, the smaller version stands in.
    QVERIFY(areAlike(colorAt(view, QRectF(view.viewport()->rect()).center()), QColor(128, 128, 128)));
    QVERIFY(!view.isComplete());
    QVERIFY(waitForPhotos(view));
    QVERIFY(contrast() > 150);
    view.zoomToFit();
    QVERIFY(waitForPhotos(view));
    QVERIFY(contrast() < 100);
}

void tst_NySpreadView::clickOnPaper()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    const QSignalSpy selections(&view, &NySpreadView::selectionChanged);
    Pointer pointer(view);
    const QPointF paper = view.photoRect({1, 0}).bottomRight() + QPointF(8, 8);
    const QPointF photo = view.photoRect({1, 0}).center();
    pointer.click(photo);
    QCOMPARE(view.selected(), std::optional(NyBookPlace{1, 0}));
    pointer.click(photo);
    QCOMPARE(selections.count(), 1);
    pointer.click(paper);
    QVERIFY(!view.selected());
    QCOMPARE(view.spread(), 1);
    pointer.click(paper);
    QCOMPARE(view.spread(), 2);
    QCOMPARE(selections.count(), 2);
    pointer.click(QPointF(3, 3));
    QCOMPARE(view.spread(), 1);
}

void tst_NySpreadView::doubleClickOnPaperTurnsTwice()
{
    NySpreadView view(book(), NyDesignStyle());
    SHOW(view);
    const QSignalSpy activations(&view, &NySpreadView::photoActivated);
    const QSignalSpy selections(&view, &NySpreadView::selectionChanged);
    view.setSpread(1);
    const QPointF onBlue = view.photoRect({1, 0}).center();
    view.setSpread(0);
    // Paper on the cover, a photo on the next spread: the second click turns as well.
    QVERIFY(!view.photoAt(onBlue));
    Pointer(view).doubleClick(onBlue);
    QCOMPARE(view.spread(), 2);
    QCOMPARE(activations.count(), 0);
    QCOMPARE(selections.count(), 0);
}

void tst_NySpreadView::quickClicksOnlyTurn()
{
    NyBookProject project = book();
    for (int i = 0; i < 8; ++i)
        project.pages.append(project.pages.at(1));
    NySpreadView view(project, NyDesignStyle());
    SHOW(view);
    view.setSpread(1);
    const QPointF onBlue = view.photoRect({1, 0}).center();
    view.setSpread(0);
    Pointer pointer(view);
    pointer.doubleClick(onBlue);
    pointer.press(onBlue);
    pointer.release(onBlue);
    QCOMPARE(view.spread(), 3);
    QVERIFY(!view.selected());
    // Later the photo counts again.
    pointer.click(onBlue);
    QCOMPARE(view.spread(), 3);
    QVERIFY(view.selected());
}

void tst_NySpreadView::doubleClickOnPhotoActivatesIt()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    QSignalSpy activations(&view, &NySpreadView::photoActivated);
    Pointer pointer(view);
    pointer.doubleClick(view.photoRect({0, 1}).center());
    QCOMPARE(activations.count(), 1);
    QCOMPARE(activations.at(0).at(0).value<NyBookPlace>(), (NyBookPlace{0, 1}));
    QCOMPARE(view.selected(), std::optional(NyBookPlace{0, 1}));
    QCOMPARE(view.spread(), 1);
    view.setZoom(2);
    pointer.doubleClick((view.photoRect({0, 1}) & QRectF(view.viewport()->rect())).center());
    QCOMPARE(activations.count(), 2);
}

void tst_NySpreadView::doubleClickOnPaperBesideASelection()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    view.setSelected(NyBookPlace{1, 0});
    Pointer(view).doubleClick(view.photoRect({1, 0}).bottomRight() + QPointF(8, 8));
    QVERIFY(!view.selected());
    QCOMPARE(view.spread(), 1);
}

void tst_NySpreadView::doubleClickOnTheTitle()
{
    NySpreadView view(book(), NyDesignStyle());
    SHOW(view);
    const QSignalSpy words(&view, &NySpreadView::wordsActivated);
    Pointer pointer(view);
    const double unitsPerMm = view.photoRect({Cover, 0}).width() / 120;
    const QPointF cover = view.photoRect({Cover, 0}).topLeft() - QPointF(80, 20) * unitsPerMm;
    const QPointF title = cover + QPointF(140, 142) * unitsPerMm;
    pointer.doubleClick(title);
    QCOMPARE(words.count(), 1);
    pointer.doubleClick(cover + QPointF(140, 163) * unitsPerMm);
    QCOMPARE(words.count(), 2);
    QCOMPARE(view.spread(), 0);
    pointer.click(title);
    QCOMPARE(view.spread(), 0);
    // Beside the words, the title's line is paper.
    pointer.click(cover + QPointF(250, 142) * unitsPerMm);
    QCOMPARE(view.spread(), 1);
    QCOMPARE(words.count(), 2);
}

void tst_NySpreadView::contextMenu()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    QSignalSpy menus(&view, &NySpreadView::contextMenuRequested);
    Pointer pointer(view);
    const QPoint onGreen = view.photoRect({0, 1}).center().toPoint();
    pointer.contextMenu(QPoint(2, 2));
    QTest::keyClick(&view, Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(menus.count(), 0);
    pointer.contextMenu(onGreen);
    QCOMPARE(menus.count(), 1);
    QCOMPARE(view.selected(), std::optional(NyBookPlace{0, 1}));
    QCOMPARE(menus.at(0).at(0).value<NyBookPlace>(), (NyBookPlace{0, 1}));
    QCOMPARE(menus.at(0).at(1).toPoint(), view.viewport()->mapToGlobal(onGreen));
    QTest::keyClick(&view, Qt::Key_F10, Qt::ShiftModifier);
    QCOMPARE(menus.count(), 2);
    // What the platform makes of the menu key goes to the widget that has the focus.
    view.setSelected(NyBookPlace{1, 0});
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QCoreApplication::sendEvent(&view, &key);
    QCOMPARE(menus.count(), 3);
    QCOMPARE(menus.at(2).at(0).value<NyBookPlace>(), (NyBookPlace{1, 0}));
    const QPoint place = view.viewport()->mapFromGlobal(menus.at(2).at(1).toPoint());
    QCOMPARE(view.photoAt(place), std::optional(NyBookPlace{1, 0}));
}

void tst_NySpreadView::toolTip()
{
    NyBookProject project = book();
    NyPlacedFoto &small = project.pages[0].photos[0];
    small.url = QUrl::fromLocalFile(m_dir.filePath(u"<b>&.jpg"_s));
    small.sizePx = QSize(590, 443); // 149.9 dpi on 100 mm
    project.pages[0].photos[1].sizePx = QSize(4000, 3000);
    project.pages[1].photos[0].sizePx = QSize();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"<b>&\\.jpg"_s));
    NySpreadView view(project, NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    Pointer pointer(view);
    pointer.help(view.photoRect({0, 0}).center().toPoint());
    QVERIFY2(QToolTip::text().contains(u"&lt;b&gt;&amp;.jpg"_s), qPrintable(QToolTip::text()));
    QVERIFY(QToolTip::text().contains(u"149 dpi"_s));
    QVERIFY(QToolTip::text().contains(u"200"_s));
    for (const NyBookPlace &place : {NyBookPlace{0, 1}, NyBookPlace{1, 0}}) {
        pointer.help(view.photoRect(place).center().toPoint());
        QVERIFY(QToolTip::text().contains(view.photoName(place)));
        QVERIFY(!QToolTip::text().contains(u"dpi"_s));
    }
    pointer.help(QPoint(3, 3));
    QTRY_VERIFY(!QToolTip::isVisible());
}

void tst_NySpreadView::tabWalksThroughPhotos()
{
    QWidget window;
    auto *layout = new QHBoxLayout(&window);
    auto *before = new QLineEdit(&window);
    auto *view = new NySpreadView(book(), NyDesignStyle(), &window);
    auto *after = new QLineEdit(&window);
    layout->addWidget(before);
    layout->addWidget(view);
    layout->addWidget(after);
    view->setSpread(1);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    before->setFocus();
    const auto press = [&](Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), modifiers ? Qt::Key_Backtab : Qt::Key_Tab, modifiers);
    };
    press();
    QVERIFY(view->hasFocus());
    QVERIFY(!view->selected());
    for (const NyBookPlace &place : {NyBookPlace{0, 0}, NyBookPlace{0, 1}, NyBookPlace{1, 0}}) {
        press();
        QVERIFY(view->hasFocus());
        QCOMPARE(view->selected(), std::optional(place));
    }
    press();
    QVERIFY(after->hasFocus());
    QCOMPARE(view->selected(), std::optional(NyBookPlace{1, 0}));
    press(Qt::ShiftModifier);
    QVERIFY(view->hasFocus());
    QCOMPARE(view->selected(), std::optional(NyBookPlace{1, 0}));
    press(Qt::ShiftModifier);
    QCOMPARE(view->selected(), std::optional(NyBookPlace{0, 1}));
    press(Qt::ShiftModifier);
    press(Qt::ShiftModifier);
    QVERIFY(view->hasFocus());
    QVERIFY(!view->selected());
    press(Qt::ShiftModifier);
    QVERIFY(before->hasFocus());
    // Backwards from behind, the last photo comes first.
    after->setFocus();
    press(Qt::ShiftModifier);
    QCOMPARE(view->selected(), std::optional(NyBookPlace{1, 0}));
    // A spread without photos is one stop.
    NyBookProject empty = book();
    empty.pages[0].photos.clear();
    empty.pages[1].photos.clear();
    view->setProject(empty);
    QVERIFY(view->hasFocus());
    press();
    QVERIFY(after->hasFocus());
}

void tst_NySpreadView::keysOnASelection()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    QSignalSpy activations(&view, &NySpreadView::photoActivated);
    const QSignalSpy selections(&view, &NySpreadView::selectionChanged);
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Escape);
    QCOMPARE(activations.count(), 0);
    QCOMPARE(selections.count(), 0);
    view.setSelected(NyBookPlace{0, 1});
    QTest::keyClick(&view, Qt::Key_Return);
    QTest::keyClick(&view, Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(activations.count(), 2);
    QCOMPARE(activations.at(0).at(0).value<NyBookPlace>(), (NyBookPlace{0, 1}));
    QTest::keyClick(&view, Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(activations.count(), 2);
    QTest::keyClick(&view, Qt::Key_Escape);
    QVERIFY(!view.selected());
    QCOMPARE(selections.count(), 2);
    // Without a selection they are free for the window.
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(&view, &escape);
    QVERIFY(!escape.isAccepted());
}

void tst_NySpreadView::keyboardSelectionIsScrolledIntoView()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    for (const double zoom : {1.5, 3.0, 8.0}) {
        view.setSelected(std::nullopt);
        view.setZoom(zoom);
        for (const NyBookPlace &place : view.places()) {
            QTest::keyClick(&view, Qt::Key_Tab);
            QCOMPARE(view.selected(), std::optional(place));
            const QRectF viewport(view.viewport()->rect());
            const QRectF rect = view.photoRect(place);
            if (rect.width() < viewport.width() - 24 && rect.height() < viewport.height() - 24)
                QVERIFY(viewport.contains(rect));
            else
                QVERIFY(rect.intersects(viewport.adjusted(200, 100, -200, -100)));
        }
    }
}

void tst_NySpreadView::framesAreSeen_data()
{
    QTest::addColumn<QColor>("photo");
    QTest::newRow("on a dark photo") << QColor(10, 10, 10);
    QTest::newRow("on a light photo") << QColor(250, 250, 250);
    QTest::newRow("on a photo of the same colour") << QColor(48, 140, 198);
}

void tst_NySpreadView::framesAreSeen()
{
    QFETCH(QColor, photo);
    const QColor highlight(48, 140, 198);
    QImage image(400, 300, QImage::Format_RGB32);
    image.fill(photo);
    QVERIFY(PaintedPictures::write(m_dir.filePath(u"framed.jpg"_s), image));
    NyBookProject project = book();
    project.pages[0].photos = {foto(u"framed"_s, QRectF(0, 0, 280, 210))};
    NySpreadView view(project, NyDesignStyle());
    QPalette palette = view.palette();
    palette.setColor(QPalette::Highlight, highlight);
    view.setPalette(palette);
    view.setSpread(1);
    SHOW(view);
    const QRectF rect = view.photoRect({0, 0});
    const auto colors = [&] {
        const QImage shot = view.viewport()->grab().toImage();
        QList<QColor> row;
        for (int x = int(rect.left()) - 6; x < int(rect.left()) + 12; ++x)
            row.append(shot.pixelColor(x, int(rect.center().y())));
        return row;
    };
    const QList<QColor> before = colors();
    view.setSelected(NyBookPlace{0, 0});
    const QList<QColor> selected = colors();
    const auto isHighlight = [&](const QColor &color) { return areAlike(color, highlight); };
    QVERIFY(std::count_if(selected.begin(), selected.end(), isHighlight) >= 3);
    // The frame's edges differ from what is beside them.
    int steps = 0;
    for (qsizetype i = 1; i < selected.size(); ++i)
        steps += std::abs(selected.at(i).lightness() - selected.at(i - 1).lightness()) > 30 ? 1 : 0;
    QVERIFY2(steps >= 2, qPrintable(QString::number(steps)));
    view.setSelected(std::nullopt);
    QCOMPARE(colors(), before);

    // The view's own frame, for the keyboard only.
    const auto isFramed = [&] { return areAlike(colorAt(view, QPointF(2, 200)), highlight); };
    view.clearFocus();
    view.setFocus(Qt::OtherFocusReason);
    QVERIFY(!isFramed());
    view.clearFocus();
    view.setFocus(Qt::TabFocusReason);
    QVERIFY(isFramed());
    view.setSelected(NyBookPlace{0, 0});
    QVERIFY(!isFramed());
    QTest::keyClick(&view, Qt::Key_Escape);
    QVERIFY(isFramed());
    Pointer(view).press(QPointF(5, 5));
    QVERIFY(!isFramed());
}

void tst_NySpreadView::turningClearsTheSelection()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    view.setSelected(NyBookPlace{0, 1});
    QSignalSpy selections(&view, &NySpreadView::selectionChanged);
    view.setSpread(1);
    QVERIFY(view.selected());
    view.showNext();
    QVERIFY(!view.selected());
    QCOMPARE(selections.count(), 1);
    view.showPrevious();
    QVERIFY(!view.selected());
    QCOMPARE(selections.count(), 1);
}

void tst_NySpreadView::setSelectedShowsTheSpread()
{
    NySpreadView view(book(), NyDesignStyle());
    SHOW(view);
    const QSignalSpy selections(&view, &NySpreadView::selectionChanged);
    const QSignalSpy spreads(&view, &NySpreadView::spreadChanged);
    view.setSelected(NyBookPlace{2, 0});
    QCOMPARE(view.spread(), 2);
    QCOMPARE(view.selected(), std::optional(NyBookPlace{2, 0}));
    QCOMPARE(selections.count(), 1);
    view.setSelected(NyBookPlace{2, 0});
    QCOMPARE(selections.count(), 1);
    for (const NyBookPlace &place : {NyBookPlace{3, 0}, NyBookPlace{99, 0}, NyBookPlace{0, -1}, NyBookPlace{-2, 0}, NyBookPlace{0, 2}}) {
        view.setSelected(NyBookPlace{2, 0});
        view.setSelected(place);
        QVERIFY(!view.selected());
        QCOMPARE(view.spread(), 2);
    }
    view.setSelected(NyBookPlace{Cover, 0});
    QCOMPARE(view.spread(), 0);
    QCOMPARE(spreads.count(), 2);
}

void tst_NySpreadView::setProjectKeepsWhatIsThere()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    view.setSelected(NyBookPlace{0, 1});
    view.setZoom(3);
    const QRectF rect = view.photoRect({0, 1});
    const QSignalSpy selections(&view, &NySpreadView::selectionChanged);
    const QSignalSpy spreads(&view, &NySpreadView::spreadChanged);
    const QSignalSpy zooms(&view, &NySpreadView::zoomChanged);
    NyBookProject changed = book();
    changed.title = u"Ein Sommer\nin Rom"_s;
    changed.pages[0].photos[1].url = changed.pages[2].photos[0].url;
    changed.pages.append(NyBookPage());
    view.setProject(changed);
    QCOMPARE(view.spread(), 1);
    QCOMPARE(view.spreadCount(), 4);
    QCOMPARE(view.selected(), std::optional(NyBookPlace{0, 1}));
    QCOMPARE(view.zoom(), 3.0);
    QCOMPARE(view.photoRect({0, 1}), rect);
    QCOMPARE(view.spreadDescription(), u"Seiten 1 und 2 von 5"_s);
    QCOMPARE(view.accessibleName(), u"Ein Sommer in Rom"_s);
    QCOMPARE(view.accessibleDescription(), view.spreadDescription());
    QCOMPARE(selections.count() + spreads.count() + zooms.count(), 0);
    QVERIFY(waitForPhotos(view));
    const QPointF inside = (view.photoRect({0, 1}) & QRectF(view.viewport()->rect())).center();
    QVERIFY(areAlike(colorAt(view, inside), QColor(220, 200, 0)));
}

void tst_NySpreadView::setProjectDropsWhatIsGone()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(2);
    SHOW(view);
    view.setSelected(NyBookPlace{2, 0});
    const QSignalSpy selections(&view, &NySpreadView::selectionChanged);
    const QSignalSpy spreads(&view, &NySpreadView::spreadChanged);
    NyBookProject changed = book();
    changed.pages[2].photos.clear();
    view.setProject(changed);
    QVERIFY(!view.selected());
    QCOMPARE(selections.count(), 1);
    QCOMPARE(spreads.count(), 0);
    changed.pages.resize(2);
    view.setProject(changed);
    QCOMPARE(view.spread(), 1);
    QCOMPARE(spreads.count(), 1);
    view.setProject(NyBookProject());
    QCOMPARE(view.spread(), 0);
    QCOMPARE(view.spreadDescription(), u"Titel"_s);
    QVERIFY(view.places().isEmpty());
}

void tst_NySpreadView::setProjectReloadsNothing()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    NyBookProject changed = book();
    std::swap(changed.pages[0].photos[0].url, changed.pages[0].photos[1].url);
    view.setProject(changed);
    // At the first painting already.
    QVERIFY(areAlike(colorAt(view, view.photoRect({0, 0}).center()), QColor(0, 160, 0)));
    QVERIFY(areAlike(colorAt(view, view.photoRect({0, 1}).center()), QColor(200, 0, 0)));
    QVERIFY(view.isComplete());
}

void tst_NySpreadView::accessibleTree()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    QAccessibleInterface *root = QAccessible::queryAccessibleInterface(&view);
    QVERIFY(root);
    QCOMPARE(root->text(QAccessible::Name), u"Toskana"_s);
    QCOMPARE(root->text(QAccessible::Description), u"Seiten 1 und 2 von 4"_s);
    QCOMPARE(root->childCount(), 3);
    const QStringList names{u"red.jpg, Foto 1 von 3"_s, u"green.jpg, Foto 2 von 3"_s, u"blue.jpg, Foto 3 von 3"_s};
    const QList<NyBookPlace> places = view.places();
    for (int i = 0; i < 3; ++i) {
        QAccessibleInterface *photo = root->child(i);
        QVERIFY(photo && photo->isValid());
        QCOMPARE(photo->role(), QAccessible::Graphic);
        QCOMPARE(photo->text(QAccessible::Name), names.at(i));
        QCOMPARE(photo->parent(), root);
        QCOMPARE(root->indexOfChild(photo), i);
        QCOMPARE(root->child(i), photo);
        const QPoint center = photo->rect().center();
        QCOMPARE(view.photoAt(view.viewport()->mapFromGlobal(center)), std::optional(places.at(i)));
        QCOMPARE(root->childAt(center.x(), center.y()), photo);
        QVERIFY(photo->state().selectable && photo->state().focusable);
        QVERIFY(!photo->state().selected && !photo->state().offscreen && !photo->state().invisible);
    }
    const QPoint paper = view.viewport()->mapToGlobal(QPoint(3, 3));
    QVERIFY(!root->childAt(paper.x(), paper.y()));
    QVERIFY(!root->child(3) && !root->child(-1));
    view.setSelected(NyBookPlace{0, 1});
    QVERIFY(root->child(1)->state().selected && root->child(1)->state().focused);
    QCOMPARE(root->focusChild(), root->child(1));
    QVERIFY(!root->child(0)->state().selected);
    // Zoomed in, what is outside the window says so.
    view.setZoom(8);
    QVERIFY(root->child(2)->state().offscreen);
    QVERIFY(!root->child(1)->state().offscreen);
    QVERIFY(QRect(view.viewport()->mapToGlobal(QPoint()), view.viewport()->size()).contains(root->child(1)->rect()));
    view.zoomToFit();
    view.setSpread(0);
    QCOMPARE(root->childCount(), 1);
    QCOMPARE(root->child(0)->text(QAccessible::Name), u"violet.jpg, Foto 1 von 1"_s);
    QCOMPARE(root->text(QAccessible::Description), u"Titel"_s);
}

void tst_NySpreadView::accessibleActions()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    QSignalSpy activations(&view, &NySpreadView::photoActivated);
    QSignalSpy menus(&view, &NySpreadView::contextMenuRequested);
    QAccessibleActionInterface *green = QAccessible::queryAccessibleInterface(&view)->child(1)->actionInterface();
    QVERIFY(green);
    const QStringList names = green->actionNames();
    QCOMPARE(names.value(0), QAccessibleActionInterface::pressAction());
    for (const QString &name : names)
        QVERIFY2(!green->localizedActionName(name).isEmpty(), qPrintable(name));
    green->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(view.selected(), std::optional(NyBookPlace{0, 1}));
    QCOMPARE(activations.count(), 0);
    view.setSelected(std::nullopt);
    green->doAction(names.value(1));
    QCOMPARE(activations.count(), 1);
    QCOMPARE(activations.at(0).at(0).value<NyBookPlace>(), (NyBookPlace{0, 1}));
    QCOMPARE(view.selected(), std::optional(NyBookPlace{0, 1}));
    green->doAction(QAccessibleActionInterface::showMenuAction());
    QCOMPARE(menus.count(), 1);
    view.clearFocus();
    green->doAction(QAccessibleActionInterface::setFocusAction());
    QVERIFY(view.hasFocus());
    // The book may be another one before an assistive technology's call arrives.
    NyBookProject changed = book();
    changed.pages[0].photos.clear();
    changed.pages[1].photos.clear();
    view.setSelected(std::nullopt);
    view.setProject(changed);
    QCOMPARE(QAccessible::queryAccessibleInterface(&view)->childCount(), 0);
}

void tst_NySpreadView::deskFollowsThePalette()
{
    NySpreadView view(book(), NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    const QPointF desk(4, 4);
    const QPointF paper = view.photoRect({0, 0}).topLeft() - QPointF(8, 8);
    for (const QColor &window : {QColor(239, 239, 239), QColor(49, 54, 59), QColor(255, 255, 255), QColor(0, 0, 0)}) {
        QPalette palette = view.palette();
        palette.setColor(QPalette::Window, window);
        view.setPalette(palette);
        QVERIFY(std::abs(colorAt(view, desk).lightness() - window.lightness()) < 24);
        QCOMPARE(colorAt(view, paper), QColor(Qt::white));
    }
}

void tst_NySpreadView::deskDoesNotShineThroughTheFold()
{
    NyBookProject project = book();
    project.pages[0].photos.clear();
    project.pages[1].photos.clear();
    NySpreadView view(project, NyDesignStyle());
    QPalette palette = view.palette();
    palette.setColor(QPalette::Window, Qt::black);
    view.setPalette(palette);
    view.setSpread(1);
    SHOW(view);
    for (const double zoom : {1.0, 2.1, 3.3, 5.7}) {
        view.setZoom(zoom);
        const QImage shot = view.viewport()->grab().toImage();
        // The fold's shadow is soft, so that neighbours hardly differ.
        const int y = shot.height() / 2;
        for (int x = shot.width() / 2 - 40; x < shot.width() / 2 + 40; ++x)
            QVERIFY(std::abs(qGray(shot.pixel(x, y)) - qGray(shot.pixel(x + 1, y))) < 12);
    }
}

void tst_NySpreadView::brokenBooks_data()
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
    QTest::addColumn<QRectF>("rectMm");
    QTest::addColumn<QRectF>("crop");
    QTest::addColumn<QSizeF>("pageMm");
    const QRectF whole(0, 0, 1, 1);
    const QSizeF page(280, 210);
    QTest::newRow("beyond the page") << QRectF(900, 900, 100, 75) << whole << page;
    QTest::newRow("across the edge") << QRectF(-50, -50, 100, 75) << whole << page;
    QTest::newRow("larger than the page") << QRectF(-1000, -1000, 5000, 4000) << whole << page;
    QTest::newRow("empty") << QRectF(20, 20, 0, 0) << whole << page;
    QTest::newRow("negative") << QRectF(120, 120, -60, -60) << whole << page;
    QTest::newRow("huge") << QRectF(-1e9, -1e9, 2e9, 2e9) << whole << page;
    QTest::newRow("infinite") << QRectF(0, 0, infinite, infinite) << whole << page;
    QTest::newRow("no number") << QRectF(noNumber, noNumber, noNumber, noNumber) << whole << page;
    QTest::newRow("tiny crop") << QRectF(20, 20, 100, 75) << QRectF(0.5, 0.5, 1e-9, 1e-9) << page;
    QTest::newRow("page without size") << QRectF(20, 20, 100, 75) << whole << QSizeF(0, 0);
    QTest::newRow("long page") << QRectF(20, 20, 100, 75) << whole << QSizeF(20000, 10);
}

void tst_NySpreadView::brokenBooks()
{
    QFETCH(QRectF, rectMm);
    QFETCH(QRectF, crop);
    QFETCH(QSizeF, pageMm);
    NyBookProject project = book();
    project.pageSizeMm = pageMm;
    project.cover.photos.first().rectMm = rectMm;
    project.pages[0].photos[0].rectMm = rectMm;
    project.pages[0].photos[0].crop = crop;
    NySpreadView view(project, NyDesignStyle());
    SHOW(view);
    QAccessibleInterface *root = QAccessible::queryAccessibleInterface(&view);
    for (const QSize &size : {WindowSize, QSize(1, 1), QSize(40, 600), WindowSize}) {
        view.resize(size);
        for (const double zoom : {1.0, 8.0}) {
            view.setZoom(zoom);
            for (int spread = 0; spread < view.spreadCount(); ++spread) {
                view.setSpread(spread);
                view.grab();
                QCOMPARE(root->childCount(), int(view.places().size()));
                const QRectF paper(view.viewport()->rect().adjusted(-1000000, -1000000, 1000000, 1000000));
                for (const NyBookPlace &place : view.places())
                    QVERIFY(paper.contains(view.photoRect(place)));
                Pointer pointer(view);
                pointer.drag(QPointF(1, 1), QPointF(30, 30));
                pointer.wheel(QPointF(0, 0), QPoint(0, 120), Qt::ControlModifier);
                QVERIFY(view.zoom() >= 1 && view.zoom() <= NySpreadView::MaximumZoom);
                view.setZoom(zoom);
                QTest::keyClick(&view, Qt::Key_Tab);
            }
        }
    }
    // Selected although it cannot be seen, so that it can be taken out.
    view.setSelected(NyBookPlace{0, 0});
    QCOMPARE(view.selected(), std::optional(NyBookPlace{0, 0}));
    view.grab();
    QTRY_VERIFY(view.isComplete());
}

void tst_NySpreadView::thousandPhotos()
{
    NyBookProject project = book();
    project.pages[0].photos.clear();
    for (int i = 0; i < 1000; ++i)
        project.pages[0].photos.append(foto(i % 2 ? u"red"_s : u"green"_s, QRectF(i % 40 * 7, i / 40 * 8, 6, 4.5)));
    // As many pictures as large as the page, one above the other.
    for (int i = 0; i < 1000; ++i)
        project.pages[2].photos.append(foto(i % 2 ? u"blue"_s : u"yellow"_s, QRectF(0, 0, 280 - i / 10.0, 210 - i / 10.0)));
    NySpreadView view(project, NyDesignStyle());
    view.setSpread(1);
    SHOW(view);
    QCOMPARE(view.places().size(), 1001);
    QCOMPARE(QAccessible::queryAccessibleInterface(&view)->childCount(), 1001);
    Pointer(view).click(view.photoRect({0, 777}).center());
    QCOMPARE(view.selected(), std::optional(NyBookPlace{0, 777}));
    view.setZoom(8);
    QTRY_VERIFY_WITH_TIMEOUT(waitForPhotos(view), 20000);
    QVERIFY(view.photoRect({0, 777}).intersects(QRectF(view.viewport()->rect())));
    view.showNext();
    QTRY_VERIFY_WITH_TIMEOUT(waitForPhotos(view), 20000);
}

QTEST_MAIN(tst_NySpreadView)
#include "tst_NySpreadView.moc"
