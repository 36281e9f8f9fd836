#include "engine/media/ToneMap.h"

#include <doctest/doctest.h>

#include <cmath>

using namespace qm;

namespace {

using Transfer = ToneSource::Transfer;

double greyOf(const ToneSource& source, double coded) {
    const auto mapped = toneMapped(source, {coded, coded, coded});
    CHECK(mapped[0] == doctest::Approx(mapped[1]).epsilon(0.002));
    CHECK(mapped[2] == doctest::Approx(mapped[1]).epsilon(0.002));
    return mapped[1];
}

// What a screen of 203 cd/m² makes of it, in cd/m².
double lightOf(const ToneSource& source, double coded) {
    return 203 * std::pow(greyOf(source, coded), 2.4);
}

constexpr ToneSource kPq{Transfer::Pq, 1000}, kHlg{Transfer::Hlg, 1000}, kWide{Transfer::Gamma, 1000};

}  // namespace

TEST_CASE("light up to half of white is shown as it was meant, in PQ and in HLG") {
    // 10 cd/m² in PQ, and the grey of 18 percent in both: 26 cd/m² and the same number (Report ITU-R BT.2408).
    CHECK(lightOf(kPq, 0.2997) == doctest::Approx(10).epsilon(0.01));
    CHECK(lightOf(kPq, 0.38) == doctest::Approx(26).epsilon(0.02));
    CHECK(lightOf(kHlg, 0.38) == doctest::Approx(26).epsilon(0.02));
    CHECK(lightOf(kHlg, 0.5) == doctest::Approx(50.7).epsilon(0.01));
}

TEST_CASE("black stays black, the brightest light is white, and more light is never darker") {
    for (const ToneSource& source : {kPq, kHlg, kWide, ToneSource{Transfer::Pq, 4000}, ToneSource{Transfer::Pq, 150}}) {
        CHECK(greyOf(source, 0) < 0.01);
        CHECK(greyOf(source, 1) > 0.99);
        double last = 0;
        for (int i = 0; i <= 1000; ++i) {
            const double grey = greyOf(source, i / 1000.0);
            CHECK(grey >= last - 1e-9);
            last = grey;
        }
    }
}

TEST_CASE("reference white is nearly white, with room for what is brighter") {
    CHECK(greyOf(kPq, 0.5807) == doctest::Approx(0.90).epsilon(0.02));  // 203 cd/m²
    CHECK(greyOf(kHlg, 0.75) == doctest::Approx(0.90).epsilon(0.02));
    CHECK(greyOf(kPq, 0.7) > 0.95);
    CHECK(greyOf(kPq, 0.7) < 1);
    CHECK(greyOf({Transfer::Pq, 203}, 0.5807) == doctest::Approx(1).epsilon(0.001));  // nothing is brighter
}

TEST_CASE("colours that both systems have keep their hue, and those that only one has are the purest there are") {
    const auto red = toneMapped(kWide, {1, 0, 0});
    CHECK(red[0] == 1);
    CHECK(red[1] == 0);
    CHECK(red[2] == 0);
    // The red of BT.709 in the numbers of BT.2020, by the matrix of BT.2087.
    const auto coded = [](double light) { return std::pow(light, 1 / 2.4); };
    const auto same = toneMapped(kWide, {coded(0.6274), coded(0.0691), coded(0.0164)});
    CHECK(same[0] == doctest::Approx(1).epsilon(0.001));
    CHECK(same[1] < 0.06);
    CHECK(same[2] < 0.06);
    // Compressed, the components keep their proportions.
    const auto dim = toneMapped(kPq, {0.40, 0.38, 0.36}), bright = toneMapped(kPq, {0.70, 0.6845, 0.6692});
    CHECK(std::pow(bright[0] / bright[2], 2.4) < std::pow(dim[0] / dim[2], 2.4) * 1.3);
    CHECK(bright[0] > bright[1]);
    CHECK(bright[1] > bright[2]);
}

TEST_CASE("the table says what the formula says") {
    for (const ToneSource& source : {kPq, kHlg, kWide}) {
        const ToneTable table(source);
        double farthest = 0;
        for (int i = 0; i <= 2000; ++i) {
            const auto value = static_cast<std::uint16_t>(i * 65535 / 2000);
            const std::uint16_t colours[] = {
                value, value, value, value, std::uint16_t(value / 10 * 9), std::uint16_t(value / 10 * 9)};
            std::uint32_t mapped[2];
            table.map(colours, mapped, 2);
            for (int pixel = 0; pixel < 2; ++pixel) {
                const auto right = toneMapped(source, {colours[3 * pixel] / 65535.0, colours[3 * pixel + 1] / 65535.0,
                                                       colours[3 * pixel + 2] / 65535.0});
                CHECK((mapped[pixel] >> 24) == 0xff);
                for (int part = 0; part < 3; ++part) {
                    const double shown = mapped[pixel] >> (16 - 8 * part) & 0xff;
                    farthest = std::max(farthest, std::abs(shown - 255 * right[part]));
                }
            }
        }
        CHECK(farthest < 2);
    }
}
