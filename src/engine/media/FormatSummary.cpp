#include "engine/media/FormatSummary.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

extern "C" {
#include <libavutil/channel_layout.h>
}

namespace qm {

namespace {

struct CodecName {
    AVCodecID id;
    const char* name;
};

constexpr std::array kCodecNames = {
    CodecName{AV_CODEC_ID_AAC, "AAC"},
    CodecName{AV_CODEC_ID_ALAC, "ALAC"},
    CodecName{AV_CODEC_ID_MP1, "MPEG Audio Layer 1"},
    CodecName{AV_CODEC_ID_MP2, "MPEG Audio Layer 2"},
    CodecName{AV_CODEC_ID_MP3, "MP3"},
    CodecName{AV_CODEC_ID_AC3, "AC-3"},
    CodecName{AV_CODEC_ID_EAC3, "E-AC-3"},
    CodecName{AV_CODEC_ID_WMAV1, "WMA 1"},
    CodecName{AV_CODEC_ID_WMAV2, "WMA 2"},
    CodecName{AV_CODEC_ID_WMAPRO, "WMA Pro"},
    CodecName{AV_CODEC_ID_WMALOSSLESS, "WMA Lossless"},
    CodecName{AV_CODEC_ID_WMAVOICE, "WMA Voice"},
    CodecName{AV_CODEC_ID_OPUS, "Opus"},
    CodecName{AV_CODEC_ID_VORBIS, "Vorbis"},
    CodecName{AV_CODEC_ID_FLAC, "FLAC"},
    CodecName{AV_CODEC_ID_PCM_MULAW, "µ-law"},
    CodecName{AV_CODEC_ID_PCM_ALAW, "A-law"},
    CodecName{AV_CODEC_ID_ADPCM_IMA_QT, "IMA ADPCM"},
    CodecName{AV_CODEC_ID_ADPCM_IMA_WAV, "IMA ADPCM"},
    CodecName{AV_CODEC_ID_ADPCM_MS, "MS ADPCM"},
    CodecName{AV_CODEC_ID_H264, "H.264"},
    CodecName{AV_CODEC_ID_HEVC, "H.265"},
    CodecName{AV_CODEC_ID_MPEG1VIDEO, "MPEG-1 Video"},
    CodecName{AV_CODEC_ID_MPEG2VIDEO, "MPEG-2 Video"},
    CodecName{AV_CODEC_ID_MPEG4, "MPEG-4 Video"},
    CodecName{AV_CODEC_ID_MSMPEG4V2, "MS MPEG-4 v2"},
    CodecName{AV_CODEC_ID_MSMPEG4V3, "MS MPEG-4 v3"},
    CodecName{AV_CODEC_ID_MJPEG, "Motion JPEG"},
    CodecName{AV_CODEC_ID_PRORES, "ProRes"},
    CodecName{AV_CODEC_ID_DVVIDEO, "DV"},
    CodecName{AV_CODEC_ID_SVQ1, "Sorenson Video"},
    CodecName{AV_CODEC_ID_SVQ3, "Sorenson Video 3"},
    CodecName{AV_CODEC_ID_QTRLE, "Animation"},
    CodecName{AV_CODEC_ID_CINEPAK, "Cinepak"},
    CodecName{AV_CODEC_ID_WMV1, "WMV 7"},
    CodecName{AV_CODEC_ID_WMV2, "WMV 8"},
    CodecName{AV_CODEC_ID_WMV3, "WMV 9"},
    CodecName{AV_CODEC_ID_VC1, "VC-1"},
    CodecName{AV_CODEC_ID_VP9, "VP9"},
    CodecName{AV_CODEC_ID_AV1, "AV1"},
};

// "16-bit PCM", "32-bit float PCM".
std::string pcmName(std::string_view name, int bits) {
    const bool isFloat = name.starts_with("pcm_f");
    return std::to_string(bits) + (isFloat ? "-bit float PCM" : "-bit PCM");
}

std::string codecName(AVCodecID id) {
    const auto known =
        std::find_if(kCodecNames.begin(), kCodecNames.end(), [&](const CodecName& codec) { return codec.id == id; });
    if (known != kCodecNames.end()) {
        return known->name;
    }
    std::string name = avcodec_get_name(id);
    if (const int bits = av_get_bits_per_sample(id); name.starts_with("pcm_") && bits > 0) {
        return pcmName(name, bits);
    }
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::toupper(c); });
    return name;
}

std::string channelsName(const AVChannelLayout& layout) {
    switch (layout.nb_channels) {
        case 1:
            return "Mono";
        case 2:
            return "Stereo";
        default:
            break;
    }
    const bool named = layout.order == AV_CHANNEL_ORDER_NATIVE;
    if (named && (layout.u.mask == AV_CH_LAYOUT_5POINT1 || layout.u.mask == AV_CH_LAYOUT_5POINT1_BACK)) {
        return "5.1 Surround";
    }
    if (named && layout.u.mask == AV_CH_LAYOUT_7POINT1) {
        return "7.1 Surround";
    }
    return std::to_string(layout.nb_channels) + " Channels";
}

std::string kilohertz(int rate) {
    const std::string thousandths = std::to_string(1000 + rate % 1000).substr(1);
    return std::to_string(rate / 1000) + "." + thousandths + " kHz";
}

}  // namespace

std::optional<std::string> formatSummary(const AVCodecParameters& track) {
    if (track.codec_id == AV_CODEC_ID_NONE) {
        return std::nullopt;
    }
    std::string summary = codecName(track.codec_id);
    if (track.codec_type == AVMEDIA_TYPE_AUDIO) {
        if (track.ch_layout.nb_channels > 0) {
            summary += ", " + channelsName(track.ch_layout);
        }
        if (track.sample_rate > 0) {
            summary += ", " + kilohertz(track.sample_rate);
        }
        return summary;
    }
    if (track.codec_type == AVMEDIA_TYPE_VIDEO) {
        if (track.width > 0 && track.height > 0) {
            summary += ", " + std::to_string(track.width) + " x " + std::to_string(track.height);
        }
        return summary;
    }
    return std::nullopt;
}

}  // namespace qm
