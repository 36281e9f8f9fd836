#include <algorithm>

#include "engine/media/SoundData.h"
#include "engine/media/TrackPlan.h"

namespace qm {

namespace {

struct Blocks {
    std::uint32_t bytes = 0;
    std::int32_t frames = 0;
};

Blocks blocksOf(AVCodecParameters& parameters, int channels) {
    if (isPcm(parameters.codec_id)) {
        const int bits = av_get_exact_bits_per_sample(parameters.codec_id) * channels;
        return bits % 8 == 0 ? Blocks{static_cast<std::uint32_t>(bits / 8), 1} : Blocks{};
    }
    if (isBlocks(parameters.codec_id) && parameters.block_align > 0) {
        return {static_cast<std::uint32_t>(parameters.block_align),
                av_get_audio_frame_duration2(&parameters, parameters.block_align)};
    }
    return {};
}

}  // namespace

std::optional<SoundTrack> planUniform(std::shared_ptr<const FileBytes> file, MediaKind kind, const AVStream& stream,
                                      const StreamStart& start) {
    SoundTrack track = beginTrack(stream, start);
    const Blocks block = blocksOf(*track.parameters, start.channels);
    const auto data = findSoundData(*file, kind, start.firstPosition);
    if (block.bytes == 0 || block.frames <= 0 || !data || data->position != start.firstPosition || data->bytes <= 0) {
        return std::nullopt;
    }
    if (block.frames == 1) {
        track.index = PacketIndex::ofSamples(data->position, data->bytes, block.bytes);
    } else {
        const int rest = static_cast<int>(data->bytes % block.bytes);
        track.index = PacketIndex::uniform(data->position, data->bytes, block.bytes, block.frames,
                                           rest > 0 ? av_get_audio_frame_duration2(track.parameters.get(), rest) : 0);
    }
    track.kept = KeptRanges(track.index.frames());
    track.source = std::make_unique<FilePacketSource>(std::move(file));
    return track;
}

}  // namespace qm
