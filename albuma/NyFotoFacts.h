#pragma once

#include <QDateTime>
#include <QSize>
#include <QUrl>

/** What the builder found out about one photo. */
struct NyFotoFacts
{
    /** Why a photo cannot stand in a book at all, or (Blurred, Tiny, and Rejected by the user) only if its day has nothing
        better. */
    enum class Flaw { None, Unreadable, Screenshot, Blank, Blurred, Tiny, Rejected };

    QUrl url;
    /** Wall clock of the camera. */
    QDateTime captureTime;
    /** Upright size in pixels. */
    QSize sizePx;
    Flaw flaw = Flaw::Unreadable;
    /** Difference hash: neighbouring brightnesses of a 9 x 8 picture, compared along rows. */
    quint64 differenceHash = 0;
    /** How crisp the crispest parts are, 0 to 1. */
    double sharpness = 0;
    /** 0 to 1: 1 is a full range of well-placed tones. */
    double exposure = 0;
    /** 0 to 1. */
    double colorfulness = 0;
    /** The user's own stars, 0 to 5; 0 if there are none. */
    int rating = 0;

    /** How much the photo deserves room: higher is better. */
    double strength() const;
    /** Seconds on the wall clock; differences of two are what a person would read off both clock faces. */
    qint64 wallClockSeconds() const;
};
