#include "DemoScene.h"

#include <algorithm>
#include <cmath>

#include <QLinearGradient>
#include <QPainterPath>
#include <QRadialGradient>

#include "DemoCanvas.h"

namespace
{
const QColor SKIN(222, 178, 148);

QColor clothes(DemoRandom &random)
{
    return random.pick({QColor(206, 62, 58), QColor(42, 92, 168), QColor(240, 196, 62), QColor(58, 140, 96), QColor(235, 235, 230),
        QColor(226, 128, 60), QColor(120, 76, 150), QColor(60, 70, 84)});
}

/** A day sky down to the horizon: clear, fair or grey. */
void daySky(DemoCanvas &c, double horizon)
{
    auto &r = c.random();
    const QColor top = r.pick({QColor(38, 108, 190), QColor(62, 132, 206), QColor(84, 146, 204), QColor(120, 156, 190)});
    const QColor low = r.pick({QColor(190, 218, 236), QColor(214, 228, 236), QColor(226, 226, 218)});
    c.verticalGradient(QRectF(0, 0, c.width(), horizon + 2), {{0.0, top}, {0.6, mix(top, low, 0.55)}, {1.0, low}});
    // Hills stand partly below the horizon: what they leave open is haze.
    c.painter().fillRect(QRectF(0, horizon, c.width(), c.height() - horizon), low);
    c.clouds(horizon, QColor(252, 252, 252), QColor(170, 180, 196), r.uniform(0.15, 0.75));
}

void eveningSky(DemoCanvas &c, double horizon, QPointF &sun, QColor &light)
{
    auto &r = c.random();
    const int mood = r.integer(0, 3);
    const QColor tops[] = {QColor(40, 48, 104), QColor(86, 92, 150), QColor(24, 60, 110), QColor(70, 40, 90)};
    const QColor middles[] = {QColor(214, 96, 84), QColor(240, 150, 110), QColor(220, 150, 80), QColor(200, 70, 100)};
    const QColor lows[] = {QColor(255, 190, 96), QColor(255, 220, 160), QColor(255, 214, 120), QColor(255, 160, 90)};
    c.verticalGradient(QRectF(0, 0, c.width(), horizon + 2), {{0.0, tops[mood]}, {0.55, middles[mood]}, {1.0, lows[mood]}});
    light = lows[mood];
    c.painter().fillRect(QRectF(0, horizon, c.width(), c.height() - horizon), light);
    sun = QPointF(c.width() * r.uniform(0.2, 0.8), horizon - c.unit() * r.uniform(2.0, 22.0));
    c.clouds(horizon, mix(light, middles[mood], 0.5), tops[mood], r.uniform(0.1, 0.6));
    c.glow(sun, c.unit() * r.uniform(45.0, 80.0), withAlpha(light, 170));
    c.disc(sun, c.unit() * 4.0, c.unit() * 4.0, QColor(255, 246, 214));
}

void sand(DemoCanvas &c, double top)
{
    auto &r = c.random();
    const QColor base = r.pick({QColor(224, 200, 158), QColor(214, 190, 150), QColor(232, 214, 178)});
    const QRectF area(0, top, c.width(), c.height() - top);
    c.verticalGradient(area, {{0.0, mix(base, QColor(150, 130, 104), 0.45)}, {0.12, base}, {1.0, base.darker(118)}});
    c.mottle(area, c.unit() * 2.2, 2.5, 40);
    c.mottle(area, c.unit() * 0.5, 1.5, 26);
    for (int mark = 0; mark < 160; ++mark) {
        const double depth = std::sqrt(r.uniform(0.02, 1.0));
        c.disc({r.uniform(0.0, c.width()), top + (c.height() - top) * depth}, c.unit() * 1.1 * depth, c.unit() * 0.4 * depth,
            withAlpha(base.darker(140), 70));
    }
}

void surf(DemoCanvas &c, double shore)
{
    auto &r = c.random();
    for (int band = 0; band < 4; ++band) {
        QPainterPath foam(QPointF(-10, shore - band * c.unit() * 2.4));
        const double phase = r.uniform(0.0, 6.3);
        for (double x = -10; x <= c.width() + 10; x += c.unit() * 2.0) {
            foam.lineTo(
                x, shore - band * c.unit() * 2.4 + std::sin(x / c.unit() / 9.0 + phase) * c.unit() * 0.8 + r.uniform(-0.3, 0.3) * c.unit());
        }
        c.painter().setBrush(Qt::NoBrush);
        c.painter().setPen(
            QPen(QColor(255, 255, 255, 210 - band * 40), c.unit() * (1.1 - band * 0.2), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        c.painter().drawPath(foam);
    }
    c.painter().setPen(Qt::NoPen);
}

void sailBoat(DemoCanvas &c, QPointF at, double size, QColor sail, QColor hull)
{
    auto &p = c.painter();
    const double lean = c.random().uniform(-0.08, 0.08) * size;
    p.setBrush(sail);
    p.drawPolygon(QPolygonF{{at.x() + lean, at.y() - size}, {at.x(), at.y() - size * 0.14}, {at.x() + size * 0.42, at.y() - size * 0.14}});
    p.setBrush(sail.darker(112));
    p.drawPolygon(QPolygonF{{at.x() + lean - size * 0.03, at.y() - size * 0.9}, {at.x() - size * 0.03, at.y() - size * 0.14},
        {at.x() - size * 0.34, at.y() - size * 0.14}});
    p.setBrush(hull);
    QPainterPath body(QPointF(at.x() - size * 0.42, at.y() - size * 0.12));
    body.lineTo(at.x() + size * 0.5, at.y() - size * 0.12);
    body.quadTo(at.x() + size * 0.4, at.y() + size * 0.03, at.x() + size * 0.2, at.y() + size * 0.03);
    body.lineTo(at.x() - size * 0.28, at.y() + size * 0.03);
    body.closeSubpath();
    p.drawPath(body);
    c.disc({at.x(), at.y() + size * 0.07}, size * 0.5, size * 0.035, withAlpha(hull.darker(180), 90));
}

void parasol(DemoCanvas &c, QPointF foot, double size, QColor first, QColor second)
{
    auto &p = c.painter();
    c.disc({foot.x() + size * 0.15, foot.y()}, size * 0.5, size * 0.07, QColor(60, 40, 20, 80));
    p.setPen(QPen(QColor(240, 240, 235), size * 0.03));
    p.drawLine(foot, QPointF(foot.x(), foot.y() - size));
    p.setPen(Qt::NoPen);
    const QRectF cap(foot.x() - size * 0.6, foot.y() - size * 1.12, size * 1.2, size * 0.72);
    for (int segment = 0; segment < 6; ++segment) {
        const double left = -0.6 + 0.2 * segment;
        QPainterPath path(QPointF(foot.x(), cap.top()));
        path.quadTo(foot.x() + size * left * 0.95, cap.top() + size * 0.06, foot.x() + size * left, cap.center().y());
        path.quadTo(foot.x() + size * (left + 0.1), cap.center().y() + size * 0.06, foot.x() + size * (left + 0.2), cap.center().y());
        path.quadTo(foot.x() + size * (left + 0.2) * 0.95, cap.top() + size * 0.06, foot.x(), cap.top());
        p.setBrush(segment % 2 ? first : second);
        p.drawPath(path);
    }
}

void beachChair(DemoCanvas &c, QPointF foot, double size, QColor stripe)
{
    auto &p = c.painter();
    c.disc({foot.x() + size * 0.1, foot.y()}, size * 0.62, size * 0.08, QColor(60, 40, 20, 90));
    QPainterPath hood(QPointF(foot.x() - size * 0.5, foot.y()));
    hood.lineTo(foot.x() - size * 0.5, foot.y() - size * 0.75);
    hood.quadTo(foot.x() - size * 0.48, foot.y() - size * 1.2, foot.x(), foot.y() - size * 1.22);
    hood.quadTo(foot.x() + size * 0.48, foot.y() - size * 1.2, foot.x() + size * 0.5, foot.y() - size * 0.75);
    hood.lineTo(foot.x() + size * 0.5, foot.y());
    hood.closeSubpath();
    p.setBrush(QColor(242, 238, 228));
    p.drawPath(hood);
    p.save();
    QPainterPath inner;
    inner.addRoundedRect(QRectF(foot.x() - size * 0.4, foot.y() - size * 1.08, size * 0.8, size * 0.98), size * 0.2, size * 0.2);
    p.setClipPath(inner);
    p.setBrush(QColor(250, 250, 246));
    p.drawRect(inner.boundingRect());
    p.setBrush(stripe);
    for (int line = 0; line < 5; ++line)
        p.drawRect(QRectF(foot.x() - size * (0.38 - line * 0.17), foot.y() - size * 1.1, size * 0.085, size * 1.1));
    QLinearGradient shade(0, foot.y() - size * 1.1, 0, foot.y() - size * 0.5);
    shade.setColorAt(0, QColor(0, 0, 0, 130));
    shade.setColorAt(1, QColor(0, 0, 0, 0));
    p.setBrush(shade);
    p.drawRect(inner.boundingRect());
    p.restore();
    p.setBrush(QColor(120, 84, 52));
    p.drawRect(QRectF(foot.x() - size * 0.5, foot.y() - size * 0.38, size * 1.0, size * 0.06));
    p.drawRect(QRectF(foot.x() - size * 0.5, foot.y() - size * 0.1, size * 1.0, size * 0.1));
}

void seaSunset(DemoCanvas &c)
{
    auto &r = c.random();
    const double horizon = c.height() * r.uniform(0.42, 0.62);
    QPointF sun;
    QColor light;
    eveningSky(c, horizon, sun, light);
    c.water(horizon, c.height(), mix(light, QColor(60, 60, 90), 0.35), QColor(26, 38, 66), light);
    c.glitter(sun.x(), horizon, c.height(), light, 420);
    if (r.chance(0.5))
        sailBoat(c, {c.width() * r.uniform(0.15, 0.85), horizon + c.unit() * 2.0}, c.unit() * r.uniform(8, 16), QColor(60, 40, 60),
            QColor(30, 24, 40));
    if (r.chance(0.5)) {
        for (int post = 0; post < 9; ++post) {
            const double depth = post / 8.0;
            const double x = c.width() * (0.12 + 0.05 * post) - c.unit() * 10 * depth;
            c.painter().setBrush(QColor(28, 22, 26));
            c.painter().drawRoundedRect(QRectF(x, horizon + c.unit() * (2 + 28 * depth * depth) - c.unit() * (3 + 9 * depth),
                                            c.unit() * (0.6 + 2.2 * depth), c.unit() * (4 + 11 * depth)),
                c.unit() * 0.3, c.unit() * 0.3);
        }
    }
    for (int bird = r.integer(0, 5); bird > 0; --bird)
        c.gull({c.width() * r.uniform(0.1, 0.9), horizon * r.uniform(0.15, 0.7)}, c.unit() * r.uniform(2, 5), QColor(40, 30, 50));
}

void beach(DemoCanvas &c)
{
    auto &r = c.random();
    const double horizon = c.height() * r.uniform(0.3, 0.45);
    const double shore = c.height() * r.uniform(0.54, 0.68);
    daySky(c, horizon);
    c.water(horizon, shore + c.unit() * 2, r.pick({QColor(60, 120, 160), QColor(70, 140, 150)}),
        r.pick({QColor(120, 190, 190), QColor(96, 160, 184)}), QColor(255, 255, 255));
    sand(c, shore);
    surf(c, shore);
    for (int bather = r.integer(2, 6); bather > 0; --bather) {
        const double depth = r.uniform(0.1, 0.9);
        c.person(
            {c.width() * r.uniform(0.05, 0.95), shore + (c.height() - shore) * 0.5 * depth}, c.unit() * (7 + 10 * depth), clothes(r), SKIN);
    }
    for (int shade = r.integer(1, 3); shade > 0; --shade)
        parasol(c, {c.width() * r.uniform(0.1, 0.9), c.height() * r.uniform(0.76, 0.96)}, c.unit() * r.uniform(18, 32), clothes(r),
            QColor(250, 246, 236));
}

void beachChairs(DemoCanvas &c)
{
    auto &r = c.random();
    const double horizon = c.height() * r.uniform(0.28, 0.42);
    const double shore = horizon + c.height() * r.uniform(0.07, 0.14);
    daySky(c, horizon);
    c.water(horizon, shore + c.unit(), QColor(70, 128, 160), QColor(130, 186, 190), QColor(255, 255, 255));
    sand(c, shore);
    surf(c, shore);
    const int rows = r.integer(2, 3);
    const double start = r.uniform(-0.05, 0.15);
    const QColor color = clothes(r);
    for (int row = 0; row < rows; ++row) {
        const double size = c.unit() * (9 + row * r.uniform(8, 11));
        for (int chair = 0; chair < 5 - row; ++chair) {
            beachChair(c,
                {c.width() * (start + 0.08 * row) + chair * size * 1.7 + size * 0.5,
                    shore + c.unit() * 8 + (c.height() - shore) * 0.3 * row + c.unit() * 3},
                size, chair % 2 ? color : clothes(r));
        }
    }
}

void sailing(DemoCanvas &c)
{
    auto &r = c.random();
    const double horizon = c.height() * r.uniform(0.4, 0.6);
    daySky(c, horizon);
    if (r.chance(0.6))
        c.ridge(horizon, c.unit() * 2, 4, QColor(96, 124, 120), QColor(120, 140, 130));
    c.water(horizon, c.height(), QColor(66, 110, 150), r.pick({QColor(24, 68, 104), QColor(30, 92, 112)}), QColor(230, 244, 255));
    const int boats = r.integer(1, 5);
    for (int boat = 0; boat < boats; ++boat) {
        const double depth = (boat + r.uniform(0.2, 0.8)) / boats;
        sailBoat(c, {c.width() * r.uniform(0.12, 0.88), horizon + (c.height() - horizon) * 0.6 * depth * depth + c.unit()},
            c.unit() * (7 + 44 * depth * depth),
            r.pick({QColor(250, 250, 248), QColor(240, 232, 214), QColor(214, 70, 60), QColor(70, 120, 190)}),
            r.pick({QColor(240, 240, 240), QColor(40, 56, 90), QColor(130, 40, 36)}));
    }
}

void lighthouse(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double horizon = c.height() * r.uniform(0.58, 0.7);
    QPointF sun;
    QColor light;
    const bool evening = r.chance(0.35);
    if (evening)
        eveningSky(c, horizon, sun, light);
    else
        daySky(c, horizon);
    c.water(horizon, c.height(), evening ? QColor(150, 110, 110) : QColor(80, 130, 160), evening ? QColor(40, 44, 70) : QColor(40, 90, 120),
        QColor(255, 250, 240));
    const bool left = r.chance(0.5);
    const double x = c.width() * (left ? r.uniform(0.2, 0.4) : r.uniform(0.6, 0.8));
    QPainterPath cliff(QPointF(left ? -10 : c.width() + 10, c.height() + 10));
    cliff.lineTo(left ? -10 : c.width() + 10, horizon - c.unit() * 6);
    cliff.cubicTo(x, horizon - c.unit() * 12, x + (left ? 1 : -1) * c.unit() * 18, horizon - c.unit() * 2,
        x + (left ? 1 : -1) * c.unit() * r.uniform(28, 44), c.height() + 10);
    cliff.closeSubpath();
    QLinearGradient ground(0, horizon - c.unit() * 10, 0, c.height());
    ground.setColorAt(0, evening ? QColor(70, 84, 54) : QColor(112, 150, 72));
    ground.setColorAt(0.5, evening ? QColor(90, 78, 60) : QColor(190, 170, 120));
    ground.setColorAt(1, QColor(120, 100, 74));
    p.setBrush(ground);
    p.drawPath(cliff);
    const double foot = horizon - c.unit() * 5;
    const double tall = c.height() * r.uniform(0.34, 0.48);
    const double wide = tall * 0.17;
    const QColor stripe = r.pick({QColor(196, 40, 40), QColor(30, 60, 110), QColor(150, 50, 36)});
    const int bands = r.integer(4, 7);
    for (int band = 0; band < bands; ++band) {
        const double low = double(band) / bands;
        const double high = double(band + 1) / bands;
        const auto half = [wide](double at) { return wide * (0.62 - 0.26 * at); };
        QLinearGradient round(x - wide * 0.6, 0, x + wide * 0.6, 0);
        const QColor base = band % 2 ? QColor(246, 244, 238) : stripe;
        round.setColorAt(0, base.darker(150));
        round.setColorAt(0.35, base);
        round.setColorAt(1, base.darker(190));
        p.setBrush(round);
        p.drawPolygon(QPolygonF{{x - half(low), foot - tall * low}, {x + half(low), foot - tall * low},
            {x + half(high), foot - tall * high}, {x - half(high), foot - tall * high}});
    }
    p.setBrush(QColor(40, 44, 50));
    p.drawRect(QRectF(x - wide * 0.5, foot - tall * 1.02, wide, tall * 0.025));
    p.setBrush(QColor(255, 236, 160));
    p.drawRect(QRectF(x - wide * 0.26, foot - tall * 1.11, wide * 0.52, tall * 0.09));
    p.setBrush(stripe.darker(130));
    p.drawPolygon(QPolygonF{{x - wide * 0.4, foot - tall * 1.11}, {x + wide * 0.4, foot - tall * 1.11}, {x, foot - tall * 1.24}});
    if (evening)
        c.glow({x, foot - tall * 1.06}, c.unit() * 22, QColor(255, 240, 180, 200));
    c.grass(horizon - c.unit() * 4, c.height() + c.unit() * 6, 260, QColor(60, 90, 40), QColor(150, 170, 90), c.unit() * 5);
}

void dunes(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double horizon = c.height() * r.uniform(0.36, 0.5);
    daySky(c, horizon + c.unit() * 6);
    c.water(horizon, horizon + c.unit() * 10, QColor(80, 130, 164), QColor(110, 170, 180), QColor(255, 255, 255));
    for (int hill = 0; hill < 3; ++hill) {
        const QColor top = mix(QColor(196, 196, 140), QColor(232, 212, 166), hill / 2.0);
        c.ridge(horizon + c.unit() * (7 + hill * 15), c.unit() * (7 + 2 * hill), 2.2 + hill * 0.3, top, top.darker(125));
        c.grass(horizon + c.unit() * (6 + hill * 15), horizon + c.unit() * (24 + hill * 17), 150 + 120 * hill, QColor(92, 108, 56),
            QColor(186, 186, 110), c.unit() * (3 + 3 * hill));
    }
    const double lean = r.uniform(-0.2, 0.2);
    QPainterPath path(QPointF(c.width() * 0.36, c.height() + 10));
    path.cubicTo(
        c.width() * (0.4 + lean), c.height() * 0.8, c.width() * (0.6 - lean), c.height() * 0.7, c.width() * 0.5, horizon + c.unit() * 7);
    path.lineTo(c.width() * 0.515, horizon + c.unit() * 7);
    path.cubicTo(
        c.width() * (0.66 - lean), c.height() * 0.72, c.width() * (0.6 + lean), c.height() * 0.8, c.width() * 0.7, c.height() + 10);
    p.setBrush(QColor(240, 222, 180));
    p.drawPath(path);
    if (r.chance(0.6)) {
        for (int post = 0; post < 10; ++post) {
            const double depth = post / 9.0;
            const double x = c.width() * (0.53 + 0.25 * depth * depth);
            p.setBrush(QColor(120, 100, 78));
            p.drawRect(QRectF(x, horizon + c.unit() * 6 + (c.height() - horizon) * 0.75 * depth * depth - c.unit() * (2 + 12 * depth),
                c.unit() * (0.3 + 1.2 * depth), c.unit() * (3 + 13 * depth)));
        }
    }
    if (r.chance(0.5))
        c.person({c.width() * 0.52, c.height() * 0.74}, c.unit() * 16, clothes(r), SKIN);
}

void houseFront(DemoCanvas &c, QRectF body, QColor wall, QColor roof, bool timbered, bool lit)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double gable = body.width() * r.uniform(0.4, 0.75);
    p.setBrush(roof);
    p.drawPolygon(QPolygonF{{body.left() - body.width() * 0.05, body.top()}, {body.right() + body.width() * 0.05, body.top()},
        {body.center().x(), body.top() - gable}});
    QLinearGradient shade(body.topLeft(), body.topRight());
    shade.setColorAt(0, wall);
    shade.setColorAt(1, wall.darker(114));
    p.setBrush(shade);
    p.drawRect(body);
    p.drawPolygon(QPolygonF{{body.left() + body.width() * 0.06, body.top() + 1}, {body.right() - body.width() * 0.06, body.top() + 1},
        {body.center().x(), body.top() - gable * 0.86}});
    const int floors = std::max(2, int(body.height() / (body.width() * 0.42)));
    const double storey = body.height() / floors;
    for (int level = 0; level < floors; ++level) {
        const int windows = 3;
        for (int window = 0; window < windows; ++window) {
            const QRectF glass(body.left() + body.width() * (0.1 + 0.3 * window), body.top() + storey * (level + 0.22), body.width() * 0.17,
                storey * 0.52);
            if (level == floors - 1 && window == 1) {
                p.setBrush(QColor(84, 54, 34));
                p.drawRect(QRectF(glass.left(), body.bottom() - storey * 0.78, glass.width(), storey * 0.78));
                continue;
            }
            p.setBrush(QColor(245, 245, 240));
            p.drawRect(glass.adjusted(-glass.width() * 0.12, -glass.width() * 0.12, glass.width() * 0.12, glass.width() * 0.12));
            p.setBrush(lit && r.chance(0.6) ? QColor(255, 214, 130) : QColor(64, 84, 104));
            p.drawRect(glass);
            p.setBrush(QColor(245, 245, 240));
            p.drawRect(QRectF(glass.center().x() - glass.width() * 0.04, glass.top(), glass.width() * 0.08, glass.height()));
            if (!timbered && r.chance(0.5)) {
                for (int bloom = 0; bloom < 9; ++bloom)
                    c.disc({r.uniform(glass.left(), glass.right()), glass.bottom() + r.uniform(0.0, glass.width() * 0.25)},
                        glass.width() * 0.09, glass.width() * 0.09,
                        r.pick({QColor(210, 40, 60), QColor(230, 90, 130), QColor(60, 120, 50)}));
            }
        }
    }
    if (timbered) {
        p.setPen(QPen(QColor(72, 48, 34), body.width() * 0.035));
        for (int level = 0; level <= floors; ++level)
            p.drawLine(QPointF(body.left(), body.top() + storey * level), QPointF(body.right(), body.top() + storey * level));
        for (const double x : {0.02, 0.34, 0.64, 0.98})
            p.drawLine(
                QPointF(body.left() + body.width() * x, body.top()), QPointF(body.left() + body.width() * x, body.bottom() - storey * 0.1));
        p.drawLine(QPointF(body.left() + body.width() * 0.02, body.top() + storey),
            QPointF(body.left() + body.width() * 0.34, body.top() + storey * 0.76));
        p.drawLine(QPointF(body.right() - body.width() * 0.02, body.top() + storey),
            QPointF(body.right() - body.width() * 0.34, body.top() + storey * 0.76));
        p.drawLine(QPointF(body.center().x(), body.top() - gable * 0.8), QPointF(body.center().x(), body.top()));
        p.setPen(Qt::NoPen);
    }
}

void harbour(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double quay = c.height() * r.uniform(0.56, 0.66);
    daySky(c, quay);
    double x = -c.unit() * 4;
    while (x < c.width()) {
        const double wide = c.unit() * r.uniform(13, 20);
        const double tall = c.unit() * r.uniform(22, 36);
        houseFront(c, QRectF(x, quay - tall, wide, tall),
            r.pick({QColor(232, 196, 130), QColor(198, 92, 70), QColor(236, 232, 220), QColor(150, 176, 190), QColor(210, 150, 120),
                QColor(170, 184, 140)}),
            r.pick({QColor(150, 62, 44), QColor(110, 60, 50), QColor(90, 84, 84)}), false, false);
        x += wide;
    }
    // The water shows the houses upside down, darker and shaken.
    p.save();
    const QImage above = static_cast<QImage *>(p.device())
                             ->copy(0, int(quay - (c.height() - quay)), int(c.width()), int(c.height() - quay))
                             .mirrored(false, true);
    p.drawImage(QPointF(0, quay), above);
    p.restore();
    p.fillRect(QRectF(0, quay, c.width(), c.height() - quay), QColor(24, 60, 84, 150));
    for (int ripple = 0; ripple < 700; ++ripple) {
        const double depth = r.uniform(0.0, 1.0);
        c.disc({r.uniform(0.0, c.width()), quay + (c.height() - quay) * depth}, c.unit() * (0.8 + 5 * depth),
            c.unit() * (0.08 + 0.3 * depth), r.chance(0.5) ? QColor(210, 228, 236, 46) : QColor(8, 26, 44, 60));
    }
    p.fillRect(QRectF(0, quay - c.unit(), c.width(), c.unit() * 2.4), QColor(110, 104, 96));
    for (int boat = r.integer(2, 4); boat > 0; --boat)
        sailBoat(c, {c.width() * r.uniform(0.1, 0.9), quay + c.unit() * r.uniform(8, 24)}, c.unit() * r.uniform(18, 34),
            QColor(246, 244, 238), clothes(r).darker(130));
}

void pier(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double horizon = c.height() * r.uniform(0.42, 0.52);
    QPointF sun;
    QColor light;
    const bool evening = r.chance(0.5);
    if (evening)
        eveningSky(c, horizon, sun, light);
    else
        daySky(c, horizon);
    c.water(horizon, c.height(), evening ? mix(light, QColor(90, 90, 110), 0.5) : QColor(90, 140, 168),
        evening ? QColor(44, 52, 80) : QColor(54, 112, 134), QColor(255, 248, 236));
    const double vanish = c.width() * r.uniform(0.35, 0.65);
    const double left = c.width() * r.uniform(-0.1, 0.15);
    const double right = c.width() * r.uniform(0.85, 1.1);
    const int planks = 46;
    for (int plank = 0; plank < planks; ++plank) {
        const double near = std::pow(double(plank + 1) / planks, 2.4);
        const double far = std::pow(double(plank) / planks, 2.4);
        const auto edge = [&](double share, double side) {
            return QPointF(vanish + (side - vanish) * share, horizon + c.unit() * 1.5 + (c.height() - horizon) * share);
        };
        p.setBrush(mix(QColor(150, 128, 104), QColor(104, 84, 66), r.uniform(0.0, 1.0)));
        p.drawPolygon(QPolygonF{edge(far, left), edge(far, right), edge(near * 0.992, right), edge(near * 0.992, left)});
    }
    p.setPen(QPen(QColor(238, 236, 228), c.unit() * 0.5));
    for (const double side : {left, right}) {
        for (int post = 1; post <= 12; ++post) {
            const double share = std::pow(post / 11.0, 2.4);
            const QPointF foot(vanish + (side - vanish) * share, horizon + c.unit() * 1.5 + (c.height() - horizon) * share);
            const double tall = c.height() * 0.34 * share + c.unit() * 0.6;
            p.setPen(QPen(QColor(238, 236, 228), c.unit() * (0.2 + 1.8 * share)));
            p.drawLine(foot, QPointF(foot.x(), foot.y() - tall));
        }
        p.drawLine(QPointF(vanish, horizon + c.unit()),
            QPointF(vanish + (side - vanish) * 1.3, horizon + c.unit() + (c.height() * 0.66 - horizon) * 1.3));
    }
    p.setPen(Qt::NoPen);
    for (int walker = r.integer(1, 4); walker > 0; --walker) {
        const double share = r.uniform(0.12, 0.5);
        c.person({vanish + (r.uniform(left, right) - vanish) * share * 0.7, horizon + (c.height() - horizon) * share},
            c.height() * 0.62 * share + c.unit() * 2, clothes(r), SKIN);
    }
}

void shells(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    sand(c, -c.height() * 0.2);
    const int count = r.integer(5, 14);
    for (int shell = 0; shell < count; ++shell) {
        const QPointF at(c.width() * r.uniform(0.08, 0.92), c.height() * r.uniform(0.12, 0.9));
        const double size = c.unit() * r.uniform(6, 17);
        p.save();
        p.translate(at);
        p.rotate(r.uniform(0.0, 360.0));
        c.glow({size * 0.06, size * 0.1}, size * 1.15, QColor(60, 40, 20, 130));
        const QColor base = r.pick({QColor(244, 226, 206), QColor(226, 168, 140), QColor(250, 244, 236), QColor(196, 150, 150),
            QColor(150, 130, 120), QColor(232, 190, 120)});
        if (r.chance(0.75)) {
            QPainterPath fan(QPointF(0, size * 0.75));
            const int ribs = 11;
            for (int rib = 0; rib <= ribs; ++rib) {
                const double angle = 3.4 + (6.02 - 3.4) * rib / ribs;
                const double reach = size * (rib % 2 ? 0.97 : 0.9);
                fan.lineTo(std::cos(angle) * reach, std::sin(angle) * reach * 0.95);
            }
            fan.closeSubpath();
            QRadialGradient body(QPointF(0, size * 0.7), size * 1.7);
            body.setColorAt(0, base.darker(130));
            body.setColorAt(0.5, base);
            body.setColorAt(0.72, base.darker(115));
            body.setColorAt(1, base.lighter(110));
            p.setBrush(body);
            p.drawPath(fan);
            p.setPen(QPen(base.darker(140), size * 0.025));
            for (int rib = 0; rib <= ribs; ++rib) {
                const double angle = 3.4 + (6.02 - 3.4) * rib / ribs;
                p.drawLine(QPointF(0, size * 0.72), QPointF(std::cos(angle) * size * 0.9, std::sin(angle) * size * 0.86));
            }
            p.setPen(Qt::NoPen);
        } else {
            QRadialGradient stone(QPointF(-size * 0.2, -size * 0.2), size);
            stone.setColorAt(0, base.lighter(108));
            stone.setColorAt(1, base.darker(150));
            p.setBrush(stone);
            p.drawEllipse(QPointF(0, 0), size * 0.8, size * 0.6);
        }
        p.restore();
    }
}

void kite(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double horizon = c.height() * r.uniform(0.74, 0.84);
    daySky(c, horizon);
    c.water(horizon, horizon + c.unit() * 6, QColor(80, 136, 166), QColor(120, 180, 190), QColor(255, 255, 255));
    sand(c, horizon + c.unit() * 5);
    const int kites = r.integer(1, 4);
    for (int flyer = 0; flyer < kites; ++flyer) {
        const QPointF at(c.width() * r.uniform(0.12, 0.88), horizon * r.uniform(0.12, 0.6));
        const double size = c.unit() * r.uniform(8, flyer == 0 ? 26 : 12);
        const QPointF holder(c.width() * r.uniform(0.2, 0.8), c.height() * r.uniform(0.88, 0.96));
        QPainterPath line(holder);
        line.quadTo(QPointF((holder.x() + at.x()) / 2, holder.y() - c.unit() * 8), at);
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(QColor(250, 250, 250, 170), std::max(1.5, c.unit() * 0.12)));
        p.drawPath(line);
        QPainterPath tail(at + QPointF(0, size * 0.8));
        for (int bend = 1; bend < 9; ++bend)
            tail.lineTo(at.x() + std::sin(bend * 1.3) * size * 0.2 + size * 0.05 * bend, at.y() + size * (0.8 + 0.16 * bend));
        p.setPen(QPen(clothes(r), c.unit() * 0.5));
        p.drawPath(tail);
        p.setPen(Qt::NoPen);
        p.save();
        p.translate(at);
        p.rotate(r.uniform(-25, 25));
        const QPointF points[] = {{0, -size * 0.7}, {size * 0.55, -size * 0.1}, {0, size * 0.85}, {-size * 0.55, -size * 0.1}};
        for (int side = 0; side < 4; ++side) {
            p.setBrush(clothes(r));
            p.drawPolygon(QPolygonF{points[side], points[(side + 1) % 4], QPointF(0, -size * 0.1)});
        }
        p.restore();
        c.person(holder, c.unit() * r.uniform(10, 16), clothes(r), SKIN);
    }
}

void sunsetFriends(DemoCanvas &c)
{
    auto &r = c.random();
    const double horizon = c.height() * r.uniform(0.5, 0.6);
    QPointF sun;
    QColor light;
    eveningSky(c, horizon, sun, light);
    c.water(horizon, c.height() * 0.8, mix(light, QColor(70, 60, 90), 0.4), QColor(60, 50, 76), light);
    c.glitter(sun.x(), horizon, c.height() * 0.8, light, 260);
    c.verticalGradient(QRectF(0, c.height() * 0.78, c.width(), c.height() * 0.23), {{0, QColor(78, 58, 58)}, {1, QColor(34, 26, 34)}});
    const int people = r.integer(2, 6);
    const double place = c.width() * r.uniform(0.2, 0.5);
    for (int friendly = 0; friendly < people; ++friendly) {
        const double size = c.unit() * r.uniform(22, 34);
        c.person({place + friendly * c.unit() * r.uniform(10, 15), c.height() * r.uniform(0.86, 0.93)}, size, QColor(30, 22, 34),
            QColor(36, 26, 36));
    }
}

void sandCastle(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double horizon = c.height() * r.uniform(0.2, 0.32);
    daySky(c, horizon);
    c.water(horizon, c.height() * 0.42, QColor(74, 130, 160), QColor(130, 190, 194), QColor(255, 255, 255));
    sand(c, c.height() * 0.4);
    surf(c, c.height() * 0.4);
    const double center = c.width() * r.uniform(0.38, 0.62);
    const QColor wet(196, 160, 108);
    c.disc({center, c.height() * 0.86}, c.unit() * 44, c.unit() * 9, QColor(120, 92, 60, 130));
    const int towers = r.integer(3, 5);
    for (int tower = 0; tower < towers; ++tower) {
        const double x = center + (tower - (towers - 1) / 2.0) * c.unit() * r.uniform(13, 17);
        const double tall = c.unit() * r.uniform(18, 38);
        const double half = c.unit() * r.uniform(5, 7.5);
        const double foot = c.height() * 0.86;
        QLinearGradient round(x - half, 0, x + half, 0);
        round.setColorAt(0, wet.lighter(112));
        round.setColorAt(0.4, wet);
        round.setColorAt(1, wet.darker(165));
        p.setBrush(round);
        p.drawPolygon(
            QPolygonF{{x - half * 1.25, foot}, {x + half * 1.25, foot}, {x + half * 0.85, foot - tall}, {x - half * 0.85, foot - tall}});
        for (int notch = 0; notch < 4; ++notch)
            p.drawRect(QRectF(x - half * 0.9 + notch * half * 0.5, foot - tall - c.unit() * 2, half * 0.3, c.unit() * 2.2));
        if (r.chance(0.6)) {
            p.setPen(QPen(QColor(120, 90, 60), c.unit() * 0.4));
            p.drawLine(QPointF(x, foot - tall), QPointF(x, foot - tall - c.unit() * 11));
            p.setPen(Qt::NoPen);
            p.setBrush(clothes(r));
            p.drawPolygon(QPolygonF{
                {x, foot - tall - c.unit() * 11}, {x + c.unit() * 7, foot - tall - c.unit() * 9}, {x, foot - tall - c.unit() * 7}});
        }
    }
    p.setBrush(wet.darker(118));
    p.drawRoundedRect(QRectF(center - c.unit() * 30, c.height() * 0.78, c.unit() * 60, c.unit() * 10), c.unit() * 3, c.unit() * 3);
    const double bucket = c.width() * (center > c.width() / 2 ? 0.14 : 0.86);
    p.setBrush(clothes(r));
    p.drawPolygon(QPolygonF{{bucket - c.unit() * 7, c.height() * 0.74}, {bucket + c.unit() * 7, c.height() * 0.74},
        {bucket + c.unit() * 5, c.height() * 0.9}, {bucket - c.unit() * 5, c.height() * 0.9}});
}

void gulls(DemoCanvas &c)
{
    auto &r = c.random();
    const double horizon = c.height() * r.uniform(0.8, 0.9);
    daySky(c, horizon);
    c.water(horizon, c.height(), QColor(80, 130, 160), QColor(50, 100, 130), QColor(255, 255, 255));
    for (int bird = r.integer(5, 14); bird > 0; --bird) {
        const double size = c.unit() * r.uniform(8, 46);
        const QPointF at(c.width() * r.uniform(0.05, 0.95), horizon * r.uniform(0.12, 0.9));
        c.disc({at.x(), at.y() + size * 0.03}, size * 0.11, size * 0.06, QColor(248, 248, 248));
        c.gull(at, size, QColor(214, 220, 228));
        c.gull(at + QPointF(0, size * 0.02), size * 0.8, QColor(250, 250, 250));
        c.disc({at.x() + size * 0.1, at.y() + size * 0.02}, size * 0.04, size * 0.02, QColor(240, 180, 50));
    }
}

void plate(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const QColor wood = r.pick({QColor(150, 108, 72), QColor(96, 66, 46), QColor(190, 160, 120)});
    for (int board = 0; board < 7; ++board) {
        const QRectF area(0, c.height() * board / 7.0, c.width(), c.height() / 7.0);
        p.fillRect(area, mix(wood, wood.darker(125), r.uniform(0.0, 1.0)));
        p.fillRect(QRectF(0, area.top(), c.width(), c.unit() * 0.5), QColor(30, 20, 10, 140));
    }
    c.mottle(QRectF(0, 0, c.width(), c.height()), c.unit() * 0.9, 22, 46);
    const QPointF at(c.width() * r.uniform(0.4, 0.6), c.height() * r.uniform(0.45, 0.55));
    const double size = c.unit() * r.uniform(32, 40);
    c.disc(at + QPointF(size * 0.05, size * 0.07), size * 1.02, size * 1.02, QColor(0, 0, 0, 90));
    c.disc(at, size, size, QColor(244, 244, 240));
    c.disc(at, size * 0.74, size * 0.74, QColor(228, 228, 224));
    c.disc(at, size * 0.72, size * 0.72, QColor(248, 248, 246));
    const int dish = r.integer(0, 2);
    if (dish == 0) {
        p.setBrush(QColor(206, 150, 70));
        QPainterPath fish(at + QPointF(-size * 0.55, 0));
        fish.cubicTo(at + QPointF(-size * 0.2, -size * 0.35), at + QPointF(size * 0.3, -size * 0.25), at + QPointF(size * 0.45, 0));
        fish.lineTo(at + QPointF(size * 0.66, -size * 0.16));
        fish.lineTo(at + QPointF(size * 0.66, size * 0.16));
        fish.lineTo(at + QPointF(size * 0.45, 0));
        fish.cubicTo(at + QPointF(size * 0.3, size * 0.25), at + QPointF(-size * 0.2, size * 0.3), at + QPointF(-size * 0.55, 0));
        p.drawPath(fish);
        for (int spot = 0; spot < 90; ++spot)
            c.disc(at + QPointF(r.uniform(-0.4, 0.4) * size, r.uniform(-0.15, 0.15) * size), size * 0.02, size * 0.015,
                QColor(130, 80, 30, 120));
        for (int potato = 0; potato < 7; ++potato)
            c.disc(
                at + QPointF(r.uniform(-0.35, 0.35) * size, r.uniform(0.34, 0.5) * size), size * 0.1, size * 0.08, QColor(240, 208, 110));
        for (int leaf = 0; leaf < 30; ++leaf)
            c.disc(at + QPointF(r.uniform(-0.3, 0.3) * size, r.uniform(-0.55, -0.4) * size), size * 0.06, size * 0.03, QColor(70, 140, 60));
        c.disc(at + QPointF(size * 0.3, -size * 0.42), size * 0.12, size * 0.12, QColor(250, 224, 80));
    } else if (dish == 1) {
        const QColor scoops[] = {QColor(246, 226, 170), QColor(112, 66, 42), QColor(232, 130, 150), QColor(170, 210, 150)};
        for (int scoop = 0; scoop < 4; ++scoop) {
            const QPointF spot = at + QPointF(std::cos(scoop * 1.57 + 0.6) * size * 0.27, std::sin(scoop * 1.57 + 0.6) * size * 0.27);
            QRadialGradient ball(spot - QPointF(size * 0.1, size * 0.1), size * 0.36);
            ball.setColorAt(0, scoops[scoop].lighter(116));
            ball.setColorAt(1, scoops[scoop].darker(130));
            p.setBrush(ball);
            p.drawEllipse(spot, size * 0.28, size * 0.28);
        }
        for (int berry = 0; berry < 14; ++berry)
            c.disc(at + QPointF(r.uniform(-0.5, 0.5) * size, r.uniform(-0.5, 0.5) * size), size * 0.06, size * 0.06,
                r.pick({QColor(190, 20, 50), QColor(60, 50, 110)}));
    } else {
        for (int piece = 0; piece < 8; ++piece) {
            p.setBrush(piece % 2 ? QColor(214, 160, 80) : QColor(224, 172, 92));
            p.drawPie(QRectF(at.x() - size * 0.62, at.y() - size * 0.62, size * 1.24, size * 1.24), piece * 45 * 16, 43 * 16);
        }
        c.disc(at, size * 0.54, size * 0.54, QColor(200, 60, 36, 210));
        for (int topping = 0; topping < 60; ++topping)
            c.disc(at + QPointF(r.uniform(-0.36, 0.36) * size, r.uniform(-0.36, 0.36) * size), size * 0.06, size * 0.05,
                r.pick({QColor(250, 240, 210), QColor(70, 130, 50), QColor(180, 40, 30), QColor(50, 40, 40)}));
    }
    c.disc({c.width() * 0.9, c.height() * 0.2}, c.unit() * 10, c.unit() * 10, QColor(240, 240, 236));
    c.disc({c.width() * 0.9, c.height() * 0.2}, c.unit() * 8, c.unit() * 8, QColor(92, 56, 32));
    p.setPen(QPen(QColor(206, 208, 212), c.unit() * 1.4, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(at.x() - size * 1.25, at.y() - size * 0.6), QPointF(at.x() - size * 1.25, at.y() + size * 0.7));
    p.setPen(Qt::NoPen);
}

void mountains(DemoCanvas &c)
{
    auto &r = c.random();
    const double horizon = c.height() * r.uniform(0.36, 0.5);
    QPointF sun;
    QColor light(220, 228, 236);
    if (r.chance(0.4))
        eveningSky(c, c.height() * 0.6, sun, light);
    else
        daySky(c, c.height() * 0.6);
    const QColor near = r.pick({QColor(30, 62, 46), QColor(44, 70, 40), QColor(96, 70, 36), QColor(28, 52, 60)});
    const int layers = r.integer(4, 6);
    for (int layer = 0; layer < layers; ++layer) {
        const double depth = double(layer) / (layers - 1);
        const QColor color = mix(mix(light, QColor(120, 140, 170), 0.6), near, depth);
        c.ridge(horizon + c.height() * 0.42 * depth, c.unit() * r.uniform(7, 17) * (1.2 - 0.4 * depth), r.uniform(1.4, 3.4), color,
            mix(color, light, 0.45 * (1 - depth)));
    }
    for (int tree = 0; tree < 22; ++tree)
        c.fir({c.width() * r.uniform(-0.02, 1.02), c.height() * r.uniform(0.93, 1.06)}, c.unit() * r.uniform(12, 30), near.darker(125),
            false);
}

void forest(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const QColor haze = r.pick({QColor(206, 220, 160), QColor(226, 212, 150), QColor(186, 206, 196), QColor(232, 190, 120)});
    const QColor leaf = r.pick({QColor(64, 110, 40), QColor(90, 120, 36), QColor(196, 120, 30), QColor(50, 96, 60)});
    c.verticalGradient(QRectF(0, 0, c.width(), c.height()),
        {{0, mix(haze, leaf, 0.35)}, {0.55, haze}, {0.62, mix(haze, leaf, 0.5)}, {1, leaf.darker(150)}});
    for (int layer = 0; layer < 4; ++layer) {
        const double depth = (layer + 1) / 4.0;
        for (int trunk = 0; trunk < 15 - layer * 3; ++trunk) {
            const double x = c.width() * r.uniform(-0.02, 1.02);
            const double wide = c.unit() * (0.7 + 4.6 * depth * depth) * r.uniform(0.7, 1.3);
            const QColor bark = mix(haze, r.pick({QColor(62, 48, 38), QColor(84, 70, 56), QColor(50, 46, 42)}), 0.25 + 0.75 * depth);
            QLinearGradient round(x - wide / 2, 0, x + wide / 2, 0);
            round.setColorAt(0, bark.darker(130));
            round.setColorAt(0.3, bark.lighter(118));
            round.setColorAt(1, bark.darker(150));
            p.setBrush(round);
            p.drawRect(QRectF(x - wide / 2, -10, wide, c.height() * (0.6 + 0.3 * depth) + 10));
        }
        for (int blob = 0; blob < 240; ++blob)
            c.disc({c.width() * r.uniform(0, 1), c.height() * r.uniform(-0.05, 0.42 - 0.06 * layer)}, c.unit() * r.uniform(0.6, 2.4),
                c.unit() * r.uniform(0.5, 1.6),
                withAlpha(mix(haze, mix(leaf, leaf.lighter(150), r.uniform(0, 1)), 0.3 + 0.7 * depth), 170));
    }
    const double source = c.width() * r.uniform(0.1, 0.9);
    for (int ray = 0; ray < 9; ++ray) {
        const double reach = source + c.width() * r.uniform(-0.9, 0.9);
        p.setBrush(QColor(255, 250, 214, r.integer(14, 34)));
        p.drawPolygon(QPolygonF{{source - c.unit() * 2, -c.unit() * 20}, {source + c.unit() * 2, -c.unit() * 20},
            {reach + c.unit() * 8, c.height()}, {reach - c.unit() * 6, c.height()}});
    }
    c.mottle(QRectF(0, c.height() * 0.62, c.width(), c.height() * 0.38), c.unit() * 4, 3, 60);
    c.grass(c.height() * 0.72, c.height() * 1.05, 420, leaf.darker(140), leaf.lighter(150), c.unit() * 6);
}

void forestPath(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double horizon = c.height() * r.uniform(0.46, 0.58);
    daySky(c, horizon);
    const QColor meadow = r.pick({QColor(110, 140, 60), QColor(150, 140, 70), QColor(90, 124, 66)});
    c.ridge(horizon, c.unit() * 5, 3, QColor(70, 96, 80), meadow);
    c.verticalGradient(QRectF(0, horizon + c.unit() * 3, c.width(), c.height()), {{0, meadow}, {1, meadow.darker(135)}});
    c.mottle(QRectF(0, horizon + c.unit() * 3, c.width(), c.height() - horizon), c.unit() * 4, 3, 50);
    const double bend = r.uniform(-0.3, 0.3);
    QPainterPath path(QPointF(c.width() * 0.26, c.height() + 10));
    path.cubicTo(
        c.width() * (0.4 + bend), c.height() * 0.8, c.width() * (0.45 - bend), c.height() * 0.7, c.width() * 0.5, horizon + c.unit() * 2);
    path.lineTo(c.width() * 0.52, horizon + c.unit() * 2);
    path.cubicTo(
        c.width() * (0.54 - bend), c.height() * 0.7, c.width() * (0.62 + bend), c.height() * 0.8, c.width() * 0.76, c.height() + 10);
    p.setBrush(QColor(196, 176, 140));
    p.drawPath(path);
    const bool autumn = r.chance(0.7);
    for (int tree = 0; tree < 12; ++tree) {
        const double depth = tree / 11.0;
        const bool left = tree % 2;
        const double x = c.width() * (left ? r.uniform(-0.05, 0.44 - 0.3 * depth) : r.uniform(0.58 + 0.3 * depth, 1.05));
        const QPointF foot(x, horizon + c.unit() * 3 + (c.height() - horizon) * 0.8 * depth * depth);
        if (autumn)
            c.leafTree(foot, c.unit() * (14 + 62 * depth), r.pick({QColor(150, 60, 20), QColor(120, 80, 20), QColor(90, 90, 30)}),
                r.pick({QColor(240, 170, 40), QColor(230, 110, 40), QColor(250, 210, 90)}));
        else
            c.fir(foot, c.unit() * (18 + 70 * depth), QColor(42, 84, 52), false);
    }
    for (int hiker = r.integer(0, 3); hiker > 0; --hiker)
        c.person({c.width() * r.uniform(0.46, 0.56), c.height() * r.uniform(0.72, 0.84)}, c.unit() * r.uniform(12, 18), clothes(r), SKIN);
}

void lake(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double shore = c.height() * r.uniform(0.5, 0.58);
    daySky(c, shore);
    const QColor far = r.pick({QColor(90, 116, 140), QColor(110, 124, 120), QColor(130, 110, 96)});
    c.ridge(shore - c.unit() * 6, c.unit() * r.uniform(10, 22), r.uniform(1.2, 2.4), far, mix(far, QColor(200, 210, 216), 0.4));
    const bool autumn = r.chance(0.5);
    for (int tree = 0; tree < 46; ++tree) {
        const QPointF foot(c.width() * (tree + r.uniform(-0.6, 0.6)) / 45.0, shore + c.unit() * r.uniform(0, 1.5));
        if (autumn && tree % 3 == 0)
            c.leafTree(foot, c.unit() * r.uniform(10, 17), QColor(140, 70, 20), QColor(240, 170, 60));
        else
            c.fir(foot, c.unit() * r.uniform(9, 20), r.pick({QColor(34, 70, 50), QColor(48, 84, 52)}), false);
    }
    const QImage above = static_cast<QImage *>(p.device())
                             ->copy(0, int(shore - (c.height() - shore)), int(c.width()), int(c.height() - shore))
                             .mirrored(false, true);
    p.drawImage(QPointF(0, shore), above);
    p.fillRect(QRectF(0, shore, c.width(), c.height() - shore), QColor(20, 50, 70, 90));
    for (int ripple = 0; ripple < 420; ++ripple) {
        const double depth = r.uniform(0.0, 1.0);
        c.disc({r.uniform(0.0, c.width()), shore + (c.height() - shore) * depth}, c.unit() * (2 + 8 * depth),
            c.unit() * (0.05 + 0.2 * depth), QColor(230, 240, 246, 40));
    }
    if (r.chance(0.5)) {
        const double x = c.width() * r.uniform(0.3, 0.7);
        p.setBrush(QColor(120, 92, 66));
        p.drawPolygon(QPolygonF{{x - c.unit() * 14, c.height() + 5}, {x + c.unit() * 14, c.height() + 5},
            {x + c.unit() * 3, c.height() * 0.76}, {x - c.unit() * 3, c.height() * 0.76}});
    }
}

void railway(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double horizon = c.height() * r.uniform(0.5, 0.6);
    daySky(c, horizon);
    c.ridge(horizon - c.unit() * 4, c.unit() * 10, 2, QColor(80, 106, 110), QColor(100, 130, 90));
    c.verticalGradient(QRectF(0, horizon, c.width(), c.height()), {{0, QColor(126, 150, 76)}, {1, QColor(86, 106, 50)}});
    for (int tree = 0; tree < 20; ++tree)
        c.fir(
            {c.width() * r.uniform(0, 1), horizon + c.unit() * r.uniform(-2, 5)}, c.unit() * r.uniform(12, 26), QColor(40, 76, 50), false);
    const double rail = c.height() * r.uniform(0.76, 0.84);
    p.fillRect(QRectF(0, rail, c.width(), c.unit() * 3), QColor(120, 112, 104));
    p.fillRect(QRectF(0, rail - c.unit() * 0.6, c.width(), c.unit()), QColor(70, 60, 56));
    const double front = c.width() * r.uniform(0.12, 0.3);
    const double u = c.unit();
    for (int puff = 0; puff < 40; ++puff) {
        const double away = puff / 40.0;
        c.disc(
            {front + u * 4 + away * c.width() * 0.7 + r.uniform(-2, 2) * u, rail - u * (24 + 26 * std::sqrt(away)) + r.uniform(-3, 3) * u},
            u * (3 + 9 * away), u * (2.5 + 6 * away), QColor(246, 246, 246, int(130 * (1 - away) + 20)));
    }
    p.setBrush(QColor(32, 32, 36));
    p.drawRoundedRect(QRectF(front, rail - u * 14, u * 24, u * 9), u * 2, u * 2);
    p.drawRect(QRectF(front + u * 3, rail - u * 21, u * 3.4, u * 8));
    p.drawRect(QRectF(front + u * 22, rail - u * 19, u * 11, u * 14));
    p.setBrush(QColor(170, 30, 30));
    p.drawRect(QRectF(front - u, rail - u * 5.6, u * 35, u * 2.2));
    for (int wheel = 0; wheel < 5; ++wheel) {
        c.disc({front + u * (4 + 6 * wheel), rail - u * 2.6}, u * 2.6, u * 2.6, QColor(150, 26, 26));
        c.disc({front + u * (4 + 6 * wheel), rail - u * 2.6}, u * 1.1, u * 1.1, QColor(40, 36, 36));
    }
    const QColor coach = r.pick({QColor(140, 44, 36), QColor(46, 80, 60), QColor(208, 176, 110)});
    for (double x = front + u * 36; x < c.width(); x += u * 31) {
        p.setBrush(coach);
        p.drawRoundedRect(QRectF(x, rail - u * 16, u * 29, u * 12), u, u);
        p.setBrush(QColor(250, 236, 190));
        for (int window = 0; window < 5; ++window)
            p.drawRect(QRectF(x + u * (2 + 5.4 * window), rail - u * 13.6, u * 3.6, u * 4));
        for (int wheel = 0; wheel < 4; ++wheel)
            c.disc({x + u * (4 + 7 * wheel), rail - u * 2}, u * 2, u * 2, QColor(44, 40, 40));
    }
    c.grass(rail + u * 3, c.height() + u * 4, 500, QColor(60, 84, 34), QColor(170, 180, 90), u * 5);
}

void houses(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double street = c.height() * r.uniform(0.72, 0.82);
    const bool evening = r.chance(0.3);
    QPointF sun;
    QColor light;
    if (evening)
        eveningSky(c, street, sun, light);
    else
        daySky(c, street);
    double x = -c.unit() * r.uniform(2, 12);
    while (x < c.width()) {
        const double wide = c.unit() * r.uniform(22, 32);
        const double tall = c.unit() * r.uniform(30, 46);
        houseFront(c, QRectF(x, street - tall, wide, tall),
            r.pick({QColor(244, 236, 214), QColor(236, 214, 160), QColor(222, 190, 160), QColor(214, 222, 210)}),
            r.pick({QColor(140, 66, 46), QColor(120, 74, 56), QColor(96, 60, 52)}), true, evening);
        x += wide + c.unit() * 0.4;
    }
    c.verticalGradient(QRectF(0, street, c.width(), c.height() - street), {{0, QColor(120, 114, 106)}, {1, QColor(150, 144, 134)}});
    for (int row = 0; row < 9; ++row) {
        const double depth = std::pow((row + 1) / 9.0, 1.6);
        const double y = street + (c.height() - street) * depth;
        for (double stone = r.uniform(-5, 0) * c.unit(); stone < c.width(); stone += c.unit() * (2 + 7 * depth)) {
            p.setBrush(withAlpha(r.pick({QColor(160, 152, 140), QColor(134, 126, 118), QColor(176, 170, 160)}), 200));
            p.drawRoundedRect(QRectF(stone, y - c.unit() * 3 * depth, c.unit() * (1.7 + 6 * depth), c.unit() * 2.7 * depth), c.unit() * 0.5,
                c.unit() * 0.5);
        }
    }
    for (int walker = r.integer(1, 5); walker > 0; --walker)
        c.person({c.width() * r.uniform(0.08, 0.92), street + (c.height() - street) * r.uniform(0.2, 0.8)}, c.unit() * r.uniform(14, 20),
            clothes(r), SKIN);
}

void stream(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const QColor leaf = r.pick({QColor(60, 104, 46), QColor(150, 110, 40), QColor(70, 120, 70)});
    c.verticalGradient(QRectF(0, 0, c.width(), c.height()), {{0, leaf.lighter(150)}, {0.4, leaf}, {1, leaf.darker(180)}});
    for (int blob = 0; blob < 900; ++blob)
        c.disc({c.width() * r.uniform(0, 1), c.height() * r.uniform(0, 0.5)}, c.unit() * r.uniform(0.8, 3), c.unit() * r.uniform(0.6, 2),
            withAlpha(mix(leaf.darker(150), leaf.lighter(170), r.uniform(0, 1)), 190));
    const double fall = c.width() * r.uniform(0.38, 0.62);
    QPainterPath bed(QPointF(fall - c.unit() * 6, c.height() * 0.28));
    bed.cubicTo(fall - c.unit() * 16, c.height() * 0.55, c.width() * 0.2, c.height() * 0.7, c.width() * 0.02, c.height() + 10);
    bed.lineTo(c.width() * 0.9, c.height() + 10);
    bed.cubicTo(c.width() * 0.75, c.height() * 0.7, fall + c.unit() * 10, c.height() * 0.55, fall + c.unit() * 6, c.height() * 0.28);
    QLinearGradient flow(0, c.height() * 0.28, 0, c.height());
    flow.setColorAt(0, QColor(240, 246, 248));
    flow.setColorAt(0.45, QColor(150, 176, 176));
    flow.setColorAt(1, QColor(60, 84, 78));
    p.setBrush(flow);
    p.drawPath(bed);
    p.save();
    p.setClipPath(bed);
    for (int thread = 0; thread < 420; ++thread) {
        const double depth = std::sqrt(r.uniform(0.0, 1.0));
        const double y = c.height() * (0.28 + 0.72 * depth);
        const double across = r.uniform(-1, 1);
        const double x = fall + across * (c.unit() * 6 + c.width() * 0.42 * depth * depth);
        p.setPen(QPen(QColor(255, 255, 255, r.integer(40, 130)), c.unit() * r.uniform(0.15, 0.6), Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(x, y), QPointF(x + across * c.unit() * 5 * depth, y + c.unit() * (5 - 3 * depth)));
    }
    p.setPen(Qt::NoPen);
    p.restore();
    for (int rock = 0; rock < 26; ++rock) {
        const double depth = (rock + 1) / 26.0;
        const bool side = rock % 3;
        const QPointF at(
            side ? fall + (r.chance(0.5) ? -1 : 1) * (c.unit() * 9 + c.width() * 0.44 * depth * depth) : c.width() * r.uniform(0.25, 0.75),
            c.height() * (0.3 + 0.7 * depth));
        const double size = c.unit() * (1.6 + 8 * depth) * r.uniform(0.5, 1.2);
        const QColor stone = r.pick({QColor(96, 96, 92), QColor(120, 112, 100), QColor(74, 84, 66)});
        QLinearGradient round(at.x() - size, at.y() - size, at.x() + size, at.y() + size);
        round.setColorAt(0, stone.lighter(135));
        round.setColorAt(1, stone.darker(190));
        p.setBrush(round);
        p.drawEllipse(at, size * 1.3, size * 0.8);
    }
}

void flower(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const QColor back = r.pick({QColor(70, 110, 60), QColor(110, 130, 70), QColor(60, 90, 90), QColor(120, 100, 80)});
    c.verticalGradient(QRectF(0, 0, c.width(), c.height()), {{0, back.lighter(140)}, {1, back.darker(150)}});
    c.bokeh(60, {back.lighter(170), QColor(240, 230, 150), back.lighter(130), QColor(200, 220, 160)}, 3, 13);
    const int blooms = r.integer(1, 3);
    const QColor petal = r.pick({QColor(240, 240, 244), QColor(236, 90, 130), QColor(250, 190, 50), QColor(160, 90, 190),
        QColor(220, 50, 40), QColor(250, 140, 60), QColor(110, 130, 220)});
    for (int bloom = 0; bloom < blooms; ++bloom) {
        const double size = c.unit() * r.uniform(18, 34) * (bloom == 0 ? 1.2 : 0.7);
        const QPointF at(c.width() * r.uniform(0.25, 0.75), c.height() * r.uniform(0.25, 0.6));
        QPainterPath stem(at);
        stem.quadTo(at.x() + c.unit() * r.uniform(-12, 12), at.y() + (c.height() - at.y()) / 2, at.x() + c.unit() * r.uniform(-16, 16),
            c.height() + 10);
        p.setBrush(Qt::NoBrush);
        p.setPen(QPen(QColor(70, 120, 46), size * 0.09, Qt::SolidLine, Qt::RoundCap));
        p.drawPath(stem);
        p.setPen(Qt::NoPen);
        const int petals = r.integer(6, 17);
        for (int ring = 0; ring < 2; ++ring) {
            for (int leaf = 0; leaf < petals; ++leaf) {
                p.save();
                p.translate(at);
                p.rotate(360.0 * leaf / petals + ring * 180.0 / petals + r.uniform(-4, 4));
                const double reach = size * (ring ? 0.78 : 1.0) * r.uniform(0.92, 1.05);
                const double wide = reach * std::min(0.5, 3.6 / petals);
                QPainterPath shape(QPointF(0, 0));
                shape.cubicTo(reach * 0.3, -wide, reach * 0.9, -wide, reach, 0);
                shape.cubicTo(reach * 0.9, wide, reach * 0.3, wide, 0, 0);
                QLinearGradient depth(0, 0, reach, 0);
                depth.setColorAt(0, petal.darker(150));
                depth.setColorAt(0.5, petal);
                depth.setColorAt(1, petal.lighter(112));
                p.setBrush(depth);
                p.drawPath(shape);
                p.setPen(QPen(withAlpha(petal.darker(140), 110), size * 0.012));
                p.drawLine(QPointF(0, 0), QPointF(reach * 0.85, 0));
                p.setPen(Qt::NoPen);
                p.restore();
            }
        }
        c.disc(at, size * 0.25, size * 0.25, QColor(170, 110, 20));
        for (int dot = 0; dot < 150; ++dot) {
            const double angle = dot * 2.39996;
            const double radius = size * 0.24 * std::sqrt(dot / 150.0);
            c.disc(at + QPointF(std::cos(angle) * radius, std::sin(angle) * radius), size * 0.016, size * 0.016,
                mix(QColor(250, 210, 70), QColor(130, 80, 20), r.uniform(0, 0.8)));
        }
    }
}

void meadow(DemoCanvas &c)
{
    auto &r = c.random();
    const double horizon = c.height() * r.uniform(0.3, 0.5);
    daySky(c, horizon);
    c.ridge(horizon, c.unit() * 6, 2.4, QColor(90, 120, 96), QColor(120, 150, 84));
    c.verticalGradient(QRectF(0, horizon + c.unit() * 5, c.width(), c.height()), {{0, QColor(128, 160, 70)}, {1, QColor(70, 104, 40)}});
    if (r.chance(0.7))
        c.leafTree({c.width() * r.uniform(0.15, 0.85), horizon + c.unit() * 14}, c.unit() * r.uniform(26, 46), QColor(40, 74, 30),
            QColor(140, 176, 70));
    c.grass(horizon + c.unit() * 8, c.height() + c.unit() * 8, 900, QColor(56, 92, 36), QColor(160, 184, 84), c.unit() * 9);
    const QColor bloom = r.pick({QColor(214, 40, 40), QColor(90, 110, 210), QColor(250, 230, 90), QColor(240, 240, 240)});
    for (int flowerHead = 0; flowerHead < 260; ++flowerHead) {
        const double depth = flowerHead / 260.0;
        const double size = c.unit() * (0.3 + 1.7 * depth);
        const QPointF at(c.width() * r.uniform(0, 1), horizon + c.unit() * 8 + (c.height() - horizon) * depth * 0.95);
        for (int leaf = 0; leaf < 4; ++leaf)
            c.disc(at + QPointF(std::cos(leaf * 1.57) * size * 0.5, std::sin(leaf * 1.57) * size * 0.4), size * 0.55, size * 0.42,
                leaf % 2 ? bloom : bloom.darker(115));
        c.disc(at, size * 0.2, size * 0.2, QColor(50, 40, 30));
    }
}

void rapeField(DemoCanvas &c)
{
    auto &r = c.random();
    const double horizon = c.height() * r.uniform(0.45, 0.62);
    daySky(c, horizon);
    c.ridge(horizon, c.unit() * 4, 2, QColor(96, 126, 90), QColor(150, 160, 60));
    c.verticalGradient(QRectF(0, horizon + c.unit() * 2, c.width(), c.height()), {{0, QColor(236, 214, 60)}, {1, QColor(206, 176, 20)}});
    for (int dot = 0; dot < 2600; ++dot) {
        const double depth = std::pow(dot / 2600.0, 1.4);
        c.disc({c.width() * r.uniform(0, 1), horizon + c.unit() * 2 + (c.height() - horizon) * depth}, c.unit() * (0.2 + 1.3 * depth),
            c.unit() * (0.15 + 0.9 * depth),
            r.pick({QColor(250, 230, 70, 200), QColor(255, 240, 120, 200), QColor(110, 130, 40, 180), QColor(220, 190, 30, 200)}));
    }
    for (int tree = r.integer(1, 4); tree > 0; --tree)
        c.leafTree({c.width() * r.uniform(0.08, 0.92), horizon + c.unit() * r.uniform(2, 6)}, c.unit() * r.uniform(16, 34),
            QColor(40, 80, 30), QColor(130, 176, 70));
}

void balloons(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double horizon = c.height() * r.uniform(0.76, 0.86);
    daySky(c, horizon);
    c.ridge(horizon, c.unit() * 4, 3, QColor(100, 130, 110), QColor(90, 120, 60));
    for (int balloon = r.integer(3, 7); balloon > 0; --balloon) {
        const double size = c.unit() * r.uniform(7, balloon == 1 ? 24 : 14);
        const QPointF at(c.width() * r.uniform(0.1, 0.9), horizon * r.uniform(0.15, 0.75));
        const QColor first = clothes(r);
        const QColor second = r.chance(0.5) ? QColor(250, 240, 220) : clothes(r);
        for (int stripe = 0; stripe < 7; ++stripe) {
            const double half = size * (1.0 - stripe / 3.5);
            p.setBrush(stripe % 2 ? first : second);
            QPainterPath shape(QPointF(at.x(), at.y() - size));
            shape.cubicTo(
                at.x() + half * 1.35, at.y() - size, at.x() + half * 1.2, at.y() + size * 0.3, at.x() + half * 0.22, at.y() + size);
            shape.lineTo(at.x() - size * 0.22, at.y() + size);
            shape.cubicTo(at.x() - size * 1.2, at.y() + size * 0.3, at.x() - size * 1.35, at.y() - size, at.x(), at.y() - size);
            p.drawPath(shape);
        }
        p.setBrush(QColor(110, 76, 46));
        p.drawRect(QRectF(at.x() - size * 0.16, at.y() + size * 1.22, size * 0.32, size * 0.24));
        p.setPen(QPen(QColor(60, 50, 40), std::max(1.0, size * 0.02)));
        p.drawLine(QPointF(at.x() - size * 0.2, at.y() + size), QPointF(at.x() - size * 0.15, at.y() + size * 1.24));
        p.drawLine(QPointF(at.x() + size * 0.2, at.y() + size), QPointF(at.x() + size * 0.15, at.y() + size * 1.24));
        p.setPen(Qt::NoPen);
    }
}

void room(DemoCanvas &c, double table, QColor wall)
{
    c.verticalGradient(QRectF(0, 0, c.width(), table), {{0, wall.darker(125)}, {1, wall}});
    c.bokeh(34, {QColor(255, 220, 140), wall.lighter(120), QColor(255, 190, 110)}, 2, 8);
}

void garland(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    QPainterPath line(QPointF(-10, c.height() * 0.06));
    const double sag = c.height() * r.uniform(0.16, 0.26);
    line.quadTo(c.width() / 2, sag * 2, c.width() + 10, c.height() * 0.05);
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(QColor(90, 70, 60), c.unit() * 0.3));
    p.drawPath(line);
    p.setPen(Qt::NoPen);
    for (int flag = 0; flag < 13; ++flag) {
        const QPointF at = line.pointAtPercent((flag + 0.5) / 13.0);
        p.setBrush(clothes(r));
        p.drawPolygon(QPolygonF{at + QPointF(-c.unit() * 3, 0), at + QPointF(c.unit() * 3, 0), at + QPointF(0, c.unit() * 7)});
    }
}

void cake(DemoCanvas &c, QPointF foot, double size, int candles)
{
    auto &r = c.random();
    auto &p = c.painter();
    const QColor cream = r.pick({QColor(250, 236, 214), QColor(246, 200, 206), QColor(110, 66, 44), QColor(220, 236, 240)});
    c.disc(foot, size * 1.15, size * 0.2, QColor(240, 240, 240));
    const int tiers = r.integer(1, 2);
    double top = foot.y();
    for (int tier = 0; tier <= tiers; ++tier) {
        const double half = size * (0.95 - 0.3 * tier);
        const double tall = size * 0.36;
        QLinearGradient round(foot.x() - half, 0, foot.x() + half, 0);
        round.setColorAt(0, cream.darker(118));
        round.setColorAt(0.4, cream.lighter(104));
        round.setColorAt(1, cream.darker(140));
        p.setBrush(round);
        p.drawEllipse(QPointF(foot.x(), top), half, half * 0.16);
        p.drawRect(QRectF(foot.x() - half, top - tall, half * 2, tall));
        c.disc({foot.x(), top - tall}, half, half * 0.16, cream.lighter(108));
        for (int dot = 0; dot < 17; ++dot)
            c.disc({foot.x() - half + half * 2 * dot / 16.0, top - tall + half * 0.12 * std::sin(dot / 16.0 * 3.1416)}, size * 0.06,
                size * 0.05, r.pick({QColor(200, 30, 60), QColor(255, 255, 255)}));
        top -= tall;
    }
    for (int candle = 0; candle < candles; ++candle) {
        const double x = foot.x() + size * 0.5 * ((candle + 0.5) / candles * 2 - 1) * (tiers == 1 ? 1.1 : 0.62);
        p.setBrush(clothes(r));
        p.drawRect(QRectF(x - size * 0.02, top - size * 0.28, size * 0.04, size * 0.28));
        c.glow({x, top - size * 0.34}, size * 0.28, QColor(255, 214, 110, 210));
        c.disc({x, top - size * 0.34}, size * 0.025, size * 0.06, QColor(255, 250, 220));
    }
}

void birthdayCake(DemoCanvas &c)
{
    auto &r = c.random();
    const double table = c.height() * r.uniform(0.6, 0.7);
    room(c, table, r.pick({QColor(120, 84, 70), QColor(90, 96, 110), QColor(140, 110, 80)}));
    garland(c);
    c.verticalGradient(QRectF(0, table, c.width(), c.height() - table), {{0, QColor(226, 220, 210)}, {1, QColor(180, 170, 160)}});
    c.mottle(QRectF(0, table, c.width(), c.height() - table), c.unit() * 6, 2, 24);
    cake(c, {c.width() * r.uniform(0.36, 0.64), c.height() * r.uniform(0.8, 0.88)}, c.unit() * r.uniform(24, 34), r.integer(4, 8));
    for (int glass = r.integer(1, 4); glass > 0; --glass) {
        const QPointF at(c.width() * (r.chance(0.5) ? r.uniform(0.05, 0.2) : r.uniform(0.8, 0.95)), c.height() * r.uniform(0.78, 0.95));
        c.painter().setBrush(QColor(255, 240, 200, 150));
        c.painter().drawPolygon(QPolygonF{at + QPointF(-c.unit() * 3, -c.unit() * 18), at + QPointF(c.unit() * 3, -c.unit() * 18),
            at + QPointF(c.unit() * 0.6, -c.unit() * 7), at + QPointF(-c.unit() * 0.6, -c.unit() * 7)});
        c.painter().drawRect(QRectF(at.x() - c.unit() * 0.3, at.y() - c.unit() * 7, c.unit() * 0.6, c.unit() * 7));
        c.disc(at, c.unit() * 3, c.unit() * 0.6, QColor(255, 255, 255, 150));
    }
}

void birthdayTable(DemoCanvas &c)
{
    auto &r = c.random();
    const QColor cloth = r.pick({QColor(238, 232, 222), QColor(200, 216, 226), QColor(226, 200, 190), QColor(120, 150, 130)});
    c.painter().fillRect(QRectF(0, 0, c.width(), c.height()), cloth);
    for (double stripe = 0; stripe < std::max(c.width(), c.height()); stripe += c.unit() * 9) {
        c.painter().fillRect(QRectF(stripe, 0, c.unit() * 3.5, c.height()), withAlpha(cloth.darker(130), 50));
        c.painter().fillRect(QRectF(0, stripe, c.width(), c.unit() * 3.5), withAlpha(cloth.darker(130), 50));
    }
    c.mottle(QRectF(0, 0, c.width(), c.height()), c.unit() * 9, 1, 22);
    for (int place = 0; place < 5; ++place) {
        const QPointF at(c.width() * (0.14 + 0.36 * (place % 3)) + c.unit() * r.uniform(-4, 4),
            c.height() * (place < 3 ? 0.24 : 0.76) + c.unit() * r.uniform(-4, 4));
        const double size = c.unit() * 14;
        c.disc(at + QPointF(c.unit(), c.unit() * 1.4), size, size, QColor(0, 0, 0, 70));
        c.disc(at, size, size, QColor(250, 250, 248));
        c.disc(at, size * 0.7, size * 0.7, QColor(236, 236, 234));
        const QColor slice = r.pick({QColor(150, 90, 50), QColor(240, 210, 150), QColor(200, 60, 80)});
        c.painter().setBrush(slice);
        c.painter().drawPie(
            QRectF(at.x() - size * 0.6, at.y() - size * 0.6, size * 1.2, size * 1.2), r.integer(0, 359) * 16, r.integer(45, 90) * 16);
        const QPointF cup = at + QPointF(size * 1.25, -size * 0.5);
        c.disc(cup + QPointF(c.unit() * 0.5, c.unit()), size * 0.5, size * 0.5, QColor(0, 0, 0, 60));
        c.disc(cup, size * 0.5, size * 0.5, QColor(250, 250, 248));
        c.disc(cup, size * 0.38, size * 0.38, QColor(96, 60, 36));
    }
    const QPointF vase(c.width() * r.uniform(0.45, 0.55), c.height() * 0.5);
    for (int bloom = 0; bloom < 46; ++bloom) {
        const double angle = r.uniform(0, 6.283);
        const double away = std::sqrt(r.uniform(0, 1)) * c.unit() * 15;
        const QPointF at = vase + QPointF(std::cos(angle) * away, std::sin(angle) * away);
        const QColor color
            = r.pick({QColor(230, 80, 120), QColor(250, 210, 90), QColor(250, 250, 250), QColor(80, 140, 60), QColor(190, 110, 200)});
        for (int leaf = 0; leaf < 6; ++leaf)
            c.disc(at + QPointF(std::cos(leaf * 1.05) * c.unit() * 1.5, std::sin(leaf * 1.05) * c.unit() * 1.5), c.unit() * 1.3,
                c.unit() * 1.3, leaf % 2 ? color : color.darker(112));
        c.disc(at, c.unit() * 0.9, c.unit() * 0.9, QColor(250, 220, 110));
    }
}

void party(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double floor = c.height() * r.uniform(0.78, 0.86);
    room(c, floor, r.pick({QColor(206, 176, 140), QColor(150, 160, 176), QColor(186, 150, 150), QColor(226, 206, 170)}));
    garland(c);
    c.verticalGradient(QRectF(0, floor, c.width(), c.height() - floor), {{0, QColor(120, 84, 56)}, {1, QColor(84, 58, 40)}});
    for (int balloon = r.integer(5, 10); balloon > 0; --balloon) {
        const QPointF at(c.width() * r.uniform(0.04, 0.96), c.height() * r.uniform(0.14, 0.46));
        const double size = c.unit() * r.uniform(5, 9);
        const QColor color = clothes(r);
        p.setPen(QPen(QColor(240, 240, 240, 160), c.unit() * 0.15));
        p.drawLine(at, QPointF(at.x() + c.unit() * r.uniform(-4, 4), at.y() + size * 4));
        p.setPen(Qt::NoPen);
        QRadialGradient round(at - QPointF(size * 0.3, size * 0.4), size * 1.5);
        round.setColorAt(0, color.lighter(170));
        round.setColorAt(0.4, color);
        round.setColorAt(1, color.darker(150));
        p.setBrush(round);
        p.drawEllipse(at, size * 0.85, size);
    }
    const int guests = r.integer(3, 7);
    for (int guest = 0; guest < guests; ++guest)
        c.person({c.width() * (guest + 0.5 + r.uniform(-0.15, 0.15)) / guests, c.height() * r.uniform(0.9, 0.98)},
            c.unit() * r.uniform(38, 54), clothes(r), mix(SKIN, QColor(150, 100, 76), r.uniform(0, 0.4)));
}

void snow(DemoCanvas &c)
{
    auto &r = c.random();
    const double horizon = c.height() * r.uniform(0.4, 0.55);
    QPointF sun;
    QColor light;
    if (r.chance(0.4))
        eveningSky(c, horizon + c.unit() * 10, sun, light);
    else
        daySky(c, horizon + c.unit() * 10);
    c.ridge(horizon, c.unit() * 10, 2.2, QColor(214, 226, 240), QColor(180, 200, 226));
    c.ridge(horizon + c.unit() * 12, c.unit() * 7, 1.8, QColor(236, 242, 250), QColor(206, 220, 238));
    for (int tree = 0; tree < 16; ++tree) {
        const double depth = tree / 15.0;
        c.fir({c.width() * r.uniform(0, 1), horizon + c.unit() * 10 + (c.height() - horizon) * 0.6 * depth},
            c.unit() * (9 + 34 * depth * r.uniform(0.5, 1)), QColor(44, 72, 66), true);
    }
    c.ridge(c.height() * 0.88, c.unit() * 5, 1.4, QColor(246, 250, 255), QColor(200, 214, 236));
    if (r.chance(0.5)) {
        const QPointF at(c.width() * r.uniform(0.2, 0.8), c.height() * 0.88);
        const double size = c.unit() * r.uniform(7, 11);
        for (int ball = 0; ball < 3; ++ball) {
            const QPointF center(at.x(), at.y() - size * (0.6 + 1.45 * ball - 0.14 * ball * ball));
            QRadialGradient round(center - QPointF(size * 0.3, size * 0.3), size * 1.4);
            round.setColorAt(0, QColor(255, 255, 255));
            round.setColorAt(1, QColor(170, 190, 220));
            c.painter().setBrush(round);
            c.painter().drawEllipse(center, size * (1 - 0.24 * ball), size * (1 - 0.24 * ball));
        }
        const QPointF head(at.x(), at.y() - size * 2.94);
        c.disc(head + QPointF(-size * 0.18, -size * 0.1), size * 0.06, size * 0.06, QColor(30, 30, 34));
        c.disc(head + QPointF(size * 0.18, -size * 0.1), size * 0.06, size * 0.06, QColor(30, 30, 34));
        c.painter().setBrush(QColor(240, 130, 40));
        c.painter().drawPolygon(
            QPolygonF{head + QPointF(0, -size * 0.02), head + QPointF(size * 0.6, size * 0.1), head + QPointF(0, size * 0.12)});
        c.painter().setBrush(QColor(30, 32, 40));
        c.painter().drawRect(QRectF(head.x() - size * 0.36, head.y() - size * 1.0, size * 0.72, size * 0.6));
        c.painter().drawRect(QRectF(head.x() - size * 0.56, head.y() - size * 0.46, size * 1.12, size * 0.12));
    }
    for (int flake = r.integer(0, 1) * 500; flake > 0; --flake)
        c.disc({c.width() * r.uniform(0, 1), c.height() * r.uniform(0, 1)}, c.unit() * r.uniform(0.15, 0.6),
            c.unit() * r.uniform(0.15, 0.6), QColor(255, 255, 255, r.integer(90, 220)));
}

void christmasTree(DemoCanvas &c)
{
    auto &r = c.random();
    const double floor = c.height() * 0.86;
    room(c, floor, r.pick({QColor(110, 70, 56), QColor(84, 60, 70), QColor(120, 92, 66)}));
    c.verticalGradient(QRectF(0, floor, c.width(), c.height() - floor), {{0, QColor(96, 62, 42)}, {1, QColor(60, 40, 30)}});
    const QPointF foot(c.width() * r.uniform(0.36, 0.64), c.height() * 0.9);
    const double size = c.height() * 0.8;
    c.fir(foot, size, QColor(36, 84, 48), false);
    for (int light = 0; light < 120; ++light) {
        const double up = std::sqrt(r.uniform(0.0, 0.92));
        const QPointF at(foot.x() + r.uniform(-1, 1) * size * 0.24 * up, foot.y() - size * 0.94 + size * 0.84 * up);
        if (light % 3 == 0)
            c.disc(at, c.unit() * 1.6, c.unit() * 1.6,
                r.pick({QColor(200, 30, 40), QColor(220, 180, 60), QColor(200, 210, 224), QColor(60, 80, 180)}));
        else
            c.glow(at, c.unit() * 2.6, QColor(255, 230, 150, 230));
    }
    c.glow({foot.x(), foot.y() - size * 1.0}, c.unit() * 10, QColor(255, 240, 170, 240));
    for (int parcel = 0; parcel < 7; ++parcel) {
        const double wide = c.unit() * r.uniform(9, 17);
        const double tall = c.unit() * r.uniform(6, 12);
        const QRectF box(foot.x() + c.unit() * r.uniform(-42, 30), c.height() * r.uniform(0.9, 0.97) - tall, wide, tall);
        c.painter().setBrush(clothes(r));
        c.painter().drawRect(box);
        c.painter().setBrush(QColor(250, 230, 160));
        c.painter().drawRect(QRectF(box.center().x() - wide * 0.06, box.top(), wide * 0.12, tall));
        c.painter().drawRect(QRectF(box.left(), box.center().y() - wide * 0.06, wide, wide * 0.12));
    }
}

void nightSky(DemoCanvas &c, QColor low, double horizon)
{
    c.verticalGradient(QRectF(0, 0, c.width(), horizon), {{0, QColor(6, 8, 24)}, {0.6, mix(QColor(10, 14, 40), low, 0.4)}, {1, low}});
}

void skyline(DemoCanvas &c, double ground, double tallest, bool lit)
{
    auto &r = c.random();
    auto &p = c.painter();
    for (int layer = 0; layer < 2; ++layer) {
        double x = -c.unit() * r.uniform(0, 8);
        while (x < c.width()) {
            const double wide = c.unit() * r.uniform(6, 14);
            const double tall = tallest * r.uniform(0.25, layer ? 0.75 : 1.0);
            const QRectF body(x, ground - tall, wide, tall + 2);
            p.setBrush(layer ? QColor(16, 18, 30) : QColor(34, 36, 58));
            p.drawRect(body);
            if (r.chance(0.25))
                p.drawPolygon(
                    QPolygonF{{x, ground - tall}, {x + wide, ground - tall}, {x + wide / 2, ground - tall - wide * r.uniform(0.6, 1.6)}});
            if (lit) {
                const double step = c.unit() * 1.9;
                for (double wy = body.top() + step * 0.6; wy < ground - step; wy += step) {
                    for (double wx = x + step * 0.5; wx < x + wide - step * 0.6; wx += step) {
                        if (r.chance(0.42)) {
                            p.setBrush(withAlpha(
                                r.pick({QColor(255, 214, 130), QColor(255, 240, 190), QColor(190, 214, 255)}), r.integer(110, 240)));
                            p.drawRect(QRectF(wx, wy, step * 0.5, step * 0.6));
                        }
                    }
                }
            }
            x += wide + c.unit() * r.uniform(0, 2);
        }
    }
}

void mirrorBelow(DemoCanvas &c, double shore, QColor tint)
{
    auto &r = c.random();
    const QImage above = static_cast<QImage *>(c.painter().device())
                             ->copy(0, int(shore - (c.height() - shore)), int(c.width()), int(c.height() - shore))
                             .mirrored(false, true);
    c.painter().drawImage(QPointF(0, shore), above);
    c.painter().fillRect(QRectF(0, shore, c.width(), c.height() - shore), tint);
    for (int ripple = 0; ripple < 900; ++ripple) {
        const double depth = r.uniform(0, 1);
        c.disc({c.width() * r.uniform(0, 1), shore + (c.height() - shore) * depth}, c.unit() * (1 + 6 * depth),
            c.unit() * (0.08 + 0.26 * depth), r.chance(0.6) ? QColor(4, 6, 18, 90) : QColor(255, 220, 160, 30));
    }
}

void cityNight(DemoCanvas &c)
{
    auto &r = c.random();
    const double shore = c.height() * r.uniform(0.62, 0.72);
    nightSky(c, r.pick({QColor(70, 50, 90), QColor(30, 60, 110), QColor(130, 70, 70)}), shore);
    if (r.chance(0.6)) {
        const QPointF moon(c.width() * r.uniform(0.12, 0.88), c.height() * r.uniform(0.1, 0.25));
        c.glow(moon, c.unit() * 18, QColor(255, 250, 220, 120));
        c.disc(moon, c.unit() * 3.6, c.unit() * 3.6, QColor(252, 248, 226));
    }
    skyline(c, shore, c.height() * r.uniform(0.34, 0.5), true);
    mirrorBelow(c, shore, QColor(6, 10, 30, 120));
}

void fireworks(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double shore = c.height() * r.uniform(0.8, 0.88);
    nightSky(c, QColor(40, 30, 60), shore);
    for (int burst = r.integer(3, 6); burst > 0; --burst) {
        const QPointF at(c.width() * r.uniform(0.14, 0.86), shore * r.uniform(0.16, 0.62));
        const QColor color = r.pick({QColor(255, 90, 80), QColor(255, 210, 90), QColor(110, 220, 130), QColor(120, 170, 255),
            QColor(230, 120, 255), QColor(255, 250, 230)});
        const double size = c.unit() * r.uniform(13, 30);
        c.glow(at, size * 1.3, withAlpha(color, 90));
        for (int ray = 0; ray < 90; ++ray) {
            const double angle = r.uniform(0, 6.2832);
            const double reach = size * r.uniform(0.5, 1.0);
            const QPointF end(at.x() + std::cos(angle) * reach, at.y() + std::sin(angle) * reach + reach * reach / size * 0.22);
            QPainterPath trail(at + QPointF(std::cos(angle), std::sin(angle)) * reach * 0.18);
            trail.quadTo(at + QPointF(std::cos(angle), std::sin(angle)) * reach * 0.7, end);
            p.setBrush(Qt::NoBrush);
            p.setPen(QPen(withAlpha(mix(color, QColor(255, 255, 255), r.uniform(0, 0.5)), r.integer(110, 230)),
                c.unit() * r.uniform(0.12, 0.35), Qt::SolidLine, Qt::RoundCap));
            p.drawPath(trail);
            p.setPen(Qt::NoPen);
            c.disc(end, c.unit() * 0.4, c.unit() * 0.4, QColor(255, 255, 240, 220));
        }
    }
    skyline(c, shore, c.height() * 0.16, true);
    mirrorBelow(c, shore, QColor(6, 8, 24, 130));
}

void stars(DemoCanvas &c)
{
    auto &r = c.random();
    const double horizon = c.height() * r.uniform(0.72, 0.84);
    nightSky(c, r.pick({QColor(30, 60, 90), QColor(90, 60, 80), QColor(40, 80, 90)}), horizon + c.unit() * 8);
    const double slope = r.uniform(-0.8, 0.8);
    for (int cloud = 0; cloud < 130; ++cloud) {
        const double along = r.uniform(-0.1, 1.1);
        c.glow({c.width() * along, c.height() * (0.35 + slope * (along - 0.5)) + c.unit() * r.uniform(-9, 9)}, c.unit() * r.uniform(3, 12),
            QColor(200, 200, 240, 14));
    }
    for (int star = 0; star < 1500; ++star) {
        const double size = c.unit() * 0.08 + c.unit() * 0.3 * std::pow(r.uniform(0, 1), 7);
        c.disc({c.width() * r.uniform(0, 1), horizon * r.uniform(0, 1)}, size, size,
            QColor(255, 255, r.integer(220, 255), r.integer(90, 255)));
    }
    c.ridge(horizon, c.unit() * 7, 2.6, QColor(10, 16, 24), QColor(4, 8, 12));
    for (int tree = 0; tree < 14; ++tree)
        c.fir({c.width() * r.uniform(0, 1), c.height() * r.uniform(0.9, 1.04)}, c.unit() * r.uniform(12, 36), QColor(8, 14, 16), false);
}

void christmasMarket(DemoCanvas &c)
{
    auto &r = c.random();
    auto &p = c.painter();
    const double ground = c.height() * r.uniform(0.76, 0.84);
    nightSky(c, QColor(70, 50, 70), ground);
    skyline(c, ground, c.height() * 0.5, true);
    c.verticalGradient(QRectF(0, ground, c.width(), c.height() - ground), {{0, QColor(96, 76, 66)}, {1, QColor(56, 46, 48)}});
    const int stalls = r.integer(2, 4);
    for (int stall = 0; stall < stalls; ++stall) {
        const double wide = c.width() / stalls * 0.82;
        const double left = c.width() * stall / stalls + wide * 0.1;
        const double tall = c.unit() * r.uniform(22, 30);
        c.glow({left + wide / 2, ground - tall * 0.4}, wide * 0.8, QColor(255, 200, 110, 150));
        p.setBrush(QColor(104, 66, 40));
        p.drawRect(QRectF(left, ground - tall, wide, tall));
        p.setBrush(QColor(255, 224, 150));
        p.drawRect(QRectF(left + wide * 0.06, ground - tall * 0.82, wide * 0.88, tall * 0.42));
        for (int ware = 0; ware < 24; ++ware)
            c.disc({left + wide * r.uniform(0.1, 0.9), ground - tall * r.uniform(0.44, 0.76)}, c.unit() * r.uniform(0.6, 1.6),
                c.unit() * r.uniform(0.6, 1.6), clothes(r));
        p.setBrush(r.pick({QColor(150, 36, 36), QColor(36, 84, 60), QColor(230, 232, 240)}));
        p.drawPolygon(QPolygonF{{left - wide * 0.08, ground - tall * 0.92}, {left + wide * 1.08, ground - tall * 0.92},
            {left + wide * 0.5, ground - tall * 1.5}});
    }
    for (int line = 0; line < 3; ++line) {
        QPainterPath string(QPointF(0, c.height() * r.uniform(0.06, 0.26)));
        string.quadTo(c.width() / 2, c.height() * r.uniform(0.3, 0.44), c.width(), c.height() * r.uniform(0.06, 0.26));
        for (int lamp = 0; lamp < 26; ++lamp)
            c.glow(string.pointAtPercent((lamp + 0.5) / 26), c.unit() * 2.8, QColor(255, 226, 150, 240));
    }
    for (int guest = r.integer(4, 8); guest > 0; --guest)
        c.person({c.width() * r.uniform(0.04, 0.96), c.height() * r.uniform(0.9, 0.99)}, c.unit() * r.uniform(20, 30),
            clothes(r).darker(170), SKIN.darker(150));
    for (int flake = 0; flake < 220; ++flake)
        c.disc({c.width() * r.uniform(0, 1), c.height() * r.uniform(0, 1)}, c.unit() * r.uniform(0.15, 0.5),
            c.unit() * r.uniform(0.15, 0.5), QColor(255, 255, 255, r.integer(60, 190)));
}
}

void paintScene(DemoScene scene, DemoCanvas &canvas)
{
    switch (scene) {
    case DemoScene::SeaSunset:
        return seaSunset(canvas);
    case DemoScene::Beach:
        return beach(canvas);
    case DemoScene::BeachChairs:
        return beachChairs(canvas);
    case DemoScene::Sailing:
        return sailing(canvas);
    case DemoScene::Lighthouse:
        return lighthouse(canvas);
    case DemoScene::Dunes:
        return dunes(canvas);
    case DemoScene::Harbour:
        return harbour(canvas);
    case DemoScene::Pier:
        return pier(canvas);
    case DemoScene::Shells:
        return shells(canvas);
    case DemoScene::Kite:
        return kite(canvas);
    case DemoScene::SunsetFriends:
        return sunsetFriends(canvas);
    case DemoScene::SandCastle:
        return sandCastle(canvas);
    case DemoScene::Gulls:
        return gulls(canvas);
    case DemoScene::Plate:
        return plate(canvas);
    case DemoScene::Mountains:
        return mountains(canvas);
    case DemoScene::Forest:
        return forest(canvas);
    case DemoScene::ForestPath:
        return forestPath(canvas);
    case DemoScene::Lake:
        return lake(canvas);
    case DemoScene::Railway:
        return railway(canvas);
    case DemoScene::Houses:
        return houses(canvas);
    case DemoScene::Stream:
        return stream(canvas);
    case DemoScene::Flower:
        return flower(canvas);
    case DemoScene::Meadow:
        return meadow(canvas);
    case DemoScene::RapeField:
        return rapeField(canvas);
    case DemoScene::Balloons:
        return balloons(canvas);
    case DemoScene::BirthdayCake:
        return birthdayCake(canvas);
    case DemoScene::BirthdayTable:
        return birthdayTable(canvas);
    case DemoScene::Party:
        return party(canvas);
    case DemoScene::Snow:
        return snow(canvas);
    case DemoScene::ChristmasTree:
        return christmasTree(canvas);
    case DemoScene::ChristmasMarket:
        return christmasMarket(canvas);
    case DemoScene::CityNight:
        return cityNight(canvas);
    case DemoScene::Fireworks:
        return fireworks(canvas);
    case DemoScene::Stars:
        return stars(canvas);
    }
}
