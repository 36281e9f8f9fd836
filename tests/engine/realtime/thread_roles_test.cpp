// Each side of what crosses threads belongs to one thread; a second one is caught where it comes in.
#include <doctest/doctest.h>

#include <array>
#include <memory>
#include <thread>

#include "engine/output/DeviceKeeper.h"
#include "engine/realtime/SpscRing.h"
#include "engine/render/LaneWriter.h"
#include "engine/render/RenderThread.h"
#include "support/Assertions.h"
#include "support/Signals.h"

using namespace qm;
using namespace qm::test;

namespace {

template <typename Act>
void onAnotherThread(Act act) {
    std::thread(act).join();
}

Result<std::unique_ptr<AudioOutput>> openStepped(int, OutputSource& source) {
    return std::unique_ptr<AudioOutput>(std::make_unique<SteppedOutput>(source));
}

std::unique_ptr<SoundReader> someSound() {
    return std::make_unique<ComputedSound>(100000, codedFrame);
}

}  // namespace

TEST_CASE("a ring is written by one thread, until it is handed over") {
    SpscRing<int> ring(8);
    const std::array<int, 1> item{1};
    onAnotherThread([&] { ring.write(item); });
    const auto write = [&] { ring.write(item); };
    CHECK(failsAnAssertion(write));
    CHECK(failsAnAssertion([&] { ring.peek(0); }));
    ring.handOverProducer();
    CHECK_FALSE(failsAnAssertion(write));
}

TEST_CASE("a ring is read by one thread, until it is handed over") {
    SpscRing<int> ring(8);
    std::array<int, 1> item{};
    onAnotherThread([&] { ring.read(item); });
    const auto read = [&] { ring.read(item); };
    CHECK(failsAnAssertion(read));
    CHECK(failsAnAssertion([&] { ring.skip(0); }));
    CHECK(failsAnAssertion([&] { ring.discard(); }));
    ring.handOverConsumer();
    CHECK_FALSE(failsAnAssertion(read));
}

TEST_CASE("nobody stands in for the callback while its thread may come back") {
    OutputCallback callback(1024);
    std::array<StereoFrame, 16> block;
    onAnotherThread([&] { callback.fill(block); });
    CHECK(failsAnAssertion([&] { callback.fill(block); }));
    CHECK(failsAnAssertion([&] { callback.settleWhileStopped(); }));
    CHECK(failsAnAssertion([&] { callback.restartDeviceCount(); }));
    callback.handOverFilling();
    callback.settleWhileStopped();
    onAnotherThread([&] { callback.fill(block); });
    CHECK(failsAnAssertion([&] { callback.fill(block); }));
}

TEST_CASE("lanes are written by one thread") {
    OutputCallback callback(1024);
    onAnotherThread([&] { callback.lanes().idle(); });
    CHECK(failsAnAssertion([&] { callback.lanes().idle(); }));
    CHECK(failsAnAssertion([&] { callback.lanes().beingWritten(); }));
    CHECK(failsAnAssertion([&] { callback.lanes().splice({}); }));
    PcmCache cache(someSound());
    LaneWriter writer(cache, callback);
    onAnotherThread([&] { writer.writeOn(0); });
    CHECK(failsAnAssertion([&] { writer.writeOn(0); }));
    CHECK(failsAnAssertion([&] { writer.follow({}); }));
}

TEST_CASE("a device is looked after by one thread") {
    OutputCallback callback(1024);
    DeviceKeeper keeper(callback, openStepped, 44100);
    onAnotherThread([&] { keeper.open(); });
    CHECK(failsAnAssertion([&] { keeper.watch(); }));
    CHECK(failsAnAssertion([&] { keeper.startToPlay(); }));
    CHECK(failsAnAssertion([&] { keeper.leaveAlone(); }));
    CHECK(failsAnAssertion([&] { keeper.rendererIsTooLate(); }));
    CHECK(failsAnAssertion([&] { keeper.close(); }));
}

TEST_CASE("requests come from one thread") {
    RenderThread render(someSound(), openStepped);
    onAnotherThread([&] { render.request({}); });
    CHECK(failsAnAssertion([&] { render.request({}); }));
}
