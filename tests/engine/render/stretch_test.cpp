#include "support/Stretched.h"

using namespace qm;
using namespace qm::test;

namespace {

// Every test holds for the library and for the own stretcher.
Stretcher anyStretcher() {
    Stretcher stretcher = Stretcher::Library;
    SUBCASE("the library") {
        stretcher = Stretcher::Library;
    }
    SUBCASE("the own stretcher") {
        stretcher = Stretcher::Own;
    }
    return stretcher;
}

}  // namespace

TEST_CASE("a tone keeps its pitch within one cent at every speed") {
    const Stretcher stretcher = anyStretcher();
    const auto tone = [](std::int64_t n) { return toneFrame(n, 440); };
    for (const double speed : {0.35, 0.5, 0.75, 1.5, 2.0, 2.5}) {
        for (const bool backward : {false, true}) {
            const std::int64_t length = 20 * kRate;
            const auto out = render(length, tone, makePlayhead(backward ? length : 0, backward, false, 0, 0, length),
                                    {speed, 0}, 4 * kRate, stretcher);
            CHECK(std::abs(1200 * std::log2(frequencyOf(out, 440) / 440)) < 1.0);
        }
    }
}

TEST_CASE("pitch in cents moves a tone by exactly that much and leaves the speed alone") {
    const Stretcher stretcher = anyStretcher();
    const auto tone = [](std::int64_t n) { return toneFrame(n, 440); };
    for (const double cents : {-1200.0, -700.0, -100.0, 100.0, 700.0, 1200.0}) {
        const double expected = 440 * std::exp2(cents / 1200);
        const auto out = render(20 * kRate, tone, makePlayhead(0, false, false, 0, 0, 20 * kRate), {1.0, cents},
                                4 * kRate, stretcher);
        CHECK(std::abs(1200 * std::log2(frequencyOf(out, expected) / expected)) < 1.0);
    }
}

TEST_CASE("the first attack after a start is whole, slowed down or not") {
    const Stretcher stretcher = anyStretcher();
    // An attack: a tone that begins at full level, at the very frame that play starts with.
    const std::int64_t attack = 30000;
    const auto sound = [&](std::int64_t n) {
        if (n < attack) return StereoFrame{};
        const float decay = std::exp(-float(n - attack) / 4000);
        return toneFrame(n - attack, 880) * decay;
    };
    const auto reference =
        render(200000, sound, makePlayhead(attack, false, false, 0, 0, 200000), {1, 0}, 882, stretcher);
    for (const double speed : {0.35, 0.5, 0.75}) {
        const auto out =
            render(200000, sound, makePlayhead(attack, false, false, 0, 0, 200000), {speed, 0}, 882, stretcher);
        const double db = 10 * std::log10(energy(out, 0, 882) / energy(reference, 0, 882));
        MESSAGE("speed " << speed << ": first 20 ms " << db << " dB");
        CHECK(std::abs(db) < 1.5);
    }
}

TEST_CASE("clicks come out where the speed puts them") {
    const Stretcher stretcher = anyStretcher();
    // One click every 9000 frames; the k-th belongs at (9000 k) / speed.
    const auto clicks = [](std::int64_t n) {
        const std::int64_t d = (n + 100) % 9000 - 100;
        if (n < 4000 || std::abs(d) > 60) return StereoFrame{};
        const auto s = float((0.5 + 0.5 * std::cos(std::numbers::pi * double(d) / 60)) * std::cos(double(d) * 0.3));
        return StereoFrame{s, s};
    };
    for (const double speed : {0.35, 0.5, 0.75, 1.5, 2.5}) {
        const auto out = render(40 * kRate, clicks, makePlayhead(0, false, false, 0, 0, 40 * kRate), {speed, 0},
                                std::size_t(30 * 9000 / speed), stretcher);
        double worst = 0;
        for (int k = 1; k < 29; ++k) {
            const double expected = 9000.0 * k / speed;
            const auto begin = static_cast<std::size_t>(expected - 3000 / speed);
            double moment = 0, total = 0;
            std::size_t peak = begin;
            for (std::size_t i = begin; i < begin + std::size_t(6000 / speed); ++i)
                if (std::abs(out[i]) > std::abs(out[peak])) peak = i;
            for (std::size_t i = peak - 400; i < peak + 400; ++i) {
                moment += double(i) * out[i] * out[i];
                total += double(out[i]) * out[i];
            }
            worst = std::max(worst, std::abs(moment / total - expected));
        }
        MESSAGE("speed " << speed << ": worst click " << worst / kRate * 1000 << " ms");
        CHECK(worst < 0.008 * kRate / std::min(speed, 1.0));
    }
}

TEST_CASE("a slowed loop keeps its period over fifty passes, forward and backward") {
    const Stretcher stretcher = anyStretcher();
    // The passage holds one click, so each pass of the output shows one.
    const std::int64_t a = 50000, b = 62000, length = 200000;
    const auto clicks = [&](std::int64_t n) {
        const std::int64_t d = n - 56000;
        if (std::abs(d) > 60) return StereoFrame{};
        const auto s = float((0.5 + 0.5 * std::cos(std::numbers::pi * double(d) / 60)) * std::cos(double(d) * 0.3));
        return StereoFrame{s, s};
    };
    for (const bool backward : {false, true}) {
        const int passes = 50;
        const std::size_t period = 24000;
        const auto out = render(length, clicks, makePlayhead(backward ? b : a, backward, true, a, b, length), {0.5, 0},
                                period * passes, stretcher);
        const auto centre = [&](int pass) {
            double moment = 0, total = 0;
            for (std::size_t i = period * std::size_t(pass); i < period * std::size_t(pass + 1); ++i) {
                moment += double(i) * out[i] * out[i];
                total += double(out[i]) * out[i];
            }
            return moment / total;
        };
        // The slope of the line through all the centres: a single pass may sit a little early or late.
        const double middle = (passes - 1) / 2.0;
        double covariance = 0, variance = 0;
        for (int pass = 0; pass < passes; ++pass) {
            covariance += (pass - middle) * centre(pass);
            variance += (pass - middle) * (pass - middle);
        }
        const double mean = covariance / variance;
        MESSAGE("mean period off by " << mean - double(period));
        CHECK(std::abs(mean - double(period)) < 1.0);
    }
}
