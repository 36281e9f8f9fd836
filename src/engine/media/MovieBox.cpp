#include "engine/media/MovieBox.h"

namespace qm {

std::optional<MovieBox> readBox(ByteWindow& bytes, std::int64_t position, std::int64_t end) {
    if (position + 8 > end) {
        return std::nullopt;
    }
    const std::uint8_t* p = bytes.at(position, 16);
    p = p ? p : bytes.at(position, 8);
    if (!p) {
        return std::nullopt;
    }
    std::int64_t size = bigEndian32(p);
    std::int64_t header = 8;
    if (size == 1 && position + 16 <= end) {
        size = static_cast<std::int64_t>(bigEndian64(p + 8));
        header = 16;
    } else if (size == 0) {
        size = end - position;
    }
    if (size < header) {
        return std::nullopt;
    }
    return MovieBox{bigEndian32(p + 4), position + header, size > end - position ? end : position + size};
}

}  // namespace qm
