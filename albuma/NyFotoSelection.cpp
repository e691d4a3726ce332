#include "NyFotoSelection.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <bit>

namespace
{

bool isEarlier(const NyFotoFacts &a, const NyFotoFacts &b)
{
    const qint64 secondsA = a.wallClockSeconds();
    const qint64 secondsB = b.wallClockSeconds();
    if (secondsA != secondsB)
        return secondsA < secondsB;
    return a.url.toEncoded() < b.url.toEncoded();
}

/** Strongest first; the order of capture decides between equals, so that the outcome never depends on the input's order. */
bool isStronger(const NyFotoFacts &a, const NyFotoFacts &b)
{
    const double strengthA = a.strength();
    const double strengthB = b.strength();
    if (strengthA != strengthB)
        return strengthA > strengthB;
    return isEarlier(a, b);
}

bool isNearDuplicate(const NyFotoFacts &a, const NyFotoFacts &b)
{
    return std::abs(a.wallClockSeconds() - b.wallClockSeconds()) <= NyFotoSelection::NearDuplicateSeconds
        && std::popcount(a.differenceHash ^ b.differenceHash) <= NyFotoSelection::NearDuplicateBits;
}

QList<NyFotoFacts> withoutNearDuplicates(QList<NyFotoFacts> photos)
{
    std::sort(photos.begin(), photos.end(), isStronger);
    QList<NyFotoFacts> kept;
    for (const NyFotoFacts &photo : std::as_const(photos)) {
        if (std::none_of(kept.cbegin(), kept.cend(), [&](const NyFotoFacts &other) { return isNearDuplicate(photo, other); }))
            kept.append(photo);
    }
    return kept;
}

/** A photo and how many of its own moment, and of its own day, are stronger. */
struct Ranked
{
    NyFotoFacts photo;
    int rankInMoment = 0;
    bool isBestOfDay = false;
};

QList<Ranked> ranked(QList<NyFotoFacts> photos)
{
    std::sort(photos.begin(), photos.end(), isEarlier);
    QList<Ranked> result;
    qsizetype momentBegin = 0;
    for (qsizetype i = 0; i <= photos.size(); ++i) {
        const bool momentEnds = i == photos.size()
            || photos.at(i).wallClockSeconds() - photos.at(momentBegin).wallClockSeconds() > NyFotoSelection::MomentSeconds;
        if (!momentEnds)
            continue;
        QList<NyFotoFacts> moment = photos.mid(momentBegin, i - momentBegin);
        std::sort(moment.begin(), moment.end(), isStronger);
        for (qsizetype rank = 0; rank < moment.size(); ++rank)
            result.append({moment.at(rank), int(rank), false});
        momentBegin = i;
    }
    std::sort(result.begin(), result.end(), [](const Ranked &a, const Ranked &b) { return isStronger(a.photo, b.photo); });
    QSet<QDate> days;
    for (Ranked &entry : result) {
        const QDate day = entry.photo.captureTime.date();
        entry.isBestOfDay = !days.contains(day);
        days.insert(day);
    }
    return result;
}

}

NyFotoSelection::Result NyFotoSelection::select(const QList<NyFotoFacts> &photos, int limit)
{
    Result result;
    QList<NyFotoFacts> usable;
    QList<NyFotoFacts> poor;
    for (const NyFotoFacts &photo : photos) {
        switch (photo.flaw) {
        case NyFotoFacts::Flaw::Unreadable:
            ++result.unreadable;
            break;
        case NyFotoFacts::Flaw::Screenshot:
            ++result.screenshots;
            break;
        case NyFotoFacts::Flaw::Blank:
            ++result.unusable;
            break;
        case NyFotoFacts::Flaw::Blurred:
        case NyFotoFacts::Flaw::Tiny:
        case NyFotoFacts::Flaw::Rejected:
            poor.append(photo);
            break;
        case NyFotoFacts::Flaw::None:
            usable.append(photo);
            break;
        }
    }

    QSet<QDate> days;
    for (const NyFotoFacts &photo : std::as_const(usable))
        days.insert(photo.captureTime.date());
    std::sort(poor.begin(), poor.end(), isStronger);
    for (const NyFotoFacts &photo : std::as_const(poor)) {
        if (days.contains(photo.captureTime.date())) {
            ++result.unusable;
            continue;
        }
        days.insert(photo.captureTime.date());
        usable.append(photo);
    }

    const QList<NyFotoFacts> distinct = withoutNearDuplicates(usable);
    result.nearDuplicates = int(usable.size() - distinct.size());

    // A near-duplicate on the other side of midnight may have been the only shot of its day.
    QList<NyFotoFacts> candidates = distinct;
    QSet<QDate> daysKept;
    for (const NyFotoFacts &photo : distinct)
        daysKept.insert(photo.captureTime.date());
    std::sort(usable.begin(), usable.end(), isStronger);
    for (const NyFotoFacts &photo : std::as_const(usable)) {
        if (daysKept.contains(photo.captureTime.date()))
            continue;
        daysKept.insert(photo.captureTime.date());
        candidates.append(photo);
        --result.nearDuplicates;
    }

    QList<Ranked> order = ranked(candidates);
    std::stable_sort(order.begin(), order.end(), [](const Ranked &a, const Ranked &b) {
        if (a.isBestOfDay != b.isBestOfDay)
            return a.isBestOfDay;
        return a.rankInMoment < b.rankInMoment;
    });
    const qsizetype room = std::max<qsizetype>({limit, daysKept.size(), 0});
    result.surplus = int(std::max<qsizetype>(0, order.size() - room));
    for (const Ranked &entry : order.first(std::min(room, order.size())))
        result.photos.append(entry.photo);
    std::sort(result.photos.begin(), result.photos.end(), isEarlier);
    return result;
}
