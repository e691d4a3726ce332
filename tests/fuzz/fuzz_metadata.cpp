// The metadata path: no field outside what its documentation promises.

#include <cmath>

#include <NyFotoMetaData.h>
#include <NyFotoTime.h>
#include <NyImageMetaDataReader.h>

#include "FuzzFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using FuzzFile::require;
    const NyImageMetaData read = NyImageMetaDataReader::read(FuzzFile::write("bytes.jpg", data, size));
    require(read.orientation >= 1 && read.orientation <= 8);
    require(!read.rating || (*read.rating >= -1 && *read.rating <= 5));
    require(!read.ownRating || (*read.ownRating >= -1 && *read.ownRating <= 5));
    require(std::isfinite(read.digitalZoomRatio) && read.digitalZoomRatio > 0.0);
    require(std::isfinite(read.exposureTimeS) && std::isfinite(read.fNumber) && std::isfinite(read.focalLengthMm));
    require(std::isnan(read.latitude) == std::isnan(read.longitude));
    const NyFotoMetaData foto(read);
    require(foto.rating() >= -1 && foto.rating() <= 5);
    const QDateTime time = foto.captureTime();
    require(!time.isValid() || (time.date().year() >= 1826 && time.date().year() <= 9999));
    foto.geoPosition().longitude().normalized();
    return 0;
}
