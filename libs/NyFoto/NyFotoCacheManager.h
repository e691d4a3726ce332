#pragma once

#include <memory>
#include <optional>

#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QImage>

#include "NyFotoFileStamp.h"
#include "NyImageMetaData.h"
#include "NySingleton.h"
#include "nyfoto_export.h"

/**
 * Keeps what was read from photos for the next request: drawables up to a limit in bytes, and the metadata and size of the photos
 * asked for last. What was used longest ago goes first. Thread-safe.
 */
class NYFOTO_EXPORT NyFotoCacheManager : public NySingleton<NyFotoCacheManager>
{
public:
    /** The default limit: about 160 drawables of 224 by 224 px. */
    static constexpr qint64 DefaultMaximumBytes = 32 * 1024 * 1024;
    /** How many photos' metadata are kept. */
    static constexpr int MaximumMetaDataCount = 256;

    NyFotoCacheManager();
    ~NyFotoCacheManager() override;

    /** Drops everything and gives the memory back. */
    void clearCache();

    qint64 maximumBytes() const;
    /** Drops at once what does not fit any more. 0 keeps no drawable. */
    void setMaximumBytes(qint64 bytes);
    /** Of the drawables kept now. */
    qint64 usedBytes() const;

    /** Null when it is not there for this content of the file. */
    QImage drawable(const QString &location, const NyFotoFileStamp &stamp, const QSize &box);
    void insertDrawable(const QString &location, const NyFotoFileStamp &stamp, const QSize &box, const QImage &image);

    std::optional<NyImageMetaData> metaData(const QString &location, const NyFotoFileStamp &stamp);
    void insertMetaData(const QString &location, const NyFotoFileStamp &stamp, const NyImageMetaData &metaData);
    std::optional<QSize> size(const QString &location, const NyFotoFileStamp &stamp);
    void insertSize(const QString &location, const NyFotoFileStamp &stamp, const QSize &size);

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};
