#include <doctest/doctest.h>

#include <vector>

#include "engine/output/OutputCallback.h"
#include "support/Signals.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr std::int64_t kTrack = 100000;

// A callback whose lanes are filled with coded frames from a place in the track.
struct Device {
    OutputCallback callback{8192};

    void prepare(std::int64_t start, std::size_t frames, std::uint64_t request = 0) {
        Lane* lane = callback.lanes().idle();
        REQUIRE(lane != nullptr);
        lane->header = {makePlayhead(start, false, false, 0, 0, kTrack), 0, 1, request};
        lane->base = lane->frames.writePosition();
        for (std::size_t i = 0; i < frames; ++i) {
            const StereoFrame f = codedFrame(start + std::int64_t(i));
            lane->frames.write({&f, 1});
        }
    }

    std::vector<StereoFrame> play(std::size_t frames) {
        std::vector<StereoFrame> out(frames);
        callback.fill(out);
        return out;
    }

    // Starts at a frame and plays through the opening gate.
    void startAt(std::int64_t start, std::size_t frames) {
        prepare(start, frames);
        callback.lanes().splice({0, 0, true});
        callback.settleWhileStopped();
        callback.setRunning(true);
        play(OutputCallback::kGateFrames);
    }
};

std::vector<std::int64_t> framesOf(const std::vector<StereoFrame>& sound) {
    std::vector<std::int64_t> frames;
    for (const StereoFrame& f : sound) frames.push_back(f == StereoFrame{} ? -1 : frameOf(f.left));
    return frames;
}

}  // namespace

TEST_CASE("frames come out exactly as they were rendered, whatever the size of the callbacks") {
    Device device;
    device.startAt(1000, 4000);
    std::int64_t expected = 1000 + std::int64_t(OutputCallback::kGateFrames), wrong = 0;
    for (const std::size_t size : {1u, 17u, 256u, 1000u, 255u})
        for (const std::int64_t frame : framesOf(device.play(size))) wrong += frame != expected++;
    CHECK(wrong == 0);
}

TEST_CASE("a pause neither loses nor repeats a frame") {
    Device device;
    device.startAt(0, 4000);
    device.play(300);
    device.callback.setRunning(false);
    const auto gate = OutputCallback::kGateFrames;
    const auto closing = device.play(gate + 50);
    CHECK(closing[gate] == StereoFrame{});
    CHECK(device.callback.gateIsClosed());
    CHECK(device.play(500).back() == StereoFrame{});
    device.callback.setRunning(true);
    device.play(gate);
    CHECK(framesOf(device.play(1)).front() == std::int64_t(gate + 300 + gate + gate));
}

TEST_CASE("the ramps into and out of a pause have no step larger than one gate step") {
    Device device;
    Lane* lane = device.callback.lanes().idle();
    lane->base = lane->frames.writePosition();
    lane->header.playhead = makePlayhead(0, false, false, 0, 0, kTrack);
    for (int i = 0; i < 4000; ++i) {
        const StereoFrame one{1, 1};
        lane->frames.write({&one, 1});
    }
    device.callback.lanes().splice({0, 0, true});
    device.callback.settleWhileStopped();
    device.callback.setRunning(true);
    auto sound = device.play(600);
    device.callback.setRunning(false);
    for (const StereoFrame& f : device.play(600)) sound.push_back(f);
    float largest = 0;
    for (std::size_t i = 1; i < sound.size(); ++i)
        largest = std::max(largest, std::abs(sound[i].left - sound[i - 1].left));
    CHECK(largest <= doctest::Approx(1.0 / OutputCallback::kGateFrames));
}

TEST_CASE("a splice happens at exactly the frame it names") {
    Device device;
    device.startAt(0, 3000);
    device.prepare(50000, 3000);
    device.callback.lanes().splice({500, 0, false});
    const auto frames = framesOf(device.play(1000));
    const std::size_t left = 500 - OutputCallback::kGateFrames;
    CHECK(frames[left - 1] == 499);
    CHECK(frames[left] == 50000);
    CHECK(frames[999] == 50000 + std::int64_t(999 - left));
}

TEST_CASE("until a splice has happened there is no idle lane to write to") {
    Device device;
    device.startAt(0, 3000);
    device.prepare(50000, 3000);
    device.callback.lanes().splice({500, 32, false});
    CHECK(device.callback.lanes().idle() == nullptr);
    device.play(1000);
    CHECK(device.callback.lanes().idle() != nullptr);
}

TEST_CASE("a cross-fade of the same sound leaves it as it is") {
    Device device;
    device.startAt(0, 3000);
    device.prepare(500, 3000);
    device.callback.lanes().splice({500, 100, false});
    const auto frames = framesOf(device.play(1000));
    std::int64_t wrong = 0;
    for (std::size_t i = 0; i < frames.size(); ++i) wrong += frames[i] != std::int64_t(i + OutputCallback::kGateFrames);
    CHECK(wrong == 0);
}

TEST_CASE("the same sound that comes late goes on where it is") {
    Device device;
    device.startAt(0, 3000);
    device.play(700);
    device.prepare(500, 3000);
    device.callback.lanes().splice({500, 100, false});
    std::int64_t expected = 700 + std::int64_t(OutputCallback::kGateFrames), wrong = 0;
    for (const std::int64_t frame : framesOf(device.play(1000))) wrong += frame != expected++;
    CHECK(wrong == 0);
}

TEST_CASE("the same sound at another speed that comes late goes on where it is") {
    Device device;
    device.startAt(0, 3000);
    device.play(900 - OutputCallback::kGateFrames);
    device.prepare(500, 3000);
    device.callback.lanes().idle()->header.speed = 2;
    device.callback.lanes().splice({500, 0, false});
    CHECK(framesOf(device.play(1)).front() == 500 + (900 - 500) / 2);
    const auto stamp = device.callback.stampAt(1 << 20);
    REQUIRE(stamp);
    CHECK(stamp->step == doctest::Approx(900 - 500));
}

TEST_CASE("unrelated sound that comes late begins with its first frame") {
    Device device;
    device.startAt(0, 3000);
    device.play(700);
    device.prepare(50000, 3000);
    device.callback.lanes().splice({500, 0, true});
    CHECK(framesOf(device.play(1)).front() == 50000);
}

TEST_CASE("the same sound that comes too late for what is ready of it begins with its first frame") {
    Device device;
    device.startAt(0, 3000);
    device.play(900);
    device.prepare(500, 300);
    device.callback.lanes().splice({500, 0, false});
    CHECK(framesOf(device.play(1)).front() == 500);
}

TEST_CASE("a splice while paused is carried out at once and without a sound") {
    Device device;
    device.startAt(0, 3000);
    device.callback.setRunning(false);
    device.play(300);
    device.prepare(70000, 3000, 7);
    device.callback.lanes().splice({0, 128, true});
    device.play(10);
    const auto stamp = device.callback.stampAt(1 << 20);
    REQUIRE(stamp.has_value());
    CHECK(stamp->lane.request == 7);
    CHECK(stamp->lane.playhead.positionAt(stamp->step) == 70000);
    CHECK(device.callback.lanes().idle() != nullptr);
}

TEST_CASE("a lane that runs dry is an underrun, the end of the track is none") {
    Device device;
    device.startAt(0, 500);
    device.play(1000);
    CHECK(device.callback.underruns() == 1);
    Device atEnd;
    atEnd.startAt(0, 500);
    atEnd.callback.lanes().beingWritten().ended = true;
    CHECK(atEnd.play(1000).back() == StereoFrame{});
    CHECK(atEnd.callback.underruns() == 0);
}

TEST_CASE("after an underrun the sound goes on with the frame that was missing") {
    Device device;
    device.startAt(0, 500);
    device.play(1000);
    const StereoFrame next = codedFrame(500);
    device.callback.lanes().beingWritten().frames.write({&next, 1});
    CHECK(framesOf(device.play(1)).front() == 500);
}

TEST_CASE("every frame of the device knows the position it plays") {
    Device device;
    device.startAt(2000, 4000);
    device.play(700);
    for (const std::int64_t n : {128, 129, 500, 827}) {
        const auto stamp = device.callback.stampAt(n);
        REQUIRE(stamp.has_value());
        const double steps = stamp->step + double(n - stamp->deviceFrame) * stamp->stepsPerFrame;
        CHECK(stamp->lane.playhead.positionAt(steps) == 2000 + n);
    }
}

TEST_CASE("a new gain is reached within six milliseconds and without a step that could click") {
    Device device;
    Lane* lane = device.callback.lanes().idle();
    lane->base = lane->frames.writePosition();
    lane->header.playhead = makePlayhead(0, false, false, 0, 0, kTrack);
    for (int i = 0; i < 4000; ++i) {
        const StereoFrame one{1, 1};
        lane->frames.write({&one, 1});
    }
    device.callback.lanes().splice({0, 0, true});
    device.callback.settleWhileStopped();
    device.callback.setRunning(true);
    device.play(500);
    device.callback.setGains(0.25f, 1);
    const auto sound = device.play(265);
    CHECK(sound.back() == StereoFrame{0.25f, 1});
    float largest = 0;
    for (std::size_t i = 1; i < sound.size(); ++i)
        largest = std::max(largest, std::abs(sound[i].left - sound[i - 1].left));
    CHECK(largest < 0.006f);
}

TEST_CASE("a gain set before play begins is there from the first frame on") {
    Device device;
    device.prepare(1000, 4000);
    device.callback.lanes().splice({0, 0, true});
    device.callback.settleWhileStopped();
    device.callback.setGains(0.5f, 0.5f);
    device.callback.setRunning(true);
    device.play(OutputCallback::kGateFrames);
    CHECK(device.play(1).front() == codedFrame(1000 + std::int64_t(OutputCallback::kGateFrames)) * 0.5f);
}
