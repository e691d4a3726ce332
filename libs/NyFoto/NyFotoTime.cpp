#include "NyFotoTime.h"

#include <optional>

#include <QtCore/QRegularExpression>
#include <QtCore/QTimeZone>

namespace
{

/** Seconds east of UTC from "+02:00", "-0330" or "Z"; nothing for other texts. */
std::optional<int> offsetSeconds(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral(R"(\A\s*(?:(Z)|([+-])([0-9]{2}):?([0-9]{2}))\s*\z)"));
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return {};
    if (match.hasCaptured(1))
        return 0;
    const int hours = match.captured(3).toInt();
    const int minutes = match.captured(4).toInt();
    if (hours > 14 || minutes > 59)
        return {};
    const int seconds = hours * 3600 + minutes * 60;
    return match.captured(2) == u"-" ? -seconds : seconds;
}

int millisecondsOf(const QString &digits)
{
    int value = 0;
    int count = 0;
    for (const QChar digit : digits) {
        if (digit < u'0' || digit > u'9' || count == 3)
            break;
        value = value * 10 + (digit.unicode() - u'0');
        ++count;
    }
    for (; count < 3; ++count)
        value *= 10;
    return value;
}

QDateTime localTime(const QDate &date, const QTime &time)
{
    const QDateTime local(date, time);
    if (local.isValid() && local.time() == time)
        return local;
    // The camera's clock need not know of this machine's summer time, so the skipped hour is kept with the offset before it.
    const QDateTime before(date.addDays(-1), time);
    return QDateTime(date, time, Qt::OffsetFromUTC, before.offsetFromUtc());
}

}

QDateTime NyFotoTime::parse(const NyImageTimeText &text)
{
    static const QRegularExpression pattern(
        QStringLiteral(R"(\A\s*([0-9]{4})[:\-/.]([0-9]{2})[:\-/.]([0-9]{2}))"
                       R"((?:[ T]([0-9]{2}):([0-9]{2})(?::([0-9]{2})(?:[.,]([0-9]+))?)?\s*(Z|[+-][0-9]{2}:?[0-9]{2})?)?\s*\z)"));
    const QRegularExpressionMatch match = pattern.match(text.dateTime);
    if (!match.hasMatch())
        return {};
    const QDate date(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
    const QString fraction = match.hasCaptured(7) ? match.captured(7) : text.subSeconds.trimmed();
    const QTime time = match.hasCaptured(4)
        ? QTime(match.captured(4).toInt(), match.captured(5).toInt(), match.captured(6).toInt(), millisecondsOf(fraction))
        : QTime(0, 0);
    // Photography is younger than 1826; a smaller year is a clock that was never set.
    if (!date.isValid() || date.year() < 1826 || !time.isValid())
        return {};
    const std::optional<int> offset = offsetSeconds(match.hasCaptured(8) ? match.captured(8) : text.offset);
    return offset ? QDateTime(date, time, Qt::OffsetFromUTC, *offset) : localTime(date, time);
}

QDateTime NyFotoTime::captureTime(const NyImageMetaData &metaData)
{
    for (const NyImageTimeText &text : metaData.captureTimes) {
        const QDateTime time = parse(text);
        if (time.isValid())
            return time;
    }
    return {};
}
