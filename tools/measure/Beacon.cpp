#include "Beacon.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <map>
#include <numbers>
#include <stdexcept>
#include <vector>

#include "Line.h"

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

// The swells counted so far, at every step from `from` to `to`.
class SwellCounter {
public:
    static constexpr std::size_t kStep = kSampleRate / 500;  // 2 ms

    explicit SwellCounter(const Sound& sound) : m_sound(sound) {}

    std::vector<double> count(std::size_t from, std::size_t to) {
        std::vector<double> counts;
        for (std::size_t i = from; i < to; i += kStep) {
            const Vector now = swellAt(m_sound, i, kNearHz);
            m_turns += std::arg(now * std::conj(m_last)) / kTurn;
            m_last = now;
            counts.push_back(m_turns + kNearHz * double(i) / kSampleRate);
        }
        return counts;
    }

private:
    static constexpr double kNearHz = 0.8 * kSwellHz;  // of the speeds that are compared

    const Sound& m_sound;
    double m_turns = 0;
    Vector m_last = 0;
};

std::optional<std::size_t> findSpeed(const Sound& sound, std::size_t from) {
    constexpr std::size_t kSteps = 150, kSettling = 125;  // 300 ms of line on each side, 250 ms in between
    constexpr std::size_t kLine = kSteps * SwellCounter::kStep, kGap = kSettling * SwellCounter::kStep;
    constexpr std::size_t kEdge = kSampleRate / 8;  // what a window needs beside its middle
    if (from < kLine + 2 * kEdge || from + kGap + kLine + kEdge > sound.frames()) {
        return std::nullopt;
    }
    const std::size_t begin = from - kEdge - kLine, first = begin + kLine,
                      second = first + kEdge / SwellCounter::kStep * SwellCounter::kStep + kGap;
    if (longestSilence(sound, begin, second + kLine) > 0) {
        return std::nullopt;
    }
    SwellCounter counter(sound);
    const Line before = fitLine(counter.count(begin, first));
    counter.count(first, second);
    const Line after = fitLine(counter.count(second, second + kLine));
    if (std::abs(after.slope - before.slope) < 0.02 * before.slope) {
        return std::nullopt;
    }
    // In steps from `begin`, where the two lines say the same.
    const double apart = double(second - begin) / double(SwellCounter::kStep);
    const double meet = (after.at(-apart) - before.start) / (before.slope - after.slope);
    return std::max(from, begin + std::size_t(std::max(0.0, meet * double(SwellCounter::kStep))));
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
