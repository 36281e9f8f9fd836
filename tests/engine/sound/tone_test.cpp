#include <doctest/doctest.h>

#include <cmath>
#include <vector>

#include "engine/sound/Timeline.h"
#include "engine/sound/Tone.h"
#include "support/Signals.h"

using namespace qm;
using namespace qm::test;

namespace {

double decibels(const ToneSettings& settings, double hertz) {
    Tone tone;
    tone.set(settings, 44100);
    std::vector<StereoFrame> sound(44100);
    for (std::size_t i = 0; i < sound.size(); ++i) sound[i] = toneFrame(std::int64_t(i), hertz);
    const auto power = [&] {
        double sum = 0;
        for (std::size_t i = 22050; i < sound.size(); ++i) sum += double(sound[i].left) * sound[i].left;
        return sum;
    };
    const double before = power();
    tone.process(sound);
    return 10 * std::log10(power() / before);
}

}  // namespace

TEST_CASE("bass and treble at 128 leave every sample as it is") {
    Tone tone;
    tone.set({128, 128}, 44100);
    std::vector<StereoFrame> sound{codedFrame(1), codedFrame(2)};
    tone.process(sound);
    CHECK(sound[0] == codedFrame(1));
    CHECK(sound[1] == codedFrame(2));
}

TEST_CASE("the full range of bass moves low notes by twelve decibels either way and high ones not") {
    CHECK(decibels({256, 128}, 40) == doctest::Approx(12).epsilon(0.05));
    CHECK(decibels({0, 128}, 40) == doctest::Approx(-12).epsilon(0.05));
    CHECK(std::abs(decibels({256, 128}, 5000)) < 0.2);
}

TEST_CASE("the full range of treble moves high notes by twelve decibels either way and low ones not") {
    CHECK(decibels({128, 256}, 15000) == doctest::Approx(12).epsilon(0.05));
    CHECK(decibels({128, 0}, 15000) == doctest::Approx(-12).epsilon(0.05));
    CHECK(std::abs(decibels({128, 256}, 100)) < 0.2);
}

TEST_CASE("more bass and more treble are never less") {
    double bass = -100, treble = -100;
    for (int v = 0; v <= 256; v += 16) {
        const auto setting = static_cast<std::int16_t>(v);
        const double b = decibels({setting, 128}, 60), t = decibels({128, setting}, 9000);
        CHECK(b > bass);
        CHECK(t > treble);
        bass = b;
        treble = t;
    }
}

TEST_CASE("settings beyond the scale are held at its ends") {
    CHECK(decibels({1000, 128}, 40) == decibels({256, 128}, 40));
    CHECK(decibels({-1000, 128}, 40) == decibels({0, 128}, 40));
}

TEST_CASE("tone sounds the same wherever reading begins") {
    PcmCache cache(std::make_unique<ComputedSound>(100000, [](std::int64_t n) { return toneFrame(n, 120); }));
    Timeline timeline(cache);
    const Playhead head = makePlayhead(0, false, false, 0, 0, 100000);
    timeline.begin(head, false, {200, 60});
    std::vector<StereoFrame> whole(50000), part(1000);
    REQUIRE(timeline.read(0, whole));
    timeline.begin(head, false, {200, 60});
    REQUIRE(timeline.read(40000, part));
    for (std::size_t i = 0; i < part.size(); ++i)
        REQUIRE(part[i].left == doctest::Approx(whole[40000 + i].left).epsilon(0.001));
}

TEST_CASE("tone changes the first sound track only") {
    // The first track hums at 60 Hz on the left, the second one on the right.
    struct TwoTracks : ComputedSound {
        TwoTracks() : ComputedSound(100000, [](std::int64_t n) { return toneFrame(n, 60); }) {}
        bool hasOtherTracks() const override { return true; }
        bool readParts(std::int64_t first, float* firstTrack, float* others, std::size_t count) override {
            ComputedSound::read(first, firstTrack, count);
            ComputedSound::read(first, others, count);
            for (std::size_t i = 0; i < count; ++i) firstTrack[2 * i + 1] = others[2 * i] = 0;
            return true;
        }
    };
    PcmCache cache(std::make_unique<TwoTracks>());
    Timeline timeline(cache);
    std::vector<StereoFrame> plain(20000), bassy(20000);
    timeline.begin(makePlayhead(0, false, false, 0, 0, 100000), false, {});
    REQUIRE(timeline.read(20000, plain));
    timeline.begin(makePlayhead(0, false, false, 0, 0, 100000), false, {256, 128});
    REQUIRE(timeline.read(20000, bassy));
    float mostLeft = 0, mostRight = 0;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        mostLeft = std::max(mostLeft, std::abs(bassy[i].left));
        mostRight = std::max(mostRight, std::abs(bassy[i].right - plain[i].right));
    }
    CHECK(mostLeft > 1.3f);
    CHECK(mostRight < 1e-6f);
}
