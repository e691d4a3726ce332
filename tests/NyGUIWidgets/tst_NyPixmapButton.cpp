#include <NyGUIWidgetsConfig.h>
#include <NyPixmapButton.h>

#include <QSignalSpy>
#include <QTest>

class tst_NyPixmapButton : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The offscreen platform warns of what it cannot do.
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral("^(?!This plugin does not support)"))); }
    void showsItsIcon();
    void isClicked();
    void unknownIcon();
};

void tst_NyPixmapButton::showsItsIcon()
{
    QWidget window;
    NyPixmapButton button(&window, QStringLiteral("ico_button_close_bright"));
    QCOMPARE(button.parentWidget(), &window);
    QCOMPARE(button.icon().pixmap(32, 32).toImage(),
        NyGUIWidgetsConfig::instance().loadIconById(QStringLiteral("ico_button_close_bright")).pixmap(32, 32).toImage());
    QVERIFY(button.text().isEmpty());
    button.resize(button.sizeHint());
    const QImage shown = button.grab().toImage();
    int dark = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x)
            dark += qGray(shown.pixel(x, y)) < 150 ? 1 : 0;
    }
    QVERIFY2(dark > 10, qPrintable(QString::number(dark)));
}

void tst_NyPixmapButton::isClicked()
{
    NyPixmapButton button(nullptr, QStringLiteral("ico_button_close_bright"));
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    button.show();
    QTest::mouseClick(&button, Qt::RightButton);
    QCOMPARE(clicked.size(), 0);
    QTest::mouseClick(&button, Qt::LeftButton);
    QCOMPARE(clicked.size(), 1);
    QTest::keyClick(&button, Qt::Key_Space);
    QCOMPARE(clicked.size(), 2);
}

void tst_NyPixmapButton::unknownIcon()
{
    QTest::ignoreMessage(QtDebugMsg, "there is no icon with the id \"ico_unknown\"");
    NyPixmapButton button(nullptr, QStringLiteral("ico_unknown"));
    QVERIFY(button.icon().isNull());
    QSignalSpy clicked(&button, &QAbstractButton::clicked);
    button.click();
    QCOMPARE(clicked.size(), 1);
}

QTEST_MAIN(tst_NyPixmapButton)
#include "tst_NyPixmapButton.moc"
