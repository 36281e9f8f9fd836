#include "engine/media/SoundData.h"

#include <algorithm>
#include <cstring>

namespace qm {

namespace {

constexpr int kMostChunks = 100000;
constexpr std::uint32_t kSizeUnknown = 0xffffffff;
bool named(const std::uint8_t* chunk, const char* name) {
    return std::memcmp(chunk, name, 4) == 0;
}

std::optional<FileExtent> findWaveData(ByteWindow& bytes, std::int64_t end) {
    std::int64_t longSize = -1;
    std::int64_t p = 12;
    for (int i = 0; i < kMostChunks; ++i) {
        const std::uint8_t* chunk = bytes.at(p, 8);
        if (!chunk) {
            return std::nullopt;
        }
        const std::int64_t size = littleEndian32(chunk + 4);
        if (named(chunk, "data")) {
            const std::int64_t rest = end - p - 8;
            if (longSize >= 0) {
                return FileExtent{p + 8, std::min(longSize, rest)};
            }
            return FileExtent{p + 8, size == 0 || size == kSizeUnknown ? rest : std::min(size, rest)};
        }
        if (named(chunk, "ds64")) {
            const std::uint8_t* sizes = bytes.at(p + 8, 16);
            if (!sizes || littleEndian64(sizes + 8) > static_cast<std::uint64_t>(INT64_MAX)) {
                return std::nullopt;
            }
            longSize = static_cast<std::int64_t>(littleEndian64(sizes + 8));
        }
        p += 8 + size + (size & 1);
    }
    return std::nullopt;
}

std::optional<FileExtent> findAiffData(ByteWindow& bytes, std::int64_t end) {
    std::int64_t p = 12;
    for (int i = 0; i < kMostChunks; ++i) {
        const std::uint8_t* chunk = bytes.at(p, 16);
        if (!chunk) {
            return std::nullopt;
        }
        const std::int64_t size = bigEndian32(chunk + 4);
        if (named(chunk, "SSND")) {
            const std::int64_t offset = bigEndian32(chunk + 8);
            const std::int64_t start = p + 16 + offset;
            return FileExtent{start, std::min(std::max<std::int64_t>(size - 8 - offset, 0), end - start)};
        }
        p += 8 + size + (size & 1);
    }
    return std::nullopt;
}

std::optional<FileExtent> findCafChunk(ByteWindow& bytes, std::int64_t end, const char* name) {
    std::int64_t p = 8;
    for (int i = 0; i < kMostChunks; ++i) {
        const std::uint8_t* chunk = bytes.at(p, 12);
        if (!chunk) {
            return std::nullopt;
        }
        const auto size = static_cast<std::int64_t>(bigEndian64(chunk + 4));
        const std::int64_t rest = end - p - 12;
        if (named(chunk, name)) {
            return FileExtent{p + 12, size < 0 ? rest : std::min(size, rest)};
        }
        if (size < 0 || size > rest) {
            return std::nullopt;
        }
        p += 12 + size;
    }
    return std::nullopt;
}

}  // namespace

std::optional<FileExtent> findSoundData(const FileBytes& file, const std::string& format, std::int64_t firstPacket) {
    ByteWindow bytes(file);
    if (format == "wav") {
        return findWaveData(bytes, file.size());
    }
    if (format == "aiff") {
        return findAiffData(bytes, file.size());
    }
    if (format == "caf") {
        constexpr int kEditCountBytes = 4;
        const auto chunk = findCafChunk(bytes, file.size(), "data");
        if (!chunk || chunk->bytes < kEditCountBytes) {
            return std::nullopt;
        }
        return FileExtent{chunk->position + kEditCountBytes, chunk->bytes - kEditCountBytes};
    }
    if (format == "nistsphere") {
        return FileExtent{firstPacket, file.size() - firstPacket};
    }
    return std::nullopt;
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
