#include "NyText.h"

QString NyText::beginning(const QString &text, qsizetype length)
{
    QString result = text.left(length);
    if (result.size() < text.size() && !result.isEmpty() && result.back().isHighSurrogate())
        result.chop(1);
    return result;
}

QString NyText::end(const QString &text, qsizetype length)
{
    QString result = text.right(length);
    if (result.size() < text.size() && !result.isEmpty() && result.front().isLowSurrogate())
        result.remove(0, 1);
    return result;
}
