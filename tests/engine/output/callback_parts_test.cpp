// The small parts of the callback, each by itself.
#include <doctest/doctest.h>

#include <cmath>
#include <vector>

#include "engine/output/Gain.h"
#include "engine/output/Gate.h"
#include "engine/output/StampLog.h"

using namespace qm;

TEST_CASE("the gate opens and shuts frame by frame, and says when it is shut") {
    Gate gate;
    CHECK(gate.isShut());
    std::vector<StereoFrame> sound(Gate::kFrames, {1, 1});
    gate.apply(sound, true);
    CHECK_FALSE(gate.isShut());
    CHECK(sound.front().left == 1.0f / Gate::kFrames);
    CHECK(sound.back().left == 1);
    gate.apply(std::span(sound).first(1), false);
    CHECK(sound.front().left == doctest::Approx((Gate::kFrames - 1.0) / Gate::kFrames / Gate::kFrames));
    CHECK_FALSE(gate.isShut());
    gate.shut();
    CHECK(gate.isShut());
}

TEST_CASE("a gate that stands where it is wanted takes any number of frames, one that moves no more than its ramp") {
    Gate gate;
    CHECK(gate.framesOfRamp(false, 1000) == 1000);
    CHECK(gate.framesOfRamp(true, 1000) == Gate::kFrames);
    CHECK(gate.framesOfRamp(true, 10) == 10);
    std::vector<StereoFrame> sound(Gate::kFrames - 28, {1, 1});
    gate.apply(sound, true);
    CHECK(gate.framesOfRamp(true, 1000) == 28);
    CHECK(gate.framesOfRamp(false, 1000) == Gate::kFrames - 28);
}

TEST_CASE("an open gate leaves the sound as it is") {
    Gate gate;
    std::vector<StereoFrame> sound(Gate::kFrames, {1, 1});
    gate.apply(sound, true);
    std::vector<StereoFrame> more(10, {0.3f, -0.7f});
    gate.apply(more, true);
    CHECK(more == std::vector<StereoFrame>(10, {0.3f, -0.7f}));
}

TEST_CASE("a gain is approached in small steps while it is heard, and at once while it is not") {
    Gain gain;
    gain.set(0.5f, 0);
    std::vector<StereoFrame> sound(300, {1, 1});
    gain.apply(sound);
    CHECK(sound.front().left > 0.99f);
    CHECK(sound.back() == StereoFrame{0.5f, 0});
    gain.set(1, 1);
    gain.settle();
    sound.assign(1, {1, 1});
    gain.apply(sound);
    CHECK(sound.front() == StereoFrame{1, 1});
}

namespace {

// A lane at two steps a frame, from which frames are taken and stamped as the callback does it.
struct StampedLane {
    Lane lane{65536};
    StampLog log;

    StampedLane() {
        lane.header.speed = 2;
        lane.frames.write(std::vector<StereoFrame>(60000));
    }
    void play(std::size_t frames) {
        log.add(frames, lane, true);
        lane.frames.skip(frames);
    }
};

}  // namespace

TEST_CASE("a stamp tells the step of each of its frames, and stands still over silence") {
    StampedLane stamped;
    CHECK_FALSE(stamped.log.at(0));
    stamped.play(100);
    stamped.log.add(50, stamped.lane, false);
    stamped.play(100);
    const auto stepOf = [&](std::int64_t frame) { return stamped.log.at(frame)->stepAt(frame); };
    CHECK(stepOf(0) == 0);
    CHECK(stepOf(30) == 60);
    CHECK(stepOf(110) == 200);
    CHECK(stepOf(149) == 200);
    CHECK(stepOf(151) == 202);
    CHECK(stepOf(9999) == 400);
    CHECK(stamped.log.deviceFrames() == 250);
}

TEST_CASE("a frame that is older than all stamps is answered by the oldest") {
    StampedLane stamped;
    for (int i = 0; i < 1000; ++i) stamped.play(10);
    REQUIRE(stamped.log.at(0));
    CHECK(stamped.log.at(0)->deviceFrame > 0);
    CHECK(stamped.log.at(0)->deviceFrame < 8000);
    CHECK(stamped.log.at(9995)->stepAt(9995) == 2 * 9995);
}

TEST_CASE("a new device counts from zero and goes on where the last one stopped") {
    StampedLane stamped;
    stamped.log.restart(stamped.lane);
    CHECK_FALSE(stamped.log.at(0));
    stamped.play(100);
    stamped.log.restart(stamped.lane);
    CHECK(stamped.log.deviceFrames() == 0);
    CHECK(stamped.log.at(0)->stepAt(0) == 200);
}
