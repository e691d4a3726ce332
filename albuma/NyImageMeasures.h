#pragma once

#include <QImage>

/** What the pixels of a small version of a photo tell about its quality. Pure functions; about 500 px on the longer side is enough. */
class NyImageMeasures
{
public:
    /** The longer side in px that the limits below are tuned for. */
    static constexpr int AnalysisSidePx = 500;

    struct Result
    {
        /** Neighbouring brightnesses of a 9 x 8 picture compared along rows, first row in the highest bits. */
        quint64 differenceHash = 0;
        /** How crisp the crispest parts are, 0 to 1. */
        double sharpness = 0;
        /** 0 to 1: 1 is a full range of well-placed tones. */
        double exposure = 0;
        /** 0 to 1; after Hasler and Süsstrunk, "Measuring colourfulness in natural images", 2003. */
        double colorfulness = 0;
        /** Share of pixels that equal their right neighbour, as on screens and drawings. */
        double flatness = 0;
        /** All black, all white, or of one tone. */
        bool isBlank = false;
        /** Not even the crispest parts are sharp. */
        bool isBlurred = false;
    };

    /** A null image gives a blank result. */
    static Result measure(const QImage &image);
};
