#pragma once

#include <algorithm>

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QPoint>

#include <QScreen>

/** What is to be seen on the display of a test. */
namespace ScreenPixels
{

/** The first pixel in the red of the service's icon; (-1, -1) while there is none. */
inline QPoint iconPixel()
{
    const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0).toImage().convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < screen.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(screen.constScanLine(y));
        if (const auto *pixel = std::find(line, line + screen.width(), qRgb(0xc3, 0x0c, 0x15)); pixel != line + screen.width())
            return {int(pixel - line), y};
    }
    return {-1, -1};
}

inline bool isIconShown()
{
    return iconPixel() != QPoint(-1, -1);
}

}
