// Bass and treble: a low shelf at 200 Hz and a high shelf at 3 kHz, up to 12 dB either way, on a stream of frames.
// At 128 and 128 it is not there: frames pass bit for bit. Render thread only; never allocates.
//
// Filters: shelving biquads of R. Bristow-Johnson, "Cookbook formulae for audio EQ biquad filter coefficients",
// shelf slope 1.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "engine/sound/StereoFrame.h"

namespace qm {

// Settings of 0 (least) through 128 (neutral) to 256 (most).
struct ToneSettings {
    std::int16_t bass = 128;
    std::int16_t treble = 128;

    bool neutral() const { return bass == 128 && treble == 128; }
    friend bool operator==(const ToneSettings&, const ToneSettings&) = default;
};

class Tone {
public:
    // Frames after which a stretch of sound that was cut into no longer shows where the cut was.
    static constexpr std::int64_t kSettleFrames = 2048;

    // Values outside 0..256 are held there. Forgets the sound so far.
    void set(const ToneSettings& settings, int sampleRate);
    bool neutral() const { return m_neutral; }
    void reset();
    void process(std::span<StereoFrame> frames);

private:
    struct Biquad {
        double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
    };
    struct State {
        double s1 = 0, s2 = 0;
        double next(const Biquad& f, double x);
    };
    static Biquad shelf(bool high, double hertz, double decibels, int sampleRate);

    bool m_neutral = true;
    Biquad m_low, m_high;
    std::array<State, 2> m_lowState, m_highState;  // left, right
};

}  // namespace qm
