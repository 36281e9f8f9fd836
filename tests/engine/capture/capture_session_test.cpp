#include "engine/capture/CaptureSession.h"

#include <doctest/doctest.h>

#include <filesystem>
#include <future>
#include <thread>

#include "../media/MediaFiles.h"
#include "support/LogLines.h"
#include "support/Signals.h"
#include "support/SteppedInput.h"

using namespace qm;
using namespace qm::test;

namespace {

// A recorder's chain of parts, set up as far as a test wants it.
struct Chain {
    TemporaryFolder folder;
    std::string path = folder.file("take.mov");
    SteppedInput::Hand hand;
    SystemCapture engine{hand.factory()};
    std::shared_ptr<QTCaptureDevice> device = engine.defaultInputDeviceWithMediaType(QTMediaType::Sound);
    std::shared_ptr<QTCaptureDeviceInput> input = engine.makeDeviceInput(device);
    std::shared_ptr<QTCaptureSession> session = engine.makeSession();
    std::shared_ptr<QTCaptureMovieFileOutput> output = engine.makeMovieFileOutput();
    std::int64_t played = 0;

    void setUp() {
        REQUIRE(device->open());
        REQUIRE(session->addInput(input));
        session->startRunning();
        REQUIRE(session->addOutput(output));
    }

    // The next frames of the coded sound arrive.
    void play(std::size_t count) {
        std::vector<StereoFrame> frames(count);
        for (StereoFrame& frame : frames) frame = coded(played++);
        hand.input->step(frames);
    }

    static StereoFrame coded(std::int64_t n) {
        return {float(codedSample(n, 0)) / 32768, float(codedSample(n, 1)) / 32768};
    }

    // The number of the first recorded frame and how many follow one another from there; -1 for a break.
    std::int64_t recordedFrom(std::int64_t first) const {
        const auto sound = openSound(path);
        if (!sound) return -1;
        const auto samples = readLinearly(*sound);
        for (std::size_t n = 0; 2 * n < samples.size(); ++n)
            if (StereoFrame{samples[2 * n], samples[2 * n + 1]} != coded(first + std::int64_t(n))) return -1;
        return std::int64_t(samples.size() / 2);
    }

    void waitForError() const {
        for (int i = 0; i < 20000 && !output->error(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
};

}  // namespace

TEST_CASE_FIXTURE(Chain, "a session runs only with the input of an open device") {
    session->startRunning();
    CHECK_FALSE(session->isRunning());
    CHECK_FALSE(session->addInput(input));
    CHECK(device->open());
    CHECK(session->addInput(input));
    CHECK_FALSE(session->isRunning());
    session->startRunning();
    CHECK(session->isRunning());
    session->stopRunning();
    CHECK_FALSE(session->isRunning());
    session->startRunning();
    CHECK(session->isRunning());
}

TEST_CASE_FIXTURE(Chain, "without a device nothing opens and nothing runs") {
    const LogLines log;
    hand.present = false;
    CHECK_FALSE(device->open());
    CHECK_FALSE(session->addInput(input));
    session->startRunning();
    CHECK_FALSE(session->isRunning());
    CHECK(log.lines() == std::vector<std::string>{"sound input: no sound input can be opened"});
}

TEST_CASE_FIXTURE(Chain, "a session takes one input and one output") {
    setUp();
    CHECK_FALSE(session->addInput(input));
    CHECK_FALSE(session->addOutput(engine.makeMovieFileOutput()));
}

TEST_CASE_FIXTURE(Chain, "what arrives between the start of a recording and its end is in the file, and no more") {
    setUp();
    play(5000);
    output->recordToOutputFileURL(path);
    for (int i = 0; i < 300; ++i) play(1 + std::size_t(i * 37 % 1654));
    const std::int64_t begin = 5000, end = played;
    output->recordToOutputFileURL(std::nullopt);
    play(3000);
    CHECK(recordedFrom(begin) == end - begin);
    CHECK_FALSE(output->error());
}

TEST_CASE_FIXTURE(Chain, "a second recording begins with its own first frame") {
    setUp();
    output->recordToOutputFileURL(path);
    play(4000);
    output->recordToOutputFileURL(std::nullopt);
    session->stopRunning();
    session->startRunning();
    output->recordToOutputFileURL(path);
    play(6000);
    output->recordToOutputFileURL(std::nullopt);
    CHECK(recordedFrom(4000) == 6000);
}

TEST_CASE_FIXTURE(Chain, "a device that vanishes ends the recording and loses nothing of it") {
    const LogLines log;
    setUp();
    output->recordToOutputFileURL(path);
    play(70000);
    hand.input->vanish();
    waitForError();
    REQUIRE(output->error());
    CHECK(output->error()->category == ErrorCategory::Device);
    CHECK_FALSE(session->isRunning());
    output->recordToOutputFileURL(std::nullopt);
    CHECK(recordedFrom(0) == 70000);
    CHECK(log.lines() == std::vector<std::string>{"recording ended: the sound input has vanished"});
}

TEST_CASE_FIXTURE(Chain, "after a device has vanished the session can be started again with the next one") {
    setUp();
    hand.input->vanish();
    session->startRunning();
    CHECK(session->isRunning());
    CHECK(hand.opened == 2);
    output->recordToOutputFileURL(path);
    play(1000);
    output->recordToOutputFileURL(std::nullopt);
    CHECK(recordedFrom(0) == 1000);
}

TEST_CASE_FIXTURE(Chain, "frames that find the ring full are counted and logged, and the others keep their order") {
    const LogLines log;
    setUp();
    output->recordToOutputFileURL(path);
    play(MovieFileOutput::kRingFrames + 1000);
    output->recordToOutputFileURL(std::nullopt);
    CHECK(recordedFrom(0) == std::int64_t(MovieFileOutput::kRingFrames));
    REQUIRE(log.lines().size() == 1);
    CHECK(log.lines()[0] == "recording: 1000 frames lost, the file could not be written in time");
}

TEST_CASE_FIXTURE(Chain, "a file that cannot be made is an error of the output and a log line") {
    const LogLines log;
    setUp();
    output->recordToOutputFileURL(folder.file("missing/take.mov"));
    REQUIRE(output->error());
    CHECK(output->error()->category == ErrorCategory::Unwritable);
    CHECK(log.lines() == std::vector<std::string>{"recording ended: No such file or directory"});
    play(1000);
    output->recordToOutputFileURL(path);
    CHECK_FALSE(output->error());
}

TEST_CASE_FIXTURE(Chain, "an output that no session feeds records nothing") {
    const LogLines log;
    output->recordToOutputFileURL(path);
    REQUIRE(output->error());
    CHECK(output->error()->category == ErrorCategory::Device);
    CHECK_FALSE(std::filesystem::exists(path));
}

TEST_CASE_FIXTURE(Chain, "the levels are those of the sound that arrives, and the floor when none does") {
    setUp();
    CHECK(session->audioLevels().averagePower[0] == QTCaptureAudioLevels::kFloor);
    std::vector<StereoFrame> frames(44100, {0.5f, 0.05f});
    hand.input->step(frames);
    const auto levels = session->audioLevels();
    CHECK(levels.averagePower[0] == doctest::Approx(-6.02).epsilon(0.01));
    CHECK(levels.averagePower[1] == doctest::Approx(-26.02).epsilon(0.01));
    CHECK(levels.peakHold[0] == doctest::Approx(-6.02).epsilon(0.01));
    session->stopRunning();
    CHECK(session->audioLevels().peakHold[0] == QTCaptureAudioLevels::kFloor);
}

TEST_CASE("a sound system that does not answer holds nobody up, and is no input") {
    LogLines log;
    std::promise<void> answer;
    const auto open = [answers = answer.get_future().share()](InputSink&) -> Result<std::unique_ptr<SoundInput>> {
        answers.wait();
        return Error{ErrorCategory::Device, "too late"};
    };
    int waits = 0;
    SystemCapture engine(open, [&](const IsDone& isDone) {
        ++waits;
        while (!isDone(std::chrono::milliseconds(10))) {
        }
    });
    const auto device = engine.defaultInputDeviceWithMediaType(QTMediaType::Sound);
    CHECK_FALSE(device->open());
    CHECK(waits == 1);
    CHECK(log.lines() == std::vector<std::string>{"sound input: the sound system does not answer"});
    answer.set_value();
}

TEST_CASE("with patience, too, what was recorded is a whole file, and the input is let go") {
    TemporaryFolder folder;
    SteppedInput::Hand hand;
    SystemCapture engine(hand.factory(), [](const IsDone& isDone) {
        while (!isDone(std::chrono::milliseconds(10))) {
        }
    });
    const auto device = engine.defaultInputDeviceWithMediaType(QTMediaType::Sound);
    REQUIRE(device->open());
    const auto session = engine.makeSession();
    REQUIRE(session->addInput(engine.makeDeviceInput(device)));
    session->startRunning();
    const auto output = engine.makeMovieFileOutput();
    REQUIRE(session->addOutput(output));
    output->recordToOutputFileURL(folder.file("take.mov"));
    hand.input->step(std::vector<StereoFrame>(1000, StereoFrame{0.5f, 0.5f}));
    output->recordToOutputFileURL(std::nullopt);
    CHECK_FALSE(output->error());
    session->stopRunning();
    const auto sound = openSound(folder.file("take.mov"));
    REQUIRE(sound);
    CHECK(sound->length() == 1000);
    while (hand.input) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    CHECK_FALSE(session->isRunning());
}
