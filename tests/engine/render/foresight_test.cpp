#include <algorithm>
#include <chrono>
#include <complex>
#include <thread>

#include "engine/render/stretch/AttackMap.h"
#include "engine/render/stretch/ForesightStretch.h"
#include "support/Stretched.h"

using namespace qm;
using namespace qm::test;

namespace {

// Noise as a function of its frame.
float noiseAt(std::int64_t frame) {
    auto x = static_cast<std::uint64_t>(frame) * 0x9E3779B97F4A7C15ull;
    x = (x ^ (x >> 31)) * 0xBF58476D1CE4E5B9ull;
    return float(static_cast<double>(x >> 40) / double(1 << 24) - 0.5);
}

// A pluck every 11025 frames from frame 5000 on: three partials and a little noise, decaying, a fifth higher each time.
StereoFrame plucks(std::int64_t n) {
    if (n < 5000) return {};
    const std::int64_t number = (n - 5000) / 11025, since = (n - 5000) % 11025;
    const double f = 220 * std::exp2(double(number % 5) * 7 / 12), t = double(since) / kRate;
    double s = 0;
    for (int h = 1; h < 4; ++h) s += 0.2 / h * std::sin(2 * std::numbers::pi * f * h * t + h) * std::exp(-t * 6 * h);
    s += 0.3 * double(noiseAt(n)) * std::exp(-t * 200);
    return {float(s), float(0.7 * s)};
}

// A hump of 18 frames every 15000: hardly a peak in its spectrum.
StereoFrame clicks(std::int64_t n) {
    const std::int64_t since = n % 15000 - 7000;
    const double hump = std::sin(std::numbers::pi * double(since) / 18);
    const auto s = since < 0 || since >= 18 ? 0.0f : float(0.8 * hump * hump);
    return {s, s};
}

// A chord that goes on for ever.
StereoFrame chord(std::int64_t n) {
    double s = 0;
    for (const double f : {98.0, 246.9, 392.0, 1174.7, 2637.0, 6271.9})
        s += 0.08 * std::sin(2 * std::numbers::pi * f * double(n) / kRate);
    return {float(s), float(s)};
}

double residual(const std::vector<float>& a, std::size_t beginA, const std::vector<float>& b, std::size_t beginB,
                std::size_t count) {
    double difference = 0, whole = 1e-30;
    for (std::size_t i = 0; i < count; ++i) {
        const double d = double(a[beginA + i]) - b[beginB + i];
        difference += d * d;
        whole += double(a[beginA + i]) * a[beginA + i];
    }
    return 10 * std::log10(difference / whole + 1e-30);
}

AttackMap::Read reads(std::function<StereoFrame(std::int64_t)> sound) {
    return [sound](std::int64_t first, std::span<StereoFrame> out) {
        for (std::size_t i = 0; i < out.size(); ++i) {
            const std::int64_t n = first + static_cast<std::int64_t>(i);
            out[i] = n >= 0 ? sound(n) : StereoFrame{};
        }
        return true;
    };
}

std::vector<Attack> attacksOf(AttackMap& map, std::int64_t begin, std::int64_t end) {
    std::vector<Attack> found;
    map.attacks(begin, end, found);
    return found;
}

}  // namespace

TEST_CASE("every pluck is found as an attack within a millisecond, and nothing else") {
    AttackMap map(kRate);
    REQUIRE(map.explore(0, 20 * kRate, reads(plucks)));
    const auto found = attacksOf(map, 0, 19 * kRate);
    REQUIRE(found.size() == std::size_t((19 * kRate - 5000 + 11024) / 11025));
    for (std::size_t i = 0; i < found.size(); ++i) {
        CHECK(std::abs(found[i].frame - (5000 + 11025 * std::int64_t(i))) < 44);
        CHECK(found[i].confidence != Confidence::Low);
    }
}

TEST_CASE("steady sounds have no attacks") {
    const auto vibrato = [](std::int64_t n) {
        const double t = double(n) / kRate;
        double s = 0;
        for (int h = 1; h < 8; ++h)
            s += 0.1 / h *
                 std::sin(2 * std::numbers::pi * 330 * h * t + h * 3.0 * std::sin(2 * std::numbers::pi * 5.5 * t));
        return StereoFrame{float(s), float(s)};
    };
    const auto noise = [](std::int64_t n) { return StereoFrame{0.3f * noiseAt(n), 0.3f * noiseAt(n + 77777777)}; };
    for (const auto& sound :
         {std::function<StereoFrame(std::int64_t)>(chord), std::function<StereoFrame(std::int64_t)>(vibrato),
          std::function<StereoFrame(std::int64_t)>(noise)}) {
        AttackMap map(kRate);
        REQUIRE(map.explore(0, 10 * kRate, reads(sound)));
        const auto found = attacksOf(map, kRate, 9 * kRate);
        CHECK(std::count_if(found.begin(), found.end(),
                            [](const Attack& a) { return a.confidence != Confidence::Low; }) == 0);
    }
}

TEST_CASE("what is known of a frame does not depend on the order of asking") {
    AttackMap upwards(kRate), downwards(kRate);
    REQUIRE(upwards.explore(0, 10 * kRate, reads(plucks)));
    for (std::int64_t begin = 9 * kRate; begin >= 0; begin -= kRate)
        REQUIRE(downwards.explore(begin, begin + kRate, reads(plucks)));
    CHECK(attacksOf(upwards, 0, 10 * kRate) == attacksOf(downwards, 0, 10 * kRate));
    for (int band = 0; band < AttackMap::kBands; ++band)
        for (std::int64_t frame = 0; frame < 10 * kRate; frame += 512)
            CHECK(upwards.halvings(band, frame) == downwards.halvings(band, frame));
}

TEST_CASE("looking ahead finds the same, and only where the sound is there already") {
    AttackMap asked(kRate), ahead(kRate);
    REQUIRE(asked.explore(0, 10 * kRate, reads(plucks)));
    int looked = 0;
    for (std::int64_t frame = 0; frame < 10 * kRate; frame += kRate / 4) {
        ahead.lookAhead(
            frame, frame + 1, [](std::int64_t, std::int64_t) { return false; },
            [](std::int64_t, std::span<StereoFrame>) {
                FAIL("read without its sound");
                return false;
            });
        ahead.lookAhead(
            frame, frame + 1, [](std::int64_t, std::int64_t) { return true; }, reads(plucks));
        REQUIRE(ahead.explore(frame, frame + 1, [&](std::int64_t first, std::span<StereoFrame> out) {
            ++looked;  // behind the block that is being looked at
            return reads(plucks)(first, out);
        }));
    }
    CHECK(looked == 0);
    CHECK(attacksOf(asked, 0, 9 * kRate) == attacksOf(ahead, 0, 9 * kRate));
}

TEST_CASE("while the sound is neutral, the attacks around it become known without it waiting for them") {
    const std::int64_t length = 20 * kRate;
    PcmCache cache(std::make_unique<ComputedSound>(length, plucks));
    Timeline timeline(cache);
    ForesightStretch stretch(kRate);
    const auto isKnown = [&](std::int64_t begin, std::int64_t end) {
        return stretch.attackMap().explore(begin, end, [](std::int64_t, std::span<StereoFrame>) { return false; });
    };
    for (const bool backward : {false, true}) {
        const std::int64_t start = backward ? 15 * kRate : 5 * kRate;
        timeline.begin(makePlayhead(start, backward, false, 0, 0, length), true, {});
        std::vector<StereoFrame> around(4 * kRate);
        REQUIRE(cache.read(start - 2 * kRate, around));
        CHECK_FALSE(isKnown(start, start + 1));
        for (int patience = 0; patience < 2000 && !isKnown(start - 12288, start + 32768); ++patience) {
            stretch.lookAhead(timeline, 0);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        CHECK(isKnown(start - 12288, start + 32768));
    }
}

TEST_CASE("a hair from neutral the sound is the source") {
    const std::int64_t length = 10 * kRate;
    const Playhead head = makePlayhead(0, false, false, 0, 0, length);
    for (const auto& sound :
         {std::function<StereoFrame(std::int64_t)>(chord), std::function<StereoFrame(std::int64_t)>(plucks)}) {
        const auto source = render(length, sound, head, {1, 0}, 5 * kRate);
        const auto out = render(length, sound, head, {1 - 1e-9, 0}, 5 * kRate, Stretcher::Own);
        const double db = residual(source, 0, out, 0, 5 * kRate);
        MESSAGE("residual " << db << " dB");
        CHECK(db < -25);
    }
}

TEST_CASE("an attack comes at its place with silence before it") {
    const std::int64_t length = 60 * kRate;
    for (const double speed : {0.35, 0.5, 0.75, 1.5, 2.5}) {
        const auto silentThenPluck = [](std::int64_t n) {
            const std::int64_t since = n % 30000 - 10000;
            return since < 0 || since > 11000 ? StereoFrame{} : plucks(5000 + since);
        };
        const auto out = render(length, silentThenPluck, makePlayhead(0, false, false, 0, 0, length), {speed, 0},
                                std::size_t(8 * 30000 / speed), Stretcher::Own);
        for (int k = 1; k < 8; ++k) {
            const auto at = std::size_t((30000.0 * k + 10000) / speed);
            const double after = energy(out, at, 882), before = energy(out, at - 4000, 4000 - 66);
            const double db = 10 * std::log10(before / after + 1e-12);
            CHECK(db < (speed < 1 ? -28 : -20));
            CHECK(energy(out, at, 220) > 0.1 * after);
        }
    }
}

TEST_CASE("noise stays as loud as it was, however long it goes on") {
    // Rumble and hiss come and go, so that the length of the windows changes again and again.
    const std::int64_t length = 40 * kRate;
    const auto noise = [](std::int64_t n) {
        const double t = double(n) / kRate;
        double s = 0;
        for (int back = 0; back < 24; ++back) s += double(noiseAt(n - back)) * (0.5 + 0.5 * std::sin(t * 3));
        s = 0.05 * s + 0.2 * double(noiseAt(n)) * (0.5 + 0.5 * std::cos(t * 7));
        return StereoFrame{float(s), float(s)};
    };
    const Playhead head = makePlayhead(0, false, false, 0, 0, length);
    for (const RenderSettings settings : {RenderSettings{0.5, 0}, RenderSettings{1.5, 0}, RenderSettings{1, -300}}) {
        const auto out =
            render(length, noise, head, settings, std::size_t(18 * kRate / settings.speed), Stretcher::Own);
        const auto source = render(length, noise, head, {1, 0}, 18 * kRate);
        const auto rumble = [](const std::vector<float>& x, double from, double to) {  // below 700 Hz or so
            double sum = 0, low = 0;
            for (auto i = std::size_t(from * kRate); i < std::size_t(to * kRate); ++i) {
                low += 0.06 * (double(x[i]) - low);
                sum += low * low;
            }
            return sum / (to - from);
        };
        const double db =
            10 * std::log10(rumble(out, 11 / settings.speed, 17 / settings.speed) / rumble(source, 11, 17));
        MESSAGE("speed " << settings.speed << ", " << settings.cents << " cents: " << db << " dB");
        CHECK(std::abs(db) < 4);
    }
}

TEST_CASE("what sounds between partials is as loud as it was") {
    // Breath in a held note, 30 dB below its partials.
    const std::int64_t length = 20 * kRate;
    const auto breath = [](std::int64_t n) {
        double s = 0.01 * double(noiseAt(n));
        for (int h = 1; h < 9; ++h) s += 0.05 * std::sin(2 * std::numbers::pi * 440 * h * double(n) / kRate + h);
        return StereoFrame{float(s), float(s)};
    };
    const auto between =
        [](const std::vector<float>& x) {  // power from 960 to 1240 Hz, between the second and the third
            constexpr std::size_t kWindow = 4096;
            double sum = 0;
            for (std::size_t begin = kRate; begin + kWindow < 5 * kRate; begin += kWindow / 2)
                for (double hertz = 960; hertz <= 1240; hertz += 20) {
                    std::complex<double> z;
                    for (std::size_t i = 0; i < kWindow; ++i) {
                        const double window = 0.5 - 0.5 * std::cos(2 * std::numbers::pi * double(i) / kWindow);
                        z += double(x[begin + i]) * window *
                             std::polar(1.0, -2 * std::numbers::pi * hertz * double(i) / kRate);
                    }
                    sum += std::norm(z);
                }
            return sum;
        };
    const Playhead head = makePlayhead(0, false, false, 0, 0, length);
    const double was = between(render(length, breath, head, {1, 0}, 5 * kRate));
    for (const double speed : {0.5, 0.75, 1.5}) {
        const double is = between(render(length, breath, head, {speed, 0}, 5 * kRate, Stretcher::Own));
        MESSAGE("speed " << speed << ": " << 10 * std::log10(is / was) << " dB");
        CHECK(std::abs(10 * std::log10(is / was)) < 3);
    }
}

TEST_CASE("a click is as loud as it was") {
    const std::int64_t length = 20 * kRate;
    const Playhead head = makePlayhead(0, false, false, 0, 0, length);
    const auto source = render(length, clicks, head, {1, 0}, 15000);
    for (const double speed : {0.5, 0.75, 1.5}) {
        const auto out = render(length, clicks, head, {speed, 0}, std::size_t(8 * 15000 / speed), Stretcher::Own);
        for (int k = 1; k < 8; ++k) {
            const auto at = std::size_t((15000.0 * k + 7000) / speed);
            const double db = 10 * std::log10(energy(out, at - 60, 200) / energy(source, 6940, 200));
            CHECK(std::abs(db) < 2);
        }
    }
}

TEST_CASE("a click is heard once") {
    const std::int64_t length = 20 * kRate;
    const Playhead head = makePlayhead(0, false, false, 0, 0, length);
    for (const double speed : {0.5, 0.75, 1.5}) {
        const auto out = render(length, clicks, head, {speed, 0}, std::size_t(8 * 15000 / speed), Stretcher::Own);
        for (int k = 1; k < 8; ++k) {
            const auto at = std::size_t((15000.0 * k + 7000) / speed);
            CHECK(10 * std::log10(energy(out, at + 600, 3800) / energy(out, at - 60, 200) + 1e-12) < -42);
        }
    }
}

TEST_CASE("the end of a track is as loud as it was") {
    const std::int64_t length = 4 * kRate;
    const Playhead head = makePlayhead(0, false, false, 0, 0, length);
    const auto source = render(length, chord, head, {1, 0}, std::size_t(length));
    for (const double speed : {0.5, 0.75, 1.5}) {
        const auto frames = std::size_t(double(length) / speed);
        const auto out = render(length, chord, head, {speed, 0}, frames, Stretcher::Own);
        for (const std::size_t last : {220, 882}) {  // chords beat: compared with the second before
            const double usual = energy(out, frames - 22050, 22050) / 22050;
            const double db = 10 * std::log10(energy(out, frames - last, last) / double(last) / usual);
            const double was = 10 * std::log10(energy(source, source.size() - last, last) / double(last) /
                                               (energy(source, source.size() - 22050, 22050) / 22050));
            MESSAGE("speed " << speed << ", last " << last << ": " << db << " dB, source " << was);
            CHECK(std::abs(db - was) < 3);
        }
    }
}

TEST_CASE("the beginning of a track is as loud as it was") {
    const std::int64_t length = 4 * kRate;
    const Playhead head = makePlayhead(0, false, false, 0, 0, length);
    const auto tone = [](std::int64_t n) { return toneFrame(n + 30, 440); };
    for (const double speed : {0.5, 0.75, 1.5}) {
        const auto out = render(length, tone, head, {speed, 0}, kRate, Stretcher::Own);
        CHECK(std::abs(10 * std::log10(energy(out, 0, 882) / energy(out, 22050, 882))) < 1);
    }
}

TEST_CASE("every pass of a loop is the same samples") {
    const std::int64_t length = 20 * kRate, a = 40000, b = 40000 + 52800;
    for (const bool backward : {false, true})
        for (const RenderSettings settings :
             {RenderSettings{0.5, 0}, RenderSettings{0.75, 0}, RenderSettings{1.5, 0}, RenderSettings{0.5, -300}}) {
            const auto pass = std::size_t(52800 / settings.speed);
            const auto out = render(length, plucks, makePlayhead(backward ? b : a, backward, true, a, b, length),
                                    settings, 3 * pass, Stretcher::Own);
            CHECK(residual(out, 0, out, pass, pass) < -120);
            CHECK(residual(out, pass, out, 2 * pass, pass) < -120);
        }
}

TEST_CASE("the seam of a loop is no louder than the passage") {
    const std::int64_t length = 20 * kRate, a = 40000, b = 40000 + 52811;
    const std::size_t pass = 2 * 52811;
    const auto out =
        render(length, chord, makePlayhead(a, false, true, a, b, length), {0.5, 0}, 3 * pass, Stretcher::Own);
    float within = 0, across = 0;
    for (std::size_t i = pass + 20000; i < pass + 80000; ++i) within = std::max(within, std::abs(out[i] - out[i - 1]));
    for (std::size_t i = 2 * pass - 600; i < 2 * pass + 600; ++i)
        across = std::max(across, std::abs(out[i] - out[i - 1]));
    CHECK(across < 1.3f * within);
}

TEST_CASE("backward is the forward rendition turned around") {
    const std::int64_t length = 8 * kRate;
    const auto forward =
        render(length, plucks, makePlayhead(0, false, false, 0, 0, length), {0.5, 0}, 2 * length, Stretcher::Own);
    auto backward =
        render(length, plucks, makePlayhead(length, true, false, 0, 0, length), {0.5, 0}, 2 * length, Stretcher::Own);
    std::reverse(backward.begin(), backward.end());
    int frames = 0, alike = 0;
    for (std::size_t i = 4 * 4410; i + 4 * 4410 < forward.size(); i += 220) {
        const double f = energy(forward, i, 220), g = energy(backward, i, 220);
        if (f < 0.001) continue;
        ++frames;
        if (std::abs(10 * std::log10(g / f)) < 2) ++alike;
    }
    MESSAGE(alike << " of " << frames << " frames of 5 ms alike");
    CHECK(alike > 0.95 * frames);
}

TEST_CASE("the pitch is exact from the lowest string to the top of the piano") {
    for (const double hertz : {41.2, 110.0, 698.0, 705.0, 1000.0, 3990.0, 5000.0})
        for (const RenderSettings settings : {RenderSettings{0.5, 0}, RenderSettings{1.5, 0}, RenderSettings{1, -300},
                                              RenderSettings{0.6, 700}, RenderSettings{1, 1200}}) {
            const double expected = hertz * std::exp2(settings.cents / 1200);
            const auto tone = [&](std::int64_t n) { return toneFrame(n, hertz); };
            const auto out = render(20 * kRate, tone, makePlayhead(0, false, false, 0, 0, 20 * kRate), settings,
                                    4 * kRate, Stretcher::Own);
            CHECK(std::abs(1200 * std::log2(frequencyOf(out, expected) / expected)) < 0.5);
        }
}
