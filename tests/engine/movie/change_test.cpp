#include <doctest/doctest.h>

#include <cmath>
#include <vector>

#include "engine/movie/SteppedPlayer.h"

using namespace qm;
using namespace qm::test;

namespace {

// The longest run of frames in which nothing is louder than `level`, as whole looks of three milliseconds.
std::size_t longestQuiet(const std::vector<StereoFrame>& sound, float level) {
    constexpr std::size_t kLook = 132;  // more than a period of the tone
    std::size_t longest = 0, run = 0;
    for (std::size_t i = 0; i + kLook <= sound.size(); i += kLook) {
        float peak = 0;
        for (std::size_t k = i; k < i + kLook; ++k) peak = std::max(peak, std::abs(sound[k].left));
        run = peak < level ? run + kLook : 0;
        longest = std::max(longest, run);
    }
    return longest;
}

}  // namespace

TEST_CASE("changing the speed goes on from what is heard, without silence or a jump") {
    Player p(20 * kRate, [](std::int64_t n) { return toneFrame(n, 441); });
    p.start();
    p.play(20000);
    for (const float rate : {0.5f, 0.75f, 2.0f, 1.0f, 0.35f}) {
        const std::int64_t before = p.now();
        p.movie->setRate(rate);
        const auto sound = p.play(12000, 20000);
        float largest = 0, quietest = 1;
        for (std::size_t i = 0; i + 200 < sound.size(); i += 100) {
            float peak = 0;
            for (std::size_t k = i; k < i + 200; ++k) {
                peak = std::max(peak, std::abs(sound[k].left));
                if (k > 0) largest = std::max(largest, std::abs(sound[k].left - sound[k - 1].left));
            }
            quietest = std::min(quietest, peak);
        }
        CHECK_MESSAGE(largest < 0.05f, "a click at rate " << rate);
        CHECK_MESSAGE(quietest > 0.2f, "a hole at rate " << rate);
        CHECK(p.now() - before < 12000 * std::max(rate, 1.0f) + 3000);
        CHECK(p.now() > before);
    }
}

TEST_CASE("changing the pitch goes on from what is heard, without silence or a jump, at any speed") {
    for (const float rate : {1.0f, 0.5f, -0.75f}) {
        Player p(20 * kRate, [](std::int64_t n) { return toneFrame(n, 441); });
        p.movie->setCurrentTime(at(10 * kRate));
        p.start(rate);
        p.play(20000);
        for (const float cents : {100.0f, -700.0f, 1200.0f, 0.0f, 37.0f}) {
            CAPTURE(rate);
            CAPTURE(cents);
            const std::int64_t before = p.now();
            p.movie->setPitch(cents);
            const auto sound = p.play(8000, 20000);
            CHECK(longestQuiet(sound, 0.1f) == 0);
            CHECK(std::abs(double(p.now() - before) - 8000 * double(rate)) < 1500);
        }
    }
}

TEST_CASE("a change that comes before the last one is heard does not let the sound run dry") {
    Player p(20 * kRate, [](std::int64_t n) { return toneFrame(n, 441); });
    p.start(0.5f);
    p.play(20000);
    const RenderThread& render = p.movie->renderThread();
    for (const float cents : {100.0f, 300.0f, 500.0f}) {
        p.movie->setPitch(cents);
        Player::waitFor([&] { return render.framesReady() < 4000; }, 400);  // just enough for the splice
        p.movie->setPitch(cents + 100);
        Player::waitFor([&] { return render.framesReady() >= 6000; });
        CHECK(render.framesReady() >= 6000);
        CHECK(longestQuiet(p.play(8000, 20000), 0.1f) == 0);
    }
    CHECK(render.underruns() == 0);
}

TEST_CASE("pitch, tone and balance set while paused are in force when play goes on") {
    Player p(20 * kRate, [](std::int64_t n) { return toneFrame(n, 80); });
    p.start();
    p.play(20000);
    p.movie->stop();
    p.settle();
    p.play(3000);
    p.movie->setPitch(1200);
    p.movie->setTone(0, 0, 128);
    p.movie->setBalance(1);
    p.settle();
    p.start();
    p.play(4000);
    const auto sound = p.play(kRate);
    float loudest = 0;
    int rises = 0, left = 0;
    for (std::size_t i = 1; i < sound.size(); ++i) {
        left += sound[i].left != 0;
        loudest = std::max(loudest, sound[i].right);
        rises += sound[i - 1].right < 0 && sound[i].right >= 0;
    }
    CHECK(left == 0);
    CHECK(std::abs(rises - 160) <= 1);  // an octave above
    CHECK(loudest < 0.16f);             // the bass is down by more than eight decibels
    CHECK(loudest > 0.05f);
}

TEST_CASE("a pitch set while paused stays the same through changes of the speed") {
    Player p(40 * kRate, [](std::int64_t n) { return toneFrame(n, 441); });
    p.movie->setPitch(1200);
    p.settle();
    p.start();
    for (const float rate : {1.0f, 0.5f, 2.0f, -0.75f}) {
        CAPTURE(rate);
        if (rate < 0) p.movie->setCurrentTime(at(30 * kRate));
        p.movie->setRate(rate);
        p.settle();
        p.play(10000);
        const auto sound = p.play(kRate);
        int rises = 0;
        for (std::size_t i = 1; i < sound.size(); ++i) rises += sound[i - 1].left < 0 && sound[i].left >= 0;
        CHECK(std::abs(rises - 882) <= 2);
    }
}
