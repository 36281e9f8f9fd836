#include "engine/output/Meter.h"

#include <doctest/doctest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "engine/output/OutputCallback.h"
#include "support/Signals.h"

using namespace qm;
using namespace qm::test;

namespace {

constexpr int kRate = 44100;
constexpr double kCentres[Meter::kBands] = {60, 300, 1200, 6000};  // Hz, well inside each band

std::vector<StereoFrame> tone(double hertz, double left, double right, double seconds = 0.5) {
    std::vector<StereoFrame> frames(static_cast<std::size_t>(seconds * kRate));
    for (std::size_t i = 0; i < frames.size(); ++i) {
        const double s = std::sin(2 * std::numbers::pi * hertz * double(i) / kRate);
        frames[i] = {float(left * s), float(right * s)};
    }
    return frames;
}

// The power that a sine has, computed.
double sinePower(double amplitude) {
    return 10 * std::log10(amplitude * amplitude / 2);
}

struct MeterOn : Meter {
    MeterOn() : Meter(kRate) {
        enableVolume(true);
        enableBands(true);
    }

    // As the callback feeds it: runs of sound, the same before and after the gain.
    const Levels& hear(const std::vector<StereoFrame>& frames, std::size_t run = 256) {
        for (std::size_t i = 0; i < frames.size(); i += run) {
            const auto part = std::span(frames).subspan(i, std::min(run, frames.size() - i));
            takeStereoMix(part);
            takeDeviceMix(part);
        }
        return heard = levels();
    }

    Levels heard;
};

bool isSilent(const Meter::Levels& levels) {
    for (std::size_t c = 0; c < Meter::kChannels; ++c) {
        if (levels.averagePower[c] != Meter::kFloor || levels.peakHold[c] != Meter::kFloor) return false;
        for (const float band : levels.bands[c])
            if (band != 0) return false;
    }
    return true;
}

}  // namespace

TEST_CASE("the average power of a sine is its power within half a decibel, each channel for itself") {
    for (const double hertz : {40.0, 55.0, 440.0, 4000.0, 15000.0}) {
        for (const double amplitude : {1.0, 0.25, 0.01, 0.0003}) {
            CAPTURE(hertz);
            CAPTURE(amplitude);
            MeterOn meter;
            meter.hear(tone(hertz, amplitude, amplitude / 2));
            CHECK(std::abs(meter.heard.averagePower[0] - sinePower(amplitude)) < 0.5);
            CHECK(std::abs(meter.heard.averagePower[1] - sinePower(amplitude / 2)) < 0.5);
        }
    }
}

TEST_CASE("the levels are the same whatever the size of the callbacks") {
    const auto sound = tone(300, 0.5, 0.2);
    MeterOn small, large;
    small.hear(sound, 37);
    large.hear(sound, 256);
    for (std::size_t c = 0; c < Meter::kChannels; ++c) {
        CHECK(small.heard.averagePower[c] == doctest::Approx(large.heard.averagePower[c]));
        CHECK(small.heard.bands[c][1] == doctest::Approx(large.heard.bands[c][1]).epsilon(0.01));
    }
}

TEST_CASE("a tone inside a band shows there with its amplitude and least in the bands farthest away") {
    for (std::size_t own = 0; own < Meter::kBands; ++own) {
        CAPTURE(own);
        MeterOn meter;
        const auto& bands = meter.hear(tone(kCentres[own], 0.5, 0)).bands;
        CHECK(bands[0][own] == doctest::Approx(0.5).epsilon(0.1));
        for (std::size_t other = 0; other < Meter::kBands; ++other) {
            if (other != own) CHECK(bands[0][other] < 0.15f);
            if (other + 1 < own) CHECK(bands[0][other] < bands[0][other + 1]);
            if (other > own + 1) CHECK(bands[0][other] < bands[0][other - 1]);
            CHECK(bands[1][other] == 0);
        }
    }
}

TEST_CASE("each band rises with the level of its tone, up to one") {
    for (std::size_t band = 0; band < Meter::kBands; ++band) {
        CAPTURE(band);
        float before = 0;
        for (const double amplitude : {0.001, 0.01, 0.05, 0.1, 0.3, 0.6, 0.9}) {
            MeterOn meter;
            const float level = meter.hear(tone(kCentres[band], 0, amplitude)).bands[1][band];
            CHECK(level > before);
            before = level;
        }
        MeterOn meter;
        CHECK(meter.hear(tone(kCentres[band], 0, 2)).bands[1][band] == 1);
    }
}

TEST_CASE("silence is at the floor and sound falls back to it") {
    MeterOn meter;
    CHECK(isSilent(meter.levels()));
    CHECK(isSilent(meter.hear(std::vector<StereoFrame>(kRate))));
    meter.hear(tone(440, 0.5, 0.5));
    const std::vector<StereoFrame> rest(kRate / 5);
    meter.takeDeviceMix(rest);
    const Meter::Levels levels = meter.levels();
    CHECK(levels.averagePower[0] == Meter::kFloor);
    CHECK(levels.bands[0][1] == 0);
}

TEST_CASE("a peak is held for two seconds and then gives way to lower ones") {
    MeterOn meter;
    meter.hear(tone(1000, 0.8, 0.8, 0.05));
    CHECK(meter.heard.peakHold[0] == doctest::Approx(20 * std::log10(0.8)).epsilon(0.01));
    meter.hear(tone(1000, 0.1, 0.1, 1.5));
    CHECK(meter.heard.peakHold[0] == doctest::Approx(20 * std::log10(0.8)).epsilon(0.01));
    CHECK(meter.heard.averagePower[0] == doctest::Approx(sinePower(0.1)).epsilon(0.01));
    meter.hear(tone(1000, 0.1, 0.1, 1.0));
    CHECK(meter.heard.peakHold[0] == doctest::Approx(20 * std::log10(0.1)).epsilon(0.01));
}

TEST_CASE("nothing is measured while metering is off, and nothing old is shown when it comes back") {
    Meter meter(kRate);
    const auto sound = tone(440, 0.5, 0.5);
    meter.takeStereoMix(sound);
    meter.takeDeviceMix(sound);
    CHECK(isSilent(meter.levels()));

    meter.enableVolume(true);
    meter.takeStereoMix(sound);
    meter.takeDeviceMix(sound);
    CHECK(meter.levels().averagePower[0] > -20);
    CHECK(meter.levels().bands[0][1] == 0);

    meter.enableVolume(false);
    meter.takeDeviceMix(sound);
    CHECK(isSilent(meter.levels()));
}

TEST_CASE("samples that are no numbers do not stay in the meter") {
    MeterOn meter;
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    meter.hear(std::vector<StereoFrame>(512, StereoFrame{nan, inf}));
    meter.hear(tone(300, 0.5, 0.5));
    for (std::size_t c = 0; c < Meter::kChannels; ++c) {
        CHECK(meter.heard.averagePower[c] == doctest::Approx(sinePower(0.5)).epsilon(0.01));
        CHECK(meter.heard.bands[c][1] == doctest::Approx(0.5).epsilon(0.1));
    }
}

TEST_CASE("any sample rate has its four bands") {
    for (const int rate : {2000, 8000, 192000}) {
        CAPTURE(rate);
        Meter meter(rate);
        meter.enableBands(true);
        std::vector<StereoFrame> sound(static_cast<std::size_t>(rate / 2));
        for (std::size_t i = 0; i < sound.size(); ++i) sound[i] = toneFrame(std::int64_t(i), 60, rate);
        for (std::size_t i = 0; i + 100 <= sound.size(); i += 100) {
            meter.takeStereoMix(std::span(sound).subspan(i, 100));
            meter.takeDeviceMix(std::span(sound).subspan(i, 100));
        }
        CHECK(meter.levels().bands[0][0] == doctest::Approx(0.4).epsilon(0.1));
        CHECK(meter.levels().bands[1][3] < 0.05f);
    }
}

namespace {

// A callback that plays a long tone of 300 Hz and amplitude 0.4.
struct PlayingTone {
    OutputCallback callback{3 * kRate, kRate};

    PlayingTone() {
        callback.meter().enableVolume(true);
        callback.meter().enableBands(true);
        Lane* lane = callback.lanes().idle();
        REQUIRE(lane != nullptr);
        lane->header = {makePlayhead(0, false, false, 0, 0, 10 * kRate), 0, 1, 0};
        lane->base = lane->frames.writePosition();
        for (std::int64_t i = 0; i < 2 * kRate; ++i) {
            const StereoFrame f = toneFrame(i, 300, kRate);
            lane->frames.write({&f, 1});
        }
        callback.lanes().splice({0, 0, true});
        callback.settleWhileStopped();
        callback.setRunning(true);
    }

    Meter::Levels play(double seconds, std::size_t callbackFrames = 512) {
        std::vector<StereoFrame> out(callbackFrames);
        for (double frames = seconds * kRate; frames > 0; frames -= double(callbackFrames)) callback.fill(out);
        return callback.meter().levels();
    }
};

}  // namespace

TEST_CASE("the volume is metered as the device gets it, the bands before gain and balance") {
    PlayingTone tone;
    tone.callback.setGains(0.5f, 0);
    const Meter::Levels levels = tone.play(0.3);
    CHECK(std::abs(levels.averagePower[0] - sinePower(0.2)) < 0.5);
    CHECK(levels.averagePower[1] == Meter::kFloor);
    CHECK(levels.bands[0][1] == doctest::Approx(0.4).epsilon(0.1));
    CHECK(levels.bands[1] == levels.bands[0]);
}

TEST_CASE("long callbacks are metered like short ones") {
    PlayingTone tone;
    const Meter::Levels levels = tone.play(0.5, 8192);
    CHECK(std::abs(levels.averagePower[0] - sinePower(0.4)) < 0.5);
    CHECK(levels.bands[0][1] == doctest::Approx(0.4).epsilon(0.1));
}

TEST_CASE("the levels fall to the floor in a pause, while the device goes on and when it stops at once") {
    PlayingTone tone;
    CHECK(tone.play(0.3).averagePower[0] > -20);
    tone.callback.setRunning(false);
    const Meter::Levels paused = tone.play(0.2);
    CHECK(paused.averagePower[0] == Meter::kFloor);
    CHECK(paused.bands[0][1] == 0);

    tone.callback.setRunning(true);
    CHECK(tone.play(0.3).averagePower[0] > -20);
    tone.callback.settleWhileStopped();
    CHECK(isSilent(tone.callback.meter().levels()));
}
