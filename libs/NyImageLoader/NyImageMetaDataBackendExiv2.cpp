#include "NyImageMetaDataBackendExiv2.h"

#include <cmath>
#include <exception>
#include <mutex>
#include <utility>

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

void readTimes(const Exif &exif, const Exiv2::XmpData &xmp, const Exiv2::IptcData &iptc, NyImageMetaData &result)
{
    const auto add = [&result](NyImageTimeText time) {
        if (!time.dateTime.isEmpty())
            result.captureTimes.append(std::move(time));
    };
    // EXIF 2.32: date, fraction and offset of the shot, of the digitization, and last of the file's latest change.
    add({exif.text(0x9003, "Photo"), exif.text(0x9291, "Photo"), exif.text(0x9011, "Photo")});
    add({exif.text(0x9003, "Image"), {}, {}});
    add({exif.text(0x9004, "Photo"), exif.text(0x9292, "Photo"), exif.text(0x9012, "Photo")});
    for (const char *key : {"Xmp.exif.DateTimeOriginal", "Xmp.photoshop.DateCreated", "Xmp.xmp.CreateDate", "Xmp.exif.DateTimeDigitized"})
        add({xmpText(xmp, key), {}, {}});
    const QString date = iptcText(iptc, "Iptc.Application2.DateCreated");
    const QString time = iptcText(iptc, "Iptc.Application2.TimeCreated");
    add({date.isEmpty() || time.isEmpty() ? date : date + u'T' + time, {}, {}});
    add({exif.text(0x0132, "Image"), exif.text(0x9290, "Photo"), exif.text(0x9010, "Photo")});
}

/** Degrees, minutes and seconds of one GPS tag. */
double gpsArc(const Exif &exif, uint16_t valueTag, uint16_t referenceTag, const char *negativeReference)
{
    const double degrees = exif.real(valueTag, "GPSInfo", 0);
    // Cameras that put the fraction into the minutes write seconds of 0/0.
    const double minutes = finiteOr(exif.real(valueTag, "GPSInfo", 1), 0.0);
    const double seconds = finiteOr(exif.real(valueTag, "GPSInfo", 2), 0.0);
    const double arc = degrees + minutes / 60.0 + seconds / 3600.0;
    return exif.text(referenceTag, "GPSInfo").startsWith(QLatin1String(negativeReference), Qt::CaseInsensitive) ? -arc : arc;
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

void readPosition(const Exif &exif, const Exiv2::XmpData &xmp, NyImageMetaData &result)
{
    double latitude = gpsArc(exif, 0x0002, 0x0001, "S");
    double longitude = gpsArc(exif, 0x0004, 0x0003, "W");
    // "V" is the receiver's word for having had no fix.
    const bool hasNoFix = exif.text(0x0009, "GPSInfo").startsWith(u'V', Qt::CaseInsensitive);
    if (!std::isfinite(latitude) || !std::isfinite(longitude)) {
        latitude = xmpArc(xmpText(xmp, "Xmp.exif.GPSLatitude"));
        longitude = xmpArc(xmpText(xmp, "Xmp.exif.GPSLongitude"));
    }
    // Exactly 0/0 lies in the sea and is what programs write who know nothing.
    const bool isNullIsland = latitude == 0.0 && longitude == 0.0;
    if (hasNoFix || isNullIsland || !std::isfinite(latitude) || !std::isfinite(longitude))
        return;
    result.latitude = latitude;
    result.longitude = longitude;
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

void readRating(const Exif &exif, const Exiv2::XmpData &xmp, NyImageMetaData &result)
{
    result.ownRating = ratingOf(xmpText(xmp, "Xmp.velmora.Rating"));
    result.rating = ratingOf(xmpText(xmp, "Xmp.xmp.Rating"));
    if (!result.rating)
        result.rating = ratingOf(exif.real(0x4746, "Image"));
    if (!result.rating)
        result.rating = ratingOfPercent(xmpText(xmp, "Xmp.MicrosoftPhoto.Rating"));
}

void readTexts(
    const Exif &exif, const Exiv2::ExifData &exifData, const Exiv2::XmpData &xmp, const Exiv2::IptcData &iptc, NyImageMetaData &result)
{
    result.cameraMake = exif.text(0x010f, "Image");
    result.cameraModel = exif.text(0x0110, "Image");
    result.software = exif.text(0x0131, "Image");
    result.title = xmpText(xmp, "Xmp.dc.title");
    if (result.title.isEmpty())
        result.title = iptcText(iptc, "Iptc.Application2.ObjectName");
    result.description = xmpText(xmp, "Xmp.dc.description");
    if (result.description.isEmpty())
        result.description = exif.text(0x010e, "Image");
    attempt([&] {
        const auto found = exifData.findKey(Exiv2::ExifKey("Exif.Photo.UserComment"));
        if (found == exifData.end())
            return;
        if (const auto *comment = dynamic_cast<const Exiv2::CommentValue *>(&found->value()))
            result.userComment = textOf(comment->comment());
    });
    attempt([&] {
        const auto subjects = xmp.findKey(Exiv2::XmpKey("Xmp.dc.subject"));
        if (subjects == xmp.end())
            return;
        for (long i = 0; i < subjects->count(); ++i)
            result.keywords.append(textOf(subjects->toString(i)));
    });
    attempt([&] {
        for (const Exiv2::Iptcdatum &datum : iptc) {
            if (datum.key() != "Iptc.Application2.Keywords")
                continue;
            const QString keyword = textOf(datum.toString());
            if (!result.keywords.contains(keyword))
                result.keywords.append(keyword);
        }
    });
}

void readAll(const Exiv2::Image &image, NyImageMetaData &result)
{
    const Exif exif(image.exifData());
    result.storedSizePx = QSize(image.pixelWidth(), image.pixelHeight());
    const double orientation = exif.real(0x0112, "Image");
    if (orientation >= 1.0 && orientation <= 8.0)
        result.orientation = int(orientation);
    readTimes(exif, image.xmpData(), image.iptcData(), result);
    readPosition(exif, image.xmpData(), result);
    readRating(exif, image.xmpData(), result);
    // A zero stands for "not used" (EXIF 2.32, tag 0xA404).
    const double zoom = exif.real(0xa404, "Photo");
    result.digitalZoomRatio = zoom > 0.0 ? zoom : 1.0;
    result.exposureTimeS = finiteOr(exif.real(0x829a, "Photo"), 0.0);
    result.fNumber = finiteOr(exif.real(0x829d, "Photo"), 0.0);
    result.focalLengthMm = finiteOr(exif.real(0x920a, "Photo"), 0.0);
    result.isoSpeed = int(std::clamp(finiteOr(exif.real(0x8827, "Photo"), 0.0), 0.0, 1e8));
    readTexts(exif, image.exifData(), image.xmpData(), image.iptcData(), result);
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

NyImageMetaData NyImageMetaDataBackendExiv2::metaData(const QByteArray &path, QString &reason) const
{
    NyImageMetaData result;
    try {
        const auto image = Exiv2::ImageFactory::open(path.toStdString(), false);
        image->readMetadata();
        readAll(*image, result);
        result.isRead = true;
    } catch (const std::exception &exception) {
        reason = QString::fromLocal8Bit(exception.what());
        result = {};
    }
    return result;
}

QByteArray NyImageMetaDataBackendExiv2::preview(const QByteArray &path, int wantedPx, QString &reason) const
{
    try {
        const auto image = Exiv2::ImageFactory::open(path.toStdString(), false);
        image->readMetadata();
        const Exiv2::PreviewManager manager(*image);
        // Sorted by size, the smallest first.
        const Exiv2::PreviewPropertiesList all = manager.getPreviewProperties();
        const Exiv2::PreviewProperties *best = nullptr;
        for (const Exiv2::PreviewProperties &properties : all) {
            if (properties.extension_ != ".jpg")
                continue;
            best = &properties;
            if (wantedPx > 0 && int(std::max(properties.width_, properties.height_)) >= wantedPx)
                break;
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
