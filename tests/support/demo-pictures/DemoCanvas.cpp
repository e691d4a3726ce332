#include "DemoCanvas.h"

#include <algorithm>
#include <cmath>

#include <QLinearGradient>
#include <QPainterPath>
#include <QRadialGradient>

namespace
{
quint64 scramble(quint64 value)
{
    value += 0x9e3779b97f4a7c15ULL;
    value = (value ^ (value >> 30)) * 0xbf58476d1ce4e5b9ULL;
    value = (value ^ (value >> 27)) * 0x94d049bb133111ebULL;
    return value ^ (value >> 31);
}

double smoothStep(double from, double to, double value)
{
    const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}
}

QColor mix(QColor a, QColor b, double share)
{
    const auto blend = [share](int from, int to) { return std::clamp(int(std::lround(from + (to - from) * share)), 0, 255); };
    return QColor(blend(a.red(), b.red()), blend(a.green(), b.green()), blend(a.blue(), b.blue()), blend(a.alpha(), b.alpha()));
}

QColor withAlpha(QColor color, int alpha)
{
    color.setAlpha(alpha);
    return color;
}

DemoRandom::DemoRandom(quint64 seed)
    : m_state(scramble(seed))
{
}

quint64 DemoRandom::next()
{
    m_state += 0x9e3779b97f4a7c15ULL;
    return scramble(m_state);
}

double DemoRandom::uniform(double low, double high)
{
    return low + (high - low) * (double(next() >> 11) * 0x1.0p-53);
}

int DemoRandom::integer(int low, int high)
{
    return low + int(next() % quint64(high - low + 1));
}

bool DemoRandom::chance(double probability)
{
    return uniform(0.0, 1.0) < probability;
}

QColor DemoRandom::pick(std::initializer_list<QColor> colors)
{
    return *(colors.begin() + integer(0, int(colors.size()) - 1));
}

DemoNoise::DemoNoise(quint64 seed)
    : m_seed(scramble(seed))
{
}

double DemoNoise::lattice(int x, int y) const
{
    return double(scramble(m_seed ^ (quint64(quint32(x)) << 32 | quint32(y))) >> 11) * 0x1.0p-53;
}

double DemoNoise::smooth(double x, double y) const
{
    const double floorX = std::floor(x);
    const double floorY = std::floor(y);
    const int ix = int(floorX);
    const int iy = int(floorY);
    const double fx = smoothStep(0.0, 1.0, x - floorX);
    const double fy = smoothStep(0.0, 1.0, y - floorY);
    const double upper = lattice(ix, iy) * (1.0 - fx) + lattice(ix + 1, iy) * fx;
    const double lower = lattice(ix, iy + 1) * (1.0 - fx) + lattice(ix + 1, iy + 1) * fx;
    return upper * (1.0 - fy) + lower * fy;
}

double DemoNoise::at(double x, double y, int octaves) const
{
    double sum = 0.0;
    double weight = 0.5;
    double total = 0.0;
    for (int octave = 0; octave < octaves; ++octave) {
        sum += weight * smooth(x, y);
        total += weight;
        weight *= 0.5;
        x = x * 2.03 + 17.0;
        y = y * 2.03 + 31.0;
    }
    return sum / total;
}

DemoCanvas::DemoCanvas(QImage &image, quint64 seed)
    : m_painter(&image)
    , m_random(seed)
    , m_width(image.width())
    , m_height(image.height())
    , m_unit(std::min(m_width, m_height) / 100.0)
{
    m_painter.setRenderHint(QPainter::Antialiasing);
    m_painter.setRenderHint(QPainter::SmoothPixmapTransform);
    m_painter.setPen(Qt::NoPen);
}

void DemoCanvas::verticalGradient(const QRectF &area, std::initializer_list<std::pair<double, QColor>> stops)
{
    QLinearGradient gradient(area.topLeft(), area.bottomLeft());
    for (const auto &[position, color] : stops)
        gradient.setColorAt(position, color);
    m_painter.fillRect(area, gradient);
}

void DemoCanvas::glow(QPointF center, double radius, QColor color)
{
    QRadialGradient gradient(center, radius);
    gradient.setColorAt(0.0, color);
    gradient.setColorAt(0.35, withAlpha(color, color.alpha() * 2 / 5));
    gradient.setColorAt(1.0, withAlpha(color, 0));
    m_painter.setBrush(gradient);
    m_painter.drawEllipse(center, radius, radius);
}

void DemoCanvas::disc(QPointF center, double radiusX, double radiusY, QColor color)
{
    m_painter.setBrush(color);
    m_painter.drawEllipse(center, radiusX, radiusY);
}

void DemoCanvas::clouds(double horizon, QColor lit, QColor shade, double cover)
{
    // Painted small and drawn large: clouds are soft, and five octaves for every pixel would take a second.
    const QSize size(int(m_width / 7.0), std::max(2, int(horizon / 7.0)));
    QImage layer(size, QImage::Format_ARGB32);
    const DemoNoise noise(m_random.next());
    const double threshold = 0.72 - 0.42 * cover;
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(layer.scanLine(y));
        const double toHorizon = 1.0 - double(y) / size.height();
        const double depth = 1.0 / (0.16 + toHorizon);
        const double fade = smoothStep(0.0, 0.12, toHorizon);
        for (int x = 0; x < size.width(); ++x) {
            const double u = (double(x) / size.width() - 0.5) * 3.2 * depth * m_width / m_height;
            const double density = noise.at(u + 40.0, depth * 5.0, 5);
            const double alpha = smoothStep(threshold, threshold + 0.22, density) * fade;
            const double thick = smoothStep(threshold + 0.06, threshold + 0.34, density);
            const QColor color = mix(lit, shade, thick * 0.8);
            line[x] = qRgba(color.red(), color.green(), color.blue(), int(alpha * 235.0));
        }
    }
    m_painter.drawImage(QRectF(0.0, 0.0, m_width, horizon), layer);
}

void DemoCanvas::mottle(const QRectF &area, double spot, double stretch, int strength)
{
    const double step = std::clamp(spot / 4.0, 2.0, 16.0);
    const QSize size(std::max(2, int(area.width() / step)), std::max(2, int(area.height() / step)));
    QImage layer(size, QImage::Format_ARGB32);
    const DemoNoise noise(m_random.next());
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(layer.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const double value = noise.at(x * step / (spot * stretch), y * step / spot, 3) - 0.5;
            const int alpha = std::min(255, int(std::abs(value) * 3.0 * strength));
            line[x] = value > 0.0 ? qRgba(255, 255, 255, alpha) : qRgba(0, 0, 0, alpha);
        }
    }
    m_painter.drawImage(area, layer);
}

void DemoCanvas::ridge(double baseline, double amplitude, double roughness, QColor top, QColor bottom)
{
    const DemoNoise noise(m_random.next());
    QPolygonF outline;
    outline << QPointF(-10.0, m_height + 10.0);
    for (double x = -10.0; x <= m_width + 10.0; x += m_unit * 0.4) {
        const double height = noise.at(x / m_width * roughness + 5.0, 0.5, 6) - 0.5;
        outline << QPointF(x, baseline - height * 2.2 * amplitude);
    }
    outline << QPointF(m_width + 10.0, m_height + 10.0);
    QLinearGradient gradient(0.0, baseline - amplitude, 0.0, std::min(m_height, baseline + amplitude * 2.0));
    gradient.setColorAt(0.0, top);
    gradient.setColorAt(1.0, bottom);
    m_painter.setBrush(gradient);
    m_painter.drawPolygon(outline);
}

void DemoCanvas::water(double top, double bottom, QColor far, QColor near, QColor sparkle)
{
    const QRectF area(0.0, top, m_width, bottom - top);
    verticalGradient(area, {{0.0, far}, {0.35, mix(far, near, 0.6)}, {1.0, near}});
    mottle(area, m_unit * 1.6, 7.0, 34);
    for (int wave = 0; wave < 900; ++wave) {
        const double depth = std::pow(m_random.uniform(0.0, 1.0), 1.7);
        const double y = top + (bottom - top) * depth;
        const double length = m_unit * (0.5 + 9.0 * depth) * m_random.uniform(0.4, 1.4);
        const double thickness = m_unit * (0.04 + 0.35 * depth) * m_random.uniform(0.5, 1.2);
        const double x = m_random.uniform(-length, m_width);
        const bool crest = m_random.chance(0.45);
        disc({x + length / 2.0, y}, length / 2.0, thickness / 2.0,
            crest ? withAlpha(sparkle, m_random.integer(25, 90)) : withAlpha(near.darker(150), m_random.integer(25, 70)));
    }
}

void DemoCanvas::glitter(double x, double top, double bottom, QColor color, int strokes)
{
    for (int stroke = 0; stroke < strokes; ++stroke) {
        const double depth = std::pow(m_random.uniform(0.0, 1.0), 1.3);
        const double spread = m_unit * (2.0 + 16.0 * depth);
        const double offset = (m_random.uniform(-1.0, 1.0) + m_random.uniform(-1.0, 1.0)) * spread / 2.0;
        const double length = m_unit * (0.6 + 3.5 * depth) * m_random.uniform(0.5, 1.3);
        disc({x + offset, top + (bottom - top) * depth}, length, m_unit * (0.06 + 0.28 * depth),
            withAlpha(color, m_random.integer(60, 190)));
    }
}

void DemoCanvas::fir(QPointF foot, double size, QColor color, bool snowy)
{
    m_painter.setBrush(QColor(62, 44, 32));
    m_painter.drawRect(QRectF(foot.x() - size * 0.025, foot.y() - size * 0.12, size * 0.05, size * 0.12));
    const int tiers = 9;
    for (int tier = 0; tier < tiers; ++tier) {
        const double low = foot.y() - size * (0.06 + 0.86 * tier / tiers);
        const double high = low - size * 0.2;
        const double half = size * 0.27 * (1.0 - double(tier) / (tiers + 0.6)) * m_random.uniform(0.88, 1.1);
        QPolygonF branch;
        branch << QPointF(foot.x(), high);
        const int teeth = 7;
        for (int tooth = 0; tooth <= teeth; ++tooth) {
            const double across = 1.0 - 2.0 * tooth / teeth;
            branch << QPointF(foot.x() + half * across, low - (tooth % 2 == 0 ? 0.0 : size * 0.025) - std::abs(across) * -size * 0.015);
        }
        m_painter.setBrush(mix(color.darker(130), color, double(tier) / tiers));
        m_painter.drawPolygon(branch);
        if (snowy) {
            QPolygonF cap;
            cap << QPointF(foot.x(), high) << QPointF(foot.x() + half * 0.72, low - size * 0.045)
                << QPointF(foot.x() + half * 0.2, low - size * 0.07) << QPointF(foot.x() - half * 0.3, low - size * 0.05)
                << QPointF(foot.x() - half * 0.75, low - size * 0.035);
            m_painter.setBrush(QColor(240, 246, 252, 225));
            m_painter.drawPolygon(cap);
        }
    }
}

void DemoCanvas::leafTree(QPointF foot, double size, QColor dark, QColor light)
{
    QPainterPath trunk;
    trunk.moveTo(foot.x() - size * 0.045, foot.y());
    trunk.quadTo(foot.x() - size * 0.015, foot.y() - size * 0.2, foot.x() - size * 0.03, foot.y() - size * 0.55);
    trunk.lineTo(foot.x() + size * 0.03, foot.y() - size * 0.55);
    trunk.quadTo(foot.x() + size * 0.015, foot.y() - size * 0.2, foot.x() + size * 0.05, foot.y());
    m_painter.setBrush(QColor(74, 56, 42));
    m_painter.drawPath(trunk);
    const int leaves = 260;
    for (int leaf = 0; leaf < leaves; ++leaf) {
        // From the shaded rear to the lit front, so that the crown looks round.
        const double progress = double(leaf) / leaves;
        const double angle = m_random.uniform(0.0, 6.2832);
        const double radius = std::sqrt(m_random.uniform(0.0, 1.0));
        const QPointF at(foot.x() + std::cos(angle) * radius * size * 0.34 - progress * size * 0.03,
            foot.y() - size * 0.66 + std::sin(angle) * radius * size * 0.3 - progress * size * 0.04);
        const double blob = size * m_random.uniform(0.02, 0.06);
        disc(at, blob * 1.2, blob, withAlpha(mix(dark, light, std::clamp(progress + m_random.uniform(-0.25, 0.2), 0.0, 1.0)), 225));
    }
}

void DemoCanvas::person(QPointF foot, double size, QColor clothes, QColor skin)
{
    disc(foot, size * 0.22, size * 0.035, QColor(0, 0, 0, 60));
    m_painter.setBrush(clothes.darker(160));
    m_painter.drawRoundedRect(QRectF(foot.x() - size * 0.09, foot.y() - size * 0.48, size * 0.08, size * 0.48), size * 0.03, size * 0.03);
    m_painter.drawRoundedRect(QRectF(foot.x() + size * 0.01, foot.y() - size * 0.48, size * 0.08, size * 0.48), size * 0.03, size * 0.03);
    m_painter.setBrush(clothes);
    m_painter.drawRoundedRect(QRectF(foot.x() - size * 0.13, foot.y() - size * 0.82, size * 0.26, size * 0.4), size * 0.08, size * 0.08);
    const double arm = m_random.uniform(-0.1, 0.2);
    m_painter.setPen(QPen(skin, size * 0.055, Qt::SolidLine, Qt::RoundCap));
    m_painter.drawLine(
        QPointF(foot.x() - size * 0.13, foot.y() - size * 0.76), QPointF(foot.x() - size * (0.2 + arm), foot.y() - size * (0.5 + arm)));
    m_painter.drawLine(
        QPointF(foot.x() + size * 0.13, foot.y() - size * 0.76), QPointF(foot.x() + size * 0.22, foot.y() - size * (0.5 + arm)));
    m_painter.setPen(Qt::NoPen);
    disc({foot.x(), foot.y() - size * 0.92}, size * 0.085, size * 0.1, skin);
    m_painter.setBrush(m_random.pick({QColor(70, 45, 25), QColor(40, 32, 28), QColor(180, 140, 80), QColor(150, 150, 150)}));
    m_painter.drawPie(QRectF(foot.x() - size * 0.095, foot.y() - size * 1.03, size * 0.19, size * 0.2), 0, 180 * 16);
}

void DemoCanvas::gull(QPointF at, double span, QColor color)
{
    const double lift = span * m_random.uniform(0.12, 0.3);
    QPainterPath wings;
    wings.moveTo(at.x() - span / 2.0, at.y() - lift);
    wings.quadTo(at.x() - span * 0.22, at.y() - lift * 1.5, at.x(), at.y());
    wings.quadTo(at.x() + span * 0.22, at.y() - lift * 1.5, at.x() + span / 2.0, at.y() - lift * 0.8);
    wings.quadTo(at.x() + span * 0.2, at.y() - lift * 0.8, at.x(), at.y() + span * 0.07);
    wings.quadTo(at.x() - span * 0.2, at.y() - lift * 0.8, at.x() - span / 2.0, at.y() - lift);
    m_painter.setBrush(color);
    m_painter.drawPath(wings);
}

void DemoCanvas::grass(double top, double bottom, int blades, QColor dark, QColor light, double length)
{
    for (int blade = 0; blade < blades; ++blade) {
        const double depth = double(blade) / blades;
        const double size = length * (0.3 + 0.9 * depth);
        const QPointF foot(m_random.uniform(-size, m_width + size), top + (bottom - top) * depth);
        const double lean = m_random.uniform(-0.5, 0.7) * size;
        QPainterPath path(foot);
        path.quadTo(foot.x() + lean * 0.2, foot.y() - size * 0.6, foot.x() + lean, foot.y() - size * m_random.uniform(0.7, 1.1));
        m_painter.setBrush(Qt::NoBrush);
        m_painter.setPen(QPen(mix(dark, light, m_random.uniform(0.0, 1.0)), std::max(1.5, size * 0.035)));
        m_painter.drawPath(path);
    }
    m_painter.setPen(Qt::NoPen);
}

void DemoCanvas::bokeh(int count, std::initializer_list<QColor> colors, double smallest, double largest)
{
    for (int spot = 0; spot < count; ++spot) {
        const QPointF at(m_random.uniform(0.0, m_width), m_random.uniform(0.0, m_height));
        const double radius = m_random.uniform(smallest, largest) * m_unit;
        const QColor color = m_random.pick(colors);
        QRadialGradient gradient(at, radius);
        gradient.setColorAt(0.0, withAlpha(color, 70));
        gradient.setColorAt(0.86, withAlpha(color, 95));
        gradient.setColorAt(0.93, withAlpha(color.lighter(115), 120));
        gradient.setColorAt(1.0, withAlpha(color, 0));
        m_painter.setBrush(gradient);
        m_painter.drawEllipse(at, radius, radius);
    }
}
