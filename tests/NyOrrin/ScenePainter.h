#pragma once

#include <QImage>
#include <QString>

/** Paints pictures of 224 by 168 px as a family takes them, and such as go wrong. The same number gives the same picture. */
class ScenePainter
{
public:
    /** Scene: beach, snow, fireworks, tree, city, forest, people, party, garden, fog, sunset, night, paper. Ends the program for others. */
    static QImage paint(const QString &scene, int number);

    static QImage darkened(const QImage &picture, double factor);
    /** Moved along a slant by so many px. */
    static QImage shaken(const QImage &picture, int lengthPx);
    static QImage blurred(const QImage &picture, int widthPx);
    /** One colour, with noise of so many grey levels. */
    static QImage even(const QColor &color, double noise);
    static QImage pocket();
    static QImage finger();
};
