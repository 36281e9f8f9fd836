#include "engine/media/CodecTraits.h"

#include <algorithm>

namespace qm {

namespace {

constexpr int kRunningSumFrames = 1 << 18;
constexpr int kFromTheStart = 1 << 30;  // nothing less makes a running sum whole

}  // namespace

bool isPcm(AVCodecID codec) {
    return codec >= AV_CODEC_ID_PCM_S16LE && codec < AV_CODEC_ID_ADPCM_IMA_QT;
}

bool isBlocks(AVCodecID codec) {
    return codec == AV_CODEC_ID_ADPCM_IMA_WAV || codec == AV_CODEC_ID_ADPCM_MS || codec == AV_CODEC_ID_ADPCM_IMA_QT;
}

CodecTraits codecTraits(const AVCodecParameters& parameters, int sampleRate, int framesPerPacket) {
    using Counting = CodecTraits::Counting;
    const AVCodecID codec = parameters.codec_id;
    if (isPcm(codec)) {
        return {.counting = Counting::BySize};
    }
    const auto packetsOf = [&](int frames) { return std::max(frames / std::max(framesPerPacket, 1), 1); };
    if (codec == AV_CODEC_ID_ADPCM_IMA_QT) {
        return {.counting = Counting::BySize, .restartPackets = packetsOf(kRunningSumFrames)};
    }
    if (isBlocks(codec)) {
        return {.counting = Counting::BySize, .lastMayBeShort = true};
    }
    if (codec >= AV_CODEC_ID_ADPCM_IMA_QT && codec < AV_CODEC_ID_AMR_NB && codec != AV_CODEC_ID_ADPCM_G722) {
        return {.counting = Counting::ByDecoding, .yieldBelongsToEnd = true, .prerollFrames = kFromTheStart};
    }
    switch (codec) {
        case AV_CODEC_ID_ALAC:
        case AV_CODEC_ID_FLAC:
            return {.lastMayBeShort = true};
        case AV_CODEC_ID_MP1:
        case AV_CODEC_ID_MP2:
            return {.prerollFrames = 3 * framesPerPacket, .restartPackets = 64};
        case AV_CODEC_ID_MP3:
            return {.prerollFrames = 3 * framesPerPacket, .reservoirBytes = 511};
        case AV_CODEC_ID_AAC:
            // With band replication the decoder first has to meet a header, which comes about twice a second.
            return {.prerollFrames = framesPerPacket > 1024 ? sampleRate : 4 * framesPerPacket,
                    .restartPackets = framesPerPacket > 1024 ? 128 : 32};
        case AV_CODEC_ID_AC3:
        case AV_CODEC_ID_EAC3:
            return {.prerollFrames = 4 * framesPerPacket, .restartPackets = 32};
        case AV_CODEC_ID_VORBIS:  // windows of the packet before overlap, and nothing else is carried on
            return {.counting = Counting::ByDecoding, .yieldBelongsToEnd = true, .prerollFrames = 8192};
        case AV_CODEC_ID_OPUS:
            return {.counting = Counting::ByDecoding,
                    .yieldBelongsToEnd = true,
                    .prerollFrames = sampleRate,
                    .restartPackets = packetsOf(8 * sampleRate)};
        case AV_CODEC_ID_WAVPACK:
            return {.lastMayBeShort = true};
        case AV_CODEC_ID_GSM:
        case AV_CODEC_ID_GSM_MS:
        case AV_CODEC_ID_AMR_NB:
        case AV_CODEC_ID_AMR_WB:
            return {.prerollFrames = sampleRate / 2, .restartPackets = 256};
        default:
            return {.counting = Counting::ByDecoding,
                    .yieldBelongsToEnd = true,
                    .prerollFrames = sampleRate / 2,
                    .restartPackets = packetsOf(4 * sampleRate)};
    }
}

}  // namespace qm
