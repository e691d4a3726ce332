// An XMP file beside a picture: no field outside what its documentation promises, and never the loss of the picture's own.

#include <cmath>

#include <QImage>

#include <NyFotoMetaData.h>
#include <NyImageMetaDataReader.h>

#include "FuzzFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using FuzzFile::require;
    static const QString picture = [] {
        const QString path = FuzzFile::folder() + QStringLiteral("/bytes.jpg");
        QImage image(8, 6, QImage::Format_RGB32);
        image.fill(Qt::red);
        require(image.save(path, "JPEG"));
        return path;
    }();
    FuzzFile::write("bytes.jpg.xmp", data, size);
    const NyImageMetaData read = NyImageMetaDataReader::read(picture);
    require(read.isRead && read.storedSizePx == QSize(8, 6) && read.orientation == 1);
    require(!read.rating || (*read.rating >= -1 && *read.rating <= 5));
    require(!read.ownRating || (*read.ownRating >= -1 && *read.ownRating <= 5));
    require(std::isnan(read.latitude) == std::isnan(read.longitude));
    const QDateTime time = NyFotoMetaData(read).captureTime();
    require(!time.isValid() || (time.date().year() >= 1826 && time.date().year() <= 9999));
    return 0;
}
