#include <doctest/doctest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

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

}  // namespace

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
    CHECK(render->heard().position == 0);
    CHECK_FALSE(render->isCaughtUp());
    server.open();
    render.reset();
    CHECK(served);
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
    CHECK(awaited(SoundOutput::DoesNotAnswer));
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
