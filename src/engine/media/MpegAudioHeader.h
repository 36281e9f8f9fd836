// The four bytes that begin every frame of MPEG audio (layers I to III). Pure.
#pragma once

#include <cstdint>
#include <optional>

namespace qm {

struct MpegAudioHeader {
    int layer = 3;
    bool lowRate = false;  // MPEG 2 or 2.5: half the sample rates, half the frames in layer III
    int sampleRate = 0;
    int channels = 2;
    int bytes = 0;   // of the whole frame
    int frames = 0;  // sound frames it decodes to

    // None if these are not a header, or one of the free format, whose frames cannot be measured.
    static std::optional<MpegAudioHeader> parse(std::uint32_t word);
};

// The bits that stay the same through a stream: sync, version, layer, sample rate.
constexpr std::uint32_t kMpegStreamMask = 0xfffe0c00;

}  // namespace qm
