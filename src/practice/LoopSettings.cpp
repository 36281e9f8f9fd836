#include "practice/LoopSettings.h"

#include <cmath>

namespace qm {

namespace {

constexpr double kSame = 1e-4;
constexpr double kDecimals = 1e6;

bool isSame(std::optional<double> one, std::optional<double> other) {
    return one.has_value() == other.has_value() && (!one || isSameSetting(*one, *other));
}

std::optional<double> unlessNeutral(double value, double neutral) {
    return isSameSetting(value, neutral) ? std::nullopt : std::optional(keptSetting(value));
}

}  // namespace

bool isSameSetting(double one, double other) {
    return std::abs(one - other) < kSame;
}

double keptSetting(double value) {
    return std::round(value * kDecimals) / kDecimals;
}

void putSettings(KeptLoop& loop, const LoopSettings& now) {
    loop.a = now.marks.a;
    loop.b = now.marks.b;
    loop.speed = unlessNeutral(now.speed, 1);
    loop.cents = unlessNeutral(now.cents, 0);
}

bool hasSameSettings(const KeptLoop& one, const KeptLoop& other) {
    return one.a == other.a && one.b == other.b && isSame(one.speed, other.speed) && isSame(one.cents, other.cents);
}

bool isPlayedOtherwise(const KeptLoop& loop, const LoopSettings& now) {
    return loop.a != now.marks.a || loop.b != now.marks.b || (loop.speed && !isSameSetting(*loop.speed, now.speed)) ||
           (loop.cents && !isSameSetting(*loop.cents, now.cents));
}

}  // namespace qm
