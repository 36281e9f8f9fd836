#include "engine/media/ToneMap.h"

#include <algorithm>
#include <cmath>

#include "engine/realtime/FourFloats.h"

namespace qm {

namespace {

using Triple = std::array<double, 3>;

constexpr double kWhite = 203;        // cd/m²: reference white (Report ITU-R BT.2408), and the white of the screen
constexpr double kHlgPeak = 1000;     // cd/m²: of the screen for which HLG has its gamma of 1.2
constexpr double kScreenGamma = 2.4;  // BT.1886

// SMPTE ST 2084, to and from cd/m².
constexpr double kM1 = 2610.0 / 16384, kM2 = 2523.0 / 4096 * 128;
constexpr double kC1 = 3424.0 / 4096, kC2 = 2413.0 / 4096 * 32, kC3 = 2392.0 / 4096 * 32;

double pqToLight(double coded) {
    const double power = std::pow(std::max(coded, 0.0), 1 / kM2);
    return 10000 * std::pow(std::max(power - kC1, 0.0) / (kC2 - kC3 * power), 1 / kM1);
}

double lightToPq(double light) {
    const double power = std::pow(std::max(light, 0.0) / 10000, kM1);
    return std::pow((kC1 + kC2 * power) / (1 + kC3 * power), kM2);
}

// BT.2100, table 5: light of the scene, 0 to 1.
double hlgToScene(double coded) {
    constexpr double kA = 0.17883277, kB = 1 - 4 * kA;
    const double c = 0.5 - kA * std::log(4 * kA);
    return coded <= 0.5 ? coded * coded / 3 : (std::exp((coded - c) / kA) + kB) / 12;
}

Triple hlgToLight(const Triple& coded) {
    Triple scene;
    std::transform(coded.begin(), coded.end(), scene.begin(), hlgToScene);
    const double luminance = 0.2627 * scene[0] + 0.6780 * scene[1] + 0.0593 * scene[2];
    const double gain = kHlgPeak * std::pow(luminance, 0.2);
    return {scene[0] * gain, scene[1] * gain, scene[2] * gain};
}

Triple toLight(const ToneSource& source, const Triple& coded) {
    switch (source.transfer) {
        case ToneSource::Transfer::Pq:
            return {pqToLight(coded[0]), pqToLight(coded[1]), pqToLight(coded[2])};
        case ToneSource::Transfer::Hlg:
            return hlgToLight(coded);
        case ToneSource::Transfer::Gamma:
            break;
    }
    const auto light = [](double value) { return kWhite * std::pow(value, kScreenGamma); };
    return {light(coded[0]), light(coded[1]), light(coded[2])};
}

// BT.2390, 5.4.1, from light up to `peak` to light up to white; black is black in both.
double compressed(double light, double peak) {
    if (peak <= kWhite) {
        return std::min(light, kWhite);
    }
    const double top = lightToPq(peak);
    const double most = lightToPq(kWhite) / top;
    const double knee = 1.5 * most - 0.5;
    const double value = std::min(lightToPq(light) / top, 1.0);
    if (value < knee) {
        return light;
    }
    const double t = (value - knee) / (1 - knee), t2 = t * t, t3 = t2 * t;
    const double bent = (2 * t3 - 3 * t2 + 1) * knee + (t3 - 2 * t2 + t) * (1 - knee) + (3 * t2 - 2 * t3) * most;
    return pqToLight(bent * top);
}

// R'G'B' of BT.709; below 0 and above 1 where that system has no such colour.
Triple unclipped(const ToneSource& source, const Triple& coded) {
    Triple light = toLight(source, coded);
    const double brightest = std::max({light[0], light[1], light[2]});
    const bool isHigh = source.transfer != ToneSource::Transfer::Gamma;
    const double scale = isHigh && brightest > 0 ? compressed(brightest, source.peak) / brightest : 1;
    for (double& component : light) {
        component *= scale / kWhite;
    }
    const auto screen = [&](double red, double green, double blue) {
        const double value = red * light[0] + green * light[1] + blue * light[2];
        return std::copysign(std::pow(std::abs(value), 1 / kScreenGamma), value);
    };
    return {screen(1.6605, -0.5876, -0.0728), screen(-0.1246, 1.1329, -0.0083), screen(-0.0182, -0.1006, 1.1187)};
}

constexpr int kNodes = 33;  // along each side of the table's cube

std::size_t nodeAt(int red, int green, int blue) {
    return (static_cast<std::size_t>(red) * kNodes + green) * kNodes + blue;
}

}  // namespace

Triple toneMapped(const ToneSource& source, const Triple& coded) {
    Triple mapped = unclipped(source, coded);
    for (double& component : mapped) {
        component = std::clamp(component, 0.0, 1.0);
    }
    return mapped;
}

ToneTable::ToneTable(const ToneSource& source) : m_source(source), m_nodes(nodeAt(kNodes, 0, 0)) {
    constexpr double kStep = 1.0 / (kNodes - 1);
    for (int red = 0; red < kNodes; ++red) {
        for (int green = 0; green < kNodes; ++green) {
            for (int blue = 0; blue < kNodes; ++blue) {
                const Triple mapped = unclipped(source, {red * kStep, green * kStep, blue * kStep});
                Node& node = m_nodes[nodeAt(red, green, blue)];
                std::transform(mapped.begin(), mapped.end(), node.begin(),
                               [](double value) { return static_cast<float>(255 * value + 0.5); });
            }
        }
    }
}

// Between the nodes, along the edges of the tetrahedron in which the colour lies.
void ToneTable::map(const std::uint16_t* from, std::uint32_t* to, std::size_t pixels) const {
    constexpr std::uint32_t kScale = (kNodes - 1) * 65536u / 65535u;
    constexpr std::size_t kSteps[3] = {std::size_t{kNodes} * kNodes, kNodes, 1};
    static_assert(kScale == kNodes - 1);
    for (const std::uint16_t* end = from + 3 * pixels; from != end; from += 3, ++to) {
        // Whole and fractional place along each side; the last node is never the whole part.
        std::uint32_t place[3];
        std::size_t base = 0;
        for (int side = 0; side < 3; ++side) {
            const std::uint32_t scaled = (from[side] - (from[side] >> 15)) * (kNodes - 1);
            base += (scaled >> 16) * kSteps[side];
            place[side] = scaled & 0xffff;
        }
        int first = 0, second = 1, third = 2;  // by their fractions, the largest first
        if (place[first] < place[second]) std::swap(first, second);
        if (place[second] < place[third]) std::swap(second, third);
        if (place[first] < place[second]) std::swap(first, second);
        const Node* node = &m_nodes[base];
        const auto add = [](FourFloats sum, const Node& corner, std::uint32_t weight) {
            const float share = static_cast<float>(weight) * (1.0f / 65536);
            return sum +
                   FourFloats{corner[0], corner[1], corner[2], corner[3]} * FourFloats{share, share, share, share};
        };
        FourFloats sum = add(FourFloats{}, *node, 65536 - place[first]);
        node += kSteps[first];
        sum = add(sum, *node, place[first] - place[second]);
        node += kSteps[second];
        sum = add(sum, *node, place[second] - place[third]);
        node += kSteps[third];
        sum = add(sum, *node, place[third]);
        const auto part = [&](int side) { return static_cast<std::uint32_t>(std::clamp(sum[side], 0.0f, 255.0f)); };
        *to = 0xff000000u | part(0) << 16 | part(1) << 8 | part(2);
    }
}

}  // namespace qm
