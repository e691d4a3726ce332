#include "NyImageMetaDataBackendExiv2.h"

#include <cmath>
#include <exception>
#include <mutex>
#include <utility>
#include <vector>

#include <exiv2/exiv2.hpp>

#include <QtCore/QRegularExpression>
#include <QtCore/QStringDecoder>

namespace
{

/** exiv2's XMP toolkit is not thread-safe by itself; it calls this around each use. */
void lockXmp(void *mutex, bool lock)
{
    if (lock)
        static_cast<std::recursive_mutex *>(mutex)->lock();
    else
        static_cast<std::recursive_mutex *>(mutex)->unlock();
}

/** Runs one field's reading; a field that exiv2 rejects must not cost the others. */
template <class Function>
void attempt(Function function)
{
    try {
        function();
    } catch (const std::exception &) {
        // The field keeps its default.
    }
}

/** Programs write UTF-8 where the standard wants ASCII; older ones Latin 1. */
QString textOf(const std::string &bytes)
{
    const QByteArrayView view(bytes.data(), qsizetype(bytes.size()));
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(view);
    if (decoder.hasError())
        text = QString::fromLatin1(view);
    const qsizetype end = text.indexOf(QChar(u'\0'));
    return (end < 0 ? text : text.first(end)).trimmed();
}

class Exif
{
public:
    explicit Exif(const Exiv2::ExifData &data)
        : m_data(data)
    {
    }

    const Exiv2::Exifdatum *find(uint16_t tag, const char *group) const
    {
        const auto found = m_data.findKey(Exiv2::ExifKey(tag, group));
        return found != m_data.end() && found->count() > 0 ? &*found : nullptr;
    }

    QString text(uint16_t tag, const char *group) const
    {
        QString result;
        attempt([&] {
            if (const Exiv2::Exifdatum *datum = find(tag, group))
                result = textOf(datum->toString());
        });
        return result;
    }

    /** Not a number when absent or divided by zero. */
    double real(uint16_t tag, const char *group, long index = 0) const
    {
        double result = std::numeric_limits<double>::quiet_NaN();
        attempt([&] {
            const Exiv2::Exifdatum *datum = find(tag, group);
            if (!datum || datum->count() <= index)
                return;
            if (datum->typeId() == Exiv2::unsignedRational || datum->typeId() == Exiv2::signedRational) {
                const Exiv2::Rational value = datum->toRational(index);
                if (value.second != 0)
                    result = datum->typeId() == Exiv2::unsignedRational ? double(uint32_t(value.first)) / double(uint32_t(value.second))
                                                                        : double(value.first) / double(value.second);
            } else {
                result = double(datum->toFloat(index));
            }
        });
        return result;
    }

private:
    const Exiv2::ExifData &m_data;
};

/** XMP of the picture's sidecar and of the picture, in the order in which they are asked. */
using XmpLayers = std::vector<const Exiv2::XmpData *>;

QString xmpText(const Exiv2::XmpData &data, const char *key)
{
    QString result;
    attempt([&] {
        const auto found = data.findKey(Exiv2::XmpKey(key));
        if (found == data.end() || found->count() == 0)
            return;
        if (const auto *alternatives = dynamic_cast<const Exiv2::LangAltValue *>(&found->value())) {
            if (!alternatives->value_.empty()) {
                const auto standard = alternatives->value_.find("x-default");
                result = textOf(standard != alternatives->value_.end() ? standard->second : alternatives->value_.begin()->second);
            }
        } else {
            result = textOf(found->toString(0));
        }
    });
    return result;
}

/** The first layer's that has one. */
QString xmpText(const XmpLayers &layers, const char *key)
{
    for (const Exiv2::XmpData *layer : layers) {
        QString text = xmpText(*layer, key);
        if (!text.isEmpty())
            return text;
    }
    return {};
}

QString iptcText(const Exiv2::IptcData &data, const char *key)
{
    QString result;
    attempt([&] {
        const auto found = data.findKey(Exiv2::IptcKey(key));
        if (found != data.end() && found->count() > 0)
            result = textOf(found->toString());
    });
    return result;
}

double finiteOr(double value, double other)
{
    return std::isfinite(value) ? value : other;
}

void readTimes(const Exif &exif, const XmpLayers &layers, const Exiv2::IptcData &iptc, NyImageMetaData &result)
{
    const auto add = [&result](NyImageTimeText time) {
        if (!time.dateTime.isEmpty())
            result.captureTimes.append(std::move(time));
    };
    // EXIF 2.32: date, fraction and offset of the shot, of the digitization, and last of the file's latest change.
    const QString original = exif.text(0x9003, "Photo");
    const QString latest = exif.text(0x0132, "Image");
    QString offset = exif.text(0x9011, "Photo");
    // Some cameras give the offset of the latest change alone, which is the shot.
    if (offset.isEmpty() && original == latest)
        offset = exif.text(0x9010, "Photo");
    add({original, exif.text(0x9291, "Photo"), offset});
    add({exif.text(0x9003, "Image"), {}, {}});
    add({exif.text(0x9004, "Photo"), exif.text(0x9292, "Photo"), exif.text(0x9012, "Photo")});
    for (const Exiv2::XmpData *xmp : layers) {
        for (const char *key :
            {"Xmp.exif.DateTimeOriginal", "Xmp.photoshop.DateCreated", "Xmp.xmp.CreateDate", "Xmp.exif.DateTimeDigitized"})
            add({xmpText(*xmp, key), {}, {}});
    }
    const QString date = iptcText(iptc, "Iptc.Application2.DateCreated");
    const QString time = iptcText(iptc, "Iptc.Application2.TimeCreated");
    add({date.isEmpty() || time.isEmpty() ? date : date + u'T' + time, {}, {}});
    add({latest, exif.text(0x9290, "Photo"), exif.text(0x9010, "Photo")});
}

/** Degrees, minutes and seconds of one GPS tag; not a number when the tag does not say on which side of the zero line. */
double gpsArc(const Exif &exif, uint16_t valueTag, uint16_t referenceTag, QChar positive, QChar negative)
{
    const QString reference = exif.text(referenceTag, "GPSInfo");
    const bool isNegative = reference.startsWith(negative, Qt::CaseInsensitive);
    // A place on the wrong side of the globe is worse than none.
    if (!isNegative && !reference.startsWith(positive, Qt::CaseInsensitive))
        return std::numeric_limits<double>::quiet_NaN();
    const double degrees = exif.real(valueTag, "GPSInfo", 0);
    // Cameras that put the fraction into the minutes write seconds of 0/0.
    const double minutes = finiteOr(exif.real(valueTag, "GPSInfo", 1), 0.0);
    const double seconds = finiteOr(exif.real(valueTag, "GPSInfo", 2), 0.0);
    const double arc = degrees + minutes / 60.0 + seconds / 3600.0;
    return isNegative ? -arc : arc;
}

/** "48,8.1234N" or "48,8,7N" (XMP specification, part 2, GPSCoordinate). */
double xmpArc(const QString &text)
{
    static const QRegularExpression pattern(
        QStringLiteral(R"(\A([0-9]+(?:\.[0-9]+)?)(?:,([0-9]+(?:\.[0-9]+)?))?(?:,([0-9]+(?:\.[0-9]+)?))?([NSEW])\z)"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return std::numeric_limits<double>::quiet_NaN();
    const double arc = match.captured(1).toDouble() + match.captured(2).toDouble() / 60.0 + match.captured(3).toDouble() / 3600.0;
    const QString side = match.captured(4);
    return side == u"S" || side == u"W" ? -arc : arc;
}

struct Position
{
    double latitude = std::numeric_limits<double>::quiet_NaN();
    double longitude = std::numeric_limits<double>::quiet_NaN();

    bool isKnown() const
    {
        // Exactly 0/0 lies in the sea and is what programs write who know nothing.
        return std::isfinite(latitude) && std::isfinite(longitude) && (latitude != 0.0 || longitude != 0.0);
    }
};

/** "V" is the receiver's word for having had no fix (EXIF 2.32, tag 0x0009). */
bool hasNoFix(const QString &status)
{
    return status.startsWith(u'V', Qt::CaseInsensitive);
}

Position xmpPosition(const Exiv2::XmpData &xmp)
{
    if (hasNoFix(xmpText(xmp, "Xmp.exif.GPSStatus")))
        return {};
    return {xmpArc(xmpText(xmp, "Xmp.exif.GPSLatitude")), xmpArc(xmpText(xmp, "Xmp.exif.GPSLongitude"))};
}

Position exifPosition(const Exif &exif)
{
    return {gpsArc(exif, 0x0002, 0x0001, u'N', u'S'), gpsArc(exif, 0x0004, 0x0003, u'E', u'W')};
}

/** @p sidecar may be null. */
void readPosition(const Exif &exif, const Exiv2::XmpData *sidecar, const Exiv2::XmpData &xmp, NyImageMetaData &result)
{
    Position position;
    if (sidecar)
        position = xmpPosition(*sidecar);
    // XMP inside the file is mostly a copy of its EXIF.
    if (!position.isKnown() && !hasNoFix(exif.text(0x0009, "GPSInfo"))) {
        position = exifPosition(exif);
        if (!position.isKnown())
            position = xmpPosition(xmp);
    }
    if (!position.isKnown())
        return;
    result.latitude = position.latitude;
    result.longitude = position.longitude;
}

std::optional<int> ratingOf(double stars)
{
    if (!std::isfinite(stars) || stars < -1.0 || stars > 5.0)
        return {};
    return int(std::lround(stars));
}

std::optional<int> ratingOf(const QString &text)
{
    bool isNumber = false;
    const double stars = text.toDouble(&isNumber);
    return isNumber ? ratingOf(stars) : std::nullopt;
}

/** The stars that stand for a percentage: 1, 25, 50, 75 and 99 are one to five. */
std::optional<int> ratingOfPercent(const QString &text)
{
    bool isNumber = false;
    const double percent = text.toDouble(&isNumber);
    if (!isNumber || percent < 0.0 || percent > 100.0)
        return {};
    return percent < 1.0 ? 0 : 1 + int(std::lround(percent / 25.0));
}

std::optional<int> xmpRating(const Exiv2::XmpData &xmp)
{
    return ratingOf(xmpText(xmp, "Xmp.xmp.Rating"));
}

std::optional<int> ownRating(const Exiv2::XmpData &xmp)
{
    return ratingOf(xmpText(xmp, "Xmp.velmora.Rating"));
}

/** @p sidecar may be null. */
void readRating(const Exif &exif, const Exiv2::XmpData *sidecar, const Exiv2::XmpData &xmp, NyImageMetaData &result)
{
    if (sidecar) {
        result.ownRating = ownRating(*sidecar);
        result.rating = xmpRating(*sidecar);
    }
    if (!result.ownRating)
        result.ownRating = ownRating(xmp);
    if (!result.rating)
        result.rating = xmpRating(xmp);
    if (!result.rating)
        result.rating = ratingOf(exif.real(0x4746, "Image"));
    if (!result.rating)
        result.rating = ratingOfPercent(xmpText(xmp, "Xmp.MicrosoftPhoto.Rating"));
}

void readTexts(
    const Exif &exif, const Exiv2::ExifData &exifData, const XmpLayers &layers, const Exiv2::IptcData &iptc, NyImageMetaData &result)
{
    result.cameraMake = exif.text(0x010f, "Image");
    result.cameraModel = exif.text(0x0110, "Image");
    result.software = exif.text(0x0131, "Image");
    result.title = xmpText(layers, "Xmp.dc.title");
    if (result.title.isEmpty())
        result.title = iptcText(iptc, "Iptc.Application2.ObjectName");
    result.description = xmpText(layers, "Xmp.dc.description");
    if (result.description.isEmpty())
        result.description = exif.text(0x010e, "Image");
    attempt([&] {
        const auto found = exifData.findKey(Exiv2::ExifKey("Exif.Photo.UserComment"));
        if (found == exifData.end())
            return;
        if (const auto *comment = dynamic_cast<const Exiv2::CommentValue *>(&found->value()))
            result.userComment = textOf(comment->comment());
    });
    const auto addKeyword = [&result](const std::string &bytes) {
        const QString keyword = textOf(bytes);
        if (!keyword.isEmpty() && !result.keywords.contains(keyword))
            result.keywords.append(keyword);
    };
    for (const Exiv2::XmpData *xmp : layers) {
        attempt([&] {
            const auto subjects = xmp->findKey(Exiv2::XmpKey("Xmp.dc.subject"));
            if (subjects == xmp->end())
                return;
            for (long i = 0; i < subjects->count(); ++i)
                addKeyword(subjects->toString(i));
        });
    }
    attempt([&] {
        for (const Exiv2::Iptcdatum &datum : iptc) {
            if (datum.key() == "Iptc.Application2.Keywords")
                addKeyword(datum.toString());
        }
    });
}

/** @p sidecar may be null. */
void readAll(const Exiv2::Image &image, const Exiv2::XmpData *sidecar, NyImageMetaData &result)
{
    const Exif exif(image.exifData());
    XmpLayers layers{&image.xmpData()};
    if (sidecar)
        layers.insert(layers.begin(), sidecar);
    result.storedSizePx = QSize(image.pixelWidth(), image.pixelHeight());
    const double orientation = exif.real(0x0112, "Image");
    if (orientation >= 1.0 && orientation <= 8.0)
        result.orientation = int(orientation);
    readTimes(exif, layers, image.iptcData(), result);
    readPosition(exif, sidecar, image.xmpData(), result);
    readRating(exif, sidecar, image.xmpData(), result);
    // A zero stands for "not used" (EXIF 2.32, tag 0xA404).
    const double zoom = exif.real(0xa404, "Photo");
    result.digitalZoomRatio = zoom > 0.0 ? zoom : 1.0;
    result.exposureTimeS = finiteOr(exif.real(0x829a, "Photo"), 0.0);
    result.fNumber = finiteOr(exif.real(0x829d, "Photo"), 0.0);
    result.focalLengthMm = finiteOr(exif.real(0x920a, "Photo"), 0.0);
    result.isoSpeed = int(std::clamp(finiteOr(exif.real(0x8827, "Photo"), 0.0), 0.0, 1e8));
    readTexts(exif, image.exifData(), layers, image.iptcData(), result);
}

/** Small previews often have black bars where the picture is narrower than they are. */
bool haveSameProportions(const Exiv2::PreviewProperties &one, const Exiv2::PreviewProperties &other)
{
    const double ratio = double(one.width_) * double(other.height_) / (double(one.height_) * double(other.width_));
    return ratio > 0.98 && ratio < 1.02;
}

bool parseXmp(const QByteArray &packet, Exiv2::XmpData &data, QString &reason)
{
    if (packet.isEmpty()) {
        reason = QStringLiteral("it is empty");
        return false;
    }
    if (Exiv2::XmpParser::decode(data, packet.toStdString()) == 0)
        return true;
    reason = QStringLiteral("it is no XMP");
    return false;
}

}

NyImageMetaDataBackendExiv2::NyImageMetaDataBackendExiv2()
{
    static std::recursive_mutex xmpMutex;
    // Its remarks on odd files name no file.
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    Exiv2::enableBMFF(true);
    Exiv2::XmpParser::initialize(lockXmp, &xmpMutex);
    attempt([] { Exiv2::XmpProperties::registerNs("urn:velmora:photo:1.0/", "velmora"); });
}

NyImageMetaData NyImageMetaDataBackendExiv2::metaData(const QByteArray &path, const QByteArray &sidecar, QString &reason) const
{
    NyImageMetaData result;
    try {
        const auto image = Exiv2::ImageFactory::open(path.toStdString(), false);
        image->readMetadata();
        Exiv2::XmpData beside;
        QString ignored;
        const bool hasSidecar = !sidecar.isEmpty() && parseXmp(sidecar, beside, ignored);
        readAll(*image, hasSidecar ? &beside : nullptr, result);
        result.isRead = true;
    } catch (const std::exception &exception) {
        reason = QString::fromLocal8Bit(exception.what());
        result = {};
    }
    return result;
}

std::optional<QString> NyImageMetaDataBackendExiv2::sidecarExtension(const QByteArray &sidecar, QString &reason) const
{
    try {
        Exiv2::XmpData data;
        if (!parseXmp(sidecar, data, reason))
            return {};
        return xmpText(data, "Xmp.photoshop.SidecarForExtension");
    } catch (const std::exception &exception) {
        reason = QString::fromLocal8Bit(exception.what());
        return {};
    }
}

QByteArray NyImageMetaDataBackendExiv2::preview(const QByteArray &path, int wantedPx, QString &reason) const
{
    try {
        const auto image = Exiv2::ImageFactory::open(path.toStdString(), false);
        image->readMetadata();
        const Exiv2::PreviewManager manager(*image);
        // Sorted by size, the smallest first.
        const Exiv2::PreviewPropertiesList all = manager.getPreviewProperties();
        const Exiv2::PreviewProperties *largest = nullptr;
        for (const Exiv2::PreviewProperties &properties : all) {
            if (properties.extension_ == ".jpg")
                largest = &properties;
        }
        const Exiv2::PreviewProperties *best = largest;
        for (const Exiv2::PreviewProperties &properties : all) {
            if (wantedPx > 0 && properties.extension_ == ".jpg" && int(std::max(properties.width_, properties.height_)) >= wantedPx
                && haveSameProportions(properties, *largest)) {
                best = &properties;
                break;
            }
        }
        if (best) {
            const Exiv2::PreviewImage preview = manager.getPreviewImage(*best);
            return QByteArray(reinterpret_cast<const char *>(preview.pData()), qsizetype(preview.size()));
        }
        reason = QStringLiteral("it has no preview");
    } catch (const std::exception &exception) {
        reason = QString::fromLocal8Bit(exception.what());
    }
    return {};
}

extern "C" Q_DECL_EXPORT NyImageMetaDataBackend *NY_IMAGE_BACKEND_FUNCTION()
{
    static NyImageMetaDataBackendExiv2 backend;
    return &backend;
}
