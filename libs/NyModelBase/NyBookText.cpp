#include "NyBookText.h"

bool operator==(const NyBookText &a, const NyBookText &b)
{
    return a.role == b.role && a.text == b.text && a.rectMm == b.rectMm && a.fontSizePt == b.fontSizePt && a.alignment == b.alignment;
}
