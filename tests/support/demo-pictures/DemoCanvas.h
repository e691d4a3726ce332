#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>

/** Reproducible random numbers: the same seed gives the same picture in every run. */
class DemoRandom
{
public:
    explicit DemoRandom(quint64 seed);

    quint64 next();
    /** Evenly spread in [low, high). */
    double uniform(double low, double high);
    /** Evenly spread, both ends inclusive. */
    int integer(int low, int high);
    bool chance(double probability);
    QColor pick(std::initializer_list<QColor> colors);

private:
    quint64 m_state;
};

/** Smooth noise in [0, 1] over the plane, several octaves summed. */
class DemoNoise
{
public:
    explicit DemoNoise(quint64 seed);

    double at(double x, double y, int octaves) const;

private:
    double lattice(int x, int y) const;
    double smooth(double x, double y) const;

    quint64 m_seed;
};

/**
 * One picture while it is painted: the painter, its size in px, its random numbers, and the pieces that several scenes share.
 *
 * unit() is a hundredth of the shorter side, so that a scene looks the same at every resolution.
 */
class DemoCanvas
{
public:
    DemoCanvas(QImage &image, quint64 seed);
    Q_DISABLE_COPY_MOVE(DemoCanvas)

    QPainter &painter() { return m_painter; }
    DemoRandom &random() { return m_random; }
    double width() const { return m_width; }
    double height() const { return m_height; }
    double unit() const { return m_unit; }

    void verticalGradient(const QRectF &area, std::initializer_list<std::pair<double, QColor>> stops);
    void glow(QPointF center, double radius, QColor color);
    void disc(QPointF center, double radiusX, double radiusY, QColor color);
    /** Clouds from the top down to the horizon, flatter towards it. cover: 0 none, 1 overcast. */
    void clouds(double horizon, QColor lit, QColor shade, double cover);
    /** Mottles an area. stretch above 1 draws the spots out sideways; strength is the greatest change in lightness, 0 to 255. */
    void mottle(const QRectF &area, double spot, double stretch, int strength);
    /** The filled outline of a row of hills. Returns the outline's height at x. */
    void ridge(double baseline, double amplitude, double roughness, QColor top, QColor bottom);
    void water(double top, double bottom, QColor far, QColor near, QColor sparkle);
    /** A path of light on the water below the sun or the moon. */
    void glitter(double x, double top, double bottom, QColor color, int strokes);
    void fir(QPointF foot, double size, QColor color, bool snowy);
    void leafTree(QPointF foot, double size, QColor dark, QColor light);
    void person(QPointF foot, double size, QColor clothes, QColor skin);
    void gull(QPointF at, double span, QColor color);
    void grass(double top, double bottom, int blades, QColor dark, QColor light, double length);
    void bokeh(int count, std::initializer_list<QColor> colors, double smallest, double largest);

private:
    QPainter m_painter;
    DemoRandom m_random;
    double m_width;
    double m_height;
    double m_unit;
};

QColor mix(QColor a, QColor b, double share);
QColor withAlpha(QColor color, int alpha);
