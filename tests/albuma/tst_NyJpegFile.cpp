#include <QBuffer>
#include <QColorSpace>
#include <QImage>
#include <QImageWriter>
#include <QTest>

#include "NyJpegFile.h"
#include "PaintedPictures.h"

using namespace Qt::Literals::StringLiterals;

namespace
{

enum class Coding { Baseline, Progressive };

QByteArray coded(const QImage &image, Coding coding = Coding::Baseline)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(85);
    writer.setProgressiveScanWrite(coding == Coding::Progressive);
    writer.write(image);
    return bytes;
}

QByteArray painted(Coding coding = Coding::Baseline)
{
    return coded(PaintedPictures::painted(QSize(64, 48), 4), coding);
}

QByteArray segment(int marker, const QByteArray &content)
{
    const qsizetype length = content.size() + 2;
    return QByteArray("\xff") + char(marker) + char(length >> 8) + char(length & 0xff) + content;
}

QByteArray withSegment(int marker, const QByteArray &content, const QByteArray &jpeg = painted())
{
    return QByteArray(jpeg).insert(2, segment(marker, content));
}

/** Where the content of the first segment with this marker begins. */
qsizetype contentOf(const QByteArray &jpeg, int marker)
{
    return jpeg.indexOf(QByteArray("\xff") + char(marker)) + 4;
}

QByteArray changed(QByteArray jpeg, qsizetype at, int value)
{
    jpeg[at] = char(value);
    return jpeg;
}

QByteArray adobe(int transform)
{
    return QByteArray("Adobe\0\x64\0\0\0\0", 11) + char(transform);
}

QByteArray iccPart(int number, int count, const QByteArray &part)
{
    return QByteArray("ICC_PROFILE\0", 12) + char(number) + char(count) + part;
}

QByteArray profile()
{
    return QColorSpace(QColorSpace::DisplayP3).iccProfile();
}

}

class tst_NyJpegFile : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void takesThePictureAlone_data();
    void takesThePictureAlone();
    void refuses_data();
    void refuses();
    void everyBeginningIsCutShort_data();
    void everyBeginningIsCutShort();
    void keepsWhatTellsTheColors_data();
    void keepsWhatTellsTheColors();
    void profiles_data();
    void profiles();
};

void tst_NyJpegFile::takesThePictureAlone_data()
{
    QTest::addColumn<QByteArray>("jpeg");
    QTest::addColumn<int>("components");
    QTest::newRow("baseline") << painted() << 3;
    QTest::newRow("progressive") << painted(Coding::Progressive) << 3;
    QTest::newRow("grey") << coded(PaintedPictures::painted(QSize(64, 48), 4).convertToFormat(QImage::Format_Grayscale8)) << 1;
    QTest::newRow("EXIF") << withSegment(0xe1, QByteArray("Exif\0\0secret", 12)) << 3;
    QTest::newRow("comment") << withSegment(0xfe, "secret") << 3;
    QTest::newRow("longest segment") << withSegment(0xed, QByteArray(65533, 's')) << 3;
    QTest::newRow("thumbnail") << withSegment(0xe0, QByteArray("JFXX\0\x10secret", 12)) << 3;
    QTest::newRow("something behind the end") << painted() + "secret" + painted() << 3;
    QTest::newRow("bytes that fill up") << QByteArray(painted()).insert(2, "\xff\xff\xff") << 3;
    QByteArray between = painted(Coding::Progressive);
    QTest::newRow("comment between scans") << between.insert(between.lastIndexOf("\xff\xda"), segment(0xfe, "secret")) << 3;
}

void tst_NyJpegFile::takesThePictureAlone()
{
    QFETCH(QByteArray, jpeg);
    QFETCH(int, components);
    QString reason;
    const std::optional<NyJpegFile> file = NyJpegFile::parse(jpeg, reason);
    QVERIFY2(file, qPrintable(reason));
    QCOMPARE(file->sizePx(), QSize(64, 48));
    QCOMPARE(file->componentCount(), components);
    const QByteArray picture = file->picture();
    QCOMPARE(picture.size(), file->pictureBytes());
    QVERIFY(!picture.contains("secret"));
    QVERIFY(picture.startsWith("\xff\xd8"));
    QVERIFY(picture.endsWith("\xff\xd9"));
    QCOMPARE(QImage::fromData(picture, "JPEG"), QImage::fromData(jpeg, "JPEG"));
    // What has nothing to lose stays as it is.
    const std::optional<NyJpegFile> again = NyJpegFile::parse(picture, reason);
    QVERIFY(again);
    QCOMPARE(again->picture(), picture);
}

void tst_NyJpegFile::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray jpeg = painted();
    const qsizetype frame = contentOf(jpeg, 0xc0);
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("tables alone") << QByteArray("\xff\xd8\xff\xd9");
    QTest::newRow("extended sequential") << changed(jpeg, frame - 3, 0xc1);
    QTest::newRow("lossless") << changed(jpeg, frame - 3, 0xc3);
    QTest::newRow("arithmetic") << changed(jpeg, frame - 3, 0xc9);
    QTest::newRow("12 bits") << changed(jpeg, frame, 12);
    QTest::newRow("height told later") << changed(changed(jpeg, frame + 1, 0), frame + 2, 0);
    QTest::newRow("two components") << changed(jpeg, frame + 5, 2);
    QTest::newRow("four components") << changed(jpeg, frame + 5, 4);
    QTest::newRow("two frames") << QByteArray(jpeg).insert(frame - 4, jpeg.mid(frame - 4, 19));
    QTest::newRow("scan before the frame") << QByteArray(jpeg).remove(frame - 4, 19);
    QTest::newRow("length beyond the end") << withSegment(0xfe, "x").replace(4, 2, "\xff\xff");
    QTest::newRow("length of none") << withSegment(0xfe, "x").replace(4, 2, QByteArray(2, '\0'));
    QTest::newRow("rubbish between segments") << QByteArray(jpeg).insert(2, "abc");
    QTest::newRow("colours of four components") << withSegment(0xee, adobe(2));
}

void tst_NyJpegFile::refuses()
{
    QFETCH(QByteArray, bytes);
    QString reason;
    QVERIFY(!NyJpegFile::parse(bytes, reason));
    QVERIFY(!reason.isEmpty());
}

void tst_NyJpegFile::everyBeginningIsCutShort_data()
{
    QTest::addColumn<QByteArray>("jpeg");
    QTest::newRow("baseline") << painted();
    QTest::newRow("progressive") << painted(Coding::Progressive);
}

void tst_NyJpegFile::everyBeginningIsCutShort()
{
    QFETCH(QByteArray, jpeg);
    QString reason;
    QVERIFY(NyJpegFile::parse(jpeg, reason));
    for (qsizetype size = 0; size < jpeg.size(); ++size)
        QVERIFY2(!NyJpegFile::parse(jpeg.left(size), reason), QByteArray::number(size).constData());
}

void tst_NyJpegFile::keepsWhatTellsTheColors_data()
{
    QTest::addColumn<QByteArray>("jpeg");
    QTest::addColumn<bool>("isTaken");
    // Qt writes a JFIF segment, by which the components are YCbCr whatever they are called.
    const QByteArray jfif = painted();
    const QByteArray bare = QByteArray(jfif).remove(2, 18);
    const auto named = [](QByteArray jpeg) {
        const qsizetype frame = contentOf(jpeg, 0xc0);
        const qsizetype scan = contentOf(jpeg, 0xda);
        for (int i = 0; i < 3; ++i) {
            jpeg[frame + 6 + 3 * i] = "RGB"[i];
            jpeg[scan + 1 + 2 * i] = "RGB"[i];
        }
        return jpeg;
    };
    QTest::newRow("JFIF") << jfif << true;
    QTest::newRow("nothing told") << bare << true;
    QTest::newRow("Adobe, YCbCr") << withSegment(0xee, adobe(1), bare) << true;
    QTest::newRow("Adobe, RGB") << withSegment(0xee, adobe(0), bare) << true;
    QTest::newRow("named RGB") << named(bare) << false;
    QTest::newRow("named RGB, JFIF") << named(jfif) << true;
    QTest::newRow("named RGB, Adobe") << withSegment(0xee, adobe(0), named(bare)) << true;
}

void tst_NyJpegFile::keepsWhatTellsTheColors()
{
    QFETCH(QByteArray, jpeg);
    QFETCH(bool, isTaken);
    QString reason;
    const std::optional<NyJpegFile> file = NyJpegFile::parse(jpeg, reason);
    QCOMPARE(file.has_value(), isTaken);
    if (file)
        QCOMPARE(QImage::fromData(file->picture(), "JPEG"), QImage::fromData(jpeg, "JPEG"));
}

void tst_NyJpegFile::profiles_data()
{
    QTest::addColumn<QByteArray>("jpeg");
    QTest::addColumn<QByteArray>("expected");
    const QByteArray icc = profile();
    const QByteArray jpeg = painted();
    const auto with = [&](const QList<QByteArray> &parts) {
        QByteArray all;
        for (const QByteArray &part : parts)
            all += segment(0xe2, part);
        return QByteArray(jpeg).insert(2, all);
    };
    QTest::newRow("none") << jpeg << QByteArray();
    QTest::newRow("whole") << with({iccPart(1, 1, icc)}) << icc;
    QTest::newRow("two parts") << with({iccPart(1, 2, icc.left(200)), iccPart(2, 2, icc.mid(200))}) << icc;
    QTest::newRow("parts in another order") << with({iccPart(2, 2, icc.mid(200)), iccPart(1, 2, icc.left(200))}) << icc;
    QTest::newRow("a part is missing") << with({iccPart(1, 2, icc.left(200))}) << QByteArray();
    QTest::newRow("counted from zero") << with({iccPart(0, 2, icc.left(200)), iccPart(1, 2, icc.mid(200))}) << QByteArray();
    QTest::newRow("cut short") << with({iccPart(1, 1, icc.left(200))}) << QByteArray();
    QTest::newRow("no profile") << with({iccPart(1, 1, QByteArray(500, 'x'))}) << QByteArray();
    QTest::newRow("empty") << with({iccPart(1, 1, QByteArray())}) << QByteArray();
    QTest::newRow("for other components") << with({iccPart(1, 1, QByteArray(icc).replace(16, 4, "CMYK"))}) << QByteArray();
    QTest::newRow("another APP2") << with({QByteArray("MPF\0", 4) + icc}) << QByteArray();
}

void tst_NyJpegFile::profiles()
{
    QFETCH(QByteArray, jpeg);
    QString reason;
    const std::optional<NyJpegFile> file = NyJpegFile::parse(jpeg, reason);
    QVERIFY2(file, qPrintable(reason));
    QTEST(file->iccProfile(), "expected");
    QVERIFY(!file->picture().contains("ICC_PROFILE"));
}

QTEST_GUILESS_MAIN(tst_NyJpegFile)
#include "tst_NyJpegFile.moc"
