#include "engine/media/ChunkWalk.h"

namespace qm {

namespace {

constexpr int kMostChunks = 100000;

}  // namespace

bool Chunk::isNamed(std::string_view letters) const {
    return letters.size() == 4 && bigEndian32(reinterpret_cast<const std::uint8_t*>(letters.data())) == name;
}

std::optional<Chunk> ChunkWalk::next() {
    const int header = m_kind == Kind::Caf ? 12 : 8;
    if (m_position > m_end - header || ++m_chunks > kMostChunks) {
        return std::nullopt;
    }
    const std::uint8_t* p = m_bytes.at(m_position, static_cast<std::size_t>(header));
    if (!p) {
        return std::nullopt;
    }
    Chunk chunk;
    chunk.name = bigEndian32(p);
    chunk.content = m_position + header;
    chunk.bytes = m_kind == Kind::Riff  ? std::int64_t{littleEndian32(p + 4)}
                  : m_kind == Kind::Iff ? std::int64_t{bigEndian32(p + 4)}
                                        : static_cast<std::int64_t>(bigEndian64(p + 4));
    continueAfter(chunk, chunk.bytes);
    return chunk;
}

void ChunkWalk::continueAfter(const Chunk& chunk, std::int64_t trueBytes) {
    const bool fits = trueBytes >= 0 && trueBytes <= m_end - chunk.content;
    const bool padded = m_kind != Kind::Caf && (trueBytes & 1) != 0;
    m_position = fits ? chunk.content + trueBytes + (padded ? 1 : 0) : m_end;
}

}  // namespace qm
