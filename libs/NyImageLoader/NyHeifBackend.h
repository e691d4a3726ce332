#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtGui/QImage>

/** What the HEIC and AVIF plug-in does. Thread-safe; no exception leaves it. Paths are in the file system's bytes. */
class NyHeifBackend
{
public:
    virtual ~NyHeifBackend() = default;

    /** The size of the primary picture with its rotation applied. Empty, with a @p reason, when there is none. */
    virtual QSize size(const QByteArray &path, QString &reason) const = 0;

    /**
     * The primary picture, its rotation applied, or its embedded thumbnail where that is not smaller than @p wanted. An empty
     * @p wanted asks for the picture itself. Null, with a @p reason, when it cannot be decoded.
     */
    virtual QImage image(const QByteArray &path, const QSize &wanted, qint64 maximumPixels, QString &reason) const = 0;
};

/** The plug-in's one function, named "nyHeifBackend" and the version behind it. */
using NyHeifBackendFunction = NyHeifBackend *(*)();
