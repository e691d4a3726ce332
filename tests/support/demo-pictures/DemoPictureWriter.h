#pragma once

#include <QString>

struct DemoPicture;

/**
 * Paints the picture, gives it a camera's flaws (noise, darker corners) and writes it as JPEG with EXIF below folder, whole or not
 * at all. A file that is there already stays as it is. Any thread.
 *
 * Returns an empty text, or what went wrong.
 */
QString writeDemoPicture(const DemoPicture &picture, const QString &folder);
