// Stands in for the sound of a film without any, so that its time goes on. Decoder thread only.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "engine/media/SoundReader.h"

namespace qm {

class SilentReader : public SoundReader {
public:
    explicit SilentReader(double seconds) : m_length(std::llround(seconds * kRate)) {}
    int sampleRate() const override { return kRate; }
    std::int64_t length() const override { return m_length; }
    int channels() const override { return 0; }
    bool read(std::int64_t, float* stereo, std::size_t count) override {
        std::fill_n(stereo, 2 * count, 0.0f);
        return true;
    }

private:
    static constexpr int kRate = 48000;

    std::int64_t m_length;
};

inline std::unique_ptr<SoundReader> soundOrSilence(std::unique_ptr<SoundReader> sound, double seconds) {
    if (sound) return sound;
    return std::make_unique<SilentReader>(seconds);
}

}  // namespace qm
