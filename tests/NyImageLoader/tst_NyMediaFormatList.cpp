#include <QTest>

#include <QFile>
#include <QRegularExpression>

#include <NyImageLoader.h>
#include <NyMediaFormatList.h>

using namespace Qt::Literals::StringLiterals;

class tst_NyMediaFormatList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyList();
    void filters();
    void matches_data();
    void matches();
    void readableFormats();
    void askingLoadsNoCodecs();
};

void tst_NyMediaFormatList::emptyList()
{
    QVERIFY(NyMediaFormatList().isEmpty());
    QVERIFY(NyMediaFormatList().fileExtensionFilters().isEmpty());
    QVERIFY(!NyMediaFormatList().matches(u"a.jpg"));
}

void tst_NyMediaFormatList::filters()
{
    const NyMediaFormatList list({NyMediaFormat(u"JPEG"_s, {u"jpg"_s, u"jpeg"_s}, NyMediaFormatSource::ImagePlugin),
        NyMediaFormat(u"HEIC"_s, {u"heic"_s}, NyMediaFormatSource::Heif)});
    QCOMPARE(list.fileExtensionFilters(), QStringList({u"*.jpg"_s, u"*.jpeg"_s, u"*.heic"_s}));
    QCOMPARE(list.formats().at(1).name(), u"HEIC"_s);
    QCOMPARE(list.formats().at(1).source(), NyMediaFormatSource::Heif);
}

void tst_NyMediaFormatList::matches_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");
    QTest::newRow("lower case") << u"a.jpg"_s << true;
    QTest::newRow("upper case") << u"A.JPG"_s << true;
    QTest::newRow("mixed case") << u"A.JpEg"_s << true;
    QTest::newRow("path") << u"/x.d/y/a.jpg"_s << true;
    QTest::newRow("two extensions") << u"a.png.jpg"_s << true;
    QTest::newRow("only the extension") << u".jpg"_s << true;
    QTest::newRow("none") << u"jpg"_s << false;
    QTest::newRow("extension in the middle") << u"a.jpg.part"_s << false;
    QTest::newRow("longer") << u"a.jpgx"_s << false;
    QTest::newRow("shorter") << u"a.jp"_s << false;
    QTest::newRow("dot at the end") << u"a.jpg."_s << false;
    QTest::newRow("blank at the end") << u"a.jpg "_s << false;
    QTest::newRow("long s folds to s elsewhere") << u"a.p\u017f"_s << false;
    QTest::newRow("kelvin sign folds to k elsewhere") << u"a.\u212a"_s << false;
    QTest::newRow("empty") << QString() << false;
}

void tst_NyMediaFormatList::matches()
{
    QFETCH(QString, name);
    QFETCH(bool, expected);
    const NyMediaFormatList list({NyMediaFormat(u"JPEG"_s, {u"jpg"_s, u"jpeg"_s}, NyMediaFormatSource::ImagePlugin),
        NyMediaFormat(u"Traps"_s, {u"ps"_s, u"k"_s}, NyMediaFormatSource::ImagePlugin)});
    QCOMPARE(list.matches(name), expected);
}

void tst_NyMediaFormatList::readableFormats()
{
    const NyMediaFormatList list = NyImageLoader::instance().supportedMediaFormats();
    const QStringList filters = list.fileExtensionFilters();
    for (const QString &filter : {u"*.jpg"_s, u"*.jpeg"_s, u"*.png"_s, u"*.tif"_s, u"*.tiff"_s, u"*.webp"_s, u"*.bmp"_s, u"*.heic"_s,
             u"*.heif"_s, u"*.avif"_s, u"*.cr2"_s, u"*.nef"_s, u"*.arw"_s, u"*.dng"_s, u"*.orf"_s, u"*.rw2"_s, u"*.raf"_s})
        QVERIFY2(filters.contains(filter), qPrintable(filter));
    for (const QString &filter : {u"*.svg"_s, u"*.gif"_s, u"*.ico"_s, u"*.mp4"_s, u"*.mov"_s, u"*.xbm"_s, u"*.pdf"_s, u"*.cr3"_s})
        QVERIFY2(!filters.contains(filter), qPrintable(filter));
    static const QRegularExpression form(u"^\\*\\.[a-z0-9]+$"_s);
    for (const QString &filter : filters) {
        QVERIFY2(form.match(filter).hasMatch(), qPrintable(filter));
        QCOMPARE(filters.count(filter), 1);
    }
}

void tst_NyMediaFormatList::askingLoadsNoCodecs()
{
    // Its own process knows only what the two asked above.
    QFile maps(u"/proc/self/maps"_s);
    QVERIFY(maps.open(QIODevice::ReadOnly));
    const QByteArray content = maps.readAll();
    QVERIFY(content.contains("libNyImageLoader.so"));
    for (const char *library : {"libheif", "libexiv2", "libde265", "libtiff", "libqtiff", "libqwebp"})
        QVERIFY2(!content.contains(library), library);
}

QTEST_GUILESS_MAIN(tst_NyMediaFormatList)
#include "tst_NyMediaFormatList.moc"
