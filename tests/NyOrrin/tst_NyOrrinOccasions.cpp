#include <NyOrrinAccess.h>

#include <cstdio>

#include <QHash>
#include <QTest>
#include <QTimeZone>
#include <QUrl>

#include <NyOrrinHome.h>
#include <NyOrrinMediaItemBuilder.h>

#include "OccasionAlbums.h"
#include "ScenePainter.h"

/**
 * Whole albums, as families keep them, and what people would call them. The function accuracy() alone prints how often each of the
 * sources is right.
 */
class tst_NyOrrinOccasions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void albums_data();
    void albums();
    void accuracy();

private:
    enum Source { Title = 1, Calendar = 2, Places = 4, Vision = 8, All = 15 };

    NyOrrinVisionDescriptors look(const QString &scene, int number, bool isModelAsked);
    std::vector<NyOrrinVisionedMediaItem> items(const OccasionAlbum &album, int sources);
    std::vector<NyOrrinOccasion> occasions(const OccasionAlbum &album, int sources);

    QHash<QString, NyOrrinVisionDescriptors> m_seen;
    bool m_hasModel = false;
};

void tst_NyOrrinOccasions::initTestCase()
{
    // The dates of photos are read in the zone of the machine.
    qputenv("TZ", "Europe/Berlin");
    ::tzset();
    QCOMPARE(QDateTime(QDate(2024, 7, 1), QTime(12, 0)).offsetFromUtc(), 7200);
    m_hasModel = !look(QStringLiteral("beach"), 1, true).descriptors().occasions.empty();
}

NyOrrinVisionDescriptors tst_NyOrrinOccasions::look(const QString &scene, int number, bool isModelAsked)
{
    const QString key = scene + QString::number(number);
    auto known = m_seen.constFind(key);
    if (known == m_seen.cend()) {
        const QImage picture = scene == QLatin1String("black") ? ScenePainter::even(QColor(5, 4, 6), 2)
            : scene == QLatin1String("white")                  ? ScenePainter::even(QColor(252, 252, 252), 1)
            : scene == QLatin1String("pocket")                 ? ScenePainter::pocket()
            : scene == QLatin1String("smear") ? ScenePainter::shaken(ScenePainter::paint(QStringLiteral("people"), number), 60)
                                              : ScenePainter::paint(scene, number);
        NyOrrinVisionDescriptorsBuilder builder;
        NyOrrinAccess::instance().process(picture, builder);
        known = m_seen.insert(key, builder.build());
    }
    if (isModelAsked)
        return *known;
    orrin::Descriptors descriptors = known->descriptors();
    descriptors.scenes.clear();
    descriptors.occasions.clear();
    return NyOrrinVisionDescriptors(descriptors);
}

std::vector<NyOrrinVisionedMediaItem> tst_NyOrrinOccasions::items(const OccasionAlbum &album, int sources)
{
    std::vector<NyOrrinVisionedMediaItem> result;
    const int count = album.photoCount();
    const bool hasTimes = (sources & (Calendar | Places)) != 0;
    int number = 0;
    int ofDay = 0;
    int dayBefore = 0;
    for (const OccasionAlbum::Shots &shots : album.shots) {
        for (int shot = 0; shot < shots.count; ++shot, ++number) {
            const int day = number * album.days / count;
            ofDay = day == dayBefore ? ofDay + 1 : 0;
            dayBefore = day;
            NyOrrinMediaItemBuilder builder;
            const QString folder = (sources & Title) ? album.folder : QStringLiteral("x");
            builder
                .setId(QUrl::fromLocalFile(
                    QStringLiteral("/home/tina/Pictures/%1/IMG_%2.jpg").arg(folder).arg(number, 4, 10, QLatin1Char('0')))
                           .toDisplayString())
                .setWidth(4000)
                .setHeight(3000);
            if (hasTimes) {
                const QDateTime taken(album.from.addDays(day), album.begin, Qt::OffsetFromUTC, album.hoursFromUtc * 3600);
                builder.setTimestamp(taken.addSecs(qint64(album.everySeconds) * ofDay).toMSecsSinceEpoch());
            }
            if ((sources & Places) && !album.places.empty()) {
                const OccasionAlbum::Place place = album.places[static_cast<std::size_t>(day) % album.places.size()];
                builder.setCoordinate(place.latitude + 0.002 * (ofDay % 5), place.longitude + 0.003 * (ofDay % 3));
            }
            // A burst shows one thing; else a scene is seen from a dozen sides.
            const int view = album.everySeconds < 60 ? 0 : shot % 12;
            result.emplace_back(builder.build(), look(shots.scene, view, (sources & Vision) != 0));
        }
    }
    return result;
}

std::vector<NyOrrinOccasion> tst_NyOrrinOccasions::occasions(const OccasionAlbum &album, int sources)
{
    const NyOrrinCurator curator(std::make_shared<NyOrrinHome>());
    if ((sources & Places) && album.isHomeKnown) {
        std::vector<NyOrrinVisionedMediaItem> daily;
        for (int day = 0; day < 330; day += 11) {
            daily.emplace_back(NyOrrinMediaItemBuilder()
                                   .setTimestamp(QDateTime(album.from.addDays(day - 400), QTime(18, 0)).toMSecsSinceEpoch())
                                   .setCoordinate(album.home.latitude, album.home.longitude)
                                   .build(),
                NyOrrinVisionDescriptors());
        }
        curator.curate(daily);
    }
    return curator.getOccasion(curator.curate(items(album, sources)));
}

void tst_NyOrrinOccasions::albums_data()
{
    QTest::addColumn<int>("index");
    const std::vector<OccasionAlbum> &all = OccasionAlbum::all();
    for (std::size_t i = 0; i < all.size(); ++i)
        QTest::newRow(qPrintable(all[i].language + u' ' + all[i].name)) << int(i);
}

void tst_NyOrrinOccasions::albums()
{
    QFETCH(int, index);
    const OccasionAlbum &album = OccasionAlbum::all()[static_cast<std::size_t>(index)];
    if (album.needsModel && !m_hasModel)
        QSKIP("only a model could tell");
    QStringList told;
    QStringList wrong;
    for (const NyOrrinOccasion &occasion : occasions(album, All)) {
        const QString keyword = QString::fromStdString(occasion.getKeyword());
        told.append(keyword + QStringLiteral(" (%1, %2)").arg(QString::fromStdString(occasion.getSource())).arg(occasion.getProbability()));
        if (!album.expected.contains(keyword) && !album.allowed.contains(keyword))
            wrong.append(keyword);
    }
    QStringList missing = album.expected;
    missing.removeIf([&](const QString &keyword) { return told.filter(keyword + QStringLiteral(" (")).size() == 1; });
    if (!album.weakness.isEmpty())
        QEXPECT_FAIL("", qPrintable(album.weakness), Continue);
    QVERIFY2(missing.isEmpty() && wrong.isEmpty(),
        qPrintable(QStringLiteral("told: %1; missing: %2; wrong: %3").arg(told.join(u' '), missing.join(u' '), wrong.join(u' '))));
}

void tst_NyOrrinOccasions::accuracy()
{
    const std::vector<OccasionAlbum> &all = OccasionAlbum::all();
    const auto named = std::count_if(all.begin(), all.end(), [](const OccasionAlbum &album) { return !album.expected.isEmpty(); });
    const auto weak = std::count_if(all.begin(), all.end(), [](const OccasionAlbum &album) { return !album.weakness.isEmpty(); });
    std::printf("%zu albums, %td with an occasion, %td with none; %td known to go wrong; %s\n", all.size(), named,
        static_cast<std::ptrdiff_t>(all.size()) - named, weak, m_hasModel ? "with a model" : "without a model");
    std::printf("%-20s %8s %8s %8s %10s %14s\n", "source", "answers", "right", "wrong", "abstained", "rightly silent");
    int together[4] = {};
    const std::vector<std::pair<const char *, int>> sources{{"title", Title}, {"calendar", Calendar},
        {"title and calendar", Title | Calendar}, {"place", Places}, {"vision", Vision}, {"vision and calendar", Vision | Calendar},
        {"together", All}};
    for (const auto &[name, mask] : sources) {
        int right = 0;
        int wrong = 0;
        int abstained = 0;
        int silent = 0;
        for (const OccasionAlbum &album : all) {
            const std::vector<NyOrrinOccasion> told = occasions(album, mask);
            if (told.empty()) {
                (album.expected.isEmpty() ? silent : abstained) += 1;
                continue;
            }
            // The first one names the book.
            const QString first = QString::fromStdString(told.front().getKeyword());
            (album.expected.contains(first) || album.allowed.contains(first) ? right : wrong) += 1;
        }
        std::printf("%-20s %8d %8d %8d %10d %14d\n", name, right + wrong, right, wrong, abstained, silent);
        together[0] = right;
        together[1] = wrong;
        together[2] = abstained;
        together[3] = silent;
    }
    std::fflush(stdout);
    QCOMPARE(together[0] + together[1] + together[2] + together[3], int(all.size()));
    QVERIFY(together[1] <= int(weak));
}

QTEST_GUILESS_MAIN(tst_NyOrrinOccasions)
#include "tst_NyOrrinOccasions.moc"
