#include "DemoAlbum.h"

#include <algorithm>
#include <array>

#include <QTime>

#include "DemoCanvas.h"

using namespace Qt::Literals::StringLiterals;

namespace
{
/** The last day with this month and day whose event, so many days long, is over. */
QDate lastOccurrence(const QDate &today, int month, int day, int days)
{
    QDate date(today.year(), month, day);
    if (date.addDays(days) > today)
        date = QDate(today.year() - 1, month, day);
    return date;
}

class AlbumWriter
{
public:
    QList<DemoPicture> take() { return std::move(m_pictures); }

    void beginFolder(const QString &folder, std::optional<DemoPlace> place)
    {
        m_folder = folder;
        m_place = place;
    }

    /** One day's pictures, spread between the two hours in the order given. */
    void addDay(const QDate &day, int fromHour, int toHour, std::initializer_list<DemoScene> scenes)
    {
        const double step = (toHour - fromHour) * 3600.0 / double(scenes.size());
        double second = fromHour * 3600.0;
        for (const DemoScene scene : scenes) {
            const double at = second + m_random.uniform(0.05, 0.8) * step;
            add(scene, QDateTime(day, QTime(0, 0).addSecs(std::min(86399, int(at)))));
            second += step;
        }
    }

    void addCameraFolderPicture(DemoScene scene, const QDateTime &time)
    {
        const QString name = u"IMG_%1.JPG"_s.arg(++m_compactNumber, 4, 10, QLatin1Char('0'));
        append(name, scene, time, QSize(2592, 1944), false, QString(), u"Kompakt 12"_s, std::nullopt);
    }

private:
    void add(DemoScene scene, const QDateTime &time)
    {
        // Two people take pictures: one with a camera, one with a telephone, which knows where it is.
        const bool upright = m_random.chance(0.22);
        if (m_random.chance(0.55)) {
            const QSize size(2736, 1824);
            append(u"DSC_%1.JPG"_s.arg(++m_cameraNumber, 4, 10, QLatin1Char('0')), scene, time, upright ? size.transposed() : size, upright,
                QString(), u"Demokamera 300"_s, std::nullopt);
            return;
        }
        const QSize size(2560, 1920);
        std::optional<DemoPlace> place = m_place;
        if (place) {
            place->latitude += m_random.uniform(-0.02, 0.02);
            place->longitude += m_random.uniform(-0.03, 0.03);
        }
        append(u"IMG_"_s + time.toString(u"yyyyMMdd_HHmmss"_s) + u".jpg"_s, scene, time, upright ? size.transposed() : size, upright,
            isSummerTime(time.date()) ? u"+02:00"_s : u"+01:00"_s, u"Demotelefon 7"_s, place);
    }

    void append(const QString &name, DemoScene scene, const QDateTime &time, QSize sizePx, bool turned, const QString &utcOffset,
        const QString &model, std::optional<DemoPlace> place)
    {
        DemoPicture picture;
        picture.relativePath = m_folder + u'/' + name;
        picture.scene = scene;
        picture.seed = quint64(m_pictures.size()) * 7919 + 20;
        picture.sizePx = sizePx;
        picture.cameraTurned = turned;
        picture.captureTime = time;
        picture.utcOffset = utcOffset;
        picture.cameraModel = model;
        picture.place = place;
        m_pictures.append(picture);
    }

    /** Near enough for the events here, none of which lies at a change of the clocks. */
    static bool isSummerTime(const QDate &date) { return date.month() >= 4 && date.month() <= 10; }

    QList<DemoPicture> m_pictures;
    DemoRandom m_random{1961};
    QString m_folder;
    std::optional<DemoPlace> m_place;
    int m_cameraNumber = 411;
    int m_compactNumber = 87;
};

QString yearFolder(const QDate &date)
{
    return QString::number(date.year());
}

QString isoDate(const QDate &date)
{
    return date.toString(Qt::ISODate);
}
}

QList<DemoPicture> demoAlbum(const QDate &today)
{
    using enum DemoScene;
    AlbumWriter album;

    const QDate sea = lastOccurrence(today, 7, 11, 9);
    album.beginFolder(yearFolder(sea) + u"/"_s + isoDate(sea) + u" Sommerurlaub an der Ostsee"_s, DemoPlace{54.178, 12.085});
    album.addDay(sea, 15, 22, {Harbour, Sailing, Beach, Pier, Plate, SeaSunset});
    album.addDay(sea.addDays(1), 9, 21, {Beach, BeachChairs, SandCastle, Beach, Shells, Kite, Gulls, SunsetFriends});
    album.addDay(sea.addDays(2), 10, 22, {Lighthouse, Dunes, Lighthouse, Sailing, Gulls, Houses, Plate, Pier, SeaSunset});
    album.addDay(sea.addDays(3), 9, 20, {BeachChairs, Beach, Kite, Shells, Dunes, SandCastle, Plate});
    album.addDay(sea.addDays(4), 9, 19, {Harbour, Sailing, Harbour, Houses, Houses, Sailing, Gulls});
    album.addDay(sea.addDays(5), 10, 23, {Meadow, RapeField, Balloons, Lake, Flower, Plate, SeaSunset, Stars});
    album.addDay(sea.addDays(6), 8, 21, {Dunes, Beach, Kite, BeachChairs, Shells, SandCastle, Pier, SunsetFriends});
    album.addDay(sea.addDays(7), 11, 23, {Sailing, Harbour, Lighthouse, Plate, Gulls, SeaSunset, Fireworks});
    album.addDay(sea.addDays(8), 8, 13, {Beach, BeachChairs, Dunes, Pier, Sailing, Harbour});

    const QDate hike = lastOccurrence(today, 10, 3, 2);
    album.beginFolder(yearFolder(hike) + u"/"_s + isoDate(hike) + u" Wanderung im Harz"_s, DemoPlace{51.799, 10.616});
    album.addDay(hike, 9, 18, {Houses, ForestPath, Forest, Stream, Mountains, Railway, Lake});
    album.addDay(hike.addDays(1), 8, 19, {Mountains, Forest, Stream, ForestPath, Railway, Mountains, Stars});

    const QDate birthday = lastOccurrence(today, 3, 21, 1);
    album.beginFolder(yearFolder(birthday) + u"/Omas 80. Geburtstag"_s, DemoPlace{51.318, 9.496});
    album.addDay(birthday, 11, 21, {BirthdayTable, Flower, BirthdayCake, Party, BirthdayTable, Party, BirthdayCake, Plate, Party});

    const QDate christmas = lastOccurrence(today, 12, 24, 3);
    album.beginFolder(yearFolder(christmas) + u"/Weihnachten in Dresden"_s, DemoPlace{51.051, 13.738});
    album.addDay(christmas, 15, 22, {ChristmasMarket, ChristmasTree, CityNight});
    album.addDay(christmas.addDays(1), 10, 18, {Snow, Plate, Snow});
    album.addDay(christmas.addDays(2), 11, 20, {Snow, CityNight, ChristmasMarket});

    album.beginFolder(u"DCIM/100CANON"_s, std::nullopt);
    int daysAgo = 300;
    for (const DemoScene scene : {Snow, Flower, RapeField, Meadow, Balloons, Flower, Lake, Meadow, CityNight}) {
        album.addCameraFolderPicture(scene, QDateTime(today.addDays(-daysAgo), QTime(14, 5).addSecs(daysAgo * 37)));
        daysAgo -= 31;
    }
    return album.take();
}
