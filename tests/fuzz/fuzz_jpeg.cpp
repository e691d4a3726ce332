// The picture of a JPEG as it goes into a print file: what is taken once is taken again, byte for byte, and holds nothing else.

#include <NyJpegFile.h>

#include "FuzzFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using FuzzFile::require;
    // A copy of its own, so that a read beyond the end is found.
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    QString reason;
    const std::optional<NyJpegFile> file = NyJpegFile::parse(bytes, reason);
    require(file.has_value() == reason.isEmpty());
    if (!file)
        return 0;
    require(!file->sizePx().isEmpty());
    require(file->componentCount() == 1 || file->componentCount() == 3);
    require(file->iccProfile().isEmpty() || file->iccProfile().size() >= 128);
    const QByteArray picture = file->picture();
    require(picture.size() == file->pictureBytes());
    require(picture.size() <= bytes.size() + 18);
    const std::optional<NyJpegFile> again = NyJpegFile::parse(picture, reason);
    require(again && again->picture() == picture && again->sizePx() == file->sizePx());
    require(again->componentCount() == file->componentCount() && again->iccProfile().isEmpty());
    return 0;
}
