#include "ScenePainter.h"

#include <algorithm>
#include <cmath>
#include <random>

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>
#include <QRadialGradient>

namespace
{

constexpr int Width = 224;
constexpr int Height = 168;

/** What varies from picture to picture. */
class Chance
{
public:
    explicit Chance(unsigned seed)
        : m_generator(seed)
    {
    }
    double real(double from, double to) { return from + (to - from) * (static_cast<double>(m_generator()) / 4294967296.0); }
    int whole(int from, int to) { return from + static_cast<int>(m_generator() % static_cast<unsigned>(to - from + 1)); }
    QColor near(const QColor &color, int spread)
    {
        const auto moved = [&](int value) { return std::clamp(value + whole(-spread, spread), 0, 255); };
        return {moved(color.red()), moved(color.green()), moved(color.blue())};
    }
    double normal() { return std::sqrt(-2.0 * std::log(real(1e-9, 1.0))) * std::cos(2.0 * 3.14159265358979 * real(0.0, 1.0)); }

private:
    std::mt19937 m_generator;
};

class Canvas
{
public:
    Canvas(const QString &scene, int number)
        : chance(static_cast<unsigned>(number) * 977U + static_cast<unsigned>(scene.size()) * 31U + scene.front().unicode())
        , image(Width, Height, QImage::Format_RGB888)
        , painter(&image)
    {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
    }

    void band(double top, double bottom, const QColor &from, const QColor &to)
    {
        QLinearGradient gradient(0, top, 0, bottom);
        gradient.setColorAt(0, from);
        gradient.setColorAt(1, to);
        painter.fillRect(QRectF(0, top, Width, bottom - top), gradient);
    }
    void speckle(const QRectF &area, const QColor &color, int spread, int count, double size)
    {
        for (int i = 0; i < count; ++i) {
            painter.setBrush(chance.near(color, spread));
            const double extent = size * chance.real(0.5, 1.5);
            painter.drawEllipse(QPointF(chance.real(area.left(), area.right()), chance.real(area.top(), area.bottom())), extent, extent);
        }
    }
    void person(double x, double feet, double height)
    {
        painter.setBrush(chance.near(QColor(90, 80, 130), 90));
        painter.drawRoundedRect(QRectF(x - height * 0.13, feet - height * 0.8, height * 0.26, height * 0.45), 3, 3);
        painter.setBrush(chance.near(QColor(50, 50, 70), 40));
        painter.drawRect(QRectF(x - height * 0.11, feet - height * 0.38, height * 0.22, height * 0.38));
        painter.setBrush(chance.near(QColor(214, 165, 135), 30));
        painter.drawEllipse(QPointF(x, feet - height * 0.89), height * 0.09, height * 0.11);
        painter.setBrush(chance.near(QColor(70, 50, 35), 40));
        painter.drawChord(QRectF(x - height * 0.095, feet - height, height * 0.19, height * 0.2), 0, 180 * 16);
    }
    void ridge(double base, double roughness, const QColor &color)
    {
        QPainterPath path(QPointF(0, Height));
        for (int x = 0; x <= Width; x += 8)
            path.lineTo(x, base + roughness * std::sin(x * 0.05 + base) + chance.real(-roughness, roughness) / 3.0);
        path.lineTo(Width, Height);
        painter.fillPath(path, color);
    }
    QImage finished()
    {
        painter.end();
        return ScenePainter::darkened(image, chance.real(0.85, 1.1));
    }

    Chance chance;
    QImage image;
    QPainter painter;
};

void paintBeach(Canvas &c)
{
    const double horizon = c.chance.real(50, 80);
    const double shore = c.chance.real(100, 125);
    c.band(0, horizon, c.chance.near(QColor(90, 160, 230), 20), c.chance.near(QColor(190, 225, 245), 10));
    c.band(horizon, shore, c.chance.near(QColor(20, 100, 160), 20), c.chance.near(QColor(90, 190, 200), 20));
    c.band(shore, Height, c.chance.near(QColor(225, 200, 150), 15), c.chance.near(QColor(240, 220, 175), 10));
    c.painter.setPen(QPen(QColor(245, 250, 250), 2));
    for (int i = 0; i < 5; ++i) {
        const double y = shore - c.chance.real(0, 25);
        c.painter.drawLine(QPointF(c.chance.real(0, 90), y), QPointF(c.chance.real(100, Width), y + c.chance.real(-2, 2)));
    }
    c.painter.setPen(Qt::NoPen);
    c.speckle(QRectF(0, shore, Width, Height - shore), QColor(205, 180, 130), 20, 160, 1.2);
    const int people = c.chance.whole(0, 3);
    for (int i = 0; i < people; ++i)
        c.person(c.chance.real(30, 190), c.chance.real(shore + 5, Height), c.chance.real(35, 60));
    c.painter.setBrush(c.chance.near(QColor(220, 60, 60), 40));
    c.painter.drawPie(QRectF(c.chance.real(10, 170), shore - 15, 44, 40), 0, 180 * 16);
}

void paintSnow(Canvas &c)
{
    c.band(0, Height, c.chance.near(QColor(80, 140, 220), 20), c.chance.near(QColor(180, 215, 245), 10));
    c.ridge(c.chance.real(50, 70), 18, c.chance.near(QColor(165, 180, 205), 12));
    c.ridge(c.chance.real(85, 105), 8, c.chance.near(QColor(244, 247, 252), 5));
    for (int i = 0; i < 9; ++i) {
        const double x = c.chance.real(0, Width);
        const double foot = c.chance.real(90, 125);
        c.painter.setBrush(c.chance.near(QColor(35, 65, 50), 15));
        c.painter.drawPolygon(QPolygonF({QPointF(x, foot - 28), QPointF(x - 8, foot), QPointF(x + 8, foot)}));
    }
    for (int i = 0; i < 2; ++i)
        c.person(c.chance.real(40, 190), c.chance.real(130, 160), c.chance.real(28, 45));
}

void paintFireworks(Canvas &c)
{
    c.band(0, Height, QColor(4, 5, 14), QColor(14, 12, 24));
    for (int burst = c.chance.whole(2, 4); burst > 0; --burst) {
        const QPointF middle(c.chance.real(30, 194), c.chance.real(25, 95));
        c.painter.setPen(QPen(c.chance.near(QColor(235, 170, 90), 80), 1.4));
        for (int ray = 0; ray < 34; ++ray) {
            const double angle = c.chance.real(0, 6.283);
            const double length = c.chance.real(14, 40);
            const QPointF direction(std::cos(angle), std::sin(angle));
            c.painter.drawLine(middle + direction * length * 0.3, middle + direction * length);
        }
    }
    c.painter.setPen(Qt::NoPen);
    c.ridge(150, 4, QColor(3, 3, 5));
}

void paintTree(Canvas &c)
{
    c.band(0, Height, c.chance.near(QColor(70, 45, 35), 12), c.chance.near(QColor(110, 75, 50), 15));
    const double x = c.chance.real(80, 140);
    for (int layer = 0; layer < 4; ++layer) {
        c.painter.setBrush(c.chance.near(QColor(20, 75, 40), 12));
        const double top = 12 + layer * 28;
        c.painter.drawPolygon(QPolygonF({QPointF(x, top), QPointF(x - 22 - layer * 13, top + 46), QPointF(x + 22 + layer * 13, top + 46)}));
    }
    for (int i = 0; i < 70; ++i) {
        const double y = c.chance.real(25, 140);
        const double reach = 8 + (y - 20) * 0.42;
        c.painter.setBrush(i % 3 ? QColor(255, 225, 130) : c.chance.near(QColor(200, 30, 40), 30));
        c.painter.drawEllipse(QPointF(x + c.chance.real(-reach, reach), y), i % 3 ? 1.5 : 3.4, i % 3 ? 1.5 : 3.4);
    }
    for (int i = 0; i < 5; ++i) {
        c.painter.setBrush(c.chance.near(QColor(170, 60, 60), 80));
        c.painter.drawRect(QRectF(x - 70 + i * 30, 145 - c.chance.real(0, 12), 24, 24));
    }
}

void paintCity(Canvas &c)
{
    c.band(0, Height, c.chance.near(QColor(140, 180, 220), 25), c.chance.near(QColor(215, 220, 225), 15));
    for (int i = 0; i < 8; ++i) {
        const double left = i * 29 - 6;
        const double top = c.chance.real(20, 80);
        const QColor wall = c.chance.near(QColor(165, 145, 125), 45);
        c.painter.setBrush(wall);
        c.painter.drawRect(QRectF(left, top, 28, 150 - top));
        c.painter.setBrush(wall.darker(190));
        for (double y = top + 6; y < 140; y += 12) {
            for (double x = left + 4; x < left + 24; x += 8)
                c.painter.drawRect(QRectF(x, y, 4, 7));
        }
    }
    c.band(148, Height, QColor(95, 95, 100), QColor(120, 118, 118));
    for (int i = 0; i < 4; ++i)
        c.person(c.chance.real(10, 214), c.chance.real(152, 166), c.chance.real(22, 34));
}

void paintForest(Canvas &c)
{
    c.band(0, Height, c.chance.near(QColor(150, 190, 150), 20), c.chance.near(QColor(80, 95, 50), 15));
    for (int i = 0; i < 14; ++i) {
        c.painter.setBrush(c.chance.near(QColor(75, 60, 45), 15));
        c.painter.drawRect(QRectF(c.chance.real(0, Width), 0, c.chance.real(3, 10), c.chance.real(110, 150)));
    }
    c.speckle(QRectF(0, 0, Width, 90), QColor(60, 120, 50), 35, 420, 4.0);
    c.speckle(QRectF(0, 120, Width, 48), QColor(95, 105, 55), 30, 220, 3.0);
    c.painter.setBrush(c.chance.near(QColor(165, 140, 105), 12));
    c.painter.drawPolygon(QPolygonF({QPointF(104, 100), QPointF(120, 100), QPointF(165, Height), QPointF(60, Height)}));
}

void paintPeople(Canvas &c)
{
    c.band(0, Height, c.chance.near(QColor(200, 190, 175), 30), c.chance.near(QColor(150, 130, 110), 30));
    const int count = c.chance.whole(2, 5);
    for (int i = 0; i < count; ++i)
        c.person((i + 0.5) * Width / count, c.chance.real(175, 230), c.chance.real(130, 190));
}

void paintParty(Canvas &c)
{
    c.band(0, 110, c.chance.near(QColor(190, 165, 140), 25), c.chance.near(QColor(150, 120, 100), 20));
    for (int i = 0; i < 7; ++i) {
        c.painter.setBrush(c.chance.near(QColor(200, 110, 120), 80));
        c.painter.drawEllipse(QPointF(c.chance.real(5, 219), c.chance.real(5, 50)), 11, 14);
    }
    for (int i = 0; i < 3; ++i)
        c.person(40 + i * 70, 175, c.chance.real(120, 140));
    c.band(122, Height, c.chance.near(QColor(235, 230, 220), 10), c.chance.near(QColor(215, 205, 195), 10));
    c.painter.setBrush(QColor(250, 240, 225));
    c.painter.drawRect(QRectF(82, 110, 60, 28));
    for (int i = 0; i < 6; ++i) {
        c.painter.setBrush(c.chance.near(QColor(120, 120, 200), 90));
        c.painter.drawRect(QRectF(86 + i * 9, 98, 3, 12));
        c.painter.setBrush(QColor(255, 220, 90));
        c.painter.drawEllipse(QPointF(87.5 + i * 9, 95), 2.2, 3.2);
    }
}

void paintGarden(Canvas &c)
{
    c.band(0, 60, c.chance.near(QColor(150, 195, 235), 20), c.chance.near(QColor(205, 225, 235), 10));
    c.band(60, Height, c.chance.near(QColor(100, 150, 60), 15), c.chance.near(QColor(80, 125, 45), 15));
    c.speckle(QRectF(0, 40, Width, 40), QColor(60, 110, 50), 30, 200, 5.0);
    c.speckle(QRectF(0, 80, Width, 88), QColor(220, 110, 140), 90, 90, 2.2);
    c.painter.setBrush(c.chance.near(QColor(150, 105, 70), 15));
    c.painter.drawRect(QRectF(c.chance.real(20, 150), 80, 52, 30));
}

void paintFog(Canvas &c)
{
    c.band(0, Height, QColor(205, 208, 210), QColor(180, 184, 186));
    for (int i = 0; i < 6; ++i) {
        const double x = c.chance.real(0, Width);
        c.painter.setBrush(QColor(150 - i * 6, 155 - i * 6, 158 - i * 6));
        c.painter.drawRect(QRectF(x, 50, 4, 90));
        c.painter.drawEllipse(QPointF(x + 2, 50), 16, 22);
    }
}

void paintSunset(Canvas &c)
{
    c.band(0, 100, QColor(60, 50, 100), QColor(250, 150, 60));
    c.band(100, Height, QColor(120, 70, 60), QColor(30, 25, 50));
    c.painter.setBrush(QColor(255, 230, 150));
    c.painter.drawEllipse(QPointF(c.chance.real(60, 160), 88), 9, 9);
    c.speckle(QRectF(90, 102, 40, 60), QColor(240, 170, 90), 25, 40, 1.3);
}

void paintNight(Canvas &c)
{
    c.band(0, Height, QColor(6, 7, 16), QColor(16, 14, 22));
    for (int i = 0; i < 60; ++i) {
        c.painter.setBrush(c.chance.near(QColor(240, 190, 110), 50));
        c.painter.drawRect(QRectF(c.chance.whole(0, 55) * 4, c.chance.whole(16, 38) * 4, 2, 2));
    }
}

void paintPaper(Canvas &c)
{
    c.band(0, Height, QColor(240, 240, 236), QColor(228, 228, 224));
    c.painter.setBrush(QColor(60, 60, 66));
    for (int line = 0; line < 14; ++line) {
        for (double x = 14; x < 205;) {
            const double word = c.chance.real(5, 20);
            c.painter.drawRect(QRectF(x, 14 + line * 11, word, 3));
            x += word + 4;
        }
    }
}

} // namespace

QImage ScenePainter::paint(const QString &scene, int number)
{
    struct Kind
    {
        const char *name;
        void (*paint)(Canvas &);
    };
    static const Kind kinds[] = {{"beach", paintBeach}, {"snow", paintSnow}, {"fireworks", paintFireworks}, {"tree", paintTree},
        {"city", paintCity}, {"forest", paintForest}, {"people", paintPeople}, {"party", paintParty}, {"garden", paintGarden},
        {"fog", paintFog}, {"sunset", paintSunset}, {"night", paintNight}, {"paper", paintPaper}};
    for (const Kind &kind : kinds) {
        if (scene == QLatin1String(kind.name)) {
            Canvas canvas(scene, number);
            kind.paint(canvas);
            return canvas.finished();
        }
    }
    qFatal("no scene is called %s", qPrintable(scene));
}

QImage ScenePainter::darkened(const QImage &picture, double factor)
{
    QImage result = picture.convertToFormat(QImage::Format_RGB888);
    for (int y = 0; y < result.height(); ++y) {
        uchar *row = result.scanLine(y);
        for (int i = 0; i < 3 * result.width(); ++i)
            row[i] = static_cast<uchar>(std::clamp(static_cast<int>(std::lround(row[i] * factor)), 0, 255));
    }
    return result;
}

QImage ScenePainter::shaken(const QImage &picture, int lengthPx)
{
    const QImage source = picture.convertToFormat(QImage::Format_RGB888);
    QImage result = source;
    const int half = lengthPx / 2;
    for (int y = 0; y < source.height(); ++y) {
        uchar *row = result.scanLine(y);
        for (int x = 0; x < source.width(); ++x) {
            for (int channel = 0; channel < 3; ++channel) {
                int sum = 0;
                for (int step = -half; step <= half; ++step) {
                    const uchar *from = source.constScanLine(std::clamp(y + step / 2, 0, source.height() - 1));
                    sum += from[3 * std::clamp(x + step, 0, source.width() - 1) + channel];
                }
                row[3 * x + channel] = static_cast<uchar>(sum / (2 * half + 1));
            }
        }
    }
    return result;
}

QImage ScenePainter::blurred(const QImage &picture, int widthPx)
{
    QImage result = picture.convertToFormat(QImage::Format_RGB888);
    const int half = widthPx / 2;
    for (const QPoint step : {QPoint(1, 0), QPoint(0, 1)}) {
        const QImage source = result.copy();
        for (int y = 0; y < source.height(); ++y) {
            uchar *row = result.scanLine(y);
            for (int x = 0; x < source.width(); ++x) {
                for (int channel = 0; channel < 3; ++channel) {
                    int sum = 0;
                    for (int i = -half; i <= half; ++i) {
                        const uchar *from = source.constScanLine(std::clamp(y + i * step.y(), 0, source.height() - 1));
                        sum += from[3 * std::clamp(x + i * step.x(), 0, source.width() - 1) + channel];
                    }
                    row[3 * x + channel] = static_cast<uchar>(sum / (2 * half + 1));
                }
            }
        }
    }
    return result;
}

QImage ScenePainter::even(const QColor &color, double noise)
{
    QImage result(Width, Height, QImage::Format_RGB888);
    Chance chance(1);
    for (int y = 0; y < Height; ++y) {
        uchar *row = result.scanLine(y);
        for (int x = 0; x < Width; ++x, row += 3) {
            const int values[] = {color.red(), color.green(), color.blue()};
            for (int channel = 0; channel < 3; ++channel)
                row[channel]
                    = static_cast<uchar>(std::clamp(values[channel] + static_cast<int>(std::lround(noise * chance.normal())), 0, 255));
        }
    }
    return result;
}

QImage ScenePainter::pocket()
{
    QImage result = even(QColor(4, 3, 3), 1.5);
    QPainter painter(&result);
    QRadialGradient leak(QPointF(200, 20), 90);
    leak.setColorAt(0, QColor(70, 35, 20));
    leak.setColorAt(1, QColor(70, 35, 20, 0));
    painter.fillRect(result.rect(), leak);
    return result;
}

QImage ScenePainter::finger()
{
    QImage result = even(QColor(150, 60, 45), 1);
    QPainter painter(&result);
    QRadialGradient glow(QPointF(100, 80), 150);
    glow.setColorAt(0, QColor(220, 110, 85));
    glow.setColorAt(1, QColor(220, 110, 85, 0));
    painter.fillRect(result.rect(), glow);
    return result;
}
