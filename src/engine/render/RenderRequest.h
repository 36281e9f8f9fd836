// What the main thread wants to be heard. A value type; any thread.
#pragma once

#include <cstdint>

#include "engine/render/Tone.h"

namespace qm {

struct RenderRequest {
    bool playing = false;
    double rate = 1;  // signed; 0 stands still and keeps the last direction
    double cents = 0;
    ToneSettings tone;
    bool loops = false;
    std::int64_t rangeBegin = 0;  // frames; an empty range is the whole track
    std::int64_t rangeEnd = 0;
    std::int64_t seekTarget = 0;  // frames
    std::uint64_t seek = 0;       // counts the seeks

    bool moves() const { return playing && rate != 0; }
    friend bool operator==(const RenderRequest&, const RenderRequest&) = default;
};

}  // namespace qm
