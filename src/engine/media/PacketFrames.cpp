#include "engine/media/PacketFrames.h"

extern "C" {
#include <libavcodec/vorbis_parser.h>
}

#include <algorithm>

#include "engine/media/CodecTraits.h"
#include "engine/media/FlacFrame.h"

namespace qm {

namespace {

// RFC 6716, section 3.1: the first byte says how long a frame is and, with the second, how many there are. At 48 kHz.
class OpusFrames final : public PacketFrames {
public:
    int next(std::span<const std::uint8_t> head, std::int64_t) override {
        if (head.empty()) return 0;
        const int config = head[0] >> 3;
        const int code = head[0] & 3;
        const int count = code == 0 ? 1 : code < 3 ? 2 : head.size() > 1 ? head[1] & 0x3f : 0;
        constexpr int kLongestPacket = 5760;
        const int frames = count * frameSize(config);
        return frames <= kLongestPacket ? frames : 0;
    }

private:
    static int frameSize(int config) {
        if (config >= 16) return 120 << (config & 3);
        if (config >= 12) return 480 << (config & 1);
        return (config & 3) == 3 ? 2880 : 480 << (config & 3);
    }
};

// Half of the window of a packet and half of the one before it overlap; nothing comes of the first packet alone.
class VorbisFrames final : public PacketFrames {
public:
    explicit VorbisFrames(const AVCodecParameters& parameters)
        : m_parser(av_vorbis_parse_init(parameters.extradata, parameters.extradata_size)) {}
    ~VorbisFrames() override { av_vorbis_parse_free(&m_parser); }
    VorbisFrames(const VorbisFrames&) = delete;
    VorbisFrames& operator=(const VorbisFrames&) = delete;

    bool isValid() const { return m_parser != nullptr; }

    int next(std::span<const std::uint8_t> head, std::int64_t) override {
        const int frames = av_vorbis_parse_frame(m_parser, head.data(), static_cast<int>(head.size()));
        if (frames <= 0) return 0;
        const bool isFirst = !m_hasBegun;
        m_hasBegun = true;
        return isFirst ? 0 : frames;
    }

private:
    AVVorbisParseContext* m_parser;
    bool m_hasBegun = false;
};

class FlacFrames final : public PacketFrames {
public:
    explicit FlacFrames(const FlacStreamInfo& stream) : m_stream(stream) {}

    int next(std::span<const std::uint8_t> head, std::int64_t) override {
        const auto header = FlacFrameHeader::parse(head.data(), head.size(), m_stream);
        return header ? header->blockSize : 0;
    }

private:
    FlacStreamInfo m_stream;
};

class SampleFrames final : public PacketFrames {
public:
    explicit SampleFrames(const AVCodecParameters& parameters) : m_parameters(copyParameters(parameters)) {}

    int next(std::span<const std::uint8_t>, std::int64_t bytes) override {
        return std::max(av_get_audio_frame_duration2(m_parameters.get(), static_cast<int>(bytes)), 0);
    }

private:
    ParametersPtr m_parameters;
};

}  // namespace

std::unique_ptr<PacketFrames> PacketFrames::create(const AVCodecParameters& parameters) {
    if (isPcm(parameters.codec_id)) return std::make_unique<SampleFrames>(parameters);
    switch (parameters.codec_id) {
        case AV_CODEC_ID_OPUS:
            return std::make_unique<OpusFrames>();
        case AV_CODEC_ID_VORBIS: {
            auto frames = std::make_unique<VorbisFrames>(parameters);
            return frames->isValid() ? std::move(frames) : nullptr;
        }
        case AV_CODEC_ID_FLAC: {
            const bool isWhole = parameters.extradata_size >= static_cast<int>(FlacStreamInfo::kBytes);
            const auto stream = isWhole ? FlacStreamInfo::parse(parameters.extradata) : std::nullopt;
            return stream ? std::make_unique<FlacFrames>(*stream) : nullptr;
        }
        default:
            return nullptr;
    }
}

}  // namespace qm
