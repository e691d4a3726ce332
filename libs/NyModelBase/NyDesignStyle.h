#pragma once

#include "NyDesignElementID.h"

#include <QColor>
#include <QString>

/** Whether the builder may choose a style by itself for a proposal. */
enum class NyDesignRelease { ManualOnly, Proposals };

/** The look of a book: paper, cover and text colours, and the font families of its texts. */
struct NyDesignStyle
{
    NyDesignElementID id;
    /** The name that people see. */
    QString name;
    NyDesignRelease release = NyDesignRelease::ManualOnly;
    QColor pageBackground = QColor(0xff, 0xff, 0xff);
    QColor coverBackground = QColor(0x2b, 0x3a, 0x42);
    QColor textColor = QColor(0x33, 0x33, 0x33);
    QColor coverTextColor = QColor(0xff, 0xff, 0xff);
    QColor accentColor = QColor(0xb0, 0x8d, 0x57);
    /** Families in order of preference, separated by commas. */
    QString titleFonts = QStringLiteral("P052, DejaVu Serif, serif");
    QString bodyFonts = QStringLiteral("DejaVu Sans, sans-serif");

    bool isValid() const { return id.isValid(); }
};
