// What a track of pictures keeps when it moves to another container. Pure.
#pragma once

#include <cstring>

#include "engine/media/Libav.h"

namespace qm {

// Pictures a second; 25 where the file does not say.
inline AVRational pictureRate(const AVStream& stream) {
    for (const AVRational rate : {stream.avg_frame_rate, stream.r_frame_rate}) {
        if (rate.num > 0 && rate.den > 0) {
            return rate;
        }
    }
    return {25, 1};
}

// By how much the picture is turned, as the camera was held.
inline void copyTurn(const AVStream& from, AVStream& to) {
    std::size_t size = 0;
    const std::uint8_t* matrix = av_stream_get_side_data(&from, AV_PKT_DATA_DISPLAYMATRIX, &size);
    std::uint8_t* copy = matrix ? av_stream_new_side_data(&to, AV_PKT_DATA_DISPLAYMATRIX, size) : nullptr;
    if (copy) {
        std::memcpy(copy, matrix, size);
    }
}

}  // namespace qm
