// The callbacks of the devices under watch, whatever is done to the movie or the recording.
#include <doctest/doctest.h>

#include <algorithm>
#include <functional>
#include <thread>
#include <vector>

#include "engine/capture/CaptureSession.h"
#include "engine/movie/FileMovie.h"
#include "realtime/CallWatch.h"
#include "realtime/FakeCubeb.h"
#include "support/Signals.h"
#include "support/SteppedInput.h"

using namespace qm;
using namespace qm::test;

namespace {

struct Watched {
    Watched() {
        OpenedMedia media;
        media.description.hasSound = true;
        media.sound = std::make_unique<ComputedSound>(2000000, [](std::int64_t n) { return toneFrame(n, 330); });
        movie = std::make_unique<FileMovie>(registry, std::make_shared<Reaper>(), std::move(media),
                                            [this](int, OutputSource& source) -> Result<std::unique_ptr<AudioOutput>> {
                                                auto stepped = std::make_unique<SteppedOutput>(source);
                                                device = stepped.get();
                                                return std::unique_ptr<AudioOutput>(std::move(stepped));
                                            });
        settle();
    }

    void settle() const {
        for (int i = 0; i < 20000 && !movie->renderThread().isCaughtUp(); ++i)
            std::this_thread::sleep_for(std::chrono::microseconds(500));
    }

    void play(int callbacks) {
        std::vector<StereoFrame> block(441);
        for (int i = 0; i < callbacks; ++i) counted += callsOf([&] { device->step(block); }).all();
    }

    int counted = 0;
    SteppedOutput* device = nullptr;
    MovieRegistry registry;
    std::unique_ptr<FileMovie> movie;
};

}  // namespace

TEST_CASE("the callback never allocates, frees, locks, waits, wakes or writes, whatever is done to the movie") {
    Watched w;
    w.movie->play();
    w.movie->meter().enableVolume(true);
    w.movie->meter().enableBands(true);
    bool metered = false;
    const auto act = [&](const std::function<void()>& action) {
        action();
        w.play(3);
        w.settle();
        w.play(20);
        metered = metered || w.movie->meter().levels().averagePower[0] > Meter::kFloor;
    };
    for (const float rate : {1.0f, 0.5f, -0.5f, -1.0f, 2.0f, 0.0f, 1.0f}) act([&] { w.movie->setRate(rate); });
    act([&] { w.movie->setPitch(-300); });
    act([&] { w.movie->setVolume(0.3f); });
    act([&] { w.movie->setBalance(-0.7f); });
    act([&] { w.movie->setTone(0, 220, 30); });
    act([&] { w.movie->setCurrentTime({1000000, 44100, 0}); });
    act([&] {
        w.movie->setSelectionAttribute({{50000, 44100, 0}, {30000, 44100, 0}});
        w.movie->setLoopsAttribute(true);
        w.movie->setPlaysSelectionOnlyAttribute(true);
    });
    act([&] { w.movie->stop(); });
    act([&] { w.movie->play(); });
    CHECK(metered);
    CHECK(w.counted == 0);
}

TEST_CASE("the input's callback never does either, recording or not, also when the ring is full") {
    SteppedInput::Hand hand;
    SystemCapture capture(hand.factory());
    const auto device = capture.defaultInputDeviceWithMediaType(QTMediaType::Sound);
    const auto session = capture.makeSession();
    const auto output = capture.makeMovieFileOutput();
    REQUIRE(device->open());
    REQUIRE(session->addInput(capture.makeDeviceInput(device)));
    session->startRunning();
    REQUIRE(session->addOutput(output));
    const std::vector<StereoFrame> frames(MovieFileOutput::kRingFrames + 1, {0.1f, 0.2f});
    int counted = 0;
    const auto arrive = [&] { counted += callsOf([&] { hand.input->step(frames); }).all(); };
    arrive();
    output->recordToOutputFileURL("/dev/null");
    arrive();
    output->recordToOutputFileURL(std::nullopt);
    arrive();
    counted += callsOf([&] { hand.input->vanish(); }).all();
    CHECK(counted == 0);
}

TEST_CASE("nor do the lines between the sound library and the callback, but to say at each start how urgent they are") {
    struct Tone final : OutputSource {
        void fill(std::span<StereoFrame> out) noexcept override {
            std::fill(out.begin(), out.end(), StereoFrame{1, 1});
        }
    } tone;
    auto output = openSystemOutput(44100, tone);
    REQUIRE(output);
    std::vector<StereoFrame> block(441);
    const auto ask = [&] { return callsOf([&] { fakeCubeb.ask(block); }); };
    std::thread([&] {
        for (int start = 0; start < 2; ++start) {
            output.value()->start();
            const Calls first = ask();
            CHECK(first.all() == first.system);
            CHECK(block.back() == StereoFrame{1, 1});
            CHECK(ask().all() == 0);
            output.value()->stop();
        }
        output.value()->finish();
        CHECK(ask().all() == 0);
        CHECK(block.back() == StereoFrame{});  // silence behind what was handed out
        CHECK(ask().all() == 0);
        CHECK_FALSE(output.value()->hasFinished());
        CHECK(callsOf([] { fakeCubeb.say(CUBEB_STATE_DRAINED); }).all() == 0);
        CHECK(output.value()->hasFinished());
        CHECK(callsOf([] { fakeCubeb.say(CUBEB_STATE_ERROR); }).all() == 0);
        CHECK(output.value()->failed());
    }).join();
}
