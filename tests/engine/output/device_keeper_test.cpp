#include "engine/output/DeviceKeeper.h"

#include <doctest/doctest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <vector>

#include "support/LogLines.h"

using namespace qm;

namespace {

constexpr int kRate = 44100;

// What the tests see and say of the devices that are opened.
struct Hand {
    bool present = true;
    int opened = 0, starts = 0, stops = 0;
    bool failed = false, finishing = false;
    double reserve = 0;
    std::int64_t played = 0;
    std::function<void()> whenStarted;
};

class HandheldOutput : public AudioOutput {
public:
    explicit HandheldOutput(Hand& hand) : m_hand(hand) { m_hand.failed = false; }
    bool start() override {
        ++m_hand.starts;
        m_hand.finishing = false;
        if (m_hand.whenStarted) m_hand.whenStarted();
        return true;
    }
    void stop() override { ++m_hand.stops; }
    std::int64_t framesPlayed() const override { return m_hand.played; }
    void setReserve(double seconds) override { m_hand.reserve = seconds; }
    void finish() override { m_hand.finishing = true; }
    bool hasFinished() const override { return false; }
    bool keepsTime() const override { return true; }
    bool failed() const override { return m_hand.failed; }

private:
    Hand& m_hand;
};

// A keeper on a clock that goes on only when the test says so.
struct Kept {
    std::int64_t now = 1000;
    Hand hand;
    OutputCallback output{8192, kRate};
    DeviceKeeper keeper{output, [this](int, OutputSource&) { return open(); }, kRate, [this] { return now; }};

    Kept() { keeper.open(); }

    Result<std::unique_ptr<AudioOutput>> open() {
        if (!hand.present) return Error{ErrorCategory::Device, "none"};
        ++hand.opened;
        return std::unique_ptr<AudioOutput>(std::make_unique<HandheldOutput>(hand));
    }

    // The device takes and plays frames, but for those that it loses.
    void play(double seconds, double lost = 0) {
        std::vector<StereoFrame> block(kRate / 100);
        for (int i = 0; i < std::lround(seconds * 100); ++i) {
            now += 10;
            output.fill(block);
            hand.played += static_cast<std::int64_t>(block.size());
            if (i == 0) hand.played -= std::lround(lost * kRate);
            keeper.watch();
        }
    }

    // A lane with a few frames, which the callback then plays to its end again and again.
    void runDry(int times) {
        const std::vector<StereoFrame> some(Gate::kFrames, {0.1f, 0.1f});
        if (output.underruns() == 0) {
            output.lanes().idle()->frames.write(some);
            output.lanes().splice({0, 0, true});
            output.settleWhileStopped();
            output.setRunning(true);
        }
        std::vector<StereoFrame> block(2 * Gate::kFrames);
        for (int i = 0; i < times; ++i) {
            output.fill(block);
            output.lanes().beingWritten().frames.write(some);
        }
    }
};

}  // namespace

TEST_CASE_FIXTURE(Kept, "a device is started for the first sound and rests after three seconds of silence") {
    CHECK_FALSE(keeper.isStarted());
    CHECK_FALSE(keeper.startToPlay());
    CHECK(keeper.isStarted());
    CHECK(keeper.startToPlay());
    keeper.leaveAlone();
    now += 2999;
    keeper.leaveAlone();
    CHECK(keeper.isStarted());
    keeper.startToPlay();  // what is played in between begins the silence anew
    keeper.leaveAlone();
    now += 2999;
    keeper.leaveAlone();
    CHECK(keeper.isStarted());
    now += 1;
    keeper.leaveAlone();
    CHECK_FALSE(keeper.isStarted());
    CHECK(hand.stops == 1);
}

TEST_CASE_FIXTURE(Kept, "a device does not rest while the gate is open") {
    keeper.startToPlay();
    runDry(1);
    REQUIRE_FALSE(output.gateIsClosed());
    keeper.leaveAlone();
    now += 10000;
    keeper.leaveAlone();
    CHECK(keeper.isStarted());
}

TEST_CASE_FIXTURE(Kept,
                  "a device that has gone is replaced, and the new one plays at once if there is something to play") {
    const LogLines log;
    keeper.startToPlay();
    output.setRunning(true);
    hand.failed = true;
    keeper.watch();
    CHECK(hand.opened == 2);
    CHECK(hand.starts == 2);
    CHECK(keeper.isStarted());
    output.setRunning(false);
    hand.failed = true;
    keeper.watch();
    CHECK(hand.opened == 3);
    CHECK_FALSE(keeper.isStarted());
}

TEST_CASE_FIXTURE(Kept, "without a device there is silence, until half a second or more later there is one") {
    const LogLines log;
    hand.present = false;
    hand.failed = true;
    keeper.watch();
    CHECK(keeper.soundOutput() == SoundOutput::Absent);
    hand.present = true;
    now += 499;
    keeper.watch();
    CHECK(keeper.soundOutput() == SoundOutput::Absent);
    now += 1;
    keeper.watch();
    CHECK(keeper.soundOutput() == SoundOutput::Works);
    CHECK(hand.opened == 2);
}

TEST_CASE_FIXTURE(Kept,
                  "a device whose sound breaks off twice plays out, for half a second at most, and then holds more") {
    const LogLines log;
    const double least = hand.reserve;
    keeper.startToPlay();
    play(3);
    play(2, 0.02);
    CHECK_FALSE(hand.finishing);
    while (!hand.finishing && now < 20000) play(0.01, 0.0005);
    REQUIRE(hand.finishing);
    CHECK(hand.reserve == least);
    now += 499;
    keeper.watch();
    CHECK(hand.stops == 0);
    now += 1;
    keeper.watch();
    CHECK(hand.stops == 1);
    CHECK(hand.starts == 2);
    CHECK(hand.reserve > least);
    CHECK(keeper.isStarted());
}

TEST_CASE_FIXTURE(Kept,
                  "lanes that run dry are rendered further ahead, and four times within ten seconds are too many") {
    const double least = keeper.laneSeconds();
    runDry(1);
    CHECK_FALSE(keeper.rendererIsTooLate());
    CHECK(keeper.laneSeconds() > least);
    runDry(2);
    CHECK_FALSE(keeper.rendererIsTooLate());
    now += 10001;
    runDry(1);
    CHECK_FALSE(keeper.rendererIsTooLate());
    runDry(3);
    CHECK(keeper.rendererIsTooLate());
    CHECK_FALSE(keeper.rendererIsTooLate());  // nothing new
}

TEST_CASE_FIXTURE(Kept, "a device that is started and takes nothing for more than a second does not answer") {
    CHECK(keeper.soundOutput() == SoundOutput::Works);
    keeper.startToPlay();
    now += 1000;
    keeper.watch();
    CHECK(keeper.soundOutput() == SoundOutput::Works);
    now += 1;
    keeper.watch();
    CHECK(keeper.soundOutput() == SoundOutput::DoesNotAnswer);
    play(0.01);
    CHECK(keeper.soundOutput() == SoundOutput::Works);
}

TEST_CASE_FIXTURE(Kept, "while a call waits nobody knows, and after a second it is said not to answer") {
    std::vector<std::optional<SoundOutput>> told;
    hand.whenStarted = [&] {
        told.push_back(keeper.soundOutput());
        now += 1001;
        told.push_back(keeper.soundOutput());
    };
    keeper.startToPlay();
    CHECK(told == std::vector<std::optional<SoundOutput>>{std::nullopt, SoundOutput::DoesNotAnswer});
    CHECK(keeper.soundOutput() == SoundOutput::Works);
}

TEST_CASE_FIXTURE(Kept, "what is heard is the step of the frame that the device has played") {
    CHECK_FALSE(keeper.heard());
    runDry(1);
    hand.played = 100;
    REQUIRE(keeper.heard());
    CHECK(keeper.heard()->step == 100);
    hand.played = 1000000;
    CHECK(keeper.heard()->step == Gate::kFrames);
}
