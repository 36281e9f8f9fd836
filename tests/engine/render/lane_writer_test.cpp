#include "engine/render/LaneWriter.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <atomic>
#include <vector>

#include "support/Signals.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr int kRate = 44100;
constexpr std::int64_t kLength = 20 * kRate;
constexpr std::size_t kAhead = 6000;

// A sound that stays away until it is let through.
class HeldSound : public ComputedSound {
public:
    HeldSound(std::atomic<bool>& through) : ComputedSound(kLength, codedFrame), m_through(through) {}
    bool read(std::int64_t first, float* stereo, std::size_t count) override {
        m_through.wait(false);
        return ComputedSound::read(first, stereo, count);
    }

private:
    std::atomic<bool>& m_through;
};

// The writer with the callback that plays what it has written, both on the test's thread.
struct Desk {
    Desk() : Desk(std::make_unique<ComputedSound>(kLength, codedFrame)) {}
    explicit Desk(std::unique_ptr<SoundReader> sound)
        : cache(std::move(sound)), output(2 * kRate, kRate), writer(cache, output) {}

    void follow(const RenderRequest& request) {
        wanted = request;
        writer.follow(wanted);
    }

    // As the thread does before the first sound: the splice settles without a device, and the gate opens.
    void start(const RenderRequest& request) {
        follow(request);
        output.settleWhileStopped();
        output.setRunning(true);
        play(2 * Gate::kFrames);
    }

    // The frames heard, of those that are whole: a jump begins with a lead and a fade.
    std::vector<std::int64_t> play(std::size_t frames) {
        while (writer.canWriteOn(kAhead)) writer.writeOn(kAhead);
        std::vector<StereoFrame> sound(frames);
        output.fill(sound);
        std::vector<std::int64_t> heard;
        for (const StereoFrame& f : sound)
            if (f.left != 0 && f.right == -f.left) heard.push_back(frameOf(f.left));
        return heard;
    }

    std::uint64_t splices() const { return output.lanes().splices(); }

    PcmCache cache;
    OutputCallback output;
    LaneWriter writer;
    RenderRequest wanted;
};

RenderRequest playing() {
    RenderRequest request;
    request.playing = true;
    return request;
}

int breaks(const std::vector<std::int64_t>& frames) {
    int count = 0;
    for (std::size_t i = 1; i < frames.size(); ++i) count += frames[i] != frames[i - 1] + 1;
    return count;
}

}  // namespace

TEST_CASE("what is wanted first is spliced in and plays without a break") {
    Desk desk;
    CHECK_FALSE(desk.writer.isInForce());
    desk.start(playing());
    CHECK(desk.writer.isInForce());
    const auto heard = desk.play(3000);
    CHECK(heard.size() == 3000);
    CHECK(breaks(heard) == 0);
}

TEST_CASE("what plays already is not spliced in again") {
    Desk desk;
    desk.start(playing());
    const auto before = desk.splices();
    desk.follow(playing());
    RenderRequest paused;
    desk.follow(paused);
    CHECK(desk.splices() == before);
    CHECK(desk.writer.isInForce());
}

TEST_CASE("while one splice is under way the next one waits, and the lane can be written on") {
    Desk desk;
    desk.start(playing());
    RenderRequest request = playing();
    request.seek = 1;
    request.seekTarget = 5 * kRate;
    desk.follow(request);
    const auto before = desk.splices();
    request.seek = 2;
    request.seekTarget = 10 * kRate;
    desk.follow(request);
    CHECK(desk.writer.waitsForSplice());
    CHECK_FALSE(desk.writer.isInForce());
    CHECK(desk.writer.canWriteOn(kAhead));
    CHECK(desk.splices() == before);
    desk.play(1000);
    desk.follow(request);
    CHECK(desk.splices() == before + 1);
    CHECK(desk.writer.isInForce());
}

TEST_CASE("a seek is heard at once, and the target itself is whole") {
    Desk desk;
    desk.start(playing());
    RenderRequest request = playing();
    request.seek = 7;
    request.seekTarget = 5 * kRate;
    desk.follow(request);
    const auto heard = desk.play(1000);
    CHECK(std::find(heard.begin(), heard.end(), 5 * kRate) != heard.end());
    CHECK(desk.output.lanes().playing().header.request == 7);
}

TEST_CASE("a loop around what is heard goes on where it is, and comes round at B") {
    Desk desk;
    desk.start(playing());
    RenderRequest request = playing();
    request.loops = true;
    request.rangeBegin = 0;
    request.rangeEnd = 4000;
    desk.follow(request);
    const auto untilB = desk.play(3000);
    CHECK(breaks(untilB) == 0);
    const auto pastB = desk.play(3000);
    CHECK(*std::max_element(pastB.begin(), pastB.end()) < 4000);
    CHECK(*std::min_element(pastB.begin(), pastB.end()) < untilB.front());
}

TEST_CASE("a range that lies elsewhere is entered when play begins, not while standing still") {
    Desk desk;
    RenderRequest request;
    request.loops = true;
    request.rangeBegin = 100000;
    request.rangeEnd = 150000;
    desk.follow(request);
    desk.output.settleWhileStopped();
    CHECK(desk.output.lanes().playing().header.playhead.start == 0);
    const auto before = desk.splices();
    desk.follow(request);
    CHECK(desk.splices() == before);
    request.playing = true;
    desk.start(request);
    CHECK(desk.output.lanes().playing().header.playhead.start == 100000);
}

TEST_CASE("the lane is written one block at a time, and no further ahead than asked") {
    Desk desk;
    desk.start(playing());
    const auto ready = [&] { return desk.output.lanes().framesReady(); };
    const std::size_t before = ready();
    desk.writer.writeOn(before);
    CHECK(ready() == before);
    desk.writer.writeOn(before + 1);
    CHECK(ready() > before);
    CHECK_FALSE(desk.writer.canWriteOn(before + 1));
}

TEST_CASE("what an interruption cuts short is rendered when the sound can be had") {
    std::atomic<bool> through = false;
    Desk desk(std::make_unique<HeldSound>(through));
    desk.cache.interrupt();
    desk.follow(playing());
    CHECK_FALSE(desk.writer.isInForce());
    CHECK(desk.splices() == 0);
    through = true;
    through.notify_all();
    desk.cache.resume();
    desk.follow(playing());
    CHECK(desk.writer.isInForce());
    CHECK(desk.splices() == 1);
}

TEST_CASE("only a stretch can be made lighter, and only once; it is then rendered anew") {
    Desk desk;
    desk.start(playing());
    CHECK_FALSE(desk.writer.lighten());
    RenderRequest slow = playing();
    slow.rate = 0.5;
    desk.follow(slow);
    desk.play(3000);
    const auto before = desk.splices();
    CHECK(desk.writer.lighten());
    CHECK_FALSE(desk.writer.lighten());
    desk.follow(slow);
    CHECK(desk.splices() == before + 1);
}
