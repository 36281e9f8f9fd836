// Where the bytes of sound lie in wav, aiff, caf and nist files, read from their chunks. Any thread; nothing is
// answered for a file whose chunks do not lead there.
#pragma once

#include <cstdint>
#include <optional>

#include "engine/api/MediaKinds.h"
#include "engine/media/FileBytes.h"

namespace qm {

struct FileExtent {
    std::int64_t position;
    std::int64_t bytes;  // that the file really holds
};

// `firstPacket` is where the demuxer found the first sound; only kinds without chunks need it.
std::optional<FileExtent> findSoundData(const FileBytes& file, MediaKind kind, std::int64_t firstPacket);

// What a caf file's packet table says of its frames.
struct CafFrames {
    std::int64_t valid;    // meant to be heard
    std::int64_t priming;  // in front of them
};
std::optional<CafFrames> readCafFrames(const FileBytes& file);

}  // namespace qm
