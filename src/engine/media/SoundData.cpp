#include "engine/media/SoundData.h"

#include <algorithm>

#include "engine/media/ChunkWalk.h"

namespace qm {

namespace {

constexpr std::uint32_t kSizeUnknown = 0xffffffff;

std::optional<FileExtent> findWaveData(ByteWindow& bytes, ChunkWalk::Kind kind, std::int64_t end) {
    std::int64_t longSize = -1;
    ChunkWalk walk(bytes, kind, 12, end);
    while (const auto chunk = walk.next()) {
        if (chunk->isNamed("data")) {
            const std::int64_t rest = end - chunk->content;
            if (longSize >= 0) {
                return FileExtent{chunk->content, std::min(longSize, rest)};
            }
            const bool unknown = chunk->bytes == 0 || chunk->bytes == kSizeUnknown;
            return FileExtent{chunk->content, unknown ? rest : std::min(chunk->bytes, rest)};
        }
        if (chunk->isNamed("ds64")) {
            const std::uint8_t* sizes = bytes.at(chunk->content, 16);
            if (!sizes || littleEndian64(sizes + 8) > static_cast<std::uint64_t>(INT64_MAX)) {
                return std::nullopt;
            }
            longSize = static_cast<std::int64_t>(littleEndian64(sizes + 8));
        }
    }
    return std::nullopt;
}

std::optional<FileExtent> findAiffData(ByteWindow& bytes, std::int64_t end) {
    constexpr int kHeaderBytes = 8;
    ChunkWalk walk(bytes, ChunkWalk::Kind::Iff, 12, end);
    while (const auto chunk = walk.next()) {
        if (!chunk->isNamed("SSND")) {
            continue;
        }
        const std::uint8_t* header = bytes.at(chunk->content, kHeaderBytes);
        if (!header) {
            return std::nullopt;
        }
        const std::int64_t offset = bigEndian32(header);
        const std::int64_t start = chunk->content + kHeaderBytes + offset;
        const std::int64_t stated = std::max<std::int64_t>(chunk->bytes - kHeaderBytes - offset, 0);
        return FileExtent{start, std::min(stated, end - start)};
    }
    return std::nullopt;
}

std::optional<FileExtent> findCafChunk(ByteWindow& bytes, std::int64_t end, const char* name) {
    ChunkWalk walk(bytes, ChunkWalk::Kind::Caf, 8, end);
    while (const auto chunk = walk.next()) {
        if (chunk->isNamed(name)) {
            const std::int64_t rest = end - chunk->content;
            return FileExtent{chunk->content, chunk->bytes < 0 ? rest : std::min(chunk->bytes, rest)};
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<FileExtent> findSoundData(const FileBytes& file, MediaKind kind, std::int64_t firstPacket) {
    constexpr int kCafEditCountBytes = 4;
    ByteWindow bytes(file);
    switch (kind) {
        case MediaKind::Wave:
            return findWaveData(bytes, ChunkWalk::Kind::Riff, file.size());
        case MediaKind::BigEndianWave:
            return findWaveData(bytes, ChunkWalk::Kind::Iff, file.size());
        case MediaKind::Aiff:
            return findAiffData(bytes, file.size());
        case MediaKind::Caf: {
            const auto chunk = findCafChunk(bytes, file.size(), "data");
            if (!chunk || chunk->bytes < kCafEditCountBytes) {
                return std::nullopt;
            }
            return FileExtent{chunk->position + kCafEditCountBytes, chunk->bytes - kCafEditCountBytes};
        }
        case MediaKind::NistSphere:
            return FileExtent{firstPacket, file.size() - firstPacket};
        default:
            return std::nullopt;
    }
}

std::optional<CafFrames> readCafFrames(const FileBytes& file) {
    ByteWindow bytes(file);
    const auto chunk = findCafChunk(bytes, file.size(), "pakt");
    const std::uint8_t* p = chunk && chunk->bytes >= 24 ? bytes.at(chunk->position, 24) : nullptr;
    if (!p || (p[8] & 0x80) != 0 || (p[16] & 0x80) != 0) {
        return std::nullopt;
    }
    return CafFrames{static_cast<std::int64_t>(bigEndian64(p + 8)), static_cast<std::int64_t>(bigEndian32(p + 16))};
}

}  // namespace qm
