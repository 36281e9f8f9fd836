// The chunks that RIFF (wav, avi), IFF (aiff) and caf files are made of, one after the other. Bounded in number.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "engine/media/FileBytes.h"

namespace qm {

struct Chunk {
    std::uint32_t name = 0;    // its four letters, the first highest
    std::int64_t content = 0;  // position
    std::int64_t bytes = 0;    // of content, as stated: there may be fewer; negative is up to the end, in a caf file

    bool isNamed(std::string_view letters) const;
};

class ChunkWalk {
public:
    enum class Kind { Riff, Iff, Caf };

    ChunkWalk(ByteWindow& bytes, Kind kind, std::int64_t first, std::int64_t end)
        : m_bytes(bytes), m_kind(kind), m_position(first), m_end(end) {}

    std::optional<Chunk> next();  // none where no chunk begins

    // Goes on behind a chunk whose true size is known from elsewhere.
    void continueAfter(const Chunk& chunk, std::int64_t trueBytes);

private:
    ByteWindow& m_bytes;
    Kind m_kind;
    std::int64_t m_position;
    std::int64_t m_end;
    int m_chunks = 0;
};

}  // namespace qm
