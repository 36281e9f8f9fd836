// The ten bytes that an ID3v2 tag begins with.
#pragma once

#include <cstdint>
#include <cstring>
#include <optional>

namespace qm {

struct Id3Header {
    static constexpr int kBytes = 10;

    int version;          // 2, 3 or 4 in what is known
    bool unsynchronised;  // zero bytes are put in, so that nothing in the tag looks like sound
    bool hasExtendedHeader;
    std::int64_t tagBytes;    // of the whole tag, from the first of these bytes
    std::int64_t frameBytes;  // between this header and the footer
};

// Four bytes of seven bits.
inline std::uint32_t synchSafe32(const std::uint8_t* p) {
    return (p[0] & 0x7fu) << 21 | (p[1] & 0x7fu) << 14 | (p[2] & 0x7fu) << 7 | (p[3] & 0x7fu);
}

inline std::optional<Id3Header> readId3Header(const std::uint8_t* p) {
    if (std::memcmp(p, "ID3", 3) != 0 || ((p[6] | p[7] | p[8] | p[9]) & 0x80) != 0) {
        return std::nullopt;
    }
    const std::int64_t frames = synchSafe32(p + 6);
    const bool hasFooter = (p[5] & 0x10) != 0;
    return Id3Header{p[3], (p[5] & 0x80) != 0, (p[5] & 0x40) != 0,
                     Id3Header::kBytes + frames + (hasFooter ? Id3Header::kBytes : 0), frames};
}

}  // namespace qm
