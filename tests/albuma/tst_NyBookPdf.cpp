#include <atomic>
#include <cmath>

#include <QBuffer>
#include <QColorSpace>
#include <QDir>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <NyImageLoader.h>

#include "NyBookPdf.h"
#include "NyBookRenderer.h"
#include "NySmallDisk.h"
#include "PaintedPictures.h"
#include "TestStyle.h"
#include "TestSupport.h"
#include "WithoutRootPowers.h"

using namespace Qt::Literals::StringLiterals;
using MissingPhotos = NyBookPdf::MissingPhotos;
using Result = NyBookPdf::Result;
using State = NyBookPdf::Result::State;

namespace
{

constexpr double pointsPerMm = 72 / 25.4;
constexpr int checkDpi = 100;

struct Outcome
{
    int exitCode = -1;
    QByteArray output;
    QByteArray error;
};

/** Runs one of the tools that look at PDFs; a tool that is missing is a failure like any other. */
Outcome run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(50'000) || process.exitStatus() != QProcess::NormalExit)
        return {-1, {}, "cannot run " + program.toLocal8Bit() + ": " + process.errorString().toLocal8Bit()};
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

NyPlacedFoto placed(const QString &path, const QRectF &rectMm, const QRectF &crop = QRectF(0, 0, 1, 1), int rotation = 0)
{
    NyPlacedFoto foto;
    foto.url = QUrl::fromLocalFile(path);
    foto.rectMm = rectMm;
    foto.crop = crop;
    foto.rotationDegrees = rotation;
    return foto;
}

NyBookPage pageOf(const QList<NyPlacedFoto> &photos)
{
    NyBookPage page;
    page.photos = photos;
    return page;
}

NyBookProject bookOf(const QList<NyPlacedFoto> &photos)
{
    NyBookProject project;
    project.title = u"Ein Buch"_s;
    project.pages = {pageOf(photos)};
    return project;
}

NyBookText text(const QString &words, const QRectF &rectMm, NyBookText::Role role = NyBookText::Role::Title)
{
    NyBookText result;
    result.role = role;
    result.text = words;
    result.rectMm = rectMm;
    result.fontSizePt = 30;
    return result;
}

Result write(const NyBookProject &project, const QString &path, MissingPhotos missing = MissingPhotos::Refuse)
{
    const std::atomic_bool isCancelled = false;
    return NyBookPdf(project, testStyle()).write(path, missing, {}, isCancelled);
}

/** The page, 1 being the cover, with its bleed; null when the tool complains. */
QImage rendered(const QString &pdf, int page, int dpi = checkDpi)
{
    const Outcome outcome = run(u"pdftoppm"_s,
        {u"-r"_s, QString::number(dpi), u"-f"_s, QString::number(page), u"-l"_s, QString::number(page), u"-png"_s, u"-singlefile"_s, pdf});
    if (outcome.exitCode != 0 || !outcome.error.isEmpty()) {
        qWarning() << "pdftoppm:" << outcome.exitCode << outcome.error;
        return {};
    }
    return QImage::fromData(outcome.output).convertToFormat(QImage::Format_RGB32);
}

/** What the screen shows, with the bleed. */
QImage onScreen(const NyBookProject &project, int page, int dpi = checkDpi)
{
    const double pxPerMm = dpi / 25.4;
    const QSizeF mm = project.pageSizeMm + QSizeF(2 * NyBookPdf::BleedMm, 2 * NyBookPdf::BleedMm);
    QImage image(int(std::ceil(mm.width() * pxPerMm - 1e-6)), int(std::ceil(mm.height() * pxPerMm - 1e-6)), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    const NyBookRenderer renderer(testStyle(), [](const QUrl &url, const QSize &boxPx) -> NyBookRenderer::Picture {
        return {NyBookRenderer::Picture::State::Ready, NyImageLoader::instance().loadScaled(url.toLocalFile(), boxPx)};
    });
    const double bleed = NyBookPdf::BleedMm * pxPerMm;
    const QRectF target(QPointF(bleed, bleed), project.pageSizeMm * pxPerMm);
    renderer.paint(painter, page == 1 ? project.cover : project.pages.at(page - 2),
        page == 1 ? NyBookRenderer::PageKind::Cover : NyBookRenderer::PageKind::Inner, project.pageSizeMm, target, 1.0, NyBookPdf::BleedMm);
    return image;
}

/** The share of pixels that differ by more than what resampling at edges and the coding of colours make; 1 for other sizes. */
double difference(const QImage &a, const QImage &b)
{
    if (a.isNull() || a.size() != b.size())
        return 1;
    // Edges lie within a pixel of each other.
    const QImage smoothA = a.scaled(a.size() / 3, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage smoothB = b.scaled(b.size() / 3, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    int count = 0;
    for (int y = 0; y < smoothA.height(); ++y) {
        for (int x = 0; x < smoothA.width(); ++x) {
            const QRgb left = smoothA.pixel(x, y);
            const QRgb right = smoothB.pixel(x, y);
            const int most = std::max(
                {std::abs(qRed(left) - qRed(right)), std::abs(qGreen(left) - qGreen(right)), std::abs(qBlue(left) - qBlue(right))});
            count += most > 40 ? 1 : 0;
        }
    }
    return double(count) / (smoothA.width() * smoothA.height());
}

bool isNear(const QColor &a, const QColor &b, int tolerance = 6)
{
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
        && std::abs(a.blue() - b.blue()) <= tolerance;
}

/** One line of pdfimages -list. */
struct StoredImage
{
    QString type;
    QSize sizePx;
    QString color;
    QString encoding;
    int object = 0;
    int xDpi = 0;
};

QList<StoredImage> imagesOf(const QString &pdf)
{
    const Outcome outcome = run(u"pdfimages"_s, {u"-list"_s, pdf});
    if (outcome.exitCode != 0)
        qWarning() << "pdfimages:" << outcome.error;
    QList<StoredImage> images;
    const QList<QByteArray> lines = outcome.output.split('\n').mid(2);
    for (const QByteArray &line : lines) {
        const QStringList fields = QString::fromUtf8(line).simplified().split(u' ');
        if (fields.size() > 12)
            images.append({fields.at(2), QSize(fields.at(3).toInt(), fields.at(4).toInt()), fields.at(5), fields.at(8),
                fields.at(10).toInt(), fields.at(12).toInt()});
    }
    return images;
}

/** The data of the only image, as it lies in the PDF. */
QByteArray storedJpeg(const QString &pdf)
{
    const QTemporaryDir folder;
    run(u"pdfimages"_s, {u"-all"_s, pdf, folder.filePath(u"image"_s)});
    const QStringList files = QDir(folder.path()).entryList({u"*.jpg"_s}, QDir::Files);
    return files.size() == 1 ? TestSupport::readFile(folder.filePath(files.constFirst())) : QByteArray();
}

QByteArray jpegBytes(const QImage &image, bool progressive = false)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(88);
    writer.setProgressiveScanWrite(progressive);
    writer.write(image);
    return bytes;
}

QByteArray segment(char marker, const QByteArray &content)
{
    const auto length = content.size() + 2;
    return QByteArray("\xff") + marker + char(length >> 8) + char(length & 0xff) + content;
}

/** From the first scan's marker to the end of the picture. */
QByteArray scanData(const QByteArray &jpeg)
{
    return jpeg.mid(jpeg.indexOf("\xff\xda"), jpeg.indexOf("\xff\xd9") + 2 - jpeg.indexOf("\xff\xda"));
}

QStringList filesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

}

class tst_NyBookPdf : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();

    void boxes_data();
    void boxes();
    void nothingIsShifted_data();
    void nothingIsShifted();
    void backgroundsReachTheBleed();
    void contentReachesIntoTheBleed();
    void textsAreTexts();
    void documentProperties();
    void emptyBook();
    void sizesThatNobodyPrints_data();
    void sizesThatNobodyPrints();

    void smallEnoughPhotoIsKept_data();
    void smallEnoughPhotoIsKept();
    void largerPhotoIsReduced_data();
    void largerPhotoIsReduced();
    void squeezedPhotoIsKept();
    void cutAwayPartsAreLeftOut();
    void looksAsOnScreen_data();
    void looksAsOnScreen();
    void coverLooksAsOnScreen();
    void formats_data();
    void formats();
    void transparency();
    void colorProfiles_data();
    void colorProfiles();
    void metadataStaysOutside();
    void photoOfManyPlacesIsStoredOnce();
    void manyPhotosOnOnePage();
    void lowResolutionIsCounted();

    void missingPhotosAreRefused();
    void missingPhotosAreLeftEmpty();
    void damagedPhotos_data();
    void damagedPhotos();

    void progressGoesForward();
    void cancelLeavesTheOldFile_data();
    void cancelLeavesTheOldFile();
    void replacesTheOldFile();
    void unwritableTargets_data();
    void unwritableTargets();
    void readOnlyFolder();
    void fullDisk_data();
    void fullDisk();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QString photo(const QString &name, const QSize &sizePx, int orientation = 0) const;
    QString photoFile(const QString &name, const QByteArray &content) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_NyBookPdf::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    // What the JPEG decoder itself says of damaged files does not count.
    QTest::failOnWarning(QRegularExpression(u"^(?!Corrupt JPEG|JPEG datastream|Bogus Huffman)"_s));
}

QString tst_NyBookPdf::photo(const QString &name, const QSize &sizePx, int orientation) const
{
    PaintedPictures::MetaData metaData;
    metaData.orientation = orientation;
    const QString file = path(name);
    return PaintedPictures::write(file, PaintedPictures::painted(sizePx, quint32(qHash(name))), metaData) ? file : QString();
}

QString tst_NyBookPdf::photoFile(const QString &name, const QByteArray &content) const
{
    return TestSupport::writeFile(path(name), content) ? path(name) : QString();
}

// ---- the pages ----------------------------------------------------------------------------------------------------------------

void tst_NyBookPdf::boxes_data()
{
    QTest::addColumn<QSizeF>("pageMm");
    QTest::newRow("default") << QSizeF(280, 210);
    QTest::newRow("A4 upright") << QSizeF(210, 297);
    QTest::newRow("fractions") << QSizeF(201.37, 148.81);
    QTest::newRow("smallest") << QSizeF(10, 10);
    QTest::newRow("largest") << QSizeF(2000, 1000);
}

void tst_NyBookPdf::boxes()
{
    QFETCH(QSizeF, pageMm);
    NyBookProject project = bookOf({});
    project.pageSizeMm = pageMm;
    project.pages.append(NyBookPage());
    const QString pdf = path(u"book.pdf"_s);
    QCOMPARE(write(project, pdf).state, State::Written);
    const Outcome check = run(u"qpdf"_s, {u"--check"_s, pdf});
    QVERIFY2(check.exitCode == 0 && check.error.isEmpty(), (check.output + check.error).constData());
    const Outcome info = run(u"pdfinfo"_s, {u"-box"_s, u"-f"_s, u"1"_s, u"-l"_s, u"9"_s, pdf});
    QVERIFY2(info.exitCode == 0, info.error.constData());
    int count = 0;
    const QRegularExpression line(u"Page +\\d+ (Media|Crop|Bleed|Trim)Box: +(\\S+) +(\\S+) +(\\S+) +(\\S+)"_s);
    for (auto it = line.globalMatch(QString::fromUtf8(info.output)); it.hasNext(); ++count) {
        const QRegularExpressionMatch match = it.next();
        const double inset = match.captured(1) == u"Trim" ? NyBookPdf::BleedMm : 0;
        const double expected[]
            = {inset, inset, pageMm.width() + 2 * NyBookPdf::BleedMm - inset, pageMm.height() + 2 * NyBookPdf::BleedMm - inset};
        for (int i = 0; i < 4; ++i)
            QVERIFY2(std::abs(match.captured(2 + i).toDouble() / pointsPerMm - expected[i]) < 0.01, qPrintable(match.captured(0)));
    }
    QCOMPARE(count, 3 * 4);
}

void tst_NyBookPdf::nothingIsShifted_data()
{
    QTest::addColumn<QSizeF>("pageMm");
    QTest::newRow("whole points") << QSizeF(3 * 25.4, 2 * 25.4);
    // With the bleed 587.83 by 438.83 points, and 0.17 and 0.06 above whole ones.
    QTest::newRow("just below") << QSizeF(201.37, 148.81);
    QTest::newRow("just above") << QSizeF(200.08, 201.12);
}

void tst_NyBookPdf::nothingIsShifted()
{
    QFETCH(QSizeF, pageMm);
    NyBookProject project;
    project.pageSizeMm = pageMm;
    QImage red(300, 200, QImage::Format_RGB32);
    red.fill(Qt::red);
    const QRectF rectMm(20, 11, 40, 30);
    project.pages = {pageOf({placed(photoFile(u"red.jpg"_s, jpegBytes(red)), rectMm)})};
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    constexpr int dpi = 300;
    const QImage page = rendered(path(u"book.pdf"_s), 2, dpi);
    QVERIFY(!page.isNull());
    const auto isRed = [&](int x, int y) { return page.pixelColor(x, y).green() < 120; };
    const double pxPerMm = dpi / 25.4;
    const QPoint middle = ((rectMm.center() + QPointF(3, 3)) * pxPerMm).toPoint();
    int left = middle.x();
    int right = middle.x();
    int top = middle.y();
    int bottom = middle.y();
    while (isRed(left, middle.y()))
        --left;
    while (isRed(right, middle.y()))
        ++right;
    while (isRed(middle.x(), top))
        --top;
    while (isRed(middle.x(), bottom))
        ++bottom;
    // Of what the printer measures: a twentieth of a millimetre, and the pixel that an edge is rounded to.
    constexpr double tolerance = 0.05 + 25.4 / dpi;
    QVERIFY2(std::abs((left + 1) / pxPerMm - 3 - rectMm.left()) < tolerance, QByteArray::number((left + 1) / pxPerMm - 3).constData());
    QVERIFY2(std::abs(right / pxPerMm - 3 - rectMm.right()) < tolerance, QByteArray::number(right / pxPerMm - 3).constData());
    QVERIFY2(std::abs((top + 1) / pxPerMm - 3 - rectMm.top()) < tolerance, QByteArray::number((top + 1) / pxPerMm - 3).constData());
    QVERIFY2(std::abs(bottom / pxPerMm - 3 - rectMm.bottom()) < tolerance, QByteArray::number(bottom / pxPerMm - 3).constData());
}

void tst_NyBookPdf::backgroundsReachTheBleed()
{
    NyBookProject project = bookOf({});
    project.pageSizeMm = QSizeF(201.37, 148.81);
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    for (const int number : {1, 2}) {
        const QImage page = rendered(path(u"book.pdf"_s), number);
        QVERIFY(!page.isNull());
        const QColor expected = number == 1 ? testStyle().coverBackground : testStyle().pageBackground;
        // The outermost pixel may be covered in part by the page.
        for (const QPoint &point : {QPoint(0, 0), QPoint(page.width() - 2, 0), QPoint(0, page.height() - 2),
                 QPoint(page.width() - 2, page.height() - 2), QPoint(page.width() / 2, page.height() / 2)})
            QVERIFY2(isNear(page.pixelColor(point), expected, 2), qPrintable(page.pixelColor(point).name()));
    }
}

void tst_NyBookPdf::contentReachesIntoTheBleed()
{
    QImage red(300, 200, QImage::Format_RGB32);
    red.fill(Qt::red);
    const NyBookProject project = bookOf({placed(photoFile(u"red.jpg"_s, jpegBytes(red)), QRectF(-10, 50, 60, 40))});
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    const QImage page = rendered(path(u"book.pdf"_s), 2);
    const int y = int((70 + 3) * checkDpi / 25.4);
    QVERIFY(isNear(page.pixelColor(0, y), Qt::red));
    QVERIFY(isNear(page.pixelColor(int(52 * checkDpi / 25.4), y), Qt::red));
    QVERIFY(isNear(page.pixelColor(int(54 * checkDpi / 25.4), y), testStyle().pageBackground));
}

void tst_NyBookPdf::textsAreTexts()
{
    NyBookProject project;
    project.cover.texts = {text(u"Größe & Übermut – Straße 100%"_s, QRectF(20, 150, 240, 24)),
        text(u"12. März"_s, QRectF(20, 176, 240, 10), NyBookText::Role::Subtitle)};
    project.pages = {NyBookPage()};
    project.pages[0].texts
        = {text(u"Donaudampfschifffahrtsgesellschaftskapitänsausflug"_s, QRectF(100, 100, 60, 10), NyBookText::Role::DayHeading)};
    const QString pdf = path(u"book.pdf"_s);
    QCOMPARE(write(project, pdf).state, State::Written);
    const Outcome words = run(u"pdftotext"_s, {u"-enc"_s, u"UTF-8"_s, u"-layout"_s, pdf, u"-"_s});
    const QString found = QString::fromUtf8(words.output);
    QVERIFY2(found.contains(u"Größe & Übermut – Straße 100%"), words.output.constData());
    QVERIFY2(found.contains(u"12. März"), words.output.constData());
    QVERIFY2(found.contains(u"Donaudampf"), words.output.constData());
    const QString fonts = QString::fromUtf8(run(u"pdffonts"_s, {pdf}).output);
    const QStringList lines = fonts.split(u'\n', Qt::SkipEmptyParts).mid(2);
    QVERIFY(!lines.isEmpty());
    for (const QString &line : lines)
        QVERIFY2(line.contains(QRegularExpression(u" yes +(yes|no) +yes +\\d+ +\\d+$"_s)), qPrintable(line));

    // Where the screen shows a text, and not beyond its rectangle.
    const QImage page = rendered(pdf, 2);
    const QImage screen = onScreen(project, 2);
    const double pxPerMm = checkDpi / 25.4;
    const auto inkOf = [&](const QImage &image) {
        QRect ink;
        for (int y = 0; y < image.height() - 1; ++y) {
            for (int x = 0; x < image.width() - 1; ++x) {
                if (image.pixelColor(x, y).lightness() < 120)
                    ink |= QRect(x, y, 1, 1);
            }
        }
        return QRectF(ink.x() / pxPerMm - 3, ink.y() / pxPerMm - 3, ink.width() / pxPerMm, ink.height() / pxPerMm);
    };
    const QRectF printed = inkOf(page);
    const QRectF shown = inkOf(screen);
    QVERIFY(printed.isValid());
    QVERIFY(QRectF(99, 98, 62, 14).contains(printed));
    QVERIFY2(std::abs(printed.width() - shown.width()) < 0.06 * shown.width() + 0.5,
        qPrintable(u"%1 for %2"_s.arg(printed.width()).arg(shown.width())));
    QVERIFY(std::abs(printed.center().x() - shown.center().x()) < 1.5);
    QVERIFY(std::abs(printed.center().y() - shown.center().y()) < 1);
}

void tst_NyBookPdf::documentProperties()
{
    NyBookProject project = bookOf({});
    project.title = u"Märchen (Teil 1)"_s;
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    const QString info = QString::fromUtf8(run(u"pdfinfo"_s, {u"-enc"_s, u"UTF-8"_s, path(u"book.pdf"_s)}).output);
    QVERIFY2(info.contains(QRegularExpression(u"Title: +Märchen \\(Teil 1\\)\n"_s)), qPrintable(info));
    QVERIFY2(info.contains(QRegularExpression(u"CreationDate: +\\w+"_s)), qPrintable(info));
    QVERIFY2(info.contains(QRegularExpression(u"PDF version: +1\\.[67]"_s)), qPrintable(info));
    QVERIFY2(info.contains(QRegularExpression(u"Pages: +2\n"_s)), qPrintable(info));
    const QByteArray json = run(u"qpdf"_s, {u"--json"_s, u"--json-key=qpdf"_s, path(u"book.pdf"_s)}).output;
    QVERIFY(json.contains("\"/Lang\": \"u:de"));
}

void tst_NyBookPdf::emptyBook()
{
    QCOMPARE(write(NyBookProject(), path(u"book.pdf"_s)).state, State::Written);
    QVERIFY(run(u"pdfinfo"_s, {path(u"book.pdf"_s)}).output.contains("Pages:           1\n"));
    QCOMPARE(run(u"qpdf"_s, {u"--check"_s, path(u"book.pdf"_s)}).exitCode, 0);
}

void tst_NyBookPdf::sizesThatNobodyPrints_data()
{
    QTest::addColumn<QSizeF>("pageMm");
    QTest::newRow("none") << QSizeF();
    QTest::newRow("zero") << QSizeF(0, 0);
    QTest::newRow("no number") << QSizeF(std::nan(""), 200);
    QTest::newRow("huge") << QSizeF(200, 1e9);
}

void tst_NyBookPdf::sizesThatNobodyPrints()
{
    QFETCH(QSizeF, pageMm);
    NyBookProject project = bookOf({});
    project.pageSizeMm = pageMm;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^pdf: no page for .*book\\.pdf"_s));
    const Result result = write(project, path(u"book.pdf"_s));
    QCOMPARE(result.state, State::Failed);
    QVERIFY(result.error.contains(u"book.pdf"));
    QCOMPARE(filesIn(m_folder->path()), QStringList());
}

// ---- the photos ---------------------------------------------------------------------------------------------------------------

void tst_NyBookPdf::smallEnoughPhotoIsKept_data()
{
    QTest::addColumn<bool>("progressive");
    QTest::addColumn<QSize>("sizePx");
    QTest::newRow("baseline") << false << QSize(800, 600);
    QTest::newRow("progressive") << true << QSize(800, 600);
    // 100 x 75 mm are 1181 x 886 px at 300 dpi.
    QTest::newRow("just the needed size") << false << QSize(1181, 886);
    QTest::newRow("a little larger") << false << QSize(1280, 960);
    QTest::newRow("tiny") << false << QSize(8, 6);
}

void tst_NyBookPdf::smallEnoughPhotoIsKept()
{
    QFETCH(bool, progressive);
    QFETCH(QSize, sizePx);
    const QByteArray original = jpegBytes(PaintedPictures::painted(sizePx, 5), progressive);
    const NyBookProject project = bookOf({placed(photoFile(u"a.jpg"_s, original), QRectF(20, 20, 100, 75))});
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    const QList<StoredImage> images = imagesOf(path(u"book.pdf"_s));
    QCOMPARE(images.size(), 1);
    QCOMPARE(images.constFirst().encoding, u"jpeg"_s);
    QCOMPARE(images.constFirst().sizePx, sizePx);
    const QByteArray stored = storedJpeg(path(u"book.pdf"_s));
    QVERIFY(!scanData(original).isEmpty());
    QCOMPARE(scanData(stored), scanData(original));
    QCOMPARE(
        QImage::fromData(stored).convertToFormat(QImage::Format_RGB32), QImage::fromData(original).convertToFormat(QImage::Format_RGB32));
}

void tst_NyBookPdf::largerPhotoIsReduced_data()
{
    QTest::addColumn<QRectF>("rectMm");
    QTest::addColumn<QRectF>("crop");
    QTest::addColumn<int>("rotation");
    QTest::newRow("whole") << QRectF(20, 20, 80, 60) << QRectF(0, 0, 1, 1) << 0;
    QTest::newRow("cropped") << QRectF(20, 20, 64, 48) << QRectF(0.1, 0.1, 0.8, 0.8) << 0;
    QTest::newRow("turned") << QRectF(20, 20, 60, 80) << QRectF(0, 0, 1, 1) << 90;
    QTest::newRow("a small part") << QRectF(20, 20, 60, 45) << QRectF(0.25, 0.5, 0.5, 0.5) << 180;
}

void tst_NyBookPdf::largerPhotoIsReduced()
{
    QFETCH(QRectF, rectMm);
    QFETCH(QRectF, crop);
    QFETCH(int, rotation);
    const QString file = photo(u"a.jpg"_s, QSize(2400, 1800));
    const NyBookProject project = bookOf({placed(file, rectMm, crop, rotation)});
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    const QList<StoredImage> images = imagesOf(path(u"book.pdf"_s));
    QCOMPARE(images.size(), 1);
    QCOMPARE(images.constFirst().encoding, u"jpeg"_s);
    QVERIFY2(std::abs(images.constFirst().xDpi - 300) <= 6, QByteArray::number(images.constFirst().xDpi).constData());
    QVERIFY(QFileInfo(path(u"book.pdf"_s)).size() < QFileInfo(file).size());
    QVERIFY(difference(rendered(path(u"book.pdf"_s), 2), onScreen(project, 2)) < 0.01);
}

void tst_NyBookPdf::squeezedPhotoIsKept()
{
    // Coded anew this would need more bytes, although it has twice the pixels that are needed.
    QImage image = PaintedPictures::painted(QSize(1000, 750), 3);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(8);
    QVERIFY(writer.write(image));
    const NyBookProject project = bookOf({placed(photoFile(u"a.jpg"_s, bytes), QRectF(20, 20, 60, 45))});
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    QCOMPARE(imagesOf(path(u"book.pdf"_s)).value(0).sizePx, QSize(1000, 750));
    QCOMPARE(scanData(storedJpeg(path(u"book.pdf"_s))), scanData(bytes));
}

void tst_NyBookPdf::cutAwayPartsAreLeftOut()
{
    const QString file = photo(u"a.jpg"_s, QSize(1600, 1200));
    // 400 x 300 of its pixels, at 152 dpi.
    const NyBookProject project = bookOf({placed(file, QRectF(20, 20, 66.67, 50), QRectF(0.5, 0.25, 0.25, 0.25))});
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    QCOMPARE(imagesOf(path(u"book.pdf"_s)).value(0).sizePx, QSize(400, 300));
    QVERIFY(difference(rendered(path(u"book.pdf"_s), 2), onScreen(project, 2)) < 0.01);
}

void tst_NyBookPdf::looksAsOnScreen_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("isKept");
    for (int orientation = 1; orientation <= 8; ++orientation) {
        QTest::addRow("%d, kept", orientation) << orientation << true;
        QTest::addRow("%d, reduced", orientation) << orientation << false;
    }
}

/** All quarter turns, whole, cropped a little and cropped to a small part. */
void tst_NyBookPdf::looksAsOnScreen()
{
    QFETCH(int, orientation);
    QFETCH(bool, isKept);
    QList<NyPlacedFoto> photos;
    const QRectF crops[] = {QRectF(0, 0, 1, 1), QRectF(0.2, 0.05, 0.75, 0.9), QRectF(0.1, 0.4, 0.4, 0.3)};
    const QSizeF sizeMm = isKept ? QSizeF(58, 50) : QSizeF(29, 25);
    for (int turn = 0; turn < 4; ++turn) {
        for (int i = 0; i < 3; ++i) {
            // A file of its own for each place, so that each decides by itself.
            const QString file = photo(u"%1-%2.jpg"_s.arg(turn).arg(i), isKept ? QSize(320, 240) : QSize(600, 450), orientation);
            photos.append(placed(file, QRectF(QPointF(10 + turn * 65, 10 + i * 60), sizeMm), crops[i], turn * 90));
        }
    }
    const NyBookProject project = bookOf(photos);
    const QString pdf = path(u"book.pdf"_s);
    QCOMPARE(write(project, pdf).state, State::Written);
    const QList<StoredImage> images = imagesOf(pdf);
    QCOMPARE(images.size(), photos.size());
    QCOMPARE(std::count_if(images.cbegin(), images.cend(), [](const StoredImage &image) { return image.sizePx == QSize(320, 240); }),
        isKept ? 8 : 0);
    const QImage page = rendered(pdf, 2);
    const QImage screen = onScreen(project, 2);
    QCOMPARE(page.size(), screen.size());
    NyBookProject other = project;
    for (NyPlacedFoto &foto : other.pages[0].photos)
        foto.rotationDegrees = (foto.rotationDegrees + 180) % 360;
    const QImage turned = onScreen(other, 2);
    for (const NyPlacedFoto &foto : photos) {
        const QRectF mm = foto.rectMm.translated(NyBookPdf::BleedMm, NyBookPdf::BleedMm);
        const QRect px = QRectF(mm.topLeft() * checkDpi / 25.4, mm.size() * checkDpi / 25.4).toAlignedRect();
        const double share = difference(page.copy(px), screen.copy(px));
        const double turnedShare = difference(page.copy(px), turned.copy(px));
        QVERIFY2(
            share < 0.08 && turnedShare > 0.2, qPrintable(u"%1: %2, turned %3"_s.arg(foto.url.fileName()).arg(share).arg(turnedShare)));
    }
}

void tst_NyBookPdf::coverLooksAsOnScreen()
{
    NyBookProject project;
    project.cover = pageOf({placed(photo(u"a.jpg"_s, QSize(900, 600)), QRectF(60, 20, 160, 106))});
    project.cover.texts
        = {text(u"Toskana"_s, QRectF(20, 150, 240, 24)), text(u"Sommer 2026"_s, QRectF(20, 176, 240, 10), NyBookText::Role::Subtitle)};
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    const QImage page = rendered(path(u"book.pdf"_s), 1);
    const QImage screen = onScreen(project, 1);
    QVERIFY2(difference(page, screen) < 0.01, QByteArray::number(difference(page, screen)).constData());
    // The white frame, and the shadow below it.
    const auto at = [&](double x, double y) { return page.pixelColor(int((x + 3) * checkDpi / 25.4), int((y + 3) * checkDpi / 25.4)); };
    QVERIFY(isNear(at(59, 70), Qt::white));
    QVERIFY(at(140, 129).lightness() < testStyle().coverBackground.lightness());
}

void tst_NyBookPdf::formats_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QString>("color");
    QTest::newRow("grey JPEG") << QByteArray("grey") << u"gray"_s;
    QTest::newRow("large grey JPEG") << QByteArray("large grey") << u"gray"_s;
    QTest::newRow("CMYK JPEG") << QByteArray("cmyk") << u"icc"_s;
    QTest::newRow("RGB JPEG") << QByteArray("rgb") << u"icc"_s;
    QTest::newRow("PNG") << QByteArray("png") << u"icc"_s;
    QTest::newRow("grey PNG") << QByteArray("grey png") << u"gray"_s;
    QTest::newRow("TIFF") << QByteArray("tif") << u"icc"_s;
    QTest::newRow("WebP") << QByteArray("webp") << u"icc"_s;
    QTest::newRow("JPEG that is named PNG") << QByteArray("misnamed") << u"icc"_s;
}

void tst_NyBookPdf::formats()
{
    QFETCH(QByteArray, format);
    QFETCH(QString, color);
    QImage image = PaintedPictures::painted(format.startsWith("large") ? QSize(1600, 1200) : QSize(400, 300), 9);
    const bool isGrey = format.contains("grey");
    if (isGrey)
        image.convertTo(QImage::Format_Grayscale8);
    QString file = path(u"a."_s + QString::fromLatin1(format.split(' ').constLast()));
    if (format == "cmyk" || format == "rgb") {
        file = path(u"a.jpg"_s);
        QVERIFY(image.save(path(u"a.png"_s)));
        const Outcome made
            = run(u"convert"_s, {path(u"a.png"_s), u"-quality"_s, u"90"_s, u"-colorspace"_s, QString::fromLatin1(format).toUpper(), file});
        QVERIFY2(made.exitCode == 0, made.error.constData());
    } else if (format.endsWith("grey") || format == "misnamed") {
        file = path(format == "misnamed" ? u"a.png"_s : u"a.jpg"_s);
        QVERIFY(image.save(file, "JPEG", 90));
    } else {
        QVERIFY(image.save(file));
    }
    const NyBookProject project = bookOf({placed(file, QRectF(20, 20, 80, 60))});
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    const QList<StoredImage> images = imagesOf(path(u"book.pdf"_s));
    QCOMPARE(images.size(), 1);
    QCOMPARE(images.constFirst().encoding, u"jpeg"_s);
    QCOMPARE(images.constFirst().color, color);
    QCOMPARE(run(u"qpdf"_s, {u"--check"_s, path(u"book.pdf"_s)}).exitCode, 0);
    const QImage page = rendered(path(u"book.pdf"_s), 2);
    QVERIFY2(difference(page, onScreen(project, 2)) < 0.01, QByteArray::number(difference(page, onScreen(project, 2))).constData());
}

void tst_NyBookPdf::transparency()
{
    QImage image(400, 300, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::blue);
    painter.drawEllipse(QRect(100, 50, 200, 200));
    painter.fillRect(QRect(0, 250, 400, 50), QColor(0, 128, 0, 128));
    painter.end();
    QVERIFY(image.save(path(u"a.png"_s)));
    const NyBookProject project = bookOf({placed(path(u"a.png"_s), QRectF(20, 20, 80, 60))});
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    QCOMPARE(run(u"qpdf"_s, {u"--check"_s, path(u"book.pdf"_s)}).exitCode, 0);
    const QImage page = rendered(path(u"book.pdf"_s), 2);
    QVERIFY(difference(page, onScreen(project, 2)) < 0.01);
    const auto at = [&](double x, double y) { return page.pixelColor(int((x + 3) * checkDpi / 25.4), int((y + 3) * checkDpi / 25.4)); };
    QVERIFY(isNear(at(22, 22), testStyle().pageBackground, 3));
    QVERIFY(isNear(at(60, 50), Qt::blue, 12));
    QVERIFY(isNear(at(60, 76), QColor(125, 184, 115), 12));
}

void tst_NyBookPdf::colorProfiles_data()
{
    QTest::addColumn<int>("space");
    QTest::addColumn<QSize>("sizePx");
    QTest::newRow("Display P3, kept") << int(QColorSpace::DisplayP3) << QSize(400, 300);
    QTest::newRow("Adobe RGB, kept") << int(QColorSpace::AdobeRgb) << QSize(400, 300);
    QTest::newRow("Display P3, reduced") << int(QColorSpace::DisplayP3) << QSize(1600, 1200);
    QTest::newRow("sRGB") << int(QColorSpace::SRgb) << QSize(400, 300);
}

void tst_NyBookPdf::colorProfiles()
{
    QFETCH(int, space);
    QFETCH(QSize, sizePx);
    const QColorSpace colorSpace{QColorSpace::NamedColorSpace(space)};
    QImage image(sizePx, QImage::Format_RGB32);
    image.fill(QColor(40, 200, 60));
    image.setColorSpace(colorSpace);
    const NyBookProject project = bookOf({placed(photoFile(u"a.jpg"_s, jpegBytes(image)), QRectF(20, 20, 80, 60))});
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    QCOMPARE(imagesOf(path(u"book.pdf"_s)).value(0).color, u"icc"_s);
    const QImage page = rendered(path(u"book.pdf"_s), 2);
    const QColor expected = onScreen(project, 2).pixelColor(200, 200);
    QVERIFY(space == int(QColorSpace::SRgb) || !isNear(expected, QColor(40, 200, 60), 8));
    QVERIFY2(isNear(page.pixelColor(200, 200), expected, 4), qPrintable(page.pixelColor(200, 200).name() + expected.name()));

    const bool isKept = sizePx.width() == 400;
    const QByteArray stored = storedJpeg(path(u"book.pdf"_s));
    QVERIFY(!stored.isEmpty());
    QVERIFY(!stored.contains("ICC_PROFILE"));
    const QString plain = path(u"plain.pdf"_s);
    QVERIFY(run(u"qpdf"_s, {u"--qdf"_s, u"--object-streams=disable"_s, path(u"book.pdf"_s), plain}).exitCode == 0);
    QCOMPARE(TestSupport::readFile(plain).contains(colorSpace.iccProfile()), isKept || space == int(QColorSpace::SRgb));
}

void tst_NyBookPdf::metadataStaysOutside()
{
    QByteArray jpeg = jpegBytes(PaintedPictures::painted(QSize(400, 300), 2), true);
    const QByteArray added = segment('\xe1', QByteArray("Exif\0\0", 6) + "GEHEIM position")
        + segment('\xe1', "http://ns.adobe.com/xap/1.0/ GEHEIM") + segment('\xed', "Photoshop 3.0 GEHEIM")
        + segment('\xfe', "GEHEIM comment") + segment('\xe2', QByteArray("MPF\0", 4) + "GEHEIM");
    jpeg.insert(2, added);
    // Also between the scans.
    jpeg.insert(jpeg.lastIndexOf("\xff\xda"), segment('\xfe', "GEHEIM between"));
    jpeg += "GEHEIM film" + jpegBytes(PaintedPictures::painted(QSize(40, 30), 3));
    const NyBookProject project = bookOf({placed(photoFile(u"GEHEIM name.jpg"_s, jpeg), QRectF(20, 20, 80, 60))});
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    QCOMPARE(imagesOf(path(u"book.pdf"_s)).size(), 1);
    const QByteArray stored = storedJpeg(path(u"book.pdf"_s));
    QCOMPARE(QImage::fromData(stored), QImage::fromData(jpeg));
    QVERIFY(QFileInfo(path(u"book.pdf"_s)).size() > stored.size());
    QVERIFY(!TestSupport::readFile(path(u"book.pdf"_s)).contains("GEHEIM"));
    QVERIFY(stored.endsWith("\xff\xd9"));
}

void tst_NyBookPdf::photoOfManyPlacesIsStoredOnce()
{
    const QString file = photo(u"a.jpg"_s, QSize(2400, 1800), 6);
    NyBookProject project = bookOf({placed(file, QRectF(10, 10, 30, 40)), placed(file, QRectF(60, 10, 40, 30), QRectF(0, 0, 1, 1), 90),
        placed(file, QRectF(110, 10, 30, 30), QRectF(0.3, 0.3, 0.4, 0.3))});
    project.pages.append(pageOf({placed(file, QRectF(10, 10, 60, 80))}));
    project.cover = pageOf({placed(file, QRectF(60, 20, 60, 80))});
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    const QList<StoredImage> images = imagesOf(path(u"book.pdf"_s));
    QCOMPARE(images.size(), 5);
    for (const StoredImage &image : images)
        QCOMPARE(image.object, images.constFirst().object);
    for (const int page : {1, 2, 3})
        QVERIFY(difference(rendered(path(u"book.pdf"_s), page), onScreen(project, page)) < 0.01);
}

void tst_NyBookPdf::manyPhotosOnOnePage()
{
    QList<NyPlacedFoto> photos;
    for (int i = 0; i < 60; ++i)
        photos.append(placed(photo(u"%1.jpg"_s.arg(i), QSize(60, 45)), QRectF(10 + i % 10 * 26, 10 + i / 10 * 30, 24, 18)));
    const NyBookProject project = bookOf(photos);
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    QVERIFY(difference(rendered(path(u"book.pdf"_s), 2), onScreen(project, 2)) < 0.02);
}

void tst_NyBookPdf::lowResolutionIsCounted()
{
    const QString coarse = photo(u"coarse.jpg"_s, QSize(400, 300));
    const QString fine = photo(u"fine.jpg"_s, QSize(1200, 900));
    NyBookProject project
        = bookOf({placed(coarse, QRectF(10, 10, 80, 60)), placed(fine, QRectF(100, 10, 80, 60)), placed(coarse, QRectF(10, 100, 40, 30))});
    // What the project believes of the file does not count.
    project.pages[0].photos[0].sizePx = QSize(4000, 3000);
    project.cover = pageOf({placed(coarse, QRectF(60, 20, 100, 75))});
    QCOMPARE(write(project, path(u"book.pdf"_s)).lowResolutionCount, 2);
}

// ---- photos that are missing --------------------------------------------------------------------------------------------------

void tst_NyBookPdf::missingPhotosAreRefused()
{
    NyBookProject project = bookOf(
        {placed(photo(u"a.jpg"_s, QSize(200, 150)), QRectF(10, 10, 80, 60)), placed(path(u"gone 100% ü.jpg"_s), QRectF(100, 10, 80, 60)),
            placed(path(u"gone too.jpg"_s), QRectF(10, 100, 80, 60)), placed(path(u"gone too.jpg"_s), QRectF(100, 100, 80, 60))});
    project.pages[0].photos.append(placed(QString(), QRectF(200, 100, 60, 60)));
    project.pages[0].photos[4].url = QUrl(u"https://example.invalid/far.jpg"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read the picture .*gone 100% ü\\.jpg"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read the picture .*gone too\\.jpg"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no local file.*far\\.jpg"_s));
    const Result result = write(project, path(u"book.pdf"_s));
    QCOMPARE(result.state, State::PhotosMissing);
    QCOMPARE(result.missing, QStringList({u"gone 100% ü.jpg"_s, u"gone too.jpg"_s, u"far.jpg"_s}));
    QCOMPARE(filesIn(m_folder->path()), QStringList({u"a.jpg"_s}));
}

void tst_NyBookPdf::missingPhotosAreLeftEmpty()
{
    NyBookProject project = bookOf(
        {placed(path(u"gone.jpg"_s), QRectF(10, 10, 80, 60)), placed(photo(u"a.jpg"_s, QSize(200, 150)), QRectF(100, 10, 80, 60))});
    project.cover = pageOf({placed(path(u"gone.jpg"_s), QRectF(60, 20, 160, 106))});
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read the picture .*gone\\.jpg"_s));
    const Result result = write(project, path(u"book.pdf"_s), MissingPhotos::LeaveEmpty);
    QCOMPARE(result.state, State::Written);
    QCOMPARE(result.missing, QStringList({u"gone.jpg"_s}));
    QCOMPARE(imagesOf(path(u"book.pdf"_s)).size(), 1);
    const QString words = QString::fromUtf8(run(u"pdftotext"_s, {path(u"book.pdf"_s), u"-"_s}).output);
    QVERIFY2(words.trimmed().isEmpty(), qPrintable(words));
    // As if there were no photo at all: neither a box nor a frame.
    NyBookProject without = project;
    without.pages[0].photos.removeFirst();
    without.cover.photos.clear();
    QVERIFY(difference(rendered(path(u"book.pdf"_s), 1), onScreen(without, 1)) < 0.001);
    QVERIFY(difference(rendered(path(u"book.pdf"_s), 2), onScreen(without, 2)) < 0.01);
}

void tst_NyBookPdf::damagedPhotos_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray jpeg = jpegBytes(PaintedPictures::painted(QSize(400, 300), 2));
    const QByteArray progressive = jpegBytes(PaintedPictures::painted(QSize(400, 300), 2), true);
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("header alone") << jpeg.left(12);
    QTest::newRow("cut in the middle") << jpeg.left(jpeg.size() / 2);
    QTest::newRow("cut before the end") << jpeg.left(jpeg.size() - 2);
    QTest::newRow("progressive, cut between scans") << progressive.left(progressive.lastIndexOf("\xff\xda"));
    QByteArray noTables = jpeg;
    const qsizetype tables = noTables.indexOf("\xff\xc4");
    // A code of more bits than there are values for.
    noTables.replace(tables + 5, 4, "\xff\xff\xff\xff");
    QTest::newRow("broken tables") << noTables;
}

void tst_NyBookPdf::damagedPhotos()
{
    QFETCH(QByteArray, content);
    NyBookProject project = bookOf({placed(photo(u"a.jpg"_s, QSize(200, 150)), QRectF(10, 10, 80, 60)),
        placed(photoFile(u"damaged.jpg"_s, content), QRectF(100, 10, 80, 60))});
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read the picture .*damaged\\.jpg"_s));
    const Result refused = write(project, path(u"book.pdf"_s));
    QCOMPARE(refused.state, State::PhotosMissing);
    QCOMPARE(refused.missing, QStringList({u"damaged.jpg"_s}));
    QVERIFY(!QFileInfo::exists(path(u"book.pdf"_s)));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read the picture .*damaged\\.jpg"_s));
    QCOMPARE(write(project, path(u"book.pdf"_s), MissingPhotos::LeaveEmpty).state, State::Written);
    QCOMPARE(run(u"qpdf"_s, {u"--check"_s, path(u"book.pdf"_s)}).exitCode, 0);
    QVERIFY(!rendered(path(u"book.pdf"_s), 2).isNull());
    QCOMPARE(imagesOf(path(u"book.pdf"_s)).size(), 1);
}

// ---- the file -----------------------------------------------------------------------------------------------------------------

void tst_NyBookPdf::progressGoesForward()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read the picture .*gone\\.jpg"_s));
    const QString file = photo(u"a.jpg"_s, QSize(200, 150));
    const NyBookProject project = bookOf({placed(file, QRectF(10, 10, 80, 60)), placed(file, QRectF(10, 80, 80, 60)),
        placed(photo(u"b.jpg"_s, QSize(2000, 1500)), QRectF(100, 10, 80, 60)), placed(path(u"gone.jpg"_s), QRectF(100, 80, 80, 60))});
    QList<int> steps;
    QSet<int> totals;
    const std::atomic_bool isCancelled = false;
    const Result result = NyBookPdf(project, testStyle())
                              .write(
                                  path(u"book.pdf"_s), MissingPhotos::LeaveEmpty,
                                  [&](int done, int total) {
                                      steps.append(done);
                                      totals.insert(total);
                                  },
                                  isCancelled);
    QCOMPARE(result.state, State::Written);
    QCOMPARE(totals.size(), 1);
    QVERIFY(std::is_sorted(steps.cbegin(), steps.cend()));
    QCOMPARE(steps.constFirst(), 0);
    QCOMPARE(steps.constLast(), *totals.cbegin());
    // At least one for every photo and page.
    QVERIFY(QSet<int>(steps.cbegin(), steps.cend()).size() > 3 + 2);
}

void tst_NyBookPdf::cancelLeavesTheOldFile_data()
{
    QTest::addColumn<int>("atStep");
    // Ten photos are read, two pages are painted, ten photos are written.
    for (const int step : {0, 1, 5, 10, 11, 12, 13, 20})
        QTest::addRow("step %d", step) << step;
}

void tst_NyBookPdf::cancelLeavesTheOldFile()
{
    QFETCH(int, atStep);
    QList<NyPlacedFoto> photos;
    for (int i = 0; i < 10; ++i)
        photos.append(placed(photo(u"photos/%1.jpg"_s.arg(i), QSize(200, 150)), QRectF(10 + i * 20, 10, 18, 12)));
    QDir().mkpath(path(u"target"_s));
    const QString pdf = path(u"target/book.pdf"_s);
    QVERIFY(TestSupport::writeFile(pdf, "old"));
    std::atomic_bool isCancelled = false;
    int last = -1;
    const Result result = NyBookPdf(bookOf(photos), testStyle())
                              .write(
                                  pdf, MissingPhotos::Refuse,
                                  [&](int done, int) {
                                      last = done;
                                      if (done == atStep)
                                          isCancelled = true;
                                  },
                                  isCancelled);
    QCOMPARE(result.state, State::Cancelled);
    // At once, not at the end.
    QVERIFY2(last <= atStep + 1, QByteArray::number(last).constData());
    QCOMPARE(TestSupport::readFile(pdf), QByteArray("old"));
    QCOMPARE(filesIn(path(u"target"_s)), QStringList({u"book.pdf"_s}));
}

void tst_NyBookPdf::replacesTheOldFile()
{
    QVERIFY(TestSupport::writeFile(path(u"book.pdf"_s), QByteArray(5'000'000, 'x')));
    QCOMPARE(write(bookOf({}), path(u"book.pdf"_s)).state, State::Written);
    QVERIFY(TestSupport::readFile(path(u"book.pdf"_s)).startsWith("%PDF-1."));
    QVERIFY(QFileInfo(path(u"book.pdf"_s)).size() < 100'000);
    QCOMPARE(filesIn(m_folder->path()), QStringList({u"book.pdf"_s}));
}

void tst_NyBookPdf::unwritableTargets_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("no such folder") << u"none/book.pdf"_s;
    QTest::newRow("a folder") << u"folder"_s;
    QTest::newRow("below a file") << u"file/book.pdf"_s;
    QTest::newRow("name too long") << QString(300, u'x') + u".pdf"_s;
}

void tst_NyBookPdf::unwritableTargets()
{
    QFETCH(QString, name);
    QVERIFY(QDir(m_folder->path()).mkdir(u"folder"_s));
    QVERIFY(TestSupport::writeFile(path(u"file"_s), "content"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^pdf: cannot write"_s));
    const Result result = write(bookOf({}), path(name));
    QCOMPARE(result.state, State::Failed);
    QVERIFY2(result.error.contains(QFileInfo(name).fileName()), qPrintable(result.error));
    QCOMPARE(filesIn(m_folder->path()), QStringList({u"file"_s, u"folder"_s}));
    QCOMPARE(TestSupport::readFile(path(u"file"_s)), QByteArray("content"));
}

void tst_NyBookPdf::readOnlyFolder()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"folder"_s));
    QVERIFY(TestSupport::writeFile(path(u"folder/book.pdf"_s), "old"));
    QVERIFY(QFile::setPermissions(path(u"folder"_s), QFile::ReadOwner | QFile::ExeOwner));
    Result result;
    {
        const WithoutRootPowers guard;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^pdf: cannot write .*book\\.pdf"_s));
        result = write(bookOf({}), path(u"folder/book.pdf"_s));
    }
    QFile::setPermissions(path(u"folder"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QCOMPARE(result.state, State::Failed);
    QCOMPARE(TestSupport::readFile(path(u"folder/book.pdf"_s)), QByteArray("old"));
    QCOMPARE(filesIn(path(u"folder"_s)), QStringList({u"book.pdf"_s}));
}

void tst_NyBookPdf::fullDisk_data()
{
    QTest::addColumn<int>("leftPercent");
    QTest::newRow("no room at all") << 0;
    QTest::newRow("not even for the photos") << 50;
    QTest::newRow("not for the end of the file") << 150;
}

void tst_NyBookPdf::fullDisk()
{
    QFETCH(int, leftPercent);
    NySmallDisk disk("8m");
    if (!disk.isMounted())
        QSKIP("mounting a small disk is refused");
    QList<NyPlacedFoto> photos;
    for (int i = 0; i < 4; ++i)
        photos.append(placed(photo(u"%1.jpg"_s.arg(i), QSize(900, 700)), QRectF(10 + i * 60, 10, 100, 80)));
    const NyBookProject project = bookOf(photos);
    QCOMPARE(write(project, path(u"book.pdf"_s)).state, State::Written);
    const qint64 size = QFileInfo(path(u"book.pdf"_s)).size();

    const QString pdf = disk.filePath(u"book.pdf"_s);
    QVERIFY(TestSupport::writeFile(pdf, "old"));
    QVERIFY(disk.fill(size * leftPercent / 100));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^pdf: cannot write .*book\\.pdf"_s));
    const Result result = write(project, pdf);
    QCOMPARE(result.state, State::Failed);
    QVERIFY2(result.error.contains(u"book.pdf") && result.error.contains(u"Platz"), qPrintable(result.error));
    QCOMPARE(TestSupport::readFile(pdf), QByteArray("old"));
    QCOMPARE(filesIn(disk.path()), QStringList({u"ballast"_s, u"book.pdf"_s}));
    // With room again all is well.
    QVERIFY(disk.clear());
    QCOMPARE(write(project, pdf).state, State::Written);
    QCOMPARE(QFileInfo(pdf).size() / 1000, size / 1000);
}

QTEST_MAIN(tst_NyBookPdf)
#include "tst_NyBookPdf.moc"
