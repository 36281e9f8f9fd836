#include <cinttypes>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "engine/media/CutList.h"
#include "engine/media/SoundData.h"
#include "engine/media/TrackPlan.h"
#include "engine/media/TrackReader.h"

namespace qm {

namespace {

constexpr std::int64_t kLargestPacket = 16 << 20;
constexpr int kLongestOvershoot = 3;  // packets by which a codec may decode past the track's end

// The encoder's own note of what it added, kept beside the title: " 00000000 PRIMING REMAINDER LENGTH ...", in hex.
std::optional<std::int64_t> notedLength(AVFormatContext& context, std::int64_t decodedFrames, std::int64_t skipped) {
    const AVDictionaryEntry* note = av_dict_get(context.metadata, "iTunSMPB", nullptr, 0);
    std::uint32_t priming = 0;
    std::uint32_t remainder = 0;
    std::uint64_t length = 0;
    if (!note ||
        std::sscanf(note->value, " %*x %" SCNx32 " %" SCNx32 " %" SCNx64, &priming, &remainder, &length) != 3) {
        return std::nullopt;
    }
    const bool fits = priming == static_cast<std::uint64_t>(skipped) && length > 0 &&
                      length <= static_cast<std::uint64_t>(decodedFrames) &&
                      priming + remainder + length == static_cast<std::uint64_t>(decodedFrames);
    return fits ? std::optional(static_cast<std::int64_t>(length)) : std::nullopt;
}

// The heard frames that the container states. Edit lists count in the movie's coarse units; where the duration of the
// samples themselves says the same but for their rounding, it is the exact one.
std::optional<std::int64_t> statedLength(const AVStream& stream, const StreamStart& start, const MovieFacts& facts) {
    if (stream.duration <= 0) {
        return std::nullopt;
    }
    const AVRational frames{1, start.sampleRate};
    const std::int64_t edited = av_rescale_q_rnd(stream.duration, stream.time_base, frames, AV_ROUND_UP);
    for (const MovieTrackFacts& track : facts.tracks) {
        if (static_cast<int>(track.id) == stream.id && track.mediaScale > 0 && track.mediaDuration > 0 &&
            facts.movieScale > 0) {
            const AVRational unit{1, static_cast<int>(std::min<std::uint32_t>(track.mediaScale, INT_MAX))};
            const std::int64_t exact =
                av_rescale_q_rnd(track.mediaDuration, unit, frames, AV_ROUND_UP) - start.skippedFrames;
            const std::int64_t rounding = start.sampleRate / static_cast<std::int64_t>(facts.movieScale) + 1;
            return std::abs(exact - edited) <= rounding ? exact : edited;
        }
    }
    return edited;
}

void cutOvershoot(SoundTrack& track, AVFormatContext& context, const AVStream& stream, const StreamStart& start,
                  const MovieFacts& facts) {
    auto length = notedLength(context, track.index.frames(), start.skippedFrames);
    if (!length) {
        length = statedLength(stream, start, facts);
    }
    const std::int64_t overshoot = length ? track.kept.length() - *length : 0;
    if (overshoot > 0 && overshoot <= std::int64_t{kLongestOvershoot} * start.framesPerPacket) {
        track.kept.truncate(*length);
    }
}

// Appends the packets that the file really holds to the track; a cut file loses the last ones.
void readTable(SoundTrack& track, AVStream& stream, FileExtent data, bool relative, const StreamStart& start) {
    CutList cuts;
    const bool bySize = track.traits.counting == CodecTraits::Counting::BySize;
    const std::int64_t base = relative ? data.position : 0;
    const std::int64_t end = data.position + data.bytes;
    const int entries = avformat_index_get_entries_count(&stream);
    for (int i = 0; i < entries; ++i) {
        const AVIndexEntry entry = *avformat_index_get_entry(&stream, i);
        std::int64_t size = entry.size;
        if (relative) {
            size = (i + 1 < entries ? base + avformat_index_get_entry(&stream, i + 1)->pos : end) - base - entry.pos;
        }
        if (size <= 0 || size > kLargestPacket || base + entry.pos < 0 || base + entry.pos + size > end) {
            if (i == 0) {
                return;
            }
            continue;
        }
        int frames = track.index.packets() < start.mutePackets ? 0 : start.framesPerPacket;
        if (bySize) {
            frames = av_get_audio_frame_duration2(track.parameters.get(), static_cast<int>(size));
        }
        cuts.add(track.index.frames(), frames, {.whole = (entry.flags & AVINDEX_DISCARD_FRAME) != 0});
        track.index.append(base + entry.pos, static_cast<std::uint32_t>(size), frames);
    }
    track.kept = cuts.kept(track.index.frames());
}

bool isTabled(MediaKind kind, AVCodecID codec) {
    if (kind == MediaKind::Caf) {
        return codec == AV_CODEC_ID_ALAC || codec == AV_CODEC_ID_AAC;
    }
    // MPEG audio and the like may lie across the table's entries: their packets are found by a pass.
    return kind == MediaKind::MovieFile && (codec == AV_CODEC_ID_ALAC || codec == AV_CODEC_ID_AAC ||
                                            codec == AV_CODEC_ID_FLAC || isPcm(codec) || isBlocks(codec));
}

// The last packet of a lossless codec is shorter than the others, and only decoding it tells by how much.
bool settleLastPacket(SoundTrack& track) {
    const std::int64_t before = track.index.frames();
    auto reader = TrackReader::create(std::move(track));
    if (!reader) {
        return false;
    }
    const int frames = reader->measureLastPacket();
    track = reader->takeTrack();
    track.index.shortenLast(frames);
    track.kept.cut(track.index.frames(), before);
    return true;
}

}  // namespace

std::optional<SoundTrack> planFromTable(std::shared_ptr<const FileBytes> file, MediaKind kind, Demuxer& demuxer,
                                        int streamNumber, const StreamStart& start, const MovieFacts& facts) {
    AVStream& stream = demuxer.stream(streamNumber);
    const bool isCaf = kind == MediaKind::Caf;
    const auto data = isCaf ? findSoundData(*file, kind, start.firstPosition) : FileExtent{0, file->size()};
    if (!isTabled(kind, stream.codecpar->codec_id) || !data) {
        return std::nullopt;
    }
    SoundTrack track = beginTrack(stream, start);
    readTable(track, stream, *data, isCaf, start);
    if (track.index.frames() == 0 || track.index.packet(0).position != start.firstPosition) {
        return std::nullopt;
    }
    track.source = std::make_unique<FilePacketSource>(file);
    if (track.traits.lastMayBeShort && !settleLastPacket(track)) {
        return std::nullopt;
    }
    if (isCaf) {
        if (const auto frames = readCafFrames(*file)) {
            track.kept.cut(0, frames->priming);
            track.kept.truncate(frames->valid);
        }
    } else {
        track.kept.cut(0, start.skippedFrames);
        cutOvershoot(track, demuxer.context(), stream, start, facts);
    }
    return track;
}

}  // namespace qm
