// Splits sound into four bands for the level meter: Linkwitz-Riley filters of the fourth order, first in the middle and
// then each half, so that a tone shows in its own band and falls by 24 dB an octave in the others. For display only;
// the bands are never heard. One thread; never allocates.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "engine/realtime/FourFloats.h"
#include "engine/sound/StereoFrame.h"

namespace qm {

class MeterBands {
public:
    static constexpr std::size_t kBands = 4;
    static constexpr std::array<double, kBands - 1> kCrossovers = {150, 600, 2500};  // Hz

    using Peaks = std::array<std::array<float, kBands>, 2>;  // by channel, then band

    explicit MeterBands(int sampleRate);

    // Raises `peaks` to the highest sample of each band.
    void raise(Peaks& peaks, std::span<const StereoFrame> frames) noexcept;

    void clear() noexcept;

private:
    // Left and right below a crossover, left and right above it.
    using Four = FourFloats;

    class Section {
    public:
        Section(double crossover, int sampleRate);
        Four step(Four in) noexcept;
        void settle() noexcept;
        void clear() noexcept;

    private:
        Four m_b0, m_b1, m_b2, m_a1, m_a2;
        Four m_z1 = {}, m_z2 = {};
    };

    class Crossover {
    public:
        Crossover(double hertz, int sampleRate) : m_sections{Section(hertz, sampleRate), Section(hertz, sampleRate)} {}
        Four split(float left, float right) noexcept;
        void settle() noexcept;
        void clear() noexcept;

    private:
        std::array<Section, 2> m_sections;
    };

    Crossover m_middle, m_low, m_high;
};

}  // namespace qm
