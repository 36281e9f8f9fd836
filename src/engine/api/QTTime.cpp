#include "engine/api/QTTime.h"

#include <cstdio>

namespace qm {

QTTime QTTimeIncrement(QTTime a, QTTime b) {
    return {
        static_cast<std::int64_t>(static_cast<std::uint64_t>(a.timeValue) + static_cast<std::uint64_t>(b.timeValue)),
        a.timeScale, 0};
}

QTTime QTTimeDecrement(QTTime a, QTTime b) {
    return {
        static_cast<std::int64_t>(static_cast<std::uint64_t>(a.timeValue) - static_cast<std::uint64_t>(b.timeValue)),
        a.timeScale, 0};
}

std::optional<std::string> QTStringFromTime(QTTime t) {
    if ((t.flags & kQTTimeIsIndefinite) != 0 || t.timeScale <= 0) return std::nullopt;
    const bool negative = t.timeValue < 0;
    const auto magnitude =
        negative ? 0 - static_cast<std::uint64_t>(t.timeValue) : static_cast<std::uint64_t>(t.timeValue);
    const auto scale = static_cast<std::uint64_t>(t.timeScale);
    const std::uint64_t wholeSeconds = magnitude / scale;
    const std::uint64_t hundredths = magnitude % scale * 100 / scale;
    char text[64];
    std::snprintf(text, sizeof text, "%s%llu:%02u:%02u:%02u.%02u/%d", negative ? "-" : "",
                  static_cast<unsigned long long>(wholeSeconds / 86400), unsigned(wholeSeconds / 3600 % 24),
                  unsigned(wholeSeconds / 60 % 60), unsigned(wholeSeconds % 60), unsigned(hundredths), t.timeScale);
    return std::string(text);
}

}  // namespace qm
