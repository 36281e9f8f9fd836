#include <algorithm>
#include <array>

#include "engine/media/CutList.h"
#include "engine/media/EbmlWalk.h"
#include "engine/media/PacketFrames.h"
#include "engine/media/TrackPlan.h"

namespace qm {

namespace {

// Element identifiers (RFC 9559).
constexpr std::uint32_t kSegment = 0x18538067;
constexpr std::uint32_t kTracks = 0x1654ae6b;
constexpr std::uint32_t kTrackEntry = 0xae;
constexpr std::uint32_t kTrackNumber = 0xd7;
constexpr std::uint32_t kTrackType = 0x83;
constexpr std::uint32_t kContentEncodings = 0x6d80;
constexpr std::uint32_t kCluster = 0x1f43b675;
constexpr std::uint32_t kSimpleBlock = 0xa3;
constexpr std::uint32_t kBlockGroup = 0xa0;
constexpr std::uint32_t kBlock = 0xa1;
constexpr std::uint32_t kDiscardPadding = 0x75a2;
constexpr std::uint32_t kCues = 0x1c53bb6b;

constexpr std::uint64_t kSoundTrackType = 2;
constexpr std::int64_t kNanoseconds = 1'000'000'000;

// The number that blocks of the `wanted`th sound track carry; none where it is not there or its packets are packed.
std::optional<std::uint64_t> soundTrackNumber(ByteWindow& bytes, const EbmlElement& tracks, int wanted) {
    std::optional<std::uint64_t> number;
    int before = 0;
    forEachEbmlElement(bytes, tracks.content, tracks.end, [&](const EbmlElement& entry) {
        if (entry.id != kTrackEntry) return true;
        std::uint64_t type = 0, own = 0;
        bool isPacked = false;
        forEachEbmlElement(bytes, entry.content, entry.end, [&](const EbmlElement& field) {
            if (field.id == kTrackType) type = ebmlUnsigned(bytes, field);
            if (field.id == kTrackNumber) own = ebmlUnsigned(bytes, field);
            isPacked = isPacked || field.id == kContentEncodings;
            return true;
        });
        if (type != kSoundTrackType || before++ != wanted) return true;
        if (!isPacked) number = own;
        return false;
    });
    return number;
}

// The frames in a block, by the way in which several are laced into one.
class BlockFrames {
public:
    BlockFrames(ByteWindow& bytes, std::int64_t position, std::int64_t end, int lacing)
        : m_bytes(bytes), m_position(position), m_end(end) {
        if (lacing == 0) {
            m_count = 1;
            return;
        }
        const std::uint8_t* count = m_bytes.at(m_position, 1);
        if (!count || m_position >= m_end) return;
        m_count = *count + 1;
        ++m_position;
        if (lacing == kXiph) readXiph();
        if (lacing == kEbml) readEbml();
        const std::int64_t whole = m_end - m_position;
        if (lacing == kFixed) std::fill_n(m_sizes.begin(), m_count - 1, whole / m_count);
    }

    // Calls fn(position, size) for each frame; nothing for a block that is damaged.
    template <typename Fn>
    void forEach(Fn&& fn) {
        std::int64_t position = m_position;
        for (int i = 0; i < m_count; ++i) {
            const std::int64_t size = i == m_count - 1 ? m_end - position : m_sizes[static_cast<std::size_t>(i)];
            if (size < 0 || position + size > m_end) return;
            fn(position, size);
            position += size;
        }
    }

private:
    static constexpr int kXiph = 1, kFixed = 2, kEbml = 3;

    void readXiph() {
        for (int i = 0; i < m_count - 1; ++i) {
            std::int64_t size = 0;
            const std::uint8_t* part = nullptr;
            do {
                part = m_position < m_end ? m_bytes.at(m_position++, 1) : nullptr;
                if (part) size += *part;
            } while (part && *part == 255);
            m_sizes[static_cast<std::size_t>(i)] = part ? size : -1;
        }
    }

    // The first size, then the differences, shifted so that they are never negative.
    void readEbml() {
        std::int64_t size = 0;
        for (int i = 0; i < m_count - 1; ++i) {
            const std::int64_t before = m_position;
            const auto number = readEbmlNumber(m_bytes, m_position, m_end);
            const std::int64_t length = m_position - before;
            const std::int64_t bias = i == 0 ? 0 : (std::int64_t{1} << (7 * length - 1)) - 1;
            size = number ? size + static_cast<std::int64_t>(*number) - bias : -1;
            m_sizes[static_cast<std::size_t>(i)] = size;
            if (size < 0) return;
        }
    }

    ByteWindow& m_bytes;
    std::int64_t m_position;
    std::int64_t m_end;
    int m_count = 0;
    std::array<std::int64_t, 256> m_sizes{};
};

// Goes through the clusters and notes the frames of one track; what lies in them is passed over.
class ClusterWalk {
public:
    ClusterWalk(const FileBytes& file, std::uint64_t number, PacketFrames* frames, int framesPerPacket,
                SoundTrack& track, CutList& cuts)
        : m_bytes(file),
          m_number(number),
          m_frames(frames),
          m_framesPerPacket(framesPerPacket),
          m_track(track),
          m_cuts(cuts) {}

    // Returns where the cluster really ends.
    std::int64_t take(const EbmlElement& cluster) {
        std::int64_t end = cluster.end;
        forEachEbmlElement(m_bytes, cluster.content, cluster.end, [&](const EbmlElement& element) {
            if (cluster.isOpenEnded && (element.id == kCluster || element.id == kCues || element.id == kTracks)) {
                end = element.begin;
                return false;
            }
            if (element.id == kSimpleBlock) takeBlock(element);
            if (element.id == kBlockGroup) takeGroup(element);
            return true;
        });
        return end;
    }

private:
    void takeGroup(const EbmlElement& group) {
        std::int64_t discarded = 0;
        const std::int64_t packetsBefore = m_track.index.packets();
        forEachEbmlElement(m_bytes, group.content, group.end, [&](const EbmlElement& element) {
            if (element.id == kBlock) takeBlock(element);
            if (element.id == kDiscardPadding) discarded = static_cast<std::int64_t>(ebmlUnsigned(m_bytes, element));
            return true;
        });
        if (m_track.index.packets() == packetsBefore || discarded <= 0 || discarded > kNanoseconds) return;
        const PacketIndex::Packet last = m_track.index.packet(m_track.index.packets() - 1);
        const std::int64_t frames = av_rescale(discarded, m_track.sampleRate, kNanoseconds);
        m_cuts.add(last.start, last.frames, {.atEnd = frames});
    }

    void takeBlock(const EbmlElement& block) {
        std::int64_t position = block.content;
        const auto number = readEbmlNumber(m_bytes, position, block.end);
        constexpr std::int64_t kTimeAndFlags = 3;
        if (!number || *number != m_number || position + kTimeAndFlags > block.end) return;
        const std::uint8_t* flags = m_bytes.at(position + 2, 1);
        const int lacing = flags ? *flags >> 1 & 3 : 0;
        BlockFrames(m_bytes, position + kTimeAndFlags, block.end, lacing)
            .forEach([&](std::int64_t at, std::int64_t size) { takeFrame(at, size); });
    }

    void takeFrame(std::int64_t position, std::int64_t size) {
        constexpr std::int64_t kLargestFrame = 16 << 20;
        if (size <= 0 || size > kLargestFrame) return;
        int frames = m_framesPerPacket;
        if (m_frames) {
            const auto count = static_cast<std::size_t>(std::min<std::int64_t>(size, PacketFrames::kHeadBytes));
            const std::uint8_t* head = m_bytes.at(position, count);
            frames = head ? m_frames->next({head, count}, size) : 0;
        }
        m_track.index.append(position, static_cast<std::uint32_t>(size), frames);
    }

    ByteWindow m_bytes;
    const std::uint64_t m_number;
    PacketFrames* m_frames;
    const int m_framesPerPacket;
    SoundTrack& m_track;
    CutList& m_cuts;
};

int soundTracksBefore(const AVFormatContext& context, int stream) {
    int before = 0;
    for (int i = 0; i < stream; ++i) before += context.streams[i]->codecpar->codec_type == AVMEDIA_TYPE_AUDIO;
    return before;
}

void walkSegment(const std::shared_ptr<const FileBytes>& file, int wanted, PacketFrames* frames, int framesPerPacket,
                 SoundTrack& track, CutList& cuts) {
    ByteWindow bytes(*file);
    std::optional<ClusterWalk> clusters;
    std::int64_t position = 0;
    while (auto element = readEbmlElement(bytes, position, file->size())) {
        position = element->end;
        if (element->id == kSegment) position = element->content;
        if (element->id == kTracks && !clusters) {
            const auto number = soundTrackNumber(bytes, *element, wanted);
            if (!number) return;
            clusters.emplace(*file, *number, frames, framesPerPacket, track, cuts);
        }
        if (element->id == kCluster && clusters) position = clusters->take(*element);
    }
}

}  // namespace

std::optional<SoundTrack> planMatroska(std::shared_ptr<const FileBytes> file, Demuxer& demuxer, int stream,
                                       const StreamStart& start) {
    const AVStream& av = demuxer.stream(stream);
    SoundTrack track = beginTrack(av, start);
    const auto frames = PacketFrames::create(*av.codecpar);
    const bool isConstant = track.traits.counting == CodecTraits::Counting::Constant && !track.traits.lastMayBeShort &&
                            start.mutePackets == 0;
    if (!frames && !isConstant) return std::nullopt;
    CutList cuts;
    cuts.add(0, 0, {.atStart = start.skippedFrames});
    walkSegment(file, soundTracksBefore(demuxer.context(), stream), frames.get(), start.framesPerPacket, track, cuts);
    if (track.index.packets() == 0) return std::nullopt;
    track.kept = cuts.kept(track.index.frames());
    track.source = std::make_unique<FilePacketSource>(std::move(file));
    return track;
}

}  // namespace qm
