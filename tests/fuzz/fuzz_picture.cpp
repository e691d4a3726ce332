// The picture path: whatever the bytes are, a picture inside the box or none, with the proportions that the header promised.

#include <QFile>
#include <QImage>

#include <NyImageLoader.h>

#include "FuzzFile.h"

namespace
{

void readOne(const QString &path)
{
    const NyImageLoader &loader = NyImageLoader::instance();
    const QSize size = loader.orientedSize(path);
    FuzzFile::require(qint64(size.width()) * size.height() <= NyImageLoader::MaximumPixels);
    const QSize box(224, 224);
    const QImage image = loader.loadScaled(path, box);
    FuzzFile::require(image.width() <= box.width() && image.height() <= box.height());
    FuzzFile::require(image.isNull() || image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32);
    // Large ones cost the fuzzer its time.
    if (!size.isEmpty() && qint64(size.width()) * size.height() <= 250'000)
        loader.load(path);
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    readOne(FuzzFile::write("bytes.jpg", data, size));
    // Raw files are TIFF files that their names tell apart.
    if (size > 4 && ((data[0] == 'I' && data[1] == 'I') || (data[0] == 'M' && data[1] == 'M')))
        readOne(FuzzFile::write("bytes.nef", data, size));
    return 0;
}
