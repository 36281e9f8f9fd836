#include <doctest/doctest.h>

#include <cmath>
#include <vector>

#include "engine/sound/PcmCache.h"
#include "engine/sound/Timeline.h"
#include "support/Signals.h"

using namespace qm;
using namespace qm::test;

namespace {

struct CodedTimeline {
    explicit CodedTimeline(std::int64_t length) : cache(std::make_unique<ComputedSound>(length, codedFrame)) {}

    std::vector<StereoFrame> read(const Playhead& head, std::int64_t step, std::size_t count, bool seam = false) {
        std::vector<StereoFrame> out(count);
        timeline.begin(head, seam, {});
        REQUIRE(timeline.read(step, out));
        return out;
    }

    PcmCache cache;
    Timeline timeline{cache};
};

}  // namespace

TEST_CASE("a loop of three seconds repeats every 132300 frames, one hundred times, without another jump") {
    CodedTimeline t(400000);
    const std::int64_t a = 88200, b = 220500;
    t.timeline.begin(makePlayhead(a, false, true, a, b, 400000), false, {});
    std::vector<StereoFrame> block(1000);
    std::int64_t step = 0, wrong = 0;
    while (step < 100 * (b - a)) {
        REQUIRE(t.timeline.read(step, block));
        for (const StereoFrame& f : block) wrong += frameOf(f.left) != a + step++ % (b - a);
    }
    CHECK(wrong == 0);
}

TEST_CASE("a track played backward is its exact reverse, across the chunks it is decoded in") {
    const std::int64_t length = 3 * PcmCache::kChunkFrames + 77;
    CodedTimeline t(length);
    const auto out = t.read(makePlayhead(length, true, false, 0, 0, length), 0, static_cast<std::size_t>(length));
    std::int64_t wrong = 0;
    for (std::int64_t i = 0; i < length; ++i) wrong += frameOf(out[static_cast<std::size_t>(i)].left) != length - 1 - i;
    CHECK(wrong == 0);
}

TEST_CASE("outside the track there is silence") {
    CodedTimeline t(100);
    const auto out = t.read(makePlayhead(0, false, false, 0, 0, 100), -5, 120);
    CHECK(out[4] == StereoFrame{});
    CHECK(frameOf(out[5].left) == 0);
    CHECK(frameOf(out[104].left) == 99);
    CHECK(out[105] == StereoFrame{});
}

TEST_CASE("past the end of a range that does not loop there is silence") {
    CodedTimeline t(100);
    const auto out = t.read(Playhead{10, 10, 20, false, false}, 0, 15);
    CHECK(frameOf(out[9].left) == 19);
    CHECK(out[10] == StereoFrame{});
}

TEST_CASE("a range shorter than a block repeats exactly") {
    CodedTimeline t(1000);
    const auto out = t.read(makePlayhead(500, false, true, 500, 507, 1000), 0, 700);
    std::int64_t wrong = 0;
    for (std::size_t i = 0; i < out.size(); ++i) wrong += frameOf(out[i].left) != 500 + std::int64_t(i % 7);
    CHECK(wrong == 0);
}

TEST_CASE("a seam that jumps fades within the last five milliseconds and leaves the rest and the period alone") {
    CodedTimeline t(400000);
    const std::int64_t a = 100000, b = 144100, fade = 221;
    const auto out = t.read(makePlayhead(a, false, true, a, b, 400000), 0, std::size_t(2 * (b - a)), true);
    const auto period = static_cast<std::size_t>(b - a);
    std::int64_t changedInside = 0, changedInFade = 0;
    for (std::size_t i = 0; i < period; ++i) {
        const bool changed = frameOf(out[i].left) != a + std::int64_t(i);
        (std::int64_t(period - i) > fade ? changedInside : changedInFade) += changed;
        CHECK_MESSAGE(out[i] == out[i + period], "every pass is the same, frame " << i);
        if (out[i] != out[i + period]) break;
    }
    CHECK(changedInside == 0);
    CHECK(changedInFade > 200);
}

TEST_CASE("no step at a faded seam is larger than the signal's own steps beside it") {
    const auto wave = [](std::int64_t n) { return toneFrame(n, 441); };
    PcmCache cache(std::make_unique<ComputedSound>(200000, wave));
    Timeline timeline(cache);
    const std::int64_t a = 44100, b = 88225;  // a quarter of a period too long
    for (const bool backward : {false, true}) {
        timeline.begin(makePlayhead(backward ? b : a, backward, true, a, b, 200000), true, {});
        std::vector<StereoFrame> out(2000);
        REQUIRE(timeline.read(b - a - 1000, out));
        float largest = 0;
        for (std::size_t i = 1; i < out.size(); ++i)
            largest = std::max(largest, std::abs(out[i].left - out[i - 1].left));
        const float own = 0.4f * 2 * 3.14159f * 441 / 44100;
        CHECK(largest < 1.5f * own);
    }
}

TEST_CASE("a seam that is continuous already is left bit for bit as it is") {
    const auto wave = [](std::int64_t n) { return toneFrame(n % 100, 441); };
    PcmCache cache(std::make_unique<ComputedSound>(200000, wave));
    Timeline timeline(cache);
    timeline.begin(makePlayhead(44100, false, true, 44100, 88200, 200000), true, {});
    std::vector<StereoFrame> out(88200);
    REQUIRE(timeline.read(0, out));
    std::int64_t wrong = 0;
    for (std::size_t i = 0; i < out.size(); ++i) wrong += !(out[i] == wave(std::int64_t(i)));
    CHECK(wrong == 0);
}
