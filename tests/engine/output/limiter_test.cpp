#include <doctest/doctest.h>

#include <vector>

#include "engine/output/Limiter.h"
#include "support/Signals.h"

using namespace qm;
using namespace qm::test;

TEST_CASE("sound within full scale passes the limiter bit for bit") {
    Limiter limiter;
    std::vector<StereoFrame> sound(10000), before;
    for (std::size_t i = 0; i < sound.size(); ++i) sound[i] = codedFrame(std::int64_t(i) * 100);
    before = sound;
    limiter.process(sound);
    CHECK(sound == before);
}

TEST_CASE("nothing that leaves the limiter is above full scale, and it lets go again") {
    Limiter limiter;
    std::vector<StereoFrame> loud(44100);
    for (std::size_t i = 0; i < loud.size(); ++i) loud[i] = toneFrame(std::int64_t(i), 220) * 8;
    limiter.process(loud);
    float largest = 0;
    for (const StereoFrame& f : loud) largest = std::max(largest, std::abs(f.left));
    CHECK(largest <= 1.0f + 1e-6f);
    CHECK(largest > 0.99f);
    std::vector<StereoFrame> quiet(88200, StereoFrame{0.25f, -0.25f});
    limiter.process(quiet);
    CHECK(quiet.back() == StereoFrame{0.25f, -0.25f});
}
