#include <NyGUIWidgetsConfig.h>

#include <algorithm>
#include <cmath>

#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <QSet>
#include <QTest>

class tst_NyGUIWidgetsConfig : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }
    void icons_data();
    void icons();
    void iconsStandOut_data();
    void iconsStandOut();
    void allDifferent();
    void noSuchIcon_data();
    void noSuchIcon();
};

static const QStringList IDS{QStringLiteral("ico_albuma"), QStringLiteral("ico_button_close_bright"), QStringLiteral("ico_info"),
    QStringLiteral("ico_quilloservice"), QStringLiteral("ico_quit"), QStringLiteral("ico_show_last_proposal")};

void tst_NyGUIWidgetsConfig::icons_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<int>("size");
    for (const QString &id : IDS) {
        for (const int size : {16, 22, 64, 256})
            QTest::addRow("%s at %d", qPrintable(id), size) << id << size;
    }
}

void tst_NyGUIWidgetsConfig::icons()
{
    QFETCH(QString, id);
    QFETCH(int, size);
    const QIcon icon = NyGUIWidgetsConfig::instance().loadIconById(id);
    QVERIFY(!icon.isNull());
    const QImage image = icon.pixmap(size, size).toImage().convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(image.size(), QSize(size, size));
    // Something solid is to be seen, and the corners are free.
    int solid = 0;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x)
            solid += image.pixelColor(x, y).alpha() > 200 ? 1 : 0;
    }
    QVERIFY2(solid > size * size / 16, qPrintable(QString::number(solid)));
    QVERIFY(image.pixelColor(0, 0).alpha() < 128);
}

void tst_NyGUIWidgetsConfig::iconsStandOut_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QColor>("surface");
    for (const QString &id : IDS) {
        // The cross is made for bright surfaces.
        if (id.endsWith(QStringLiteral("_bright")))
            continue;
        QTest::addRow("%s on light", qPrintable(id)) << id << QColor(0xfa, 0xfa, 0xfa);
        QTest::addRow("%s on dark", qPrintable(id)) << id << QColor(0x2b, 0x2b, 0x2b);
        QTest::addRow("%s on a chosen entry", qPrintable(id)) << id << QColor(0x3c, 0x6e, 0xb4);
    }
}

void tst_NyGUIWidgetsConfig::iconsStandOut()
{
    QFETCH(QString, id);
    QFETCH(QColor, surface);
    QImage image(16, 16, QImage::Format_RGB32);
    image.fill(surface);
    QPainter painter(&image);
    painter.drawPixmap(0, 0, NyGUIWidgetsConfig::instance().loadIconById(id).pixmap(16, 16));
    painter.end();
    // WCAG 2.1, 1.4.11: what tells a symbol has a contrast of at least 3 to 1.
    const auto luminance = [](const QColor &color) {
        const auto linear = [](double part) { return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4); };
        return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
    };
    int clear = 0;
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 16; ++x) {
            const double first = luminance(image.pixelColor(x, y));
            const double second = luminance(surface);
            clear += (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05) >= 3.0 ? 1 : 0;
        }
    }
    QVERIFY2(clear >= 16, qPrintable(QString::number(clear)));
}

void tst_NyGUIWidgetsConfig::allDifferent()
{
    QSet<QByteArray> seen;
    for (const QString &id : IDS) {
        const QImage image = NyGUIWidgetsConfig::instance().loadIconById(id).pixmap(16, 16).toImage();
        seen.insert(QByteArray(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes()));
    }
    QCOMPARE(seen.size(), IDS.size());
}

void tst_NyGUIWidgetsConfig::noSuchIcon_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("unknown") << QStringLiteral("ico_unknown");
    QTest::newRow("empty") << QString();
    QTest::newRow("percent sign") << QStringLiteral("%1");
    QTest::newRow("with its ending") << QStringLiteral("ico_albuma.svg");
}

void tst_NyGUIWidgetsConfig::noSuchIcon()
{
    QFETCH(QString, id);
    QTest::ignoreMessage(QtDebugMsg, qPrintable(QStringLiteral("there is no icon with the id \"%1\"").arg(id)));
    QVERIFY(NyGUIWidgetsConfig::instance().loadIconById(id).isNull());
}

QTEST_MAIN(tst_NyGUIWidgetsConfig)
#include "tst_NyGUIWidgetsConfig.moc"
