// What a packet's container asks to leave out of the frames it decodes to. Pure.
#pragma once

#include <cstdint>

#include "engine/media/FileBytes.h"
#include "engine/media/Libav.h"

namespace qm {

struct SkipRequest {
    std::int64_t atStart = 0;  // frames, from the packet's first on, perhaps beyond it
    std::int64_t atEnd = 0;    // frames before the packet's end
    bool whole = false;

    static SkipRequest of(const AVPacket& packet) {
        SkipRequest request;
        request.whole = (packet.flags & AV_PKT_FLAG_DISCARD) != 0;
        std::size_t size = 0;
        const std::uint8_t* data = av_packet_get_side_data(&packet, AV_PKT_DATA_SKIP_SAMPLES, &size);
        if (data && size >= 10) {
            request.atStart = littleEndian32(data);
            request.atEnd = littleEndian32(data + 4);
        }
        return request;
    }
};

}  // namespace qm
