#pragma once

class DemoCanvas;

/** What a demo picture shows. */
enum class DemoScene {
    SeaSunset,
    Beach,
    BeachChairs,
    Sailing,
    Lighthouse,
    Dunes,
    Harbour,
    Pier,
    Shells,
    Kite,
    SunsetFriends,
    SandCastle,
    Gulls,
    Plate,
    Mountains,
    Forest,
    ForestPath,
    Lake,
    Railway,
    Houses,
    Stream,
    Flower,
    Meadow,
    RapeField,
    Balloons,
    BirthdayCake,
    BirthdayTable,
    Party,
    Snow,
    ChristmasTree,
    ChristmasMarket,
    CityNight,
    Fireworks,
    Stars,
};

/** Paints the scene. The canvas's random numbers choose light, weather, colours and composition. Any thread. */
void paintScene(DemoScene scene, DemoCanvas &canvas);
