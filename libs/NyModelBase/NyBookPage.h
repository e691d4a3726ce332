#pragma once

#include "NyBookText.h"
#include "NyPlacedFoto.h"

#include <QList>

/** One page: its photos in reading order and its texts. Photos are painted before texts. */
struct NYMODELBASE_EXPORT NyBookPage
{
    QList<NyPlacedFoto> photos;
    QList<NyBookText> texts;

    friend NYMODELBASE_EXPORT bool operator==(const NyBookPage &a, const NyBookPage &b);
};
