#include "practice/Marks.h"

#include <doctest/doctest.h>

using namespace qm;

namespace {

constexpr MarkedTrack kTrack{441000, 44100};  // ten seconds

}  // namespace

TEST_CASE("A nudge moves a mark by whole frames, rounded from milliseconds") {
    struct {
        std::int64_t scale;
        std::int64_t frames[3];  // of 1, 10 and 100 ms
    } const cases[] = {{44100, {44, 441, 4410}}, {48000, {48, 480, 4800}}, {600, {1, 6, 60}}};
    for (const auto& c : cases) {
        CAPTURE(c.scale);
        const MarkedTrack track{10 * c.scale, c.scale};
        const Marks marks{2 * c.scale, 5 * c.scale};
        const std::int64_t milliseconds[] = {1, 10, 100};
        for (int i = 0; i < 3; ++i) {
            const std::int64_t ms = milliseconds[i], frames = c.frames[i];
            CHECK(nudged(marks, Mark::A, ms, track) == Marks{marks.a + frames, marks.b});
            CHECK(nudged(marks, Mark::A, -ms, track) == Marks{marks.a - frames, marks.b});
            CHECK(nudged(marks, Mark::B, ms, track) == Marks{marks.a, marks.b + frames});
            CHECK(nudged(marks, Mark::B, -ms, track) == Marks{marks.a, marks.b - frames});
            CHECK(nudged(marks, Mark::Both, -ms, track) == Marks{marks.a - frames, marks.b - frames});
        }
    }
}

TEST_CASE("A nudge ends at the track's ends") {
    CHECK(nudged({100, 50000}, Mark::A, -10, kTrack) == Marks{0, 50000});
    CHECK_FALSE(nudged({0, 50000}, Mark::A, -10, kTrack));
    CHECK(nudged({100, 440900}, Mark::B, 10, kTrack) == Marks{100, 441000});
    CHECK_FALSE(nudged({100, 441000}, Mark::B, 1, kTrack));
}

TEST_CASE("Both marks move by the same number of frames, as far as the first of them can") {
    CHECK(nudged({100, 50000}, Mark::Both, -10, kTrack) == Marks{0, 49900});
    CHECK(nudged({400000, 440900}, Mark::Both, 100, kTrack) == Marks{400100, 441000});
    CHECK_FALSE(nudged({0, 441000}, Mark::Both, 1, kTrack));
}

TEST_CASE("A stays five milliseconds before B, which is 221 frames at 44100") {
    CHECK(nudged({10000, 10300}, Mark::A, 10, kTrack) == Marks{10079, 10300});
    CHECK(nudged({10000, 10300}, Mark::B, -10, kTrack) == Marks{10000, 10221});
    CHECK_FALSE(nudged({10000, 10100}, Mark::A, 1, kTrack));  // nearer already: it stays
    CHECK(nudged({10000, 10100}, Mark::A, -1, kTrack) == Marks{9956, 10100});
}

TEST_CASE("Marks that are crossed already move freely") {
    CHECK(nudged({20000, 10000}, Mark::A, -100, kTrack) == Marks{15590, 10000});
    CHECK(nudged({20000, 19900}, Mark::A, -10, kTrack) == Marks{19559, 19900});
    CHECK(nudged({20000, 10000}, Mark::Both, -1000, kTrack) == Marks{10000, 0});
}

TEST_CASE("A mark in the hand stops five milliseconds before the other") {
    CHECK(moved({10000, 20000}, Mark::A, 15000, kTrack) == Marks{15000, 20000});
    CHECK(moved({10000, 20000}, Mark::A, 30000, kTrack) == Marks{19779, 20000});
    CHECK(moved({10000, 20000}, Mark::B, -5, kTrack) == Marks{10000, 10221});
    CHECK(moved({10000, 20000}, Mark::B, 999999, kTrack) == Marks{10000, 441000});
    CHECK_FALSE(moved({10000, 20000}, Mark::A, 10000, kTrack));
}

TEST_CASE("Halving and doubling move B") {
    CHECK(halved({1000, 3001}, kTrack) == Marks{1000, 2001});
    CHECK(halved({1000, 1400}, kTrack) == Marks{1000, 1221});
    CHECK_FALSE(halved({1000, 1221}, kTrack));
    CHECK_FALSE(halved({3000, 1000}, kTrack));
    CHECK(doubled({1000, 3000}, kTrack) == Marks{1000, 5000});
    CHECK(doubled({1000, 300000}, kTrack) == Marks{1000, 441000});
    CHECK_FALSE(doubled({1000, 441000}, kTrack));
    CHECK_FALSE(doubled({3000, 3000}, kTrack));
}

TEST_CASE("The next passage begins at B, the previous one ends at A, and there and back is where it began") {
    const Marks begin{1003, 5010};
    Marks marks = begin;
    for (int i = 0; i < 50; ++i) marks = nextPassage(marks, kTrack).value();
    CHECK(marks == Marks{1003 + 50 * 4007, 5010 + 50 * 4007});
    for (int i = 0; i < 50; ++i) marks = previousPassage(marks, kTrack).value();
    CHECK(marks == begin);
    CHECK_FALSE(previousPassage(begin, kTrack));
    CHECK(nextPassage({0, 220500}, kTrack) == Marks{220500, 441000});
    CHECK_FALSE(nextPassage({0, 220501}, kTrack));
    CHECK_FALSE(nextPassage({5000, 1000}, kTrack));
}

TEST_CASE("Snapping takes the nearest attack within 150 ms, the earlier of two as near") {
    const std::vector<std::int64_t> attacks = {10000, 12000, 30000};
    CHECK(nearestAttack(attacks, 10900, 44100) == 10000);
    CHECK(nearestAttack(attacks, 11001, 44100) == 12000);
    CHECK(nearestAttack(attacks, 11000, 44100) == 10000);
    CHECK(nearestAttack(attacks, 30000 - 6615, 44100) == 30000);
    CHECK_FALSE(nearestAttack(attacks, 30000 - 6616, 44100));
    CHECK_FALSE(nearestAttack({}, 100, 44100));
}
