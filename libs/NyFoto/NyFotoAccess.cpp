#include "NyFotoAccess.h"

#include <QtCore/QFileInfo>

#include "NyFotoCacheManager.h"
#include "NyFotoTime.h"
#include "NyImageLoader.h"
#include "NyImageMetaDataReader.h"

namespace
{

NyImageMetaData imageMetaData(const NyFoto &foto, bool readAgain)
{
    if (!foto.isLocalFile() || NyFotoAccess::isVideo(foto))
        return {};
    NyFotoCacheManager &cache = NyFotoCacheManager::instance();
    const NyFotoFileStamp stamp = NyFotoFileStamp::ofFileAndSidecars(foto.location());
    if (!readAgain) {
        if (const std::optional<NyImageMetaData> known = cache.metaData(foto.location(), stamp))
            return *known;
    }
    const NyImageMetaData metaData = NyImageMetaDataReader::read(foto.location());
    cache.insertMetaData(foto.location(), stamp, metaData);
    return metaData;
}

/** A file system without birth times still tells when the content was written. */
QDateTime fileTime(const NyFoto &foto)
{
    const QFileInfo info = foto.localFileInfo();
    const QDateTime birth = info.fileTime(QFileDevice::FileBirthTime);
    return birth.isValid() ? birth : info.fileTime(QFileDevice::FileModificationTime);
}

void tell(NyFotoCacheResultHint *hint, NyFotoCacheResultHint value)
{
    if (hint)
        *hint = value;
}

bool has(NyCachingOption option, NyCachingOption bit)
{
    return (int(option) & int(bit)) != 0;
}

}

NyBackgroundTask::~NyBackgroundTask() = default;

bool NyFotoAccess::isVideo(const NyFoto &foto)
{
    static constexpr const char16_t *const extensions[] = {
        u"3g2",
        u"3gp",
        u"asf",
        u"avi",
        u"divx",
        u"flv",
        u"m2t",
        u"m2ts",
        u"m2v",
        u"m4v",
        u"mkv",
        u"mod",
        u"mov",
        u"mp4",
        u"mpe",
        u"mpeg",
        u"mpg",
        u"mts",
        u"mxf",
        u"ogv",
        u"qt",
        u"tod",
        u"vob",
        u"webm",
        u"wmv",
    };
    const QString &location = foto.location();
    const qsizetype dot = location.lastIndexOf(u'.');
    if (dot < 0)
        return false;
    const QStringView extension = QStringView(location).sliced(dot + 1);
    for (const char16_t *known : extensions) {
        if (extension.compare(QStringView(known), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

QSize NyFotoAccess::preferredSize(const NyFoto &foto, NyBackgroundJobPriority, bool readAgain)
{
    if (!foto.isLocalFile() || isVideo(foto))
        return {};
    NyFotoCacheManager &cache = NyFotoCacheManager::instance();
    const NyFotoFileStamp stamp = NyFotoFileStamp::ofFileAndSidecars(foto.location());
    if (!readAgain) {
        if (const std::optional<QSize> known = cache.size(foto.location(), stamp))
            return *known;
    }
    const QSize size = NyImageLoader::instance().orientedSize(foto.location());
    cache.insertSize(foto.location(), stamp, size);
    return size;
}

int NyFotoAccess::adobeOrVelmoraRating(const NyFoto &foto, NyBackgroundJobPriority priority, bool readAgain)
{
    return metaData(foto, priority, readAgain).rating();
}

qint64 NyFotoAccess::pictureTakenEpoch(const NyFoto &foto, NyBackgroundJobPriority priority, bool readAgain, NyPictureTakenOption option)
{
    QDateTime time = metaData(foto, priority, readAgain).captureTime();
    if (!time.isValid() && option == NyPictureTakenOption::MetaDataOrFileTime)
        time = fileTime(foto);
    return time.isValid() ? time.toSecsSinceEpoch() : 0;
}

NyFotoMetaData NyFotoAccess::metaData(const NyFoto &foto, NyBackgroundJobPriority, bool readAgain)
{
    return NyFotoMetaData(imageMetaData(foto, readAgain));
}

NyGeoPosition NyFotoAccess::geoPosition(const NyFoto &foto, NyBackgroundJobPriority priority, bool readAgain)
{
    return metaData(foto, priority, readAgain).geoPosition();
}

NyDrawable NyFotoAccess::drawable(const NyFoto &foto, const QSize &boxPx, const NyBackgroundJobPriority &, const NyCachingOption &option,
    NyFotoCacheResultHint *hint, NyBackgroundTask *task)
{
    tell(hint, NyFotoCacheResultHint::NotLoaded);
    if (!foto.isLocalFile() || isVideo(foto) || boxPx.isEmpty())
        return {};
    NyFotoCacheManager &cache = NyFotoCacheManager::instance();
    const NyFotoFileStamp stamp = NyFotoFileStamp::ofFile(foto.location());
    if (has(option, NyCachingOption::LookIntoCache)) {
        const QImage image = cache.drawable(foto.location(), stamp, boxPx);
        if (!image.isNull()) {
            tell(hint, NyFotoCacheResultHint::FromCache);
            return NyDrawable(image);
        }
    }
    if (!has(option, NyCachingOption::LoadIfMissing) || (task && task->isCancelled()))
        return {};
    const QImage image = NyImageLoader::instance().loadScaled(foto.location(), boxPx);
    tell(hint, image.isNull() ? NyFotoCacheResultHint::Failed : NyFotoCacheResultHint::Loaded);
    if (has(option, NyCachingOption::StoreInCache))
        cache.insertDrawable(foto.location(), stamp, boxPx, image);
    return NyDrawable(image);
}

QDateTime NyFotoAccess::captureTime(const NyFoto &foto)
{
    const QDateTime time = NyFotoTime::captureTime(imageMetaData(foto, false));
    return time.isValid() ? time : fileTime(foto);
}
