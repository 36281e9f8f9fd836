// Clicks and plucked notes that are made here, so that the frame at which each begins is known.
#include "engine/analysis/Attacks.h"

#include <doctest/doctest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "support/Signals.h"

using namespace qm;
using namespace qm::test;

namespace {

struct Notes {
    std::vector<std::int64_t> starts;
    std::vector<float> sound;
    int rate;

    explicit Notes(int perSecond) : sound(static_cast<std::size_t>(12 * perSecond)), rate(perSecond) {}

    // From half a second on, a fifth to seven tenths of a second apart. `play` writes one from the frame it is given.
    template <typename Play>
    void playAll(Play play) {
        std::minstd_rand random(3);
        for (double t = 0.5; t < 11.3; t += 0.2 + 0.5 * std::uniform_real_distribution()(random)) {
            starts.push_back(std::llround(t * rate));
            play(static_cast<std::size_t>(starts.back()), random);
        }
    }

    ComputedSound reader() const {
        return {static_cast<std::int64_t>(sound.size()),
                [this](std::int64_t n) {
                    const float s = sound[static_cast<std::size_t>(n)];
                    return StereoFrame{s, s};
                },
                rate};
    }

    // How many notes a mark misses that is set somewhere near them, by over so many milliseconds.
    int missed(double milliseconds) const {
        int count = 0;
        ComputedSound played = reader();
        for (const std::int64_t start : starts) {
            const std::int64_t mark = start + rate / 20;
            std::int64_t nearest = -rate;
            for (const std::int64_t attack : attacksAround(played, mark))
                if (std::abs(attack - mark) < std::abs(nearest - mark)) nearest = attack;
            const double off = 1000.0 * static_cast<double>(nearest - start) / rate;
            if (std::abs(off) > milliseconds) {
                MESSAGE(off << " ms beside the note at " << start);
                ++count;
            }
        }
        return count;
    }
};

constexpr double kNotes[] = {82.4, 110, 146.8, 196, 246.9, 329.6, 440, 660};

template <typename Random>
double anyNote(Random& random) {
    return kNotes[random() % std::size(kNotes)];
}

// A string of noise that a filter damps.
Notes pluckedStrings(int rate) {
    Notes notes(rate);
    notes.playAll([&](std::size_t start, auto& random) {
        std::vector<float> string(static_cast<std::size_t>(rate / anyNote(random)));
        for (float& s : string) s = std::uniform_real_distribution<float>(-0.5f, 0.5f)(random);
        const std::size_t end = std::min(notes.sound.size(), start + static_cast<std::size_t>(2 * rate));
        for (std::size_t n = start, i = 0; n < end; ++n, i = (i + 1) % string.size()) {
            notes.sound[n] += 0.5f * string[i];
            string[i] = 0.498f * (string[i] + string[(i + 1) % string.size()]);
        }
    });
    return notes;
}

// Harmonics that rise within two milliseconds and fade, while the former notes still sound.
Notes softNotes(int rate) {
    Notes notes(rate);
    notes.playAll([&](std::size_t start, auto& random) {
        const double hertz = anyNote(random);
        const std::size_t end = std::min(notes.sound.size(), start + static_cast<std::size_t>(rate));
        for (std::size_t n = start; n < end; ++n) {
            const double t = static_cast<double>(n - start) / rate;
            double s = 0;
            for (int h = 1; h <= 4; ++h) s += std::sin(2 * std::numbers::pi * hertz * h * t) / h;
            notes.sound[n] += static_cast<float>(0.2 * s * std::min(1.0, t / 0.002) * std::exp(-4 * t));
        }
    });
    return notes;
}

Notes overNoise(Notes notes) {
    std::minstd_rand random(5);
    for (float& s : notes.sound) s += std::normal_distribution<float>(0, 0.003f)(random);
    return notes;
}

Notes clicks(int rate) {
    Notes notes(rate);
    notes.playAll([&](std::size_t start, auto&) {
        for (std::size_t n = 0; n < static_cast<std::size_t>(rate / 50); ++n)
            notes.sound[start + n] +=
                static_cast<float>(0.8 * std::cos(2 * std::numbers::pi * 1000 * static_cast<double>(n) / rate) *
                                   std::exp(-300.0 * double(n) / rate));
    });
    return notes;
}

}  // namespace

TEST_CASE("A mark snaps to a click within a millisecond") {
    for (const int rate : {44100, 48000, 96000}) {
        CAPTURE(rate);
        CHECK(clicks(rate).missed(1) == 0);
    }
}

TEST_CASE("A mark snaps to a plucked note within five milliseconds, while others still sound") {
    for (const int rate : {44100, 48000, 96000}) {
        CAPTURE(rate);
        CHECK(pluckedStrings(rate).missed(5) == 0);
        CHECK(overNoise(pluckedStrings(rate)).missed(5) == 0);
        CHECK(softNotes(rate).missed(5) <= 1);  // a low one beneath those that ring may be none to the finder
    }
}

TEST_CASE("A click in silence begins at its first frame") {
    ComputedSound single(44100, [](std::int64_t n) { return n == 20000 ? StereoFrame{0.5f, -0.5f} : StereoFrame{}; });
    CHECK(attacksAround(single, 21000) == std::vector<std::int64_t>{20000});
    CHECK(firstFrameOfRise(single, 20100) == 20000);
    CHECK(firstFrameOfRise(single, 19800) == 20000);
}

TEST_CASE("Attacks farther away than 150 ms are none, nor is there one in silence or in a steady tone") {
    ComputedSound single(88200, [](std::int64_t n) { return n == 20000 ? StereoFrame{0.5f, 0.5f} : StereoFrame{}; });
    CHECK(attacksAround(single, 20000 + 6615).size() == 1);
    CHECK(attacksAround(single, 20000 - 6615).size() == 1);
    CHECK(attacksAround(single, 20000 + 6616).empty());
    CHECK(attacksAround(single, 20000 - 6616).empty());
    CHECK(attacksAround(single, 60000).empty());
    ComputedSound tone(88200, [](std::int64_t n) { return toneFrame(n, 440); });
    CHECK(attacksAround(tone, 44100).empty());
}
