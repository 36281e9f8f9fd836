// The clock of a recording: what has elapsed, in hours, minutes and seconds, and how it is written. Pure; any thread.
#pragma once

#include <QString>
#include <cstdint>

namespace qm {

struct ElapsedTime {
    std::int32_t hours = 0;
    std::int32_t minutes = 0;
    std::int32_t seconds = 0;

    friend bool operator==(const ElapsedTime&, const ElapsedTime&) = default;
};

inline constexpr QLatin1StringView kNothingElapsed{"00:00:00"};

ElapsedTime elapsedTime(double seconds);  // each part truncated toward zero

// Two digits a part, more for a hundred hours.
QString elapsedClockText(const ElapsedTime& time);

}  // namespace qm
