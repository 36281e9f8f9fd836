// Media time: a count of units at a scale of units per second. A value type; any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qm {

inline constexpr std::uint32_t kQTTimeIsIndefinite = 1;

struct QTTime {
    std::int64_t timeValue = 0;  // units
    std::int32_t timeScale = 0;  // units per second
    std::uint32_t flags = 0;     // bit 0: indefinite

    friend bool operator==(const QTTime&, const QTTime&) = default;
};

struct QTTimeRange {
    QTTime time;
    QTTime duration;

    friend bool operator==(const QTTimeRange&, const QTTimeRange&) = default;
};

// Both operands share one time scale, and the result has it.
QTTime QTTimeIncrement(QTTime a, QTTime b);
QTTime QTTimeDecrement(QTTime a, QTTime b);

// "days:hours:minutes:seconds.fraction/scale", for example 0:00:01:23.45/600; the fraction is two decimal digits,
// truncated so that it never rounds up to a whole minute. None for an indefinite time or a scale that is not positive.
std::optional<std::string> QTStringFromTime(QTTime t);

}  // namespace qm
