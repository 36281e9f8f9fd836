// How many frames the packets of a stream decode to, told by their first bytes, so that a long file needs no decoding
// to know its length. One stream's packets in their order; one thread at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "engine/media/Libav.h"

namespace qm {

class PacketFrames {
public:
    static constexpr std::size_t kHeadBytes = 16;  // of a packet are enough

    // Null for a codec whose packets do not tell.
    static std::unique_ptr<PacketFrames> create(const AVCodecParameters& parameters);
    virtual ~PacketFrames() = default;

    // `head` begins the packet of `bytes` bytes. 0 for one that nothing is decoded from.
    virtual int next(std::span<const std::uint8_t> head, std::int64_t bytes) = 0;
};

}  // namespace qm
