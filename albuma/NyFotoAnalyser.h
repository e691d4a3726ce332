#pragma once

#include <NyFoto.h>

#include "NyFotoFacts.h"

/** Finds out what the builder must know of a photo. Reads the file; thread-safe. */
class NyFotoAnalyser
{
public:
    /** A photo that cannot be read comes back with the flaw Unreadable. */
    static NyFotoFacts analyse(const NyFoto &foto);

    /**
     * Whether a picture was taken of a screen's content: by its file or folder name in the languages around us, or because it is
     * of a screen's exact size, of no camera, and mostly flat. @p flatness as in NyImageMeasures.
     */
    static bool isScreenshot(const QString &path, const QSize &sizePx, bool isFromCamera, double flatness);
};
