#include "NyImageLoader.h"

#include <algorithm>
#include <utility>

#include <QtCore/QByteArrayView>
#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QPluginLoader>
#include <QtCore/QScopeGuard>
#include <QtCore/QSet>
#include <QtGui/QColorSpace>
#include <QtGui/QImageReader>
#include <QtGui/QTransform>

#include "NyHeifBackend.h"
#include "NyImageBackends.h"
#include "NyImageMetaDataBackend.h"
#include "NyImageMetaDataReader.h"

namespace
{

/** A JPEG of several scans is kept as coefficients, about 6 bytes a pixel, at whatever size it is asked for. */
constexpr qint64 MaximumPixelsOfManyScans = 128'000'000;
/** Encoders make about ten; each costs the time of a pass over the whole picture, however few bytes it has. */
constexpr int MaximumScans = 100;
/** Above so many pixels a photo has more than one byte for 100 of them; even an empty one has that as a JPEG. */
constexpr qint64 PixelsOfPossibleBomb = 50'000'000;
constexpr qint64 MaximumPixelsPerByte = 100;

enum class Content { Empty, Heif, Raw, Other };

/** The pictures whose content Qt may decode here; its plug-ins read more than photos. */
bool isPhotoContent(const QByteArray &format)
{
    static const QSet<QByteArray> formats{"jpeg", "jpg", "png", "tiff", "tif", "webp", "bmp", "gif", "jp2"};
    return formats.contains(format);
}

bool isRawName(const QString &path)
{
    static const QSet<QString> extensions{
        QStringLiteral("arw"),
        QStringLiteral("cr2"),
        QStringLiteral("dng"),
        QStringLiteral("nef"),
        QStringLiteral("nrw"),
        QStringLiteral("orf"),
        QStringLiteral("pef"),
        QStringLiteral("raf"),
        QStringLiteral("rw2"),
        QStringLiteral("sr2"),
        QStringLiteral("srw"),
    };
    return extensions.contains(QFileInfo(path).suffix().toLower());
}

/** Remembers whether more was asked for than there is, which is how decoders meet a file that was cut short. */
template <class Device>
class EndWatching : public Device
{
public:
    using Device::Device;

    /** Something was read when nothing was left. */
    bool isExhausted() const { return m_exhausted; }
    /** Something was read that is there only in part. */
    bool gaveLess() const { return m_gaveLess; }
    void forget() { m_exhausted = m_gaveLess = false; }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        const qint64 count = Device::readData(data, maximum);
        m_exhausted = m_exhausted || (maximum > 0 && count <= 0);
        m_gaveLess = m_gaveLess || count < maximum;
        return count;
    }

private:
    bool m_exhausted = false;
    bool m_gaveLess = false;
};

using EndWatchingFile = EndWatching<QFile>;

/** Bytes as a file. The JPEG plug-in takes the bytes out of a QBuffer without reading it, so that its end could not be watched. */
class MemoryFile : public QIODevice
{
public:
    explicit MemoryFile(QByteArray bytes)
        : m_bytes(std::move(bytes))
    {
        // Unbuffered, so that nothing is read ahead of what the decoder asks for.
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    qint64 size() const override { return m_bytes.size(); }

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        const qint64 count = qBound<qint64>(0, m_bytes.size() - pos(), maximum);
        std::copy_n(m_bytes.constData() + pos(), count, data);
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray m_bytes;
};

Content contentOf(QByteArrayView head, const QString &path)
{
    if (head.isEmpty())
        return Content::Empty;
    if (head.size() >= 12 && head.sliced(4, 4) == "ftyp") {
        static const QSet<QByteArray> brands{"heic", "heix", "heim", "heis", "hevc", "hevx", "mif1", "msf1", "mif2", "avif", "avis"};
        // The major brand, or one of the compatible ones behind the minor version.
        for (qsizetype at = 8; at + 4 <= head.size(); at += at == 8 ? 8 : 4) {
            if (brands.contains(head.sliced(at, 4).toByteArray()))
                return Content::Heif;
        }
    }
    if (head.startsWith("FUJIFILMCCD-RAW") || head.startsWith(QByteArrayView("IIU\0", 4)) || head.startsWith("IIRO")
        || head.startsWith("IIRS") || head.startsWith("MMOR") || (head.size() >= 10 && head.startsWith("II*") && head.sliced(8, 2) == "CR"))
        return Content::Raw;
    const bool isTiff = head.startsWith(QByteArrayView("II*\0", 4)) || head.startsWith(QByteArrayView("MM\0*", 4));
    return isTiff && isRawName(path) ? Content::Raw : Content::Other;
}

/** Goes through a file byte by byte without reading it one by one. */
class ByteReader
{
public:
    explicit ByteReader(QIODevice &device)
        : m_device(device)
    {
    }

    /** -1 at the end. */
    int next()
    {
        if (m_at == m_block.size()) {
            m_block = m_device.read(65536);
            m_at = 0;
        }
        return m_at < m_block.size() ? uchar(m_block[m_at++]) : -1;
    }

    int nextTwo()
    {
        const int high = next();
        const int low = next();
        return high < 0 || low < 0 ? -1 : high << 8 | low;
    }

    bool skip(qint64 count)
    {
        const qint64 inBlock = qMin<qint64>(count, m_block.size() - m_at);
        m_at += inBlock;
        return count == inBlock || m_device.seek(m_device.pos() + count - inBlock);
    }

    /** Behind the next byte of this value; false at the end. */
    bool goBehind(char value)
    {
        for (;;) {
            const qsizetype found = m_block.indexOf(value, m_at);
            if (found >= 0) {
                m_at = found + 1;
                return true;
            }
            m_at = m_block.size();
            if (next() < 0)
                return false;
            --m_at;
        }
    }

private:
    QIODevice &m_device;
    QByteArray m_block;
    qsizetype m_at = 0;
};

struct JpegScans
{
    int count = 0; /**< at most one above MaximumScans; 1 for a picture that its first scan completes */
    bool areCollected = false; /**< whether the decoder keeps the coefficients of all scans until it knows the picture */
};

/** From the markers of a JPEG (ITU T.81, annex B). The device stands where it stood afterwards. */
JpegScans scansOf(QIODevice &device)
{
    const qint64 start = device.pos();
    const auto restore = qScopeGuard([&device, start] { device.seek(start); });
    device.seek(2);
    ByteReader bytes(device);
    int components = 0;
    JpegScans scans;
    for (;;) {
        if (!bytes.goBehind('\xff'))
            return scans;
        int marker = bytes.next();
        while (marker == 0xff)
            marker = bytes.next();
        // Stuffed zeros and restart markers stand within a scan, and neither they nor the outermost markers have a length.
        if (marker == 0 || marker == 0x01 || (marker >= 0xd0 && marker <= 0xd8))
            continue;
        if (marker < 0 || marker == 0xd9)
            return scans;
        int length = bytes.nextTwo() - 2;
        if (length < 0)
            return scans;
        const bool isFrame = marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
        if (isFrame && length >= 6) {
            scans.areCollected = marker == 0xc2 || marker == 0xc6 || marker == 0xca || marker == 0xce;
            bytes.skip(5);
            components = bytes.next();
            length -= 6;
        } else if (marker == 0xda && length >= 1) {
            if (bytes.next() < components)
                scans.areCollected = true;
            --length;
            if (++scans.count > MaximumScans || !scans.areCollected)
                return scans;
        }
        if (!bytes.skip(length))
            return scans;
    }
}

qint64 pixelsOf(const QSize &size)
{
    return qint64(size.width()) * size.height();
}

bool isTurned(int orientation)
{
    return orientation >= 5 && orientation <= 8;
}

/** EXIF 2.32, tag 0x0112. */
QImage upright(const QImage &image, int orientation)
{
    switch (orientation) {
    case 2:
        return image.mirrored(true, false);
    case 3:
        return image.mirrored(true, true);
    case 4:
        return image.mirrored(false, true);
    case 5:
        return image.mirrored(true, false).transformed(QTransform().rotate(-90));
    case 6:
        return image.transformed(QTransform().rotate(90));
    case 7:
        return image.mirrored(true, false).transformed(QTransform().rotate(90));
    case 8:
        return image.transformed(QTransform().rotate(-90));
    default:
        return image;
    }
}

/** What fits into the box; an empty box and a smaller picture leave the size as it is. */
QSize fitted(const QSize &size, const QSize &box)
{
    if (box.isEmpty() || (size.width() <= box.width() && size.height() <= box.height()))
        return size;
    return size.scaled(box, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

QImage finished(QImage image)
{
    if (image.isNull())
        return image;
    const QColorSpace space = image.colorSpace();
    if (space.isValid() && space != QColorSpace(QColorSpace::SRgb))
        image.convertToColorSpace(QColorSpace::SRgb);
    image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    image.setColorSpace(QColorSpace::SRgb);
    return image;
}

/** Reads one file; on failure reason() says why. */
class Reading
{
public:
    explicit Reading(const QString &path)
        : m_path(path)
    {
    }

    QSize size()
    {
        EndWatchingFile file(m_path);
        switch (open(file)) {
        case Content::Empty:
            return {};
        case Content::Heif:
            return heifSize();
        case Content::Raw: {
            const QImage image = rawImage({}, true);
            return image.size();
        }
        case Content::Other:
            break;
        }
        QImageReader reader(&file);
        int orientation = 1;
        if (!begin(reader, orientation))
            return {};
        const QSize size = reader.size();
        if (size.isEmpty()) {
            m_reason = QStringLiteral("its size cannot be read");
            return {};
        }
        if (pixelsOf(size) > NyImageLoader::MaximumPixels) {
            refuse(size);
            return {};
        }
        return isTurned(orientation) ? size.transposed() : size;
    }

    /** An empty box asks for the full size. */
    QImage image(const QSize &box)
    {
        EndWatchingFile file(m_path);
        switch (open(file)) {
        case Content::Empty:
            return {};
        case Content::Heif:
            return heifImage(box);
        case Content::Raw:
            return rawImage(box, false);
        case Content::Other:
            break;
        }
        QImageReader reader(&file);
        int orientation = 1;
        if (!begin(reader, orientation))
            return {};
        // Once it has read, the reader does not tell the format any more.
        const QByteArray format = reader.format();
        const QSize stored = reader.size();
        if (!mayDecode(format, stored, file, box))
            return {};
        const QSize wanted = fitted(isTurned(orientation) ? stored.transposed() : stored, box);
        const QSize wantedStored = isTurned(orientation) ? wanted.transposed() : wanted;
        if (!stored.isEmpty() && wantedStored != stored)
            reader.setScaledSize(wantedStored);
        file.forget();
        QImage image = reader.read();
        if (image.isNull()) {
            m_reason = reader.errorString();
            return {};
        }
        // Two decoders fill up what is missing instead of failing: JPEG reads in blocks, BMP row by row.
        if ((isJpeg(format) && file.isExhausted()) || (format == "bmp" && file.gaveLess())) {
            m_reason = QStringLiteral("it is cut short");
            return {};
        }
        image = upright(image, orientation);
        if (const QSize size = fitted(image.size(), box); size != image.size())
            image = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        return finished(std::move(image));
    }

    const QString &reason() const { return m_reason; }

private:
    static bool isJpeg(const QByteArray &format) { return format == "jpeg" || format == "jpg"; }

    /** On failure the reason is set. */
    bool mayDecode(const QByteArray &format, const QSize &size, QIODevice &device, const QSize &box)
    {
        const qint64 pixels = pixelsOf(size);
        qint64 maximum = NyImageLoader::MaximumPixelsDecodedWhole;
        if (isJpeg(format)) {
            const JpegScans scans = scansOf(device);
            if (scans.count > MaximumScans) {
                m_reason = QStringLiteral("it has more scans than a picture needs");
                return false;
            }
            if (scans.areCollected)
                maximum = MaximumPixelsOfManyScans;
            else if (!box.isEmpty())
                maximum = NyImageLoader::MaximumPixels;
        }
        if (pixels > maximum) {
            refuse(size);
            return false;
        }
        if (pixels > PixelsOfPossibleBomb && device.size() < pixels / MaximumPixelsPerByte) {
            m_reason = QStringLiteral("%1 bytes for %2 x %3 pixels are no photo").arg(device.size()).arg(size.width()).arg(size.height());
            return false;
        }
        return true;
    }

    void refuse(const QSize &size) { m_reason = QStringLiteral("it claims to have %1 x %2 pixels").arg(size.width()).arg(size.height()); }

    Content open(EndWatchingFile &file)
    {
        // Opening a pipe would wait for its writer.
        if (!QFileInfo(m_path).isFile()) {
            m_reason = QStringLiteral("it is no file");
            return Content::Empty;
        }
        // Unbuffered, so that nothing is read ahead of what the decoder asks for.
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            m_reason = file.errorString();
            return Content::Empty;
        }
        const Content content = contentOf(file.peek(64), m_path);
        if (content == Content::Empty)
            m_reason = QStringLiteral("it is empty");
        return content;
    }

    bool begin(QImageReader &reader, int &orientation)
    {
        reader.setDecideFormatFromContent(true);
        // The orientation is applied here, in one place for all formats.
        reader.setAutoTransform(false);
        const QByteArray format = reader.format();
        if (!isPhotoContent(format)) {
            m_reason = QStringLiteral("its content is no photo");
            return false;
        }
        if (reader.supportsOption(QImageIOHandler::ImageTransformation))
            orientation = orientationOf(reader.transformation());
        else if (format == "png" || format == "webp" || format == "jp2")
            orientation = NyImageMetaDataReader::read(m_path).orientation;
        return true;
    }

    static int orientationOf(QImageIOHandler::Transformations transformation)
    {
        switch (transformation.toInt()) {
        case QImageIOHandler::TransformationMirror:
            return 2;
        case QImageIOHandler::TransformationRotate180:
            return 3;
        case QImageIOHandler::TransformationFlip:
            return 4;
        case QImageIOHandler::TransformationFlipAndRotate90:
            return 5;
        case QImageIOHandler::TransformationRotate90:
            return 6;
        case QImageIOHandler::TransformationMirrorAndRotate90:
            return 7;
        case QImageIOHandler::TransformationRotate270:
            return 8;
        default:
            return 1;
        }
    }

    QSize heifSize()
    {
        const NyHeifBackend *backend = NyImageBackends::heif();
        if (!backend) {
            m_reason = QStringLiteral("HEIC and AVIF cannot be read here");
            return {};
        }
        const QSize size = backend->size(QFile::encodeName(m_path), m_reason);
        if (pixelsOf(size) > NyImageLoader::MaximumPixels) {
            refuse(size);
            return {};
        }
        return size;
    }

    QImage heifImage(const QSize &box)
    {
        const NyHeifBackend *backend = NyImageBackends::heif();
        if (!backend) {
            m_reason = QStringLiteral("HEIC and AVIF cannot be read here");
            return {};
        }
        QImage image = backend->image(QFile::encodeName(m_path), box, NyImageLoader::MaximumPixelsDecodedWhole, m_reason);
        if (const QSize size = fitted(image.size(), box); size != image.size())
            image = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        return finished(std::move(image));
    }

    /** Of the size alone, the pixels are not decoded: the result has them unset. */
    QImage rawImage(const QSize &box, bool sizeOnly)
    {
        const NyImageMetaDataBackend *backend = NyImageBackends::metaData();
        if (!backend) {
            m_reason = QStringLiteral("raw files cannot be read here");
            return {};
        }
        const QByteArray nativePath = QFile::encodeName(m_path);
        const int wantedPx = box.isEmpty() ? 0 : qMax(box.width(), box.height());
        const QByteArray preview = backend->preview(nativePath, wantedPx, m_reason);
        if (preview.isEmpty())
            return {};
        const NyImageMetaData metaData = backend->metaData(nativePath, {}, m_reason);
        EndWatching<MemoryFile> file(preview);
        QImageReader reader(&file, QByteArrayLiteral("jpeg"));
        // The orientation of the raw file holds; a copy of it inside the preview would apply it twice.
        reader.setAutoTransform(false);
        const QSize stored = reader.size();
        if (stored.isEmpty()) {
            m_reason = QStringLiteral("its preview cannot be read");
            return {};
        }
        if (!mayDecode(QByteArrayLiteral("jpeg"), stored, file, box))
            return {};
        int orientation = metaData.orientation;
        // A preview that stands upright while the sensor lies was turned by the camera.
        const QSize sensor = metaData.storedSizePx;
        if (isTurned(orientation) && !sensor.isEmpty() && (sensor.width() > sensor.height()) != (stored.width() > stored.height()))
            orientation = 1;
        const QSize wanted = fitted(isTurned(orientation) ? stored.transposed() : stored, box);
        if (sizeOnly)
            return QImage(wanted, QImage::Format_Mono);
        const QSize wantedStored = isTurned(orientation) ? wanted.transposed() : wanted;
        if (wantedStored != stored)
            reader.setScaledSize(wantedStored);
        file.forget();
        const QImage image = reader.read();
        if (image.isNull() || file.isExhausted()) {
            m_reason = image.isNull() ? reader.errorString() : QStringLiteral("its preview is cut short");
            return {};
        }
        return finished(upright(image, orientation));
    }

    const QString m_path;
    QString m_reason;
};

/** The format names of Qt's image plug-ins, from their metadata: asking QImageReader would load them all, with their libraries. */
QSet<QString> pluginFormats()
{
    QSet<QString> formats{QStringLiteral("png"), QStringLiteral("bmp")};
    const auto addKeys = [&formats](const QJsonObject &pluginMetaData) {
        const QJsonArray keys = pluginMetaData.value(u"MetaData").toObject().value(u"Keys").toArray();
        for (const QJsonValue &key : keys)
            formats.insert(key.toString().toLower());
    };
    const QStringList folders = QCoreApplication::libraryPaths();
    for (const QString &folder : folders) {
        const QDir plugins(folder + QStringLiteral("/imageformats"));
        const QStringList files = plugins.entryList(QDir::Files);
        for (const QString &file : files) {
            if (QLibrary::isLibrary(file))
                addKeys(QPluginLoader(plugins.filePath(file)).metaData());
        }
    }
    const QList<QStaticPlugin> staticPlugins = QPluginLoader::staticPlugins();
    for (const QStaticPlugin &plugin : staticPlugins) {
        if (plugin.metaData().value(u"IID").toString().contains(u"QImageIOHandlerFactoryInterface"))
            addKeys(plugin.metaData());
    }
    return formats;
}

NyMediaFormatList readableFormats()
{
    struct Candidate
    {
        const char16_t *name;
        NyMediaFormatSource source;
        QStringList extensions;
        const char16_t *pluginFormat;
    };
    using enum NyMediaFormatSource;
    const auto list = [](std::initializer_list<const char16_t *> extensions) {
        QStringList result;
        for (const char16_t *extension : extensions)
            result.append(QString::fromUtf16(extension));
        return result;
    };
    const Candidate candidates[] = {
        {u"JPEG", ImagePlugin, list({u"jpg", u"jpeg", u"jpe", u"jfif"}), u"jpeg"},
        {u"HEIC", Heif, list({u"heic", u"heif", u"hif"}), nullptr},
        {u"AVIF", Heif, list({u"avif"}), nullptr},
        {u"PNG", ImagePlugin, list({u"png"}), u"png"},
        {u"TIFF", ImagePlugin, list({u"tif", u"tiff"}), u"tiff"},
        {u"WebP", ImagePlugin, list({u"webp"}), u"webp"},
        {u"BMP", ImagePlugin, list({u"bmp"}), u"bmp"},
        {u"JPEG 2000", ImagePlugin, list({u"jp2"}), u"jp2"},
        {u"Canon raw", EmbeddedPreview, list({u"cr2"}), nullptr},
        {u"Nikon raw", EmbeddedPreview, list({u"nef", u"nrw"}), nullptr},
        {u"Sony raw", EmbeddedPreview, list({u"arw", u"sr2"}), nullptr},
        {u"Digital negative", EmbeddedPreview, list({u"dng"}), nullptr},
        {u"Olympus raw", EmbeddedPreview, list({u"orf"}), nullptr},
        {u"Panasonic raw", EmbeddedPreview, list({u"rw2"}), nullptr},
        {u"Fujifilm raw", EmbeddedPreview, list({u"raf"}), nullptr},
        {u"Pentax raw", EmbeddedPreview, list({u"pef"}), nullptr},
        {u"Samsung raw", EmbeddedPreview, list({u"srw"}), nullptr},
    };
    const QSet<QString> plugins = pluginFormats();
    QList<NyMediaFormat> formats;
    for (const Candidate &candidate : candidates) {
        const bool readable = candidate.source == ImagePlugin ? plugins.contains(QString::fromUtf16(candidate.pluginFormat))
            : candidate.source == Heif                        ? NyImageBackends::hasHeif()
                                                              : NyImageBackends::hasMetaData();
        if (readable)
            formats.append(NyMediaFormat(QString::fromUtf16(candidate.name), candidate.extensions, candidate.source));
    }
    return NyMediaFormatList(formats);
}

void warn(const QString &path, const QString &reason)
{
    qWarning() << "NyImageLoader: cannot read the picture" << path << ":" << reason;
}

}

NyImageLoader::NyImageLoader()
    : m_formats(readableFormats())
{
    // Qt's own limit for all image readers of the process, in MiB; its default is too low for a large panorama.
    QImageReader::setAllocationLimit(1024);
}

NyImageLoader::~NyImageLoader() = default;

NyMediaFormatList NyImageLoader::supportedMediaFormats() const
{
    return m_formats;
}

QImage NyImageLoader::loadScaled(const QString &path, const QSize &box) const
{
    if (box.isEmpty())
        return {};
    Reading reading(path);
    QImage image = reading.image(box);
    if (image.isNull())
        warn(path, reading.reason());
    return image;
}

QImage NyImageLoader::load(const QString &path) const
{
    Reading reading(path);
    QImage image = reading.image({});
    if (image.isNull())
        warn(path, reading.reason());
    return image;
}

QSize NyImageLoader::orientedSize(const QString &path) const
{
    Reading reading(path);
    const QSize size = reading.size();
    if (size.isEmpty())
        warn(path, reading.reason());
    return size;
}
