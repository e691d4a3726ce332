#pragma once

#include "NyBookComposer.h"

#include <QRandomGenerator>

/** Books as the program composes them, of photos that exist in no folder; the same for the same arguments. */
namespace ComposedBooks
{
enum class Mix { Landscape, Mixed, Wild, LowResolution };

inline QList<NyFotoFacts> photos(int count, int days, Mix mix)
{
    QRandomGenerator random(quint32(count * 31 + days));
    QList<NyFotoFacts> list;
    for (int i = 0; i < count; ++i) {
        NyFotoFacts facts;
        facts.url = QUrl(QStringLiteral("file:///p/%1.jpg").arg(i));
        facts.captureTime = QDateTime(QDate(2024, 7, 1).addDays(qint64(i) * days / count), QTime(10, 0));
        facts.flaw = NyFotoFacts::Flaw::None;
        facts.sharpness = random.bounded(1.0);
        facts.exposure = random.bounded(1.0);
        switch (mix) {
        case Mix::Landscape:
            facts.sizePx = QSize(4032, 3024);
            break;
        case Mix::Mixed:
            facts.sizePx = random.bounded(3) == 0 ? QSize(3024, 4032) : QSize(6000, 4000);
            break;
        case Mix::Wild:
            facts.sizePx = QSize(random.bounded(100, 8000), random.bounded(100, 8000));
            if (i % 10 == 3)
                facts.sizePx = QSize(10000, 1000);
            if (i % 10 == 7)
                facts.sizePx = QSize(1000, 10000);
            break;
        case Mix::LowResolution:
            facts.sizePx = QSize(640, 480);
            break;
        }
        list.append(facts);
    }
    return list;
}

inline NyBookProject book(
    const QList<NyFotoFacts> &facts, const QString &title = QStringLiteral("Titel"), const QString &subtitle = QStringLiteral("Juli 2024"))
{
    NyBookComposer::Request request;
    request.photos = facts;
    request.words = {title, subtitle};
    request.style.id = NyDesignElementID(QStringLiteral("velmora.style.test"));
    return NyBookComposer::compose(request);
}
}
