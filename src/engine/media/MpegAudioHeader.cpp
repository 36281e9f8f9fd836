#include "engine/media/MpegAudioHeader.h"

namespace qm {

namespace {

// kbit/s by [low rate][layer - 1][index]
constexpr int kBitRates[2][3][15] = {{{0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
                                      {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
                                      {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}},
                                     {{0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
                                      {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
                                      {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}}};
constexpr int kSampleRates[3] = {44100, 48000, 32000};

}  // namespace

std::optional<MpegAudioHeader> MpegAudioHeader::parse(std::uint32_t word) {
    const std::uint32_t version = word >> 19 & 3;  // 0: 2.5, 2: 2, 3: 1
    const std::uint32_t layerBits = word >> 17 & 3;
    const std::uint32_t rateIndex = word >> 12 & 15;
    const std::uint32_t sampleIndex = word >> 10 & 3;
    if (word >> 21 != 0x7ff || version == 1 || layerBits == 0 || rateIndex == 0 || rateIndex == 15 ||
        sampleIndex == 3) {
        return std::nullopt;
    }
    MpegAudioHeader header;
    header.layer = 4 - static_cast<int>(layerBits);
    header.lowRate = version != 3;
    header.sampleRate = kSampleRates[sampleIndex] >> ((header.lowRate ? 1 : 0) + (version == 0 ? 1 : 0));
    header.channels = (word >> 6 & 3) == 3 ? 1 : 2;
    const int bits = kBitRates[header.lowRate ? 1 : 0][header.layer - 1][rateIndex] * 1000;
    const int padding = word >> 9 & 1;
    switch (header.layer) {
        case 1:
            header.bytes = (bits * 12 / header.sampleRate + padding) * 4;
            header.frames = 384;
            break;
        case 2:
            header.bytes = bits * 144 / header.sampleRate + padding;
            header.frames = 1152;
            break;
        default:
            header.bytes = bits * (header.lowRate ? 72 : 144) / header.sampleRate + padding;
            header.frames = header.lowRate ? 576 : 1152;
            break;
    }
    return header;
}

}  // namespace qm
