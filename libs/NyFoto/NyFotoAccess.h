#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QSize>

#include "NyDrawable.h"
#include "NyFoto.h"
#include "NyFotoMetaData.h"
#include "NyGeoPosition.h"
#include "nyfoto_export.h"

/** How urgent a request for a photo is. Requests are answered on the caller's thread; the value tells who may wait. */
enum class NyBackgroundJobPriority : int {
    Immediate = 0,
    VisibleNow = 1,
    VisibleSoon = 2,
    Prefetch = 3,
    Analysis = 4,
};

/** What a request for a drawable may do; the values are bits. */
enum class NyCachingOption : int {
    None = 0,
    LookIntoCache = 1,
    StoreInCache = 4,
    LoadIfMissing = 8,
    CacheAndLoad = 13, /**< all of the above */
};

/** What counts as the time at which a photo was taken. */
enum class NyPictureTakenOption : int {
    MetaDataOnly = 0,
    MetaDataOrFileTime = 1, /**< where the metadata tell nothing, the file's birth time, else its modification time */
};

/** Where a drawable came from. */
enum class NyFotoCacheResultHint : int {
    NotLoaded = 0,
    FromCache = 1,
    Loaded = 2,
    Failed = 3,
};

/** Lets a caller give up a request that waits on another thread. */
class NYFOTO_EXPORT NyBackgroundTask
{
public:
    virtual ~NyBackgroundTask();

    /** Asked on the thread that works. */
    virtual bool isCancelled() const = 0;
};

/**
 * What can be learned of a photo, from its file. Thread-safe. Metadata and drawables are kept in NyFotoCacheManager; a file, or a
 * sidecar, that changed is noticed by its size and times. A photo that cannot be read gives the default that each operation names.
 */
class NYFOTO_EXPORT NyFotoAccess
{
public:
    /** By the file's name alone. */
    static bool isVideo(const NyFoto &foto);

    /** The size in px of the upright picture; empty for a video or an unreadable file. @p readAgain bypasses the cache, here and below. */
    static QSize preferredSize(const NyFoto &foto, NyBackgroundJobPriority priority, bool readAgain);

    /** -1 (rejected) to 5; 0 without any rating. */
    static int adobeOrVelmoraRating(const NyFoto &foto, NyBackgroundJobPriority priority, bool readAgain);

    /** Seconds since 1970-01-01 UTC; 0 when unknown. A capture time without an offset counts as local time of this machine. */
    static qint64 pictureTakenEpoch(const NyFoto &foto, NyBackgroundJobPriority priority, bool readAgain, NyPictureTakenOption option);

    static NyFotoMetaData metaData(const NyFoto &foto, NyBackgroundJobPriority priority, bool readAgain);

    /** Invalid when none is recorded, or when the camera recorded that it had no fix. */
    static NyGeoPosition geoPosition(const NyFoto &foto, NyBackgroundJobPriority priority, bool readAgain);

    /**
     * The picture, no larger than @p boxPx and never enlarged, upright. @p hint and @p task may be null. Null when it cannot be
     * read, the task was cancelled, or the option forbids to load it.
     */
    static NyDrawable drawable(const NyFoto &foto, const QSize &boxPx, const NyBackgroundJobPriority &priority,
        const NyCachingOption &option, NyFotoCacheResultHint *hint, NyBackgroundTask *task);

    /**
     * When the photo was taken, as the clock on the wall showed it: date() and time() are what the camera recorded, with its offset
     * from UTC where it recorded one. Without metadata the file's birth time, else its modification time; invalid without a file.
     */
    static QDateTime captureTime(const NyFoto &foto);
};
