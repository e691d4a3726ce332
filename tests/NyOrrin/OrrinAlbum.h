#pragma once

#include <algorithm>
#include <vector>

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <NyOrrinCurator.h>
#include <NyOrrinMediaItemBuilder.h>
#include <NyOrrinVisionDescriptorsBuilder.h>

/** An album made by hand: photos in a folder, over some days, at some places, with what a model might have seen. */
class OrrinAlbum
{
public:
    using Place = std::pair<double, double>;

    explicit OrrinAlbum(const QString &folder, const QDate &from = {}, int days = 1)
        : m_folder(folder)
        , m_from(from)
        , m_days(days)
    {
    }

    OrrinAlbum &at(std::vector<Place> places)
    {
        m_places = std::move(places);
        return *this;
    }
    OrrinAlbum &seen(const char *keyword, float share)
    {
        m_seen.emplace_back(keyword, share);
        return *this;
    }
    OrrinAlbum &photos(int count)
    {
        m_count = count;
        return *this;
    }

    /** Descriptors of a good photo of its own. */
    static orrin::Descriptors goodShot(int number)
    {
        orrin::Descriptors result;
        result.isValid = true;
        result.exposure = 0.5F;
        result.sharpness = 20.0F;
        result.contrast = 50.0F;
        result.detail = 18.0F;
        // Multiples of an odd constant differ in many bits.
        result.hash = 0x9e3779b97f4a7c15U * static_cast<std::uint64_t>(number + 1);
        return result;
    }

    std::vector<NyOrrinVisionedMediaItem> items() const
    {
        std::vector<NyOrrinVisionedMediaItem> result;
        for (int i = 0; i < m_count; ++i) {
            NyOrrinMediaItemBuilder builder;
            builder.setId(QUrl::fromLocalFile(QStringLiteral("/home/tina/Pictures/%1/IMG_%2.jpg").arg(m_folder).arg(i)).toDisplayString())
                .setWidth(4000)
                .setHeight(3000);
            const int day = i * m_days / m_count;
            if (m_from.isValid())
                builder.setTimestamp(QDateTime(m_from.addDays(day), QTime(12, 0)).addSecs(400 * i).toMSecsSinceEpoch());
            if (!m_places.empty()) {
                const auto &[latitude, longitude] = m_places[static_cast<std::size_t>(day) % m_places.size()];
                builder.setCoordinate(latitude, longitude);
            }
            NyOrrinVisionDescriptorsBuilder descriptors;
            orrin::Descriptors shot = goodShot(i);
            for (const auto &[keyword, share] : m_seen)
                shot.occasions.push_back({keyword, share});
            descriptors.setDescriptors(shot);
            result.emplace_back(builder.build(), descriptors.build());
        }
        return result;
    }

    std::vector<NyOrrinOccasion> occasions(const NyOrrinCurator &curator = NyOrrinCurator()) const
    {
        return curator.getOccasion(curator.curate(items()));
    }

    /** The keywords in the order of the alphabet. */
    static QStringList keywords(const std::vector<NyOrrinOccasion> &occasions)
    {
        QStringList result;
        for (const NyOrrinOccasion &occasion : occasions)
            result.append(QString::fromStdString(occasion.getKeyword()));
        result.sort();
        return result;
    }

private:
    QString m_folder;
    QDate m_from;
    int m_days;
    int m_count = 24;
    std::vector<Place> m_places;
    std::vector<std::pair<std::string, float>> m_seen;
};
