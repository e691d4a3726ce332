#include <QTest>

#include <cmath>

#include <sys/stat.h>

#include <QBuffer>
#include <QColorSpace>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <NyImageLoader.h>

#include "TestPictures.h"

using namespace Qt::Literals::StringLiterals;

class tst_NyImageLoader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void scaledSizes_data();
    void scaledSizes();
    void emptyBox();
    void jpegOrientations_data();
    void jpegOrientations();
    void otherFormats_data();
    void otherFormats();
    void orientationInPng();
    void orientationInTiff();
    void heif_data();
    void heif();
    void heifThumbnail();
    void heifOrientations_data();
    void heifOrientations();
    void rawPreviews_data();
    void rawPreviews();
    void rawPreviewChoice();
    void rawPreviewWithItsOwnOrientation();
    void contentDecides_data();
    void contentDecides();
    void wideGamut();
    void grayAndTransparent();
    void unreadable_data();
    void unreadable();
    void cutShort_data();
    void cutShort();
    void trailingBytesDoNoHarm();
    void bombs_data();
    void bombs();
    void tooManyScans_data();
    void tooManyScans();
    void manyScansOfRealEncoders();
    void emptyGiants_data();
    void emptyGiants();
    void rawFilesCutShort();
    void pipeDoesNotBlock();
    void hostileNames();
    void manyThreads();
    void samples();

private:
    QString file(const QString &name) const { return m_folder.filePath(name); }
    static void expectWarning(const QString &path)
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read the picture \"%1\""_s.arg(QRegularExpression::escape(path))));
    }

    const QTemporaryDir m_folder;
    const NyImageLoader m_loader;
};

void tst_NyImageLoader::init()
{
    QTest::failOnWarning(QRegularExpression(u"NyImageLoader"_s));
}

void tst_NyImageLoader::scaledSizes_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("box");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("landscape") << QSize(400, 300) << QSize(224, 224) << QSize(224, 168);
    QTest::newRow("portrait") << QSize(300, 400) << QSize(224, 224) << QSize(168, 224);
    QTest::newRow("square") << QSize(500, 500) << QSize(224, 224) << QSize(224, 224);
    QTest::newRow("flat box") << QSize(400, 400) << QSize(300, 50) << QSize(50, 50);
    QTest::newRow("never enlarged") << QSize(40, 30) << QSize(224, 224) << QSize(40, 30);
    QTest::newRow("just fits") << QSize(224, 224) << QSize(224, 224) << QSize(224, 224);
    QTest::newRow("one too wide") << QSize(225, 224) << QSize(224, 224) << QSize(224, 223);
    QTest::newRow("panorama") << QSize(3000, 10) << QSize(100, 100) << QSize(100, 1);
    QTest::newRow("one pixel") << QSize(1, 1) << QSize(224, 224) << QSize(1, 1);
}

void tst_NyImageLoader::scaledSizes()
{
    QFETCH(QSize, size);
    QFETCH(QSize, box);
    QFETCH(QSize, expected);
    const QString path = file(u"size.jpg"_s);
    QVERIFY(TestPictures::writeJpeg(path, size));
    QCOMPARE(m_loader.orientedSize(path), size);
    QCOMPARE(m_loader.loadScaled(path, box).size(), expected);
    QCOMPARE(m_loader.load(path).size(), size);
}

void tst_NyImageLoader::emptyBox()
{
    const QString path = file(u"box.jpg"_s);
    QVERIFY(TestPictures::writeJpeg(path, QSize(40, 30)));
    QVERIFY(m_loader.loadScaled(path, QSize()).isNull());
    QVERIFY(m_loader.loadScaled(path, QSize(0, 100)).isNull());
    QVERIFY(m_loader.loadScaled(path, QSize(100, 0)).isNull());
}

void tst_NyImageLoader::jpegOrientations_data()
{
    QTest::addColumn<int>("orientation");
    for (int orientation = 1; orientation <= 8; ++orientation)
        QTest::addRow("orientation %d", orientation) << orientation;
}

void tst_NyImageLoader::jpegOrientations()
{
    QFETCH(int, orientation);
    const QString path = file(u"turned.jpg"_s);
    QVERIFY(TestPictures::writeJpeg(path, QSize(320, 200), orientation));
    QCOMPARE(m_loader.orientedSize(path), QSize(320, 200));
    const QImage full = m_loader.load(path);
    QCOMPARE(full.size(), QSize(320, 200));
    QCOMPARE(TestPictures::cornerLetters(full), u"rgbw"_s);
    const QImage scaled = m_loader.loadScaled(path, QSize(160, 160));
    QCOMPARE(scaled.size(), QSize(160, 100));
    QCOMPARE(TestPictures::cornerLetters(scaled), u"rgbw"_s);
    // A box that limits the other side.
    QCOMPARE(m_loader.loadScaled(path, QSize(1000, 50)).size(), QSize(80, 50));
}

void tst_NyImageLoader::otherFormats_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("PNG") << u"png"_s << QByteArray("PNG");
    QTest::newRow("TIFF") << u"tif"_s << QByteArray("TIFF");
    QTest::newRow("WebP") << u"webp"_s << QByteArray("WEBP");
    QTest::newRow("BMP") << u"bmp"_s << QByteArray("BMP");
}

void tst_NyImageLoader::otherFormats()
{
    QFETCH(QString, extension);
    QFETCH(QByteArray, format);
    const QString path = file(u"other."_s + extension);
    QVERIFY(TestPictures::corners(QSize(300, 200)).save(path, format.constData()));
    QCOMPARE(m_loader.orientedSize(path), QSize(300, 200));
    const QImage full = m_loader.load(path);
    QCOMPARE(TestPictures::cornerLetters(full), u"rgbw"_s);
    QCOMPARE(full.format(), QImage::Format_RGB32);
    const QImage scaled = m_loader.loadScaled(path, QSize(150, 150));
    QCOMPARE(scaled.size(), QSize(150, 100));
    QCOMPARE(TestPictures::cornerLetters(scaled), u"rgbw"_s);
}

void tst_NyImageLoader::orientationInPng()
{
    for (const auto &[name, format] : {std::pair("turned.png", "PNG"), std::pair("turned.webp", "WEBP")}) {
        const QString path = file(QString::fromLatin1(name));
        QVERIFY(TestPictures::cornersStored(QSize(320, 200), 6).save(path, format));
        QVERIFY(TestPictures::addFields(path, {{"Exif.Image.Orientation", "6"}}));
        QCOMPARE(m_loader.orientedSize(path), QSize(320, 200));
        const QImage scaled = m_loader.loadScaled(path, QSize(160, 160));
        QCOMPARE(scaled.size(), QSize(160, 100));
        QCOMPARE(TestPictures::cornerLetters(scaled), u"rgbw"_s);
    }
}

void tst_NyImageLoader::orientationInTiff()
{
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const QString path = file(u"turned.tif"_s);
        QVERIFY(TestPictures::cornersStored(QSize(64, 40), orientation).save(path, "TIFF"));
        QVERIFY(TestPictures::addFields(path, {{"Exif.Image.Orientation", std::to_string(orientation)}}));
        QCOMPARE(m_loader.orientedSize(path), QSize(64, 40));
        QCOMPARE(TestPictures::cornerLetters(m_loader.load(path)), u"rgbw"_s);
    }
}

void tst_NyImageLoader::heif_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("av1");
    QTest::newRow("HEIC") << u"heic"_s << false;
    QTest::newRow("AVIF") << u"avif"_s << true;
}

void tst_NyImageLoader::heif()
{
    QFETCH(QString, extension);
    QFETCH(bool, av1);
    if (!TestPictures::canWriteHeif(av1))
        QSKIP("libheif has no encoder for this here");
    const QString path = file(u"picture."_s + extension);
    QVERIFY(TestPictures::writeHeif(path, QSize(320, 200), 0, av1));
    QCOMPARE(m_loader.orientedSize(path), QSize(320, 200));
    QCOMPARE(TestPictures::cornerLetters(m_loader.load(path)), u"rgbw"_s);
    const QImage scaled = m_loader.loadScaled(path, QSize(160, 160));
    QCOMPARE(scaled.size(), QSize(160, 100));
    QCOMPARE(TestPictures::cornerLetters(scaled), u"rgbw"_s);
    QCOMPARE(scaled.format(), QImage::Format_RGB32);
}

void tst_NyImageLoader::heifThumbnail()
{
    if (!TestPictures::canWriteHeif(false))
        QSKIP("libheif has no encoder for this here");
    const QString path = file(u"thumbnail.heic"_s);
    QVERIFY(TestPictures::writeHeif(path, QSize(640, 400), 320));
    // The thumbnail is the mirror image. It serves as long as it is large enough, and never enlarged.
    for (const auto &[px, letters] : {std::pair(100, u"grwb"_s), std::pair(224, u"grwb"_s), std::pair(320, u"grwb"_s),
             std::pair(321, u"rgbw"_s), std::pair(640, u"rgbw"_s), std::pair(2000, u"rgbw"_s)}) {
        const QImage image = m_loader.loadScaled(path, QSize(px, px));
        QCOMPARE(image.size(), px >= 640 ? QSize(640, 400) : QSize(640, 400).scaled(px, px, Qt::KeepAspectRatio));
        QCOMPARE(TestPictures::cornerLetters(image), letters);
    }
    QCOMPARE(TestPictures::cornerLetters(m_loader.load(path)), u"rgbw"_s);
    QCOMPARE(m_loader.orientedSize(path), QSize(640, 400));
}

void tst_NyImageLoader::heifOrientations_data()
{
    QTest::addColumn<int>("own");
    QTest::addColumn<int>("exif");
    for (int own = 1; own <= 8; ++own) {
        // Cameras repeat the rotation in the EXIF block, others leave a stale one there.
        QTest::addRow("own %d, EXIF the same", own) << own << own;
        QTest::addRow("own %d, EXIF 6", own) << own << 6;
        QTest::addRow("own %d, no EXIF", own) << own << 0;
    }
}

void tst_NyImageLoader::heifOrientations()
{
    QFETCH(int, own);
    QFETCH(int, exif);
    if (!TestPictures::canWriteHeif(false))
        QSKIP("libheif has no encoder for this here");
    const QString path = file(u"turned.heic"_s);
    QVERIFY(TestPictures::writeTurnedHeif(path, QSize(128, 64), own, exif));
    QCOMPARE(m_loader.orientedSize(path), QSize(128, 64));
    QCOMPARE(TestPictures::cornerLetters(m_loader.load(path)), u"rgbw"_s);
    QCOMPARE(TestPictures::cornerLetters(m_loader.loadScaled(path, QSize(64, 64))), u"rgbw"_s);
}

void tst_NyImageLoader::rawPreviews_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSize>("sensor");
    QTest::addColumn<QSize>("preview");
    QTest::addColumn<QString>("letters");
    QTest::addColumn<QSize>("expected");
    // The preview shows corners() as stored; turned by 90 degrees clockwise its corners are blue, red, white, green.
    QTest::newRow("upright") << 1 << QSize(640, 480) << QSize(320, 240) << u"rgbw"_s << QSize(320, 240);
    QTest::newRow("turned") << 6 << QSize(640, 480) << QSize(320, 240) << u"brwg"_s << QSize(240, 320);
    QTest::newRow("upside down") << 3 << QSize(640, 480) << QSize(320, 240) << u"wbgr"_s << QSize(320, 240);
    QTest::newRow("turned by the camera already") << 6 << QSize(640, 480) << QSize(240, 320) << u"rgbw"_s << QSize(240, 320);
}

void tst_NyImageLoader::rawPreviews()
{
    QFETCH(int, orientation);
    QFETCH(QSize, sensor);
    QFETCH(QSize, preview);
    QFETCH(QString, letters);
    QFETCH(QSize, expected);
    for (const QString &extension : {u"nef"_s, u"DNG"_s, u"arw"_s}) {
        const QString path = file(u"raw."_s + extension);
        QVERIFY(TestPictures::writeBytes(
            path, TestPictures::rawFile(sensor, orientation, TestPictures::jpegBytes(TestPictures::corners(preview)))));
        QCOMPARE(m_loader.orientedSize(path), expected);
        const QImage image = m_loader.loadScaled(path, QSize(160, 160));
        QCOMPARE(image.size(), expected / 2);
        QCOMPARE(TestPictures::cornerLetters(image), letters);
    }
}

void tst_NyImageLoader::rawPreviewChoice()
{
    const QByteArray large = TestPictures::jpegBytes(TestPictures::corners(QSize(600, 400)));
    // The mirror image, so that one can tell which of the two was decoded.
    const auto small = [](const QSize &size) { return TestPictures::jpegBytes(TestPictures::corners(size).mirrored(true, false)); };
    const QString path = file(u"two.nef"_s);
    QVERIFY(TestPictures::writeBytes(path, TestPictures::rawFile(QSize(6000, 4000), 1, large, small(QSize(240, 160)))));
    for (const auto &[px, letters] : {std::pair(100, u"grwb"_s), std::pair(224, u"grwb"_s), std::pair(240, u"grwb"_s),
             std::pair(241, u"rgbw"_s), std::pair(600, u"rgbw"_s), std::pair(5000, u"rgbw"_s)}) {
        const QImage image = m_loader.loadScaled(path, QSize(px, px));
        QCOMPARE(image.size(), px > 600 ? QSize(600, 400) : QSize(600, 400).scaled(px, px, Qt::KeepAspectRatio));
        QCOMPARE(TestPictures::cornerLetters(image), letters);
    }
    QCOMPARE(m_loader.load(path).size(), QSize(600, 400));
    QCOMPARE(m_loader.orientedSize(path), QSize(600, 400));
    // A thumbnail of other proportions has black bars.
    QVERIFY(TestPictures::writeBytes(path, TestPictures::rawFile(QSize(6000, 4000), 1, large, small(QSize(240, 180)))));
    QCOMPARE(TestPictures::cornerLetters(m_loader.loadScaled(path, QSize(100, 100))), u"rgbw"_s);
}

void tst_NyImageLoader::rawPreviewWithItsOwnOrientation()
{
    const QString jpegPath = file(u"preview.jpg"_s);
    QVERIFY(TestPictures::writeJpeg(jpegPath, QSize(200, 320), 6));
    const QString path = file(u"own.nef"_s);
    // Both say the same: it must be turned once, not twice.
    QVERIFY(TestPictures::writeBytes(path, TestPictures::rawFile(QSize(640, 400), 6, TestPictures::readBytes(jpegPath))));
    QCOMPARE(m_loader.orientedSize(path), QSize(200, 320));
    QCOMPARE(TestPictures::cornerLetters(m_loader.load(path)), u"rgbw"_s);
}

void tst_NyImageLoader::contentDecides_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QString>("name");
    QTest::newRow("PNG as jpg") << QByteArray("PNG") << u"p.jpg"_s;
    QTest::newRow("JPEG as png") << QByteArray("JPEG") << u"j.png"_s;
    QTest::newRow("JPEG as heic") << QByteArray("JPEG") << u"j.heic"_s;
    QTest::newRow("JPEG as nef") << QByteArray("JPEG") << u"j.nef"_s;
    QTest::newRow("WebP as jpeg") << QByteArray("WEBP") << u"w.jpeg"_s;
    QTest::newRow("JPEG without a name's end") << QByteArray("JPEG") << u"jpeg"_s;
    QTest::newRow("HEIC as jpg") << QByteArray("HEIC") << u"h.jpg"_s;
}

void tst_NyImageLoader::contentDecides()
{
    QFETCH(QByteArray, format);
    QFETCH(QString, name);
    const QString path = file(name);
    if (format == "HEIC") {
        if (!TestPictures::canWriteHeif(false))
            QSKIP("libheif has no encoder for this here");
        QVERIFY(TestPictures::writeHeif(path, QSize(320, 200)));
    } else {
        QVERIFY(TestPictures::corners(QSize(320, 200)).save(path, format.constData()));
    }
    QCOMPARE(m_loader.orientedSize(path), QSize(320, 200));
    QCOMPARE(TestPictures::cornerLetters(m_loader.loadScaled(path, QSize(160, 160))), u"rgbw"_s);
}

void tst_NyImageLoader::wideGamut()
{
    // The same numbers in Display P3 are a stronger red than sRGB has; a weaker one has other numbers in sRGB.
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(qRgb(200, 80, 60));
    image.setColorSpace(QColorSpace::DisplayP3);
    const QString path = file(u"p3.png"_s);
    QVERIFY(image.save(path, "PNG"));
    const QImage loaded = m_loader.loadScaled(path, QSize(32, 32));
    QImage expected = image;
    expected.convertToColorSpace(QColorSpace::SRgb);
    const QRgb is = loaded.pixel(10, 10);
    const QRgb shall = expected.pixel(10, 10);
    QVERIFY(std::abs(qRed(shall) - 200) > 5);
    QVERIFY(std::abs(qRed(is) - qRed(shall)) <= 2 && std::abs(qGreen(is) - qGreen(shall)) <= 2 && std::abs(qBlue(is) - qBlue(shall)) <= 2);
    QCOMPARE(loaded.colorSpace(), QColorSpace(QColorSpace::SRgb));
}

void tst_NyImageLoader::grayAndTransparent()
{
    const QString gray = file(u"gray.jpg"_s);
    QVERIFY(TestPictures::corners(QSize(64, 64)).convertToFormat(QImage::Format_Grayscale8).save(gray, "JPEG"));
    QCOMPARE(m_loader.load(gray).format(), QImage::Format_RGB32);
    const QString indexed = file(u"indexed.png"_s);
    QVERIFY(TestPictures::corners(QSize(64, 64)).convertToFormat(QImage::Format_Indexed8).save(indexed, "PNG"));
    QCOMPARE(m_loader.load(indexed).format(), QImage::Format_RGB32);
    QCOMPARE(TestPictures::cornerLetters(m_loader.load(indexed)), u"rgbw"_s);
    QImage glass(64, 64, QImage::Format_ARGB32);
    glass.fill(qRgba(255, 0, 0, 100));
    const QString transparent = file(u"glass.png"_s);
    QVERIFY(glass.save(transparent, "PNG"));
    QCOMPARE(m_loader.load(transparent).format(), QImage::Format_ARGB32);
    QCOMPARE(qAlpha(m_loader.load(transparent).pixel(5, 5)), 100);
}

void tst_NyImageLoader::unreadable_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << u"empty.jpg"_s << QByteArray("");
    QTest::newRow("text") << u"text.jpg"_s << QByteArray("Dies ist kein Bild.\n");
    QTest::newRow("one byte") << u"one.jpg"_s << QByteArray("\xff");
    QTest::newRow("start of a JPEG") << u"start.jpg"_s << QByteArray("\xff\xd8\xff\xe0");
    QTest::newRow("zeros") << u"zeros.jpg"_s << QByteArray(5000, '\0');
    QTest::newRow("text as heic") << u"text.heic"_s << QByteArray("ftypheic is written here\n");
    QTest::newRow("start of a HEIC") << u"start.heic"_s
                                     << QByteArray("\0\0\0\x18"
                                                   "ftypheic\0\0\0\0mif1heic",
                                            24);
    QTest::newRow("avif brand and noise") << u"noise.avif"_s
                                          << QByteArray("\0\0\0\x14"
                                                        "ftypavif\0\0\0\0avif",
                                                 20)
            + QByteArray(300, '\x5a');
    QTest::newRow("raw without a preview") << u"none.nef"_s << TestPictures::rawFile(QSize(640, 480), 1, QByteArray());
    QTest::newRow("raw with a broken preview") << u"broken.nef"_s << TestPictures::rawFile(QSize(640, 480), 1, QByteArray(2000, 'x'));
    QTest::newRow("drawing under a photo's name")
        << u"drawing.jpg"_s << QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"10\" height=\"10\"/>");
    QTest::newRow("portable pixmap") << u"pixmap.jpg"_s << QByteArray("P3\n1 1\n255\n1 2 3\n");
    QTest::newRow("start of a Fuji raw") << u"start.raf"_s << QByteArray("FUJIFILMCCD-RAW 0201FF383501");
    QTest::newRow("tiff with a directory loop") << u"loop.tif"_s << QByteArray("II*\0\x08\0\0\0\0\0\x08\0\0\0", 14);
}

void tst_NyImageLoader::unreadable()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    const QString path = file(name);
    QVERIFY(TestPictures::writeBytes(path, bytes));
    expectWarning(path);
    QVERIFY(m_loader.loadScaled(path, QSize(224, 224)).isNull());
    expectWarning(path);
    QVERIFY(m_loader.load(path).isNull());
    expectWarning(path);
    QVERIFY(m_loader.orientedSize(path).isEmpty());
}

void tst_NyImageLoader::cutShort_data()
{
    QTest::addColumn<QByteArray>("format");
    for (const char *format : {"JPEG", "progressive JPEG", "PNG", "TIFF", "WEBP", "BMP", "HEIC"})
        QTest::newRow(format) << QByteArray(format);
}

void tst_NyImageLoader::cutShort()
{
    QFETCH(QByteArray, format);
    const QString whole = file(u"whole"_s);
    // Noise, so that the pixels fill the file.
    QImage image(300, 200, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            state = state * 1664525u + 1013904223u;
            image.setPixel(x, y, 0xff000000u | state >> 8);
        }
    }
    if (format == "HEIC") {
        if (!TestPictures::canWriteHeif(false))
            QSKIP("libheif has no encoder for this here");
        QVERIFY(TestPictures::writeHeif(whole, QSize(640, 400)));
    } else if (format == "progressive JPEG") {
        QImageWriter writer(whole, "jpeg");
        writer.setProgressiveScanWrite(true);
        QVERIFY(writer.write(image));
    } else {
        QVERIFY(image.save(whole, format.constData()));
    }
    QVERIFY(!m_loader.load(whole).isNull());
    QVERIFY(!m_loader.loadScaled(whole, QSize(50, 50)).isNull());
    const QByteArray bytes = TestPictures::readBytes(whole);
    const QString path = file(u"cut"_s);
    for (const int percent : {10, 50, 90, 99}) {
        QVERIFY(TestPictures::writeBytes(path, bytes.first(bytes.size() * percent / 100)));
        // The decoders' own lines may stand beside ours.
        expectWarning(path);
        QVERIFY2(m_loader.loadScaled(path, QSize(50, 50)).isNull(), qPrintable(QString::number(percent)));
        expectWarning(path);
        QVERIFY2(m_loader.load(path).isNull(), qPrintable(QString::number(percent)));
    }
}

void tst_NyImageLoader::trailingBytesDoNoHarm()
{
    // Telephones append films and depth maps.
    const QString path = file(u"motion.jpg"_s);
    QVERIFY(TestPictures::writeJpeg(path, QSize(320, 200), 8));
    const QByteArray bytes = TestPictures::readBytes(path);
    for (const int count : {1, 4095, 4096, 100000}) {
        QVERIFY(TestPictures::writeBytes(path, bytes + QByteArray(count, 'm')));
        QCOMPARE(TestPictures::cornerLetters(m_loader.loadScaled(path, QSize(160, 160))), u"rgbw"_s);
    }
}

void tst_NyImageLoader::bombs_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<bool>("sizeIsKnown");
    QTest::newRow("JPEG") << QByteArray("JPEG") << false;
    QTest::newRow("progressive JPEG") << QByteArray("progressive JPEG") << true;
    QTest::newRow("PNG") << QByteArray("PNG") << false;
}

void tst_NyImageLoader::bombs()
{
    QFETCH(QByteArray, format);
    QFETCH(bool, sizeIsKnown);
    const QString path = file(u"bomb"_s);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QVERIFY(buffer.open(QIODevice::WriteOnly));
    QImageWriter writer(&buffer, format == "progressive JPEG" ? QByteArray("jpeg") : format.toLower());
    writer.setProgressiveScanWrite(format == "progressive JPEG");
    QVERIFY(writer.write(TestPictures::corners(QSize(16, 16))));
    // Its header claims 60,000 by 60,000 pixels; the progressive one 20,000 by 20,000, which a plain one may have.
    if (format == "PNG") {
        bytes.replace(16, 8, QByteArray("\0\0\xea\x60\0\0\xea\x60", 8));
        quint32 crc = 0xffffffffu;
        for (qsizetype i = 12; i < 29; ++i) {
            crc ^= uchar(bytes[i]);
            for (int bit = 0; bit < 8; ++bit)
                crc = crc & 1 ? crc >> 1 ^ 0xedb88320u : crc >> 1;
        }
        crc = ~crc;
        for (int i = 0; i < 4; ++i)
            bytes[29 + i] = char(crc >> (24 - 8 * i));
    } else {
        const qsizetype frame = bytes.indexOf(format == "JPEG" ? QByteArray("\xff\xc0") : QByteArray("\xff\xc2"));
        QVERIFY(frame > 0);
        bytes.replace(frame + 5, 4, format == "JPEG" ? QByteArray("\xea\x60\xea\x60") : QByteArray("\x4e\x20\x4e\x20"));
    }
    QVERIFY(TestPictures::writeBytes(path, bytes));
    const QRegularExpression line(u"\"%1\" : \"it claims to have [26]0000 x [26]0000 pixels\""_s.arg(QRegularExpression::escape(path)));
    QTest::ignoreMessage(QtWarningMsg, line);
    QVERIFY(m_loader.loadScaled(path, QSize(224, 224)).isNull());
    QTest::ignoreMessage(QtWarningMsg, line);
    QVERIFY(m_loader.load(path).isNull());
    if (sizeIsKnown) {
        QCOMPARE(m_loader.orientedSize(path), QSize(20000, 20000));
    } else {
        QTest::ignoreMessage(QtWarningMsg, line);
        QVERIFY(m_loader.orientedSize(path).isEmpty());
    }
}

namespace
{

QByteArray jpegSegment(int marker, const QByteArray &content)
{
    const qsizetype length = content.size() + 2;
    return QByteArray("\xff").append(char(marker)).append(char(length >> 8)).append(char(length)) + content;
}

/** A JPEG (ITU T.81, annex B) of which every scan names this many of its components and has a single byte of data. */
QByteArray jpegOfScans(int frameMarker, const QSize &size, int components, int scans, int componentsPerScan)
{
    QByteArray bytes = QByteArray("\xff\xd8") + jpegSegment(0xdb, QByteArray(1, '\0') + QByteArray(64, '\x10'));
    QByteArray frame("\x08");
    frame.append(char(size.height() >> 8)).append(char(size.height())).append(char(size.width() >> 8)).append(char(size.width()));
    frame.append(char(components));
    for (int i = 1; i <= components; ++i)
        frame.append(char(i)).append('\x11').append('\0');
    bytes += jpegSegment(frameMarker, frame);
    for (const char table : {'\0', '\x10'})
        bytes += jpegSegment(0xc4, QByteArray(1, table) + '\x01' + QByteArray(15, '\0') + '\0');
    for (int scan = 0; scan < scans; ++scan) {
        QByteArray header(1, char(componentsPerScan));
        for (int i = 0; i < componentsPerScan; ++i)
            header.append(char((scan + i) % components + 1)).append('\0');
        header.append('\0').append(frameMarker == 0xc2 ? '\0' : '\x3f').append('\0');
        bytes += jpegSegment(0xda, header) + '\0';
        // A comment that looks like the end of the picture.
        bytes += jpegSegment(0xfe, "\xff\xd9");
    }
    return bytes + QByteArray("\xff\xd9");
}

}

void tst_NyImageLoader::tooManyScans_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    const QString many = u"it has more scans than a picture needs"_s;
    QTest::newRow("progressive") << jpegOfScans(0xc2, QSize(2000, 2000), 1, 3000, 1) << many;
    QTest::newRow("baseline, component by component") << jpegOfScans(0xc0, QSize(2000, 2000), 3, 3000, 1) << many;
    QTest::newRow("all coefficients kept") << jpegOfScans(0xc0, QSize(20000, 20000), 3, 3, 1)
                                           << u"it claims to have 20000 x 20000 pixels"_s;
    QTest::newRow("progressive with one scan") << jpegOfScans(0xc2, QSize(20000, 20000), 1, 1, 1)
                                               << u"it claims to have 20000 x 20000 pixels"_s;
    QTest::newRow("a few bytes") << jpegOfScans(0xc0, QSize(20000, 20000), 3, 1, 3) << u"157 bytes for 20000 x 20000 pixels are no photo"_s;
}

void tst_NyImageLoader::tooManyScans()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    const QString path = file(u"scans.jpg"_s);
    QVERIFY(TestPictures::writeBytes(path, bytes));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"\"%1\" : \"%2\"$"_s.arg(QRegularExpression::escape(path), reason)));
    QVERIFY(m_loader.loadScaled(path, QSize(224, 224)).isNull());
    // In a raw file as well.
    const QString raw = file(u"scans.nef"_s);
    QVERIFY(TestPictures::writeBytes(raw, TestPictures::rawFile(QSize(640, 480), 1, bytes)));
    expectWarning(raw);
    QVERIFY(m_loader.loadScaled(raw, QSize(224, 224)).isNull());
}

void tst_NyImageLoader::manyScansOfRealEncoders()
{
    // Ten scans are usual; restart markers and stuffed zeros are none.
    const QString path = file(u"progressive.jpg"_s);
    QImageWriter writer(path, "jpeg");
    writer.setProgressiveScanWrite(true);
    QVERIFY(writer.write(TestPictures::corners(QSize(640, 400))));
    QVERIFY(TestPictures::readBytes(path).count("\xff\xda") > 5);
    QCOMPARE(TestPictures::cornerLetters(m_loader.loadScaled(path, QSize(160, 160))), u"rgbw"_s);
    // What stands behind the picture does not count.
    QByteArray bytes = TestPictures::readBytes(path);
    QVERIFY(TestPictures::writeBytes(path, bytes + QByteArray("\xff\xda\0\x02", 4).repeated(500)));
    QCOMPARE(TestPictures::cornerLetters(m_loader.loadScaled(path, QSize(160, 160))), u"rgbw"_s);
    // Baseline, all components in three scans.
    const QString apart = file(u"apart.jpg"_s);
    QVERIFY(TestPictures::writeBytes(apart, jpegOfScans(0xc0, QSize(64, 64), 3, 3, 1)));
    QCOMPARE(m_loader.orientedSize(apart), QSize(64, 64));
}

void tst_NyImageLoader::emptyGiants_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"giant.png", "giant.tif"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_NyImageLoader::emptyGiants()
{
    QFETCH(QString, name);
    // One bit for each of its pixels, all alike: some kilobytes that would take 230 MB.
    const QString path = file(name);
    {
        QImage image(8000, 7200, QImage::Format_Mono);
        QVERIFY(!image.isNull());
        image.fill(0);
        QImageWriter writer(path);
        writer.setCompression(name.endsWith(u".tif") ? 1 : 100);
        QVERIFY2(writer.write(image), qPrintable(writer.errorString()));
    }
    QVERIFY2(QFileInfo(path).size() < 576'000, qPrintable(QString::number(QFileInfo(path).size())));
    QTest::ignoreMessage(QtWarningMsg,
        QRegularExpression(u"\"%1\" : \"[0-9]+ bytes for 8000 x 7200 pixels are no photo\"$"_s.arg(QRegularExpression::escape(path))));
    QVERIFY(m_loader.loadScaled(path, QSize(224, 224)).isNull());
}

void tst_NyImageLoader::rawFilesCutShort()
{
    QImage image(600, 400, QImage::Format_RGB32);
    quint32 state = 1;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            state = state * 1664525u + 1013904223u;
            image.setPixel(x, y, 0xff000000u | state >> 8);
        }
    }
    const QByteArray whole = TestPictures::rawFile(QSize(1200, 800), 6, TestPictures::jpegBytes(image));
    const QString path = file(u"cut.nef"_s);
    QVERIFY(TestPictures::writeBytes(path, whole));
    QCOMPARE(m_loader.load(path).size(), QSize(400, 600));
    for (const int percent : {0, 10, 50, 90, 99}) {
        QVERIFY(TestPictures::writeBytes(path, whole.first(whole.size() * percent / 100)));
        expectWarning(path);
        QVERIFY2(m_loader.loadScaled(path, QSize(224, 224)).isNull(), qPrintable(QString::number(percent)));
    }
    // The file is whole, but the preview inside ends early.
    const QByteArray jpeg = TestPictures::jpegBytes(image);
    QVERIFY(TestPictures::writeBytes(path, TestPictures::rawFile(QSize(1200, 800), 6, jpeg.first(jpeg.size() / 2))));
    expectWarning(path);
    QVERIFY(m_loader.loadScaled(path, QSize(224, 224)).isNull());
}

void tst_NyImageLoader::pipeDoesNotBlock()
{
    const QString path = file(u"pipe.jpg"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    expectWarning(path);
    QVERIFY(m_loader.loadScaled(path, QSize(224, 224)).isNull());
    expectWarning(m_folder.path());
    QVERIFY(m_loader.orientedSize(m_folder.path()).isEmpty());
    const QString missing = file(u"missing.jpg"_s);
    expectWarning(missing);
    QVERIFY(m_loader.load(missing).isNull());
}

void tst_NyImageLoader::hostileNames()
{
    const bool hasHeif = TestPictures::canWriteHeif(false);
    for (const QString &name :
        {u" a b .jpg"_s, u"100%25.jpg"_s, u"a\nb.jpg"_s, u"file:#?.jpg"_s, u"\u00e4.jpg"_s, u"a\u0308.jpg"_s, u"\U0001F389.jpg"_s}) {
        const QString path = file(name);
        QVERIFY(TestPictures::writeJpeg(path, QSize(64, 40), 6));
        QCOMPARE(TestPictures::cornerLetters(m_loader.load(path)), u"rgbw"_s);
        if (hasHeif) {
            QVERIFY(TestPictures::writeHeif(path + u".heic"_s, QSize(64, 64)));
            QCOMPARE(m_loader.orientedSize(path + u".heic"_s), QSize(64, 64));
        }
        QVERIFY(TestPictures::writeBytes(
            path + u".nef"_s, TestPictures::rawFile(QSize(64, 64), 1, TestPictures::jpegBytes(TestPictures::corners(QSize(64, 64))))));
        QCOMPARE(m_loader.orientedSize(path + u".nef"_s), QSize(64, 64));
    }
}

void tst_NyImageLoader::manyThreads()
{
    const QString jpeg = file(u"threads.jpg"_s);
    QVERIFY(TestPictures::writeJpeg(jpeg, QSize(320, 200), 5));
    const QString png = file(u"threads.png"_s);
    QVERIFY(TestPictures::cornersStored(QSize(64, 40), 6).save(png, "PNG"));
    QVERIFY(TestPictures::addFields(png, {{"Exif.Image.Orientation", "6"}, {"Xmp.xmp.Rating", "3"}}));
    QStringList paths{jpeg, png};
    if (TestPictures::canWriteHeif(false)) {
        paths.append(file(u"threads.heic"_s));
        QVERIFY(TestPictures::writeHeif(paths.constLast(), QSize(64, 64)));
    }
    std::atomic<int> failures{0};
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back(QThread::create([&] {
            for (int round = 0; round < 10; ++round) {
                for (const QString &path : paths) {
                    if (TestPictures::cornerLetters(m_loader.loadScaled(path, QSize(60, 60))) != u"rgbw")
                        ++failures;
                }
            }
        }));
        threads.back()->start();
    }
    for (const auto &thread : threads)
        QVERIFY(thread->wait());
    QCOMPARE(failures.load(), 0);
}

void tst_NyImageLoader::samples()
{
    if (TestPictures::sampleFolder().isEmpty())
        QSKIP("NY_PHOTO_SAMPLES names no folder of photographs");
    const NyMediaFormatList formats = m_loader.supportedMediaFormats();
    int count = 0;
    QDirIterator files(TestPictures::sampleFolder(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (!formats.matches(path))
            continue;
        ++count;
        const QSize size = m_loader.orientedSize(path);
        QVERIFY2(!size.isEmpty(), qPrintable(path));
        const QImage image = m_loader.loadScaled(path, QSize(224, 224));
        QVERIFY2(!image.isNull(), qPrintable(path));
        const QSize expected = size.width() <= 224 && size.height() <= 224 ? size : size.scaled(224, 224, Qt::KeepAspectRatio);
        QVERIFY2(std::abs(image.width() - expected.width()) <= 1 && std::abs(image.height() - expected.height()) <= 1, qPrintable(path));
    }
    QVERIFY(count > 0);
}

QTEST_GUILESS_MAIN(tst_NyImageLoader)
#include "tst_NyImageLoader.moc"
