#include "NyEventFinderOccasionDetector.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include <NyFotoAccess.h>
#include <NyFotoList.h>
#include <NyOrrinAccess.h>
#include <NyOrrinMediaItemBuilder.h>
#include <NyOrrinVisionDescriptorsBuilder.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDate>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtCore/QTextStream>
#include <QtCore/QUrl>

#include "NyQuilloServiceSettings.h"
#include "NyVisionMemory.h"

namespace
{

constexpr NyBackgroundJobPriority Priority = NyBackgroundJobPriority::Analysis;
constexpr bool ReadAgain = false;
/** The size at which models get every photo, in px. */
constexpr int VisionEdgePx = 224;

NyDrawable visionDrawable(const NyFoto &foto)
{
    return NyFotoAccess::drawable(foto, QSize(VisionEdgePx, VisionEdgePx), Priority, NyCachingOption::CacheAndLoad, nullptr, nullptr);
}

QString currentDateTimeText()
{
    return QLocale().toString(QDateTime::currentDateTime(), QLocale::LongFormat);
}

} // namespace

NyEventFinderOccasionDetector::~NyEventFinderOccasionDetector() = default;

NyOccasionInfoList NyEventFinderOccasionDetector::detectOccasion(const NyFotoList &fotos)
{
    writeFotoListToFile(fotos);
    QElapsedTimer timer;
    timer.start();

    NyVisionMemory &memory = NySingleton<NyVisionMemory>::instance();
    NyFotoList validFotos;
    for (const NyFoto &foto : fotos) {
        if (QCoreApplication::closingDown())
            return {};
        const NyVisionMemory::Content content = NyVisionMemory::contentOf(foto);
        if (const std::optional<bool> isValid = memory.isValid(content)) {
            if (*isValid)
                validFotos.append(foto);
        } else if (isValidFoto(foto)) {
            validFotos.append(foto);
        } else {
            memory.rememberInvalid(content);
        }
    }

    std::vector<NyOrrinVisionedMediaItem> items;
    items.reserve(std::size_t(validFotos.size()));
    for (const NyFoto &foto : validFotos) {
        if (QCoreApplication::closingDown())
            return {};
        const NyVisionMemory::Content content = NyVisionMemory::contentOf(foto);
        std::optional<NyOrrinVisionedMediaItem> item = memory.item(content);
        if (!item) {
            item = createVisionDescriptor(foto);
            memory.remember(content, *item);
        }
        items.push_back(std::move(*item));
    }

    NyOrrinCurator curator = NySingleton<NyOrrinAccess>::instance().getCurator();
    std::vector<NyOrrinCuratedMediaItem> curated = curator.curate(std::move(items));
    std::vector<NyOrrinOccasion> occasions = curator.getOccasion(std::move(curated));
    std::sort(occasions.begin(), occasions.end(), compareOccasions);
    NyOccasionInfoList result;
    for (const NyOrrinOccasion &occasion : occasions)
        result.append(createOccasionInfo(occasion));

    QList<QString> descriptions = result.descriptions();
    qDebug() << timer.elapsed() << "ms elapsed for #photos:" << fotos.size();
    writeDetectionResultsToFile(timer, descriptions);
    return result;
}

bool NyEventFinderOccasionDetector::isValidFoto(const NyFoto &foto)
{
    if (NyFotoAccess::isVideo(foto))
        return false;
    const QSize size = NyFotoAccess::preferredSize(foto, Priority, ReadAgain);
    if (size.width() < 1 || size.height() < 1)
        return false;
    return !visionDrawable(foto).isNull();
}

NyOrrinMediaItemBuilder NyEventFinderOccasionDetector::createMediaItemBuilder(const NyFoto &foto)
{
    const QSize size = NyFotoAccess::preferredSize(foto, Priority, ReadAgain);
    const int rating = NyFotoAccess::adobeOrVelmoraRating(foto, Priority, ReadAgain);

    NyOrrinMediaItemBuilder builder;
    builder.setId(foto.url().toDisplayString())
        .setTimestamp(1000 * NyFotoAccess::pictureTakenEpoch(foto, Priority, ReadAgain, NyPictureTakenOption::MetaDataOrFileTime))
        .setWidth(size.width())
        .setHeight(size.height())
        .setRating(rating)
        .setFavorite(false)
        .setDigitalZoomRatio(NyFotoAccess::metaData(foto, Priority, ReadAgain).digitalZoomRatio());
    const NyGeoPosition position = NyFotoAccess::geoPosition(foto, Priority, ReadAgain);
    if (position.isValid() && position.latitude().isInValidRange())
        builder.setCoordinate(position.latitude().decimalDegrees(), position.longitude().normalized().decimalDegrees());
    return builder;
}

NyOrrinVisionedMediaItem NyEventFinderOccasionDetector::createVisionDescriptor(const NyFoto &foto)
{
    const NyOrrinMediaItem item = createMediaItemBuilder(foto).build();
    NyOrrinVisionDescriptorsBuilder descriptors;
    const NyDrawable drawable = visionDrawable(foto);
    NySingleton<NyOrrinAccess>::instance().process(drawable.image(), descriptors);
    return NyOrrinVisionedMediaItem(item, descriptors.build());
}

bool NyEventFinderOccasionDetector::compareOccasions(const NyOrrinOccasion &a, const NyOrrinOccasion &b)
{
    return a.getProbability() > b.getProbability();
}

NyOccasionInfo NyEventFinderOccasionDetector::createOccasionInfo(NyOrrinOccasion occasion)
{
    const float probability = occasion.getProbability();
    const std::string source = occasion.getSource();
    const std::string keyword = occasion.getKeyword();
    return NyOccasionInfo(QString::fromStdString(keyword), QString::fromStdString(source), double(probability));
}

QFileInfo NyEventFinderOccasionDetector::outputFileInfo() const
{
    return QFileInfo(QDir(NySingleton<NyQuilloServiceSettings>::instance().bookProposalFileFolder()),
        QStringLiteral("classification.%1.txt").arg(QStringLiteral("lastEvent")));
}

void NyEventFinderOccasionDetector::writeFotoListToFile(const NyFotoList &fotos)
{
    QFile file(outputFileInfo().absoluteFilePath());
    if (file.exists())
        QFile::copy(file.fileName(), file.fileName() + QString::number(QDate::currentDate().weekNumber()) + QStringLiteral(".bak"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return;
    qDebug() << "Writing last Event occasion detection information to" << file.fileName();
    QTextStream stream(&file);
    stream << QStringLiteral("Start Date and Time of Logging: %1\n").arg(currentDateTimeText());
    stream << QStringLiteral("Detecting occasion of %1 photos \n").arg(fotos.size());
    stream << "=== Begin List of Fotos === \n";
    stream << fotos.toUrlStringList().join(QLatin1Char('\n'));
    stream << "\n=== End List of Fotos === \n";
}

void NyEventFinderOccasionDetector::writeDetectionResultsToFile(QElapsedTimer &timer, QList<QString> &descriptions)
{
    QFile file(outputFileInfo().absoluteFilePath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
        return;
    QTextStream stream(&file);
    stream << "\n=== Begin Final Results ===\n";
    stream << "\nTime Elapsed (ms):" << QString::number(timer.elapsed());
    stream << "\nResults: \n  ";
    stream << descriptions.join(QStringLiteral("\n  "));
    stream << "\n=== End Final Results ===\n";
    stream << QStringLiteral("End Date and Time of Logging: %1\n").arg(currentDateTimeText());
}
