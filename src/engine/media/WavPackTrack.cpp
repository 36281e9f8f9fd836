#include <cstring>

#include "engine/media/FileBytes.h"
#include "engine/media/TrackPlan.h"

namespace qm {

namespace {

constexpr std::size_t kHeaderBytes = 32;
constexpr std::uint32_t kFirstOfPacket = 1 << 11;
constexpr std::uint32_t kLastOfPacket = 1 << 12;
constexpr std::uint32_t kOneBit = 1u << 31;  // DSD, which is decoded to another rate

struct Block {
    std::int64_t bytes = 0;
    int frames = 0;
    std::uint32_t flags = 0;
};

std::optional<Block> blockAt(ByteWindow& bytes, std::int64_t position, std::int64_t end) {
    const std::uint8_t* head = bytes.at(position, kHeaderBytes);
    if (!head || std::memcmp(head, "wvpk", 4) != 0) return std::nullopt;
    const std::int64_t size = std::int64_t{littleEndian32(head + 4)} + 8;
    const std::uint32_t frames = littleEndian32(head + 20);
    constexpr std::uint32_t kMostFrames = 1 << 22;
    if (size < static_cast<std::int64_t>(kHeaderBytes) || position + size > end || frames > kMostFrames) {
        return std::nullopt;
    }
    return Block{size, static_cast<int>(frames), littleEndian32(head + 24)};
}

}  // namespace

std::optional<SoundTrack> planWavPack(std::shared_ptr<const FileBytes> file, const AVStream& stream,
                                      const StreamStart& start) {
    if (start.firstPosition < 0) return std::nullopt;
    SoundTrack track = beginTrack(stream, start);
    ByteWindow bytes(*file);
    std::int64_t packetBegin = start.firstPosition;
    std::int64_t position = packetBegin;
    while (const auto block = blockAt(bytes, position, file->size())) {
        if ((block->flags & kOneBit) != 0) return std::nullopt;
        if ((block->flags & kFirstOfPacket) != 0 || block->frames == 0) packetBegin = position;
        position += block->bytes;
        if (block->frames == 0) {  // only fields
            packetBegin = position;
        } else if ((block->flags & kLastOfPacket) != 0) {
            track.index.append(packetBegin, static_cast<std::uint32_t>(position - packetBegin), block->frames);
            packetBegin = position;
        }
    }
    if (track.index.packets() == 0) return std::nullopt;
    track.kept = KeptRanges(track.index.frames());
    track.source = std::make_unique<FilePacketSource>(std::move(file));
    return track;
}

}  // namespace qm
