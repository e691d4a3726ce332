// What the PDF of a book costs in time, memory and bytes, beside painting the same pages straight onto Qt's PDF device, once with the
// photos decoded as they are and once scaled to 300 dpi first.
//
// Usage: bench_pdf [--photos N]. Paints a few photos once and links them under N names (default 100), of 12 megapixels and then of 2, as
// messengers send them. Each form runs in a process of its own, so that its memory is its own.

#include <cstdio>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <NyBookComposer.h>
#include <NyBookPdf.h>
#include <NyBookRenderer.h>
#include <NyImageLoader.h>

#include <unistd.h>

#include "Measurement.h"

namespace
{
using namespace Qt::Literals::StringLiterals;

constexpr int paintings = 6;

struct Cost
{
    double ms = 0;
    double peakMiB = 0;
    double fileMiB = 0;
};

/** "VmRSS", now, or "VmHWM", the most so far; in MiB. */
double memoryMiB(const char *key)
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(key))
            return line.mid(qsizetype(qstrlen(key)) + 1).simplified().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

/** Shapes, and the grain of a sensor: without it a JPEG would be far smaller than a photo's. */
bool paintPhoto(const QString &path, const QSize &sizePx, quint32 seed)
{
    QImage image(sizePx, QImage::Format_RGB32);
    QRandomGenerator random(seed);
    QLinearGradient sky(0, 0, 0, image.height());
    sky.setColorAt(0, QColor::fromHsv(random.bounded(360), 120, 230));
    sky.setColorAt(1, QColor::fromHsv(random.bounded(360), 160, 120));
    QPainter painter(&image);
    painter.fillRect(image.rect(), sky);
    for (int i = 0; i < 2000; ++i)
        painter.fillRect(random.bounded(image.width()), random.bounded(image.height()), 5 + random.bounded(200), 5 + random.bounded(200),
            QColor::fromHsv(random.bounded(360), random.bounded(256), random.bounded(256)));
    painter.end();
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grain = int(random.generate() >> 28) - 8;
            const auto with = [grain](int value) { return std::clamp(value + grain, 0, 255); };
            line[x] = qRgb(with(qRed(line[x])), with(qGreen(line[x])), with(qBlue(line[x])));
        }
    }
    return image.save(path, "JPEG", 88);
}

NyBookProject bookOf(const QString &folder)
{
    NyBookComposer::Request request;
    request.words.title = u"Sommerurlaub"_s;
    QDateTime time(QDate(2026, 7, 1), QTime(9, 0));
    const QFileInfoList files = QDir(folder).entryInfoList({u"*.jpg"_s}, QDir::Files, QDir::Name);
    for (const QFileInfo &file : files) {
        NyFotoFacts facts;
        facts.url = QUrl::fromLocalFile(file.absoluteFilePath());
        facts.captureTime = time;
        facts.sizePx = QImageReader(file.absoluteFilePath()).size();
        facts.sharpness = 0.8;
        facts.exposure = 0.8;
        request.photos.append(facts);
        time = time.addSecs(1800);
    }
    return NyBookComposer::compose(request);
}

enum class Decoding { Whole, Scaled };

/** What a program does that has Qt and a renderer. */
void paintStraight(const NyBookProject &project, const QString &path, Decoding decoding)
{
    QPdfWriter device(path);
    device.setResolution(300);
    device.setPageSize(QPageSize(project.pageSizeMm, QPageSize::Millimeter));
    device.setPageMargins(QMarginsF());
    const NyBookRenderer renderer({}, [decoding](const QUrl &url, const QSize &boxPx) -> NyBookRenderer::Picture {
        const NyImageLoader &loader = NyImageLoader::instance();
        return {NyBookRenderer::Picture::State::Ready,
            decoding == Decoding::Whole ? loader.load(url.toLocalFile()) : loader.loadScaled(url.toLocalFile(), boxPx)};
    });
    QPainter painter(&device);
    const QRectF target(QPointF(0, 0), project.pageSizeMm / 25.4 * 300);
    renderer.paint(painter, project.cover, NyBookRenderer::PageKind::Cover, project.pageSizeMm, target, 1.0);
    for (const NyBookPage &page : project.pages) {
        device.newPage();
        renderer.paint(painter, page, NyBookRenderer::PageKind::Inner, project.pageSizeMm, target, 1.0);
    }
}

/** In the process of one form. */
int writeBook(const QString &form, const QString &folder, const QString &path)
{
    const NyBookProject project = bookOf(folder);
    const double before = memoryMiB("VmRSS:");
    bool isWritten = true;
    const double ms = Measurement::milliseconds([&] {
        if (form == u"engine") {
            const std::atomic_bool isCancelled = false;
            isWritten = NyBookPdf(project, {}).write(path, NyBookPdf::MissingPhotos::Refuse, {}, isCancelled).state
                == NyBookPdf::Result::State::Written;
        } else {
            paintStraight(project, path, form == u"whole" ? Decoding::Whole : Decoding::Scaled);
        }
    });
    std::printf("%f %f\n", ms, memoryMiB("VmHWM:") - before);
    return isWritten ? 0 : 1;
}

Cost costOf(const QString &form, const QString &folder, const QString &path)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {u"--form"_s, form, folder, path});
    process.waitForFinished(-1);
    const QList<QByteArray> numbers = process.readAllStandardOutput().simplified().split(' ');
    if (process.exitCode() != 0 || numbers.size() != 2)
        qFatal("the form %s failed", qPrintable(form));
    return {numbers[0].toDouble(), numbers[1].toDouble(), double(QFileInfo(path).size()) / 1024 / 1024};
}

void compare(const QTemporaryDir &home, int count, const QSize &sizePx)
{
    const QString folder = home.filePath(u"photos-%1"_s.arg(sizePx.width()));
    QDir().mkpath(folder);
    double bytes = 0;
    for (int i = 0; i < count; ++i) {
        const auto path = [&](int number) { return u"%1/IMG_%2.jpg"_s.arg(folder).arg(number, 4, 10, QLatin1Char('0')); };
        if (i < paintings ? !paintPhoto(path(i), sizePx, quint32(i))
                          : ::link(QFile::encodeName(path(i % paintings)).constData(), QFile::encodeName(path(i)).constData()) != 0)
            qFatal("a photo cannot be written");
        bytes += double(QFileInfo(path(i)).size());
    }
    const struct
    {
        QString form;
        const char *name;
    } forms[] = {
        {u"whole"_s, "Qt's PDF device, photos decoded whole"},
        {u"scaled"_s, "Qt's PDF device, photos scaled to 300 dpi"},
        {u"engine"_s, "NyBookPdf"},
    };
    std::printf("\n%d photos of %d x %d px, %.1f MiB\n", count, sizePx.width(), sizePx.height(), bytes / 1024 / 1024);
    std::printf("%-44s %10s %7s %12s %7s %10s %7s\n", "", "s", "", "peak, MiB", "", "PDF, MiB", "");
    Cost reference;
    for (const auto &form : forms) {
        const Cost cost = costOf(form.form, folder, home.filePath(u"book.pdf"_s));
        if (form.form == u"whole")
            reference = cost;
        std::printf("%-44s %10.2f %7.3f %12.1f %7.3f %10.1f %7.3f\n", form.name, cost.ms / 1000, cost.ms / reference.ms, cost.peakMiB,
            cost.peakMiB / reference.peakMiB, cost.fileMiB, cost.fileMiB / reference.fileMiB);
        std::fflush(stdout);
    }
}
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 5 && arguments.at(1) == u"--form")
        return writeBook(arguments.at(2), arguments.at(3), arguments.at(4));
    const qsizetype index = arguments.indexOf(u"--photos"_s);
    const int count = index >= 0 && index + 1 < arguments.size() ? std::max(1, arguments.at(index + 1).toInt()) : 100;
    const QTemporaryDir home;
    compare(home, count, QSize(4000, 3000));
    compare(home, count, QSize(1600, 1200));
    return 0;
}
