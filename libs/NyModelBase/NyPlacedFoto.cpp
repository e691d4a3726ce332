#include "NyPlacedFoto.h"

#include <algorithm>

QSizeF NyPlacedFoto::shownSizePx() const
{
    QSizeF turned = sizePx;
    if (rotationDegrees % 180 != 0)
        turned.transpose();
    return {turned.width() * crop.width(), turned.height() * crop.height()};
}

double NyPlacedFoto::printedDpi() const
{
    if (sizePx.isEmpty() || rectMm.isEmpty())
        return 0;
    constexpr double mmPerInch = 25.4;
    const QSizeF pixels = shownSizePx();
    return std::min(pixels.width() / rectMm.width(), pixels.height() / rectMm.height()) * mmPerInch;
}

double NyPlacedFoto::shownAspectRatio() const
{
    const QSizeF pixels = shownSizePx();
    return pixels.isEmpty() ? 0 : pixels.width() / pixels.height();
}

bool operator==(const NyPlacedFoto &a, const NyPlacedFoto &b)
{
    return a.url == b.url && a.rectMm == b.rectMm && a.crop == b.crop && a.rotationDegrees == b.rotationDegrees && a.sizePx == b.sizePx;
}
