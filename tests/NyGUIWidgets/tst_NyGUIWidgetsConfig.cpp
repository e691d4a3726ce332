#include <NyGUIWidgetsConfig.h>

#include <QImage>
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
