#include <NyOrrinAccess.h>
#include <NyOrrinMediaItemBuilder.h>

#include <cmath>

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>
#include <QPainterPath>
#include <QRandomGenerator>
#include <QResource>
#include <QTest>

#include <OrrinSession.h>

#include "TestSupport.h"

namespace
{

const QString Folder = QStringLiteral(":/velmora/models/scenes");
constexpr int PaintedOfEach = 9;
constexpr QSize PictureSize(224, 168);

QJsonObject config()
{
    QFile file(Folder + QStringLiteral("/model.json"));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

/** Paints pictures that differ with the seed. */
class Painter
{
public:
    explicit Painter(quint32 seed)
        : random(seed)
        , image(PictureSize, QImage::Format_RGB32)
        , painter(&image)
    {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
    }

    double between(double low, double high) { return low + (high - low) * random.generateDouble(); }
    double x(double share) const { return share * image.width(); }
    double y(double share) const { return share * image.height(); }
    QColor color(int hue, int saturation, int value)
    {
        return QColor::fromHsv((hue + random.bounded(-6, 7) + 360) % 360, qBound(0, saturation + random.bounded(-15, 16), 255),
            qBound(0, value + random.bounded(-12, 13), 255));
    }
    void band(double top, double bottom, const QColor &first, const QColor &last)
    {
        QLinearGradient gradient(0, y(top), 0, y(bottom));
        gradient.setColorAt(0, first);
        gradient.setColorAt(1, last);
        painter.fillRect(QRectF(0, y(top), image.width(), y(bottom - top)), gradient);
    }
    /** Small strokes in lighter and darker tones. */
    void grain(double top, double bottom, const QColor &tone, int count, double width, double height)
    {
        for (int i = 0; i < count; ++i) {
            painter.setBrush(random.bounded(2) ? tone.lighter(100 + random.bounded(25)) : tone.darker(100 + random.bounded(25)));
            painter.drawEllipse(QPointF(x(between(0, 1)), y(between(top, bottom))), x(width), y(height));
        }
    }
    void person(double left, double foot, double size)
    {
        painter.setBrush(QColor::fromHsv(random.bounded(360), 150, 160));
        painter.drawRoundedRect(QRectF(x(left), y(foot - size * 0.8), x(size * 0.2), y(size * 0.8)), 3, 3);
        painter.setBrush(QColor(205, 160, 130));
        painter.drawEllipse(QPointF(x(left + size * 0.1), y(foot - size * 0.9)), x(size * 0.06), y(size * 0.1));
    }
    QImage finished()
    {
        painter.end();
        return image;
    }

    QRandomGenerator random;
    QImage image;
    QPainter painter;
};

QImage beach(quint32 seed)
{
    Painter p(seed);
    const double horizon = p.between(0.25, 0.45);
    const double shore = horizon + p.between(0.1, 0.25);
    p.band(0, horizon, p.color(212, 150, 225), p.color(205, 60, 245));
    p.band(horizon, shore, p.color(205, 160, 140), p.color(190, 120, 190));
    p.grain(horizon, shore, QColor(120, 180, 200), 80, 0.03, 0.005);
    p.band(shore, 1, p.color(38, 70, 215), p.color(38, 85, 225));
    p.grain(shore + 0.05, 1, QColor(220, 195, 155), 250, 0.005, 0.005);
    p.painter.setBrush(QColor(250, 250, 250));
    for (int i = 0; i < 20; ++i)
        p.painter.drawEllipse(QPointF(p.x(i / 19.0), p.y(shore + 0.01 * std::sin(i))), p.x(0.04), p.y(0.012));
    for (int i = 0; i < 3; ++i)
        p.person(p.between(0.05, 0.9), p.between(0.75, 0.95), p.between(0.1, 0.3));
    return p.finished();
}

QImage snow(quint32 seed)
{
    Painter p(seed);
    const double horizon = p.between(0.3, 0.5);
    p.band(0, 0.6, p.color(215, 160, 215), p.color(205, 60, 245));
    for (int i = 0; i < 4; ++i) {
        const double left = p.between(-0.2, 0.8);
        const double top = horizon - p.between(0.1, 0.3);
        p.painter.setBrush(QColor(235, 240, 250));
        p.painter.drawPolygon(QPolygonF{{p.x(left), p.y(0.65)}, {p.x(left + 0.25), p.y(top)}, {p.x(left + 0.55), p.y(0.65)}});
        p.painter.setBrush(QColor(165, 180, 210));
        p.painter.drawPolygon(QPolygonF{
            {p.x(left + 0.25), p.y(top)}, {p.x(left + 0.55), p.y(0.65)}, {p.x(left + 0.3), p.y(0.65)}, {p.x(left + 0.27), p.y(top + 0.1)}});
    }
    QPainterPath slope;
    slope.moveTo(0, p.y(horizon + p.between(0.05, 0.2)));
    slope.quadTo(p.x(0.5), p.y(horizon + p.between(0, 0.2)), p.x(1), p.y(horizon + p.between(0.05, 0.2)));
    slope.lineTo(p.x(1), p.y(1));
    slope.lineTo(0, p.y(1));
    p.painter.fillPath(slope, QColor(242, 245, 250));
    for (int i = 0; i < 10; ++i) {
        const double left = p.between(0, 1);
        const double foot = p.between(horizon + 0.15, 0.75);
        const double size = p.between(0.08, 0.25);
        p.painter.setBrush(QColor(35, 50, 45));
        p.painter.drawPolygon(
            QPolygonF{{p.x(left), p.y(foot - size)}, {p.x(left + size * 0.2), p.y(foot)}, {p.x(left - size * 0.2), p.y(foot)}});
    }
    p.person(p.between(0.2, 0.8), 0.9, p.between(0.15, 0.35));
    return p.finished();
}

QImage fireworks(quint32 seed)
{
    Painter p(seed);
    p.band(0, 1, QColor(5, 5, 18), QColor(15, 10, 25));
    for (int burst = 0; burst < 4; ++burst) {
        const QPointF middle(p.x(p.between(0.15, 0.85)), p.y(p.between(0.15, 0.6)));
        const QColor color = QColor::fromHsv(p.random.bounded(360), 140, 255);
        const double radius = p.x(p.between(0.08, 0.22));
        for (int ray = 0; ray < 48; ++ray) {
            const double angle = ray * 0.131;
            const double reach = radius * p.between(0.6, 1);
            const QPointF end = middle + QPointF(std::cos(angle), std::sin(angle)) * reach;
            p.painter.setPen(QPen(color, 1));
            p.painter.drawLine(middle + (end - middle) * 0.3, end);
            p.painter.setPen(Qt::NoPen);
            p.painter.setBrush(color.lighter(140));
            p.painter.drawEllipse(end, 1.5, 1.5);
        }
    }
    return p.finished();
}

QImage forest(quint32 seed)
{
    Painter p(seed);
    p.band(0, 1, p.color(95, 130, 90), p.color(70, 120, 70));
    p.grain(0, 0.7, p.color(100, 150, 90), 500, 0.02, 0.02);
    p.grain(0, 0.35, QColor(225, 235, 205), 60, 0.012, 0.015);
    p.grain(0.7, 1, p.color(45, 110, 90), 300, 0.02, 0.01);
    for (int i = 0; i < 14; ++i) {
        p.painter.setBrush(p.color(30, 90, 55));
        p.painter.drawRect(QRectF(p.x(p.between(0, 1)), 0, p.x(p.between(0.008, 0.05)), p.y(p.between(0.75, 0.95))));
    }
    return p.finished();
}

QImage street(quint32 seed)
{
    Painter p(seed);
    const double ground = p.between(0.65, 0.8);
    p.band(0, ground, p.color(210, 90, 235), p.color(205, 30, 245));
    double left = -0.05;
    while (left < 1) {
        const double width = p.between(0.15, 0.3);
        const double top = p.between(0.05, 0.25);
        p.painter.setBrush(p.color(32, 70, 190));
        p.painter.drawRect(QRectF(p.x(left), p.y(top), p.x(width), p.y(ground - top)));
        for (double row = top + 0.04; row < ground - 0.1; row += 0.11) {
            for (double column = left + 0.02; column < left + width - 0.03; column += 0.055) {
                p.painter.setBrush(QColor(60, 65, 75));
                p.painter.drawRect(QRectF(p.x(column), p.y(row), p.x(0.028), p.y(0.065)));
            }
        }
        left += width;
    }
    p.band(ground, 1, QColor(120, 118, 115), QColor(140, 138, 134));
    for (int i = 0; i < 4; ++i)
        p.person(p.between(0, 0.95), p.between(ground + 0.05, 0.95), p.between(0.15, 0.3));
    return p.finished();
}

QImage pitch(quint32 seed)
{
    Painter p(seed);
    const double top = p.between(0.15, 0.3);
    p.band(0, top, QColor(120, 110, 115), QColor(100, 95, 105));
    for (int i = 0; i < 500; ++i) {
        p.painter.setBrush(QColor::fromHsv(p.random.bounded(360), 90, 190));
        p.painter.drawEllipse(QPointF(p.x(p.between(0, 1)), p.y(p.between(0.02, top))), 1.5, 2);
    }
    p.band(top, 1, p.color(112, 170, 130), p.color(108, 175, 155));
    p.painter.setPen(QPen(QColor(235, 240, 235), 2));
    for (int i = 0; i < 3; ++i) {
        const double height = p.between(top + 0.1, 0.95);
        p.painter.drawLine(QPointF(0, p.y(height)), QPointF(p.x(1), p.y(height + p.between(-0.05, 0.05))));
    }
    p.painter.drawLine(QPointF(p.x(p.between(0.2, 0.4)), p.y(top)), QPointF(p.x(p.between(0, 0.3)), p.y(1)));
    p.painter.setPen(Qt::NoPen);
    for (int i = 0; i < 8; ++i)
        p.person(p.between(0, 0.95), p.between(top + 0.2, 0.98), p.between(0.12, 0.3));
    return p.finished();
}

QImage plain(quint32 seed)
{
    Painter p(seed);
    const int level = 30 + p.random.bounded(200);
    p.image.fill(qRgb(level, level, level));
    return p.finished();
}

QImage noise(quint32 seed)
{
    Painter p(seed);
    p.painter.end();
    for (int row = 0; row < p.image.height(); ++row) {
        for (int column = 0; column < p.image.width(); ++column)
            p.image.setPixel(column, row, qRgb(p.random.bounded(256), p.random.bounded(256), p.random.bounded(256)));
    }
    return p.image;
}

QImage document(quint32 seed)
{
    Painter p(seed);
    p.image.fill(qRgb(245, 245, 242));
    p.painter.setBrush(QColor(40, 40, 45));
    for (double row = 0.08; row < 0.92; row += 0.045) {
        double left = 0.1;
        while (left < p.between(0.7, 0.9)) {
            const double width = p.between(0.01, 0.07);
            p.painter.drawRect(QRectF(p.x(left), p.y(row), p.x(width), p.y(0.018)));
            left += width + 0.012;
        }
    }
    return p.finished();
}

using Paint = QImage (*)(quint32);

NyOrrinVisionDescriptors seen(NyOrrinAccess &access, const QImage &image)
{
    NyOrrinVisionDescriptorsBuilder builder;
    access.process(image, builder);
    return builder.build();
}

} // namespace

Q_DECLARE_METATYPE(Paint)

class tst_NyOrrinBuiltInModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void files();
    void occasionsAreKeywords();
    void loadsWithTheFirstPicture();
    void scenes_data();
    void scenes();
    void nothing_data();
    void nothing();
    void albums_data();
    void albums();
};

void tst_NyOrrinBuiltInModel::files()
{
    QCOMPARE(QDir(QStringLiteral(":/velmora/models")).entryList(), QStringList{QStringLiteral("scenes")});
    qint64 size = 0;
    const QStringList names = QDir(Folder).entryList();
    QCOMPARE(names, (QStringList{QStringLiteral("model.json"), QStringLiteral("scenes.onnx")}));
    for (const QString &name : names) {
        const QResource resource(Folder + u'/' + name);
        // What is compressed would have to be unpacked into memory of its own.
        QCOMPARE(resource.compressionAlgorithm(), QResource::NoCompression);
        QVERIFY(resource.size() > 0);
        size += resource.size();
    }
    QVERIFY2(size < 5000000, qPrintable(QString::number(size)));
}

void tst_NyOrrinBuiltInModel::occasionsAreKeywords()
{
    const QJsonObject occasions = config().value(QStringLiteral("occasions")).toObject();
    QVERIFY(!occasions.isEmpty());
    const QJsonArray labels = config().value(QStringLiteral("labels")).toArray();
    const std::vector<std::string> &keywords = NyOrrinCurator::keywords();
    for (auto scene = occasions.begin(); scene != occasions.end(); ++scene) {
        QVERIFY2(labels.contains(scene.key()), qPrintable(scene.key()));
        const QJsonObject targets = scene.value().toObject();
        QVERIFY2(!targets.isEmpty(), qPrintable(scene.key()));
        for (const QString &keyword : targets.keys())
            QVERIFY2(std::find(keywords.begin(), keywords.end(), keyword.toStdString()) != keywords.end(), qPrintable(keyword));
    }
    // What shows nothing that it knows must not speak.
    QVERIFY(!occasions.contains(QStringLiteral("something else")));
}

void tst_NyOrrinBuiltInModel::loadsWithTheFirstPicture()
{
    if (!orrin::Session::isRuntimeUsable())
        QSKIP("built without ONNX Runtime");
    const TestSupport::LogRecorder log;
    NyOrrinAccess access;
    NyOrrinCurator curator = access.getCurator();
    QVERIFY(curator.getOccasion({}).empty());
    NyOrrinVisionDescriptorsBuilder builder;
    QVERIFY(!access.process(QImage(), builder));
    QVERIFY(!log.has(QStringLiteral("uses the model")));
    const NyOrrinVisionDescriptors descriptors = seen(access, beach(1));
    QCOMPARE(log.containing(QStringLiteral("uses the model ") + Folder).size(), 1);
    QVERIFY(log.containing(QStringLiteral("warning: ")).isEmpty());

    const std::vector<orrin::Scene> &scenes = descriptors.descriptors().scenes;
    const QJsonArray labels = config().value(QStringLiteral("labels")).toArray();
    QCOMPARE(qsizetype(scenes.size()), labels.size());
    float sum = 0;
    for (std::size_t i = 0; i < scenes.size(); ++i) {
        QCOMPARE(QString::fromStdString(scenes[i].label), labels.at(qsizetype(i)).toString());
        sum += scenes[i].probability;
    }
    QVERIFY(std::abs(sum - 1) < 0.001F);
}

void tst_NyOrrinBuiltInModel::scenes_data()
{
    QTest::addColumn<Paint>("paint");
    QTest::addColumn<QString>("label");
    QTest::newRow("beach") << Paint(beach) << QStringLiteral("sandy beach");
    QTest::newRow("snow") << Paint(snow) << QStringLiteral("snow");
    QTest::newRow("fireworks") << Paint(fireworks) << QStringLiteral("fireworks");
    QTest::newRow("forest") << Paint(forest) << QStringLiteral("forest");
    QTest::newRow("street") << Paint(street) << QStringLiteral("city street");
    QTest::newRow("pitch") << Paint(pitch) << QStringLiteral("sports pitch");
}

void tst_NyOrrinBuiltInModel::scenes()
{
    if (!orrin::Session::isRuntimeUsable())
        QSKIP("built without ONNX Runtime");
    QFETCH(Paint, paint);
    QFETCH(QString, label);
    NyOrrinAccess access;
    QStringList called;
    for (quint32 seed = 1; seed <= PaintedOfEach; ++seed) {
        const NyOrrinVisionDescriptors descriptors = seen(access, paint(seed));
        const std::vector<orrin::Scene> &scenes = descriptors.descriptors().scenes;
        QVERIFY(!scenes.empty());
        const auto best = std::max_element(
            scenes.begin(), scenes.end(), [](const auto &left, const auto &right) { return left.probability < right.probability; });
        called.append(QString::fromStdString(best->label));
    }
    QVERIFY2(2 * called.count(label) > called.size(), qPrintable(called.join(QStringLiteral(", "))));
}

void tst_NyOrrinBuiltInModel::nothing_data()
{
    QTest::addColumn<Paint>("paint");
    QTest::newRow("one grey") << Paint(plain);
    QTest::newRow("noise") << Paint(noise);
    QTest::newRow("document") << Paint(document);
}

void tst_NyOrrinBuiltInModel::nothing()
{
    if (!orrin::Session::isRuntimeUsable())
        QSKIP("built without ONNX Runtime");
    QFETCH(Paint, paint);
    NyOrrinAccess access;
    for (quint32 seed = 1; seed <= PaintedOfEach; ++seed) {
        const NyOrrinVisionDescriptors descriptors = seen(access, paint(seed));
        QVERIFY(!descriptors.descriptors().scenes.empty());
        for (const orrin::OccasionScore &occasion : descriptors.descriptors().occasions) {
            QVERIFY2(occasion.probability < 0.27F,
                qPrintable(QString::fromStdString(occasion.keyword) + QLatin1Char(' ') + QString::number(double(occasion.probability))));
        }
    }
}

void tst_NyOrrinBuiltInModel::albums_data()
{
    QTest::addColumn<Paint>("paint");
    QTest::addColumn<QString>("keyword");
    QTest::newRow("beach") << Paint(beach) << QStringLiteral("beach");
    QTest::newRow("snow") << Paint(snow) << QStringLiteral("snow");
    QTest::newRow("documents") << Paint(document) << QString();
    QTest::newRow("noise") << Paint(noise) << QString();
}

void tst_NyOrrinBuiltInModel::albums()
{
    if (!orrin::Session::isRuntimeUsable())
        QSKIP("built without ONNX Runtime");
    QFETCH(Paint, paint);
    QFETCH(QString, keyword);
    NyOrrinAccess access;
    std::vector<NyOrrinVisionedMediaItem> items;
    // Without times, so that nothing but what is seen speaks.
    for (quint32 seed = 1; seed <= 20; ++seed) {
        items.emplace_back(
            NyOrrinMediaItemBuilder().setId(QStringLiteral("/home/a/DCIM/%1.jpg").arg(seed)).build(), seen(access, paint(seed)));
    }
    const NyOrrinCurator curator = access.getCurator();
    const std::vector<NyOrrinOccasion> occasions = curator.getOccasion(curator.curate(items));
    if (keyword.isEmpty()) {
        QVERIFY(occasions.empty());
        return;
    }
    QCOMPARE(occasions.size(), std::size_t{1});
    QCOMPARE(QString::fromStdString(occasions[0].getKeyword()), keyword);
    QCOMPARE(occasions[0].getSource(), std::string("vision"));
}

QTEST_GUILESS_MAIN(tst_NyOrrinBuiltInModel)
#include "tst_NyOrrinBuiltInModel.moc"
