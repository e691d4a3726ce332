#pragma once

#include <optional>

#include <QtCore/QByteArray>
#include <QtCore/QSize>
#include <QtCore/QString>

#include "NyImageMetaData.h"

/** What the metadata plug-in does. Thread-safe; no exception leaves it. Paths are in the file system's bytes. */
class NyImageMetaDataBackend
{
public:
    virtual ~NyImageMetaDataBackend() = default;

    /**
     * Reads headers, never the picture itself. With isRead false, @p reason says why. What @p sidecar, an XMP packet that
     * sidecarExtension() accepted or nothing, says goes before what the file's own XMP says.
     */
    virtual NyImageMetaData metaData(const QByteArray &path, const QByteArray &sidecar, QString &reason) const = 0;

    /**
     * The extension of the one file of its name that the packet is for ("CR2"), empty when it does not tell. Nothing, with a
     * @p reason, when it is no XMP packet.
     */
    virtual std::optional<QString> sidecarExtension(const QByteArray &sidecar, QString &reason) const = 0;

    /**
     * The smallest embedded JPEG that is at least @p wantedPx in either direction and has the largest one's proportions, else the
     * largest. Empty, with a @p reason, when there is none.
     */
    virtual QByteArray preview(const QByteArray &path, int wantedPx, QString &reason) const = 0;
};

/** The plug-in's one function, named "nyImageMetaDataBackend" and the version behind it. */
using NyImageMetaDataBackendFunction = NyImageMetaDataBackend *(*)();
