#include "app/state/TimeFormat.h"

#include <cstdint>

#include "app/state/Numbers.h"

namespace qm {

namespace {

struct TimeParts {
    bool negative;
    std::uint64_t days;
    std::uint64_t hours;
    std::uint64_t minutes;
    double seconds;
};

std::optional<TimeParts> partsOf(QTTime time) {
    if ((time.flags & kQTTimeIsIndefinite) != 0 || time.timeScale <= 0) return std::nullopt;
    const bool negative = time.timeValue < 0;
    // Unsigned, because the magnitude of the lowest value has no signed form.
    std::uint64_t rest = negative ? 0 - static_cast<std::uint64_t>(time.timeValue) : time.timeValue;
    const auto take = [&rest](std::uint64_t unit) {
        const std::uint64_t count = rest / unit;
        rest %= unit;
        return count;
    };
    const std::uint64_t perSecond = time.timeScale;
    const std::uint64_t days = take(perSecond * 86400);
    const std::uint64_t hours = take(perSecond * 3600);
    const std::uint64_t minutes = take(perSecond * 60);
    return TimeParts{negative, days, hours, minutes, static_cast<double>(rest) / static_cast<double>(perSecond)};
}

QString twoDigits(std::uint64_t value) {
    return QString::number(value).rightJustified(2, u'0');
}

}  // namespace

std::optional<QString> stringFromQTTime(QTTime time) {
    const auto parts = partsOf(time);
    if (!parts) return std::nullopt;
    return (parts->negative ? QStringLiteral("-") : QString()) + QString::number(parts->days) + u':' +
           twoDigits(parts->hours) + u':' + twoDigits(parts->minutes) + u':' + fixedText(parts->seconds, 2);
}

std::optional<QString> stringFromQTTimeLite(QTTime time) {
    const auto parts = partsOf(time);
    if (!parts) return std::nullopt;
    return twoDigits(parts->hours) + u':' + twoDigits(parts->minutes) + u':' +
           twoDigits(static_cast<std::uint64_t>(parts->seconds));
}

QString elapsedText(const QString& timeString, QChar slash) {
    const qsizetype at = timeString.indexOf(slash);
    const qsizetype length = at >= 13 && at <= 17 ? at - 3 : 10;
    return timeString.mid(3, length);  // without the day count, its colon and the first hour digit
}

}  // namespace qm
