#include <algorithm>
#include <array>

#include "engine/media/ChunkWalk.h"
#include "engine/media/SoundData.h"
#include "engine/media/TrackPlan.h"

namespace qm {

namespace {

struct Form {
    int tag;
    int bits;
    AVCodecID codec;
};

constexpr std::array kForms = {
    Form{1, 8, AV_CODEC_ID_PCM_U8},     Form{1, 16, AV_CODEC_ID_PCM_S16BE}, Form{1, 24, AV_CODEC_ID_PCM_S24BE},
    Form{1, 32, AV_CODEC_ID_PCM_S32BE}, Form{3, 32, AV_CODEC_ID_PCM_F32BE}, Form{3, 64, AV_CODEC_ID_PCM_F64BE},
    Form{6, 8, AV_CODEC_ID_PCM_ALAW},   Form{7, 8, AV_CODEC_ID_PCM_MULAW},
};
constexpr int kExtensible = 0xfffe;  // the form's tag stands further on
constexpr int kPlainBytes = 16;      // of the format chunk
constexpr int kExtendedBytes = 28;

struct Format {
    AVCodecID codec;
    int channels;
    int sampleRate;
};

std::optional<Format> readFormat(ByteWindow& bytes, const Chunk& chunk) {
    const std::uint8_t* p = bytes.at(chunk.content, kPlainBytes);
    if (!p || chunk.bytes < kPlainBytes) {
        return std::nullopt;
    }
    int tag = bigEndian16(p);
    const Format format{AV_CODEC_ID_NONE, bigEndian16(p + 2),
                        static_cast<int>(std::min<std::uint32_t>(bigEndian32(p + 4), kHighestRate + 1))};
    const int bits = bigEndian16(p + 14);
    if (tag == kExtensible) {
        p = chunk.bytes >= kExtendedBytes ? bytes.at(chunk.content, kExtendedBytes) : nullptr;
        tag = p ? static_cast<int>(bigEndian16(p + 26)) : 0;
    }
    const auto form = std::find_if(kForms.begin(), kForms.end(),
                                   [&](const Form& known) { return known.tag == tag && known.bits == bits; });
    if (form == kForms.end() || !isPlausible(format.sampleRate, format.channels)) {
        return std::nullopt;
    }
    return Format{form->codec, format.channels, format.sampleRate};
}

std::optional<Format> findFormat(const FileBytes& file) {
    ByteWindow bytes(file);
    ChunkWalk walk(bytes, ChunkWalk::Kind::Iff, 12, file.size());
    while (const auto chunk = walk.next()) {
        if (chunk->isNamed("fmt ")) {
            return readFormat(bytes, *chunk);
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<SoundTrack> planBigEndianWave(std::shared_ptr<const FileBytes> file) {
    const auto format = findFormat(*file);
    const auto data = findSoundData(*file, MediaKind::BigEndianWave, 0);
    if (!format || !data || data->bytes <= 0) {
        return std::nullopt;
    }
    SoundTrack track;
    track.parameters.reset(avcodec_parameters_alloc());
    track.parameters->codec_type = AVMEDIA_TYPE_AUDIO;
    track.parameters->codec_id = format->codec;
    track.parameters->sample_rate = track.sampleRate = format->sampleRate;
    track.channels = format->channels;
    av_channel_layout_default(&track.parameters->ch_layout, format->channels);
    track.timeBase = {1, format->sampleRate};
    track.traits = codecTraits(*track.parameters, format->sampleRate, 1);
    const int frameBytes = av_get_bits_per_sample(format->codec) / 8 * format->channels;
    track.index = PacketIndex::ofSamples(data->position, data->bytes, static_cast<std::uint32_t>(frameBytes));
    track.kept = KeptRanges(track.index.frames());
    track.source = std::make_unique<FilePacketSource>(std::move(file));
    return track;
}

}  // namespace qm
