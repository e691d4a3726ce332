#pragma once

#include <optional>

#include <QDate>
#include <QDateTime>
#include <QList>
#include <QSize>
#include <QString>

#include "DemoScene.h"

/** Degrees, north and east positive. */
struct DemoPlace
{
    double latitude = 0.0;
    double longitude = 0.0;
};

/** One picture that is to be painted. */
struct DemoPicture
{
    /** Below the demo folder, with "/" between folders. */
    QString relativePath;
    DemoScene scene = DemoScene::SeaSunset;
    quint64 seed = 0;
    /** As a viewer sees it; with a turned camera the stored picture lies on its side. */
    QSize sizePx;
    bool cameraTurned = false;
    /** Wall clock where the picture was taken. */
    QDateTime captureTime;
    /** As EXIF writes it, such as "+02:00"; empty for a camera that does not know it. */
    QString utcOffset;
    QString cameraModel;
    std::optional<DemoPlace> place;
};

/**
 * The pictures of a German family's past year, seen from today: one long holiday (enough for a book), some shorter events and a
 * camera folder that nobody sorted. The events lie on the last such days that are over, so every capture time is in the past.
 */
QList<DemoPicture> demoAlbum(const QDate &today);
