// Sound whose samples say where they came from: the left channel counts frames, the right one carries a tone.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <numbers>

#include "engine/media/SoundReader.h"
#include "engine/sound/StereoFrame.h"

namespace qm::test {

// Frame n as a sample that survives floats exactly; the count starts over after 2^20 frames.
constexpr std::int64_t kCodeWrap = std::int64_t{1} << 20;
inline float codeOf(std::int64_t frame) {
    return static_cast<float>((frame % kCodeWrap) + 1) / float(kCodeWrap);
}
inline std::int64_t frameOf(float code) {
    return std::llround(code * float(kCodeWrap)) - 1;
}

inline StereoFrame codedFrame(std::int64_t frame) {
    return {codeOf(frame), -codeOf(frame)};
}

inline StereoFrame toneFrame(std::int64_t frame, double hertz, int sampleRate = 44100) {
    const auto s = static_cast<float>(0.4 * std::sin(2 * std::numbers::pi * hertz * double(frame) / sampleRate));
    return {s, s};
}

// A sound that is computed, not stored: every frame a function of its number.
class ComputedSound : public SoundReader {
public:
    ComputedSound(std::int64_t length, std::function<StereoFrame(std::int64_t)> frameAt, int sampleRate = 44100)
        : m_length(length), m_frameAt(std::move(frameAt)), m_sampleRate(sampleRate) {}

    int sampleRate() const override { return m_sampleRate; }
    std::int64_t length() const override { return m_length; }
    int channels() const override { return 2; }
    bool read(std::int64_t first, float* stereo, std::size_t count) override {
        for (std::size_t i = 0; i < count; ++i) {
            const std::int64_t n = first + static_cast<std::int64_t>(i);
            const StereoFrame f = n >= 0 && n < m_length ? m_frameAt(n) : StereoFrame{};
            stereo[2 * i] = f.left;
            stereo[2 * i + 1] = f.right;
        }
        return true;
    }

private:
    std::int64_t m_length;
    std::function<StereoFrame(std::int64_t)> m_frameAt;
    int m_sampleRate;
};

}  // namespace qm::test
