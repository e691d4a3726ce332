#pragma once

#include <vector>

#include <QDate>
#include <QString>
#include <QStringList>
#include <QTime>

/** A family's album: its folder, days, places and pictures, and the occasion that a person would name for it. */
struct OccasionAlbum
{
    struct Place
    {
        double latitude = 0.0;
        double longitude = 0.0;
    };
    struct Shots
    {
        QString scene; ///< as ScenePainter knows it, or one of "black", "white", "pocket", "smear"
        int count = 0;
    };

    QString name;
    /** de, en, fr, es, or none when nothing in it is of a language. */
    QString language;
    /** Below the pictures folder, as people nest them. */
    QString folder;
    QDate from;
    int days = 1;
    QTime begin = QTime(11, 0);
    /** Seconds between two photos of a day. */
    int everySeconds = 420;
    /** Of the clock on the wall where it was taken; the machine that reads is in Berlin. */
    int hoursFromUtc = 1;
    std::vector<Shots> shots;
    /** One for each day, from the start again when there are fewer. Empty for a camera without positions. */
    std::vector<Place> places;
    /** Where the same person took photos all the year, if that was seen before. */
    bool isHomeKnown = true;
    Place home;

    /** What must be told; empty for nothing. */
    QStringList expected;
    /** What may be told beside it and is not wrong. */
    QStringList allowed;
    /** Only its pictures tell. */
    bool needsModel = false;
    /** Why it is not told rightly today; empty if it is. */
    QString weakness;

    int photoCount() const;

    static const std::vector<OccasionAlbum> &all();
};
