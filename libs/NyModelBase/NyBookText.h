#pragma once

#include "nymodelbase_export.h"

#include <QRectF>
#include <QString>
#include <Qt>

/** A text on a page. Font family and colour come from the book's style by the text's role. */
struct NYMODELBASE_EXPORT NyBookText
{
    enum class Role { Title, Subtitle, DayHeading, Caption };

    Role role = Role::Caption;
    QString text;
    /** Millimetres from the page's upper left corner; the text is wrapped at its width and shrunk to its height. */
    QRectF rectMm;
    double fontSizePt = 12;
    /** Exactly one of AlignLeft, AlignHCenter and AlignRight. */
    Qt::AlignmentFlag alignment = Qt::AlignHCenter;

    friend NYMODELBASE_EXPORT bool operator==(const NyBookText &a, const NyBookText &b);
};
