#include <doctest/doctest.h>

#include <cmath>

#include "engine/output/GapWatch.h"
#include "engine/output/Reserve.h"

using namespace qm;

namespace {

constexpr int kRate = 44100;

// Plays for some seconds and looks every 10 ms; `lost` says how many seconds have been lost by then. Counts the gaps.
template <typename Lost>
int gapsSeen(GapWatch& watch, double seconds, Lost lost) {
    int gaps = 0;
    for (int look = 0; look * 0.01 < seconds; ++look) {
        const double now = look * 0.01;
        const double jitter = 0.012 * ((look * 7919) % 13) / 13.0;  // the count goes on in the server's blocks
        gaps += watch.sees(1000 + now, std::llround((now - lost(now) - jitter) * kRate));
    }
    return gaps;
}

}  // namespace

TEST_CASE("a device whose count only jitters has no gap") {
    GapWatch watch(kRate);
    CHECK(gapsSeen(watch, 60, [](double) { return 0.0; }) == 0);
}

TEST_CASE("a device whose own clock is slow has no gap") {
    GapWatch watch(kRate);
    CHECK(gapsSeen(watch, 60, [](double now) { return now * 0.0005; }) == 0);
}

TEST_CASE("each time the device falls behind for good is one gap") {
    GapWatch watch(kRate);
    const auto lost = [](double now) { return now < 3.2 ? 0.0 : now < 7.7 ? 0.02 : 0.092; };
    CHECK(gapsSeen(watch, 12, lost) == 2);
}

TEST_CASE("a count that ran ahead while the server hung and was put right is a gap only by what stays lost") {
    GapWatch watch(kRate);
    const auto caughtUp = [](double now) { return now > 3.0 && now < 3.3 ? 0.05 : 0.0; };
    CHECK(gapsSeen(watch, 8, caughtUp) == 0);
}

TEST_CASE("how long a device takes to start is no gap") {
    GapWatch watch(kRate);
    CHECK(gapsSeen(watch, 5, [](double now) { return std::min(now, 0.09); }) == 0);
    watch.restart();
    CHECK(gapsSeen(watch, 5, [](double now) { return std::min(now, 0.3); }) == 0);
}

TEST_CASE("one break leaves the device's reserve, the second within half a minute makes it grow") {
    Reserve reserve;
    const double least = reserve.deviceSeconds();
    CHECK_FALSE(reserve.deviceRanDry(0));
    CHECK_FALSE(reserve.deviceRanDry(31000));
    CHECK(reserve.deviceSeconds() == least);
    CHECK(reserve.deviceRanDry(60000));
    CHECK(reserve.deviceSeconds() > least);
}

TEST_CASE("the device's reserve stops growing") {
    Reserve reserve;
    for (int i = 0; i < 20; ++i) reserve.deviceRanDry(i);
    CHECK(reserve.deviceSeconds() == 0.2);
    CHECK_FALSE(reserve.deviceRanDry(21));
    CHECK_FALSE(reserve.deviceRanDry(22));
}

TEST_CASE("the reserve shrinks step by step, each after a quiet minute, and only at rest") {
    Reserve reserve;
    for (int i = 0; i < 4; ++i) reserve.deviceRanDry(i);
    CHECK(reserve.deviceSeconds() == 0.12);
    CHECK_FALSE(reserve.rest(30000));
    CHECK(reserve.rest(60004));
    CHECK(reserve.deviceSeconds() == 0.06);
    CHECK_FALSE(reserve.rest(60005));
    CHECK(reserve.rest(130000));
    CHECK(reserve.deviceSeconds() == 0.025);
    CHECK_FALSE(reserve.rest(300000));
}

TEST_CASE("a renderer that was late renders further ahead, and less again after a quiet minute") {
    Reserve reserve;
    CHECK(reserve.laneSeconds() == 0.15);
    reserve.laneRanDry(0);
    CHECK(reserve.laneSeconds() == 0.3);
    reserve.laneRanDry(1);
    reserve.laneRanDry(2);
    CHECK(reserve.laneSeconds() == Reserve::mostLaneSeconds());
    CHECK_FALSE(reserve.rest(61000));
    CHECK(reserve.laneSeconds() == 0.3);
    CHECK(reserve.deviceSeconds() == 0.025);
}
