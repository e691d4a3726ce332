#include "NyBookPage.h"

bool operator==(const NyBookPage &a, const NyBookPage &b)
{
    return a.photos == b.photos && a.texts == b.texts;
}
