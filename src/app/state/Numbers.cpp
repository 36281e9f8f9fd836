#include "app/state/Numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace qm {

QString fixedText(double value, int decimals) {
    std::array<char, 400> buffer;  // the largest double has 309 digits before the point
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals);
    return QString::fromLatin1(buffer.data(), end.ptr - buffer.data());
}

QString rateTitle(float rate) {
    return fixedText(rate, 6) + QStringLiteral(".2");
}

std::int32_t truncToInt32(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(value)) return 0;
    if (value <= Limits::min()) return Limits::min();
    if (value >= Limits::max()) return Limits::max();
    return static_cast<std::int32_t>(value);
}

}  // namespace qm
