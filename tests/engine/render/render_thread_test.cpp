#include <doctest/doctest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "engine/render/RenderThread.h"
#include "support/Signals.h"

using namespace qm;
using namespace qm::test;

namespace {

// Holds up whoever comes, until somebody opens it or patience ends.
class Barrier {
public:
    bool passOpen() {  // whether it was opened
        std::unique_lock lock(m_mutex);
        m_reached = true;
        m_changed.notify_all();
        return m_changed.wait_for(lock, std::chrono::seconds(20), [this] { return m_open; });
    }
    void awaitVisitor() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_reached; });
    }
    void open() {
        {
            const std::lock_guard lock(m_mutex);
            m_open = true;
        }
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_reached = false;
    bool m_open = false;
};

// A device that waits for a sound server before it starts.
class HesitantOutput : public SteppedOutput {
public:
    HesitantOutput(OutputSource& source, Barrier& server, std::atomic<bool>& served)
        : SteppedOutput(source), m_server(server), m_served(served) {}
    bool start() override {
        m_served = m_server.passOpen();
        return SteppedOutput::start();
    }

private:
    Barrier& m_server;
    std::atomic<bool>& m_served;
};

// A device that plays in real time, and whose sound breaks off now and then: it says that it has played less.
class BreakingOutput : public AudioOutput {
public:
    struct Seen {
        std::atomic<int> lostFrames{0};
        std::atomic<double> reserveSeconds{0};
        std::atomic<int> starts{0};
        std::vector<StereoFrame> sound;  // read when the device has gone
    };

    BreakingOutput(OutputSource& source, Seen& seen) : m_source(source), m_seen(seen) {}
    ~BreakingOutput() override { stop(); }

    bool start() override {
        ++m_seen.starts;
        m_finishing = false;
        m_running = true;
        m_thread = std::thread([this] { play(); });
        return true;
    }
    void stop() override {
        m_running = false;
        if (m_thread.joinable()) m_thread.join();
    }
    void setReserve(double seconds) override { m_seen.reserveSeconds = seconds; }
    void finish() override { m_finishing = true; }
    bool keepsTime() const override { return true; }
    bool hasFinished() const override { return m_finishing; }
    std::int64_t framesPlayed() const override { return std::max<std::int64_t>(0, m_played - m_seen.lostFrames); }

private:
    void play() {
        auto due = std::chrono::steady_clock::now();
        while (m_running) {
            std::array<StereoFrame, 441> block;
            due += std::chrono::milliseconds(10);
            std::this_thread::sleep_until(due);
            if (m_finishing) continue;
            m_source.fill(block);
            m_seen.sound.insert(m_seen.sound.end(), block.begin(), block.end());
            m_played += static_cast<std::int64_t>(block.size());
        }
    }

    OutputSource& m_source;
    Seen& m_seen;
    std::atomic<bool> m_running{false};
    std::atomic<bool> m_finishing{false};
    std::atomic<std::int64_t> m_played{0};
    std::thread m_thread;
};

// Quiet enough to pass the limiter as it is.
StereoFrame quietlyCodedFrame(std::int64_t frame) {
    return codedFrame(frame) * 0.5f;
}

// The frames of the track that were heard, in their order; silence is left out.
std::vector<std::int64_t> framesHeard(const std::vector<StereoFrame>& sound) {
    std::vector<std::int64_t> frames;
    for (const StereoFrame& frame : sound)
        if (frame.left != 0 || frame.right != 0) frames.push_back(frameOf(frame.left * 2));
    return frames;
}

}  // namespace

TEST_CASE("a device that breaks off again and again is made to hold more, and no frame is lost over it") {
    BreakingOutput::Seen seen;
    const auto open = [&](int, OutputSource& source) -> Result<std::unique_ptr<AudioOutput>> {
        return std::unique_ptr<AudioOutput>(std::make_unique<BreakingOutput>(source, seen));
    };
    auto render = std::make_unique<RenderThread>(std::make_unique<ComputedSound>(60 * 44100, quietlyCodedFrame), open);
    RenderThread::Request request;
    request.playing = true;
    render->request(request);
    const double atFirst = Reserve().deviceSeconds();
    for (int breaks = 0; breaks < 20 && seen.reserveSeconds <= atFirst; ++breaks) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1200));
        seen.lostFrames += 882;
    }
    CHECK(seen.reserveSeconds > atFirst);
    while (seen.starts < 2) std::this_thread::sleep_for(std::chrono::milliseconds(5));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    render.reset();
    const auto frames = framesHeard(seen.sound);
    REQUIRE(frames.size() > 2 * 441);
    int breaks = 0;  // between the fades at both ends
    for (std::size_t i = OutputCallback::kGateFrames + 1; i < frames.size() - OutputCallback::kGateFrames; ++i)
        breaks += frames[i] != (frames[i - 1] + 1) % kCodeWrap;
    CHECK(breaks == 0);
}

TEST_CASE("a device that waits for a sound server holds up no request and no question") {
    Barrier server;
    std::atomic<bool> served = false;
    const auto open = [&](int, OutputSource& source) -> Result<std::unique_ptr<AudioOutput>> {
        return std::unique_ptr<AudioOutput>(std::make_unique<HesitantOutput>(source, server, served));
    };
    auto render = std::make_unique<RenderThread>(std::make_unique<ComputedSound>(100000, codedFrame), open);
    RenderThread::Request request;
    request.playing = true;
    render->request(request);
    server.awaitVisitor();
    request.rate = 0.5;
    render->request(request);
    CHECK(render->heard() == 0);
    CHECK_FALSE(render->isCaughtUp());
    server.open();
    render.reset();
    CHECK(served);
}

TEST_CASE("until a seek is heard, its target is answered as what is heard") {
    Barrier server;
    std::atomic<bool> served = false;
    const auto open = [&](int, OutputSource& source) -> Result<std::unique_ptr<AudioOutput>> {
        return std::unique_ptr<AudioOutput>(std::make_unique<HesitantOutput>(source, server, served));
    };
    RenderThread render(std::make_unique<ComputedSound>(100000, codedFrame), open);
    RenderThread::Request request;
    request.playing = true;
    render.request(request);
    server.awaitVisitor();
    request.seek = 1;
    request.seekTarget = 5000;
    render.request(request);
    CHECK(render.heard() == 5000);
    server.open();
}

TEST_CASE("a device that waits for a sound server does not answer, until it has what it waited for") {
    Barrier server;
    std::atomic<bool> served = false;
    const auto open = [&](int, OutputSource& source) -> Result<std::unique_ptr<AudioOutput>> {
        return std::unique_ptr<AudioOutput>(std::make_unique<HesitantOutput>(source, server, served));
    };
    RenderThread render(std::make_unique<ComputedSound>(100000, codedFrame), open);
    const auto awaited = [&](SoundOutput wanted) {
        for (int i = 0; i < 10000 && render.soundOutput() != wanted; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return render.soundOutput() == wanted;
    };
    CHECK(awaited(SoundOutput::Works));
    RenderThread::Request request;
    request.playing = true;
    render.request(request);
    server.awaitVisitor();
    std::optional<SoundOutput> told;  // as long as nobody knows, it is not said to work
    do told = render.soundOutput();
    while (!told);
    CHECK(told == SoundOutput::DoesNotAnswer);
    server.open();
    CHECK(awaited(SoundOutput::Works));
    // Nobody takes frames from it now, though it was started.
    CHECK(awaited(SoundOutput::DoesNotAnswer));
}

TEST_CASE("without any device there is no sound output, though time goes on") {
    RenderThread render(std::make_unique<ComputedSound>(100000, codedFrame),
                        [](int, OutputSource&) -> Result<std::unique_ptr<AudioOutput>> {
                            return Error{ErrorCategory::Device, "none"};
                        });
    while (render.soundOutput() != SoundOutput::Absent) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    CHECK(render.soundOutput() == SoundOutput::Absent);
}
