#include "Beacon.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <map>
#include <numbers>
#include <stdexcept>
#include <vector>

namespace qm::measure {

namespace {

using Vector = std::complex<double>;

constexpr double kTurn = 2 * std::numbers::pi;
constexpr double kToneHz = 440.5;  // not a whole number: a place a second away stands on the other side
constexpr double kSwellHz = 20;
constexpr double kSize = 0.4;    // full scale is 1
constexpr double kSwell = 0.5;   // part of the size that comes and goes
constexpr double kQuiet = 0.05;  // half of what the smallest size is at a gain of one half
constexpr std::size_t kReach = kSampleRate * 3 / 4;
constexpr std::size_t kSwellFrames = std::size_t(kSampleRate / kSwellHz);

Vector at(const Sound& sound, std::size_t frame) {
    return {sound.left[frame], sound.right[frame]};
}

std::size_t reachOf(const Sound& sound, std::size_t from) {
    return std::min(sound.frames(), from + kReach);
}

std::optional<std::size_t> findLevel(const Sound& sound, std::size_t from, bool louder) {
    for (std::size_t i = from; i < reachOf(sound, from); ++i) {
        if ((std::abs(at(sound, i)) > kQuiet) == louder) {
            return i;
        }
    }
    return std::nullopt;
}

// A steady beacon is what it was a swell ago, turned.
std::optional<std::size_t> findJump(const Sound& sound, std::size_t from) {
    const Vector turned = std::polar(1.0, kTurn * kToneHz / kSwellHz);
    for (std::size_t i = std::max(from, kSwellFrames); i < reachOf(sound, from); ++i) {
        if (std::abs(at(sound, i) - at(sound, i - kSwellFrames) * turned) > kQuiet) {
            return i;
        }
    }
    return std::nullopt;
}

// Radians a frame, the mean over [from, to), loud frames counting more.
double turning(const Sound& sound, std::size_t from, std::size_t to) {
    Vector sum = 0;
    for (std::size_t i = std::max<std::size_t>(from, 1); i < std::min(to, sound.frames()); ++i) {
        sum += at(sound, i) * std::conj(at(sound, i - 1));
    }
    return std::arg(sum);
}

std::optional<std::size_t> findTurn(const Sound& sound, std::size_t from) {
    constexpr std::size_t kHalfWindow = kSampleRate / 200;  // 5 ms
    const std::size_t end = reachOf(sound, from);
    if (from < kReach || end - from < kReach) {
        return std::nullopt;
    }
    const double before = turning(sound, from - kReach / 2, from);
    const double after = turning(sound, end - kReach / 2, end);
    const double middle = (before + after) / 2;
    if (std::abs(after - before) < 0.02 * std::abs(before)) {
        return std::nullopt;
    }
    for (std::size_t i = from; i + kHalfWindow < end; ++i) {
        const double now = turning(sound, i - kHalfWindow, i + kHalfWindow);
        if ((now > middle) == (after > before)) {
            return i;
        }
    }
    return std::nullopt;
}

// How the swell stands around a frame: the angle of the size's part at `hz`.
Vector swellAt(const Sound& sound, std::size_t middle, double hz) {
    const auto half = std::size_t(kSampleRate / hz);  // a window of two swells
    Vector sum = 0;
    for (std::size_t i = middle - half; i < middle + half; ++i) {
        const double hann = 1 + std::cos(std::numbers::pi * (double(i) - double(middle)) / double(half));
        sum += hann * std::abs(at(sound, i)) * std::polar(1.0, -kTurn * hz * double(i) / kSampleRate);
    }
    return sum;
}

struct Line {
    double mean, slope, middle;
    double at(double x) const { return mean + slope * (x - middle); }
};

// The swells counted at every two milliseconds of [begin, end), as a line with the least squares of error.
std::optional<Line> swellLine(const Sound& sound, std::size_t begin, std::size_t end, double& turns, Vector& last) {
    constexpr double kNear = 0.8 * kSwellHz;
    std::vector<double> x, y;
    for (std::size_t i = begin; i < end; i += 88) {
        const Vector now = swellAt(sound, i, kNear);
        turns += last == Vector(0) ? 0 : std::arg(now * std::conj(last)) / kTurn;
        last = now;
        x.push_back(double(i));
        y.push_back(turns + kNear * double(i) / kSampleRate);
    }
    if (x.size() < 2) {
        return std::nullopt;
    }
    const double n = double(x.size());
    Line line{0, 0, (x.front() + x.back()) / 2};
    double sxx = 0, sxy = 0;
    for (std::size_t i = 0; i < x.size(); ++i) {
        line.mean += y[i] / n;
        sxx += (x[i] - line.middle) * (x[i] - line.middle);
        sxy += (x[i] - line.middle) * y[i];
    }
    line.slope = sxy / sxx;
    return line;
}

std::optional<std::size_t> findSpeed(const Sound& sound, std::size_t from) {
    const std::size_t end = reachOf(sound, from);
    const std::size_t settled = kSampleRate / 4, edge = kSampleRate / 8;
    if (from < kReach + edge || end - from < kReach || end + edge > sound.frames()) {
        return std::nullopt;
    }
    double turns = 0;
    Vector last = 0;
    const auto before = swellLine(sound, from - kReach, from - edge, turns, last);
    swellLine(sound, from - edge, from + settled, turns, last);
    const auto after = swellLine(sound, from + settled, end, turns, last);
    if (!before || !after || std::abs(after->slope - before->slope) < 0.02 * before->slope) {
        return std::nullopt;
    }
    const double meet =
        double(from) + (before->at(double(from)) - after->at(double(from))) / (after->slope - before->slope);
    return meet < double(from) ? from : std::size_t(meet);
}

}  // namespace

Sound makeBeacon(int seconds) {
    Sound sound;
    for (int i = 0; i < seconds * kSampleRate; ++i) {
        const double t = double(i) / kSampleRate;
        const double size = kSize * (1 - kSwell * (0.5 + 0.5 * std::cos(kTurn * kSwellHz * t)));
        sound.left.push_back(float(size * std::cos(kTurn * kToneHz * t)));
        sound.right.push_back(float(size * std::sin(kTurn * kToneHz * t)));
    }
    return sound;
}

Change changeNamed(const std::string& name) {
    static const std::map<std::string, Change> kNames = {{"quieter", Change::Quieter},
                                                         {"louder", Change::Louder},
                                                         {"jump", Change::Jump},
                                                         {"turn", Change::Turn},
                                                         {"speed", Change::Speed}};
    const auto found = kNames.find(name);
    if (found == kNames.end()) {
        throw std::invalid_argument("no change is named " + name);
    }
    return found->second;
}

std::optional<std::size_t> findChange(const Sound& recording, Change change, std::size_t from) {
    switch (change) {
        case Change::Quieter:
            return findLevel(recording, from, false);
        case Change::Louder:
            return findLevel(recording, from, true);
        case Change::Jump:
            return findJump(recording, from);
        case Change::Turn:
            return findTurn(recording, from);
        case Change::Speed:
            return findSpeed(recording, from);
    }
    return std::nullopt;
}

std::size_t longestSilence(const Sound& recording, std::size_t from, std::size_t to) {
    std::size_t longest = 0, quiet = 0;
    for (std::size_t i = from; i < recording.frames() && (i < to || quiet > 0); ++i) {
        quiet = recording.silentAt(i) ? quiet + 1 : 0;
        longest = std::max(longest, quiet);
    }
    return longest;
}

}  // namespace qm::measure
