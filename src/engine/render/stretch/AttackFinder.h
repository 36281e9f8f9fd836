// Finds the attacks in a stretch of sound, and the length of window that gathers its energy best, band by band. Holds
// the working memory for one length of sound.
//
// An attack is a rise of the logarithmic band energies over everything that lay 10 to 36 ms before, in the neighbouring
// bands, too: so that vibrato, glides and the pulses of a low note are none. It lies where the energies of the 3 ms
// after it exceed those of the 3 ms before it most.
#pragma once

#include <array>
#include <complex>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "engine/render/stretch/AttackMap.h"
#include "engine/render/stretch/RealFft.h"
#include "engine/sound/StereoFrame.h"

namespace qm {

class AttackFinder {
public:
    AttackFinder(int sampleRate, std::int64_t blockFrames);

    std::int64_t margin() const { return m_margin; }  // frames needed on either side of a block
    std::int64_t grid() const { return m_grid; }      // frames for which one choice of window holds

    // `sound` holds margin, block and margin; the block begins at `firstFrame`.
    void find(std::span<const StereoFrame> sound, std::int64_t firstFrame, AttackMap::Block& into);

private:
    static constexpr int kMelBands = 32;
    static constexpr int kEnergyBands = 4;
    using Levels = std::array<float, kMelBands>;

    void spread(std::span<const StereoFrame> sound);
    void spectrumAt(std::size_t which, std::int64_t centre);
    void findLevels();
    void findRises();
    float usualRise(std::size_t frame);
    void findEnergies();
    float jumpAt(std::int64_t at, int& steepBands) const;
    struct Jump {
        std::int64_t place = 0;
        float most = 0;
        int steepBands = 0;
    };
    Jump steepest(std::int64_t from, std::int64_t to) const;
    void findAttacks(std::int64_t firstFrame, AttackMap::Block& into);
    struct Sum {
        double squares = 0, powers = 0;
    };
    void gather(std::size_t which);
    void score(const std::vector<Sum>& sums, std::int64_t hop, std::vector<float>& into) const;
    void chooseWindows(AttackMap::Block& into);

    const int m_rate;
    const int m_factor;  // how much longer windows are than at 44.1 kHz
    const std::int64_t m_block;
    const std::int64_t m_margin;
    const std::int64_t m_grid;
    const std::int64_t m_hop;
    const std::int64_t m_reach;                          // of the longest window
    std::vector<std::unique_ptr<RealFft>> m_transforms;  // the longest first, each half of the one before
    std::vector<AlignedVector<float>> m_windows;         // of the same lengths
    std::array<std::vector<float>, 2> m_planes;  // the sound, with the silence around it that windows reach into
    AlignedVector<float> m_sound;
    AlignedVector<std::complex<float>> m_spectrum;
    std::vector<float> m_power;
    std::array<std::vector<float>, kMelBands> m_melWeights;
    std::array<std::size_t, kMelBands> m_melFirst{};
    std::vector<Levels> m_levels, m_highest;
    std::vector<float> m_rises, m_sorted;
    std::array<std::vector<double>, kEnergyBands> m_energies;  // running sums
    std::array<double, kEnergyBands> m_floor{};
    std::array<std::vector<Sum>, AttackMap::kBands> m_sums;                     // of the frames' powers
    std::array<std::array<std::vector<float>, 3>, AttackMap::kBands> m_scores;  // of each length, along the grid
    std::vector<std::uint8_t> m_picks;
};

}  // namespace qm
