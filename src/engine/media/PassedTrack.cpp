#include <algorithm>
#include <vector>

#include "engine/media/AudioDecoder.h"
#include "engine/media/CutList.h"
#include "engine/media/PacketFrames.h"
#include "engine/media/SkipRequest.h"
#include "engine/media/TrackPlan.h"

namespace qm {

namespace {

// Counts the frames of one packet after the other.
class FrameCounter {
public:
    FrameCounter(const AVStream& stream, const StreamStart& start, const CodecTraits& traits)
        : m_parameters(*stream.codecpar),
          m_perPacket(start.framesPerPacket),
          m_mute(start.mutePackets),
          m_counting(traits.counting) {
        if (m_parameters.codec_id == AV_CODEC_ID_FLAC) m_told = PacketFrames::create(m_parameters);
        if (m_counting == CodecTraits::Counting::ByDecoding) {
            m_decoder = AudioDecoder::create(m_parameters, stream.time_base);
        }
    }

    int count(const AVPacket& packet) {
        if (m_told) {
            const auto bytes = static_cast<std::size_t>(std::max(packet.size, 0));
            return m_told->next({packet.data, std::min(bytes, PacketFrames::kHeadBytes)}, packet.size);
        }
        switch (m_counting) {
            case CodecTraits::Counting::BySize:
                return std::max(av_get_audio_frame_duration2(&m_parameters, packet.size), 0);
            case CodecTraits::Counting::Constant:
                return m_mute-- > 0 ? 0 : m_perPacket;
            case CodecTraits::Counting::ByDecoding:
                break;
        }
        m_sound.clear();
        return m_decoder ? m_decoder->decode(packet, m_sound) : 0;
    }

    int drain() {
        m_sound.clear();
        return m_decoder ? m_decoder->drain(m_sound) : 0;
    }

private:
    AVCodecParameters& m_parameters;
    int m_perPacket;
    int m_mute;  // packets that still decode to nothing
    CodecTraits::Counting m_counting;
    std::unique_ptr<PacketFrames> m_told;  // where every packet says its own length
    std::unique_ptr<AudioDecoder> m_decoder;
    std::vector<float> m_sound;
};

bool liesInFile(const FileBytes& file, const AVPacket& packet, std::vector<std::uint8_t>& buffer) {
    if (packet.pos < 0 || packet.size <= 0) {
        return false;
    }
    const auto size = static_cast<std::size_t>(packet.size);
    buffer.resize(size);
    return file.readAt(packet.pos, buffer.data(), size) == size &&
           std::equal(buffer.begin(), buffer.end(), packet.data);
}

// Reads every packet and counts it; where the packets lie in the file in one piece, they are read from there later.
void passPackets(SoundTrack& track, Demuxer& demuxer, int stream, const StreamStart& start,
                 std::shared_ptr<const FileBytes> file, MediaKind kind) {
    FrameCounter counter(demuxer.stream(stream), start, track.traits);
    CutList cuts;
    cuts.add(0, 0, {.atStart = start.skippedFrames});
    PacketIndex inFile;
    std::vector<std::uint8_t> buffer;
    bool direct = kind == MediaKind::MovieFile;  // elsewhere packets are made of pieces of the file
    const PacketPtr packet(av_packet_alloc());
    std::uint64_t last = 0;
    while (demuxer.read(stream, *packet) >= 0) {
        const SkipRequest skip = SkipRequest::of(*packet);
        const int frames = counter.count(*packet);
        cuts.add(track.index.frames(), frames, skip);
        direct = direct && liesInFile(*file, *packet, buffer);
        if (direct) {
            inFile.append(packet->pos, static_cast<std::uint32_t>(packet->size), frames);
        }
        if (track.index.packets() > 0) track.contentHash = DemuxedPacketSource::mixed(track.contentHash, last);
        last = DemuxedPacketSource::contentHash(*packet);
        track.index.append(PacketIndex::kNoPosition, DemuxedPacketSource::fingerprint(last, packet->pos), frames);
    }
    track.drainedFrames = counter.drain();
    track.kept = cuts.kept(track.index.frames() + track.drainedFrames);
    if (direct) {
        track.index = std::move(inFile);
        track.source = std::make_unique<FilePacketSource>(std::move(file));
    } else {
        track.source = std::make_unique<DemuxedPacketSource>(std::move(file), kind, stream, start.sampleRate);
    }
}

}  // namespace

std::optional<SoundTrack> planByPass(std::shared_ptr<const FileBytes> file, MediaKind kind, int stream) {
    auto examined = Demuxer::open(file, kind, true);
    auto passed = Demuxer::open(file, kind, true);
    if (!examined || !passed || stream >= static_cast<int>(passed.value()->context().nb_streams)) {
        return std::nullopt;
    }
    const StreamStart start = examineStart(*examined.value(), stream);
    if (start.sampleRate == 0) {
        return std::nullopt;
    }
    Demuxer& demuxer = *passed.value();
    demuxer.onlyStream(stream);
    SoundTrack track = beginTrack(demuxer.stream(stream), start);
    passPackets(track, demuxer, stream, start, std::move(file), kind);
    return track;
}

}  // namespace qm
