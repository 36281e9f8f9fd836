#include "record/ElapsedClock.h"

#include "app/state/Numbers.h"

namespace qm {

// What is left of whole hours and minutes is a count of seconds again.
ElapsedTime elapsedTime(double seconds) {
    ElapsedTime time;
    time.hours = truncToInt32(seconds / 3600);
    seconds -= double{3600} * time.hours;
    time.minutes = truncToInt32(seconds / 60);
    seconds -= double{60} * time.minutes;
    time.seconds = truncToInt32(seconds);
    return time;
}

QString elapsedClockText(const ElapsedTime& time) {
    constexpr int kTwoDigits = 10;
    const auto write = [&](const auto& format) {
        return QString::asprintf(format, time.hours, time.minutes, time.seconds);
    };
    if (time.seconds < kTwoDigits) {
        if (time.minutes < kTwoDigits) return time.hours < kTwoDigits ? write("0%i:0%i:0%i") : write("%2i:0%i:0%i");
        return time.hours < kTwoDigits ? write("0%i:%2i:0%i") : write("%2i:%2i:0%i");
    }
    if (time.minutes < kTwoDigits) return time.hours < kTwoDigits ? write("0%i:0%i:%2i") : write("%2i:0%i:%2i");
    return time.hours < kTwoDigits ? write("0%i:%2i:%2i") : write("%2i:%2i:%2i");
}

}  // namespace qm
