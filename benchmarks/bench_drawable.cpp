// A photo's drawable, as the analysis asks for it, against what cannot be done without (libjpeg-turbo decoding at 1/8) and against
// vipsthumbnail, the quickest tool that users have for it.
//
// Usage: bench_drawable [--rounds N] [--box PX] [PICTURE]
// PICTURE is a JPEG of one's own; without it one of 12 megapixels is painted. Times are medians of runs in turn: of the wall clock, and
// of the processor, which is what to look at while the machine is busy with other things.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#ifdef HAVE_LIBJPEG
// jpeglib.h relies on stdio.h.
#include <jpeglib.h>
#endif

#include <NyFotoAccess.h>
#include <NyFotoCacheManager.h>

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "Measurement.h"

namespace
{

/** Sky, meadow, leaves and the noise of a sensor: it fills the file as a photograph does. */
QImage paintedPhotograph(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    quint32 state = 1;
    const auto noise = [&state](int amplitude) {
        state = state * 1664525u + 1013904223u;
        return int(state >> 16) % (2 * amplitude + 1) - amplitude;
    };
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        const bool isSky = y < size.height() / 2;
        for (int x = 0; x < size.width(); ++x) {
            const int leaf = ((x / 7) * 31 + (y / 5) * 17) % 61;
            const int fine = noise(isSky ? 6 : 14);
            const int red = isSky ? 120 + y * 60 / size.height() : 60 + leaf;
            const int green = isSky ? 160 + y * 60 / size.height() : 90 + leaf + x * 40 / size.width();
            const int blue = isSky ? 220 : 40 + leaf / 2;
            line[x] = qRgb(qBound(0, red + fine, 255), qBound(0, green + fine, 255), qBound(0, blue + fine, 255));
        }
    }
    return image;
}

/** An EXIF block with the orientation alone, put behind the JPEG's first marker. */
QByteArray withOrientation(const QByteArray &jpeg, char orientation)
{
    QByteArray block("\xff\xe1\0\x22"
                     "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0?\0\0\0\0\0\0",
        36);
    block[block.indexOf('?')] = orientation;
    return jpeg.first(2) + block + jpeg.sliced(2);
}

struct Cost
{
    double wallMs = 0;
    double processorMs = 0;
};

template <class Work>
Cost costOf(Work &&work)
{
    Cost cost;
    cost.wallMs = Measurement::milliseconds([&] { cost.processorMs = Measurement::processorMilliseconds(work); });
    return cost;
}

double milliseconds(const timeval &time)
{
    return double(time.tv_sec) * 1e3 + double(time.tv_usec) / 1e3;
}

Cost costOfProgram(std::vector<std::string> arguments)
{
    std::vector<char *> pointers;
    for (std::string &argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    Cost cost;
    cost.wallMs = Measurement::milliseconds([&] {
        pid_t process = 0;
        int status = 0;
        rusage usage{};
        if (::posix_spawn(&process, pointers[0], nullptr, nullptr, pointers.data(), environ) != 0
            || ::wait4(process, &status, 0, &usage) != process || status != 0) {
            std::fprintf(stderr, "bench_drawable: %s failed\n", pointers[0]);
            std::exit(1);
        }
        cost.processorMs = milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
    });
    return cost;
}

#ifdef HAVE_LIBJPEG
/** The library's own defaults, except for the scale; line by line, as its own tool does. */
void decodeAtOneEighth(const char *path)
{
    std::FILE *file = std::fopen(path, "rb");
    if (!file)
        std::exit(1);
    jpeg_decompress_struct decoder;
    jpeg_error_mgr errors;
    decoder.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&decoder);
    jpeg_stdio_src(&decoder, file);
    jpeg_read_header(&decoder, TRUE);
    decoder.scale_num = 1;
    decoder.scale_denom = 8;
    jpeg_start_decompress(&decoder);
    std::vector<unsigned char> line(std::size_t(decoder.output_width) * std::size_t(decoder.output_components));
    unsigned char *lines[] = {line.data()};
    while (decoder.output_scanline < decoder.output_height)
        jpeg_read_scanlines(&decoder, lines, 1);
    jpeg_finish_decompress(&decoder);
    jpeg_destroy_decompress(&decoder);
    std::fclose(file);
}
#endif

bool loadDrawable(const QString &path, int boxPx)
{
    NyFotoCacheManager::instance().clearCache();
    const NyFoto foto{QFileInfo(path)};
    return !NyFotoAccess::drawable(
        foto, QSize(boxPx, boxPx), NyBackgroundJobPriority::Analysis, NyCachingOption::CacheAndLoad, nullptr, nullptr)
                .isNull();
}

/** The most memory that this process had at once since the mark was set, in KiB. */
long peakKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').constFirst().toLong();
    }
    return 0;
}

/** Sets the mark of peakKiB() to what is in use now (proc(5), clear_refs). */
void forgetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly))
        file.write("5");
}

/** In a process of its own: prints by how much one drawable lets the memory grow, the first of all and the next one. */
int printPeaks(const QString &path, const QString &other, int boxPx)
{
    forgetPeak();
    const long before = peakKiB();
    loadDrawable(path, boxPx);
    const long first = peakKiB() - before;
    // Another picture between, so that nothing of the first is left where it was.
    loadDrawable(other, boxPx);
    forgetPeak();
    const long warm = peakKiB();
    loadDrawable(path, boxPx);
    std::printf("peak growth of memory: first picture of the process %.1f MB, with plug-ins loaded %.1f MB\n", double(first) / 1024.0,
        double(peakKiB() - warm) / 1024.0);
    return 0;
}

}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    int rounds = 15;
    int boxPx = 224;
    QString picture;
    const QStringList arguments = application.arguments();
    if (arguments.value(1) == QLatin1StringView("--peaks"))
        return printPeaks(arguments.value(2), arguments.value(3), arguments.value(4).toInt());
    for (int i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == QLatin1StringView("--rounds"))
            rounds = qMax(1, arguments.value(++i).toInt());
        else if (arguments[i] == QLatin1StringView("--box"))
            boxPx = qMax(1, arguments.value(++i).toInt());
        else
            picture = arguments[i];
    }
    const QTemporaryDir folder;
    if (picture.isEmpty()) {
        picture = folder.filePath(QStringLiteral("photo.jpg"));
        const QString plain = folder.filePath(QStringLiteral("plain.jpg"));
        QImageWriter writer(plain, "jpeg");
        writer.setQuality(90);
        QFile in(plain);
        QFile out(picture);
        if (!writer.write(paintedPhotograph(QSize(4000, 3000))) || !in.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly)
            || out.write(withOrientation(in.readAll(), 6)) < 0)
            return 1;
    }
    const QString small = folder.filePath(QStringLiteral("small.jpg"));
    if (!paintedPhotograph(QSize(64, 48)).save(small, "JPEG"))
        return 1;
    const QByteArray nativePicture = QFile::encodeName(picture);
    std::printf("%s, %.1f MB, to %d px\n", nativePicture.constData(), double(QFileInfo(picture).size()) / 1e6, boxPx);

    static constexpr const char *Ours = "NyFotoAccess::drawable";
    static constexpr const char *Libjpeg = "libjpeg-turbo at 1/8";
    static constexpr const char *Vips = "vipsthumbnail, a process";
    std::map<std::string, std::vector<double>> processor;
    Measurement wall;
    const auto add = [&](const char *name, const std::function<Cost()> &form) {
        wall.add(name, [&processor, name, form] {
            const Cost cost = form();
            processor[name].push_back(cost.processorMs);
            return cost.wallMs;
        });
    };
    add(Ours, [&] {
        return costOf([&] {
            if (!loadDrawable(picture, boxPx))
                std::exit(1);
        });
    });
#ifdef HAVE_LIBJPEG
    add(Libjpeg, [&] { return costOf([&] { decodeAtOneEighth(nativePicture.constData()); }); });
#else
    std::printf("built without libjpeg: no comparison with it\n");
#endif
    const QString vips = QStandardPaths::findExecutable(QStringLiteral("vipsthumbnail"));
    if (vips.isEmpty()) {
        std::printf("no vipsthumbnail: no comparison with it\n");
    } else {
        const std::vector<std::string> command{vips.toStdString(), nativePicture.toStdString(), "--size",
            std::to_string(boxPx) + "x" + std::to_string(boxPx), "-o", folder.filePath(QStringLiteral("vips.jpg")).toStdString()};
        add(Vips, [command] { return costOfProgram(command); });
    }
    wall.run(rounds);

    std::printf("%-28s %14s %14s\n", "", "wall clock", "processor");
    const auto median = [](std::vector<double> times) {
        std::sort(times.begin(), times.end());
        return times.at(times.size() / 2);
    };
    for (const auto &[name, times] : processor)
        std::printf("%-28s %11.2f ms %11.2f ms\n", name.c_str(), wall.median(name), median(times));
    for (const char *other : {Libjpeg, Vips}) {
        if (processor.contains(other))
            std::printf("drawable / %-28s wall clock %.3f, processor %.3f\n", other, wall.median(Ours) / wall.median(other),
                median(processor[Ours]) / median(processor[other]));
    }
    std::fflush(stdout);
    costOfProgram({QCoreApplication::applicationFilePath().toStdString(), "--peaks", picture.toStdString(), small.toStdString(),
        std::to_string(boxPx)});
    return 0;
}
