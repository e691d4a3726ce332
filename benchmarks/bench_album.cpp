// What an album of 1,000 photos costs in memory and time when its occasion is looked for, photo by photo as the service does it.
//
// Usage: bench_album [--photos N] [--mobile]. Paints a few photos of 12 megapixels once, and links them under N names. With --mobile a
// model of the size that phones run looks at them instead of the built-in one; /usr/bin/python3 with the module onnx writes it.

#include <NyFotoAccess.h>
#include <NyFotoCacheManager.h>
#include <NyOrrinAccess.h>
#include <NyOrrinMediaItemBuilder.h>

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QUrl>

#include <NyDirectoryConfig.h>

#include <sys/wait.h>
#include <unistd.h>

#include "Measurement.h"

namespace
{
constexpr int paintings = 8;
constexpr double limitMiB = 150.0;

/** "VmRSS", now, or "VmHWM", the most so far; in MiB. */
double memoryMiB(const char *key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0.0;
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith(key))
            return line.mid(static_cast<int>(qstrlen(key)) + 1).simplified().split(' ').first().toDouble() / 1024.0;
    }
    return 0.0;
}

void paintPhoto(const QString &path, int number)
{
    QImage image(4000, 3000, QImage::Format_RGB32);
    QRandomGenerator random(static_cast<quint32>(number));
    QLinearGradient sky(0, 0, 0, image.height());
    sky.setColorAt(0, QColor::fromHsv(random.bounded(360), 120, 230));
    sky.setColorAt(1, QColor::fromHsv(random.bounded(360), 160, 120));
    QPainter painter(&image);
    painter.fillRect(image.rect(), sky);
    for (int i = 0; i < 6000; ++i)
        painter.fillRect(random.bounded(image.width()), random.bounded(image.height()), 5 + random.bounded(200), 5 + random.bounded(200),
            QColor::fromHsv(random.bounded(360), random.bounded(256), random.bounded(256)));
    painter.end();
    if (!image.save(path, "JPEG", 90))
        qFatal("cannot write %s", qPrintable(path));
}
}

int main(int argc, char **argv)
{
    const QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(home.filePath(QStringLiteral("data"))));
    if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const qsizetype index = arguments.indexOf(QStringLiteral("--photos"));
    const int count = index >= 0 && index + 1 < arguments.size() ? arguments.at(index + 1).toInt() : 1000;

    if (arguments.contains(QStringLiteral("--mobile"))) {
        const QString mobile = NyDirectoryConfig::instance().modelsFolder() + QStringLiteral("/mobile");
        if (QProcess::execute(QStringLiteral("/usr/bin/python3"), {QStringLiteral(MOBILE_MODEL_SCRIPT), mobile}) != 0)
            return 2;
    }

    const QString album = home.filePath(QStringLiteral("Pictures/2024-07 Sommerurlaub"));
    QDir().mkpath(album);
    // In a process of its own, so that its memory is not this one's.
    const pid_t painter = ::fork();
    if (painter == 0) {
        for (int i = 0; i < std::min(paintings, count); ++i)
            paintPhoto(QStringLiteral("%1/IMG_%2.jpg").arg(album).arg(i, 4, 10, QLatin1Char('0')), i);
        ::_exit(0);
    }
    int status = 0;
    if (painter < 0 || ::waitpid(painter, &status, 0) != painter || status != 0)
        qFatal("the photos could not be painted");
    QList<NyFoto> photos;
    for (int i = 0; i < count; ++i) {
        const auto path = [&](int number) { return QStringLiteral("%1/IMG_%2.jpg").arg(album).arg(number, 4, 10, QLatin1Char('0')); };
        if (i >= paintings && ::link(QFile::encodeName(path(i % paintings)).constData(), QFile::encodeName(path(i)).constData()) != 0)
            qFatal("cannot link a photo");
        photos.append(NyFoto(QUrl::fromLocalFile(path(i))));
    }

    constexpr auto priority = NyBackgroundJobPriority::Analysis;
    const QSize box(224, 224);
    const double before = memoryMiB("VmRSS:");
    double at200 = 0.0;
    double lastPhoto = 0.0;
    std::printf("%-34s %10s %10s\n", "", "resident", "peak, MiB");
    std::printf("%-34s %10.1f %10.1f\n", "before", before, memoryMiB("VmHWM:"));
    std::vector<NyOrrinVisionedMediaItem> items;
    const double total = Measurement::milliseconds([&] {
        for (int i = 0; i < count; ++i) {
            const NyFoto &photo = photos.at(i);
            if (NyFotoAccess::isVideo(photo) || NyFotoAccess::preferredSize(photo, priority, false).isEmpty()
                || NyFotoAccess::drawable(photo, box, priority, NyCachingOption::CacheAndLoad, nullptr, nullptr).isNull())
                qFatal("a photo is not valid");
            const QSize size = NyFotoAccess::preferredSize(photo, priority, false);
            NyOrrinMediaItemBuilder builder;
            // A time of its own for each, so that none is a duplicate.
            builder.setId(photo.url().toDisplayString())
                .setTimestamp((1719820800LL + 400LL * i) * 1000)
                .setWidth(size.width())
                .setHeight(size.height())
                .setRating(NyFotoAccess::adobeOrVelmoraRating(photo, priority, false))
                .setDigitalZoomRatio(NyFotoAccess::metaData(photo, priority, false).digitalZoomRatio());
            NyOrrinVisionDescriptorsBuilder descriptors;
            const NyDrawable drawable = NyFotoAccess::drawable(photo, box, priority, NyCachingOption::CacheAndLoad, nullptr, nullptr);
            NyOrrinAccess::instance().process(drawable.image(), descriptors);
            items.emplace_back(builder.build(), descriptors.build());
            lastPhoto = memoryMiB("VmRSS:");
            if (i + 1 == 200)
                at200 = lastPhoto;
            if (i == 0 || (i + 1) % 200 == 0)
                std::printf("%-34s %10.1f %10.1f\n", qPrintable(QStringLiteral("photo %1").arg(i + 1)), lastPhoto, memoryMiB("VmHWM:"));
        }
    });
    const NyOrrinCurator curator = NyOrrinAccess::instance().getCurator();
    std::vector<NyOrrinCuratedMediaItem> curated;
    std::vector<NyOrrinOccasion> occasions;
    const double curation = Measurement::processorMilliseconds([&] {
        curated = curator.curate(items);
        occasions = curator.getOccasion(curated);
    });
    const double peak = memoryMiB("VmHWM:");
    std::printf("%-34s %10.1f %10.1f\n", "curated and weighed", memoryMiB("VmRSS:"), peak);
    NyFotoCacheManager::instance().clearCache();
    std::printf("%-34s %10.1f %10.1f\n", "cache cleared", memoryMiB("VmRSS:"), memoryMiB("VmHWM:"));
    std::printf("\n%d photos, %zu kept, %zu occasions; %.1f ms a photo, curating and weighing all %.1f ms\n", count, curated.size(),
        occasions.size(), total / count, curation);
    std::printf(
        "peak growth: %.1f MiB, limit %.0f; between photo 200 and the last: %.1f MiB\n", peak - before, limitMiB, lastPhoto - at200);
    return peak - before <= limitMiB ? 0 : 1;
}
