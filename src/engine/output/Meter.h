// The level meter: what goes by on its way to the device, as average power, held peak and four bands. The device's
// callback feeds it and publishes; it never locks, allocates, logs or waits, and does nothing while metering is off.
// Levels describe the last tenth of a second and are renewed four times in it.
//
// Power and peaks are in dBFS, relative to a sample of 1 (a sine of full scale has an average power of -3), with a
// floor of -96. A band's level is its highest sample, linear, 0 to 1: a lone sine of amplitude 0.5 inside a band gives
// 0.5. The bands meet where music divides itself, two octaves apart: the ground of bass and drums up to 150 Hz; the low
// notes of voices, guitars and pianos up to 600; melodies up to 2500; overtones, consonants and cymbals above.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

#include "engine/output/MeterBands.h"
#include "engine/realtime/SeqLocked.h"
#include "engine/sound/StereoFrame.h"

namespace qm {

class Meter {
public:
    static constexpr std::size_t kChannels = 2;
    static constexpr std::size_t kBands = MeterBands::kBands;
    static constexpr float kFloor = -96;  // dBFS

    struct Levels {
        std::array<float, kChannels> averagePower{kFloor, kFloor};    // dBFS
        std::array<float, kChannels> peakHold{kFloor, kFloor};        // dBFS
        std::array<std::array<float, kBands>, kChannels> bands = {};  // 0 to 1, lowest band first
    };

    explicit Meter(int sampleRate);

    // Any thread. Power and peaks, and bands, are switched on separately; both are off at first.
    void enableVolume(bool enabled) { m_volumeWanted.store(enabled, std::memory_order_relaxed); }
    void enableBands(bool enabled) { m_bandsWanted.store(enabled, std::memory_order_relaxed); }
    bool volumeEnabled() const { return m_volumeWanted.load(std::memory_order_relaxed); }
    bool bandsEnabled() const { return m_bandsWanted.load(std::memory_order_relaxed); }

    // Any thread but the callback's.
    Levels levels() const;

    // The callback: each run of frames before gain and balance, if there is sound in it, and then as the device gets
    // it.
    void takeStereoMix(std::span<const StereoFrame> frames) noexcept;
    void takeDeviceMix(std::span<const StereoFrame> frames) noexcept;

    // In the callback's place while none runs: everything falls to the floor.
    void fallSilent() noexcept;

private:
    static constexpr std::size_t kSlices = 4;

    // A quarter of the time that the levels describe.
    struct Slice {
        std::array<double, kChannels> power = {};  // sum of squares
        std::array<float, kChannels> peak = {};
        std::array<std::array<float, kBands>, kChannels> bands = {};
    };

    bool isWanted() noexcept;
    void closeSlice() noexcept;
    void holdPeaks(const Slice& slice) noexcept;
    void publish() noexcept;

    const std::size_t m_sliceFrames;
    const unsigned m_holdSlices;
    std::atomic<bool> m_volumeWanted{false};
    std::atomic<bool> m_bandsWanted{false};
    SeqLocked<Levels> m_published;

    // Callback only.
    MeterBands m_split;
    std::array<Slice, kSlices> m_slices = {};
    std::size_t m_current = 0;      // the slice being filled
    std::size_t m_frames = 0;       // in it
    bool m_stereoMixTaken = false;  // since the last run of the device mix
    bool m_silent = true;           // nothing is left of any sound
    std::array<float, kChannels> m_peakHeld = {};
    std::array<unsigned, kChannels> m_heldFor = {};  // slices
};

}  // namespace qm
