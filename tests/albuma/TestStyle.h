#pragma once

#include <NyDesignStyle.h>

/** A design whose colours cannot be mistaken for each other's or for a photo's. */
inline NyDesignStyle testStyle()
{
    NyDesignStyle style;
    style.id = NyDesignElementID(QStringLiteral("test"));
    style.pageBackground = QColor(250, 240, 230);
    style.coverBackground = QColor(20, 40, 60);
    style.coverTextColor = Qt::white;
    style.textColor = Qt::black;
    return style;
}
